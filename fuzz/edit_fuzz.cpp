// Builder calls, edits and packed lists, chosen by the input, on two files and on models of them.
// Hooks call the library in turn: they query all trees, load a file and build a third one.
#include "clob_model.h"
#include "edit_model.h"
#include "fuzz.h"

namespace {

using fuzz::Check;

void* files[4];  // two with a model, one that hooks build, one with a packed list
unsigned built;
const char* nested;  // a file that a hook loads, if not null; the load clears the pending code

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
  Check(message == "Missing |", "a load in a hook changed the error:", message);
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
  model::Clob clob;
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
