// The new text is written to a temporary file in the folder of the file, synced, and renamed over
// the file. The folder is open meanwhile and all names are relative to it: it can be renamed, and
// no name is longer than that of the file. A killed host can leave the temporary file; a failure
// removes it.
//
// A rename would separate names that are one file, and cannot replace a device. These are written
// in place. So is a link in /proc, as /dev/stdout is one: it is an open file, which can have no
// name.
//
// The backup is a copy, not a second name of the old file. If a host were killed while the file has
// both names, the next replacement would write it in place.
// Tested by tests/replace/replace_test.cpp.
#include "base/zonfilereplacement.h"

#include <fcntl.h>
#include <limits.h>
#include <linux/magic.h>
#include <stdio.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <vector>

#include "base/zondescriptor.h"
#include "base/zonfile.h"
#include "base/zonfileaccess.h"
#include "base/zonfiletext.h"
#include "base/zonwrite.h"

namespace zon {
namespace {

constexpr int kMostLinks = 40;  // as Linux follows
constexpr int kMostAttempts = 100;
constexpr std::size_t kBlock = std::size_t{64} << 10;

// A name in an open folder.
struct Place {
  Descriptor folder;
  std::string name;
  bool isOpenFile = false;  // a link in /proc: the system must follow it
};

int OpenAt(const Place& place, int flags) {
  flags |= O_CLOEXEC | O_NOCTTY | (place.isOpenFile ? 0 : O_NOFOLLOW);
  return Repeat([&] { return openat(place.folder.Get(), place.name.c_str(), flags); });
}

// A folder that cannot be listed can still be written. It cannot be synced.
int OpenFolder(const std::string& path, Descriptor* folder) {
  const int from = folder->IsOpen() ? folder->Get() : AT_FDCWD;
  Descriptor opened;
  for (const int kind : {O_RDONLY, O_PATH}) {
    opened = Descriptor(
        Repeat([&] { return openat(from, path.c_str(), kind | O_DIRECTORY | O_CLOEXEC); }));
    if (opened.IsOpen() || errno != EACCES) break;
  }
  if (!opened.IsOpen()) return errno;
  *folder = std::move(opened);
  return 0;
}

bool IsInProc(int folder) {
  struct statfs facts {};
  return ErrorOf([&] { return fstatfs(folder, &facts); }) == 0 && facts.f_type == PROC_SUPER_MAGIC;
}

// Opens the folder of a name and follows links from there, unless the name must be new.
int Locate(std::string name, bool mustBeNew, Place* place) {
  for (int links = 0; links <= kMostLinks; ++links) {
    const std::size_t slash = name.rfind('/') + 1;  // 0 if there is none
    const int error = OpenFolder(slash == 0 ? "." : name.substr(0, slash), &place->folder);
    if (error != 0) return error;
    place->name = name.substr(slash);
    if (place->name.empty()) return mustBeNew ? EEXIST : EISDIR;
    if (mustBeNew) return 0;
    name.assign(PATH_MAX, '\0');
    const ssize_t size = Repeat([&] {
      return readlinkat(place->folder.Get(), place->name.c_str(), name.data(), name.size());
    });
    if (size < 0) return errno == EINVAL || errno == ENOENT ? 0 : errno;
    place->isOpenFile = IsInProc(place->folder.Get());
    if (place->isOpenFile) return 0;
    name.resize(static_cast<std::size_t>(size));
  }
  return ELOOP;
}

int Write(int file, std::string_view text) {
  iovec piece{const_cast<char*>(text.data()), text.size()};
  off_t written = 0;
  errno = EIO;  // for a call that writes nothing and reports no error
  return text.empty() || WriteAll(file, &piece, &piece + 1, &written) ? 0 : errno;
}

// File systems and devices without this operation refuse it.
int Sync(int file) {
  const int error = ErrorOf([&] { return fsync(file); });
  return error == EINVAL || error == ENOTSUP || error == ENOSYS ? 0 : error;
}

int SyncFolder(int folder) {
  const int error = Sync(folder);
  return error == EBADF ? 0 : error;  // opened with O_PATH
}

// A file with a name of its own until it is renamed.
class TemporaryFile {
 public:
  explicit TemporaryFile(int folder) : folder_(folder) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    file_.Close();
    if (!name_.empty()) Remove();
  }

  int Create(mode_t mode);
  int Get() const { return file_.Get(); }

  // Syncs and closes it.
  int Finish() {
    const int error = Sync(file_.Get());
    return error != 0 ? error : file_.Close();
  }

  int Rename(const std::string& name);
  int RenameToNew(const std::string& name);

 private:
  int MakeName();
  void Remove() {
    Repeat([&] { return unlinkat(folder_, name_.c_str(), 0); });
  }

  int folder_;
  Descriptor file_;
  std::string name_;  // empty if there is no such file
};

int TemporaryFile::MakeName() {
  std::uint64_t number = 0;
  if (Repeat([&] { return getrandom(&number, sizeof number, 0); }) < 0) return errno;
  name_ = ".zon-";
  for (int digit = 0; digit < 16; ++digit, number >>= 4) name_ += "0123456789abcdef"[number & 15];
  name_ += ".tmp";
  return 0;
}

int TemporaryFile::Create(mode_t mode) {
  int error = EEXIST;
  for (int n = 0; n < kMostAttempts && error == EEXIST; ++n) {
    error = MakeName();
    if (error != 0) break;
    file_ = Descriptor(Repeat([&] {
      const int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
      return openat(folder_, name_.c_str(), flags, mode);
    }));
    error = file_.IsOpen() ? 0 : errno;
  }
  if (error != 0) name_.clear();
  return error;
}

int TemporaryFile::Rename(const std::string& name) {
  const int error =
      ErrorOf([&] { return renameat(folder_, name_.c_str(), folder_, name.c_str()); });
  if (error == 0) name_.clear();
  return error;
}

// Fails if there is a file of that name. Not every file system has the flag of renameat2.
int TemporaryFile::RenameToNew(const std::string& name) {
  int error = ErrorOf(
      [&] { return renameat2(folder_, name_.c_str(), folder_, name.c_str(), RENAME_NOREPLACE); });
  if (error == 0) name_.clear();
  if (error != EINVAL && error != ENOSYS) return error;
  return ErrorOf([&] { return linkat(folder_, name_.c_str(), folder_, name.c_str(), 0); });
}

int ReadOld(const Place& place, FileText* text) {
  if (text->Adopt(OpenAt(place, O_RDONLY | O_NONBLOCK))) text->ReadAll();
  return text->Error();
}

// Copies the old file, with its times.
int MakeBackup(const Place& place, const struct stat& facts, TemporaryFile* backup) {
  FileText text;
  const Descriptor old(OpenAt(place, O_RDONLY | O_NONBLOCK));
  int error = old.IsOpen() ? ReadOld(place, &text) : errno;
  if (error == 0) error = backup->Create(0600);
  if (error == 0) error = Write(backup->Get(), text.View());
  if (error == 0) error = CopyAccess(old.Get(), facts, backup->Get());
  const timespec times[] = {facts.st_atim, facts.st_mtim};
  if (error == 0) error = ErrorOf([&] { return futimens(backup->Get(), times); });
  if (error == 0) error = backup->Finish();
  return error;
}

// `facts` are those of the old file; null if there is none.
int ReplaceInOneStep(const Place& place, const struct stat* facts, std::string_view text,
                     const ReplaceOptions& options) {
  const Descriptor old(facts != nullptr ? OpenAt(place, O_RDONLY | O_NONBLOCK) : -1);
  if (facts != nullptr && !old.IsOpen() && errno != EACCES) return errno;
  TemporaryFile file(place.folder.Get());
  int error = file.Create(facts != nullptr ? 0600 : 0666);
  if (error == 0) error = Write(file.Get(), text);
  if (error == 0 && facts != nullptr) error = CopyAccess(old.Get(), *facts, file.Get());
  if (error == 0) error = file.Finish();
  if (error == 0 && facts != nullptr && options.keepsBackup) {
    TemporaryFile backup(place.folder.Get());
    error = MakeBackup(place, *facts, &backup);
    if (error == 0) error = backup.Rename(place.name + "~");
  }
  if (error != 0) return error;
  error = options.mustBeNew ? file.RenameToNew(place.name) : file.Rename(place.name);
  return error != 0 ? error : SyncFolder(place.folder.Get());
}

int WriteAt(int file, std::size_t at, std::string_view text) {
  const int error = ErrorOf([&] { return lseek(file, static_cast<off_t>(at), SEEK_SET); });
  return error != 0 ? error : Write(file, text);
}

int CutTo(int file, std::size_t size) {
  return ErrorOf([&] { return ftruncate(file, static_cast<off_t>(size)); });
}

int Settle(int file) {
  const int error = Sync(file);
  return error == 0 && !HasArrived(file) ? errno : error;
}

// Writes what is beyond the old end first: if there is no room, it is cut off and the old text is
// unchanged. If it fails later, the old text is written again, unless it could not be read.
int Overwrite(int file, std::size_t oldSize, const FileText& old, std::string_view text) {
  int error = 0;
  if (text.size() > oldSize) {
    error = WriteAt(file, oldSize, text.substr(oldSize));
    if (error == 0) error = Settle(file);
    if (error != 0) {
      CutTo(file, oldSize);
      return error;
    }
  }
  error = WriteAt(file, 0, text.substr(0, oldSize));
  if (error == 0) error = CutTo(file, text.size());
  if (error == 0) error = Settle(file);
  if (error == 0 || old.Error() != 0) return error;
  WriteAt(file, 0, old.View());
  CutTo(file, old.View().size());
  Sync(file);
  return error;
}

int WriteInPlace(const Place& place, const struct stat& facts, std::string_view text,
                 const ReplaceOptions& options) {
  if (!S_ISREG(facts.st_mode)) {
    const Descriptor file(OpenAt(place, O_WRONLY));
    if (!file.IsOpen()) return errno;
    const int error = Write(file.Get(), text);
    return error != 0 ? error : Settle(file.Get());
  }
  FileText old;
  ReadOld(place, &old);
  const Descriptor file(OpenAt(place, O_WRONLY));
  if (!file.IsOpen()) return errno;
  if (options.keepsBackup && !place.isOpenFile) {
    TemporaryFile backup(place.folder.Get());
    int error = MakeBackup(place, facts, &backup);
    if (error == 0) error = backup.Rename(place.name + "~");
    if (error != 0) return error;
  }
  const auto size = static_cast<std::size_t>(std::max<off_t>(facts.st_size, 0));
  return Overwrite(file.Get(), size, old, text);
}

}  // namespace

int ReplaceFile(const std::string& name, std::string_view text, const ReplaceOptions& options) {
  const HeldCancellation cancellation;
  const HeldSignal limit(SIGXFSZ);
  const HeldSignal pipe(SIGPIPE);
  if (name.empty()) return ENOENT;
  struct stat facts {};
  int error = 0;
  if (!options.mustBeNew) {
    // The system may refuse to follow a link, as that of another user in a folder for all users.
    error = ErrorOf([&] { return stat(name.c_str(), &facts); });
    if (error != 0 && error != ENOENT) return error;
  }
  Place place;
  error = Locate(name, options.mustBeNew, &place);
  if (error != 0) return error;
  error = ErrorOf([&] {
    return fstatat(place.folder.Get(), place.name.c_str(), &facts,
                   place.isOpenFile ? 0 : AT_SYMLINK_NOFOLLOW);
  });
  if (error == ENOENT) return ReplaceInOneStep(place, nullptr, text, options);
  if (error != 0) return error;
  if (options.mustBeNew) return EEXIST;
  if (place.isOpenFile || !S_ISREG(facts.st_mode) || facts.st_nlink > 1) {
    return WriteInPlace(place, facts, text, options);
  }
  return ReplaceInOneStep(place, &facts, text, options);
}

Content CompareContent(const std::string& name, std::string_view text, int* error) {
  int ignored = 0;
  if (error == nullptr) error = &ignored;
  struct stat facts {};
  *error = ErrorOf([&] { return stat(name.c_str(), &facts); });
  if (*error != 0) return *error == ENOENT ? Content::kMissing : Content::kUnreadable;
  if (!S_ISREG(facts.st_mode)) return Content::kNotRegular;
  InputFile file;
  std::vector<char> block(file.Open(name.c_str()) ? kBlock : 0);
  while (const std::size_t size = file.Read(block.data(), block.size())) {
    const std::string_view part(block.data(), size);
    if (text.substr(0, size) != part) return Content::kDifferent;
    text.remove_prefix(size);
  }
  *error = file.Error();
  if (*error != 0) return Content::kUnreadable;
  return text.empty() ? Content::kSame : Content::kDifferent;
}

bool IsSameFile(const std::string& name, const std::string& other) {
  struct stat facts[2] = {};
  return ErrorOf([&] { return stat(name.c_str(), &facts[0]); }) == 0 &&
         ErrorOf([&] { return stat(other.c_str(), &facts[1]); }) == 0 &&
         facts[0].st_dev == facts[1].st_dev && facts[0].st_ino == facts[1].st_ino;
}

}  // namespace zon
