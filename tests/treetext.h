// A tree and a node as one line of readable text, so that a test compares texts. Also includes
// what most tests need; it is their precompiled header.
#ifndef ZON_TESTS_TREETEXT_H
#define ZON_TESTS_TREETEXT_H

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <locale>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "files.h"

namespace host {

// The object of a handle.
template <class T = CzonNode>
T& As(void* handle) {
  return dynamic_cast<T&>(*static_cast<CzonBase*>(handle));
}

// The first keyword of the first section, and its n-th value.
inline void* KeywordOf(void* file) {
  return zonKeywordByNum(zonTargetByNum(file, 1), 1);
}
inline void* ValueOf(void* file, unsigned n = 1) {
  return zonParamByNum(KeywordOf(file), n);
}

// The tree below a node:
//   sections     Name{...}
//   keywords     name(values)
//   definitions  default name(values)
//   values       int 5, real 2.5, bool true, string x, file x, date x, subst x, clob x, undef,
//                unknown, default
//   names        name<2> for an instance number above 1, name() for the multi flag
//   remarks      in braces after the name or value: A{remark}{...}
std::string Show(const CzonNode* node);
inline std::string ShowTree(void* file) {
  void* root = zonGetRoot(file);
  return Show(root != nullptr ? &As(root) : nullptr);
}

// The text that a node writes.
inline std::string WrittenBy(const CzonNode& node) {
  std::ostringstream out;
  node.Write(out);
  return out.str();
}

// What the flat interface returns for a node: its class, the kinds that it is, its value as int,
// double, float, bool and string, and how many of these five functions refused the node; clears
// the messages:
// "class 6: param numeric int float double inttype; 1 1 1 0 ''; refused 2".
std::string Facts(void* node);

// "line:position message" of the first error of a file; empty if there was none.
std::string SyntaxError(void* file);

// "line:position" of what follows the text.
std::string PlaceAfter(const std::string& text);

// Numbers of a locale that differ in every respect from those of "C".
struct Commas : std::numpunct<char> {
  char do_decimal_point() const override { return ','; }
  std::string do_grouping() const override { return "\1"; }
};

// A built file with nothing but a file name.
struct OneName : Built {
  OneName() {
    zonAddFilename(*this, "");
    name = ValueOf(*this);
  }
  // The name as it is resolved, then as it is written: "/p/q/x|..\\x|".
  std::string Both(const std::string& text, const std::string& anchor) const {
    zonSetFilename(name, text.c_str());
    zonSetAnchorFilename(name, anchor.c_str());
    return zonGetFilename(name) + WrittenBy(As(name));
  }
  void *section = zonTargetByNum(*this, 1), *name = nullptr;
};

}  // namespace host

#endif
