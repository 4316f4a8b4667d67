// Replaces the content of a file. Whatever happens, also the end of the process, the file has the
// old or the new content, complete; base/zonfilereplacement.cpp says how, and which files are
// exceptions.
#ifndef ZON_BASE_ZONFILEREPLACEMENT_H
#define ZON_BASE_ZONFILEREPLACEMENT_H

#include <string>
#include <string_view>

namespace zon {

struct ReplaceOptions {
  // If anything has the name, also a dangling link, nothing is written: EEXIST.
  bool mustBeNew = false;

  // The old file stays, as the name of the file and "~". An older file of that name is replaced in
  // one step. A device, pipe or socket has no backup.
  bool keepsBackup = false;
};

// Makes the text the whole content of the file, which is created if it is missing. A symbolic link
// stays a link; its target is replaced or created. The right to write the folder is what counts,
// not that of the file. A named pipe without a reader blocks, and the thread cannot be cancelled
// meanwhile.
//
// Returns 0, or the errno of what failed. Then the file is as it was; if only the folder could not
// be synced in the end, it is new. A file that is written in place (one with several hard links, a
// device, a pipe) may hold a part of the text; the old content of a regular one is restored if
// possible. Throws std::bad_alloc, and then has changed nothing.
int ReplaceFile(const std::string& name, std::string_view text, const ReplaceOptions& options);

enum class Content {
  kSame,
  kDifferent,
  kMissing,     // nothing has the name, or a link is dangling
  kNotRegular,  // a device, pipe, socket or folder: it has no content to compare and is not opened
  kUnreadable   // `error` is the errno
};

// Compares the content of a file with a text, in blocks and only up to the first difference.
// `error` is 0 for all results but kMissing and kUnreadable, and may be null.
Content CompareContent(const std::string& name, std::string_view text, int* error);

// Whether both names exist and are those of one file. Links are followed.
bool IsSameFile(const std::string& name, const std::string& other);

}  // namespace zon

#endif
