// Tested by tests/grammar_test.cpp.
#include "reader/zonvaluelist.h"

#include <array>

#include "base/zonlexeme.h"
#include "base/zonnumberscan.h"
#include "paths/zonfilen.h"
#include "reader/zonparser.h"
#include "tree/zonbool.h"
#include "tree/zonclob.h"
#include "tree/zonint.h"
#include "tree/zonkeyw.h"
#include "tree/zonreal.h"
#include "tree/zonstri.h"

namespace zon {
namespace {

template <class T>
T* Make(Store& store, std::string_view text) {
  T* node = CzonNode::Make<T>(store);
  node->SetStoredText(text);
  return node;
}

template <class T>
CzonNode* MakeConverted(Store& store, std::string_view text) {
  T* node = Make<T>(store, text);
  node->ReadText();
  return node;
}

CzonNode* MakeString(Store& store, std::string_view text) {
  std::string_view content;
  if (!CzonClob::FindContent(text, &content)) return Make<CzonString>(store, text);
  return Make<CzonClob>(store, content);
}

bool IsNumberStart(char c) {
  return IsDigit(c) || c == '.' || c == '-' || c == '+';
}

// Walks over the values of a list.
class Cursor {
 public:
  Cursor(const char* at, const char* end) : at_(at), end_(end) {}

  const char* At() const { return at_; }
  int Peek() const { return at_ < end_ ? static_cast<unsigned char>(*at_) : -1; }
  bool SkipIf(char c) {
    if (Peek() != static_cast<unsigned char>(c)) return false;
    ++at_;
    return true;
  }
  void SkipSpace() { at_ = zon::SkipSpace(at_, end_); }

  // Consumes a plain value. Returns its token, and stores the text that MakeValue takes; 0 if none
  // follows.
  __attribute__((always_inline)) int Take(std::string_view* text) {
    if (at_ == end_) return 0;
    if (IsNumberStart(*at_)) return TakeNumber(text);
    switch (*at_) {
      case '\'':
        return TakeString(text);
      case '|':
        return TakeDelimited(FILENAME, text);
      case '#':
        return TakeDelimited(DATETIME, text);
      default:
        return TakeBoolean(text);
    }
  }

  // Consumes a number and makes its node, converting it on the way; null if it is not a short one.
  CzonNode* TakeShortNumber(Store& store) {
    const bool negative = *at_ == '-';
    ShortNumber number;
    const char* const end = number.Read(at_ + (negative ? 1 : 0), end_);
    double value = 0.0;
    if (end == nullptr || !number.ToDouble(negative, &value)) return nullptr;
    const std::string_view text = TakeTo(end);
    if (number.IsWhole()) {
      auto* node = Make<CzonInt>(store, text);
      node->SetViews(value, negative ? -number.Whole() : number.Whole());
      return node;
    }
    auto* node = Make<CzonReal>(store, text);
    node->SetViews(value);
    return node;
  }

 private:
  std::string_view TakeTo(const char* end) {
    const std::string_view text(at_, static_cast<std::size_t>(end - at_));
    at_ = end;
    return text;
  }

  int TakeNumber(std::string_view* text) {
    const bool hasSign = *at_ == '-' || *at_ == '+';
    bool isWhole = false;
    const char* const end = SkipNumber(at_ + (hasSign ? 1 : 0), end_, &isWhole);
    if (end == nullptr) return 0;
    *text = TakeTo(end);
    return isWhole ? INTEGER : REAL;
  }

  int TakeBoolean(std::string_view* text) {
    const char* const end = SkipWord(at_, end_);
    const std::string_view word(at_, static_cast<std::size_t>(end - at_));
    if (!EqualNoCase(word, "true") && !EqualNoCase(word, "false")) return 0;
    *text = TakeTo(end);
    return BOOLEAN;
  }

  // A text with doubled quotes is not plain: it differs from its spelling.
  int TakeString(std::string_view* text) {
    const char* const quote = FindChar('\'', at_ + 1, end_);
    if (quote == nullptr || (quote + 1 < end_ && quote[1] == '\'')) return 0;
    *text = TakeContent(quote);
    return STRING;
  }

  int TakeDelimited(int token, std::string_view* text) {
    const char* const closer = FindChar(*at_, at_ + 1, end_);
    if (closer == nullptr) return 0;
    *text = TakeContent(closer);
    return text->find('\n') == std::string_view::npos ? token : 0;
  }

  // Between the delimiters.
  std::string_view TakeContent(const char* closer) {
    const std::string_view whole = TakeTo(closer + 1);
    return whole.substr(1, whole.size() - 2);
  }

  const char* at_;
  const char* end_;
};

// Whether the place of a value holds more than the value: a remark, or what may be a comment.
bool IsRemarkOrComment(int c) {
  return c == '{' || c == ';' || c == '/';
}

}  // namespace

CzonNode* MakeValue(Store& store, int token, std::string_view text) {
  switch (token) {
    case INTEGER:
      return MakeConverted<CzonInt>(store, text);
    case REAL:
      return MakeConverted<CzonReal>(store, text);
    case BOOLEAN:
      return MakeConverted<CzonBool>(store, text);
    case STRING:
      return MakeString(store, UpToZero(text));
    case DATETIME:
      return Make<CzonDateTime>(store, UpToZero(text));
    case FILENAME:
      return Make<CzonFilename>(store, UpToZero(text));
    default:
      return nullptr;
  }
}

PlainValues FindValues(const char* at, const char* end) {
  PlainValues plain;
  Cursor cursor(at, end);
  while (!plain.isWhole) {
    cursor.SkipSpace();
    std::string_view value;
    if (cursor.Take(&value) == 0) break;
    const char* const endOfValue = cursor.At();
    cursor.SkipSpace();
    // What follows the value must be visible: it may belong to it.
    const int next = cursor.Peek();
    if (next < 0 || IsRemarkOrComment(next)) break;
    plain.end = endOfValue;
    plain.isWhole = !cursor.SkipIf(',');
  }
  return plain;
}

void MakePlainValues(CzonKeyword& keyword, std::string_view text) {
  Store& store = *keyword.GetStore();
  std::array<CzonNode*, 64> made;
  std::uint32_t count = 0;
  Cursor cursor(text.data(), text.data() + text.size());
  do {
    cursor.SkipSpace();
    CzonNode* node = IsNumberStart(*cursor.At()) ? cursor.TakeShortNumber(store) : nullptr;
    if (node == nullptr) {
      std::string_view value;
      const int token = cursor.Take(&value);
      node = MakeValue(store, token, value);
    }
    made[count++] = node;
    if (count == made.size()) {
      keyword.AppendNew(made.data(), count);
      count = 0;
    }
    cursor.SkipSpace();
  } while (cursor.SkipIf(','));
  keyword.AppendNew(made.data(), count);
}

}  // namespace zon
