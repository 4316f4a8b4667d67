// An open file of the system, closed at the end of the scope, and calls that a signal may
// interrupt.
#ifndef ZON_BASE_ZONDESCRIPTOR_H
#define ZON_BASE_ZONDESCRIPTOR_H

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace zon {

class Descriptor {
 public:
  explicit Descriptor(int file = -1) : file_(file) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  Descriptor(Descriptor&& other) noexcept : file_(other.Release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(file_, other.file_);
    return *this;
  }
  ~Descriptor() { Close(); }

  bool IsOpen() const { return file_ >= 0; }
  int Get() const { return file_; }

  // The caller closes it.
  int Release() { return std::exchange(file_, -1); }

  // 0 or an errno. It is closed in any case, also after EINTR.
  int Close() {
    if (!IsOpen() || close(Release()) == 0 || errno == EINTR) return 0;
    return errno;
  }

 private:
  int file_;
};

// Repeats a call of the system while signals interrupt it.
template <class Call>
auto Repeat(Call call) {
  for (;;) {
    const auto result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

// The same for a call whose result is 0 or the errno that it stores.
template <class Call>
int ErrorOf(Call call) {
  return Repeat(call) < 0 ? errno : 0;
}

}  // namespace zon

#endif
