/* A host in C99: the depth of a quay from a file. */
#include <stdio.h>

#include <zon.h>

int main(int argc, char** argv) {
  void* file = zonLoadFile(argc > 1 ? argv[1] : "", 1);
  void* section = file != NULL ? zonFindSectionByHandle(file, "Quay:2/Berth") : NULL;
  void* value;
  if (section == NULL) return 1;
  value = zonParamByNum(zonKeywordByNameNum(section, "foreman", 1), 1);
  printf("%s\n", zonGetString(value));
  zonClose(&file);
  return zonGetErrorGlb() == 0 && file == NULL ? 0 : 1;
}
