// Compares values with a list that is still text, without making its values.
//
// A host that has read a value of a keyword has the values of the keyword as nodes; in a text that is read
// item by item they are still one text (tree/zondeferredvalues.h). Such a list holds plain values alone, so
// an unchanged value is found there by its own characters. Saves a host that has read a whole file two
// thirds of the time of a save. Tested by tests/zonsave_test.cpp and fuzz/save_fuzz.cpp.
#ifndef ZON_SAVING_ZONPLAINLIST_H
#define ZON_SAVING_ZONPLAINLIST_H

#include <string_view>
#include <vector>

class CzonNamedNode;
class CzonNode;

namespace zon {

// Whether the list has exactly the values of the keyword, each with the spelling that the value has. If so,
// `places` receives where each value is. False also if that is not certain.
bool MatchPlainList(const CzonNamedNode& keyword, std::string_view list,
                    std::vector<const char*>* places);

// A real of a keyword that the list does not have, and where the list has another value instead.
struct ChangedReal {
  const CzonNode* value = nullptr;
  std::string_view text;
};

// Whether the list has the values of the keyword as MatchPlainList wants them, but for one real. False also
// if that is not certain.
bool FindChangedReal(const CzonNamedNode& keyword, std::string_view list, ChangedReal* changed);

}  // namespace zon

#endif
