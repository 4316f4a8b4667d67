// The token reader: texts and their tokens, its input, and its functions one by one.
#include <map>

#include "treetext.h"

namespace {

using namespace std::string_literals;

const char* Written(const std::string& text) {
  static std::string path;
  path = host::WriteFile("tokens", text);
  return path.c_str();
}

std::unique_ptr<CzonTokenReader> Reader(const std::string& text) {
  auto* input = new CzonInput;
  EXPECT_EQ(input->open(Written(text)), 0);
  return std::make_unique<CzonTokenReader>(input);
}

const std::map<int, std::string> kNames = {
    {100, "section"}, {101, "EndSect"},  {200, "keyword"}, {1000, "empty"},  {1010, "true"},
    {1011, "false"},  {1020, "integer"}, {1021, "real"},   {1030, "string"}, {1200, "file"}};

// The tokens as in "keyword<k> integer<2> ", up to an error: "error 1:3 message".
std::string Tokens(const std::string& text) {
  const auto reader = Reader(text);
  std::string line;
  int token;
  while ((token = reader->NextToken()) > 0) {
    const std::string& word = reader->GetTokenText();
    line += kNames.at(token) + (word.empty() ? " " : "<" + word + "> ");
  }
  if (token == -1)
    line += "error " + std::to_string(reader->GetErrorLine()) + ":" +
            std::to_string(reader->GetErrorPosition()) + " " + reader->GetErrorText();
  return line;
}

// The outcome of an error that is noticed after the text.
std::string ErrorAfter(const std::string& text, const std::string& message) {
  return "error " + host::PlaceAfter(text) + " " + message;
}

const std::string kNoSection = "Format error. Expected start of section '['";

TEST(Tokens, TextsBecomeTokens) {
  const struct {
    const char* name;
    std::string text, tokens;
  } rows[] = {
      {"nothing", " ; only\n// comments\n/* and { blanks */\t\v\f\r", ""},
      {"sections", "[a_1][][C]k=1 EndSect // C\nj=2 EndSect EndSect[D]EndSect",
       "section<a_1> section section<C> keyword<k> integer<1> EndSect keyword<j> integer<2> "
       "EndSect EndSect section<D> EndSect "},
      {"numbers and file names",
       "[A] k = , 2 j =\n+, -e5 k = 0,-5,12.,.5,+.5,1.5E3,2.e-03,.5e+3k = |a\nb\\c''|,||EndSect",
       "section<A> keyword<k> empty integer<2> keyword<j> integer<+> real<-e5> keyword<k> "
       "integer<0> integer<-5> real<12.> real<.5> real<+.5> real<1.5E3> real<2.e-03> real<.5e+3> "
       "keyword<k> file<a\nb\\c''> file EndSect "},
      {"words may follow true", "[A] k = true,false,trueish = 2",
       "section<A> keyword<k> true false true keyword<ish> integer<2> "},
      {"strings, and parts of EndSect as names",
       "[A] k = 'it''s', '', '''', 'a\nb{;//\xFF\0c'EndSec = 2 E=4"s,
       "section<A> keyword<k> string<it's> string string<'> string<a\nb{;//\xFF\0c> "s
       "keyword<EndSec> integer<2> keyword<E> integer<4> "},
      {"comments",
       "{}} [A] {{} k {\n} = /*/ no */ 1 // no\n, /**/ 2 /* /* */ , /***/ 3 ; no\0no\nEndSect"s,
       "section<A> keyword<k> integer<1> integer<2> integer<3> EndSect "},
      {"no end of a section", "[A] k = 1, ", "section<A> keyword<k> integer<1> empty "}};
  for (const auto& row : rows) EXPECT_EQ(Tokens(row.text), row.tokens) << row.name;
}

TEST(Tokens, ErrorsNameTheirPlace) {
  const std::string equals = "Expected '=' for keyword definition";
  const std::string end = "Expected EndSect definition", comment = "Bad comment, missing */";
  const std::string open = "[A] k = ", opened = "section<A> keyword<k> ";
  const struct {
    std::string consumed, rest, tokens, message;
  } rows[] = {{"[A] tru = tru E", "=4", "section<A> keyword<tru> empty ", equals},
              {"[A] k = 1 EndSecti", "on", "section<A> keyword<k> integer<1> EndSect ", kNoSection},
              {"\n\xFF", "", "", kNoSection},
              {"[A\n", "]", "", "Bad section, expected ]"},
              {"[A", "", "", "Bad section, missing ], end of file reached"},
              {"[A]\n  ", "_k = 1", "section<A> ", end},
              {open + "a /", " b", opened + "empty ", equals},
              {"[A]\nendsect\n", "", "section<A> ", equals},
              {open + "1.", ".2", opened + "real<1.> ", end},
              {open + "-.\n", "5", opened, "Expecting digit after ."},
              {open + "1e+-", "5", opened, "Bad floating point exponent definition (e/E)"},
              {open + "'a''\n", "", opened, "Bad string, missing closing quote '"},
              {open + "|a'", "", opened, "Bad filename string, missing closing bar |"},
              {"/*/", "", "", comment},
              {"[A] /* /* */ k = 1 /* **", "", opened + "integer<1> ", comment},
              {"[A] {}\nk = 1 EndSect", "", "section<A> ", "Bad comment, missing }"}};
  for (const auto& row : rows)
    EXPECT_EQ(Tokens(row.consumed + row.rest), row.tokens + ErrorAfter(row.consumed, row.message));
}

// Each place of the text in turn is at the end of a read block.
TEST(Tokens, MaySpanBlocks) {
  const std::string text =
      "[A_1]{}}/* * */name_1 = -12.5e+07, 'it''s', |f|, true,false , EndSec=1 EndSect /";
  const std::string tokens =
      "section<A_1> keyword<name_1> real<-12.5e+07> string<it's> file<f> true false empty "
      "keyword<EndSec> integer<1> EndSect ";
  for (std::size_t cut = 0; cut <= text.size() + 1; ++cut) {
    const std::string blanks(65536 - cut, ' ');
    const std::string comment = ";" + std::string(65534 - cut, 'c') + "\n";
    for (const std::string& consumed : {blanks + text, comment + text})
      EXPECT_EQ(Tokens(consumed + "x"), tokens + ErrorAfter(consumed, kNoSection));
  }
}

TEST(Tokens, RepetitionNeedsLinearTimeAndNoStack) {
  for (const char* piece : {"[]", "[A]k=", "/*", "{", "{}", "EndSec", "k=", "k=,,,", "[A]//", "'''",
                            "[A]\n/", "1e5.", "EndSect", "[A];\n"}) {
    for (std::string text : {"", "[A] k = ", "[A] k = 'x' "}) {
      while (text.size() < 200000) text += piece;
      const auto reader = Reader(text);
      while (reader->NextToken() != 0) continue;
    }
  }
}

std::string Counters(const CzonInput& input) {
  std::ostringstream text;
  text << input.Characters() << " characters, line " << input.Lines() << ", position "
       << input.Position() << ", the line before ended at " << input.PreviousPosition();
  return text.str();
}

TEST(TokenInput, PutBackRevertsTheCounters) {
  CzonInput input;
  ASSERT_EQ(input.open(Written("ab\nc\xFF")), 0);
  for (const char c : {'a', 'b', '\n'}) EXPECT_EQ(input.get(), c);
  EXPECT_EQ(Counters(input), "3 characters, line 2, position 0, the line before ended at 2");
  EXPECT_EQ(input.get(), 'c');
  input.putback('d');
  input.putback('\n');
  EXPECT_EQ(Counters(input), "2 characters, line 1, position 2, the line before ended at 2");
  for (const int c : {int{'\n'}, int{'d'}, 0xFF, -1, -1}) EXPECT_EQ(input.get(), c);
}

TEST(TokenInput, HoldsAnyNumberOfCharactersPutBack) {
  CzonInput input;
  ASSERT_EQ(input.open(Written("x")), 0);
  for (int i = 0; i < 300000; ++i) input.putback(static_cast<char>(i % 251));
  for (int i = 300000; i-- > 0;) ASSERT_EQ(input.get(), i % 251) << i;
  EXPECT_EQ(input.Characters(), 0U);
  EXPECT_EQ(input.get(), 'x');
}

TEST(TokenInput, OpenResetsOnlyIfItSucceeds) {
  CzonInput input;
  ASSERT_EQ(input.open(Written("a\nb")), 0);
  EXPECT_EQ(input.get(), 'a');
  EXPECT_EQ(input.get(), '\n');
  EXPECT_EQ(input.open("/"), 2);
  EXPECT_EQ(input.get(), 'b');
  EXPECT_EQ(Counters(input), "3 characters, line 2, position 1, the line before ended at 1");
  ASSERT_EQ(input.open(Written("a")), 0);
  EXPECT_EQ(Counters(input), "0 characters, line 1, position 0, the line before ended at 0");
}

TEST(TokenReader, WordsStayUnread) {
  const auto reader = Reader("[] EndSecEndSect");
  EXPECT_EQ(reader->NextToken(), 100);
  const int c = reader->GetChSkipBlanks();
  EXPECT_FALSE(reader->InputIs(c, "EndSect"));
  EXPECT_TRUE(reader->InputPeak(c, "EndSecEnd"));
  reader->Error("here");
  EXPECT_EQ(reader->GetErrorPosition(), std::strlen("[] E"));
  EXPECT_TRUE(reader->InputIs(c, "EndSec"));
  EXPECT_EQ(reader->ParseSectionBody(), 101);
  EXPECT_FALSE(reader->InputIs('x', nullptr));
  EXPECT_FALSE(reader->InputIs('x', ""));
  EXPECT_FALSE(reader->InputPeak('x', "y"));
  EXPECT_FALSE(reader->InputPeak('x', "xy"));
}

TEST(TokenReader, MayHaveNoInputAndNoMessage) {
  CzonTokenReader reader(nullptr);
  EXPECT_EQ(reader.ParseNumber('.'), -1);
  EXPECT_EQ(reader.GetErrorLine(), ~0U);
  EXPECT_EQ(reader.GetErrorPosition(), ~0U);
  reader.Error(nullptr);
  EXPECT_EQ(reader.GetErrorText(), "");
}

TEST(TokenReader, ParseFunctionsReturnWhatIsNext) {
  using Reader = CzonTokenReader;
  const struct {
    const char* name;
    std::function<int(Reader&)> parse;
    const char* text;
    int token;
    std::string tokenText, error = {};
  } rows[] = {
      {"file", &Reader::ParseParFile, "[A]", 100, "A"},
      {"end of the list", &Reader::ParseSectionList, " ", 0, ""},
      {"no section", &Reader::ParseSection, "A", -1, "", "Bad section, expected ["},
      {"header", &Reader::ParseSectionHeader, "[A]", true, "A"},
      {"end", &Reader::ParseEndSection, "EndSect", 101, ""},
      {"keyword", &Reader::ParseKeyword, "k=", 200, "k"},
      {"no name", &Reader::ParseKeyword, "=", -1, "", "Expected keyword string"},
      {"no =", &Reader::ParseKeyword, "k/*", -1, "k", "Bad comment, missing */"},
      {"parameter", &Reader::ParseMoreParameter, ",5", 1020, "5"},
      {"no more", &Reader::ParseMoreParameter, "[A]", 100, "A"},
      {"note", &Reader::ParseMoreParameter, "{", -1, "", "Bad comment, missing }"},
      {"empty place", &Reader::ParseSimParameter, "fals", 1000, ""},
      {"string", &Reader::ParseString, "it''s'", 1030, "it's"},
      {"file name", &Reader::ParseFilename, "a|", 1200, "a"},
      {"body", &Reader::ParseSectionBody, "/*", -1, "", "Bad comment, missing */"},
      {"blanks", &Reader::GetChSkipBlanks, "{", -1, "", "Bad comment, missing }"},
      {"number after the end", [](Reader& r) { return r.ParseNumber(-1); }, "5", 1020, "5"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const auto reader = ::Reader(row.text);
    EXPECT_EQ(row.parse(*reader), row.token);
    EXPECT_EQ(reader->GetTokenText(), row.tokenText);
    EXPECT_EQ(reader->GetErrorText(), row.error);
  }
}

TEST(Zont, FilesAreClosed) {
  const int free = host::LowestFreeDescriptor();
  void* reader = nullptr;
  for (const char* name : {"/nowhere/at/all", "/", static_cast<const char*>(nullptr)})
    EXPECT_EQ(zontLoadFile(name, &reader), 1001);
  EXPECT_EQ(reader, nullptr);
  const char* const path = Written("[A]k='a\0b'"s);
  EXPECT_EQ(zontLoadFile(path, nullptr), 0);
  ASSERT_EQ(zontLoadFile(path, &reader), 0);
  EXPECT_EQ(zontNextToken(reader), 100);
  EXPECT_EQ(zontNextToken(reader), 200);
  EXPECT_EQ(zontNextToken(reader), 1030);
  EXPECT_STREQ(zontGetTokenString(reader), "a");
  for (int i = 0; i < 5; ++i) EXPECT_EQ(zontNextToken(reader), 0);
  EXPECT_EQ(host::LowestFreeDescriptor(), free);
  zontDispose(&reader);
}

TEST(Zont, HandlesMayBeNull) {
  void* none = nullptr;
  zontDispose(&none);
  zontDispose(nullptr);
  EXPECT_EQ(zontNextToken(nullptr), -2);
  EXPECT_STREQ(zontGetTokenString(nullptr), "Handle is NULL");
  unsigned int line = 1;
  EXPECT_STREQ(zontGetError(nullptr, &line, nullptr), "Handle is NULL");
  EXPECT_EQ(line, ~0U);
}

TEST(Zont, ReportsReadErrorsOnce) {
  void* reader = nullptr;
  unsigned int line = 0, position = 1;
  ASSERT_EQ(zontLoadFile("/proc/self/mem", &reader), 0);  // nothing is mapped at 0
  EXPECT_EQ(zontNextToken(reader), -1);
  EXPECT_STREQ(zontGetError(reader, &line, &position), "Read error");
  EXPECT_EQ(line, 1U);
  EXPECT_EQ(position, 0U);
  EXPECT_EQ(zontNextToken(reader), 0);
  zontDispose(&reader);
}

}  // namespace
