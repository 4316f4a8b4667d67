// A file is replaced whole or not at all: with each system call refused, with the process killed
// before and after each, and through links, in folders, devices and pipes of every kind.
#include <fcntl.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <set>
#include <thread>

#include "../treetext.h"
#include "base/zonfilereplacement.h"
#include "faults.h"
#include "zonx.h"

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

std::filesystem::file_time_type OldTime() {
  return std::filesystem::file_time_type{} - std::chrono::hours(24 * 365 * 200);
}

// A way to replace the file "a.zon" in a new folder.
struct Way {
  const char* name;
  bool exists, keepsBackup, mustBeNew, hasLink, hasTwoNames;

  std::string Prepare() const {
    const std::string folder = NewFolder(), path = folder + "a.zon";
    if (exists) Write(path, kOld, 0604);
    if (exists) {
      SetAttribute(path, kAttribute, "east");
      std::filesystem::last_write_time(path, OldTime());
    }
    if (keepsBackup) Write(path + "~", kOlder, 0600);
    if (hasLink) std::filesystem::create_symlink("a.zon", folder + "link.zon");
    if (hasTwoNames) std::filesystem::create_hard_link(path, folder + "b.zon");
    return folder;
  }
  std::string Target(const std::string& folder) const {
    return folder + (hasLink ? "link.zon" : "a.zon");
  }
  Names NamesOf(bool isNew) const {
    Names names;
    if (exists || isNew) names.insert("a.zon");
    if (keepsBackup) names.insert("a.zon~");
    if (hasLink) names.insert("link.zon");
    if (hasTwoNames) names.insert("b.zon");
    return names;
  }
  // The file is old or new, complete, with the mode and attribute that it had. Returns whether it
  // is new.
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
      EXPECT_EQ(std::filesystem::last_write_time(path + "~") == OldTime(), backup == kOld);
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

// A tree that is saved: of the old file, or of its text if there is none, and changed to the new
// text.
class Saver {
 public:
  Saver(const Way& way, const std::string& folder) : target_(way.Target(folder)) {
    if (way.exists) {
      *file_.Address() = zonLoadFile(target_.c_str(), 0);
    } else {
      zonxLoadText(kOld.data(), kOld.size(), "", file_.Address(), nullptr, nullptr);
    }
    zonxSetString(file_, "A/k", std::string(5000, 'n').c_str());
    if (way.mustBeNew) flags_ |= ZONX_NEW;
    if (way.keepsBackup) flags_ |= ZONX_BACKUP;
  }
  int Do() { return zonxSave(file_, target_.c_str(), flags_, nullptr, nullptr); }

 private:
  File file_{nullptr};
  std::string target_;
  unsigned flags_ = 0;
};

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
      Names refused;  // calls that made it fail, with what the file is then
      for (int n = 1;; ++n) {
        SCOPED_TRACE(std::string(way.name) + ", " + row.name + ", call " + std::to_string(n));
        const std::string folder = way.Prepare();
        Saver saver(way, folder);
        const int descriptor = LowestFreeDescriptor();
        Inject(row.fault, n);
        const int error = saver.Do();
        const std::string call = StopFaults();
        SCOPED_TRACE(call);
        const bool isNew = way.Check(folder);
        EXPECT_EQ(NamesIn(folder), way.NamesOf(isNew));
        EXPECT_EQ(LowestFreeDescriptor(), descriptor);
        EXPECT_TRUE(error == 0 || !(row.isHarmless || call.empty())) << error;
        EXPECT_TRUE(isNew || error != 0);
        // The folder is synced when the file is new.
        EXPECT_TRUE(error == 0 || !isNew || (call == "fsync" && !way.hasTwoNames)) << error;
        if (error != 0) refused.insert(call + (isNew ? ", new" : ", old"));
        // The handle is as it was.
        EXPECT_TRUE(isNew || row.fault != EIO || saver.Do() == ZONX_OK);
        if (HasFailure()) return;
        if (call.empty()) break;
      }
      EXPECT_EQ(refused.count("fsync, old"), row.fault > 0 && !row.isHarmless);
      EXPECT_EQ(refused.count("close, old"), row.fault > 0 && !row.isHarmless);
      EXPECT_EQ(refused.count("fsync, new"), row.fault > 0 && !row.isHarmless && !way.hasTwoNames);
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
        Saver saver(way, folder);
        const pid_t child = fork();
        if (child == 0) {
          Inject(fault, n);
          _exit(saver.Do());
        }
        int status = 0;
        waitpid(child, &status, 0);
        way.Check(folder);
        for (const std::string& name : NamesIn(folder)) {
          const bool isLeft = way.exists && name.find(".tmp") != std::string::npos;
          EXPECT_TRUE(!isLeft || (ModeOf(folder + name) & ~0604U) == 0) << "others could read it";
        }
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

// Does something in a process of its own, without the rights of root. Returns what it returns.
int WithoutRights(const std::function<int()>& action) {
  const pid_t child = fork();
  if (child == 0) {
    const bool isDone =
        geteuid() != 0 || (setgroups(0, nullptr) == 0 && setgid(65534) == 0 && setuid(65534) == 0);
    _exit(isDone ? action() : 255);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WEXITSTATUS(status);
}

TEST_F(Replace, FilesOfOtherUsers) {
  const bool isRoot = geteuid() == 0;
  const struct {
    const char* name;
    mode_t folder, mode;
    int error;
    mode_t after;
  } rows[] = {{"the folder cannot be written", 0555, 0666, EACCES, 0666},
              {"the folder cannot be listed", 0333, 0644, 0, 0644},
              {"anyone may read", 0777, 0644, 0, 0644},
              {"the group may write", 0777, 06664, 0, isRoot ? 0644U : 06664U},
              {"others may do more", 0777, 0646, 0, isRoot ? 0644U : 0646U},
              {"only the owner may read", 0777, 0600, 0, 0600},
              {"the group may read", 0777, 0640, 0, isRoot ? 0600U : 0640U}};
  ASSERT_EQ(chmod(FolderPath().c_str(), 0755), 0);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const std::string folder = NewFolder(), path = folder + "a.zon";
    Write(path, kOld, row.mode);
    ASSERT_EQ(chmod(folder.c_str(), row.folder), 0);
    EXPECT_EQ(WithoutRights([&] { return Save(path, kNew); }), row.error);
    ASSERT_EQ(chmod(folder.c_str(), 0755), 0);
    EXPECT_EQ(ModeOf(path), row.after);
    EXPECT_EQ(NamesIn(folder), Names{"a.zon"});
    ASSERT_EQ(chmod(path.c_str(), 0644), 0);
    EXPECT_EQ(ReadFile(path), row.error == 0 ? kNew : kOld);
  }
}

// Entries of a tag, rights and a user or group, as the attribute of an access control list.
std::string AccessList(const std::vector<std::array<std::uint32_t, 3>>& entries) {
  std::string list("\2\0\0\0", 4);
  for (const auto& [tag, rights, id] : entries) {
    const char bytes[] = {static_cast<char>(tag),      0,
                          static_cast<char>(rights),   0,
                          static_cast<char>(id),       static_cast<char>(id >> 8),
                          static_cast<char>(id >> 16), static_cast<char>(id >> 24)};
    list.append(bytes, sizeof bytes);
  }
  return list;
}

TEST_F(Replace, AccessControlLists) {
  const std::uint32_t none = ~0U;
  const std::string list =
      AccessList({{1, 6, none}, {2, 6, 1234}, {4, 0, none}, {0x10, 6, none}, {0x20, 4, none}});
  for (const bool hasList : {true, false}) {
    const std::string folder = NewFolder(), path = folder + "a.zon";
    Write(path, kOld, 0640);
    if (hasList && !SetAttribute(path, kAccessList, list)) GTEST_SKIP() << "no such lists here";
    const unsigned mode = ModeOf(path);
    ASSERT_TRUE(SetAttribute(folder, "system.posix_acl_default", list));
    EXPECT_EQ(Save(path, kNew), 0);
    EXPECT_EQ(AttributeOf(path, kAccessList), hasList ? list : "none");
    EXPECT_EQ(ModeOf(path), mode);
    if (hasList && geteuid() == 0) {
      ASSERT_EQ(chmod(folder.c_str(), 0777), 0);
      EXPECT_EQ(WithoutRights([&] { return Save(path, kNew); }), 0);
      EXPECT_EQ(ModeOf(path), 0640U) << "the list gives the group no rights, and others some";
    }
    Inject(EPERM, 1, hasList ? "fsetxattr" : "fremovexattr");
    EXPECT_EQ(Save(path, kOld), 0);
    StopFaults();
    EXPECT_EQ(ModeOf(path), 0600U) << "the list could not be kept, or that of the folder removed";
  }
}

TEST_F(Replace, Links) {
  const std::string folder = NewFolder(), far = folder + "far/";
  std::filesystem::create_directories(far);
  const struct {
    const char *link, *to, *target;  // a null `to` is an absolute name; a null target, none
    int error;
  } rows[] = {{"absolute", nullptr, "far/a.zon", 0}, {"relative", "far/a.zon", "far/a.zon", 0},
              {"chain", "far/back", "b.zon", 0},     {"dangling", "far/new.zon", "far/new.zon", 0},
              {"loop", "loop", nullptr, ELOOP},      {"nowhere", "none/a.zon", nullptr, ENOENT},
              {"folder", "far", nullptr, EISDIR}};
  Write(far + "a.zon", kOld, 0640);
  Write(folder + "b.zon", kOld, 0640);
  std::filesystem::create_symlink("../b.zon", far + "back");
  for (const auto& row : rows) {
    SCOPED_TRACE(row.link);
    const std::string link = folder + row.link, to = row.to != nullptr ? row.to : far + "a.zon";
    std::filesystem::create_symlink(to, link);
    const Names names = NamesIn(folder);
    EXPECT_EQ(Save(link, kOlder, true), EEXIST);
    EXPECT_EQ(Save(link, row.link, false, true), row.error);
    EXPECT_EQ(std::filesystem::read_symlink(link), to);
    if (row.target == nullptr) {
      EXPECT_EQ(NamesIn(folder), names);
      continue;
    }
    const std::string target = folder + row.target;
    EXPECT_EQ(ReadFile(target), row.link);
    EXPECT_TRUE(zon::IsSameFile(link, target));
    EXPECT_EQ(ModeOf(target), row.error == 0 && ReadFile(target + "~").empty() ? 0644U : 0640U);
  }
}

TEST_F(Replace, Names) {
  const std::string folder = NewFolder(), longest(255, 'l');
  std::string deep = folder;
  while (deep.size() + 2 + 5 < PATH_MAX) deep += "./";
  deep += std::string(PATH_MAX - 1 - deep.size() - 4, 'd') + ".zon";
  Write(folder + "a.zon", kOld, 0600);
  const struct {
    std::string name;
    bool keepsBackup;
    int error;
  } rows[] = {{"", false, ENOENT},
              {folder, false, EISDIR},
              {folder + ".", false, EISDIR},
              {folder + "a.zon/", false, ENOTDIR},
              {"x.zon", false, 0},
              {folder + "none/a.zon", false, ENOENT},
              {folder + longest, false, 0},
              {folder + longest, true, ENAMETOOLONG},
              {deep, false, 0},
              {deep, true, 0},
              {deep + "d", false, ENAMETOOLONG},
              {folder + "a.zon~/x", false, ENOENT}};
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder);
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(Save(row.name, row.name, false, row.keepsBackup), row.error);
    EXPECT_EQ(row.error != 0 || ReadFile(row.name) == row.name, true);
  }
  EXPECT_EQ(Save(folder, kNew, true), EEXIST);
  std::filesystem::current_path(before);
  EXPECT_EQ(NamesIn(folder).size(), 5);
  // A folder cannot be replaced by a backup. The file is not changed then.
  std::filesystem::create_directory(folder + "a.zon~");
  EXPECT_EQ(Save(folder + "a.zon", kNew, false, true), EISDIR);
  EXPECT_EQ(ReadFile(folder + "a.zon"), kOld);
}

// Another process makes the file after the look at its name; a file system without the flag for
// that.
TEST_F(Replace, MustBeNewUntilTheEnd) {
  const std::string folder = NewFolder();
  Inject(EINVAL, 1, "renameat2");
  EXPECT_EQ(Save(folder + "a.zon", kOld, true), 0);
  EXPECT_EQ(StopFaults(), "renameat2");
  Inject(ENOENT, 1, "fstatat");
  EXPECT_EQ(Save(folder + "a.zon", kNew, true), EEXIST);
  EXPECT_EQ(StopFaults(), "fstatat");
  EXPECT_EQ(ReadFile(folder + "a.zon"), kOld);
  EXPECT_EQ(FactsOf(folder + "a.zon").st_nlink, 1);
  EXPECT_EQ(NamesIn(folder), Names{"a.zon"});
}

TEST_F(Replace, InPlace) {
  const std::string folder = NewFolder(), path = folder + "a.zon", other = folder + "b.zon";
  Write(path, kOld, 0640);
  std::filesystem::create_hard_link(path, other);
  for (const std::string& text : {kNew, kOlder, std::string()}) {
    EXPECT_EQ(Save(path, text, false, true), 0);
    EXPECT_EQ(ReadFile(other), text);
  }
  EXPECT_EQ(ReadFile(path + "~"), kOlder);
  // Standard output that is a file.
  const int file = open(path.c_str(), O_RDWR);
  const ino_t before = FactsOf(path).st_ino;
  EXPECT_EQ(Save("/proc/self/fd/" + std::to_string(file), kNew), 0);
  EXPECT_EQ(ReadFile(path), kNew);
  EXPECT_EQ(FactsOf(path).st_ino, before);
  unlink(path.c_str());
  EXPECT_EQ(Save("/proc/self/fd/" + std::to_string(file), kOld), 0);
  EXPECT_EQ(ReadFile(other), kOld);
  close(file);
}

TEST_F(Replace, DevicesAndPipes) {
  EXPECT_EQ(Save("/dev/null", kNew, false, true), 0);
  EXPECT_EQ(Save("/dev/full", kNew), ENOSPC);
  EXPECT_EQ(Save("/dev/null", kNew, true), EEXIST);
  const std::string folder = NewFolder(), pipe = folder + "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const std::string text(300000, 'p');
  // The reader reads all, or one byte of it.
  for (const bool readsAll : {true, false}) {
    const pid_t child = fork();
    if (child == 0) _exit(readsAll ? ReadFile(pipe) != text : std::ifstream(pipe).get() != 'p');
    EXPECT_EQ(Save(pipe, text), readsAll ? 0 : EPIPE);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const std::string output = "/proc/self/fd/" + std::to_string(ends[1]);
  EXPECT_EQ(Save(output, "short"), 0);
  char room[5];
  EXPECT_EQ(read(ends[0], room, sizeof room), 5);
  close(ends[0]);
  EXPECT_EQ(Save(output, "short"), EPIPE);
  close(ends[1]);
  EXPECT_EQ(NamesIn(folder), Names{"pipe"});
}

TEST_F(Replace, LimitOnTheSizeOfFiles) {
  const std::string folder = NewFolder(), path = folder + "a.zon", other = folder + "b.zon";
  Write(path, kOld, 0600);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit lower{4000, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &lower);
  EXPECT_EQ(Save(path, kNew), EFBIG);
  std::filesystem::create_hard_link(path, other);
  EXPECT_EQ(Save(path, kNew), EFBIG);
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(ReadFile(path), kOld);
  EXPECT_EQ(NamesIn(folder), (Names{"a.zon", "b.zon"}));
}

TEST_F(Replace, ThreadIsNotCancelledMeanwhile) {
  const std::string folder = NewFolder();
  bool isWhole = false;
  std::thread([&] {
    pthread_cancel(pthread_self());
    const int error = Save(folder + "a.zon", kNew);
    int state = PTHREAD_CANCEL_DISABLE;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &state);
    isWhole = error == 0 && state == PTHREAD_CANCEL_ENABLE;
  }).join();
  EXPECT_TRUE(isWhole);
}

TEST_F(Replace, CompareContent) {
  using zon::Content;
  const std::string folder = NewFolder(), large(200000, 'l'), pipe = folder + "pipe";
  Write(folder + "empty", "", 0600);
  Write(folder + "large", large, 0600);
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  std::filesystem::create_symlink("loop", folder + "loop");
  const struct {
    std::string name, text;
    Content content;
    int error;
  } rows[] = {{folder + "empty", "", Content::kSame, 0},
              {folder + "empty", "x", Content::kDifferent, 0},
              {folder + "large", large, Content::kSame, 0},
              {folder + "large", large + "l", Content::kDifferent, 0},
              {folder + "large", large.substr(1), Content::kDifferent, 0},
              {folder + "large", large.substr(1) + "m", Content::kDifferent, 0},
              {folder + "none", "", Content::kMissing, ENOENT},
              {folder + "loop", "", Content::kUnreadable, ELOOP},
              {pipe, "", Content::kNotRegular, 0},
              {folder, "", Content::kNotRegular, 0},
              {"/dev/null", "", Content::kNotRegular, 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name + ": " + row.text.substr(0, 1));
    int error = -1;
    EXPECT_EQ(zon::CompareContent(row.name, row.text, &error), row.content);
    EXPECT_EQ(error, row.error);
    EXPECT_FALSE(zon::IsSameFile(row.name, folder + "none"));
  }
  Inject(EIO, 2, "read");
  EXPECT_EQ(zon::CompareContent(folder + "large", large, nullptr), Content::kUnreadable);
  EXPECT_EQ(StopFaults(), "read");
}

}  // namespace
