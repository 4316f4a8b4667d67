// What the system may refuse, or do in part, while files are read and written. open, fstat, read,
// write, ftruncate and close of this process fail as a test chooses.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>

#include "../../fuzz/streams_model.h"
#include "../treetext.h"

namespace {

using namespace host;

enum Call { kOpen, kStat, kRead, kWrite, kTruncate, kClose, kCalls };

// What a call does instead of its work: it fails with a positive errno or does one of these.
enum Fault {
  kAsLittleAsPossible = -1,     // one byte
  kNoRoomAfterSome = -2,        // one byte; the next call fails with ENOSPC
  kOtherWriterThenNoRoom = -3,  // another writer appends "; other"; fails with ENOSPC
  kSomeThenOtherWriter = -4     // one byte; the next call does kOtherWriterThenNoRoom
};

Call faulty = kCalls;
int fault = 0;
int until = 0;  // 0: no call
bool allAfter = false;
bool hasFailed = false;
int inherited = 0;   // files opened without O_CLOEXEC, which a new program would inherit
std::string target;  // the file that the other writer appends to

bool HasFault(Call call) {
  if (call != faulty || until == 0 || (until > 1 && --until > 0)) return false;
  if (!allAfter) until = 0;
  hasFailed = true;
  if (fault > 0) errno = fault;
  return true;
}

ssize_t Write(int file, const iovec* pieces, int count) {
  if (!HasFault(kWrite)) return syscall(SYS_writev, file, pieces, count);
  if (fault > 0) return -1;
  if (fault == kOtherWriterThenNoRoom) {
    const long other = syscall(SYS_open, target.c_str(), O_WRONLY | O_APPEND);
    if (syscall(SYS_write, other, "; other", 7) == 7) errno = ENOSPC;
    syscall(SYS_close, other);
    return -1;
  }
  if (fault == kNoRoomAfterSome) fault = ENOSPC, until = 1;
  if (fault == kSomeThenOtherWriter) fault = kOtherWriterThenNoRoom, until = 1;
  return syscall(SYS_write, file, pieces->iov_base, 1);
}

// The n-th call from now on has the fault, alone or with all after it.
void Inject(Call call, int which, int n = 1, bool andAllAfter = false) {
  faulty = call;
  fault = which;
  until = n;
  allAfter = andAllAfter;
  hasFailed = false;
}

// Ends that. Returns whether any call had the fault.
bool Stop() {
  until = 0;
  return hasFailed;
}

}  // namespace

extern "C" {
int open(const char* name, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  if ((flags & O_CLOEXEC) == 0) ++inherited;
  return HasFault(kOpen) ? -1 : static_cast<int>(syscall(SYS_open, name, flags, mode));
}
int fstat(int file, struct stat* facts) noexcept {
  return HasFault(kStat) ? -1 : static_cast<int>(syscall(SYS_fstat, file, facts));
}
ssize_t read(int file, void* room, std::size_t size) {
  if (!HasFault(kRead)) return syscall(SYS_read, file, room, size);
  return fault > 0 ? -1 : syscall(SYS_read, file, room, std::min<std::size_t>(size, 1));
}
ssize_t write(int file, const void* text, std::size_t size) {
  const iovec piece{const_cast<void*>(text), size};
  return Write(file, &piece, 1);
}
ssize_t writev(int file, const iovec* pieces, int count) {
  return Write(file, pieces, count);
}
int ftruncate(int file, off_t size) noexcept {
  return HasFault(kTruncate) ? -1 : static_cast<int>(syscall(SYS_ftruncate, file, size));
}
int close(int file) {
  const int result = static_cast<int>(syscall(SYS_close, file));
  return HasFault(kClose) ? -1 : result;
}
}

namespace {

const std::string kText = "[A] k = 1, '" + std::string(200000, 'x') + "', 2.5 EndSect\n";

// Makes the attempt with a fault in the n-th call, for n = 1, 2 and so on until no call has it. The
// attempt must call Stop before it uses files itself.
void InjectEach(Call call, int which, bool andAllAfter, const std::function<void()>& attempt) {
  const int descriptor = LowestFreeDescriptor();
  int n = 1;
  for (;; ++n) {
    Inject(call, which, n, andAllAfter);
    attempt();
    if (!Stop()) break;
  }
  EXPECT_GT(n, 1) << "there is no such call";
  EXPECT_EQ(LowestFreeDescriptor(), descriptor);
}

TEST(Io, FaultsOfReading) {
  const std::string path = WriteFile("read.zon", kText);
  const std::string tree = ShowTree(File(zonLoadFile(path.c_str(), 1)));
  const std::string tokens = model::StreamOf(path);
  const struct {
    const char* name;
    Call call;
    int fault;
    bool andAllAfter;
    int code;
  } rows[] = {{"open: EMFILE", kOpen, EMFILE, false, 1001},
              {"open: EINTR", kOpen, EINTR, false, 0},
              {"stat: EIO", kStat, EIO, false, 1001},
              {"read: EIO", kRead, EIO, false, 1002},
              {"read: EISDIR", kRead, EISDIR, true, 1002},
              {"read: EINTR", kRead, EINTR, false, 0},
              {"read: one byte always", kRead, kAsLittleAsPossible, true, 0},
              {"close: EIO", kClose, EIO, false, 0},
              {"close: EINTR", kClose, EINTR, true, 0}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    InjectEach(row.call, row.fault, row.andAllAfter, [&] {
      const File file(zonLoadFile(path.c_str(), 1));
      const int code = Stop() ? row.code : 0;
      EXPECT_EQ(zonGetErrorGlb(), code);
      EXPECT_EQ(file == nullptr, code != 0);
      EXPECT_EQ(file == nullptr ? tree : ShowTree(file), tree);
    });
    InjectEach(row.call, row.fault, row.andAllAfter, [&] {
      const std::string stream = model::StreamOf(path);
      const int code = Stop() ? row.code : 0;
      EXPECT_EQ(stream == tokens, code == 0);
      EXPECT_EQ(stream == "no file", code == 1001);
      EXPECT_EQ(stream.find("Read error") != std::string::npos, code == 1002);
    });
  }
}

// A host without standard input gets its files under the number 0.
TEST(Io, DescriptorZero) {
  const std::string path = WriteFile("zero.zon", "[A] k = 1 EndSect");
  const int kept = dup(STDIN_FILENO);
  close(STDIN_FILENO);
  EXPECT_EQ(ShowTree(File(zonLoadFile(path.c_str(), 1))), "{A{k(int 1)}}");
  EXPECT_EQ(model::StreamOf(path), "100:A\n200:k\n1020:1\n101:\n");
  dup2(kept, STDIN_FILENO);
  close(kept);
}

TEST(Io, NoHandleKeepsItsFileOpen) {
  const std::string path = WriteFile("few.zon", "[A] k = 1 EndSect");
  const int descriptor = LowestFreeDescriptor();
  const File file(zonLoadFile(path.c_str(), 1));
  EXPECT_EQ(LowestFreeDescriptor(), descriptor);
  zonWrite(file, path.c_str());
  EXPECT_EQ(LowestFreeDescriptor(), descriptor);
  EXPECT_EQ(inherited, 0);
}

int CountBlockedSignals() {
  sigset_t blocked;
  sigprocmask(SIG_BLOCK, nullptr, &blocked);
  int count = 0;
  for (int signal = 1; signal <= SIGRTMAX; ++signal) count += sigismember(&blocked, signal);
  return count;
}

TEST(Io, FaultsOfWriting) {
  const std::string path = WriteFile("source.zon", kText);
  target = WriteFile("target.zon", "");
  const File file(zonLoadFile(path.c_str(), 1));
  zonWrite(file, target.c_str());
  const std::string text = ReadFileWithoutDates(target);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  const struct {
    const char* name;
    Call call;
    int fault;
    bool andAllAfter, isWritten;
  } rows[] = {{"open: EACCES", kOpen, EACCES, false, false},
              {"open: EINTR", kOpen, EINTR, false, true},
              {"stat: EIO", kStat, EIO, false, true},
              {"write: ENOSPC after some", kWrite, kNoRoomAfterSome, false, false},
              {"write: EIO", kWrite, EIO, true, false},
              {"write: EINTR", kWrite, EINTR, false, true},
              {"write: one byte always", kWrite, kAsLittleAsPossible, true, true},
              {"close: EINTR", kClose, EINTR, true, true}};
  for (const auto& row : rows) {
    for (const bool isCopy : {false, true}) {
      SCOPED_TRACE(std::string(row.name) + (isCopy ? ", zonFileCopy" : ", zonWrite"));
      WriteFile("target.zon", "; kept");
      InjectEach(row.call, row.fault, row.andAllAfter, [&] {
        const int copied = isCopy ? zonFileCopy(path.c_str(), target.c_str()) : 0;
        if (!isCopy) zonWrite(file, target.c_str());
        const bool wasFaulty = Stop();
        EXPECT_EQ(CountBlockedSignals(), 0);
        const bool isWritten = ReadFileWithoutDates(target) == "; kept" + text;
        EXPECT_TRUE(isWritten || ReadFile(target) == "; kept");
        // A stat may also be that of the source of a copy.
        const bool isOfSource = isCopy && row.call == kStat;
        EXPECT_TRUE(isOfSource || isWritten == (row.isWritten || !wasFaulty));
        EXPECT_EQ(copied, isCopy && isWritten);
        zonGetErrorGlb();
        WriteFile("target.zon", "; kept");
      });
    }
  }
}

// A failed write leaves what the file held and what another writer has appended since.
TEST(Io, FailedWritesAreCutBack) {
  const File file(Load(kText));
  const struct {
    Call call;
    int fault;
    const char* left;
  } rows[] = {{kClose, ENOSPC, "; kept"},
              {kWrite, kOtherWriterThenNoRoom, "; kept; other"},
              {kWrite, kSomeThenOtherWriter, "; kept/; other"}};
  for (const auto& row : rows) {
    target = WriteFile("target.zon", "; kept");
    Inject(row.call, row.fault);
    zonWrite(file, target.c_str());
    Stop();
    EXPECT_EQ(ReadFile(target), row.left);
  }
}

TEST(Io, LinksAreFollowed) {
  const std::string folder = FolderPath() + "/", dangling = folder + "dangling",
                    loop = folder + "loop";
  ASSERT_EQ(symlink("nowhere.zon", dangling.c_str()), 0);
  ASSERT_EQ(symlink("loop", loop.c_str()), 0);
  for (const std::string& link : {dangling, loop}) {
    EXPECT_EQ(zonLoadFile(link.c_str(), 1), nullptr);
    EXPECT_EQ(zonGetErrorGlb(), 1001);
    zonWrite(File(zonCreate()), link.c_str());
    EXPECT_TRUE(std::filesystem::is_symlink(link));
  }
  EXPECT_TRUE(std::filesystem::exists(folder + "nowhere.zon"));
  const std::string first = WriteFile("first.zon", kText), second = folder + "second.zon";
  ASSERT_EQ(link(first.c_str(), second.c_str()), 0);
  zonWrite(File(zonLoadFile(first.c_str(), 1)), second.c_str());
  EXPECT_EQ(zonGetNoTargets(File(zonLoadFile(first.c_str(), 1))), 2) << "one file with two names";
}

// A write beyond the limit on the size of files fails; the host and the old text remain.
TEST(Io, LimitOnTheSizeOfFiles) {
  const File file(Load(kText));
  target = WriteFile("limited.zon", "; kept\n");
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit lower{100000, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &lower);
  zonWrite(file, target.c_str());
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(ReadFile(target), "; kept\n");
}

// A host that is killed while it writes leaves the old text, whole new ones, and at most the
// beginning of another one.
TEST(Io, KilledAtAnyMoment) {
  const File file(Load(kText));
  target = FolderPath() + "/killed.zon";
  zonWrite(file, target.c_str());
  const std::string text = ReadFileWithoutDates(target);
  for (useconds_t n = 0; n < 50; ++n) {
    WriteFile("killed.zon", "; kept\n");
    const pid_t child = fork();
    if (child == 0) {
      for (alarm(5);;) zonWrite(file, target.c_str());
    }
    usleep(n * 37 % 100 * 50);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    std::string left = ReadFileWithoutDates(target);
    left.erase(left.rfind('\n') + 1);  // part of a line may be part of a date
    std::string whole = "; kept\n";
    while (whole.size() < left.size()) whole += text;
    EXPECT_EQ(whole.compare(0, left.size(), left), 0) << left.size();
  }
}

}  // namespace
