// A value that packs a list of items into one quoted text: '<CLOB:Integer:1,String:"x">'.
#ifndef ZON_TREE_ZONCLOB_H
#define ZON_TREE_ZONCLOB_H

#include <string>
#include <string_view>

#include "tree/zonparam.h"

class ZON_API CzonClob : public CzonParam {
 public:
  CzonClob() = default;
  explicit CzonClob(const std::string& content);  ///< what stands between "<CLOB:" and ">"

  /** A new CLOB if the text of a quoted value is one: it begins with "<CLOB:", in any letter case,
   * and ends with ">". Null otherwise. The caller owns it. */
  static CzonClob* Parse(const std::string& text);

  CzonNode* CreateObj() override;
  int IsClob() const override;
  std::ostream& Write(std::ostream& out) const override;
  void Copy(const CzonNode* source) override;

  // For the library's own use: the content of such a text; false if it is none.
  static bool FindContent(std::string_view text, std::string_view* content);
};

#endif
