// What the loader does with a parser beyond its public operations. Not installed.
#ifndef ZON_READER_ZONPARSERACCESS_H
#define ZON_READER_ZONPARSERACCESS_H

#include "reader/zonparser.h"

namespace zon {

struct ParserAccess {
  // Whether a check may warn of something in a text that was accepted.
  static bool IsSuspect(const CzonParser& parser);
};

}  // namespace zon

#endif
