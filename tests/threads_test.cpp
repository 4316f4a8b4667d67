// Several threads at a time: each with its own files, and all with the one pending code. The thread
// sanitizer watches these tests in the preset tsan.
#include <atomic>
#include <thread>

#include "reports.h"
#include "treetext.h"
#include "zonx.h"

namespace {

using host::File;
using host::Texts;

constexpr int kThreads = 8;

// Runs `body` in eight threads with the numbers 0 to 7. None starts before all of them exist.
template <class F>
void RunAtOnce(F&& body) {
  std::atomic<int> missing{kThreads};
  std::vector<std::thread> threads;
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([&, number] {
      --missing;
      while (missing != 0) std::this_thread::yield();
      body(number);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// ---- Files of its own ---------------------------------------------------------------------------

// The folder of a thread, and its texts.
class Own {
 public:
  explicit Own(int number) : number_(number) {}

  std::string Path(const std::string& name) const {
    return host::FolderPath() + "/thread" + std::to_string(number_) + "/" + name;
  }
  std::string Write(const std::string& name, const std::string& text) const {
    return host::WriteFile("thread" + std::to_string(number_) + "/" + name, text);
  }
  File Load(const std::string& name) const { return File(zonLoadFile(Path(name).c_str(), 0)); }

  // A text with many names, and with enough values to fill large chunks of memory.
  std::string Text() const {
    std::string text = "[Run] Number = " + std::to_string(number_) + " Title = 'x' Data = |x|\n";
    for (int n = 0; n < 40; ++n) text += "name" + std::to_string(n * number_) + " = 2.5\n";
    text += "EndSect [Bulk] values = 0";
    for (int n = 1; n < kValues; ++n) text += ", " + std::to_string(n % 1000);
    return text + "\nEndSect\n";
  }

  static constexpr int kValues = 5000;

 private:
  int number_;
};

void Query(const Own& own, int number) {
  const File file = own.Load("own.zon");
  void* run = zonFindSectionByHandle(file, "run");
  int found = -1;
  EXPECT_EQ(zonGetListParam(run, "NUMBER", 1, "i", &found), 1);
  EXPECT_EQ(found, number);
  EXPECT_STREQ(zonGetFilename(zonParamByNum(zonKeywordByNameNum(run, "data", 1), 1)),
               own.Path("x").c_str());
  for (int n = 0; n < 40; ++n) {
    const std::string name = "Name" + std::to_string(n * number);
    EXPECT_EQ(zonGetDouble(zonParamByNum(zonKeywordByNameNum(run, name.c_str(), 1), 1)), 2.5);
  }
  void* values = zonKeywordByNum(zonTargetByNum(file, 2), 1);
  EXPECT_EQ(zonGetNoParams(values), Own::kValues);
  EXPECT_EQ(zonGetInt(zonParamByNum(values, Own::kValues)), (Own::kValues - 1) % 1000);
  EXPECT_STREQ(zonGetNameGlb(values), "Bulk.values");
  EXPECT_EQ(zonGetInt(run), 0);  // a message
}

void Edit(const Own& own, int number) {
  const File file = own.Load("own.zon");
  void* root = zonGetRoot(file);
  void* bulk = zonTargetByNum(file, 2);
  EXPECT_EQ(zoneModifyParameterInt(zonKeywordByNum(bulk, 1), 1, number), 0);
  for (int n = 0; n < 20; ++n) {
    void* section = zoneInsertNewSection(root, "Added", 0);
    void* keyword = zoneInsertNewKeyword(section, "k", 0);
    EXPECT_NE(zoneInsertParameterInt(keyword, 0, n), nullptr);
    EXPECT_EQ(zoneRenameKeyword(keyword, "renamed"), 0);
  }
  EXPECT_EQ(zoneDeleteSectionByNameNum(root, "added", 1), 0);
  EXPECT_EQ(zonCopy(zonSectionByNameNum(root, "added", 5), zonSectionByNameNum(root, "added", 1)),
            1);
  EXPECT_EQ(zonGetNoInstances(zonSectionByNameNum(root, "added", 1)), 19);
  zonWrite(file, own.Path("edited.zon").c_str());
  const File written = own.Load("edited.zon");
  EXPECT_TRUE(host::ShowTree(written) == host::ShowTree(file));
}

void BuildAndCheck(const Own& own, int number) {
  const File built(zonCreate());
  zonAddTarget(built, "Run");
  EXPECT_EQ(zonPutParam(built, "Number", number), 1);
  zonAddKeyword(built, "packed");
  zonAddClob(built);
  zonAddClobInt(built, number);
  zonEndSection(built);
  zonWrite(built, own.Path("built.zon").c_str());
  zonDump(zonGetRoot(built), own.Path("dump").c_str());
  EXPECT_NE(host::ReadFile(own.Path("dump")).find("Run.Number"), std::string::npos);

  const File loaded = own.Load("built.zon");
  void* run = zonTargetByNum(loaded, 1);
  EXPECT_EQ(zonGetClobInt(zonParamByNum(zonKeywordByNum(run, 2), 1)), number);
  const File pattern = own.Load("template.zon");
  EXPECT_EQ(zonEquivalent(zonTargetByNum(pattern, 1), run, nullptr), 1);
  EXPECT_EQ(zonEquivalentExt(run, zonTargetByNum(pattern, 1), nullptr, 1), 0);
}

void ReadTokens(const Own& own) {
  void* reader = nullptr;
  ASSERT_EQ(zontLoadFile(own.Path("own.zon").c_str(), &reader), 0);
  int integers = 0;
  while (const int token = zontNextToken(reader)) integers += token == 1020 ? 1 : 0;
  EXPECT_EQ(integers, 1 + Own::kValues);
  zontDispose(&reader);
}

// What a host does through zon.h with its files.
void ActThroughZon(const Own& own, int number) {
  Query(own, number);
  Edit(own, number);
  BuildAndCheck(own, number);
  ReadTokens(own);
  EXPECT_EQ(zonFileCopy(own.Path("edited.zon").c_str(), own.Path("copy.zon").c_str()), 1);
}

// What a host does through zonx.h with its files. Places and texts are those of this thread's file.
void ReadThroughZonx(const Own& own, int number) {
  File file(nullptr);
  const std::string path = own.Path("own.zon");
  ASSERT_EQ(zonxLoadFile(path.c_str(), file.Address(), host::Collected::Add, nullptr), ZONX_OK);
  EXPECT_EQ(zonxWatch(file, 1), ZONX_OK);
  int found = -1;
  EXPECT_EQ(zonxGetInt(file, "run/number", &found), ZONX_OK);
  EXPECT_EQ(found, number);
  const char* text = "";
  EXPECT_EQ(zonxGetFilename(file, "Run/Data", &text), ZONX_OK);
  std::this_thread::yield();
  EXPECT_EQ(text, own.Path("x"));
  std::vector<double> values(Own::kValues);
  std::size_t count = 0;
  EXPECT_EQ(zonxGetDoubles(file, "Bulk/values", values.data(), values.size(), &count), ZONX_OK);
  EXPECT_EQ(count, values.size());
  void* node = nullptr;
  EXPECT_EQ(zonxFind(file, "Bulk/values[1000]", &node), ZONX_OK);
  zonxPlace place{};
  EXPECT_EQ(zonxWhere(node, &place), ZONX_OK);
  EXPECT_EQ(own.Text().substr(place.offset, place.length), "999");
  EXPECT_EQ(place.file, path);
  host::Collected unread;
  EXPECT_EQ(zonxReportUnread(file, host::Collected::Add, &unread, &count), ZONX_OK);
  EXPECT_EQ(count, 41U);  // all but two keywords and the values
}

// A save loads what it writes, so it is a load too.
void EditThroughZonx(const Own& own, int number) {
  const std::string path = own.Path("saved.zon");
  File file(nullptr);
  ASSERT_EQ(zonxLoadFile(own.Path("own.zon").c_str(), file.Address(), nullptr, nullptr), ZONX_OK);
  for (int turn = 1; turn <= 3; ++turn) {
    EXPECT_EQ(zonxSetInt64(file, "Run/Number", 100 * turn + number), ZONX_OK);
    EXPECT_EQ(zonxSetDouble(file, "Added/k[1]", number / 8.0), ZONX_OK);
    EXPECT_EQ(zonxSave(file, turn == 1 ? path.c_str() : nullptr, turn == 1 ? ZONX_NEW : ZONX_BACKUP,
                       nullptr, nullptr),
              ZONX_OK);
    const File saved = own.Load("saved.zon");
    EXPECT_EQ(zonGetInt(zonParamByNum(zonKeywordByNum(zonTargetByNum(saved, 1), 1), 1)),
              100 * turn + number);
    EXPECT_TRUE(host::ShowTree(saved) == host::ShowTree(file));
  }
}

void ReportThroughZonx(const Own& own, int number) {
  const std::string faulty = "[Run]\n number" + std::to_string(number) + " = ]\nEndSect\n";
  const std::string path = own.Write("faulty.zon", faulty);
  const auto format = [](const zonxReport* report, void* formatted) {
    char buffer[400];
    zonxFormatReport(report, buffer, sizeof buffer);
    *static_cast<std::string*>(formatted) += buffer;
  };
  std::string one, other;
  File file(nullptr);
  EXPECT_EQ(zonxLoadText(faulty.data(), faulty.size(), path.c_str(), file.Address(), format, &one),
            ZONX_FAULTY);
  EXPECT_EQ(zonxLoadFile(path.c_str(), nullptr, format, &other), ZONX_FAULTY);
  EXPECT_EQ(one, path + ":2:12: error: expected a value, found `]`\n number" +
                     std::to_string(number) + " = ]\n           ^");
  EXPECT_EQ(one, other);
}

TEST(Threads, UseTheirOwnFiles) {
  RunAtOnce([](int number) {
    const Own own(number);
    own.Write("own.zon", own.Text());
    own.Write("template.zon", "[Run] Number = 1 packed = '<CLOB:>' extra() = 1 EndSect");
    for (int turn = 0; turn < 2; ++turn) {
      ActThroughZon(own, number);
      ReadThroughZonx(own, number);
      EditThroughZonx(own, number);
      ReportThroughZonx(own, number);
      for (const char* name : {"edited.zon", "built.zon", "dump", "copy.zon", "saved.zon"}) {
        std::filesystem::remove(own.Path(name));
      }
    }
  });
  EXPECT_EQ(zonPeekErrorGlb(), 0);
  EXPECT_EQ(host::Messages(), Texts(2 * kThreads, "Function invalid in this context"));
  EXPECT_EQ(host::Reports(), Texts{});
}

// ---- What each thread has for itself ------------------------------------------------------------

TEST(Threads, KeepTextsApart) {
  RunAtOnce([](int number) {
    const char* text = zonGetErrorMessageFromErrorCode(1001 + number);
    char* path = zonGetFilename(nullptr);
    const std::string expected = text;
    for (int turn = 0; turn < 100; ++turn) {
      path[0] = static_cast<char>('a' + number);
      std::this_thread::yield();
      EXPECT_EQ(text, expected);
      EXPECT_EQ(path[0], 'a' + number);
      EXPECT_STREQ(zonGetFilename(nullptr), "");
    }
  });
  host::Heard();
}

TEST(Threads, KeepQuietFlagsApart) {
  const File file(host::Load("[A] EndSect [B] EndSect"));
  zonEquivalentExt(zonTargetByNum(file, 1), zonTargetByNum(file, 2), nullptr, 5);
  std::thread([] {
    EXPECT_EQ(zonIsEqvQuiet(), 0);
    EXPECT_EQ(zonEqvSection(nullptr, nullptr), 0);
    EXPECT_EQ(host::Reports().size(), 1U);
  }).join();
  EXPECT_EQ(zonIsEqvQuiet(), 5);
  zonEquivalent(nullptr, nullptr, nullptr);
  host::Heard();
}

// ---- The pending code ---------------------------------------------------------------------------

TEST(Threads, OneOfSeveralErrorsIsPending) {
  for (int round = 0; round < 20; ++round) {
    RunAtOnce([](int number) {
      if (number % 2 == 0) {
        zonGetNoTargets(nullptr);
      } else {
        zonGetInt(nullptr);
      }
    });
    std::atomic<int> received{0};
    RunAtOnce([&](int) {
      const int code = zonGetErrorGlb();
      if (code == 0) return;
      EXPECT_TRUE(code == 1005 || code == 1006) << code;
      ++received;
    });
    EXPECT_EQ(received, 1);
    EXPECT_EQ(host::Messages().size(), std::size_t{kThreads});
  }
}

// A copy fails if its own load fails, whatever other threads do meanwhile.
TEST(Threads, CopiesIgnoreErrorsOfOthers) {
  const std::string source = host::WriteFile("copied.zon", "[A] k = |x| EndSect");
  RunAtOnce([&](int number) {
    const std::string target = host::FolderPath() + "/copy" + std::to_string(number);
    for (int turn = 0; turn < 20; ++turn) {
      if (number % 2 == 0) {
        zonGetRoot(nullptr);
      } else {
        EXPECT_EQ(zonFileCopy(source.c_str(), target.c_str()), 1);
        EXPECT_EQ(zonFileCopy("/nowhere.zon", target.c_str()), 0);
      }
    }
  });
  host::Heard();
  host::Reports();
}

}  // namespace
