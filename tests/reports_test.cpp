// Reports of errors and warnings: what each mistake is called and where it is, and that the checker
// and the loader agree.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>

#include "reports.h"
#include "treetext.h"
#include "zonx.h"

using host::Check;
using host::Texts;

namespace {

// The handle, status and reports of a load.
struct Loaded : host::Collected {
  explicit Loaded(const std::string& text) : file(nullptr) {
    status = zonxLoadText(text.data(), text.size(), "f.zon", file.Address(), Note, this);
    zonGetSyntaxErr(file, &line, &position, nullptr);
  }
  static void Note(const zonxReport* report, void* loaded) {
    auto& self = *static_cast<Loaded*>(loaded);
    Add(report, &self);
    if (report->severity != ZONX_ERROR) return;
    if (self.errors++ == 0) self.first = *report;
  }
  // Whether the first error has the place at which the loader stopped. A template rule names the
  // first of two names instead.
  bool Agrees() const {
    if (first.rule == std::string("ambiguous-name") ||
        first.rule == std::string("marker-in-data")) {
      return true;
    }
    return (first.place.line == line && first.place.column == position) ||
           (first.related.line == line && first.related.column == position) ||
           first.rule == std::string("unclosed-section");
  }

  host::File file;
  int status;
  int errors = 0;
  unsigned int line = 0;
  unsigned int position = 0;
  zonxReport first{};
};

// No aggregate: for a long array of them g++ 12 reports uninitialized texts at -O3.
struct Input {
  Input(const char* inputName, std::string inputText)
      : name(inputName), text(std::move(inputText)) {}

  const char* name;
  std::string text;
};

struct Row {
  Input input;
  Texts reports;
};

TEST(Reports, NameMistakeAndPlace) {
  const Row rows[] = {
      {{"closed by the next quote", "[A]\n k = 'x\n j = 'y'\nEndSect\n"},
       {"2:6 unclosed-quote: the text that begins here has no closing quote @5:0"}},
      {{"quote open to the end", "[A]\n k = 'x\n j = 2\nEndSect\n"},
       {"2:6 unclosed-quote: the text that begins here has no closing quote @5:0"}},
      {{"two quotes open", "[A]\n k = 'x\n j = 2\nEndSect\n[B]\n k = 'y\n m = 1\nEndSect\n"},
       {"2:6 unclosed-quote: the text that begins here has no closing quote @7:2",
        "6:6 unclosed-quote: the text that begins here has no closing quote"}},
      {{"quote open in a list", "[A]\n k = 1, 'x, 2\n j = 'y', 3\n m = ]\nEndSect\n"},
       {"2:9 unclosed-quote: the text that begins here has no closing quote @6:0",
        "4:6 bad-value: expected a value, found `]`"}},
      {{"quote open over a section", "[A]\n k = 'x\nEndSect\n[B]\n j = 'y'\nEndSect\n"},
       {"2:6 unclosed-quote: the text that begins here has no closing quote @7:0"}},
      {{"text of several lines", "[A]\n k = 'one\n  two'\n j = ]\nEndSect\n"},
       {"4:6 bad-value: expected a value, found `]`"}},
      {{"quote in a text", "[A]\n j = 'it's'\n k = 1\nEndSect\n"},
       {"2:9 quote-in-text: a word follows the closing quote of a text @5:0"}},
      {{"text in double quotes", "[A]\n k = \"x y\"\n j = 1\nEndSect\n"},
       {"2:6+5 double-quote: a text in double quotes is not allowed"}},
      {{"open bar", "[A]\n k = |x\n j = ]\nEndSect\n"},
       {"2:6 unclosed-bar: the file name that begins here has no closing bar in its line @3:0",
        "3:6 bad-value: expected a value, found `]`"}},
      {{"open bar before a line of words", "[A]\n k = |x\n j l\nEndSect\n"},
       {"2:6 unclosed-bar: the file name that begins here has no closing bar in its line @3:0",
        "3:2 missing-equals: expected `=` after `j`, found `l`"}},
      {{"open date-time", "[A]\n k = #2020\n j = 1\nEndSect\n"},
       {"2:6 unclosed-date: the date-time that begins here has no closing # in its line @3:0"}},
      {{"comment with a number sign", "[A]\n k = 1 # length\nEndSect\n"},
       {"2:8 unclosed-date: the date-time that begins here has no closing # in its line @3:0"}},
      {{"open brace", "[A]\n k = 1 {m\n j = 2\nEndSect\n"},
       {"2:8 unclosed-brace: the remark that begins here has no closing brace @5:0"}},
      {{"open comment", "[A]\n k = 1 /* c\n j = 2\nEndSect\n"},
       {"2:8+2 unclosed-comment: the comment that begins here has no end @5:0"}},
      {{"nested comment without its own end", "/* a /* b */\n[A]\nEndSect\n"},
       {"1:1+2 unclosed-comment: the comment that begins here has no end @4:0"}},
      {{"comment that only ends", "[A]\n k = 1 */\n j = 2\nEndSect\n"},
       {"2:8 unexpected: expected `,`, a keyword, a section header or `EndSect`, found `*`"}},
      {{"open bracket", "[A\n k = 1\nEndSect\n"},
       {"1:1 unclosed-bracket: the section header that begins here has no closing bracket @2:2"}},
      {{"open bracket at the end", "[A"},
       {"1:1 unclosed-bracket: the section header that begins here has no closing bracket @1:2"}},
      {{"section of two words", "[A B]\n k = 1\nEndSect\n"},
       {"1:1+5 bad-name: `A B` is no name of a section @1:4"}},
      {{"section without a name", "[]\n k = 1\nEndSect\n"},
       {"1:1+2 bad-name: the section has no name @1:2"}},
      {{"section without an end", "[A]\n k = 1\n[B]\n j = 1\nEndSect\n"},
       {"1:1+3 unclosed-section: the section `A` has no `EndSect` @6:1"}},
      {{"two sections without an end", "[A]\n[B]\n k = 1\n"},
       {"2:1+3 unclosed-section: the section `B` has no `EndSect` @4:1",
        "1:1+3 unclosed-section: the section `A` has no `EndSect` @4:1"}},
      {{"end of another section", "[A]\n[B]\nEndSect // A\n"},
       {"3:12 warning endsect-name: this `EndSect` ends the section `B`, not `A`",
        "1:1+3 unclosed-section: the section `A` has no `EndSect` @4:1"}},
      {{"end of no section", "[A]\nEndSect\nEndSect\n[B]\nEndSect\n"},
       {"3:1+7 surplus-endsect: this `EndSect` ends no section @3:7"}},
      {{"end alone", "EndSect"}, {"1:1+7 surplus-endsect: this `EndSect` ends no section @1:7"}},
      {{"keywords after an end", "[A]\n k = 1\nEndSect\n j = 2\nEndSect\n[B]\n m = ]\nEndSect\n"},
       {"4:2 outside-section: expected a section header, found `j`",
        "7:6 bad-value: expected a value, found `]`"}},
      {{"keyword before any section", "k = 1\n[A]\n j = 2\nEndSect\n"},
       {"1:1 outside-section: expected a section header, found `k`"}},
      {{"EndSection", "[A]\n k = 1\nEndSection\n[B]\n j = 1\nEndSect\n"},
       {"3:1+10 misspelled-endsect: expected `EndSect`, found `EndSection` @4:1"}},
      {{"misspelled EndSect at the end", "[A]\nEndSct\n"},
       {"2:1+6 misspelled-endsect: expected `EndSect`, found `EndSct` @3:0"}},
      {{"keyword without an equals sign", "[A]\n k 5\n j = 3\nEndSect\n"},
       {"2:2 missing-equals: expected `=` after `k`, found `5` @2:4"}},
      {{"name alone", "[A]\n name\n j = 3\nEndSect\n"},
       {"2:2+4 missing-equals: expected `=` after `name`, found `j` @3:2"}},
      {{"name alone before the end", "[A]\n j = 3\n name\nEndSect\n"},
       {"3:2+4 missing-equals: expected `=` after `name`, found `EndSect` @4:7"}},
      {{"equals sign without a name", "[A]\n = 4\n j = 3\nEndSect\n"},
       {"2:2 missing-name: expected the name of a keyword before `=`"}},
      {{"name of two words", "[A]\n my key = 4\n j = 3\nEndSect\n"},
       {"2:2+6 bad-name: `my key` is no name of a keyword @2:7"}},
      {{"name that begins with a digit", "[A]\n j = 3\n 1k = 4\nEndSect\n"},
       {"3:2+2 bad-name: `1k` is no name of a keyword"}},
      {{"value of the grammar as a name", "[A]\n true = 4\n j = 3\nEndSect\n"},
       {"2:2+4 unexpected: expected a keyword, a section header or `EndSect`, found `true` @2:5"}},
      {{"no comma between numbers", "[A]\n k = 1 2, 3\n j = 3\nEndSect\n"},
       {"2:8 missing-comma: expected `,` between values, found `2`"}},
      {{"no comma in a list of lines", "[A]\n k = 1,\n  2 3,\n  4\n j = ]\nEndSect\n"},
       {"3:5 missing-comma: expected `,` between values, found `3`",
        "5:6 bad-value: expected a value, found `]`"}},
      {{"yes", "[A]\n k = yes\n j = off\nEndSect\n"},
       {"2:6+3 bad-value: expected a value, found `yes` @3:2",
        "3:6+3 bad-value: expected a value, found `off`"}},
      {{"hexadecimal number", "[A]\n k = 0x10\n j = 3\nEndSect\n"},
       {"2:6+4 bad-number: `0x10` is not a number: a number has decimal digits, a point and an "
        "exponent @3:2"}},
      {{"two points", "[A]\n k = 1.2.3\n j = 3\nEndSect\n"},
       {"2:6+5 bad-number: `1.2.3` is not a number: it has two points @2:10"}},
      {{"exponent without digits", "[A]\n k = 1e\n j = 2.e+\nEndSect\n"},
       {"2:6+2 bad-number: `1e` is not a number: digits must follow the e of the exponent @3:0",
        "3:6+4 bad-number: `2.e+` is not a number: digits must follow the e of the exponent"}},
      {{"unit after a value", "[A]\n k = 60.5 m\n j = 3\nEndSect\n"},
       {"2:11 word-after-value: `m` follows a value @3:2"}},
      {{"sign alone", "[A]\n k = +\n j = -, 3\nEndSect\n"},
       {"2:6 sign-without-number: a number must follow the sign, found `j` @3:2",
        "3:6 sign-without-number: a number must follow the sign, found `,`"}},
      {{"percent alone", "[A]\n k = %, 2\n j = 3\nEndSect\n"},
       {"2:6 bad-substitution: a name or a whole number must follow `%`, found `,` @2:7"}},
      {{"bracket for a value", "[A]\n k = ]\n j = 3\nEndSect\n"},
       {"2:6 bad-value: expected a value, found `]`"}},
      {{"bracket after a value", "[A] k = 1 ] EndSect\n"},
       {"1:11 unexpected: expected `,`, a keyword, a section header or `EndSect`, found `]`"}},
      {{"brackets around a list", "[A]\n k = [1, 2]\n j = 3\nEndSect\n"},
       {"2:6 bad-value: expected a value, found `[` @2:7"}},
      {{"parentheses around a list", "[A]\n k = (1, 2)\n j = 3\nEndSect\n"},
       {"2:6 bad-value: expected a value, found `(` @2:7"}},
      {{"letter outside ASCII", "[A]\n k = 1\n \xc3\xbc = 3\nEndSect\n"},
       {"3:2 bad-character: the byte outside ASCII 0xC3 is only allowed in texts, remarks and "
        "comments"}},
      {{"control character", "[A]\n k = \x01\n j = 3\nEndSect\n"},
       {"2:6 bad-character: the control character 0x01 is only allowed in texts, remarks and "
        "comments"}},
      {{"byte order mark", "\xef\xbb\xbf[A]\n k = 1\nEndSect\n"},
       {"1:1+3 byte-order-mark: the file begins with a byte order mark"}},
      {{"open parenthesis of a default", "[A]\n default (y = 1\n j = 3\nEndSect\n"},
       {"2:13 unexpected: expected `)`, found `=`"}},
      {{"template with a name twice", "[A]\n k() = 1\n j = 1\n j = 2\nEndSect\n"},
       {"4:2 ambiguous-name: a template cannot have two of `j` @3:2"}},
      {{"template with a section twice", "[A()]\nEndSect\n[B]\nEndSect\n[B]\nEndSect\n"},
       {"5:2 ambiguous-name: a template cannot have two of `B` @3:2"}},
      {{"template marks in data", "[A]\n k = 1\n k = 2\n k = 3\n j() = 2\nEndSect\n"},
       {"5:2 marker-in-data: only a template can have `()`, and in this file a name occurs twice "
        "@3:2"}},
      {{"error after the last section", "[A]\nEndSect\n'x\n"},
       {"3:1 unclosed-quote: the text that begins here has no closing quote @4:0"}},
      {{"three mistakes", "[A]\n k = yes\n j 5\n[B]\n m = 1\nEndSect\n"},
       {"2:6+3 bad-value: expected a value, found `yes` @3:2",
        "3:2 missing-equals: expected `=` after `j`, found `5`",
        "1:1+3 unclosed-section: the section `A` has no `EndSect` @7:1"}},
      {{"integer of 33 bits",
        "[A]\n k = 2147483647, -2147483648, 2147483648\n j = -2147483649\n m = "
        "00000000000001\nEndSect\n"},
       {"2:31+10 warning integer-range: the integer has more than 32 bits",
        "3:6+11 warning integer-range: the integer has more than 32 bits"}},
      {{"name after an end",
        "[A]\nEndSect  // B\n[C]\nEndSect // the end of C\n[D]\nEndSect // d\n"},
       {"2:13 warning endsect-name: this `EndSect` ends the section `A`, not `B`"}},
      {{"keyword twice", "[A]\n k = 1\n j = 2\n k = 3\nEndSect\n"},
       {"4:2 warning repeated-keyword: `k` occurs twice in the section, every other keyword once "
        "@2:2"}},
      {{"keywords that repeat",
        "[A]\n k = 1\n k = 2\n j = 3\n k = 4\nEndSect\n[B]\n p = 1\n p = 2\nEndSect\n"},
       {}},
      {{"semicolon between values",
        "[A]\n k = 1;2\n j = 'a';'b'; c\n m = 1;comment\n n = 1; 2\nEndSect\n"},
       {"2:7 warning glued-comment: `;` begins a comment here, so what follows is no value",
        "3:9 warning glued-comment: `;` begins a comment here, so what follows is no value"}},
      {{"decimal comma", "[A]\n h = 60,5\nEndSect\n[A]\n h = 61\nEndSect\n[A]\n h = -7\nEndSect\n"},
       {"2:6+4 warning decimal-comma: `60,5` are two values; every other `h` has one"}},
      {{"lists without blanks",
        "[A]\n h = 60,5\nEndSect\n[A]\n h = 61,2\nEndSect\n[B]\n j = 1,2\nEndSect\n"},
       {}},
      {{"places left empty", "[A]\n k = , 1,, 'x', ;comment\n j =\nEndSect\n"}, {}},
      {{"open parenthesis at the end", "[A]\n k("},
       {"2:4+0 unexpected: expected `)`, found the end of the file @2:3",
        "1:1+3 unclosed-section: the section `A` has no `EndSect` @2:4"}},
      {{"quote and brace open", "[A]\n a = 'x\n b = 1\n c = 2 {y\n d = 2\nEndSect\n"},
       {"2:6 unclosed-quote: the text that begins here has no closing quote @7:0",
        "4:8 unclosed-brace: the remark that begins here has no closing brace"}},
      {{"quote in a text, and a later mistake",
        "[A]\n k = 'it's'\n m = 'b' x\n n = 1 2\nEndSect\n"},
       {"2:9 quote-in-text: a word follows the closing quote of a text @3:6",
        "3:10 word-after-value: `x` follows a value",
        "4:8 missing-comma: expected `,` between values, found `2`"}},
      {{"end after a mistake in one line",
        "[A] k = foo EndSect [B] k = 'a' + 'b' EndSect [C] k EndSect [D]k EndSect\n"},
       {"1:9+3 bad-value: expected a value, found `foo` @1:19",
        "1:33 missing-comma: expected `,` between values, found `+`",
        "1:51 missing-equals: expected `=` after `k`, found `EndSect`",
        "1:64 missing-equals: expected `=` after `k`, found `EndSect`"}},
      {{"end in brackets", "[A]\n k = 1\n[EndSect]\n[EndSect]\n[B]\n k = 1 2\nEndSect\n"},
       {"3:1+9 misspelled-endsect: expected `EndSect`, found `[EndSect]` @3:8",
        "4:1+9 surplus-endsect: this `EndSect` ends no section",
        "6:8 missing-comma: expected `,` between values, found `2`"}},
      {{"mark in data before a header that is open",
        "[A]\n j = 1\n j = 2\nEndSect\n[\nk() = 1\nEndSect\n"},
       {"5:1 unclosed-bracket: the section header that begins here has no closing bracket @6:3",
        "6:1 marker-in-data: only a template can have `()`, and in this file a name occurs twice "
        "@3:2"}},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Check(row.input.text), row.reports) << row.input.name;
    EXPECT_EQ(Loaded(row.input.text).texts, row.reports) << row.input.name;
  }
}

std::string Repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

TEST(Reports, StopAfterAHundredErrors) {
  const Texts hundred = Check("[A]\n" + Repeated(" k = ]\n", 100) + "EndSect\n");
  EXPECT_EQ(hundred.size(), 100U);
  const Texts more = Check("[A]\n" + Repeated(" k = ]\n", 1000) + "EndSect\n");
  EXPECT_EQ(more.size(), 101U);
  EXPECT_EQ(more.back(), "0:0+0 note too-many-errors: reporting stops after 100 errors");
}

TEST(Reports, NestingThatIsTooDeep) {
  const std::string text =
      Repeated("[A]\n", 200) + Repeated("EndSect\n", 200) + "[B]\n k = ]\nEndSect\n";
  const Texts reports = Check(text);
  ASSERT_FALSE(reports.empty());
  EXPECT_NE(reports[0].find("too-deep: the sections in `A` are nested too deeply"),
            std::string::npos);
  EXPECT_EQ(reports.back(), "402:6 bad-value: expected a value, found `]`");
}

// Changes one character, or inserts or removes some.
std::size_t Mutate(std::string& text, std::mt19937& random) {
  const std::string_view characters = "'|#{}[]()=,;/*%+-.eE0 \n\tkEndSect\"\x01\xC3";
  const std::size_t at = random() % (text.size() + 1);
  const char c = characters[random() % characters.size()];
  switch (random() % 3) {
    case 0:
      text.insert(at, 1, c);
      break;
    case 1:
      text.erase(at, 1 + random() % 3);
      break;
    default:
      if (at < text.size()) text[at] = c;
  }
  return at;
}

TEST(Reports, AgreeWithTheLoader) {
  const char* folder = std::getenv("ZON_REAL_SETTINGS");
  if (folder == nullptr) GTEST_SKIP() << "ZON_REAL_SETTINGS names no folder of parameter files";
  std::mt19937 random(7);
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".zon" || entry.file_size() > 20000) continue;
    const std::string sound = host::ReadFile(entry.path());
    EXPECT_EQ(Loaded(sound).errors, 0) << entry.path();
    for (int round = 0; round < 20; ++round) {
      std::string faulty = sound;
      for (auto count = 1 + random() % 3; count > 0; --count) Mutate(faulty, random);
      const Loaded loaded(faulty);
      const int checked = zonxLoadText(faulty.data(), faulty.size(), "", nullptr, nullptr, nullptr);
      EXPECT_EQ(loaded.errors > 0, loaded.line != 0) << entry.path() << round;
      EXPECT_EQ(loaded.status, loaded.line != 0 ? ZONX_FAULTY : ZONX_OK) << entry.path() << round;
      EXPECT_EQ(checked, loaded.status) << entry.path() << round;
      EXPECT_EQ(Check(faulty), loaded.texts) << entry.path() << round;
      EXPECT_TRUE(loaded.errors == 0 || loaded.Agrees()) << faulty << loaded.texts[0];
      if (HasFailure()) return;
    }
  }
}

// A mutation is taken back at the line of the first report: then no error is reported before it.
TEST(Reports, CorrectionMakesNoEarlierError) {
  const char* folder = std::getenv("ZON_REAL_SETTINGS");
  if (folder == nullptr) GTEST_SKIP() << "ZON_REAL_SETTINGS names no folder of parameter files";
  std::mt19937 random(11);
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".zon" || entry.file_size() > 20000) continue;
    const std::string sound = host::ReadFile(entry.path());
    for (int round = 0; round < 20; ++round) {
      std::string one = sound;
      const std::size_t late = Mutate(one, random);
      std::string both = one;
      const std::size_t early = random() % (late + 1);
      both.insert(early, "]");
      const Loaded before(both);
      const Loaded after(one);
      if (after.errors == 0 || before.errors == 0) continue;
      const auto line = static_cast<unsigned>(
          std::count(both.begin(), both.begin() + static_cast<std::ptrdiff_t>(early), '\n') + 1);
      EXPECT_TRUE(before.first.place.line != line || after.line >= before.line) << both;
    }
  }
}

TEST(Reports, ThrownByTheHostDoNoHarm) {
  int calls = 0;
  const auto reporter = [](const zonxReport*, void* count) {
    ++*static_cast<int*>(count);
    throw std::runtime_error("of the host");
  };
  EXPECT_EQ(zonxLoadText("]\n]", 3, "f", nullptr, reporter, &calls), ZONX_FAULTY);
  EXPECT_EQ(calls, 1);
}

TEST(Reports, ReporterMayCallTheLibrary) {
  Texts inner;
  const auto reporter = [](const zonxReport*, void* texts) {
    *static_cast<Texts*>(texts) = Check("[");
  };
  zonxLoadText("]", 1, "f", nullptr, reporter, &inner);
  EXPECT_EQ(inner, Check("["));
}

TEST(Reports, OfFilesThatDoNotOpen) {
  host::Collected reports;
  host::File file(nullptr);
  const std::string missing = host::FolderPath() + "/missing.zon";
  EXPECT_EQ(zonxLoadFile(missing.c_str(), file.Address(), host::Collected::Add, &reports),
            ZONX_CANNOT_OPEN);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_EQ(file, nullptr);
  EXPECT_EQ(zonxLoadFile(host::FolderPath().c_str(), nullptr, host::Collected::Add, &reports),
            ZONX_CANNOT_OPEN);
  EXPECT_EQ(zonxLoadFile("/proc/self/mem", nullptr, host::Collected::Add, &reports),
            ZONX_CANNOT_READ);
  EXPECT_EQ(errno, EIO);
  EXPECT_EQ(zonxLoadFile("/dev/zero", nullptr, nullptr, nullptr), ZONX_CANNOT_READ);
  EXPECT_EQ(errno, EFBIG);
  const Texts expected = {
      "0:0+0 cannot-open: the file cannot be opened: No such file or directory",
      "0:0+0 cannot-open: the file cannot be opened: Is a directory",
      "0:0+0 cannot-read: the file cannot be read to its end: Input/output error"};
  EXPECT_EQ(reports.texts, expected);
  EXPECT_EQ(zonPeekErrorGlb(), 0);
  EXPECT_EQ(host::Reports(), Texts());
}

}  // namespace
