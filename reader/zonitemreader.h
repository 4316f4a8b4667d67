// Reads a text item by item, without a tree.
#ifndef ZON_READER_ZONITEMREADER_H
#define ZON_READER_ZONITEMREADER_H

#include <memory>

#include "base/zonfiletext.h"
#include "reader/zonitembuilder.h"

namespace zon {

// Passes the items to the visitor. The text must have been read to its end. Returns whether the
// text has no error, but for the rule that names which repeat and names which declare repetition
// exclude each other. Throws std::bad_alloc.
bool ReadItems(const std::shared_ptr<FileText>& text, ItemVisitor& visitor);

}  // namespace zon

#endif
