// open, fstat, read, write, ftruncate and close of this process fail as a test chooses.
#ifndef ZON_TESTS_FAULTS_IO_FAULTS_H
#define ZON_TESTS_FAULTS_IO_FAULTS_H

#include <string>

namespace faults {

enum Call { kOpen, kStat, kRead, kWrite, kTruncate, kClose, kCalls };

// What a call does instead of its work: it fails with a positive errno or does one of these.
enum Fault {
  kAsLittleAsPossible = -1,     // one byte
  kNoRoomAfterSome = -2,        // one byte; the next call fails with ENOSPC
  kOtherWriterThenNoRoom = -3,  // another writer appends "; other"; fails with ENOSPC
  kSomeThenOtherWriter = -4     // one byte; the next call does kOtherWriterThenNoRoom
};

// The n-th call from now on has the fault, alone or with all after it.
void Inject(Call call, int fault, int n = 1, bool andAllAfter = false);

// Ends that. Returns whether any call had the fault.
bool Stop();

// The file that the other writer appends to.
extern std::string target;

// How many files were opened without O_CLOEXEC, so that a new program would inherit them.
int CountInherited();

}  // namespace faults

#endif
