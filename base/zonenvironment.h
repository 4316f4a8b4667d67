// The facts of the outside world that the library asks for.
#ifndef ZON_BASE_ZONENVIRONMENT_H
#define ZON_BASE_ZONENVIRONMENT_H

#include <ctime>
#include <string>

namespace zon {

// The process's working directory, however long; empty when it cannot be read.
std::string CurrentDirectory();

// The local time of now; all fields 0 when the clock cannot be put into a calendar.
std::tm LocalTime();

}  // namespace zon

#endif
