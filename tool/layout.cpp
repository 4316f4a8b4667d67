// Four steps from text to text, each over all tokens or lines:
// 1. ScanTokens (layouttext) finds the tokens.
// 2. Structure follows the grammar and decides for each token how it is joined to the token before
//    it, and the level of the line that it would begin.
// 3. LineMaker makes lines. It decides where comments go, and which line ends of the source stay.
// 4. LineWriter aligns the comments that follow the code of consecutive lines.
// Tested by tests/fmt.t.
#include "tool/layout.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "tool/layouttext.h"

namespace tool {
namespace {

// How a token is joined to the one before it.
enum class Join {
  kLine,       // it begins a line
  kNone,       // without a blank
  kBlank,      // with one blank
  kAsIs,       // as in the source, which is a sign and its number
  kListBlank,  // with one blank or with the line end of the source
  kListNone    // with nothing or with the line end of the source
};

struct Place {
  Join join = Join::kLine;
  std::size_t level = 0;         // of the line, if the token begins one
  std::string_view sectionName;  // of EndSect: the section that it ends
};

class Structure {
 public:
  // Expects every token but comments, in order.
  Place Next(const Token& token) {
    switch (state_) {
      case State::kHeader:
        return NextInHeader(token);
      case State::kAfterHeader:
        state_ = State::kItem;
        if (token.kind == TokenKind::kRemark) return Continue(Join::kBlank);
        return BeginItem(token);
      case State::kName:
        return NextInName(token);
      case State::kValue:
        return NextValue(token);
      case State::kAfterSign:
        state_ = State::kAfterValue;
        return Continue(Join::kAsIs);
      case State::kAfterValue:
        if (token.kind == TokenKind::kRemark) return Continue(Join::kListBlank);
        if (!token.Is(',')) return BeginItem(token);
        state_ = State::kValue;
        return Continue(Join::kListNone);
      default:
        return BeginItem(token);
    }
  }

 private:
  enum class State {
    kItem,         // a header, a keyword or EndSect follows
    kHeader,       // between the brackets
    kAfterHeader,  // a remark may follow
    kName,         // from the name of a keyword to "="
    kValue,        // after "=" or a comma
    kAfterSign,    // the number or the word follows
    kAfterValue    // a remark or a comma may follow
  };

  // A token that belongs to the item that has begun.
  Place Continue(Join join) const { return {join, level_ + 1, {}}; }

  Place BeginItem(const Token& token) {
    if (token.kind == TokenKind::kEnd) return {};
    if (token.kind == TokenKind::kWord && token.IsWord("endsect")) {
      state_ = State::kItem;
      const std::string_view name = names_.back();
      names_.pop_back();
      return {Join::kLine, names_.size(), name};
    }
    level_ = names_.size();
    state_ = token.Is('[') ? State::kHeader : State::kName;
    if (state_ == State::kHeader) names_.emplace_back();
    isDefault_ = token.IsWord("default");
    return {Join::kLine, level_, {}};
  }

  Place NextInHeader(const Token& token) {
    if (token.kind == TokenKind::kWord) names_.back() = token.text;
    if (token.Is(']')) state_ = State::kAfterHeader;
    return Continue(Join::kNone);
  }

  Place NextInName(const Token& token) {
    if (token.Is('=')) state_ = State::kValue;
    if (token.Is('(') && isDefault_) return Continue(Join::kBlank);
    const bool isMarker = token.Is('(') || token.Is(')') || token.kind == TokenKind::kWord;
    return Continue(isMarker ? Join::kNone : Join::kBlank);
  }

  Place NextValue(const Token& token) {
    if (token.Is(',')) return Continue(Join::kListBlank);
    const bool isWord = token.kind == TokenKind::kWord || token.kind == TokenKind::kEnd;
    const bool isBoolean = isWord && (token.IsWord("true") || token.IsWord("false"));
    if ((isWord && !isBoolean) || token.kind == TokenKind::kPunctuation) return BeginItem(token);
    state_ = token.kind == TokenKind::kSign ? State::kAfterSign : State::kAfterValue;
    return Continue(Join::kListBlank);
  }

  State state_ = State::kItem;
  bool isDefault_ = false;               // the keyword line is a default line
  std::size_t level_ = 0;                // of the item that has begun
  std::vector<std::string_view> names_;  // of the sections that are open
};

// The place of every token. A comment on a line of its own gets the level of what follows it.
std::vector<Place> FindPlaces(const std::vector<Token>& tokens) {
  Structure structure;
  std::vector<Place> places;
  places.reserve(tokens.size());
  for (const Token& token : tokens) {
    places.push_back(token.IsComment() ? Place{} : structure.Next(token));
  }
  for (std::size_t n = tokens.size() - 1; n-- > 0;) {
    if (tokens[n].IsComment()) places[n].level = places[n + 1].level;
  }
  return places;
}

struct Line {
  std::string code;      // with its indentation; of a comment on a line of its own that comment
  std::string comments;  // that follow the code
  bool isEndSect = false;
  bool isAfterBlankLine = false;
};

// The width of the last line, in characters of UTF-8.
std::size_t WidthOf(const std::string& code) {
  const std::size_t begin = code.rfind('\n') + 1;
  return static_cast<std::size_t>(
      std::count_if(code.begin() + static_cast<std::ptrdiff_t>(begin), code.end(),
                    [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

class LineWriter {
 public:
  explicit LineWriter(std::string_view lineEnd) : lineEnd_(lineEnd) {}

  void Write(Line line) {
    const std::size_t width = WidthOf(line.code);
    // EndSect has the comment of another section than its neighbours. Few lines are wider than the
    // limit; without it, one of them could make the text as long as the square of its length.
    constexpr std::size_t kWidestAligned = 120;
    const bool isAligned = !line.comments.empty() && !line.isEndSect && width <= kWidestAligned;
    if (!isAligned || line.isAfterBlankLine || HasLineEnd(line.code)) WriteGroup();
    if (!isAligned) return Write(line, 2);
    column_ = std::max(column_, width + 2);
    group_.emplace_back(std::move(line), width);
    if (HasLineEnd(group_.back().first.comments)) WriteGroup();
  }

  std::string Finish() {
    WriteGroup();
    return std::move(text_);
  }

 private:
  static bool HasLineEnd(const std::string& text) { return text.find('\n') != std::string::npos; }

  void WriteGroup() {
    for (const auto& [line, width] : group_) Write(line, column_ - width);
    group_.clear();
    column_ = 0;
  }

  void Write(const Line& line, std::size_t blanks) {
    if (line.isAfterBlankLine) text_ += lineEnd_;
    text_ += line.code;
    if (!line.comments.empty()) text_.append(blanks, ' ') += line.comments;
    text_ += lineEnd_;
  }

  std::string_view lineEnd_;
  std::string text_;
  std::vector<std::pair<Line, std::size_t>> group_;  // with the widths of their codes
  std::size_t column_ = 0;
};

// The text between the marks of a comment, without blanks around it.
std::string_view ContentOf(std::string_view comment) {
  constexpr std::string_view kBlanks = " \t";
  const bool isBlock = comment.substr(0, 2) == "/*";
  comment.remove_prefix(comment[0] == ';' ? 1 : 2);
  if (isBlock) comment.remove_suffix(2);
  comment.remove_prefix(std::min(comment.find_first_not_of(kBlanks), comment.size()));
  return comment.substr(0, comment.find_last_not_of(kBlanks) + 1);
}

class LineMaker {
 public:
  explicit LineMaker(const std::vector<Token>& tokens)
      : tokens_(tokens), places_(FindPlaces(tokens)), writer_(LineEndOf(tokens)) {}

  Layout Make() {
    for (std::size_t n = 0; n + 1 < tokens_.size(); ++n) {
      if (n == 0 || Breaks(n)) BeginLine(n);
      if (tokens_[n].IsComment()) {
        AppendComment(n);
      } else {
        AppendCode(n);
      }
    }
    if (tokens_.size() > 1) EndLine();
    layout_.text = writer_.Finish();
    return std::move(layout_);
  }

 private:
  static auto LineEndsBefore(const Token& token) {
    return std::count(token.gap.begin(), token.gap.end(), '\n');
  }

  // Whether the token begins a line. The line ends beside comments and in lists stay.
  bool Breaks(std::size_t n) const {
    const Token& previous = tokens_[n - 1];
    const Join join = places_[n].join;
    if (previous.kind == TokenKind::kLineComment) return true;
    if (tokens_[n].IsComment()) return LineEndsBefore(tokens_[n]) > 0;
    if (join == Join::kLine) return true;
    const bool isKept = previous.IsComment() || join == Join::kListBlank || join == Join::kListNone;
    return isKept && LineEndsBefore(tokens_[n]) > 0;
  }

  void BeginLine(std::size_t n) {
    if (n > 0) EndLine();
    constexpr std::size_t kIndentation = 3;
    line_ = {};
    line_.code.assign(places_[n].level * kIndentation, ' ');
    line_.isAfterBlankLine = n > 0 && LineEndsBefore(tokens_[n]) > 1;
    first_ = n;
    hasCode_ = false;
  }

  void EndLine() {
    const Place& place = places_[first_];
    line_.isEndSect = !place.sectionName.empty();
    if (line_.isEndSect) NameSection(place.sectionName);
    writer_.Write(std::move(line_));
  }

  // A comment after EndSect stays, but if it is the name of the section it gets the usual form.
  void NameSection(std::string_view name) {
    if (line_.comments.empty()) ++layout_.addedComments;
    if (line_.comments.empty() || (comments_ == 1 && ContentOf(line_.comments) == name)) {
      line_.comments = "// ";
      line_.comments += name;
    }
  }

  void AppendComment(std::size_t n) {
    std::string& text = hasCode_ ? line_.comments : line_.code;
    const bool isFirst = hasCode_ ? text.empty() : n == first_;
    if (!isFirst) text += ' ';
    text += tokens_[n].text;
    comments_ = isFirst ? 1 : comments_ + 1;
  }

  void AppendCode(std::size_t n) {
    if (n > first_ && tokens_[n - 1].IsComment()) {
      AppendAfterComment(n);
    } else if (n > first_) {
      line_.code += Separator(n);
    }
    line_.code += tokens_[n].text;
    hasCode_ = true;
  }

  // Code follows the comments on their line, so they are a part of it.
  void AppendAfterComment(std::size_t n) {
    if (!line_.comments.empty()) line_.code.append(1, ' ') += line_.comments;
    line_.comments.clear();
    const Token& token = tokens_[n];
    if (!token.Is(',') && !token.Is(')') && !token.Is(']')) line_.code += ' ';
  }

  std::string_view Separator(std::size_t n) const {
    const std::string_view gap = tokens_[n].gap;
    switch (places_[n].join) {
      case Join::kBlank:
      case Join::kListBlank:
        return " ";
      case Join::kAsIs:
        return gap.find_first_not_of(" \t") == std::string_view::npos ? gap : " ";
      default:
        return "";
    }
  }

  const std::vector<Token>& tokens_;
  const std::vector<Place> places_;
  LineWriter writer_;
  Layout layout_;
  Line line_;                 // the line that is being made
  std::size_t first_ = 0;     // its first token
  bool hasCode_ = false;      // it has a token that is no comment
  std::size_t comments_ = 0;  // the last comments in a row
};

}  // namespace

Layout FormatText(std::string_view text) {
  const std::vector<Token> tokens = ScanTokens(text);
  return LineMaker(tokens).Make();
}

}  // namespace tool
