// Reals: CzonReal for values that were read from a file, CzonFloat and CzonDouble for the two
// precisions of the builder.
#ifndef ZON_TREE_ZONREAL_H
#define ZON_TREE_ZONREAL_H

#include <string>

#include "tree/zonnumer.h"

/** A real that was read from a file. It is written with its original text. */
class ZON_API CzonReal : public CzonNumeric {
 public:
  CzonReal() = default;

  /** Keeps the text and sets the double and the float view from it; the integer view stays unset
   *  until FloatToInt. */
  explicit CzonReal(const std::string& text);

  CzonNode* CreateObj() override;
  int IsInt() const override;
  int GetInt() const override;
  int GetSyntaxClass() const override;
  void Copy(const CzonNode* source) override;

  /** Sets the integer view if the value is whole and within 64 bits; the view keeps the low 32
   *  bits. Returns the whole number; otherwise clears the view and returns 0. */
  long long FloatToInt();

 private:
  friend struct zon::NodeAccess;
  friend class CzonFloat;
  friend class CzonDouble;

  void SetReal(double value, std::string_view text, zon::Arena* arena);  // all views and the text
  void ReadText();                                                       // all views from the text
};

/** A real in single precision. */
class ZON_API CzonFloat : public CzonReal {
 public:
  CzonFloat() = default;
  explicit CzonFloat(const std::string& text);  ///< as CzonReal
  CzonNode* CreateObj() override;
  std::ostream& Write(std::ostream& out) const override;

 private:
  friend struct zon::NodeAccess;

  void SetValue(float value, zon::Arena* arena);  // all views and the text, as it is written
};

/** A real in double precision. */
class ZON_API CzonDouble : public CzonReal {
 public:
  CzonDouble() = default;
  explicit CzonDouble(const std::string& text);  ///< as CzonReal
  CzonNode* CreateObj() override;
  std::ostream& Write(std::ostream& out) const override;

 private:
  friend struct zon::NodeAccess;

  void SetValue(double value, zon::Arena* arena);  // all views and the text
};

/** The float of a definition made through the builder. */
class ZON_API CzonFloatDef : public CzonFloat {
 public:
  CzonFloatDef() = default;
  explicit CzonFloatDef(const std::string& text);  ///< as CzonFloat
  CzonNode* CreateObj() override;
  int IsFloat() const override;  ///< always true
};

/** The double of a definition made through the builder. */
class ZON_API CzonDoubleDef : public CzonDouble {
 public:
  CzonDoubleDef() = default;
  explicit CzonDoubleDef(const std::string& text);  ///< as CzonDouble
  CzonNode* CreateObj() override;
  int IsDouble() const override;  ///< always true
};

#endif
