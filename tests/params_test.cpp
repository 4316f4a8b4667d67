// One keyword at a time: the convenience functions, and by what they judge success.
#include "treetext.h"

namespace {

using host::Texts;
const char kUnfit[] = "Function invalid in this context";

// What each overload stores; "stays" or "old" if the variable stays as it is.
std::string Get(void* section, const char* keyword, int instance, int n) {
  const auto get = [&](auto value) {
    const auto before = value;
    const int stored = zonGetParam(section, keyword, &value, instance, n);
    EXPECT_TRUE(stored == 1 || value == before);
    return (stored == 1 ? testing::PrintToString(value) : "stays") + ",";
  };
  CString string("old"), copy("old");
  const char* path = "old";
  const int stored = zonGetParam(section, keyword, &string, instance, n);
  EXPECT_EQ(zonGetParamFilename(section, keyword, &copy, instance, n), stored);
  EXPECT_EQ(zonGetParamFilename(section, keyword, &path, instance, n), stored);
  EXPECT_STREQ(copy, path != nullptr ? path : "");
  return get(-5) + get(-5.0F) + get(-5.0) + get(!stored) + std::string(string) + "," +
         (path != nullptr ? path : "null");
}

TEST(Params, AreReadByTheirPlace) {
  const host::File file(host::Load("[A] k = 7, 2.5, true, 'it''s', |d\\f| k = 1, 2 EndSect"));
  void* section = zonTargetByNum(file, 1);
  const std::string kept = "stays,stays,stays,stays,old,old";
  EXPECT_EQ(Get(section, "k", 1, 1), "7,7,7,false,,null");
  EXPECT_EQ(host::Messages(), Texts(4, kUnfit));
  EXPECT_EQ(Get(section, "K", 2, 2), "2,2,2,false,,null");
  EXPECT_EQ(Get(section, "k", 1, 4), "0,0,0,false,it's,null");
  EXPECT_EQ(Get(section, "k", 1, 5), "0,0,0,false,," + host::FolderPath() + "/d/f");
  EXPECT_EQ(zonGetErrorGlb(), 0) << "a value of another kind sets no code";
  host::Messages();
  EXPECT_EQ(Get(section, "k", 1, 6) + Get(section, nullptr, 1, 1), kept + kept);
  EXPECT_EQ(host::Messages(), Texts{});
  EXPECT_EQ(Get(nullptr, "k", 1, 1), kept);
  EXPECT_EQ(host::Messages(), Texts(7, "Invalid zonNode"));
  EXPECT_EQ(Get(section, "k", 1, 5), kept) << "for the code that is pending";
  EXPECT_EQ(host::Messages(), Texts(5, kUnfit)) << "asked all the same";
  int i = 0;
  EXPECT_EQ(zonGetListParam(section, "k", 1, "i", &i), 0);
  EXPECT_EQ(zonGetErrorGlb(), 1006) << "only looked at";
  EXPECT_EQ(zonGetParam(section, "k", static_cast<int*>(nullptr), 1, 1), 1);
  float f = 0;
  double d = 0;
  bool b = false;
  EXPECT_EQ(zonGetListParam(section, "k", 1, "ifb? ", &i, &f, &b), 1);
  EXPECT_EQ(zonGetListParam(section, "K", 2, "?d?i", &d, &i), 0) << "three places for two values";
  EXPECT_TRUE(i == 7 && f == 2.5F && b && d == 2);
  EXPECT_EQ(zonGetListParam(section, "k", 2, nullptr), 1);
  EXPECT_EQ(zonGetListParam(section, "k", 3, ""), 0);
}

TEST(Params, AreWrittenByTheirType) {
  const std::pair<int (*)(void*), std::string> rows[] = {
      {[](void* h) { return zonPutParam(h, "k", -7); }, "int -7"},
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
    const host::File file(zonCreate());
    EXPECT_EQ(put(file), 1) << "a refusal sets no code";
    zonAddTarget(file, "A");
    EXPECT_EQ(put(file), 1);
    zonGetLevel(nullptr);
    EXPECT_EQ(put(file), 0);
    EXPECT_EQ(host::ShowTree(file), "{A{k(" + shown + ") k<2>()}}") << "the keyword alone";
    EXPECT_EQ(zonGetErrorGlb(), 1006) << "only looked at";
    EXPECT_EQ(put(nullptr), 0);
  }
}

}  // namespace
