// Word-at-a-time helpers for ZuNumeric arithmetic (internal).
//
// The digit strings are worked on eight characters per 64-bit word (a value's array holds
// NULs after its digits, which read as zero digits). Two orientations are used:
// "character words" hold eight characters in memory order (the first in the low byte);
// "value words" hold eight digit values with the least significant (rightmost) digit in
// the low byte, so that carries and borrows run from byte to byte like those of the
// 64-bit add itself.
#ifndef ZU_SRC_NUMERIC_WORDS_H
#define ZU_SRC_NUMERIC_WORDS_H

#include <zu/numeric.h>

#include <cstdint>
#include <cstring>

#include <emmintrin.h>

namespace {

constexpr std::uint64_t kZeros = 0x3030303030303030u; // "00000000"
constexpr std::uint64_t kLow = 0x0101010101010101u;
constexpr std::uint64_t kNibbles = 0x0F0F0F0F0F0F0F0Fu;
constexpr int kArray = ZuNumeric::MaxTextDigits; // digit characters an array can hold

// Length of a value's digit string: the first NUL among the array's 48 characters.
inline int digitCount(const char* digits) {
    const __m128i zero = _mm_setzero_si128();
    std::uint64_t mask = std::uint64_t{1} << kArray;
    for (int i = 0; i < kArray; i += 16) {
        const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(digits + i));
        mask |= static_cast<std::uint64_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(chunk, zero))) << i;
    }
    return __builtin_ctzll(mask);
}

inline std::uint64_t load8(const char* p) {
    std::uint64_t v;
    std::memcpy(&v, p, 8);
    return v;
}

// Sets a value's digit array to the count characters at source (which has 48 readable
// characters) and NULs after them.
inline void storeDigits(char* digits, const char* source, int count) {
    const __m128i index = _mm_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
    for (int i = 0; i < kArray; i += 16) {
        const __m128i inside = _mm_cmplt_epi8(index, _mm_set1_epi8(static_cast<char>(count - i)));
        const __m128i chunk = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source + i));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(digits + i), _mm_and_si128(chunk, inside));
    }
    digits[kArray] = '\0';
}

// Character word of a value word.
inline std::uint64_t characters(std::uint64_t value) { return __builtin_bswap64(value) + kZeros; }

// "0" characters at the end of a field of `words` character words.
inline int trailingZeroCharacters(const std::uint64_t* field, int words) {
    int n = 0;
    for (int k = words - 1; k >= 0; --k, n += 8) {
        const std::uint64_t x = field[k] ^ kZeros;
        if (x) return n + __builtin_clzll(x) / 8;
    }
    return n;
}

} // namespace

#endif
