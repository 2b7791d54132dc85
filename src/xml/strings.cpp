// String duplication for node setters: an empty string is stored as null.
#include "xml/strings.h"

#include <cstring>
#include <new>

namespace zu_xml {

char* duplicate(const char* s) {
    if (!s || !*s)
        return nullptr;
    return duplicate(s, std::strlen(s));
}

char* duplicate(const char* s, size_t n) {
    char* copy = new (std::nothrow) char[n + 1];
    if (!copy)
        return nullptr;
    std::memcpy(copy, s, n);
    copy[n] = '\0';
    return copy;
}

} // namespace zu_xml
