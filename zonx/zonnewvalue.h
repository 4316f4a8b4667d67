// Values that are to be set: they are made aside, compared with the values that are there, and take
// their places. All that can fail is done before the tree changes. Tested by
// tests/zonxset_test.cpp.
#ifndef ZON_ZONX_ZONNEWVALUE_H
#define ZON_ZONX_ZONNEWVALUE_H

#include <memory>
#include <string_view>
#include <vector>

#include "tree/zonparam.h"

class CzonData;

namespace zon {

using NewValue = std::unique_ptr<CzonParam>;
using NewValues = std::vector<NewValue>;

// These are of the classes of which a loader makes values, and have the text that would be loaded.
NewValue NewInteger(long long value);
NewValue NewReal(double value);  // finite
NewValue NewReal(float value);   // finite; a double that rounds to it
NewValue NewBoolean(bool value);
NewValue NewString(std::string_view text);
NewValue NewFilename(std::string_view name);
NewValue NewEmpty(bool isInDefinition);
NewValue CopyOf(CzonNode& value);

// A change of one value.
class ValueChange {
 public:
  // Prepares everything that can fail; the old value is the same after it. It is in a keyword.
  ValueChange(CzonNode& old, NewValue by);

  // Whether the values are equal, so that there is nothing to change.
  bool IsNone() const { return fit_ == Fit::kEqual; }

  // Makes the change: an equal value stays as it is, one of the same kind keeps its node. A remark
  // stays, unless the new value has one. The handle is that of the tree; null if it is not known.
  void Apply(CzonData* handle = nullptr);

 private:
  enum class Fit { kEqual, kSameKind, kOtherKind };
  static Fit FitOf(const CzonNode& old, const CzonParam& by);
  void KeepNode();

  CzonNode& old_;
  NewValue by_;
  Fit fit_;
};

}  // namespace zon

#endif
