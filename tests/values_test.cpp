// Values: their views, references, defaults, copies, the host's locale.
#include <clocale>
#include <cstdio>

#include "../fuzz/streams_model.h"
#include "treetext.h"

namespace {

using host::As, host::File, host::Load;

// ZON_NUMBERS names a table of hard cases: text, bits of the double, REAL or INTEGER, bits of the
// float, IsFloat, IsInt, GetInt, source; tabs between them, '#' before comments.
TEST(Numbers, ReadAsTheTableSays) {
  const char* path = std::getenv("ZON_NUMBERS");
  if (path == nullptr) GTEST_SKIP() << "ZON_NUMBERS is not set: it names the table of numbers";
  const auto bits = [](auto number, auto as) { return std::memcpy(&as, &number, sizeof as), as; };
  std::ifstream table(path);
  unsigned rows = 0;
  for (std::string line; std::getline(table, line);) {
    if (line[0] == '#' || line.rfind("text\t", 0) == 0) continue;
    ++rows;
    File file(Load("[A] k = " + line.substr(0, line.find('\t')) + " EndSect"));
    const auto& value = As<CzonParam>(host::ValueOf(file));
    const char* kind = value.GetSyntaxClass() == kZonReal ? "REAL" : "INTEGER";
    char facts[64];
    std::snprintf(facts, sizeof facts, "\t%016lX\t%s\t%08X\t%d\t%d\t%d",
                  bits(value.GetDouble(), 0UL), kind, bits(value.GetFloat(), 0U), value.IsFloat(),
                  value.IsInt(), value.GetInt());
    EXPECT_EQ(value.GetText() + facts, line.substr(0, line.rfind('\t')));
  }
  EXPECT_GT(rows, 0U) << path;
}

// The double, the float, IsDouble, IsFloat and IsInt, the integer, and what it was made of.
std::string Views(const CzonNode& value, long long whole) {
  char views[99];
  std::snprintf(views, sizeof views, "%a %a %d%d%d %d %lld", value.GetDouble(),
                static_cast<double>(value.GetFloat()), value.IsDouble(), value.IsFloat(),
                value.IsInt(), value.GetInt(), whole);
  return views;
}

TEST(Values, HaveTheirViews) {
  const std::tuple<char, const char*, const char*> rows[] = {
      {'r', "-0.0", "-0x0p+0 0x0p+0 111 0 0"},
      {'r', "-1e39", "-0x1.78287f49c4a1dp+129 -0x1.fffffep+127 100 0 0"},
      {'r', "3.4028234663852886e38", "0x1.fffffep+127 0x1.fffffep+127 110 0 0"},
      {'r', "3.402823466385289e38", "0x1.fffffe0000001p+127 0x1.fffffep+127 100 0 0"},
      {'r', "1.1754943508222875e-38", "0x1p-126 0x1p-126 110 0 0"},
      {'r', "1.1754943508222874e-38", "0x1.fffffffffffffp-127 0x0p+0 110 0 0"},
      {'r', "-2147483649", "-0x1.00000002p+31 -0x1p+31 111 2147483647 -2147483649"},
      {'r', "9223372036854774784", "0x1.fffffffffffffp+62 0x1p+63 111 -1024 9223372036854774784"},
      {'r', "9223372036854775808", "0x1p+63 0x1p+63 110 0 0"},
      {'r', "-9223372036854775808", "-0x1p+63 -0x1p+63 111 0 -9223372036854775808"},
      {'r', "nan", "nan nan 110 0 0"},
      {'r', " \t\n+7xyz", "0x1.cp+2 0x1.cp+2 111 7 7"},
      {'r', "0xinf", "0x0p+0 0x0p+0 111 0 0"},
      {'r', "0x.p1", "0x0p+0 0x0p+0 111 0 0"},
      {'r', "0XaAg", "0x1.54p+7 0x1.54p+7 111 170 170"},
      {'r', "0x1p9999", "inf 0x1.fffffep+127 100 0 0"},
      {'r', "-0x0.aFp-9999", "-0x0p+0 0x0p+0 111 0 0"},
      {'r', "1e99999999999999999999", "inf 0x1.fffffep+127 100 0 0"},
      {'r', "+-5", "0x0p+0 0x0p+0 111 0 0"},
      {'i', " \t-7x", "-0x1.cp+2 -0x1.cp+2 111 -7 -7"},
      {'i', "9223372036854775808", "0x1p+63 0x1p+63 111 -1 9223372036854775807"},
      {'i', "-9223372036854775809", "-0x1p+63 -0x1p+63 111 0 -9223372036854775808"}};
  for (const auto& [kind, text, views] : rows) {
    CzonReal real(text);
    CzonInt integer(text);
    EXPECT_EQ(real.IsInt() + integer.IsInt(), 0);  // not before it is asked for
    EXPECT_EQ(kind == 'r' ? Views(real, real.FloatToInt()) : Views(integer, integer.CStoInt()),
              views)
        << text;
    real.Init();
    EXPECT_EQ(Views(real, real.FloatToInt()), "0x0p+0 0x0p+0 000 0 0");
  }
  File file(Load("[A] k = -0, -9007199254740993, 12345678901.2345678901 EndSect"));  // another way
  EXPECT_EQ(Views(As(host::ValueOf(file, 1)), 0), "-0x0p+0 0x0p+0 111 0 0");
  EXPECT_EQ(Views(As(host::ValueOf(file, 2)), 0), "-0x1p+53 -0x1p+53 111 -1 0");
  EXPECT_EQ(Views(As(host::ValueOf(file, 3)), 0), "0x1.6fee0e1a9e065p+33 0x1.6fee0ep+33 110 0 0");
  const std::string zeros(400, '0');
  for (const auto& [text, value] : {std::pair("e9", 0.0), {"", 0.0}, {"e800", HUGE_VAL}})
    EXPECT_EQ(CzonDouble("0." + zeros + "1" + text).GetDouble(), value) << text;
  for (const char* end : {"e-9", "", ".", "x", "e", "e-"})
    EXPECT_EQ(CzonDouble("1" + zeros + end).GetDouble(), HUGE_VAL) << end;
  for (const char* one : {"1e", "1e-", "1e+x"}) EXPECT_EQ(CzonReal(one).GetDouble(), 1) << one;
  EXPECT_EQ(CzonNumeric::string_to_double("\t-3e2,4"), -300);
  EXPECT_EQ(CzonIntDef("x").isInt(), 1);
  EXPECT_EQ(CzonString("text").GetString(), "text");
  for (const char* word : {"true", "TRUE", "tRuE"}) EXPECT_EQ(CzonBool(word).GetBool(), 1);
  for (const char* word : {"false", "true ", "1", ""}) EXPECT_EQ(CzonBool(word).GetBool(), 0);
}

TEST(References, OfStringsFollowTheirPointerAlsoAsCopies) {
  char first[] = "first", second[] = "second", *text = first;
  const CzonStringRef string(&text);
  CzonStringRef copy;
  copy.Copy(&string);
  text = second;
  EXPECT_EQ(string.GetString(), "second");
  EXPECT_EQ(copy.GetString(), "second");
  text = nullptr;
  EXPECT_EQ(string.GetString(), "");
}

TEST(Values, CopyAllTheirViews) {
  for (CzonNode* model :
       {static_cast<CzonNode*>(new CzonReal), static_cast<CzonNode*>(new CzonFloat)}) {
    const std::unique_ptr<CzonNode> owner(model), made(model->CreateObj());
    EXPECT_EQ(made->IsInt(), 1) << "a new real is 0, which is whole";
  }
  File file(Load("[A] k = -7 {r}, 99999999999, 1e39, 4.0, true, 'x', |a|, #d#, %1, EndSect"));
  for (unsigned n = 1; n <= 10; ++n) {
    CzonNode& value = As(host::ValueOf(file, n));
    const std::unique_ptr<CzonNode> copy(value.CreateObj());
    copy->Copy(&value);
    EXPECT_EQ(host::Facts(static_cast<CzonBase*>(copy.get())),
              host::Facts(static_cast<CzonBase*>(&value)));
    EXPECT_EQ(host::Show(copy.get()), host::Show(&value));
  }
}

TEST(ValuesDeath, CopiesOfAnotherClassEndTheProcess) {
  const CzonReal real("1");
  CzonParam param("kept");
  param.Copy(CzonTargetList().GetTopNode());
  EXPECT_EQ(param.GetText(), "kept");
  EXPECT_DEATH(CzonBool().Copy(&real), "^zonbool: .*`Node'");
  EXPECT_DEATH(CzonBoolRef().Copy(&real), "^zonboolr: .*`Node'");
  EXPECT_DEATH(CzonClob().Copy(&real), "^zonclob: .*`Node'");
  EXPECT_DEATH(CzonDoubleRef().Copy(&real), "^zondoubr: .*`Node'");
  EXPECT_DEATH(CzonInt().CzonNumeric::Copy(&param), "^zonnumer: .*`Node'");
  EXPECT_DEATH(CzonReal().Copy(&param), "^zonreal: .*`Node'");
  EXPECT_DEATH(CzonStringRef().Copy(&real), "^zonstrir: .*`Node'");
  EXPECT_DEATH(CzonInt().Copy(&real), "^zonint: .*`Node'");
  EXPECT_DEATH(CzonIntRef().Copy(&real), "^zonintr: .*`Node'");
  EXPECT_DEATH(CzonFloatRef().Copy(&real), "^zonfloar: .*`Node'");
}

TEST(Defaults, AreSoughtOutward) {
  const struct {
    const char *body, *second, *third;  // the values of the keyword; null for a placeholder
  } rows[] = {
      {"default (k) = 0, 3, 4 [B] default (k) = 0, 1 default (K) = 0, 5, 6 k = 0 EndSect", "1",
       "4"},
      {"default (k) = 0, 1, 2 [B] default (k) = 0, , 7 [C] k = 0 EndSect EndSect", "1", "7"},
      {"default (k) = 0, 1, 2 [B] k = 0 default (k) = 0, 3, 4 EndSect", "1", "2"},
      {"[B] k = 0 EndSect default (k) = 0, 1, 2", nullptr, nullptr},
      {"[B] default (k) = 0, 1, 2 EndSect [C] k = 0 EndSect", nullptr, nullptr}};
  for (const auto& [body, second, third] : rows) {
    SCOPED_TRACE(body);
    File file(Load(std::string("[A] ") + body + " EndSect"));
    static CzonKeyword* keyword;
    zonExplore(file, [](CzonNode* node) {
      if (node->GetSyntaxClass() == kZonKeyword) keyword = static_cast<CzonKeyword*>(node);
    });
    for (const char* text : {second, third}) {
      keyword->AddParam(new CzonDefaultPar);
      const CzonParam* value = keyword->ParamByNum(keyword->GetNoParams());
      EXPECT_EQ(value->IsDefaultPar(), text == nullptr);
      EXPECT_EQ(value->GetText(), text != nullptr ? text : "");
    }
  }
}

// A definition of no name, or of white space, is found by just that name.
TEST(Defaults, AreSeenAsTheyAreAdded) {
  CzonTargetList root;
  auto* section = new CzonSection("S", 0, 0);
  root.AddSection(section);
  for (int time = 1; time <= 2; ++time, section->Clear()) {
    std::vector<std::string> added;
    for (const std::string name : {"", "k", " "}) {
      auto* definition = new CzonDefaultDef(name, 0, 0);
      definition->AddParam(new CzonParam(name));
      section->AddDefaultDef(definition);
      added.push_back(name);
      for (const std::string sought : {"", "k", " "}) {
        const CzonParam* value = section->FindDefault(definition, sought, 1);
        EXPECT_EQ(value != nullptr, std::count(added.begin(), added.end(), sought) == 1);
        EXPECT_EQ(value != nullptr ? value->GetText() : sought, sought);
      }
    }
  }
}

// Below a list of the host's own that is no section.
TEST(Defaults, AreSeenInAnyList) {
  CzonTargetList root;
  auto* list = new CzonTargetList;
  auto* definition = new CzonDefaultDef("d", 0, 0);
  auto* keyword = new CzonKeyword("D", 0, 0);
  root.AddNode(list);
  list->AddNode(definition);
  definition->AddParam(new CzonParam("x"));
  list->AddNode(keyword);
  EXPECT_EQ(keyword->FindDefault(nullptr, "D", 1), definition->ParamByNum(1));
  EXPECT_EQ(keyword->FindDefault(nullptr, "f", 1), nullptr);
  EXPECT_EQ(keyword->GetNoInstances(), 0U);
  EXPECT_EQ(host::WrittenBy(*list).substr(0, 13), "   default (d");
  EXPECT_EQ(CzonKeyword("k", 0, 0).FindDefault(nullptr, "k", 1), nullptr);
}

// All that the library reads and writes of one file, as one text.
std::string Everything() {
  const std::string path =
      host::WriteFile("LOCALE.zon",
                      "[TITLE] INT_I = 1234567, 2.5, TRUE, |I\\i.dat|, 1e5, .5, 'Ii'\n"
                      "IX = '<CLOB:Double:2.5,Integer:1234>' EndSect");
  const File file(zonLoadFile(path.c_str(), 0));
  zonAddTarget(file, "B");
  zonAddKeyword(file, "i");
  zonAddDouble(file, 1234567.5);
  zonAddFloat(file, 2.5F);
  zonAddInt(file, -1234567);
  zonAddClob(file);
  zonAddClobDouble(file, 1234.5);
  void* title = zonFindSectionByHandle(file, "tItLe:1");
  void* keyword = zonKeywordByNameNum(title, "int_i", 1);
  EXPECT_EQ(zonGetClobDouble(zonParamByNum(zonKeywordByNameNum(title, "ix", 1), 1)), 2.5);
  EXPECT_EQ(CzonNumeric::string_to_double("2.5"), 2.5);
  std::string all = zonGetFilename(zonParamByNum(keyword, 4)) + ShowTree(file);
  zonDump(zonGetRoot(file), path.c_str());
  all += host::ReadFile(path);
  zonWrite(file, path.c_str());
  const std::string text = host::ReadFile(path);
  all += text.substr(text.find("// DLL"));
  std::ostringstream out;
  CzonDouble("1234567.5").Write(CzonFloat("2.5").Write(out) << '|');
  return all + out.str() + model::StreamOf(path);
}

TEST(Locale, ChangesNothing) {
  const std::string plain = Everything();
  const std::locale before =
      std::locale::global(std::locale(std::locale::classic(), new host::Commas));
  EXPECT_EQ(Everything(), plain);
  EXPECT_TRUE(std::has_facet<host::Commas>(std::locale())) << "is left as it was";
  std::locale::global(before);
  setenv("LOCPATH", ZON_LOCALES, 1);
  for (const std::string name :
       {"tr_TR.ISO-8859-9", "tr_TR.UTF-8", "de_DE.UTF-8", "de_DE.ISO-8859-1"}) {
    const std::string make = "mkdir -p " ZON_LOCALES "; test -d " ZON_LOCALES "/" + name +
                             " || localedef -i " + name.substr(0, 5) + " -f " + name.substr(6) +
                             " " ZON_LOCALES "/" + name + " >/dev/null 2>&1";
    if (std::system(make.c_str()) < 0 || std::setlocale(LC_ALL, name.c_str()) == nullptr)
      GTEST_SKIP() << "localedef cannot make " << name << " here: NOT TESTED";
    EXPECT_EQ(std::localeconv()->decimal_point[0], ',');
    EXPECT_EQ(Everything(), plain) << name;
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), name);
    std::setlocale(LC_ALL, "C");
  }
}

}  // namespace
