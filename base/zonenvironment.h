// What the library queries from the process and the system.
#ifndef ZON_BASE_ZONENVIRONMENT_H
#define ZON_BASE_ZONENVIRONMENT_H

#include <ctime>
#include <string>

namespace zon {

// The working directory of the process, of any length; empty if it cannot be read.
std::string CurrentDirectory();

// The current local time; all fields are 0 if the clock is out of the range of a calendar.
std::tm LocalTime();

}  // namespace zon

#endif
