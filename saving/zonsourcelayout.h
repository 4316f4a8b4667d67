// Where the parts of a section and of a keyword are in a text that was loaded: names, values,
// remarks and commas, and the lines around them. Found by reading on from the places that the nodes
// know; the text is known to be sound. Tested by tests/zonsave_test.cpp and fuzz/save_fuzz.cpp.
#ifndef ZON_SAVING_ZONSOURCELAYOUT_H
#define ZON_SAVING_ZONSOURCELAYOUT_H

#include <string>
#include <string_view>
#include <vector>

#include "base/zonfiletext.h"
#include "reader/zonfinding.h"

class CzonNamedNode;
class CzonNode;

namespace zon {

struct ValueLayout {
  Span value;         // empty for an empty place
  Span remark;        // with its braces; empty at the end of the value if there is none
  const char* comma;  // before the value; null for the first one
};

struct KeywordLayout {
  Span name;    // with the "()" of a keyword, the word in the parentheses of a default definition
  Span remark;  // empty after the name if there is none
  std::vector<ValueLayout> values;
};

struct HeaderLayout {
  Span header;  // from "[" to "]"
  Span name;
  Span remark;
};

class SourceLayout {
 public:
  explicit SourceLayout(const FileText& text)
      : text_(text), begin_(text.Begin()), end_(text.End()), lineEnd_(FindLineEnd()) {}

  const char* Begin() const { return begin_; }
  const char* End() const { return end_; }

  // The line end that the text uses.
  std::string_view LineEnd() const { return lineEnd_; }

  // With the first values, at most `most` of them.
  KeywordLayout ReadKeyword(const CzonNamedNode& keyword, std::size_t most) const;
  HeaderLayout ReadHeader(const CzonNamedNode& section) const;

  // If a line begins between the end of an item and the next token, and so the token is the first
  // of its line: where the line begins. Else null.
  const char* BeginOfLine(const char* previousEnd, const char* token) const;

  // The end of the line, before its line end, if no token and no comment of several lines follows
  // the place on the line. Else null. EndAfterComments goes on after a comment of several lines.
  const char* EndOfLine(const char* place) const { return FindEnd(place, false); }
  const char* EndAfterComments(const char* place) const { return FindEnd(place, true); }

  // The first line between two tokens that holds nothing but a comment, with its line end; no place
  // if there is none.
  Span FindCommentLine(const char* gap, const char* token) const;

  // The end of the token at a place.
  const char* SkipToken(const char* token) const;

  // After the line end at the end of a line.
  const char* NextLine(const char* endOfLine) const;

  // The blanks before the first token of the line that holds the place.
  std::string_view IndentationAt(const char* place) const;

 private:
  std::string_view FindLineEnd() const;
  const char* FindEnd(const char* place, bool overLines) const;
  Span ReadRemark(const char* at) const;
  const char* EndOfValue(int kind, const char* at) const;
  ValueLayout ReadValue(const CzonNode* value, const char* at) const;

  const FileText& text_;
  const char* begin_;
  const char* end_;
  std::string_view lineEnd_;
};

}  // namespace zon

#endif
