// A save of the tree of a handle, from the question whether the file may be written to what the
// handle keeps of it. Tested by tests/zonsave_test.cpp and tests/replace.
#ifndef ZON_SAVING_ZONFILESAVE_H
#define ZON_SAVING_ZONFILESAVE_H

#include <memory>
#include <string>

#include "api/zonloadedfile.h"
#include "base/zonfilereplacement.h"
#include "base/zonfiletext.h"
#include "saving/zonsave.h"
#include "saving/zontreechanges.h"
#include "zonx/zonreporter.h"

class CzonData;

namespace zon {

// What is done in order: it is decided what may be written, the text is made and proved, everything
// that the handle keeps is prepared, the file is replaced, and then nothing more can fail. Changes
// of the tree that belong to the save are taken back if it does not come to its end.
class FileSave {
 public:
  // `flags`: ZONX_PLAIN and the others of zonxSave.
  FileSave(CzonData& data, unsigned int flags, Reporter& reporter);

  // Makes the file of the tree. A null name is the file that was loaded. Returns a status of
  // zonx.h.
  int ToFile(const char* fileName);

  // Makes the text that a save to the loaded file would write. The tree stays as it is.
  int ToText(SavedText* saved);

  // The errno of the last failure with a file.
  int SystemError() const { return target_.systemError; }

 private:
  // A file that is replaced, and what is known of it.
  struct Target {
    std::string path;  // absolute
    bool isLoaded = false;
    Content content = Content::kMissing;  // compared with the text that was loaded or last saved
    int systemError = 0;
  };

  bool Has(unsigned int flag) const { return (flags_ & flag) != 0; }
  int Report(int status, const char* rule, std::string message, std::string hint = {});
  int Fail(int status, const char* rule, const char* message, int systemError);

  int Begin();
  int FindTarget(const char* fileName);
  int CheckPresent();
  int MakeText();
  bool IsRescue() const;
  int ReadPresent(std::shared_ptr<FileText>* present);
  int Write(const char* fileName);
  bool IsWritten() const;

  CzonData& data_;
  const unsigned int flags_;
  Reporter& reporter_;
  LoadedFile* const file_;
  std::shared_ptr<FileText> text_;  // that was loaded or last saved; null for none
  Target target_;
  TreeChanges changes_;
  SavedText saved_;
};

}  // namespace zon

#endif
