// System calls that fail, or end the process, as a test chooses.
#ifndef ZON_TESTS_REPLACE_FAULTS_H
#define ZON_TESTS_REPLACE_FAULTS_H

#include <string>

namespace host {

// What a call does instead of its work: it fails with a positive errno or does one of these.
enum Fault {
  kShort = -1,            // a write of one byte
  kShortThenNoRoom = -2,  // the same; the next write fails with ENOSPC
  kKillBefore = -3,
  kKillAfter = -4
};

// The n-th call from now on has the fault; of the calls of one function if there is a name.
void Inject(int fault, int n, const std::string& function = "");

// Ends that. Returns the name of the function that had the fault; empty if none had.
std::string StopFaults();

}  // namespace host

#endif
