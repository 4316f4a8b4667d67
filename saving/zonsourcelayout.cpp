#include "saving/zonsourcelayout.h"

#include <algorithm>
#include <cstring>

#include "api/zonx.h"
#include "base/zonlexeme.h"
#include "base/zonnumberscan.h"
#include "reader/zonstructure.h"
#include "saving/zonsavedtree.h"
#include "tree/zonnodeaccess.h"
#include "zonx/zonkind.h"
#include "zonx/zonnodeplace.h"

namespace zon {
namespace {

// An item that is further from the begin of its line has no indentation: a file can be one line.
constexpr std::size_t kWidest = 4096;

}  // namespace

std::string_view SourceLayout::FindLineEnd() const {
  const char* const newline = FindChar('\n', begin_, end_);
  return newline != nullptr && newline > begin_ && newline[-1] == '\r' ? "\r\n" : "\n";
}

Span SourceLayout::ReadRemark(const char* at) const {
  const char* const next = SkipGaps(at, end_);
  if (next == end_ || *next != '{') return {at, at};
  const char* const closer = FindChar('}', next, end_);
  return {next, closer != nullptr ? closer + 1 : end_};
}

// `at` is the first character of the value.
const char* SourceLayout::EndOfValue(int kind, const char* at) const {
  switch (kind) {
    case ZONX_SUBSTITUTION:
      return SkipWord(SkipGaps(at + 1, end_), end_);
    case ZONX_INTEGER:
    case ZONX_REAL: {
      const char* const digits = *at == '-' || *at == '+' ? SkipGaps(at + 1, end_) : at;
      bool isWhole = false;
      const char* const end = SkipNumber(digits, end_, &isWhole);
      return end != nullptr ? end : digits;
    }
    default:
      return SkipToken(at);
  }
}

// After "=" or a comma. The remark alone of a place without a value is its remark.
ValueLayout SourceLayout::ReadValue(const CzonNode* value, const char* at) const {
  const int kind = value != nullptr ? KindOf(*value) : ZONX_EMPTY;
  if (kind == ZONX_EMPTY || kind == ZONX_PLACEHOLDER) return {{at, at}, {at, at}, nullptr};
  const char* const begin = SkipGaps(at, end_);
  if (kind == ZONX_UNKNOWN) return {{begin, begin}, ReadRemark(begin), nullptr};
  const char* const end = EndOfValue(kind, begin);
  return {{begin, end}, ReadRemark(end), nullptr};
}

KeywordLayout SourceLayout::ReadKeyword(const CzonNamedNode& keyword, std::size_t most) const {
  KeywordLayout layout{};
  layout.name = PlaceOf(keyword, text_);
  const char* at = SkipGaps(layout.name.end, end_);
  if (at < end_ && *at == '(') at = SkipGaps(at + 1, end_);  // of "name()"
  if (at < end_ && *at == ')') {
    layout.name.end = keyword.IsDefaultDef() != 0 ? layout.name.end : at + 1;
    at = at + 1;
  } else {
    at = layout.name.end;
  }
  layout.remark = ReadRemark(at);
  at = SkipGaps(layout.remark.end, end_);  // the equals sign
  const std::vector<const CzonNode*> values = SavedValues(keyword);
  const std::size_t count = std::min(values.size(), most);
  layout.values.reserve(count);
  for (std::size_t n = 0; n < count; ++n) {
    const char* const comma = SkipGaps(at, end_);
    layout.values.push_back(ReadValue(values[n], comma + 1));
    layout.values.back().comma = n > 0 ? comma : nullptr;
    at = layout.values.back().remark.end;
  }
  return layout;
}

HeaderLayout SourceLayout::ReadHeader(const CzonNamedNode& section) const {
  HeaderLayout layout{};
  layout.header = PlaceOf(section, text_);
  const char* const name = SkipGaps(layout.header.begin + 1, end_);
  layout.name = {name, SkipWord(name, end_)};
  layout.remark = ReadRemark(layout.header.end);
  return layout;
}

const char* SourceLayout::BeginOfLine(const char* previousEnd, const char* token) const {
  const char* line = previousEnd == begin_ ? begin_ : nullptr;
  for (const char* at = previousEnd; at < token;) {
    const char* const next = SkipComment(at, end_);
    if (next != at) {
      // The rest of a line that a comment has begun is no line of its own.
      if (FindChar('\n', at, next) != nullptr) line = nullptr;
      at = next;
    } else {
      if (*at == '\n') line = at + 1;
      ++at;
    }
  }
  return line;
}

const char* SourceLayout::FindEnd(const char* place, bool overLines) const {
  for (const char* at = place;;) {
    at = SkipBlanks(at, end_);
    if (at == end_ || *at == '\n') {
      // The first character of a line end of two is a blank too.
      return at > place && at < end_ && at[-1] == '\r' ? at - 1 : at;
    }
    const char* const next = SkipComment(at, end_);
    if (next == at || (!overLines && FindChar('\n', at, next) != nullptr)) return nullptr;
    at = next > place && next[-1] == '\r' ? next - 1 : next;
    if (at == next) continue;
    return at;
  }
}

Span SourceLayout::FindCommentLine(const char* gap, const char* token) const {
  const char* line = nullptr;
  for (const char* at = gap; at < token;) {
    const char* const next = SkipComment(at, token);
    if (next == at) {
      line = *at == '\n' ? at + 1 : line;
      ++at;
      continue;
    }
    const char* const rest = SkipBlanks(next, token);
    if (line != nullptr && rest < token && *rest == '\n') return {line, rest + 1};
    line = nullptr;
    at = next;
  }
  return {};
}

const char* SourceLayout::SkipToken(const char* token) const {
  const char* closer = nullptr;
  switch (*token) {
    case '\'':
      closer = FindClosing('\'', token + 1, end_);
      return closer != nullptr ? closer + 1 : end_;
    case '|':
    case '#':
      closer = FindChar(*token, token + 1, end_);
      return closer != nullptr ? closer + 1 : end_;
    case '{':
      closer = FindChar('}', token + 1, end_);
      return closer != nullptr ? closer + 1 : end_;
    default:
      closer = SkipWord(token, end_);
      return closer != token ? closer : token + 1;
  }
}

const char* SourceLayout::NextLine(const char* endOfLine) const {
  if (endOfLine < end_ && *endOfLine == '\r') ++endOfLine;
  return endOfLine < end_ ? endOfLine + 1 : end_;
}

std::string_view SourceLayout::IndentationAt(const char* place) const {
  const auto before = static_cast<std::size_t>(place - begin_);
  const char* const from = place - std::min(before, kWidest);
  const void* newline =
      from < place ? memrchr(from, '\n', static_cast<std::size_t>(place - from)) : nullptr;
  if (newline == nullptr && from > begin_) return {};
  const char* const line = newline != nullptr ? static_cast<const char*>(newline) + 1 : begin_;
  const char* const first = SkipBlanks(line, end_);
  return {line, static_cast<std::size_t>(std::min(first, place) - line)};
}

}  // namespace zon
