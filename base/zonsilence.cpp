#include "base/zonsilence.h"

namespace zon {
namespace {

thread_local bool isSilent = false;

}  // namespace

bool IsSilent() {
  return isSilent;
}

Silence::Silence(bool on) : state_(isSilent), before_(state_) {
  state_ = on;
}

}  // namespace zon
