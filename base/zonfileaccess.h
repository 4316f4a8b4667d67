// Who may do what with a file: owner, group, mode and extended attributes, which include the access
// control list.
#ifndef ZON_BASE_ZONFILEACCESS_H
#define ZON_BASE_ZONFILEACCESS_H

#include <sys/stat.h>

namespace zon {

// Gives the file `to`, which this process has made, the access of another one. `from` is a
// descriptor that can be read, or -1 if there is none; `facts` are those of the other file.
//
// What this process has no right to keep, or the file system cannot, is left out. Then the mode is
// reduced so that nobody may do more than before. Returns 0 or the errno of any other failure.
// Throws std::bad_alloc.
int CopyAccess(int from, const struct stat& facts, int to);

}  // namespace zon

#endif
