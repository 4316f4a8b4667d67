// Tested by tests/grammar_test.cpp.
#include "reader/zonvalues.h"

#include <array>

#include "base/zonchars.h"
#include "base/zondecim.h"
#include "base/zonnumtx.h"
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
CzonNode* MakeRead(Store& store, std::string_view text) {
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

// The texts of one list, one behind the other.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

  const char* At() const { return at_; }
  bool IsAtEnd() const { return at_ == end_; }
  bool HasPassedNewline() const { return hasNewline_; }

  void PassSpace() {
    for (; at_ < end_ && IsClass(static_cast<unsigned char>(*at_), kSpace); ++at_) {
      if (*at_ == '\n') hasNewline_ = true;
    }
  }

  bool PassIf(char c) {
    if (at_ == end_ || *at_ != c) return false;
    ++at_;
    return true;
  }

  // The token that makes a plain value, 0 for anything else, and the text for MakeValue.
  int PassValue(std::string_view* text) {
    if (at_ == end_) return 0;
    if (IsNumberStart(*at_)) return PassNumber(text);
    switch (*at_) {
      case '\'':
        return PassString(text);
      case '|':
        return PassDelimited(FILENAME, text);
      case '#':
        return PassDelimited(DATETIME, text);
      default:
        return PassBoolean(text);
    }
  }

  // The number that stands next, made on the way; null where it is not a short one.
  CzonNode* MakeShortNumber(Store& store) {
    const bool negative = *at_ == '-';
    Decimal number;
    const char* const behind = number.Read(at_ + (negative ? 1 : 0), end_);
    double value = 0.0;
    if (behind == nullptr || !number.ToDouble(negative, &value)) return nullptr;
    const std::string_view text = Taken(behind);
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
  std::string_view Taken(const char* behind) {
    const std::string_view text(at_, static_cast<std::size_t>(behind - at_));
    at_ = behind;
    return text;
  }

  int PassNumber(std::string_view* text) {
    const bool hasSign = *at_ == '-' || *at_ == '+';
    bool isWhole = false;
    const char* const behind = zon::PassNumber(at_ + (hasSign ? 1 : 0), end_, &isWhole);
    if (behind == nullptr) return 0;
    *text = Taken(behind);
    return isWhole ? INTEGER : REAL;
  }

  int PassBoolean(std::string_view* text) {
    const std::string_view word(at_, WordLength(at_, end_));
    if (!EqualNoCase(word, "true") && !EqualNoCase(word, "false")) return 0;
    *text = Taken(at_ + word.size());
    return BOOLEAN;
  }

  const char* Find(char c, const char* from) const {
    if (from == end_) return nullptr;
    return static_cast<const char*>(std::memchr(from, c, static_cast<std::size_t>(end_ - from)));
  }

  int PassString(std::string_view* text) {
    const char* const quote = Find('\'', at_ + 1);
    // A doubled quote stands for one: such a text is not what stands in the file.
    if (quote == nullptr || (quote + 1 < end_ && quote[1] == '\'')) return 0;
    *text = Content(quote);
    hasNewline_ = hasNewline_ || text->find('\n') != std::string_view::npos;
    return STRING;
  }

  int PassDelimited(int token, std::string_view* text) {
    const char* const behind = Find(*at_, at_ + 1);
    if (behind == nullptr) return 0;
    *text = Content(behind);
    return text->find('\n') == std::string_view::npos ? token : 0;
  }

  // Between the delimiters.
  std::string_view Content(const char* closer) {
    const std::string_view whole = Taken(closer + 1);
    return whole.substr(1, whole.size() - 2);
  }

  const char* at_;
  const char* end_;
  bool hasNewline_ = false;
};

}  // namespace

CzonNode* MakeValue(Store& store, int token, std::string_view text) {
  switch (token) {
    case INTEGER:
      return MakeRead<CzonInt>(store, text);
    case REAL:
      return MakeRead<CzonReal>(store, text);
    case BOOLEAN:
      return MakeRead<CzonBool>(store, text);
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

PlainValues PassPlainValues(std::string_view text) {
  PlainValues passed;
  Cursor cursor(text);
  for (;;) {
    cursor.PassSpace();
    std::string_view value;
    if (cursor.PassValue(&value) == 0) return passed;
    const char* const end = cursor.At();
    const bool hasNewline = cursor.HasPassedNewline();
    cursor.PassSpace();
    // The end of what can be seen, a remark or perhaps a comment: this value is left to others.
    if (cursor.IsAtEnd() || *cursor.At() == '{' || *cursor.At() == ';' || *cursor.At() == '/') {
      return passed;
    }
    passed.end = end;
    passed.isWhole = !cursor.PassIf(',');
    passed.next = passed.isWhole ? end : cursor.At();
    passed.hasNewline = passed.isWhole ? hasNewline : cursor.HasPassedNewline();
    if (passed.isWhole) return passed;
  }
}

void MakePlainValues(CzonKeyword& keyword, std::string_view text) {
  Store& store = *keyword.GetStore();
  std::array<CzonNode*, 64> made;
  std::uint32_t count = 0;
  Cursor cursor(text);
  do {
    cursor.PassSpace();
    CzonNode* node = IsNumberStart(*cursor.At()) ? cursor.MakeShortNumber(store) : nullptr;
    if (node == nullptr) {
      std::string_view value;
      const int token = cursor.PassValue(&value);
      node = MakeValue(store, token, value);
    }
    made[count++] = node;
    if (count == made.size()) {
      keyword.AppendNew(made.data(), count);
      count = 0;
    }
    cursor.PassSpace();
  } while (cursor.PassIf(','));
  keyword.AppendNew(made.data(), count);
}

}  // namespace zon
