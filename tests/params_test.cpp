// The functions that read and write one keyword at a time.
#include "treetext.h"

namespace {

using host::Texts;
const char kUnfit[] = "Function invalid in this context";

// What each overload stores; "kept" for a variable that keeps its value.
std::string Get(void* section, const char* keyword, int instance, int n) {
  const auto get = [&](auto value) {
    const auto before = value;
    const int stored = zonGetParam(section, keyword, &value, instance, n);
    EXPECT_TRUE(stored == 1 || value == before);
    return stored == 1 ? testing::PrintToString(value) : "kept";
  };
  CString string("kept"), copy("kept");
  const char* path = "kept";
  const int stored = zonGetParam(section, keyword, &string, instance, n);
  EXPECT_EQ(zonGetParamFilename(section, keyword, &copy, instance, n), stored);
  EXPECT_EQ(zonGetParamFilename(section, keyword, &path, instance, n), stored);
  EXPECT_STREQ(copy, path != nullptr ? path : "");
  return "int " + get(-5) + ", float " + get(-5.0F) + ", double " + get(-5.0) + ", bool " +
         get(!stored) + ", string " + std::string(string) + ", path " +
         (path != nullptr ? path : "null");
}

const char kAllKept[] = "int kept, float kept, double kept, bool kept, string kept, path kept";
const char kTree[] = "[A] k = 7, 2.5, true, 'it''s', |d\\f| k = 1, 2 EndSect";

TEST(Params, AreReadByTheirPlace) {
  const host::File file(host::Load(kTree));
  void* section = zonTargetByNum(file, 1);
  EXPECT_EQ(Get(section, "k", 1, 1), "int 7, float 7, double 7, bool false, string , path null");
  EXPECT_EQ(host::Messages(), Texts(4, kUnfit));
  EXPECT_EQ(Get(section, "K", 2, 2), "int 2, float 2, double 2, bool false, string , path null");
  EXPECT_EQ(Get(section, "k", 1, 4),
            "int 0, float 0, double 0, bool false, string it's, path null");
  EXPECT_EQ(Get(section, "k", 1, 5),
            "int 0, float 0, double 0, bool false, string , path " + host::FolderPath() + "/d/f");
  EXPECT_EQ(zonGetErrorGlb(), 0) << "a value of another kind sets no code";
  EXPECT_EQ(zonGetParam(section, "k", static_cast<int*>(nullptr), 1, 1), 1);
  host::Messages();
  EXPECT_EQ(Get(section, "k", 1, 6), kAllKept);
  EXPECT_EQ(Get(section, nullptr, 1, 1), kAllKept);
  EXPECT_EQ(host::Messages(), Texts{});
  EXPECT_EQ(Get(nullptr, "k", 1, 1), kAllKept);
  EXPECT_EQ(host::Messages(), Texts(7, "Invalid zonNode"));
  EXPECT_EQ(Get(section, "k", 1, 5), kAllKept) << "for the code that is pending";
  EXPECT_EQ(host::Messages(), Texts(5, kUnfit)) << "the value is asked all the same";
  EXPECT_EQ(zonGetErrorGlb(), 1006) << "no call before has cleared the code";
}

TEST(Params, AreReadAsAList) {
  const host::File file(host::Load(kTree));
  void* section = zonTargetByNum(file, 1);
  int i = 0;
  float f = 0;
  double d = 0;
  bool b = false;
  EXPECT_EQ(zonGetListParam(section, "k", 1, "ifb? ", &i, &f, &b), 1);
  EXPECT_EQ(i, 7);
  EXPECT_EQ(f, 2.5F);
  EXPECT_TRUE(b);
  EXPECT_EQ(zonGetListParam(section, "K", 2, "?d?", &d), 0) << "three places for two values";
  EXPECT_EQ(d, 2);
  EXPECT_EQ(zonGetListParam(section, "k", 2, nullptr), 1);
  EXPECT_EQ(zonGetListParam(section, "k", 3, ""), 0);
  zonGetLevel(nullptr);  // sets the code 1006
  EXPECT_EQ(zonGetListParam(section, "k", 1, "i", &i), 0);
  EXPECT_EQ(zonGetErrorGlb(), 1006) << "the code stays pending";
}

TEST(Params, AreWrittenByTheirType) {
  const struct {
    int (*put)(void*);
    std::string shown;
  } rows[] = {{[](void* h) { return zonPutParam(h, "k", -7); }, "int -7"},
              {[](void* h) { return zonPutParam(h, "k", 3.0F); }, "real 3"},
              {[](void* h) { return zonPutParam(h, "k", 3.0); }, "real 3.0"},
              {[](void* h) { return zonPutParam(h, "k", true); }, "bool true"},
              {[](void* h) { return zonPutParam(h, "k", false); }, "bool false"},
              {[](void* h) { return zonPutParam(h, "k", "text"); }, "string text"},
              {[](void* h) { return zonPutParam(h, "k", CString('x', 3000)); },
               "string " + std::string(3000, 'x')},
              {[](void* h) { return zonPutParam(h, "k", std::string("text")); }, "string text"},
              {[](void* h) { return zonPutParamFilename(h, "k", "a\\b"); }, "file a\\b"},
              {[](void* h) { return zonPutParamResultFilename(h, "k", "/a"); }, "file /a"},
              {[](void* h) { return zonPutListParam(h, "k", "i?dbf", -1, 2.5, 3, 0.5); },
               "int -1, real 2.5, bool true, real 0.5"},
              {[](void* h) { return zonPutListParam(h, "k", nullptr); }, ""}};
  for (const auto& [put, shown] : rows) {
    SCOPED_TRACE(shown);
    const host::File file(zonCreate());
    EXPECT_EQ(put(file), 1) << "a refusal sets no code";
    zonAddTarget(file, "A");
    EXPECT_EQ(put(file), 1);
    zonGetLevel(nullptr);  // sets the code 1006
    EXPECT_EQ(put(file), 0);
    EXPECT_EQ(host::ShowTree(file), "{A{k(" + shown + ") k<2>()}}") << "the keyword alone";
    EXPECT_EQ(zonGetErrorGlb(), 1006) << "the code stays pending";
    EXPECT_EQ(put(nullptr), 0);
  }
}

}  // namespace
