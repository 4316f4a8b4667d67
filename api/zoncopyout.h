// Copies of texts in buffers of the caller.
#ifndef ZON_API_ZONCOPYOUT_H
#define ZON_API_ZONCOPYOUT_H

#include <cstddef>
#include <cstring>

namespace zon {

// Copies `text` with its terminating zero into `buffer`, which has `size` bytes. Returns 0; -1,
// with nothing written, if the buffer is too small or null; -2 if `text` is null. All exported
// functions whose names end in 2 return these values.
inline int CopyOut(const char* text, char* buffer, int size) {
  if (text == nullptr) return -2;
  const std::size_t length = std::strlen(text);
  if (buffer == nullptr || size <= 0 || length >= static_cast<std::size_t>(size)) return -1;
  std::memcpy(buffer, text, length + 1);
  return 0;
}

}  // namespace zon

#endif
