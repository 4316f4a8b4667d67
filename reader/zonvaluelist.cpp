// Tested by tests/grammar_test.cpp.
#include "reader/zonvaluelist.h"

#include <array>

#include "base/zonlexeme.h"
#include "base/zonnumberblock.h"
#include "base/zonnumberscan.h"
#include "paths/zonfilename.h"
#include "reader/zontokencode.h"
#include "tree/zonbool.h"
#include "tree/zonclob.h"
#include "tree/zonint.h"
#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonreal.h"
#include "tree/zonstring.h"

namespace zon {
namespace {

template <class T>
T* Make(Arena& arena, std::string_view text) {
  T* node = NodeAccess::Make<T>(arena);
  NodeAccess::ReferToText(*node, text);
  return node;
}

template <class T>
CzonNode* MakeConverted(Arena& arena, std::string_view text) {
  T* node = Make<T>(arena, text);
  NodeAccess::ReadText(*node);
  return node;
}

// A copy of a text has its origin in the bytes before it, and so must have the content of a packed
// list. In the file the opening quote is there, which is no last byte of a pointer.
CzonNode* MakeString(Arena& arena, std::string_view text) {
  std::string_view content;
  if (!NodeAccess::FindContent<CzonClob>(text, &content)) return Make<CzonString>(arena, text);
  if (text.data()[-1] != '\'') {
    const char* const origin = OriginOfCopy(text.data());
    const char* const place = origin != nullptr ? origin + kClobLead : nullptr;
    content = {arena.CopyText(content, place), content.size()};
  }
  return Make<CzonClob>(arena, content);
}

bool IsNumberStart(char c) {
  return IsDigit(c) || c == '.' || c == '-' || c == '+';
}

// Walks over the values of a list.
class ValueCursor {
 public:
  ValueCursor(const char* at, const char* end) : at_(at), end_(end) {}

  const char* At() const { return at_; }
  void MoveTo(const char* at) { at_ = at; }
  int Peek() const { return at_ < end_ ? static_cast<unsigned char>(*at_) : -1; }
  bool ConsumeIf(char c) {
    if (Peek() != static_cast<unsigned char>(c)) return false;
    ++at_;
    return true;
  }
  void SkipSpace() { at_ = zon::SkipSpace(at_, end_); }

  // Consumes a plain value. Returns its token, and stores the text for MakeValue; 0 if none
  // follows. After 0 the cursor is unspecified.
  // Inlined into its two callers: FindValues takes an eighth less time (measured with g++ -O2).
  __attribute__((always_inline)) int ConsumeValue(std::string_view* text) {
    if (at_ == end_) return 0;
    if (IsNumberStart(*at_)) return ConsumeNumber(text);
    switch (*at_) {
      case '\'':
        return ConsumeString(text);
      case '|':
        return ConsumeDelimited(FILENAME, text);
      case '#':
        return ConsumeDelimited(DATETIME, text);
      default:
        return ConsumeBoolean(text);
    }
  }

  // At a number: makes its node and consumes it if ShortNumber can convert it; else null and
  // nothing is consumed.
  CzonNode* ConsumeShortNumber(Arena& arena) {
    const bool negative = *at_ == '-';
    ShortNumber number;
    const char* const end = number.Read(at_ + (negative ? 1 : 0), end_);
    double value = 0.0;
    if (end == nullptr || !number.ToDouble(negative, &value)) return nullptr;
    const std::string_view text = ConsumeTo(end);
    if (number.IsWhole()) {
      auto* node = Make<CzonInt>(arena, text);
      NodeAccess::SetViews(*node, value, negative ? -number.Whole() : number.Whole());
      return node;
    }
    auto* node = Make<CzonReal>(arena, text);
    NodeAccess::SetViews(*node, value);
    return node;
  }

 private:
  std::string_view ConsumeTo(const char* end) {
    const std::string_view text = TextBetween(at_, end);
    at_ = end;
    return text;
  }

  int ConsumeNumber(std::string_view* text) {
    const bool hasSign = *at_ == '-' || *at_ == '+';
    bool isWhole = false;
    const char* const end = SkipNumber(at_ + (hasSign ? 1 : 0), end_, &isWhole);
    if (end == nullptr) return 0;
    *text = ConsumeTo(end);
    return isWhole ? INTEGER : REAL;
  }

  int ConsumeBoolean(std::string_view* text) {
    const std::string_view word = *at_ == 't' || *at_ == 'T' ? "true" : "false";
    if (static_cast<std::size_t>(end_ - at_) < word.size()) return 0;
    const char* const end = at_ + word.size();
    if (!EqualNoCase({at_, word.size()}, word)) return 0;
    if (end != end_ && IsClass(*end, kWord)) return 0;
    *text = ConsumeTo(end);
    return BOOLEAN;
  }

  // A text with doubled quotes is not plain: it differs from its spelling.
  int ConsumeString(std::string_view* text) {
    const char* const quote = FindChar('\'', at_ + 1, end_);
    if (quote == nullptr || (quote + 1 < end_ && quote[1] == '\'')) return 0;
    *text = ConsumeContent(quote);
    return STRING;
  }

  int ConsumeDelimited(int token, std::string_view* text) {
    const char* const closer = FindChar(*at_, at_ + 1, end_);
    if (closer == nullptr) return 0;
    *text = ConsumeContent(closer);
    return text->find('\n') == std::string_view::npos ? token : 0;
  }

  // Between the delimiters.
  std::string_view ConsumeContent(const char* closer) {
    const std::string_view whole = ConsumeTo(closer + 1);
    return whole.substr(1, whole.size() - 2);
  }

  const char* at_;
  const char* end_;
};

// After so many values the next ones are tried in blocks. Most lists are shorter, and a block would
// cost them more than it gains. After a block that fails it is twice as many: a list of values that
// no block accepts, such as those with exponents, costs few attempts.
constexpr unsigned kBeforeBlocks = 13;

// The comma after the last value of the blocks that begin at `at`; null if there is none. Out of
// line: inlined into FindValues it would cost a load of short lists 2 %.
__attribute__((noinline)) const char* LastCommaOfBlocks(const char* at, const char* end) {
  const char* last = nullptr;
  while (end - at >= CharBlock::kSize) {
    const char* const comma = LastCommaOfBlock(at);
    if (comma == nullptr) break;
    last = comma;
    at = comma + 1;
  }
  return last;
}

// Whether the character after a value begins a remark or may begin a comment.
bool IsRemarkOrComment(int c) {
  return c == '{' || c == ';' || c == '/';
}

}  // namespace

CzonNode* MakeValue(Arena& arena, int token, std::string_view text) {
  switch (token) {
    case INTEGER:
      return MakeConverted<CzonInt>(arena, text);
    case REAL:
      return MakeConverted<CzonReal>(arena, text);
    case BOOLEAN:
      return MakeConverted<CzonBool>(arena, text);
    case STRING:
      return MakeString(arena, UpToZero(text));
    case DATETIME:
      return Make<CzonDateTime>(arena, UpToZero(text));
    case FILENAME:
      return Make<CzonFilename>(arena, UpToZero(text));
    default:
      return nullptr;
  }
}

PlainValues FindValues(const char* at, const char* end) {
  PlainValues plain;
  ValueCursor cursor(at, end);
  unsigned step = kBeforeBlocks;
  unsigned nextBlocks = step;
  for (unsigned count = 1; !plain.isWhole; ++count) {
    if (count == nextBlocks) {
      const char* const comma = LastCommaOfBlocks(cursor.At(), end);
      if (comma != nullptr) {
        plain.end = comma;
        cursor.MoveTo(comma + 1);
      }
      step = comma != nullptr ? kBeforeBlocks : 2 * step;
      nextBlocks = count + step;
    }
    cursor.SkipSpace();
    std::string_view value;
    const int token = cursor.ConsumeValue(&value);
    if (token == 0) break;
    const char* const endOfValue = cursor.At();
    cursor.SkipSpace();
    if (!cursor.ConsumeIf(',')) {
      const int next = cursor.Peek();
      if (next < 0 || IsRemarkOrComment(next)) break;
      plain.isWhole = true;
      plain.next = cursor.At();
    }
    plain.end = endOfValue;
    if (token == INTEGER && (IsLong(value) || (count == 2 && FollowsNumber(value))))
      plain.isSuspect = true;
  }
  return plain;
}

void MakePlainValues(CzonNamedNode& keyword, std::string_view text) {
  Arena& arena = *NodeAccess::GetArena(keyword);
  std::array<CzonNode*, 64> made;
  std::uint32_t count = 0;
  ValueCursor cursor(text.data(), text.data() + text.size());
  do {
    cursor.SkipSpace();
    CzonNode* node = IsNumberStart(*cursor.At()) ? cursor.ConsumeShortNumber(arena) : nullptr;
    if (node == nullptr) {
      std::string_view value;
      const int token = cursor.ConsumeValue(&value);
      node = MakeValue(arena, token, value);
    }
    made[count++] = node;
    if (count == made.size()) {
      NodeAccess::AppendNew(keyword, made.data(), count);
      count = 0;
    }
    cursor.SkipSpace();
  } while (cursor.ConsumeIf(','));
  NodeAccess::AppendNew(keyword, made.data(), count);
}

void SplitPlainValues(std::string_view text, std::vector<PlainValue>* values) {
  values->clear();
  ValueCursor cursor(text.data(), text.data() + text.size());
  do {
    cursor.SkipSpace();
    std::string_view value;
    const int token = cursor.ConsumeValue(&value);
    values->push_back({token, value});
    cursor.SkipSpace();
  } while (cursor.ConsumeIf(','));
}

}  // namespace zon
