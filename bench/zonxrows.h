// The rows of zonx.h and of zon.hpp.
#ifndef ZON_BENCH_ZONXROWS_H
#define ZON_BENCH_ZONXROWS_H

#include <string>
#include <vector>

namespace bench {

void AddZonxRows();
void AddHppRows();   // in hpprows.cpp
void AddEditRows();  // in editrows.cpp

// A file of lists of numbers, of 10 MB, as a parameter file or as JSON, and how many numbers it
// has.
std::string FileOfLists(bool json);
constexpr int kLists = 10000;
constexpr int kNumbersOfList = 100;

}  // namespace bench

#endif
