// The files that a parameter file refers to.
#ifndef ZON_TOOL_REFERENCES_H
#define ZON_TOOL_REFERENCES_H

#include <string>
#include <vector>

#include <zonx.h>

namespace tool {

struct Reference {
  enum State {
    kNone,  // the name is empty
    kMissing,
    kFile,
    kFolder
  };

  void* value;           // a file name, or a packed list that has it
  bool isInList;         // the value is a packed list
  bool isResult;         // states where results go
  std::string path;      // "Run/Input:2[1]"; of a default line "Run/default (Input)[1]"
  zonxPlace place;       // of the value
  std::string name;      // as written
  std::string resolved;  // empty if the name is
  State state;
};

// All file names of a tree, in file order.
std::vector<Reference> FindReferences(void* root);

}  // namespace tool

#endif
