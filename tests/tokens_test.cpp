// The token reader: texts and the tokens they give, side by side. One line holds a whole run:
// codes, texts behind colons, and for an error "-1 line:position message", where the run stops.
#include "treetext.h"

namespace {

using namespace std::string_literals;

const char* Written(const std::string& text) {
  static std::string path;
  path = host::WriteFile("tokens", text);
  return path.c_str();
}

std::string Tokens(const std::string& text) {
  auto* input = new CzonInput;
  EXPECT_EQ(0, input->open(Written(text)));
  CzonTokenReader reader(input);
  std::string line;
  std::size_t calls = 1, sections = 0;
  int token = reader.NextToken();
  for (; token > 0; token = reader.NextToken(), ++calls) {
    line += std::to_string(token) + (reader.GetTokenText().empty() ? " " : ":");
    if (!reader.GetTokenText().empty()) line += reader.GetTokenText() + " ";
    if (token == 100) ++sections;
  }
  line += std::to_string(token);
  if (token == -1) {
    line += " " + std::to_string(reader.GetErrorLine()) + ":";
    line += std::to_string(reader.GetErrorPosition()) + " " + reader.GetErrorText();
  }
  // Reading on always comes to an end, and then stays there or goes on to leave sections.
  for (; token != 0; token = reader.NextToken()) {
    if (token == 100) ++sections;
    if (++calls > text.size() + sections + 2) return line + " and no end";
  }
  return line;
}

TEST(Tokens, Texts) {
  const std::string section = "Format error. Expected start of section '['";
  const std::string equals = "Expected '=' for keyword definition";
  const std::string end = "Expected EndSect definition";
  const std::pair<std::string, std::string> rows[] = {
      {" ; only\n// comments\n/* and { blanks */\t\v\f\r", "0"},
      {"[a_1][][C]k=1 EndSect // C\nj=2 EndSect EndSect[D]EndSect",
       "100:a_1 100 100:C 200:k 1020:1 101 200:j 1020:2 101 101 100:D 101 0"},
      {"[A] k = , 2 j =\n+, -e5 k = 0,-5,12.,.5,+.5,1.5E3,2.e-03,.5e+3k = |a\nb\\c''|,||EndSect",
       "100:A 200:k 1000 1020:2 200:j 1020:+ 1021:-e5 200:k 1020:0 1020:-5 1021:12. 1021:.5 "
       "1021:+.5 1021:1.5E3 1021:2.e-03 1021:.5e+3 200:k 1200:a\nb\\c'' 1200 101 0"},
      {"[A] k = true,false,trueish = 'it''s', '', '''', 'a\nb{;//\xFF\0c'EndSec = 2 E=4"s,
       "100:A 200:k 1010 1011 1010 200:ish 1030:it's 1030 1030:'"s
       " 1030:a\nb{;//\xFF\0c 200:EndSec 1020:2 200:E 1020:4 0"s},
      {"[A] tru = tru E=4", "100:A 200:tru 1000 -1 1:15 " + equals},
      {"[A] k = 1 EndSection", "100:A 200:k 1020:1 101 -1 1:18 " + section},
      {"{}} [A] {{} k {\n} = /*/ no */ 1 // no\n, /**/ 2 /* /* */ , /***/ 3 ; no\0no\nEndSect"s,
       "100:A 200:k 1020:1 1020:2 1020:3 101 0"},
      {"[A] k = 1, ", "100:A 200:k 1020:1 1000 0"},
      {"\n\xFF", "-1 2:1 " + section},
      {"[A\n]", "-1 2:0 Bad section, expected ]"},
      {"[A", "-1 1:2 Bad section, missing ], end of file reached"},
      {"[A]\n  _k = 1", "100:A -1 2:2 " + end},
      {"[A] k = a / b", "100:A 200:k 1000 -1 1:11 " + equals},
      {"[A]\nendsect\n", "100:A -1 3:0 " + equals},
      {"[A] k = 1..2", "100:A 200:k 1021:1. -1 1:10 " + end},
      {"[A] k = -.\n5", "100:A 200:k -1 2:0 Expecting digit after ."},
      {"[A] k = 1e+-5", "100:A 200:k -1 1:12 Bad floating point exponent definition (e/E)"},
      {"[A] k = 'a''\n", "100:A 200:k -1 2:0 Bad string, missing closing quote '"},
      {"[A] k = |a'", "100:A 200:k -1 1:11 Bad filename string, missing closing bar |"},
      {"/*/", "-1 1:3 Bad comment, missing */"},
      {"[A] /* /* */ k = 1 /* **", "100:A 200:k 1020:1 -1 1:24 Bad comment, missing */"},
      {"[A] {}\nk = 1 EndSect", "100:A -1 2:13 Bad comment, missing }"}};
  for (const auto& [text, tokens] : rows) EXPECT_EQ(tokens, Tokens(text)) << text;
}

// Wherever the end of a read block falls, tokens and counters are the same.
TEST(Tokens, AcrossBlocks) {
  const std::string text =
      "[A_1]{}}/* * */name_1 = -12.5e+07, 'it''s', |f|, true,false , EndSec=1 EndSect /x";
  const std::string tokens =
      "100:A_1 200:name_1 1021:-12.5e+07 1030:it's 1200:f 1010 1011 1000 200:EndSec 1020:1 101 -1 ";
  const std::string message = " Format error. Expected start of section '['";
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    const std::size_t before = 65536 - cut;
    EXPECT_EQ(tokens + "1:" + std::to_string(before + 80) + message,
              Tokens(std::string(before, ' ') + text));
    EXPECT_EQ(tokens + "2:80" + message, Tokens(";" + std::string(before - 2, 'c') + "\n" + text));
  }
}

// Time and stack stay in proportion whatever is repeated.
TEST(Tokens, Repetition) {
  for (const std::string& piece :
       {"[]"s, "[A]k="s, "/*"s, "{"s, "{}"s, "EndSec"s, "k="s, "k=,,,"s, "[A]//"s, "'''"s,
        "[A]\n/"s, "1e5."s, "\0"s, "EndSect"s, "[A];\n"s}) {
    for (std::string text : {"", "[A] k = ", "[A] k = 'x' "}) {
      while (text.size() < 200000) text += piece;
      EXPECT_EQ(std::string::npos, Tokens(text).find("and no end")) << piece;
    }
  }
}

TEST(TokenInput, CountersAndPushBack) {
  CzonInput input;
  ASSERT_EQ(0, input.open(Written("ab\nc\xFF")));
  const auto counters = [&input] {
    return std::to_string(input.Characters()) + " " + std::to_string(input.Lines()) + " " +
           std::to_string(input.Position()) + " " + std::to_string(input.PreviousPosition());
  };
  for (int c : {'a', 'b', '\n'}) EXPECT_EQ(c, input.get());
  EXPECT_EQ("3 2 0 2", counters());
  EXPECT_EQ('c', input.get());
  for (char c : {'d', '\n'}) input.putback(c);
  EXPECT_EQ("2 1 2 2", counters());
  for (int c : {int{'\n'}, int{'d'}, 0xFF, -1, -1}) EXPECT_EQ(c, input.get());
  EXPECT_EQ(2, input.open("/"));
  for (int i = 0; i < 300000; ++i) input.putback(static_cast<char>(i % 251));
  for (int i = 300000; i-- > 0;) ASSERT_EQ(i % 251, input.get()) << i;
  EXPECT_EQ(5U, input.Characters());
  ASSERT_EQ(0, input.open(Written("a")));
  EXPECT_EQ("0 1 0 0", counters());
}

TEST(TokenReader, WordsStayUnread) {
  auto* input = new CzonInput;
  ASSERT_EQ(0, input->open(Written("\n[] EndSecEndSect")));
  CzonTokenReader reader(input), none(nullptr);
  EXPECT_EQ(100, reader.NextToken());
  const int c = reader.GetChSkipBlanks();
  EXPECT_TRUE(!reader.InputIs(c, "EndSect") && reader.InputPeak(c, "EndSecEnd"));
  EXPECT_EQ(5U, input->Characters());
  EXPECT_TRUE(reader.InputIs(c, "EndSec"));
  EXPECT_EQ(101, reader.ParseSectionBody());
  EXPECT_EQ(-1, none.ParseNumber('.'));
  EXPECT_EQ(~0U, none.GetErrorLine() & none.GetErrorPosition());
}

TEST(TokenReader, AnswersForEveryState) {
  using Reader = CzonTokenReader;
  static const auto number = [](Reader& r) { return r.ParseNumber('-'); };
  // What is read, of which text, and the code, token text and error.
  const std::tuple<std::function<int(Reader&)>, const char*, const char*> rows[] = {
      {&Reader::ParseParFile, "[A]", "100 A "},
      {&Reader::ParseSectionList, " ", "0  "},
      {&Reader::ParseSection, "[A]", "100 A "},
      {&Reader::ParseSection, "A", "-1  Bad section, expected ["},
      {&Reader::ParseSectionHeader, "[A]", "1 A "},
      {&Reader::ParseEndSection, "EndSect", "101  "},
      {&Reader::ParseKeyword, "k=", "200 k "},
      {&Reader::ParseKeyword, "=", "-1  Expected keyword string"},
      {&Reader::ParseKeyword, "k/*", "-1 k Bad comment, missing */"},
      {&Reader::ParseMoreParameter, ",5", "1020 5 "},
      {&Reader::ParseMoreParameter, "[A]", "100 A "},
      {&Reader::ParseMoreParameter, "{", "-1  Bad comment, missing }"},
      {&Reader::ParseSimParameter, "fals", "1000  "},
      {&Reader::ParseSectionBody, "/*", "-1  Bad comment, missing */"},
      {&Reader::ParseString, "a''b'", "1030 a'b "},
      {&Reader::ParseFilename, "a|", "1200 a "},
      {&Reader::GetChSkipBlanks, "{", "-1  Bad comment, missing }"},
      {number, "5", "1020 -5 "},
      {[](Reader& r) { return r.ParseNumber(-1); }, "5", "1020 5 "},
      {[](Reader& r) { return r.InputIs('x', nullptr) + r.InputIs('x', ""); }, "", "0  "},
      {[](Reader& r) { return r.InputPeak('x', "y") + r.InputPeak('x', "xy"); }, "", "0  "},
      {[](Reader& r) { return number(r), r.Error(nullptr), 0; }, "-", "0 - "}};
  for (const auto& [read, text, outcome] : rows) {
    auto* input = new CzonInput;
    EXPECT_EQ(0, input->open(Written(text)));
    Reader reader(input);
    const std::string code = std::to_string(read(reader));
    EXPECT_EQ(code + " " + reader.GetTokenText() + " " + reader.GetErrorText(), outcome) << text;
  }
}

TEST(Zont, Handles) {
  const int free = host::LowestFreeDescriptor();
  void* reader = nullptr;
  zontDispose(&reader);
  for (const char* name : {"/nowhere/at/all", "/", static_cast<const char*>(nullptr)})
    EXPECT_EQ(1001, zontLoadFile(name, &reader));
  EXPECT_EQ(nullptr, reader);
  const char* const path = Written("[A]k='a\0b'"s);
  EXPECT_EQ(0, zontLoadFile(path, nullptr));
  ASSERT_EQ(0, zontLoadFile(path, &reader));
  for (int token : {100, 200, 1030}) EXPECT_EQ(token, zontNextToken(reader));
  EXPECT_STREQ("a", zontGetTokenString(reader));
  for (int i = 0; i < 5; ++i) EXPECT_EQ(0, zontNextToken(reader));
  EXPECT_EQ(free, host::LowestFreeDescriptor());  // closed at its end, as is the one without a handle
  zontDispose(&reader);
  zontDispose(nullptr);
  unsigned int line = 1, position = 1;
  EXPECT_EQ(-2, zontNextToken(nullptr));
  EXPECT_STREQ("Handle is NULL", zontGetTokenString(nullptr));
  EXPECT_STREQ("Handle is NULL", zontGetError(nullptr, &line, &position));
  EXPECT_EQ(~0U, line & position);
  ASSERT_EQ(0, zontLoadFile("/proc/self/mem", &reader));  // nothing is mapped at 0
  EXPECT_EQ(-1, zontNextToken(reader));
  EXPECT_STREQ("Read error", zontGetError(reader, &line, &position));
  EXPECT_EQ(1U, line + position);
  EXPECT_EQ(0, zontNextToken(reader));
  zontDispose(&reader);
}

}  // namespace
