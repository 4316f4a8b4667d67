// Building a file through the interface.
#include <cfloat>

#include "treetext.h"

namespace {

using namespace host;

// A builder function in both forms, without and with a status. All its arguments come from one
// text: a number is what the text begins with, or 0; a reference is null.
struct Step {
  template <class... T>
  Step(const char* stepName, void (*plain)(void*, T...), int (*withStatus)(void*, T...))
      : name(stepName), call([=](void* file, [[maybe_unused]] const char* text, bool wantStatus) {
          if (wantStatus) return withStatus(file, Argument<T>(text)...);
          return plain(file, Argument<T>(text)...), 0;
        }) {}
  template <class T>
  static T Argument([[maybe_unused]] const char* text) {
    if constexpr (std::is_arithmetic_v<T>) return static_cast<T>(std::atof(text));
    if constexpr (std::is_same_v<T, const char*>) return text;
    return {};
  }

  std::string name;
  std::function<int(void* file, const char* text, bool wantStatus)> call;
};
// STEP(Int) is the pair of zonAddInt and zonAddIntS with the name "Int".
#define STEP(name) Step(#name, zonAdd##name, zonAdd##name##S)
const std::vector<Step> kSteps{
    STEP(Target),       STEP(Section),     STEP(Keyword),
    STEP(String),       STEP(Filename),    STEP(Int),
    STEP(Float),        STEP(Double),      STEP(Bool),
    STEP(UndefinedPar), STEP(IntRef),      STEP(FloatRef),
    STEP(DoubleRef),    STEP(BoolRef),     STEP(StringRef),
    STEP(IntDef),       STEP(FloatDef),    STEP(DoubleDef),
    STEP(StringDef),    STEP(FilenameDef), STEP(BoolDef),
    STEP(SectionDef),   STEP(KeywordDef),  Step("EndSection", zonEndSection, zonEndSectionS)};

// Calls the functions of a script such as "Target A, Keyword k, Int 1"; returns the refused steps.
std::string Build(void* file, const std::string& script, bool wantStatus = false) {
  std::istringstream words(script);
  std::string refused;
  for (std::string word; std::getline(words >> std::ws, word, ',');) {
    const std::size_t space = std::min(word.find(' '), word.size());
    const auto step = std::find_if(kSteps.begin(), kSteps.end(),
                                   [&](const Step& s) { return s.name == word.substr(0, space); });
    const char* text = space < word.size() ? &word[space + 1] : nullptr;
    if (step->call(file, text, wantStatus) == 2000) refused += (refused.empty() ? "" : ", ") + word;
  }
  return refused;
}

// Runs a script with both forms of its functions. Only the form without a status sends messages.
void ExpectBuilt(const std::string& script, const char* tree, const std::string& refused = "",
                 const Texts& messages = {}) {
  for (const bool wantStatus : {false, true}) {
    File file(zonCreate());
    SCOPED_TRACE(script);
    EXPECT_EQ(Build(file, script, wantStatus), wantStatus ? refused : "");
    EXPECT_EQ(ShowTree(file), tree);
    EXPECT_EQ(Messages(), wantStatus ? Texts{} : messages);
    EXPECT_EQ(zonGetErrorFromZonData(file), messages.empty() ? "" : messages.back());
    EXPECT_EQ(zonGetErrorGlb(), 0);
  }
}

TEST(Build, StepsNeedTheirSectionOrKeyword) {
  const std::string code = "Invalid parameter definition code: '";
  ExpectBuilt("Target A, EndSection, Target a, Keyword, Keyword, Target B, EndSection, Target",
              "{A{} a<2>{() <2>()} {}}", "Target B", {"Previous section was not completed"});
  const std::string inSection = "EndSection, Section B, SectionDef B, KeywordDef i, Keyword k";
  ExpectBuilt(inSection, "{}", inSection, Texts(5, "Missing current section"));
  ExpectBuilt("Target A, String x, Keyword k, String x, Section B, String y, EndSection, IntDef",
              "{A{k(string x) B{}}}", "String x, String y, IntDef",
              Texts(3, "Missing current keyword"));
  const std::string references = "IntRef, FloatRef, DoubleRef, BoolRef, StringRef";
  ExpectBuilt("Target A, " + references, "{A{}}", references, Texts(5, "Missing current keyword"));
  ExpectBuilt("Target A, SectionDef B, KeywordDef bDfInxs, Int 7",
              "{A{B{bDfInxs(bool false, real 0.0, real 0, int 0, file , string , int 7)}}}",
              "KeywordDef bDfInxs", {code + "x'"});
  ExpectBuilt("Target A, KeywordDef %\xFF'", "{A{%\xFF'()}}", "KeywordDef %\xFF'",
              {code + "%'", code + "\xFF'", code + "''"});
}

TEST(Build, RefusalIsReturnedByTheNextStatus) {
  const File file(zonCreate());
  Build(file, "EndSection");
  EXPECT_EQ(Build(file, "Target A, Section B", true), "Target A") << "refused for the step before";
  Build(file, "Target C");
  EXPECT_EQ(Messages(), Texts{"Missing current section"}) << "a status silences the file for good";
  EXPECT_EQ(As<CzonData>(file).GetErrorCode(), 2000);
  EXPECT_EQ(As<CzonData>(file).GetErrorCode(), 0);
}

TEST(Build, BadHandlesAreRefused) {
  File file(Load("[A] EndSect"));
  for (const auto& [name, call] : kSteps) {
    const bool isDefinition = name.find("Def") != std::string::npos;
    const std::string message = isDefinition ? "(CzonCreate)" : "(CzonData)";
    for (void* bad : {static_cast<void*>(nullptr), isDefinition ? file : zonGetRoot(file)}) {
      EXPECT_EQ(call(bad, "1", true), 1005) << name;
      call(bad, "1", false);
      EXPECT_EQ(Heard(), "1005 Invalid zonHandle " + message) << name;
    }
  }
  zonEndSection(file);
  EXPECT_EQ(Heard(), "0 Missing current section") << "a status of another handle silences nothing";
  const File treeless(Load("[A"));
  zonGetErrorGlb();
  Reports();
  zonAddTarget(treeless, "A");
  EXPECT_EQ(Heard(), "0 Missing list");
}

TEST(Build, ValuesAndDefinitionsReachTheTree) {
  File file(zonCreate());
  auto& data = As<CzonData>(file);
  data.AddParam(new CzonParam);
  EXPECT_EQ(Heard(), "0 Missing current keyword");
  Build(file,
        "Target A, Keyword k, Int -7, Float 0.1, Double 3, IntDef, FloatDef, DoubleDef, Bool -3, "
        "String it's, String, Filename a/b, UndefinedPar, StringDef, FilenameDef, BoolDef, IntRef, "
        "FloatRef, DoubleRef, BoolRef, StringRef");
  EXPECT_EQ(ShowTree(file),
            "{A{k(int -7, real 0.1, real 3.0, int 0, real 0, real 0.0, bool true, string it's, "
            "string , file a/b, undef, string , file , bool false, int , real , real , "
            "bool , string )}}");
  EXPECT_EQ(WrittenBy(*data.GetCurrentKeyword()),
            "   k = -7, 0.1, 3.0, 0, 0, 0.0, true, 'it''s', '', |a\\b|, , '', ||, false, 0, 0, 0, "
            "false, ''\n");
  data.AddParam(nullptr);
  zonAddSectionDef(file, "B", 0, 5);
  EXPECT_EQ(data.GetCurrentSection()->GetFlags(), CzonNamedNode::kMandat);
  zonAddSectionDefS(file, "B", 1, 0);
  EXPECT_EQ(data.GetCurrentSection()->GetFlags(), CzonNamedNode::kMulti);
  zonAddKeywordDef(file, "k", nullptr, 2, 0, -1);
  EXPECT_EQ(data.GetCurrentKeyword()->GetFlags(), CzonNamedNode::kMulti | CzonNamedNode::kOpenList);
}

TEST(Build, FloatsHaveTheTextThatIsWritten) {
  const std::pair<float, const char*> rows[] = {{0.1F, "0.1"},
                                                {-1e-40F, "0"},
                                                {-0.0F, "0"},
                                                {HUGE_VALF, "3.40282e+38"},
                                                {FLT_MAX, "3.40282e+38"},
                                                {-HUGE_VALF, "-3.40282e+38"}};
  for (const auto& [value, text] : rows) {
    SCOPED_TRACE(text);
    const Built built;
    zonAddFloat(built, value);
    EXPECT_EQ(WrittenBy(As(ValueOf(built))), text);
    EXPECT_EQ(As<CzonParam>(ValueOf(built)).GetText(), text);
    EXPECT_EQ(zonGetDouble(ValueOf(built)), static_cast<double>(value));
    // A loaded real stores the float that would be written: clamped, or 0 if subnormal.
    const File loaded(Load("[A] k = 2.5 EndSect"));
    EXPECT_EQ(zoneModifyParameterFloat(KeywordOf(loaded), 1, value), 0);
    const auto& real = As<CzonReal>(ValueOf(loaded));
    const auto written = static_cast<double>(zonGetFloat(ValueOf(built)));
    EXPECT_EQ(real.GetText(), text);
    EXPECT_EQ(real.GetDouble(), written);
    EXPECT_FALSE(std::signbit(real.GetDouble()) && written == 0);
    EXPECT_TRUE(real.IsFloat());
  }
}

TEST(Build, ReferencesFollowTheirVariables) {
  int integer = 1, truth = 1;
  float single = 1;
  double number = 1;
  char text[] = "one";
  // A loaded tree is in an arena, a built one is not.
  for (void* handle : {zonCreate(), Load("[A] EndSect")}) {
    File file(handle);
    Build(file, "Target R, Keyword k");
    zonAddIntRef(file, &integer);
    zonAddFloatRef(file, &single);
    zonAddDoubleRef(file, &number);
    zonAddBoolRef(file, &truth);
    CzonKeyword copy, *keyword = As<CzonData>(file).GetCurrentKeyword();
    copy.Copy(keyword);
    zonAddStringRef(file, text);
    integer = 7, truth = 5, single = 2.5F, number = 3, text[0] = 't';
    EXPECT_EQ(WrittenBy(*keyword), "   k = 7, 2.5, 3.0, true, 'tne'\n");
    EXPECT_EQ(WrittenBy(copy), "k = 7, 2.5, 3.0, true\n");
  }
}

std::string NameOf(const CzonNode* node) {
  if (node == nullptr) return "none";
  return node->IsParam() ? static_cast<const CzonParam*>(node)->GetText() : node->GetName();
}
CzonNode* Find(CzonNode* node, const std::string& name) {
  CzonNode* found = NameOf(node) == name ? node : nullptr;
  for (unsigned n = 1; n <= node->GetNoNodes() && found == nullptr; ++n)
    found = Find(node->NodeByNum(n), name);
  return found;
}

TEST(Build, CursorLeavesARemovedNode) {
  const struct {
    const char *steps, *removed, *section, *keyword, *clob;
  } rows[] = {{"", "packed", "C", "k", "none"},
              {"", "k", "C", "none", "none"},
              {"", "C", "B", "none", "none"},
              {"", "", "none", "none", "none"},  // the root
              {"KeywordDef i", "k", "C", "i", "none"},
              {"KeywordDef i", nullptr, "C", "i", "packed"},
              {"Keyword l", nullptr, "C", "l", "none"},
              {"String x", nullptr, "C", "k", "none"},
              {"Section E", nullptr, "E", "none", "none"}};
  for (const auto& [steps, removed, section, keyword, clob] : rows) {
    SCOPED_TRACE(std::string(steps) + " removed " + (removed != nullptr ? removed : "nothing"));
    File file(zonCreate());
    auto& data = As<CzonData>(file);
    Build(file,
          "Target A, Section D, EndSection, Section B, Section C, Keyword j, Keyword k, String x");
    data.AddParam(new CzonClob("packed"));
    Build(file, steps);
    data.UpdateCurrentNode(removed != nullptr ? Find(data.GetRoot(), removed) : nullptr);
    EXPECT_EQ(NameOf(data.GetCurrentSection()), section);
    EXPECT_EQ(NameOf(data.GetCurrentKeyword()), keyword);
    EXPECT_EQ(NameOf(data.GetCurrentClob()), clob);
  }
  Messages();
}

}  // namespace
