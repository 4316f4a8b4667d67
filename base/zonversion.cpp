#include "base/zonversion.h"

namespace zon {

const char zonCompDate[] = __DATE__ " " __TIME__;

}  // namespace zon
