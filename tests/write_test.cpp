// Writing: the form of values and nodes, files and what happens to them, dumps, copies of files.
#include <ctime>
#include <iomanip>
#include <limits>

#include "treetext.h"

// Replaces the function of the C library: it is 09:07:03 on 5 March 2026 in UTC.
extern "C" __attribute__((visibility("default"))) std::time_t time(std::time_t*) noexcept {
  return 1772701623;
}

namespace {

using namespace std::string_literals;
using namespace host;

std::string Path(const std::string& name) {
  return FolderPath() + "/" + name;
}

// What a function writes into a new file.
std::string Written(void (*write)(void*, const char*), void* handle) {
  const std::string path = Path("written.zon");
  std::remove(path.c_str());
  write(handle, path.c_str());
  return ReadFile(path);
}
// What follows the head of a file.
std::string Body(const std::string& text) {
  return text.substr(text.find("\n\n") + 2);
}

template <class Value>
void Add(void* file, const char* text) {
  As<CzonData>(file).AddParam(new Value(text));
}

TEST(Writing, EachValueHasItsForm) {
  static double real = -std::numeric_limits<double>::infinity();
  const struct {
    const char* text;
    void (*add)(void* file);
  } rows[] = {
      {"-2147483648", [](void* file) { zonAddInt(file, INT32_MIN); }},
      {"9223372036854774784.0", [](void* file) { zonAddDouble(file, 0x1p63 - 1024); }},
      {"9.223372036854776e+18", [](void* file) { zonAddDouble(file, 0x1p63); }},
      {"true", [](void* file) { zonAddBool(file, 7); }},
      {"'''it''s''\n|\"'", [](void* file) { zonAddString(file, "'it's'\n|\""); }},
      {"|a\\b\\c|", [](void* file) { zonAddFilename(file, "a/b\\c"); }},
      {"-inf", [](void* file) { zonAddDoubleRef(file, &real); }},
      {"#2031-02-14#", [](void* file) { Add<CzonDateTime>(file, "2031-02-14"); }},
      {"'<CLOB:String:\"it''s\">'", [](void* file) { Add<CzonClob>(file, "String:\"it's\""); }},
      {"", [](void* file) { As<CzonData>(file).AddParam(new CzonDefaultPar); }}};
  for (const auto& [text, add] : rows) {
    const Built file;
    add(file);
    std::ostringstream odd;
    odd.imbue(std::locale(std::locale(), new Commas));
    odd << std::hex << std::fixed << std::showpos << std::setprecision(1) << std::setw(30);
    As(ValueOf(file)).Write(odd);
    EXPECT_EQ(odd.str(), text);
    EXPECT_EQ(Body(Written(zonWrite, file)), "[A]\n   k = "s + text + "\nEndSect  // A\n\n");
  }
}

TEST(Writing, NumbersAreThoseOfPrintf) {
  float f = 0;
  double d = 0;
  const CzonFloatRef floatOut(&f);
  const CzonDoubleRef doubleOut(&d);
  std::mt19937_64 random(1);
  for (int n = 0; n < 1000000 && !HasFailure(); ++n) {
    const std::uint64_t bits = random();
    std::memcpy(&f, &bits, sizeof f);
    std::memcpy(&d, &bits, sizeof d);
    if (n % 2 != 0) {  // what people write: up to 10 digits, the point somewhere among them
      d = static_cast<double>(static_cast<int>(bits)) / std::pow(10.0, (bits >> 32) % 10);
    }
    const bool whole = d == std::trunc(d) && d >= -0x1p63 && d < 0x1p63;
    char expected[99];
    std::snprintf(expected, sizeof expected, whole ? "%g %#.1f" : "%g %.16g",
                  static_cast<double>(f), d);
    std::ostringstream out;
    doubleOut.Write(floatOut.Write(out) << ' ');
    EXPECT_EQ(out.str(), expected);
  }
}

TEST(Writing, EachNodeHasItsForm) {
  const struct {
    const char *text, *body;
  } rows[] = {
      {"", ""},
      {"[A][B][C]{r}; c\n k=1{r}, 2 EndSect EndSect m=3 EndSect[b]EndSect",
       "[A]\n   [B]\n      [C]\n         k = 1, 2\n      EndSect  // C\n\n   EndSect  // B\n\n"
       "   m = 3\nEndSect  // A\n\n[b]\nEndSect  // b\n\n"},
      {"[A()]default(k)=1,,2 k()=,3 default()={r}()=true EndSect",
       "[A()]\n   default (k) = 1, , 2\n   k() = , 3\n   default () = \n   () = true\n"
       "EndSect  // A\n\n"},
      {"[A]k=+5,- 3,4294967303,-0,TRUE,+1.50,1E3,.5,%x,%1,{u},'<clob:Integer:1>'EndSect",
       "[A]\n   k = 5, -3, 7, 0, true, +1.50, 1E3, .5, x, 1, , '<CLOB:Integer:1>'\n"
       "EndSect  // A\n\n"}};
  for (const auto& [text, body] : rows) {
    const File file(Load(text));
    EXPECT_EQ(Body(Written(zonWrite, file)), body) << SyntaxError(file);
  }
  CzonSection detached("A", 1, 0);  // has no file, so no head and no depth
  detached.AddSection(new CzonSection("B", 0, 0));
  EXPECT_EQ(WrittenBy(detached), "[A()]\n[B]\nEndSect  // B\n\nEndSect  // A\n\n");
}

// A node of a host may write anything. If it fails, nothing is written.
TEST(Writing, NodesOfAHost) {
  struct Mine : CzonSection {
    std::ostream& Write(std::ostream& out) const override {
      out.put('\n') << 1234.5;
      if (fails) out.setstate(std::ios_base::badbit);
      return out;
    }
    bool fails = false;
  };
  const File file(zonCreate());
  auto* mine = new Mine;
  As<CzonTargetList>(zonGetRoot(file)).AddSection(mine);
  EXPECT_EQ(Body(Written(zonWrite, file)), "\n1234.5");
  zonAddTarget(file, "A");
  mine->fails = true;
  EXPECT_EQ(Written(zonWrite, file), "");
}

TEST(Writing, FullStreamsAreBad) {
  struct Full : std::streambuf {
  } full;
  std::ostream nowhere(&full);
  EXPECT_TRUE(CzonString("x").Write(nowhere).bad());
}

// A text goes into the room of a buffer only if all of it fits.
TEST(Writing, BuffersOfEachSize) {
  struct Small : std::streambuf {
    explicit Small(std::size_t size) : room(size, '-') { Begin(); }
    int overflow(int c) override {
      text.append(pbase(), pptr());
      if (c != EOF) text += std::char_traits<char>::to_char_type(c);
      Begin();
      return 0;
    }
    void Begin() { setp(room.data(), room.data() + room.size()); }
    std::vector<char> room;
    std::string text;
  };
  for (std::size_t size = 0; size < 40; ++size) {
    const std::string name = std::string("abcdefghijklmnopqrstuvwxyz").substr(0, size / 2);
    const CzonString value(name);
    Small small(size);
    std::ostream out(&small);
    value.Write(value.Write(out));
    small.overflow(EOF);
    EXPECT_EQ(small.text, "'" + name + "''" + name + "'") << size;
  }
}

TEST(Writing, BeginsWithTheLocalTimeAndAppends) {
  setenv("TZ", "EAST-1", 1);
  const File file(Load("[A]EndSect"));
  const std::string path = WriteFile("twice.zon", "; kept");
  zonWrite(file, path.c_str());
  zonAppend(file, zonGetZonFileName(zonGetRoot(file)));
  const std::string once =
      "// Created     : 2026-03-5 10:7:3\n// DLL         : zon2004\n"
      "// Version     : 20.0.0.15342\n\n[A]\nEndSect  // A\n\n";
  EXPECT_EQ(ReadFile(path), "; kept" + once + once);
  unsetenv("TZ");
  tzset();
}

TEST(Writing, AddsTheResultSettings) {
  const struct {
    const char *root, *custom;
    int use;
    const char *rootText, *useText, *customText;
  } rows[] = {{"r/s", "", 0, "|r\\s|", "false", "||"},
              {"", "c", 0, "||", "false", "|c|"},
              {"", "", -3, "||", "true", "||"}};
  for (const auto& row : rows) {
    const File file(zonCreate());
    zonSetProjectResultRoot(file, row.root);
    zonSetCustomResultFolder(file, row.use, row.custom);
    const std::string body = "[SYSTEM]\n   ResultRootFolder = "s + row.rootText +
                             "\n   UseCustomResultFolder = " + row.useText +
                             "\n   CustomResultFolder = " + row.customText +
                             "\nEndSect  // SYSTEM\n\n";
    EXPECT_EQ(Body(Written(zonWrite, file)), body);
    zonAddTarget(file, "A");
    EXPECT_EQ(Body(Written(zonAppend, file)), body + "[A]\nEndSect  // A\n\n") << "written again";
    EXPECT_EQ(Heard(), "0 Previous section was not completed");
    EXPECT_EQ(zonAddKeywordS(file, "k"), 2000) << "for that refusal";
    EXPECT_EQ(zonAddKeywordS(file, "k"), 0);
  }
}

TEST(Writing, FailuresAreSilentAndChangeNothing) {
  for (const std::string& name : Texts{Path(""), Path("no/file"), "", "/dev/full"}) {
    const File file(Load("[A] k = 'a text' EndSect"));
    const std::string source = zonGetZonFileName(zonGetRoot(file));
    zonWrite(file, name.c_str());
    zonDump(zonTargetByNum(file, 1), name.c_str());
    EXPECT_EQ(zonFileCopy(source.c_str(), name.c_str()), 0) << name;
    EXPECT_EQ(zonGetZonFileName(zonGetRoot(file)), name);
    EXPECT_EQ(Heard(), "0") << name;
  }
}

TEST(Writing, ChecksItsHandle) {
  const File file(Load("[A] k = "));  // has no tree
  Reports();
  Heard();
  const struct {
    void (*write)(void*, const char*);
    void* handle;
    const char* heard;
  } rows[] = {{zonWrite, nullptr, "1005 Invalid zonHandle (CzonData)"},
              {zonAppend, nullptr, "1005 Invalid zonHandle (CzonData)"},
              {zonWrite, file, "1006 Invalid zonNode"},
              {zonDump, file, "1006 zonDump: bad argument"},
              {zonDump, nullptr, "1006 zonDump: bad argument"}};
  for (const auto& [write, handle, heard] : rows) {
    EXPECT_EQ(Written(write, handle), "") << heard;
    EXPECT_EQ(Heard(), heard);
  }
}

const char kDump[] = R"((2) [A]   (1 sections   2 keywords)   <A>
   (4) <2,0> k =    (3 params)   <>
      (6) <3,1> Float: 1   Double: 1   Int: 1   
      (7) <3,2> Float: 2.5   Double: 2.5   
      (11) <3,3> DEFAULT: Parameter ...
   (2) [b]   (0 sections   1 keywords)   <A.b>
      (3) m =    (4 params)   <A.b.m>
         (10) <4,1> Parameter ...
         (10) <4,2> Parameter ...
         (15) <4,3> Parameter ...
         (14) <4,4> Parameter ...
   (3) <2,1> k =    (2 params)   <A.k>
      (6) <2,1> Float: 9e+06   Double: 9e+06   Int: 9000000   
      (11) <2,2> DEFAULT: Float: 2.5   Double: 2.5   
   (3) <2,2> K =    (6 params)   <A.K>
      (7) <6,1> Float: 1.23457e+06   Double: 1.23457e+06   
      (7) <6,2> Double: 1e+300   
      (9) <6,3> String: it's
      (8) <6,4> Boolean: true
      (8) <6,5> Boolean: false
      (11) <6,6> DEFAULT: Parameter ...
)";

TEST(Writing, DumpsListEveryNode) {
  const File file(
      Load("[A] default (k) = 1, 2.5 [b] m = #d#, |f|, , {u} EndSect k = 9000000 "
           "K = 1234567.5, 1e300, 'it''s', TRUE, FALSE EndSect [C] EndSect"));
  for (const unsigned n : {1U, 3U, 4U}) {
    As<CzonKeyword>(zonNodeByNum(zonTargetByNum(file, 1), n)).AddParam(new CzonDefaultPar);
  }
  const std::string other = "(2) [C]   (0 sections   0 keywords)   <C>\n";
  EXPECT_EQ(Written(zonDump, zonGetRoot(file)), kDump + other);
  EXPECT_EQ(zonGetErrorGlb(), 0);
  EXPECT_EQ(Written(zonDump, file), kDump + other);
  EXPECT_EQ(zonGetErrorGlb(), 1006);
  zonDump(zonTargetByNum(file, 2), Path("written.zon").c_str());
  EXPECT_EQ(ReadFile(Path("written.zon")), other) << "overwritten";
}

TEST(Writing, NodesOfNoKind) {
  struct Neither : CzonNode {
    CzonNode* CreateObj() override { return new Neither; }
  } neither;
  EXPECT_EQ(WrittenBy(neither), "");
  neither.CzonNode::Copy(&neither);
  neither.CzonNode::Copy(nullptr);
  EXPECT_EQ(Heard(), "0 Function invalid in this context");
  EXPECT_EQ(Written(zonDump, static_cast<CzonBase*>(&neither)), "(0) >>>  P E N D I N G  <<<\n");
}

TEST(Writing, CopiesKeepFileNamesGood) {
  const std::string top = FolderPath();
  std::string root = "..\\..\\";  // from dst/c.zon, and one more
  for (const char c : top) root += c == '/' ? "..\\" : "";
  WriteFile("src/sub/m.zon", "[A] k = |d\\x.txt|, |../y|, |/abs/../z|, |\\r\\q|, |C:\\w|, ||, |" +
                                 top + "/dst/n| EndSect\n");
  WriteFile("dst/c.zon", "");
  const std::string body = "[A]\n   k = |..\\..\\src\\sub\\d\\x.txt|, |..\\..\\src\\y|, |" + root +
                           "z|, |" + root + "r\\q|, |..\\..\\src\\sub\\C:\\w|, ||, |..\\n|\n" +
                           "EndSect  // A\n\n";
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(top + "/src");
  for (const std::string& from : {std::string(), top + "/src/"}) {
    const std::string target = (from.empty() ? ".." : top) + "/dst/c.zon";
    EXPECT_EQ(zonFileCopy((from + "sub/m.zon").c_str(), target.c_str()), 1);
    EXPECT_EQ(Body(ReadFile(target)), body);
    std::remove(target.c_str());
  }
  EXPECT_EQ(zonFileCopy("sub/m.zon", "../src/sub/m.zon"), 1) << "onto itself";
  EXPECT_NE(ReadFile("sub/m.zon").find("EndSect\n// Created"), std::string::npos);
  EXPECT_EQ(zonFileCopy("none.zon", "target.zon"), 0);
  EXPECT_EQ(Heard(), "1001");
  EXPECT_EQ(Reports(), Texts{"1: Open error: none.zon"});
  EXPECT_FALSE(std::filesystem::exists("target.zon"));
  std::filesystem::current_path(before);
}

}  // namespace
