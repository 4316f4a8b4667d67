// The listing of a tree for debugging. Tested by tests/write_test.cpp.
#include <string>

#include "api/zon.h"
#include "api/zonguard.h"
#include "api/zonhandlecheck.h"
#include "base/zonfile.h"
#include "base/zonnumber.h"
#include "base/zonput.h"
#include "base/zontextstream.h"

namespace {

// Where the dump at work writes to. A visitor has no argument for it.
zon::TextStream* XpF = nullptr;

void Put(std::string_view text) {
  zon::Put(*XpF, text);
}
void PutInt(int value) {
  Put(zon::NumberText::OfInt(value).View());
}

void PutCount(int count, const char* what) {
  PutInt(count);
  Put(what);
}

void PutNameGlb(void* node) {
  Put("   <");
  Put(zonGetNameGlb(node));
  Put(">");
}

void PutValue(void* node) {
  if (zonIsDefaultPar(node)) {
    Put("DEFAULT: ");
    node = zonFindDefault(node);
  }
  if (zonIsNumeric(node)) {
    if (zonIsFloat(node)) {
      Put("Float: ");
      Put(zon::NumberText::OfFloat(zonGetFloat(node)).View());
      Put("   ");
    }
    if (zonIsDouble(node)) {
      Put("Double: ");
      Put(zon::NumberText::OfSixDigits(zonGetDouble(node)).View());
      Put("   ");
    }
    if (zonIsInt(node)) {
      Put("Int: ");
      PutInt(zonGetInt(node));
      Put("   ");
    }
  } else if (zonIsString(node)) {
    Put("String: ");
    Put(zonGetString(node));
  } else if (zonIsBool(node)) {
    Put("Boolean: ");
    Put(zonGetBool(node) ? "true" : "false");
  } else {
    Put("Parameter ...");
  }
}

void DumpNode(CzonNode* visited) {
  void* node = static_cast<CzonBase*>(visited);
  for (int blanks = 3 * (zonGetLevel(node) - 1); blanks > 0; --blanks) Put(" ");
  Put("(");
  PutInt(zonGetSyntaxClass(node));
  Put(") ");
  if (zonGetNoInstances(node) > 1) {
    Put("<");
    PutInt(zonGetNoInstances(node));
    Put(",");
    PutInt(zonGetInstanceNo(node));
    Put("> ");
  }
  if (zonIsSection(node)) {
    Put("[");
    Put(zonGetName(node));
    Put("]   (");
    PutCount(zonGetNoSections(node), " sections   ");
    PutCount(zonGetNoKeywords(node), " keywords)");
    PutNameGlb(node);
  } else if (zonIsKeyword(node)) {
    Put(zonGetName(node));
    Put(" =    (");
    PutCount(zonGetNoParams(node), " params)");
    PutNameGlb(node);
  } else if (zonIsParam(node)) {
    PutValue(node);
  } else {
    Put(">>>  P E N D I N G  <<<");
  }
  Put("\n");
}

// A hook may start another dump in the middle of this one.
class Dump {
 public:
  Dump() : outer_(XpF) { XpF = &text_; }
  Dump(const Dump&) = delete;
  Dump& operator=(const Dump&) = delete;
  ~Dump() { XpF = outer_; }

  std::vector<std::string_view> Pieces() const { return text_.Pieces(); }

 private:
  zon::TextStream text_;
  zon::TextStream* outer_;
};

// The node to begin at; null after a report.
CzonNode* StartOf(void* handleOrNode) {
  if (auto* node = zon::CastHandle<CzonNode>(handleOrNode)) return node;
  // Kept: a good file handle leaves the code behind as well.
  zon::RaiseError(zon::kErrNode);
  auto* data = zon::CastHandle<CzonData>(handleOrNode);
  if (data != nullptr && data->GetRoot() != nullptr) return data->GetRoot();
  MessageHook("zonDump: bad argument");
  return nullptr;
}

}  // namespace

extern "C" void zonDump(void* handleOrNode, const char* fileName) {
  zon::Guarded(zon::kErrNode, 0, [&] {
    CzonNode* start = StartOf(handleOrNode);
    if (start == nullptr) return 0;
    // Made first, so that an old listing goes only when there is a new one.
    Dump dump;
    start->Explore(DumpNode);
    const std::vector<std::string_view> pieces = dump.Pieces();
    zon::OutputFile(zon::TextOf(fileName), zon::OutputFile::kReplace).Write(pieces);
    return 0;
  });
}
