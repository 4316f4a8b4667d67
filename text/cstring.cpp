// CString over std::string. All operations see the text through View(), all changes go through
// Edit() or Splice(), so that only these three and the buffer functions know of the loan of a
// buffer (GetBuffer). A std::string may be written to only up to its size: while the buffer is
// lent, text_ is as long as the room, and lentLength_ remembers the length of the text. Case and
// white space are spelled out here, for <cctype> follows the host's locale.
#include "text/cstring.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <utility>

namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

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

// A text of its own, so that format and arguments stay readable wherever they are while it is made.
__attribute__((format(printf, 1, 0))) std::string Print(const char* format, std::va_list args) {
  if (!format) return std::string();
  char few[256];
  std::va_list again;
  va_copy(again, args);
  const int length = std::vsnprintf(few, sizeof few, format, args);
  std::string all;
  if (length >= static_cast<int>(sizeof few)) {
    all.resize(Count(length));
    std::vsnprintf(all.data(), all.size() + 1, format, again);
  } else {
    all.assign(few, Count(length));
  }
  va_end(again);
  return all;
}

}  // namespace

// ---- The text and the loan ----------------------------------------------------------------------

std::string& CString::Edit() {
  if (lentLength_ != kNotLent) text_.resize(lentLength_);
  lentLength_ = kNotLent;
  return text_;
}

// Puts `part` in the place of `count` characters. std::string copes with a part of itself, but only
// within its size: a part of the room behind the text has to be saved before the loan ends.
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
  text_.resize(Count(length));  // of the room: what was written there meanwhile counts
  lentLength_ = kNotLent;       // room and text are one
  return text_.data();
}

void CString::ReleaseBuffer(int newLength) {
  const std::size_t end = newLength == -1 ? text_.find('\0') : Clamp(newLength, text_);
  text_.resize(std::min(end, text_.size()));
  lentLength_ = kNotLent;
}

void CString::Preallocate(int length) {
  if (Count(length) > text_.capacity()) text_.reserve(Count(length));  // a smaller one may shrink
}

void CString::FreeExtra() {
  Edit().shrink_to_fit();
}

// ---- Make and assign ----------------------------------------------------------------------------

CString::CString(const char* text) : text_(text ? text : "") {}

CString::CString(const char* text, int length)
    : text_(text ? text : "", text ? Count(length) : 0) {}

CString::CString(std::string text) : text_(std::move(text)) {}

CString::CString(const CString& other) : text_(other.View()) {}

CString::CString(CString&& other) noexcept
    : lentLength_(std::exchange(other.lentLength_, kNotLent)) {
  text_.swap(other.text_);  // not moved: the source has to be empty, not just anything
}

CString& CString::operator=(const CString& other) {
  Splice(0, View().size(), other.View());
  return *this;
}

CString& CString::operator=(CString&& other) noexcept {
  CString taken(std::move(other));
  text_.swap(taken.text_);
  std::swap(lentLength_, taken.lentLength_);
  return *this;
}

CString& CString::operator=(const char* text) {
  Splice(0, View().size(), Text(text).view);
  return *this;
}

// ---- Look and compare ---------------------------------------------------------------------------

int CString::GetLength() const {
  return Length(View().size());
}

char CString::GetAt(int index) const {
  return At(Count(index));
}

int CString::Compare(Text other) const {
  const int order = View().compare(other.view);
  return (order > 0) - (order < 0);
}

int CString::CompareNoCase(Text other) const {
  const std::string_view a = View(), b = other.view;
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
    const auto x = static_cast<unsigned char>(Lower(a[i]));
    const auto y = static_cast<unsigned char>(Lower(b[i]));
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
  if (start == -1) return CString();  // the end that an earlier call has reported
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
  if (replaced) *this = Part(result.append(text, from));
  return Length(replaced);
}

CString& CString::MakeUpper() {
  std::string& text = Edit();
  std::transform(text.begin(), text.end(), text.begin(), Upper);
  return *this;
}

CString& CString::MakeLower() {
  std::string& text = Edit();
  std::transform(text.begin(), text.end(), text.begin(), Lower);
  return *this;
}

CString& CString::MakeReverse() {
  std::string& text = Edit();
  std::reverse(text.begin(), text.end());
  return *this;
}

// `set` may be a part of the text, hence both ends are found before the first change.
CString& CString::Strip(std::string_view set, bool left, bool right) {
  const std::string_view text = View();
  const std::size_t begin = left ? std::min(text.find_first_not_of(set), text.size()) : 0;
  const std::size_t end = right ? text.find_last_not_of(set) + 1 : text.size();  // npos + 1 is 0
  Edit().resize(end);
  text_.erase(0, begin);
  return *this;
}

CString& CString::Trim() {
  return Strip(kWhiteSpace, true, true);
}
CString& CString::Trim(char c) {
  return Strip({&c, 1}, true, true);
}
CString& CString::Trim(Text set) {
  return Strip(set.view, true, true);
}
CString& CString::TrimLeft() {
  return Strip(kWhiteSpace, true, false);
}
CString& CString::TrimLeft(char c) {
  return Strip({&c, 1}, true, false);
}
CString& CString::TrimLeft(Text set) {
  return Strip(set.view, true, false);
}
CString& CString::TrimRight() {
  return Strip(kWhiteSpace, false, true);
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
