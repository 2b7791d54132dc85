// Digit kernels of ZuNumeric's add and sub (internal).
//
// A kernel aligns two magnitudes on their points, adds or subtracts them digit by digit
// and writes the result's characters into a value's digit array. Two sets exist: a
// portable one (SSE2, any x86-64) and a wide one (AVX-512) that does the whole column
// work in one 64-byte register; both give the same digits. The wide set is used when
// the processor has it, unless the environment variable ZU_NUMERIC_PORTABLE is set to a
// non-empty value other than "0" (read when the library loads; the tests run both sets).
#ifndef ZU_SRC_NUMERIC_KERNELS_H
#define ZU_SRC_NUMERIC_KERNELS_H

// Compiles a function for the wide set's instructions.
#define ZU_WIDE __attribute__((target("avx512f,avx512bw,avx512vbmi,bmi,bmi2,lzcnt")))

namespace zu_numeric {

// What a kernel found: `held` is false for a result too wide to hold (the caller keeps
// its zero, digits untouched); otherwise the digits were written, `point` is the point
// position and `zero` tells whether the digits count as zero.
struct SumOutcome {
    bool held;
    bool zero;
    short point;
};

// Column layout shared by the kernels: both operands aligned on the point.
struct Alignment {
    int width; // columns from the most significant place to the last fraction digit
    int point; // the larger point position
    int offsetA; // columns before each operand's first digit
    int offsetB;
};

inline int maxOf(int a, int b) { return a > b ? a : b; }
inline int minOf(int a, int b) { return a < b ? a : b; }

inline Alignment align(int countA, int pointA, int countB, int pointB) {
    const int point = maxOf(pointA, pointB);
    const int fraction = maxOf(countA - pointA, countB - pointB);
    return {point + fraction, point, point - pointA, point - pointB};
}

// Digits a result keeps of the `count` it has from its first place: the zeros ending it
// go, as far as they stand after the point.
inline int keptDigits(int count, int trailingZeros, int point) {
    return count - minOf(trailingZeros, maxOf(count - maxOf(point, 0), 0));
}

// Leading zeros a difference drops: they go while digits stand before the point, as the
// parser holds them.
inline int droppedZeros(int leadingZeros, int point) { return minOf(leadingZeros, maxOf(point, 0)); }

// |a| + |b| and the magnitude of |a| - |b|, for digit arrays of 48 characters and NULs
// after the digits (a value's array); `digits` is the result's array, all NULs on entry.
SumOutcome addPortable(const char* a, int pointA, const char* b, int pointB, char* digits);
SumOutcome subPortable(const char* a, int pointA, const char* b, int pointB, char* digits);
SumOutcome addWide(const char* a, int pointA, const char* b, int pointB, char* digits);
SumOutcome subWide(const char* a, int pointA, const char* b, int pointB, char* digits);

// True when the wide kernels run here; false until the library's initialisers have run.
extern const bool useWideKernels;

} // namespace zu_numeric

#endif
