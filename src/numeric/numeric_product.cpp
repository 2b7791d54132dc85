// ZuNumeric product: the exact digits of the schoolbook product of the two digit
// strings, cut to the digit array, and the point position rule.
#include <zu/numeric.h>

#include "numeric_words.h"

namespace {

constexpr std::uint64_t kBase = 100000000u; // limbs of eight digits

// The numbers of the two eight-character halves of the sixteen characters at `digits`,
// in the 64-bit lanes of an SSE2 register (the first half in the low lane); the NULs
// after a value's digits read as "0". Digit pairs, then quadruples, then the halves are
// combined by multiply-adds.
__m128i twoLimbs(const char* digits) {
    const __m128i zero = _mm_setzero_si128();
    const __m128i d = _mm_and_si128(_mm_loadu_si128(reinterpret_cast<const __m128i*>(digits)), _mm_set1_epi8(0x0F));
    const __m128i tens = _mm_setr_epi16(10, 1, 10, 1, 10, 1, 10, 1);
    const __m128i pairs = _mm_packs_epi32(_mm_madd_epi16(_mm_unpacklo_epi8(d, zero), tens),
                                          _mm_madd_epi16(_mm_unpackhi_epi8(d, zero), tens));
    const __m128i quads = _mm_madd_epi16(pairs, _mm_setr_epi16(100, 1, 100, 1, 100, 1, 100, 1));
    return _mm_add_epi64(_mm_mul_epu32(quads, _mm_set1_epi32(10000)), _mm_srli_epi64(quads, 32));
}

// The 16 digit characters of two limbs below 10^8, high first, in SSE2 lanes: each limb is
// split into two halves below 10^4, each half is divided by 1000, 100, 10 and 1 at once
// in 16-bit lanes (by multiplying with rounded-up reciprocals), and the quotients are
// turned into digits by subtracting ten times their left neighbour.
void sixteenCharacters(std::uint64_t high, std::uint64_t low, char* out) {
    const __m128i limbs = _mm_set_epi64x(static_cast<long long>(low), static_cast<long long>(high));
    const __m128i quarters = _mm_srli_epi64(_mm_mul_epu32(limbs, _mm_set1_epi32(static_cast<int>(0xD1B71759u))), 45);
    const __m128i rests = _mm_sub_epi32(limbs, _mm_mul_epu32(quarters, _mm_set1_epi32(10000)));
    const __m128i divisors = _mm_setr_epi16(8389, 5243, 13108, static_cast<short>(32768), 8389, 5243, 13108,
                                            static_cast<short>(32768));
    const __m128i shifts = _mm_setr_epi16(1 << 7, 1 << 11, 1 << 13, static_cast<short>(1 << 15), 1 << 7,
                                          1 << 11, 1 << 13, static_cast<short>(1 << 15));
    auto digitsOf = [&](__m128i halves) { // halves: [first, second, ...] in 16-bit lanes
        __m128i v = _mm_slli_epi64(halves, 2);
        v = _mm_unpacklo_epi16(v, v);
        v = _mm_unpacklo_epi32(v, v); // four copies of each half, times 4
        v = _mm_mulhi_epu16(_mm_mulhi_epu16(v, divisors), shifts);
        return _mm_sub_epi16(v, _mm_slli_epi64(_mm_mullo_epi16(v, _mm_set1_epi16(10)), 16));
    };
    const __m128i first = digitsOf(_mm_unpacklo_epi16(quarters, rests));
    const __m128i second = digitsOf(_mm_unpackhi_epi16(quarters, rests));
    const __m128i characters = _mm_add_epi8(_mm_packus_epi16(first, second), _mm_set1_epi8('0'));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), characters);
}

// The 2n limbs (least significant first) of the product of two values of at most 8n
// digits, each read as the integer of its digits followed by "0"s up to 8n digits, so
// that the limbs are read from the start of the array whatever the digit count. The
// product's digits are then those of the true product followed by zeros.
//
// The limbs come in pairs (high, low) in SSE2 lanes, and the 32-bit lane multiply forms
// two partial products at once: pair j times pair l gives the columns 2n-2-2(j+l) and
// two below it, and times l's swapped pair both halves of the column between. A partial
// product is below 10^16 and at most six meet in a column: one carry pass suffices.
template <int n>
void multiplyLimbs(const char* a, const char* b, std::uint64_t* product) {
    __m128i x[n / 2], y[n / 2], ySwapped[n / 2];
    for (int j = 0; j < n / 2; ++j) {
        x[j] = twoLimbs(a + 16 * j);
        y[j] = twoLimbs(b + 16 * j);
        ySwapped[j] = _mm_shuffle_epi32(y[j], 0x4E);
    }
    std::uint64_t column[2 * n];
    __m128i evenBefore = _mm_setzero_si128();
    for (int s = 0; s <= n - 2; ++s) {
        __m128i even = _mm_setzero_si128(), odd = _mm_setzero_si128();
        for (int j = s < n / 2 ? 0 : s - n / 2 + 1; j <= (s < n / 2 ? s : n / 2 - 1); ++j) {
            even = _mm_add_epi64(even, _mm_mul_epu32(x[j], y[s - j]));
            odd = _mm_add_epi64(odd, _mm_mul_epu32(x[j], ySwapped[s - j]));
        }
        // (even's low + the previous even's high, odd's two halves added)
        const __m128i sums = _mm_add_epi64(_mm_unpacklo_epi64(even, odd), _mm_unpackhi_epi64(evenBefore, odd));
        column[2 * n - 2 - 2 * s] = static_cast<std::uint64_t>(_mm_cvtsi128_si64(sums));
        column[2 * n - 3 - 2 * s] = static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(sums, sums)));
        evenBefore = even;
    }
    column[0] = static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(evenBefore, evenBefore)));
    std::uint64_t carry = 0;
    for (int k = 0; k < 2 * n - 1; ++k) {
        const std::uint64_t t = column[k] + carry;
        carry = t / kBase;
        product[k] = t - carry * kBase;
    }
    product[2 * n - 1] = carry;
}

} // namespace

ZuNumeric ZuNumeric::operator*(const ZuNumeric& other) const {
    ZuNumeric result;
    const int countA = digitCount(_digits), countB = digitCount(other._digits);
    // Schoolbook on limbs of eight digits; values of up to 32 digits take a smaller path.
    std::uint64_t product[12];
    const int limbs = countA <= 32 && countB <= 32 ? 8 : 12;
    if (limbs == 8)
        multiplyLimbs<4>(_digits, other._digits, product);
    else
        multiplyLimbs<6>(_digits, other._digits, product);
    int top = limbs - 1; // the product of the zero-padded values has 8 * limbs places
    while (top > 0 && product[top] == 0) --top;
    result._sign = _sign != other._sign ? 1 : 0;
    if (product[top] == 0) return result; // a zero product: empty digits, position 0
    // Characters of the limbs from the top, most significant first, as far as the kept
    // digits reach (48 at most after the top limb's leading zeros); the characters after
    // them only have to be readable.
    char text[64];
    if (top < 6) std::memset(text, 0, sizeof text);
    sixteenCharacters(product[top], top > 0 ? product[top - 1] : 0, text);
    const int first = __builtin_ctzll(load8(text) ^ kZeros) / 8;
    const int places = 8 * (top + 1) - (8 * limbs - countA - countB); // to the product's end
    const int end = places < first + MaxDigits ? places : first + MaxDigits;
    for (int k = top - 2, at = 16; k >= 0 && at < end; k -= 2, at += 16)
        sixteenCharacters(product[k], k > 0 ? product[k - 1] : 0, text + at);
    const int length = places - first; // without the padding
    // Each operand gives its point position, or 1 - its digit count when that is below 1.
    const int point = (_pointPosition >= 1 ? _pointPosition : 1 - countA) +
                      (other._pointPosition >= 1 ? other._pointPosition : 1 - countB);
    if (point >= 0) {
        storeDigits(result._digits, text + first, length < MaxDigits ? length : MaxDigits);
        result._pointPosition = static_cast<short>(point >= length ? length : point);
        return result;
    }
    // Shifted right behind zeros, point position 0; what passes the 47th place is cut,
    // and nothing is left when the zeros alone fill it.
    const int zeros = -point;
    if (zeros >= MaxDigits) return result;
    const int kept = zeros + length < MaxDigits ? length : MaxDigits - zeros;
    std::memset(result._digits, '0', static_cast<std::size_t>(zeros));
    std::memcpy(result._digits + zeros, text + first, static_cast<std::size_t>(kept));
    result._digits[zeros + kept] = '\0';
    return result;
}
