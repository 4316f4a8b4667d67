// Loads a parameter file: reads it, parses it, and applies its SYSTEM section.
#ifndef ZON_READER_ZONLOAD_H
#define ZON_READER_ZONLOAD_H

#include <memory>

#include "reader/zonparser.h"

namespace zon {

class FileText;

enum class LoadStatus {
  kLoaded,
  kFaulty,     // the text has an error, which the parser has
  kCannotRead  // there is no parser
};

struct Loading {
  // Whether the text was read to its end without an error. The parser then has the tree.
  bool IsSound() const { return status == LoadStatus::kLoaded && !parser->HasError(); }

  LoadStatus status;
  std::unique_ptr<CzonParser> parser;  // owns the tree
  bool isSuspect = false;              // a check may find warnings
};

// Loads a text that was opened or assigned, and applies its SYSTEM section. The text is kept as
// long as the parser or the caller needs it. File names of the tree are resolved against
// `fileName`. Throws std::bad_alloc.
Loading Load(std::shared_ptr<FileText> text, const char* fileName);

// Returns the parser of the file, which owns the tree. Null if the file does not open (code 1001)
// or cannot be read to its end (1002). A file with an error gives a parser without a tree and code
// 1003; the parser has the error. If `quiet`, nothing is passed to ReportHook. Throws
// std::bad_alloc.
std::unique_ptr<CzonParser> LoadFile(const char* fileName, bool quiet);

}  // namespace zon

#endif
