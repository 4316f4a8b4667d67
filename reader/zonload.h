// Loads a parameter file: reads it, parses it, and applies its SYSTEM section.
#ifndef ZON_READER_ZONLOAD_H
#define ZON_READER_ZONLOAD_H

#include <memory>

#include "reader/zonparser.h"

namespace zon {

// Returns the parser of the file, which owns the tree. Null if the file does not open (code 1001) or
// cannot be read to its end (1002). A file with an error gives a parser without a tree and code 1003;
// the parser has the error. If `quiet`, nothing is passed to ReportHook. Throws std::bad_alloc.
std::unique_ptr<CzonParser> LoadFile(const char* fileName, bool quiet);

}  // namespace zon

#endif
