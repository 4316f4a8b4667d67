// Edits a parameter file: changes a value, adds a section, renames a keyword, and saves the result:
//
//     edit FILE RESULT
#include <fstream>
#include <iostream>

#include <zon.h>
#include <zonx.h>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: " << argv[0] << " FILE RESULT\n";
    return 2;
  }
  void* file = zonLoadFile(argv[1], 1);
  void* quay = file != nullptr ? zonTargetByNameNum(file, "Quay", 1) : nullptr;
  if (quay == nullptr) {
    std::cerr << argv[1] << ": no section Quay\n";
    if (file != nullptr) zonClose(&file);
    return 1;
  }

  zoneModifyParameterDouble(zonKeywordByNameNum(quay, "Length", 1), 1, 415.0);
  zoneRenameKeyword(zonKeywordByNameNum(quay, "Name", 1), "Title");

  void* crane = zoneInsertNewSection(quay, "Crane", 1);  // before the berth
  void* lift = zoneInsertNewKeyword(crane, "Lift", 0);
  zoneInsertParameterDouble(lift, 0, 12.5);
  zoneInsertParameterInt(lift, 0, 5);

  const int status = zonxSave(file, argv[2], ZONX_OVERWRITE, nullptr, nullptr);
  const bool good = zonGetErrorGlb() == 0 && status == ZONX_OK;
  zonClose(&file);
  std::cout << std::ifstream(argv[2]).rdbuf();
  return good ? 0 : 1;
}
