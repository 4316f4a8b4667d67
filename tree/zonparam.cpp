// The base of values, and the values without data of their own. The text is a zon::Text
// (zonnodetext.h): a view of the file until a change or a std::string is requested.
// Tested by tests/values_test.cpp and tests/edit_test.cpp.
#include "tree/zonparam.h"

#include "base/zonput.h"
#include "tree/zonnodeaccess.h"

CzonParam::CzonParam(const std::string& text) {
  zon::Assign(text_, text, nullptr);
}

CzonParam::~CzonParam() {
  zon::Release(text_);
}

CzonNode* CzonParam::CreateObj() {
  return new CzonParam;
}

unsigned int CzonParam::GetNoInstances() const {
  return GetOwner() != nullptr ? GetOwner()->GetNoParams() : 0;
}

int CzonParam::IsParam() const {
  return 1;
}

std::ostream& CzonParam::Write(std::ostream& out) const {
  zon::Put(out, zon::View(text_));
  return out;
}

int CzonParam::GetSyntaxClass() const {
  return kZonParam;
}

void CzonParam::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* param = dynamic_cast<const CzonParam*>(source);
  if (param == nullptr) return;
  CzonNode::Copy(source);
  SetText(zon::View(param->text_), GetArena());
}

const std::string& CzonParam::GetText() const {
  const std::string& text = zon::AsString(text_, GetArena());
  NoteOwnedText();
  return text;
}

const char* CzonParam::GetChars() const {
  zon::Arena* arena = GetArena();
  return arena != nullptr ? zon::Terminated(text_, *arena) : GetText().c_str();
}

// Call after the text may have become a string in the free store, which the destructor releases.
void CzonParam::NoteOwnedText() const {
  if (zon::OwnsString(text_) && Has(kInArena)) const_cast<CzonParam*>(this)->MarkDeep();
}

void CzonParam::SetText(std::string_view text, zon::Arena* arena) {
  const void* const former = text_.where;
  zon::Assign(text_, text, arena);
  if (arena != nullptr && text_.where != former) Set(kOwnText);
  NoteOwnedText();
}

void CzonParam::AppendText(std::string_view text) {
  zon::Append(text_, text, GetArena());
  NoteOwnedText();
}

CzonUndefinedPar::CzonUndefinedPar(const std::string& text) : CzonParam(text) {}
CzonNode* CzonUndefinedPar::CreateObj() {
  return new CzonUndefinedPar;
}
int CzonUndefinedPar::IsUndefinedPar() const {
  return 1;
}
int CzonUndefinedPar::GetSyntaxClass() const {
  return kZonUndefinedPar;
}

CzonUnknown::CzonUnknown(const std::string& text) : CzonParam(text) {}
CzonNode* CzonUnknown::CreateObj() {
  return new CzonUnknown;
}
int CzonUnknown::GetSyntaxClass() const {
  return kZonUnknown;
}

CzonSubstit::CzonSubstit(const std::string& text) : CzonParam(text) {}
CzonNode* CzonSubstit::CreateObj() {
  return new CzonSubstit;
}
int CzonSubstit::GetSyntaxClass() const {
  return kZonSubstit;
}

CzonDateTime::CzonDateTime(const std::string& text) : CzonParam(text) {}
CzonNode* CzonDateTime::CreateObj() {
  return new CzonDateTime;
}

std::ostream& CzonDateTime::Write(std::ostream& out) const {
  zon::Put(out, '#');
  zon::Put(out, zon::NodeAccess::GetTextView(*this));
  zon::Put(out, '#');
  return out;
}

// Compatibility: hosts expect the class of file names also for date-times.
int CzonDateTime::GetSyntaxClass() const {
  return kZonFilename;
}

CzonNode* CzonDefaultPar::CreateObj() {
  return new CzonDefaultPar;
}
int CzonDefaultPar::IsDefaultPar() const {
  return 1;
}
int CzonDefaultPar::GetSyntaxClass() const {
  return kZonDefaultPar;
}
