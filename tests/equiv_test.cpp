// Checks of candidates against templates, and their reports.
#include "treetext.h"

namespace {

constexpr char kTemplate[] = R"(
[Model]
   depth = 1, 2.5 name = 'x' file = |f| when = #d# flag = true hole =
   many() = 1
   [Grid] cells = 1 EndSect
   [Layer()] top = 1.5 EndSect
EndSect
[Open] () = 1, 'x' named = 2 EndSect
[Empty] EndSect
)";

struct Row {
  std::string candidate, report;  // no report if the candidate conforms
};

// Compares the first section of each candidate with the section of the same name in the template.
void Expect(void* pattern, const std::vector<Row>& rows) {
  for (const auto& [text, report] : rows) {
    SCOPED_TRACE(text);
    const host::File candidate(host::Load(text));
    EXPECT_EQ(host::SyntaxError(candidate), "");
    void* section = zonTargetByNum(candidate, 1);
    host::Reports();
    void* matching = zonTargetByNameNum(pattern, zonGetName(section), 1);
    EXPECT_EQ(zonEquivalent(matching, section, nullptr), report.empty());
    EXPECT_EQ(host::Reports(),
              report.empty() ? host::Texts{} : host::Texts{"17: Error: " + report});
  }
}

// The replays compare candidates that conform with a naive checker.
TEST(Equivalence, ReportsTheFirstMismatch) {
  const host::File pattern(host::Load(kTemplate));
  Expect(
      pattern,
      {{"[Model] name = 'y' file = #d# when = #e# flag = false hole = EndSect", ""},
       {"[Model] depth = 1 EndSect", "Missing parameters\n\tKeyw: Model.depth\n\tNo:2"},
       {"[Model] depth = 1, 2, 3 EndSect", "Too many parameters\n\tKeyw: Model.depth\n\tNo:3"},
       {"[Model] depth = 'x', 2 EndSect", "Parameter type conflict\n\tKeyw: Model.depth\n\tNo:1"},
       {"[Model] depth = 1, EndSect", "Parameter type conflict\n\tKeyw: Model.depth\n\tNo:2"},
       {"[Model] hole = 1 EndSect", "Parameter type conflict\n\tKeyw: Model.hole\n\tNo:1"},
       {"[Model] flag = true flag = true EndSect",
        "Ambiguous candidate keyword\n\tTemp: Model.flag\n\tCand: Model.flag"},
       {"[Model] flag = true other = 1 EndSect", "Unrecognized keyword\n\tTemp: Model.other"},
       {"[Model] [Grid] EndSect [grid] EndSect EndSect",
        "Ambiguous candidate section\n\tTemp: Model.Grid\n\tCand: Model.Grid"},
       {"[Model] [Other] EndSect EndSect",
        "Inconsistent number of sections\n\tTemp: Model\n\tCand: Model"},
       {"[Model] [Layer] top = 'x' EndSect depth = 'x' EndSect",
        "Parameter type conflict\n\tKeyw: Model.Layer.top\n\tNo:1"},
       {"[Open] anything = 5 EndSect", "Missing parameters\n\tKeyw: Open.\n\tNo:2"},
       {"[Open] a = 2, 'y' named = 'x' EndSect",
        "Parameter type conflict\n\tKeyw: Open.named\n\tNo:1"},
       {"[Empty] EndSect [Empty] EndSect",
        "Ambiguous candidate section\n\tTemp: Empty\n\tCand: Empty"},
       {"[Model] default(depth) = , 2 EndSect", ""}});
  const host::File data(host::Load("[A] k = 1 k = 2 EndSect [B] EndSect [B] EndSect"));
  Expect(data, {{"[A] k = 1 EndSect", "Ambiguous template keyword\n\tTemp: A.k\n\tCand: A.k"},
                {"[B] EndSect", "Ambiguous template section\n\tTemp: B\n\tCand: B"}});
}

TEST(Equivalence, SeesAKeywordThatWasAddedAfterAQuestion) {
  const host::File pattern(host::Load("[A] k() = 1 EndSect"));
  const host::File file(host::Load("[A] k = 1 EndSect"));
  void* section = zonTargetByNum(file, 1);
  EXPECT_NE(zonKeywordByNameNum(section, "k", 1), nullptr);
  auto* added = new CzonKeyword("k", 0, 0);
  added->AddParam(new CzonString("x"));
  host::As<CzonSection>(section).AddKeyword(added);
  EXPECT_EQ(zonEquivalent(zonTargetByNum(pattern, 1), section, nullptr), 0);
  EXPECT_EQ(host::Reports().size(), 1U);
}

// A template in text cannot express these definitions of the builder.
TEST(Equivalence, FlagsOfABuiltTemplate) {
  const host::File pattern(zonCreate());
  zonAddTarget(pattern, "M");
  zonAddKeywordDef(pattern, "list", "id", 0, 0, 1);
  zonAddKeywordDef(pattern, "i", "i", 0, 0, 0);
  zonAddKeywordDef(pattern, "r", "d", 0, 0, 0);
  zonAddKeywordDef(pattern, "large", "", 0, 0, 0);
  zonAddDouble(pattern, 1e39);
  zonAddSectionDef(pattern, "Must", 0, 1);
  zonEndSection(pattern);
  zonEndSection(pattern);
  zonAddTarget(pattern, "");
  zonEndSection(pattern);
  void* blank = zonTargetByNum(pattern, 2);
  EXPECT_EQ(zonEquivalent(blank, blank, nullptr), 0);
  EXPECT_EQ(host::Reports(), host::Texts{"17: Error: Blank section name\n\tTemp: \n\tCand: "});
  Expect(pattern,
         {{"[M] [Must] EndSect list = 1, 2.5, 3.5, 4 EndSect", ""},
          {"[M] [Must] EndSect list = 1, 2.5, 'x' EndSect",
           "Parameter type conflict\n\tKeyw: M.list\n\tNo:3"},
          {"[M] EndSect", "Missing section\n\tTemp: M.Must"},
          // A definition of an integer accepts no real; one of a real accepts an integer.
          {"[M] [Must] EndSect i = 2.5 EndSect", "Parameter type conflict\n\tKeyw: M.i\n\tNo:1"},
          {"[M] [Must] EndSect i = 2.0 r = 7 EndSect", ""},
          {"[M] [Must] EndSect large = -2e39 EndSect", ""},
          {"[M] [Must] EndSect large = 'x' EndSect",
           "Parameter type conflict\n\tKeyw: M.large\n\tNo:1"}});
}

TEST(Equivalence, PlaceholdersAreResolvedFirst) {
  // A placeholder in a definition is a value of its own; the second finds the first definition.
  const host::File candidate(
      host::Load("[Model] [Grid] default(cells) = 'x' EndSect default(d) = EndSect"));
  void* definition = zonNodeByNum(zonTargetByNum(candidate, 1), 2);
  const host::File pattern(host::Load("[Model] default(d) = 1 EndSect"));
  host::Reports();
  EXPECT_EQ(zonEquivalent(zonNodeByNum(zonTargetByNum(pattern, 1), 1), definition, nullptr), 0);
  EXPECT_EQ(host::Reports(), host::Texts{"17: Error: Unresolved default value\n\tKeyw: \n\tNo:1"});
}

TEST(Equivalence, EntryChecksItsArguments) {
  const host::File file(host::Load(kTemplate));
  void *root = zonGetRoot(file), *section = zonTargetByNum(file, 1);
  host::Heard();
  host::Reports();
  EXPECT_EQ(zonEquivalent(root, root, nullptr), 0);
  EXPECT_EQ(host::Reports(), host::Texts{"17: Error: Two sections required\n\tTemp: \n\tCand: "});
  EXPECT_EQ(zonEquivalent(section, zonKeywordByNum(section, 1), nullptr), 0);
  EXPECT_EQ(host::Heard(), "0 Conflicting zonNode types");
  EXPECT_EQ(zonEquivalent(nullptr, file, nullptr), 0);
  EXPECT_EQ(host::Heard(), "1006 Invalid zonNode Invalid zonNode");
}

// A node of a host that says that it is a section or a keyword, but has no flags of one.
struct Impostor : CzonNode {
  CzonNode* CreateObj() override { return new Impostor; }
  int IsSection() const override { return 1; }
  int IsKeyword() const override { return 1; }
  const std::string& GetName() const override {
    static const std::string name = "Model";
    return name;
  }
};

TEST(Equivalence, RefusesANodeWithoutFlags) {
  const host::File file(host::Load(kTemplate));
  CzonNode& section = host::As(zonTargetByNum(file, 1));
  auto* impostor = new Impostor;
  static_cast<CzonSection&>(section).AddNode(impostor);
  host::Reports();
  EXPECT_EQ(zonEqvSection(impostor, &section), 0);
  EXPECT_EQ(zonEqvKeyword(impostor, impostor), 0);
  EXPECT_EQ(host::Reports(),
            (host::Texts{"17: Error: Two sections required\n\tTemp: \n\tCand: Model",
                         "17: Error: Two keywords required\n\tTemp: \n\tCand: "}));
}

TEST(Equivalence, QuietCheckReportsNothing) {
  const host::File file(host::Load(kTemplate));
  void *section = zonTargetByNum(file, 1), *first = zonKeywordByNum(section, 1);
  CzonNode *const s = &host::As(section), *const k = &host::As(first);
  CzonSection lone("Model", 0, 0);
  for (const int quiet : {1, 0}) {
    host::Reports();
    EXPECT_EQ(zonEquivalentExt(first, first, nullptr, quiet), 1);
    EXPECT_EQ(zonEqvSection(s, s), 1);
    EXPECT_EQ(zonEqvKeyword(k, k), 1);
    EXPECT_EQ(host::Reports(), host::Texts{});
    EXPECT_EQ(zonEquivalentExt(first, zonKeywordByNum(section, 2), nullptr, quiet), 0);
    EXPECT_EQ(zonEquivalentExt(first, section, nullptr, quiet), 0);
    EXPECT_EQ(zonEqvKeyword(k, s), 0);
    EXPECT_EQ(zonEqvKeyword(k, nullptr), 0);
    EXPECT_EQ(zonEqvSection(s, &lone), 0);
    EXPECT_EQ(zonEqvSection(s, nullptr), 0);
    EXPECT_EQ(host::Reports().size(), quiet != 0 ? 0U : 5U);
  }
  host::Messages();
  EXPECT_EQ(zonEquivalentExt(nullptr, section, nullptr, 1), 0);
  EXPECT_EQ(zonIsEqvQuiet(), 1);
  EXPECT_EQ(zonEqvSection(nullptr, nullptr), 0);
  EXPECT_EQ(host::Reports(), host::Texts{}) << "still quiet";
  EXPECT_EQ(host::Heard(), "1006");
  EXPECT_EQ(zonEquivalent(section, section, nullptr), 1);
  EXPECT_EQ(zonIsEqvQuiet(), 0);
}

}  // namespace
