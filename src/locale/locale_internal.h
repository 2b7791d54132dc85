#ifndef ZU_SRC_LOCALE_LOCALE_INTERNAL_H
#define ZU_SRC_LOCALE_LOCALE_INTERNAL_H

// Shared by the locale sources only; nothing here is exported.

#include <zu/locale.h>

#include <cstdint>

namespace zu_locale {

// One row of the encoding table. A compatibility list ends at its first -1 or after
// three entries.
struct EncodingRow {
    int32_t value;
    const char* name;
    int32_t full[3];
    int32_t partial[3];
};

const int kEncodingCount = 42;
extern const EncodingRow encodings[kEncodingCount];

// Alias name / standard pair, ended by a pair of nulls.
const int kUnixLocaleCount = 82;
extern const char* const unixLocales[kUnixLocaleCount + 1][2];

// A new[] copy of text, or null for null.
char* copyText(const char* text);
// A new[] copy of the first length bytes of text, terminated.
char* copyText(const char* text, size_t length);

// pair + "." + the canonical name of e ("" when e is unknown or outside the table).
char* joinStdName(const char* pair, ZuEncoding e);

// The rules of ToStdEncodingValue on plain text (null counts as "").
ZuEncoding encodingValue(const char* codeset, const char* langTerr);

// A locale name split at its last ".": langTerr is a new[] copy of the part before it
// (the whole name without one); codeset points into name after the dot, or is null.
struct SplitName {
    char* langTerr;
    const char* codeset;
};
SplitName splitName(const char* name);

} // namespace zu_locale

#endif
