// The exported functions: loading, errors, versions, navigation and queries. Each checks its handle
// and forwards to the object behind it. Tested by tests/load_test.cpp and tests/handles_test.cpp.
#include <climits>
#include <memory>
#include <string>
#include <typeinfo>

#include "api/zon.h"
#include "api/zoncheck.h"
#include "api/zonfilewriter.h"
#include "base/zonemptytext.h"
#include "base/zonnumber.h"
#include "base/zonversion.h"
#include "reader/zonload.h"
#include "tree/zonint.h"
#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonstring.h"

using zon::CopyOut;
using zon::EmpSt;
using zon::Query;
using zon::TextOf;
using zon::Update;

namespace {

// A handle is the address of the CzonBase.
void* HandleOf(CzonBase* object) {
  return object;
}

template <class T, class F>
T QueryNode(void* node, T failure, F&& question) {
  return Query<CzonNode>(node, failure, [&](CzonNode& n) { return static_cast<T>(question(n)); });
}

// Asks the root of a file handle.
template <class T, class F>
T QueryRoot(void* handle, T failure, F&& question) {
  return Query<CzonData>(handle, failure, [&](CzonData& data) {
    CzonTargetList* root = zon::RequireRoot(data);
    return root != nullptr ? static_cast<T>(question(*root)) : failure;
  });
}

template <class F>
unsigned int QueryParser(void* handle, F&& question) {
  return Query<CzonLoad>(handle, 0U, [&](CzonLoad& load) {
    return load.GetParser() != nullptr ? question(*load.GetParser()) : 0U;
  });
}

template <class F>
void* FindNode(void* node, F&& question) {
  return QueryNode<void*>(node, nullptr, [&](CzonNode& n) { return HandleOf(question(n)); });
}

template <class F>
const char* TextOfNode(void* node, F&& question) {
  return QueryNode<const char*>(node, EmpSt(), [&](CzonNode& n) { return question(n).c_str(); });
}

bool Write(void* handle, const char* fileName) {
  return Query<CzonData>(handle, false,
                         [&](CzonData& data) { return zon::WriteTree(data, fileName); });
}

// Follows a path from element to element; null as soon as a step gives null.
template <class F>
void* FollowPath(void* start, const char* path, F&& step) {
  std::string rest = TextOf(path);
  void* node = start;
  for (std::size_t at = rest.find_first_not_of("/."); at != std::string::npos;) {
    const std::size_t end = rest.find_first_of("/.", at);
    std::string element = rest.substr(at, end - at);
    int instance = 1;
    splitElement(element.data(), &instance);
    node = step(node, element.c_str(), static_cast<unsigned int>(instance));
    if (node == nullptr) return nullptr;
    at = rest.find_first_not_of("/.", end);
  }
  return node;
}

}  // namespace

extern "C" {

void* zonLoadFile(const char* fileName, int quiet) {
  zonGetErrorGlb();
  return zon::Guarded<void*>(zon::kErrFileInit, nullptr, [&]() -> void* {
    // Made first: what reading the file has to tell is not lost for want of a handle.
    auto load = std::make_unique<CzonLoad>(nullptr);
    std::unique_ptr<CzonParser> parser = zon::LoadFile(fileName, quiet != 0);
    if (parser == nullptr) return nullptr;
    load->Take(std::move(parser));
    return HandleOf(load.release());
  });
}

void zonClose(void** handle) {
  Update<CzonData>(handle != nullptr ? *handle : nullptr, [&](CzonData& data) {
    delete &data;
    *handle = nullptr;
  });
}

int zonFileCopy(const char* source, const char* target) {
  void* handle = zonLoadFile(source, 0);
  if (zonPeekErrorGlb() == zon::kErrNone) {
    zonExplore(handle, [](CzonNode* node) { zonFileCopyCallBack(HandleOf(node)); });
  }
  // A name that could not be resolved, for want of memory, would be a wrong one.
  const bool written = zonPeekErrorGlb() == zon::kErrNone && Write(handle, target);
  if (handle != nullptr) zonClose(&handle);
  return written ? 1 : 0;
}

void zonWrite(void* handle, const char* fileName) {
  Write(handle, fileName);
}
void zonAppend(void* handle, const char* fileName) {
  Write(handle, fileName);
}

const char* zonGetSyntaxErr(void* handle, unsigned int* line, unsigned int* position,
                            const char** message) {
  if (line != nullptr) *line = 0;
  if (position != nullptr) *position = 0;
  const char* text = Query<CzonLoad, const char*>(handle, EmpSt(), [&](CzonLoad& load) {
    const CzonParser* parser = load.GetParser();
    if (parser == nullptr) return static_cast<const char*>(nullptr);
    if (line != nullptr) *line = parser->GetErrorLine();
    if (position != nullptr) *position = parser->GetErrorPosition();
    return parser->GetError().c_str();
  });
  if (message != nullptr && text != nullptr) *message = text;
  return text;
}

unsigned int zonNoChars(void* handle) {
  return QueryParser(handle,
                     [](const CzonParser& parser) { return parser.GetInput().GetNoChars(); });
}
unsigned int zonNoLines(void* handle) {
  return QueryParser(handle,
                     [](const CzonParser& parser) { return parser.GetInput().GetNoLines(); });
}
unsigned int zonNoComments(void* handle) {
  return QueryParser(handle, [](const CzonParser& parser) { return parser.GetNoComments(); });
}
unsigned int zonNoTokens(void* handle) {
  return QueryParser(handle, [](const CzonParser& parser) { return parser.GetNoTokens(); });
}

int zonGetErrorGlb(void) {
  return zon::ConsumeError();
}
int zonPeekErrorGlb(void) {
  return zon::PeekError();
}

const char* zonGetErrorFromZonData(void* handle) {
  const auto* data = zon::CastHandle<CzonData>(handle);
  if (data != nullptr) return data->GetErrorMessage().c_str();
  zon::RaiseError(zon::kErrHandle);
  return nullptr;
}

const char* zonGetVersion(void) {
  return zon::zonCompDate;
}
const char* zonGetBuildVersion(void) {
  return zon::kBuildVersion;
}
const char* zonGetDLLid(void) {
  return zon::kDllId;
}

int zonGetVersion2(char* buffer, int size) {
  return CopyOut(zonGetVersion(), buffer, size);
}
int zonGetBuildVersion2(char* buffer, int size) {
  return CopyOut(zonGetBuildVersion(), buffer, size);
}
int zonGetDLLid2(char* buffer, int size) {
  return CopyOut(zonGetDLLid(), buffer, size);
}

void* zonGetRoot(void* handle) {
  auto* data = zon::CastHandle<CzonData>(handle);
  if (data != nullptr) return HandleOf(data->GetRoot());
  zon::RaiseError(zon::kErrHandle);
  return nullptr;
}

int zonGetNoTargets(void* handle) {
  return QueryRoot(handle, 0, [](CzonTargetList& root) { return root.GetNoSections(); });
}
void* zonTargetByNum(void* handle, unsigned int n) {
  return QueryRoot<void*>(handle, nullptr,
                          [&](CzonTargetList& root) { return HandleOf(root.SectionByNum(n)); });
}
void* zonTargetByNameNum(void* handle, const char* name, unsigned int n) {
  return QueryRoot<void*>(handle, nullptr, [&](CzonTargetList& root) {
    return HandleOf(root.SectionByNameNum(TextOf(name), n));
  });
}

void zonExplore(void* handle, void (*visit)(CzonNode*)) {
  QueryRoot(handle, 0, [&](CzonTargetList& root) {
    if (visit != nullptr) root.Explore(visit);
    return 0;
  });
}

void* zonFindSectionByHandle(void* handle, const char* path) {
  return QueryRoot<void*>(handle, nullptr, [&](CzonTargetList& root) {
    void* top = HandleOf(&root);
    void* found = FollowPath(top, path, zonSectionByNameNum);
    return found != top ? found : nullptr;
  });
}

void* zonFindSectionByNode(void* node, const char* path) {
  return QueryNode<void*>(node, nullptr, [&](CzonNode& start) {
    return FollowPath(HandleOf(&start), path, zonSectionByNameNum);
  });
}

void splitElement(char* element, int* instance) {
  char* colon = element != nullptr ? std::strchr(element, ':') : nullptr;
  if (colon == nullptr) return;
  *colon = '\0';
  const char* number = colon + 1;
  const std::size_t digits = std::strspn(number, " \t\n\v\f\r");
  const std::size_t sign = number[digits] == '-' || number[digits] == '+' ? 1 : 0;
  if (!zon::IsClass(static_cast<unsigned char>(number[digits + sign]), zon::kDigit)) return;
  const long value = zon::TextToLong(number);
  if (instance != nullptr) {
    *instance = static_cast<int>(value < INT_MIN ? INT_MIN : value > INT_MAX ? INT_MAX : value);
  }
}

void* zonSectionByNum(void* node, unsigned int n) {
  return FindNode(node, [&](CzonNode& of) { return of.SectionByNum(n); });
}
void* zonKeywordByNum(void* node, unsigned int n) {
  return FindNode(node, [&](CzonNode& of) { return of.KeywordByNum(n); });
}
void* zonParamByNum(void* node, unsigned int n) {
  return FindNode(node, [&](CzonNode& of) { return of.ParamByNum(n); });
}
void* zonNodeByNum(void* node, unsigned int n) {
  return FindNode(node, [&](CzonNode& of) { return of.NodeByNum(n); });
}
void* zonSectionByNameNum(void* node, const char* name, unsigned int n) {
  return FindNode(node, [&](CzonNode& of) { return of.SectionByNameNum(TextOf(name), n); });
}
void* zonKeywordByNameNum(void* node, const char* name, unsigned int n) {
  return FindNode(node, [&](CzonNode& of) { return of.KeywordByNameNum(TextOf(name), n); });
}

void* zonGetParentSection(void* node) {
  // Each of the three tests reports a bad node for itself.
  if (zonIsSection(node) || zonIsKeyword(node)) {
    return HandleOf(zon::CastHandle<CzonNode>(node)->GetOwner());
  }
  if (!zonIsParam(node)) return nullptr;
  const CzonNamedNode* keyword = zon::CastHandle<CzonNode>(node)->GetOwner();
  return keyword != nullptr ? HandleOf(keyword->GetOwner()) : nullptr;
}

void* zonFindDefault(void* node) {
  if (!zonIsDefaultPar(node)) return nullptr;
  return QueryNode<void*>(node, nullptr, [&](CzonNode& placeholder) {
    CzonNamedNode* keyword = placeholder.GetOwner();
    if (keyword == nullptr) return HandleOf(&placeholder);
    CzonNode* value = keyword->FindDefault(&placeholder, keyword->GetName(),
                                           static_cast<unsigned int>(placeholder.GetInstanceNo()));
    return HandleOf(value != nullptr ? value : &placeholder);
  });
}

int zonGetLevel(void* node) {
  return QueryNode(node, -1, [](CzonNode& n) { return n.GetLevel(); });
}
int zonGetSyntaxClass(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.GetSyntaxClass(); });
}
const char* zonGetName(void* node) {
  return TextOfNode(
      node, [](CzonNode & n) -> auto& { return n.GetName(); });
}
const char* zonGetNameGlb(void* node) {
  return TextOfNode(
      node, [](CzonNode & n) -> auto& { return n.GetNameGlb(); });
}
int zonGetNoInstances(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.GetNoInstances(); });
}
int zonGetInstanceNo(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.GetInstanceNo(); });
}
int zonGetNoNodes(void* node) {
  return QueryNode(node, -1, [](CzonNode& n) { return n.GetNoNodes(); });
}
int zonGetNoParams(void* node) {
  return QueryNode(node, -1, [](CzonNode& n) { return n.GetNoParams(); });
}
int zonGetNoKeywords(void* node) {
  return QueryNode(node, -1, [](CzonNode& n) { return n.GetNoKeywords(); });
}
int zonGetNoSections(void* node) {
  return QueryNode(node, -1, [](CzonNode& n) { return n.GetNoSections(); });
}

int zonIsTarget(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) {
    return n.GetOwner() != nullptr && n.GetOwner()->GetOwner() == nullptr;
  });
}
int zonIsSection(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.IsSection(); });
}
int zonIsKeyword(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.IsKeyword(); });
}
int zonIsParam(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.IsParam(); });
}
int zonIsNumeric(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.IsNumeric(); });
}
int zonIsInt(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.IsInt(); });
}
int zonIsFloat(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.IsFloat(); });
}
int zonIsDouble(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.IsDouble(); });
}
int zonIsBool(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.IsBool(); });
}
int zonIsString(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.IsString(); });
}
int zonIsFilename(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.IsFilename(); });
}
int zonIsUndefinedPar(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.IsUndefinedPar(); });
}
int zonIsDefaultPar(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.IsDefaultPar(); });
}
int zonNumericIsIntType(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return dynamic_cast<CzonInt*>(&n) != nullptr; });
}

int zonGetInt(void* node) {
  return QueryNode(node, -1, [](CzonNode& n) { return n.GetInt(); });
}
double zonGetDouble(void* node) {
  return QueryNode(node, -1.0, [](CzonNode& n) { return n.GetDouble(); });
}
float zonGetFloat(void* node) {
  return QueryNode(node, -1.0F, [](CzonNode& n) { return n.GetFloat(); });
}
void zonPasGetDoubleProc(void* node, double* out) {
  const double value = zonGetDouble(node);
  if (out != nullptr) *out = value;
}
void zonPasGetFloatProc(void* node, float* out) {
  const float value = zonGetFloat(node);
  if (out != nullptr) *out = value;
}
int zonGetBool(void* node) {
  return QueryNode(node, 0, [](CzonNode& n) { return n.GetBool(); });
}
const char* zonGetString(void* node) {
  return QueryNode<const char*>(node, EmpSt(), [](CzonNode& n) {
    // Our own strings need not be made into objects first; a class of the host is asked as any.
    if (typeid(n) == typeid(CzonString))
      return zon::NodeAccess::GetChars(static_cast<CzonString&>(n));
    return n.GetString().c_str();
  });
}

int zonGetName2(void* node, char* buffer, int size) {
  return CopyOut(zonGetName(node), buffer, size);
}
int zonGetNameGlb2(void* node, char* buffer, int size) {
  return CopyOut(zonGetNameGlb(node), buffer, size);
}
int zonGetString2(void* node, char* buffer, int size) {
  return CopyOut(zonGetString(node), buffer, size);
}

}  // extern "C"
