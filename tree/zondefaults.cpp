// Default values: the search for the default definition of a placeholder.
//
// A definition applies to the keywords after it in its section and in the sections inside. So the
// search goes from the keyword outward; in each section the definition must precede the child from
// which the search came. A definition without such a value, or with a placeholder in its place, is
// skipped, and the search continues outward. Tested by tests/values_test.cpp.
#include "base/zonassert.h"
#include "base/zonchars.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonparam.h"

// Searches the sections outward, but not the root. For an owner of a host's class its own operation
// is called.
CzonParam* CzonNamedNode::FindDefault(CzonNode* start, const std::string& name,
                                      unsigned int n) const {
  const CzonNamedNode* node = this;
  const CzonNode* from = start;
  for (bool isOutward = node->IsKeyword() != 0;; isOutward = true) {
    if (isOutward) {
      from = node;
      node = node->GetOwner();
      if (node == nullptr || node->GetOwner() == nullptr) return nullptr;
      if (!node->IsOfLibrary()) return node->FindDefault(const_cast<CzonNode*>(from), name, n);
    }
    const std::uint32_t place = from != nullptr ? node->PlaceOf(from) : node->Children().Size();
    const bool isPlace = place < node->Children().Size();
    ZON_ASSERT_TEXT(isPlace, "zonnamno", "Ok");
    // Compatibility: hosts rely on the first definition of a section hiding the others, even if it
    // has no such value.
    const CzonNamedNode* definition = node->FindDefinition(name);
    if (definition != nullptr && node->PlaceOf(definition) <= place) {
      CzonParam* value = definition->ParamByNum(n);
      if (value != nullptr && !value->IsDefaultPar()) return value;
    }
  }
}

const CzonNamedNode* CzonNamedNode::FindDefinition(std::string_view name) const {
  for (const CzonNode* child : Children()) {
    if (!child->IsDefaultDef()) continue;
    const auto* definition = static_cast<const CzonNamedNode*>(child);
    if (zon::EqualNoCase(definition->GetKey().name, name)) return definition;
  }
  return nullptr;
}
