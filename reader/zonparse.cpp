// The table engine: shifts tokens and reduces rules as the tables of zongram.inc say. Tested by
// tests/grammar_test.cpp.
//
// Stack and state are the parser's own, so a hook may load another file in the middle of a parse.
#include <array>
#include <cstddef>
#include <iterator>

#include "reader/zonparser.h"
#include "tree/zontarli.h"

namespace {

#include "reader/zongram.inc"

constexpr std::size_t yymaxdepth = 150;

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

int CzonParser::yyparse() {
  int yys[yymaxdepth];    // states
  Value yyv[yymaxdepth];  // and the values of the symbols that led to them
  std::size_t depth = 0;
  int state = 0;
  int token = kNoToken;
  Value value{};
  for (;;) {
    if (depth == yymaxdepth) {
      yyerror("yacc stack overflow");
      return 1;
    }
    yys[depth] = state;
    yyv[depth++] = value;

    // A state that knows what to do without the next token does not read it: that is where errors
    // stand, and why a scanner error behind a complete section is none of the parser's.
    int next = yypact[state];
    if (next > YYFLAG) {
      if (token == kNoToken) token = TokenNumber(yylex());
      next += token;
      if (next >= 0 && next < YYLAST && yychk[yyact[next]] == token) {
        state = yyact[next];
        value = yylval_;
        token = kNoToken;
        continue;
      }
    }

    int rule = yydef[state];
    if (rule == -2) {
      if (token == kNoToken) token = TokenNumber(yylex());
      rule = ExceptionalRule(state, token);
      if (rule < 0) return 0;
    }
    if (rule == 0) {
      yyerror("syntax error");
      return 1;
    }

    depth -= static_cast<std::size_t>(yyr2[rule]);
    value = Reduce(rule, yyv + depth);
    const int left = yyr1[rule];
    const int gotoBase = yypgo[left];
    next = gotoBase + yys[depth - 1] + 1;
    if (next < YYLAST && yychk[yyact[next]] == -left) {
      state = yyact[next];
    } else {
      state = yyact[gotoBase];
    }
  }
}
