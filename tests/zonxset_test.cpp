// Setting and removing by path.
#include <gtest/gtest.h>

#include <limits>
#include <string_view>

#include "treetext.h"
#include "zonx.h"

using host::As, host::ShowTree;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// A file in memory: the text of a section A.
struct Loaded : host::File {
  explicit Loaded(const std::string& inside) : File(nullptr) {
    const std::string text = "[A]\n" + inside + "\nEndSect\n";
    EXPECT_EQ(zonxLoadText(text.data(), text.size(), "/d/f.zon", Address(), nullptr, nullptr), 0);
  }
  void* Find(const char* path) const {
    void* node = nullptr;
    EXPECT_EQ(zonxFind(*this, path, &node), ZONX_OK) << path;
    return node;
  }
};

// The text of a value, or the status.
std::string TextAt(void* start, const char* path) {
  const char* text = "";
  const int status = zonxGetText(start, path, &text);
  return status == ZONX_OK ? text : "status " + std::to_string(status);
}

// What a program that loads the written file gets.
std::string Reloaded(void* file) {
  const host::File copy(host::Load(host::WrittenBy(As(zonGetRoot(file)))));
  return ShowTree(copy);
}

struct Row {
  const char* inside;  // of the section A
  int (*set)(void* file);
  const char* after;  // the tree
};

void ExpectTrees(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.inside) + " -> " + row.after);
    const Loaded file(row.inside);
    EXPECT_EQ(row.set(file), ZONX_OK);
    EXPECT_EQ(ShowTree(file), row.after);
    const bool hasRemark = std::string_view(row.after).find("{m}") != std::string_view::npos;
    EXPECT_EQ(hasRemark ? row.after : Reloaded(file), row.after);  // remarks are not written
  }
}

#define SET(...) [](void* file) -> int { return __VA_ARGS__; }

TEST(ZonxSet, ChangesValuesAndKeepsRemarks) {
  ExpectTrees({
      {"k = 1, 2", SET(zonxSetInt64(file, "a/K", 7)), "{A{k(int 7, int 2)}}"},
      {"k = 1, 2", SET(zonxSetInt64(file, "A/k[2]", -7)), "{A{k(int 1, int -7)}}"},
      {"k = 1, 2", SET(zonxSetBool(file, "A/k[3]", 5)), "{A{k(int 1, int 2, bool true)}}"},
      {"k = 1 {m}", SET(zonxSetDouble(file, "A/k", 2)), "{A{k(real 2.0{m})}}"},
      {"k = 1 {m}", SET(zonxSetInt64(file, "A/k", 2)), "{A{k(int 2{m})}}"},
      {"k = {m}", SET(zonxSetString(file, "A/k", "it's")), "{A{k(string it's{m})}}"},
      {"k =", SET(zonxSetFilename(file, "A/k", "a\\b")), "{A{k(file a\\b)}}"},
      {"k = 1, , 3", SET(zonxSetBool(file, "A/k[2]", 0)), "{A{k(int 1, bool false, int 3)}}"},
      {"k = %run", SET(zonxSetInt64(file, "A/k", 1)), "{A{k(int 1)}}"},
      {"k = '<CLOB:Integer:1>'", SET(zonxSetString(file, "A/k", "")), "{A{k(string )}}"},
  });
}

TEST(ZonxSet, CreatesWhatIsMissing) {
  ExpectTrees({
      {"", SET(zonxSetInt64(file, "A/k", 1)), "{A{k(int 1)}}"},
      {"", SET(zonxSetInt64(file, "A/k[1]", 1)), "{A{k(int 1)}}"},
      {"", SET(zonxSetText(file, "B/C/k", "1,")), "{A{} B{C{k(int 1, undef)}}}"},
      {"", SET(zonxSetInt64(file, "A:2/B:1/k:1", 1)), "{A{} A<2>{B{k(int 1)}}}"},
      {"k = 1", SET(zonxSetInt64(file, "A/k:2", 2)), "{A{k(int 1) k<2>(int 2)}}"},
      {"[S] EndSect k = 1 [T] EndSect l = 2 default(x) = 1", SET(zonxSetInt64(file, "A/n", 3)),
       "{A{S{} k(int 1) T{} l(int 2) n(int 3) default x(int 1)}}"},
      {"[S] EndSect k = 1 [T] EndSect l = 2", SET(zonxSetInt64(file, "A/S:2/n", 3)),
       "{A{S{} k(int 1) T{} S<2>{n(int 3)} l(int 2)}}"},
      {"default(x) = 1 [S] EndSect", SET(zonxSetInt64(file, "A/n", 3)),
       "{A{n(int 3) default x(int 1) S{}}}"},
      {"k = 1", SET(zonxSetInt64(file, "A/k/n", 3)), "{A{k(int 1) k{n(int 3)}}}"},
  });
}

TEST(ZonxSet, ReplacesLists) {
  ExpectTrees({
      {"k = 1, 2.5 {m}, 'x'", SET([file] {
         const long long values[] = {4, 5};
         return zonxSetInt64s(file, "A/k", values, 2);
       }()),
       "{A{k(int 4, int 5{m})}}"},
      {"k = 1.50", SET([file] {
         const double values[] = {1.5, 1e300, -0.0};
         return zonxSetDoubles(file, "A/k", values, 3);
       }()),
       "{A{k(real 1.50, real 1e+300, real -0.0)}}"},
      {"k = true, 1", SET([file] {
         const int values[] = {7, 0};
         return zonxSetBools(file, "A/k", values, 2);
       }()),
       "{A{k(bool true, bool false)}}"},
      {"k = 'a', 'b'", SET([file] {
         const char* values[2];
         std::size_t count = 0;
         zonxGetStrings(file, "A/k", values, 2, &count);
         std::swap(values[0], values[1]);
         return zonxSetStrings(file, "A/k", values, 2);
       }()),
       "{A{k(string b, string a)}}"},
      {"k = 1 {m}, 2", SET(zonxSetBools(file, "A/k", nullptr, 0)), "{A{k(unknown{m})}}"},
      {"k = 1", SET(zonxSetStrings(file, "A/k", nullptr, 0)), "{A{k(undef)}}"},
      {"default(k) = 1",
       SET(zonxSetInt64s(zonNodeByNum(zonTargetByNum(file, 1), 1), "", nullptr, 0)),
       "{A{default k(default)}}"},
  });
}

TEST(ZonxSet, ReadsValuesAsWritten) {
  ExpectTrees({
      {"k = 1", SET(zonxSetText(file, "A/k", "+2, 2.50, 'it''s', |a\\b|, TRUE, %x, #1#,\n , {m}")),
       "{A{k(int +2, real 2.50, string it's, file a\\b, bool TRUE, subst x, date 1, undef, "
       "unknown{m})}}"},
      {"k = 1 {m}, 2 {m}", SET(zonxSetText(file, "A/k", "1 {new}, 3")),
       "{A{k(int 1{new}, int 3{m})}}"},
      {"k = 1, 2", SET(zonxSetText(file, "A/k", "  ")), "{A{k(undef)}}"},
      {"k = '<CLOB:Integer:1>'", SET(zonxSetText(file, "A/k", "'<clob:Boolean:true>'")),
       "{A{k(clob Boolean:true)}}"},
      {"default(k) = 1", SET(zonxSetText(zonNodeByNum(zonTargetByNum(file, 1), 1), "", ",2")),
       "{A{default k(default, int 2)}}"},
  });
  host::Heard();
  std::istringstream faulty(
      "1 2 & 1, x & x = 1 & 1 l = 2 & 1 [B] EndSect & 1 EndSect & 1 EndSect [s] k = 1 &"
      "1 end = EndSect & 1 () = 2 & 1 default(x) = 2 & % & - & ] & 1e & 99.9.9 & 1 {a} {b} &"
      "1 // 2 & 1 ; 2 & 1 /* 2 & 1 /* 2 */ & 'open & |open & #open & {open");
  for (std::string line; std::getline(faulty, line, '&');) {
    const char* const text = line.c_str();
    const Loaded file("k = 5");
    EXPECT_EQ(zonxSetText(file, "A/k", text), ZONX_FAULTY) << text;
    EXPECT_EQ(zonxSetText(file, "A/new", text), ZONX_FAULTY) << text;
    EXPECT_EQ(ShowTree(file), "{A{k(int 5)}}") << text;
  }
  EXPECT_EQ(host::Heard(), "0");
}

// Nothing changes, no hook is called and no code is stored.
TEST(ZonxSet, FailuresChangeNothing) {
  host::Heard();
  const long long one[] = {1};
  const char* const withNull[] = {"x", nullptr};
  const double infinite[] = {1, kInfinity};
  const Loaded file("k = 1, 2\n [B] EndSect\n default(d) = 1");
  const std::string before = ShowTree(file);
  struct {
    int status;
    std::vector<const char*> paths;
  } const rows[] = {
      {ZONX_BAD_ARGUMENT, {"",          "k",    "A/",     "A/k/",      "A/k[0]",  "A/k:0",   "A//k",
                           "A/k[1]x",   "[1]",  "A/true", "A/EndSect", "A/9x",    "A/x-y",   "A/_x",
                           "Default/k", "A/()", "()/k",   "New/a b",   "A:9/x.y", "New/\xE4"}},
      {ZONX_MISSING,
       {"A:3/k", "A/k:3", "A/k[4]", "A/new[2]", "A/new:2", "New/B:2/k", "A/B:3/k",
        "A/k:99999999999", "A/k[99999999999]", "New/k[2]"}}};
  for (const auto& row : rows) {
    for (const char* path : row.paths) {
      EXPECT_EQ(zonxSetInt64(file, path, 9), row.status) << path;
      EXPECT_EQ(zonxSetString(file, path, "9"), row.status) << path;
    }
  }
  for (const char* path : {"A/k", "A/new", "New/k"}) {
    EXPECT_EQ(zonxSetDouble(file, path, kInfinity), ZONX_OUT_OF_RANGE);
    EXPECT_EQ(zonxSetDouble(file, path, NAN), ZONX_OUT_OF_RANGE);
    EXPECT_EQ(zonxSetDoubles(file, path, infinite, 2), ZONX_OUT_OF_RANGE);
    EXPECT_EQ(zonxSetStrings(file, path, withNull, 2), ZONX_BAD_ARGUMENT);
    EXPECT_EQ(zonxSetInt64s(file, path, nullptr, 1), ZONX_BAD_ARGUMENT);
    EXPECT_EQ(zonxSetString(file, path, nullptr), ZONX_BAD_ARGUMENT);
    EXPECT_EQ(zonxSetFilename(file, path, nullptr), ZONX_BAD_ARGUMENT);
    EXPECT_EQ(zonxSetText(file, path, nullptr), ZONX_BAD_ARGUMENT);
  }
  EXPECT_EQ(zonxSetInt64s(file, "A/k[1]", one, 1), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxSetText(file, "A/k[1]", "1"), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxSetText(file.Find("A/k[1]"), "", "1"), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxSetInt64(file.Find("A/k[1]"), "[1]", 1), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxSetInt64(file.Find("A/k"), "k", 1), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxSetInt64(file.Find("A"), "", 1), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxSetInt64(nullptr, "A/k", 1), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxSetInt64(file, nullptr, 1), ZONX_BAD_ARGUMENT);
  const std::pair<const char*, int> removals[] = {
      {"", ZONX_BAD_ARGUMENT}, {"A/k[0]", ZONX_BAD_ARGUMENT}, {"A/B[1]", ZONX_MISSING},
      {"A:2", ZONX_MISSING},   {"A/k[3]", ZONX_MISSING},      {"A/d", ZONX_MISSING}};
  for (const auto& [path, status] : removals) EXPECT_EQ(zonxRemove(file, path), status) << path;
  EXPECT_EQ(zonxRemove(nullptr, "A"), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(ShowTree(file), before);
  host::File none(nullptr);
  zonxLoadText("]", 1, "", none.Address(), nullptr, nullptr);
  EXPECT_EQ(zonxSetInt64(none, "A/k", 1), ZONX_MISSING);
  EXPECT_EQ(zonxSetInt64(none, "A/", 1), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxRemove(none, "A"), ZONX_MISSING);
  EXPECT_EQ(host::Heard(), "0");
}

TEST(ZonxSet, Removes) {
  ExpectTrees({
      {"k = 1, 2\n k = 3", SET(zonxRemove(file, "A/k")), "{A{k(int 3)}}"},
      {"k = 1, 2\n k = 3", SET(zonxRemove(file, "A/k[1]")), "{A{k(int 2) k<2>(int 3)}}"},
      {"k = 1\n [k] l = 1 EndSect", SET(zonxRemove(file, "A/k/")), "{A{k(int 1)}}"},
      {"[k] l = 1 EndSect", SET(zonxRemove(file, "A/k")), "{A{}}"},
      {"", SET(zonxRemove(zonTargetByNum(file, 1), "")), "{}"},
      {"default(k) = 1, 2", SET(zonxRemove(zonNodeByNum(zonTargetByNum(file, 1), 1), "[1]")),
       "{A{default k(int 2)}}"},
  });
  const Loaded file("k = 1");
  EXPECT_EQ(zonxRemove(file, "A/k[1]"), ZONX_OK);
  EXPECT_EQ(ShowTree(file), "{A{k()}}");
  EXPECT_EQ(zonxSetInt64(file, "A/k[2]", 1), ZONX_MISSING);
  EXPECT_EQ(zonxSetInt64(file, "A/k", 2), ZONX_OK);
  EXPECT_EQ(ShowTree(file), "{A{k(int 2)}}");
}

// An equal value keeps its text and place, one of the same kind its node.
TEST(ZonxSet, KeepsNodesTextsAndPlaces) {
  const Loaded file("k = +05, 2.50, TRUE, 'x', |a/b|, 7");
  void* const keyword = file.Find("A/k");
  std::vector<void*> nodes;
  for (unsigned n = 1; n <= 6; ++n) nodes.push_back(zonParamByNum(keyword, n));
  const std::string before = ShowTree(file);
  EXPECT_EQ(zonxSetInt64(nodes[0], "", 5), ZONX_OK);
  EXPECT_EQ(zonxSetDouble(keyword, "[2]", 2.5), ZONX_OK);
  EXPECT_EQ(zonxSetBool(file, "A/k[3]", 1), ZONX_OK);
  EXPECT_EQ(zonxSetString(file, "A/k[4]", "x"), ZONX_OK);
  EXPECT_EQ(zonxSetFilename(file, "A/k[5]", "a\\b"), ZONX_OK);
  EXPECT_EQ(zonxSetText(file, "A/k", "5, 25e-1, true, 'x', |a/b|, 8"), ZONX_OK);
  EXPECT_EQ(ShowTree(file), before.substr(0, before.size() - 4) + "8)}}");
  zonxPlace place{};
  for (unsigned n = 1; n <= 6; ++n) {
    EXPECT_EQ(zonParamByNum(keyword, n), nodes[n - 1]);
    EXPECT_EQ(zonxWhere(nodes[n - 1], &place), n < 6 ? ZONX_OK : ZONX_MISSING);
  }
  EXPECT_EQ(zonxSetText(file, "A/k", "6, -0.0, false, 'y', |b|"), ZONX_OK);
  for (unsigned n = 1; n <= 5; ++n) EXPECT_EQ(zonParamByNum(keyword, n), nodes[n - 1]);
  EXPECT_EQ(zonGetInt(nodes[0]), 6);
  EXPECT_TRUE(std::signbit(zonGetDouble(nodes[1])));
  EXPECT_STREQ(zonGetFilename(nodes[4]), "/d/b");
}

TEST(ZonxSet, NumbersAreExact) {
  const Loaded file("k = 1\n r = 1.0");
  for (const long long value : {LLONG_MAX, LLONG_MIN, 12345678901LL, 0LL}) {
    long long read = 1;
    EXPECT_EQ(zonxSetInt64(file, "A/k", value), ZONX_OK);
    EXPECT_EQ(TextAt(file, "A/k"), std::to_string(value));
    EXPECT_EQ(zonxGetInt64(file, "A/k", &read), ZONX_OK);
    EXPECT_EQ(read, value);
    EXPECT_EQ(zonGetInt(file.Find("A/k[1]")), static_cast<int>(value));
    EXPECT_EQ(zonGetDouble(file.Find("A/k[1]")), static_cast<double>(value));
  }
  const std::pair<double, const char*> rows[] = {
      {0.1, "0.1"},
      {0.1 + 0.2, "0.30000000000000004"},
      {100, "100.0"},
      {-0.0, "-0.0"},
      {1e22, "1e+22"},
      {5e-324, "5e-324"},
      {1.7976931348623157e308, "1.7976931348623157e+308"}};
  for (const auto& [value, text] : rows) {
    double read = 1;
    EXPECT_EQ(zonxSetDouble(file, "A/r", value), ZONX_OK);
    EXPECT_EQ(TextAt(file, "A/r"), text);
    EXPECT_EQ(zonxGetDouble(file, "A/r", &read), ZONX_OK);
    EXPECT_EQ(std::memcmp(&read, &value, sizeof read), 0) << text;
    EXPECT_EQ(Reloaded(file), "{A{k(int 0) r(real " + std::string(text) + ")}}");
  }
}

// The values of the builder. A float keeps its node for what six digits hold.
TEST(ZonxSet, BuiltNumbersAndVariables) {
  const host::Built file;
  int number = 1;
  double real = 1;
  char text[] = "text";
  zonAddFloat(file, 1.5F);
  zonAddDouble(file, 1.5);
  zonAddIntRef(file, &number);
  zonAddDoubleRef(file, &real);
  zonAddStringRef(file, text);
  void* const keyword = host::KeywordOf(file);
  void* const single = zonParamByNum(keyword, 1);
  void* const wide = zonParamByNum(keyword, 2);
  EXPECT_EQ(zonxSetDouble(keyword, "", 0.25), ZONX_OK);
  EXPECT_EQ(zonParamByNum(keyword, 1), single);
  EXPECT_EQ(zonxSetDouble(keyword, "", 0.1), ZONX_OK);
  EXPECT_EQ(zonxSetDouble(keyword, "[2]", 0.1 + 0.2), ZONX_OK);
  EXPECT_EQ(zonParamByNum(keyword, 2), wide);
  EXPECT_EQ(TextAt(keyword, "[2]"), "0.30000000000000004");
  EXPECT_EQ(zonxSetInt64(keyword, "[3]", 2), ZONX_OK);
  EXPECT_EQ(zonxSetDouble(keyword, "[4]", 2), ZONX_OK);
  EXPECT_EQ(zonxSetString(keyword, "[5]", "new"), ZONX_OK);
  EXPECT_EQ(ShowTree(file),
            "{A{k(real 0.1, real 0.30000000000000004, int 2, real 2.0, string new)}}");
  EXPECT_EQ(number, 1);
  EXPECT_EQ(real, 1);
  EXPECT_STREQ(text, "text");
}

// zonWrite rounds them to 6 and 16 digits.
TEST(ZonxSet, NumbersOfAProgramHaveAllTheirDigits) {
  const host::Built file;
  float single = 0.1F;
  double wide = 0.1 + 0.2;
  zonAddFloat(file, 0.123456789F);
  zonAddDouble(file, 0.1 + 0.2);
  zonAddFloatRef(file, &single);
  zonAddDoubleRef(file, &wide);
  zonAddFloat(file, 16777216.0F);
  single = 0.123456789F;
  const char* const expected[] = {"0.12345679", "0.30000000000000004", "0.12345679",
                                  "0.30000000000000004", "16777216.0"};
  for (int n = 1; n <= 5; ++n) {
    EXPECT_EQ(TextAt(file, ("A/k[" + std::to_string(n) + "]").c_str()), expected[n - 1]);
  }
  wide = std::numeric_limits<double>::infinity();
  EXPECT_EQ(TextAt(file, "A/k[4]"), "inf");
}

// The cursor leaves what is removed or replaced.
TEST(ZonxSet, TheBuilderGoesOn) {
  const host::Built file;
  zonAddClob(file);
  zonAddClobInt(file, 5);
  EXPECT_EQ(zonxSetInt64(file, "A/k", 1), ZONX_OK);
  EXPECT_EQ(zonAddClobIntS(file, 5), 2000);
  zonAddInt(file, 2);
  EXPECT_EQ(zonxRemove(file, "A/k"), ZONX_OK);
  EXPECT_EQ(zonAddIntS(file, 5), 2000);
  EXPECT_EQ(zonxSetInt64(file, "A/k", 3), ZONX_OK);
  EXPECT_EQ(zonxRemove(file, "A"), ZONX_OK);
  EXPECT_EQ(zonAddKeywordS(file, "k"), 2000);
  zonAddTarget(file, "B");
  EXPECT_EQ(ShowTree(file), "{B{}}");
  host::Messages();
}

// Nodes of the host's classes are replaced or used, whatever they override.
TEST(ZonxSet, ClassesOfTheHost) {
  struct Number : CzonInt {
    int GetInt() const override { return 42; }
  };
  struct Hiding : CzonSection {
    CzonKeyword* KeywordByNameNum(const char*, unsigned) const override { return nullptr; }
    CzonKeyword* KeywordByNum(unsigned) const override { return nullptr; }
    unsigned GetNoKeywords() const override { return 9; }
  };
  const Loaded file("k = 1");
  As<CzonKeyword>(file.Find("A/k")).AddParam(new Number);
  EXPECT_EQ(zonxSetInt64(file, "A/k[2]", 42), ZONX_OK);
  EXPECT_EQ(zonxSetText(file, "A/k", ""), ZONX_OK);
  auto* hiding = new Hiding;
  As<CzonSection>(file.Find("A")).AddSection(hiding);
  EXPECT_EQ(zonxSetInt64(hiding, "x", 1), ZONX_OK);
  EXPECT_EQ(zonxSetInt64(hiding, "x:2", 1), ZONX_MISSING);
  EXPECT_EQ(zonxSetInt64(hiding, "B/x", 1), ZONX_OK);
  EXPECT_EQ(hiding->CzonSection::KeywordByNum(1)->GetNoParams(), 1U);
  EXPECT_EQ(zonxRemove(hiding, ""), ZONX_OK);
  EXPECT_EQ(ShowTree(file), "{A{k(undef)}}");
  CzonInt loose;
  EXPECT_EQ(zonxSetInt64(static_cast<CzonBase*>(&loose), "", 1), ZONX_BAD_ARGUMENT);
  EXPECT_EQ(zonxRemove(static_cast<CzonBase*>(&loose), ""), ZONX_BAD_ARGUMENT);
}

TEST(ZonxSet, FailuresAreReported) {
  const Loaded file("k = 1");
  const auto keep = [](const zonxReport* report, void* kept) {
    *static_cast<std::string*>(kept) = std::string(report->rule) + ": " + report->message;
  };
  const auto report = [&](const char* path, int status) {
    std::string text;
    EXPECT_EQ(zonxReportPath(file, path, status, keep, &text), ZONX_OK);
    return text;
  };
  EXPECT_EQ(report("A/new", zonxSetDouble(file, "A/new", kInfinity)),
            "out-of-range: the value of `A/new` does not fit the type");
  EXPECT_EQ(report("A/new", zonxSetText(file, "A/new", "'")),
            "failed: the text for `A/new` is no list of values");
  EXPECT_EQ(report("A/k[3]", zonxSetInt64(file, "A/k[3]", 1)),
            "missing: the keyword `k` has no value 3");
  EXPECT_EQ(report("A/true", zonxSetInt64(file, "A/true", 1)),
            "bad-argument: `A/true` cannot be made");
  EXPECT_EQ(report("k", zonxSetInt64(file, "k", 1)), "bad-argument: `k` cannot be made");
  EXPECT_EQ(report("A/new", zonxSetString(file, "A/new", nullptr)),
            "bad-argument: `A/new` does not allow this call");
  EXPECT_EQ(report("A", zonxSetInt64(file, "A", 1)), "bad-argument: `A` is a section");
  EXPECT_EQ(report("A/k[1]", zonxSetText(file, "A/k[1]", "1")),
            "bad-argument: `A/k[1]` is one value, not a list");
  EXPECT_EQ(report("", zonxRemove(file, "")), "bad-argument: the file does not allow this call");
}

TEST(ZonxSet, IsNoReading) {
  const Loaded file("k = 1\n l = 2");
  std::size_t count = 0;
  zonxWatch(file, 1);
  zonxSetInt64(file, "A/k", 5);
  zonxSetText(file, "A/l", "5");
  zonxSetInt64(file, "A/m", 5);
  EXPECT_EQ(zonxReportUnread(file, nullptr, nullptr, &count), ZONX_OK);
  EXPECT_EQ(count, 3U);
}

// Lists, paths and sections that are long.
TEST(ZonxSet, Large) {
  constexpr unsigned kValues = 100000;
  const Loaded file("k = 1");
  const std::vector<long long> many(kValues, 7);
  std::string text = "8";
  for (unsigned n = 1; n < kValues; ++n) text += ",8";
  EXPECT_EQ(zonxSetInt64s(file, "A/k", many.data(), kValues), ZONX_OK);
  EXPECT_EQ(zonxSetText(file, "A/k", text.c_str()), ZONX_OK);
  EXPECT_EQ(TextAt(file, "A/k[100000]"), "8");
  EXPECT_EQ(zonxSetInt64s(file, "A/k", many.data(), 1), ZONX_OK);
  EXPECT_EQ(ShowTree(file), "{A{k(int 7)}}");
  for (unsigned n = 1; n <= kValues; ++n) {
    ASSERT_EQ(zonxSetInt64(file, ("A/x" + std::to_string(n)).c_str(), n), ZONX_OK);
    if (n % 2 == 0) {
      ASSERT_EQ(zonxSetInt64(file, ("A/k[" + std::to_string(n / 2) + "]").c_str(), n), ZONX_OK);
      ASSERT_EQ(zonxSetInt64(file, ("A/x1:" + std::to_string(n / 2 + 1)).c_str(), n), ZONX_OK);
    }
  }
  EXPECT_EQ(zonGetNoKeywords(file.Find("A")), 1 + 3 * static_cast<int>(kValues) / 2);
  std::string path;
  for (unsigned n = 0; n < kValues; ++n) path += "s/";
  EXPECT_EQ(zonxSetInt64(file, (path + "k[2]").c_str(), 1), ZONX_MISSING);
  EXPECT_EQ(zonxSetInt64(file, (path + "k").c_str(), 1), ZONX_OK);
  EXPECT_EQ(TextAt(file, (path + "k").c_str()), "1");
}

}  // namespace
