/* A host in C: builds a file in memory, writes it and reads it again, and then reads a faulty file.
 * The exit code is the number of things that went wrong. */
#include <stdio.h>
#include <string.h>

#include <zon.h>

static int wrong = 0, keywords = 0;

static void expect(int condition, const char* what) {
  if (condition) return;
  fprintf(stderr, "wrong: %s\n", what);
  ++wrong;
}

static void count(struct CzonNode* node) {
  if (zonIsKeyword(node)) ++keywords;
}

static void check(void* file) {
  void* section = zonFindSectionByHandle(file, "Model");
  void* depth = zonKeywordByNameNum(section, "depth", 1);
  char text[5];
  double value = 0;
  zonPasGetDoubleProc(zonParamByNum(depth, 1), &value);
  expect(value == 2.5, "depth");
  expect(zonGetString2(zonParamByNum(depth, 2), text, sizeof text) == 0, "room for a text");
  expect(strcmp(text, "it's") == 0, "a text");
  keywords = 0;
  zonExplore(file, count);
  expect(keywords == 1 && zonGetErrorGlb() == 0, "one keyword and no code");
}

int main(void) {
  const char* name = "flat_test.zon";
  void* file = zonCreate();
  unsigned int line = 0;
  FILE* out;
  zonAddTarget(file, "Model");
  zonAddKeyword(file, "depth");
  zonAddDouble(file, 2.5);
  zonAddString(file, "it's");
  zonEndSection(file);
  expect(zonAddKeywordS(file, "late") == 2000, "refused outside every section");
  check(file);
  zonWrite(file, name);
  zonClose(&file);
  expect(file == NULL, "the handle is gone");
  check(file = zonLoadFile(name, 1));
  zonClose(&file);
  out = fopen(name, "a");
  expect(out != NULL && fputs("[A] k = 4 2", out) >= 0 && fclose(out) == 0, name);
  file = zonLoadFile(name, 1);
  expect(file != NULL && zonGetRoot(file) == NULL, "a faulty file has no tree");
  expect(zonGetErrorGlb() == 1003, "code of a syntax error");
  expect(*zonGetSyntaxErr(file, &line, NULL, NULL) != '\0' && line > 1, "its place");
  zonClose(&file);
  /* Hooks that the host does not have are silent. */
  file = zonLoadFile(name, 0);
  expect(zonGetErrorGlb() == 1003 && zonGetInt(NULL) == -1, "a report and a message to nobody");
  zonClose(&file);
  remove(name);
  return wrong;
}
