#ifndef ZU_ZU_H
#define ZU_ZU_H

// Everything Zu declares.
#include <zu/export.h>
#include <zu/numeric.h>
#include <zu/string.h>

#endif
