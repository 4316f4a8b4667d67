#include "tree/zondeferredvalues.h"

#include <new>

namespace zon {

void ValueDeferral::MakeSource(const char* base) {
  source_ = new (arena_.Allocate(sizeof(DeferralSource))) DeferralSource{make_, base};
}

}  // namespace zon
