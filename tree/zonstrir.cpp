// Texts in variables of the host. A reference to a buffer needs a pointer variable as well: it is
// in cell_, which the copies of the reference share. Tested by tests/build_test.cpp.
#include "base/zonassert.h"
#include "tree/zonquotedtext.h"
#include "tree/zonreference.h"

CzonStringRef::CzonStringRef(char** variable) : variable_(variable) {}

CzonStringRef::~CzonStringRef() = default;

CzonStringRef* CzonStringRef::OfBuffer(char* buffer) {
  auto cell = std::make_shared<char*>(buffer);
  auto* reference = new CzonStringRef(cell.get());
  reference->cell_ = std::move(cell);
  return reference;
}

const std::string& CzonStringRef::GetString() const {
  const char* text = variable_ != nullptr ? *variable_ : nullptr;
  current_.assign(text != nullptr ? text : "");
  return current_;
}

std::ostream& CzonStringRef::Write(std::ostream& out) const {
  zon::PutQuoted(out, GetString());
  return out;
}

void CzonStringRef::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* other = dynamic_cast<const CzonStringRef*>(source);
  ZON_ASSERT_TEXT(other != nullptr, "zonstrir", "Node");
  CzonString::Copy(source);
  cell_ = other->cell_;
  variable_ = other->variable_;
}
