// The scanner knows that the text is sound, so a token without its end may be anything. Tested by
// tests/fmt.t.
#include "tool/layouttext.h"

#include <algorithm>
#include <cstddef>

namespace tool {
namespace {

constexpr std::string_view kSpace = " \t\n\v\f\r";
constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kWordCharacters =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";

bool IsOneOf(char c, std::string_view characters) {
  return characters.find(c) != std::string_view::npos;
}

char ToLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  std::vector<Token> Scan() {
    std::vector<Token> tokens;
    for (;;) {
      const std::size_t begin = SkipAll(at_, kSpace);
      const std::string_view gap = text_.substr(at_, begin - at_);
      at_ = begin;
      const TokenKind kind = begin < text_.size() ? SkipToken() : TokenKind::kEnd;
      tokens.push_back({text_.substr(begin, at_ - begin), gap, kind});
      if (kind == TokenKind::kEnd) return tokens;
    }
  }

 private:
  // The character at a distance from the current place; 0 beyond the end.
  char Peek(std::size_t distance) const {
    return at_ + distance < text_.size() ? text_[at_ + distance] : '\0';
  }

  std::size_t SkipAll(std::size_t at, std::string_view characters) const {
    return std::min(text_.find_first_not_of(characters, at), text_.size());
  }

  // The place after the next `delimiter`.
  std::size_t SkipPast(std::size_t at, char delimiter) const {
    return std::min(text_.find(delimiter, at), text_.size() - 1) + 1;
  }

  TokenKind SkipToken() {
    const char c = text_[at_];
    if (c == ';' || (c == '/' && Peek(1) == '/')) {
      const std::size_t newline = std::min(text_.find('\n', at_), text_.size());
      at_ = text_.find_last_not_of('\r', newline - 1) + 1;
      return TokenKind::kLineComment;
    }
    if (c == '/' && Peek(1) == '*') return SkipBlockComment();
    if (c == '\'') return SkipString();
    if (c == '|' || c == '#' || c == '{') {
      at_ = SkipPast(at_ + 1, c == '{' ? '}' : c);
      return c == '{' ? TokenKind::kRemark : TokenKind::kText;
    }
    if (IsOneOf(c, kDigits) || c == '.') return SkipNumber();
    if (IsOneOf(c, kWordCharacters)) {
      at_ = SkipAll(at_, kWordCharacters);
      return TokenKind::kWord;
    }
    ++at_;
    return IsOneOf(c, "+-%") ? TokenKind::kSign : TokenKind::kPunctuation;
  }

  // Comments of this form nest.
  TokenKind SkipBlockComment() {
    std::size_t depth = 0;
    do {
      const bool opens = Peek(0) == '/' && Peek(1) == '*';
      const bool closes = Peek(0) == '*' && Peek(1) == '/';
      if (opens) ++depth;
      if (closes) --depth;
      at_ += opens || closes ? 2 : 1;
    } while (depth > 0 && at_ < text_.size());
    return TokenKind::kBlockComment;
  }

  // Two quotes in a row are a part of the string.
  TokenKind SkipString() {
    do {
      at_ = SkipPast(at_ + 1, '\'');
    } while (Peek(0) == '\'');
    return TokenKind::kText;
  }

  TokenKind SkipNumber() {
    at_ = SkipAll(at_, kDigits);
    if (Peek(0) == '.') at_ = SkipAll(at_ + 1, kDigits);
    if (Peek(0) == 'e' || Peek(0) == 'E') {
      const bool isSigned = Peek(1) == '+' || Peek(1) == '-';
      at_ = SkipAll(at_ + (isSigned ? 2 : 1), kDigits);
    }
    return TokenKind::kNumber;
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

bool Token::IsWord(std::string_view lowerCase) const {
  return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                    [](char a, char b) { return ToLower(a) == b; });
}

std::string_view LineEndOf(const std::vector<Token>& tokens) {
  for (const Token& token : tokens) {
    const std::size_t newline = token.gap.find('\n');
    if (newline == std::string_view::npos) continue;
    return newline > 0 && token.gap[newline - 1] == '\r' ? "\r\n" : "\n";
  }
  return "\n";
}

std::vector<Token> ScanTokens(std::string_view text) {
  return Scanner(text).Scan();
}

}  // namespace tool
