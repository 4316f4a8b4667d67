// Which names the sections of a file may have twice.
//
// Only a second node of a name decides something while a file is read. To look for it in the index
// of each section would make indexes that nobody asks for. So a small hash set of the names in the
// present outermost section is kept, with 32 bits for each name of each section. It never misses a
// second name; if it suspects one, the index of the section is asked.
//
// The hash is simple and not secret. A name that does not find its place at once makes the set
// suspect every name, so names that were chosen to collide cost no more than the indexes.
// Tested by tests/load_test.cpp and fuzz/load_fuzz.cpp.
#ifndef ZON_READER_ZONNAMESSEEN_H
#define ZON_READER_ZONNAMESSEEN_H

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zon {

class NamesSeen {
 public:
  // Whether `owner` may have a section, or else a keyword, of this name already. Notes it. Throws
  // std::bad_alloc.
  bool MayRepeat(const void* owner, bool isSection, std::string_view name);

  // Forgets the names. Call when no section is open.
  void Clear();

 private:
  struct Entry {
    std::uint32_t name;
    std::uint32_t generation;  // the entry is free if it is not the present one
  };

  enum class Search { kNew, kFound, kTooLong };

  Search Add(std::uint32_t name);
  void Grow();

  std::vector<Entry> entries_;  // a power of two, at most half full; empty at first
  std::size_t used_ = 0;
  std::uint32_t generation_ = 1;
  bool isOverrun_ = false;  // every name is suspect
};

}  // namespace zon

#endif
