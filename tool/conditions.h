// What a remark of a template states.
#ifndef ZON_TOOL_CONDITIONS_H
#define ZON_TOOL_CONDITIONS_H

#include <string>
#include <vector>

#include "tool/valuetext.h"

namespace tool {

struct Conditions {
  bool isRequired = false;
  bool isOpen = false;
  std::vector<std::string> limits;  // ">= 0", "0 .. 1", "one of a, b", "exists"
  std::string unit;
  std::string byDefault;
  std::string text;  // what is no condition, with its semicolons

  bool IsEmpty() const;
};

// Splits a remark at its semicolons.
Conditions ReadConditions(const std::string& remark, ValueText& values);

// The remark of a section or value; empty if it has none.
std::string RemarkOf(void* node);

}  // namespace tool

#endif
