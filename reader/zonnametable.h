// The names of one section, or of one file, with what the checker remembers of each: where it is
// first and how often it occurs.
//
// Open addressing with linear probing, at most three quarters full. An entry has 16 bytes and no
// hash, so that the names of a large file fit: the hash is made again when the table grows. Names
// are compared without letter case and are not copied: they must live as long as the table. Tested
// by tests/reports_test.cpp.
#ifndef ZON_READER_ZONNAMETABLE_H
#define ZON_READER_ZONNAMETABLE_H

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zon {

struct NameEntry {
  const char* chars = nullptr;  // of the first occurrence; null for a free place
  std::uint32_t size = 0;
  std::uint32_t count = 0;

  std::string_view Name() const { return {chars, size}; }
};

class NameTable {
 public:
  // Counts one more occurrence of the name. Throws std::bad_alloc. The entry stays where it is
  // until the next Count.
  NameEntry& Count(std::string_view name);

  // How many different names there are.
  std::size_t Size() const { return used_; }

  // Forgets all names. A large table is freed, so that clearing it again and again costs no more
  // than filling it.
  void Clear();

 private:
  NameEntry& Find(std::string_view name);
  void Grow();

  std::vector<NameEntry> places_;  // a power of two
  std::size_t used_ = 0;
};

}  // namespace zon

#endif
