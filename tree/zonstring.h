// Quoted texts.
#ifndef ZON_TREE_ZONSTRING_H
#define ZON_TREE_ZONSTRING_H

#include <string>

#include "tree/zonparam.h"

/** A quoted text. */
class ZON_API CzonString : public CzonParam {
 public:
  CzonString() = default;
  explicit CzonString(const std::string& text);  ///< the text between the quotes

  CzonNode* CreateObj() override;
  int IsString() const override;
  const std::string& GetString() const override;
  std::ostream& Write(std::ostream& out) const override;  ///< in quotes, inner quotes doubled
  int GetSyntaxClass() const override;
};

#endif
