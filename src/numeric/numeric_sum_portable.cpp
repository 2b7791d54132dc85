// The portable digit kernels of ZuNumeric's sums: eight columns per 64-bit word, with
// SSE2 for placing the operands.
#include "numeric_kernels.h"

#include "numeric_words.h"

namespace {

using zu_numeric::SumOutcome;

// The field: kField columns, the operands aligned on the point and right-aligned at its
// end; column j stands for ten to the power (point - 1 - (j - first column)).
constexpr int kField = 56;
constexpr int kWords = kField / 8;

// Zeroes the words after the field, which finish reads past its end. (Stores one by one:
// a loop or an initialiser would become a slow string instruction.)
void clearPadding(std::uint64_t* field) {
    const __m128i zero = _mm_setzero_si128();
    field[kWords] = 0;
    _mm_storeu_si128(reinterpret_cast<__m128i*>(field + kWords + 1), zero);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(field + kWords + 3), zero);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(field + kWords + 5), zero);
}

// The digits of an operand placed from field column `at` (9 to 56 for operands whose
// sum fits the field), as raw words of digit values in memory order: the returned
// pointer's word k holds the columns [8k, 8k + 8) for k up to 6, zeros before `at` and
// after the digits. The digits are shifted within words in SSE2 lanes and stored at
// fixed places in `area` (zeros first); only the returned pointer depends on `at`, so
// that no branch and no store waits on the alignment, which changes from call to call.
// With `at` from 9 to 56 the reads fall on words 1 to 13, so what the shift pushes past
// the last digit word (nothing, for an operand that fits the field) is not stored.
const std::uint64_t* place(const char* digits, int at, std::uint64_t* area /* 14 */) {
    const int r = at % 8;
    const __m128i nibbles = _mm_set1_epi8(0x0F), zero = _mm_setzero_si128();
    const __m128i left = _mm_cvtsi32_si128(8 * r), right = _mm_cvtsi32_si128(64 - 8 * r);
    // (b's high lane, v's low lane): the word before each of v's words
    auto before = [](__m128i b, __m128i v) {
        return _mm_castpd_si128(_mm_shuffle_pd(_mm_castsi128_pd(b), _mm_castsi128_pd(v), 1));
    };
    __m128i c[3];
    for (int i = 0; i < 3; ++i)
        c[i] = _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(digits + 16 * i)), nibbles);
    __m128i* out = reinterpret_cast<__m128i*>(area);
    for (int i = 0; i < 4; ++i) _mm_store_si128(out + i, zero);
    _mm_store_si128(out + 4, _mm_or_si128(_mm_sll_epi64(c[0], left), _mm_srl_epi64(before(zero, c[0]), right)));
    _mm_store_si128(out + 5, _mm_or_si128(_mm_sll_epi64(c[1], left), _mm_srl_epi64(before(c[0], c[1]), right)));
    _mm_store_si128(out + 6, _mm_or_si128(_mm_sll_epi64(c[2], left), _mm_srl_epi64(before(c[1], c[2]), right)));
    return area + 8 - at / 8;
}

// Writes the field's characters from column start into digits, without the zeros that
// end it after the point. The field must have 48 readable characters after any start.
void finish(char* digits, const std::uint64_t* field, int start, int point) {
    const int count = zu_numeric::keptDigits(kField - start, trailingZeroCharacters(field, kWords), point);
    storeDigits(digits, reinterpret_cast<const char*>(field) + start, count);
}

// A value's digit array holding characters: empty or led by "0" counts as zero.
bool countsAsZero(const char* digits) { return digits[0] == '\0' || digits[0] == '0'; }

} // namespace

namespace zu_numeric {

SumOutcome addPortable(const char* a, int pointA, const char* b, int pointB, char* digits) {
    const int countA = digitCount(a), countB = digitCount(b);
    const Alignment at = align(countA, pointA, countB, pointB);
    if (at.width >= kArray || at.width < 0) return {false, true, 0}; // too wide: zero, without notice
    // Column `from` is the carry place, the operands follow it.
    const int from = kField - at.width - 1;
    const int atA = from + 1 + at.offsetA, atB = from + 1 + at.offsetB;
    alignas(16) std::uint64_t areaA[14], areaB[14];
    const std::uint64_t* wordsA = place(a, atA, areaA);
    const std::uint64_t* wordsB = place(b, atB, areaB);
    std::uint64_t field[2 * kWords];
    clearPadding(field);
    std::uint64_t carry = 0;
    for (int k = kWords - 1; k >= 0; --k) { // the words before `from` come out "0"
        // Adding 246 in every byte makes a byte overflow into the next exactly when its
        // digit sum reaches 10; bytes that did not overflow are left 246 too high.
        std::uint64_t sum =
            __builtin_bswap64(wordsA[k]) + __builtin_bswap64(wordsB[k]) + 0xF6 * kLow + carry;
        carry = (sum >> 63) ^ 1;
        sum -= ((sum >> 7) & kLow) * 0xF6;
        field[k] = characters(sum);
    }
    int point = at.point, start = from + 1;
    if (((field[from / 8] >> (8 * (from % 8))) & 0xFF) == '1') {
        if (++point > 32767) return {false, true, 0};
        start = from;
    }
    finish(digits, field, start, point);
    return {true, countsAsZero(digits), static_cast<short>(point)};
}

SumOutcome subPortable(const char* a, int pointA, const char* b, int pointB, char* digits) {
    const int countA = digitCount(a), countB = digitCount(b);
    const Alignment at = align(countA, pointA, countB, pointB);
    if (at.width >= kArray || at.width < 0) return {false, true, 0};
    const int from = kField - at.width;
    alignas(16) std::uint64_t areaA[14], areaB[14];
    const std::uint64_t* wordsA = place(a, from + at.offsetA, areaA);
    const std::uint64_t* wordsB = place(b, from + at.offsetB, areaB);
    std::uint64_t field[2 * kWords];
    clearPadding(field);
    for (int swapped = 0; swapped < 2; ++swapped) {
        // Called with the smaller magnitude first: give the magnitude of the difference.
        const std::uint64_t* x = swapped ? wordsB : wordsA;
        const std::uint64_t* y = swapped ? wordsA : wordsB;
        std::uint64_t borrow = 0;
        for (int k = kWords - 1; k >= 0; --k) {
            // A byte that went below zero borrowed from the next and reads 246 + its digit.
            std::uint64_t difference = __builtin_bswap64(x[k]) - __builtin_bswap64(y[k]) - borrow;
            borrow = difference >> 63;
            difference -= ((difference >> 7) & kLow) * 0xF6;
            field[k] = characters(difference);
        }
        if (!borrow) break;
    }
    // Columns before `from` hold "0" too.
    int first = kField;
    for (int k = from / 8; k < kWords; ++k) {
        const std::uint64_t x = field[k] ^ kZeros;
        if (x) {
            first = 8 * k + __builtin_ctzll(x) / 8;
            break;
        }
    }
    if (first == kField) {
        // Equal magnitudes: one "0" before the point, so a signed zero reads "-0".
        digits[0] = '0';
        return {true, true, 1};
    }
    const int drop = zu_numeric::droppedZeros(first - from, at.point);
    const int point = at.point - drop;
    finish(digits, field, from + drop, point);
    return {true, countsAsZero(digits), static_cast<short>(point)};
}

} // namespace zu_numeric
