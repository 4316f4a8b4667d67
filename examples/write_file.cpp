// Builds a parameter file, writes it, prints the text and loads it:
//
//     write_file FILE
//
// The library appends to what a file holds, so the example removes an old file first.
#include <cstdio>
#include <fstream>
#include <iostream>

#include <zon.h>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: " << argv[0] << " FILE\n";
    return 2;
  }
  std::remove(argv[1]);

  void* file = zonCreate();
  zonAddTarget(file, "Sea");
  zonPutParam(file, "title", "the harbour's mouth");
  zonPutListParam(file, "wave", "ddi", 2.5, 0.25, 7);
  zonPutParam(file, "calm", false);
  zonPutParamFilename(file, "chart", "charts/mouth.map");
  zonAddSection(file, "Tide");
  zonPutParam(file, "range", 3.0);
  zonEndSection(file);
  zonEndSection(file);
  zonWrite(file, argv[1]);
  zonClose(&file);
  std::cout << std::ifstream(argv[1]).rdbuf();

  file = zonLoadFile(argv[1], 0);
  void* sea = zonTargetByNameNum(file, "sea", 1);
  double height = 0;
  const bool read = zonGetParam(sea, "wave", &height, 1, 2) != 0;
  void* wave = zonKeywordByNameNum(sea, "wave", 1);
  std::cout << zonGetNameGlb(wave) << ": " << zonGetNoParams(wave) << " values, the second "
            << height << "\n";
  zonClose(&file);
  return read && zonGetErrorGlb() == 0 ? 0 : 1;
}
