// A pushdown automaton. The stack of the reader holds the states that are expected next, the
// innermost last; between two tokens it is the whole state of the parse.
//
//     state           reads                               pushes before it returns
//     kSectionList    a section header, or the end        itself, kEndSection, kSectionBody
//     kSectionBody    a section header, a keyword         itself and the states of what it read
//     kEndSection     EndSect, or the end                 nothing
//     kMoreParameter  "," and a parameter, or nothing     itself, after a ","
//     kSimParameter   a parameter, possibly empty         nothing
//     (a keyword      its name and "="                    kMoreParameter, kSimParameter)
//
// NextToken pops a state and runs it. A state that reads nothing returns kContinue, and NextToken
// runs the next one in a loop, so there is no recursion, however deep a file nests.
//
// Termination, also after errors: each call consumes a character, or returns the parameter place
// after a consumed "=" or ",", or pops a state of a section that is not pushed again.
//
// Runs of characters are found by a table of classes and consumed directly from the buffer of the
// input. No class contains the newline, which the counters of the input need, or the zero, which
// ends the buffer. Tested by tests/tokens_test.cpp and fuzz/tokens_fuzz.cpp, and against the loader
// by fuzz/streams_fuzz.cpp.
#include "tokens/zontoken.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <string_view>

#include "base/zonlexeme.h"
#include "base/zonnumberscan.h"

namespace zon {
namespace {

// Token codes, as the interface documents them.
constexpr int kError = -1;
constexpr int kEndOfFile = 0;
constexpr int kSection = 100;
constexpr int kEndSect = 101;
constexpr int kKeyword = 200;
constexpr int kEmpty = 1000;
constexpr int kTrue = 1010;
constexpr int kFalse = 1011;
constexpr int kInteger = 1020;
constexpr int kReal = 1021;
constexpr int kString = 1030;
constexpr int kFilename = 1200;

constexpr int kContinue = -2;  // no token: run the next state

constexpr std::string_view kEndWord = "EndSect";

// Values in place of a character: the end of the file, or a comment that does not end.
constexpr int kEnd = -1;
constexpr int kOpenBlock = -2;
constexpr int kOpenBraces = -3;

constexpr int kSkipped = -4;  // no character, but white space or a comment that was skipped

// Classes of characters, as bits, beside those of base/zonchars.h: the runs that are consumed at
// once. None contains the newline or the zero.
using Classes = unsigned;
constexpr Classes kBlank = 1U << 0;
constexpr Classes kInLine = 1U << 1;
constexpr Classes kInString = 1U << 2;
constexpr Classes kInFilename = 1U << 3;
constexpr Classes kInBlock = 1U << 4;
constexpr Classes kInBraces = 1U << 5;
constexpr Classes kPlain = 1U << 6;  // neither white space nor the start of a comment

constexpr Classes ClassesOf(int c) {
  if (c == 0 || c == '\n') return 0;
  Classes classes = kInLine;
  const bool blank = IsClass(c, kSpace);
  if (blank) classes |= kBlank;
  if (c != '\'') classes |= kInString;
  if (c != '|') classes |= kInFilename;
  if (c != '*') classes |= kInBlock;
  if (c != '}') classes |= kInBraces;
  if (!blank && c != ';' && c != '/' && c != '{') classes |= kPlain;
  return classes;
}

constexpr std::array<unsigned char, 256> MakeClasses() {
  std::array<unsigned char, 256> classes{};
  for (std::size_t c = 0; c < 256; ++c) {
    classes[c] = static_cast<unsigned char>(ClassesOf(static_cast<int>(c)));
  }
  return classes;
}

constexpr std::array<unsigned char, 256> kClasses = MakeClasses();

bool Is(unsigned char c, Classes classes) {
  return (kClasses[c] & classes) != 0;
}

bool BeginsNumber(int c) {
  return IsClass(c, kDigit) || c == '+' || c == '-' || c == '.';
}

}  // namespace

// The functions of the states. Separate from the exported class, so that they can be inlined and
// are not part of its layout.
class TokenScanner {
 public:
  explicit TokenScanner(CzonTokenReader& reader) : reader_(reader), input_(*reader.input_) {}

  int NextToken();
  int SectionList();
  int Section();
  int SectionBody();
  int EndSection();
  int Keyword();
  int MoreParameter();
  int SimParameter();
  bool SectionHeader();
  int Number();
  int NumberStepByStep();
  int String();
  int Filename();

  // Skips white space and comments. Returns the next character, not consumed.
  int PeekSignificant() {
    if (*input_.cursor_ == ' ') ++input_.cursor_;  // most often there is one blank or none
    const unsigned char c = *input_.cursor_;
    return Is(c, kPlain) ? c : PeekFurther();
  }

  // Consumes the word if it is next. There must be no newline in it.
  bool Consume(std::string_view word) {
    if (static_cast<std::size_t>(input_.end_ - input_.cursor_) < word.size()) {
      return ConsumeByCharacter(word);
    }
    if (std::memcmp(input_.cursor_, word.data(), word.size()) != 0) return false;
    input_.cursor_ += word.size();
    return true;
  }

  // The same for any word, also one that continues after the end of the buffer.
  __attribute__((noinline)) bool ConsumeByCharacter(std::string_view word);

  void PutBack(std::string_view word) {
    for (std::size_t at = word.size(); at > 0; --at) input_.putback(word[at - 1]);
  }

  int FailComment(int c) {
    return Fail(c == kOpenBlock ? "Bad comment, missing */" : "Bad comment, missing }");
  }

 private:
  // Consumes as many characters as length(const char* begin, const char* end) returns and passes
  // them to use(const char*, std::size_t), in several calls if the buffer ends between them. There
  // must be no newline among them.
  template <class Length, class Use>
  void ConsumeAhead(Length length, Use use) {
    do {
      const auto* const begin = reinterpret_cast<const char*>(input_.cursor_);
      const std::size_t size = length(begin, reinterpret_cast<const char*>(input_.end_));
      input_.cursor_ += size;
      use(begin, size);
    } while (input_.cursor_ == input_.end_ && input_.Fill());
  }

  // Consumes characters while accept(unsigned char) holds. It must not accept a newline or a zero.
  template <class Accept, class Use>
  void ConsumeRun(Accept accept, Use use) {
    const auto length = [&accept](const char* begin, const char*) {
      const char* next = begin;
      while (accept(static_cast<unsigned char>(*next))) ++next;
      return static_cast<std::size_t>(next - begin);
    };
    ConsumeAhead(length, use);
  }

  void SkipRun(Classes classes) {
    ConsumeRun([classes](unsigned char c) { return Is(c, classes); },
               [](const char*, std::size_t) {});
  }

  // Consumes characters of the classes and appends them to the token text.
  void Collect(Classes classes) {
    ConsumeRun([classes](unsigned char c) { return Is(c, classes); },
               [this](const char* run, std::size_t size) { Append(run, size); });
  }

  void CollectName() {
    const auto length = [](const char* begin, const char* end) {
      return static_cast<std::size_t>(SkipWord(begin, end) - begin);
    };
    ConsumeAhead(length, [this](const char* run, std::size_t size) { Append(run, size); });
  }

  void Append(const char* data, std::size_t size) {
    try {
      reader_.text_.append(data, size);
    } catch (const std::exception& failure) {
      // The text is lost. The token is still read to its end, and then reported as an error.
      reader_.textLost_ = true;
      reader_.Error(failure.what());
    }
  }

  int Fail(const char* message) {
    reader_.Error(message);
    return kError;
  }

  // Consumes the character that does not fit, then fails.
  int FailAfter(const char* message) {
    input_.get();
    return Fail(message);
  }

  void Push(EParseState state) { reader_.states_.push_back(state); }

  int RunState(EParseState state);
  __attribute__((noinline)) int PeekFurther();
  int SkipGap(int c);
  int SkipLine();
  int SkipSlash();
  bool SkipTo(char closer, Classes classes);
  bool CollectTo(char closer, Classes classes);

  CzonTokenReader& reader_;
  CzonInput& input_;
};

int TokenScanner::NextToken() {
  reader_.text_.clear();
  reader_.textLost_ = false;
  int token = kContinue;
  while (token == kContinue) {
    if (reader_.states_.empty()) return kEndOfFile;
    const EParseState state = reader_.states_.back();
    reader_.states_.pop_back();
    token = RunState(state);
  }
  if (input_.Failed()) return Fail("Read error");
  return reader_.textLost_ ? kError : token;
}

// kSection and kKeyword are never pushed: the state that sees a section or keyword reads its start.
inline int TokenScanner::RunState(EParseState state) {
  switch (state) {
    case EParseState::kSectionBody:
      return SectionBody();
    case EParseState::kEndSection:
      return EndSection();
    case EParseState::kMoreParameter:
      return MoreParameter();
    case EParseState::kSimParameter:
      return SimParameter();
    default:
      return SectionList();
  }
}

int TokenScanner::SectionList() {
  const int c = PeekSignificant();
  if (c == kEnd) return kEndOfFile;
  if (c < kEnd) return FailComment(c);
  if (c != '[') return FailAfter("Format error. Expected start of section '['");
  Push(EParseState::kSectionList);
  return Section();
}

int TokenScanner::Section() {
  if (!SectionHeader()) return kError;
  Push(EParseState::kEndSection);
  Push(EParseState::kSectionBody);
  return kSection;
}

bool TokenScanner::SectionHeader() {
  const char* message = "Bad section, expected [";
  if (input_.get() == '[') {
    CollectName();
    const int c = input_.get();
    if (c == ']') return true;
    message = c == kEnd ? "Bad section, missing ], end of file reached" : "Bad section, expected ]";
  }
  Fail(message);
  return false;
}

int TokenScanner::SectionBody() {
  const int c = PeekSignificant();
  if (c < kEnd) return FailComment(c);
  if (c == '[') {
    Push(EParseState::kSectionBody);
    return Section();
  }
  if (!IsClass(c, kAlpha)) return kContinue;
  if (c == 'E' && Consume(kEndWord)) {
    PutBack(kEndWord);
    return kContinue;
  }
  Push(EParseState::kSectionBody);
  return Keyword();
}

int TokenScanner::EndSection() {
  const int c = PeekSignificant();
  if (c == kEnd) return kEndOfFile;
  if (c < kEnd) return FailComment(c);
  // Compatibility: only the letters are compared, because token streams of existing files depend on
  // it: "EndSection" is EndSect and then a name "ion".
  return Consume(kEndWord) ? kEndSect : Fail("Expected EndSect definition");
}

int TokenScanner::Keyword() {
  CollectName();
  if (reader_.text_.empty() && !reader_.textLost_) return FailAfter("Expected keyword string");
  const int c = PeekSignificant();
  if (c < kEnd) return FailComment(c);
  if (c != '=') return FailAfter("Expected '=' for keyword definition");
  input_.get();
  Push(EParseState::kMoreParameter);
  Push(EParseState::kSimParameter);
  return kKeyword;
}

int TokenScanner::MoreParameter() {
  const int c = PeekSignificant();
  if (c < kEnd) return FailComment(c);
  if (c != ',') return kContinue;
  input_.get();
  Push(EParseState::kMoreParameter);
  return SimParameter();
}

int TokenScanner::SimParameter() {
  const int c = PeekSignificant();
  if (c == kEnd) return kEmpty;
  if (c < kEnd) return FailComment(c);
  if (BeginsNumber(c)) return Number();
  // Compatibility: for the same reason "trueish" is true and then a keyword "ish".
  if (c == 'f' && Consume("false")) return kFalse;
  if (c == 't' && Consume("true")) return kTrue;
  if (c != '\'' && c != '|') return kEmpty;
  input_.get();
  return c == '|' ? Filename() : String();
}

// Reads a number, of which nothing is consumed yet.
int TokenScanner::Number() {
  // Most often the number is well formed and ends inside the buffer.
  const auto* const start = reinterpret_cast<const char*>(input_.cursor_);
  const auto* const end = reinterpret_cast<const char*>(input_.end_);
  const bool hasSign = *start == '-' || *start == '+';
  bool isWhole = false;
  const char* const after = SkipNumber(start + (hasSign ? 1 : 0), end, &isWhole);
  if (after == nullptr || after == end) return NumberStepByStep();
  const auto size = static_cast<std::size_t>(after - start);
  input_.cursor_ += size;
  Append(start, size);
  return isWhole ? kInteger : kReal;
}

int TokenScanner::NumberStepByStep() {
  NumberScan number;
  ConsumeRun([&number](unsigned char c) { return number.Accept(c); },
             [this](const char* run, std::size_t size) { Append(run, size); });
  if (number.IsComplete()) return number.IsWhole() ? kInteger : kReal;
  return FailAfter(number.MissesFraction() ? "Expecting digit after ."
                                           : "Bad floating point exponent definition (e/E)");
}

int TokenScanner::String() {
  while (CollectTo('\'', kInString)) {
    if (input_.peek() != '\'') return kString;
    input_.get();
    Append("'", 1);
  }
  return Fail("Bad string, missing closing quote '");
}

int TokenScanner::Filename() {
  if (CollectTo('|', kInFilename)) return kFilename;
  return Fail("Bad filename string, missing closing bar |");
}

int TokenScanner::PeekFurther() {
  int c = kSkipped;
  while (c == kSkipped) {
    SkipRun(kBlank);
    c = SkipGap(input_.peek());
  }
  return c;
}

// Skips the newline or the comment that begins with `c`, the next character, and returns kSkipped.
// Returns `c` if it begins none, kOpenBlock or kOpenBraces if the comment does not end.
int TokenScanner::SkipGap(int c) {
  switch (c) {
    case '\n':
      input_.get();
      return kSkipped;
    case ';':
      return SkipLine();
    case '/':
      return SkipSlash();
    case '{':
      input_.get();
      // Compatibility: the character after the brace is skipped unseen, so "{}" does not end. Token
      // streams of existing files depend on it.
      input_.get();
      return SkipTo('}', kInBraces) ? kSkipped : kOpenBraces;
    default:
      return c;
  }
}

int TokenScanner::SkipLine() {
  SkipTo('\n', kInLine);  // without a newline the comment ends with the file
  return kSkipped;
}

int TokenScanner::SkipSlash() {
  input_.get();
  const int c = input_.peek();
  if (c == '/') return SkipLine();
  if (c != '*') {
    input_.putback('/');
    return '/';
  }
  input_.get();  // this star cannot end the comment: "/*/" is open
  while (SkipTo('*', kInBlock)) {
    if (input_.peek() != '/') continue;
    input_.get();
    return kSkipped;
  }
  return kOpenBlock;
}

// Skips everything up to and including `closer`. `classes` are the characters that are skipped in
// runs. Returns false at the end of the file.
bool TokenScanner::SkipTo(char closer, Classes classes) {
  for (;;) {
    SkipRun(classes);
    const int c = input_.get();
    if (c == closer || c == kEnd) return c == closer;
  }
}

// As SkipTo, but appends everything before `closer` to the token text.
bool TokenScanner::CollectTo(char closer, Classes classes) {
  for (;;) {
    Collect(classes);
    const int c = input_.get();
    if (c == closer || c == kEnd) return c == closer;
    const char special = static_cast<char>(c);
    Append(&special, 1);
  }
}

bool TokenScanner::ConsumeByCharacter(std::string_view word) {
  for (std::size_t at = 0; at < word.size(); ++at) {
    if (input_.peek() != static_cast<unsigned char>(word[at])) {
      PutBack(word.substr(0, at));
      return false;
    }
    input_.get();
  }
  return true;
}

}  // namespace zon

CzonTokenReader::CzonTokenReader(CzonInput* input)
    : input_(input != nullptr ? input : new CzonInput), hasInput_(input != nullptr) {
  states_.reserve(64);
  states_.push_back(EParseState::kParFile);
  text_.reserve(1024);
  errorText_.reserve(64);  // room for any message: storing one then needs no memory
}

CzonTokenReader::~CzonTokenReader() = default;

// Inlined into one function, the scanner is kept in registers: 20 % less time per token.
__attribute__((flatten)) int CzonTokenReader::NextToken() {
  return zon::TokenScanner(*this).NextToken();
}

int CzonTokenReader::ParseParFile() {
  return zon::TokenScanner(*this).SectionList();
}
int CzonTokenReader::ParseSectionList() {
  return zon::TokenScanner(*this).SectionList();
}
int CzonTokenReader::ParseSection() {
  return zon::TokenScanner(*this).Section();
}
int CzonTokenReader::ParseEndSection() {
  return zon::TokenScanner(*this).EndSection();
}
int CzonTokenReader::ParseKeyword() {
  return zon::TokenScanner(*this).Keyword();
}
int CzonTokenReader::ParseSimParameter() {
  return zon::TokenScanner(*this).SimParameter();
}
bool CzonTokenReader::ParseSectionHeader() {
  return zon::TokenScanner(*this).SectionHeader();
}
int CzonTokenReader::ParseString() {
  return zon::TokenScanner(*this).String();
}
int CzonTokenReader::ParseFilename() {
  return zon::TokenScanner(*this).Filename();
}

int CzonTokenReader::ParseSectionBody() {
  const int token = zon::TokenScanner(*this).SectionBody();
  return token == zon::kContinue ? NextToken() : token;
}

int CzonTokenReader::ParseMoreParameter() {
  const int token = zon::TokenScanner(*this).MoreParameter();
  return token == zon::kContinue ? NextToken() : token;
}

int CzonTokenReader::ParseNumber(int c) {
  if (c >= 0) input_->putback(static_cast<char>(c));
  return zon::TokenScanner(*this).Number();
}

int CzonTokenReader::GetChSkipBlanks() {
  zon::TokenScanner scanner(*this);
  const int c = scanner.PeekSignificant();
  if (c >= zon::kEnd) return input_->get();
  scanner.FailComment(c);
  return zon::kEnd;
}

bool CzonTokenReader::InputIs(int c, const char* word) {
  if (word == nullptr || *word == 0 || c != static_cast<unsigned char>(*word)) return false;
  return zon::TokenScanner(*this).ConsumeByCharacter(word + 1);
}

bool CzonTokenReader::InputPeak(int c, const char* word) {
  if (!InputIs(c, word)) return false;
  zon::TokenScanner(*this).PutBack(word + 1);
  return true;
}

void CzonTokenReader::Error(const char* message) {
  errorLine_ = hasInput_ ? input_->Lines() : ~0U;
  errorPosition_ = hasInput_ ? input_->Position() : ~0U;
  try {
    errorText_ = message != nullptr ? message : "";
  } catch (const std::exception& failure) {
    const char* what = failure.what();
    errorText_.assign(what, std::min(std::strlen(what), errorText_.capacity()));
  }
}
