// The grammar: texts and their trees, or the place and text of the error.
#include "treetext.h"

namespace {

using namespace std::string_literals;

struct Case {
  const char* name;
  std::string text, tree;
};

const Case kTrees[] = {
    {"sections and keywords in any order",
     "[A] k = 1 [B] [C] endsect l = 2 endsect m = 3 default(n) = 4 [D] endsect endsect",
     "{A{k(int 1) B{C{} l(int 2)} m(int 3) default n(int 4) D{}}}"},
    {"values left out", "[A] k = l = 1,,2, m = , EndSect",
     "{A{k(undef) l(int 1, undef, int 2, undef) m(undef, undef)}}"},
    {"remarks", "[A]{a} k {b} = 1 {c}, {d}, , 'x' {e} [B]{\nf} l {} = {} EndSect EndSect",
     "{A{a}{k{b}(int 1{c}, unknown{d}, undef, string x{e}) B{f}{l(unknown)}}}"},
    {"signs", "[A] k = 5, +5, - 5, -/**/0, 2.5, -.5, +1., -\n1E-3 EndSect",
     "{A{k(int 5, int +5, int -5, int -0, real 2.5, real -.5, real +1., real -1E-3)}}"},
    {"other values", "[A] k = true, FALSE, #5#, |a\\b|, %5, % x EndSect",
     "{A{k(bool true, bool FALSE, date 5, file a\\b, subst 5, subst x)}}"},
    {"strings and packed lists",
     "[A] k = 'a''b', '', '<CLOB:>', '<cLob:I:1>>', '<CLOB:', 'x<CLOB:>' EndSect",
     "{A{k(string a'b, string , clob , clob I:1>, string <CLOB:, string x<CLOB:>)}}"},
    {"multi flags", "[A()]{r} k(){s} = () {t} = 1 EndSect", "{A(){r}{k(){s}(undef) (){t}(int 1)}}"},
    {"defaults", "[A] default(k) = default (l) {r} = 1,,{s}, default() = 'x' EndSect",
     "{A{default k(default) default l{r}(int 1, default, unknown{s}, default) "
     "default ()(string x)}}"},
    {"namesakes are numbered",
     "[A] a = 1 A = 2 default(a) = 3 default(a) = 4 [a] EndSect [A] EndSect EndSect [a] EndSect",
     "{A{a(int 1) A<2>(int 2) default a(int 3) default a(int 4) a{} A<2>{}} a<2>{}}"},
    {"() as a default is no template marker", "[A] k = 1 k = 2 default() = 1 EndSect",
     "{A{k(int 1) k<2>(int 2) default ()(int 1)}}"},
    {"neither defaults nor a section and a keyword are namesakes",
     "[A()] a = 1 [a] EndSect default(a) = 1 default(a) = 2 EndSect [b] a = EndSect",
     "{A(){a(int 1) a{} default a(int 1) default a(int 2)} b{a(undef)}}"},
    {"() as a default may come first", "[A] default() = 1 k = 1 k = 2 EndSect",
     "{A{default ()(int 1) k(int 1) k<2>(int 2)}}"}};

TEST(Grammar, TextsBecomeTrees) {
  std::vector<Case> rows(std::begin(kTrees), std::end(kTrees));
  for (const unsigned more : {62U, 63U, 64U, 128U}) {  // values are made in pieces
    Case list{"many values", "[A] k = 0", "{A{k(int 0"};
    for (unsigned n = 0; n < more; ++n) list.text += ", 1", list.tree += ", int 1";
    rows.push_back({list.name, list.text + " EndSect", list.tree + ")}}"});
  }
  for (const Case& row : rows) {
    SCOPED_TRACE(row.name);
    const host::File file(host::Load(row.text));
    EXPECT_EQ(host::ShowTree(file), row.tree);
    EXPECT_EQ(host::SyntaxError(file), "");
    EXPECT_EQ(zonGetErrorGlb(), 0);
  }
}

// The error is noticed after the text `consumed`. Where it leaves a tree, no code is set.
TEST(Grammar, ErrorsNameTheirPlace) {
  const std::string marker = "Data: invalid use of ()", twice = "Template: ambiguous identifier";
  const struct {
    std::string consumed, rest, message = "syntax error", tree = "null";
  } rows[] = {
      {"k", " = 1"},
      {"[A] EndSect EndSect", ""},
      {"[]", " EndSect"},
      {"[A {r}", "] EndSect"},
      {"[A]{r}{s}", " EndSect"},
      {"[A] k EndSect", ""},
      {"[A] k = l EndSect", ""},
      {"[A] k = {r}{s}", " EndSect"},
      {"[A] k = --", "5 EndSect"},
      {"[A] k = -true", " EndSect"},
      {"[A] default k", " = 1"},
      {"[A] default(k(", ")) = 1"},
      {"[A]\0"s, "EndSect"},
      {"\xEF", "\xBB\xBF[A]"},
      {"[A] EndSect x", ""},
      {"[A]\nk = 1\n", ""},
      {"[A] EndSect\n\0"s, ""},
      // What the scanner refuses after complete sections leaves them.
      {"[A] EndSect\n'x", "", "Bad string", "{A{}}"},
      {"'x", "", "Bad string", "{}"},
      {"[A] k = |a\n", "b| . EndSect", "Missing |"},  // only the first error is stored
      // Data has namesakes, a template has markers.
      {"[A] EndSect [a] EndSect [B()", "] EndSect", marker},
      {"[A] k = 1 k = 2 ()", " = 1 EndSect", marker},
      {"[A] k() = 1 K = 2 l", " = 3 EndSect", twice},
      {"[A] [B()] EndSect [b] EndSect", " EndSect", twice},
      // The file ends after the token at which the error is noticed.
      {"[B()] EndSect [A] EndSect [A] EndSect", " [C] EndSect", twice, "{B(){} A{} A<2>{}}"},
      {"[A] () = () = EndSect", " [C] EndSect", twice, "{A{()(undef) ()<2>(undef)}}"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.consumed + row.rest);
    const host::File file(host::Load(row.consumed + row.rest));
    EXPECT_EQ(host::SyntaxError(file), host::PlaceAfter(row.consumed) + " " + row.message);
    EXPECT_EQ(host::ShowTree(file), row.tree);
    EXPECT_EQ(zonGetErrorGlb(), row.tree == "null" ? 1003 : 0);
  }
}

// How deep sections can be nested around a content; one more overflows.
TEST(Grammar, NestingIsLimited) {
  struct Nest {
    std::string header, inside;
    int deepest;
  };
  const Nest rows[] = {{"[A]", "", 146},
                       {"[A]{r}", "k=", 146},
                       {"[A]", "k=1", 145},
                       {"[A]", "k='x',,%1", 144},
                       {"[A]", "k=-1", 144},
                       {"[A()]", "()={r}", 145},
                       {"[A]", "k=true,.5", 145},
                       {"[A]", "k=|f|", 145},
                       {"[A]", "default(k)=", 144},
                       {"[A]", "k={r},+1,-.5,#d#", 144}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.header + row.inside);
    std::string text = row.inside, ends;
    for (int depth = 0; depth < row.deepest; ++depth) {
      text = row.header + text;
      ends += " EndSect";
    }
    const host::File one(host::Load(row.header + row.inside + " EndSect"));
    const host::File deepest(host::Load(text + ends));
    EXPECT_EQ(zonGetErrorGlb(), 0);
    EXPECT_EQ(host::SyntaxError(deepest), "");
    const std::string section = host::ShowTree(one).substr(1), tree = host::ShowTree(deepest);
    EXPECT_NE(tree.find(section), std::string::npos) << "its innermost section is whole";
    const host::File tooDeep(host::Load(row.header + text + ends + " EndSect"));
    EXPECT_EQ(zonGetErrorGlb(), 1003);
    const std::string error = host::SyntaxError(tooDeep);
    EXPECT_EQ(error.substr(error.find(' ')), " yacc stack overflow");
    EXPECT_EQ(host::ShowTree(tooDeep), "null");
  }
}

// A file is read ahead, any other source token by token, with the same result. Each value in turn
// is at each place around the end of a block of the file.
TEST(Grammar, ListsMaySpanBlocks) {
  const std::string list = "1, -22, 'abc', true, |f|, 3.25e1, 'a''b', #d# EndSect";
  for (std::size_t before = 65536 - list.size() - 8; before < 65536; ++before) {
    const std::string text = std::string(before - 8, ' ') + "[A] k = " + list;
    for (CyyInput* source : host::BothSources(text)) {
      CzonParser parser(source);
      ASSERT_EQ(parser.Parse(0), 0) << before;
      ASSERT_EQ(host::Show(parser.GetRoot()),
                "{A{k(int 1, int -22, string abc, bool true, file f, real 3.25e1, string a'b, "
                "date d)}}");
      ASSERT_EQ(source->GetNoChars(), text.size());
      ASSERT_EQ(source->GetNoLines(), 1U);
      ASSERT_EQ(parser.GetNoComments(), 0U);
      ASSERT_FALSE(parser.HasError());
    }
  }
}

TEST(Parser, KeepsTokensIfAsked) {
  const std::string good = "[A] {r} k() = -.5, 'x' // c\n default(l) = |f| EndSect";
  const std::string bad = good + " wrong", tokens = "A\nr\nk\n.5\nx\ndefault\nl\nf\nEndSect\n";
  const struct {
    std::string text;
    int keep, failed;
    std::string tokens;
  } rows[] = {
      {good, 1, 0, tokens}, {bad, 1, 1, tokens + "wrong\n"}, {good, 0, 0, ""}, {bad, 0, 1, ""}};
  for (const auto& row : rows) {
    for (CyyInput* source : host::BothSources(row.text)) {
      CzonParser parser(source);
      EXPECT_EQ(parser.Parse(row.keep), row.failed) << row.text;
      std::ostringstream kept, after;
      parser.WriteTokens(kept);
      EXPECT_EQ(kept.str(), row.tokens) << row.text;
      parser.EndToken("of the host");
      parser.EndToken(nullptr);
      parser.WriteTokens(after);
      EXPECT_EQ(after.str(), row.tokens + "of the host\n\n");
    }
  }
}

struct Counting : CzonParser {
  using CzonParser::CzonParser;
  int yylex() override { return ++calls, CzonParser::yylex(); }
  int calls = 0;
};

TEST(Parser, CallsADerivedScannerForEachToken) {
  Counting parser(new CyyStream(host::WriteFile("a.zon", "[A] k = 1, -2.5 EndSect").c_str()));
  EXPECT_EQ(parser.Parse(0), 0);
  EXPECT_EQ(host::Show(parser.GetRoot()), "{A{k(int 1, real -2.5)}}");
  EXPECT_EQ(parser.calls, 11) << "ten tokens and the end";
}

TEST(Parser, MakesAStringOrAPackedList) {
  CzonParser parser(nullptr);
  std::string packed = "<CLOB:Integer:1>", open = "<CLOB:";
  const std::unique_ptr<CzonParam> list(parser.ParseStringParam(packed));
  const std::unique_ptr<CzonParam> string(parser.ParseStringParam(open));
  EXPECT_EQ(host::Show(list.get()), "clob Integer:1");
  EXPECT_EQ(host::Show(string.get()), "string <CLOB:");
}

TEST(Parser, ChecksNodesOfTheHost) {
  CzonParser parser(nullptr);
  CzonSection section("S", 0, 0);
  for (int n = 0; n < 2; ++n) section.AddKeyword(new CzonKeyword("k", 0, 0));
  parser.CheckMulti();
  parser.CheckUnique(nullptr);
  EXPECT_EQ(parser.GetError(), "");
  parser.CheckUnique(section.KeywordByNum(2));
  EXPECT_EQ(parser.GetError(), "Template: ambiguous identifier");
}

int alive = 0;
struct Watched : CzonUnknown {
  Watched() { ++alive; }
  ~Watched() override { --alive; }
};

// Each node is freed once, also inside another one that was made for the parse.
TEST(Parser, FreesTemporariesOfAFailedParse) {
  {
    CzonParser parser(new host::Memory("x"));
    parser.KeepTemp(nullptr);
    parser.KeepTemp(new Watched);
    parser.GarbageCollect();
    EXPECT_EQ(alive, 0);
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
