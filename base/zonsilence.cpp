#include "base/zonsilence.h"

namespace zon {
namespace {

thread_local bool isSilent = false;

}  // namespace

bool IsSilent() {
  return isSilent;
}

Silence::Silence(bool on) : before_(isSilent) {
  isSilent = on;
}

Silence::~Silence() {
  isSilent = before_;
}

}  // namespace zon
