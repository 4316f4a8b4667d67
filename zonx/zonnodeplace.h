// Where a loaded node is in its file. Nothing is stored for it: a name or value that was loaded and
// not changed knows where the file has its characters (FindOrigin in tree/zonnodetext.h); the
// brackets and quotes around it are found again in the text.
// Tested by tests/zonx_test.cpp.
#ifndef ZON_ZONX_ZONNODEPLACE_H
#define ZON_ZONX_ZONNODEPLACE_H

#include "base/zonfiletext.h"
#include "reader/zonfinding.h"

class CzonData;
class CzonNode;

namespace zon {

// The file that a node was loaded from.
struct NodeFile {
  FileText* text = nullptr;  // null for a tree that was not loaded
  const char* name = "";     // as it was given to the load
};

NodeFile FileOf(const CzonNode& node);
NodeFile FileOf(const CzonData& data);

// The range of a section's header, a keyword's name, or a value. No place for the root, and for a
// node that was not loaded or whose own text has changed.
Span PlaceOf(const CzonNode& node, const FileText& text);

}  // namespace zon

#endif
