// ZuString mutators: each makes the representation private (copy on write) first.
#include <zu/string.h>

#include "operand.h"

ZuString& ZuString::replace(const ZuString& with, int start, int end, int withStart,
                            int withEnd) {
    Operand op(*this, with);
    if (!op.ok()) return *this;
    detach();
    // When with is this string, op still holds the representation it shared before the
    // detach, which carries the same text.
    _rep->replace(op.rep(), start, end, withStart, withEnd);
    return *this;
}

ZuString& ZuString::substitute(const ZuString& from, const ZuString& to, int start, int end,
                               int fromStart, int fromEnd, int toStart, int toEnd) {
    const int first = getIndexOf(from, start, fromStart, fromEnd);
    if (first == -1 || (end != -1 && first >= end)) return *this;
    Operand pattern(*this, from);
    Operand replacement(*this, to);
    if (!pattern.ok() || !replacement.ok()) return *this;
    detach();
    _rep->substitute(pattern.rep(), replacement.rep(), start, end, fromStart, fromEnd, toStart,
                     toEnd);
    return *this;
}

ZuString& ZuString::remove(int start, int end) { return replace(*this, start, end, 0, 0); }

ZuString& ZuString::remove(const ZuString& sub, int subStart, int subEnd) {
    return substitute(sub, *this, 0, -1, subStart, subEnd, 0, 0);
}

ZuString& ZuString::insert(const ZuString& s, int position, int sStart, int sEnd) {
    return replace(s, position, position, sStart, sEnd);
}

ZuString& ZuString::prepend(const ZuString& s, int sStart, int sEnd) {
    return replace(s, 0, 0, sStart, sEnd);
}

ZuString& ZuString::catenate(const ZuString& s, int sStart, int sEnd) {
    const int length = getLength();
    return replace(s, length, length, sStart, sEnd);
}

void ZuString::reserve(int size) {
    detach();
    _rep->reserve(size);
}

ZuString& ZuString::toUpper() {
    detach();
    _rep->toUpper();
    return *this;
}

ZuString& ZuString::toLower() {
    detach();
    _rep->toLower();
    return *this;
}
