#ifndef ZU_ZU_H
#define ZU_ZU_H

// Everything Zu declares.
#include <zu/export.h>
#include <zu/alloc.h>
#include <zu/pool.h>
#include <zu/array.h>
#include <zu/list.h>
#include <zu/hash.h>
#include <zu/string.h>
#include <zu/i18n.h>
#include <zu/locale.h>
#include <zu/pathname.h>
#include <zu/pathlist.h>
#include <zu/numeric.h>
#include <zu/xml.h>
#include <zu/context.h>
#include <zu/module.h>
#include <zu/timezone.h>
#include <zu/calendar.h>
#include <zu/timeunit.h>
#include <zu/url.h>

#endif
