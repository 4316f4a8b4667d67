// A section or keyword that is added to files.
#ifndef ZON_TOOL_ADDITION_H
#define ZON_TOOL_ADDITION_H

#include <string>
#include <vector>

#include "tool/editedfile.h"

namespace tool {

class Addition {
 public:
  // The name is the last one of the path, which ends with "/" for a section. The values are as a
  // file has them or, if `type` is "string" or "filename", texts without marks.
  Addition(const std::string& path, const std::vector<std::string>& values,
           const std::string& type);

  // Why this cannot be added to any file; empty if it can.
  const std::string& GetFault() const { return fault_; }

  // Adds one to each section of the path: before the sibling of the other path or, if that is
  // empty, after the last of its name.
  Status AddTo(EditedFile& file, const std::string& next) const;

 private:
  void Prepare(const std::vector<std::string>& values, const std::string& type);

  std::string parent_;  // ends with "/", or is empty
  std::string name_;
  bool isSection_ = false;
  std::string text_;  // the values
  std::string fault_;
};

// The sibling of a kind that a path leads to, which must be in the same section. Prints an error if
// there is none.
Status FindSibling(EditedFile& file, const std::string& path, void* parent, bool isSection,
                   void** node);

}  // namespace tool

#endif
