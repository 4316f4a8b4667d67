// Merging a file into another one.
#include <gtest/gtest.h>

#include <limits>

#include "treetext.h"
#include "zonx.h"

using host::As, host::ShowTree;

namespace {

// A file in memory.
struct Loaded : host::File {
  explicit Loaded(const std::string& text, const char* name = "/d/f.zon") : File(nullptr) {
    EXPECT_EQ(zonxLoadText(text.data(), text.size(), name, Address(), nullptr, nullptr), 0) << text;
  }
};

std::string TextOf(void* file) {
  char* text = nullptr;
  EXPECT_EQ(zonxText(file, 0, &text, nullptr, nullptr, nullptr), ZONX_OK);
  const std::string copy = text != nullptr ? text : "";
  zonxFree(text);
  return copy;
}

struct Row {
  const char* target;
  const char* overlay;
  const char* tree;
};

TEST(ZonxMerge, GivesEveryKeywordOfTheOverlay) {
  const std::vector<Row> rows = {
      {"[A] k = 1 {m}, 2 l = 5 EndSect", "[a] K = 3.5, 2, 'x' {n} EndSect",
       "{A{k(real 3.5{m}, int 2, string x{n}) l(int 5)}}"},
      {"[A] k = 1, 2, 3 EndSect", "[A] k = 4 {n} EndSect", "{A{k(int 4)}}"},
      {"[A] k = 1 {m}, 2 EndSect", "[A] k = {n}, EndSect", "{A{k(unknown{m}, undef)}}"},
      {"[A] k = {m} EndSect", "[A] k = {n} EndSect", "{A{k(unknown{m})}}"},
      {"[A] k = 1 EndSect", "[A] k = EndSect", "{A{k(undef)}}"},
      {"[A] k = +01, 2.50, |a/b|, TRUE EndSect", "[A] k = 1, 2.5, |a\\b|, true EndSect",
       "{A{k(int +01, real 2.50, file a/b, bool TRUE)}}"},
      {"[A] k = 0.0 EndSect", "[A] k = -0.0 EndSect", "{A{k(real -0.0)}}"},
      {"[A] k = 1 k = 2 EndSect", "[A] k = 1 k = 3 k = 4 EndSect",
       "{A{k(int 1) k<2>(int 3) k<3>(int 4)}}"},
      {"[A] a = 1 EndSect [A] a = 2 EndSect", "[A] EndSect [A] b = 3 EndSect [A] c = 4 EndSect",
       "{A{a(int 1)} A<2>{a(int 2) b(int 3)} A<3>{c(int 4)}}"},
      {"[A] k = 1 [S] EndSect l = 2 [T] EndSect m = 3 EndSect",
       "[A] [U] {u} x() {x} = 1 {v} default (d) {e} = 2 EndSect n = 4 o = 5 EndSect [B] EndSect",
       "{A{k(int 1) S{} l(int 2) T{} U{u}{x(){x}(int 1{v}) default d{e}(int 2)} m(int 3) n(int 4) "
       "o(int 5)} B{}}"},
      {"[A] [S] EndSect EndSect", "[A] k = 1 l = 2 EndSect", "{A{k(int 1) l(int 2) S{}}}"},
      {"[A] default (x) = 1 default (x) = 2 EndSect",
       "[A] default (X) = 3, default (x) = 2 default (x) = 4 EndSect",
       "{A{default x(int 3, default) default x(int 2) default x(int 4)}}"},
      {"[A] k = 1 [S] EndSect EndSect", "[A] default (x) = 3 l = 2 [T] EndSect EndSect",
       "{A{default x(int 3) k(int 1) l(int 2) S{} T{}}}"},
      {"[A] k = 1 EndSect", "[A()] k() = 1 EndSect", "{A(){k()(int 1)}}"},
      {"[A] () = 1 EndSect", "[A] () = 2 EndSect", "{A{()(int 2)}}"},
      {"[A] k = '<CLOB:Integer:1>', #1#, %x EndSect", "[A] k = '<clob:Integer:2>', #2#, %y EndSect",
       "{A{k(clob Integer:2, date 2, subst y)}}"},
      {"[A] k = 1 EndSect", "", "{A{k(int 1)}}"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.target) + " <- " + row.overlay);
    const Loaded target(row.target);
    const Loaded overlay(row.overlay);
    const std::string before = ShowTree(overlay);
    for (int round = 0; round < 2; ++round) {
      EXPECT_EQ(zonxMerge(target, overlay), ZONX_OK);
      EXPECT_EQ(ShowTree(target), row.tree);
    }
    EXPECT_EQ(ShowTree(overlay), before);
  }
}

TEST(ZonxMerge, KeepsTheTextOfTheTarget) {
  const Loaded target(
      "// top\n[Quay] {general}\n\tLength = 240.00, // metres\n\t  +96 ; rest\n"
      "\t// keep\n   Name='x'   // name\nEndSect // quay\n");
  const Loaded overlay("[quay] {other} length = 240.0, 97, 5 {new} depth = 7 EndSect [B] EndSect");
  EXPECT_EQ(zonxMerge(target, overlay), ZONX_OK);
  EXPECT_EQ(TextOf(target),
            "// top\n[Quay] {general}\n\tLength = 240.00, // metres\n\t  97, 5 {new} ; rest\n"
            "\t// keep\n   Name='x'   // name\n   depth = 7\nEndSect // quay\n"
            "\n[B]\nEndSect  // B\n");
}

TEST(ZonxMerge, MovesFileNames) {
  const Loaded target("[A] a = |x|, |../e/y| EndSect", "/d/f.zon");
  const Loaded overlay("[A] a = |x|, |y|, |/z| b = |..\\d\\w| EndSect [B] c = |x| EndSect",
                       "/e/f.zon");
  EXPECT_EQ(zonxMerge(target, overlay), ZONX_OK);
  EXPECT_EQ(ShowTree(target),
            "{A{a(file ..\\e\\x, file ../e/y, file /z) b(file w)} B{c(file ..\\e\\x)}}");
  std::size_t count = 99;
  EXPECT_EQ(zonxDiff(overlay, target, nullptr, nullptr, nullptr, &count), ZONX_OK);
  EXPECT_EQ(count, 0U);
}

// Values of hosts become plain ones, and variables are neither written nor referred to.
TEST(ZonxMerge, ReplacesReferences) {
  int whole = 1;
  float narrow = 0.1F;
  double wide = 2.5;
  int truth = 1;
  char text[] = "text";
  const auto build = [&](void* file) {
    zonAddIntRef(file, &whole);
    zonAddFloatRef(file, &narrow);
    zonAddDoubleRef(file, &wide);
    zonAddBoolRef(file, &truth);
    zonAddStringRef(file, text);
    zonAddFloat(file, 0.1F);
    zonAddDouble(file, std::numeric_limits<double>::infinity());
    zonAddClob(file);
    zonAddClobInt(file, 5);
  };
  const host::Built target;
  const host::Built overlay;
  build(target);
  build(overlay);
  zonAddKeyword(target, "m");
  zonAddClob(target);
  zonAddKeyword(overlay, "m");
  zonAddInt(overlay, 1);
  zonAddKeyword(overlay, "none");
  zonAddTarget(overlay, "Defs");
  EXPECT_EQ(zonxMerge(target, overlay), ZONX_OK);
  std::size_t count = 99;
  EXPECT_EQ(zonxDiff(target, overlay, nullptr, nullptr, nullptr, &count), ZONX_OK);
  EXPECT_EQ(count, 0U);
  whole = 7;
  narrow = 7;
  wide = 7;
  truth = 0;
  text[0] = 'n';
  EXPECT_EQ(ShowTree(target),
            "{A{k(int 1, real 0.1, real 2.5, bool true, string text, real 0.1, real inf, "
            "clob Integer:5) m(int 1) none(undef)}}");
  host::Messages();
  zonAddClobInt(target, 6);  // the cursor has left the CLOB that was replaced
  EXPECT_EQ(host::Messages().size(), 1U);
}

TEST(ZonxMerge, RefusesWhatIsNoSoundFile) {
  const std::string faulty = "[A] k = 1 EndSect [B] k = ";
  host::File cut(nullptr);
  EXPECT_EQ(zonxLoadText(faulty.data(), faulty.size(), "f", cut.Address(), nullptr, nullptr),
            ZONX_FAULTY);
  const Loaded sound("[A] k = 1 EndSect");
  void* const section = zonTargetByNum(sound, 1);
  for (auto* function : {+[](void*a, void*b) { return zonxMerge(a, b); },
                         +[](void*a, void*b) {
                           std::size_t count = 99;
                           const int status = zonxDiff(a, b, nullptr, nullptr, nullptr, &count);
                           EXPECT_EQ(count, status == ZONX_OK ? 0U : 99U);
                           return status;
                         }}) {
    EXPECT_EQ(function(nullptr, sound), ZONX_BAD_ARGUMENT);
    EXPECT_EQ(function(sound, nullptr), ZONX_BAD_ARGUMENT);
    EXPECT_EQ(function(section, sound), ZONX_BAD_ARGUMENT);
    EXPECT_EQ(function(cut, section), ZONX_BAD_ARGUMENT);
    EXPECT_EQ(function(zonKeywordByNum(section, 1), section), ZONX_BAD_ARGUMENT);
    EXPECT_EQ(function(cut, sound), ZONX_FAULTY);
    EXPECT_EQ(function(sound, cut), ZONX_FAULTY);
    EXPECT_EQ(function(sound, sound), ZONX_OK);
  }
}

}  // namespace
