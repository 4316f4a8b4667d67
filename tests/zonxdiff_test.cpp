// Differences of two trees.
#include <gtest/gtest.h>

#include <limits>

#include "treetext.h"
#include "zonx.h"

namespace {

// A file in memory.
struct Loaded : host::File {
  explicit Loaded(const std::string& text, const char* name = "/d/f.zon") : File(nullptr) {
    EXPECT_EQ(zonxLoadText(text.data(), text.size(), name, Address(), nullptr, nullptr), 0) << text;
  }
};

// "+A/k -B ~A/k[2] >C:2"
struct Collected {
  static void Add(const zonxDifference* difference, void* collected) {
    auto& self = *static_cast<Collected*>(collected);
    self.text += (self.text.empty() ? "" : " ") + std::string(1, "+-~>"[difference->change]) +
                 difference->path;
    EXPECT_EQ(difference->before == nullptr, difference->change == ZONX_ADDED);
    EXPECT_EQ(difference->after == nullptr, difference->change == ZONX_REMOVED);
    const bool isRemoved = difference->change == ZONX_REMOVED;
    void* const node = isRemoved ? difference->before : difference->after;
    void* found = nullptr;
    EXPECT_EQ(zonxFind(isRemoved ? self.before : self.after, difference->path, &found), ZONX_OK);
    EXPECT_TRUE(found == node || self.hasDefinitions) << difference->path;
    ++self.count;
  }
  void* before;
  void* after;
  bool hasDefinitions;
  std::string text = {};
  std::size_t count = 0;
};

std::string Diff(void* before, void* after, const zonxCompare* options = nullptr,
                 const char* key = nullptr, bool hasDefinitions = false) {
  Collected collected{before, after, hasDefinitions};
  std::size_t count = 99;
  EXPECT_EQ(zonxDiffByKey(before, after, key, options, Collected::Add, &collected, &count),
            ZONX_OK);
  EXPECT_EQ(collected.count, count);
  std::size_t silent = 99;
  EXPECT_EQ(zonxDiffByKey(before, after, key, options, nullptr, nullptr, &silent), ZONX_OK);
  EXPECT_EQ(silent, count);
  return collected.text;
}

struct Row {
  const char* before;
  const char* after;
  const char* differences;
};

void ExpectDifferences(const std::vector<Row>& rows, const char* key = nullptr,
                       const zonxCompare* options = nullptr) {
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.before) + " -> " + row.after);
    const Loaded before(row.before);
    const Loaded after(row.after);
    const bool hasDefinitions = std::string(row.before).find("default") != std::string::npos;
    EXPECT_EQ(Diff(before, after, options, key, hasDefinitions), row.differences);
    EXPECT_EQ(Diff(before, Loaded(row.before), options, key), "");
    // The other way round.
    const std::string mirrored = Diff(after, before, options, key, hasDefinitions);
    for (const auto& [there, back] : {std::pair{'+', '-'}, {'-', '+'}, {'~', '~'}, {'>', '>'}}) {
      EXPECT_EQ(std::count(mirrored.begin(), mirrored.end(), back),
                std::count(row.differences, row.differences + std::strlen(row.differences), there))
          << mirrored;
    }
  }
}

TEST(ZonxDiff, FindsWhatChanged) {
  ExpectDifferences({
      {"[A] k = 1 EndSect", "[A] k = 2 EndSect", "~A/k[1]"},
      {"[A] k = 1, 2 EndSect", "[A] k = 1, 2, 3, 4 EndSect", "+A/k[3] +A/k[4]"},
      {"[A] k = 1, 2, 3 EndSect", "[A] k = 2 EndSect", "~A/k[1] -A/k[2] -A/k[3]"},
      {"[A] k = 1, 2 EndSect", "[A] k = 1, EndSect", "~A/k[2]"},
      {"[A] k = 1, EndSect", "[A] k = 1 EndSect", "-A/k[2]"},
      {"[A] k = 1 EndSect", "[A] l = 1 EndSect", "+A/l -A/k"},
      {"[A] [B] k = 1 EndSect EndSect", "[A] [C] k = 1 EndSect EndSect", "+A/C -A/B"},
      {"[A] EndSect", "[A] k = 1 [B] l = 2 EndSect EndSect [C] EndSect", "+A/k +A/B +C"},
      {"[A] k = 1 EndSect [A] k = 2 EndSect", "[A] k = 1 EndSect [A] k = 3 EndSect", "~A:2/k[1]"},
      {"[A] k = 1 k = 2 EndSect", "[A] k = 1 k = 3 EndSect", "~A/k:2[1]"},
      {"[A()] k = 1 EndSect", "[A] k() = 1 EndSect", "~A ~A/k"},
      {"[A] () = 1 EndSect", "[A] () = 2 EndSect", "~A/()[1]"},
      {"[A] default (x) = 1 EndSect", "[A] default (x) = 2, 3 EndSect", "~A +A"},
      {"[A] [B] b = 1 [C] default (x) = 1 EndSect EndSect EndSect",
       "[A] B = 2 [B] b = 1 [C] default (x) = 2 EndSect EndSect EndSect", "+A/B ~A/B/C"},
      {"[A] B = 1 [B] EndSect EndSect", "[A] B = 1 [B()] EndSect EndSect", "~A/B/"},
      {"[A] B = 1 [B] default (x) = 1 EndSect EndSect",
       "[A] B = 1 [B] default (x) = 2 EndSect EndSect", "~A/B/"},
  });
}

TEST(ZonxDiff, FindsWhatWasInsertedOrMovedByContent) {
  ExpectDifferences({
      {"[A] k = 1 EndSect [A] k = 2 EndSect [A] k = 3 EndSect",
       "[A] k = 0 EndSect [A] k = 1 EndSect [A] k = 2 EndSect [A] k = 4 EndSect", "+A ~A:4/k[1]"},
      {"[A] k = 1 k = 2 k = 3 EndSect", "[A] k = 2 k = 3 EndSect", "-A/k"},
      {"[A] k = 1 k = 2 k = 3 EndSect", "[A] k = 3 k = 1 k = 2 EndSect", ">A/k"},
      {"[A] k = 1 l = 2 m = 3 EndSect", "[A] l = 2 m = 3 k = 1 EndSect", ">A/k"},
      {"[A] k = 1 l = 2 m = 3 EndSect", "[A] l = 2 m = 3 k = 4 EndSect", ">A/k ~A/k[1]"},
      {"[A] k = 1 [S] EndSect EndSect", "[A] [S] EndSect k = 1 EndSect", ""},
      {"[A] EndSect [B] EndSect [C] EndSect", "[C] EndSect [A] EndSect [B] EndSect", ">C"},
      {"[A] x = 1 y = 2 EndSect [A] k = 2 EndSect", "[A] k = 2 EndSect [A] y = 2 x = 1 EndSect",
       ">A:2 >A:2/x"},
      {"[A] k = 1 EndSect [P] EndSect [A] k = 1 EndSect", "[P] EndSect [A] k = 1 EndSect", "-A"},
      {"[P] EndSect [A] k = 1 EndSect [A] k = 2 EndSect",
       "[A] k = 3 EndSect [A] k = 4 EndSect [P] EndSect", "~A/k[1] ~A:2/k[1] >P"},
      {"[A] k = 1 EndSect [A] k = 2 EndSect", "[A] k = 2 EndSect [A] k = 3 EndSect", "-A +A:2"},
      // Reals change more often than what else is in a section.
      {"[A] n = 'a' x = 1.5 EndSect [A] n = 'b' x = 1.5 EndSect",
       "[A] n = 'c' x = 1.5 EndSect [A] n = 'a' x = 2.5 EndSect [A] n = 'b' x = 3.5 EndSect",
       "+A ~A:2/x[1] ~A:3/x[1]"},
  });
}

}  // namespace
