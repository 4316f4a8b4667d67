#include "saving/zonplainlist.h"

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

bool IsMade(const CzonReal& real, std::string_view text) {
  return text.find_first_of(".eE") != text.npos &&
         AreSameReals(real.CzonReal::GetDouble(), TextToDouble(text));
}

// False for a value that is not certain to be the one that its text gives.
bool FindPlainText(const CzonNode& value, PlainText* plain) {
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
  if (isReal) return IsMade(static_cast<const CzonReal&>(value), plain->text);
  return !isBool || EqualNoCase(plain->text, value.GetBool() != 0 ? "true" : "false");
}

// The end of the value at a place of a list; null if another value is there.
const char* SkipPlainText(const PlainText& plain, const char* at, const char* end) {
  const std::size_t marks = plain.mark != 0 ? 1 : 0;
  const std::size_t size = plain.text.size();
  if (static_cast<std::size_t>(end - at) < size + 2 * marks || size + marks == 0) return nullptr;
  if (marks > 0 && (*at != plain.mark || at[size + 1] != plain.mark)) return nullptr;
  if (std::memcmp(at + marks, plain.text.data(), size) != 0) return nullptr;
  return at + size + 2 * marks;
}

}  // namespace

bool MatchPlainList(const CzonNamedNode& keyword, std::string_view list,
                    std::vector<const char*>* places) {
  places->clear();
  const char* at = list.data();
  const char* const end = at + list.size();
  for (const CzonNode* value : NodeAccess::Children(keyword)) {
    PlainText plain;
    if (!value->GetRemark().empty() || !FindPlainText(*value, &plain)) return false;
    if (!places->empty() && (at == end || *at++ != ',')) return false;
    at = SkipSpace(at, end);
    places->push_back(at + (plain.mark != 0 ? 1 : 0));
    at = SkipPlainText(plain, at, end);
    if (at == nullptr) return false;
    at = SkipSpace(at, end);
  }
  return at == end && !places->empty();
}

}  // namespace zon
