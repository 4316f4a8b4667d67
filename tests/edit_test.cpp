// Editing: the cases that the random edits of fuzz/edit_fuzz.cpp, made beside a model, do not show.
#include <cctype>
#include <map>
#include <random>

#include "treetext.h"

namespace {

using namespace host;

TEST(Editing, CursorLeavesAReplacedClob) {
  const Built file;
  zonAddClob(file);
  EXPECT_EQ(zoneModifyParameterInt(KeywordOf(file), 1, 5), 0);
  EXPECT_EQ(zonAddClobIntS(file, 1), 2000);
  EXPECT_EQ(zonAddIntS(file, 6), 0);
  EXPECT_EQ(ShowTree(file), "{A{k(int 5, int 6)}}");
}

TEST(Editing, ValuesOfTheSameKindChangeInPlace) {
  const File file(Load("[A] k = 1, 2.5, 'x', true, |f|, 7 EndSect"));
  void* keyword = KeywordOf(file);
  std::vector<void*> before;
  for (unsigned n = 1; n <= 6; ++n) before.push_back(zonParamByNum(keyword, n));
  EXPECT_EQ(zoneModifyParameterInt(keyword, 1, -4), 0);
  EXPECT_EQ(zoneModifyParameterDouble(keyword, 2, 3.0), 0);
  EXPECT_EQ(zonGetInt(before[1]), 3) << "all views are renewed";
  EXPECT_EQ(zoneModifyParameterString(keyword, 3, ""), 0);
  EXPECT_STREQ(zonGetString(before[2]), "");
  EXPECT_EQ(zoneModifyParameterString(keyword, 3, "y"), 0);
  EXPECT_EQ(zoneModifyParameterString(keyword, 3, zonGetString(before[2])), 0);
  EXPECT_EQ(zoneModifyParameterBool(keyword, 4, 0), 0);
  EXPECT_EQ(zoneModifyParameterFilename(keyword, 5, "g/h"), 0);
  for (unsigned n = 1; n <= 5; ++n) EXPECT_EQ(zonParamByNum(keyword, n), before[n - 1]) << n;
  EXPECT_EQ(zoneModifyParameterFloat(keyword, 6, 0.5F), 0);
  EXPECT_NE(zonParamByNum(keyword, 6), before[5]) << "an integer is replaced by a real";
  EXPECT_EQ(zoneModifyParameterDouble(keyword, 6, 0.25), 0);
  EXPECT_EQ(zonNumericIsIntType(zonParamByNum(keyword, 6)), 0);
  EXPECT_EQ(ShowTree(file), "{A{k(int -4, real 3.0, string y, bool false, file g/h, real 0.25)}}");
}

// The reader knows that the names differ. Each edit ends that, here before any name or number was
// asked for.
TEST(Editing, NamesOfAReadSectionRepeatAfterAnEdit) {
  using Edit = void (*)(CzonSection&);
  const Edit edits[] = {
      [](CzonSection& section) { zoneInsertNewKeyword(&section, "b", 1); },
      [](CzonSection& section) { EXPECT_EQ(zoneRenameKeyword(section.NodeByNum(1), "B"), 0); },
      [](CzonSection& section) {
        EXPECT_EQ(zonCopy(section.NodeByNum(2), section.NodeByNum(1)), 1);
      },
      [](CzonSection& section) { zonInsert(section.NodeByNum(2), section.NodeByNum(2), 0); },
      [](CzonSection& section) { section.AddKeyword(new CzonKeyword("b", 0, 0)); },
  };
  for (const Edit& edit : edits) {
    const File file(Load("[A] a = 1 b = 2 [S] EndSect EndSect"));
    auto& section = As<CzonSection>(zonTargetByNum(file, 1));
    edit(section);
    int number = 0;
    for (unsigned int n = 1; n <= section.GetNoNodes(); ++n) {
      const CzonNode& child = *section.NodeByNum(n);
      if (std::tolower(child.GetName()[0]) != 'b') continue;
      EXPECT_EQ(child.GetInstanceNo(), ++number) << "edit " << &edit - edits;
    }
    EXPECT_EQ(number, 2) << "edit " << &edit - edits;
  }
}

TEST(Editing, ValuesAreInserted) {
  const File file(Load("[A] k = 1, 2 EndSect"));
  void* keyword = KeywordOf(file);
  EXPECT_EQ(zonIsFloat(zoneInsertParameterFloat(keyword, 0, 0.5F)), 1);
  EXPECT_EQ(zonIsDouble(zoneInsertParameterDouble(keyword, 0, 2.0)), 1);
  EXPECT_EQ(zonIsBool(zoneInsertParameterBool(keyword, 0, 7)), 1);
  EXPECT_EQ(zonIsString(zoneInsertParameterString(keyword, 1, "s")), 1);
  EXPECT_EQ(zonIsFilename(zoneInsertParameterFilename(keyword, 3, "f\\g")), 1);
  EXPECT_EQ(ShowTree(file),
            "{A{k(string s, int 1, file f\\g, int 2, real 0.5, real 2.0, bool true)}}");
}

// A definition is edited as a keyword is. A placeholder in it changes itself.
TEST(Editing, Definitions) {
  const File file(Load("[A] default(d) = 3, EndSect [B] EndSect"));
  void* definition = zonNodeByNum(zonTargetByNum(file, 1), 1);
  EXPECT_EQ(zoneModifyParameterInt(definition, 2, 9), 0);
  EXPECT_EQ(zoneRenameKeyword(definition, "e"), 0);
  EXPECT_NE(zoneInsertParameterDefault(definition, 1), nullptr);
  EXPECT_NE(zoneInsertParameterUndefined(definition, 4), nullptr);
  EXPECT_EQ(zoneDeleteSectionByNum(zonGetRoot(file), 2), 0);
  EXPECT_EQ(ShowTree(file), "{A{default e(default, int 3, int 9, undef)}}");
}

TEST(Editing, RefusalsNameTheKindOfNode) {
  const File file(Load("[A] k = 1 EndSect"));
  void *root = zonGetRoot(file), *section = zonTargetByNum(file, 1);
  void *keyword = zonKeywordByNum(section, 1), *value = zonParamByNum(keyword, 1);
  CzonSection loneSection("s", 0, 0);
  CzonKeyword loneKeyword("k", 0, 0);
  CzonInt loneValue("1");
  const std::string before = ShowTree(file);
  const auto expect = [](int code, const char* message, int result) {
    EXPECT_EQ(result, code);
    EXPECT_EQ(Heard(), std::to_string(code) + " " + message);
  };
  const auto codeOf = [](void* inserted) { return inserted != nullptr ? 0 : zonPeekErrorGlb(); };
  Heard();
  expect(1006, "Invalid zonNode", zoneDeleteNode(nullptr));
  const char* const inKeyword = "Invalid zonNode (CzonKeyword)";
  expect(1007, inKeyword, zoneDeleteNode(&loneKeyword));
  expect(1007, inKeyword, zoneDeleteKeywordByNum(section, 2));
  expect(1007, inKeyword, zoneDeleteKeywordByNameNum(section, "k", 2));
  expect(1007, inKeyword, zoneModifyParameterInt(section, 1, 1));
  expect(1007, inKeyword, zoneRenameKeyword(value, "x"));
  const char* const inSection = "Invalid zonNode (CzonSection)";
  expect(1009, inSection, zoneDeleteNode(&loneSection));
  expect(1009, inSection, zoneDeleteNode(root));
  expect(1009, inSection, zoneDeleteSectionByNameNum(root, "x", 1));
  expect(1009, inSection, zoneDeleteSectionByNum(root, 2));
  expect(1009, inSection, zoneDeleteKeywordByNum(root, 1));
  expect(1009, inSection, zoneRenameSection(root, "x"));
  expect(1009, inSection, codeOf(zonInsert(keyword, section, 1)));
  expect(1011, "Invalid zonNode (CzonTargetList)", zoneDeleteSectionByNum(keyword, 1));
  const char* const inParam = "Invalid zonNode (CzonParam)";
  expect(1012, inParam, zoneDeleteNode(&loneValue));
  expect(1012, inParam, zoneModifyParameterBool(keyword, 2, 1));
  expect(1012, inParam, zoneDeleteParameterByNum(keyword, 0));
  expect(1012, inParam, codeOf(zoneInsertParameterInt(keyword, 3, 1)));
  EXPECT_EQ(ShowTree(file), before);
}

TEST(Editing, EachTypeOfValueIsRefused) {
  const File file(Load("[A] k = 1 EndSect"));
  for (void* node : {static_cast<void*>(nullptr), KeywordOf(file)}) {  // which has no place 9
    const int code = node == nullptr ? 1006 : 1012;
    EXPECT_EQ(zoneInsertParameterInt(node, 9, 1), nullptr);
    EXPECT_EQ(zoneInsertParameterFloat(node, 9, 1), nullptr);
    EXPECT_EQ(zoneInsertParameterDouble(node, 9, 1), nullptr);
    EXPECT_EQ(zoneInsertParameterBool(node, 9, 1), nullptr);
    EXPECT_EQ(zoneInsertParameterString(node, 9, "x"), nullptr);
    EXPECT_EQ(zoneInsertParameterFilename(node, 9, "x"), nullptr);
    EXPECT_EQ(zoneInsertParameterUndefined(node, 9), nullptr);
    EXPECT_EQ(zoneInsertParameterDefault(node, 9), nullptr);
    EXPECT_EQ(zoneModifyParameterInt(node, 9, 1), code);
    EXPECT_EQ(zoneModifyParameterFloat(node, 9, 1), code);
    EXPECT_EQ(zoneModifyParameterDouble(node, 9, 1), code);
    EXPECT_EQ(zoneModifyParameterBool(node, 9, 1), code);
    EXPECT_EQ(zoneModifyParameterString(node, 9, "x"), code);
    EXPECT_EQ(zoneModifyParameterFilename(node, 9, "x"), code);
    EXPECT_EQ(zonGetErrorGlb(), code);
  }
  EXPECT_EQ(Messages().size(), 28U);
  EXPECT_EQ(ShowTree(file), "{A{k(int 1)}}");
}

TEST(Editing, RenamesOutsideAFile) {
  CzonSection section("Abcdefghi", 0, 0);
  for (const char* name : {"abcdefghi", "abcdefghij", "Xbcdefghij", "Xbcdefghik", "xBCDEFGHIK"}) {
    EXPECT_EQ(zoneRenameSection(&section, name), 0);
    EXPECT_EQ(section.GetName(), name);
  }
}

TEST(Editing, ANodeOutsideTheIndexStays) {
  const File file(Load("[A] k = 1 [B] EndSect EndSect"));
  auto& section = As<CzonSection>(zonTargetByNum(file, 1));
  section.AddNode(new CzonKeyword("k", 0, 0));
  section.AddNode(new CzonSection("C", 0, 0));
  const std::string before = ShowTree(file);
  void* keyword = zonNodeByNum(&section, 3);
  void* below = zonNodeByNum(&section, 4);
  Heard();
  EXPECT_EQ(zoneDeleteNode(keyword), 1006);
  EXPECT_EQ(zoneDeleteNode(below), 1006);
  EXPECT_EQ(zoneRenameKeyword(keyword, "x"), 1006);
  EXPECT_EQ(zoneRenameSection(below, "x"), 1006);
  EXPECT_EQ(Messages(), Texts(4, "Invalid zonNode"));
  zonGetErrorGlb();
  EXPECT_EQ(ShowTree(file), before);
  EXPECT_EQ(zonKeywordByNameNum(&section, "k", 1), zonNodeByNum(&section, 1));
  // Its content may still be replaced; it gets a name, and no place in the index.
  EXPECT_EQ(zonCopy(zonNodeByNum(&section, 2), below), 1);
  EXPECT_EQ(zonSectionByNameNum(&section, "B", 2), nullptr);
}

// A section with so many children that its lists are edited in blocks, beside a model: the names of
// the keywords and of the sections, each in order.
class LongLists {
 public:
  LongLists() {
    zonAddTarget(file_, "A");
    section_ = zonTargetByNum(file_, 1);
    for (int n = 0; n < 1500; ++n) Insert(n % 3 == 0, Number(n % 3 == 0));
  }

  void Change() {
    const bool isSection = random_() % 3 == 0;
    std::vector<std::string>& names = names_[isSection ? 1 : 0];
    const unsigned step = static_cast<unsigned>(random_() % 3);
    if (step == 0 || names.size() < 300) return Insert(isSection, Number(isSection));
    const unsigned n = std::min(Number(isSection), static_cast<unsigned>(names.size()));
    if (step == 1) {
      const auto remove = isSection ? zoneDeleteSectionByNum : zoneDeleteKeywordByNum;
      EXPECT_EQ(remove(section_, n), 0);
      names.erase(names.begin() + (n - 1));
    } else {
      const auto rename = isSection ? zoneRenameSection : zoneRenameKeyword;
      names[n - 1] = Name();
      EXPECT_EQ(rename(Child(isSection, n), names[n - 1].c_str()), 0);
    }
  }

  // Every node, found by number and by name; its number; the order of all children by what is
  // written.
  void Check() {
    std::string text;
    for (const bool isSection : {false, true}) {
      const std::vector<std::string>& names = names_[isSection ? 1 : 0];
      std::map<std::string, unsigned> seen;
      for (unsigned n = 1; n <= names.size(); ++n) {
        const std::string& name = names[n - 1];
        void* node = Child(isSection, n);
        const unsigned number = ++seen[name];
        ASSERT_STREQ(zonGetName(node), name.c_str());
        ASSERT_EQ(zonGetInstanceNo(node), static_cast<int>(number));
        const auto find = isSection ? zonSectionByNameNum : zonKeywordByNameNum;
        ASSERT_EQ(find(section_, name.c_str(), number), node);
      }
      for (const auto& [name, count] : seen) {
        ASSERT_EQ(zonGetNoInstances(Child(isSection, FirstOf(names, name))),
                  static_cast<int>(count));
      }
      ASSERT_EQ(Child(isSection, static_cast<unsigned>(names.size()) + 1), nullptr);
    }
    ASSERT_EQ(static_cast<std::size_t>(zonGetNoNodes(section_)),
              names_[0].size() + names_[1].size());
    std::size_t next[2] = {};
    for (unsigned n = 1; void* child = zonNodeByNum(section_, n); ++n) {
      const int kind = zonIsSection(child) ? 1 : 0;
      ASSERT_EQ(child, Child(kind == 1, static_cast<unsigned>(++next[kind])));
    }
  }

 private:
  static unsigned FirstOf(const std::vector<std::string>& names, const std::string& name) {
    return static_cast<unsigned>(std::find(names.begin(), names.end(), name) - names.begin()) + 1;
  }

  // The first, the last, the middle or any.
  unsigned Number(bool isSection) {
    const auto count = static_cast<unsigned>(names_[isSection ? 1 : 0].size());
    const unsigned numbers[] = {1, count + 1, count / 2 + 1,
                                static_cast<unsigned>(random_() % (count + 1)) + 1};
    return numbers[random_() % 4];
  }
  std::string Name() { return "name" + std::to_string(random_() % 2 == 0 ? 0 : random_() % 900); }
  void* Child(bool isSection, unsigned n) {
    return isSection ? zonSectionByNum(section_, n) : zonKeywordByNum(section_, n);
  }
  void Insert(bool isSection, unsigned n) {
    const auto insert = isSection ? zoneInsertNewSection : zoneInsertNewKeyword;
    const std::string name = Name();
    ASSERT_NE(insert(section_, name.c_str(), n), nullptr);
    std::vector<std::string>& names = names_[isSection ? 1 : 0];
    names.insert(names.begin() + (n - 1), name);
  }

  File file_{zonCreate()};
  void* section_;
  std::vector<std::string> names_[2];
  std::mt19937 random_{1};
};

TEST(Editing, LongListsFollowAModel) {
  LongLists lists;
  for (int round = 0; round < 12 && !testing::Test::HasFatalFailure(); ++round) {
    for (int n = 0; n < 1000; ++n) lists.Change();
    lists.Check();
  }
}

TEST(Editing, LongListsOfValuesFollowAModel) {
  const File file(zonCreate());
  zonAddTarget(file, "A");
  zonAddKeyword(file, "k");
  void* keyword = zonKeywordByNum(zonTargetByNum(file, 1), 1);
  std::vector<int> model;
  std::mt19937 random(1);
  for (int n = 0; n < 4000; ++n) {
    const std::size_t size = model.size();
    const std::size_t places[] = {0, size, size / 2, random() % (size + 1)};
    const std::size_t place = places[random() % 4];
    if (n < 1500 || random() % 2 == 0) {
      ASSERT_NE(zoneInsertParameterInt(keyword, static_cast<unsigned>(place) + 1, n), nullptr);
      model.insert(model.begin() + static_cast<std::ptrdiff_t>(place), n);
    } else if (place < size) {
      ASSERT_EQ(zoneDeleteParameterByNum(keyword, static_cast<unsigned>(place) + 1), 0);
      model.erase(model.begin() + static_cast<std::ptrdiff_t>(place));
    }
    if (n % 1000 != 999) continue;
    ASSERT_EQ(zoneModifyParameterString(keyword, 700, "text"), 0);
    ASSERT_EQ(zoneModifyParameterInt(keyword, 700, model[699]), 0);
  }
  for (std::size_t n = 0; n < model.size(); ++n) {
    void* value = zonParamByNum(keyword, static_cast<unsigned>(n) + 1);
    ASSERT_EQ(zonGetInt(value), model[n]);
    ASSERT_EQ(zonGetInstanceNo(value), static_cast<int>(n) + 1);
  }
}

TEST(Editing, CopiesReplaceTheirTarget) {
  const File file(Load("[A()] {remark} x = 1 [S()] y = 'z' EndSect EndSect [B] {b} EndSect")),
      other(zonCreate());
  zonAddTarget(other, "T");
  zonAddKeyword(other, "q");
  void* target = zonTargetByNum(other, 1);
  EXPECT_STREQ(zonGetNameGlb(KeywordOf(other)), "T.q");
  EXPECT_EQ(zonCopy(zonTargetByNum(file, 1), target), 1);
  EXPECT_EQ(ShowTree(other), "{A(){remark}{x(int 1) S(){y(string z)}}}");
  EXPECT_EQ(zonTargetByNameNum(other, "T", 1), nullptr);
  EXPECT_EQ(zonTargetByNameNum(other, "a", 1), target);
  EXPECT_STREQ(zonGetNameGlb(KeywordOf(other)), "A.x");
  EXPECT_EQ(zonCopy(zonTargetByNum(file, 2), target), 1);
  EXPECT_EQ(ShowTree(other), "{B{b}{}}");
}

TEST(Editing, DefaultsFollowTheirDefinitions) {
  const File file(Load("[A] default (d) = 1 default (e) = 2 d = 0 EndSect"));
  void* section = zonTargetByNum(file, 1);
  void* wanted = zoneInsertParameterDefault(zonKeywordByNum(section, 1), 1);
  const auto found = [&] { return zonGetInt(zonFindDefault(wanted)); };
  EXPECT_EQ(found(), 1);
  ASSERT_NE(zoneInsertNewKeyword(section, "k", 1), nullptr);
  EXPECT_EQ(found(), 1);
  EXPECT_EQ(zoneDeleteKeywordByNum(section, 1), 0);
  EXPECT_EQ(found(), 1);
  EXPECT_EQ(zonCopy(zonNodeByNum(section, 2), zonNodeByNum(section, 1)), 1);
  EXPECT_EQ(zonFindDefault(wanted), wanted) << "the only definition of d has become one of e";
  EXPECT_EQ(zoneRenameKeyword(zonNodeByNum(section, 2), "D"), 0);
  EXPECT_EQ(found(), 2);
  EXPECT_EQ(zoneDeleteNode(zonNodeByNum(section, 2)), 0);
  EXPECT_EQ(zonFindDefault(wanted), wanted);
  EXPECT_EQ(ShowTree(file), "{A{default e(int 2) d(default, int 0)}}");
}

TEST(Editing, DefaultsFollowACopyOfTheSection) {
  const File file(Load("[A] default (d) = 1 d = EndSect [B] default (d) = 9 d = EndSect"));
  for (const unsigned n : {1U, 2U}) {
    zoneInsertParameterDefault(zonKeywordByNum(zonTargetByNum(file, n), 1), 1);
  }
  EXPECT_EQ(zonGetInt(ValueOf(file)), 1);
  EXPECT_EQ(zonCopy(zonTargetByNum(file, 2), zonTargetByNum(file, 1)), 1);
  EXPECT_EQ(zonGetInt(ValueOf(file)), 9);
}

TEST(Editing, CopiesAndInsertsOutsideAFile) {
  CzonSection from("x", 0, 0), onto("y", 0, 0);
  from.AddKeyword(new CzonKeyword("k", 0, 0));
  CzonNode* const value = new CzonInt("1");
  from.KeywordByNum(1)->AddParam(static_cast<CzonParam*>(value));
  EXPECT_EQ(zonCopy(&from, &onto), 1);
  EXPECT_EQ(Show(&onto), "x{k(int 1)}");
  EXPECT_EQ(zoneDeleteParameterByNum(onto.KeywordByNum(1), 1), 0);
  EXPECT_EQ(Show(&onto), "x{k()}");
  const File file(Load("[A] EndSect"));
  Messages();
  EXPECT_EQ(zonInsert(&from, &onto, 0), nullptr);
  EXPECT_EQ(zonInsert(value, onto.KeywordByNum(1), 0), nullptr);
  EXPECT_EQ(zonInsert(onto.KeywordByNum(1), value, 0), nullptr);
  EXPECT_EQ(zonInsert(zonGetRoot(file), zonTargetByNum(file, 1), 0), nullptr);
  EXPECT_EQ(zonCopy(value, value), 0);
  EXPECT_EQ(Messages().size(), 5U);
  EXPECT_EQ(zoneDeleteKeywordByNum(&onto, 1), 0);
  EXPECT_EQ(Show(&onto), "x{}");
  zonGetErrorGlb();
}

TEST(Editing, ADefinitionAddedAsAKeywordIsADefinition) {
  CzonSection section("S", 0, 0);
  section.AddKeyword(new CzonDefaultDef("k", 0, 0));
  section.AddKeyword(new CzonKeyword("k", 0, 0));
  CzonNode* definition = section.NodeByNum(1);
  EXPECT_EQ(definition->GetInstanceNo(), 0);
  EXPECT_EQ(section.GetNoKeywords(), 1U);
  EXPECT_EQ(section.KeywordByName("k"), section.NodeByNum(2));
  EXPECT_EQ(zoneDeleteNode(definition), 0);
  EXPECT_EQ(section.KeywordByNameNum("k", 2), nullptr);
  EXPECT_EQ(Show(&section), "S{k()}");
}

}  // namespace
