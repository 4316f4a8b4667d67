// Nodes: their kinds, lists and names, the order of visits, copies, the end of a tree, depth, size.
#include <deque>
#include <typeinfo>

#include "host.h"

namespace {

using host::As, host::File, host::Load, host::Show;

CzonTargetList& RootOf(void* file) {
  return As<CzonTargetList>(zonGetRoot(file));
}

// A number of a host.
struct HostNumber : CzonNumeric {
  using CzonNumeric::CzonNumeric;
  CzonNode* CreateObj() override { return new HostNumber; }
};
static_assert(std::is_abstract_v<CzonNode> && std::is_abstract_v<CzonNumeric>);

// Of each node the class, a letter for each kind that it is, a mark if it makes nodes of another.
template <class... Nodes>
std::string Kinds(Nodes*... nodes) {
  std::string kinds;
  for (CzonNode* made : {static_cast<CzonNode*>(nodes)...}) {
    const std::unique_ptr<CzonNode> node(made), created(made->CreateObj());
    const CzonNode &seen = *node, &fresh = *created;
    const std::string before = Show(made);
    made->Copy(made);
    made->Copy(nullptr);
    EXPECT_EQ(Show(made), before);
    const std::pair<char, int> answers[] = {
        {'s', seen.IsSection()},    {'k', seen.IsKeyword()},     {'p', seen.IsParam()},
        {'D', seen.IsDefaultDef()}, {'n', seen.IsNumeric()},     {'f', seen.IsFloat()},
        {'d', seen.IsDouble()},     {'i', seen.IsInt()},         {'t', seen.IsString()},
        {'P', seen.IsDefaultPar()}, {'b', seen.IsBool()},        {'F', seen.IsFilename()},
        {'c', seen.IsClob()},       {'u', seen.IsUndefinedPar()}};
    kinds += " " + std::to_string(seen.GetSyntaxClass());
    for (const auto& [letter, answer] : answers) kinds.append(answer != 0 ? 1 : 0, letter);
    if (typeid(fresh) != typeid(seen)) kinds += '!';
  }
  return kinds;
}

TEST(Nodes, AnswerAsTheirClass) {
  int number = 3;
  float single = 1.5F;
  double real = 2.5;
  EXPECT_EQ(
      Kinds(new CzonNamedNode, new CzonTargetList, new CzonSection("S", 1, 1),
            new CzonKeyword("k", 1, 1), new CzonDefaultDef("d", 1, 1), new CzonParam("x"),
            new CzonClob("Integer:1"), new HostNumber("1"), new CzonInt("7"), new CzonIntDef,
            new CzonIntRef(&number), new CzonIntRef(nullptr), new CzonReal("2"), new CzonFloat("2"),
            new CzonFloatDef("1e39"), new CzonDouble("1e39"), new CzonDoubleDef("1e39"),
            new CzonDoubleRef(&real), new CzonFloatRef(&single), new CzonFloatRef(nullptr),
            new CzonDoubleRef(nullptr), new CzonBool("true"), new CzonBoolRef(&number),
            new CzonString("x"), new CzonStringRef, new CzonFilename("x"), new CzonDateTime("x"),
            new CzonDefaultPar, new CzonSubstit("x"), new CzonUnknown("x"),
            new CzonUndefinedPar("x")),
      " 0 1s 2s 3k 4kD 5p 5pc 5pnfd 6pnfd 6pni 6pni 6pn 7pnfd 7pnfd 7pnfd 7pnd 7pnd 7pnd 7pnf 7pn "
      "7pn 8pb 8pb 9pt 9pt! 10pF 10p 11pP 12p 14p 15pu");
}

TEST(Nodes, TellWhatTheyCannotAnswer) {
  const CzonParam node;
  host::Messages();
  EXPECT_EQ(node.GetInt() + node.GetBool() + node.GetDouble() + node.GetFloat(), 0);
  EXPECT_TRUE(!node.GetFilename() && !node.SectionByNum(1) && !node.KeywordByName("a"));
  EXPECT_TRUE(!node.ParamByNum(1) && !node.SectionByName("a") && !node.SectionByNameNum("a", 1) &&
              !node.KeywordByNameNum("a", 1) && node.GetString().empty());
  EXPECT_EQ(host::Messages(), std::vector<std::string>(12, "Function invalid in this context"));
  EXPECT_TRUE(node.GetNameGlb().empty() && !node.NodeByNum(1) && !node.GetClob());
  EXPECT_TRUE(!node.GetNoSections() && !node.GetNoKeywords() && !node.GetNoParams() &&
              !node.GetNoNodes() && !node.GetNoInstances());
  EXPECT_EQ(static_cast<const CzonNode&>(node).FindDefault(nullptr, "k", 1), nullptr);
  EXPECT_EQ(CzonIntDef("7").isInt() + CzonIntDef("7").GetInt(), 1);
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

TEST(NameList, FilesAtAnyPlace) {
  // The place, a namesake that has lost its number (0 for none), the number then.
  const unsigned rows[][3] = {{0, 0, 1}, {3, 0, 2}, {4000, 0, 4}, {5, 3, 4}, {4, 2, 3}};
  for (const auto& [place, copiedOver, number] : rows) {
    CzonKeyword a("k", 0, 0), other("other", 0, 0), b("K", 0, 0), c("k", 0, 0), fresh("K", 0, 0);
    CzonNameList<CzonKeyword> list;
    for (CzonKeyword* node : {&a, &other, &b, &c}) list.Append(node);
    if (copiedOver != 0) list.ByNameNum("k", copiedOver)->Copy(&fresh);
    EXPECT_EQ(list.InsertIntoHashtable(&fresh, place), 0);
    EXPECT_EQ(list.ByNameNum("k", number), &fresh) << place;
  }
  CzonKeyword absent("k", 0, 0), held("K", 0, 0);
  CzonNameList<CzonKeyword> list;
  EXPECT_EQ(list.EraseFromHashtable(nullptr), 1006);
  EXPECT_EQ(list.EraseFromHashtable(&absent), 1006);
  EXPECT_EQ(list.AddToIndex(nullptr) + 2 * list.AddToIndex(&held), 2);
  EXPECT_EQ(list.EraseFromHashtable(&absent), 1006);
  EXPECT_EQ(list.ByNameNum("k", 1), &held);
  EXPECT_EQ(list.Remove(&absent) + list.InsertIntoHashtable(nullptr, 1), 1007);
}

std::vector<int> NumbersOf(const std::vector<const CzonNode*>& nodes) {
  std::vector<int> numbers;
  for (const CzonNode* node : nodes) numbers.push_back(node->GetInstanceNo());
  return numbers;
}

// A Copy resets a number; each change of the queue or of the values restores it.
TEST(NameList, NumbersItsQueueAfterEachChange) {
  const std::pair<const char*, std::function<void(CzonNameList<CzonKeyword>&, CzonKeyword*)>>
      rows[] = {{"append", [](auto& list, auto* last) { list.AddToIndex(last); }},
                {"insert", [](auto& list, auto* last) { list.InsertIntoHashtable(last, 4); }},
                {"erase", [](auto& list, auto* last) {
                   list.AddToIndex(last);
                   list.ByNameNum("k", 1)->Copy(last);
                   list.ByNameNum("k", 4)->Copy(last);
                   list.EraseFromHashtable(last);
                 }}};
  for (const auto& [change, make] : rows) {
    CzonKeyword a("k", 0, 0), b("k", 0, 0), c("k", 0, 0), last("k", 0, 0), source("k", 0, 0);
    CzonNameList<CzonKeyword> list;
    for (CzonKeyword* node : {&a, &b, &c}) list.Append(node);
    b.Copy(&source);
    EXPECT_EQ(NumbersOf({&a, &b, &c}), (host::Codes{1, 0, 3}));
    make(list, &last);
    EXPECT_EQ(NumbersOf({&a, &b, &c}), (host::Codes{1, 2, 3})) << change;
    EXPECT_EQ(list.ByNameNum("k", 2), &b);
  }
}

TEST(Nodes, AreNumberedAgainAfterACopy) {
  CzonSection section("S", 0, 0), other("S", 0, 0);
  CzonKeyword source("k", 0, 0);
  for (int n = 0; n < 3; ++n) {
    section.AddKeyword(new CzonKeyword("k", 0, 0));
    section.AddSection(new CzonSection("S", 0, 0));
    section.KeywordByNum(1)->AddParam(new CzonInt("1"));
  }
  const auto numbers = [&] {
    std::vector<const CzonNode*> nodes;
    for (unsigned n = 1; n <= section.GetNoNodes(); ++n) nodes.push_back(section.NodeByNum(n));
    return NumbersOf(nodes);
  };
  section.KeywordByNum(2)->Copy(&source);
  section.SectionByNum(1)->Copy(&other);
  EXPECT_EQ(numbers(), (host::Codes{1, 0, 0, 2, 3, 3}));
  section.AddKeyword(new CzonKeyword("l", 0, 0));  // another queue
  EXPECT_EQ(numbers(), (host::Codes{1, 0, 0, 2, 3, 3, 1}));
  section.AddKeyword(new CzonKeyword("k", 0, 0));
  EXPECT_EQ(numbers(), (host::Codes{1, 0, 2, 2, 3, 3, 1, 4}));
  EXPECT_EQ(zoneDeleteSectionByNum(&section, 3), 0);
  EXPECT_EQ(numbers(), (host::Codes{1, 1, 2, 2, 3, 1, 4}));
  CzonKeyword* keyword = section.KeywordByNum(1);
  const auto value = [&](unsigned n) { return keyword->NodeByNum(n); };
  const CzonInt two("2");
  value(1)->Copy(&two);
  EXPECT_EQ(NumbersOf({value(1), value(2), value(3)}), (host::Codes{0, 2, 3}));
  keyword->AddParam(new CzonInt("4"));
  EXPECT_EQ(NumbersOf({value(1), value(2), value(3), value(4)}), (host::Codes{1, 2, 3, 4}));
  value(2)->Copy(&two);
  EXPECT_EQ(zoneDeleteParameterByNum(keyword, 4), 0);
  EXPECT_EQ(NumbersOf({value(1), value(2), value(3)}), (host::Codes{1, 2, 3}));
}

// Files a, b and a again; then a is erased twice.
TEST(NameList, FindsTheFirstEntryOfANodeFiledTwice) {
  for (const bool isCopiedOver : {false, true}) {
    CzonKeyword a("k", 0, 0), b("k", 0, 0), source("k", 0, 0);
    CzonNameList<CzonKeyword> list;
    for (CzonKeyword* node : {&a, &b}) list.AddToIndex(node);
    if (isCopiedOver) a.Copy(&source);
    list.AddToIndex(&a);
    EXPECT_EQ(NumbersOf({&a, &b}), (host::Codes{3, 2}));
    EXPECT_EQ(list.EraseFromHashtable(&a), 0);
    EXPECT_EQ(NumbersOf({&a, &b}), (host::Codes{2, 1}));
    EXPECT_EQ(list.ByNameNum("k", 1), &b);
    EXPECT_EQ(list.EraseFromHashtable(&a), 0);
    EXPECT_EQ(list.EraseFromHashtable(&a), 1006);
    EXPECT_EQ(list.CountOf(b), 1U);
  }
}

TEST(Nodes, KeepGlobalNameFlagsAndFileName) {
  CzonTargetList root;
  root.SetZonFilename("a.zon");
  auto* early = new CzonSection("Early", 1, 0);
  early->AddKeyword(new CzonKeyword("k", 0, 0));
  early->SetZonFilename("own.zon");
  EXPECT_EQ(early->NodeByNum(1)->GetZonFilename() + early->GetNameGlb(), "own.zon");  // yet alone
  root.AddSection(early);
  EXPECT_EQ(early->NodeByNum(1)->GetZonFilename() + early->NodeByNum(1)->GetNameGlb(), "a.zon.k");
  EXPECT_EQ(early->GetZonFilename() + CzonTargetList().GetZonFilename(), "a.zon");
  CzonSection other("Now", 0, 0);
  other.AddKeyword(new CzonKeyword("k", 0, 0));
  early->Copy(&other);
  EXPECT_EQ(early->NodeByNum(1)->GetNameGlb() + " " + early->GetNameGlb(), "Now.k Now");
  early->SetOpenList();
  early->SetMultiMandat(0, 7);
  EXPECT_EQ(early->GetFlags(), 6U);
  for (CzonSection* none : {early, &other}) {
    const std::string before = Show(none);
    none->AddNode(nullptr);
    none->AddSection(nullptr);
    none->AddKeyword(nullptr);
    EXPECT_EQ(Show(none), before);
  }
  EXPECT_EQ(CzonKeyword("k", 0, 0).GetNoInstances() + CzonSection("s", 0, 0).GetNoInstances() +
                CzonInt("1").GetNoInstances(),
            0U);
  File file(Load("[A] [B] EndSect EndSect"));
  CzonSection& below = *RootOf(file).SectionByNum(1)->SectionByNum(1);
  EXPECT_EQ(below.GetNameGlb(), "A.B");
  below.Clear();
  EXPECT_EQ(zoneRenameSection(&below, "C"), 0);
  EXPECT_EQ(below.GetNameGlb(), "A.C");
}

std::string visited;
void Note(CzonNode* node) {
  visited += node->IsParam() ? static_cast<CzonParam*>(node)->GetText() : node->GetName();
}

TEST(Explore, VisitsParentsFirstInTheOrderOfTheFile) {
  File file(Load("[A] k = 1, 2 [B] default (d) = 3 EndSect l = 4 EndSect [C] EndSect"));
  CzonNode* keyword = RootOf(file).SectionByNum(1)->KeywordByNum(1);
  for (CzonNode* start : {keyword->NodeByNum(2), keyword, keyword->GetOwner()->NodeByNum(2)}) {
    start->Explore(Note);
    visited += ' ';
  }
  // A visitor that adds nodes behind the one at hand and below it.
  RootOf(file).Explore([](CzonNode* node) {
    Note(node);
    if (node->GetName() != "k" && node->GetName() != "C") return;
    auto* section = static_cast<CzonSection*>(node->IsKeyword() ? node->GetOwner() : node);
    for (const char* name : {"x", "y", "z"}) section->AddKeyword(new CzonKeyword(name, 0, 0));
  });
  EXPECT_EQ(visited, "2 k12 Bd3 Ak12Bd3l4xyzCxyz");
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
  CzonTargetList root, &from = RootOf(source), &loaded = RootOf(target);
  root.SetResultRoot(std::string("replaced"));
  EXPECT_EQ(root.GetResultRoot(), "replaced");
  root.SetResultRoot(static_cast<const char*>(nullptr));
  int use = 7;
  std::string folder = "none";
  CzonTargetList().GetCustomResultFolder(&use, &folder);
  root.GetCustomResultFolder(nullptr, nullptr);
  EXPECT_EQ(root.GetResultRoot() + folder + std::to_string(use), "0");
  CzonSection& section = *from.SectionByNum(1);
  section.SetMultiMandat(1, 1);
  from.SetResultRoot("results");
  CzonTargetList fresh;
  const std::pair<CzonTargetList*, CzonTargetList*> rows[] = {
      {&root, &from},
      {&fresh, &from},
      {loaded.SectionByNum(1)->SectionByNum(1), section.SectionByNum(1)},
      {loaded.SectionByNum(1), &section},
      {&loaded, &root}};
  for (const auto& [to, of] : rows) {
    if (to == &loaded) zonClose(&source);
    to->Copy(of);
    to->Copy(to);
    EXPECT_EQ(Show(to), Show(of));
    to->AddSection(new CzonSection("u", 0, 0));
    to->Explore(ExpectFiled);
  }
  EXPECT_TRUE(loaded.GetHandle() && !root.GetHandle());
  EXPECT_EQ(loaded.GetResultRoot() + fresh.GetResultRoot(), "resultsresults");
}

TEST(Copy, TakesASourceAboveOrBelowTheTarget) {
  const char* const text = "[A] k = 1 [B] l = 2 [C] m = 3, 'x' EndSect EndSect EndSect";
  const std::string a = "A{k(int 1) B{l(int 2) C{m(int 3, string x)}}}";
  // A target, its source, the tree afterwards; paths below the root.
  const std::tuple<const char*, const char*, std::string> rows[] = {
      {"A/B", "A", "{A{k(int 1) " + a + "}}"},
      {"A/B/C", "A", "{A{k(int 1) B{l(int 2) " + a + "}}}"},
      {"A", "A/B", "{B{l(int 2) C{m(int 3, string x)}}}"},
      {"A", "A/B/C", "{C{m(int 3, string x)}}"}};
  for (const bool isLoaded : {true, false}) {
    for (const auto& [target, source, expected] : rows) {
      const File loaded(Load(text)), built(zonCreate());
      RootOf(built).Copy(&RootOf(loaded));
      void* file = isLoaded ? loaded : built;
      auto& node = As<CzonNode>(zonFindSectionByHandle(file, target));
      CzonNode* owner = node.GetOwner();
      node.Copy(&As<CzonNode>(zonFindSectionByHandle(file, source)));
      EXPECT_EQ(host::ShowTree(file), expected) << target << " " << source;
      EXPECT_EQ(node.GetOwner(), owner);
    }
  }
  // Outside a file.
  CzonTargetList list;
  list.AddSection(new CzonSection("S", 0, 0));
  list.SectionByNum(1)->AddSection(new CzonSection("T", 0, 0));
  list.Copy(list.SectionByNum(1));
  EXPECT_EQ(Show(&list), "S{T{}}");
  EXPECT_EQ(list.SectionByName("t"), list.NodeByNum(1));
}

// Of each name the numbers that its nodes report, in the order of the index: "a:12 b:1 ".
std::string Numbers(const CzonSection& section, std::initializer_list<const char*> names) {
  std::string numbers;
  for (const char* name : names) {
    numbers += name + std::string(":");
    for (unsigned n = 1; const CzonNode* node = section.KeywordByNameNum(name, n); ++n) {
      numbers += std::to_string(node->GetInstanceNo());
    }
    for (unsigned n = 1; const CzonNode* node = section.SectionByNameNum(name, n); ++n) {
      numbers += std::to_string(node->GetInstanceNo());
    }
    numbers += ' ';
  }
  return numbers;
}

TEST(Copy, FilesANodeUnderItsNewName) {
  const char* const texts[] = {"[S] a = 1 a = 2 b = 3 a = 4 b = 5 EndSect",
                               "[S] [a] EndSect [a] EndSect [b] EndSect [a] EndSect [b] EndSect "
                               "EndSect"};
  for (const char* text : texts) {
    const File file(Load(text));
    CzonSection& section = *RootOf(file).SectionByNum(1);
    CzonNode *second = section.NodeByNum(2), *fourth = section.NodeByNum(4);
    // Its own number is reset. Those of the nodes of both names are renewed.
    second->Copy(section.NodeByNum(3));
    EXPECT_EQ(Numbers(section, {"a", "b"}), "a:12 b:023 ");
    fourth->Copy(section.NodeByNum(3));
    EXPECT_EQ(Numbers(section, {"a", "B"}), "a:1 B:1204 ");
    section.NodeByNum(1)->Copy(section.NodeByNum(3));
    EXPECT_EQ(Numbers(section, {"a", "B"}), "a: B:02345 ");
    EXPECT_EQ(second->GetNoInstances(), 5U);
    for (unsigned n = 5; n > 0; --n) EXPECT_EQ(zoneDeleteNode(section.NodeByNum(n)), 0);
    EXPECT_EQ(Numbers(section, {"a", "b"}), "a: b: ");
  }
}

TEST(Copy, RenewsWhatIsKnownOfDefinitions) {
  const File file(Load("[S] default (d) = 1 default (e) = 2 d = 0 EndSect"));
  CzonSection& section = *RootOf(file).SectionByNum(1);
  CzonKeyword& keyword = *section.KeywordByNum(1);
  keyword.AddParam(new CzonDefaultPar);
  static_cast<CzonKeyword*>(section.NodeByNum(2))->AddParam(new CzonInt("3"));
  static_cast<CzonKeyword*>(section.NodeByNum(1))->AddParam(new CzonInt("4"));
  EXPECT_EQ(keyword.ParamByNum(2)->GetText(), "4");
  section.NodeByNum(1)->Copy(section.NodeByNum(2));
  EXPECT_EQ(keyword.ParamByNum(2), keyword.NodeByNum(2));  // no definition is left
  CzonDefaultDef definition("D", 0, 0);
  definition.AddParam(new CzonInt("5"));
  definition.AddParam(new CzonInt("6"));
  section.NodeByNum(2)->Copy(&definition);
  EXPECT_EQ(keyword.ParamByNum(2)->GetText(), "6");
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
    plain.SectionByNum(1)->AddDefaultDef(new Counted<CzonDefaultDef>);  // the only one, far below
  }
  EXPECT_EQ(living, 0);
}

// Neither the compiler nor a sanitizer sees that there is no node.
__attribute__((noinline, no_sanitize("undefined"))) void AskNullForItsFile() {
  CzonNode* volatile none = nullptr;
  const CzonNode* node = none;
  node->CzonNode::GetZonFilename();
}

// Nodes of a host, whose operations the library calls where it says that it does.
struct HostKeyword : CzonKeyword {
  HostKeyword(const std::string& stored, std::string name)
      : CzonKeyword(stored, 0, 0), shown(std::move(name)) {}
  const std::string& GetName() const override { return shown; }
  std::string shown;
};

TEST(HostClasses, AreFiledByTheirGetName) {
  CzonSection section("S", 0, 0);
  auto* keyword = new HostKeyword("stored", "Shown");
  for (auto* node : {new CzonKeyword("shown", 0, 0), static_cast<CzonKeyword*>(keyword)}) {
    section.AddKeyword(node);
  }
  EXPECT_EQ(section.KeywordByNameNum("SHOWN", 2), keyword);
  EXPECT_EQ(section.KeywordByName("stored"), nullptr);
  EXPECT_EQ(keyword->GetNoInstances(), 2U);
  EXPECT_EQ(zoneDeleteKeywordByNum(&section, 1), 0);
  EXPECT_EQ(section.KeywordByName("shown"), keyword);
  EXPECT_EQ(keyword->GetInstanceNo(), 1);
  // A name that changes afterwards: the node is known by the name that it was filed under.
  keyword->shown = "other";
  EXPECT_EQ(section.KeywordByName("shown"), keyword);
  EXPECT_EQ(section.KeywordByName("other"), nullptr);
  EXPECT_EQ(zoneDeleteNode(keyword), 1006);
  EXPECT_EQ(zoneRenameKeyword(keyword, "new"), 1006);
  EXPECT_EQ(host::Heard(), "1006 Invalid zonNode Invalid zonNode");
  keyword->shown = "shown";
  EXPECT_EQ(zoneRenameKeyword(keyword, "new"), 0);  // which it does not show
  EXPECT_EQ(section.KeywordByName("shown"), keyword);
  EXPECT_EQ(keyword->GetInstanceNo(), 1);
  keyword->shown = "global";
  EXPECT_EQ(keyword->GetNameGlb(), "global");  // of the level below a root
  keyword->shown = "shown";
  EXPECT_EQ(zoneDeleteNode(keyword), 0);
  EXPECT_EQ(section.KeywordByName("shown"), nullptr);
  // Definitions.
  auto* definition = new CzonDefaultDef("d", 0, 0);
  definition->AddParam(new CzonInt("7"));
  section.AddDefaultDef(definition);
  CzonTargetList root;
  auto* below = new CzonSection("B", 0, 0);
  root.AddSection(below);
  below->Copy(&section);
  keyword = new HostKeyword("k", "D");
  keyword->AddParam(new CzonDefaultPar);
  below->AddKeyword(keyword);
  EXPECT_EQ(keyword->ParamByNum(1)->GetText(), "7");
}

std::string calls;  // of the operations below

struct HostSection : CzonSection {
  HostSection() = default;
  explicit HostSection(const std::string& name) : CzonSection(name, 0, 0) {}
  ~HostSection() override {
    calls += "gone with " + std::to_string(GetNoNodes());
    for (unsigned n = 1; n <= GetNoSections(); ++n) {
      CzonSection* section = SectionByNum(n);
      EXPECT_EQ(SectionByName(section->GetName().c_str()), section);
      EXPECT_EQ(section->GetOwner(), this);
      calls += " " + section->GetName() + std::to_string(section->GetNoNodes());
    }
    calls += ";";
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

// A list with the section A, in it a section of a host H, in that the section B with the keyword k.
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
  EXPECT_EQ(calls, "gone with 1 B1;gone with 1 B1;");
}

TEST(HostClasses, AreCopiedByTheirCopy) {
  WithHostSection list;
  HostSection source("X");
  auto* second = new HostSection("X");
  list.SectionByNum(1)->AddSection(second);
  EXPECT_EQ(zonCopy(&source, list.host), 1);
  EXPECT_EQ(calls, "copied X;");
  EXPECT_EQ(NumbersOf({list.host, second}), (host::Codes{1, 2}));
  EXPECT_EQ(Show(&list), "{A{X{} X<2>{}}}");
}

struct HostRoot : CzonTargetList {
  const std::string& GetZonFilename() const override { return name; }
  std::string name = "host.zon";
};

TEST(HostClasses, NameTheirFile) {
  HostRoot root;
  root.AddSection(new CzonSection("A", 0, 0));
  EXPECT_EQ(root.NodeByNum(1)->GetZonFilename(), "host.zon");
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

// A chain of sections below the node; gives the last.
CzonSection* Deepen(CzonTargetList* deepest, unsigned depth) {
  for (CzonSection* below; depth > 0; --depth, deepest = below)
    deepest->AddSection(below = new CzonSection("s", 0, 0));
  return static_cast<CzonSection*>(deepest);
}

// A definition in the section that a keyword so far below it finds.
void ExpectDefault(CzonSection* section, const std::string& name, unsigned depth) {
  auto* definition = new CzonDefaultDef(name, 0, 0);
  auto* keyword = new CzonKeyword(name, 0, 0);
  definition->AddParam(new CzonParam(name));
  keyword->AddParam(new CzonDefaultPar);
  section->AddDefaultDef(definition);
  Deepen(section, depth)->AddKeyword(keyword);
  ASSERT_EQ(keyword->ParamByNum(1)->GetText(), name);
}

// On a stack of 256 KiB, where a recursion along the tree would show.
TEST(Size, DepthCostsNoStack) {
  ASSERT_TRUE(host::OnSmallStack([](void*) -> void* {
    static unsigned counted;
    CzonTargetList copy, named;
    auto root = std::make_unique<CzonTargetList>();
    EXPECT_EQ(Deepen(&named, 10000)->GetNameGlb().size(), 19999U);
    ExpectDefault(Deepen(root.get(), 1), "k", 999999);
    copy.Copy(root.get());
    root.reset();
    copy.Explore([](CzonNode*) { ++counted; });
    EXPECT_EQ(counted, 1000004U);
    return nullptr;
  }));
}

// Walking along the siblings for each of them would take minutes here.
TEST(Size, NamesakesAndDefaultsAreCheap) {
  CzonTargetList root;
  CzonSection* section = Deepen(&root, 1);
  for (unsigned n = 1; n <= 200000; ++n) {
    root.AddSection(new CzonSection("Same", 0, 0));
    ASSERT_EQ(root.SectionByNameNum("same", n), root.NodeByNum(n + 1));
    ExpectDefault(section, "k" + std::to_string(n), 0);
  }
}

}  // namespace
