// Large and deep files and trees: time, memory and stack. The ctest label of this suite is `slow`.
#include <pthread.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

#include "treetext.h"
#include "zonx.h"

namespace {

using namespace host;

#if defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__)
constexpr bool kIsRelease = true;
#else
constexpr bool kIsRelease = false;  // slower, and with the sanitizer much larger
#endif
constexpr int kMany = kIsRelease ? 500000 : 50000;
constexpr int kSixteens = kIsRelease ? 4 << 20 : 1 << 18;  // in a release, for 64 MiB of text

// The piece many times; '#' in it is replaced by the count.
std::string Repeat(const std::string& piece, int times) {
  const std::size_t place = piece.find('#');
  std::string text;
  for (int n = 0; n < times; ++n) {
    text += piece.substr(0, place);
    if (place != std::string::npos) text += std::to_string(n) + piece.substr(place + 1);
  }
  return text;
}

unsigned visited;
void CountVisit(CzonNode*) {
  ++visited;
}

// What a new process uses, which has no memory left from earlier loads.
rusage RunApart(const std::function<void()>& body) {
  if (fork() == 0) {
    body();
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  rusage used{};
  wait4(-1, &status, 0, &used);
  EXPECT_EQ(status, 0);
  return used;
}

// Processor time of a load and a visit of its nodes.
double Seconds(const std::string& path, bool fails = false) {
  const rusage used = RunApart([&] {
    void* file = zonLoadFile(path.c_str(), 1);
    if (!fails) zonExplore(file, CountVisit);
    EXPECT_EQ(zonGetRoot(file) == nullptr, fails) << path;
  });
  return static_cast<double>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
         static_cast<double>(used.ru_utime.tv_usec + used.ru_stime.tv_usec) / 1e6;
}

// A text with many pieces loads within a second, and with half of them in about half of the time.
TEST(Size, TimeGrowsWithTheFile) {
  const struct {
    const char *front, *piece, *end;
    bool fails = false;
    int times = kMany;
  } rows[] = {{"[A]", "k = 1 ", "EndSect"},
              {"[A]", "[B] EndSect ", "EndSect"},
              {"[A]", "k# = 1 ", "EndSect"},
              {"[A]", "[B#] EndSect ", "EndSect"},
              {"[A()]", "k#() = 1 ", "EndSect"},
              {"[A]", "default(k) = 1 ", "k = EndSect"},
              {"[A]", "default(k#) = 1 ", "k = EndSect"},
              {"[A] k = 0", ", ", "EndSect"},
              {"[A] k = 0", ", 1", " EndSect"},
              {"[A]", "k = 1 ", "", true},
              {"[A]", "[B] EndSect ", "", true},
              {"", "/* ", "", false, 2 * kMany},
              {"", "[A] ", "", true, 2 * kMany},
              {"[A] k = 's", "0123456789abcdef", "' EndSect", false, kSixteens},
              {"[A] // ", "0123456789abcdef", "\nEndSect", false, kSixteens},
              {"[A]{", "0123456789abcdef", "} EndSect", false, kSixteens},
              {"[A] n", "0123456789abcdef", " = EndSect", false, kSixteens},
              {"[A] k = |", "0123456789abcdef", "| EndSect", false, kSixteens}};
  for (const auto& row : rows) {
    const auto write = [&](const char* name, int times) {
      return WriteFile(name, row.front + Repeat(row.piece, times) + row.end);
    };
    const std::string whole = write("whole.zon", row.times),
                      half = write("half.zon", row.times / 2);
    // Other processes only ever add time, so the least of a few measurements counts.
    double wholeTime = 1e9, halfTime = 1e9;
    const auto isFine = [&] {
      return wholeTime < (kIsRelease ? 1 : 60) && wholeTime < 2.3 * halfTime + 0.03;
    };
    for (int n = 0; n < 20 && (n < 2 || !isFine()); ++n) {
      wholeTime = std::min(wholeTime, Seconds(whole, row.fails));
      halfTime = std::min(halfTime, Seconds(half, row.fails));
    }
    EXPECT_TRUE(isFine()) << row.front << row.piece << " " << wholeTime << " " << halfTime;
  }
}

double SecondsForNames(const std::vector<std::string>& names) {
  std::string text = "[A]\n";
  for (const std::string& name : names) text += name + " = 1\n";
  return Seconds(WriteFile("names.zon", text + "EndSect"));
}

// '0' and 'p' differ in one high bit. A multiplication by an odd number moves such a difference to
// few other bits, where the next word of the name could cancel it.
TEST(Size, NamesCannotBeMadeToCollide) {
  constexpr unsigned kBits = kIsRelease ? 17 : 16;
  std::vector<std::string> made, other;
  for (unsigned number = 0; number < 1U << kBits; ++number) {
    std::string name;
    for (unsigned bit = 0; bit < kBits; ++bit) {
      const char digit = (number >> bit & 1) != 0 ? 'p' : '0';
      name += std::string("aaaaaaa") + digit + "aaa" + digit + "aaa" + digit;
    }
    made.push_back(name);
    other.push_back(std::string(name.size() - 8, 'a') + std::to_string(10000000 + number));
  }
  const double expected = SecondsForNames(other);
  EXPECT_LT(SecondsForNames(made), 3 * expected + 0.1);
}

// Runs the body on a stack of 256 KiB, where a recursion along the tree overflows.
void RunOnSmallStack(void* (*body)(void*)) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, std::size_t{256} * 1024);
  pthread_t thread;
  ASSERT_EQ(pthread_create(&thread, &attributes, body, nullptr), 0);
  pthread_attr_destroy(&attributes);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
}

constexpr int kDeep = 1000000;

// Adds a chain of sections below the node and returns the last one.
CzonSection* Deepen(CzonTargetList* deepest, unsigned depth) {
  for (CzonSection* below; depth > 0; --depth, deepest = below)
    deepest->AddSection(below = new CzonSection("s", 0, 0));
  return static_cast<CzonSection*>(deepest);
}

// Adds a definition to the section, and that far below it a keyword that must find it.
void ExpectDefault(CzonSection* section, const std::string& name, unsigned depth) {
  auto* definition = new CzonDefaultDef(name, 0, 0);
  auto* keyword = new CzonKeyword(name, 0, 0);
  definition->AddParam(new CzonParam(name));
  keyword->AddParam(new CzonDefaultPar);
  section->AddDefaultDef(definition);
  Deepen(section, depth)->AddKeyword(keyword);
  ASSERT_EQ(keyword->ParamByNum(1)->GetText(), name);
}

TEST(Size, DeepFilesNeedNoStack) {
  RunOnSmallStack([](void*) -> void* {
    const File comments(Load(Repeat("/* ", kDeep) + Repeat("*/ ", kDeep) + "[A] EndSect"));
    EXPECT_EQ(zonNoComments(comments), static_cast<unsigned>(kDeep));
    EXPECT_EQ(zonGetNoTargets(comments), 1);
    const File sections(Load(Repeat("[A] ", kDeep) + Repeat("EndSect ", kDeep)));
    EXPECT_EQ(SyntaxError(sections), "1:587 yacc stack overflow");
    return nullptr;
  });
}

TEST(Size, DeepTreesNeedNoStack) {
  RunOnSmallStack([](void*) -> void* {
    CzonTargetList copy, named;
    auto root = std::make_unique<CzonTargetList>();
    EXPECT_EQ(Deepen(&named, 100000)->GetNameGlb().size(), 199999U);  // not of each level
    ExpectDefault(Deepen(root.get(), 1), "k", kDeep - 1);
    copy.Copy(root.get());
    root.reset();
    visited = 0;
    copy.Explore(CountVisit);
    EXPECT_EQ(visited, kDeep + 4U);

    void* top = static_cast<CzonBase*>(copy.SectionByNum(1));
    void* inserted = zonInsert(top, top, 1);
    EXPECT_EQ(zonEquivalent(top, inserted, nullptr), 0) << "equal names at the top are no template";
    EXPECT_EQ(zonEquivalent(zonSectionByNum(top, 1), zonSectionByNum(inserted, 1), nullptr), 1);
    EXPECT_EQ(zoneDeleteNode(inserted), 0);
    return nullptr;
  });
}

struct SizeTime : testing::Test {
  // ZON_PATIENCE is a factor for slow tools.
  void ExpectWithin(int seconds) const {
    const char* factor = std::getenv("ZON_PATIENCE");
    const std::chrono::seconds most(seconds * (factor != nullptr ? std::atoi(factor) : 1));
    EXPECT_LT(std::chrono::steady_clock::now() - start, most);
  }
  const std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
};

// Quadratic work takes minutes in each of these.
TEST_F(SizeTime, OfNamesakesAndDefaults) {
  CzonTargetList root;
  CzonSection* section = Deepen(&root, 1);
  for (unsigned n = 1; n <= 200000; ++n) {
    root.AddSection(new CzonSection("Same", 0, 0));
    ASSERT_EQ(root.SectionByNameNum("same", n), root.NodeByNum(n + 1));
    ExpectDefault(section, "k" + std::to_string(n), 0);
  }
  ExpectWithin(60);
}

constexpr int kChildren = 100000;

TEST_F(SizeTime, OfEdits) {
  const File file(zonCreate());
  zonAddTarget(file, "A");
  for (int n = 0; n < kChildren; ++n) zonAddKeyword(file, ("k" + std::to_string(n)).c_str());
  void* section = zonTargetByNum(file, 1);
  for (unsigned n = 0; n < 500; ++n) {
    zoneInsertNewKeyword(section, ("new" + std::to_string(n)).c_str(), 1 + n * 100);
    zoneDeleteKeywordByNum(section, kChildren - n * 100);
  }
  ExpectWithin(5);
  for (int n = 0; n < kChildren; ++n) zoneInsertNewKeyword(section, "same", 0);
  EXPECT_EQ(zonGetNoInstances(zonKeywordByNameNum(section, "same", 1)), kChildren);
  for (int n = 0; n < kChildren; ++n)
    zoneRenameKeyword(zonKeywordByNameNum(section, "same", 1), "b");
  for (int n = 0; n < kChildren; ++n) zoneDeleteKeywordByNameNum(section, "b", 1);
  EXPECT_EQ(zonGetNoKeywords(section), kChildren);
  void* keyword = zonKeywordByNum(section, 1);
  for (int n = 0; n < kChildren; ++n) {
    zoneInsertNewSection(section, "first", 1);
    zoneInsertParameterInt(keyword, 1, n);
  }
  EXPECT_EQ(zonGetInstanceNo(zonSectionByNum(section, kChildren)), kChildren);
  for (int n = 0; n < kChildren; ++n) {
    zoneDeleteSectionByNum(section, 1);
    zoneDeleteParameterByNum(keyword, 1);
  }
  EXPECT_EQ(zonGetNoParams(keyword), 0);
  ExpectWithin(20);
}

TEST_F(SizeTime, OfEquivalence) {
  const File file(zonCreate());
  zonAddTarget(file, "A");
  for (int n = 0; n < kChildren; ++n) {
    zonAddKeyword(file, ("keyword" + std::to_string(n)).c_str());
    zonAddInt(file, n);
  }
  zonEndSection(file);
  zonAddTarget(file, "Deep");
  for (int n = 0; n < kChildren; ++n) zonAddSection(file, "s");
  EXPECT_EQ(zonEquivalent(zonTargetByNum(file, 1), zonTargetByNum(file, 1), nullptr), 1);
  EXPECT_EQ(zonEquivalent(zonTargetByNum(file, 2), zonTargetByNum(file, 2), nullptr), 1);
  ExpectWithin(10);
}

std::size_t CountDifferences(void* before, void* after) {
  std::size_t count = 0;
  const auto visit = [](const zonxDifference* difference, void* visits) {
    *static_cast<std::size_t*>(visits) += difference->path[0] != '\0' ? 1 : 0;
  };
  EXPECT_EQ(zonxDiff(before, after, nullptr, visit, &count, nullptr), ZONX_OK);
  return count;
}

// Every sibling has moved; then merges that change or add every sibling.
TEST_F(SizeTime, OfComparingLists) {
  for (const char* const piece : {"k# = 1\n", "[s] k = # EndSect\n"}) {
    std::vector<std::string> pieces;
    for (int n = 0; n < kMany; ++n) {
      pieces.emplace_back(piece);
      pieces.back().replace(pieces.back().find('#'), 1, std::to_string(n));
    }
    const auto load = [&] {
      std::string text = "[A]\n";
      for (const std::string& each : pieces) text += each;
      return zonLoadFile(WriteFile("list.zon", text + "EndSect").c_str(), 1);
    };
    const File before(load());
    std::reverse(pieces.begin(), pieces.end());
    const File after(load());
    const File other(Load("[A] EndSect"));
    EXPECT_EQ(CountDifferences(before, after), kMany - 1U) << piece;
    EXPECT_EQ(zonxMerge(before, after), ZONX_OK);
    EXPECT_EQ(zonxMerge(other, after), ZONX_OK);
    EXPECT_EQ(CountDifferences(other, after), 0U) << piece;
  }
  ExpectWithin(60);
}

// A chain of sections, each with a keyword and beside an empty one of its name.
void* Chain(int depth, const std::string& value) {
  void* file = zonCreate();
  zonAddTarget(file, "s");
  for (; depth > 0; --depth) {
    zonAddKeyword(file, "k");
    zonAddString(file, value.c_str());
    zonAddSection(file, "s");
    zonEndSection(file);
    zonAddSection(file, "s");
  }
  return file;
}

TEST_F(SizeTime, OfComparingChains) {
  constexpr int kLevels = 50000;
  RunOnSmallStack([](void*) -> void* {
    const File before(Chain(kLevels, "a"));
    const File after(Chain(kLevels, "b"));
    const File longer(Chain(2 * kLevels, "b"));
    EXPECT_EQ(CountDifferences(before, after), static_cast<std::size_t>(kLevels));
    EXPECT_EQ(zonxMerge(before, after), ZONX_OK);
    EXPECT_EQ(CountDifferences(before, after), 0U);
    EXPECT_EQ(zonxMerge(before, longer), ZONX_OK);
    EXPECT_EQ(CountDifferences(before, longer), 0U);
    return nullptr;
  });
  ExpectWithin(60);
}

// What the builder adds and editing deletes again does not fill the memory of an open file.
TEST(Size, MemoryOfDeletedNodesIsUsedAgain) {
  const auto cycle = [](int times) {
    const File file(zonCreate());
    zonAddTarget(file, "A");
    void* target = zonTargetByNum(file, 1);
    for (int n = 0; n < times; ++n) {
      zonAddSection(file, "a section");
      zonAddKeyword(file, "keyword");
      zonAddInt(file, n);
      zonAddString(file, "a text that is copied");
      zonEndSection(file);
      EXPECT_EQ(zoneDeleteSectionByNum(target, 1), 0);
    }
    EXPECT_EQ(zonPeekErrorGlb(), 0);
  };
  const rusage few = RunApart([&] { cycle(1000); }), many = RunApart([&] { cycle(200000); });
  EXPECT_LT(many.ru_maxrss, few.ru_maxrss + 4096) << "in KiB";
}

// The peak memory of a process that loads a file and asks for every value in it.
TEST(Size, MemoryGrowsWithTheFile) {
  if (!kIsRelease) GTEST_SKIP() << "of release builds only";
  for (const auto& [piece, most] : {std::pair("key_of_a_usual_length = 'a text', 2.5\n", 30.0),
                                    {"key = 1\n", 30.0},
                                    {"k# = 'text', 2\n", 30.0},
                                    {", 12345", 64.0},
                                    {",1", 64.0}}) {
    const std::string text = "[A] k = 0 " + Repeat(piece, 1000000) + " EndSect";
    const std::string path = WriteFile("large.zon", text);
    const rusage idle = RunApart([] {}), used = RunApart([&] {
                                           const File file(zonLoadFile(path.c_str(), 1));
                                           EXPECT_EQ(zonGetErrorGlb(), 0);
                                           zonExplore(file, [](CzonNode* node) {
                                             void* handle = static_cast<CzonBase*>(node);
                                             if (zonIsNumeric(handle)) zonGetDouble(handle);
                                             if (zonIsString(handle)) zonGetString(handle);
                                           });
                                         });
    const auto kilobytes = static_cast<double>(used.ru_maxrss - idle.ru_maxrss);
    const double perByte = kilobytes * 1024 / static_cast<double>(text.size());
    EXPECT_LE(perByte, most) << piece;
    EXPECT_GT(perByte, 1) << piece;
    std::printf("%.1f bytes for a byte of %s\n", perByte, piece);
  }
}

}  // namespace
