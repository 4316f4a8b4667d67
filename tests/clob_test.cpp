// CLOB values: reading, failures, the lifetime of returned texts, building.
#include <cfloat>
#include <iomanip>

#include "treetext.h"

namespace {

using namespace std::string_literals;

using host::FolderPath, host::ValueOf;

std::string Quoted(const std::string& content) {
  std::string text = "'<CLOB:";
  for (const char c : content) text.append(c == '\'' ? 2 : 1, c);
  return text + ">'";
}
void* LoadList(const std::string& content) {
  return host::Load("[A] k = " + Quoted(content) + " EndSect");
}

std::string Number(int digits, double value) {
  return (std::ostringstream() << std::setprecision(digits) << value).str();
}

// Reads every item by its kind: "Integer 1, String x"; at bad content its error text.
std::string ReadAll(void* clob) {
  const int count = zonGetClobNoItems(clob);
  if (count < 0) return zonGetErrorFromZonClob(clob);
  std::string text;
  for (int n = 0; n < count; ++n) {
    if (n > 0) text += ", ";
    if (zonIsClobBool(clob)) {
      text += "Boolean "s + (zonGetClobBool(clob) ? "true" : "false");
    } else if (zonIsClobInt(clob)) {
      text += "Integer " + std::to_string(zonGetClobInt(clob));
    } else if (zonIsClobFloat(clob)) {
      text += "Float " + Number(9, static_cast<double>(zonGetClobFloat(clob)));
    } else if (zonIsClobDouble(clob)) {
      text += "Double " + Number(17, zonGetClobDouble(clob));
    } else if (zonIsClobString(clob)) {
      text += "String "s + zonGetClobString(clob);
    } else if (zonIsClobFilename(clob)) {
      text += "Filename "s + zonGetClobFilenameString(clob);
    }
  }
  EXPECT_EQ(zonIsClobEnd(clob), 1);
  return text;
}

TEST(Clob, ContentsAreReadAndWritten) {
  const struct {
    const char *content, *read;  // the items, or the first flaw
  } rows[] = {
      {"", ""},
      {"Boolean:true,integer:-5,FLOAT:0.5,Double:2.5",
       "Boolean true, Integer -5, Float 0.5, Double 2.5"},
      {" Integer : +7 , \n Double : 1 ", "Integer 7, Double 1"},
      {"String:\"say \"\"hi\"\", it's > ,\n\",Filename:\"out\\a.dat\"",
       "String say \"hi\", it's > ,\n, Filename out\\a.dat"},
      {"Double:.5,Double:5.,Double:1e-3,Float:3.4028235e38",
       "Double 0.5, Double 5, Double 0.001, Float 3.40282347e+38"},
      {"Float:+1.5,Float:1e-99,Integer:-2147483648", "Float 1.5, Float 0, Integer -2147483648"},
      {"Integer:2147483648", "CLOB position 9: value expected"},
      {"Integer:-", "CLOB position 9: value expected"},
      {"Integer:1.5", "CLOB position 10: ',' expected"},
      {"Integer:1,", "CLOB position 11: kind expected"},
      {",Integer:1", "CLOB position 1: kind expected"},
      {"Integer 1", "CLOB position 9: ':' expected"},
      {"Integer:1 Integer:2", "CLOB position 11: ',' expected"},
      {"Boolean:truer", "CLOB position 9: value expected"},
      {"Float:1e39", "CLOB position 7: value expected"},
      {"Double:1e400", "CLOB position 8: value expected"},
      {"Double:inf", "CLOB position 8: value expected"},
      {"Double:0x10", "CLOB position 9: ',' expected"},
      {"Double:1E+x", "CLOB position 8: value expected"},
      {"String:x", "CLOB position 8: value expected"},
      {"Integer:1,String:\"x\"\"", "CLOB position 22: closing quote expected"}};
  for (const auto& [content, read] : rows) {
    SCOPED_TRACE(content);
    zonGetErrorGlb();
    const host::File file(LoadList(content));
    void* clob = ValueOf(file);
    ASSERT_EQ(zonIsClob(clob), 1);
    const bool flawed = std::strncmp(read, "CLOB position", 13) == 0;
    EXPECT_EQ(zonIsClobEnd(clob), flawed || *read == '\0');
    EXPECT_EQ(ReadAll(clob), read);
    EXPECT_STREQ(flawed ? zonGetClobFilenameString(clob) : "", "");
    EXPECT_EQ(zonGetErrorGlb(), flawed ? 1003 : 0);
    EXPECT_EQ(host::WrittenBy(host::As(clob)), Quoted(content));
    zonGetErrorGlb();
  }
}

TEST(Clob, RefusalsNameTheItemAndItsKind) {
  const host::File file(LoadList("Integer:3,String:\"s\",Filename:\"x\\y\""));
  void* clob = ValueOf(file);
  EXPECT_EQ(zonGetClobBool(clob), 0);
  const char* const first = zonGetErrorFromZonClob(clob);
  EXPECT_EQ(host::As(clob).GetInt(), 3);
  EXPECT_STREQ(zonGetClobString(clob), "s");
  EXPECT_EQ(zonGetClobFilename(clob), FolderPath() + "/x/y");
  EXPECT_STREQ(zonGetClobFilename(clob), "");
  EXPECT_EQ(zonIsClobInt(clob), 0);
  EXPECT_STREQ(zonGetErrorFromZonClob(clob), "CLOB item 4: no more items");
  EXPECT_STREQ(first, "CLOB item 1: Integer found, Boolean wanted") << "lives until a change";
  zonClobReset(clob);
  EXPECT_STREQ(zonGetErrorFromZonClob(clob), "");
  const CzonClob unread("Integer:1");
  host::As(clob).Copy(&unread);  // drops the items that were read
  EXPECT_EQ(zonGetClobInt(clob), 1);
  host::Heard();
  void* keyword = host::KeywordOf(file);
  EXPECT_EQ(zonGetClobDouble(keyword), -1.0);
  EXPECT_EQ(zonGetErrorFromZonClob(nullptr), nullptr);
  EXPECT_EQ(host::Heard(), "1006 Invalid CLOB object Invalid CLOB object");
}

TEST(Clob, PathsLiveUntilItChanges) {
  const host::Built file;
  zonAddClob(file);
  void* clob = ValueOf(file);
  const auto read = [&](const char* anchor) {
    zonSetAnchorFilename(clob, anchor);
    zonClobReset(clob);
    return zonGetClobFilename(clob);
  };
  for (const char* name : {"a", "b"}) {  // short enough for a string without memory of its own
    zonAddClobFilename(file, name);
    const char* const near = read("/p/m.zon");
    const char* const far = read("/quite/a/long/way/from/there/m.zon");
    EXPECT_STREQ(near, "/p/a");
    EXPECT_STREQ(far, "/quite/a/long/way/from/there/a");
    // A repeated path is the same text, so repeated reads need no more memory.
    EXPECT_EQ(static_cast<const void*>(read("/p/m.zon")), near);
    EXPECT_EQ(static_cast<const void*>(read("/quite/a/long/way/from/there/m.zon")), far);
  }
}

TEST(Clob, AppendsToBadContent) {
  const host::Built file;
  auto* flawed = new CzonClob("String:\"x");
  host::As<CzonData>(file).AddParam(flawed);
  EXPECT_EQ(ReadAll(flawed), "CLOB position 10: closing quote expected");
  EXPECT_EQ(zonAddClobIntS(file, 1), 0);
  EXPECT_EQ(ReadAll(flawed), "CLOB position 20: closing quote expected");
  zonGetErrorGlb();
}

TEST(Clob, BuiltItemsComeBackBitForBit) {
  const host::Built file;
  EXPECT_EQ(zonAddClobIntS(file, 1), 2000);
  EXPECT_STREQ(zonGetErrorFromZonData(file), "Missing current CLOB");
  zonAddClob(file);
  EXPECT_EQ(zonAddClobFloatS(file, HUGE_VALF), 2000);
  EXPECT_EQ(zonAddClobDoubleS(file, std::nan("")), 2000);
  EXPECT_STREQ(zonGetErrorFromZonData(file), "Invalid CLOB value");
  zonAddClobBool(file, 2);
  zonAddClobInt(file, -7);
  zonAddClobStringS(file, nullptr);
  zonAddClobFilename(file, "a\\b");
  zonAddClobString(file, "say \"it's\"");
  std::string items = "Boolean true, Integer -7, String , Filename a\\b, String say \"it's\"";
  EXPECT_EQ(ReadAll(ValueOf(file)), items);  // later items join those that were read
  zonClobReset(ValueOf(file));
  std::vector<double> wide{0.0, -0.0, DBL_MAX, DBL_MIN, 5e-324};
  std::vector<float> narrow{0.0F, -0.0F, FLT_MAX, FLT_MIN, 1e-45F};
  std::mt19937_64 random(5);
  while (wide.size() < 300) {  // any bit pattern
    const std::uint64_t bits = random();
    std::memcpy(&wide.emplace_back(), &bits, sizeof(double));
    std::memcpy(&narrow.emplace_back(), &bits, sizeof(float));
  }
  for (std::size_t n = 0; n < wide.size(); ++n) {
    if (!std::isfinite(wide[n]) || !std::isfinite(narrow[n])) continue;
    zonAddClobDouble(file, wide[n]);
    zonAddClobFloat(file, narrow[n]);
    items +=
        ", Double " + Number(17, wide[n]) + ", Float " + Number(9, static_cast<double>(narrow[n]));
  }
  const std::string path = FolderPath() + "/bits.zon";
  zonWrite(file, path.c_str());
  const host::File loaded(zonLoadFile(path.c_str(), 0));
  for (void* clob : {ValueOf(file), ValueOf(loaded)}) EXPECT_EQ(ReadAll(clob), items);
}

TEST(Clob, ResultPathsDoNotReadIt) {
  const struct {
    const char *content, *folder;
    int isString;
  } rows[] = {{"String:\"/x\",Integer:7", "", 1},
              {"String:\"x\",Integer:7", "/p/m.zon - Result Files/", 1},
              {"?", "/p/m.zon - Result Files/", 0}};
  for (const auto& [content, folder, isString] : rows) {
    SCOPED_TRACE(content);
    const host::File file(LoadList(content));
    void* clob = ValueOf(file);
    zonSetAnchorFilename(clob, "/p/m.zon");
    char path[100] = "";
    zonGetErrorGlb();
    zonGetResultFolderPath(clob, path);
    EXPECT_STREQ(path, folder);
    EXPECT_EQ(zonGetResultFolderPath2(clob, path, sizeof path), 0);
    EXPECT_EQ(zonGetResultFilenamePath2(clob, path, sizeof path), -2);
    EXPECT_EQ(zonGetErrorGlb(), 0);
    EXPECT_STREQ(zonGetErrorFromZonClob(clob), "");
    EXPECT_EQ(zonIsClobString(clob), isString) << "the cursor moved";
    host::Messages();
  }
}

}  // namespace
