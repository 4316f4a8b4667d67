// Truth values.
#ifndef ZON_TREE_ZONBOOL_H
#define ZON_TREE_ZONBOOL_H

#include <cstdint>
#include <string>

#include "tree/zonparam.h"

/** A truth value. */
class ZON_API CzonBool : public CzonParam {
 public:
  CzonBool() = default;
  explicit CzonBool(const std::string& text);  ///< true exactly for "true", any letter case

  CzonNode* CreateObj() override;
  int IsBool() const override;
  int GetBool() const override;
  std::ostream& Write(std::ostream& out) const override;  ///< "true" or "false"
  int GetSyntaxClass() const override;
  void Copy(const CzonNode* source) override;

 private:
  friend struct zon::NodeAccess;

  void SetValue(bool value, zon::Arena* arena);  // value and text
  void ReadText();                               // the value from the text

  std::int32_t value_ = 0;
};

#endif
