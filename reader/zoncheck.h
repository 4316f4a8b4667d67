// Checks a text without making a tree: every error and every warning of it.
#ifndef ZON_READER_ZONCHECK_H
#define ZON_READER_ZONCHECK_H

#include <memory>
#include <vector>

#include "reader/zonfinding.h"

namespace zon {

class FileText;

struct CheckResult {
  bool hasErrors;
  FirstError first;
  std::vector<Finding> findings;  // in the order in which they were noticed
};

// The text can be one that a loader has read. It is read to its end first; afterwards HasFailed()
// of the text tells whether it could be read. Throws std::bad_alloc.
CheckResult CheckText(const std::shared_ptr<FileText>& text);

}  // namespace zon

#endif
