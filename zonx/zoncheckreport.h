// The reports of a check, and of a handle whose load failed.
#ifndef ZON_ZONX_ZONCHECKREPORT_H
#define ZON_ZONX_ZONCHECKREPORT_H

#include <memory>

#include "base/zonfiletext.h"
#include "zonx/zonreporter.h"

class CzonData;

namespace zon {

// Checks a text and reports what is found. Returns ZONX_OK, ZONX_FAULTY or ZONX_CANNOT_READ.
int CheckAndReport(const std::shared_ptr<FileText>& text, Reporter& reporter);

// Whether the handle has a tree, and its load has met no error. Reports it otherwise.
bool RequireSound(const CzonData& data, Reporter& reporter);

}  // namespace zon

#endif
