// Loading: codes and reports, counters, the SYSTEM section, files that are none, and what a load
// leaves behind.
#include <fcntl.h>
#include <pthread.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <thread>

#include "treetext.h"

namespace {

using namespace host;
using namespace std::string_literals;

// What a load leaves: "code 0, 55 characters, 7 lines, 4 comments, 0 tokens, tree", without a handle
// only the code; then each report on a line of its own.
std::string Outcome(const std::string& name, int quiet) {
  zonGetLevel(nullptr);  // a load clears its code
  Messages();
  Reports();
  const int descriptor = LowestFreeDescriptor();
  const File file(zonLoadFile(name.c_str(), quiet));
  EXPECT_EQ(LowestFreeDescriptor(), descriptor);
  std::ostringstream text;
  text << "code " << zonGetErrorGlb();
  if (file != nullptr) {
    text << ", " << zonNoChars(file) << " characters, " << zonNoLines(file) << " lines, "
         << zonNoComments(file) << " comments, " << zonNoTokens(file) << " tokens";
  }
  if (void* root = zonGetRoot(file)) {
    text << ", tree";
    EXPECT_EQ(zonGetAnchorFilename(root), name);
  }
  for (const std::string& report : Reports()) text << "\n" << report;
  return text.str();
}

TEST(Load, CodesReportsAndCounters) {
  const std::string good =
      WriteFile("good.zon", "[A]\r\n// a /* b\r\n/* c /* d */\n */ k = 'x\ny' ; e\nEndSect\n");
  const std::string bad = WriteFile("bad%.zon", "[A] /**/\n k = |x\n EndSect");
  const std::string cut = WriteFile("cut.zon", "[A] EndSect 'x\n");
  struct Row {
    std::string name, outcome, report;
  };
  std::vector<Row> rows = {
      {good, "code 0, 55 characters, 7 lines, 4 comments, 0 tokens, tree", ""},
      {cut, "code 0, 15 characters, 2 lines, 0 comments, 0 tokens, tree", ""},
      {"/dev/null", "code 0, 0 characters, 1 lines, 0 comments, 0 tokens, tree", ""},
      {bad, "code 1003, 17 characters, 3 lines, 1 comments, 0 tokens",
       "\n1: Error: Missing |\n in " + bad + " near line 3 position 0"},
      {"/proc/self/mem", "code 1002", "\n1: CyyStream"}};  // opens, but nothing is mapped at 0
  for (const std::string& name : {""s, "/"s, "%n%s"s, good + "/", std::string(5000, 'x')}) {
    rows.push_back({name, "code 1001", "\n1: Open error: " + name});
  }
  for (const auto& [name, outcome, report] : rows) {
    EXPECT_EQ(Outcome(name, 0), outcome + report);
    EXPECT_EQ(Outcome(name, 1), outcome);
  }
  EXPECT_EQ(zonLoadFile(nullptr, 1), nullptr);
  EXPECT_EQ(zonGetErrorGlb(), 1001);
}

TEST(Load, LeavesPackedListsUnread) {
  const File file(
      Load("[SYSTEM] UseCustomResultFolder = '<CLOB:Boolean:true,Boolean:false>' EndSect"));
  EXPECT_EQ(zonGetErrorGlb(), 0);
  void* list = ValueOf(file);
  EXPECT_EQ(zonGetClobBool(list), 1) << "the first item is still to be read";
  EXPECT_STREQ(zonGetErrorFromZonClob(list), "");
}

TEST(Load, SystemSection) {
  const std::string here = FolderPath();
  const struct {
    std::string section, root, folder;
    int use;
    unsigned refusedValues;  // of another kind
  } rows[] = {
      {"resultROOTfolder = |/r|, |/s| ResultRootFolder = |/t|", "/r", "", 0, 0},
      {"UseCustomResultFolder = true CustomResultFolder = |c|", "", here + "/c", 1, 0},
      {"CustomResultFolder = |b/../c| ResultRootFolder = |r\\s|", here + "/r/s", here + "/c", 0, 0},
      {"CustomResultFolder = || UseCustomResultFolder = true ResultRootFolder = ||", "", "", 1, 0},
      {"UseCustomResultFolder = 1 CustomResultFolder = |/c|", "", "/c", 0, 1},
      {"ResultRootFolder = 'r' CustomResultFolder = 5 UseCustomResultFolder = 'true'", "", "", 0,
       3},
      {"UseCustomResultFolder = '<CLOB:Integer:1>' CustomResultFolder = |/c|", "", "/c", 0, 0},
      {"[ResultRootFolder] EndSect default(CustomResultFolder) = |c|", "", "", 0, 0},
      {"EndSect [System] ResultRootFolder = |/second|", "", "", 0, 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.section);
    const File file(Load("[System] " + row.section + " EndSect"));
    ASSERT_EQ(SyntaxError(file), "");
    const auto& root = As<CzonTargetList>(zonGetRoot(file));
    int use = -1;
    std::string folder;
    root.GetCustomResultFolder(&use, &folder);
    EXPECT_EQ(root.GetResultRoot(), row.root);
    EXPECT_EQ(use, row.use);
    EXPECT_EQ(folder, row.folder);
    EXPECT_EQ(Messages(), Texts(row.refusedValues, "Function invalid in this context"));
  }
  EXPECT_EQ(zonGetErrorGlb(), 0);
}

const std::string kFront = "/* a /* b */ */ ";
const std::string kRich =
    kFront +
    "[A_1] {r\nm} // c\n k() {s} = -12.5e+07, 'it''s', |f|, #1#, %x, , {u} ; d\n"
    "default(k) = true, [B] () = '<CLOB:a>' EndSect\nEndSect";

// A pipe has no size and gives as little as is in it, here one byte at a time.
TEST(Load, PipeInPieces) {
  const std::string path = FolderPath() + "/pipe.zon";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::thread writer([&] {
    const int pipe = open(path.c_str(), O_WRONLY);
    for (const char c : kRich) {
      int waiting = static_cast<int>(write(pipe, &c, 1));
      for (int i = 0; i < 100000 && waiting > 0 && ioctl(pipe, FIONREAD, &waiting) == 0; ++i) {
        std::this_thread::yield();
      }
    }
    close(pipe);
  });
  const File file(zonLoadFile(path.c_str(), 0));
  writer.join();
  EXPECT_EQ(ShowTree(file), ShowTree(File(Load(kRich))));
  EXPECT_EQ(zonNoChars(file), kRich.size());
}

// A thread that waits in the library for a pipe can be cancelled; its file is closed.
TEST(Load, CancelledThreads) {
  const std::string path = FolderPath() + "/idle.zon";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  static void* tokens = nullptr;
  void* (*const readers[])(void*) = {
      [](void* name) -> void* { return zonLoadFile(static_cast<const char*>(name), 1); },
      [](void* name) -> void* {
        if (zontLoadFile(static_cast<const char*>(name), &tokens) == 0) zontNextToken(tokens);
        return nullptr;
      }};
  const int writer = open(path.c_str(), O_RDWR);
  for (const auto reader : readers) {
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, nullptr, reader, const_cast<char*>(path.c_str())), 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    EXPECT_EQ(pthread_cancel(thread), 0);
    void* result = nullptr;
    EXPECT_EQ(pthread_join(thread, &result), 0);
    EXPECT_EQ(result, PTHREAD_CANCELED);
  }
  close(writer);
  zontDispose(&tokens);
}

// The closing character of an empty text is the last byte of a piece that was read.
TEST(Load, EmptyTextsAtTheEndOfARead) {
  const std::string before = "[A] k = ";
  for (const std::size_t block : {65536U, 131072U, 262144U}) {
    for (const std::string empty : {"''", "||"}) {
      const std::string blanks(block - before.size() - empty.size(), ' ');
      const File file(Load(before + blanks + empty + " EndSect"));
      void* section = zonTargetByNum(file, 1);
      void* value = ValueOf(file);
      const char* name = nullptr;
      CString text("old");
      const bool isString = empty == "''";
      EXPECT_STREQ(zonGetResultFilename(value), "") << empty << " at " << block;
      EXPECT_EQ(zonGetParamResultFilename(section, "k", &name, 1, 1), 1);
      EXPECT_STREQ(name, "");
      if (isString) {
        char copy[] = "x";
        EXPECT_STREQ(zonGetString(value), "");
        EXPECT_EQ(zonGetString2(value, copy, 2), 0);
        EXPECT_STREQ(copy, "");
        EXPECT_EQ(zonGetParam(section, "k", &text, 1, 1), 1);
        EXPECT_STREQ(text, "");
      } else {
        EXPECT_STREQ(zonGetFilenameString(value), "");
        EXPECT_STREQ(zonGetFilename(value), "");
      }
    }
  }
}

// Wherever a file is cut off, there is a message unless all that is left is white space and
// comments.
TEST(Load, FilesCutAnywhere) {
  for (std::size_t size = 0; size <= kRich.size(); ++size) {
    const File file(Load(kRich.substr(0, size)));
    const bool accepted = size <= kFront.size() ? size != 1 : size == kRich.size();
    const bool whole = accepted && (size == 0 || size + 1 >= kFront.size());
    ASSERT_EQ(zonGetErrorGlb(), accepted ? 0 : 1003) << kRich.substr(0, size);
    EXPECT_EQ(SyntaxError(file).empty(), whole) << kRich.substr(0, size);
  }
}

std::string inner;  // the outcome of the load inside

void LoadAnother() {
  onReport = nullptr;
  onMessage = nullptr;
  inner = Outcome(WriteFile("inner.zon", "[B] k = EndSect ) "), 0) +
          ShowTree(File(Load("[B] k = 1 EndSect")));
}

struct Nested : Memory {
  using Memory::Memory;
  int Get() override { return LoadAnother(), Memory::Get(); }
};

// Another file may be loaded during a load: by a hook, or by a source of the host.
TEST(Load, InTheMiddleOfALoad) {
  LoadAnother();
  const std::string expected = std::exchange(inner, "");
  EXPECT_EQ(expected.substr(0, 36), "code 1003, 17 characters, 1 lines, 0");

  onMessage = [](const char*) { LoadAnother(); };
  const File system(Load("[SYSTEM] ResultRootFolder = 5 EndSect [A] EndSect"));
  EXPECT_EQ(ShowTree(system), "{SYSTEM{ResultRootFolder(int 5)} A{}}");
  EXPECT_EQ(std::exchange(inner, ""), expected);

  CzonParser parser(new Nested("[A] k = -1, 'x', 2.5 EndSect [A] EndSect"));
  EXPECT_EQ(parser.Parse(0), 0);
  EXPECT_EQ(Show(parser.GetRoot()), "{A{k(int -1, string x, real 2.5)} A<2>{}}");
  EXPECT_EQ(inner, expected);

  onReport = [] { throw 1; };
  EXPECT_EQ(Outcome(WriteFile("bad.zon", "[A"), 0).substr(0, 10), "code 1003\n");
  onReport = nullptr;
}

std::map<int, int> kinds;  // the number of nodes of each class

TEST(Load, RealSettings) {
  const char* folder = std::getenv("ZON_REAL_SETTINGS");
  if (folder == nullptr) GTEST_SKIP() << "ZON_REAL_SETTINGS names no folder of parameter files";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".zon") continue;
    const File file(zonLoadFile(entry.path().c_str(), 0));
    EXPECT_EQ(zonGetErrorGlb(), 0) << entry.path();
    EXPECT_EQ(SyntaxError(file), "") << entry.path();
    EXPECT_EQ(zonNoChars(file), entry.file_size()) << entry.path();
    zonExplore(file, [](CzonNode* node) { ++kinds[node->GetSyntaxClass()]; });
  }
  const std::map<int, int> expected = {{kZonSection, 1189}, {kZonKeyword, 16626},
                                       {kZonInt, 12948},    {kZonReal, 19013},
                                       {kZonBool, 4191},    {kZonString, 2803}};
  EXPECT_EQ(kinds, expected);
}

}  // namespace
