#include "base/zonnearest.h"

#include <algorithm>
#include <array>

#include "base/zonchars.h"

namespace zon {
namespace {

constexpr std::size_t kLongest = 64;

}  // namespace

// The table of the dynamic programme, of which only three rows are kept.
std::size_t EditDistance(std::string_view a, std::string_view b, std::size_t limit) {
  if (EqualNoCase(a, b)) return 0;
  const std::size_t difference = a.size() > b.size() ? a.size() - b.size() : b.size() - a.size();
  if (difference > limit || a.size() > kLongest || b.size() > kLongest) return limit + 1;
  std::array<std::array<std::size_t, kLongest + 1>, 3> rows{};
  for (std::size_t column = 0; column <= b.size(); ++column) rows[0][column] = column;
  for (std::size_t row = 1; row <= a.size(); ++row) {
    auto& now = rows[row % 3];
    const auto& last = rows[(row + 2) % 3];
    const auto& beforeLast = rows[(row + 1) % 3];
    now[0] = row;
    for (std::size_t column = 1; column <= b.size(); ++column) {
      const bool isSame = Lower(a[row - 1]) == Lower(b[column - 1]);
      now[column] =
          std::min({last[column] + 1, now[column - 1] + 1, last[column - 1] + (isSame ? 0U : 1U)});
      if (row > 1 && column > 1 && Lower(a[row - 1]) == Lower(b[column - 2]) &&
          Lower(a[row - 2]) == Lower(b[column - 1])) {
        now[column] = std::min(now[column], beforeLast[column - 2] + 1);
      }
    }
  }
  return std::min(rows[a.size() % 3][b.size()], limit + 1);
}

}  // namespace zon
