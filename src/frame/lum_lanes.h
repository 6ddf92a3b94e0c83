// Lane types: the same operations on 4 and 8 float lanes (F32x4, F32x8), on
// 4 and 8 32-bit integer lanes (I32x4, I32x8), and on 8 and 16 16-bit integer
// lanes (I16x8, I16x16).  A vector formula is written once, as a template on
// its lane type, beside its scalar form; the SSE2 unit instantiates it on the
// 128-bit types and an AVX2 unit on the 256-bit ones.  Each operation is one
// instruction of the same meaning at both widths (addps/vaddps, rcpps/vrcpps,
// cvtps2dq/vcvtps2dq, pmulhw/vpmulhw, ...), so the order of the operations and
// their rounding are those of the formula as written, lane by lane, and both
// widths give the same bits.
//
// The 256-bit types exist only in units compiled for AVX2.  Everything lives
// in the instruction-set namespace of lum_simd.h.
#ifndef LUM_LANES_H
#define LUM_LANES_H

#include <emmintrin.h>
#include <stdint.h>
#if defined(__AVX2__)
#include <immintrin.h>
#endif

#include "frame/lum_simd.h"

namespace lum {
inline namespace LUM_ISA_NS {

struct F32x4 { __m128 v; };
struct I32x4 { __m128i v; };
struct I16x8 { __m128i v; };

template <class F> struct LanesOf;
template <> struct LanesOf<F32x4> {
  using Int = I32x4;
  static constexpr int kCount = 4;
};

// ---------------------------------------------------------------------------
// 4 float lanes.
inline F32x4 operator+(F32x4 a, F32x4 b) { return {_mm_add_ps(a.v, b.v)}; }
inline F32x4 operator-(F32x4 a, F32x4 b) { return {_mm_sub_ps(a.v, b.v)}; }
inline F32x4 operator*(F32x4 a, F32x4 b) { return {_mm_mul_ps(a.v, b.v)}; }
inline F32x4 operator/(F32x4 a, F32x4 b) { return {_mm_div_ps(a.v, b.v)}; }
// minps/maxps: the second operand unless the first is less/greater.
inline F32x4 min(F32x4 a, F32x4 b) { return {_mm_min_ps(a.v, b.v)}; }
inline F32x4 max(F32x4 a, F32x4 b) { return {_mm_max_ps(a.v, b.v)}; }
// Comparisons give all-ones or all-zero lanes.
inline F32x4 cmpEq(F32x4 a, F32x4 b) { return {_mm_cmpeq_ps(a.v, b.v)}; }
inline F32x4 cmpLt(F32x4 a, F32x4 b) { return {_mm_cmplt_ps(a.v, b.v)}; }
inline F32x4 cmpLe(F32x4 a, F32x4 b) { return {_mm_cmple_ps(a.v, b.v)}; }
inline F32x4 cmpGt(F32x4 a, F32x4 b) { return {_mm_cmplt_ps(b.v, a.v)}; }
inline F32x4 operator&(F32x4 a, F32x4 b) { return {_mm_and_ps(a.v, b.v)}; }
inline F32x4 operator|(F32x4 a, F32x4 b) { return {_mm_or_ps(a.v, b.v)}; }
inline F32x4 andNot(F32x4 mask, F32x4 b) { return {_mm_andnot_ps(mask.v, b.v)}; }  // ~mask & b
// rcpps as it stands, and with one Newton step r' = (r + r) - (x * r) * r.
inline F32x4 rcp(F32x4 x) { return {_mm_rcp_ps(x.v)}; }
// Float to 32-bit integer: cvtps2dq (the rounding mode in force), cvttps2dq
// (toward zero); and back, cvtdq2ps.
inline I32x4 cvtRound(F32x4 x) { return {_mm_cvtps_epi32(x.v)}; }
inline I32x4 cvtTrunc(F32x4 x) { return {_mm_cvttps_epi32(x.v)}; }
inline F32x4 toFloat(I32x4 x) { return {_mm_cvtepi32_ps(x.v)}; }
template <class F> F broadcast(float v);
template <> inline F32x4 broadcast<F32x4>(float v) { return {_mm_set1_ps(v)}; }
template <class F> F broadcastBits(uint32_t bits);
template <> inline F32x4 broadcastBits<F32x4>(uint32_t bits) {
  return {_mm_castsi128_ps(_mm_set1_epi32(static_cast<int>(bits)))};
}

// ---------------------------------------------------------------------------
// 8 16-bit lanes.
inline I16x8 operator+(I16x8 a, I16x8 b) { return {_mm_add_epi16(a.v, b.v)}; }
inline I16x8 operator-(I16x8 a, I16x8 b) { return {_mm_sub_epi16(a.v, b.v)}; }
inline I16x8 addSat(I16x8 a, I16x8 b) { return {_mm_adds_epi16(a.v, b.v)}; }
inline I16x8 addSatU(I16x8 a, I16x8 b) { return {_mm_adds_epu16(a.v, b.v)}; }
inline I16x8 mulHi(I16x8 a, I16x8 b) { return {_mm_mulhi_epi16(a.v, b.v)}; }
inline I16x8 mulHiU(I16x8 a, I16x8 b) { return {_mm_mulhi_epu16(a.v, b.v)}; }
template <int n> inline I16x8 shl(I16x8 a) { return {_mm_slli_epi16(a.v, n)}; }
template <int n> inline I16x8 shrA(I16x8 a) { return {_mm_srai_epi16(a.v, n)}; }
template <int n> inline I16x8 shrL(I16x8 a) { return {_mm_srli_epi16(a.v, n)}; }
template <class I> I broadcast16(int v);
template <> inline I16x8 broadcast16<I16x8>(int v) { return {_mm_set1_epi16(static_cast<short>(v))}; }

// ---------------------------------------------------------------------------
// Forms common to every float width.
template <class F>
inline F select(F mask, F a, F b) {  // mask ? a : b, each lane all ones or all zeros
  return (mask & a) | andNot(mask, b);
}
template <class F>
inline F zero() {
  return broadcastBits<F>(0u);
}
template <class F>
inline F rcpNewton(F x) {
  const F r = rcp(x);
  return (r + r) - (x * r) * r;
}

#if defined(__AVX2__)
struct F32x8 { __m256 v; };
struct I32x8 { __m256i v; };
struct I16x16 { __m256i v; };
template <> struct LanesOf<F32x8> {
  using Int = I32x8;
  static constexpr int kCount = 8;
};

inline F32x8 operator+(F32x8 a, F32x8 b) { return {_mm256_add_ps(a.v, b.v)}; }
inline F32x8 operator-(F32x8 a, F32x8 b) { return {_mm256_sub_ps(a.v, b.v)}; }
inline F32x8 operator*(F32x8 a, F32x8 b) { return {_mm256_mul_ps(a.v, b.v)}; }
inline F32x8 operator/(F32x8 a, F32x8 b) { return {_mm256_div_ps(a.v, b.v)}; }
inline F32x8 min(F32x8 a, F32x8 b) { return {_mm256_min_ps(a.v, b.v)}; }
inline F32x8 max(F32x8 a, F32x8 b) { return {_mm256_max_ps(a.v, b.v)}; }
// The predicates of cmpeqps (quiet), cmpltps and cmpleps (signalling).
inline F32x8 cmpEq(F32x8 a, F32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_EQ_OQ)}; }
inline F32x8 cmpLt(F32x8 a, F32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_LT_OS)}; }
inline F32x8 cmpLe(F32x8 a, F32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_LE_OS)}; }
inline F32x8 cmpGt(F32x8 a, F32x8 b) { return {_mm256_cmp_ps(b.v, a.v, _CMP_LT_OS)}; }
inline F32x8 operator&(F32x8 a, F32x8 b) { return {_mm256_and_ps(a.v, b.v)}; }
inline F32x8 operator|(F32x8 a, F32x8 b) { return {_mm256_or_ps(a.v, b.v)}; }
inline F32x8 andNot(F32x8 mask, F32x8 b) { return {_mm256_andnot_ps(mask.v, b.v)}; }
inline F32x8 rcp(F32x8 x) { return {_mm256_rcp_ps(x.v)}; }
inline I32x8 cvtRound(F32x8 x) { return {_mm256_cvtps_epi32(x.v)}; }
inline I32x8 cvtTrunc(F32x8 x) { return {_mm256_cvttps_epi32(x.v)}; }
inline F32x8 toFloat(I32x8 x) { return {_mm256_cvtepi32_ps(x.v)}; }
template <> inline F32x8 broadcast<F32x8>(float v) { return {_mm256_set1_ps(v)}; }
template <> inline F32x8 broadcastBits<F32x8>(uint32_t bits) {
  return {_mm256_castsi256_ps(_mm256_set1_epi32(static_cast<int>(bits)))};
}

inline I16x16 operator+(I16x16 a, I16x16 b) { return {_mm256_add_epi16(a.v, b.v)}; }
inline I16x16 operator-(I16x16 a, I16x16 b) { return {_mm256_sub_epi16(a.v, b.v)}; }
inline I16x16 addSat(I16x16 a, I16x16 b) { return {_mm256_adds_epi16(a.v, b.v)}; }
inline I16x16 addSatU(I16x16 a, I16x16 b) { return {_mm256_adds_epu16(a.v, b.v)}; }
inline I16x16 mulHi(I16x16 a, I16x16 b) { return {_mm256_mulhi_epi16(a.v, b.v)}; }
inline I16x16 mulHiU(I16x16 a, I16x16 b) { return {_mm256_mulhi_epu16(a.v, b.v)}; }
template <int n> inline I16x16 shl(I16x16 a) { return {_mm256_slli_epi16(a.v, n)}; }
template <int n> inline I16x16 shrA(I16x16 a) { return {_mm256_srai_epi16(a.v, n)}; }
template <int n> inline I16x16 shrL(I16x16 a) { return {_mm256_srli_epi16(a.v, n)}; }
template <> inline I16x16 broadcast16<I16x16>(int v) {
  return {_mm256_set1_epi16(static_cast<short>(v))};
}
#endif  // __AVX2__

}  // inline namespace LUM_ISA_NS
}  // namespace lum


// ===========================================================================
// Lane-wise 16/32-bit operations for the subsampled and YCbCr families
// (pccyuv02*, pccycbcr*).  Each acts within each 128-bit half, as the
// instructions do: a formula that unpacks words in pairs (interleaveLo/Hi),
// forms 32-bit pair products or pair sums (madd) and packs them back
// (packS32) puts every lane back where it came from at both widths.
namespace lum {
inline namespace LUM_ISA_NS {

inline I16x8 subSat(I16x8 a, I16x8 b) { return {_mm_subs_epi16(a.v, b.v)}; }
inline I16x8 interleaveLo(I16x8 a, I16x8 b) { return {_mm_unpacklo_epi16(a.v, b.v)}; }
inline I16x8 interleaveHi(I16x8 a, I16x8 b) { return {_mm_unpackhi_epi16(a.v, b.v)}; }
inline I32x4 madd(I16x8 a, I16x8 b) { return {_mm_madd_epi16(a.v, b.v)}; }   // pmaddwd
inline I16x8 packS32(I32x4 lo, I32x4 hi) { return {_mm_packs_epi32(lo.v, hi.v)}; }
inline I32x4 operator+(I32x4 a, I32x4 b) { return {_mm_add_epi32(a.v, b.v)}; }
inline I32x4 operator-(I32x4 a, I32x4 b) { return {_mm_sub_epi32(a.v, b.v)}; }
template <int n> inline I32x4 shrA(I32x4 a) { return {_mm_srai_epi32(a.v, n)}; }
template <class I> I broadcast32(int v);
template <> inline I32x4 broadcast32<I32x4>(int v) { return {_mm_set1_epi32(v)}; }
// Two 16-bit constants in each 32-bit lane: lo in the even word, hi in the odd.
template <class I> inline I broadcastPair16(int lo, int hi) {
  return I{broadcast32<decltype(madd(I{}, I{}))>(
               static_cast<int>((static_cast<uint32_t>(hi) << 16) | (static_cast<uint32_t>(lo) & 0xffffu)))
               .v};
}
// The 32-bit lane type of a 16-bit lane type.
template <class I> using Wide32 = decltype(madd(I{}, I{}));

#if defined(__AVX2__)
inline I16x16 subSat(I16x16 a, I16x16 b) { return {_mm256_subs_epi16(a.v, b.v)}; }
inline I16x16 interleaveLo(I16x16 a, I16x16 b) { return {_mm256_unpacklo_epi16(a.v, b.v)}; }
inline I16x16 interleaveHi(I16x16 a, I16x16 b) { return {_mm256_unpackhi_epi16(a.v, b.v)}; }
inline I32x8 madd(I16x16 a, I16x16 b) { return {_mm256_madd_epi16(a.v, b.v)}; }
inline I16x16 packS32(I32x8 lo, I32x8 hi) { return {_mm256_packs_epi32(lo.v, hi.v)}; }
inline I32x8 operator+(I32x8 a, I32x8 b) { return {_mm256_add_epi32(a.v, b.v)}; }
inline I32x8 operator-(I32x8 a, I32x8 b) { return {_mm256_sub_epi32(a.v, b.v)}; }
template <int n> inline I32x8 shrA(I32x8 a) { return {_mm256_srai_epi32(a.v, n)}; }
template <> inline I32x8 broadcast32<I32x8>(int v) { return {_mm256_set1_epi32(v)}; }
#endif  // __AVX2__

}  // inline namespace LUM_ISA_NS
}  // namespace lum
// ===========================================================================

#endif  // LUM_LANES_H
