// The scanner: texts and their tokens. Every text is scanned from memory and from a file; both must
// agree in every token, every error and the counters at the end.
#include "treetext.h"

namespace {

using namespace std::string_literals;

// The counters are those of a source that has consumed the text.
void ExpectConsumed(const std::string& text, const CyyInput& input) {
  EXPECT_EQ(input.GetNoChars(), text.size());
  EXPECT_EQ(input.GetNoLines(), 1 + std::count(text.begin(), text.end(), '\n'));
  EXPECT_EQ(input.GetPosition(), text.size() - text.rfind('\n') - 1);
}

// What was scanned: tokens as in "name<k> = int<2> ", or the error as "line:position message"; then
// the number of comments.
std::string ScanOne(CyyInput* input, const std::string& text) {
  const char* const names[] = {"int",  "real", "bool",    "string", "name",
                               "note", "end",  "default", "date",   "file"};
  CzonParser parser(input);
  std::ostringstream outcome;
  for (int token; (token = parser.yylex()) != ENDOFINPUT; parser.ClearTokens()) {
    std::ostringstream texts;
    parser.WriteTokens(texts);  // a newline after each
    std::string shown =
        token < 127 ? std::string(1, static_cast<char>(token)) : std::to_string(token);
    if (parser.GetNoTokens() != 0) shown = names[token - INTEGER] + ("<" + texts.str());
    if (parser.GetNoTokens() != 0) shown.back() = '>';
    outcome << shown << ' ';
  }
  EXPECT_EQ(parser.yylex(), ENDOFINPUT) << "the end is final";
  if (parser.HasError()) {
    outcome.str("");
    outcome << parser.GetErrorLine() << ':' << parser.GetErrorPosition() << ' ';
    outcome << parser.GetError() << ' ';
  } else {
    ExpectConsumed(text, *input);
  }
  if (parser.GetNoComments() != 0) outcome << parser.GetNoComments() << " comments";
  return outcome.str();
}

std::string Scan(const std::string& text) {
  const auto [memory, file] = host::BothSources(text);
  const std::string outcome = ScanOne(memory, text);
  EXPECT_EQ(ScanOne(file, text), outcome);
  return outcome;
}

TEST(Scanner, TextsBecomeTokensOrAnError) {
  const struct {
    const char* name;
    std::string text, outcome;
  } rows[] = {
      {"white space separates, other characters are tokens", "[A_1]\t\r\v\f=,()+-%:=2'x'3|y|k",
       "[ name<A_1> ] = , ( ) + - % : = int<2> string<x> int<3> file<y> name<k> "},
      {"EndSect may go on but not be cut", "EndSect endsecT endsec EndSects",
       "end<EndSect> end<endsecT> name<endsec> name<EndSects> "},
      {"words are reserved whole, names begin with a letter", "TRUE t DEFAULT default_ _a 1b_2",
       "bool<TRUE> name<t> default<DEFAULT> name<default_> _ name<a> int<1> name<b_2> "},
      {"signs are tokens, but not in an exponent", "-5 +.5e3 007 1.e-3 1E+07",
       "- int<5> + real<.5e3> int<007> real<1.e-3> real<1E+07> "},
      {"a number ends where nothing fits", "1.x 1..5 1.5.5e1e",
       "real<1.> name<x> real<1.> real<.5> real<1.5> real<.5e1> name<e> "},
      {"a doubled quote is one quote", "'it''s''' '' '''' 'a\nb;//'",
       "string<it's'> string<> string<'> string<a\nb;//> "},
      {"file names and dates are verbatim", "|a\\b'#{;| || #1#|x|##",
       "file<a\\b'#{;> file<> date<1> file<x> date<> "},
      {"notes drop newlines", "{a\nb\r\n\n'c|{} {}}", "note<ab\r'c|{> note<> } "},
      {"half a comment mark is a token", "a/b c*/", "name<a> / name<b> name<c> * / "},
      {"line comments end at the newline", "a//\0b\nc;\0d"s, "name<a> name<c> 2 comments"},
      {"a comment hides the marks of others", "a;/*\nb//*/\nc/*;*/d/***/e",
       "name<a> name<b> name<c> name<d> name<e> 4 comments"},
      {"block comments nest", "/* a /* b */ c */d /*/**/*/e/*\n/*/*\n*/*/*/f//",
       "name<d> name<e> name<f> 8 comments"},
      {"bytes from 128 up", "\x80 \xFF\xC4x@ '\xFF' #\x80#",
       "128 255 196 name<x> @ string<\xFF> date<\x80> "},
      {"a zero byte is a token, in a text it ends the text", "\0a\0 'a\0b' |\0| {x\0\n}c"s,
       "256 name<a> 256 string<a> file<> note<x> name<c> "},
      // The place of an error is that after the wrong character, or the end of the text.
      {"outer comment not closed", "/* /* */ b", "1:10 Bad comment 1 comments"},
      {"overlapping marks", "/*/", "1:3 Bad comment "},
      {"note not closed", "{a\nb", "2:1 Missing } "},
      {"string ends in a doubled quote", "'a\n''", "2:2 Bad string "},
      {"two points and no digit", "1..\n5", "2:0 Expecting digit "},
      {"point and no digit", " .x5", "1:3 Expecting digit "},
      {"exponent without digits", "1.5Ex", "1:5 Bad scale factor "},
      {"exponent with a sign only", "1e-\n5", "2:0 Bad scale factor "},
      {"EndSect after a number", "12EndSect", "1:4 Bad scale factor "},
      {"newline in a file name", "x |ab\r\nc|", "2:0 Missing | "},
      {"newline in a date", "#\n#", "2:0 Missing # "}};
  for (const auto& row : rows) EXPECT_EQ(Scan(row.text), row.outcome) << row.name;
}

// A file is read in blocks of up to 65536 bytes.
TEST(Scanner, TokensMayBeLongerThanABlock) {
  Scan("/* " + std::string(70000, '*') + "*/'" + std::string(140000, '\'') + "'");
  Scan(";" + std::string(65533, 'c') + "\n{" + std::string(140000, '\n') + "}.");
}

TEST(Scanner, SkipsACommentWithAnyDelimiters) {
  const struct {
    const char* name;
    std::string text;
    const char* delimiters;
    unsigned comments;
    std::string skipped;
  } rows[] = {{"zero byte inside", "/* \0 */x"s, "/*", 1, "/* \0 */"s},
              {"nested", "(*\n(* *( *(x", "(*", 2, "(*\n(* *( *("},
              {"bytes from 128 up", "\xFE\xFF \xFF\xFEx", "\xFE\xFF", 1, "\xFE\xFF \xFF\xFE"},
              {"not closed", "/* a", "/*", 0, "/* a"},
              {"not next", "\n/*", "/*", 0, ""},
              {"half an opener", "/", "/*", 0, ""},
              {"three delimiters", "/**/", "/**", 0, ""}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    for (CyyInput* input : host::BothSources(row.text)) {
      CzonParser parser(input);
      EXPECT_EQ(parser.SkipComment(nullptr), 0);
      EXPECT_EQ(parser.SkipComment(row.delimiters), row.comments > 0 ? 1 : 0);
      EXPECT_EQ(parser.GetNoComments(), row.comments);
      ExpectConsumed(row.skipped, *input);
    }
  }
}

TEST(Scanner, SkipsTheLineButNotItsNewline) {
  for (CyyInput* input : host::BothSources("/ to the end\nx")) {
    CzonParser parser(input);
    parser.SkipEOL();
    ExpectConsumed("/ to the end", *input);
    EXPECT_EQ(parser.GetNoComments(), 1U);
    EXPECT_EQ(input->GetCh(), '\n');
  }
}

struct Capitals : CyyStream {
  using CyyStream::CyyStream;
  int Get() override { return std::toupper(CyyStream::Get()); }
};

TEST(Source, DerivedStreamsDeliverEachCharacter) {
  CyyInput* const input = new Capitals(host::WriteFile("scan.zon", "a = 'd'").c_str());
  EXPECT_EQ(ScanOne(input, "a = 'd'"), "name<A> = string<D> ");
}

std::string Consume(CyyInput& input, int count) {
  std::string text;
  for (int c; count > 0 && (c = input.GetCh()) >= 0; --count) text += static_cast<char>(c);
  return text;
}

TEST(Source, PutBackRevertsTheCounters) {
  for (CyyInput* input : host::BothSources("ab\n\xFF")) {
    const std::unique_ptr<CyyInput> owner(input);
    EXPECT_EQ(Consume(*input, 3), "ab\n");
    input->PutBack('\n');
    input->PutBack('b');
    ExpectConsumed("a", *input);
    EXPECT_EQ(Consume(*input, 3), "b\n\xFF");
    EXPECT_EQ(input->GetCh(), -1);
    EXPECT_EQ(input->GetCh(), -1);
    input->PutBack(-1);  // ignored
    EXPECT_EQ(input->Peek(), -1);
    ExpectConsumed("ab\n\xFF", *input);
    input->PutBack(0xFF);
    EXPECT_EQ(input->Peek(), 0xFF);
    ExpectConsumed("ab\n", *input);
    input->GetCh();
    input->PutBack(0);
    EXPECT_EQ(input->GetCh(), 0);
  }
}

TEST(Source, StreamsHoldSixteenCharactersPutBack) {
  CyyStream stream(host::WriteFile("scan.zon", "x").c_str());
  for (int n = 0; n < 10; ++n) {
    stream.Put(-1);  // needs no room
    stream.Put('p');
  }
  for (int n = 0; n < 9; ++n) stream.Put('p');
  EXPECT_EQ(Consume(stream, 99), std::string(16, 'p') + "x");
}

TEST(Scanner, FilesThatDoNotOpenAreEmpty) {
  for (const char* name : {"/nowhere/file.zon", "", "/", static_cast<const char*>(nullptr)}) {
    auto* const input = new CyyStream(name);
    CzonParser parser(input);
    EXPECT_EQ(input->GetStatus(), 2);
    EXPECT_EQ(parser.yylex(), ENDOFINPUT);
    EXPECT_EQ(parser.Parse(0), 0);
    EXPECT_EQ(parser.SkipComment("/*"), 0);
    parser.SkipEOL();
    EXPECT_EQ(input->GetNoChars(), 0U);
    input->PutBack('x');
    EXPECT_EQ(input->GetCh(), -1);
  }
}

TEST(Scanner, AnErrorMayHaveNoMessage) {
  CzonParser parser(nullptr);
  EXPECT_FALSE(parser.HasError());
  parser.yyerror(nullptr);
  EXPECT_TRUE(parser.HasError());
  EXPECT_EQ(parser.GetError(), "");
}

// A scanner of a host: it delivers the tokens of a list by the public functions.
struct ListScanner : CzonParser {
  ListScanner() : CzonParser(new host::Memory("")) {}
  int yylex() override {
    mostTexts = std::max(mostTexts, GetNoTokens());
    if (next == tokens.size()) return ENDOFINPUT;
    const auto& [code, text] = tokens[next++];
    if (text != nullptr) EndToken(text);
    return code;
  }
  std::vector<std::pair<int, const char*>> tokens;
  std::size_t next = 0;
  unsigned mostTexts = 0;
};

TEST(Scanner, DerivedScannersDeliverSignedNumbers) {
  ListScanner parser;
  parser.tokens = {{'[', nullptr},  {IDENTIFIER, "A"}, {']', nullptr}, {IDENTIFIER, "k"},
                   {'=', nullptr},  {STRING, "text"},  {',', nullptr}, {'-', nullptr},
                   {INTEGER, "5"},  {',', nullptr},    {'+', nullptr}, {REAL, "2.5"},
                   {ENDSECT, "End"}};
  EXPECT_EQ(parser.Parse(0), 0);
  EXPECT_EQ(host::Show(parser.GetRoot()), "{A{k(string text, int -5, real +2.5)}}");
  EXPECT_EQ(parser.mostTexts, 6U) << "texts are listed while the parse runs";
  EXPECT_EQ(parser.GetNoTokens(), 0U);
}

TEST(Scanner, UnknownTokensAreRefused) {
  ListScanner parser;
  parser.tokens = {{'[', nullptr}, {5000, nullptr}};
  EXPECT_EQ(parser.Parse(0), 1);
  EXPECT_EQ(parser.GetError(), "syntax error");
}

}  // namespace
