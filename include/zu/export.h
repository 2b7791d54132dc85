#ifndef ZU_EXPORT_H
#define ZU_EXPORT_H

// Symbols of libzu are hidden by default; ZU_API marks the public classes and functions.
#if defined(__GNUC__)
#define ZU_API __attribute__((visibility("default")))
#else
#define ZU_API
#endif

#endif
