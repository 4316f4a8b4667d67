// The texts of the error codes.
#ifndef ZON_API_ZONERRORTEXT_H
#define ZON_API_ZONERRORTEXT_H

namespace zon {

// Returns the text of a code; "unknown error code" if there is none. At most 63 characters.
const char* TextOfCode(int code);

}  // namespace zon

#endif
