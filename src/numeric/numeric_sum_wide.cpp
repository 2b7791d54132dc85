// The wide digit kernels of ZuNumeric's sums (AVX-512 BW + VBMI), compiled for those
// instructions function by function and only called when the processor has them.
//
// The 64 columns of the field sit in one register in reverse, byte j holding column
// 63 - j, so that a carry or borrow moves from a bit of a column mask to the next higher
// bit and the whole ripple is one 64-bit addition: with g the columns that make a carry
// and p those that pass one on, the columns receiving one are ((g << 1) + p) ^ p.
// The operands are placed with byte permutes whose indices depend on the alignment, so
// nothing branches or goes through memory on it.
#include "numeric_kernels.h"

#include <zu/numeric.h>

#include <cstdint>

#include <immintrin.h>

namespace {

using zu_numeric::Alignment;
using zu_numeric::SumOutcome;

constexpr int kArray = ZuNumeric::MaxTextDigits; // digit characters a value's array holds
constexpr std::uint64_t kArrayMask = (std::uint64_t{1} << kArray) - 1;

// The low n bits (n from 0 to 64).
ZU_WIDE std::uint64_t lowBits(int n) {
    return _bzhi_u64(~std::uint64_t{0}, static_cast<unsigned>(n));
}

// A value's 48 characters (bytes 48 to 63 zero); the masked load reads nothing past them.
ZU_WIDE __m512i loadDigits(const char* digits) { return _mm512_maskz_loadu_epi8(kArrayMask, digits); }

ZU_WIDE int countOf(__m512i raw) {
    return static_cast<int>(_tzcnt_u64(_mm512_cmpeq_epi8_mask(raw, _mm512_setzero_si512())));
}

// Byte j of the result is byte (first - j) of v, or zero where that index is negative.
ZU_WIDE __m512i reversedFrom(__m512i v, int first) {
    const __m512i iota = _mm512_set_epi8(
        63, 62, 61, 60, 59, 58, 57, 56, 55, 54, 53, 52, 51, 50, 49, 48, 47, 46, 45, 44, 43, 42,
        41, 40, 39, 38, 37, 36, 35, 34, 33, 32, 31, 30, 29, 28, 27, 26, 25, 24, 23, 22, 21, 20,
        19, 18, 17, 16, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
    const __m512i index = _mm512_sub_epi8(_mm512_set1_epi8(static_cast<char>(first)), iota);
    return _mm512_maskz_permutexvar_epi8(lowBits(first + 1), index, v);
}

// The digit values of a value's characters placed from column `at` (1 to 64).
ZU_WIDE __m512i place(__m512i raw, int at) {
    return reversedFrom(_mm512_and_si512(raw, _mm512_set1_epi8(0x0F)), 63 - at);
}

// Writes `count` columns from `start` as characters into a value's array (NULs after).
ZU_WIDE void store(char* digits, __m512i field, int start, int count) {
    const __m512i text = reversedFrom(_mm512_add_epi8(field, _mm512_set1_epi8('0')), 63 - start);
    _mm512_mask_storeu_epi8(digits, kArrayMask, _mm512_maskz_mov_epi8(lowBits(count), text));
}

// Columns to write from `start`: up to the field's end, without the zeros that end it
// after the point (`nonzero` has bit j set for a non-zero column 63 - j).
ZU_WIDE int keptColumns(std::uint64_t nonzero, int start, int point) {
    return zu_numeric::keptDigits(64 - start, static_cast<int>(_tzcnt_u64(nonzero)), point);
}

// Whether the written digits count as zero: none, or a "0" first.
ZU_WIDE bool countsAsZero(std::uint64_t nonzero, int start, int count) {
    return (count == 0) | !((nonzero >> (63 - start)) & 1);
}

} // namespace

namespace zu_numeric {

ZU_WIDE SumOutcome addWide(const char* a, int pointA, const char* b, int pointB, char* digits) {
    const __m512i rawA = loadDigits(a), rawB = loadDigits(b);
    const Alignment at = align(countOf(rawA), pointA, countOf(rawB), pointB);
    if (at.width >= kArray || at.width < 0) return {false, true, 0}; // too wide: zero
    // Column `from` is the carry place (bit `width`), the operands follow it.
    const int from = 63 - at.width;
    const __m512i sum = _mm512_add_epi8(place(rawA, from + 1 + at.offsetA),
                                        place(rawB, from + 1 + at.offsetB));
    const __m512i nine = _mm512_set1_epi8(9);
    const std::uint64_t generate = _mm512_cmpgt_epu8_mask(sum, nine);
    const std::uint64_t propagate = _mm512_cmpeq_epi8_mask(sum, nine);
    const std::uint64_t carries = ((generate << 1) + propagate) ^ propagate;
    const __m512i carried = _mm512_mask_add_epi8(sum, carries, sum, _mm512_set1_epi8(1));
    // Columns that reached 10 drop it: the unsigned minimum of x and x - 10.
    const __m512i field = _mm512_min_epu8(carried, _mm512_sub_epi8(carried, _mm512_set1_epi8(10)));
    // A carry out of the operands' columns leaves a "1" in column `from`.
    const int carry = static_cast<int>((carries >> at.width) & 1);
    const int point = at.point + carry, start = from + 1 - carry;
    if (point > 32767) return {false, true, 0};
    const std::uint64_t nonzero = _mm512_test_epi8_mask(field, field);
    const int count = keptColumns(nonzero, start, point);
    store(digits, field, start, count);
    return {true, countsAsZero(nonzero, start, count), static_cast<short>(point)};
}

ZU_WIDE SumOutcome subWide(const char* a, int pointA, const char* b, int pointB, char* digits) {
    const __m512i rawA = loadDigits(a), rawB = loadDigits(b);
    const Alignment at = align(countOf(rawA), pointA, countOf(rawB), pointB);
    if (at.width >= kArray || at.width < 0) return {false, true, 0};
    const int from = 64 - at.width;
    __m512i difference = _mm512_sub_epi8(place(rawA, from + at.offsetA), place(rawB, from + at.offsetB));
    const std::uint64_t differing = _mm512_test_epi8_mask(difference, difference);
    if (!differing) {
        // Equal magnitudes: one "0" before the point, so a signed zero reads "-0".
        digits[0] = '0';
        return {true, true, 1};
    }
    // Called with the smaller magnitude first: give the magnitude of the difference.
    const __m512i zero = _mm512_setzero_si512();
    const std::uint64_t negative = _mm512_cmplt_epi8_mask(difference, zero);
    if ((negative >> (63 - _lzcnt_u64(differing))) & 1) difference = _mm512_sub_epi8(zero, difference);
    const std::uint64_t generate = _mm512_cmplt_epi8_mask(difference, zero);
    const std::uint64_t propagate = _mm512_cmpeq_epi8_mask(difference, zero);
    const std::uint64_t borrows = ((generate << 1) + propagate) ^ propagate;
    const __m512i borrowed = _mm512_mask_sub_epi8(difference, borrows, difference, _mm512_set1_epi8(1));
    // Columns below zero take 10: the unsigned minimum of x and x + 10.
    const __m512i field = _mm512_min_epu8(borrowed, _mm512_add_epi8(borrowed, _mm512_set1_epi8(10)));
    const std::uint64_t nonzero = _mm512_test_epi8_mask(field, field);
    const int first = static_cast<int>(_lzcnt_u64(nonzero)); // column of the first non-zero digit
    const int drop = zu_numeric::droppedZeros(first - from, at.point);
    const int point = at.point - drop;
    const int start = from + drop;
    const int count = keptColumns(nonzero, start, point);
    store(digits, field, start, count);
    return {true, countsAsZero(nonzero, start, count), static_cast<short>(point)};
}

} // namespace zu_numeric
