// From the name of a parameter file to its tree.
#ifndef ZON_READER_ZONLOAD_H
#define ZON_READER_ZONLOAD_H

#include <memory>

#include "reader/zonparser.h"

namespace zon {

// Reads the file. Null when it cannot be opened (code 1001) or not be read to its end (1002). A
// file with an error gives a parser without a tree and 1003; the parser has the error. `quiet`
// keeps the reports from ReportHook.
std::unique_ptr<CzonParser> LoadFile(const char* fileName, bool quiet);

}  // namespace zon

#endif
