/* A host in C99: reads values of a file, and the error of a faulty file. */
#include <stdio.h>

#include <zon.h>

static void* value(void* section, const char* keyword) {
  return zonParamByNum(zonKeywordByNameNum(section, keyword, 1), 1);
}

int main(int argc, char** argv) {
  void* file = argc > 2 ? zonLoadFile(argv[1], 1) : NULL;
  unsigned int line;
  unsigned int position;
  const char* message;
  if (file == NULL) return 1;
  printf("%d\n", zonGetInt(value(zonTargetByNameNum(file, "Harbour", 1), "Basins")));
  printf("%.2f\n", zonGetDouble(value(zonTargetByNameNum(file, "Quay", 2), "Length")));
  printf("%s\n", zonGetString(value(zonFindSectionByHandle(file, "Quay:2/Berth"), "Foreman")));
  printf("%s\n", zonGetFilename(value(zonFindSectionByHandle(file, "Traffic/Ship"), "Papers")));
  zonClose(&file);
  if (zonGetErrorGlb() != 0 || file != NULL) return 1;

  file = zonLoadFile(argv[2], 0); /* reports the error; without hooks that has no effect */
  message = zonGetSyntaxErr(file, &line, &position, NULL);
  printf("%u:%u: %s\n", line, position, message);
  zonClose(&file);
  return zonGetErrorGlb() == 1003 && zonGetInt(NULL) == -1 ? 0 : 1;
}
