// A host in C++17 that uses the classes and a hook.
#include <cstdio>
#include <iostream>

#include <zon.h>
#include <zonclasses.h>

static int messages = 0;
void MessageHook(const char*) {
  ++messages;
}

static const CzonParam* Value(const CzonTargetList* section, const char* keyword) {
  return dynamic_cast<const CzonSection&>(*section).KeywordByName(keyword)->ParamByNum(1);
}

int main(int argc, char** argv) {
  void* file = argc > 2 ? zonLoadFile(argv[1], 1) : nullptr;
  const auto* root = dynamic_cast<CzonTargetList*>(static_cast<CzonBase*>(zonGetRoot(file)));
  if (root == nullptr) return 1;
  std::cout << Value(root->SectionByName("HARBOUR"), "basins")->GetInt() << "\n";
  double length = 0;
  zonGetParam(zonTargetByNameNum(file, "Quay", 2), "Length", &length, 1, 1);
  std::printf("%.2f\n", length);
  std::fflush(stdout);
  CString foreman;
  zonGetParam(zonFindSectionByHandle(file, "Quay:2/Berth"), "Foreman", &foreman, 1, 1);
  std::cout << foreman.GetString() << "\n";
  const CzonTargetList* ship = root->SectionByName("Traffic")->SectionByName("Ship");
  const auto* papers = dynamic_cast<const CzonFilename*>(Value(ship, "Papers"));
  std::cout << (papers != nullptr ? papers->GetFilename() : "no file name") << "\n";
  zonClose(&file);
  zonGetInt(nullptr);
  if (messages != 1 || zonGetErrorGlb() != 1006) return 1;

  file = zonLoadFile(argv[2], 1);
  unsigned line = 0;
  unsigned position = 0;
  const char* message = zonGetSyntaxErr(file, &line, &position, nullptr);
  std::cout << line << ":" << position << ": " << message << "\n";
  zonClose(&file);
  return 0;
}
