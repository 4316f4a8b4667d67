/* Loads and frees the file that is named: the whole work of a process, in a host without the C++
 *  library. */
#include <zon.h>

int main(int count, char** arguments) {
  if (count != 2) return 2;
  void* handle = zonLoadFile(arguments[1], 1);
  const int failed = handle == 0 || zonPeekErrorGlb() != 0;
  if (handle != 0) zonClose(&handle);
  return failed;
}
