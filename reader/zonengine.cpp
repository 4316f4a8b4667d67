#include "reader/zonengine.h"

#include <array>
#include <iterator>

#include "reader/zonlexer.h"
#include "reader/zontokencodes.h"
#include "reader/zontreebuilder.h"

namespace zon {
namespace {

#include "reader/zongrammar.inc"

// A token that only the engine makes, where the tables shift it. A derived scanner cannot.
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
              "grammar and lexer number the tokens alike");

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

// In a section, where a keyword line may begin. The section is on top of the stack.
constexpr std::array<bool, YYNSTATES> kLineStates = StatesThatShift(kTokenNumbers[ENDSECT]);

// What a line pushes above its section when it is read token by token: keyword, '=', sign, number.
// The limit on nesting is the same either way.
constexpr std::size_t kRoomOfLine = 4;

// The list of exceptions: for each state of it -1 and the state, then pairs of a token and its
// rule, then -2 and the rule for every other token. A rule below 0 accepts.
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

}  // namespace

int Engine::Run() {
  token_ = kNoToken;
  Push(0, {});
  for (;;) {
    if (yypact[State()] > YYFLAG) {
      ReadToken();
      const int next = ShiftTo(State(), token_);
      if (next != kNoState) {
        if (!HasRoom(1)) return Fail("yacc stack overflow");
        SymbolValue value;
        value.SetText(lexer_.Text());
        Push(next, value);
        token_ = kNoToken;
        continue;
      }
    }
    int rule = yydef[State()];
    if (rule == -2) {
      ReadToken();
      rule = FindExceptionalRule(State(), token_);
      if (rule < 0) return 0;  // accepted
    }
    if (rule == 0) return Fail("syntax error");
    depth_ -= static_cast<std::size_t>(yyr2[rule]);
    const SymbolValue value = builder_.Reduce(rule, values_ + depth_);
    if (!HasRoom(1)) return Fail("yacc stack overflow");
    Push(GoTo(State(), yyr1[rule]), value);
  }
}

int Engine::Fail(const char* message) {
  parser_.yyerror(message);
  return 1;
}

void Engine::Push(int state, const SymbolValue& value) {
  states_[depth_] = state;
  values_[depth_++] = value;
}

// Makes sure that there is a token. Plain values become one token where the tables shift it.
//
// A whole plain line has the same effect wherever it may begin: what the tables would push for it they
// would pop again. So it is filed at once. The token after it is read first, as the tables would do,
// because the place of an error depends on it. Saves a quarter of the time of a load.
void Engine::ReadToken() {
  const auto state = static_cast<std::size_t>(State());
  const bool mayTakeMore = takesLines_ && HasRoom(kRoomOfLine);
  if (token_ == kNoToken) {
    if (mayTakeMore && kValuesStates[state] && lexer_.ConsumeValues()) {
      token_ = kTokenNumbers[VALUES];
      return;
    }
    token_ = TokenNumber(tokens_.ReadToken());
  }
  if (!mayTakeMore || !kLineStates[state]) return;
  while (token_ == kTokenNumbers[IDENTIFIER] && lexer_.ConsumeLine()) {
    CzonKeyword* keyword = builder_.MakeLine();
    token_ = TokenNumber(tokens_.ReadToken());
    builder_.FileKeyword(values_[depth_ - 1].node, keyword);
  }
}

}  // namespace zon
