// Names that are nearly the same, for "did you mean".
#ifndef ZON_BASE_ZONNEAREST_H
#define ZON_BASE_ZONNEAREST_H

#include <cstddef>
#include <string_view>

namespace zon {

// How many letters must be inserted, removed, replaced or exchanged with their neighbour to turn
// one name into the other (optimal string alignment distance), without letter case. `limit` + 1 if
// it is more than `limit`. Names of more than 64 letters are only compared for equality.
std::size_t EditDistance(std::string_view a, std::string_view b, std::size_t limit);

// Keeps the nearest of the names it is shown.
class NearestName {
 public:
  // A longer name may differ in more letters.
  explicit NearestName(std::string_view wanted)
      : wanted_(wanted),
        best_(wanted.size() < 3   ? 1
              : wanted.size() < 9 ? 2
                                  : 3) {}

  void Offer(std::string_view name) {
    const std::size_t distance = EditDistance(wanted_, name, best_);
    if (distance > best_ || distance >= name.size() || (distance == best_ && !name_.empty()))
      return;
    best_ = distance;
    name_ = name;
  }

  // Empty if no name is near.
  std::string_view Name() const { return name_; }

 private:
  std::string_view wanted_;
  std::string_view name_;
  std::size_t best_;
};

}  // namespace zon

#endif
