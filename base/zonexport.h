/* What the shared library shows to hosts. Everything else is hidden, so that nothing of the library
 * can collide with a name of the host. C and C++. */
#ifndef ZON_BASE_ZONEXPORT_H
#define ZON_BASE_ZONEXPORT_H

#if defined(ZON_STATIC)
#define ZON_API
#else
#define ZON_API __attribute__((visibility("default")))
#endif

#endif
