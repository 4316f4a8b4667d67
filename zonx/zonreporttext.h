// A report as text.
#ifndef ZON_ZONX_ZONREPORTTEXT_H
#define ZON_ZONX_ZONREPORTTEXT_H

#include <string>

#include "api/zonx.h"

namespace zon {

std::string FormatReport(const zonxReport& report);

}  // namespace zon

#endif
