// Validation: every mismatch with its places, conditions, faulty templates, and the agreement with
// zonEquivalent.
#include <gtest/gtest.h>

#include <map>

#include "reports.h"
#include "treetext.h"
#include "zonx.h"

using host::Texts;

namespace {

class Validate : public testing::Test {
 protected:
  void TearDown() override {
    EXPECT_EQ(host::Heard(), "0") << "a hook of zon.h was called";
    EXPECT_EQ(host::Reports(), Texts{});
  }
};

struct FromText : host::File {
  explicit FromText(const std::string& text, const char* name = "f.zon") : File(nullptr) {
    EXPECT_EQ(zonxLoadText(text.data(), text.size(), name, Address(), nullptr, nullptr), ZONX_OK)
        << text;
  }
};

// The status if it is not the one that follows from the reports, and the reports with their hints.
Texts ReportsOf(void* wanted, void* file) {
  Texts texts;
  const auto add = [](const zonxReport* report, void* context) {
    const std::string hint = *report->hint != '\0' ? std::string(" (") + report->hint + ")" : "";
    static_cast<Texts*>(context)->push_back(host::Short(*report) + hint);
    EXPECT_EQ(report->related.file != nullptr, *report->relatedMessage != '\0');
  };
  const int status = zonxValidate(wanted, file, add, &texts);
  EXPECT_EQ(zonxValidate(wanted, file, nullptr, nullptr), status);
  if (status != (texts.empty() ? ZONX_OK : ZONX_MISMATCH)) {
    texts.push_back("status " + std::to_string(status));
  }
  return texts;
}

struct Row {
  std::string file;
  Texts reports;
};

void Expect(const std::string& wanted, const std::vector<Row>& rows) {
  const FromText pattern(wanted, "t.zon");
  for (const auto& [text, reports] : rows) {
    EXPECT_EQ(ReportsOf(pattern, FromText(text)), reports) << wanted << "\n" << text;
  }
}

// Rows of one keyword; its definition is in line 2 of the template.
void ExpectKeyword(const std::string& wanted, std::vector<Row> rows) {
  for (Row& row : rows) row.file = "[A] " + row.file + " EndSect";
  Expect("[A]\n" + wanted + "\nEndSect\n", rows);
}

constexpr char kTemplate[] =
    "[Model]\n"
    "  depth = 1, 2.5\n"
    "  name = 'x' file = |f| flag = true hole =\n"
    "  many() = 1\n"
    "  [Grid] cells = 1 EndSect\n"
    "  [Layer()] top = 1.5 EndSect\n"
    "EndSect\n"
    "[Free()] {required} () = 1, 'x' named = 2 EndSect\n";

TEST_F(Validate, ReportsEveryMismatch) {
  Expect(
      kTemplate,
      {{"[Free] EndSect [model] DEPTH = 1.5, 2 hole = [Layer] EndSect [Layer] EndSect EndSect", {}},
       {"[Model]\n depth = 1 nam = 'x'\n [Grid] cel = 2 cells = 'x' EndSect\n"
        " [Layr] EndSect [grid] EndSect flag = 1 name = 1, 2 name = 'x' EndSect [Fre] EndSect",
        {"0:0+0 missing-section: the file has no section `Free`, which the template requires @8:1",
         "2:2+5 missing-value: `Model/depth` has 1 value, the template wants 2 @2:14",
         "2:12+3 unknown-keyword: `Model/nam` is no keyword of the template @1:1 (did you mean "
         "name?)",
         "3:9+3 unknown-keyword: `Model/Grid/cel` is no keyword of the template @5:3 (did you mean "
         "cells?)",
         "3:25+3 value-kind: `Model/Grid/cells` is a string, the template wants a number @5:18",
         "4:2+6 unknown-section: `Model/Layr` is no section of the template @1:1 (did you mean "
         "Layer?)",
         "4:17+6 surplus-section: `Model/grid:2` repeats a section that the template allows once "
         "@5:3",
         "4:39 value-kind: `Model/flag` is an integer, the template wants a truth value @3:32",
         "4:48 value-kind: `Model/name[1]` is an integer, the template wants a string @3:10",
         "4:51 surplus-value: `Model/name` has 2 values, the template wants 1 @3:10",
         "4:53+4 surplus-keyword: `Model/name:2` repeats a keyword that the template allows once "
         "@3:3",
         "4:72+5 unknown-section: `Fre` is no section of the template (did you mean Free?)"}},
       {"[Free]\n a = 2\n b = , 'x', 4\n named = 1, 2\nEndSect",
        {"2:2 missing-value: `Free/a` has 1 value, the template wants 2 @8:29",
         "3:5+0 value-kind: `Free/b[1]` is an empty place, the template wants a number @8:26",
         "3:13 surplus-value: `Free/b` has 3 values, the template wants 2 @8:29",
         "4:13 surplus-value: `Free/named` has 2 values, the template wants 1 @8:41"}}});
}

TEST_F(Validate, RequiredAndOpen) {
  Expect(
      "[A]\n  k {Required; the length} = 1 {open}\n  m = 'x', 1 {unit m; REQUIRED}\nEndSect\n"
      "[B]\n [C] {open; required} EndSect\n k {opening} = 0.0 {default 5; one of the limits}\n"
      "EndSect",
      {{"[A] k = 1, 2, 3 m = 'x', 1 EndSect", {}},
       {"[A] k = 1, 2, 'x' EndSect [B] k = 1, 2 EndSect",
        {"1:1+3 missing-keyword: `A` has no keyword `m`, which the template requires @3:3",
         "1:15+3 value-kind: `A/k[3]` is a string, the template wants a number @2:30",
         "1:27+3 missing-section: `B` has no section `C`, which the template requires @6:2",
         "1:38 surplus-value: `B/k` has 2 values, the template wants 1 @7:16"}}});
}

TEST_F(Validate, Limits) {
  ExpectKeyword(
      "k = 0 {>=0;<  100.5; > -1; < 101}",
      {{"k = 0", {}},
       {"k = 100.49", {}},
       {"k = -1", {"1:9+2 value-range: `A/k` is `-1`, the template wants `>=0` @2:5"}},
       {"k = 100.5", {"1:9+5 value-range: `A/k` is `100.5`, the template wants `<  100.5` @2:5"}}});
  ExpectKeyword("k {-1.5 .. 2} = 0, 1 {> 1; open}",
                {{"k = -1.5, 2, 1.5", {}},
                 {"k = 2.5, 1.5, 1, 'x'",
                  {"1:9+3 value-range: `A/k[1]` is `2.5`, the template wants `-1.5 .. 2` @2:1",
                   "1:19 value-range: `A/k[3]` is `1`, the template wants `> 1` @2:20",
                   "1:22+3 value-kind: `A/k[4]` is a string, the template wants a number @2:20"}},
                 {"k = 0, -2",
                  {"1:12+2 value-range: `A/k[2]` is `-2`, the template wants `-1.5 .. 2` @2:1",
                   "1:12+2 value-range: `A/k[2]` is `-2`, the template wants `> 1` @2:20"}}});
  // Neighbours that are one double.
  ExpectKeyword("k = 0 {<= 9007199254740993} m = 0.0 {> 9223372036854775807} n = 1 {< 9.2e18}",
                {{"k = 9007199254740993", {}},
                 {"k = 9007199254740992.0 m = 9223372036854775808.0 n = -1e400", {}},
                 {"k = 9007199254740994 m = 9223372036854775807 n = 9200000000000000000",
                  {"1:9+16 value-range: `A/k` is `9007199254740994`, the template wants `<= "
                   "9007199254740993` @2:5",
                   "1:30+19 value-range: `A/m` is `9223372036854775807`, the template wants `> "
                   "9223372036854775807` @2:33",
                   "1:54+19 value-range: `A/n` is `9200000000000000000`, the template wants `< "
                   "9.2e18` @2:65"}}});
}

TEST_F(Validate, ChoicesAndFiles) {
  ExpectKeyword(
      "k = 'x' {one of a b, 'c, ''d', ''} n() = 1 {one of 1, 2.5} b = true {one of TRUE}",
      {{"k = 'a b'", {}},
       {"k = 'c, ''d' b = true", {}},
       {"k = ''", {}},
       {"n = 1.0 n = 2.5 b = true", {}},
       {"k = 'A b' n = 2 b = false",
        {"1:9+5 value-choice: `A/k` is `'A b'`, the template wants `one of a b, 'c, ''d', ''` @2:5",
         "1:19 value-choice: `A/n` is `2`, the template wants `one of 1, 2.5` @2:42",
         "1:25+5 value-choice: `A/b` is `false`, the template wants `one of TRUE` @2:64"}}});
  host::WriteFile("there.dat", "");
  const FromText pattern("[A] () {exists; one of\nthere.dat, missing.dat, ''} = |f| EndSect");
  const std::string name = host::FolderPath() + "/f.zon";
  const FromText file("[A] k = |there.dat| l = |missing.dat| m = || EndSect", name.c_str());
  EXPECT_EQ(ReportsOf(pattern, file),
            (Texts{"1:25+13 missing-file: `A/l` names a file that does not exist: " +
                       host::FolderPath() + "/missing.dat @1:5",
                   "1:43+2 missing-file: `A/m` names no file @1:5"}));
}

// The faults of a template and not those of the file, which has some.
TEST_F(Validate, FaultyTemplates) {
  const std::string hint = " (correct the condition or the value of the template)";
  const std::string twice = " (write () after the name if it may occur more than once)";
  const struct {
    std::string wanted;
    Texts reports;
  } rows[] = {
      {"[A] k = 0 {> 5; <= 3} l {> 5} = 2 {< 5} EndSect",
       {"1:9 bad-condition: `A/k`: no number is `> 5` and `<= 3`" + hint,
        "1:33 bad-condition: `A/l`: no number is `> 5` and `< 5`" + hint}},
      {"[A] k = 0 {1 .. 0.5} l = 1 {> 0; one of 0, -1} m = 'x' {one of 1, 2; one of 2} EndSect",
       {"1:9 bad-condition: `A/k`: no number is `1 .. 0.5`" + hint,
        "1:26 bad-condition: `A/l`: none of the numbers of `one of` is in the range" + hint,
        "1:52+3 bad-condition: `A/m`: `one of` is written twice" + hint}},
      {"[A] k = 'x' {>= 0} l = 1 {one of a, b} m = #d# {exists} n = {< 1} b = true {one of a, b}"
       " EndSect",
       {"1:9+3 bad-condition: `A/k`: `>= 0` needs a number, and the value is a string" + hint,
        "1:24 bad-condition: `A/l`: `one of a, b` needs a text, and the value is an integer" + hint,
        "1:44+3 bad-condition: `A/m`: `exists` needs a file name, and the value is a date-time" +
            hint,
        "1:60+0 bad-condition: `A/n`: `< 1` needs a number, and the value is a remark alone" + hint,
        "1:71+4 bad-condition: `A/b`: `one of a, b` needs true or false, and the value is a truth "
        "value" +
            hint}},
      {"[A] k {exists} = 1, 'x' l {> 0} = 'x', 1 m = 1 {open}, 1 () {required} = 1 EndSect",
       {"1:5 bad-condition: `A/k`: `exists` needs a file name, and the keyword has none" + hint,
        "1:46 bad-condition: `A/m`: only the last value can be `open`" + hint,
        "1:58+2 bad-condition: `A/()`: a keyword without a name cannot be required" + hint}},
      {"[A] k = 1 [B] EndSect k = 1 k = 2 [b] EndSect EndSect [A] EndSect",
       {"1:23 ambiguous-name: a template cannot have two of `k` @1:5" + twice,
        "1:29 ambiguous-name: a template cannot have two of `k` @1:5" + twice,
        "1:35+3 ambiguous-name: a template cannot have two of `b` @1:11" + twice,
        "1:55+3 ambiguous-name: a template cannot have two of `A` @1:1" + twice}},
      {"[A] k = 1 k = 2 EndSect [B] l = 'x' {> 0} EndSect",
       {"1:11 ambiguous-name: a template cannot have two of `k` @1:5" + twice,
        "1:33+3 bad-condition: `B/l`: `> 0` needs a number, and the value is a string" + hint}}};
  for (auto [wanted, reports] : rows) {
    reports.push_back("status 6");
    EXPECT_EQ(ReportsOf(FromText(wanted), FromText("[A] k = 'y' j = 1 EndSect")), reports);
  }
  EXPECT_EQ(ReportsOf(FromText("[A] EndSect [B] EndSect [B] EndSect"), FromText("[A] EndSect")),
            Texts{})
      << "the file has nothing of the name";
}

TEST_F(Validate, Arguments) {
  const FromText sound("[A] k = 1 EndSect");
  host::File none(zonCreate()), faulty(nullptr), noTree(nullptr);
  zonxLoadText("[A] EndSect [", 13, "f.zon", faulty.Address(), nullptr, nullptr);
  zonxLoadText("[", 1, "g.zon", noTree.Address(), nullptr, nullptr);
  const Texts notLoaded = {"0:0+0 not-loaded: the file was not loaded without errors", "status 6"};
  EXPECT_EQ(ReportsOf(sound, faulty), notLoaded);
  EXPECT_EQ(ReportsOf(noTree, sound), notLoaded);
  EXPECT_EQ(ReportsOf(noTree, noTree), notLoaded);
  EXPECT_EQ(ReportsOf(faulty, noTree).size(), 3U);
  EXPECT_EQ(ReportsOf(sound, sound), Texts{});
  EXPECT_EQ(ReportsOf(none, none), Texts{});
  for (void* bad : {static_cast<void*>(nullptr), zonGetRoot(sound), zonTargetByNum(sound, 1)}) {
    EXPECT_EQ(zonxValidate(bad, sound, nullptr, nullptr), ZONX_BAD_ARGUMENT);
    EXPECT_EQ(zonxValidate(sound, bad, nullptr, nullptr), ZONX_BAD_ARGUMENT);
  }
  zonEquivalentExt(zonTargetByNum(sound, 1), zonTargetByNum(sound, 1), nullptr, 1);
  EXPECT_EQ(ReportsOf(sound, FromText("[B] EndSect")).size(), 1U) << "the quiet flag is not read";
  EXPECT_EQ(zonIsEqvQuiet(), 1);
  zonEquivalent(zonTargetByNum(sound, 1), zonTargetByNum(sound, 1), nullptr);
}

// What no file has: flags of the builder, narrow numbers, placeholders, variables, odd names.
TEST_F(Validate, BuiltTrees) {
  const host::File pattern(zonCreate()), file(zonCreate());
  zonAddTarget(pattern, "M");
  zonAddKeywordDef(pattern, "list", "id", 0, 0, 1);
  zonAddKeywordDef(pattern, "any", "", 0, 0, 1);
  zonAddSectionDef(pattern, "Must", 0, 1);
  zonAddTarget(file, "M");
  zonPutListParam(file, "list", "dd", 1.5, 2.0);
  zonAddString(file, "x");
  zonPutListParam(file, "any", "db", 1.5, 1);
  zonAddKeyword(file, "a\nb");
  EXPECT_EQ(ReportsOf(pattern, file),
            (Texts{"0:0+0 missing-section: `M` has no section `Must`, which the template requires",
                   "0:0+0 value-kind: `M/list[1]` is a real, the template wants a whole number",
                   "0:0+0 value-kind: `M/list[3]` is a string, the template wants a number",
                   "0:0+0 unknown-keyword: `M/a?b` is no keyword of the template (did you "
                   "mean any?)"}));
  for (void* tree : {static_cast<void*>(pattern), static_cast<void*>(file)}) {
    while (zonEndSectionS(tree) == 0) continue;
    zonAddTarget(tree, "");
  }
  EXPECT_EQ(ReportsOf(pattern, file),
            (Texts{"0:0+0 missing-name: a section of the template has no name", "status 6"}));

  const FromText limits("[A] k = 1 {> 0; open} EndSect", "t.zon");
  const FromText changed("[A] k = 1 EndSect");
  void* keyword = host::KeywordOf(changed);
  int variable = -7;
  static_cast<CzonKeyword&>(host::As(keyword)).AddParam(new CzonIntRef(&variable));
  zoneInsertParameterDefault(keyword, 2);
  EXPECT_EQ(ReportsOf(limits, changed),
            (Texts{"1:5 value-range: `A/k[3]` is `-7`, the template wants `> 0` @1:9",
                   "1:5 unresolved-default: `A/k[2]` is a placeholder without a default value "
                   "@1:9"}));
}

// Long rows of mistakes, in one line, and nested ones.
TEST_F(Validate, ManyMismatches) {
  constexpr int kMany = 5000;
  std::string names, twice, values = " v = 1";
  for (int n = 0; n < kMany; ++n) {
    names += "name" + std::to_string(n) + " = 1 ";
    twice += "k = 1 ";
    values += ", 'x'";
  }
  const FromText known("[A] k = 1 v = 1 {open} " + names + "EndSect"), unknown("[A] k = 1 EndSect");
  const FromText file("[A] " + twice + names + values + " EndSect");
  EXPECT_EQ(ReportsOf(unknown, file).size(), 2U * kMany);
  EXPECT_EQ(ReportsOf(known, file).size(), 2U * kMany - 1);
  EXPECT_EQ(ReportsOf(known, known), Texts{});

  const host::File pattern(zonCreate()), deep(zonCreate());
  for (void* tree : {static_cast<void*>(pattern), static_cast<void*>(deep)}) {
    zonAddTarget(tree, "S");
    for (int n = 0; n < kMany; ++n) {
      zonAddKeyword(tree, tree == pattern ? "k" : "wrong");
      zonAddInt(tree, 1);
      zonAddSection(tree, "inner");
    }
  }
  EXPECT_EQ(ReportsOf(pattern, deep).size(), static_cast<std::size_t>(kMany));
}

// ---- Random templates and files -----------------------------------------------------------------

// Flags that a file cannot have, by names: sections with an M are mandatory, keywords with an O
// open.
void SetFlags(CzonNode* node) {
  if (node->IsParam() != 0) return;
  auto* named = static_cast<CzonNamedNode*>(node);
  const auto has = [&](char c) { return node->GetName().find(c) != std::string::npos; };
  const bool isMulti = (named->GetFlags() & CzonNamedNode::kMulti) != 0;
  if (has('M')) named->SetMultiMandat(isMulti ? 1 : 0, 1);
  if (has('O')) named->SetOpenList();
}

class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  int Below(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random_); }

  // Sections, a statement in each line. With `marks` each name occurs once and some have "()".
  std::string Sections(bool marks, int depth = 0) {
    std::string text, names = marks ? "ABCM" : "AaBM", keywords = "klmO*D";
    for (int count = 1 + Below(depth == 0 ? 4 : 2); count > 0; --count) {
      const char name = Take(&names, marks, 4);
      text += std::string("[") + name + (marks && Below(3) == 0 ? "()]" : "]") + "\n";
      if (depth < 3 && Below(2) != 0) text += Sections(marks, depth + 1);
      std::string left = keywords;
      for (int n = Below(4); n > 0; --n) text += Keyword(Take(&left, marks, marks ? 6 : 4), marks);
      text += "EndSect\n";
    }
    return text;
  }

  // A file for a template: without its marks, and with some changes.
  std::string FileFor(std::string text) {
    for (std::size_t at;
         (at = text.find("() =")) != text.npos && (at == 0 || text[at - 1] == '\n');)
      text.replace(at, 2, "w");
    for (std::size_t at; (at = text.find("()")) != text.npos;)
      text.replace(at, 2, at == 0 || text[at - 1] == '\n' ? "w" : "");
    std::string changed;
    std::istringstream lines(text);
    const int rate = 3 + Below(40);
    for (std::string line; std::getline(lines, line);) {
      const bool isKeyword = line.find('=') != line.npos;
      const int change = Below(rate);
      if (change == 0 && isKeyword) continue;
      if (change == 1 && isKeyword) line = line.substr(0, line.find('=') + 2) + Values();
      if (change == 2 && line[0] == '[') changed += Sections(false, 3);
      changed += line + "\n";
      if (Below(2 * rate) == 0 && isKeyword) changed += line + "\n";
    }
    return Below(10) == 0 ? changed + Sections(false, 2) : changed;
  }

 private:
  // One of the first names; with `once` none is taken twice.
  char Take(std::string* names, bool once, int first) {
    const auto at =
        static_cast<std::size_t>(Below(std::min(first, static_cast<int>(names->size()))));
    const char name = (*names)[at];
    if (once) {
      for (const char both : {name, static_cast<char>(name ^ 0x20)}) {
        names->erase(std::remove(names->begin(), names->end(), both), names->end());
      }
    }
    return name;
  }

  std::string Keyword(char name, bool marks) {
    std::string text = name == '*' ? "()" : std::string(1, name);
    if (name == 'D') return "default(k) = " + Values() + "\n";
    if (marks && text.size() == 1 && Below(3) == 0) text += "()";
    return text + " = " + Values() + (name == 'O' ? ", 1{open}\n" : "\n");
  }

  std::string Values() {
    static constexpr const char* kValues[] = {"1",   "2.5", "'x'", "true", "|f|",
                                              "#d#", "%s",  "{u}", "",     "'<CLOB:Integer:5>'"};
    std::string text = kValues[Below(10)];
    for (int more = Below(3); more > 0; --more) text += std::string(", ") + kValues[Below(10)];
    return text;
  }

  std::mt19937 random_;
};

// Whether it conforms by the functions of zon.h.
bool ConformsBySections(void* wanted, void* file) {
  for (unsigned n = 1; void* section = zonTargetByNum(file, n); ++n) {
    void* pattern = zonTargetByNameNum(wanted, zonGetName(section), 1);
    if (pattern == nullptr || zonEquivalentExt(pattern, section, nullptr, 1) == 0) return false;
  }
  for (unsigned n = 1; void* section = zonTargetByNum(wanted, n); ++n) {
    const bool isMandatory =
        (host::As<CzonNamedNode>(section).GetFlags() & CzonNamedNode::kMandat) != 0;
    if (isMandatory && zonTargetByNameNum(file, zonGetName(section), 1) == nullptr) return false;
  }
  return true;
}

#ifdef NDEBUG
constexpr int kRounds = 20000;
#else
constexpr int kRounds = 2000;
#endif

TEST_F(Validate, AgreesWithChecksOfEachSection) {
  Generator random(1);
  std::map<int, int> counts;
  for (int round = 0; round < kRounds && !HasFailure(); ++round) {
    const std::string wanted = random.Sections(random.Below(4) != 0);
    const std::string text = random.Below(8) == 0 ? random.Sections(false) : random.FileFor(wanted);
    // The remark "open" has the effect of the flag.
    const FromText flags(wanted), remarks(wanted), file(text);
    zonExplore(flags, SetFlags);
    zonExplore(remarks, [](CzonNode* node) {
      if (node->IsSection() != 0) SetFlags(node);
    });
    const int status = zonxValidate(remarks, file, nullptr, nullptr);
    ++counts[status];
    EXPECT_EQ(status == ZONX_OK, ConformsBySections(flags, file)) << wanted << "----\n" << text;
    EXPECT_EQ(ReportsOf(remarks, file).empty(), status == ZONX_OK);
  }
  zonEquivalentExt(nullptr, nullptr, nullptr, 0);
  host::Heard();
  for (const int status : {ZONX_OK, ZONX_MISMATCH, ZONX_FAULTY})
    EXPECT_GT(counts[status], kRounds / 40);
}

// ---- Corrections --------------------------------------------------------------------------------

// What the template has for a path of the file: "A:2/k" is "A/k", or "A/()".
std::string PathInTemplate(void* wanted, const std::string& path) {
  std::string plain;
  for (std::size_t at = 0; at < path.size(); ++at) {
    if (path[at] == '[') break;
    if (path[at] == ':') at = std::min(path.find('/', at), path.size());
    if (at < path.size()) plain += path[at];
  }
  void* node = nullptr;
  const bool isNamed = zonxFind(wanted, plain.c_str(), &node) == ZONX_OK && zonIsKeyword(node) != 0;
  return isNamed ? plain : plain.substr(0, plain.rfind('/') + 1) + "()";
}

// The values of a keyword as they are written.
std::string ValuesOf(void* wanted, const std::string& path) {
  std::string text;
  void* keyword = nullptr;
  EXPECT_EQ(zonxFind(wanted, path.c_str(), &keyword), ZONX_OK) << path;
  for (unsigned n = 1; void* value = zonParamByNum(keyword, n); ++n) {
    const char* written = "";
    zonxGetText(value, "", &written);  // of an empty place: unchanged
    text += (n > 1 ? ", " : "") + std::string(written);
  }
  return text;
}

// Does what the first report asks for. Its message begins with the path of the node.
void Correct(void* wanted, void* file, const std::string& report) {
  const auto begin = report.find(": ") + 2;
  const std::string rule = report.substr(report.find(' ') + 1, begin - report.find(' ') - 3);
  const auto quoted = [&](std::size_t from) {
    const std::size_t open = report.find('`', from) + 1;
    return report.substr(open, report.find('`', open) - open);
  };
  const bool isOfFile = report.compare(begin, 8, "the file") == 0;
  std::string path = isOfFile ? "" : quoted(begin);
  const std::string name = quoted(isOfFile ? begin : begin + path.size() + 2);
  if (rule == "missing-section") {
    path += (isOfFile ? "" : "/") + name + "/new";
    EXPECT_EQ(zonxSetInt64(file, path.c_str(), 1), ZONX_OK) << report;
    EXPECT_EQ(zonxRemove(file, path.c_str()), ZONX_OK) << report;
  } else if (rule == "unknown-section" || rule == "surplus-section") {
    EXPECT_EQ(zonxRemove(file, (path + "/").c_str()), ZONX_OK) << report;
  } else if (rule == "unknown-keyword" || rule == "surplus-keyword") {
    EXPECT_EQ(zonxRemove(file, path.c_str()), ZONX_OK) << report;
  } else {
    if (rule == "missing-keyword") path += "/" + name;
    path = path.substr(0, path.find('['));
    const std::string values = ValuesOf(wanted, PathInTemplate(wanted, path));
    EXPECT_EQ(zonxSetText(file, path.c_str(), values.c_str()), ZONX_OK) << report << values;
  }
}

std::string Replace(std::string text, const std::string& what, const std::string& by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != text.npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
  return text;
}

TEST_F(Validate, CorrectionsEndInConformity) {
  Generator random(2);
  int corrections = 0;
  for (int round = 0; round < 500 && !HasFailure(); ++round) {
    const std::string plain = random.Sections(true);
    // A remark stays when its value changes, and makes an empty place an unknown one.
    std::string text = random.Below(2) == 0 ? random.Sections(false) : random.FileFor(plain);
    text = Replace(Replace(text, "{u}", "7"), "{open}", "");
    const std::string wanted =
        Replace(Replace(plain, "{u}", "7"), "l = 1\n", "l = 1 {>= 0; required}\n");
    const FromText pattern(wanted), file(text);
    zonExplore(pattern, SetFlags);
    Texts reports = ReportsOf(pattern, file);
    while (!reports.empty() && !HasFailure()) {
      const std::string first = reports.front();
      Correct(pattern, file, first);
      const std::size_t before = reports.size();
      reports = ReportsOf(pattern, file);
      const bool isNew = first.find(" missing-section: ") != first.npos;  // it can lack others
      EXPECT_LT(reports.size(), before + (isNew ? 100 : 0)) << wanted << "----\n" << text << first;
      ASSERT_LT(++corrections, 100000);
    }
  }
  EXPECT_GT(corrections, 500);
}

}  // namespace
