// CString over std::string. Every operation reads the text through View() and changes it through
// Edit() or Splice(). So only these three and the buffer functions know that a buffer can be lent.
//
// A std::string may be written to only up to its size. While the buffer is lent, text_ is as long
// as the lent room, and lentLength_ is the length of the text; otherwise it is kNotLent. An
// argument can be a part of the text, or of the lent room, so it is read completely before the text
// changes.
//
// Letters and white space are those of base/zonchars.h: <cctype> depends on the locale of the host.
// Tested by tests/text_test.cpp.
#include "text/cstring.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <utility>

#include "base/zonchars.h"

namespace {

std::size_t Count(int count) {
  return count < 0 ? 0 : static_cast<std::size_t>(count);
}

std::size_t Clamp(int index, std::string_view text) {
  return std::min(Count(index), text.size());
}

int Length(std::size_t length) {
  return static_cast<int>(std::min<std::size_t>(length, INT_MAX));
}

int Position(std::size_t found) {
  return found == std::string_view::npos ? -1 : Length(found);
}

CString Part(std::string_view part) {
  return CString(std::string(part));
}

// Returns what printf would print; empty if it fails. Most results fit the local buffer; a longer
// one is printed again into memory of its size, so the arguments are copied for the second time.
// The result is separate from the CString: the format and its arguments can be parts of its text.
__attribute__((format(printf, 1, 0))) std::string Print(const char* format, std::va_list args) {
  if (!format) return std::string();
  char local[256];
  std::va_list again;
  va_copy(again, args);
  const int length = std::vsnprintf(local, sizeof local, format, args);
  std::string result;
  if (length >= static_cast<int>(sizeof local)) {
    result.resize(Count(length));
    std::vsnprintf(result.data(), result.size() + 1, format, again);
  } else {
    result.assign(local, Count(length));
  }
  va_end(again);
  return result;
}

// The part of the text that remains after stripping at the requested ends.
template <class F>
std::string_view Stripped(std::string_view text, bool left, bool right, F&& isStripped) {
  while (left && !text.empty() && isStripped(text.front())) text.remove_prefix(1);
  while (right && !text.empty() && isStripped(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

// ---- The text and the loan ----------------------------------------------------------------------

std::string& CString::Edit() {
  if (lentLength_ != kNotLent) text_.resize(lentLength_);
  lentLength_ = kNotLent;
  return text_;
}

// Replaces `count` characters by `part`. std::string allows a part of itself, but only within its
// size: a part of the lent room after the text is copied before the loan ends.
void CString::Splice(std::size_t at, std::size_t count, std::string_view part) {
  if (lentLength_ == kNotLent) {
    text_.replace(at, count, part.data(), part.size());
  } else {
    const std::string saved(part);
    Edit().replace(at, count, saved);
  }
}

char* CString::GetBuffer(int minLength) {
  const std::size_t length = View().size();
  text_.resize(std::max(text_.size(), Count(minLength)));
  lentLength_ = length;
  return text_.data();
}

char* CString::GetBufferSetLength(int length) {
  text_.resize(Count(length));  // resizes the room: keeps what the host wrote in it
  lentLength_ = kNotLent;       // the room is the text
  return text_.data();
}

void CString::ReleaseBuffer(int newLength) {
  const std::size_t end = newLength == -1 ? text_.find('\0') : Clamp(newLength, text_);
  text_.resize(std::min(end, text_.size()));
  lentLength_ = kNotLent;
}

void CString::Preallocate(int length) {
  if (Count(length) > text_.capacity()) text_.reserve(Count(length));  // or reserve may shrink it
}

void CString::FreeExtra() {
  Edit().shrink_to_fit();
}

// ---- Construct and assign -----------------------------------------------------------------------

CString::CString(const char* text) : text_(text ? text : "") {}

CString::CString(const char* text, int length)
    : text_(text ? text : "", text ? Count(length) : 0) {}

CString::CString(std::string text) : text_(std::move(text)) {}

CString::CString(const CString& other) : text_(other.View()) {}

CString::CString(CString&& other) noexcept
    : lentLength_(std::exchange(other.lentLength_, kNotLent)) {
  text_.swap(other.text_);  // a moved std::string need not be empty
}

CString& CString::operator=(const CString& other) {
  Splice(0, View().size(), other.View());
  return *this;
}

// By way of another object, so that a move to itself keeps the text.
CString& CString::operator=(CString&& other) noexcept {
  CString source(std::move(other));
  text_.swap(source.text_);
  std::swap(lentLength_, source.lentLength_);
  return *this;
}

CString& CString::operator=(const char* text) {
  Splice(0, View().size(), Text(text).view);
  return *this;
}

// ---- Get and compare ---------------------------------------------------------------------------

int CString::GetLength() const {
  return Length(View().size());
}

char CString::GetAt(int index) const {
  return At(Count(index));
}

int CString::Compare(Text other) const {
  const int order = View().compare(other.view);  // of any size: only the sign counts
  return (order > 0) - (order < 0);
}

int CString::CompareNoCase(Text other) const {
  const std::string_view a = View(), b = other.view;
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
    const unsigned char x = zon::Lower(a[i]);
    const unsigned char y = zon::Lower(b[i]);
    if (x != y) return x < y ? -1 : 1;
  }
  return (a.size() > b.size()) - (a.size() < b.size());
}

// ---- Parts and find -----------------------------------------------------------------------------

CString CString::Left(int count) const {
  return Part(View().substr(0, Count(count)));
}

CString CString::Right(int count) const {
  return Part(View().substr(View().size() - Clamp(count, View())));
}

CString CString::Mid(int first) const {
  return Part(View().substr(Clamp(first, View())));
}

CString CString::Mid(int first, int count) const {
  return Part(View().substr(Clamp(first, View()), Count(count)));
}

CString CString::SpanIncluding(Text set) const {
  return Part(View().substr(0, View().find_first_not_of(set.view)));
}

CString CString::SpanExcluding(Text set) const {
  return Part(View().substr(0, View().find_first_of(set.view)));
}

CString CString::Tokenize(Text delimiters, int& start) const {
  if (start == -1) return CString();  // an earlier call reported the end
  const std::string_view text = View();
  const std::size_t begin = text.find_first_not_of(delimiters.view, Clamp(start, text));
  if (begin == std::string_view::npos) {
    start = -1;
    return CString();
  }
  const std::size_t end = std::min(text.find_first_of(delimiters.view, begin), text.size());
  start = Length(end);
  return Part(text.substr(begin, end - begin));
}

int CString::Find(char c, int start) const {
  return Position(View().find(c, Count(start)));
}

int CString::Find(Text part, int start) const {
  return Position(View().find(part.view, Clamp(start, View())));
}

int CString::ReverseFind(char c) const {
  return Position(View().rfind(c));
}

int CString::FindOneOf(Text set) const {
  return Position(View().find_first_of(set.view));
}

// ---- Change -------------------------------------------------------------------------------------

void CString::Empty() {
  Edit().clear();
}

void CString::SetAt(int index, char c) {
  std::string& text = Edit();
  if (Count(index) < text.size()) text[Count(index)] = c;
}

void CString::Append(Text part) {
  Splice(View().size(), 0, part.view);
}

void CString::AppendChar(char c) {
  Edit().push_back(c);
}

CString& CString::operator+=(const CString& part) {
  Append(part);
  return *this;
}

CString& CString::operator+=(const char* part) {
  Append(part);
  return *this;
}

CString& CString::operator+=(char c) {
  AppendChar(c);
  return *this;
}

int CString::Insert(int index, char c) {
  Splice(Clamp(index, View()), 0, {&c, 1});
  return GetLength();
}

int CString::Insert(int index, Text part) {
  Splice(Clamp(index, View()), 0, part.view);
  return GetLength();
}

int CString::Delete(int index, int count) {
  Edit().erase(Clamp(index, View()), Count(count));
  return GetLength();
}

int CString::Remove(char c) {
  std::string& text = Edit();
  const std::size_t before = text.size();
  text.erase(std::remove(text.begin(), text.end(), c), text.end());
  return Length(before - text.size());
}

int CString::Replace(char oldChar, char newChar) {
  std::size_t replaced = 0;
  for (char& c : Edit()) {
    if (c != oldChar) continue;
    c = newChar;
    ++replaced;
  }
  return Length(replaced);
}

int CString::Replace(Text oldPart, Text newPart) {
  const std::string_view text = View(), old = oldPart.view;
  if (old.empty()) return 0;
  std::string result;
  std::size_t replaced = 0, from = 0;
  for (std::size_t at; (at = text.find(old, from)) != std::string_view::npos; ++replaced) {
    result.append(text, from, at - from).append(newPart.view);
    from = at + old.size();
  }
  // Assigned at the end: oldPart and newPart may be parts of this text.
  if (replaced) *this = Part(result.append(text, from));
  return Length(replaced);
}

CString& CString::MakeUpper() {
  std::string& text = Edit();
  std::transform(text.begin(), text.end(), text.begin(), zon::Upper);
  return *this;
}

CString& CString::MakeLower() {
  std::string& text = Edit();
  std::transform(text.begin(), text.end(), text.begin(),
                 [](char c) { return static_cast<char>(zon::Lower(c)); });
  return *this;
}

CString& CString::MakeReverse() {
  std::string& text = Edit();
  std::reverse(text.begin(), text.end());
  return *this;
}

CString& CString::Strip(std::string_view set, bool left, bool right) {
  const auto isStripped = [set](char c) { return set.find(c) != std::string_view::npos; };
  return Shorten(Stripped(View(), left, right, isStripped));
}

CString& CString::StripSpace(bool left, bool right) {
  const auto isStripped = [](char c) { return zon::IsClass(c, zon::kSpace); };
  return Shorten(Stripped(View(), left, right, isStripped));
}

// `part` is a part of the text. The end is cut off first, because cutting the front moves the rest.
CString& CString::Shorten(std::string_view part) {
  const auto begin = static_cast<std::size_t>(part.data() - text_.data());
  Edit().resize(begin + part.size());
  text_.erase(0, begin);
  return *this;
}

CString& CString::Trim() {
  return StripSpace(true, true);
}
CString& CString::Trim(char c) {
  return Strip({&c, 1}, true, true);
}
CString& CString::Trim(Text set) {
  return Strip(set.view, true, true);
}
CString& CString::TrimLeft() {
  return StripSpace(true, false);
}
CString& CString::TrimLeft(char c) {
  return Strip({&c, 1}, true, false);
}
CString& CString::TrimLeft(Text set) {
  return Strip(set.view, true, false);
}
CString& CString::TrimRight() {
  return StripSpace(false, true);
}
CString& CString::TrimRight(char c) {
  return Strip({&c, 1}, false, true);
}
CString& CString::TrimRight(Text set) {
  return Strip(set.view, false, true);
}

// ---- Format -------------------------------------------------------------------------------------

void CString::FormatV(const char* format, std::va_list args) {
  *this = Part(Print(format, args));
}

void CString::AppendFormatV(const char* format, std::va_list args) {
  Append(Print(format, args));
}

void CString::Format(const char* format, ...) {
  std::va_list args;
  va_start(args, format);
  FormatV(format, args);
  va_end(args);
}

void CString::AppendFormat(const char* format, ...) {
  std::va_list args;
  va_start(args, format);
  AppendFormatV(format, args);
  va_end(args);
}
