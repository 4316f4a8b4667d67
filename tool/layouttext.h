// The text of a parameter file as tokens, with nothing lost but blanks: comments are tokens too.
#ifndef ZON_TOOL_LAYOUTTEXT_H
#define ZON_TOOL_LAYOUTTEXT_H

#include <string_view>
#include <vector>

namespace tool {

enum class TokenKind : unsigned char {
  kWord,
  kNumber,  // without its sign
  kText,    // a string, a file name or a date-time
  kRemark,
  kSign,         // "+", "-" or "%"
  kPunctuation,  // any other character
  kLineComment,  // without the line end
  kBlockComment,
  kEnd  // of the text
};

struct Token {
  std::string_view text;
  std::string_view gap;  // the white space before it
  TokenKind kind;

  bool IsComment() const {
    return kind == TokenKind::kLineComment || kind == TokenKind::kBlockComment;
  }
  bool Is(char c) const { return text.size() == 1 && text[0] == c; }
  bool IsWord(std::string_view lowerCase) const;  // in any letter case
};

// The tokens of a text that loads without errors, and the end. They are views of it.
std::vector<Token> ScanTokens(std::string_view text);

// The first line end of the text outside of its tokens; "\n" if there is none.
std::string_view LineEndOf(const std::vector<Token>& tokens);

}  // namespace tool

#endif
