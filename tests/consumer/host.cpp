// A host in C++17 that hears the library and works with the classes as well.
#include <iostream>
#include <string>

#include <zon.h>
#include <zonclasses.h>

static int heard = 0;
extern "C" void MessageHook(const char*) {
  ++heard;
}

int main() {
  void* file = zonCreate();
  zonAddTarget(file, "Model");
  zonAddKeyword(file, "depth");
  zonAddDouble(file, 2.5);
  zonAddInt(nullptr, 1);
  const auto* root = static_cast<CzonTargetList*>(static_cast<CzonBase*>(zonGetRoot(file)));
  const CzonKeyword* keyword = root->SectionByName("MODEL")->KeywordByName("Depth");
  std::cout << keyword->GetNameGlb() << " = " << keyword->ParamByNum(1)->GetDouble() << "\n";
  const bool good = heard == 1 && zonGetErrorGlb() == 1005;
  zonClose(&file);
  return good ? 0 : 1;
}
