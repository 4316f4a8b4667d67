#include "base/zonerror.h"

namespace zon {
namespace {

int zonErrorGlb = kErrNone;

}  // namespace

void RaiseError(int code) {
  if (zonErrorGlb == kErrNone) zonErrorGlb = code;
}

int PeekError() {
  return zonErrorGlb;
}

int ConsumeError() {
  const int code = zonErrorGlb;
  zonErrorGlb = kErrNone;
  return code;
}

}  // namespace zon
