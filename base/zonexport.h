// Marks what the shared library exports; all else is hidden, so that no name of the library
// collides with one of the host. The same macro is in api/zon.h, which includes no other header.
#ifndef ZON_BASE_ZONEXPORT_H
#define ZON_BASE_ZONEXPORT_H

#ifndef ZON_API
#if defined(ZON_STATIC)
#define ZON_API
#else
#define ZON_API __attribute__((visibility("default")))
#endif
#endif

#endif
