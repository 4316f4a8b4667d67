// Building a file through the interface.
#include <cfloat>

#include "treetext.h"

namespace {

using namespace host;

// A builder function in both forms, without and with a status. Its arguments are made of one text:
// a number that the text does not begin with is 0, a reference refers to nothing.
class Step {
 public:
  template <class... T>
  Step(std::string its, void (*plain)(void*, T...), int (*withStatus)(void*, T...))
      : name(std::move(its)),
        call([=](void* file, [[maybe_unused]] const char* text, bool wantStatus) {
          if (wantStatus) return withStatus(file, Argument<T>(text)...);
          return plain(file, Argument<T>(text)...), 0;
        }) {}
  std::string name;
  std::function<int(void* file, const char* text, bool wantStatus)> call;

 private:
  template <class T>
  static T Argument([[maybe_unused]] const char* text) {
    if constexpr (std::is_arithmetic_v<T>) return static_cast<T>(std::atof(text));
    if constexpr (std::is_same_v<T, const char*>) return text;
    return {};
  }
};
#define STEP(name) Step(#name, zonAdd##name, zonAdd##name##S)
const auto kSteps = [](auto... steps) { return std::vector<Step>{steps...}; }(
                        STEP(Target), STEP(Section), STEP(Keyword), STEP(String), STEP(Filename),
                        STEP(Int), STEP(Float), STEP(Double), STEP(Bool), STEP(UndefinedPar),
                        STEP(IntRef), STEP(FloatRef), STEP(DoubleRef), STEP(BoolRef),
                        STEP(StringRef), STEP(IntDef), STEP(FloatDef), STEP(DoubleDef),
                        STEP(StringDef), STEP(FilenameDef), STEP(BoolDef), STEP(SectionDef),
                        STEP(KeywordDef), Step("EndSection", zonEndSection, zonEndSectionS));

// Calls the functions of a script such as "Target A, Keyword k, Int 1" and returns the refused ones.
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

// Runs a script by both forms of its functions. Each refusal passes a message, unless a status is returned.
void ExpectBuilt(const std::string& script, const char* tree, const std::string& refused = "",
                 const Texts& messages = {}) {
  for (const bool wantStatus : {false, true}) {
    File file(zonCreate());
    EXPECT_EQ(Build(file, script, wantStatus), wantStatus ? refused : "");
    EXPECT_EQ(ShowTree(file), tree) << script;
    EXPECT_EQ(Messages(), wantStatus ? Texts{} : messages) << script;
    EXPECT_EQ(zonGetErrorFromZonData(file), messages.empty() ? "" : messages.back());
    EXPECT_EQ(zonGetErrorGlb(), 0) << script;
  }
}

TEST(Build, Scripts) {
  const std::string code = "Invalid parameter definition code: '";
  ExpectBuilt("Target A, Keyword k, Int 1, Section B, Keyword m, EndSection, EndSection, Target C",
              "{A{k(int 1) B{m()}} C{}}");
  ExpectBuilt("Target A, EndSection, Target a, Keyword, Keyword, Target B, EndSection, Target",
              "{A{} a<2>{() <2>()} {}}", "Target B", {"Previous section was not completed"});
  ExpectBuilt("EndSection, Section B, SectionDef B, KeywordDef i, Keyword k", "{}",
              "EndSection, Section B, SectionDef B, KeywordDef i, Keyword k",
              Texts(5, "Missing current section"));
  ExpectBuilt("Target A, String x, Keyword k, String x, Section B, String y, EndSection, IntDef",
              "{A{k(string x) B{}}}", "String x, String y, IntDef",
              Texts(3, "Missing current keyword"));
  ExpectBuilt("Target A, IntRef, FloatRef, DoubleRef, BoolRef, StringRef", "{A{}}",
              "IntRef, FloatRef, DoubleRef, BoolRef, StringRef",
              Texts(5, "Missing current keyword"));
  ExpectBuilt("Target A, SectionDef B, KeywordDef bDfInxs, Int 7",
              "{A{B{bDfInxs(bool false, real 0.0, real 0, int 0, file , string , int 7)}}}",
              "KeywordDef bDfInxs", {code + "x'"});
  ExpectBuilt("Target A, KeywordDef %\xFF'", "{A{%\xFF'()}}", "KeywordDef %\xFF'",
              {code + "%'", code + "\xFF'", code + "''"});
}

TEST(Build, RefusalsArePending) {
  const File file(zonCreate());
  Build(file, "EndSection");
  EXPECT_EQ(Build(file, "Target A, Section B", true), "Target A") << "refused for the step before";
  Build(file, "Target C");
  EXPECT_EQ(Messages(), Texts{"Missing current section"}) << "a status silences the file for good";
  EXPECT_EQ(As<CzonData>(file).GetErrorCode(), 2000);
  EXPECT_EQ(As<CzonData>(file).GetErrorCode(), 0);
}

TEST(Build, BadHandles) {
  File file(Load("[A] EndSect"));
  for (const auto& [name, call] : kSteps) {
    const bool isDefinition = name.find("Def") != std::string::npos;
    const std::string wanted = isDefinition ? "(CzonCreate)" : "(CzonData)";
    for (void* bad : {static_cast<void*>(nullptr), isDefinition ? file : zonGetRoot(file)}) {
      EXPECT_EQ(call(bad, "1", true), 1005) << name;
      EXPECT_EQ(Heard(), "1005") << name;
      call(bad, "1", false);
      EXPECT_EQ(Heard(), "1005 Invalid zonHandle " + wanted) << name;
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

TEST(Build, Values) {
  File file(zonCreate());
  auto& data = As<CzonData>(file);
  data.AddParam(new CzonParam);
  EXPECT_EQ(Heard(), "0 Missing current keyword");
  Build(file,
        "Target A, Keyword k, Int -7, Float 0.1, Double 3, IntDef, FloatDef, DoubleDef, Bool -3, "
        "String it's, String, Filename a/b, UndefinedPar, StringDef, FilenameDef, BoolDef, IntRef, "
        "FloatRef, DoubleRef, BoolRef, StringRef");
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
  const struct {
    float value;
    const char* text;
  } rows[] = {{0.1F, "0.1"},
              {1234567, "1.23457e+06"},
              {1e-40F, "0"},
              {-1e-40F, "0"},
              {-0.0F, "0"},
              {HUGE_VALF, "3.40282e+38"},
              {FLT_MAX, "3.40282e+38"},
              {-HUGE_VALF, "-3.40282e+38"}};
  for (const auto& [value, text] : rows) {
    const Built built;
    zonAddFloat(built, value);
    EXPECT_EQ(WrittenBy(As(ValueOf(built))), text);
    EXPECT_EQ(As<CzonParam>(ValueOf(built)).GetText(), text);
    EXPECT_EQ(zonGetDouble(ValueOf(built)), static_cast<double>(value)) << text;
    // A loaded real takes the float that would be written: clamped, or 0 for a subnormal one.
    const File loaded(Load("[A] k = 2.5 EndSect"));
    EXPECT_EQ(zoneModifyParameterFloat(KeywordOf(loaded), 1, value), 0);
    const auto& real = As<CzonReal>(ValueOf(loaded));
    const auto written = static_cast<double>(zonGetFloat(ValueOf(built)));
    EXPECT_EQ(real.GetText(), text);
    EXPECT_EQ(real.GetDouble(), written) << text;
    EXPECT_FALSE(std::signbit(real.GetDouble()) && written == 0) << text;
    EXPECT_TRUE(real.IsFloat()) << text;
  }
}

TEST(Build, ReferencesFollowTheirVariables) {
  int integer = 1, truth = 1;
  float single = 1;
  double number = 1;
  char text[] = "one";
  // A loaded tree has its memory elsewhere than a built one.
  for (void* handle : {zonCreate(), Load("[A] EndSect")}) {
    File file(handle);
    Build(file, "Target R, Keyword k");
    zonAddIntRef(file, &integer);
    zonAddFloatRef(file, &single);
    zonAddDoubleRef(file, &number);
    zonAddBoolRef(file, &truth);
    zonAddStringRef(file, text);
    integer = 7, truth = 5, single = 2.5F, number = 3, text[0] = 't';
    EXPECT_EQ(WrittenBy(*As<CzonData>(file).GetCurrentKeyword()),
              "   k = 7, 2.5, 3.0, true, 'tne'\n");
  }
  EXPECT_DEATH(CzonIntRef().Copy(std::make_unique<CzonInt>("1").get()), "zonintr.*Node");
}

std::string NameOf(const CzonNode& node) {
  return node.IsParam() ? static_cast<const CzonParam&>(node).GetText() : node.GetName();
}
CzonNode* Find(CzonNode* node, const std::string& name) {
  if (NameOf(*node) == name) return node;
  CzonNode* found = nullptr;
  for (unsigned n = 1; n <= node->GetNoNodes() && found == nullptr; ++n)
    found = Find(node->NodeByNum(n), name);
  return found;
}

TEST(Build, CursorLeavesARemovedNode) {
  const struct {
    const char *steps, *removed, *current;  // section, keyword and CLOB
  } rows[] = {{"", "packed", "C k -"},
              {"", "x", "C k packed"},
              {"", "k", "C - -"},
              {"", "j", "C k packed"},
              {"", "C", "B - -"},
              {"", "B", "A - -"},
              {"", "D", "C k packed"},
              {"", "A", "- - -"},
              {"", "", "- - -"},  // the root
              {"KeywordDef i", "k", "C i -"},
              {"KeywordDef i", "i", "C - -"},
              {"KeywordDef i", nullptr, "C i packed"},
              {"Keyword l", nullptr, "C l -"},
              {"String x", nullptr, "C k -"},
              {"Section E", nullptr, "E - -"},
              {"EndSection", nullptr, "B - -"},
              {"Target A", nullptr, "C k packed"}};  // is refused
  for (const auto& [steps, removed, current] : rows) {
    File file(zonCreate());
    auto& data = As<CzonData>(file);
    Build(file,
          "Target A, Section D, EndSection, Section B, Section C, Keyword j, Keyword k, String x");
    data.AddParam(new CzonClob("packed"));
    Build(file, steps);
    data.UpdateCurrentNode(removed != nullptr ? Find(data.GetRoot(), removed) : nullptr);
    const auto name = [](CzonNode* node) { return node == nullptr ? "-" : NameOf(*node); };
    EXPECT_EQ(name(data.GetCurrentSection()) + " " + name(data.GetCurrentKeyword()) + " " +
                  name(data.GetCurrentClob()),
              current)
        << steps << " removed " << (removed != nullptr ? removed : "nothing");
  }
  Messages();
}

}  // namespace
