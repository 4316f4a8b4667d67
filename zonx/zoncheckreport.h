// The reports of a check.
#ifndef ZON_ZONX_ZONCHECKREPORT_H
#define ZON_ZONX_ZONCHECKREPORT_H

#include <memory>

#include "base/zonfiletext.h"
#include "zonx/zonreporter.h"

namespace zon {

// Checks a text and reports what is found. Returns ZONX_OK, ZONX_FAULTY or ZONX_CANNOT_READ.
int CheckAndReport(const std::shared_ptr<FileText>& text, Reporter& reporter);

}  // namespace zon

#endif
