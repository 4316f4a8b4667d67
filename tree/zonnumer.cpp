// The double and the float view of numbers. Tested by tests/values_test.cpp.
#include "tree/zonnumer.h"

#include <cfloat>
#include <cmath>
#include <locale>
#include <sstream>

#include "base/zonassert.h"
#include "base/zonnumber.h"
#include "tree/zonnodeaccess.h"

CzonNumeric::CzonNumeric(const std::string& text) : CzonParam(text) {
  CStoReals();
}

int CzonNumeric::IsNumeric() const {
  return 1;
}

int CzonNumeric::IsFloat() const {
  return Has(kHasDouble) && !(std::fabs(double_) > static_cast<double>(FLT_MAX));
}

int CzonNumeric::IsDouble() const {
  return Has(kHasDouble);
}

float CzonNumeric::GetFloat() const {
  return FloatView(double_);
}

double CzonNumeric::GetDouble() const {
  return double_;
}

void CzonNumeric::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* other = dynamic_cast<const CzonNumeric*>(source);
  ZON_ASSERT_TEXT(other != nullptr, "zonnumer", "Node");
  CzonParam::Copy(source);
  Set(kHasDouble, other->Has(kHasDouble));
  double_ = other->double_;
}

float CzonNumeric::FloatView(double value) {
  const double magnitude = std::fabs(value);
  if (magnitude > static_cast<double>(FLT_MAX)) return value > 0 ? FLT_MAX : -FLT_MAX;
  // Compatibility: hosts rely on subnormal floats being flushed.
  if (magnitude < static_cast<double>(FLT_MIN)) return 0.0F;
  return static_cast<float>(value);
}

void CzonNumeric::Init() {
  Set(kHasDouble, false);
  double_ = 0.0;
}

void CzonNumeric::CStoReals() {
  Double(zon::TextToDouble(zon::NodeAccess::GetTextView(*this)));
}

double CzonNumeric::string_to_double(const std::string& s) {
  std::istringstream in(s);
  in.imbue(std::locale::classic());
  double value = 0.0;
  in >> value;
  return value;
}
