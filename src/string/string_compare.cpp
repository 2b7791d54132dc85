// ZuString comparisons: compare, caseCompare, equals.
#include <zu/string.h>

#include "operand.h"

#include <iostream>

namespace {

// Messages for a reversed range, by operation then by which range.
const char* const kReversedRange[2][2] = {
    {"ZuString::compare: second parameter is greater than third one.",
     "ZuString::compare: fourth parameter is greater than fifth one."},
    {"ZuString::caseCompare: second parameter is greater than third one.",
     "ZuString::caseCompare: fourth parameter is greater than fifth one."},
};

int compareStrings(const ZuString& self, const ZuString& other, int start, int end,
                   int otherStart, int otherEnd, bool ignoreCase) {
    const ZuInternalString* mine = self.getInternal();
    if (!*mine->getValue() && !*other.getInternal()->getValue()) return 0; // both empty
    Operand op(self, other);
    if (!op.ok()) return -1;
    // A negative start is taken as 0; a negative end other than -1 is reversed.
    if (start < 0) start = 0;
    if (otherStart < 0) otherStart = 0;
    end = clampStringEnd(end, static_cast<int>(mine->getLength()));
    otherEnd = clampStringEnd(otherEnd, op.length());
    if (end < start) {
        std::cerr << kReversedRange[ignoreCase][0] << std::endl;
        return -1;
    }
    if (otherEnd < otherStart) {
        std::cerr << kReversedRange[ignoreCase][1] << std::endl;
        return -1;
    }
    if (mine == &op.rep() && start == otherStart && end == otherEnd) return 0;
    return ignoreCase ? mine->caseCompare(op.rep(), start, end, otherStart, otherEnd)
                      : mine->compare(op.rep(), start, end, otherStart, otherEnd);
}

} // namespace

int ZuString::compare(const ZuString& other, int start, int end, int otherStart,
                      int otherEnd) const {
    return compareStrings(*this, other, start, end, otherStart, otherEnd, false);
}

int ZuString::caseCompare(const ZuString& other, int start, int end, int otherStart,
                          int otherEnd) const {
    return compareStrings(*this, other, start, end, otherStart, otherEnd, true);
}

bool ZuString::equals(const ZuString& other, int start, int end, int otherStart,
                      int otherEnd) const {
    Operand op(*this, other);
    if (!op.ok()) return false;
    if (start < 0) start = 0;
    if (otherStart < 0) otherStart = 0;
    end = clampStringEnd(end, getLength());
    otherEnd = clampStringEnd(otherEnd, op.length());
    if (_rep == &op.rep() && start == otherStart && end == otherEnd) return true;
    const bool none = end <= start, otherNone = otherEnd <= otherStart;
    if (none || otherNone) return none && otherNone;
    return _rep->compare(op.rep(), start, end, otherStart, otherEnd) == 0;
}
