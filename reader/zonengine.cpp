#include "reader/zonengine.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "reader/yyparser.h"
#include "reader/zonchecker.h"
#include "reader/zonitembuilder.h"
#include "reader/zonlexer.h"
#include "reader/zontokencode.h"
#include "reader/zontreebuilder.h"

namespace zon {
namespace {

#include "reader/zongrammar.inc"

// The code of VALUES. Only the engine makes this token; TokenNumber maps the same code from a
// derived scanner to YYUNKCODE.
constexpr int VALUES = FILENAME + 1;

// The tables number the tokens in their own way.
constexpr int kHighestToken = VALUES;

constexpr std::array<short, kHighestToken + 1> MakeTokenNumbers() {
  std::array<short, kHighestToken + 1> numbers{};
  for (short& number : numbers) number = YYUNKCODE;
  for (std::size_t code = 0; code < sizeof yytok1 / sizeof *yytok1; ++code) {
    if (yytok1[code] != 0) numbers[code] = yytok1[code];
  }
  for (const short* pair = yytok3; *pair != 0; pair += 2) {
    numbers[static_cast<std::size_t>(*pair)] = pair[1];
  }
  return numbers;
}

constexpr std::array<short, kHighestToken + 1> kTokenNumbers = MakeTokenNumbers();

static_assert(kTokenNumbers[INTEGER] != YYUNKCODE && kTokenNumbers[VALUES] != YYUNKCODE,
              "the grammar must declare INTEGER and VALUES with the codes of CzonToken");

constexpr char kSyntaxError[] = "syntax error";
constexpr char kTooDeep[] = "yacc stack overflow";

constexpr int kNoToken = -1;
constexpr int kNoState = -1;

int TokenNumber(int code) {
  if (code <= 0) return YYEOFCODE;
  return code < VALUES ? kTokenNumbers[static_cast<std::size_t>(code)] : YYUNKCODE;
}

// The state that a token leads to; kNoState if it does not fit.
constexpr int ShiftTo(int state, int token) {
  const int at = yypact[state] + token;
  if (at < 0 || at >= YYLAST) return kNoState;
  return yychk[yyact[at]] == token ? yyact[at] : kNoState;
}

// The state that a nonterminal leads to.
constexpr int GoTo(int state, int left) {
  const int at = yypgo[left] + state + 1;
  if (at < YYLAST && yychk[yyact[at]] == -left) return yyact[at];
  return yyact[yypgo[left]];
}

// The states that shift a token.
constexpr std::array<bool, YYNSTATES> StatesThatShift(int token) {
  std::array<bool, YYNSTATES> states{};
  for (int state = 0; state < YYNSTATES; ++state) {
    states[static_cast<std::size_t>(state)] = ShiftTo(state, token) != kNoState;
  }
  return states;
}

constexpr std::array<bool, YYNSTATES> kValuesStates = StatesThatShift(kTokenNumbers[VALUES]);

// The states with a section_body on top of the stack: only they shift ENDSECT. A keyword line may
// begin there, and values_[depth_ - 1] is the section.
constexpr std::array<bool, YYNSTATES> kLineStates = StatesThatShift(kTokenNumbers[ENDSECT]);

// The most slots that the tables need for a plain line: keyword, '=', sign, number. With fewer
// free, everything goes through the tables, so the fast paths do not change the limit on nesting.
constexpr std::size_t kSlotsOfLine = 4;

// Searches yyexca (format: see zongrammar.inc). Returns the rule, 0 for an error, below 0 to
// accept.
int FindExceptionalRule(int state, int token) {
  bool isOfState = false;
  for (std::size_t at = 0; at + 1 < std::size(yyexca); at += 2) {
    const int first = yyexca[at];
    const int second = yyexca[at + 1];
    if (first == -1) {
      isOfState = second == state;
    } else if (isOfState && (first == token || first == -2)) {
      return second;
    }
  }
  return 0;
}

// How far reductions of empty rules can grow a stack before a token is shifted.
constexpr std::size_t kMostEmptyRules = 10;

// Whether a token is shifted in the end, after the reductions that the states make before.
bool Accepts(const int* states, std::size_t depth, int token) {
  std::array<int, kStackDepth + kMostEmptyRules> stack;
  std::copy(states, states + depth, stack.begin());
  while (depth < stack.size()) {
    const int state = stack[depth - 1];
    if (yypact[state] > YYFLAG && ShiftTo(state, token) != kNoState) return true;
    int rule = yydef[state];
    if (rule == -2) rule = FindExceptionalRule(state, token);
    if (rule <= 0) return rule < 0;
    depth -= static_cast<std::size_t>(yyr2[rule]);
    stack[depth] = GoTo(stack[depth - 1], yyr1[rule]);
    ++depth;
  }
  return false;
}

struct ExpectedToken {
  int code;
  std::uint32_t bits;
};

constexpr ExpectedToken kExpectedTokens[] = {
    {STRING, kExpectValue},  {INTEGER, kExpectNumber},  {BRACE_TEXT, kExpectRemark},
    {',', kExpectComma},     {'=', kExpectEquals},      {IDENTIFIER, kExpectName},
    {'[', kExpectHeader},    {ENDSECT, kExpectEndSect}, {']', kExpectBracket},
    {')', kExpectParen},     {'(', kExpectMarker},      {DEFAULT, kExpectDefault},
    {ENDOFINPUT, kExpectEnd}};

// The symbol that led to a state, as the tables number it: a token, or a nonterminal negated.
constexpr int Token(int code) {
  return kTokenNumbers[static_cast<std::size_t>(code)];
}
constexpr int LeftOf(Rule rule) {
  return -yyr1[rule];
}

struct SymbolContext {
  int symbol;
  ParseContext context;
};

// Symbols that are not listed belong to values.
constexpr SymbolContext kSymbolContexts[] = {{LeftOf(kListEmpty), ParseContext::kOutside},
                                             {Token('['), ParseContext::kHeader},
                                             {LeftOf(kBodyHeader), ParseContext::kBody},
                                             {LeftOf(kSectionSingle), ParseContext::kBody},
                                             {LeftOf(kSectionRemark), ParseContext::kBody},
                                             {Token(IDENTIFIER), ParseContext::kName},
                                             {LeftOf(kMultiName), ParseContext::kName},
                                             {LeftOf(kKeywordSingle), ParseContext::kName},
                                             {LeftOf(kKeywordRemark), ParseContext::kName},
                                             {Token('('), ParseContext::kMarker},
                                             {Token(DEFAULT), ParseContext::kDefault},
                                             {Token(')'), ParseContext::kDefault},
                                             {LeftOf(kDefaultNamed), ParseContext::kDefault},
                                             {LeftOf(kDefaultRemark), ParseContext::kDefault},
                                             {Token('='), ParseContext::kValue},
                                             {Token(','), ParseContext::kValue},
                                             {Token('+'), ParseContext::kSign},
                                             {Token('-'), ParseContext::kSign},
                                             {Token('%'), ParseContext::kSubstitution}};

ParseContext ContextOf(int state) {
  for (const SymbolContext& entry : kSymbolContexts) {
    if (entry.symbol == yychk[state]) return entry.context;
  }
  return ParseContext::kAfterValue;
}

}  // namespace

template <class Builder>
int Engine<Builder>::Run() {
  token_ = kNoToken;
  Push(0, {});
  for (;;) {
    if (yypact[State()] > YYFLAG) {
      PrepareToken();
      const int next = ShiftTo(State(), token_);
      if (next != kNoState) {
        if (!HasRoom(1)) {
          if (!Recover(kTooDeep)) return 1;
          continue;
        }
        SymbolValue value;
        value.SetText(lexer_.Text());
        Push(next, value);
        token_ = kNoToken;
        continue;
      }
    }
    int rule = yydef[State()];
    if (rule == -2) {
      PrepareToken();
      rule = FindExceptionalRule(State(), token_);
      if (rule < 0) return 0;  // accepted
    }
    if (rule == 0) {
      if (!Recover(kSyntaxError)) return 1;
      continue;
    }
    depth_ -= static_cast<std::size_t>(yyr2[rule]);
    const SymbolValue value = builder_.Reduce(rule, values_ + depth_);
    if (HasRoom(1)) {
      Push(GoTo(State(), yyr1[rule]), value);
    } else if (!Recover(kTooDeep)) {
      return 1;
    }
  }
}

template <class Builder>
void Engine<Builder>::Push(int state, const SymbolValue& value) {
  states_[depth_] = state;
  values_[depth_++] = value;
}

template <class Builder>
int Engine<Builder>::ReadSimpleToken() {
  const int code = mayMergeTokens_ ? lexer_.Next() : parser_.yylex();
  if constexpr (Builder::kRecovers) {
    code_ = parser_.HasError() ? kFailedToken : code;
    builder_.NoteToken();
    if (code_ == kFailedToken) return YYUNKCODE;  // no end of the input
  }
  return TokenNumber(code);
}

// Ensures that token_ holds the next token. First consumes what needs no tables: a run of plain
// values, which becomes VALUES, or whole plain lines.
//
// Files a whole plain line without the tables, which would leave the stack unchanged. Reads the
// next token first, as the tables do: error positions depend on it. Saves a fifth of the
// instructions of a load.
template <class Builder>
void Engine<Builder>::PrepareToken() {
  const auto state = static_cast<std::size_t>(State());
  const bool mayMerge = mayMergeTokens_ && HasRoom(kSlotsOfLine);
  if (token_ == kNoToken) {
    if (mayMerge && kValuesStates[state] && lexer_.ConsumeValues()) {
      token_ = kTokenNumbers[VALUES];
      return;
    }
    token_ = ReadSimpleToken();
    NoteStack(false);
  }
  if (!mayMerge || !kLineStates[state]) return;
  while (token_ == kTokenNumbers[IDENTIFIER] && lexer_.ConsumeLine()) {
    const SymbolValue keyword = builder_.MakeLine();
    token_ = ReadSimpleToken();
    NoteStack(true);
    builder_.FileKeyword(values_[depth_ - 1], keyword);
  }
}

// ---- Errors -------------------------------------------------------------------------------------

template <class Builder>
bool Engine<Builder>::Recover(const char* message) {
  parser_.yyerror(message);
  if constexpr (Builder::kRecovers) {
    const Resumption resumption = builder_.Recover(Describe(message));
    if (resumption.action == Resumption::kStop) return false;
    Resume(resumption);
    return true;
  } else {
    return false;
  }
}

// `afterLine`: the token follows a plain line that is already off the stack.
template <class Builder>
void Engine<Builder>::NoteStack(bool afterLine) {
  if constexpr (Builder::kRecovers) {
    afterLine_ = afterLine;
    notedDepth_ = depth_;
    std::copy(states_, states_ + depth_, notedStates_);
    notedValues_[0] = values_[depth_ - 1];
    notedValues_[1] = values_[depth_ > 1 ? depth_ - 2 : 0];
  }
}

template <class Builder>
ParseFailure Engine<Builder>::Describe(const char* message) const {
  ParseFailure failure{code_, message == kTooDeep, ParseContext::kOutside, 0, 0, notedValues_[0]};
  for (std::size_t at = 0; at < depth_; ++at) {
    if (kLineStates[static_cast<std::size_t>(states_[at])]) ++failure.sections;
  }
  failure.context = ContextOf(notedStates_[notedDepth_ - 1]);
  const ParseContext below =
      notedDepth_ > 1 ? ContextOf(notedStates_[notedDepth_ - 2]) : ParseContext::kOutside;
  if (failure.context == ParseContext::kName && below == ParseContext::kHeader) {
    failure.context = below;
    failure.anchor = notedValues_[1];
  } else if (failure.context == ParseContext::kName && below == ParseContext::kMarker) {
    failure.context = ParseContext::kDefault;
  }
  for (const ExpectedToken& expected : kExpectedTokens) {
    if (Accepts(notedStates_, notedDepth_, TokenNumber(expected.code)))
      failure.expected |= expected.bits;
  }
  if (afterLine_) {
    failure.context = ParseContext::kAfterValue;
    failure.expected |= kExpectComma | kExpectRemark;
  }
  return failure;
}

// Pops the stack to the body of the open section, or to the list of sections at the top level.
template <class Builder>
void Engine<Builder>::Resume(const Resumption& resumption) {
  while (depth_ > 1 && !kLineStates[static_cast<std::size_t>(State())]) --depth_;
  if (depth_ == 1) Push(GoTo(State(), yyr1[kListEmpty]), {});
  if (resumption.action == Resumption::kOpenSection && HasRoom(1)) {
    Push(GoTo(State(), yyr1[kBodyHeader]), {});
  } else if (resumption.action == Resumption::kCloseSection && depth_ > 2) {
    --depth_;
    Push(GoTo(State(), yyr1[kSectionEnd]), {});
  }
  token_ = kNoToken;
  lexer_.MoveTo(resumption.at);
}

template class Engine<TreeBuilder>;
template class Engine<Checker>;
template class Engine<ItemBuilder>;

}  // namespace zon
