// Writes the differences of two files as a file of changes.
#ifndef ZON_TOOL_CHANGEWRITER_H
#define ZON_TOOL_CHANGEWRITER_H

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <zonx.h>

#include "tool/commands.h"
#include "tool/loadedfile.h"

namespace tool {

// Collects the differences of `before` and `after`, then changes `before` step by step into `after`
// and prints each step. So every path is that of the file as the steps before have left it.
class ChangeWriter {
 public:
  // Nothing may change the files but Print.
  ChangeWriter(const LoadedFile& before, const LoadedFile& after)
      : before_(before), after_(after) {}

  void Add(const zonxDifference& difference);

  // Prints the lines. Prints an error for what no line can express, which are the flags and the
  // default definitions of templates, and returns kTrouble then.
  Status Print();

 private:
  // A section or keyword of both files.
  struct Pair {
    void* before;
    void* after;
  };

  static std::vector<void*> Children(void* section, bool isSection);
  // The children of a kind that exist in both files.
  std::vector<Pair> PairChildren(const Pair& parent, bool isSection) const;
  void PrintSection(const Pair& pair);
  void PrintOrder(const Pair& parent, bool isSection, const std::vector<Pair>& pairs);
  // These print the addition of a node of `after`, the first one with all that is in it. They
  // return the new node of `before`.
  void* PrintAddition(void* parent, void* model, void* next);
  void* PrintNode(void* parent, void* model, void* next);
  void* PrintMove(void* node, void* next);
  void PrintValues(void* keyword, void* after);
  std::string ValuesOf(void* keyword);
  std::string ValueOf(void* value) const;
  void Refuse(const std::string& path);

  const LoadedFile& before_;
  const LoadedFile& after_;
  std::unordered_set<void*> removed_;
  std::unordered_set<void*> added_;
  std::unordered_map<void*, void*> moved_;     // from the one before to the one after
  std::unordered_set<void*> movedAfter_;       // the second ones of moved_
  std::unordered_set<void*> changedKeywords_;  // of both files
  std::string folder_;                         // of `before`, if `after` is in another one
  Status status_ = kFine;
};

}  // namespace tool

#endif
