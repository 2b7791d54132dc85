#ifndef ZU_ZU_H
#define ZU_ZU_H

// Everything Zu declares.
#include <zu/export.h>
#include <zu/string.h>
#include <zu/locale.h>
#include <zu/timezone.h>
#include <zu/calendar.h>
#include <zu/timeunit.h>

#endif
