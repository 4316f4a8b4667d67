// The table engine: shifts tokens and reduces rules as the tables of zongram.inc say. Tested by
// tests/grammar_test.cpp.
//
// Stack and state are the parser's own, so a hook may load another file in the middle of a parse.
#include <array>
#include <cstddef>
#include <iterator>

#include "reader/zonparser.h"
#include "tree/zonkeyw.h"
#include "tree/zontarli.h"

namespace {

#include "reader/zongram.inc"

// The number by which the tables know a code of the scanner.
constexpr int kHighestToken = FILENAME;

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

static_assert(kTokenNumbers[INTEGER] != YYUNKCODE && kTokenNumbers[FILENAME] != YYUNKCODE,
              "grammar and scanner number the tokens alike");

int TokenNumber(int code) {
  if (code <= 0) return YYEOFCODE;
  return code <= kHighestToken ? kTokenNumbers[static_cast<std::size_t>(code)] : YYUNKCODE;
}

constexpr int kNoToken = -1;
constexpr int kNoState = -1;

// The state to which a token leads; kNoState where it does not fit.
constexpr int ShiftTo(int state, int token) {
  const int at = yypact[state] + token;
  if (at < 0 || at >= YYLAST) return kNoState;
  return yychk[yyact[at]] == token ? yyact[at] : kNoState;
}

// The state to which a symbol leads that rules have made.
constexpr int GoTo(int state, int left) {
  const int at = yypgo[left] + state + 1;
  if (at < YYLAST && yychk[yyact[at]] == -left) return yyact[at];
  return yyact[yypgo[left]];
}

// The states for which `belongs` holds.
template <class Predicate>
constexpr std::array<bool, YYNSTATES> StatesWhere(Predicate belongs) {
  std::array<bool, YYNSTATES> states{};
  for (int state = 0; state < YYNSTATES; ++state) {
    states[static_cast<std::size_t>(state)] = belongs(state);
  }
  return states;
}

// Behind the '=' and behind each ',' of a list, where a value may stand.
constexpr std::array<bool, YYNSTATES> kItemStates =
    StatesWhere([](int state) { return ShiftTo(state, kTokenNumbers[BOOLEAN]) != kNoState; });

// In a section, where a line may begin.
constexpr std::array<bool, YYNSTATES> kBodyStates =
    StatesWhere([](int state) { return yychk[state] == -yyr1[kBodyKeyword]; });

// What a line pushes at the most above its section: keyword, '=', sign, number.
constexpr std::size_t kRoomOfLine = 4;

// The list of exceptions: for each state of it -1 and the state, then pairs of a token and its
// rule, then -2 and the rule for every other token. A rule below 0 accepts.
int ExceptionalRule(int state, int token) {
  bool ofState = false;
  for (std::size_t at = 0; at + 1 < std::size(yyexca); at += 2) {
    const int first = yyexca[at];
    const int second = yyexca[at + 1];
    if (first == -1) {
      ofState = second == state;
    } else if (ofState && (first == token || first == -2)) {
      return second;
    }
  }
  return 0;
}

}  // namespace

// States, and the values of the symbols that led to them.
struct CzonParser::Stack {
  static constexpr std::size_t kDepth = 150;

  bool HasRoom(std::size_t more) const { return depth + more <= kDepth; }
  void Push(int state, const Value& value) {
    states[depth] = state;
    values[depth++] = value;
  }
  int State() const { return states[depth - 1]; }

  int states[kDepth];
  Value values[kDepth];
  std::size_t depth = 0;
};

int CzonParser::ReadToken() {
  return hasOwnScanner_ ? NextToken() : yylex();
}

int CzonParser::yyparse() {
  Stack stack;
  stack.Push(0, {});
  int token = kNoToken;
  for (;;) {
    if (stack.HasRoom(kRoomOfLine)) TakeLines(stack, token);
    const int state = stack.State();

    // A state that knows what to do without the next token does not read it: that is where errors
    // stand, and why a scanner error behind a complete section is none of the parser's.
    if (yypact[state] > YYFLAG) {
      if (token == kNoToken) token = TokenNumber(ReadToken());
      const int next = ShiftTo(state, token);
      if (next != kNoState) {
        if (!stack.HasRoom(1)) break;
        stack.Push(next, yylval_);
        token = kNoToken;
        continue;
      }
    }

    int rule = yydef[state];
    if (rule == -2) {
      if (token == kNoToken) token = TokenNumber(ReadToken());
      rule = ExceptionalRule(state, token);
      if (rule < 0) return 0;
    }
    if (rule == 0) {
      yyerror("syntax error");
      return 1;
    }

    stack.depth -= static_cast<std::size_t>(yyr2[rule]);
    const Value value = Reduce(rule, stack.values + stack.depth);
    if (!stack.HasRoom(1)) break;
    stack.Push(GoTo(stack.State(), yyr1[rule]), value);
  }
  yyerror("yacc stack overflow");
  return 1;
}

// Takes what stands next if it is made of plain keyword lines, or of values in a list. Most of a
// file is, and what the tables do with it is always the same; so it is done here at once, up to
// whatever else follows. There the tables go on: the stack stands as they would have left it.
void CzonParser::TakeLines(Stack& stack, int& token) {
  const auto state = static_cast<std::size_t>(stack.State());
  if (kItemStates[state] && token == kNoToken) {
    auto& keyword = static_cast<CzonKeyword&>(*stack.values[stack.depth - 2].node);
    return LeaveList(stack, TakeItems(keyword), token);
  }
  if (!kBodyStates[state]) return;
  if (token == kNoToken) token = TokenNumber(ReadToken());
  while (token == kTokenNumbers[IDENTIFIER] && TakeIf('=')) {
    Value keyword{};
    keyword.node = NewNamed<CzonKeyword>(yylval_.Text(), false);
    const ListPlace place = TakeItems(static_cast<CzonKeyword&>(*keyword.node));
    if (place.kind != ListPlace::kBehindItem) {
      stack.Push(GoTo(stack.State(), yyr1[kKeywordNoRemark]), keyword);
      stack.Push(ShiftTo(stack.State(), kTokenNumbers['=']), {});
      return LeaveList(stack, place, token);
    }
    FileKeyword(stack.values[stack.depth - 1].node, keyword.node);
    token = TokenNumber(place.token);
  }
}

// The state behind the '=' or a ',' is on top of the stack; what TakeItems has taken behind it
// follows.
void CzonParser::LeaveList(Stack& stack, const ListPlace& place, int& token) {
  token = TokenNumber(place.token);
  if (place.kind == ListPlace::kBehindItem || place.isBehindComma) {
    // An empty place makes the same list as a value would.
    const int left = yyr1[yydef[stack.State()]];
    stack.depth -= 2;
    stack.Push(GoTo(stack.State(), left), stack.values[stack.depth]);
  }
  if (place.kind == ListPlace::kBehindItem) return;
  if (place.isBehindComma) stack.Push(ShiftTo(stack.State(), kTokenNumbers[',']), {});
  if (place.kind == ListPlace::kBehindSign) {
    stack.Push(ShiftTo(stack.State(), TokenNumber(place.sign)), {});
  } else if (place.kind == ListPlace::kBehindValue) {
    Value value{};
    value.node = place.value;
    stack.Push(GoTo(stack.State(), yyr1[kValueInteger]), value);
  }
}
