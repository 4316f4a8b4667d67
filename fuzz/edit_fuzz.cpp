// The builder, edits and packed lists as the bytes say, on two files and their models. Hooks call
// back: they ask all trees, load a file and build a third one.
#include "edit_model.h"
#include "fuzz.h"

namespace {

using fuzz::Check;

// A packed list beside a model of its items and of its cursor.
struct Item {
  unsigned kind;  // in the order of these functions
  int value;      // of a real: half of it
  std::string text;
};
int (*const kAdd[])(void*, const Item&) = {
    [](void* file, const Item& item) { return zonAddClobBoolS(file, item.value); },
    [](void* file, const Item& item) { return zonAddClobIntS(file, item.value); },
    [](void* file, const Item& item) { return zonAddClobFloatS(file, float(item.value) / 2); },
    [](void* file, const Item& item) { return zonAddClobDoubleS(file, item.value / 2.0); },
    [](void* file, const Item& item) { return zonAddClobStringS(file, item.text.c_str()); },
    [](void* file, const Item& item) { return zonAddClobFilenameS(file, item.text.c_str()); }};
double (*const kRead[])(void*) = {[](void* node) -> double { return zonGetClobBool(node); },
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
      Check(kAdd[call](file, items_.back()) == 0, "a refused item");
    } else if (call < 12) {
      Read(node, call - 6);
    } else {
      zonClobReset(node);
      at_ = 0;
    }
    Check(zonGetClobNoItems(node) == static_cast<int>(items_.size()), "number of items");
    Check(zonIsClobEnd(node) == (at_ == items_.size() ? 1 : 0), "end of items");
  }

 private:
  // An Integer may be read as Float or Double, a Float as Double.
  void Read(void* node, unsigned wanted) {
    const Item item = at_ < items_.size() ? items_[at_] : Item{9, 0, {}};
    const bool fits = item.kind == wanted || (item.kind == 1 && (wanted == 2 || wanted == 3)) ||
                      (item.kind == 2 && wanted == 3);
    const double value = item.kind == 0 ? item.value != 0 : item.value;
    if (wanted < 4) {
      const double failure = wanted == 0 ? 0.0 : -1.0;
      Check(kRead[wanted](node) == (!fits ? failure : item.kind < 2 ? value : value / 2), "item");
    } else {
      const auto read = wanted == 4 ? zonGetClobString : zonGetClobFilenameString;
      Check(read(node) == (fits ? item.text : std::string()), "text of an item", item.text);
    }
    Check(zonGetErrorGlb() == (fits ? 0 : 1003), "code of an item");
    if (fits) ++at_;
  }

  std::vector<Item> items_;
  std::size_t at_ = 0;
};

void* files[4];  // two with a model, one that hooks build, one with a packed list
unsigned built;
const char* nested;  // a file to load from a hook, which no pending code outlives

void CallBack() {
  if (built >= 8) return;
  ++built;
  zonAddTargetS(files[2], "T");
  zonEndSectionS(files[2]);
  for (void* file : files) zonExplore(file, [](CzonNode* node) { zonGetNameGlb(node); });
  if (nested == nullptr) return;
  void* file = zonLoadFile(nested, 1);
  Check(zonGetNoTargets(file) == 1, "a load from a hook");
  zonClose(&file);
}

void LoadWithHook() {
  nested = fuzz::FileOf("[A] k = 1, 'x' EndSect", 1);
  void* faulty = zonLoadFile(fuzz::FileOf("[A] k = |x", 2), 0);
  const std::string message = zonGetSyntaxErr(faulty, nullptr, nullptr, nullptr);
  Check(message == "Missing |", "an error that a hook has changed:", message);
  zonClose(&faulty);
  nested = nullptr;
  zonGetErrorGlb();
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes bytes{data, data + size};
  files[0] = zonLoadFile(fuzz::FileOf({}), 1);
  for (const int n : {1, 2, 3}) files[n] = zonCreate();
  zonAddTarget(files[3], "A");
  zonAddKeyword(files[3], "k");
  zonAddClob(files[3]);
  const auto number = [&](unsigned from, unsigned to) { return bytes.Number(from, to); };
  model::Editor editors[2] = {{files[0], number}, {files[1], number}};
  Clob clob;
  built = 0;
  fuzz::onMessage = CallBack;
  for (unsigned step = 1; !bytes.IsAtEnd() && step < 80; ++step) {
    const unsigned choice = bytes.Number(0, 15);
    if (choice == 0 && built < 8) LoadWithHook();
    if (choice > 0 && choice <= 11) editors[choice % 2].Step();
    if (choice > 11) clob.Step(files[3], bytes);
    if (step % 16 == 0)
      model::ExpectSame(editors[choice % 2].Model(), zonGetRoot(files[choice % 2]));
  }
  fuzz::onMessage = nullptr;
  Check(zonGetNoTargets(files[2]) == static_cast<int>(built), "sections built by hooks");
  for (const int n : {0, 1}) {
    model::ExpectSame(editors[n].Model(), zonGetRoot(files[n]));
    zonWrite(files[n], fuzz::FileOf({}));
    void* again = zonLoadFile(fuzz::FileOf(fuzz::ContentOf(0)), 1);
    model::ExpectSame(editors[n].Model().AsLoaded(), zonGetRoot(again));
    zonClose(&again);
  }
  for (void*& file : files) zonClose(&file);
  zonGetErrorGlb();
  return 0;
}
