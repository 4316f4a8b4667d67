// Values as they are saved: which data a value has, how it is written without a loss, and whether
// two values are the same data. Spelling is no data: 1.50 is the same as 1.5, but not as 2 or
// '1.5'.
// Tested by tests/zonsave_test.cpp and fuzz/save_fuzz.cpp.
#ifndef ZON_SAVING_ZONSAVEDVALUE_H
#define ZON_SAVING_ZONSAVEDVALUE_H

#include <string>
#include <string_view>

#include "saving/zonalignment.h"

class CzonNode;
class CzonParam;

namespace zon {

// Appends the value without its remark. A value that the format cannot express is written in a form
// that does not load as the value. A real has the fewest digits that give the same double or, if it
// was made in single precision, the same float.
void AppendValue(std::string* out, const CzonNode& value);

// Whether `loaded`, which is a value of a text, has the data of `wanted`. A value in single
// precision is that of a text which rounds to it.
bool IsSameValue(const CzonNode& wanted, const CzonNode& loaded);

// Values with the same data have the same key, if both or neither are in single precision. Of a
// value that is not made yet: its kind and its text without delimiters. The kinds are those of
// zonx.h.
AlignmentKey KeyOfValue(const CzonNode& value);
AlignmentKey KeyOfValue(int kind, std::string_view text);

// The number of a real, and whether it was made in single precision.
struct RealNumber {
  double value;
  bool isSingle;
};
RealNumber NumberOf(const CzonNode& real);

// The value as one that has a text; null for a node of the host that has none.
const CzonParam* AsParam(const CzonNode* value);

// The kind of a value as it would be loaded from its place.
int SavedKind(const CzonNode& value);

}  // namespace zon

#endif
