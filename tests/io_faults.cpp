// What the system may refuse or do by halves while files are read and written. A program of its
// own: its open, read and so on stand in front of the system's.
#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>

#include "treetext.h"

namespace {

enum Call { kOpen, kStat, kRead, kWrite, kCut, kClose, kCalls };

// What a call does: an errno; 0 nothing, -1 as little as it may, -2 this and then no room, -4 no room
// and another writer appends, -5 first -1, then -4.
int faults[kCalls];
int until[kCalls];      // the n-th call does it
bool allAfter = false;  // and all after it
int fired = 0;
int inherited = 0;  // files that a new program would still have
std::string target;

// Whether this call has the fault.
bool Fault(Call call) {
  if (faults[call] == 0 || until[call] == 0 || (until[call] > 1 && --until[call] > 0)) return false;
  if (!allAfter) until[call] = 0;
  ++fired;
  if (faults[call] > 0) errno = faults[call];
  return true;
}
bool Fails(Call call) {
  return Fault(call) && faults[call] > 0;
}

ssize_t Written(int file, const iovec* pieces, int count) {
  if (!Fault(kWrite)) return syscall(SYS_writev, file, pieces, count);
  if (faults[kWrite] == -4) {
    const long other = syscall(SYS_open, target.c_str(), O_WRONLY | O_APPEND);
    if (syscall(SYS_write, other, "; other", 7) == 7) errno = ENOSPC;
    syscall(SYS_close, other);
  }
  if (faults[kWrite] > 0 || faults[kWrite] == -4) return -1;
  if (faults[kWrite] == -2) faults[kWrite] = ENOSPC, until[kWrite] = 1;
  if (faults[kWrite] == -5) faults[kWrite] = -4, until[kWrite] = 1;
  return syscall(SYS_write, file, pieces->iov_base, 1);
}

}  // namespace

extern "C" {
int open(const char* name, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  if ((flags & O_CLOEXEC) == 0) ++inherited;
  return Fails(kOpen) ? -1 : static_cast<int>(syscall(SYS_open, name, flags, mode));
}
int fstat(int file, struct stat* facts) noexcept {
  return Fails(kStat) ? -1 : static_cast<int>(syscall(SYS_fstat, file, facts));
}
ssize_t read(int file, void* room, std::size_t size) {
  if (!Fault(kRead)) return syscall(SYS_read, file, room, size);
  return faults[kRead] > 0 ? -1 : syscall(SYS_read, file, room, std::min<std::size_t>(size, 1));
}
ssize_t write(int file, const void* text, std::size_t size) {
  const iovec piece{const_cast<void*>(text), size};
  return Written(file, &piece, 1);
}
ssize_t writev(int file, const iovec* pieces, int count) {
  return Written(file, pieces, count);
}
int ftruncate(int file, off_t size) noexcept {
  return Fails(kCut) ? -1 : static_cast<int>(syscall(SYS_ftruncate, file, size));
}
int close(int file) {
  const int result = static_cast<int>(syscall(SYS_close, file));
  return Fails(kClose) ? -1 : result;
}
}

namespace {

using namespace std::string_literals;

// Does it with a fault in the n-th call, for n = 1, 2 and so on until none is met any more.
template <class F>
void Inject(Call call, int fault, bool all, F&& attempt) {
  const int descriptor = host::LowestFreeDescriptor();
  int met = 0;
  for (int n = 1; n < 100000; ++n, ++met) {
    faults[call] = fault;
    allAfter = all;
    until[call] = n;
    fired = 0;
    attempt();
    std::fill(until, std::end(until), 0);
    if (fired == 0) break;
  }
  EXPECT_GT(met, 0) << call << ": no such call any more";
  EXPECT_EQ(host::LowestFreeDescriptor(), descriptor) << call;
}

void Calm() {
  std::fill(until, std::end(until), 0);
}

const std::string kText = "[A] k = 1, '" + std::string(200000, 'x') + "', 2.5 EndSect\n";

std::string Tokens(const std::string& path, int* first) {
  void* reader = nullptr;
  *first = zontLoadFile(path.c_str(), &reader);
  std::string tokens;
  for (int token = 1; reader != nullptr && token != 0;) {
    token = zontNextToken(reader);
    tokens += std::to_string(token) + zontGetTokenString(reader) + " ";
  }
  tokens += reader != nullptr ? zontGetError(reader, nullptr, nullptr) : "";
  zontDispose(&reader);
  return tokens;
}

TEST(Io, FaultsOfReading) {
  const std::string path = host::WriteFile("read.zon", kText);
  const std::string tree = host::ShowTree(host::File(zonLoadFile(path.c_str(), 1)));
  int opened;
  const std::string tokens = Tokens(path, &opened);
  // The codes are those of zonLoadFile and of zontLoadFile.
  const std::tuple<Call, int, bool, int, int> rows[] = {
      {kOpen, EMFILE, false, 1001, 1001}, {kOpen, EINTR, false, 0, 0},
      {kStat, EIO, false, 1001, 1001},    {kRead, EIO, false, 1002, 0},
      {kRead, EISDIR, true, 1002, 0},     {kRead, EINTR, false, 0, 0},
      {kRead, -1, false, 0, 0},           {kRead, -1, true, 0, 0},
      {kClose, EIO, false, 0, 0},         {kClose, EINTR, true, 0, 0}};
  for (const auto& [call, fault, all, wanted, tokenWanted] : rows) {
    const int code = wanted, tokenCode = tokenWanted;
    SCOPED_TRACE("call " + std::to_string(call) + ", fault " + std::to_string(fault));
    Inject(call, fault, all, [&] {
      const host::File file(zonLoadFile(path.c_str(), 1));
      const int met = fired;
      Calm();
      EXPECT_EQ(zonGetErrorGlb(), met == 0 ? 0 : code);
      EXPECT_EQ(file == nullptr, met != 0 && code != 0);
      EXPECT_TRUE(file == nullptr || host::ShowTree(file) == tree);
    });
    Inject(call, fault, all, [&] {
      const std::string got = Tokens(path, &opened);
      Calm();
      EXPECT_EQ(opened, fired == 0 ? 0 : tokenCode);
      const bool error = got.find("Read error") != std::string::npos;
      EXPECT_EQ(error, fired != 0 && code == 1002);
      EXPECT_TRUE(error || got == tokens || opened != 0);
    });
  }
}

// A host without standard input gets its files under the number 0.
TEST(Io, DescriptorZero) {
  const std::string path = host::WriteFile("zero.zon", "[A] k = 1 EndSect");
  const int kept = dup(STDIN_FILENO);
  int opened;
  for (const bool isStandardInput : {true, false}) {
    if (!isStandardInput) close(STDIN_FILENO);
    const host::File file(zonLoadFile(path.c_str(), 1));
    EXPECT_EQ(host::ShowTree(file), "{A{k(int 1)}}");
    EXPECT_EQ(Tokens(path, &opened), "100A 200k 10201 101 0 ");
  }
  dup2(kept, STDIN_FILENO);
  close(kept);
}

// No handle keeps its file open.
TEST(Io, FewDescriptors) {
  const std::string path = host::WriteFile("few.zon", "[A] k = 1 EndSect");
  rlimit old{};
  getrlimit(RLIMIT_NOFILE, &old);
  const rlimit few{64, old.rlim_max};
  setrlimit(RLIMIT_NOFILE, &few);
  std::vector<void*> files(1000);
  for (void*& file : files) file = zonLoadFile(path.c_str(), 1);
  EXPECT_EQ(std::count(files.begin(), files.end(), nullptr), 0);
  zonWrite(files[0], path.c_str());
  EXPECT_EQ(zonGetNoTargets(host::File(zonLoadFile(path.c_str(), 1))), 2);
  for (void*& file : files) zonClose(&file);
  setrlimit(RLIMIT_NOFILE, &old);
  EXPECT_EQ(inherited, 0);
}

TEST(Io, FaultsOfWriting) {
  const std::string path = host::WriteFile("source.zon", kText);
  target = host::WriteFile("target.zon", "");
  const host::File file(zonLoadFile(path.c_str(), 1));
  zonWrite(file, target.c_str());
  const std::string text = host::ReadFileWithoutDates(target);
  sigset_t before{}, after{};
  sigprocmask(SIG_BLOCK, nullptr, &before);
  const struct {
    Call call;
    int fault;
    bool all, passes;
  } rows[] = {{kOpen, EACCES, false, false}, {kOpen, EINTR, false, true},
              {kStat, EIO, false, true},     {kWrite, ENOSPC, false, false},
              {kWrite, -2, false, false},    {kWrite, EIO, true, false},
              {kWrite, EINTR, false, true},  {kWrite, -1, false, true},
              {kWrite, -1, true, true},      {kClose, EINTR, true, true}};
  for (const auto& row : rows) {
    for (const bool copies : {false, true}) {
      host::WriteFile("target.zon", "; kept");
      Inject(row.call, row.fault, row.all, [&] {
        const int copied = copies ? zonFileCopy(path.c_str(), target.c_str()) : 0;
        if (!copies) zonWrite(file, target.c_str());
        Calm();
        const std::string written = host::ReadFileWithoutDates(target);
        const bool whole = written == "; kept" + text;
        EXPECT_TRUE(whole || written == "; kept") << row.call << row.fault << written.size();
        const bool source = copies && row.call == kStat;  // it may be that of the source
        EXPECT_TRUE(source || whole == (row.passes || fired == 0)) << row.call << row.fault;
        EXPECT_EQ(copied, copies && whole);
        zonGetErrorGlb();
        host::WriteFile("target.zon", "; kept");
      });
    }
  }
  // Want of room that only a close tells, and what others have written in spite of it.
  for (const auto& [call, fault, left] : {std::tuple(kClose, ENOSPC, "; kept"),
                                          {kWrite, -4, "; kept; other"},
                                          {kWrite, -5, "; kept; other/; other"}}) {
    faults[call] = fault;
    until[call] = 1;
    zonWrite(file, target.c_str());
    Calm();
    EXPECT_EQ(host::ReadFileWithoutDates(target), left);
  }
  sigprocmask(SIG_BLOCK, nullptr, &after);
  EXPECT_EQ(std::memcmp(&before, &after, sizeof before), 0);
}

// A name that leads to a file, or to none, over a link.
TEST(Io, Links) {
  const std::string folder = host::FolderPath() + "/";
  for (const auto& [name, aim] : {std::pair("dangling", "nowhere.zon"), {"loop", "loop"}}) {
    const std::string link = folder + name;
    ASSERT_EQ(symlink(aim, link.c_str()), 0);
    EXPECT_EQ(zonLoadFile(link.c_str(), 1), nullptr);
    EXPECT_EQ(zonGetErrorGlb(), 1001);
    const host::File file(zonCreate());
    zonWrite(file, link.c_str());
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(access(link.c_str(), F_OK) == 0, name == "dangling"s) << "is made where it leads to";
  }
  const std::string first = host::WriteFile("first.zon", kText), second = folder + "second.zon";
  ASSERT_EQ(link(first.c_str(), second.c_str()), 0);
  zonWrite(host::File(zonLoadFile(first.c_str(), 1)), second.c_str());
  EXPECT_EQ(zonGetNoTargets(host::File(zonLoadFile(first.c_str(), 1))), 2) << "is one with it";
}

// A relative name in a working directory that is gone leads nowhere.
TEST(Io, WorkingDirectoryThatIsGone) {
  const std::string before = std::filesystem::current_path();
  const host::File source(host::Load("[A] EndSect"));
  const std::string gone = host::FolderPath() + "/gone";
  std::filesystem::create_directory(gone);
  std::filesystem::current_path(gone);
  std::filesystem::remove(gone);
  zonWrite(source, "here.zon");
  EXPECT_EQ(zonLoadFile("here.zon", 1), nullptr);
  EXPECT_EQ(zonGetErrorGlb(), 1001);
  std::filesystem::current_path(before);
}

// A write beyond the limit on the size of files fails; the host and the old text remain.
TEST(Io, LimitOnTheSizeOfFiles) {
  const std::string path = host::WriteFile("source.zon", kText);
  const host::File file(zonLoadFile(path.c_str(), 1));
  target = host::WriteFile("limited.zon", "; kept\n");
  rlimit old{};
  getrlimit(RLIMIT_FSIZE, &old);
  const rlimit small{100000, old.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  zonWrite(file, target.c_str());
  setrlimit(RLIMIT_FSIZE, &old);
  EXPECT_EQ(host::ReadFile(target), "; kept\n");
}

// A host that is killed while it writes leaves the old text, whole new ones, and at most the
// beginning of another one. No other process ever has its files.
TEST(Io, KilledAtAnyMoment) {
  const std::string path = host::WriteFile("source.zon", kText);
  target = host::FolderPath() + "/killed.zon";
  const host::File file(zonLoadFile(path.c_str(), 1));
  zonWrite(file, target.c_str());
  const std::string text = host::ReadFileWithoutDates(target);
  for (useconds_t n = 0; n < 50; ++n) {
    host::WriteFile("killed.zon", "; kept\n");
    int open[2];
    ASSERT_EQ(pipe(open), 0);
    const pid_t child = fork();
    if (child == 0) {
      for (alarm(5);;) zonWrite(file, target.c_str());
    }
    close(open[1]);
    usleep(n * 37 % 100 * 50);
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    pollfd end{open[0], POLLIN, 0};
    EXPECT_EQ(poll(&end, 1, 0), 1) << "the files of the host are closed with it";
    close(open[0]);
    std::string left = host::ReadFileWithoutDates(target);
    left.erase(left.rfind('\n') + 1);  // part of a line may be part of a time
    std::string whole = "; kept\n";
    while (whole.size() < left.size()) whole += text;
    EXPECT_EQ(whole.compare(0, left.size(), left), 0) << left.size();
  }
}

}  // namespace
