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

using namespace std::string_literals;

// The code; characters, lines, comments and tokens, and whether there is a tree, if there is a
// handle; and each report.
std::string Outcome(const std::string& name, int quiet) {
  zonGetLevel(nullptr);  // its code does not count
  host::Messages();
  host::Reports();
  const int descriptor = host::LowestFreeDescriptor();
  const host::File file(zonLoadFile(name.c_str(), quiet));
  EXPECT_EQ(host::LowestFreeDescriptor(), descriptor);  // however many files are at hand
  std::string text = std::to_string(zonGetErrorGlb());
  for (const auto count : {zonNoChars, zonNoLines, zonNoComments, zonNoTokens}) {
    if (file != nullptr) text += " " + std::to_string(count(file));
  }
  if (zonGetRoot(file) != nullptr)
    text += zonGetAnchorFilename(zonGetRoot(file)) == name ? " tree" : " ?";
  for (const std::string& report : host::Reports()) text += "\n" + report;
  return text;
}

TEST(Load, CodesReportsAndCounters) {
  const std::string good = host::WriteFile(
      "good.zon", "[A]\r\n// a /* b\r\n/* c /* d */\n */ k = 'x\ny' ; e\nEndSect\n");
  const std::string bad = host::WriteFile("bad%.zon", "[A] /**/\n k = |x\n EndSect");
  const std::string cut = host::WriteFile("cut.zon", "[A] EndSect 'x\n");
  std::vector<std::array<std::string, 3>> rows = {
      {good, "0 55 7 4 0 tree"},
      {cut, "0 15 2 0 0 tree"},
      {"/dev/null", "0 0 1 0 0 tree"},
      {bad, "1003 17 3 1 0", "\n1: Error: Missing |\n in " + bad + " near line 3 position 0"},
      {"/proc/self/mem", "1002", "\n1: CyyStream"}};  // opens, but nothing is mapped at 0
  for (const std::string& name : {""s, "/"s, "%n%s"s, good + "/", std::string(5000, 'x')}) {
    rows.push_back({name, "1001", "\n1: Open error: " + name});
  }
  for (const auto& [name, outcome, report] : rows) {
    EXPECT_EQ(Outcome(name, 0), outcome + report);
    EXPECT_EQ(Outcome(name, 1), outcome);
  }
  EXPECT_EQ(zonLoadFile(nullptr, 1), nullptr);
  EXPECT_EQ(zonGetErrorGlb(), 1001);
}

TEST(Load, LeavesPackedListsUnread) {
  const host::File file(
      host::Load("[SYSTEM] UseCustomResultFolder = '<CLOB:Boolean:true,Boolean:false>' EndSect"));
  EXPECT_EQ(zonGetErrorGlb(), 0);
  void* list = host::ValueOf(file);
  EXPECT_EQ(zonGetClobBool(list), 1) << "the first item is still to be read";
  EXPECT_STREQ(zonGetErrorFromZonClob(list), "");
}

TEST(Load, SystemSection) {
  const std::string here = host::FolderPath();
  // The section; root, use and folder; how many values do not suit.
  const std::tuple<std::string, std::string, unsigned> rows[] = {
      {"resultROOTfolder = |/r|, |/s| ResultRootFolder = |/t|", "/r 0 ", 0},
      {"UseCustomResultFolder = true CustomResultFolder = |c|", " 1 " + here + "/c", 0},
      {"CustomResultFolder = |b/../c| ResultRootFolder = |r\\s|", here + "/r/s 0 " + here + "/c",
       0},
      {"CustomResultFolder = || UseCustomResultFolder = true ResultRootFolder = ||", " 1 ", 0},
      {"UseCustomResultFolder = 1 CustomResultFolder = |/c|", " 0 /c", 1},
      {"ResultRootFolder = 'r' CustomResultFolder = 5 UseCustomResultFolder = 'true'", " 0 ", 3},
      {"UseCustomResultFolder = '<CLOB:Integer:1>' CustomResultFolder = |/c|", " 0 /c", 0},
      {"[ResultRootFolder] EndSect default(CustomResultFolder) = |c|", " 0 ", 0},
      {"EndSect [System] ResultRootFolder = |/second|", " 0 ", 0}};
  for (const auto& [system, found, refused] : rows) {
    const host::File file(host::Load("[System] " + system + " EndSect"));
    ASSERT_EQ(host::SyntaxError(file), "");
    const auto& root = host::As<CzonTargetList>(zonGetRoot(file));
    int use = -1;
    std::string folder;
    root.GetCustomResultFolder(&use, &folder);
    EXPECT_EQ(root.GetResultRoot() + " " + std::to_string(use) + " " + folder, found);
    EXPECT_EQ(host::Messages(), host::Texts(refused, "Function invalid in this context"));
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
  const std::string path = host::FolderPath() + "/pipe.zon";
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
  const host::File file(zonLoadFile(path.c_str(), 0));
  writer.join();
  EXPECT_EQ(host::ShowTree(file), host::ShowTree(host::File(host::Load(kRich))));
  EXPECT_EQ(zonNoChars(file), kRich.size());
}

// A thread that waits in the library for a pipe can be cancelled; its file is closed.
TEST(Load, CancelledThreads) {
  const std::string path = host::FolderPath() + "/idle.zon";
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

// The closing character of an empty text is the last byte of a read: of a block of a regular file.
TEST(Load, EmptyTextsAtTheEndOfARead) {
  const std::string before = "[A] k = ";
  for (const std::size_t block : {65536U, 131072U, 262144U}) {
    for (const std::string empty : {"''", "||"}) {
      const std::string blanks(block - before.size() - empty.size(), ' ');
      const host::File file(host::Load(before + blanks + empty + " EndSect"));
      void* section = zonTargetByNum(file, 1);
      void* value = host::ValueOf(file);
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
    const host::File file(host::Load(kRich.substr(0, size)));
    const bool accepted = size <= kFront.size() ? size != 1 : size == kRich.size();
    const bool whole = accepted && (size == 0 || size + 1 >= kFront.size());
    ASSERT_EQ(zonGetErrorGlb(), accepted ? 0 : 1003) << kRich.substr(0, size);
    EXPECT_EQ(host::SyntaxError(file).empty(), whole) << kRich.substr(0, size);
  }
}

std::string inner;

void LoadAnother() {
  host::onReport = nullptr;
  host::onMessage = nullptr;
  inner = Outcome(host::WriteFile("inner.zon", "[B] k = EndSect ) "), 0) +
          host::ShowTree(host::File(host::Load("[B] k = 1 EndSect")));
}

struct Nested : host::Memory {
  using Memory::Memory;
  int Get() override { return LoadAnother(), Memory::Get(); }
};

// Another file may be loaded while one is: from a hook, or from a source of the host's own.
TEST(Load, InTheMiddleOfALoad) {
  LoadAnother();
  const std::string expected = std::exchange(inner, "");
  EXPECT_EQ(expected.substr(0, 11), "1003 17 1 0");

  host::onMessage = [](const char*) { LoadAnother(); };
  const host::File system(host::Load("[SYSTEM] ResultRootFolder = 5 EndSect [A] EndSect"));
  EXPECT_EQ(host::ShowTree(system), "{SYSTEM{ResultRootFolder(int 5)} A{}}");
  EXPECT_EQ(std::exchange(inner, ""), expected);

  CzonParser parser(new Nested("[A] k = -1, 'x', 2.5 EndSect [A] EndSect"));
  EXPECT_EQ(parser.Parse(0), 0);
  EXPECT_EQ(host::Show(parser.GetRoot()), "{A{k(int -1, string x, real 2.5)} A<2>{}}");
  EXPECT_EQ(inner, expected);

  host::onReport = [] { throw 1; };
  EXPECT_EQ(Outcome(host::WriteFile("bad.zon", "[A"), 0).substr(0, 5), "1003\n");
  host::onReport = nullptr;
}

std::map<int, int> kinds;  // how many nodes of each class

TEST(Load, RealSettings) {
  const char* folder = std::getenv("ZON_REAL_SETTINGS");
  if (folder == nullptr) GTEST_SKIP() << "ZON_REAL_SETTINGS names no folder of parameter files";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".zon") continue;
    const host::File file(zonLoadFile(entry.path().c_str(), 0));
    EXPECT_EQ(zonGetErrorGlb(), 0) << entry.path();
    EXPECT_EQ(host::SyntaxError(file), "") << entry.path();
    EXPECT_EQ(zonNoChars(file), entry.file_size()) << entry.path();
    zonExplore(file, [](CzonNode* node) { ++kinds[node->GetSyntaxClass()]; });
  }
  const std::map<int, int> expected = {{kZonSection, 1189}, {kZonKeyword, 16626},
                                       {kZonInt, 12948},    {kZonReal, 19013},
                                       {kZonBool, 4191},    {kZonString, 2803}};
  EXPECT_EQ(kinds, expected);
}

}  // namespace
