#include "fuzz.h"

#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <tuple>
#include <typeinfo>
#include <utility>
#include <vector>

namespace fuzz {

unsigned long messages = 0;
void (*onMessage)() = nullptr;
std::size_t largestRead = 0;

void Check(bool holds, const char* what, std::string_view detail) {
  if (holds) return;
  std::fprintf(stderr, "FAILED: %s %s\n", what, std::string(detail).c_str());
  std::abort();
}

namespace {

struct MemoryFile {
  MemoryFile() { std::snprintf(name, sizeof name, "/proc/self/fd/%d", file); }
  int file = memfd_create("fuzz", MFD_CLOEXEC);
  char name[40];
};
MemoryFile files[4];

// In this order the queries step through the items of a packed list of any kinds.
int (*const kNumbers[])(void*) = {
    zonGetSyntaxClass, zonGetLevel,         zonGetNoInstances, zonGetInstanceNo, zonGetNoNodes,
    zonGetNoParams,    zonGetNoKeywords,    zonGetNoSections,  zonIsTarget,      zonIsSection,
    zonIsKeyword,      zonIsParam,          zonIsNumeric,      zonIsInt,         zonIsFloat,
    zonIsDouble,       zonIsBool,           zonIsString,       zonIsFilename,    zonIsUndefinedPar,
    zonIsDefaultPar,   zonNumericIsIntType, zonGetInt,         zonGetBool,       zonIsClob,
    zonGetClobNoItems, zonIsClobEnd,        zonIsClobBool,     zonIsClobInt,     zonIsClobFloat,
    zonIsClobDouble,   zonIsClobString,     zonIsClobFilename, zonGetClobBool,   zonGetClobInt};
double (*const kReals[])(void*) = {zonGetDouble, zonGetClobDouble,
                                   [](void* node) -> double { return zonGetFloat(node); },
                                   [](void* node) -> double { return zonGetClobFloat(node); }};
const char* (*const kTexts[])(void*) = {
    zonGetName,
    zonGetNameGlb,
    zonGetString,
    zonGetFilenameString,
    zonGetResultFilename,
    zonGetAnchorFilename,
    zonGetZonFileName,
    zonGetClobString,
    zonGetClobFilename,
    zonGetErrorFromZonClob,
    [](void* node) -> const char* { return zonGetFilename(node); }};

bool SameBits(double a, double b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

void CompareByQueries(CzonNode* a, CzonNode* b) {
  for (CzonNode* node : {a, b}) {
    if (node->IsClob()) zonClobReset(node);
  }
  for (int round = a->IsClob() ? 4 : 1; round > 0; --round) {
    for (const auto query : kNumbers) Check(query(a) == query(b), "number", a->GetNameGlb());
    for (const auto query : kReals) Check(SameBits(query(a), query(b)), "real", a->GetNameGlb());
    for (const auto query : kTexts) {
      const char* one = query(a);
      const char* other = query(b);
      const bool isSame = one && other ? std::strcmp(one, other) == 0 : one == other;
      Check(isSame, "text", one ? one : "null");
    }
  }
  const auto n = static_cast<unsigned>(a->GetInstanceNo());
  CzonNode* owner = a->GetOwner();
  void* found = a->IsDefaultDef() || n == 0 ? a
                : a->IsSection()            ? zonSectionByNameNum(owner, zonGetName(a), n)
                : a->IsKeyword()            ? zonKeywordByNameNum(owner, zonGetName(a), n)
                                            : zonNodeByNum(owner, n);
  Check(found == a, "a node is not found by its number:", a->GetNameGlb());
  for (void* node : {zonGetParentSection(a), zonFindDefault(a)}) zonGetLevel(node);
  char path[256];
  zonGetResultFilenamePath2(a, path, sizeof path);
  zonGetErrorGlb();
}

void ExpectSameValues(const CzonNode& a, const CzonNode& b, Loss loss) {
  if (loss == kByWriting && a.GetSyntaxClass() == kZonUnknown) {
    return Check(b.IsUndefinedPar() || b.IsDefaultPar(),
                 "an unknown value must be written as an undefined one");
  }
  Check(typeid(a) == typeid(b), typeid(a).name(), typeid(b).name());
  std::string text = static_cast<const CzonParam&>(a).GetText();
  const std::string& other = static_cast<const CzonParam&>(b).GetText();
  if (loss == kByWriting) {
    const bool isRewritten = a.IsFilename() ? text[0] == '/' : a.IsNumeric() || a.IsBool();
    for (char& c : text) c = a.IsFilename() && c == '/' ? '\\' : c;
    if (isRewritten) text = other;
  }
  Check(text == other, text.c_str(), other);
  if (a.IsBool()) Check(a.GetBool() == b.GetBool(), "boolean", text);
  if (!a.IsNumeric()) return;
  const bool isCut = loss == kByWriting && a.GetSyntaxClass() == kZonInt;  // to 32 bits
  Check(isCut || SameBits(a.GetDouble(), b.GetDouble()), "double", text);
  Check(a.GetInt() == b.GetInt(), "integer", text);
}

}  // namespace

const char* FileOf(std::string_view text, unsigned number) {
  const int file = files[number].file;
  const auto size = static_cast<ssize_t>(text.size());
  Check(ftruncate(file, 0) == 0 && pwrite(file, text.data(), text.size(), 0) == size,
        "a file in memory cannot be written");
  return files[number].name;
}

std::string ContentOf(unsigned number) {
  const int file = files[number].file;
  std::string text(static_cast<std::size_t>(lseek(file, 0, SEEK_END)), '\0');
  Check(pread(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()),
        "a file in memory cannot be read");
  return text;
}

void ExpectSame(CzonNode* a, CzonNode* b, Loss loss, unsigned queried) {
  std::vector<std::pair<CzonNode*, CzonNode*>> pairs{{a, b}};
  while (!pairs.empty()) {
    std::tie(a, b) = pairs.back();
    pairs.pop_back();
    if (queried != 0) CompareByQueries(a, b), --queried;
    Check(loss == kByWriting || a->GetRemark() == b->GetRemark(), "remark", a->GetRemark());
    Check(a->GetInstanceNo() == b->GetInstanceNo(), "instance", a->GetName());
    if (a->IsParam()) {
      ExpectSameValues(*a, *b, loss);
      continue;
    }
    Check(typeid(*a) == typeid(*b), typeid(*a).name(), typeid(*b).name());
    const auto& one = static_cast<const CzonNamedNode&>(*a);
    const auto& other = static_cast<const CzonNamedNode&>(*b);
    Check(one.GetName() == other.GetName(), "name", one.GetName());
    Check(one.GetFlags() == other.GetFlags(), "flags", one.GetName());
    const unsigned count = one.GetNoNodes();
    Check(count == other.GetNoNodes(), "number of children", one.GetName());
    for (unsigned n = count; n > 0; --n) pairs.emplace_back(one.NodeByNum(n), other.NodeByNum(n));
  }
}

}  // namespace fuzz

extern "C" {

// Replaces read() of the process. Sizes follow a fixed sequence, so that a replay repeats them.
ssize_t read(int file, void* room, std::size_t size) {
  static unsigned long sequence = 0;
  if (fuzz::largestRead != 0) {
    sequence = sequence * 6364136223846793005 + 1442695040888963407;
    size = std::min(size, 1 + (sequence >> 33) % fuzz::largestRead);
  }
  return syscall(SYS_read, file, room, size);
}

void MessageHook(const char*) {
  ++fuzz::messages;
  if (fuzz::onMessage != nullptr) fuzz::onMessage();
}
void ReportHook(const char*, int, void*) {
  MessageHook(nullptr);
}
void* ReportArgString(const char*, void* rest) {
  return rest;
}
void* ReportArgInt(int, void* rest) {
  return rest;
}
}
