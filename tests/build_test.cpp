// Building a file through the interface.
#include <cfloat>

#include "host.h"

namespace {

using host::As, host::Texts;

// The calls of the builder. A script is words of a letter and an argument, such as "T:A K:k i:1 E";
// without a colon the argument is null.
using Call = std::pair<char, int (*)(void* h, const char* a, bool status)>;
#define CALL(letter, name, arguments)                                     \
  Call(letter, [](void* h, [[maybe_unused]] const char* a, bool status) { \
    return status ? zon##name##S arguments : (zon##name arguments, 0);    \
  })
const auto kCalls =
    [](auto... calls) { return std::vector<Call>{calls...}; }(
        CALL('T', AddTarget, (h, a)), CALL('S', AddSection, (h, a)), CALL('K', AddKeyword, (h, a)),
        CALL('E', EndSection, (h)), CALL('s', AddString, (h, a)), CALL('n', AddFilename, (h, a)),
        CALL('i', AddInt, (h, std::stoi(a))), CALL('f', AddFloat, (h, std::stof(a))),
        CALL('d', AddDouble, (h, std::stod(a))), CALL('b', AddBool, (h, std::stoi(a))),
        CALL('1', AddIntRef, (h, nullptr)), CALL('2', AddFloatRef, (h, nullptr)),
        CALL('3', AddDoubleRef, (h, nullptr)), CALL('4', AddBoolRef, (h, nullptr)),
        CALL('5', AddStringRef, (h, nullptr)), CALL('u', AddUndefinedPar, (h)),
        CALL('D', AddSectionDef, (h, a, 1, 0)), CALL('C', AddKeywordDef, (h, a, a, 1, 0, 0)),
        CALL('I', AddIntDef, (h)), CALL('F', AddFloatDef, (h)), CALL('R', AddDoubleDef, (h)),
        CALL('X', AddStringDef, (h)), CALL('N', AddFilenameDef, (h)), CALL('B', AddBoolDef, (h)));

// Runs a script; gives a '.' for each 0 and a '!' for each 2000 of the forms with a status.
std::string Script(void* handle, const std::string& script, bool status = false) {
  std::istringstream words(script);
  std::string codes;
  for (std::string word; words >> word;) {
    const char* a = word.size() > 1 ? word.c_str() + 2 : nullptr;
    for (const auto& [letter, call] : kCalls)
      if (letter == word[0]) codes += call(handle, a, status) == 0 ? '.' : '!';
  }
  return codes;
}

void ExpectScript(const std::string& script, const std::string& codes, const char* tree,
                  const Texts& refusals) {
  for (bool status : {false, true}) {
    host::File file(zonCreate());
    EXPECT_EQ(Script(file, script, status), status ? codes : std::string(codes.size(), '.'));
    EXPECT_EQ(host::ShowTree(file), tree) << script;
    EXPECT_EQ(host::Messages(), status ? Texts{} : refusals) << script;
    EXPECT_EQ(zonGetErrorFromZonData(file), refusals.empty() ? "" : refusals.back());
    EXPECT_EQ(zonGetErrorGlb(), 0) << script;
  }
}

TEST(Build, Scripts) {
  const std::string code = "Invalid parameter definition code: '";
  ExpectScript("T:A K:k i:1 S:B K:m E E T:C", "........", "{A{k(int 1) B{m()}} C{}}", {});
  ExpectScript("T:A E T:a K K T E T", ".....!..", "{A{} a<2>{() <2>()} {}}",
               {"Previous section was not completed"});
  ExpectScript("E S:B D:B C:i K:k", "!!!!!", "{}", Texts(5, "Missing current section"));
  ExpectScript("T:A s:x K:k s:x S:B s:y E I 1 2 3 4 5", ".!...!.!!!!!!", "{A{k(string x) B{}}}",
               Texts(8, "Missing current keyword"));
  ExpectScript("T:A D:B C:bDfInxs i:7", "..!.",
               "{A{B(){bDfInxs()(bool false, real 0.0, real 0, int 0, file , string , int 7)}}}",
               {code + "x'"});
  ExpectScript("T:A C:%\xFF'", ".!", "{A{%\xFF'()()}}", {code + "%'", code + "\xFF'", code + "''"});
  host::File file(zonCreate());
  Script(file, "E");
  EXPECT_EQ(Script(file, "T:A S:B", true), "!.") << "the code of the refusal before";
  Script(file, "T:C");
  EXPECT_EQ(host::Messages(), Texts{"Missing current section"}) << "silenced for good";
  for (int pending : {2000, 0}) EXPECT_EQ(As<CzonData>(file).GetErrorCode(), pending);
}

TEST(Build, BadHandles) {
  host::File file(host::Load("[A] EndSect"));
  for (const auto& [letter, call] : kCalls) {
    const bool def = std::strchr("DCIFRXNB", letter) != nullptr;
    const std::string heard = def ? "(CzonCreate)" : "(CzonData)";
    for (void* bad : {static_cast<void*>(nullptr), def ? *file.Address() : zonGetRoot(file)}) {
      for (bool status : {false, true}) {
        EXPECT_EQ(call(bad, "1", status), status ? 1005 : 0) << letter;
        EXPECT_EQ(host::Heard(), status ? "1005" : "1005 Invalid zonHandle " + heard);
      }
    }
  }
  zonEndSection(file);  // not silenced by a call that was not for it
  EXPECT_EQ(host::Heard(), "0 Missing current section");
  const host::File treeless(host::Load("[A"));
  zonGetErrorGlb();
  host::Reports();
  zonAddTarget(treeless, "A");
  EXPECT_EQ(host::Heard(), "0 Missing list");
}

// The facts of a keyword's numbers, and how it is written.
std::string Shown(CzonKeyword* keyword) {
  std::ostringstream out;
  for (unsigned n = 1; CzonNode* value = keyword->ParamByNum(n); ++n)
    if (value->IsNumeric()) out << host::Facts(static_cast<CzonBase*>(value)) << ";";
  keyword->Write(out);
  return out.str();
}

TEST(Build, Values) {
  host::File file(zonCreate());
  CzonData& data = As<CzonData>(file);
  data.AddParam(new CzonParam);  // there is no keyword for it
  EXPECT_EQ(host::Heard(), "0 Missing current keyword");
  Script(file, "T:A K:k i:-7 f:0.1 d:3 I F R b:-3 s:it's s n:a/b u X N B 1 2 3 4 5");
  EXPECT_EQ(Shown(data.GetCurrentKeyword()),
            "6 PNIFDi -7 -7 -7 0 '' 2;7 PNFD 0 0.1 0.1 0 '' 2;"
            "7 PNIFD 3 3 3 0 '' 2;6 PNIi 0 0 0 0 '' 2;7 PNIFD 0 0 0 0 '' 2;7 PNIFD 0 0 0 0 '' 2;"
            "6 PNi 0 0 0 0 '' 2;7 PN 0 0 0 0 '' 2;7 PN 0 0 0 0 '' 2;   k = -7, 0.1, 3.0, 0, 0, "
            "0.0, true, 'it''s', '', |a\\b|, , '', ||, false, 0, 0, 0, false, ''\n");
  data.AddParam(nullptr);
  zonAddSectionDef(file, "B", 0, 5);
  EXPECT_EQ(data.GetCurrentSection()->GetFlags(), 2U);
  zonAddKeywordDef(file, "k", nullptr, 2, 0, -1);
  EXPECT_EQ(data.GetCurrentKeyword()->GetFlags(), 5U);
}

TEST(Build, FloatsHaveTheTextThatIsWritten) {
  const std::pair<float, const char*> rows[] = {{0.1F, "0.1"},
                                                {1234567, "1.23457e+06"},
                                                {1e-40F, "0"},
                                                {-1e-40F, "0"},
                                                {-0.0F, "0"},
                                                {HUGE_VALF, "3.40282e+38"},
                                                {FLT_MAX, "3.40282e+38"},
                                                {-HUGE_VALF, "-3.40282e+38"}};
  for (const auto& [value, text] : rows) {
    const host::Built built;
    zonAddFloat(built, value);
    std::ostringstream out;
    As(host::ValueOf(built)).Write(out);
    EXPECT_EQ(out.str(), text);
    EXPECT_EQ(As<CzonParam>(host::ValueOf(built)).GetText(), text);
    EXPECT_EQ(zonGetDouble(host::ValueOf(built)), static_cast<double>(value)) << text;
    // A loaded real takes the float that would be written: clamped, or 0 for a subnormal one.
    const host::File loaded(host::Load("[A] k = 2.5 EndSect"));
    EXPECT_EQ(zoneModifyParameterFloat(host::KeywordOf(loaded), 1, value), 0);
    const auto& real = As<CzonReal>(host::ValueOf(loaded));
    const auto written = static_cast<double>(zonGetFloat(host::ValueOf(built)));
    EXPECT_EQ(real.GetText(), text);
    EXPECT_EQ(real.GetDouble(), written) << text;
    EXPECT_FALSE(std::signbit(real.GetDouble()) && written == 0) << text;
    EXPECT_TRUE(real.IsFloat()) << text;
  }
}

TEST(Build, References) {
  int integer = 1, truth = 1;
  float single = 1;
  double number = 1;
  char text[] = "one";
  // A loaded tree has its memory elsewhere than a built one.
  for (void* handle : {zonCreate(), host::Load("[A] EndSect")}) {
    host::File file(handle);
    Script(file, "T:R K:k");
    zonAddIntRef(file, &integer);
    zonAddFloatRef(file, &single);
    zonAddDoubleRef(file, &number);
    zonAddBoolRef(file, &truth);
    zonAddStringRef(file, text);
    integer = 7, truth = 5, single = 2.5F, number = 3, text[0] = 't';
    EXPECT_EQ(Shown(As<CzonData>(file).GetCurrentKeyword()),
              "6 PNIi 7 0 0 0 '' 2;7 PNF 0 0 2.5 0 '' 2;7 PND 0 3 0 0 '' 2;"
              "   k = 7, 2.5, 3.0, true, 'tne'\n");
  }
  CzonInt plain("1");
  EXPECT_DEATH(CzonIntRef().Copy(&plain), "zonintr.*Node");
}

// What is done after a CLOB; what is removed, by numbers from the root; what is current then.
const char* const kCursors[][3] = {
    {"", "12122", "Ck-"}, {"", "12121", "Ckc"},   {"", "1212", "C--"},    {"", "1211", "Ckc"},
    {"", "121", "B--"},   {"", "12", "A--"},      {"", "11", "Ckc"},      {"", "1", "---"},
    {"", "", "---"},      {"C:i", "1212", "Ci-"}, {"C:i", "1213", "C--"}, {"K:l", "-", "Cl-"},
    {"s:x", "-", "Ck-"},  {"S:E", "-", "E--"},    {"E", "-", "B--"},      {"T:A", "-", "Ckc"},
    {"C:i", "-", "Cic"}};

TEST(Build, Cursor) {
  for (const auto& [steps, removed, expected] : kCursors) {
    host::File file(zonCreate());
    CzonData& data = As<CzonData>(file);
    Script(file, "T:A S:D E S:B S:C K:j K:k s:x");
    data.AddParam(new CzonClob("c"));
    Script(file, steps);
    CzonNode* node = data.GetCurrentSection()->GetTopNode();
    for (const char* n = removed; *n != '\0' && node != nullptr; ++n)
      node = node->NodeByNum(static_cast<unsigned>(*n - '0'));
    data.UpdateCurrentNode(node);
    std::string current = data.GetCurrentSection() ? data.GetCurrentSection()->GetName() : "-";
    current += data.GetCurrentKeyword() ? data.GetCurrentKeyword()->GetName() : "-";
    EXPECT_EQ(current + (data.GetCurrentClob() ? "c" : "-"), expected) << steps << removed;
  }
  host::Messages();
}

}  // namespace
