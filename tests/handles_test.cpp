// Handles, errors, navigation and queries through the flat interface.
#include <stdexcept>

#include "treetext.h"

namespace {

using namespace host;

const std::string kUnfit = "Function invalid in this context";
const std::string kBadNode = "1006 Invalid zonNode";

// Each line is one call: its failure value, and the pending code with the messages.
template <class T, class U>
void ExpectRefused(const std::string& heard, const T& failure, const U& result) {
  EXPECT_EQ(Heard(), heard);
  EXPECT_EQ(result, failure);
}

// One function of each kind. The comments in zon.h are checked for all functions.
TEST(Handles, BadNodes) {
  const File file(zonCreate());
  float single = 0;
  double number = 0;
  for (void* bad : {static_cast<void*>(nullptr), static_cast<void*>(file)}) {
    ExpectRefused(kBadNode, -1, zonGetInt(bad));
    ExpectRefused(kBadNode, -1, zonGetFloat(bad));
    ExpectRefused(kBadNode, -1, zonGetDouble(bad));
    ExpectRefused(kBadNode, -1, (zonPasGetFloatProc(bad, &single), single));
    ExpectRefused(kBadNode, -1, (zonPasGetDoubleProc(bad, &number), number));
    ExpectRefused(kBadNode, 0, zonGetSyntaxClass(bad));
    ExpectRefused(kBadNode, std::string(), zonGetName(bad));
    ExpectRefused(kBadNode, std::string(), zonGetFilename(bad));
    ExpectRefused(kBadNode, 0, (zonSetFilename(bad, "A"), 0));
    ExpectRefused(kBadNode, nullptr, zonSectionByNum(bad, 1));
    ExpectRefused(kBadNode + " Invalid zonNode Invalid zonNode", nullptr, zonGetParentSection(bad));
  }
  for (void* bad : {static_cast<void*>(file), zonGetRoot(file)})
    ExpectRefused("1006 Invalid CLOB object", nullptr, zonGetErrorFromZonClob(bad));
}

TEST(Handles, BadFiles) {
  File file(zonCreate()), treeless(Load("[A] k ="));
  EXPECT_EQ(zonGetErrorGlb(), 1003);
  void* root = zonGetRoot(file);
  for (void* bad : {static_cast<void*>(nullptr), root}) {
    ExpectRefused("1005", nullptr, zonGetRoot(bad));
    ExpectRefused("1005", nullptr, zonGetErrorFromZonData(bad));
  }
  for (void* bad : {static_cast<void*>(nullptr), root, static_cast<void*>(treeless)}) {
    const std::string heard = bad == treeless ? kBadNode : "1005 Invalid zonHandle (CzonData)";
    ExpectRefused(heard, 0, zonGetNoTargets(bad));
    ExpectRefused(heard, nullptr, zonTargetByNum(bad, 1));
    ExpectRefused(heard, nullptr, zonTargetByNameNum(bad, "A", 1));
    ExpectRefused(heard, nullptr, zonFindSectionByHandle(bad, "A"));
    ExpectRefused(heard, 0, (zonExplore(bad, nullptr), 0));
  }
  EXPECT_EQ(zonGetRoot(treeless), nullptr);
  for (void** bad : {static_cast<void**>(nullptr), &root}) zonClose(bad);
  EXPECT_EQ(Messages(), Texts(2, "Invalid zonHandle (CzonData)"));
  zonClose(file.Address());
  EXPECT_EQ(file, nullptr);
}

TEST(Handles, SyntaxErrorsAndCounters) {
  unsigned line = 7, position = 7;
  const char* message = "untouched";
  CzonLoad unread(nullptr);
  EXPECT_EQ(zonGetSyntaxErr(&unread, &line, &position, &message), nullptr);
  EXPECT_STREQ(message, "untouched");
  EXPECT_EQ(line, 0U);
  EXPECT_EQ(position, 0U);
  EXPECT_EQ(zonNoLines(&unread), 0U);
  const File treeless(Load("[A] k =")), built(zonCreate());
  zonGetErrorGlb();
  Reports();
  EXPECT_STREQ(zonGetSyntaxErr(treeless, nullptr, nullptr, nullptr), "syntax error");
  for (void* bad : {static_cast<void*>(nullptr), zonGetRoot(built), static_cast<void*>(built)}) {
    const std::string heard = "1005 Invalid zonHandle (CzonLoad)";
    ExpectRefused(heard, 0U, zonNoChars(bad));
    ExpectRefused(heard, 0U, zonNoLines(bad));
    ExpectRefused(heard, 0U, zonNoComments(bad));
    ExpectRefused(heard, 0U, zonNoTokens(bad));
    ExpectRefused(heard, std::string(), zonGetSyntaxErr(bad, &line, nullptr, &message));
    EXPECT_EQ(line, 0U);
    EXPECT_STREQ(message, "");
  }
}

TEST(Handles, FirstErrorStays) {
  zonGetRoot(nullptr);
  File file(zonCreate());
  EXPECT_EQ(zonGetErrorGlb(), 0) << "cleared by a new file";
  onMessage = [](const char*) { throw std::runtime_error("hook"); };
  ExpectRefused("1006 " + kUnfit, -1, zonGetInt(zonGetRoot(file)));
  zonAddInt(file, 1);
  zonDump(nullptr, "");
  onMessage = nullptr;
  *zonGetFilename(nullptr) = 'x';
  EXPECT_STREQ(zonGetName(nullptr), "") << "a returned empty text stays empty";
  EXPECT_EQ(zonPeekErrorGlb(), 1005);
  EXPECT_EQ(zonGetErrorGlb(), 1005);
  EXPECT_EQ(zonGetErrorGlb(), 0);
  EXPECT_EQ(Messages(), (Texts{"Missing current keyword", "zonDump: bad argument",
                               "Invalid zonNode", "Invalid zonNode"}));
}

TEST(Handles, ErrorTexts) {
  for (int code = 1000; code < 1015; ++code)
    EXPECT_STRNE(zonGetErrorMessageFromErrorCode(code), "unknown error code") << code;
  const char* last = zonGetErrorMessageFromErrorCode(1001);
  EXPECT_STREQ(last, "Error opening file. (ERR_FILE_OPEN , 1001)");
  EXPECT_STREQ(zonGetErrorMessageFromErrorCode(999), "unknown error code");
  EXPECT_STREQ(last, "unknown error code") << "the text is overwritten";
}

// Wherever the base lies in an object of a host's class, also when asked again.
TEST(Handles, ClassesOfTheHost) {
  struct Both : CzonCreate, CzonKeyword {
  } both;
  CzonBase* const bases[] = {static_cast<CzonData*>(&both), static_cast<CzonKeyword*>(&both)};
  for (int turn : {0, 1, 0, 1}) {
    EXPECT_EQ(zonGetSyntaxClass(bases[turn]), kZonKeyword);
    EXPECT_NE(zonGetRoot(bases[turn]), nullptr);
  }
}

struct Sample : File {
  Sample()
      : File(
            Load("[Model] default (k) = 7\n k = 1, 2.5, 'it''s', TRUE, |a\\b|, , #2020-01-01#, %x\n"
                 " k = 3.0 [Grid] default (K) = , , 9 EndSect [GRID] EndSect EndSect\n"
                 "[Other] [Grid] EndSect EndSect [model] EndSect\n")) {}
  void* root = zonGetRoot(*this);
  void* model = zonTargetByNum(*this, 1);
  void* k = zonKeywordByNum(model, 1);
  void* grid = zonSectionByNum(model, 1);
  void* definition = zonNodeByNum(grid, 1);
};

// A node as its global name and instance number: "Model.Grid#1".
std::string Node(void* node) {
  if (node == nullptr) return "none";
  return zonGetNameGlb(node) + ("#" + std::to_string(zonGetInstanceNo(node)));
}

TEST(Queries, ChildrenByNumberAndName) {
  const Sample s;
  EXPECT_EQ(zonGetNoTargets(s), 3);
  EXPECT_EQ(zonGetNoNodes(s.model), 5);
  EXPECT_EQ(zonGetNoSections(s.model), 2);
  EXPECT_EQ(zonGetNoKeywords(s.model), 2);
  EXPECT_EQ(zonGetNoParams(s.k), 8);
  EXPECT_EQ(zonGetNoInstances(s.k), 2);
  EXPECT_EQ(Node(zonTargetByNum(s, 0)), "none");
  EXPECT_EQ(Node(zonTargetByNum(s, UINT_MAX)), "none");
  EXPECT_EQ(Node(zonTargetByNameNum(s, "MODEL", 2)), "model#2");
  EXPECT_EQ(Node(zonTargetByNameNum(s, nullptr, 1)), "none");
  EXPECT_EQ(Node(zonFindSectionByHandle(s, nullptr)), "none");
  EXPECT_EQ(Node(zonSectionByNameNum(s.model, "grid", 2)), "Model.GRID#2");
  EXPECT_EQ(Node(zonKeywordByNameNum(s.model, "K", 2)), "Model.k#2");
  EXPECT_EQ(Node(zonNodeByNum(s.model, 4)), "Model.Grid#1");
  EXPECT_EQ(Node(zonParamByNum(s.k, 9)), "none");
  ExpectRefused("0 " + kUnfit, nullptr, zonKeywordByNum(s.root, 1));
}

TEST(Queries, DefaultsParentsAndLevels) {
  const Sample s;
  void *placeholder = zonNodeByNum(s.definition, 1), *unfound = zonNodeByNum(s.definition, 2);
  EXPECT_EQ(zonGetLevel(unfound), 4);
  EXPECT_EQ(zonIsTarget(s.model), 1);
  EXPECT_EQ(zonIsTarget(s.grid), 0);
  EXPECT_EQ(zonGetInt(zonFindDefault(placeholder)), 7);
  EXPECT_EQ(zonFindDefault(unfound), unfound);
  EXPECT_EQ(zonFindDefault(zonNodeByNum(s.k, 1)), nullptr);
  CzonInt detached("1");
  CzonDefaultPar alone;
  EXPECT_EQ(zonFindDefault(&alone), &alone);
  EXPECT_EQ(zonGetParentSection(s.root), nullptr);
  EXPECT_EQ(zonGetParentSection(s.model), s.root);
  EXPECT_EQ(zonGetParentSection(&detached), nullptr);
  EXPECT_EQ(zonGetParentSection(s.k), s.model);
  EXPECT_EQ(zonGetParentSection(placeholder), s.grid);
  zonExplore(s, nullptr);
}

TEST(Queries, ElementsOfAPathAreSplit) {
  char element[] = "a:-9999999999", same[] = "b:3";
  int instance = 7;
  splitElement(nullptr, nullptr);
  splitElement(same, nullptr);
  EXPECT_STREQ(same, "b");
  splitElement(element, &instance);
  EXPECT_STREQ(element, "a");
  EXPECT_EQ(instance, INT_MIN);
}

// Names of every length are found among many, whatever follows them in the file.
TEST(Queries, NamesOfAnyLength) {
  constexpr std::size_t kLongest = 100;
  std::string text = "[A] ";
  for (std::size_t length = 1; length <= kLongest; ++length) {
    text += std::string(length, 'n') + (length % 2 != 0 ? "=1 " : "\n=1 ");
  }
  const File file(Load(text + "EndSect"));
  for (std::size_t length = 1; length <= kLongest; ++length) {
    const std::string name(length, 'N');
    EXPECT_NE(zonKeywordByNameNum(zonTargetByNum(file, 1), name.c_str(), 1), nullptr) << length;
  }
}

TEST(Queries, SectionPaths) {
  const Sample s;
  const auto find = [&](const std::string& path) {
    return Node(zonFindSectionByHandle(s, path.c_str()));
  };
  const auto findInOther = [&](const char* path) {
    return Node(zonFindSectionByNode(zonTargetByNum(s, 2), path));
  };
  EXPECT_EQ(find(""), "none");
  EXPECT_EQ(findInOther(""), "Other#1");
  EXPECT_EQ(find("../Grid"), "none");
  EXPECT_EQ(findInOther("../Grid"), "Other.Grid#1");
  EXPECT_EQ(find("Model: +2:1"), "model#2");
  EXPECT_EQ(find("Model:x2"), "Model#1");
  const std::string many(100000, '/');
  EXPECT_EQ(find(many + "Model..Grid:002" + many), "Model.GRID#2");
  for (const char* none : {"A/Grid", " Model", "Model:0", "Model:-1", "Model:4294967297",
                           "Model:18446744073709551617"}) {
    EXPECT_EQ(find(none), "none") << none;
    EXPECT_EQ(findInOther(none), "none") << none;
  }
  EXPECT_EQ(Messages(), Texts{});
}

// The call must copy the text into a buffer of this size and of no smaller one.
template <class Copy, class... Node>
void ExpectCopied(const char* text, Copy copy, Node... node) {
  char buffer[40] = "kept";
  const int size = static_cast<int>(std::strlen(text)) + 1;
  EXPECT_EQ(copy(node..., nullptr, 40), -1);
  for (int room = -9; room < size; ++room) EXPECT_EQ(copy(node..., buffer, room), -1) << text;
  EXPECT_STREQ(buffer, "kept");
  EXPECT_EQ(copy(node..., buffer, size), 0) << text;
  EXPECT_STREQ(buffer, text);
}

TEST(Queries, CopiesNeedRoomForTheZero) {
  const Sample s;
  zonSetAnchorFilename(s.model, "/d/f.zon");
  ExpectCopied("Model", zonGetName2, s.model);
  ExpectCopied("Model.k", zonGetNameGlb2, s.k);
  ExpectCopied("it's", zonGetString2, zonParamByNum(s.k, 3));
  ExpectCopied("/d/a/b", zonGetFilename2, zonParamByNum(s.k, 5));
  ExpectCopied("/d/f.zon", zonGetAnchorFilename2, s.root);
  ExpectCopied("", zonGetAnchorFilename2, s.model);
  ExpectCopied("20.0.0.15342", zonGetBuildVersion2);
  ExpectCopied("zon2004", zonGetDLLid2);
  ExpectCopied(zonGetVersion(), zonGetVersion2);
  EXPECT_EQ(std::strlen(zonGetVersion()), 20U);
  EXPECT_EQ(zonGetFilename2(zonParamByNum(s.k, 3), nullptr, 5), -2);
  EXPECT_EQ(Messages(), Texts{kUnfit});
}

}  // namespace
