// Differences of two trees.
#include <gtest/gtest.h>

#include <limits>

#include "../fuzz/diff_model.h"
#include "../fuzz/save_model.h"
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

TEST(ZonxDiff, ComparesData) {
  ExpectDifferences({
      {"[A] k = +01, 1.50, TRUE {r}, 'it''s', |a/b|, #1#, %x, , 1e400, 0.0 // c\n EndSect",
       "[a] {r} K {r} = 1, 15e-1, true, 'it''s', |a\\b|, #1#, %x, {r}, 1e500, -0.0 EndSect", ""},
      {"[A] k = 1, 1, '1', |1|, #1#, %x, 'x', EndSect",
       "[A] k = 1.0, '1', |1|, #1#, %x, 'x', '<CLOB:>', 0 EndSect",
       "~A/k[1] ~A/k[2] ~A/k[3] ~A/k[4] ~A/k[5] ~A/k[6] ~A/k[7] ~A/k[8]"},
      {"[A] k = 9223372036854775807, 1, 1e400, |a|, |/d/a| EndSect",
       "[A] k = 9223372036854775808, -1, -1e400, |b/../a|, |a| EndSect",
       "~A/k[1] ~A/k[2] ~A/k[3] ~A/k[4] ~A/k[5]"},
      {"[A] k = '<CLOB:Integer:1>', #1#, %x, true EndSect",
       "[A] k = '<CLOB:Integer:2>', #2#, %y, false EndSect", "~A/k[1] ~A/k[2] ~A/k[3] ~A/k[4]"},
  });
  const zonxCompare loose{0.01, 0.5};
  ExpectDifferences(
      {{"[A] k = 1.0, 1000.0, 1.0, 1, 1e400, 1e308 EndSect",
        "[A] k = 1.5, 1010.0, 1.6, 2, 1e308, -1e308 EndSect", "~A/k[3] ~A/k[4] ~A/k[5] ~A/k[6]"},
       {"[A] n = 1 x = 1.0 EndSect [A] n = 2 x = 1.0 EndSect",
        "[A] n = 3 x = 1.0 EndSect [A] n = 1 x = 1.1 EndSect [A] n = 2 x = 1.2 EndSect", "+A"}},
      nullptr, &loose);
}

TEST(ZonxDiff, ResolvesFileNamesInTwoFolders) {
  const std::string text = "[A] k = |x|, |../e/y|, |/d/z| k = |w| EndSect";
  const Loaded before(text, "/d/f.zon");
  EXPECT_EQ(Diff(before, Loaded(text, "/d/g.zon")), "");
  EXPECT_EQ(Diff(before, Loaded(text, "/e/f.zon")), "~A/k[1] ~A/k:2[1]");
  EXPECT_EQ(Diff(before, Loaded(text, nullptr)), "");
  EXPECT_EQ(
      Diff(before, Loaded("[A] k = |../d/w| k = |../d/x|, |y|, |../d/z| EndSect", "/e/f.zon")),
      ">A/k:2");
}

TEST(ZonxDiff, PairsByKey) {
  ExpectDifferences(
      {
          {"[Q] n = 'a' x = 1 EndSect [Q] n = 'b' x = 2 EndSect",
           "[Q] n = 'b' x = 1 EndSect [Q] n = 'a' x = 2 EndSect", "~Q/x[1] >Q:2 ~Q:2/x[1]"},
          {"[Q] n = 1, 2 x = 1 EndSect [Q] n = 3 x = 2 EndSect",
           "[Q] n = 03 x = 4 EndSect [Q] N = 1 x = 1 EndSect", "-Q ~Q/x[1] +Q:2"},
          // One is a pair by its name, whatever its key.
          {"[Q] n = 1 EndSect", "[Q] n = 2 EndSect", "~Q/n[1]"},
          // No keys: none, one that is not alone, several, an empty one.
          {"[Q] x = 1 EndSect [Q] n = 5 EndSect [Q] n = 1 n = 2 EndSect [Q] n = EndSect",
           "[Q] x = 2 EndSect [Q] n = 5 x = 1 EndSect [Q] n = 1 n = 3 EndSect [Q] n = x = 3 "
           "EndSect",
           "~Q/x[1] +Q:2/x ~Q:3/n:2[1] +Q:4/x"},
          {"[Q] n = 1 x = 1 EndSect [Q] n = 1 x = 2 EndSect",
           "[Q] n = 1 x = 3 EndSect [Q] n = 1 x = 1 EndSect", "+Q -Q:2"},
          {"[A] [Q] n = 1 x = 1 EndSect [Q] n = 2 EndSect EndSect",
           "[A] [Q] n = 2 EndSect [Q] n = 1 x = 2 EndSect EndSect", ">A/Q:2 ~A/Q:2/x[1]"},
      },
      "n");
}

TEST(ZonxDiff, ComparesSectionsAndBuiltTrees) {
  const Loaded before(
      "[A] [B()] x = 1 [C] default (d) = 1 EndSect default (e) = 1 EndSect EndSect");
  const Loaded after("[A] [D] X = 2 [C] default (d) = 2 EndSect default (e) = 2 EndSect EndSect");
  void* const from = zonSectionByNum(zonTargetByNum(before, 1), 1);
  void* const to = zonSectionByNum(zonTargetByNum(after, 1), 1);
  EXPECT_EQ(Diff(from, to, nullptr, nullptr, true), "~ ~X[1] ~ ~C");
  EXPECT_EQ(Diff(zonGetRoot(before), before), "");

  const double none = std::numeric_limits<double>::quiet_NaN();
  float narrow = 0.1F;
  const host::Built built;
  for (const double value : {none, 0.1}) zonAddDouble(built, value);
  zonAddFloat(built, 0.1F);
  zonAddFloatRef(built, &narrow);
  zonAddKeyword(built, "none");
  const host::Built same;
  for (const double value : {none, 0.1}) zonAddDouble(same, value);
  for (int n = 0; n < 2; ++n) zonAddDouble(same, static_cast<double>(0.1F));
  zonAddKeyword(same, "none");
  zonAddUndefinedPar(same);
  EXPECT_EQ(Diff(built, same), "");
  EXPECT_EQ(Diff(same, built), "");
  EXPECT_EQ(Diff(built, Loaded("[A] k = 0.1, 0.1, 0.1, 0.1000000001 none = 1 EndSect")),
            "~A/k[1] +A/none[1]");
}

// The names in a section differ as it is read. A renaming or an insertion ends that, and repeated
// sections are paired by their content.
TEST(ZonxDiff, PairsSectionsThatAnEditHasMadeNamesakes) {
  const Loaded before("[R] [S] i = 1 j = 1 EndSect [T] i = 2 j = 2 EndSect EndSect");
  const Loaded after("[R] [S] i = 2 j = 2 EndSect [T] i = 3 j = 3 EndSect EndSect");
  for (const Loaded* file : {&before, &after}) {
    EXPECT_EQ(zoneRenameSection(zonNodeByNum(zonTargetByNum(*file, 1), 2), "S"), 0);
  }
  EXPECT_EQ(Diff(before, after), "-R/S +R/S:2");

  const Loaded one("[R] [S] i = 1 j = 1 EndSect EndSect");
  const Loaded two("[R] [S] i = 2 j = 2 EndSect EndSect");
  const auto insertAnother = [](void* file, int value) {
    void* section = zonNodeByNum(zonTargetByNum(file, 1), 1);
    void* made = zonInsert(section, section, 1);
    for (unsigned n : {1U, 2U}) zoneModifyParameterInt(zonKeywordByNum(made, n), 1, value);
  };
  insertAnother(one, 2);
  insertAnother(two, 3);
  EXPECT_EQ(Diff(one, two), "-R/S +R/S:2");
}

TEST(ZonxDiff, CallsTheVisitor) {
  const Loaded before("[A] k = 1, 2 EndSect");
  const Loaded after("[A] k = 3, 4 EndSect");
  std::size_t count = 0;
  const auto fail = [](const zonxDifference* difference, void*) {
    zonGetInt(difference->before);
    throw 1;
  };
  EXPECT_EQ(zonxDiff(before, after, nullptr, fail, nullptr, &count), ZONX_OK);
  EXPECT_EQ(count, 2U);
  for (const double bad : {-1.0, std::numeric_limits<double>::quiet_NaN()}) {
    for (const zonxCompare& options : {zonxCompare{bad, 0}, zonxCompare{0, bad}}) {
      EXPECT_EQ(zonxDiff(before, after, &options, nullptr, nullptr, &count), ZONX_BAD_ARGUMENT);
    }
  }
}

// Random files that have much in common.
TEST(ZonxDiff, AgreesWithTheModel) {
  for (unsigned seed = 0; seed < 100; ++seed) {
    std::mt19937 random(seed);
    const auto number = [&](unsigned from, unsigned to) {
      return from + static_cast<unsigned>(random() % (to - from + 1));
    };
    std::string text;
    for (unsigned sections = number(1, 5); sections > 0; --sections) {
      text += "[Alpha] ";
      for (unsigned lines = number(0, 3); lines > 0; --lines) {
        text += "k = " + std::to_string(number(1, 3)) + ", 1.5 beta = 'x' ";
      }
      if (number(0, 1) != 0) text += "[Gamma_1] k = |a/b| EndSect ";
      text += "EndSect ";
    }
    const bool resolved = number(0, 3) == 0;
    model::SaveChecker before(text, "/d/f.zon", number);
    model::SaveChecker after(text, resolved ? "/e/f.zon" : "/d/g.zon", number);
    for (unsigned edits = number(0, 6); edits > 0; --edits) before.Edit();
    for (unsigned edits = number(0, 6); edits > 0; --edits) after.Edit();
    model::CheckDifferences(before.Handle(), after.Handle(), resolved,
                            number(0, 1) != 0 ? "k" : nullptr);
    model::CheckMerge(before.Handle(), after.Handle(), resolved);
  }
}

}  // namespace
