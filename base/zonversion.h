// The identification of the library.
#ifndef ZON_BASE_ZONVERSION_H
#define ZON_BASE_ZONVERSION_H

namespace zon {

inline constexpr char kDllId[] = "zon2004";
inline constexpr char kBuildVersion[] = "20.0.0.15342";

extern const char zonCompDate[];  // date and time of this build: "Dec  8 2021 06:06:36"

}  // namespace zon

#endif
