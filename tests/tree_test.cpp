// Nodes: their kinds, lists and names, the order of visits, copies, the end of a tree.
#include <deque>
#include <typeinfo>

#include "treetext.h"

namespace {

using namespace host;

CzonTargetList& RootOf(void* file) {
  return As<CzonTargetList>(zonGetRoot(file));
}

// A number of a host.
struct HostNumber : CzonNumeric {
  using CzonNumeric::CzonNumeric;
  CzonNode* CreateObj() override { return new HostNumber; }
};
static_assert(std::is_abstract_v<CzonNode> && std::is_abstract_v<CzonNumeric>);

// Expects the class and the kinds of a node, that it creates nodes of its own class, and that a
// copy from itself or from null changes nothing.
void ExpectKinds(const std::string& kinds, CzonNode* made) {
  const std::unique_ptr<CzonNode> node(made), created(made->CreateObj());
  const CzonNode &seen = *node, &fresh = *created;
  SCOPED_TRACE(typeid(seen).name());
  EXPECT_EQ(typeid(fresh) == typeid(seen), dynamic_cast<CzonStringRef*>(made) == nullptr);
  const std::string before = Show(made);
  made->Copy(made);
  made->Copy(nullptr);
  EXPECT_EQ(Show(made), before);
  const std::string facts = Facts(static_cast<CzonBase*>(made));
  EXPECT_EQ(facts.substr(0, facts.find(';')), "class " + kinds);
}

TEST(Nodes, KindsOfEachClass) {
  int number = 3;
  float single = 1.5F;
  double real = 2.5;
  const std::pair<const char*, std::vector<CzonNode*>> rows[] = {
      {"0:", {new CzonNamedNode}},
      {"1: section", {new CzonTargetList}},
      {"2: section", {new CzonSection("S", 1, 1)}},
      {"3: keyword", {new CzonKeyword("k", 1, 1)}},
      {"4: keyword", {new CzonDefaultDef("d", 1, 1)}},
      {"5: param", {new CzonParam("x"), new CzonClob("Integer:1")}},
      {"5: param numeric float double", {new HostNumber("1")}},
      {"6: param numeric float double inttype", {new CzonInt("7"), new CzonIntDef("7")}},
      {"6: param numeric int inttype", {new CzonIntDef, new CzonIntRef(&number)}},
      {"6: param numeric inttype", {new CzonIntRef(nullptr)}},
      {"7: param numeric float double",
       {new CzonReal("2"), new CzonFloat("2"), new CzonFloatDef("1e39")}},
      {"7: param numeric double",
       {new CzonDouble("1e39"), new CzonDoubleDef("1e39"), new CzonDoubleRef(&real)}},
      {"7: param numeric float", {new CzonFloatRef(&single)}},
      {"7: param numeric", {new CzonFloatRef(nullptr), new CzonDoubleRef(nullptr)}},
      {"8: param bool", {new CzonBool("true"), new CzonBoolRef(&number)}},
      {"9: param string", {new CzonString("x"), new CzonStringRef}},
      {"10: param file", {new CzonFilename("x")}},
      {"10: param", {new CzonDateTime("x")}},
      {"11: param default", {new CzonDefaultPar}},
      {"12: param", {new CzonSubstit("x")}},
      {"14: param", {new CzonUnknown("x")}},
      {"15: param undefined", {new CzonUndefinedPar("x")}}};
  for (const auto& [kinds, nodes] : rows) {
    for (CzonNode* node : nodes) ExpectKinds(kinds, node);
  }
}

TEST(Nodes, RefuseWhatTheyCannotAnswer) {
  const CzonParam node;
  Messages();
  EXPECT_EQ(node.GetFilename(), nullptr);
  EXPECT_EQ(node.SectionByNum(1), nullptr);
  EXPECT_EQ(node.SectionByName("a"), nullptr);
  EXPECT_EQ(node.SectionByNameNum("a", 1), nullptr);
  EXPECT_EQ(node.KeywordByName("a"), nullptr);
  EXPECT_EQ(node.KeywordByNameNum("a", 1), nullptr);
  EXPECT_EQ(node.ParamByNum(1), nullptr);
  EXPECT_EQ(Messages(), Texts(7, "Function invalid in this context"));
  EXPECT_EQ(node.GetNameGlb(), "");
  EXPECT_EQ(node.GetClob(), nullptr);
  EXPECT_EQ(node.FindDefault(nullptr, "k", 1), nullptr);
  EXPECT_EQ(Messages(), Texts{});
}

TEST(NameList, DoesAsAPlainListDoes) {
  std::mt19937 random(1);
  const auto below = [&](std::size_t limit) { return static_cast<unsigned>(random() % limit); };
  for (const unsigned variety : {1U, 6U, 11U, 40U, 700U}) {
    std::vector<std::string> names = {"",     " ",    "Ab",   "aB",
                                      "\xC4", "\xC4", "\xE4", "\xE4"};  // in pairs
    while (names.size() < variety) names.push_back("Name" + std::to_string(names.size() / 2));
    std::deque<CzonKeyword> nodes;
    std::vector<std::pair<CzonKeyword*, unsigned>> order;  // with the index of the name
    CzonNameList<CzonKeyword> list;
    for (unsigned step = 0; step < 4000; ++step) {
      const bool grow = order.empty() || below(10) < (step / 1000 % 2 == 0 ? 8U : 2U);
      const unsigned place = below(order.size() + (grow ? 1 : 0)), name = below(variety);
      if (grow) {
        CzonKeyword* node = &nodes.emplace_back(names[name], 0, 0);
        place == order.size() ? list.Append(node) : list.Insert(node, place + 1);
        order.insert(order.begin() + place, {node, name});
      } else {
        EXPECT_EQ(list.Remove(order[place].first), 0);
        order.erase(order.begin() + place);
      }
      if (step % 40 != 0) continue;
      ASSERT_EQ(list.Count(), order.size());
      for (unsigned n = 0; n < order.size(); ++n) ASSERT_EQ(list.ByNum(n + 1), order[n].first);
      for (unsigned at = 0; at < variety; ++at) {
        unsigned n = 0;
        for (const auto& [node, filed] : order) {
          if (filed / 2 != at / 2) continue;
          ASSERT_EQ(list.ByNameNum(names[at], ++n), node);
          ASSERT_EQ(node->GetInstanceNo(), static_cast<int>(n));
        }
        ASSERT_EQ(list.ByNameNum(names[at], n + 1), nullptr);
        ASSERT_EQ(list.CountOf(CzonKeyword(names[at], 0, 0)), n);
      }
    }
  }
}

TEST(NameList, MovesAPlaceOutsideToAnEnd) {
  for (const auto& [place, number] : {std::pair(0U, 1U), {4000U, 3U}}) {
    CzonKeyword a("k", 0, 0), b("K", 0, 0), filed("K", 0, 0);
    CzonNameList<CzonKeyword> list;
    for (CzonKeyword* node : {&a, &b}) list.Append(node);
    EXPECT_EQ(list.InsertIntoHashtable(&filed, place), 0);
    EXPECT_EQ(list.ByNameNum("k", number), &filed) << place;
    CzonKeyword inserted("x", 0, 0);
    list.Insert(&inserted, place);
    EXPECT_EQ(list.ByNum(number), &inserted) << place;
  }
}

TEST(NameList, RefusesWhatItDoesNotHold) {
  CzonKeyword absent("k", 0, 0), held("K", 0, 0);
  CzonNameList<CzonKeyword> list;
  EXPECT_EQ(list.EraseFromHashtable(nullptr), 1006);
  EXPECT_EQ(list.AddToIndex(nullptr), 0);
  EXPECT_EQ(list.AddToIndex(&held), 1);
  EXPECT_TRUE(list.Holds(&held));
  EXPECT_FALSE(list.Holds(&absent));
  EXPECT_EQ(list.EraseFromHashtable(&absent), 1006);
  EXPECT_EQ(list.Remove(&absent), 1006);
  EXPECT_EQ(list.InsertIntoHashtable(nullptr, 1), 1);
}

// Files a, b and a again; then a is erased twice. A Copy resets the number that a had.
TEST(NameList, FindsTheFirstEntryOfANodeFiledTwice) {
  for (const bool isCopiedOver : {false, true}) {
    CzonKeyword a("k", 0, 0), b("k", 0, 0), source("k", 0, 0);
    CzonNameList<CzonKeyword> list;
    for (CzonKeyword* node : {&a, &b}) list.AddToIndex(node);
    if (isCopiedOver) a.Copy(&source);
    list.AddToIndex(&a);
    EXPECT_EQ(a.GetInstanceNo(), 3);
    EXPECT_EQ(list.EraseFromHashtable(&a), 0);
    EXPECT_EQ(a.GetInstanceNo(), 2);
    EXPECT_EQ(list.ByNameNum("k", 1), &b);
    EXPECT_EQ(list.EraseFromHashtable(&a), 0);
    EXPECT_EQ(list.EraseFromHashtable(&a), 1006);
    EXPECT_EQ(list.CountOf(b), 1U);
  }
}

TEST(Nodes, GlobalNames) {
  const File file(Load("[A] [B] k = 1 EndSect EndSect"));
  CzonSection& below = *RootOf(file).SectionByNum(1)->SectionByNum(1);
  EXPECT_EQ(below.NodeByNum(1)->GetNameGlb(), "A.B.k");
  below.Clear();
  EXPECT_EQ(zoneRenameSection(&below, "C"), 0);
  EXPECT_EQ(below.GetNameGlb(), "A.C");
  auto* early = new CzonSection("Early", 1, 0);
  early->AddKeyword(new CzonKeyword("k", 0, 0));
  EXPECT_EQ(early->GetNameGlb(), "");
  RootOf(file).AddSection(early);
  EXPECT_EQ(early->NodeByNum(1)->GetNameGlb(), ".k") << "filled before it was added";
}

struct HostRoot : CzonTargetList {
  const std::string& GetZonFilename() const override { return name; }
  std::string name = "host.zon";
};

TEST(Nodes, FileNamesAreTheRoots) {
  HostRoot root;
  auto* section = new CzonSection("S", 0, 0);
  section->AddKeyword(new CzonKeyword("k", 0, 0));
  section->SetZonFilename("own.zon");
  EXPECT_EQ(section->NodeByNum(1)->GetZonFilename(), "own.zon");
  root.AddSection(section);
  EXPECT_EQ(section->NodeByNum(1)->GetZonFilename(), "host.zon");
  EXPECT_EQ(section->GetZonFilename(), "host.zon");
}

TEST(Nodes, AnOwnerMayBeNoList) {
  CzonNamedNode owner, copy;
  auto* inner = new CzonNamedNode;
  auto* keyword = new CzonKeyword("k", 0, 0);
  const CzonKeyword source("j", 0, 0);
  owner.AddNode(inner);
  inner->AddNode(keyword);
  keyword->Copy(&source);
  EXPECT_EQ(keyword->GetNoInstances(), 0U);
  copy.Copy(&owner);
  EXPECT_EQ(copy.NodeByNum(1)->NodeByNum(1)->GetName(), "j");
  EXPECT_DEATH(keyword->GetZonFilename(), "^zonnode: .*CzonTargetList");
  const File file(Load("[A] k = 1, 2 EndSect"));
  copy.Copy(&As(KeywordOf(file)));
  EXPECT_EQ(copy.GetNoNodes(), 2U);
}

TEST(Nodes, ACopiedSectionFindsKeywordsBesideAValue) {
  CzonSection section, copy;
  section.AddKeyword(new CzonKeyword("j", 0, 0));
  section.AddNode(new CzonInt("5"));
  section.AddKeyword(new CzonKeyword("k", 0, 0));
  copy.Copy(&section);
  EXPECT_EQ(copy.GetNoKeywords(), 2U);
  EXPECT_EQ(copy.KeywordByName("j"), copy.NodeByNum(1));
}

TEST(Nodes, FlagsAndNullChildren) {
  CzonSection section("S", 1, 0);
  section.SetOpenList();
  section.SetMultiMandat(0, 7);
  EXPECT_EQ(section.GetFlags(), CzonNamedNode::kMandat | CzonNamedNode::kOpenList);
  section.AddNode(nullptr);
  section.AddSection(nullptr);
  section.AddKeyword(nullptr);
  EXPECT_EQ(Show(&section), "S{}");
}

std::string visited;
void Note(CzonNode* node) {
  visited += node->IsParam() ? static_cast<CzonParam*>(node)->GetText() : node->GetName();
}
std::string VisitsFrom(CzonNode* start) {
  start->Explore(Note);
  return std::exchange(visited, "");
}

TEST(Explore, VisitsParentsFirstInTheOrderOfTheFile) {
  File file(Load("[A] k = 1, 2 [B] default (d) = 3 EndSect l = 4 EndSect [C] EndSect"));
  CzonSection* section = RootOf(file).SectionByNum(1);
  EXPECT_EQ(VisitsFrom(section->KeywordByNum(1)->NodeByNum(2)), "2");
  EXPECT_EQ(VisitsFrom(section->KeywordByNum(1)), "k12");
  EXPECT_EQ(VisitsFrom(section->SectionByNum(1)), "Bd3");
  EXPECT_EQ(VisitsFrom(&RootOf(file)), "Ak12Bd3l4C");
}

TEST(Explore, VisitsWhatTheVisitorAdds) {
  File file(Load("[A] k = 1 EndSect [C] EndSect"));
  RootOf(file).Explore([](CzonNode* node) {
    Note(node);
    if (node->GetName() != "k" && node->GetName() != "C") return;
    auto* section = static_cast<CzonSection*>(node->IsKeyword() ? node->GetOwner() : node);
    for (const char* name : {"x", "y", "z"}) section->AddKeyword(new CzonKeyword(name, 0, 0));
  });
  EXPECT_EQ(std::exchange(visited, ""), "Ak1xyzCxyz");
}

void ExpectFiled(CzonNode* node) {
  const auto n = static_cast<unsigned>(node->GetInstanceNo());
  if (n == 0 && !node->IsParam()) return;
  CzonNode *owner = node->GetOwner(), *found = owner->NodeByNum(n);
  if (node->IsSection()) found = owner->SectionByNameNum(node->GetName().c_str(), n);
  if (node->IsKeyword()) found = owner->KeywordByNameNum(node->GetName().c_str(), n);
  EXPECT_EQ(found, node);
}

TEST(Copy, IsDeepAndFiledAndStandsAlone) {
  void* source = Load(
      "[T] {t} i = 5 {of 5}, -2.5, 'it', |a|, true, #d#, %1, '<CLOB:Integer:7>',, "
      "[U] default (d) = ,3 k = 1 EndSect [u] EndSect [U] K=1 EndSect EndSect");
  File target(Load("[Gone] [Under] k = 1 EndSect l = 1, 2 EndSect"));
  CzonTargetList root, fresh, &from = RootOf(source), &loaded = RootOf(target);
  CzonSection& section = *from.SectionByNum(1);
  section.SetMultiMandat(1, 1);
  from.SetResultRoot("results");
  const std::pair<CzonTargetList*, CzonTargetList*> copies[] = {
      {&root, &from}, {&fresh, &from}, {loaded.SectionByNum(1), &section}, {&loaded, &root}};
  for (const auto& [to, of] : copies) {
    if (to == &loaded) zonClose(&source);
    to->Copy(of);
    to->Copy(to);
    EXPECT_EQ(Show(to), Show(of));
    to->AddSection(new CzonSection("u", 0, 0));
    to->Explore(ExpectFiled);
  }
  EXPECT_NE(loaded.GetHandle(), nullptr);
  EXPECT_EQ(root.GetHandle(), nullptr);
  EXPECT_EQ(fresh.GetResultRoot(), "results");
  EXPECT_EQ(loaded.GetResultRoot(), "results");
}

// A section as the source is covered by the edits of fuzz/edit_fuzz.cpp.
TEST(Copy, RootFromItsOwnSection) {
  CzonTargetList list;
  list.AddSection(new CzonSection("S", 0, 0));
  list.SectionByNum(1)->AddSection(new CzonSection("T", 0, 0));
  list.Copy(list.SectionByNum(1));
  EXPECT_EQ(Show(&list), "S{T{}}");
  EXPECT_EQ(list.SectionByName("t"), list.NodeByNum(1));
}

TEST(Nodes, ResultSettingsMayBeNull) {
  CzonTargetList root;
  root.SetResultRoot(std::string("set"));
  root.SetResultRoot(static_cast<const char*>(nullptr));
  EXPECT_EQ(root.GetResultRoot(), "");
  root.GetCustomResultFolder(nullptr, nullptr);
}

int living = 0;
template <class T>
struct Counted : T {
  Counted() { ++living; }
  ~Counted() override { --living; }
};

// Puts nodes of the host below a section that has a keyword.
int Fill(CzonSection& section) {
  auto* below = new Counted<CzonSection>;
  below->AddKeyword(new Counted<CzonKeyword>);
  section.AddSection(below);
  section.KeywordByNum(1)->AddParam(new Counted<CzonString>);
  return living;
}

TEST(Destruction, TakesEveryNodeAlong) {
  {
    File file(Load("[A] k = 'a' {r} [B] EndSect EndSect [C] k = 'a' [B] EndSect EndSect"));
    CzonSection alone, &filled = *RootOf(file).SectionByNum(1),
                       &plain = *RootOf(file).SectionByNum(2);
    EXPECT_EQ(Fill(filled), 3);
    filled.Copy(&plain);
    EXPECT_EQ(living, 0);
    alone.Copy(&plain);
    EXPECT_EQ(Fill(alone), 3);
    EXPECT_EQ(Fill(filled), 6);
    plain.SectionByNum(1)->AddDefaultDef(new Counted<CzonDefaultDef>);
  }
  EXPECT_EQ(living, 0);
}

// Neither the compiler nor a sanitizer sees that there is no node.
__attribute__((noinline, no_sanitize("undefined"))) void AskNullForItsFile() {
  CzonNode* volatile none = nullptr;
  const CzonNode* node = none;
  node->CzonNode::GetZonFilename();
}

// A keyword of a host with a name of its own.
struct HostKeyword : CzonKeyword {
  HostKeyword(const std::string& stored, std::string name)
      : CzonKeyword(stored, 0, 0), shown(std::move(name)) {}
  const std::string& GetName() const override { return shown; }
  std::string shown;
};

TEST(HostClasses, AreFoundByTheNameThatTheyWereFiledUnder) {
  CzonSection section("S", 0, 0);
  auto* keyword = new HostKeyword("stored", "Shown");
  section.AddKeyword(new CzonKeyword("shown", 0, 0));
  section.AddKeyword(keyword);
  EXPECT_EQ(section.KeywordByNameNum("SHOWN", 2), keyword);
  EXPECT_EQ(section.KeywordByName("stored"), nullptr);
  EXPECT_EQ(keyword->GetNoInstances(), 2U);
  EXPECT_EQ(zoneDeleteKeywordByNum(&section, 1), 0);
  EXPECT_EQ(keyword->GetInstanceNo(), 1);
  keyword->shown = "other";
  EXPECT_EQ(section.KeywordByName("shown"), keyword);
  EXPECT_EQ(section.KeywordByName("other"), nullptr);
  EXPECT_EQ(keyword->GetNameGlb(), "other");  // of the level below a root
  EXPECT_EQ(zoneDeleteNode(keyword), 1006);
  EXPECT_EQ(zoneRenameKeyword(keyword, "new"), 1006);
  EXPECT_EQ(Heard(), "1006 Invalid zonNode Invalid zonNode");
  keyword->shown = "shown";
  EXPECT_EQ(zoneRenameKeyword(keyword, "new"), 0);  // which it does not show
  EXPECT_EQ(section.KeywordByName("shown"), keyword);
  EXPECT_EQ(zoneDeleteNode(keyword), 0);
  EXPECT_EQ(section.KeywordByName("shown"), nullptr);
}

TEST(HostClasses, FindDefinitionsByTheirGetName) {
  CzonTargetList root;
  auto* section = new CzonSection("S", 0, 0);
  root.AddSection(section);
  auto* definition = new CzonDefaultDef("d", 0, 0);
  definition->AddParam(new CzonInt("7"));
  section->AddDefaultDef(definition);
  auto* keyword = new HostKeyword("k", "D");
  keyword->AddParam(new CzonDefaultPar);
  section->AddKeyword(keyword);
  EXPECT_EQ(keyword->ParamByNum(1)->GetText(), "7");
}

std::string calls;  // of the operations of HostSection

struct HostSection : CzonSection {
  HostSection() = default;
  explicit HostSection(const std::string& name) : CzonSection(name, 0, 0) {}
  ~HostSection() override {
    EXPECT_EQ(SectionByName("b"), SectionByNum(1));
    calls += "gone with " + Show(this) + ";";
  }
  CzonNode* CreateObj() override { return new HostSection; }
  const std::string& GetNameGlb() const override { return global; }
  void Explore(void (*)(CzonNode*)) override { calls += "explored " + GetName() + ";"; }
  CzonParam* FindDefault(CzonNode* start, const std::string& name, unsigned n) const override {
    calls += "default " + name + " of " + start->GetName() + ";";
    return CzonSection::FindDefault(start, name, n);
  }
  void Copy(const CzonNode* source) override {
    CzonSection::Copy(source);
    calls += "copied " + GetName() + ";";
  }
  std::string global = "Global";
};

// The tree A{H{B{k()}}}, in which H is a section of a host.
struct WithHostSection : CzonTargetList {
  WithHostSection() {
    AddSection(new CzonSection("A", 0, 0));
    SectionByNum(1)->AddSection(host = new HostSection("H"));
    host->AddSection(below = new CzonSection("B", 0, 0));
    below->AddKeyword(new CzonKeyword("k", 0, 0));
    calls.clear();
  }
  HostSection* host;
  CzonSection* below;
};

TEST(HostClasses, HaveTheirOperationsCalled) {
  calls.clear();
  {
    WithHostSection list;
    EXPECT_EQ(list.below->KeywordByNum(1)->GetNameGlb(), "Global.B.k");
    list.Explore([](CzonNode* node) { calls += node->GetName() + ";"; });
    EXPECT_EQ(calls, "A;explored H;");
    calls.clear();
    list.below->KeywordByNum(1)->AddParam(new CzonDefaultPar);
    list.below->KeywordByNum(1)->ParamByNum(1);
    EXPECT_EQ(calls, "default k of B;");
    calls.clear();
    CzonTargetList copy;
    copy.Copy(&list);
    EXPECT_EQ(calls, "copied H;");
    EXPECT_EQ(Show(&copy), "{A{H{B{k(default)}}}}");
    calls.clear();
  }
  EXPECT_EQ(calls, "gone with H{B{k(default)}};gone with H{B{k(default)}};");
}

TEST(HostClasses, AreCopiedByTheirCopy) {
  WithHostSection list;
  HostSection source("X");
  auto* second = new HostSection("X");
  list.SectionByNum(1)->AddSection(second);
  EXPECT_EQ(zonCopy(&source, list.host), 1);
  EXPECT_EQ(calls, "copied X;");
  EXPECT_EQ(Show(&list), "{A{X{} X<2>{}}}");
}

TEST(TreeDeath, BrokenInvariantsEndTheProcess) {
  const CzonParam value;
  CzonKeyword keyword, target;
  CzonSection section;
  CzonTargetList list;
  keyword.AddParam(new CzonStringRef);
  EXPECT_DEATH(section.Copy(&value), "^zontarli: .*Copy.*`Src'");
  EXPECT_DEATH(list.Copy(&value), "^zontarli: .*Copy.*`Src'");
  EXPECT_DEATH(target.Copy(&value), "^zonnamno: .*Copy.*`Src'");
  EXPECT_DEATH(target.Copy(&keyword), "^zonnamno: .*Copy.*`typeid");
  EXPECT_DEATH(CzonTargetList().FindDefault(nullptr, "k", 1), "^zonnamno: .*FindDefault.*`Ok'");
  EXPECT_DEATH(AskNullForItsFile(), "^zonnode: .*GetZonFilename.*`pOwner != 0'");
}

}  // namespace
