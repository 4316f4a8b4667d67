// Makes the text that a tree is saved as, and proves it: the text is loaded and compared with the tree.
//
// Where there is a present text, it is changed only where the tree differs (zonrewriter.h). A tree without
// one, and one whose text cannot be changed into it, is written in the plain form.
// Tested by tests/zonsave_test.cpp and fuzz/save_fuzz.cpp.
#ifndef ZON_SAVING_ZONSAVE_H
#define ZON_SAVING_ZONSAVE_H

#include <memory>

#include "base/zonfiletext.h"
#include "reader/zonparser.h"
#include "zonx/zonreporter.h"

class CzonTargetList;

namespace zon {

struct SavedText {
  std::shared_ptr<FileText> text;
  std::unique_ptr<CzonParser>
      parser;              // has the tree of the text, which is the same as the saved one
  bool isChanged = false;  // the text is not the present one
};

// Makes the text of a tree. `present` is the text that is to be changed, null for none. Returns ZONX_OK;
// ZONX_FAULTY if the present text does not load; ZONX_UNWRITABLE. Both are reported. Throws
// std::bad_alloc.
int MakeSavedText(const CzonTargetList& root, const std::shared_ptr<FileText>& present,
                  Reporter& reporter, SavedText* saved);

inline std::string_view ViewOf(const FileText& text) {
  if (text.Begin() == nullptr) return {};
  return {text.Begin(), static_cast<std::size_t>(text.End() - text.Begin())};
}

}  // namespace zon

#endif
