// All classes that handles refer to, for hosts in C++ that use the tree itself.
#ifndef ZON_API_ZONCLASSES_H
#define ZON_API_ZONCLASSES_H

#include "api/zonfilehandle.h"
#include "paths/zonfilename.h"
#include "paths/zonpath.h"
#include "reader/zonparser.h"
#include "text/cstring.h"
#include "tokens/zontoken.h"
#include "tree/zonbool.h"
#include "tree/zonclob.h"
#include "tree/zonint.h"
#include "tree/zonkeyword.h"
#include "tree/zonnamelist.h"
#include "tree/zonparam.h"
#include "tree/zonreal.h"
#include "tree/zonreference.h"
#include "tree/zonsection.h"
#include "tree/zonstring.h"

#endif
