// Editing: what random edits beside a model, which the fuzzer makes, do not show.
#include "treetext.h"

namespace {

using host::Codes;

TEST(Editing, TheCursorLeavesWhatGoes) {
  const host::File file(zonCreate());
  zonAddTarget(file, "A");
  zonAddSection(file, "B");
  zonAddKeyword(file, "k");
  zonAddClob(file);
  void* keyword = zonKeywordByNum(zonFindSectionByHandle(file, "A/B"), 1);
  // The CLOB gives way.
  EXPECT_EQ(
      (Codes{zoneModifyParameterInt(keyword, 1, 5), zonAddClobIntS(file, 1), zonAddIntS(file, 6)}),
      (Codes{0, 2000, 0}));
  EXPECT_EQ(host::ShowTree(file), "{A{B{k(int 5, int 6)}}}");
  EXPECT_EQ((Codes{zoneDeleteNode(keyword), zonAddIntS(file, 6), zonAddKeywordS(file, "m"),
                   zonCopy(zonTargetByNum(file, 1), zonFindSectionByHandle(file, "A/B"))}),
            (Codes{0, 2000, 0, 1}));
  EXPECT_EQ(host::ShowTree(file), "{A{A{B{m()}}}}");
  // Its keyword went with the old content.
  EXPECT_EQ((Codes{zonAddIntS(file, 1), zonAddKeywordS(file, "n")}), (Codes{2000, 0}));
  EXPECT_EQ(host::ShowTree(file), "{A{A{B{m()} n()}}}");
  EXPECT_EQ(zonCopy(zonFindSectionByHandle(file, "A/A/B"), zonTargetByNum(file, 1)), 1);
  EXPECT_EQ(host::ShowTree(file), "{B{m()}}");
  EXPECT_EQ((Codes{zoneDeleteSectionByNameNum(zonGetRoot(file), "b", 1), zonAddTargetS(file, "C"),
                   zonGetErrorGlb()}),
            (Codes{0, 0, 0}));
}

TEST(Editing, ValuesChangeInPlaceOrGiveWayAndAreInserted) {
  const host::File file(
      host::Load("[A] k = 1, 2.5, 'x', true, |f|, 7 default(d) = 3, EndSect [B] EndSect"));
  void* section = zonTargetByNum(file, 1);
  void* keyword = zonKeywordByNum(section, 1);
  std::vector<void*> before;
  for (unsigned n = 1; n <= 6; ++n) before.push_back(zonParamByNum(keyword, n));
  EXPECT_EQ(
      (Codes{zoneModifyParameterInt(keyword, 1, -4), zoneModifyParameterDouble(keyword, 2, 3.0),
             zoneModifyParameterString(keyword, 3, ""), *zonGetString(before[2]),
             zoneModifyParameterString(keyword, 3, "y"),
             zoneModifyParameterString(keyword, 3, zonGetString(before[2])),
             zoneModifyParameterBool(keyword, 4, 0),
             zoneModifyParameterFilename(keyword, 5, "g/h")}),
      Codes(8));
  for (unsigned n = 1; n <= 5; ++n) EXPECT_EQ(zonParamByNum(keyword, n), before[n - 1]) << n;
  EXPECT_EQ(zoneModifyParameterFloat(keyword, 6, 0.5F), 0);
  EXPECT_NE(zonParamByNum(keyword, 6), before[5]);
  EXPECT_EQ(zonGetInt(before[1]), 3);  // all views are renewed
  // A placeholder itself changes; a definition is renamed and edited as a keyword is.
  void* definition = zonNodeByNum(section, 2);
  EXPECT_EQ((Codes{zoneModifyParameterDouble(keyword, 6, 0.25),
                   zonNumericIsIntType(zonParamByNum(keyword, 6)),
                   zoneModifyParameterInt(definition, 2, 9), zoneRenameKeyword(definition, "e")}),
            Codes(4));
  EXPECT_NE(zoneInsertParameterDefault(definition, 1), nullptr);
  EXPECT_NE(zoneInsertParameterUndefined(definition, 4), nullptr);
  for (void* made :
       {zoneInsertParameterFloat(keyword, 0, 0.5F), zoneInsertParameterDouble(keyword, 0, 2.0),
        zoneInsertParameterBool(keyword, 0, 7), zoneInsertParameterString(keyword, 1, "s"),
        zoneInsertParameterFilename(keyword, 6, "f\\g")}) {
    EXPECT_EQ(zonIsParam(made), 1);
  }
  EXPECT_EQ(zoneDeleteSectionByNum(zonGetRoot(file), 2), 0);
  EXPECT_EQ(host::ShowTree(file),
            "{A{k(string s, int -4, real 3.0, string y, bool false, file f\\g, file g/h, "
            "real 0.25, real 0.5, real 2.0, bool true) default e(default, int 3, int 9, undef)}}");
}

TEST(Editing, RefusalsTellTheirKind) {
  const host::File file(host::Load("[A] k = 1 EndSect"));
  void* root = zonGetRoot(file);
  void* section = zonTargetByNum(file, 1);
  void* keyword = zonKeywordByNum(section, 1);
  void* value = zonParamByNum(keyword, 1);
  CzonSection loneSection("Abcdefghi", 0, 0);
  CzonKeyword loneKeyword("k", 0, 0), holder("h", 0, 0);
  CzonInt loneValue("1");
  holder.AddParam(new CzonInt("1"));
  const std::string before = host::ShowTree(file);
  const std::pair<int, const char*> kinds[] = {{1006, ""},
                                               {1007, " (CzonKeyword)"},
                                               {1009, " (CzonSection)"},
                                               {1011, " (CzonTargetList)"},
                                               {1012, " (CzonParam)"}};
  const std::pair<int, std::function<int()>> rows[] = {
      {0, [] { return zoneDeleteNode(nullptr); }},
      {4, [&] { return zoneDeleteNode(&loneValue); }},
      {1, [&] { return zoneDeleteNode(&loneKeyword); }},
      {2, [&] { return zoneDeleteNode(&loneSection); }},
      {3, [&] { return zoneDeleteSectionByNum(keyword, 1); }},
      {2, [&] { return zoneDeleteSectionByNameNum(root, "x", 1); }},
      {1, [&] { return zoneDeleteKeywordByNum(section, 2); }},
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
    host::Heard();
    const auto& [code, type] = kinds[kind];
    EXPECT_EQ(call(), code);
    EXPECT_EQ(host::Heard(), std::to_string(code) + " Invalid zonNode" + type);
  }
  EXPECT_EQ(host::ShowTree(file), before);
  // Where there is no file there is no cursor to move.
  EXPECT_EQ(zoneDeleteParameterByNum(&holder, 1), 0);
  EXPECT_EQ(zonCopy(&loneKeyword, &holder), 1);
  for (const char* name : {"abcdefghi", "abcdefghij", "Xbcdefghij", "Xbcdefghik", "xBCDEFGHIK"}) {
    EXPECT_EQ(zoneRenameSection(&loneSection, name), 0);
    EXPECT_EQ(loneSection.GetName() + host::Show(&holder), name + std::string("k()"));
  }
}

TEST(Editing, ANodeOutsideTheIndexStays) {
  const host::File file(host::Load("[A] k = 1 [B] EndSect EndSect"));
  auto& section = host::As<CzonSection>(zonTargetByNum(file, 1));
  section.AddNode(new CzonKeyword("k", 0, 0));
  section.AddNode(new CzonSection("C", 0, 0));
  const std::string before = host::ShowTree(file);
  void* keyword = zonNodeByNum(&section, 3);
  void* below = zonNodeByNum(&section, 4);
  const std::pair<const char*, std::function<int()>> rows[] = {
      {"delete keyword", [&] { return zoneDeleteNode(keyword); }},
      {"delete section", [&] { return zoneDeleteNode(below); }},
      {"rename keyword", [&] { return zoneRenameKeyword(keyword, "x"); }},
      {"rename section", [&] { return zoneRenameSection(below, "x"); }}};
  for (const auto& [edit, call] : rows) {
    host::Heard();
    EXPECT_EQ(call(), 1006) << edit;
    EXPECT_EQ(host::Heard(), "1006 Invalid zonNode") << edit;
  }
  EXPECT_EQ(host::ShowTree(file), before);
  EXPECT_EQ(zonKeywordByNameNum(&section, "k", 1), zonNodeByNum(&section, 1));
  // Its content may still be replaced; it gets a name, and no place in the index.
  EXPECT_EQ(zonCopy(zonNodeByNum(&section, 2), below), 1);
  EXPECT_EQ(zonSectionByNameNum(&section, "B", 2), nullptr);
}

TEST(Editing, CopiesLeaveNothingBehind) {
  const host::File file(
      host::Load("[A()] {remark} x = 1 [S()] y = 'z' EndSect EndSect [B] q = 2 EndSect"));
  const host::File other(zonCreate());
  zonAddTarget(other, "T");
  zonEndSection(other);
  void* target = zonTargetByNum(other, 1);
  EXPECT_EQ(zonCopy(zonTargetByNum(file, 1), target), 1);
  EXPECT_EQ(zonTargetByNum(other, 1), target);
  EXPECT_EQ(host::ShowTree(other), "{A(){remark}{x(int 1) S(){y(string z)}}}");
  EXPECT_EQ(zonTargetByNameNum(other, "T", 1), nullptr);
  EXPECT_EQ(zonTargetByNameNum(other, "a", 1), target);
  EXPECT_EQ(zonCopy(target, target), 1);
  EXPECT_STREQ(zonGetNameGlb(zonKeywordByNum(zonSectionByNum(target, 1), 1)), "A.S.y");
  // What is known of definitions is forgotten as they change; 0 is the placeholder itself.
  const host::File defaults(host::Load("[A] default (d) = 1 default (e) = 2 d = 0 EndSect"));
  void* section = zonTargetByNum(defaults, 1);
  void* wanted = zoneInsertParameterDefault(zonKeywordByNum(section, 1), 1);
  const auto found = [&] { return zonGetInt(zonFindDefault(wanted)); };
  ASSERT_NE(zoneInsertNewKeyword(section, "k", 1), nullptr);
  EXPECT_EQ((Codes{found(), zoneDeleteKeywordByNum(section, 1), found(),
                   zonCopy(zonNodeByNum(section, 2), zonNodeByNum(section, 1)), found(),
                   zoneRenameKeyword(zonNodeByNum(section, 2), "D"), found(),
                   zoneDeleteNode(zonNodeByNum(section, 2)), found()}),
            (Codes{1, 0, 1, 1, 0, 0, 2, 0, 0}));
  EXPECT_EQ(zonFindDefault(wanted), wanted);
  EXPECT_EQ(host::ShowTree(defaults), "{A{default e(int 2) d(default, int 0)}}");
  const std::string body = " d = EndSect ";
  const host::File two(host::Load("[A] default (d) = 1" + body + "[B] default (d) = 9" + body));
  for (const unsigned n : {1U, 2U}) {
    zoneInsertParameterDefault(zonKeywordByNum(zonTargetByNum(two, n), 1), 1);
  }
  const auto first = [&] {
    return zonGetInt(zonParamByNum(zonKeywordByNum(zonTargetByNum(two, 1), 1), 1));
  };
  EXPECT_EQ((Codes{first(), zonCopy(zonTargetByNum(two, 2), zonTargetByNum(two, 1)), first()}),
            (Codes{1, 1, 9}));
  host::Messages();
  // Trees without a file.
  CzonSection from("x", 0, 0), onto("y", 0, 0);
  from.AddKeyword(new CzonKeyword("k", 0, 0));
  CzonNode* const value = new CzonInt("1");
  from.KeywordByNum(1)->AddParam(static_cast<CzonParam*>(value));
  EXPECT_EQ(zonCopy(&from, &onto), 1);
  EXPECT_EQ(host::Show(&onto), "x{k(int 1)}");
  void* keyword = onto.KeywordByNum(1);
  const std::pair<void*, void*> odd[] = {
      {&from, &onto}, {value, keyword}, {keyword, value}, {zonGetRoot(file), target}};
  for (const auto& [source, place] : odd) EXPECT_EQ(zonInsert(source, place, 0), nullptr);
  EXPECT_EQ((Codes{zonCopy(value, value), zoneDeleteKeywordByNum(&onto, 1)}), Codes(2));
  EXPECT_EQ(host::Show(&onto) + std::to_string(host::Messages().size()), "x{}5");
  zonGetErrorGlb();
  EXPECT_EQ(zonCopy(zonTargetByNum(file, 2), target), 1);
  EXPECT_STREQ(zonGetNameGlb(zonKeywordByNum(target, 1)), "B.q");
  EXPECT_EQ(zonGetLevel(target), 1);
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
  EXPECT_EQ(host::Show(&section), "S{k()}");
}

}  // namespace
