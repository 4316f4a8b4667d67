// The scanner: texts and the tokens they give, side by side. Every text is scanned twice, from a
// file and from a source of the host's own, and the two have to agree in every token, every count
// and every error.
#include "treetext.h"

namespace {

using namespace std::string_literals;

std::string Counters(const CyyInput& input) {
  return std::to_string(input.GetNoChars()) + " " + std::to_string(input.GetNoLines()) + " " +
         std::to_string(input.GetPosition());
}

std::string Error(const CyyParser& parser) {
  return std::to_string(parser.GetErrorLine()) + ":" + std::to_string(parser.GetErrorPosition()) +
         " " + parser.GetError();
}

// Tokens with a text in pointed brackets, others as themselves or as their code; an error stands
// alone. Then the number of comments, if any. Second, the counters behind each token.
std::pair<std::string, std::string> ScanOne(CyyInput* input, const std::string& text) {
  const char* const names[] = {"int",  "real", "bool",    "string", "name",
                               "note", "end",  "default", "date",   "file"};
  CzonParser parser(input);
  std::string tokens, counters;
  for (int token; (token = parser.yylex()) != ENDOFINPUT; parser.ClearTokens()) {
    counters += Counters(*input) + ", ";
    std::ostringstream shown;
    if (parser.GetNoTokens() != 0) {
      parser.WriteTokens(shown << names[token - INTEGER] << '<');
      tokens += shown.str();
      tokens.back() = '>';
    } else {
      tokens += token < 127 ? std::string(1, static_cast<char>(token)) : std::to_string(token);
    }
    tokens += " ";
  }
  EXPECT_EQ(parser.yylex(), ENDOFINPUT);
  // Whatever was put back, in the end every character has been counted once.
  const auto lines = 1 + std::count(text.begin(), text.end(), '\n');
  const std::string end = std::to_string(text.size()) + " " + std::to_string(lines) + " " +
                          std::to_string(text.size() - text.rfind('\n') - 1);
  EXPECT_EQ(parser.HasError() ? end : Counters(*input), end);
  if (parser.HasError()) tokens = Error(parser) + " ";
  if (parser.GetNoComments() != 0) tokens += std::to_string(parser.GetNoComments());
  return {tokens, counters};
}

std::string Scan(const std::string& text) {
  const auto [memory, file] = host::BothSources(text);
  const auto outcome = ScanOne(memory, text);
  EXPECT_EQ(ScanOne(file, text), outcome) << text;
  return outcome.first;
}

const std::pair<std::string, std::string> kTexts[] = {
    {"[A_1]\t\r\v\f=,()+-%:=2'x'3|y|k",
     "[ name<A_1> ] = , ( ) + - % : = int<2> string<x> int<3> file<y> name<k> "},
    {"EndSect endsecT endsec EndSects", "end<EndSect> end<endsecT> name<endsec> name<EndSects> "},
    {"TRUE t DEFAULT default_", "bool<TRUE> name<t> default<DEFAULT> name<default_> "},
    {"_a 1a a1_b -5 +.5 007", "_ name<a> int<1> name<a> name<a1_b> - int<5> + real<.5> int<007> "},
    {"1.e-3 1E+07 .5e3 1.x 1..5 1.5.5e1e",
     "real<1.e-3> real<1E+07> real<.5e3> real<1.> name<x> real<1.> real<.5> real<1.5> real<.5e1> "
     "name<e> "},
    {"'it''s''' '' '''' 'a\nb;//'", "string<it's'> string<> string<'> string<a\nb;//> "},
    {"|a\\b'#{;| || #1#|x|##", "file<a\\b'#{;> file<> date<1> file<x> date<> "},
    {"{a\nb\r\n\n'c|{} {}}a/b c*/", "note<ab\r'c|{> note<> } name<a> / name<b> name<c> * / "},
    {"a//\0b\nc;\0d"s, "name<a> name<c> 2"},
    {"a;/*\nb//*/\nc/*;*/d/***/e", "name<a> name<b> name<c> name<d> name<e> 4"},
    {"/* a /* b */ c */d /*/**/*/e/*\n/*/*\n*/*/*/f//", "name<d> name<e> name<f> 8"},
    {"\x80 \xFF\xC4x@ '\xFF' #\x80#", "128 255 196 name<x> @ string<\xFF> date<\x80> "},
    {"\0a\0 'a\0b' |\0| {x\0\n}c"s, "256 name<a> 256 string<a> file<> note<x> name<c> "}};

// The place is the one behind the character that was wrong, or the end of the text.
const std::pair<std::string, std::string> kErrors[] = {
    {"/* /* */ b", "1:10 Bad comment 1"}, {"/*/", "1:3 Bad comment "},
    {"/* *\n", "2:0 Bad comment "},       {"{a\nb", "2:1 Missing } "},
    {"'a\n''", "2:2 Bad string "},        {"1..\n5", "2:0 Expecting digit "},
    {" .x5", "1:3 Expecting digit "},     {"1.5Ex", "1:5 Bad scale factor "},
    {"1e-\n5", "2:0 Bad scale factor "},  {"12EndSect", "1:4 Bad scale factor "},
    {"x |ab\r\nc|", "2:0 Missing | "},    {"#\n#", "2:0 Missing # "}};

TEST(Scanner, TokensAndErrors) {
  for (const auto& [text, tokens] : kTexts) EXPECT_EQ(Scan(text), tokens) << text;
  for (const auto& [text, error] : kErrors) EXPECT_EQ(Scan(text), error) << text;
  // Comments nest, but not on the stack.
  std::string deep;
  for (int i = 0; i < 500000; ++i) deep += "/*";
  EXPECT_EQ(Scan(deep), "1:1000000 Bad comment ");
  for (int i = 0; i < 500000; ++i) deep += "*/";
  EXPECT_EQ(Scan(deep), "500000");
}

const std::string kRich =
    "[Ab_1] /* x /* y */ */ kk {re\nm} = -12.5e+07, 'it''s', |f\\g|, #2001#, 1e5, .25, 1.E-3,"
    "'plain' // c\nl = %abc ; d\n a/b 7 EndSect/**/\n";

// A file is read in blocks of up to 65536 bytes. Every place of the text gets to lie where a block
// ends and the next one overwrites it.
TEST(Scanner, AcrossBlocks) {
  const std::string text = kRich + std::string(66000, 'z');
  const std::string tokens = Scan(text);
  for (std::size_t cut = 0; cut <= kRich.size(); ++cut) {
    ASSERT_EQ(Scan("\n" + std::string(65535 - cut, ' ') + text), tokens) << cut;
  }
  Scan("/* " + std::string(70000, '*') + "*/'" + std::string(140000, '\'') + "'");
  Scan(";" + std::string(65533, 'c') + "\n{" + std::string(140000, '\n') + "}.");
}

TEST(Scanner, SkipComment) {
  // A text, the delimiters, how many comments these are, and the counters afterwards.
  const std::tuple<std::string, const char*, unsigned, const char*> rows[] = {
      {"/* \0 */x"s, "/*", 1, "7 1 7"},
      {"(*\n(* *( *(x", "(*", 2, "11 2 8"},
      {"\xFE\xFF \xFF\xFEx", "\xFE\xFF", 1, "5 1 5"},
      {"/* a", "/*", 0, "4 1 4"},
      {"\n/*", "/*", 0, "0 1 0"},
      {"/", "/*", 0, "0 1 0"},
      {"/**/", "/**", 0, "0 1 0"}};
  for (const auto& [text, delimiters, comments, counters] : rows) {
    for (CyyInput* input : host::BothSources(text)) {
      CzonParser parser(input);
      EXPECT_EQ(parser.SkipComment(nullptr), 0);
      EXPECT_EQ(parser.SkipComment(delimiters), comments > 0 ? 1 : 0) << text;
      EXPECT_EQ(parser.GetNoComments(), comments) << text;
      EXPECT_EQ(Counters(*input), counters) << text;
    }
  }
  for (CyyInput* input : host::BothSources("/ to the end\nx")) {
    CzonParser parser(input);
    parser.SkipEOL();
    EXPECT_EQ(Counters(*input) + " " + std::to_string(parser.GetNoComments()), "12 1 12 1");
    EXPECT_EQ(input->GetCh(), '\n');
  }
}

struct Capitals : CyyStream {
  using CyyStream::CyyStream;
  int Get() override { return std::toupper(CyyStream::Get()); }
};

TEST(Source, IsAskedForEachCharacter) {
  CyyInput* const input = new Capitals(host::WriteFile("scan.zon", "a = 'd'").c_str());
  EXPECT_EQ(ScanOne(input, "a = 'd'").first, "name<A> = string<D> ");
}

TEST(Source, CountsAndPutsBack) {
  for (CyyInput* input : host::BothSources("ab\n\xFF")) {
    const std::unique_ptr<CyyInput> owner(input);
    for (const int c : {'a', 'b', '\n'}) EXPECT_EQ(input->GetCh(), c);
    input->PutBack('\n');
    input->PutBack('b');
    EXPECT_EQ(Counters(*input), "1 1 1");
    for (const int c : {int{'b'}, int{'\n'}, 0xFF, -1, -1}) EXPECT_EQ(input->GetCh(), c);
    input->PutBack(-1);
    EXPECT_EQ(input->Peek(), -1);
    EXPECT_EQ(Counters(*input), "4 2 1");
    input->PutBack(0xFF);
    EXPECT_EQ(input->Peek(), 0xFF);
    EXPECT_EQ(Counters(*input), "3 2 0");
    input->GetCh();
    input->PutBack(0);
    EXPECT_EQ(input->GetCh(), 0);
  }
  CyyStream full(host::WriteFile("scan.zon", "x").c_str());
  for (int n = 0; n < 20; ++n) full.Put(n % 2 != 0 ? 'p' : -1);
  for (int n = 0; n < 9; ++n) full.Put('p');
  std::string all;
  for (int c; (c = full.Get()) >= 0;) all += static_cast<char>(c);
  EXPECT_EQ(all, std::string(16, 'p') + "x");  // there is no more room
  CzonParser parser(nullptr), silent(new host::Memory(""));
  silent.yyerror(nullptr);
  EXPECT_TRUE(silent.HasError() && silent.GetError().empty() && !parser.HasError());
  for (const char* name : {"/nowhere", "", "/", static_cast<const char*>(nullptr)}) {
    CyyStream none(name);
    EXPECT_EQ(none.GetStatus(), 2);
    none.PutBack('x');
    EXPECT_EQ(none.GetCh(), -1);
  }
}

// A stream that did not open, and one that has been parsed to its end, are at their end.
TEST(Scanner, WithoutInput) {
  for (const char* name : {"/nowhere/file.zon", "/"}) {
    CzonParser parser(new CyyStream(name));
    EXPECT_EQ(parser.yylex(), ENDOFINPUT);
    EXPECT_EQ(parser.Parse(0), 0);
    EXPECT_EQ(parser.SkipComment("/*"), 0);
    parser.SkipEOL();
    EXPECT_EQ(parser.GetInput().GetNoChars(), 0U);
  }
  CzonParser parser(new CyyStream(host::WriteFile("short.zon", "[A] EndSect").c_str()));
  EXPECT_EQ(parser.Parse(0), 0);
  EXPECT_EQ(parser.yylex(), ENDOFINPUT);
  EXPECT_EQ(parser.yylex(), ENDOFINPUT);
  EXPECT_FALSE(parser.HasError());
}

// A scanner of a host: it delivers the tokens of a list by the public functions.
class ListScanner : public CzonParser {
 public:
  struct Token {
    int code;
    const char* text;
  };
  explicit ListScanner(std::vector<Token> tokens)
      : CzonParser(new host::Memory("")), tokens_(std::move(tokens)) {}

  int yylex() override {
    mostTexts = std::max(mostTexts, GetNoTokens());
    if (next_ == tokens_.size()) return ENDOFINPUT;
    const Token& token = tokens_[next_++];
    if (token.text != nullptr) EndToken(token.text);
    return token.code;
  }

  unsigned mostTexts = 0;

 private:
  std::vector<Token> tokens_;
  std::size_t next_ = 0;
};

TEST(Scanner, DerivedScannersDeliverSignedNumbers) {
  ListScanner parser({{'[', nullptr},
                      {IDENTIFIER, "A"},
                      {']', nullptr},
                      {IDENTIFIER, "k"},
                      {'=', nullptr},
                      {STRING, "text"},
                      {',', nullptr},
                      {'-', nullptr},
                      {INTEGER, "5"},
                      {',', nullptr},
                      {'+', nullptr},
                      {REAL, "2.5"},
                      {ENDSECT, "End"}});
  EXPECT_EQ(parser.Parse(0), 0);
  EXPECT_EQ(host::Show(parser.GetRoot()), "{A{k(string text, int -5, real +2.5)}}");
  EXPECT_EQ(parser.mostTexts, 6U) << "texts are listed while the parse runs";
  EXPECT_EQ(parser.GetNoTokens(), 0U);
}

}  // namespace
