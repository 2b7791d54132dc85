// ZuString searches and substrings.
#include <zu/string.h>

#include "operand.h"

int ZuString::getIndexOf(const ZuString& sub, int start, int subStart, int subEnd) const {
    Operand op(*this, sub);
    if (!op.ok()) return -1;
    // Across representations the caller's ranges are not used: whole text, from 0.
    if (op.converted()) return _rep->getIndexOf(op.rep(), 0, 0, -1);
    return _rep->getIndexOf(op.rep(), start, subStart, subEnd);
}

int ZuString::getLastIndexOf(const ZuString& sub, int start, int subStart, int subEnd) const {
    Operand op(*this, sub);
    if (!op.ok()) return -1;
    if (op.converted()) {
        // Across representations the caller's ranges are not used: whole text, from the end.
        start = -1;
        subStart = 0;
        subEnd = -1;
    }
    const int length = getLength();
    subEnd = clampStringEnd(subEnd, op.length());
    if (subStart < 0) subStart = 0;
    if (subEnd <= subStart && (start == -1 || start >= length)) return length;
    return _rep->getLastIndexOf(op.rep(), start, subStart, subEnd);
}

bool ZuString::startsWith(const ZuString& sub, int subStart, int subEnd) const {
    return getIndexOf(sub, 0, subStart, subEnd) == 0;
}

bool ZuString::endsWith(const ZuString& sub, int subStart, int subEnd) const {
    subEnd = clampStringEnd(subEnd, sub.getLength());
    // A reversed sub range counts as an empty one.
    if (subEnd < 0) subEnd = 0;
    if (subStart < 0) subStart = 0;
    if (subStart > subEnd) subStart = subEnd;
    const int p = getLastIndexOf(sub, -1, subStart, subEnd);
    if (p == -1) return false;
    return p == getLength() - (subEnd - subStart);
}

ZuString ZuString::getSubString(int start, int end) const {
    const int length = getLength();
    if (start < 0) start = 0;
    if (start >= length) return *ZuEmptyInitialization::GetEmpty();
    if (start == 0 && (end == -1 || end == length)) return *this;
    return ZuString(_rep->getSubString(start, end));
}
