// Work that is done to its end even if the host is killed in the middle of it.
#ifndef ZON_BASE_ZONAPART_H
#define ZON_BASE_ZONAPART_H

namespace zon {

// Does the work in a process of its own, which shares the memory of this one, and waits for it. Where
// the system grants no process the work is done here. False if the work gives false or is stopped
// itself.
//
// The work may call the system and nothing else: a lock that another thread of the host holds at the
// moment of the kill, that of malloc for example, is never given back.
bool DoApart(bool (*work)(void*), void* argument);

}  // namespace zon

#endif
