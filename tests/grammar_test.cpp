// The grammar: texts and the trees they give, side by side, or the place and text of the error.
#include <sstream>

#include "treetext.h"

namespace {

using namespace std::string_literals;

host::Texts Split(const std::string& list) {
  std::istringstream in(list);
  host::Texts texts;
  for (std::string text; std::getline(in, text, '~');) texts.push_back(text);
  return texts;
}

struct Case {
  std::string text, tree, error = {};
};

const char kTwice[] = " Template: ambiguous identifier";
const char kMarker[] = " Data: invalid use of ()";

const Case kCases[] = {
    {"[A] k = 1 [B] [C] endsect l = 2 endsect m = 3 default(n) = 4 [D] endsect endsect",
     "{A{k(int 1) B{C{} l(int 2)} m(int 3) default n(int 4) D{}}}"},
    {"[A] k = l = 1,,2, m = , EndSect",
     "{A{k(undef) l(int 1, undef, int 2, undef) m(undef, undef)}}"},
    {"[A]{a} k {b} = 1 {c}, {d}, , 'x' {e} [B]{\nf} l {} = {} EndSect EndSect",
     "{A{a}{k{b}(int 1{c}, unknown{d}, undef, string x{e}) B{f}{l(unknown)}}}"},
    {"[A] k = 5, +5, - 5, -/**/0, 2.5, -.5, +1., -\n1E-3 EndSect",
     "{A{k(int 5, int +5, int -5, int -0, real 2.5, real -.5, real +1., real -1E-3)}}"},
    {"[A] k = true, FALSE, #5#, |a\\b|, %5, % x EndSect",
     "{A{k(bool true, bool FALSE, date 5, file a\\b, subst 5, subst x)}}"},
    {"[A] k = 'a''b', '', '<CLOB:>', '<cLob:I:1>>', '<CLOB:', 'x<CLOB:>' EndSect",
     "{A{k(string a'b, string , clob , clob I:1>, string <CLOB:, string x<CLOB:>)}}"},
    {"[A()]{r} k(){s} = () {t} = 1 EndSect", "{A(){r}{k(){s}(undef) (){t}(int 1)}}"},
    {"[A] default(k) = default (l) {r} = 1,,{s}, default() = 'x' EndSect",
     "{A{default k(default) default l{r}(int 1, default, unknown{s}, default) default ()(string "
     "x)}}"},
    {"[A] a = 1 A = 2 default(a) = 3 default(a) = 4 [a] EndSect [A] EndSect EndSect [a] EndSect",
     "{A{a(int 1) A<2>(int 2) default a(int 3) default a(int 4) a{} A<2>{}} a<2>{}}"},
    {"[A]\nk = 1\n", "null", "3:0 syntax error"},
    {"[A] EndSect\n\0"s, "null", "2:1 syntax error"},
    // What the scanner refuses behind complete sections leaves them.
    {"[A] EndSect\n'x", "{A{}}", "2:2 Bad string"},
    {"'x", "{}", "1:2 Bad string"},
    {"[A] k = |a\nb| . EndSect", "null", "2:0 Missing |"},  // the first error stays
    // Data has namesakes, a template markers.
    {"[A] EndSect [a] EndSect [B()] EndSect", "null", "1:28"s + kMarker},
    {"[A] k = 1 k = 2 () = 1 EndSect", "null", "1:18"s + kMarker},
    {"[A] k = 1 k = 2 default() = 1 EndSect", "{A{k(int 1) k<2>(int 2) default ()(int 1)}}"},
    {"[A] k() = 1 K = 2 l = 3 EndSect", "null", "1:19"s + kTwice},
    {"[A] [B()] EndSect [b] EndSect EndSect", "null", "1:29"s + kTwice},
    // The file ends behind the token at which the error is noticed.
    {"[B()] EndSect [A] EndSect [A] EndSect [C] EndSect", "{B(){} A{} A<2>{}}", "1:37"s + kTwice},
    {"[A] () = () = EndSect [C] EndSect", "{A{()(undef) ()<2>(undef)}}", "1:21"s + kTwice},
    // Neither defaults nor a section and a keyword are namesakes.
    {"[A()] a = 1 [a] EndSect default(a) = 1 default(a) = 2 EndSect [b] a = EndSect",
     "{A(){a(int 1) a{} default a(int 1) default a(int 2)} b{a(undef)}}"},
    {"[A] default() = 1 k = 1 k = 2 EndSect", "{A{default ()(int 1) k(int 1) k<2>(int 2)}}"}};

// With a circumflex, which is no part of it, where the error is noticed.
const std::string kSyntaxErrors =
    "k^ = 1~[A] EndSect EndSect^~[]^ EndSect~[A {r}^] EndSect~[A]{r}{s}^ EndSect~[A] k EndSect^~"
    "[A] k = l EndSect^~[A] k = {r}{s}^ EndSect~[A] k = --^5 EndSect~[A] k = -true^ EndSect~"
    "[A] default k^ = 1~[A] default(k(^)) = 1~[A]\0^EndSect~\xEF^\xBB\xBF[A]~[A] EndSect x^~"s;

// The tree, "null" for none, and the error behind it. Where an error leaves a tree, no code is set.
TEST(Grammar, TreesAndErrors) {
  std::vector<Case> rows(std::begin(kCases), std::end(kCases));
  for (std::string text : Split(kSyntaxErrors)) {
    const std::size_t at = text.find('^');
    rows.push_back({text.erase(at, 1), "null", "1:" + std::to_string(at) + " syntax error"});
  }
  for (const unsigned more : {62U, 63U, 64U, 128U}) {  // values are made in pieces
    Case list{"[A] k = 0", "{A{k(int 0"};
    for (unsigned n = 0; n < more; ++n) list.text += ", 1", list.tree += ", int 1";
    rows.push_back({list.text + " EndSect", list.tree + ")}}"});
  }
  for (const Case& row : rows) {
    const host::File file(host::Load(row.text));
    EXPECT_EQ(host::ShowTree(file), row.tree) << row.text;
    EXPECT_EQ(host::SyntaxError(file), row.error) << row.text;
    EXPECT_EQ(zonGetErrorGlb(), row.tree == "null" ? 1003 : 0) << row.text;
  }
}

// How deep sections can lie around something; one more overflows.
TEST(Grammar, Nesting) {
  const std::tuple<std::string, std::string, int> rows[] = {
      {"[A]", "", 146},           {"[A]{r}", "k=", 146}, {"[A]", "k=1", 145},
      {"[A]", "k='x',,%1", 144},  {"[A]", "k=-1", 144},  {"[A()]", "()={r}", 145},
      {"[A]", "k=true,.5", 145},  {"[A]", "k=|f|", 145}, {"[A]", "k={r},+1,-.5,#d#", 144},
      {"[A]", "default(k)=", 144}};
  for (const auto& [header, inside, deepest] : rows) {
    std::string text = inside;
    std::string tree = host::ShowTree(host::File(host::Load(header + inside + " EndSect")));
    tree = tree.substr(1, tree.size() - 2);
    for (int depth = 1; depth <= deepest + 1; ++depth) {
      text = header + text + " EndSect";
      if (depth < deepest) continue;
      const host::File file(host::Load(text));
      EXPECT_EQ(zonPeekErrorGlb(), depth > deepest ? 1003 : 0) << text;
      const std::string error = host::SyntaxError(file);
      EXPECT_EQ(error.substr(error.find(' ') + 1), depth > deepest ? "yacc stack overflow" : "")
          << text;
      EXPECT_EQ(host::ShowTree(file).find(tree) != std::string::npos, depth == deepest) << text;
    }
  }
}

// What a parser has made of a source, and where it stands.
std::string Outcome(CyyInput* source) {
  CzonParser parser(source);
  parser.Parse(0);
  const CyyInput& input = parser.GetInput();
  return host::Show(parser.GetRoot()) + ' ' + parser.GetError() + ' ' +
         std::to_string(parser.GetErrorLine()) + ':' + std::to_string(parser.GetErrorPosition()) +
         ' ' + std::to_string(input.GetNoChars()) + ' ' + std::to_string(input.GetNoLines()) + ' ' +
         std::to_string(parser.GetNoComments());
}

// A file is read ahead, any other source token by token, with the same outcome also where a block of
// the file ends: every value stands once at each place around it.
TEST(Grammar, ListsAcrossBlocks) {
  const std::string list = "1, -22, 'abc', true, |f|, 3.25e1, 'a''b', #d# EndSect";
  for (std::size_t before = 65536 - list.size() - 8; before < 65536; ++before) {
    const std::string text = std::string(before - 8, ' ') + "[A] k = " + list;
    const auto [memory, stream] = host::BothSources(text);
    ASSERT_EQ(Outcome(stream), Outcome(memory)) << before;
  }
}

TEST(Parser, KeepsTokensIfAsked) {
  const std::string good = "[A] {r} k() = -.5, 'x' // c\n default(l) = |f| EndSect";
  for (const bool keep : {true, false}) {
    for (const std::string& text : {good, good + " wrong"}) {
      for (CyyInput* source : host::BothSources(text)) {
        CzonParser parser(source);
        EXPECT_EQ(parser.Parse(keep), text == good ? 0 : 1);
        if (keep) parser.EndToken("of the host");
        if (keep) parser.EndToken(nullptr);
        std::ostringstream tokens;
        parser.WriteTokens(tokens);
        const std::string all = "A\nr\nk\n.5\nx\ndefault\nl\nf\nEndSect\n";
        const std::string last = text == good ? "of the host\n\n" : "wrong\nof the host\n\n";
        EXPECT_EQ(tokens.str(), keep ? all + last : "");
      }
    }
  }
}

struct Counting : CzonParser {
  using CzonParser::CzonParser;
  int yylex() override { return ++calls == unknown ? 5000 : CzonParser::yylex(); }
  int calls = 0, unknown = 0;
};

TEST(Parser, AsksAScannerOfTheHost) {
  Counting parser(new CyyStream(host::WriteFile("a.zon", "[A] k = 1, -2.5 EndSect").c_str()));
  EXPECT_EQ(parser.Parse(0), 0);
  EXPECT_EQ(host::Show(parser.GetRoot()) + std::to_string(parser.calls),
            "{A{k(int 1, real -2.5)}}11");
  Counting stranger(new host::Memory("[A] EndSect"));
  stranger.unknown = 3;
  EXPECT_EQ(stranger.Parse(0), 1);
  EXPECT_EQ(stranger.GetError(), "syntax error");
  std::string clob = "<CLOB:Integer:1>", text = "<CLOB:";
  for (std::string* given : {&clob, &text}) {
    const std::unique_ptr<CzonParam> value(parser.ParseStringParam(*given));
    EXPECT_EQ(host::Show(value.get()), given == &clob ? "clob Integer:1" : "string <CLOB:");
  }
}

int alive = 0;
struct Watched : CzonUnknown {
  Watched() { ++alive; }
  ~Watched() override { --alive; }
};

// What was made for a parse goes with it, each node once.
TEST(Parser, FreesTemporariesOfAFailedParse) {
  {
    CzonParser parser(new host::Memory("x"));
    parser.KeepTemp(nullptr);
    auto* const keyword = new CzonKeyword("k", 0, 0);
    auto* const inside = new Watched;
    parser.KeepTemp(inside);
    parser.KeepTemp(keyword);
    parser.KeepTemp(new Watched);
    keyword->AddParam(inside);
    parser.Parse(0);
  }
  EXPECT_EQ(alive, 0);
}

}  // namespace
