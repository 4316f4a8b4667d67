// A file is replaced whole or not at all: with each system call refused, with the process killed before and
// after each, and through links, in folders, devices and pipes of every kind.
#include <fcntl.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <set>

#include "../treetext.h"
#include "base/zonfilereplacement.h"
#include "faults.h"

namespace {

using namespace host;
using Names = std::set<std::string>;

int Save(const std::string& name, const std::string& text, bool mustBeNew = false,
         bool keepsBackup = false) {
  return zon::ReplaceFile(name, text, {mustBeNew, keepsBackup});
}

const std::string kOlder = "[A] k = 'older' EndSect\n";
const std::string kOld = "[A] k = '" + std::string(3000, 'o') + "' EndSect\n";
const std::string kNew = "[A] k = '" + std::string(5000, 'n') + "' EndSect\n";
constexpr char kAttribute[] = "user.remark";
constexpr char kAccessList[] = "system.posix_acl_access";

// An empty folder.
std::string NewFolder() {
  const std::string folder = FolderPath() + "/replace/";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  return folder;
}

Names NamesIn(const std::string& folder) {
  Names names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.insert(entry.path().filename());
  }
  return names;
}

void Write(const std::string& path, const std::string& text, mode_t mode) {
  std::ofstream(path, std::ios::binary) << text;
  ASSERT_EQ(chmod(path.c_str(), mode), 0);
}

struct stat FactsOf(const std::string& path) {
  struct stat facts {};
  EXPECT_EQ(lstat(path.c_str(), &facts), 0) << path;
  return facts;
}

unsigned ModeOf(const std::string& path) {
  return FactsOf(path).st_mode & 07777U;
}

std::string AttributeOf(const std::string& path, const char* name = kAttribute) {
  char room[100];
  const ssize_t size = getxattr(path.c_str(), name, room, sizeof room);
  return size < 0 ? "none" : std::string(room, static_cast<std::size_t>(size));
}

bool SetAttribute(const std::string& path, const char* name, const std::string& text) {
  return setxattr(path.c_str(), name, text.data(), text.size(), 0) == 0;
}

// A way to replace the file "a.zon" in a new folder.
struct Way {
  const char* name;
  bool exists, keepsBackup, mustBeNew, hasLink, hasTwoNames;

  std::string Prepare() const {
    const std::string folder = NewFolder(), path = folder + "a.zon";
    if (exists) Write(path, kOld, 0604);
    if (exists) SetAttribute(path, kAttribute, "east");
    if (keepsBackup) Write(path + "~", kOlder, 0600);
    if (hasLink) std::filesystem::create_symlink("a.zon", folder + "link.zon");
    if (hasTwoNames) std::filesystem::create_hard_link(path, folder + "b.zon");
    return folder;
  }
  int Do(const std::string& folder) const {
    return Save(folder + (hasLink ? "link.zon" : "a.zon"), kNew, mustBeNew, keepsBackup);
  }
  Names NamesOf(bool isNew) const {
    Names names;
    if (exists || isNew) names.insert("a.zon");
    if (keepsBackup) names.insert("a.zon~");
    if (hasLink) names.insert("link.zon");
    if (hasTwoNames) names.insert("b.zon");
    return names;
  }
  // The file is old or new, complete, with the mode and attribute that it had. Returns whether it is new.
  bool Check(const std::string& folder) const {
    const std::string path = folder + "a.zon", text = ReadFile(path);
    const bool isNew = text == kNew;
    EXPECT_TRUE(isNew || text == (exists ? kOld : "")) << text.size();
    if (exists || isNew) {
      EXPECT_EQ(ModeOf(path), exists ? 0604U : 0644U);
      EXPECT_EQ(AttributeOf(path), exists ? attribute : "none");
    }
    if (keepsBackup) {
      const std::string backup = ReadFile(path + "~");
      EXPECT_TRUE(backup == kOld || (!isNew && backup == kOlder)) << backup.size();
    }
    return isNew;
  }
  std::string attribute = [] {  // of a file system with attributes
    const std::string path = NewFolder() + "a.zon";
    Write(path, kOld, 0600);
    SetAttribute(path, kAttribute, "east");
    return AttributeOf(path);
  }();
};

const Way kWays[] = {{"replaced", true, false, false, false, false},
                     {"with a backup", true, true, false, false, false},
                     {"created", false, false, false, false, false},
                     {"must be new", false, false, true, false, false},
                     {"through a link", true, true, false, true, false},
                     {"through a dangling link", false, false, false, true, false},
                     {"in place", true, false, false, false, true},
                     {"in place, with a backup", true, true, false, false, true}};

class Replace : public testing::Test {
  const mode_t mask_ = umask(022);

 public:
  ~Replace() override { umask(mask_); }
};

TEST_F(Replace, EachCallRefused) {
  const struct {
    const char* name;
    int fault;
    bool isHarmless;
  } rows[] = {{"ENOSPC", ENOSPC, false},
              {"EIO", EIO, false},
              {"EROFS", EROFS, false},
              {"EDQUOT", EDQUOT, false},
              {"EINTR", EINTR, true},
              {"short write", kShort, true},
              {"short write, then ENOSPC", kShortThenNoRoom, false}};
  for (const Way& way : kWays) {
    for (const auto& row : rows) {
      int n = 1;
      for (;; ++n) {
        SCOPED_TRACE(std::string(way.name) + ", " + row.name + ", call " + std::to_string(n));
        const std::string folder = way.Prepare();
        const int descriptor = LowestFreeDescriptor();
        Inject(row.fault, n);
        const int error = way.Do(folder);
        const std::string call = StopFaults();
        SCOPED_TRACE(call);
        const bool isNew = way.Check(folder);
        EXPECT_EQ(NamesIn(folder), way.NamesOf(isNew));
        EXPECT_EQ(LowestFreeDescriptor(), descriptor);
        EXPECT_TRUE(error == 0 || !(row.isHarmless || call.empty())) << error;
        EXPECT_TRUE(isNew || error != 0);
        // The folder is synced when the file is new.
        EXPECT_TRUE(error == 0 || !isNew || (call == "fsync" && !way.hasTwoNames)) << error;
        if (HasFailure()) return;
        if (call.empty()) break;
      }
      EXPECT_GT(n, 1) << "there is no such call";
    }
  }
}

TEST_F(Replace, KilledAtEachCall) {
  for (const Way& way : kWays) {
    if (way.hasTwoNames) continue;  // written in place
    for (const int fault : {kKillBefore, kKillAfter}) {
      for (int n = 1;; ++n) {
        SCOPED_TRACE(std::string(way.name) + ", call " + std::to_string(n));
        const std::string folder = way.Prepare(), path = folder + "a.zon";
        const pid_t child = fork();
        if (child == 0) {
          Inject(fault, n);
          _exit(way.Do(folder));
        }
        int status = 0;
        waitpid(child, &status, 0);
        way.Check(folder);
        EXPECT_EQ(Save(path, kOlder, false, way.keepsBackup), 0);
        EXPECT_EQ(ReadFile(path), kOlder);
        EXPECT_EQ(ModeOf(path), way.exists ? 0604U : 0644U);
        if (WIFSIGNALED(status) && !HasFailure()) continue;
        EXPECT_EQ(WEXITSTATUS(status), 0);
        EXPECT_GT(n, 1);
        break;
      }
    }
  }
}

// What is refused for lack of a right does not prevent the replacement, but nobody has more rights.
TEST_F(Replace, AccessThatCannotBeKept) {
  const bool isRoot = geteuid() == 0;
  const struct {
    const char* function;
    int n;
    bool needsRoot;
    mode_t mode, after;
  } rows[] = {{"flistxattr", 1, false, 0664, 0600},
              {"fremovexattr", 1, false, 0664, 0600},
              {"fsetxattr", 1, false, 0664, 0664},
              {"openat", 2, false, 0664, 0600},
              {"fchown", 1, true, 06664, 0664}};
  for (const auto& row : rows) {
    if (row.needsRoot && !isRoot) continue;
    SCOPED_TRACE(row.function + std::to_string(row.n));
    const std::string folder = NewFolder(), path = folder + "a.zon";
    Write(path, kOld, 0600);
    SetAttribute(path, kAttribute, "east");
    ASSERT_TRUE(!isRoot || chown(path.c_str(), 1234, 1235) == 0);
    ASSERT_EQ(chmod(path.c_str(), row.mode), 0);
    Inject(row.function == std::string("openat") ? EACCES : EPERM, row.n, row.function);
    EXPECT_EQ(Save(path, kNew), 0);
    StopFaults();
    EXPECT_EQ(ReadFile(path), kNew);
    EXPECT_EQ(ModeOf(path), row.after);
  }
}

}  // namespace
