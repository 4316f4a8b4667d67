// A packed list and a model of it: its items and its cursor.
#ifndef ZON_FUZZ_CLOB_MODEL_H
#define ZON_FUZZ_CLOB_MODEL_H

#include <string>
#include <vector>

#include "fuzz.h"

namespace model {

struct ClobItem {
  unsigned kind;  // the index in kAdd
  int value;      // a real has half of it
  std::string text;
};
inline int (*const kAdd[])(void*, const ClobItem&) = {
    [](void* file, const ClobItem& item) { return zonAddClobBoolS(file, item.value); },
    [](void* file, const ClobItem& item) { return zonAddClobIntS(file, item.value); },
    [](void* file, const ClobItem& item) { return zonAddClobFloatS(file, float(item.value) / 2); },
    [](void* file, const ClobItem& item) { return zonAddClobDoubleS(file, item.value / 2.0); },
    [](void* file, const ClobItem& item) { return zonAddClobStringS(file, item.text.c_str()); },
    [](void* file, const ClobItem& item) { return zonAddClobFilenameS(file, item.text.c_str()); }};
inline double (*const kRead[])(void*) = {[](void* node) -> double { return zonGetClobBool(node); },
                                         [](void* node) -> double { return zonGetClobInt(node); },
                                         [](void* node) -> double { return zonGetClobFloat(node); },
                                         zonGetClobDouble};

class Clob {
 public:
  void Step(void* file, fuzz::Bytes& bytes) {
    void* node = zonParamByNum(zonKeywordByNum(zonTargetByNum(file, 1), 1), 1);
    const unsigned call = bytes.Number(0, 12);
    if (call < 6) {
      std::string text;
      for (unsigned n = bytes.Number(0, 4); n > 0; --n) text += "a\"', >/\\\n:"[bytes.Number(0, 9)];
      items_.push_back({call, static_cast<int>(bytes.Byte()) - 128, text});
      fuzz::Check(kAdd[call](file, items_.back()) == 0, "an item was refused");
    } else if (call < 12) {
      Read(node, call - 6);
    } else {
      zonClobReset(node);
      at_ = 0;
    }
    fuzz::Check(zonGetClobNoItems(node) == static_cast<int>(items_.size()), "number of items");
    fuzz::Check(zonIsClobEnd(node) == (at_ == items_.size() ? 1 : 0), "end of items");
  }

 private:
  // An Integer may be read as Float or Double, a Float as Double.
  void Read(void* node, unsigned wanted) {
    const ClobItem item = at_ < items_.size() ? items_[at_] : ClobItem{9, 0, {}};
    const bool fits = item.kind == wanted || (item.kind == 1 && (wanted == 2 || wanted == 3)) ||
                      (item.kind == 2 && wanted == 3);
    const double value = item.kind == 0 ? item.value != 0 : item.value;
    if (wanted < 4) {
      const double failure = wanted == 0 ? 0.0 : -1.0;
      fuzz::Check(kRead[wanted](node) == (!fits           ? failure
                                          : item.kind < 2 ? value
                                                          : value / 2),
                  "item");
    } else {
      const auto read = wanted == 4 ? zonGetClobString : zonGetClobFilenameString;
      fuzz::Check(read(node) == (fits ? item.text : std::string()), "text of an item", item.text);
    }
    fuzz::Check(zonGetErrorGlb() == (fits ? 0 : 1003), "code of an item");
    if (fits) ++at_;
  }

  std::vector<ClobItem> items_;
  std::size_t at_ = 0;
};

}  // namespace model

#endif
