// Editing: random edits on a tree and on a simple model beside it, and what the model does not show.
#include <gtest/gtest.h>
#include <strings.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <random>

#include "host.h"

namespace {

// The model: sections with keywords, and keywords with integers, in the order of the file.
struct Item {
  bool section = false;
  std::string name;
  std::vector<Item> children;  // of a section
  std::vector<int> values;     // of a keyword
  int id = 0;                  // of the item itself, whatever it holds; the root's is 0

  Item* Find(int wanted) {
    if (id == wanted) return this;
    for (Item& child : children) {
      if (Item* found = child.Find(wanted)) return found;
    }
    return nullptr;
  }
  Item* ParentOf(int wanted) {
    for (Item& child : children) {
      if (child.id == wanted) return this;
      if (Item* found = child.ParentOf(wanted)) return found;
    }
    return nullptr;
  }

  // As it comes back from a file: a keyword without values has an undefined one.
  Item AsLoaded() const {
    Item loaded = *this;
    if (!section && id != 0 && values.empty()) loaded.values = {0};
    std::transform(children.begin(), children.end(), loaded.children.begin(),
                   [](const Item& child) { return child.AsLoaded(); });
    return loaded;
  }

  // The place of the n-th child of the kind; the end if there is none.
  std::size_t PlaceOf(bool wantSection, unsigned n) const {
    std::size_t place = 0;
    while (place < children.size() && (children[place].section != wantSection || --n != 0)) ++place;
    return place;
  }
};

void ExpectSame(const Item& model, void* node) {
  ASSERT_EQ(zonGetNoNodes(node), static_cast<int>(model.children.size()));
  unsigned counts[2] = {0, 0};
  unsigned place = 0;
  for (const Item& item : model.children) {
    void* child = zonNodeByNum(node, ++place);
    ASSERT_EQ(zonGetName(child), item.name);
    const char* name = item.name.c_str();
    const unsigned number = ++counts[item.section];
    unsigned instance = 0;
    int instances = 0;
    for (const Item& other : model.children) {
      if (other.section != item.section || strcasecmp(other.name.c_str(), name) != 0) continue;
      ++instances;
      if (&other <= &item) ++instance;
    }
    ASSERT_EQ(zonGetInstanceNo(child), static_cast<int>(instance));
    ASSERT_EQ(zonGetNoInstances(child), instances);
    ASSERT_EQ((item.section ? zonSectionByNum : zonKeywordByNum)(node, number), child);
    ASSERT_EQ((item.section ? zonSectionByNameNum : zonKeywordByNameNum)(node, name, instance),
              child);
    if (item.section) {
      ExpectSame(item, child);
      continue;
    }
    ASSERT_EQ(zonGetNoParams(child), static_cast<int>(item.values.size()));
    for (unsigned v = 1; v <= item.values.size(); ++v) {
      ASSERT_EQ(zonGetInt(zonParamByNum(child, v)), item.values[v - 1]);
      ASSERT_EQ(zonGetInstanceNo(zonParamByNum(child, v)), static_cast<int>(v));
    }
  }
  ASSERT_EQ(zonGetNoSections(node), static_cast<int>(counts[1]));
  ASSERT_EQ(zonGetNoKeywords(node), static_cast<int>(counts[0]));  // the root has none
}

class Editor {
 public:
  Editor(void* file, unsigned seed) : file_(file), random_(seed) {}

  const Item& Model() const { return root_; }

  // Whatever the tree is written as loads as the same tree.
  void WriteAndLoad() {
    const std::string path = host::WriteFile("edited.zon", "");
    zonWrite(file_, path.c_str());
    const host::File again(zonLoadFile(path.c_str(), 0));
    ExpectSame(root_.AsLoaded(), zonGetRoot(again));
    host::Messages();
  }

  void Step() {
    if (Number(0, 3) == 0) return Build();
    Item* section = &root_;
    void* node = zonGetRoot(file_);
    for (;;) {
      const std::size_t place = section->PlaceOf(true, Number(1, 3));
      if (place == section->children.size() || (section != &root_ && Number(0, 2) == 0)) break;
      node = NodeAt(node, place);
      section = &section->children[place];
    }
    const unsigned action = Number(0, section == &root_ ? 3 : 9);
    if (action < 2 || action == 4 || action == 5) {
      InsertNew(*section, node, action < 2);
    } else if (action > 7) {
      EditValues(*section, node);
    } else if (!section->children.empty()) {
      EditOne(*section, node, action);
    }
  }

 private:
  unsigned Number(unsigned from, unsigned to) {
    return std::uniform_int_distribution<unsigned>(from, to)(random_);
  }
  std::string Name() {
    constexpr const char* kNames[] = {"a",   "A", "b", "grid", "GRID", "Grid2",
                                      "x_1", "c", "d", "e",    "f"};
    return kNames[Number(0, std::size(kNames) - 1)];
  }
  static std::vector<Item>::iterator At(Item& section, std::size_t place) {
    return section.children.begin() + static_cast<std::ptrdiff_t>(place);
  }
  void* NodeAt(void* node, std::size_t place) {
    return zonNodeByNum(node, static_cast<unsigned>(place + 1));
  }

  void InsertNew(Item& section, void* node, bool isSection) {
    const auto same = static_cast<unsigned>(
        std::count_if(section.children.begin(), section.children.end(),
                      [&](const Item& child) { return child.section == isSection; }));
    const unsigned position = Number(0, same + 2);
    const std::string name = Name();
    void* made =
        (isSection ? zoneInsertNewSection : zoneInsertNewKeyword)(node, name.c_str(), position);
    ASSERT_EQ(made != nullptr, position <= same + 1);
    ASSERT_EQ(zonGetErrorGlb(), made != nullptr ? 0 : isSection ? 1009 : 1007);
    if (made == nullptr) return;
    const std::size_t place =
        position > 0 ? section.PlaceOf(isSection, position) : section.children.size();
    section.children.insert(At(section, place), Item{isSection, name, {}, {}, ++lastId_});
    const std::string owner = zonGetNameGlb(node);
    ASSERT_EQ(zonGetNameGlb(made), owner.empty() ? name : owner + "." + name);
  }

  // A call of the builder, which goes by the cursor.
  void Build() {
    const std::string name = Name();
    const unsigned call = Number(0, 4);
    const bool accepted = call == 0 ? open_ == 0 : call == 3 ? keyword_ != 0 : open_ != 0;
    const int code = call == 0   ? zonAddTargetS(file_, name.c_str())
                     : call == 1 ? zonAddSectionS(file_, name.c_str())
                     : call == 2 ? zonAddKeywordS(file_, name.c_str())
                     : call == 3 ? zonAddIntS(file_, 7)
                                 : zonEndSectionS(file_);
    ASSERT_EQ(code, accepted ? 0 : 2000) << call;
    if (!accepted) return;
    if (call == 3) return root_.Find(keyword_)->values.push_back(7);
    if (call == 4) return OpenSection(root_.ParentOf(open_)->id);
    root_.Find(open_)->children.push_back(Item{call != 2, name, {}, {}, ++lastId_});
    if (call != 2) return OpenSection(lastId_);
    keyword_ = lastId_;
  }

  void OpenSection(int id) {
    open_ = id;
    keyword_ = 0;
  }

  // The cursor leaves what goes, for the section around it.
  void Leave(Item& item, const Item& parent) {
    if (keyword_ != 0 && item.Find(keyword_) != nullptr) keyword_ = 0;
    if (open_ != 0 && item.Find(open_) != nullptr) OpenSection(parent.id);
  }

  void Renew(Item& copy) {
    copy.id = ++lastId_;
    for (Item& child : copy.children) Renew(child);
  }

  void EditOne(Item& section, void* node, unsigned action) {
    const auto last = static_cast<unsigned>(section.children.size() - 1);
    const std::size_t from = Number(0, last);
    const std::size_t to = Number(0, last);
    Item copy = section.children[from];
    Renew(copy);
    if (action == 2) {
      ASSERT_EQ(zoneDeleteNode(NodeAt(node, from)), 0);
      Leave(section.children[from], section);
      section.children.erase(At(section, from));
    } else if (action == 3) {
      const std::string name = section.children[from].name = Name();
      ASSERT_EQ(
          (copy.section ? zoneRenameSection : zoneRenameKeyword)(NodeAt(node, from), name.c_str()),
          0);
    } else if (action == 6 && last < 12) {
      const unsigned after = Number(0, 1);
      ASSERT_NE(zonInsert(NodeAt(node, from), NodeAt(node, to), static_cast<int>(after)), nullptr);
      section.children.insert(At(section, to + after), copy);
    } else if (action == 7) {
      const bool fits = copy.section == section.children[to].section;
      host::Messages();
      ASSERT_EQ(zonCopy(NodeAt(node, from), NodeAt(node, to)), fits);
      ASSERT_EQ(host::Messages().size(), fits ? 0U : 1U);
      if (!fits || from == to) return;
      Item& target = section.children[to];
      for (Item& child : target.children) Leave(child, target);
      copy.id = target.id;
      target = copy;
    }
  }

  void EditValues(Item& section, void* node) {
    const std::size_t place = section.PlaceOf(false, Number(1, 4));
    if (place == section.children.size()) return;
    std::vector<int>& values = section.children[place].values;
    void* keyword = NodeAt(node, place);
    const unsigned count = static_cast<unsigned>(values.size());
    const unsigned n = Number(0, count + 1);
    const int value = static_cast<int>(Number(0, 1000));
    const auto at = values.begin() + (n == 0 ? count : std::min(n - 1, count));
    const unsigned action = Number(0, 2);
    const bool there = n >= 1 && n <= count;
    if (action == 0) {
      ASSERT_NE(zoneInsertParameterInt(keyword, n, value), nullptr);
      values.insert(at, value);
    } else if (action == 1) {
      ASSERT_EQ(zoneModifyParameterInt(keyword, n, value), there ? 0 : 1012);
      if (there) *at = value;
    } else {
      ASSERT_EQ(zoneDeleteParameterByNum(keyword, n), there ? 0 : 1012);
      if (there) values.erase(at);
    }
    zonGetErrorGlb();
  }

  void* file_;
  std::mt19937 random_;
  Item root_;
  int lastId_ = 0;
  int open_ = 0;  // the cursor: ids of the open section and of the current keyword, 0 for none
  int keyword_ = 0;
};

TEST(Editing, RandomEditsAgreeWithAModel) {
  for (const bool loaded : {false, true}) {
    const host::File file(loaded ? host::Load("") : zonCreate());
    Editor editor(file, loaded ? 7 : 8);
    for (int step = 0; step < 3000; ++step) {
      editor.Step();
      if (step % 5 == 0) ExpectSame(editor.Model(), zonGetRoot(file));
      if (step % 250 == 0) editor.WriteAndLoad();
      ASSERT_FALSE(testing::Test::HasFatalFailure()) << step;
    }
  }
}

TEST(Editing, TheCursorLeavesWhatGoes) {
  const host::File file(zonCreate());
  zonAddTarget(file, "A");
  zonAddSection(file, "B");
  zonAddKeyword(file, "k");
  zonAddClob(file);
  void* keyword = zonFindSectionByHandle(file, "A/B");
  keyword = zonKeywordByNum(keyword, 1);
  EXPECT_EQ(zoneModifyParameterInt(keyword, 1, 5), 0);  // the CLOB gives way
  EXPECT_EQ(zonAddClobIntS(file, 1), 2000);
  EXPECT_EQ(zonAddIntS(file, 6), 0);
  EXPECT_EQ(host::ShowTree(file), "{A{B{k(int 5, int 6)}}}");
  EXPECT_EQ(zoneDeleteNode(keyword), 0);
  EXPECT_EQ(zonAddIntS(file, 6), 2000);
  EXPECT_EQ(zonAddKeywordS(file, "m"), 0);
  EXPECT_EQ(zonCopy(zonTargetByNum(file, 1), zonFindSectionByHandle(file, "A/B")), 1);
  EXPECT_EQ(host::ShowTree(file), "{A{A{B{m()}}}}");
  EXPECT_EQ(zonAddIntS(file, 1), 2000);  // its keyword went with the old content
  EXPECT_EQ(zonAddKeywordS(file, "n"), 0);
  EXPECT_EQ(host::ShowTree(file), "{A{A{B{m()} n()}}}");
  EXPECT_EQ(zonCopy(zonFindSectionByHandle(file, "A/A/B"), zonTargetByNum(file, 1)), 1);
  EXPECT_EQ(host::ShowTree(file), "{B{m()}}");
  EXPECT_EQ(zoneDeleteSectionByNameNum(zonGetRoot(file), "b", 1), 0);
  EXPECT_EQ(zonAddTargetS(file, "C"), 0);
  EXPECT_EQ(zonGetErrorGlb(), 0);
}

TEST(Editing, ValuesChangeInPlaceOrGiveWay) {
  const host::File file(host::Load("[A] k = 1, 2.5, 'x', true, |f|, 7 default(d) = 3, EndSect"));
  void* section = zonTargetByNum(file, 1);
  void* keyword = zonKeywordByNum(section, 1);
  std::vector<void*> before;
  for (unsigned n = 1; n <= 6; ++n) before.push_back(zonParamByNum(keyword, n));
  EXPECT_EQ(zoneModifyParameterInt(keyword, 1, -4), 0);
  EXPECT_EQ(zoneModifyParameterDouble(keyword, 2, 3.0), 0);
  EXPECT_EQ(zoneModifyParameterString(keyword, 3, ""), 0);
  EXPECT_STREQ(zonGetString(before[2]), "");
  EXPECT_EQ(zoneModifyParameterString(keyword, 3, "y"), 0);
  EXPECT_EQ(zoneModifyParameterString(keyword, 3, zonGetString(before[2])), 0);
  EXPECT_EQ(zoneModifyParameterBool(keyword, 4, 0), 0);
  EXPECT_EQ(zoneModifyParameterFilename(keyword, 5, "g/h"), 0);
  for (unsigned n = 1; n <= 5; ++n) EXPECT_EQ(zonParamByNum(keyword, n), before[n - 1]) << n;
  EXPECT_EQ(zoneModifyParameterFloat(keyword, 6, 0.5F), 0);
  EXPECT_NE(zonParamByNum(keyword, 6), before[5]);
  EXPECT_EQ(zonGetInt(before[1]), 3);  // all views are renewed
  EXPECT_EQ(zoneModifyParameterDouble(keyword, 6, 0.25), 0);
  EXPECT_NE(zonNumericIsIntType(zonParamByNum(keyword, 6)), 1);
  // A placeholder itself changes; a definition is renamed and edited as a keyword is.
  void* definition = zonNodeByNum(section, 2);
  EXPECT_EQ(zoneModifyParameterInt(definition, 2, 9), 0);
  EXPECT_EQ(zoneRenameKeyword(definition, "e"), 0);
  EXPECT_NE(zoneInsertParameterDefault(definition, 1), nullptr);
  EXPECT_NE(zoneInsertParameterUndefined(definition, 4), nullptr);
  EXPECT_EQ(host::ShowTree(file),
            "{A{k(int -4, real 3.0, string y, bool false, file g/h, real 0.25) "
            "default e(default, int 3, int 9, undef)}}");
}

TEST(Editing, EveryKindIsInserted) {
  const host::File file(host::Load("[A] k = 1 EndSect [B] EndSect"));
  void* keyword = zonKeywordByNum(zonTargetByNum(file, 1), 1);
  for (void* made :
       {zoneInsertParameterFloat(keyword, 0, 0.5F), zoneInsertParameterDouble(keyword, 0, 2.0),
        zoneInsertParameterBool(keyword, 0, 7), zoneInsertParameterString(keyword, 1, "s"),
        zoneInsertParameterFilename(keyword, 6, "f\\g")}) {
    EXPECT_EQ(zonIsParam(made), 1);
  }
  EXPECT_EQ(zoneDeleteSectionByNum(zonGetRoot(file), 2), 0);
  EXPECT_EQ(host::ShowTree(file),
            "{A{k(string s, int 1, real 0.5, real 2.0, bool true, file f\\g)}}");
}

TEST(Editing, RefusalsTellTheirKind) {
  const host::File file(host::Load("[A] k = 1 EndSect"));
  void* root = zonGetRoot(file);
  void* section = zonTargetByNum(file, 1);
  void* keyword = zonKeywordByNum(section, 1);
  void* value = zonParamByNum(keyword, 1);
  const std::string before = host::ShowTree(file);
  const std::pair<int, const char*> kinds[] = {{1006, ""},
                                               {1007, " (CzonKeyword)"},
                                               {1009, " (CzonSection)"},
                                               {1011, " (CzonTargetList)"},
                                               {1012, " (CzonParam)"}};
  const std::pair<int, std::function<int()>> rows[] = {
      {0, [] { return zoneDeleteNode(nullptr); }},
      {3, [&] { return zoneDeleteSectionByNum(keyword, 1); }},
      {2, [&] { return zoneDeleteSectionByNum(root, 2); }},
      {2, [&] { return zoneDeleteKeywordByNum(root, 1); }},
      {2, [&] { return zoneDeleteNode(root); }},
      {2, [&] { return zoneRenameSection(root, "x"); }},
      {1, [&] { return zoneDeleteKeywordByNameNum(section, "k", 2); }},
      {1, [&] { return zoneModifyParameterInt(section, 1, 1); }},
      {1, [&] { return zoneRenameKeyword(value, "x"); }},
      {4, [&] { return zoneModifyParameterBool(keyword, 2, 1); }},
      {4, [&] { return zoneDeleteParameterByNum(keyword, 0); }},
      {2, [&] { return zonInsert(keyword, section, 1) ? 0 : zonPeekErrorGlb(); }},
      {4, [&] { return zoneInsertParameterInt(keyword, 3, 1) ? 0 : zonPeekErrorGlb(); }}};
  for (const auto& [kind, call] : rows) {
    zonGetErrorGlb();
    host::Messages();
    EXPECT_EQ(call(), kinds[kind].first);
    EXPECT_EQ(zonGetErrorGlb(), kinds[kind].first);
    EXPECT_EQ(host::Messages(),
              std::vector<std::string>{std::string("Invalid zonNode") + kinds[kind].second});
  }
  EXPECT_EQ(host::ShowTree(file), before);
}

TEST(Editing, CopiesLeaveNothingBehind) {
  const host::File file(
      host::Load("[A] {remark} x = 1 [S()] y = 'z' EndSect EndSect [B] q = 2 EndSect"));
  const host::File other(zonCreate());
  zonAddTarget(other, "T");
  zonEndSection(other);
  void* target = zonTargetByNum(other, 1);
  EXPECT_EQ(zonCopy(zonTargetByNum(file, 1), target), 1);
  EXPECT_EQ(zonTargetByNum(other, 1), target);
  EXPECT_EQ(host::ShowTree(other), "{A{remark}{x(int 1) S(){y(string z)}}}");
  EXPECT_EQ(zonTargetByNameNum(other, "T", 1), nullptr);
  EXPECT_EQ(zonTargetByNameNum(other, "a", 1), target);
  EXPECT_EQ(zonCopy(target, target), 1);
  EXPECT_STREQ(zonGetNameGlb(zonKeywordByNum(zonSectionByNum(target, 1), 1)), "A.S.y");
  // What is known of definitions is forgotten as they change.
  const host::File defaults(host::Load("[A] default (d) = 1 default (e) = 2 d = 0 EndSect"));
  void* section = zonTargetByNum(defaults, 1);
  void* wanted = zoneInsertParameterDefault(zonKeywordByNum(section, 1), 1);
  ASSERT_NE(zoneInsertNewKeyword(section, "k", 1), nullptr);
  EXPECT_EQ(zonGetInt(zonFindDefault(wanted)), 1);
  EXPECT_EQ(zoneDeleteKeywordByNum(section, 1), 0);
  EXPECT_EQ(zonGetInt(zonFindDefault(wanted)), 1);
  EXPECT_EQ(zonCopy(zonNodeByNum(section, 2), zonNodeByNum(section, 1)), 1);
  EXPECT_EQ(zonFindDefault(wanted), wanted);
  EXPECT_EQ(zoneRenameKeyword(zonNodeByNum(section, 2), "D"), 0);
  EXPECT_EQ(zonGetInt(zonFindDefault(wanted)), 2);
  EXPECT_EQ(zoneDeleteNode(zonNodeByNum(section, 2)), 0);
  EXPECT_EQ(zonFindDefault(wanted), wanted);
  EXPECT_EQ(host::ShowTree(defaults), "{A{default e(int 2) d(default, int 0)}}");
  // Trees without a file.
  CzonSection from("x", 0, 0), onto("y", 0, 0);
  from.AddKeyword(new CzonKeyword("k", 0, 0));
  CzonNode* const value = new CzonInt("1");
  from.KeywordByNum(1)->AddParam(static_cast<CzonParam*>(value));
  EXPECT_EQ(zonCopy(&from, &onto), 1);
  EXPECT_EQ(host::Show(&onto), "x{k(int 1)}");
  EXPECT_EQ(zonCopy(value, value), 0);
  EXPECT_EQ(zonInsert(&from, &onto, 0), nullptr);
  EXPECT_EQ(zonInsert(value, onto.KeywordByNum(1), 0), nullptr);
  EXPECT_EQ(zonInsert(onto.KeywordByNum(1), value, 0), nullptr);
  EXPECT_EQ(zoneDeleteKeywordByNum(&onto, 1), 0);
  EXPECT_EQ(host::Show(&onto) + std::to_string(host::Messages().size()), "x{}4");
  zonGetErrorGlb();
  EXPECT_EQ(zonCopy(zonTargetByNum(file, 2), target), 1);
  EXPECT_STREQ(zonGetNameGlb(zonKeywordByNum(target, 1)), "B.q");
  EXPECT_EQ(zonGetLevel(target), 1);
}

TEST(Editing, Scales) {
  constexpr unsigned kCount = 100000;
  const host::File file(zonCreate());
  zonAddTarget(file, "A");
  for (unsigned n = 0; n < kCount; ++n) zonAddKeyword(file, ("k" + std::to_string(n)).c_str());
  void* section = zonTargetByNum(file, 1);
  const auto start = std::chrono::steady_clock::now();
  for (unsigned n = 0; n < 500; ++n) {
    zoneInsertNewKeyword(section, ("new" + std::to_string(n)).c_str(), 1 + n * 100);
    zoneDeleteKeywordByNum(section, kCount - n * 100);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, host::Seconds(5));
  for (unsigned n = 0; n < kCount; ++n) zoneInsertNewKeyword(section, "same", 0);
  EXPECT_EQ(zonGetNoInstances(zonKeywordByNameNum(section, "same", 1)), static_cast<int>(kCount));
  for (unsigned n = kCount; n > 0; --n) zoneDeleteKeywordByNameNum(section, "same", n);
  EXPECT_EQ(zonGetNoKeywords(section), static_cast<int>(kCount));
  // Quadratic work would take minutes.
  EXPECT_LT(std::chrono::steady_clock::now() - start, host::Seconds(15));
}

}  // namespace
