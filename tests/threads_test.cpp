// Several threads at a time: each with its own files, and all with the one pending code. The thread
// sanitizer watches these tests in the preset tsan.
#include <atomic>
#include <thread>

#include "treetext.h"

namespace {

using host::File;

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
