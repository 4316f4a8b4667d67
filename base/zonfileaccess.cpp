// The order matters: a change of the owner clears the set-id bits and may clear attributes, and the
// mode is the last, so that nobody can open the file before owner and access control list are
// right.
//
// With an access control list, the group bits of the mode are the limit of all its entries but the
// owner and the others. A mode without its list would therefore grant the group what only an entry
// had.
// Tested by tests/replace/replace_test.cpp.
#include "base/zonfileaccess.h"

#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>

#include "base/zondescriptor.h"

namespace zon {
namespace {

constexpr std::size_t kMostOfAttributes = std::size_t{64} << 10;  // the limit of Linux
constexpr char kAccessList[] = "system.posix_acl_access";

enum class AccessList { kNone, kKept, kLost };

// Whether a call was refused for what it asks, not because something is broken or full.
bool IsRefused(int error) {
  return error == EPERM || error == EACCES || error == ENOTSUP || error == EINVAL ||
         error == ENOSYS;
}

// Signatures of the content, which has changed.
bool IsSignature(std::string_view name) {
  return name == "security.ima" || name == "security.evm";
}

// A new file can have an access control list from its folder. The old file had none.
int RemoveAccessList(int to, AccessList* list) {
  const int error = ErrorOf([&] { return fremovexattr(to, kAccessList); });
  if (error == 0 || error == ENODATA || error == ENOTSUP) return 0;
  *list = AccessList::kLost;
  return IsRefused(error) ? 0 : error;
}

// Copies one attribute. ENODATA if it has been removed meanwhile.
int CopyAttribute(int from, int to, const char* name, std::string& room) {
  const ssize_t size = Repeat([&] { return fgetxattr(from, name, room.data(), room.size()); });
  if (size < 0) return errno;
  return ErrorOf([&] { return fsetxattr(to, name, room.data(), static_cast<size_t>(size), 0); });
}

int CopyAttributes(int from, int to, AccessList* list) {
  *list = AccessList::kLost;
  std::string names(kMostOfAttributes, '\0');
  const ssize_t size = Repeat([&] { return flistxattr(from, names.data(), names.size()); });
  if (size < 0 && errno != ENOTSUP) return IsRefused(errno) ? 0 : errno;
  *list = AccessList::kNone;
  names.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
  std::string room(names.empty() ? 0 : kMostOfAttributes, '\0');
  for (std::size_t at = 0; at < names.size(); at = names.find('\0', at) + 1) {
    const char* name = names.data() + at;
    if (IsSignature(name)) continue;
    const int error = CopyAttribute(from, to, name, room);
    if (error == ENODATA) continue;
    if (error != 0 && !IsRefused(error)) return error;
    if (name == std::string_view(kAccessList)) {
      *list = error == 0 ? AccessList::kKept : AccessList::kLost;
    }
  }
  return *list == AccessList::kNone ? RemoveAccessList(to, list) : 0;
}

// Sets owner and group, or the group alone.
int CopyOwner(const struct stat& facts, int to, bool* isOwnerKept, bool* isGroupKept) {
  struct stat now {};
  if (ErrorOf([&] { return fstat(to, &now); }) != 0) return errno;
  *isOwnerKept = now.st_uid == facts.st_uid;
  *isGroupKept = now.st_gid == facts.st_gid;
  if (*isOwnerKept && *isGroupKept) return 0;
  int error = ErrorOf([&] { return fchown(to, facts.st_uid, facts.st_gid); });
  if (error == 0) *isOwnerKept = *isGroupKept = true;
  if (!IsRefused(error) || *isGroupKept) return IsRefused(error) ? 0 : error;
  error = ErrorOf([&] { return fchown(to, static_cast<uid_t>(-1), facts.st_gid); });
  *isGroupKept = error == 0;
  return IsRefused(error) ? 0 : error;
}

// The mode, without what would let anybody do more than before. Members of another group had the
// rights of others at least; members of the old group have these now.
mode_t ReducedMode(mode_t mode, bool isOwnerKept, bool isGroupKept, AccessList list) {
  mode &= 07777;
  if (!isOwnerKept || !isGroupKept) mode &= ~mode_t{S_ISUID | S_ISGID};
  if (!isGroupKept) {
    const mode_t common = (mode >> 3) & mode & 07;
    const mode_t others =
        list == AccessList::kNone ? common : 0;  // the list can deny the group more
    mode = (mode & ~mode_t{077}) | common << 3 | others;
  }
  return list == AccessList::kLost ? mode & ~mode_t{077} : mode;
}

}  // namespace

int CopyAccess(int from, const struct stat& facts, int to) {
  bool isOwnerKept = false;
  bool isGroupKept = false;
  AccessList list = AccessList::kLost;
  int error = CopyOwner(facts, to, &isOwnerKept, &isGroupKept);
  if (error == 0 && from >= 0) error = CopyAttributes(from, to, &list);
  if (error != 0) return error;
  const mode_t mode = ReducedMode(facts.st_mode, isOwnerKept, isGroupKept, list);
  return ErrorOf([&] { return fchmod(to, mode); });
}

}  // namespace zon
