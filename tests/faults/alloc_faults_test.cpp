// Out of memory at each place where the library allocates: the n-th request of a call is refused,
// alone or with all after it, for n = 1, 2 and so on until the call succeeds. Each time the call
// must return its failure value and report it, leave everything as it was, and leak nothing.
#include <new>
#include <regex>

#include "../treetext.h"
#include "alloc_faults.h"
#include "zonx.h"

namespace {

using namespace host;
using namespace std::string_literals;
using faults::Refusal, faults::RefuseRequest, faults::StopRefusing, faults::AllocatedNow;

const char kLong[] = "/a/text/that/no/object/holds/without/memory/of/its/own";
const char kName[] = "K_of_a_name_as_long";
const char kInner[] = "another_section_of_a_long_name";
const std::string kText =
    "[SYSTEM] ResultRootFolder = |r/" + std::string(50, 'r') +
    "| UseCustomResultFolder = true CustomResultFolder = |c/" + std::string(50, 'c') +
    "| EndSect /* a /* b */ */\n"
    "[A_section_of_a_long_name] {a remark, longer than a short one} ; c\n"
    "default(K_of_a_name_as_long) = 'by default, at length', 3.5, |default.dat|\n"
    "[Another_section_of_a_long_name()] k = 1 EndSect\n"
    "K_of_a_name_as_long {r} = -12, 2.5e300, TRUE, 'a string that''s as long as it takes',\n"
    "|out\\of\\the\\way\\" +
    std::string(30, 'f') +
    ".dat|, #2031-02-14 05:12:00#, %substitute, , {unknown, and a remark of it},\n"
    "'<CLOB:Boolean:true,Integer:5,Float:.5,Double:2.5,String:\"a \"\"long\"\" string of it\","
    "Filename:\"out\\of\\a\\clob\\that\\is\\long.dat\">', '<CLOB:Integer:x>'\nEndSect";
const std::string kTokenText =  // the token reader reads it without an error
    "[Section_of_a_long_name] // comment\n k = 1, 2.5, true, , 'a string, longer than short ones'\n"
    " [Inner] file = |out\\of\\the\\way\\at\\length.dat| list = 1, 2, 3 EndSect\nEndSect\n";

enum class Start {
  kLoaded,
  kLoadedWithoutResults,
  kEdited,
  kClobCurrent,
  kSectionCurrent,
  kNoneCurrent,
  kUnwritable
};

// The node of a loaded tree that a query is made on.
enum Place : unsigned {
  kRoot,
  kSection,
  kInnerSection,
  kKeyword,
  kDefinition,
  kDeferredValues,  // a keyword
  kPlaceholder,
  kClobWithItems,
  kFirstValue,
  kPlaces = kFirstValue + 11
};

// What the calls are made on.
struct Tree {
  Tree(Start start, unsigned place, const std::string& fileName) : target(fileName) {
    start <= Start::kEdited ? MakeLoaded(place) : MakeBuilt(start);
    if (start == Start::kEdited) Change();
    if (start != Start::kLoadedWithoutResults) return;
    zonSetProjectResultRoot(file, "");
    zonSetCustomResultFolder(file, 0, "");
  }

  void MakeLoaded(unsigned place) {
    static const std::string path = [] {
      std::string all = kText.substr(0, kText.rfind("EndSect")) + "Many = 'text', |file|, true";
      for (int n = 0; n < 150; ++n) all += ", 1.5";  // so many values are made when queried
      return WriteFile("faults.zon", all + " EndSect");
    }();
    *file.Address() = zonLoadFile(path.c_str(), 1);
    section = zonTargetByNum(file, 2);
    keyword = zonKeywordByNum(section, 1);
    void* const nodes[] = {zonGetRoot(file),
                           section,
                           zonSectionByNum(section, 1),
                           keyword,
                           zonNodeByNum(section, 1),
                           zonKeywordByNum(section, 2)};
    if (place == kPlaceholder) zoneInsertParameterDefault(keyword, 1);
    const unsigned value = place == kPlaceholder     ? 1
                           : place == kClobWithItems ? 10
                                                     : place - kFirstValue + 1;
    node = place <= kDeferredValues ? nodes[place] : zonNodeByNum(keyword, value);
    if (place == kClobWithItems) zonIsClobEnd(node);
  }

  // So that a save replaces, inserts and erases.
  void Change() {
    zoneRenameSection(section, kLong + 1);
    zoneDeleteSectionByNum(section, 1);
    zoneInsertNewSection(zonGetRoot(file), kInner, 2);
    zoneInsertParameterString(zoneInsertNewKeyword(section, kName, 1), 0, kLong);
    zonxSetText(section, "Many[7]", "");
    zonxSetText(keyword, "", "-12, 2, %other {a remark that is new}, |a/file|");
  }

  void MakeBuilt(Start start) {
    *file.Address() = zonCreate();
    zonAddTarget(file, "A_section_of_a_long_name");
    zonAddKeyword(file, kName);
    zonAddClob(file);
    zonAddClobInt(file, 5);
    if (start == Start::kUnwritable) zonAddDouble(file, HUGE_VAL);
    if (start == Start::kNoneCurrent) zonEndSection(file);
    if (start == Start::kSectionCurrent) zonAddSection(file, "Another");
  }

  // The tree, the cursor, the settings and what was written.
  std::string Listing() {
    const auto& data = As<CzonData>(file);
    const CzonTargetList& root = *data.GetRoot();
    std::string folder;
    int use = 0;
    root.GetCustomResultFolder(&use, &folder);
    return Show(data.GetCurrentSection()) + Show(data.GetCurrentKeyword()) +
           Show(data.GetCurrentClob()) + Show(&root) + std::to_string(root.GetNoSections()) +
           folder + std::to_string(use) + root.GetResultRoot() +
           (root.GetZonFilename() == target ? "target" : root.GetZonFilename()) +
           (target.empty() ? "" : ReadFileWithoutDates(target));
  }

  static int CreateAndClose() {
    void* created = zonCreate();
    if (created == nullptr) return 0;
    zonClose(&created);
    return 1;
  }

  // Every successful renaming of a tree alternates between two names.
  int Rename(int (*rename)(void*, const char*), void* named) {
    const int code = rename(named, renamings % 2 != 0 ? kLong : kName);
    if (code == 0) ++renamings;
    return code;
  }

  // Removes the keyword that a call has added and returns its result.
  int Undo(int result) {
    StopRefusing();
    void* added = zonFindSectionByHandle(file, "A_section_of_a_long_name/Another");
    while (zonGetNoKeywords(added) > 0) zoneDeleteKeywordByNum(added, 1);
    return result;
  }

  File file{nullptr};
  void *section = nullptr, *keyword = nullptr, *node = nullptr;
  int renamings = 0;
  std::string target;
  std::string source = FolderPath() + "/faults.zon";
};

// Where the calls put their results.
int number = 1;
double real = 1;
float single = 1;
bool truth = false;
const char* text = "";
char room[1000] = "";
CString string("");

const char* Copied(int) {
  return room;
}

template <class T>
std::string TextOf(T result) {
  if constexpr (std::is_arithmetic_v<T>) {
    return std::to_string(result);
  } else if constexpr (std::is_convertible_v<T, const char*>) {
    return result != nullptr ? result : "null";
  } else {
    return result != nullptr ? "not null" : "null";
  }
}

struct Call {
  const char* name;
  std::string (*result)(Tree& t);
  std::string failure;  // the result if out of memory
};
using Calls = std::vector<Call>;

Call MakeCall(const char* name, std::string (*result)(Tree& t)) {
  return {name, result, {}};
}
template <class F>
std::string ResultOf(F call) {
  if constexpr (std::is_void_v<decltype(call())>) {
    call();
    StopRefusing();
    return "void";
  } else {
    const auto result = call();
    StopRefusing();
    return TextOf(result);
  }
}
#define CALL(...)        \
  MakeCall(#__VA_ARGS__, \
           []([[maybe_unused]] Tree& t) { return ResultOf([&] { return __VA_ARGS__; }); })
#define ASK(function) CALL(function(t.node))
// Both forms of a function of the builder.
#define ADD(function, ...) \
  Failing("void", CALL(function(__VA_ARGS__))), Failing("2000", CALL(function##S(__VA_ARGS__)))

template <class... C>
Calls Failing(const char* result, C... calls) {
  return {Call{calls.name, calls.result, result}...};
}

template <class... C>
std::vector<Calls> Groups(C... groups) {
  return {groups...};
}

// What a function of zonx.h returns and whether it has set its output.
template <class T, class F>
const char* StatusOf(F call) {
  static char shown[20];
  T output{};
  const int status = call(&output);
  StopRefusing();
  std::snprintf(shown, sizeof shown, "%d %s", status, output == T{} ? "unset" : "set");
  return shown;
}
const char kNoMemory[] = "2 unset";
#define GET(type, function, ...) \
  CALL(StatusOf<type>([&](type* output) { return function(__VA_ARGS__, output); }))
#define LIST(type, function, path)                     \
  CALL(StatusOf<std::size_t>([&](std::size_t* count) { \
    static type values[200];                           \
    return function(t.file, path, values, 200, count); \
  }))

#define SET(...) CALL(StatusOf<int>([&](int*) { return __VA_ARGS__; }))

void Count(const zonxReport*, void* count) {
  ++*static_cast<int*>(count);
}

struct Outcome {
  std::string result;
  int code;
  bool isReported;
};

Outcome Run(const Call& call, Tree& tree, long refused, Refusal refusal) {
  zonGetErrorGlb();
  Messages();
  room[0] = '\0';
  RefuseRequest(refused, refusal);
  const std::string result = call.result(tree);
  const int code = zonGetErrorGlb();
  Reports();
  const bool isReported = code != 0 || !Messages().empty() || call.failure == "2000";
  return {result, code, isReported || (call.failure == kNoMemory && result == kNoMemory)};
}

// Makes the call on one tree with each of its requests refused in turn, and on a reference tree
// without any refusal. The trees must always be equal.
void Inject(const Call& call, Start start, unsigned place, int repetitions,
            const std::string& target) {
  const std::string other = target.empty() ? "" : target + "2";
  for (const Refusal refusal : {Refusal::kOne, Refusal::kAllAfter}) {
    SCOPED_TRACE(call.name + " on place "s + std::to_string(place));
    std::remove(target.c_str());
    std::remove(other.c_str());
    const long before = AllocatedNow().pieces;
    {
      Tree tree(start, place, target), reference(start, place, other);
      // A listing makes deferred values, whose requests are to be refused in the first round.
      const bool canList = refusal == Refusal::kAllAfter;
      for (int again = 0; again < repetitions && !testing::Test::HasFailure(); ++again) {
        std::string listing = canList ? reference.Listing() : "";
        Outcome expected = Run(call, reference, 0, refusal);
        for (long n = 1; n < 5000 && !testing::Test::HasFailure(); ++n) {
          SCOPED_TRACE("repetition " + std::to_string(again) + ", request " + std::to_string(n));
          const Outcome got = Run(call, tree, n, refusal);
          const bool hasRefused = StopRefusing();
          if (hasRefused && got.isReported) {
            EXPECT_EQ(got.result, call.failure);
            EXPECT_EQ(canList ? tree.Listing() : listing, listing);
            continue;
          }
          // It has succeeded, perhaps without the memory that was refused.
          EXPECT_EQ(got.result, expected.result);
          EXPECT_EQ(got.code, expected.code);
          if (!hasRefused) break;
          EXPECT_EQ(tree.Listing(), reference.Listing());
          expected = Run(call, reference, 0, refusal);
          if (canList) listing = reference.Listing();
        }
      }
      EXPECT_EQ(tree.Listing(), reference.Listing());
    }
    Messages();
    EXPECT_EQ(AllocatedNow().pieces, before) << "memory is not released";
  }
}

void InjectAll(const std::vector<Calls>& groups, Start start, unsigned place, int repetitions,
               const char* file = nullptr) {
  const std::string target = file != nullptr ? FolderPath() + "/" + file : "";
  for (const Calls& calls : groups) {
    for (const Call& call : calls) {  // makes what a process makes only once
      Tree tree(start, place, target);
      tree.Listing();
      call.result(tree);
      zonGetErrorGlb();
    }
  }
  Messages();
  for (const Calls& calls : groups) {
    for (const Call& call : calls) Inject(call, start, place, repetitions, target);
  }
}

class Faults : public testing::Test {
 protected:
  void SetUp() override {
    setenv("TZ", "UTC0", 1);
    zonLoadFile("", 0);  // allocates what stays with the hooks
    Reports();
  }
};

TEST_F(Faults, OfQueries) {
  const std::vector<Calls> queries = {
      Failing("null", CALL(zonSectionByNum(t.node, 1)), CALL(zonKeywordByNum(t.node, 1)),
              CALL(zonParamByNum(t.node, 1)), CALL(zonNodeByNum(t.node, 1)),
              CALL(zonSectionByNameNum(t.node, kInner, 1)),
              CALL(zonKeywordByNameNum(t.node, kName, 1)),
              CALL(zonFindSectionByNode(t.node, kInner)), ASK(zonGetParentSection),
              ASK(zonFindDefault), ASK(zonGetErrorFromZonClob)),
      Failing("-1", ASK(zonGetLevel), ASK(zonGetNoNodes), ASK(zonGetNoParams),
              ASK(zonGetNoKeywords), ASK(zonGetNoSections), ASK(zonGetInt), ASK(zonGetClobNoItems),
              ASK(zonGetClobInt)),
      Failing("-1.000000", ASK(zonGetDouble), ASK(zonGetFloat), ASK(zonGetClobFloat),
              ASK(zonGetClobDouble), CALL((zonPasGetDoubleProc(t.node, &real), real)),
              CALL((zonPasGetFloatProc(t.node, &single), single))),
      Failing("0", ASK(zonGetSyntaxClass), ASK(zonGetNoInstances), ASK(zonGetInstanceNo),
              ASK(zonIsTarget), ASK(zonIsSection), ASK(zonIsKeyword), ASK(zonIsParam),
              ASK(zonIsNumeric), ASK(zonIsInt), ASK(zonIsFloat), ASK(zonIsDouble), ASK(zonIsBool),
              ASK(zonIsString), ASK(zonIsFilename), ASK(zonIsUndefinedPar), ASK(zonIsDefaultPar),
              ASK(zonNumericIsIntType), ASK(zonGetBool), ASK(zonIsClob), ASK(zonIsClobBool),
              ASK(zonIsClobInt), ASK(zonIsClobFloat), ASK(zonIsClobDouble), ASK(zonIsClobString),
              ASK(zonIsClobFilename), ASK(zonGetClobBool)),
      Failing("void", ASK(zonClobReset), ASK(zonFileCopyCallBack),
              CALL(zonSetFilename(t.node, kLong)), CALL(zonSetAnchorFilename(t.node, kLong))),
      Failing("", ASK(zonGetName), ASK(zonGetNameGlb), ASK(zonGetString), ASK(zonGetFilename),
              ASK(zonGetFilenameString), ASK(zonGetAnchorFilename), ASK(zonGetZonFileName),
              ASK(zonGetProjectResultRoot), ASK(zonGetResultFilename), ASK(zonGetClobString),
              ASK(zonGetClobFilename), ASK(zonGetClobFilenameString),
              CALL(Copied(zonGetName2(t.node, room, 1000))),
              CALL(Copied(zonGetNameGlb2(t.node, room, 1000))),
              CALL(Copied(zonGetString2(t.node, room, 1000))),
              CALL(Copied(zonGetFilename2(t.node, room, 1000))),
              CALL(Copied(zonGetAnchorFilename2(t.node, room, 1000))),
              CALL(Copied(zonGetResultFilenamePath2(t.node, room, 1000))),
              CALL((zonGetCustomResultFolder(t.node, &number, room), &room[0])),
              CALL((zonGetResultFolderPath(t.node, room), &room[0])),
              CALL((zonGetResultFilenamePath(t.node, room), &room[0]))),
      Failing("-2", CALL(zonGetCustomResultFolder2(t.node, &number, room, 1000)),
              CALL(zonGetResultFolderPath2(t.node, room, 1000))),
      Failing("1", ASK(zonIsClobEnd))};
  for (unsigned place = 0; place < kPlaces; ++place) InjectAll(queries, Start::kLoaded, place, 2);
}

TEST_F(Faults, OfQueriesOfAFile) {
  const std::vector<Calls> calls = {
      Failing("0", CALL(zonGetErrorGlb()), CALL(zonPeekErrorGlb()), CALL(zonIsEqvQuiet()),
              CALL(zonGetNoTargets(t.file)), CALL(zonNoChars(t.file)), CALL(zonNoLines(t.file)),
              CALL(zonNoComments(t.file)), CALL(zonNoTokens(t.file)), CALL(t.CreateAndClose()),
              CALL(zonEqvSection(&As(t.section), &As(t.section))),
              CALL(zonEqvKeyword(&As(t.keyword), &As(t.keyword))),
              CALL(zonEquivalent(t.section, t.section, nullptr)),
              CALL(zonEquivalentExt(t.keyword, t.keyword, nullptr, 1))),
      Failing("", CALL(zonGetSyntaxErr(t.file, nullptr, nullptr, &text)),
              CALL(zonGetErrorMessageFromErrorCode(1001)), CALL(zonGetVersion()),
              CALL(zonGetBuildVersion()), CALL(zonGetDLLid())),
      Failing("-1", CALL(zonGetDLLid2(room, 1000)), CALL(zonGetVersion2(room, 1000)),
              CALL(zonGetBuildVersion2(room, 1000))),
      Failing("void", CALL(zonConstructResultFolderPathName()), CALL(splitElement(room, &number)),
              CALL(zonExplore(t.file, [](CzonNode*) {})),
              CALL(zonSetProjectResultRoot(t.file, kLong)),
              CALL(zonSetCustomResultFolder(t.file, 1, kLong))),
      Failing("null", CALL(zonGetRoot(t.file)), CALL(zonGetErrorFromZonData(t.file)),
              CALL(zonTargetByNum(t.file, 1)), CALL(zonTargetByNameNum(t.file, kName, 1)),
              CALL(zonFindSectionByHandle(t.file, "A_section_of_a_long_name/x"))),
      Failing("0", CALL(zonGetParam(t.section, kName, &number, 1, 1)),
              CALL(zonGetParam(t.section, kName, &single, 1, 2)),
              CALL(zonGetParam(t.section, kName, &real, 1, 2)),
              CALL(zonGetParam(t.section, kName, &truth, 1, 3)),
              CALL(zonGetParam(t.section, kName, &string, 1, 4)),
              CALL(zonGetParamFilename(t.section, kName, &text, 1, 5)),
              CALL(zonGetParamFilename(t.section, kName, &string, 1, 5)),
              CALL(zonGetParamResultFilename(t.section, kName, &text, 1, 4)),
              CALL(zonGetParamResultFilename(t.section, kName, &string, 1, 5)),
              CALL(zonGetParamResultFilePath(t.section, kName, &text, 1, 4)),
              CALL(zonGetListParam(t.section, kName, 1, "idb", &number, &real, &truth)))};
  InjectAll(calls, Start::kLoaded, kKeyword, 1);
}

TEST_F(Faults, OfZonx) {
  static const std::string section = "A_section_of_a_long_name/", many = section + "Many",
                           keyword = section + kName, missing = section + std::string(100, 'm'),
                           text4 = keyword + "[4]", file5 = keyword + "[5]";
  static const zonxReport report{ZONX_ERROR, "", kLong, kLong, {}, {}, "", kLong};
  const std::vector<Calls> calls = {
      Failing(kNoMemory, GET(void*, zonxFind, t.file, file5.c_str()),
              GET(void*, zonxFind, t.file, missing.c_str()),
              GET(int, zonxGetInt, t.file, keyword.c_str()),
              GET(long long, zonxGetInt64, t.file, keyword.c_str()),
              GET(double, zonxGetDouble, t.file, keyword.c_str()),
              GET(int, zonxGetBool, t.file, missing.c_str()),
              GET(const char*, zonxGetString, t.file, text4.c_str()),
              GET(const char*, zonxGetFilename, t.file, file5.c_str()),
              GET(const char*, zonxGetText, t.file, text4.c_str()),
              GET(const char*, zonxGetRemark, t.keyword), LIST(int, zonxGetInts, keyword.c_str()),
              LIST(long long, zonxGetInt64s, many.c_str()),
              LIST(double, zonxGetDoubles, many.c_str()), LIST(int, zonxGetBools, many.c_str()),
              LIST(const char*, zonxGetStrings, many.c_str()),
              CALL(StatusOf<const char*>([&](const char** name) {
                zonxPlace place{};
                const int status = zonxWhere(t.keyword, &place);
                *name = place.file;
                return status;
              })),
              CALL(StatusOf<char>([&](char* first) {
                const bool isEmpty = zonxFormatReport(&report, room, sizeof room) == 0;
                *first = room[0];
                return isEmpty ? ZONX_NO_MEMORY : ZONX_OK;
              })),
              CALL(StatusOf<int>([&](int* count) {
                return zonxReportNode(t.keyword, 0, "", kLong, kLong, Count, count);
              })),
              CALL(StatusOf<int>([&](int* count) {
                return zonxReportPath(t.file, missing.c_str(), ZONX_MISSING, Count, count);
              })),
              CALL(StatusOf<std::size_t>([&](std::size_t* count) {
                int reports = 0;
                const int status = zonxWatch(t.file, 1);
                return status != 0 ? status : zonxReportUnread(t.file, Count, &reports, count);
              }))),
      Failing("none", ASK(zonxGetKind), CALL(zonxGetVersion()), CALL(zonxStatusText(2)),
              CALL(zonxSetHooks(nullptr, nullptr, nullptr)))};
  InjectAll(calls, Start::kLoaded, kKeyword, 2);
}

TEST_F(Faults, OfSetters) {
  static const std::string section = "A_section_of_a_long_name/", many = section + "Many",
                           keyword = section + kName, inner = section + kInner + "/new",
                           fresh = section + "New_section_of_a_long_name/Inner/" + kName;
  static const char remarked[] = "5 {a remark, longer than a short one}, 'a string of a long text'";
  static const std::vector<long long> integers(200, 12345678901);
  static const std::vector<double> reals(160, 1.0 / 3);
  static const char* const texts[] = {kLong, kName, kLong};
  static const int truths[] = {1, 0};
  static const auto at = [](int n) { return keyword + "[" + std::to_string(n) + "]"; };
  static const std::string second = at(2), fourth = at(4), fifth = at(5), last = at(11);
  const Calls calls = Failing(
      kNoMemory, SET(zonxSetInt64(t.file, keyword.c_str(), 12345678901)),
      SET(zonxSetInt64(t.file, last.c_str(), 1)), SET(zonxSetInt64(t.file, fresh.c_str(), 1)),
      SET(zonxSetDouble(t.file, second.c_str(), 1.0 / 3)),
      SET(zonxSetDouble(t.file, keyword.c_str(), 1.0 / 3)),
      SET(zonxSetBool(t.file, inner.c_str(), 1)), SET(zonxSetString(t.file, fourth.c_str(), kLong)),
      SET(zonxSetFilename(t.file, fifth.c_str(), kLong)),
      SET(zonxSetText(t.file, many.c_str(), remarked)),
      SET(zonxSetText(t.file, fresh.c_str(), remarked)),
      SET(zonxSetInt64s(t.file, many.c_str(), integers.data(), integers.size())),
      SET(zonxSetDoubles(t.file, many.c_str(), reals.data(), reals.size())),
      SET(zonxSetBools(t.file, fresh.c_str(), truths, 2)),
      SET(zonxSetStrings(t.file, keyword.c_str(), texts, 3)),
      SET(zonxRemove(t.file, fourth.c_str())), SET(zonxRemove(t.file, section.c_str())));
  InjectAll({calls}, Start::kLoaded, kKeyword, 2);
}

// Another file in another folder: what it has in common is changed, moved, or equal.
void* LoadOther() {
  const OwnMemory mark;
  void* other = nullptr;
  std::string content = kText.substr(0, kText.rfind("EndSect")) +
                        "[One_more_section_of_a_long_name] {a remark, longer than a short one} " +
                        kName + " = 'a string of a long text' {and its remark} EndSect\n" + kName +
                        "_too = |a/file|, 1.5 default(new) = 'a string of a long text' EndSect";
  content.replace(content.find("2.5e300"), 7, "'another kind, of a long text'");
  content.replace(content.find("-12"), 3, "-13, 14");
  EXPECT_EQ(
      zonxLoadText(content.data(), content.size(), "/another/f.zon", &other, nullptr, nullptr),
      ZONX_OK);
  return other;
}

void CountDifference(const zonxDifference*, void* count) {
  ++*static_cast<int*>(count);
}

TEST_F(Faults, OfComparingAndMerging) {
  static const auto diff = [](Tree& t, const char* key) {
    const File other(LoadOther());
    int visited = 0;
    const char* const status = StatusOf<std::size_t>([&](std::size_t* count) {
      return key != nullptr
                 ? zonxDiffByKey(t.file, other, key, nullptr, CountDifference, &visited, count)
                 : zonxDiff(other, t.file, nullptr, CountDifference, &visited, count);
    });
    return status;
  };
  static const auto merge = [](Tree& t) {
    const File other(LoadOther());
    return StatusOf<int>([&](int*) { return zonxMerge(t.file, other); });
  };
  const Calls calls =
      Failing(kNoMemory, CALL(diff(t, nullptr)), CALL(diff(t, "k")), CALL(merge(t)));
  for (const Start start : {Start::kLoaded, Start::kEdited, Start::kClobCurrent}) {
    InjectAll({calls}, start, kKeyword, 2);
  }
}

TEST_F(Faults, OfTheBuilder) {
  static char own[] = "text";
  const auto adds = Groups(
      ADD(zonAddSection, t.file, kLong), ADD(zonAddKeyword, t.file, kLong),
      ADD(zonAddInt, t.file, -12345678), ADD(zonAddFloat, t.file, 1.5F),
      ADD(zonAddDouble, t.file, 2.5), ADD(zonAddBool, t.file, 1), ADD(zonAddString, t.file, kLong),
      ADD(zonAddFilename, t.file, kLong), ADD(zonAddUndefinedPar, t.file),
      ADD(zonAddIntRef, t.file, &number), ADD(zonAddFloatRef, t.file, &single),
      ADD(zonAddDoubleRef, t.file, &real), ADD(zonAddStringRef, t.file, own),
      ADD(zonAddBoolRef, t.file, &number), ADD(zonAddSectionDef, t.file, kLong, 1, 1),
      ADD(zonAddKeywordDef, t.file, kLong, "BDFINS", 1, 1, 1), ADD(zonAddIntDef, t.file),
      ADD(zonAddFloatDef, t.file), ADD(zonAddDoubleDef, t.file), ADD(zonAddStringDef, t.file),
      ADD(zonAddFilenameDef, t.file), ADD(zonAddBoolDef, t.file), ADD(zonAddClob, t.file),
      ADD(zonAddClobBool, t.file, 1), ADD(zonAddClobInt, t.file, 5),
      ADD(zonAddClobFloat, t.file, 0.5F), ADD(zonAddClobDouble, t.file, 0.1),
      ADD(zonAddClobString, t.file, "\""), ADD(zonAddClobFilename, t.file, kLong),
      ADD(zonAddResultFilename, t.file, kLong), ADD(zonAddResultFilename, t.file, kLong + 1));
  InjectAll(adds, Start::kClobCurrent, kRoot, 100);
  InjectAll({ADD(zonAddTarget, t.file, kLong)}, Start::kNoneCurrent, kRoot, 100);
  InjectAll({ADD(zonEndSection, t.file)}, Start::kClobCurrent, kRoot, 1);
  const Calls puts = Failing("0", CALL(t.Undo(zonPutParam(t.file, kLong, 5))),
                             CALL(t.Undo(zonPutParam(t.file, kLong, 5.0F))),
                             CALL(t.Undo(zonPutParam(t.file, kLong, 5.0))),
                             CALL(t.Undo(zonPutParam(t.file, kLong, true))),
                             CALL(t.Undo(zonPutParam(t.file, kLong, kLong))),
                             CALL(t.Undo(zonPutParam(t.file, kLong, CString("text")))),
                             CALL(t.Undo(zonPutParamFilename(t.file, kLong, kLong))),
                             CALL(t.Undo(zonPutParamResultFilename(t.file, kLong, kLong))),
                             CALL(t.Undo(zonPutListParam(t.file, kLong, "ifdb", 1, 1.0, 1.0, 1))));
  InjectAll({puts}, Start::kSectionCurrent, kRoot, 100);
}

TEST_F(Faults, OfEditing) {
  const std::vector<Calls> repeatable = {
      Failing("1006", CALL(t.Rename(zoneRenameSection, t.section)),
              CALL(t.Rename(zoneRenameKeyword, t.keyword))),
      Failing("0", CALL(zonCopy(zonSectionByNum(t.section, 1), t.section))),
      Failing("null", CALL(zonInsert(t.section, t.section, 1)),
              CALL(zonInsert(t.keyword, t.keyword, 0)),
              CALL(zoneInsertNewSection(t.section, kLong, 1)),
              CALL(zoneInsertNewKeyword(t.section, kLong, 1)),
              CALL(zoneInsertParameterInt(t.keyword, 1, 12345678)),
              CALL(zoneInsertParameterFloat(t.keyword, 1, 2.5F)),
              CALL(zoneInsertParameterDouble(t.keyword, 1, 2.5)),
              CALL(zoneInsertParameterBool(t.keyword, 1, 1)),
              CALL(zoneInsertParameterString(t.keyword, 1, kLong)),
              CALL(zoneInsertParameterFilename(t.keyword, 1, kLong)),
              CALL(zoneInsertParameterUndefined(t.keyword, 1)),
              CALL(zoneInsertParameterDefault(t.keyword, 1)))};
  InjectAll(repeatable, Start::kLoaded, kKeyword, 4);
  const std::vector<Calls> once = {
      Failing("0", CALL(zonCopy(t.keyword, zonKeywordByNum(zonSectionByNum(t.section, 1), 1)))),
      Failing(
          "1006", CALL(zoneModifyParameterInt(t.keyword, 4, 12345678)),
          CALL(zoneModifyParameterFloat(t.keyword, 2, 2.5F)),
          CALL(zoneModifyParameterDouble(t.keyword, 1, 2.5)),
          CALL(zoneModifyParameterBool(t.keyword, 1, 1)),
          CALL(zoneModifyParameterString(t.keyword, 4, kLong)),
          CALL(zoneModifyParameterFilename(t.keyword, 4, kLong)),
          CALL(zoneDeleteParameterByNum(t.keyword, 4)), CALL(zoneDeleteSectionByNum(t.section, 1)),
          CALL(zoneDeleteSectionByNameNum(t.section, kInner, 1)),
          CALL(zoneDeleteKeywordByNum(t.section, 1)),
          CALL(zoneDeleteKeywordByNameNum(t.section, kName, 1)), CALL(zoneDeleteNode(t.section)))};
  InjectAll(once, Start::kLoaded, kKeyword, 1);
}

TEST_F(Faults, OfWriting) {
  const std::vector<Calls> writes = {
      Failing("void", CALL(zonWrite(t.file, t.target.c_str())),
              CALL(zonAppend(t.file, t.target.c_str()))),
      Failing("0", CALL(zonFileCopy(t.source.c_str(), t.target.c_str())))};
  for (const Start start : {Start::kLoaded, Start::kLoadedWithoutResults, Start::kClobCurrent})
    InjectAll(writes, start, kKeyword, 2, "target.zon");
  InjectAll({Failing("void", CALL(zonDump(t.section, t.target.c_str())))}, Start::kLoaded, kKeyword,
            1, "dump");
}

TEST_F(Faults, OfValidation) {
  static File pattern(nullptr), faulty(nullptr);
  const std::string sound =
      "[A_section_of_a_long_name] {required} Another_keyword_of_it = 1 {required; >= 1; one of 1, "
      "2}"
      " K_of_a_name_as_lonk = 'x' {one of 'a text that is longer than a short one', b; open}"
      " () {> 5; < 1e6} = 1, 2 EndSect";
  const std::string bad =
      "[A_section_of_a_long_name] k = 'x' {>= 0; one of a, b; one of c} EndSect";
  zonxLoadText(sound.data(), sound.size(), "t.zon", pattern.Address(), nullptr, nullptr);
  zonxLoadText(bad.data(), bad.size(), "t.zon", faulty.Address(), nullptr, nullptr);
  static const auto validate = [](void* wanted, void* file) {
    return StatusOf<int>([&](int*) {
      int reports = 0;
      return zonxValidate(wanted, file, Count, &reports);
    });
  };
  InjectAll({Failing(kNoMemory, CALL(validate(pattern, t.file)), CALL(validate(faulty, t.file)),
                     CALL(validate(t.file, t.file)))},
            Start::kLoaded, kKeyword, 2);
}

TEST_F(Faults, OfSaving) {
  static const auto save = [](Tree& t, unsigned flags) {
    return StatusOf<int>([&](int*) {
      int reports = 0;
      return zonxSave(t.file, t.target.c_str(), flags | ZONX_OVERWRITE, Count, &reports);
    });
  };
  static const auto make = [](Tree& t, unsigned flags) {
    return StatusOf<std::size_t>([&](std::size_t* size) {
      char* saved = nullptr;
      const int status = zonxText(t.file, flags, &saved, size, nullptr, nullptr);
      zonxFree(saved);
      return status;
    });
  };
  const Calls calls = Failing(kNoMemory, CALL(save(t, 0)), CALL(save(t, ZONX_PLAIN | ZONX_BACKUP)),
                              CALL(make(t, 0)), CALL(make(t, ZONX_PLAIN)));
  std::filesystem::create_directory(FolderPath() + "/moved");
  for (const Start start : {Start::kLoaded, Start::kLoadedWithoutResults, Start::kEdited,
                            Start::kClobCurrent, Start::kUnwritable})
    InjectAll({calls}, start, kKeyword, 2, "moved/target.zon");
}

// A load, a copy and a token stream as a text; an error code is at its start.
std::string LoadAsText(const std::string& path) {
  const File file(zonLoadFile(path.c_str(), 0));
  StopRefusing();
  const std::string code = std::to_string(zonGetErrorGlb());
  EXPECT_EQ(file != nullptr, code == "0" || code == "1003");
  return file == nullptr ? code : code + ShowTree(file) + SyntaxError(file);
}
// A load of a file and a check of the same text, with reports.
std::string ReportsAsText(const std::string& path) {
  std::string content;
  {
    const OwnMemory mark;
    content = ReadFile(path);
  }
  int reports = 0;
  File file(nullptr);
  const int loaded = zonxLoadFile(path.c_str(), file.Address(), Count, &reports);
  const int checked =
      zonxLoadText(content.data(), content.size(), path.c_str(), nullptr, Count, &reports);
  StopRefusing();
  EXPECT_EQ(file == nullptr, loaded == ZONX_NO_MEMORY);
  if (loaded == ZONX_NO_MEMORY || checked == ZONX_NO_MEMORY) return kNoMemory;
  EXPECT_EQ(loaded, checked);
  return std::to_string(loaded) + " " + std::to_string(reports) + ShowTree(file) +
         SyntaxError(file);
}
std::string CopyAsText(const std::string& path) {
  static const std::string target = FolderPath() + "/copy.zon";
  const int done = zonFileCopy(path.c_str(), target.c_str());
  StopRefusing();
  const std::string content = ReadFileWithoutDates(target);
  std::remove(target.c_str());
  EXPECT_NE(content.empty(), done == 1);
  return std::to_string(zonGetErrorGlb()) + content;
}
std::string TokensAsText(const std::string& path) {
  void* reader = nullptr;
  std::string all = std::to_string(zontLoadFile(path.c_str(), &reader));
  for (int token = 1; reader != nullptr && token != 0;) {
    token = zontNextToken(reader);
    const OwnMemory mark;
    all += " " + std::to_string(token) + zontGetTokenString(reader);
    if (token < 0) all += zontGetError(reader, nullptr, nullptr);
  }
  StopRefusing();
  zontDispose(&reader);
  return all;
}

TEST_F(Faults, OfWholeFiles) {
  const std::string large = "[A] s = '" + std::string(5 << 20, 's') + "' EndSect\n" + kText;
  std::string many = "[A]";
  while (many.size() < 700000) many += " key = 1, 2.5, 'three'\n";
  many += "EndSect";
  const std::string name(5000, 'n');
  std::string deep = "[" + name + "] " + name + " = '" + name + "' EndSect ";
  for (int depth = 0; depth < 70; ++depth) deep += "[]";
  std::string faulty;  // with errors, warnings and sections that are open
  for (int n = 0; n < 20; ++n) {
    faulty += "[A_section_of_a_long_name] k = 60,5 k = 1;2\n k = long_text_without_quotes\n [B\n";
  }
  const struct {
    std::string (*read)(const std::string&);
    const std::string& text;
    bool isCut;  // every beginning of the text is read as well
  } rows[] = {
      {LoadAsText, kText, true},    {CopyAsText, kText, false},    {TokensAsText, kTokenText, true},
      {TokensAsText, deep, false},  {LoadAsText, large, false},    {CopyAsText, large, false},
      {LoadAsText, many, false},    {CopyAsText, many, false},     {TokensAsText, many, false},
      {ReportsAsText, kText, true}, {ReportsAsText, faulty, false}};
  for (const auto& row : rows) {
    for (std::size_t size = row.isCut ? 0 : row.text.size(); size <= row.text.size(); ++size) {
      const std::string path = WriteFile("whole.zon", row.text.substr(0, size));
      const std::string expected = row.read(path);
      Reports();
      const faults::Allocated before = AllocatedNow();
      for (const Refusal refusal : {Refusal::kOne, Refusal::kAllAfter}) {
        bool hasRefused = true;
        for (long n = 1; hasRefused && !HasFailure(); ++n) {
          RefuseRequest(n, refusal);
          const std::string got = row.read(path);
          hasRefused = StopRefusing();
          const bool isCode =
              got.substr(0, 3) == "100" && (got[3] != '3' || row.read == CopyAsText);
          const bool isReported = isCode || got == kNoMemory ||
                                  got.find("Failed to extend buffer") != std::string::npos ||
                                  got.find("bad_alloc") != std::string::npos;
          EXPECT_TRUE(got == expected || (hasRefused && isReported)) << got.substr(0, 999);
        }
        Messages();
        Reports();
      }
      EXPECT_TRUE(AllocatedNow() == before) << size;
    }
  }
}

// Repeated copies, and what was made outside a file, are released.
TEST_F(Faults, NothingIsKept) {
  Tree tree(Start::kLoaded, kKeyword, "");
  void* onto = zonKeywordByNum(zonSectionByNum(tree.section, 1), 1);
  faults::Allocated before{};
  for (int n = 0; n < 100000; ++n) {
    if (n % 50000 == 999) {
      CzonTargetList copy;
      copy.Copy(&As(zonGetRoot(tree.file)));
      EXPECT_NE(copy.SectionByNum(2)->KeywordByNum(1)->FindDefault(nullptr, kName, 1), nullptr);
    }
    if (n == 1000) before = AllocatedNow();
    ASSERT_EQ(zonCopy(tree.keyword, onto), 1);
  }
  EXPECT_TRUE(AllocatedNow() == before);
}

// A new_handler of the host may throw anything.
TEST_F(Faults, ThrowAnything) {
  const std::string path = WriteFile("odd.zon", "[" + std::string(5000, 'n'));
  void* reader = nullptr;
  zontLoadFile(path.c_str(), &reader);
  std::set_new_handler([] { throw 1; });
  RefuseRequest(1);
  EXPECT_EQ(zontNextToken(reader), -1);
  EXPECT_STREQ(zontGetError(reader, nullptr, nullptr), "Unknown failure");
  std::set_new_handler(nullptr);
  zontDispose(&reader);
  CzonTokenReader none(nullptr);
  const std::string what(5000, 'x');
  RefuseRequest(1);
  none.Error(what.c_str());
  EXPECT_EQ(none.GetErrorText(), "std::bad_alloc");
}

TEST_F(Faults, OfALongTokenOfAHost) {
  CzonParser parser(new Memory(std::string(5000, 'n')));
  RefuseRequest(1);
  EXPECT_EQ(parser.yylex(), ENDOFINPUT);
  EXPECT_EQ(parser.GetError(), "Failed to extend buffer");
}

TEST_F(Faults, AreManyAndInEveryFunction) {
  const std::string here = __FILE__, own = ReadFile(here);
  const std::string api = here.substr(0, here.rfind('/')) + "/../../api/";
  const std::string header = ReadFile(api + "zon.h") + ReadFile(api + "zonx.h");
  const std::regex declaration("\nZON_API [\\w *]*?((?:zon|split)\\w+?)S?\\(");
  for (std::sregex_iterator at(header.begin(), header.end(), declaration), end; at != end; ++at) {
    EXPECT_NE(own.find((*at)[1]), std::string::npos) << (*at)[1];
  }
  std::printf("%ld requests refused\n", faults::CountRefused());
  EXPECT_TRUE(faults::CountRefused() >= 20000 || testing::GTEST_FLAG(filter) != "*");
}

}  // namespace
