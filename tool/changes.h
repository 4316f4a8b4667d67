// What the command set changes.
#ifndef ZON_TOOL_CHANGES_H
#define ZON_TOOL_CHANGES_H

#include <string>
#include <vector>

#include "tool/console.h"

namespace tool {

struct Change {
  enum class Verb { kSet, kAdd, kUnset, kMove };

  Verb verb = Verb::kSet;
  std::string path;
  std::vector<std::string> values;
  // The text of a CHANGES file has all values of the keyword, as written. Values of the command
  // line keep their kinds, and one value leaves the others of the keyword.
  bool isLine = false;
  std::string next;  // of kAdd and kMove: the path of the node after the new place; empty: the end
};

// Reads the lines of a file of changes; "-" is standard input:
//   PATH = VALUES
//   add PATH [before PATH] [= VALUES]
//   move PATH before PATH, move PATH last
//   unset PATH
// Blank lines and comments that end with their line are skipped. Prints an error for each line that
// is faulty.
Status ReadChanges(const std::string& file, std::vector<Change>* changes);

}  // namespace tool

#endif
