// Loading: codes, reports and counters, the SYSTEM section, pipes, threads and nested loads.
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <thread>

#include "treetext.h"

namespace {

using namespace std::string_literals;

// The outcome as text: "code 0; 9 characters, 2 lines, 1 comments, 0 tokens; tree"; then each
// report.
std::string Outcome(const std::string& name, int quiet) {
  zonGetLevel(nullptr);  // its code must not remain
  host::Messages();
  host::Reports();
  const int descriptor = host::LowestFreeDescriptor();
  const host::File file(zonLoadFile(name.c_str(), quiet));
  EXPECT_EQ(host::LowestFreeDescriptor(), descriptor) << "the file is closed";
  std::ostringstream text;
  text << "code " << zonGetErrorGlb();
  if (file != nullptr) {
    text << "; " << zonNoChars(file) << " characters, " << zonNoLines(file) << " lines, ";
    text << zonNoComments(file) << " comments, " << zonNoTokens(file) << " tokens";
  }
  void* const root = zonGetRoot(file);
  if (root != nullptr) text << (zonGetAnchorFilename(root) == name ? "; tree" : "; tree of ?");
  for (const std::string& report : host::Reports()) text << '\n' << report;
  return text.str();
}

TEST(Load, CodesReportsAndCounters) {
  const std::string bad = host::WriteFile("bad%.zon", "[A] /**/\n k = |x\n EndSect");
  const std::string good = host::WriteFile(
      "good.zon", "[A]\r\n// a /* b\r\n/* c /* d */\n */ k = 'x\ny' ; e\nEndSect\n");
  struct LoadCase {
    std::string name, outcome, report = {};
  };
  std::vector<LoadCase> rows = {
      {good, "code 0; 55 characters, 7 lines, 4 comments, 0 tokens; tree"},
      {host::WriteFile("error_after_sections.zon", "[A] EndSect 'x\n"),
       "code 0; 15 characters, 2 lines, 0 comments, 0 tokens; tree"},
      {"/dev/null", "code 0; 0 characters, 1 lines, 0 comments, 0 tokens; tree"},
      {bad, "code 1003; 17 characters, 3 lines, 1 comments, 0 tokens",
       "\n1: Error: Missing |\n in " + bad + " near line 3 position 0"},
      {"/proc/self/mem", "code 1002", "\n1: CyyStream"}};  // opens, but nothing is mapped at 0
  for (const std::string& name : {""s, "/"s, "%n%s"s, good + "/", std::string(5000, 'x')})
    rows.push_back({name, "code 1001", "\n1: Open error: " + name});
  for (const LoadCase& row : rows) {
    EXPECT_EQ(Outcome(row.name, 0), row.outcome + row.report);
    EXPECT_EQ(Outcome(row.name, 1), row.outcome) << row.name;
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
  const struct {
    const char* name;
    std::string system, root;
    int use;
    std::string folder;
    unsigned refused = 0;
  } rows[] = {
      {"the first name counts", "resultROOTfolder = |/r|, |/s| ResultRootFolder = |/t|", "/r", 0,
       ""},
      {"all", "UseCustomResultFolder = true CustomResultFolder = |c|", "", 1, here + "/c"},
      {"names are made absolute", "CustomResultFolder = |b/../c| ResultRootFolder = |r\\s|",
       here + "/r/s", 0, here + "/c"},
      {"empty names", "CustomResultFolder = || UseCustomResultFolder = true ResultRootFolder = ||",
       "", 1, ""},
      {"use is an integer", "UseCustomResultFolder = 1 CustomResultFolder = |/c|", "", 0, "/c", 1},
      {"wrong kinds",
       "ResultRootFolder = 'r' CustomResultFolder = 5 UseCustomResultFolder = 'true'", "", 0, "",
       3},
      {"packed list", "UseCustomResultFolder = '<CLOB:Integer:1>' CustomResultFolder = |/c|", "", 0,
       "/c"},
      {"no keyword of that name", "[ResultRootFolder] EndSect default(CustomResultFolder) = |c|",
       "", 0, ""},
      {"second section", "EndSect [System] ResultRootFolder = |/second|", "", 0, ""}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const host::File file(host::Load("[System] " + row.system + " EndSect"));
    ASSERT_EQ(host::SyntaxError(file), "");
    const auto& root = host::As<CzonTargetList>(zonGetRoot(file));
    int use = -1;
    std::string folder;
    root.GetCustomResultFolder(&use, &folder);
    EXPECT_EQ(root.GetResultRoot(), row.root);
    EXPECT_EQ(use, row.use);
    EXPECT_EQ(folder, row.folder);
    EXPECT_EQ(host::Messages(), host::Texts(row.refused, "Function invalid in this context"));
  }
  EXPECT_EQ(zonGetErrorGlb(), 0);
}

const std::string kFront = "/* a /* b */ */ ";
const std::string kRich =
    kFront +
    "[A_1] {r\nm} // c\n k() {s} = -12.5e+07, 'it''s', |f|, #1#, %x, , {u} ; d\n"
    "default(k) = true, [B] () = '<CLOB:a>' EndSect\nEndSect";

// A pipe has no size. Io.FaultsOfReading tests reads of one byte.
TEST(Load, Pipe) {
  const std::string path = host::FolderPath() + "/pipe.zon";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::thread writer([&] { std::ofstream(path) << kRich; });
  const host::File file(zonLoadFile(path.c_str(), 0));
  writer.join();
  EXPECT_EQ(host::ShowTree(file), host::ShowTree(host::File(host::Load(kRich))));
  EXPECT_EQ(zonNoChars(file), kRich.size());
}

// A thread that waits in the library for a pipe can be cancelled; its file is closed.
TEST(Load, CancelledThreads) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the address sanitizer cannot follow the stack of a cancelled thread";
#endif
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

// The closing character of an empty text is the last byte of a block of the file.
TEST(Load, EmptyTextsAtTheEndOfABlock) {
  const std::string before = "[A] k = ";
  for (const std::size_t block : {65536U, 131072U, 262144U}) {
    SCOPED_TRACE(block);
    const std::string blanks(block - before.size() - 2, ' ');
    const host::File strings(host::Load(before + blanks + "'' EndSect"));
    const host::File names(host::Load(before + blanks + "|| EndSect"));
    EXPECT_STREQ(zonGetResultFilename(host::ValueOf(names)), "");
    EXPECT_STREQ(zonGetFilenameString(host::ValueOf(names)), "");
    EXPECT_STREQ(zonGetFilename(host::ValueOf(names)), "");
    EXPECT_STREQ(zonGetString(host::ValueOf(strings)), "");
  }
}

// Wherever a file is cut off, there is an error unless only white space and comments are left. An
// error in the first comment leaves an empty tree, so it stores no code.
TEST(Load, FilesCutAnywhere) {
  for (std::size_t size = 0; size <= kRich.size(); ++size) {
    const std::string text = kRich.substr(0, size);
    const host::File file(host::Load(text));
    const bool inComment = size > 1 && size + 1 < kFront.size();
    const bool whole =
        size == 0 || size + 1 == kFront.size() || size == kFront.size() || size == kRich.size();
    ASSERT_EQ(zonGetErrorGlb(), whole || inComment ? 0 : 1003) << text;
    EXPECT_EQ(host::SyntaxError(file).empty(), whole) << text;
  }
}

std::string inner;  // the outcome of the load that a hook or a source makes

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

TEST(Load, HooksAndSourcesMayLoadAnotherFile) {
  LoadAnother();
  const std::string expected = std::exchange(inner, "");
  EXPECT_EQ(expected.find("code 1003; 17 characters, 1 lines, 0 comments"), 0U) << expected;

  host::onMessage = [](const char*) { LoadAnother(); };
  const host::File system(host::Load("[SYSTEM] ResultRootFolder = 5 EndSect [A] EndSect"));
  EXPECT_EQ(host::ShowTree(system), "{SYSTEM{ResultRootFolder(int 5)} A{}}");
  EXPECT_EQ(std::exchange(inner, ""), expected);

  CzonParser parser(new Nested("[A] k = -1, 'x', 2.5 EndSect [A] EndSect"));
  EXPECT_EQ(parser.Parse(0), 0);
  EXPECT_EQ(host::Show(parser.GetRoot()), "{A{k(int -1, string x, real 2.5)} A<2>{}}");
  EXPECT_EQ(inner, expected);
}

TEST(Load, ReportHooksMayThrow) {
  host::onReport = [] { throw 1; };
  EXPECT_EQ(Outcome(host::WriteFile("bad.zon", "[A"), 0).find("code 1003\n"), 0U);
  host::onReport = nullptr;
}

std::map<int, int> nodesOfClass;

TEST(Load, RealSettings) {
  const char* folder = std::getenv("ZON_REAL_SETTINGS");
  if (folder == nullptr) GTEST_SKIP() << "ZON_REAL_SETTINGS names no folder of parameter files";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".zon") continue;
    const host::File file(zonLoadFile(entry.path().c_str(), 0));
    EXPECT_EQ(zonGetErrorGlb(), 0) << entry.path();
    EXPECT_EQ(host::SyntaxError(file), "") << entry.path();
    EXPECT_EQ(zonNoChars(file), entry.file_size()) << entry.path();
    zonExplore(file, [](CzonNode* node) { ++nodesOfClass[node->GetSyntaxClass()]; });
  }
  const std::map<int, int> expected = {{kZonSection, 1189}, {kZonKeyword, 16626},
                                       {kZonInt, 12948},    {kZonReal, 19013},
                                       {kZonBool, 4191},    {kZonString, 2803}};
  EXPECT_EQ(nodesOfClass, expected);
}

}  // namespace
