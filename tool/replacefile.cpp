// A temporary file in the same folder is written, synced and renamed. Tested by tests/fmt.t.
#include "tool/replacefile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>

namespace tool {
namespace {

bool WriteAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t size = write(file, text.data(), text.size());
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) return false;
    text.remove_prefix(static_cast<std::size_t>(size));
  }
  return true;
}

// Without the old group, group and others get the rights that both had. The mode is set at last, because
// a change of the owner clears parts of it.
bool SetAccess(int file, const struct stat& old) {
  mode_t mode = old.st_mode & 07777;
  struct stat own {};
  if (fstat(file, &own) != 0) return false;
  const bool hasOwner =
      own.st_uid == old.st_uid || fchown(file, old.st_uid, static_cast<gid_t>(-1)) == 0;
  const bool hasGroup =
      own.st_gid == old.st_gid || fchown(file, static_cast<uid_t>(-1), old.st_gid) == 0;
  if (!hasOwner || !hasGroup) mode &= 0777;
  if (!hasGroup) {
    const mode_t both = (mode >> 3) & mode & 07;
    mode = (mode & 0700) | (both << 3) | both;
  }
  return fchmod(file, mode) == 0;
}

int ReplaceTarget(const std::string& target, const struct stat& old, std::string_view text) {
  std::string temporary = target.substr(0, target.rfind('/') + 1) + ".zon-fmt-XXXXXX";
  const int file = mkostemp(temporary.data(), O_CLOEXEC);
  if (file < 0) return errno;
  bool done = WriteAll(file, text) && SetAccess(file, old) && fsync(file) == 0;
  int error = done ? 0 : errno;
  if (close(file) != 0 && done) error = errno;
  if (error == 0 && rename(temporary.c_str(), target.c_str()) != 0) error = errno;
  if (error != 0) unlink(temporary.c_str());
  return error;
}

}  // namespace

int ReplaceFile(const std::string& name, std::string_view text) {
  const std::unique_ptr<char, void (*)(void*)> target(realpath(name.c_str(), nullptr), std::free);
  struct stat old {};
  if (target == nullptr || stat(target.get(), &old) != 0) return errno;
  if (old.st_nlink > 1) return EMLINK;
  if (access(target.get(), W_OK) != 0) return errno;
  return ReplaceTarget(target.get(), old, text);
}

}  // namespace tool
