// Makes the text that a tree is saved as, and proves it: the text is read and compared with the
// tree.
//
// Where there is a present text, it is changed only where the tree differs (zonrewriter.h). A tree
// without one, and one whose text cannot be changed into it, is written in the plain form.
// Tested by tests/zonsave_test.cpp and fuzz/save_fuzz.cpp.
#ifndef ZON_SAVING_ZONSAVE_H
#define ZON_SAVING_ZONSAVE_H

#include <memory>
#include <string_view>

#include "base/zonfiletext.h"
#include "saving/zonproof.h"
#include "saving/zontextedits.h"
#include "zonx/zonreporter.h"

class CzonTargetList;

namespace zon {

// What a text is made of.
struct SaveSources {
  std::shared_ptr<FileText>
      loaded;              // that the tree was loaded from or saved to last; null for none
  const LoadedFile* file;  // what the handle keeps of it; null for nothing
  std::shared_ptr<FileText> present;  // that is to be changed, mostly the same one; null for none
};

struct SavedText {
  std::shared_ptr<FileText> text;
  std::unique_ptr<TextEdits> edits;
  std::unique_ptr<Proof> proof;
  bool isChanged = false;  // the text is not the present one
};

// Makes the text of a tree. Returns ZONX_OK; ZONX_FAULTY if the present text does not load;
// ZONX_UNWRITABLE. Both are reported. Throws std::bad_alloc.
int MakeSavedText(const CzonTargetList& root, const SaveSources& sources, Reporter& reporter,
                  SavedText* saved);

}  // namespace zon

#endif
