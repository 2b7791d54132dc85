// String helpers shared by the XML sources: node strings are new[] arrays.
#ifndef ZU_SRC_XML_STRINGS_H
#define ZU_SRC_XML_STRINGS_H

#include <cstddef>

namespace zu_xml {

// A new[] copy of s, or null for a null or empty s (and when memory runs out).
char* duplicate(const char* s);
// A new[] NUL-terminated copy of n bytes, or null when memory runs out.
char* duplicate(const char* s, size_t n);
// Frees a string held by a node.
inline void dispose(char* s) { delete[] s; }
// Replaces the string held in slot by s (taken over), freeing the old one.
inline void replace(char*& slot, char* s) {
    if (slot != s)
        delete[] slot;
    slot = s;
}

} // namespace zu_xml

#endif
