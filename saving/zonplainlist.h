// Compares values with a list that is still text, without making its values.
//
// A host that has read a value of a keyword has the values of the keyword as nodes; in a text that
// is read item by item they are still one text (tree/zondeferredvalues.h). Such a list holds plain
// values alone, so an unchanged value is found there by its own characters. Saves a host that has
// read a whole file two thirds of the time of a save. Tested by tests/zonsave_test.cpp and
// fuzz/save_fuzz.cpp.
#ifndef ZON_SAVING_ZONPLAINLIST_H
#define ZON_SAVING_ZONPLAINLIST_H

#include <string_view>
#include <vector>

class CzonNamedNode;
class CzonNode;

namespace zon {

// How a list differs from the values of a keyword.
struct PlainListMatch {
  bool isSame = false;  // it has exactly the values, each with the spelling that the value has
  std::vector<const char*> places;  // if so: of the values in the list
  const CzonNode* changed =
      nullptr;  // the only value that it does not have, a real; null if there is none
  std::string_view changedText;  // what it has instead
};

// If it is not certain how the list differs, it is not the same and no value has changed.
void MatchPlainList(const CzonNamedNode& keyword, std::string_view list, PlainListMatch* match);

}  // namespace zon

#endif
