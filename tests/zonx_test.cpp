// Values, places and reports by path.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <vector>

#include "reports.h"
#include "treetext.h"
#include "zonx.h"

using host::Texts;

namespace {

constexpr char kHarbour[] =
    "[Quay] {q}\n"
    "  Length = 96.5 {m}, - 7, +3\n"
    "  Name = 'it''s', |a\\b|, #2020-01-01#\n"
    "  Big = 12345678901, 99999999999999999999, 1e400\n"
    "  Open = TRUE, , {r}, %run, '<CLOB:Integer:1>'\n"
    "  [ /* c */ Berth] EndSect\n"
    "  [Berth]\n"
    "    Draught = 1, 2, 3\n"
    "  EndSect\n"
    "EndSect\n"
    "[Quay] EndSect\n";

// Loaded from memory, without reports.
struct Loaded : host::File {
  explicit Loaded(const std::string& text = kHarbour) : File(nullptr) {
    EXPECT_EQ(zonxLoadText(text.data(), text.size(), "/data/f.zon", Address(), nullptr, nullptr),
              0);
  }
  void* Find(const char* path) const {
    void* node = nullptr;
    EXPECT_EQ(zonxFind(*this, path, &node), ZONX_OK) << path;
    return node;
  }
};

// What a getter returns, as text; of a failure the status.
template <class T, class Getter>
std::string Read(void* start, const char* path, Getter get) {
  T value{};
  const int status = get(start, path, &value);
  if (status != ZONX_OK) return "status " + std::to_string(status);
  if constexpr (std::is_same_v<T, const char*>)
    return value;
  else
    return std::to_string(value);
}

TEST(Zonx, PathsLeadToNodes) {
  const Loaded file;
  struct Row {
    const char* path;
    int status;
    int kind;
  };
  const Row rows[] = {{"", ZONX_OK, ZONX_FILE},
                      {"Quay", ZONX_OK, ZONX_SECTION},
                      {"QUAY:2/", ZONX_OK, ZONX_SECTION},
                      {"Quay/Berth:2/draught", ZONX_OK, ZONX_KEYWORD},
                      {"Quay:1/Berth:2/Draught:1[3]", ZONX_OK, ZONX_INTEGER},
                      {"Quay/Length", ZONX_OK, ZONX_KEYWORD},
                      {"Quay/Length/", ZONX_MISSING, 0},
                      {"Quay/Length[4]", ZONX_MISSING, 0},
                      {"Quay:3", ZONX_MISSING, 0},
                      {"Quay:99999999999999999999", ZONX_MISSING, 0},
                      {"Quay/Length[99999999999]", ZONX_MISSING, 0},
                      {"Quay/Berth:1/Draught", ZONX_MISSING, 0},
                      {"Quay[1]", ZONX_MISSING, 0},
                      {"a//b", ZONX_BAD_ARGUMENT, 0},
                      {"/Quay", ZONX_BAD_ARGUMENT, 0},
                      {"Quay:0", ZONX_BAD_ARGUMENT, 0},
                      {"Quay:", ZONX_BAD_ARGUMENT, 0},
                      {"Quay:1x", ZONX_BAD_ARGUMENT, 0},
                      {"[x]", ZONX_BAD_ARGUMENT, 0},
                      {"Quay/Length[0]", ZONX_BAD_ARGUMENT, 0},
                      {"Quay/Length[1", ZONX_BAD_ARGUMENT, 0},
                      {"Quay/Length[1]x", ZONX_BAD_ARGUMENT, 0}};
  for (const Row& row : rows) {
    void* node = nullptr;
    EXPECT_EQ(zonxFind(file, row.path, &node), row.status) << row.path;
    EXPECT_EQ(zonxGetKind(node), row.kind) << row.path;
  }
  void* node = nullptr;
  EXPECT_EQ(zonxFind(file, std::string(10000, 'x').c_str(), &node), ZONX_MISSING);
  EXPECT_EQ(zonxFind(file.Find("Quay/Length"), "[2]", &node), ZONX_OK);
  EXPECT_EQ(zonxFind(node, "", &node), ZONX_OK);
  EXPECT_EQ(zonxFind(node, "x", &node), ZONX_BAD_ARGUMENT);
  const host::File names(host::Load("[T]\n () = 1\n k() = 2\nEndSect\n"));
  EXPECT_EQ(Read<int>(names, "T/()", zonxGetInt), "1");
}

TEST(Zonx, GettersConvertNothingSilently) {
  const Loaded file;
  EXPECT_EQ(Read<double>(file, "Quay/Length", zonxGetDouble), "96.500000");
  EXPECT_EQ(Read<double>(file, "Quay/Length[2]", zonxGetDouble), "-7.000000");
  EXPECT_EQ(Read<int>(file, "Quay/Length[2]", zonxGetInt), "-7");
  EXPECT_EQ(Read<int>(file, "Quay/Length[3]", zonxGetInt), "3");
  EXPECT_EQ(Read<int>(file, "Quay/Length", zonxGetInt), "status 11");
  EXPECT_EQ(Read<int>(file, "Quay/Big", zonxGetInt), "status 12");
  EXPECT_EQ(Read<long long>(file, "Quay/Big", zonxGetInt64), "12345678901");
  EXPECT_EQ(Read<long long>(file, "Quay/Big[2]", zonxGetInt64), "status 12");
  EXPECT_EQ(Read<double>(file, "Quay/Big[2]", zonxGetDouble), "100000000000000000000.000000");
  EXPECT_EQ(Read<double>(file, "Quay/Big[3]", zonxGetDouble), "status 12");
  EXPECT_EQ(Read<int>(file, "Quay/Open", zonxGetBool), "1");
  EXPECT_EQ(Read<int>(file, "Quay/Open", zonxGetInt), "status 11");
  EXPECT_EQ(Read<int>(file, "Quay/Open[2]", zonxGetBool), "status 10");
  EXPECT_EQ(Read<int>(file, "Quay/Open[3]", zonxGetBool), "status 10");
  EXPECT_EQ(Read<int>(file, "Quay/Open[4]", zonxGetBool), "status 11");
  EXPECT_EQ(Read<int>(file, "Quay", zonxGetInt), "status 11");
  EXPECT_EQ(Read<const char*>(file, "Quay/Name", zonxGetString), "it's");
  EXPECT_EQ(Read<const char*>(file, "Quay/Name[3]", zonxGetString), "status 11");
  EXPECT_EQ(Read<const char*>(file, "Quay/Name[2]", zonxGetFilename), "/data/a/b");
  EXPECT_EQ(Read<const char*>(file, "Quay/Name", zonxGetFilename), "status 11");
}

TEST(Zonx, TextsAreAsWritten) {
  const Loaded file;
  EXPECT_EQ(Read<const char*>(file, "Quay/Name", zonxGetText), "'it''s'");
  EXPECT_EQ(Read<const char*>(file, "Quay/Name[2]", zonxGetText), "|a\\b|");
  EXPECT_EQ(Read<const char*>(file, "Quay/Name[3]", zonxGetText), "#2020-01-01#");
  EXPECT_EQ(Read<const char*>(file, "Quay/Length[3]", zonxGetText), "+3");
  EXPECT_EQ(Read<const char*>(file, "Quay/Big[3]", zonxGetText), "1e400");
  EXPECT_EQ(Read<const char*>(file, "Quay/Open", zonxGetText), "TRUE");
  EXPECT_EQ(Read<const char*>(file, "Quay/Open[4]", zonxGetText), "%run");
  EXPECT_EQ(Read<const char*>(file, "Quay/Open[5]", zonxGetText), "'<CLOB:Integer:1>'");
  const char* remark = nullptr;
  EXPECT_EQ(zonxGetRemark(file.Find("Quay"), &remark), ZONX_OK);
  EXPECT_STREQ(remark, "q");
  EXPECT_EQ(zonxGetRemark(file.Find("Quay:2"), &remark), ZONX_MISSING);
}

// The same list as text and, after a value was asked for, as nodes.
TEST(Zonx, ListsOfTextAndOfNodes) {
  const Loaded file(
      "[A]\n k = 1, -2, 3.5\n i = 7, 8, 99999999999\n s = 'a', 'b'\n b = true, 1\n e = "
      "1,\nEndSect\n");
  for (int round = 0; round < 2; ++round) {
    std::vector<double> doubles(2, -1.0);
    std::size_t count = 0;
    EXPECT_EQ(zonxGetDoubles(file, "A/k", doubles.data(), 2, &count), ZONX_OK);
    EXPECT_EQ(count, 3U);
    EXPECT_EQ(doubles, (std::vector<double>{1.0, -2.0}));
    EXPECT_EQ(zonxGetDoubles(file, "A/s", nullptr, 0, &count), ZONX_WRONG_KIND);
    EXPECT_EQ(count, 1U);
    std::vector<int> ints(3, -1);
    EXPECT_EQ(zonxGetInts(file, "A/i", ints.data(), 3, &count), ZONX_OUT_OF_RANGE);
    EXPECT_EQ(count, 3U);
    EXPECT_EQ(ints, (std::vector<int>{7, 8, -1}));
    EXPECT_EQ(zonxGetInts(file, "A/k", ints.data(), 3, &count), ZONX_WRONG_KIND);
    EXPECT_EQ(count, 3U);
    EXPECT_EQ(zonxGetInts(file, "A/e", ints.data(), 3, &count), ZONX_MISSING);
    EXPECT_EQ(count, 2U);
    std::vector<long long> wide(3);
    EXPECT_EQ(zonxGetInt64s(file, "A/i", wide.data(), 3, &count), ZONX_OK);
    EXPECT_EQ(wide[2], 99999999999);
    for (const char* name : {"A/k[1]", "A/i[1]"}) file.Find(name);
  }
  std::vector<const char*> texts(2);
  std::size_t count = 0;
  EXPECT_EQ(zonxGetStrings(file, "A/s", texts.data(), 2, &count), ZONX_OK);
  EXPECT_STREQ(texts[1], "b");
  int bools[2] = {};
  EXPECT_EQ(zonxGetBools(file, "A/b", bools, 2, &count), ZONX_WRONG_KIND);
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(bools[0], 1);
}

// A value at every place of a block of characters, and whether a load has nothing to report of it.
TEST(Zonx, ListsInBlocks) {
  const std::pair<const char*, bool> rows[] = {
      {"12.25", true},       {"-0", true},           {"-.5", true},
      {"5.", true},          {"1e-3", true},         {"+7.5", true},
      {"\n 8", true},        {"8\t", true},          {"1", true},
      {"123456789", true},   {"0000000000.1", true}, {"123456789.123456", true},
      {"1.2.3", false},      {"1..2", false},        {"0.1234567890123456", true},
      {".", false},          {"-.", false},          {".9007199254740993", true},
      {"1-2", false},        {"--1", false},         {"1 2", false},
      {"-2147483649", false}};
  for (const auto& [value, isSound] : rows) {
    for (std::size_t shift = 0; shift < 64; ++shift) {
      SCOPED_TRACE(std::string(value) + " after " + std::to_string(shift));
      std::string list;
      for (int n = 0; n < 40; ++n) {
        if (n == 28) list.append(shift, ' ');
        list += (n != 30 ? "-123.5" : value) + std::string(", ");
      }
      const std::string text = "[A]\n k = " + list + "1\nEndSect\n";
      host::Collected reports;
      host::File file(nullptr);
      zonxLoadText(text.data(), text.size(), "f", file.Address(), host::Collected::Add, &reports);
      ASSERT_EQ(reports.texts.empty(), isSound);
      if (!isSound) continue;
      std::vector<double> expected(41, -123.5);
      expected[30] = std::strtod(value, nullptr);
      expected[40] = 1;
      std::vector<double> doubles(41);
      std::size_t count = 0;
      ASSERT_EQ(zonxGetDoubles(file, "A/k", doubles.data(), doubles.size(), &count), ZONX_OK);
      ASSERT_EQ(doubles, expected);
      ASSERT_EQ(std::signbit(doubles[30]), value[0] == '-');
    }
  }
}

// "line:column+length" and the text at the place.
std::string Where(void* node, const std::string& text) {
  zonxPlace place{};
  const int status = zonxWhere(node, &place);
  if (status != ZONX_OK) return "status " + std::to_string(status);
  return std::to_string(place.line) + ":" + std::to_string(place.column) + " " +
         text.substr(place.offset, place.length);
}

TEST(Zonx, PlacesAreExact) {
  const Loaded file;
  const std::pair<const char*, const char*> rows[] = {{"Quay", "1:1 [Quay]"},
                                                      {"Quay/Length", "2:3 Length"},
                                                      {"Quay/Length[1]", "2:12 96.5"},
                                                      {"Quay/Length[2]", "2:22 - 7"},
                                                      {"Quay/Length[3]", "2:27 +3"},
                                                      {"Quay/Name[1]", "3:10 'it''s'"},
                                                      {"Quay/Name[2]", "3:19 |a\\b|"},
                                                      {"Quay/Name[3]", "3:26 #2020-01-01#"},
                                                      {"Quay/Big[3]", "4:44 1e400"},
                                                      {"Quay/Open[1]", "5:10 TRUE"},
                                                      {"Quay/Open[2]", "5:15 "},
                                                      {"Quay/Open[3]", "5:17 "},
                                                      {"Quay/Open[4]", "5:23 %run"},
                                                      {"Quay/Open[5]", "5:29 '<CLOB:Integer:1>'"},
                                                      {"Quay/Berth", "6:3 [ /* c */ Berth]"},
                                                      {"Quay/Berth:2/Draught[2]", "8:18 2"},
                                                      {"", "status 10"}};
  // Again after every text was asked for, so that all nodes have copies of them.
  for (int round = 0; round < 2; ++round) {
    for (const auto& [path, place] : rows)
      EXPECT_EQ(Where(file.Find(path), kHarbour), place) << path;
    zonExplore(file, [](CzonNode* node) {
      zonGetName(node);
      zonGetString(node);
      zonGetFilename(node);
      zonGetClobString(node);
    });
    host::Messages();
    zonGetErrorGlb();
  }
}

TEST(Zonx, PlacesStayAfterEdits) {
  const Loaded file;
  void* length = file.Find("Quay/Length");
  zoneModifyParameterInt(length, 3, 4);
  EXPECT_EQ(Where(zonParamByNum(length, 3), kHarbour), "status 10");
  EXPECT_EQ(Where(zonParamByNum(length, 2), kHarbour), "2:22 - 7");
  zoneDeleteNode(zonParamByNum(length, 1));
  zoneRenameKeyword(file.Find("Quay/Big"), "Small");
  EXPECT_EQ(Where(file.Find("Quay/Length[1]"), kHarbour), "2:22 - 7");
  EXPECT_EQ(Where(file.Find("Quay/Small"), kHarbour), "status 10");
  EXPECT_EQ(Where(file.Find("Quay/Small[1]"), kHarbour), "4:9 12345678901");
}

TEST(Zonx, ReportsOfTheHost) {
  const Loaded file;
  std::string text;
  const auto format = [](const zonxReport* report, void* formatted) {
    char buffer[400];
    EXPECT_LT(zonxFormatReport(report, buffer, sizeof buffer), sizeof buffer);
    *static_cast<std::string*>(formatted) = buffer;
  };
  zonxReportNode(file.Find("Quay/Length[1]"), ZONX_ERROR, "range", "longer than 50", "", format,
                 &text);
  EXPECT_EQ(text,
            "/data/f.zon:2:12: error: longer than 50\n"
            "  Length = 96.5 {m}, - 7, +3\n"
            "           ^~~~");
  zonxReportNode(file, ZONX_NOTE, nullptr, "loaded", nullptr, format, &text);
  EXPECT_EQ(text, "/data/f.zon: note: loaded");
  zonxReportPath(file, "Quay/Lenght", ZONX_MISSING, format, &text);
  EXPECT_EQ(text,
            "/data/f.zon:1:1: error: the section `Quay` has no keyword `Lenght`\n"
            "[Quay] {q}\n"
            "^~~~~~\n"
            "hint: did you mean Length?");
  zonxReportPath(file, "Quay/Length[9]", ZONX_MISSING, format, &text);
  EXPECT_EQ(text.substr(0, text.find('\n')),
            "/data/f.zon:2:3: error: the keyword `Length` has no value 9");
  zonxReportPath(file, "Quay/Name", ZONX_WRONG_KIND, format, &text);
  EXPECT_EQ(text.substr(0, text.find('\n')), "/data/f.zon:3:10: error: `Quay/Name` is a string");
  char small[8] = "xxxxxxx";
  const zonxReport report{ZONX_ERROR, "", "long message", "", {}, {}, "", nullptr};
  EXPECT_EQ(zonxFormatReport(&report, small, sizeof small), 19U);
  EXPECT_STREQ(small, "error: ");
}

TEST(Zonx, BadArgumentsChangeNothing) {
  const Loaded file;
  int number = 42;
  std::size_t count = 42;
  const char* text = "unchanged";
  void* node = &number;
  zonxPlace place{};
  EXPECT_EQ(zonxGetInt(nullptr, "a", &number), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxGetInt(file, nullptr, &number), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxGetInt(file, "a", nullptr), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxGetInts(file, "Quay/Length", nullptr, 1, &count), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxGetInts(file, "Quay/Length", &number, 1, nullptr), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxGetInts(file, "Quay/Length[1]", &number, 1, &count), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxGetString(file, "x", &text), ZONX_MISSING);
  EXPECT_EQ(zonxFind(file, "x", &node), ZONX_MISSING);
  EXPECT_EQ(zonxWhere(file, &place), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxReportNode(file, 3, "", "", "", host::Collected::Add, nullptr), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxReportNode(file, 0, "", "", "", nullptr, nullptr), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxReportPath(file, "x", 14, host::Collected::Add, nullptr), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxLoadText(nullptr, 1, "", nullptr, nullptr, nullptr), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxWatch(file.Find("Quay"), 1), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxGetKind(nullptr), 0);
  EXPECT_EQ(number, 42);
  EXPECT_EQ(count, 42U);
  EXPECT_STREQ(text, "unchanged");
  EXPECT_EQ(node, &number);
  EXPECT_EQ(host::Heard(), "0");
}

TEST(Zonx, HandlesWithoutATree) {
  host::File file(nullptr);
  EXPECT_EQ(zonxLoadText("]", 1, nullptr, file.Address(), nullptr, nullptr), ZONX_FAULTY);
  EXPECT_EQ(Read<int>(file, "x", zonxGetInt), "status 10");
  EXPECT_EQ(zonxWatch(file, 1), ZONX_MISSING);
  EXPECT_EQ(zonxGetKind(file), ZONX_FILE);
  const host::Built built;
  EXPECT_EQ(Where(zonGetRoot(built), ""), "status 10");
}

TEST(Zonx, WatchesWhatIsRead) {
  const Loaded file("[A]\n one = 1\n two = 2\n three = 3\n [B] four = 4, 5 EndSect\nEndSect\n");
  EXPECT_EQ(zonxReportUnread(file, nullptr, nullptr, nullptr), ZONX_MISSING);
  EXPECT_EQ(zonxWatch(file, 1), ZONX_OK);
  EXPECT_EQ(Read<int>(file, "A/one", zonxGetInt), "1");
  double values[2];
  std::size_t count = 0;
  EXPECT_EQ(zonxGetDoubles(file, "A/B/four", values, 2, &count), ZONX_OK);
  zonGetInt(zonParamByNum(zonKeywordByNameNum(file.Find("A"), "thre", 1), 1));
  zonGetErrorGlb();
  file.Find("A/two[1]");
  host::Collected reports;
  EXPECT_EQ(zonxReportUnread(file, host::Collected::Add, &reports, &count), ZONX_OK);
  EXPECT_EQ(count, 2U);
  const Texts expected = {"3:2+3 warning unread-keyword: the keyword `two` was not read",
                          "4:2+5 warning unread-keyword: the keyword `three` was not read"};
  EXPECT_EQ(reports.texts, expected);
  zonGetInt(file.Find("A/two[1]"));
  EXPECT_EQ(zonxReportUnread(file, nullptr, nullptr, &count), ZONX_OK);
  EXPECT_EQ(count, 1U);
  zonxWatch(file, 0);
  EXPECT_EQ(zonxReportUnread(file, nullptr, nullptr, &count), ZONX_MISSING);
}

// The limit grows with the length of a name. A name may be given up early only if no letters that
// follow can bring it below the limit.
TEST(Zonx, HintsAtTheNearestNameThatWasAskedFor) {
  const auto hintFor = [](const std::string& present, const Texts& asked) {
    const Loaded file("[A] " + present + " = 1 EndSect");
    zonxWatch(file, 1);
    for (const std::string& name : asked) {
      int value = 0;
      EXPECT_EQ(zonxGetInt(file, ("A/" + name).c_str(), &value), ZONX_MISSING);
    }
    std::string hint;
    const auto keep = [](const zonxReport* report, void* kept) {
      *static_cast<std::string*>(kept) = report->hint;
    };
    EXPECT_EQ(zonxReportUnread(file, keep, &hint, nullptr), ZONX_OK);
    const std::string start = "the program asked for ";
    return hint.empty() ? hint : hint.substr(start.size());
  };
  EXPECT_EQ(hintFor("Draught", {"Length", "draugth"}), "draugth");
  EXPECT_EQ(hintFor("Draught", {"rdaugth", "rdaugtz"}), "rdaugth");
  EXPECT_EQ(hintFor("Draught", {"rdahgtu"}), "");
  EXPECT_EQ(hintFor("StartOfTide", {"EndOfTide", "StratFoTied"}), "StratFoTied");
  EXPECT_EQ(hintFor("StartOfTide", {"xxxStartOfTide"}), "xxxStartOfTide");
  EXPECT_EQ(hintFor("StartOfTide", {"xxxxStartOfTide"}), "");
  EXPECT_EQ(hintFor("ab", {"b", "cd"}), "");
}

}  // namespace
