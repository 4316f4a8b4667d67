// malloc, calloc, realloc and mmap of this process refuse the requests that a test chooses.
// operator new is built on malloc. Requests of hooks and of other host::OwnMemory are never
// refused.
#ifndef ZON_TESTS_FAULTS_ALLOC_FAULTS_H
#define ZON_TESTS_FAULTS_ALLOC_FAULTS_H

namespace faults {

enum class Refusal { kOne, kAllAfter };

// Refuses the n-th request from now on, alone or with all after it; 0 refuses none.
void RefuseRequest(long n, Refusal refusal = Refusal::kOne);

// Ends that. Returns whether a request was refused since RefuseRequest.
bool StopRefusing();

// The number of all requests that were refused.
long CountRefused();

// What is allocated now.
struct Allocated {
  bool operator==(const Allocated& other) const {
    return pieces == other.pieces && mappedBytes == other.mappedBytes;
  }
  long pieces, mappedBytes;
};
Allocated AllocatedNow();

}  // namespace faults

#endif
