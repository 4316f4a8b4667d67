#include "tree/zonclob.h"

#include "base/zonassert.h"
#include "base/zonchars.h"
#include "base/zonout.h"
#include "tree/zonstri.h"

namespace {

constexpr std::string_view kOpener = "<CLOB:";
constexpr char kCloser = '>';

}  // namespace

CzonClob::CzonClob(const std::string& content) : CzonParam(content) {}

bool CzonClob::FindContent(std::string_view text, std::string_view* content) {
  // The opener ends with a colon, so opener and closer cannot share a character.
  if (!zon::EqualNoCase(text.substr(0, kOpener.size()), kOpener)) return false;
  if (text.back() != kCloser) return false;
  *content = text.substr(kOpener.size(), text.size() - kOpener.size() - 1);
  return true;
}

CzonClob* CzonClob::Parse(const std::string& text) {
  std::string_view content;
  return FindContent(text, &content) ? new CzonClob(std::string(content)) : nullptr;
}

CzonNode* CzonClob::CreateObj() {
  return new CzonClob;
}
int CzonClob::IsClob() const {
  return 1;
}

std::ostream& CzonClob::Write(std::ostream& out) const {
  zon::Put(out, "'");
  zon::Put(out, kOpener);
  zon::PutDoublingQuotes(out, GetTextView());
  zon::Put(out, ">'");
  return out;
}

void CzonClob::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* Node = dynamic_cast<const CzonClob*>(source);
  ZON_ASSERT_TEXT(Node != nullptr, "zonclob", "Node");
  CzonParam::Copy(source);
}
