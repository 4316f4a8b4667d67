// Integers.
#ifndef ZON_TREE_ZONINT_H
#define ZON_TREE_ZONINT_H

#include <string>

#include "tree/zonnumer.h"

/** An integer; it also has the views of a real. */
class ZON_API CzonInt : public CzonNumeric {
 public:
  CzonInt() = default;

  /** Keeps the text and sets the double and the float view from it; the integer view stays unset
   *  until CStoInt. */
  explicit CzonInt(const std::string& text);

  CzonNode* CreateObj() override;
  int IsInt() const override;
  int GetInt() const override;
  std::ostream& Write(std::ostream& out) const override;
  int GetSyntaxClass() const override;
  void Copy(const CzonNode* source) override;

  /** Sets the integer view from the text, by the rules of strtol in base 10; the view keeps the low
   *  32 bits. Returns the whole number. */
  long CStoInt();

 private:
  friend struct zon::NodeAccess;

  void SetValue(int value, zon::Arena* arena);  // all views and the text
  void ReadText();                              // all views from the text
};

/** The integer of a definition made through the builder. */
class ZON_API CzonIntDef : public CzonInt {
 public:
  CzonIntDef();                                  ///< the value 0, with the integer view alone
  explicit CzonIntDef(const std::string& text);  ///< as CzonInt
  CzonNode* CreateObj() override;
  virtual int isInt() const;  ///< always true
};

#endif
