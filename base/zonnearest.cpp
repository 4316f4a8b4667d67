#include "base/zonnearest.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "base/zonchars.h"

namespace zon {
namespace {

constexpr std::size_t kLongest = 64;

using Row = std::array<std::uint8_t, kLongest + 1>;

}  // namespace

// The table of the dynamic programme, of which only three rows are kept. No later row has less than
// the least of two rows: most names are given up after a few letters.
std::size_t EditDistance(std::string_view a, std::string_view b, std::size_t limit) {
  if (EqualNoCase(a, b)) return 0;
  const std::size_t difference = a.size() > b.size() ? a.size() - b.size() : b.size() - a.size();
  if (difference > limit || a.size() > kLongest || b.size() > kLongest) return limit + 1;
  std::array<Row, 3> rows{};
  for (std::size_t column = 0; column <= b.size(); ++column) {
    rows[0][column] = static_cast<std::uint8_t>(column);
  }
  std::size_t leastOfLast = 0;
  for (std::size_t row = 1; row <= a.size(); ++row) {
    Row& now = rows[row % 3];
    const Row& last = rows[(row + 2) % 3];
    const Row& beforeLast = rows[(row + 1) % 3];
    now[0] = static_cast<std::uint8_t>(row);
    std::size_t least = row;
    for (std::size_t column = 1; column <= b.size(); ++column) {
      const bool isSame = Lower(a[row - 1]) == Lower(b[column - 1]);
      int distance =
          std::min({last[column] + 1, now[column - 1] + 1, last[column - 1] + (isSame ? 0 : 1)});
      if (row > 1 && column > 1 && Lower(a[row - 1]) == Lower(b[column - 2]) &&
          Lower(a[row - 2]) == Lower(b[column - 1])) {
        distance = std::min(distance, beforeLast[column - 2] + 1);
      }
      now[column] = static_cast<std::uint8_t>(distance);
      least = std::min<std::size_t>(least, now[column]);
    }
    if (least > limit && leastOfLast > limit) return limit + 1;
    leastOfLast = least;
  }
  return std::min<std::size_t>(rows[a.size() % 3][b.size()], limit + 1);
}

}  // namespace zon
