// Watching which keywords of a file are read, for zonxWatch.
//
// A keyword has a bit for it. Getters set the bit while any file is watched, which costs one
// relaxed load otherwise. Names that were requested and not found are kept with the handle.
// Tested by tests/zonx_test.cpp.
#ifndef ZON_API_ZONWATCH_H
#define ZON_API_ZONWATCH_H

#include <atomic>
#include <set>
#include <string>
#include <string_view>

class CzonData;
class CzonNode;

namespace zon {

// How many files are watched.
extern std::atomic<int> watchedFiles;

// What a handle keeps while it is watched.
struct Watch {
  Watch() { watchedFiles.fetch_add(1, std::memory_order_relaxed); }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch() { watchedFiles.fetch_sub(1, std::memory_order_relaxed); }

  // Names that were not found, a limited number of them.
  std::set<std::string, std::less<>> missing;
};

void MarkRead(const CzonNode& node);
void RecordMissing(const CzonNode& node, std::string_view name);

// A value was returned, or the whole list of a keyword.
inline void NoteRead(const CzonNode& node) {
  if (watchedFiles.load(std::memory_order_relaxed) != 0) MarkRead(node);
}

// `node` has no child of that name.
inline void NoteMissing(const CzonNode& node, std::string_view name) {
  if (watchedFiles.load(std::memory_order_relaxed) != 0) RecordMissing(node, name);
}

}  // namespace zon

#endif
