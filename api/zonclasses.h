// The classes behind the handles, all of them: for hosts in C++ that work with the tree itself.
#ifndef ZON_API_ZONCLASSES_H
#define ZON_API_ZONCLASSES_H

#include "api/zonhandl.h"
#include "paths/zonfilen.h"
#include "paths/zonpath.h"
#include "reader/zonparser.h"
#include "text/cstring.h"
#include "tokens/zontoken.h"
#include "tree/zonbool.h"
#include "tree/zonclob.h"
#include "tree/zonint.h"
#include "tree/zonkeyw.h"
#include "tree/zonnamli.h"
#include "tree/zonparam.h"
#include "tree/zonreal.h"
#include "tree/zonrefs.h"
#include "tree/zonstri.h"
#include "tree/zontarli.h"

#endif
