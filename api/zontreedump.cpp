// The listing of a tree for debugging: one line a node, indented by level.
//
// Every fact is queried through the C functions. So a failing node, or a query that a value does
// not support, is reported and listed as a host would see it. Tested by tests/write_test.cpp.
#include "api/zontreedump.h"

#include <string_view>
#include <vector>

#include "api/zon.h"
#include "base/zonfile.h"
#include "base/zonnumber.h"
#include "base/zonput.h"
#include "base/zontextstream.h"

namespace zon {
namespace {

// The listing in progress: the visitor of Explore has no argument for it.
thread_local TextStream* output = nullptr;

void Put(std::string_view text) {
  Put(*output, text);
}

void PutInt(int value, std::string_view after) {
  Put(NumberText::OfInt(value).View());
  Put(after);
}

void PutGlobalName(void* node) {
  Put("   <");
  Put(zonGetNameGlb(node));
  Put(">");
}

void PutNumber(void* node) {
  if (zonIsFloat(node)) {
    Put("Float: ");
    Put(NumberText::OfFloat(zonGetFloat(node)).View());
    Put("   ");
  }
  if (zonIsDouble(node)) {
    Put("Double: ");
    Put(NumberText::OfSixDigits(zonGetDouble(node)).View());
    Put("   ");
  }
  if (zonIsInt(node)) {
    Put("Int: ");
    PutInt(zonGetInt(node), "   ");
  }
}

void PutValue(void* node) {
  if (zonIsDefaultPar(node)) {
    Put("DEFAULT: ");
    node = zonFindDefault(node);
  }
  if (zonIsNumeric(node)) {
    PutNumber(node);
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

void PutContent(void* node) {
  if (zonIsSection(node)) {
    Put("[");
    Put(zonGetName(node));
    Put("]   (");
    PutInt(zonGetNoSections(node), " sections   ");
    PutInt(zonGetNoKeywords(node), " keywords)");
    PutGlobalName(node);
  } else if (zonIsKeyword(node)) {
    Put(zonGetName(node));
    Put(" =    (");
    PutInt(zonGetNoParams(node), " params)");
    PutGlobalName(node);
  } else if (zonIsParam(node)) {
    PutValue(node);
  } else {
    Put(">>>  P E N D I N G  <<<");
  }
}

void PutLine(CzonNode* visited) {
  void* node = static_cast<CzonBase*>(visited);
  for (int blanks = 3 * (zonGetLevel(node) - 1); blanks > 0; --blanks) Put(" ");
  Put("(");
  PutInt(zonGetSyntaxClass(node), ") ");
  if (zonGetNoInstances(node) > 1) {
    Put("<");
    PutInt(zonGetNoInstances(node), ",");
    PutInt(zonGetInstanceNo(node), "> ");
  }
  PutContent(node);
  Put("\n");
}

// Directs the output to a stream of its own. Nested, as a hook can start another dump during one.
class Listing {
 public:
  Listing() : outer_(output) { output = &text_; }
  Listing(const Listing&) = delete;
  Listing& operator=(const Listing&) = delete;
  ~Listing() { output = outer_; }

  std::vector<std::string_view> Pieces() const { return text_.Pieces(); }

 private:
  TextStream text_;
  TextStream* outer_;
};

}  // namespace

void DumpTree(CzonNode& start, const char* fileName) {
  Listing listing;
  start.Explore(PutLine);
  const std::vector<std::string_view> pieces = listing.Pieces();
  OutputFile(fileName, OutputFile::kReplace).Write(pieces);
}

}  // namespace zon
