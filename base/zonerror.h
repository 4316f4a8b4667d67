// The error code of the process. The first error stays until the host consumes it: every error goes
// through RaiseError. Safe to call from several threads.
#ifndef ZON_BASE_ZONERROR_H
#define ZON_BASE_ZONERROR_H

namespace zon {

enum ErrorCode : int {
  kErrNone = 0,
  kErrFileOpen = 1001,
  kErrFileInit = 1002,
  kErrParse = 1003,
  kErrParserInit = 1004,
  kErrHandle = 1005,
  kErrNode = 1006,
  kErrNamedNode = 1007,
  kErrSection = 1009,
  kErrTargetList = 1011,
  kErrParameter = 1012,
  kErrBuilder = 2000,  // a handle's own code, never the process-wide one
};

void RaiseError(int code);  // stored only while none is pending
int PeekError();
int ConsumeError();  // returns the code and clears it

// The first error of the calling thread since it last consumed the code. For a call that depends on
// the success of another one that it made itself.
int PeekErrorOfThread();

}  // namespace zon

#endif
