// Finding, adding, moving and removing the nodes of a file that is edited.
#ifndef ZON_TOOL_NODES_H
#define ZON_TOOL_NODES_H

#include <string>
#include <vector>

#include "tool/editedfile.h"

namespace tool {

// The nodes of a path, in which ":*" selects all of a name. Prints an error for each that is
// missing, and for one that is the file or of a kind beyond `last`.
Status FindNodes(EditedFile& file, const std::string& path, int last, std::vector<void*>* nodes);

// Removes each node once; the nodes below a removed one go with it.
void RemoveAll(const std::vector<void*>& nodes);

// The last section or keyword of a name in a parent; null if there is none.
void* LastOfName(void* parent, bool isSection, const std::string& name);

// Adds a section or keyword directly before `next`, which is a child of its kind. If `next` is
// null, it is added after the last of its name, else after all of its kind. `values` are as a file
// has them.
void* InsertNode(void* parent, bool isSection, const std::string& name, const std::string& values,
                 void* next);

// Moves a section or keyword directly before `next`, which is a sibling of its kind; null: after
// all of them. The node is a new one then, which is returned.
void* MoveNode(void* node, void* next);

}  // namespace tool

#endif
