#include "saving/zonplainlist.h"

#include <algorithm>
#include <cstring>
#include <typeinfo>

#include "base/zonlexeme.h"
#include "base/zonnumber.h"
#include "base/zonnumberscan.h"
#include "paths/zonfilename.h"
#include "tree/zonbool.h"
#include "tree/zonclob.h"
#include "tree/zonint.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonreal.h"
#include "tree/zonstring.h"

namespace zon {
namespace {

// The characters of a value in a list, and the mark before and after them, 0 for none.
struct PlainText {
  std::string_view text;
  char mark = 0;
};

bool GivesReal(const CzonReal& real, std::string_view text) {
  const auto marksReal = [](char c) { return c == '.' || c == 'e' || c == 'E'; };
  return std::any_of(text.begin(), text.end(), marksReal) &&
         AreSameReals(real.CzonReal::GetDouble(), TextToDouble(text));
}

// False for a value that is not certain to be the one that its text gives.
bool FindPlainText(const CzonNode& value, PlainText* plain) {
  if (!value.GetRemark().empty()) return false;
  const std::type_info* type = &typeid(value);
  const bool isReal = type == &typeid(CzonReal);
  const bool isBool = type == &typeid(CzonBool);
  if (type == &typeid(CzonString)) {
    plain->mark = '\'';
  } else if (type == &typeid(CzonFilename)) {
    plain->mark = '|';
  } else if (type == &typeid(CzonDateTime)) {
    plain->mark = '#';
  } else if (!isReal && !isBool && type != &typeid(CzonInt)) {
    return false;
  }
  plain->text = NodeAccess::GetTextView(static_cast<const CzonParam&>(value));
  std::string_view content;
  if (plain->mark == '\'') return !NodeAccess::FindContent<CzonClob>(plain->text, &content);
  if (isReal) return GivesReal(static_cast<const CzonReal&>(value), plain->text);
  return !isBool || EqualNoCase(plain->text, value.GetBool() != 0 ? "true" : "false");
}

// Walks along the values of a list.
class ListWalk {
 public:
  explicit ListWalk(std::string_view list) : at_(list.data()), end_(at_ + list.size()) {}

  const char* At() const { return at_; }
  bool IsAtEnd() const { return at_ == end_; }

  // Goes to the next value, after its comma; false if there is none.
  bool FindNext() {
    if (!isFirst_ && (at_ == end_ || *at_++ != ',')) return false;
    isFirst_ = false;
    at_ = SkipSpace(at_, end_);
    return at_ < end_;
  }

  // Goes to the end of the value; false if it is another one.
  bool Skip(const PlainText& plain) {
    const std::size_t marks = plain.mark != 0 ? 1 : 0;
    const std::size_t size = plain.text.size();
    if (Rest() < size + 2 * marks || size + marks == 0) return false;
    if (marks > 0 && (*at_ != plain.mark || at_[size + 1] != plain.mark)) return false;
    if (std::memcmp(at_ + marks, plain.text.data(), size) != 0) return false;
    const char* const next = SkipSpace(at_ + size + 2 * marks, end_);
    if (next < end_ && *next != ',') return false;
    at_ = next;
    return true;
  }

  // Goes to the end of any value, and returns its text with its marks.
  std::string_view SkipOther() {
    const char* const begin = at_;
    const bool hasMark = *at_ == '\'' || *at_ == '|' || *at_ == '#';
    const char* const closer = hasMark ? FindChar(*at_, at_ + 1, end_) : FindChar(',', at_, end_);
    const char* const end = closer != nullptr ? closer + (hasMark ? 1 : 0) : end_;
    at_ = SkipSpace(end, end_);
    return TextBetween(begin, TrimEnd(begin, end));
  }

 private:
  std::size_t Rest() const { return static_cast<std::size_t>(end_ - at_); }

  const char* at_;
  const char* end_;
  bool isFirst_ = true;
};

}  // namespace

void MatchPlainList(const CzonNamedNode& keyword, std::string_view list, PlainListMatch* match) {
  match->isSame = false;
  match->changed = nullptr;
  match->places.clear();
  const CzonNode* changed = nullptr;
  ListWalk walk(list);
  for (const CzonNode* value : NodeAccess::Children(keyword)) {
    PlainText plain;
    if (!FindPlainText(*value, &plain) || !walk.FindNext()) return;
    match->places.push_back(walk.At() + (plain.mark != 0 ? 1 : 0));
    if (walk.Skip(plain)) continue;
    if (changed != nullptr || &typeid(*value) != &typeid(CzonReal)) return;
    changed = value;
    match->changedText = walk.SkipOther();
    if (GivesReal(static_cast<const CzonReal&>(*value), match->changedText)) return;
  }
  if (!walk.IsAtEnd() || match->places.empty()) return;
  match->isSame = changed == nullptr;
  match->changed = changed;
}

}  // namespace zon
