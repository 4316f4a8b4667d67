#include "saving/zonfilesave.h"

#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "api/zonhandleaccess.h"
#include "api/zonhandlecheck.h"
#include "api/zonx.h"
#include "paths/zonfilepath.h"
#include "reader/zonload.h"
#include "saving/zonsettings.h"
#include "tree/zonsection.h"
#include "zonx/zoncheckreport.h"

namespace zon {
namespace {

bool Exists(const std::string& name) {
  struct stat facts {};
  return lstat(name.c_str(), &facts) == 0;
}

// The name of the file that the root holds, for the time of a save.
class FileNameChange {
 public:
  FileNameChange(CzonTargetList& root, const char* name)
      : root_(root), former_(root.GetOwnFilename()) {
    if (name != nullptr) root_.SetZonFilename(name);
  }
  FileNameChange(const FileNameChange&) = delete;
  FileNameChange& operator=(const FileNameChange&) = delete;
  ~FileNameChange() {
    // Needs no memory: the string of the root had this text before.
    if (!isKept_) root_.SetZonFilename(former_);
  }
  void Keep() { isKept_ = true; }

 private:
  CzonTargetList& root_;
  const std::string former_;
  bool isKept_ = false;
};

}  // namespace

FileSave::FileSave(CzonData& data, unsigned int flags, Reporter& reporter)
    : data_(data), flags_(flags), reporter_(reporter), file_(HandleAccess::GetFile(data)) {}

int FileSave::ToFile(const char* fileName) {
  int status = Begin();
  if (status == ZONX_OK) status = FindTarget(fileName);
  if (status == ZONX_OK) status = MakeText();
  return status == ZONX_OK ? Write(fileName) : status;
}

int FileSave::ToText(SavedText* saved) {
  int status = Begin();
  if (status == ZONX_OK) {
    target_.path = file_ != nullptr ? file_->path : std::string();
    target_.content = Content::kSame;
    status = MakeText();
  }
  *saved = std::move(saved_);
  return status;
}

int FileSave::Report(int status, const char* rule, std::string message, std::string hint) {
  Finding finding;
  finding.rule = rule;
  finding.message = std::move(message);
  finding.hint = std::move(hint);
  reporter_.Report(nullptr, finding);
  return status;
}

int FileSave::Fail(int status, const char* rule, const char* message, int systemError) {
  target_.systemError = systemError;
  reporter_.ReportFile(rule, message, systemError);
  return status;
}

int FileSave::Begin() {
  if (!RequireSound(data_, reporter_)) return ZONX_FAULTY;
  text_ = HandleAccess::GetText(data_);
  return ZONX_OK;
}

// Decides whether the file may be written.
int FileSave::FindTarget(const char* fileName) {
  if (fileName == nullptr && file_ == nullptr) return ZONX_BAD_ARGUMENT;
  target_.path = fileName != nullptr ? AbsoluteName(fileName) : file_->path;
  target_.isLoaded =
      file_ != nullptr && (target_.path == file_->path || IsSameFile(target_.path, file_->path));
  const std::string_view text = text_ != nullptr ? text_->View() : std::string_view();
  target_.content = CompareContent(target_.path, text, &target_.systemError);
  if (target_.isLoaded && file_->isInMemory && target_.content != Content::kSame) {
    if (fileName == nullptr) return ZONX_BAD_ARGUMENT;
    target_.isLoaded = false;
  }
  if (Has(ZONX_NEW) && Exists(target_.path)) {
    return Report(ZONX_EXISTS, "exists", "the file exists");
  }
  return CheckPresent();
}

int FileSave::CheckPresent() {
  if (Has(ZONX_OVERWRITE)) return ZONX_OK;
  switch (target_.content) {
    case Content::kSame:
    case Content::kDifferent:
      if (target_.isLoaded && target_.content == Content::kSame) return ZONX_OK;
      return Report(ZONX_CHANGED, "changed",
                    target_.isLoaded ? "the file has changed since it was loaded"
                                     : "there is another file of this name",
                    "save with the flag to overwrite it, or to another name");
    case Content::kMissing:
      if (!target_.isLoaded) return ZONX_OK;
      return Report(ZONX_CHANGED, "changed", "the file was removed since it was loaded",
                    "save with the flag to overwrite it, or to another name");
    case Content::kUnreadable:
      if (!target_.isLoaded && Exists(target_.path)) {
        return Report(ZONX_CHANGED, "changed", "there is another file of this name");
      }
      if (!target_.isLoaded) {
        return Fail(ZONX_CANNOT_WRITE, "cannot-write", "the file cannot be written",
                    target_.systemError);
      }
      return Fail(ZONX_CANNOT_READ, "cannot-read", "the file cannot be compared",
                  target_.systemError);
    default:
      return ZONX_OK;
  }
}

// Whether a file is overwritten although the loaded one is not there any more as it was.
bool FileSave::IsRescue() const {
  if (!Has(ZONX_OVERWRITE) || target_.content != Content::kDifferent) return false;
  if (target_.isLoaded) return true;
  if (file_ == nullptr || file_->isInMemory || text_ == nullptr) return false;
  return CompareContent(file_->path, text_->View(), nullptr) != Content::kSame;
}

// The text that is to be changed: null for the plain form. Another file than the loaded one keeps
// its text only if it loads.
int FileSave::ReadPresent(std::shared_ptr<FileText>* present) {
  *present = Has(ZONX_PLAIN) ? nullptr : text_;
  if (Has(ZONX_PLAIN) || !IsRescue()) return ZONX_OK;
  auto text = std::make_shared<FileText>();
  if (text->Open(target_.path.c_str())) text->ReadAll();
  if (text->Error() != 0) {
    return Fail(ZONX_CANNOT_READ, "cannot-read", "the file cannot be read", text->Error());
  }
  if (target_.isLoaded || Load(text, "").IsSound()) *present = std::move(text);
  return ZONX_OK;
}

int FileSave::MakeText() {
  CzonTargetList& root = *data_.GetRoot();
  UpdateSettings(root, file_ != nullptr ? file_->settings : ResultSettings(),
                 file_ != nullptr ? file_->path : target_.path, changes_);
  if (file_ != nullptr && !Has(ZONX_NAMES_AS_WRITTEN)) {
    MoveFilenames(root, file_->path, target_.path, changes_);
  }
  SaveSources sources{text_, file_, nullptr};
  const int status = ReadPresent(&sources.present);
  return status == ZONX_OK ? MakeSavedText(root, sources, reporter_, &saved_) : status;
}

// Whether the file has the text already.
bool FileSave::IsWritten() const {
  const bool isSame = target_.isLoaded && target_.content == Content::kSame;
  if (isSame && !Has(ZONX_PLAIN)) return !saved_.isChanged;
  return CompareContent(target_.path, saved_.text->View(), nullptr) == Content::kSame;
}

int FileSave::Write(const char* fileName) {
  CzonTargetList& root = *data_.GetRoot();
  auto file = std::make_unique<LoadedFile>();
  file->path = target_.path;
  file->settings = SettingsOf(root);
  const auto empty = std::make_shared<FileText>();
  FileNameChange name(root, fileName);
  if (!IsWritten()) {
    ReplaceOptions options;
    options.mustBeNew = Has(ZONX_NEW);
    options.keepsBackup = Has(ZONX_BACKUP);
    const int error = ReplaceFile(target_.path, saved_.text->View(), options);
    if (error != 0) {
      if (error == EEXIST && options.mustBeNew) {
        return Report(ZONX_EXISTS, "exists", "the file exists");
      }
      return Fail(ZONX_CANNOT_WRITE, "cannot-write", "the file cannot be written", error);
    }
  }
  name.Keep();
  changes_.Keep();
  saved_.proof->Move(*file);
  HandleAccess::ReplaceText(data_, empty);
  HandleAccess::SetFile(data_, std::move(file));
  return ZONX_OK;
}

}  // namespace zon
