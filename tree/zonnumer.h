// The common base of numbers. The text is converted to a double once, when the node is made. The
// float view is computed from the double at each query: that is cheaper than storing it.
#ifndef ZON_TREE_ZONNUMER_H
#define ZON_TREE_ZONNUMER_H

#include <cstdint>
#include <string>

#include "tree/zonparam.h"

/** A number: what integers and reals have in common. */
class ZON_API CzonNumeric : public CzonParam {
 public:
  CzonNumeric() { Double(0.0); }
  explicit CzonNumeric(const std::string& text);  ///< both views from the text

  CzonNode* CreateObj() override = 0;
  int IsNumeric() const override;
  int IsFloat() const override;
  int IsDouble() const override;
  float GetFloat() const override;
  double GetDouble() const override;
  void Copy(const CzonNode* source) override;

  /** Clears the double and the float view. */
  void Init();

  /** Sets both views from the text, read by the rules of strtod in the "C" locale. */
  void CStoReals();

  /** Sets both views. Beyond the range of a float the float view is the largest float of that sign
   *  and IsFloat is false; below the smallest normal float it is 0. */
  void Double(double value) {
    double_ = value;
    Set(kHasDouble);
  }

  /** Converts the number at the start of a text. Skips leading white space and ignores the text
   *  after the number. Returns 0.0 if there is no number. */
  static double string_to_double(const std::string& s);

 protected:
  static float FloatView(double value);  ///< what GetFloat returns for the value

  /// The integer view of the derived classes. It is here because there are four bytes of padding
  /// after the text.
  std::int32_t integer_ = 0;

 private:
  friend struct zon::NodeAccess;

  double double_ = 0.0;
};

#endif
