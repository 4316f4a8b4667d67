// Loads and frees the file that is named: the whole work of a process, in a host in C++.
#include "zonrows.h"

int main(int count, char** arguments) {
  const std::string file = count == 2 ? arguments[1] : "";
  bench::Zon zon;
  return zon.Load(file) ? 0 : 1;
}
