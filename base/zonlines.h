// Lines and columns of places in a text.
//
// For each block of the text the index has the number of newlines before it and where the line
// begins in which the block begins, so a question costs at most the characters of one block,
// however long the text and its lines are. Tested by tests/zonx_test.cpp.
#ifndef ZON_BASE_ZONLINES_H
#define ZON_BASE_ZONLINES_H

#include <cstddef>
#include <string_view>
#include <vector>

namespace zon {

struct LineColumn {
  unsigned int line;    // from 1
  unsigned int column;  // in bytes, from 1
};

class LineIndex {
 public:
  // The text must live as long as the index and not change. Throws std::bad_alloc.
  explicit LineIndex(std::string_view text);

  LineColumn Locate(const char* at) const;

  // The line of a place, without its line end.
  std::string_view Line(const char* at) const;

 private:
  struct Block {
    std::size_t newlines;   // before the block
    const char* lineBegin;  // of the line that the block begins in
  };

  const Block& BlockOf(const char* at) const;
  const char* BeginOfLine(const char* at) const;

  std::string_view text_;
  std::vector<Block> blocks_;
};

}  // namespace zon

#endif
