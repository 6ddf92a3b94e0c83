// Service primitives: the one-row copy and fill kernels that other families
// reuse for plain rows, the whole-image kernels of Max and Sum, the
// generator's state records, and the scalar forms that the SSE2 paths are
// written against.
#ifndef LUM_PCCSUPPORT_H
#define LUM_PCCSUPPORT_H

#include <stdint.h>
#include <string.h>

#include "frame/lum_frame.h"
#include "lumcc.h"

// ---------------------------------------------------------------------------
// Generator state.  The fields stand in this order; on i386 the records are
// 48 and 52 bytes, on x86-64 the doubles are 8-aligned and both are 56.  The
// blocks are allocated as lumsMalloc_16s(48) and lumsMalloc_32f(52), which
// is more than either record on both targets.
struct LumRandState16s_ {
  int32_t tag;      // 36
  uint32_t seed;    // as given
  int16_t low;      // as given
  int16_t high;     // as given
  double offset;    // (low + high) * 0.5
  double scale;     // (high - low) * K
  uint32_t lcg;     // congruential part
  uint32_t s1;      // newest word of the lagged part
  uint32_t s2;      // next word
  uint32_t s3;      // oldest word
  int32_t carry;    // 0 or -1
};
struct LumRandState32f_ {
  int32_t tag;      // 37
  uint32_t seed;
  float low;
  float high;
  double offset;
  double scale;
  uint32_t lcg;
  uint32_t s1;
  uint32_t s2;
  uint32_t s3;
  int32_t carry;
};

namespace lum {
namespace svc {

constexpr int32_t kTagRand16s = 36;
constexpr int32_t kTagRand32f = 37;
// Element counts given to lumsMalloc_16s / lumsMalloc_32f by InitAlloc.
constexpr int kRandAllocCount16s = 48;
constexpr int kRandAllocCount32f = 52;
static_assert(sizeof(LumRandState16s_) <= kRandAllocCount16s * sizeof(int16_t),
              "16s state must fit its block");
static_assert(sizeof(LumRandState32f_) <= kRandAllocCount32f * sizeof(float),
              "32f state must fit its block");

// The generator's constants.
constexpr uint32_t kLcgMul = 69069u;
constexpr uint32_t kLcgAdd = 1013904243u;
constexpr uint32_t kLcgStart = 1131199209u;
constexpr uint32_t kBorrowStep = 18u;
// K: the double with bit pattern 0x3DF0000000000007, a few units in the last
// place above 2^-32, used as it stands.
inline double randScaleK() {
  const uint64_t bits = 0x3DF0000000000007ull;
  double k;
  memcpy(&k, &bits, sizeof k);
  return k;
}

// Start of the running maximum: -FLT_MAX, bit pattern 0xFF7FFFFF.
inline float maxStart() {
  const uint32_t bits = 0xFF7FFFFFu;
  float m;
  memcpy(&m, &bits, sizeof m);
  return m;
}

// Allocation: the hidden word before each block is one pointer wide.
constexpr unsigned kHiddenWord = sizeof(void*);
constexpr unsigned kAllocExtra = 32u + kHiddenWord;  // 36 on i386, 40 on x86-64
constexpr uintptr_t kAllocLift = 31u + kHiddenWord;  // 35 on i386, 39 on x86-64

// Non-temporal decisions of the copy and the fill (pixel counts as 32-bit
// signed products): the copy from 1048577 on, the fill strictly above
// 2097152.
constexpr int32_t kCopyNonTemporalFrom = 1048577;
constexpr int32_t kSetNonTemporalAbove = 2097152;
inline bool copyNonTemporal(int width, int height) {
  return pixelCount32(width, height) >= kCopyNonTemporalFrom;
}
inline bool setNonTemporal(int width, int height) {
  return pixelCount32(width, height) > kSetNonTemporalAbove;
}

// Scalar form of the maximum's step: x unless the running value is greater
// than x (the rule of maxss/maxps, first operand the running value).
inline float maxStep(float running, float x) { return running > x ? running : x; }

// One draw of the generator from its words (steps 1 to 6): returns r and
// advances lcg, s1..s3 and carry.
inline int32_t randStep(uint32_t& lcg, uint32_t& s1, uint32_t& s2, uint32_t& s3,
                        int32_t& carry) {
  lcg = lcg * kLcgMul + kLcgAdd;
  uint32_t t = s2 - s3 + static_cast<uint32_t>(carry);
  carry = static_cast<int32_t>(t) < 0 ? -1 : 0;
  if (carry == -1) t -= kBorrowStep;
  s3 = s2;
  s2 = s1;
  s1 = t;
  return static_cast<int32_t>(t + lcg);
}

// Step 7: x = r * scale + offset in 80-bit extended precision, the product
// rounded to the extended format and then the sum.
inline long double randScaleExt(int32_t r, double scale, double offset) {
  const long double product = static_cast<long double>(r) * static_cast<long double>(scale);
  const long double sum = product + static_cast<long double>(offset);
  return sum;
}

// One-row kernels of copy and fill: length bytes; non-temporal stores for
// the aligned 64-byte rounds when nonTemporal is non-zero.  pPattern is 16
// bytes of the fill value.  Only the row's bytes are written.
void owniCopy_8u_C1_W7(const Lum8u* pSrc, Lum8u* pDst, int length, int nonTemporal);
void owniSet_8u_C1_W7(const Lum8u* pPattern, Lum8u* pDst, int length, int nonTemporal);
// The row copy of the repack families: the same contract as owniCopy_8u_C1_W7.
void ownccCopy_8u_C1_W7(const Lum8u* pSrc, Lum8u* pDst, int length, int nonTemporal);

// Whole-image kernels of Max and Sum, called after the checks.
void ownpi_Max_32f_C1R(const Lum32f* pSrc, int srcStep, LumSize roiSize, Lum32f* pMax);
void ownpi_Sum_32f_C1R(const Lum32f* pSrc, int srcStep, LumSize roiSize, Lum64f* pSum, int hint);

}  // namespace svc
}  // namespace lum

#endif  // LUM_PCCSUPPORT_H
