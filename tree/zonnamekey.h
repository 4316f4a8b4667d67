// How named nodes are filed: by name, ignoring ASCII case; the empty name and one blank are the
// same name. See FoldedName in base/zonchars.h.
#ifndef ZON_TREE_ZONNAMEKEY_H
#define ZON_TREE_ZONNAMEKEY_H

#include <cstdint>
#include <string_view>

namespace zon {

// The name by which a node is filed.
struct NameKey {
  std::string_view name;
  // False if the name is the result of a host's GetName, which can change: the queue then keeps a
  // copy.
  bool isStored;
};

// A Copy resets the instance number of its target to 0. If the target has no owner, the queue that
// counts it is unknown (a host may file it in a CzonNameList of its own). So a global counter is
// incremented, and each queue compares it with the value at its last numbering.
void CountLostNumber();
std::uint32_t GetLostNumbers();

}  // namespace zon

#endif
