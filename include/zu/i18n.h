#ifndef ZU_I18N_H
#define ZU_I18N_H

// ZuI18n: conversions between UTF-16 code units and UTF-8 bytes. UTF-8 input is not
// validated, and code points beyond the Basic Multilingual Plane become U+FFFD on the
// way to UTF-16. Results live in a block of ZuCharPool::_Pool that is unlocked again
// before returning: copy them before the next use of that pool. An earlier result may
// be passed straight back in: its block is held (locked) for the duration of the call.

#include <zu/export.h>

class ZU_API ZuI18n {
public:
    // Converts count UTF-16 units; returns the UTF-8 bytes (not NUL-terminated) and
    // sets length to their number. A surrogate pair that ends the input exactly is not
    // combined: each half is encoded on its own, deliberately. Null and length 0 for
    // null text or count 0.
    static unsigned char* Utf16ToUtf8(unsigned& length, unsigned count,
                                      const unsigned short* text);

    // Converts count UTF-8 bytes; returns the UTF-16 units (not terminated) and sets
    // length to their size in bytes (2 per unit). Code points above U+FFFF give U+FFFD.
    // A sequence cut short by count takes 0 for its missing bytes. Null and length 0
    // for null text or count 0.
    static unsigned short* Utf8ToUtf16(unsigned& length, unsigned count,
                                       const unsigned char* text);
};

#endif
