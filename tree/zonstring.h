// Quoted texts.
#ifndef ZON_TREE_ZONSTRING_H
#define ZON_TREE_ZONSTRING_H

#include <string>

#include "tree/zonparam.h"

/** A text that stands in quotes. */
class ZON_API CzonString : public CzonParam {
 public:
  CzonString() = default;
  explicit CzonString(const std::string& text);  ///< what stands between the quotes

  CzonNode* CreateObj() override;
  int IsString() const override;
  const std::string& GetString() const override;
  std::ostream& Write(std::ostream& out) const override;  ///< in quotes, inner quotes doubled
  int GetSyntaxClass() const override;
};

namespace zon {

// Writes a text between single quotes, every single quote in it twice.
void PutQuoted(std::ostream& out, std::string_view text);

// The same without the quotes around it.
void PutDoublingQuotes(std::ostream& out, std::string_view text);

}  // namespace zon

#endif
