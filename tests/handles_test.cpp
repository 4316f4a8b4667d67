// Handles, errors, navigation and queries through the flat interface.
#include <stdexcept>

#include "treetext.h"

namespace {

using host::Texts;
const std::string kUnfit = "Function invalid in this context";

// Results as texts; a node as its global name and instance number.
template <class T>
std::string Text(T value) {
  if constexpr (std::is_same_v<T, void*>) {
    return value == nullptr ? "null" : zonGetNameGlb(value) + ("#" + Text(zonGetInstanceNo(value)));
  } else if constexpr (std::is_arithmetic_v<T>) {
    return std::to_string(value);
  } else {
    return value;
  }
}
template <class... T>
std::string All(T... values) {
  return ((Text(values) + " ") + ...);
}

// What each of the calls is to give for each of the handles, with the code and the messages.
template <class... F>
void Expect(const std::vector<void*>& bad, std::string outcome, const std::string& result,
            F... calls) {
  int number = 0;
  const auto expect = [&](const std::string& got) {
    EXPECT_EQ(got + "|" + host::Heard(), result + "|" + outcome) << ++number;
  };
  for (void* n : bad) (expect(Text(calls(n))), ...);
}
#define OF(...) [&](void* n) { return __VA_ARGS__; }

// By one of each kind; the comments in zon.h are tried with all of them.
TEST(Handles, BadNodes) {
  host::File file(zonCreate());
  const std::vector<void*> bad = {nullptr, file};
  const std::string no = "1006 Invalid zonNode";
  float f = 0;
  double d = 0;
  Expect(bad, no, "-1", zonGetLevel, zonGetInt);
  Expect(bad, no, "-1.000000", zonGetFloat, zonGetDouble, OF(zonPasGetFloatProc(n, &f), f),
         OF(zonPasGetDoubleProc(n, &d), d));
  Expect(bad, no, "0", zonGetSyntaxClass, zonIsTarget, OF(zonPasGetFloatProc(n, nullptr), 0),
         OF(zonPasGetDoubleProc(n, nullptr), 0));
  Expect(bad, no, "", zonGetName, zonGetFilename, OF(zonSetFilename(n, "A"), ""));
  Expect(bad, no, "null", OF(zonSectionByNum(n, 1)), zonFindDefault);
  Expect(bad, no + " Invalid zonNode Invalid zonNode", "null", zonGetParentSection);
  Expect({file, zonGetRoot(file)}, "1006 Invalid CLOB object", "1", OF(!zonGetErrorFromZonClob(n)));
}

TEST(Handles, BadFiles) {
  host::File file(zonCreate()), failed(host::Load("[A] k ="));
  EXPECT_EQ(zonGetErrorGlb(), 1003);
  void* root = zonGetRoot(file);
  Expect({nullptr, root}, "1005", "null", zonGetRoot);
  Expect({nullptr, root}, "1005", "1", OF(zonGetErrorFromZonData(n) == nullptr));
  for (void* bad : std::vector<void*>{nullptr, root, failed}) {
    const char* no = bad == failed ? "1006 Invalid zonNode" : "1005 Invalid zonHandle (CzonData)";
    Expect({bad}, no, "0", zonGetNoTargets);
    Expect({bad}, no, "null", OF(zonTargetByNum(n, 1)), OF(zonTargetByNameNum(n, "A", 1)),
           OF(zonFindSectionByHandle(n, "A")), OF(zonExplore(n, nullptr), zonGetRoot(failed)));
  }
  unsigned line = 7, position = 7;
  const char* message = "untouched";
  CzonLoad unread(nullptr);
  EXPECT_EQ(zonGetSyntaxErr(&unread, &line, &position, &message), nullptr);
  EXPECT_EQ(All(message, line, position, zonNoLines(&unread)), "untouched 0 0 0 ");
  EXPECT_EQ(zonGetSyntaxErr(failed, nullptr, nullptr, nullptr), std::string("syntax error"));
  Expect({nullptr, root, file}, "1005 Invalid zonHandle (CzonLoad)", "0", zonNoChars, zonNoLines,
         zonNoComments, zonNoTokens, OF(zonGetSyntaxErr(n, &line, nullptr, &message) + Text(line)));
  EXPECT_STREQ(message, "");
  for (void** bad : {static_cast<void**>(nullptr), &root}) zonClose(bad);
  EXPECT_EQ(host::Messages(), Texts(2, "Invalid zonHandle (CzonData)"));
  zonClose(file.Address());
  EXPECT_EQ(file, nullptr);
}

TEST(Handles, FirstErrorStays) {
  zonGetRoot(nullptr);
  host::File file(zonCreate());
  EXPECT_EQ(zonGetErrorGlb(), 0) << "cleared by a new file";
  host::onMessage = [](const char*) { throw std::runtime_error("hook"); };
  Expect({zonGetRoot(file)}, "1006 " + kUnfit, "-1", zonGetInt);
  zonAddInt(file, 1);
  host::onMessage = nullptr;
  *zonGetFilename(nullptr) = 'x';  // what is given back for an empty text stays empty
  EXPECT_STREQ(zonGetName(nullptr), "");
  EXPECT_EQ(zonPeekErrorGlb(), 1005);
  for (int code : {1005, 0}) EXPECT_EQ(zonGetErrorGlb(), code);
  EXPECT_EQ(host::Messages(),
            (Texts{"Missing current keyword", "Invalid zonNode", "Invalid zonNode"}));
  for (int code = 1000; code < 1015; ++code)
    EXPECT_STRNE(zonGetErrorMessageFromErrorCode(code), "unknown error code") << code;
  const char* last = zonGetErrorMessageFromErrorCode(1001);
  EXPECT_STREQ(last, "Error opening file. (ERR_FILE_OPEN , 1001)");
  EXPECT_STREQ(zonGetErrorMessageFromErrorCode(999), "unknown error code");
  EXPECT_STREQ(last, "unknown error code") << "where the text before stood";
}

// Wherever the base lies in an object of a host's class, also when asked again.
TEST(Handles, ClassesOfTheHost) {
  struct Both : CzonCreate, CzonKeyword {
  } both;
  CzonBase* const bases[] = {static_cast<CzonData*>(&both), static_cast<CzonKeyword*>(&both)};
  for (int turn : {0, 1, 0, 1})
    EXPECT_EQ(All(zonGetSyntaxClass(bases[turn]), zonGetRoot(bases[turn]) != nullptr), "3 1 ");
}

struct Sample : host::File {
  Sample()
      : File(host::Load(
            "[Model] default (k) = 7\n k = 1, 2.5, 'it''s', TRUE, |a\\b|, , #2020-01-01#, %x\n"
            " k = 3.0 [Grid] default (K) = , , 9 EndSect [GRID] EndSect EndSect\n"
            "[Other] [Grid] EndSect EndSect [model] EndSect\n")) {}
  void* root = zonGetRoot(*this);
  void* model = zonTargetByNum(*this, 1);
  void* k = zonKeywordByNum(model, 1);
  void* def = zonNodeByNum(zonSectionByNum(model, 1), 1);
};

TEST(Queries, NodesAndTheWayBetweenThem) {
  const Sample s;
  void* placeholder = zonNodeByNum(s.def, 1);
  void* unfound = zonNodeByNum(s.def, 2);
  EXPECT_EQ(host::Facts(s.root), "class 1: section; 0 0 0 0 ''; refused 5");
  EXPECT_EQ(host::Facts(s.model), "class 2: target section; 0 0 0 0 ''; refused 5");
  EXPECT_EQ(host::Facts(s.def), "class 4: keyword; 0 0 0 0 ''; refused 5");
  EXPECT_EQ(host::Facts(placeholder), "class 11: param default; 0 0 0 0 ''; refused 5");
  EXPECT_EQ(All(zonGetNoTargets(s), zonTargetByNum(s, 0), zonTargetByNum(s, UINT_MAX),
                zonTargetByNameNum(s, "MODEL", 2), zonTargetByNameNum(s, nullptr, 1),
                zonFindSectionByHandle(s, nullptr)),
            "3 null null model#2 null null ");
  EXPECT_EQ(All(zonSectionByNameNum(s.model, "grid", 2), zonKeywordByNameNum(s.model, "K", 2),
                zonNodeByNum(s.model, 4), zonParamByNum(s.k, 9), zonGetLevel(unfound)),
            "Model.GRID#2 Model.k#2 Model.Grid#1 null 4 ");
  EXPECT_EQ(All(zonGetNoNodes(s.model), zonGetNoSections(s.model), zonGetNoKeywords(s.model),
                zonGetNoParams(s.k), zonGetNoInstances(s.k), zonGetInt(zonFindDefault(placeholder)),
                zonFindDefault(unfound) == unfound, zonFindDefault(zonNodeByNum(s.k, 1))),
            "5 2 2 8 2 7 1 null ");
  CzonInt detached("1");
  CzonDefaultPar alone;
  splitElement(nullptr, nullptr);
  char element[] = "a:-9999999999", same[] = "b:3";
  int instance = 7;
  splitElement(same, nullptr);
  splitElement(element, &instance);
  EXPECT_EQ(All(element, same, instance, zonFindDefault(&alone) == &alone),
            All("a", "b", INT_MIN, 1));
  zonExplore(s, nullptr);
  EXPECT_EQ(All(zonGetParentSection(s.root), zonGetParentSection(s.model) == s.root,
                zonGetParentSection(&detached), zonGetParentSection(s.k),
                zonGetParentSection(placeholder)),
            "null 1 null Model#1 Model.Grid#1 ");
  Expect({s.root}, "0 " + kUnfit, "null", OF(zonKeywordByNum(n, 1)));
}

// Names of every length are found among many, whatever stands behind them where they were read.
TEST(Queries, NamesOfAnyLength) {
  std::string text = "[A] ";
  for (std::size_t length = 1; length <= 40; ++length) {
    text += std::string(length, 'n') + (length % 2 != 0 ? "=1 " : "\n=1 ");
  }
  const host::File file(host::Load(text + "EndSect"));
  for (std::size_t length = 1; length <= 40; ++length) {
    const std::string name(length, 'N');
    EXPECT_NE(zonKeywordByNameNum(zonTargetByNum(file, 1), name.c_str(), 1), nullptr) << length;
  }
}

TEST(Queries, SectionPaths) {
  const Sample s;
  const auto find = [&](const std::string& path) {  // from the file, and from its second section
    return All(zonFindSectionByHandle(s, path.c_str()),
               zonFindSectionByNode(zonTargetByNum(s, 2), path.c_str()));
  };
  EXPECT_EQ(find("") + find("../Grid"), "null Other#1 null Other.Grid#1 ");
  EXPECT_EQ(find("Model: +2:1"), "model#2 null ");
  EXPECT_EQ(find("Model:x2"), "Model#1 null ");
  const std::string many(100000, '/');
  EXPECT_EQ(find(many + "Model..Grid:002" + many), "Model.GRID#2 null ");
  for (const char* none : {"A/Grid", " Model", "Model:0", "Model:-1", "Model:4294967297",
                           "Model:18446744073709551617"})
    EXPECT_EQ(find(none), "null null ") << none;
  EXPECT_EQ(host::Messages(), Texts{});
}

TEST(Queries, CopiesNeedRoomForTheZero) {
  const Sample s;
  zonSetAnchorFilename(s.model, "/d/f.zon");
  const auto copied = [&](auto copy, auto... node) {  // the text, and the room that it takes
    char buffer[40] = "kept";
    EXPECT_EQ(copy(node..., nullptr, 40), -1);
    int size = -9;
    for (; size < 40 && copy(node..., buffer, size) != 0; ++size) EXPECT_STREQ(buffer, "kept");
    return buffer + std::to_string(size);
  };
  EXPECT_EQ(All(copied(zonGetName2, s.model), copied(zonGetNameGlb2, s.k),
                copied(zonGetString2, zonParamByNum(s.k, 3)),
                copied(zonGetFilename2, zonParamByNum(s.k, 5)),
                copied(zonGetAnchorFilename2, s.root), copied(zonGetAnchorFilename2, s.model),
                copied(zonGetBuildVersion2), copied(zonGetDLLid2), copied(zonGetVersion2).size()),
            "Model6 Model.k8 it's5 /d/a/b7 /d/f.zon9 1 20.0.0.1534213 zon20048 22 ");
  EXPECT_EQ(zonGetFilename2(zonParamByNum(s.k, 3), nullptr, 5), -2);
  EXPECT_EQ(host::Messages(), Texts{kUnfit});
}

}  // namespace
