#ifndef ZU_SRC_STRING_TEXT_OPS_H
#define ZU_SRC_STRING_TEXT_OPS_H

// Range resolution and the search, comparison and splicing loops shared by the
// single-byte (char) and multibyte (wchar_t) representations. Every function here
// keeps its reads inside [0, length] of the texts it is given, whatever the ranges.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <vector>
#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
#endif

namespace {

// End of a range: -1, or anything past the text, means the end of the text.
inline int64_t clampEnd(int64_t end, int64_t length) {
    return end == -1 || end > length ? length : end;
}

// Brings a range inside [0, length] with start <= end. A negative start is taken as 0
// and a negative end other than -1 as 0, so a reversed range becomes an empty one.
inline void normaliseRange(int64_t& start, int64_t& end, int64_t length) {
    end = clampEnd(end, length);
    if (end < 0) end = 0;
    if (start < 0) start = 0;
    if (start > end) start = end;
}

template <class C> struct Chars;

template <> struct Chars<char> {
    static int compare(const char* a, const char* b) { return std::strcmp(a, b); }
    static int compareN(const char* a, const char* b, size_t n) { return std::strncmp(a, b, n); }
    static bool hasNul(const char* s, size_t n) { return std::memchr(s, 0, n) != nullptr; }
    static bool same(const char* a, const char* b, size_t n) { return std::memcmp(a, b, n) == 0; }
    static void move(char* d, const char* s, size_t n) { std::memmove(d, s, n); }
    static void copy(char* d, const char* s, size_t n) { std::memcpy(d, s, n); }
    // First occurrence of pat (n >= 1) in hay[0, hayLen), or null.
    static const char* search(const char* hay, size_t hayLen, const char* pat, size_t n) {
        if (n == 1) return static_cast<const char*>(std::memchr(hay, pat[0], hayLen));
        if (hayLen < n) return nullptr;
        const size_t candidates = hayLen - n + 1; // positions [0, candidates)
        size_t i = 0;
#if defined(__x86_64__) && defined(__GNUC__)
        static const bool wide = __builtin_cpu_supports("avx2");
        if (const char* found = wide ? filterAvx2(hay, candidates, pat, n, i)
                                     : filterSse2(hay, candidates, pat, n, i))
            return found;
#endif
        for (; i < candidates; ++i) { // the positions left over by the filter
            const void* p = std::memchr(hay + i, pat[0], candidates - i);
            if (!p) return nullptr;
            i = static_cast<size_t>(static_cast<const char*>(p) - hay);
            if (std::memcmp(hay + i + 1, pat + 1, n - 1) == 0) return hay + i;
        }
        return nullptr;
    }

#if defined(__x86_64__) && defined(__GNUC__)
    // Filters blocks of positions: a position is a candidate when both the first and the
    // last byte of pat (n >= 2) are in place; only candidates are compared in full. The
    // loads stay inside hay: a block of B positions from i reads up to
    // hay[i + B - 1 + n - 1], and i + B <= candidates = hayLen - n + 1. Returns the first
    // match, or null with i at the first position not yet looked at.
    static const char* checkMask(const char* hay, size_t i, unsigned mask, const char* pat,
                                 size_t n) {
        for (; mask; mask &= mask - 1) {
            const size_t at = i + static_cast<size_t>(__builtin_ctz(mask));
            if (std::memcmp(hay + at + 1, pat + 1, n - 2) == 0) return hay + at;
        }
        return nullptr;
    }

    static const char* filterSse2(const char* hay, size_t candidates, const char* pat, size_t n,
                                  size_t& i) {
        const __m128i first = _mm_set1_epi8(pat[0]), last = _mm_set1_epi8(pat[n - 1]);
        for (; i + 16 <= candidates; i += 16) {
            const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(hay + i));
            const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(hay + i + n - 1));
            const __m128i both = _mm_and_si128(_mm_cmpeq_epi8(a, first), _mm_cmpeq_epi8(b, last));
            const unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(both));
            if (mask)
                if (const char* found = checkMask(hay, i, mask, pat, n)) return found;
        }
        return nullptr;
    }

    __attribute__((target("avx2"))) static const char* filterAvx2(const char* hay,
                                                                  size_t candidates,
                                                                  const char* pat, size_t n,
                                                                  size_t& i) {
        const __m256i first = _mm256_set1_epi8(pat[0]), last = _mm256_set1_epi8(pat[n - 1]);
        for (; i + 32 <= candidates; i += 32) {
            const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(hay + i));
            const __m256i b =
                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(hay + i + n - 1));
            const __m256i both =
                _mm256_and_si256(_mm256_cmpeq_epi8(a, first), _mm256_cmpeq_epi8(b, last));
            const unsigned mask = static_cast<unsigned>(_mm256_movemask_epi8(both));
            if (mask)
                if (const char* found = checkMask(hay, i, mask, pat, n)) return found;
        }
        return filterSse2(hay, candidates, pat, n, i);
    }
#endif

    // Last position <= from holding c, or -1.
    static int64_t lastOf(const char* s, char c, int64_t from) {
        const void* p = memrchr(s, c, static_cast<size_t>(from + 1));
        return p ? static_cast<const char*>(p) - s : -1;
    }
};

template <> struct Chars<wchar_t> {
    static int compare(const wchar_t* a, const wchar_t* b) { return std::wcscmp(a, b); }
    static int compareN(const wchar_t* a, const wchar_t* b, size_t n) {
        return std::wcsncmp(a, b, n);
    }
    static bool hasNul(const wchar_t* s, size_t n) { return std::wmemchr(s, 0, n) != nullptr; }
    // Equality only, so bytes will do (memcmp is also the better-optimised routine).
    static bool same(const wchar_t* a, const wchar_t* b, size_t n) {
        return std::memcmp(a, b, n * sizeof(wchar_t)) == 0;
    }
    static void move(wchar_t* d, const wchar_t* s, size_t n) { std::wmemmove(d, s, n); }
    static void copy(wchar_t* d, const wchar_t* s, size_t n) { std::wmemcpy(d, s, n); }
    static const wchar_t* search(const wchar_t* hay, size_t hayLen, const wchar_t* pat,
                                 size_t n) {
        const wchar_t* end = hay + hayLen - n + 1; // candidates are [hay, end)
        for (const wchar_t* p = hay; p < end; ++p) {
            p = std::wmemchr(p, pat[0], static_cast<size_t>(end - p));
            if (!p) return nullptr;
            if (same(p + 1, pat + 1, n - 1)) return p;
        }
        return nullptr;
    }
    static int64_t lastOf(const wchar_t* s, wchar_t c, int64_t from) {
        for (int64_t i = from; i >= 0; --i)
            if (s[i] == c) return i;
        return -1;
    }
};

// First i in [start, length - n] where the n characters of pat occur, or -1 (n >= 1).
// The result is that of comparing with strncmp/wcsncmp at each position in turn. A
// pattern without NUL can only match characters equal to its own, so a direct search
// gives the same first position; a pattern holding a NUL takes the position-by-position
// loop, where the comparison may stop at the terminator.
// patHasNul: whether pat holds a NUL, when the caller already knows (-1: not known).
template <class C>
int64_t findFirst(const C* text, int64_t length, const C* pat, int64_t n, int64_t start,
                  int patHasNul = -1) {
    if (start < 0) start = 0;
    const int64_t last = length - n;
    if (last + 1 <= start) return -1;
    if (patHasNul < 0) patHasNul = Chars<C>::hasNul(pat, static_cast<size_t>(n));
    if (patHasNul) {
        for (int64_t i = start; i <= last; ++i)
            if (Chars<C>::compareN(text + i, pat, static_cast<size_t>(n)) == 0) return i;
        return -1;
    }
    const C* p = Chars<C>::search(text + start, static_cast<size_t>(last + n - start), pat,
                                  static_cast<size_t>(n));
    return p ? p - text : -1;
}

// Last i in [0, from] where pat occurs, or -1 (n >= 1, from <= length). Positions past
// length - n can only match a pattern holding a NUL (against the terminator).
template <class C>
int64_t findLast(const C* text, int64_t length, const C* pat, int64_t n, int64_t from) {
    if (Chars<C>::hasNul(pat, static_cast<size_t>(n))) {
        for (int64_t i = from; i >= 0; --i)
            if (Chars<C>::compareN(text + i, pat, static_cast<size_t>(n)) == 0) return i;
        return -1;
    }
    for (int64_t i = std::min(from, length - n); i >= 0; --i) {
        i = Chars<C>::lastOf(text, pat[0], i);
        if (i < 0) return -1;
        if (Chars<C>::same(text + i + 1, pat + 1, static_cast<size_t>(n - 1))) return i;
    }
    return -1;
}

// Compares two ranges. When both reach the ends of their texts this is the full
// comparison from the starts; otherwise the common part is compared and, when it is
// equal, the shorter range compares greater (kept on purpose: callers rely on it).
template <class C, class Full, class Part>
int compareRanges(const C* a, int64_t aLength, int64_t start, int64_t end, const C* b,
                  int64_t bLength, int64_t bStart, int64_t bEnd, Full full, Part part) {
    normaliseRange(start, end, aLength);
    normaliseRange(bStart, bEnd, bLength);
    if (end == aLength && bEnd == bLength) return full(a + start, b + bStart);
    const int64_t l1 = end - start, l2 = bEnd - bStart;
    const int r = part(a + start, b + bStart, static_cast<size_t>(std::min(l1, l2)));
    if (r != 0 || l1 == l2) return r;
    return l1 < l2 ? 1 : -1;
}

// A new NUL-terminated array: text[0, start), then with[0, withLength), then
// text[end, length). Requires 0 <= start <= end <= length.
template <class C>
C* spliced(const C* text, int64_t length, int64_t start, int64_t end, const C* with,
           int64_t withLength) {
    const int64_t total = length - (end - start) + withLength;
    C* out = new C[static_cast<size_t>(total + 1)];
    Chars<C>::copy(out, text, static_cast<size_t>(start));
    Chars<C>::copy(out + start, with, static_cast<size_t>(withLength));
    Chars<C>::copy(out + start + withLength, text + end, static_cast<size_t>(length - end));
    out[total] = 0;
    return out;
}

// First occurrence at or after start of pattern[subStart, subEnd), as getIndexOf gives
// it: an empty pattern range finds the text's length.
template <class C>
int indexOfRange(const C* text, int64_t length, const C* pat, int64_t patLength, int start,
                 int subStart, int subEnd) {
    int64_t from = subStart, to = subEnd;
    normaliseRange(from, to, patLength);
    if (to <= from) return static_cast<int>(length);
    return static_cast<int>(findFirst(text, length, pat + from, to - from, start));
}

// Last occurrence starting at or before start (-1: the end) of pattern[subStart, subEnd).
template <class C>
int lastIndexOfRange(const C* text, int64_t length, const C* pat, int64_t patLength,
                     int start, int subStart, int subEnd) {
    int64_t from = subStart, to = subEnd;
    normaliseRange(from, to, patLength);
    const int64_t n = to - from;
    if (n > length) return -1;
    int64_t at = start;
    if (at == -1 || at > length) at = length;
    if (at > length - n) at = at - n + 1;
    if (at < 0) return -1;
    if (n == 0) return static_cast<int>(at);
    return static_cast<int>(findLast(text, length, pat + from, n, at));
}

// Resolves getSubString's range: from the clamped start, count characters (-1: to the
// end). False when the range is empty and the shared empty string is the answer.
inline bool subStringRange(int start, int end, int64_t length, int64_t& from, int& count) {
    from = std::min<int64_t>(std::max(start, 0), length);
    count = -1;
    if (end != -1 && end <= length) {
        if (end <= from) return false;
        count = static_cast<int>(end - from);
    }
    return true;
}

// replace on a text of `length` characters: [start, end) becomes with[withStart, withEnd).
// A reversed range of either side changes nothing. A replacement of the same length is
// moved in place (`edited`; with may be this very text), otherwise a new array is returned.
template <class C>
C* replaceRange(C* text, int64_t length, int start, int end, const C* with,
                int64_t withLength, int withStart, int withEnd, bool& edited) {
    edited = false;
    const int64_t from = std::max(start, 0), to = clampEnd(end, length);
    if (to < from) return nullptr;
    const int64_t wFrom = std::max(withStart, 0), wTo = clampEnd(withEnd, withLength);
    if (wTo < wFrom) return nullptr;
    const int64_t newLength = wTo - wFrom;
    if (newLength != to - from) return spliced(text, length, from, to, with + wFrom, newLength);
    Chars<C>::move(text + from, with + wFrom, static_cast<size_t>(newLength));
    edited = true;
    return nullptr;
}

// A new NUL-terminated array: text with the patLength characters at each position of
// `at` (increasing, non-overlapping) replaced by rep[0, repLength).
template <class C>
C* substituted(const C* text, int64_t length, const std::vector<int64_t>& at,
               int64_t patLength, const C* rep, int64_t repLength) {
    const int64_t count = static_cast<int64_t>(at.size());
    const int64_t total = length + (repLength - patLength) * count;
    C* out = new C[static_cast<size_t>(total + 1)];
    C* o = out;
    int64_t from = 0;
    for (int64_t p : at) {
        Chars<C>::copy(o, text + from, static_cast<size_t>(p - from));
        o += p - from;
        Chars<C>::copy(o, rep, static_cast<size_t>(repLength));
        o += repLength;
        from = p + patLength;
    }
    Chars<C>::copy(o, text + from, static_cast<size_t>(length - from));
    out[total] = 0;
    return out;
}

// The substitution shared by both classes, on a text of `length` characters:
// occurrences of pat in [start, end) become rep. A replacement of the same length is
// written in place, each next search starting one character after the previous
// occurrence; otherwise occurrences are taken without overlap and a new array is
// returned. Returns null when the text was left as it is or was edited in place
// (`edited` tells which). Ranges must already be resolved and non-empty.
template <class C>
C* substituteAll(C* text, int64_t length, int64_t start, int64_t end, const C* pat,
              int64_t patLength, const C* rep, int64_t repLength, bool& edited) {
    edited = false;
    const int64_t limit = end - patLength;
    int64_t p = findFirst(text, length, pat, patLength, start);
    if (p == -1 || p > limit) return nullptr;
    if (patLength == repLength) {
        // pat and rep may lie inside text itself: each search sees the edits made so far.
        do {
            Chars<C>::move(text + p, rep, static_cast<size_t>(repLength));
            p = findFirst(text, length, pat, patLength, p + 1);
        } while (p != -1 && p <= limit);
        edited = true;
        return nullptr;
    }
    std::vector<int64_t> at;
    const int patHasNul = Chars<C>::hasNul(pat, static_cast<size_t>(patLength));
    do {
        at.push_back(p);
        p = findFirst(text, length, pat, patLength, p + patLength, patHasNul);
    } while (p != -1 && p <= limit);
    return substituted(text, length, at, patLength, rep, repLength);
}

// substitute with unresolved ranges: an empty or reversed text or pattern range, or a
// reversed replacement range, leaves the text as it is.
template <class C>
C* substituteRanges(C* text, int64_t length, int start, int end, const C* pat,
                    int64_t patLength, int patStart, int patEnd, const C* rep,
                    int64_t repLength, int repStart, int repEnd, bool& edited) {
    edited = false;
    const int64_t s = std::max(start, 0), e = clampEnd(end, length);
    if (e <= s) return nullptr;
    const int64_t ps = std::max(patStart, 0), pe = clampEnd(patEnd, patLength);
    if (pe <= ps) return nullptr;
    const int64_t rs = std::max(repStart, 0), re = clampEnd(repEnd, repLength);
    if (re < rs) return nullptr;
    return substituteAll(text, length, s, e, pat + ps, pe - ps, rep + rs, re - rs, edited);
}

} // namespace

#endif
