#ifndef ZU_ZU_H
#define ZU_ZU_H

// Everything Zu declares.
#include <zu/export.h>
#include <zu/alloc.h>
#include <zu/pool.h>
#include <zu/string.h>
#include <zu/i18n.h>
#include <zu/url.h>

#endif
