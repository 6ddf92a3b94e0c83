// RGB and HLS: the internal layers (row drivers, one-row kernels), the
// scalar forms of every formula and their SSE2 twins.
//
// All kernels compute in single precision.  The integer forward kernels
// divide through the approximate reciprocal (rcpss / rcpps): with one Newton
// step everywhere, except in the vector main loop of the 8u kernels, which
// uses it as it stands.  The inverse is the two-value (M1, M2) piecewise
// linear form and needs no reciprocal.
//
// For each direction and type there are two scalar forms:
//   - ...Block: the per-lane meaning of the SSE2 main loop; its vector twin
//     has the same name with a Vec suffix and stands right beside it;
//   - ...Tail: the scalar tail of the kernels.
// The two differ on purpose (reciprocal, grey pixels, narrowing, and for 16s
// and 32f the whole inverse arithmetic); both are required.  The 32f forward
// has a single form for the whole row (rgbToHls32f, twin rgbToHls32fVec).
// The eight-lane AVX2 twins of the 32f vector forms stand in
// pccmskcolor_hls_avx2.cpp.
//
// The 8u forms and the 4-lane vector helpers are shared with the BGR and HLS
// plane layouts (pcchlspl), which run the same arithmetic four pixels a round.
#ifndef LUM_PCCMSKCOLOR_HLS_H
#define LUM_PCCMSKCOLOR_HLS_H

#include <stdint.h>
#include <string.h>

#include "frame/lum_cpu.h"
#include "frame/lum_lanes.h"
#include "frame/lum_row.h"
#include "frame/lum_simd.h"
#include "lumcc.h"

// The forms live in the instruction-set namespace of lum_simd.h: the SSSE3
// and AVX2 units of this family include them too, and must not lend their
// copies to the SSE2 units (nor take theirs).
namespace lum {
namespace hls {
inline namespace LUM_ISA_NS {

// Pixels a round of the main loops; the rest of a row goes through the
// scalar tail of the same kernel.
constexpr int kBlock8uC3 = 8;  // innerRGBToHLS_8u_C3R, innerHLSToRGB_8u_C3R
constexpr int kBlock = 4;      // every other vector kernel (AC4 twins included)

// ---------------------------------------------------------------------------
// Constants, single precision.  Those that are not exact are given by their
// bit patterns.
constexpr uint32_t kBitsHue8u = 0x3F355555u;     // 0.7083333    255/360
constexpr uint32_t kBitsHue16 = 0x43360AABu;     // 182.04167    65535/360
constexpr uint32_t kBitsHalfLess = 0x3EFFFEB0u;  // 0.49998999   16s tail rounding
constexpr uint32_t kBitsGrey32f = 0x34000000u;   // 1.1920929e-7 32f grey threshold

// Float comparisons and selections written once, so that a scalar form and
// its vector twin treat every value (NaN included) alike: max/min as
// maxps/minps do (the second operand unless the first is greater/less).
inline float maxF(float a, float b) { return a > b ? a : b; }
inline float minF(float a, float b) { return a < b ? a : b; }
inline __m128 selectPs(__m128 mask, __m128 a, __m128 b) {  // mask ? a : b
  return _mm_or_ps(_mm_and_ps(mask, a), _mm_andnot_ps(mask, b));
}
inline __m128i selectEpi(__m128i mask, __m128i a, __m128i b) {
  return _mm_or_si128(_mm_and_si128(mask, a), _mm_andnot_si128(mask, b));
}
inline __m128 splat(float v) { return _mm_set1_ps(v); }

// (Integer wrap-around arithmetic of the 32-bit lanes, wrapSub and wrapAdd,
// and the shared constants kBitsDeg8u ... kBitsInv60: lum_simd.h.)

// ===========================================================================
// Forward, RGB to HLS, integer forms.
//
// K full scale, W twice the full scale, T lightness threshold, Y degrees to
// hue steps.
struct FwdParams {
  float K, W, T;
  uint32_t bitsY;
};
constexpr FwdParams kFwd8u{255.0f, 510.0f, 127.5f, kBitsHue8u};
constexpr FwdParams kFwd16{65535.0f, 131070.0f, 32767.5f, kBitsHue16};

// The reciprocal: as it stands (rcp) or with one Newton step (rcp').
enum class Rcp { Bare, Newton };
inline float rcpOf(float x, Rcp k) { return k == Rcp::Newton ? rcpNewtonS(x) : rcpS(x); }
inline __m128 vRcpOf(__m128 x, Rcp k) { return k == Rcp::Newton ? vRcpNewton(x) : vRcp(x); }

// H, L, S truncated toward zero, before narrowing; grey when d == 0.
struct FwdInts {
  int32_t H, L, S;
  bool grey;
};

// Scalar form, one pixel (R, G, B as floats, after the 16s bias).  The tail
// branches on d == 0; the main loop masks, which gives the same numbers, so
// this one function is the per-lane meaning of both, told apart by `rcp`.
inline FwdInts rgbToHlsS(float R, float G, float B, const FwdParams& p, Rcp rcp) {
  const float V = maxF(maxF(R, G), B);
  const float m = minF(minF(R, G), B);
  const float d = V - m;
  const float s = V + m;
  const float Lf = 0.5f * s;
  FwdInts o{0, cvtTrunc(Lf), 0, d == 0.0f};
  if (o.grey) return o;
  const float x = Lf <= p.T ? s : p.W - s;
  o.S = cvtTrunc((d * rcpOf(x, rcp)) * p.K);
  const float rd = rcpOf(d, rcp);
  float h;
  if (R == V)
    h = ((G - B) * 60.0f) * rd;
  else if (G == V)
    h = ((B - R) * 60.0f) * rd + 120.0f;
  else
    h = ((R - G) * 60.0f) * rd + 240.0f;
  if (h < 0.0f) h = h + 360.0f;
  o.H = cvtTrunc(h * floatFromBits(p.bitsY));
  return o;
}

// Vector twin of rgbToHlsS, four lanes: lanes with d == 0 get 0.5 added to d
// and s before the reciprocals are taken, and their H and S are masked to 0.
// R == V selects first, G == V and not R == V second, the rest third.
//
// Every lane keeps the integers of the scalar form, though three steps are
// arranged to cost less:
//   - x = min(s, W - s): the samples are integers below 2^24, so s, W - s
//     and Lf = s / 2 are exact, and Lf <= T (T = W / 4) exactly when
//     s <= W - s (the lanes where x matters are not grey);
//   - the arm picks its difference first and forms ((diff * 60) * rd) once,
//     then adds 0, 120 or 240: adding 0 changes nothing but a -0 to +0;
//   - h < 0 adds 360 masked to 0 or 360, the same -0 to +0 aside.
// A zero of either sign truncates to the same integer.
struct FwdVec {
  __m128i H, L, S;
};
// mask ? a : b for two constants, as 3 logical operations.
inline __m128 selectConst(__m128 mask, float a, float b) {
  return _mm_xor_ps(splat(b), _mm_and_ps(mask, _mm_xor_ps(splat(a), splat(b))));
}
inline FwdVec rgbToHlsVec(__m128 R, __m128 G, __m128 B, const FwdParams& p, Rcp rcp) {
  const __m128 V = _mm_max_ps(_mm_max_ps(R, G), B);
  const __m128 m = _mm_min_ps(_mm_min_ps(R, G), B);
  __m128 d = _mm_sub_ps(V, m);
  __m128 s = _mm_add_ps(V, m);
  const __m128 Lf = _mm_mul_ps(splat(0.5f), s);
  FwdVec o;
  o.L = _mm_cvttps_epi32(Lf);
  const __m128 grey = _mm_cmpeq_ps(d, _mm_setzero_ps());
  const __m128 half = _mm_and_ps(grey, splat(0.5f));
  d = _mm_add_ps(d, half);
  s = _mm_add_ps(s, half);
  const __m128 x = _mm_min_ps(s, _mm_sub_ps(splat(p.W), s));
  const __m128i S = _mm_cvttps_epi32(_mm_mul_ps(_mm_mul_ps(d, vRcpOf(x, rcp)), splat(p.K)));
  const __m128 rd = vRcpOf(d, rcp);
  const __m128 isR = _mm_cmpeq_ps(R, V);
  const __m128 isG = _mm_cmpeq_ps(G, V);  // counts only where R != V
  const __m128 diff =
      selectPs(isR, _mm_sub_ps(G, B), selectPs(isG, _mm_sub_ps(B, R), _mm_sub_ps(R, G)));
  const __m128 off = _mm_andnot_ps(isR, selectConst(isG, 120.0f, 240.0f));
  __m128 h = _mm_add_ps(_mm_mul_ps(_mm_mul_ps(diff, splat(60.0f)), rd), off);
  h = _mm_add_ps(h, _mm_and_ps(_mm_cmplt_ps(h, _mm_setzero_ps()), splat(360.0f)));
  const __m128i H = _mm_cvttps_epi32(_mm_mul_ps(h, splat(floatFromBits(p.bitsY))));
  o.H = _mm_andnot_si128(_mm_castps_si128(grey), H);
  o.S = _mm_andnot_si128(_mm_castps_si128(grey), S);
  return o;
}

// --- 8u: main loop without, tail with the Newton step. ---------------------
// Main loop: H, L, S through signed 16-bit, then unsigned 8-bit saturation.
inline void rgbToHls8uBlock(int r, int g, int b, Lum8u out[3]) {
  const FwdInts o = rgbToHlsS(static_cast<float>(r), static_cast<float>(g),
                              static_cast<float>(b), kFwd8u, Rcp::Bare);
  out[0] = static_cast<Lum8u>(sat8u(sat16s(o.H)));
  out[1] = static_cast<Lum8u>(sat8u(sat16s(o.L)));
  out[2] = static_cast<Lum8u>(sat8u(sat16s(o.S)));
}
// Four lanes of 8-bit samples in 32-bit lanes -> H, L, S in 32-bit lanes
// (truncated, not yet narrowed: the caller packs with packssdw, packuswb).
inline FwdVec rgbToHls8uBlockVec(__m128i r, __m128i g, __m128i b) {
  return rgbToHlsVec(_mm_cvtepi32_ps(r), _mm_cvtepi32_ps(g), _mm_cvtepi32_ps(b), kFwd8u,
                     Rcp::Bare);
}
// Tail: L stored as its low 8 bits; H and S through signed 16-bit
// saturation, low 8 bits stored.
inline void rgbToHls8uTail(int r, int g, int b, Lum8u out[3]) {
  const FwdInts o = rgbToHlsS(static_cast<float>(r), static_cast<float>(g),
                              static_cast<float>(b), kFwd8u, Rcp::Newton);
  out[0] = static_cast<Lum8u>(sat16s(o.H));
  out[1] = static_cast<Lum8u>(o.L);
  out[2] = static_cast<Lum8u>(sat16s(o.S));
}

// --- 16u: Newton step in main loop and tail. -------------------------------
// Main loop: subtract 32768, saturate to signed 16 bits, add 32768.
inline void rgbToHls16uBlock(int r, int g, int b, Lum16u out[3]) {
  const FwdInts o = rgbToHlsS(static_cast<float>(r), static_cast<float>(g),
                              static_cast<float>(b), kFwd16, Rcp::Newton);
  out[0] = static_cast<Lum16u>(satPack16u(o.H));
  out[1] = static_cast<Lum16u>(satPack16u(o.L));
  out[2] = static_cast<Lum16u>(satPack16u(o.S));
}
inline FwdVec rgbToHls16uBlockVec(__m128i r, __m128i g, __m128i b) {
  return rgbToHlsVec(_mm_cvtepi32_ps(r), _mm_cvtepi32_ps(g), _mm_cvtepi32_ps(b), kFwd16,
                     Rcp::Newton);
}
// Tail: as the main loop when d != 0; on d == 0, L as its low 16 bits and
// H = S = 0.
inline void rgbToHls16uTail(int r, int g, int b, Lum16u out[3]) {
  const FwdInts o = rgbToHlsS(static_cast<float>(r), static_cast<float>(g),
                              static_cast<float>(b), kFwd16, Rcp::Newton);
  if (o.grey) {
    out[0] = 0;
    out[1] = static_cast<Lum16u>(o.L);
    out[2] = 0;
    return;
  }
  out[0] = static_cast<Lum16u>(satPack16u(o.H));
  out[1] = static_cast<Lum16u>(satPack16u(o.L));
  out[2] = static_cast<Lum16u>(satPack16u(o.S));
}

// --- 16s: the 16u arithmetic through a bias of 32768. -----------------------
// Main loop: subtract 32768, saturate to signed 16 bits.
inline int narrow16sBlock(int32_t v) { return sat16s(wrapSub(v, 32768)); }
inline void rgbToHls16sBlock(int r, int g, int b, Lum16s out[3]) {
  const FwdInts o = rgbToHlsS(static_cast<float>(r + 32768), static_cast<float>(g + 32768),
                              static_cast<float>(b + 32768), kFwd16, Rcp::Newton);
  out[0] = static_cast<Lum16s>(narrow16sBlock(o.H));
  out[1] = static_cast<Lum16s>(narrow16sBlock(o.L));
  out[2] = static_cast<Lum16s>(narrow16sBlock(o.S));
}
// r, g, b: the biased samples (0..65535) in 32-bit lanes.
inline FwdVec rgbToHls16sBlockVec(__m128i r, __m128i g, __m128i b) {
  return rgbToHls16uBlockVec(r, g, b);
}
// Tail: as the main loop when d != 0; on d == 0, H = S = -32768 and
// L - 32768 as its low 16 bits.
inline void rgbToHls16sTail(int r, int g, int b, Lum16s out[3]) {
  const FwdInts o = rgbToHlsS(static_cast<float>(r + 32768), static_cast<float>(g + 32768),
                              static_cast<float>(b + 32768), kFwd16, Rcp::Newton);
  if (o.grey) {
    out[0] = -32768;
    out[1] = static_cast<Lum16s>(static_cast<uint16_t>(wrapSub(o.L, 32768)));
    out[2] = -32768;
    return;
  }
  out[0] = static_cast<Lum16s>(narrow16sBlock(o.H));
  out[1] = static_cast<Lum16s>(narrow16sBlock(o.L));
  out[2] = static_cast<Lum16s>(narrow16sBlock(o.S));
}

// --- 32f: true divisions, a threshold for grey. -----------------------------
// One formula for every pixel of the row (the kernel has no main-loop
// variant): this scalar form, and its vector twin below with the same bits.
// H, L, S stored without clamping.
inline void rgbToHls32f(float R, float G, float B, float out[3]) {
  const float V = maxF(maxF(R, G), B);
  const float m = minF(minF(R, G), B);
  const float d = V - m;
  const float s = m + V;
  const float L = 0.5f * s;
  float S, h;
  if (d > floatFromBits(kBitsGrey32f)) {
    S = L > 0.5f ? d / (2.0f - s) : d / s;
    if (R == V)
      h = ((G - B) * 60.0f) / d;
    else if (G == V)
      h = ((B - R) * 60.0f) / d + 120.0f;
    else
      h = ((R - G) * 60.0f) / d + 240.0f;
    if (h < 0.0f) h = h + 360.0f;
  } else {
    S = 0.0f;
    h = 0.0f;
  }
  out[0] = h / 360.0f;
  out[1] = L;
  out[2] = S;
}

// Vector twin of rgbToHls32f, four pixels: the same IEEE operations in the
// same order in every lane (divps rounds as divss does), the tests as masks.
// Each lane keeps the value of the arm that the scalar form takes; the
// quotients of the other arms (by zero, or of grey lanes) are computed and
// dropped.  The red arm adds nothing, so a -0 hue stays -0 as in the scalar
// form; grey lanes get +0 for S and for h before h / 360.
template <class F>
struct Hls32fLanes {
  F H, L, S;
};
template <class F>
inline Hls32fLanes<F> rgbToHls32fLanes(F R, F G, F B) {
  const F V = max(max(R, G), B);
  const F m = min(min(R, G), B);
  const F d = V - m;
  const F s = m + V;
  const F L = broadcast<F>(0.5f) * s;
  const F colour = cmpGt(d, broadcastBits<F>(kBitsGrey32f));
  // L > 0.5 exactly when s > 1, and then 2 - s < s; otherwise s <= 2 - s
  // (equal only at s = 1): the divisor is min(s, 2 - s).  A NaN s comes
  // back from 2 - s as the same NaN, as the scalar form divides by it.
  const F den = min(s, broadcast<F>(2.0f) - s);
  const F S = colour & (d / den);
  const F isR = cmpEq(R, V);
  const F isG = cmpEq(G, V);  // counts only where R != V
  const F diff = select(isR, G - B, select(isG, B - R, R - G));
  const F q = (diff * broadcast<F>(60.0f)) / d;
  F h = select(isR, q, q + select(isG, broadcast<F>(120.0f), broadcast<F>(240.0f)));
  h = select(cmpLt(h, zero<F>()), h + broadcast<F>(360.0f), h);
  h = colour & h;
  return Hls32fLanes<F>{h / broadcast<F>(360.0f), L, S};
}
struct Hls32f4 {
  __m128 H, L, S;
};
inline Hls32f4 rgbToHls32fVec(__m128 R, __m128 G, __m128 B) {
  const Hls32fLanes<F32x4> o = rgbToHls32fLanes(F32x4{R}, F32x4{G}, F32x4{B});
  return Hls32f4{o.H.v, o.L.v, o.S.v};
}

// ===========================================================================
// Inverse, HLS to RGB.  Hd = hue in degrees, Lf, Sf on 0..1; c[] = R, G, B
// channel values before scaling.

// The main-loop arithmetic, common to all types: M2 = Lf + Lf * Sf (Lf <=
// 0.5) or (Lf + Sf) - Lf * Sf; M1 = 2 * Lf - M2; the a-part is
// (a * 0.016666668) * (M2 - M1), then plus M1.
inline float hlsChannelBlock(float a, float M1, float M2, float dM) {
  const float k = floatFromBits(kBitsInv60);
  if (a < 60.0f) return (a * k) * dM + M1;
  if (a < 180.0f) return M2;
  if (a < 240.0f) return ((240.0f - a) * k) * dM + M1;
  return M1;
}
// The tails of 16s and 32f: M2 = (1 + Sf) * Lf when Lf <= 0.5, and the
// a-part ((M2 - M1) * a) / 60.
inline float hlsChannelTail(float a, float M1, float M2, float dM) {
  if (a < 60.0f) return (dM * a) / 60.0f + M1;
  if (a < 180.0f) return M2;
  if (a < 240.0f) return (dM * (240.0f - a)) / 60.0f + M1;
  return M1;
}
// R from Hd + 120 (less 360 above 360), G from Hd, B from Hd - 120 (plus 360
// below 0).
inline float hueR(float Hd) {
  float a = Hd + 120.0f;
  if (a > 360.0f) a = a - 360.0f;
  return a;
}
inline float hueB(float Hd) {
  float a = Hd - 120.0f;
  if (a < 0.0f) a = a + 360.0f;
  return a;
}

// Scalar form of the main loop: Sf == 0 gives c = Lf for all three.
inline void hlsToRgbBlockS(float Hd, float Lf, float Sf, float c[3]) {
  if (Sf == 0.0f) {
    c[0] = c[1] = c[2] = Lf;
    return;
  }
  const float M2 = Lf <= 0.5f ? Lf + Lf * Sf : (Lf + Sf) - Lf * Sf;
  const float M1 = 2.0f * Lf - M2;
  const float dM = M2 - M1;
  c[0] = hlsChannelBlock(hueR(Hd), M1, M2, dM);
  c[1] = hlsChannelBlock(Hd, M1, M2, dM);
  c[2] = hlsChannelBlock(hueB(Hd), M1, M2, dM);
}
// Scalar form of the 16s and 32f tails for Sf != 0.
inline void hlsToRgbTailS(float Hd, float Lf, float Sf, float c[3]) {
  const float M2 = Lf <= 0.5f ? (1.0f + Sf) * Lf : (Lf + Sf) - Lf * Sf;
  const float M1 = 2.0f * Lf - M2;
  const float dM = M2 - M1;
  c[0] = hlsChannelTail(hueR(Hd), M1, M2, dM);
  c[1] = hlsChannelTail(Hd, M1, M2, dM);
  c[2] = hlsChannelTail(hueB(Hd), M1, M2, dM);
}

// Vector twin of hlsToRgbBlockS.  The two sloped arms share one formula,
// (t * 0.016666668) * (M2 - M1) + M1, with t = a below 60 and t = 240 - a from
// 180 to 240; t = min(a, 240 - a) is that very operand in both ranges (below
// 60, 240 - a rounds to at least 180; from 180 on, 240 - a is exact and at
// most 60), so every lane computes one slope and the masks pick among it, M2
// and M1 in the order of the scalar tests (a NaN fails them all: M1).
// Grey lanes (Sf == 0) join the M2 lanes, with M2 replaced by Lf there.
template <class F>
inline F hlsChannelLanes(F a, F M1, F M2g, F dM, F grey) {
  const F t = min(a, broadcast<F>(240.0f) - a);
  const F k = broadcastBits<F>(kBitsInv60);
  const F slope = ((t * k) * dM) + M1;
  const F lt60 = cmpLt(a, broadcast<F>(60.0f));
  const F flat = andNot(lt60, cmpLt(a, broadcast<F>(180.0f))) | grey;
  return select(flat, M2g, select(cmpLt(a, broadcast<F>(240.0f)), slope, M1));
}
template <class F>
struct RgbLanes {
  F R, G, B;
};
struct Rgb4 {
  __m128 R, G, B;
};
// The hue of R is Hd + 120 less (360 where above 360), and of B Hd - 120 plus
// (360 where below 0): subtracting or adding a masked 0 leaves a value as it
// is (Hd - 120 is -0 only in the rounding mode where -0 + 0 is -0 too).
template <class F>
inline RgbLanes<F> hlsToRgbLanes(F Hd, F Lf, F Sf) {
  const F LS = Lf * Sf;
  const F M2 = select(cmpLe(Lf, broadcast<F>(0.5f)), Lf + LS, (Lf + Sf) - LS);
  const F M1 = (broadcast<F>(2.0f) * Lf) - M2;
  const F dM = M2 - M1;
  const F k360 = broadcast<F>(360.0f);
  F aR = Hd + broadcast<F>(120.0f);
  aR = aR - (cmpGt(aR, k360) & k360);
  F aB = Hd - broadcast<F>(120.0f);
  aB = aB + (cmpLt(aB, zero<F>()) & k360);
  const F grey = cmpEq(Sf, zero<F>());
  const F M2g = select(grey, Lf, M2);
  return RgbLanes<F>{hlsChannelLanes(aR, M1, M2g, dM, grey), hlsChannelLanes(Hd, M1, M2g, dM, grey),
                     hlsChannelLanes(aB, M1, M2g, dM, grey)};
}
inline Rgb4 hlsToRgbBlockVec(__m128 Hd, __m128 Lf, __m128 Sf) {
  const RgbLanes<F32x4> c = hlsToRgbLanes(F32x4{Hd}, F32x4{Lf}, F32x4{Sf});
  return Rgb4{c.R.v, c.G.v, c.B.v};
}

// --- 8u: Hd = H * 1.4117647, Lf, Sf = sample * 0.003921569;
// output truncate(c * 255) saturated to 0..255. -----------------------------
inline int out8u(float c) { return sat8u(sat16s(cvtTrunc(c * 255.0f))); }
inline void hlsToRgb8uBlock(int h, int l, int s, Lum8u out[3]) {
  const float k = floatFromBits(kBitsInv255);
  float c[3];
  hlsToRgbBlockS(static_cast<float>(h) * floatFromBits(kBitsDeg8u), static_cast<float>(l) * k,
                 static_cast<float>(s) * k, c);
  for (int i = 0; i < 3; ++i) out[i] = static_cast<Lum8u>(out8u(c[i]));
}
// H, L, S 8-bit samples in 32-bit lanes -> R, G, B truncated in 32-bit lanes
// (the caller packs with packssdw, packuswb).
inline void hlsToRgb8uBlockVec(__m128i h, __m128i l, __m128i s, __m128i rgb[3]) {
  const __m128 k = splat(floatFromBits(kBitsInv255));
  const Rgb4 c = hlsToRgbBlockVec(_mm_mul_ps(_mm_cvtepi32_ps(h), splat(floatFromBits(kBitsDeg8u))),
                                  _mm_mul_ps(_mm_cvtepi32_ps(l), k),
                                  _mm_mul_ps(_mm_cvtepi32_ps(s), k));
  const __m128 k255 = splat(255.0f);
  rgb[0] = _mm_cvttps_epi32(_mm_mul_ps(c.R, k255));
  rgb[1] = _mm_cvttps_epi32(_mm_mul_ps(c.G, k255));
  rgb[2] = _mm_cvttps_epi32(_mm_mul_ps(c.B, k255));
}
// Tail: the main loop's arithmetic, but S == 0 copies the L sample.
inline void hlsToRgb8uTail(int h, int l, int s, Lum8u out[3]) {
  if (s == 0) {
    out[0] = out[1] = out[2] = static_cast<Lum8u>(l);
    return;
  }
  hlsToRgb8uBlock(h, l, s, out);
}

// --- 16u: Hd = H * 0.005493248, Lf, Sf = sample * 1.5259e-05; output
// 2 * sat16(truncate(c * 32767.5)): always even, at most 65534. -------------
inline int out16u(float c) {
  return static_cast<uint16_t>(static_cast<uint32_t>(sat16s(cvtTrunc(c * 32767.5f))) << 1);
}
inline void hlsToRgb16uBlock(int h, int l, int s, Lum16u out[3]) {
  const float k = floatFromBits(kBitsInv65535);
  float c[3];
  hlsToRgbBlockS(static_cast<float>(h) * floatFromBits(kBitsDeg16u), static_cast<float>(l) * k,
                 static_cast<float>(s) * k, c);
  for (int i = 0; i < 3; ++i) out[i] = static_cast<Lum16u>(out16u(c[i]));
}
// Inputs in 32-bit lanes; outputs truncate(c * 32767.5) in 32-bit lanes,
// which the caller packs to 16 bits (packssdw) and doubles (psllw):
// narrow16uInvVec.
inline __m128i out16uVec(__m128 c) { return _mm_cvttps_epi32(_mm_mul_ps(c, splat(32767.5f))); }
inline __m128i narrow16uInvVec(__m128i a, __m128i b) {
  return _mm_slli_epi16(_mm_packs_epi32(a, b), 1);
}
inline void hlsToRgb16uBlockVec(__m128i h, __m128i l, __m128i s, __m128i rgb[3]) {
  const __m128 k = splat(floatFromBits(kBitsInv65535));
  const Rgb4 c = hlsToRgbBlockVec(_mm_mul_ps(_mm_cvtepi32_ps(h), splat(floatFromBits(kBitsDeg16u))),
                                  _mm_mul_ps(_mm_cvtepi32_ps(l), k),
                                  _mm_mul_ps(_mm_cvtepi32_ps(s), k));
  rgb[0] = out16uVec(c.R);
  rgb[1] = out16uVec(c.G);
  rgb[2] = out16uVec(c.B);
}
// Tail: S == 0 copies the L sample (which may be odd, or 65535).
inline void hlsToRgb16uTail(int h, int l, int s, Lum16u out[3]) {
  if (s == 0) {
    out[0] = out[1] = out[2] = static_cast<Lum16u>(l);
    return;
  }
  hlsToRgb16uBlock(h, l, s, out);
}

// --- 16s main loop: the biased samples (sample + 32768) through the 16u
// scales; output sat16(truncate(c * 65535) - 32768). ------------------------
inline int out16sBlock(float c) { return sat16s(wrapSub(cvtTrunc(c * 65535.0f), 32768)); }
inline void hlsToRgb16sBlock(int h, int l, int s, Lum16s out[3]) {
  const float k = floatFromBits(kBitsInv65535);
  float c[3];
  hlsToRgbBlockS(static_cast<float>(h + 32768) * floatFromBits(kBitsDeg16u),
                 static_cast<float>(l + 32768) * k, static_cast<float>(s + 32768) * k, c);
  for (int i = 0; i < 3; ++i) out[i] = static_cast<Lum16s>(out16sBlock(c[i]));
}
// h, l, s: the biased samples in 32-bit lanes; outputs in 32-bit lanes
// before the signed pack.
inline __m128i out16sVec(__m128 c) {
  return _mm_sub_epi32(_mm_cvttps_epi32(_mm_mul_ps(c, splat(65535.0f))), _mm_set1_epi32(32768));
}
inline void hlsToRgb16sBlockVec(__m128i h, __m128i l, __m128i s, __m128i rgb[3]) {
  const __m128 k = splat(floatFromBits(kBitsInv65535));
  const Rgb4 c = hlsToRgbBlockVec(_mm_mul_ps(_mm_cvtepi32_ps(h), splat(floatFromBits(kBitsDeg16u))),
                                  _mm_mul_ps(_mm_cvtepi32_ps(l), k),
                                  _mm_mul_ps(_mm_cvtepi32_ps(s), k));
  rgb[0] = out16sVec(c.R);
  rgb[1] = out16sVec(c.G);
  rgb[2] = out16sVec(c.B);
}
// 16s tail: true divisions, M2 = (1 + Sf) * Lf, and an output that rounds by
// adding 0.49998999 before truncation, low 16 bits, unsaturated.  S == 0
// passes Lf through the same output rule.
inline int out16sTail(float c) {
  return static_cast<int16_t>(static_cast<uint16_t>(
      wrapSub(cvtTrunc(c * 65535.0f + floatFromBits(kBitsHalfLess)), 32768)));
}
inline void hlsToRgb16sTail(int h, int l, int s, Lum16s out[3]) {
  const float Hd = (static_cast<float>(h + 32768) * 360.0f) / 65535.0f;
  const float Lf = static_cast<float>(l + 32768) / 65535.0f;
  const float Sf = static_cast<float>(s + 32768) / 65535.0f;
  float c[3];
  if (Sf == 0.0f)
    c[0] = c[1] = c[2] = Lf;
  else
    hlsToRgbTailS(Hd, Lf, Sf, c);
  for (int i = 0; i < 3; ++i) out[i] = static_cast<Lum16s>(out16sTail(c[i]));
}

// --- 32f: Hd = H * 360, Lf, Sf as they stand, output c. ---------------------
inline void hlsToRgb32fBlock(float h, float l, float s, float out[3]) {
  hlsToRgbBlockS(h * 360.0f, l, s, out);
}
inline Rgb4 hlsToRgb32fBlockVec(__m128 h, __m128 l, __m128 s) {
  return hlsToRgbBlockVec(_mm_mul_ps(h, splat(360.0f)), l, s);
}
// Tail: S == 0 copies L; otherwise the tail arithmetic (divide by 60).
inline void hlsToRgb32fTail(float h, float l, float s, float out[3]) {
  if (s == 0.0f) {
    out[0] = out[1] = out[2] = l;
    return;
  }
  hlsToRgbTailS(h * 360.0f, l, s, out);
}

}  // inline namespace LUM_ISA_NS
}  // namespace hls
}  // namespace lum

namespace lum {
namespace hls {

// ---------------------------------------------------------------------------
// One-row kernels.  The C3R kernels take nchannels: on 4 they hand the row to
// their AC4 twin (innerRGBToHLS_32f_C3R has none and uses it as its stride).
void innerRGBToHLS_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int nchannels,
                          Isa isa);
void innerHLSToRGB_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int nchannels,
                          Isa isa);
void innerRGBToHLS_16u_C3R(const Lum16u* pSrc, Lum16u* pDst, int width, int nchannels,
                          Isa isa);
void innerHLSToRGB_16u_C3R(const Lum16u* pSrc, Lum16u* pDst, int width, int nchannels,
                          Isa isa);
void innerRGBToHLS_16s_C3R(const Lum16s* pSrc, Lum16s* pDst, int width, int nchannels,
                          Isa isa);
void innerHLSToRGB_16s_C3R(const Lum16s* pSrc, Lum16s* pDst, int width, int nchannels,
                          Isa isa);
void innerRGBToHLS_32f_C3R(const Lum32f* pSrc, Lum32f* pDst, int width, int nchannels,
                          Isa isa);
void innerHLSToRGB_32f_C3R(const Lum32f* pSrc, Lum32f* pDst, int width, int nchannels,
                          Isa isa);
void inner_RGBToHLS_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width);
void inner_HLSToRGB_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width);
void inner_RGBToHLS_16u_AC4R(const Lum16u* pSrc, Lum16u* pDst, int width);
void inner_HLSToRGB_16u_AC4R(const Lum16u* pSrc, Lum16u* pDst, int width);
void inner_RGBToHLS_16s_AC4R(const Lum16s* pSrc, Lum16s* pDst, int width);
void inner_HLSToRGB_16s_AC4R(const Lum16s* pSrc, Lum16s* pDst, int width);
void innerHLSToRGB_32f_AC4R(const Lum32f* pSrc, Lum32f* pDst, int width);

// isa is the call's instruction-set level.  The 8u C3 kernels take the
// (de)interleave of their main loop from SSSE3 byte shuffles at SSSE3 and
// above, else from the SSE2 network; the 32f C3 kernels run their main loop
// eight pixels a round at AVX2 (the AC4 stride and the last 4 pixels of the
// main loop stay at four lanes).  The arithmetic and so the bytes are the
// same at every level.
// SSSE3 main loops (pccmskcolor_hls_ssse3.cpp): pixels [0, end), end a
// multiple of 8; each returns the first pixel not done (end).
int blockRGBToHLS_8u_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int end);
int blockHLSToRGB_8u_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int end);

// AVX2 main loops (pccmskcolor_hls_avx2.cpp): pixels [0, n), n the largest
// multiple of 8 not above end; each returns n.
int blockRGBToHLS_32f_C3_avx2(const Lum32f* pSrc, Lum32f* pDst, int end);
int blockHLSToRGB_32f_C3_avx2(const Lum32f* pSrc, Lum32f* pDst, int end);

// Row drivers (group 1 of the parallel frame): steps in elements.
void myRGBToHLS_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep, int width,
                       int height, int nchannels, Isa isa);
void myHLSToRGB_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep, int width,
                       int height, int nchannels, Isa isa);
void myRGBToHLS_16u_C3R(const Lum16u* pSrc, int srcStep, Lum16u* pDst, int dstStep, int width,
                        int height, int nchannels, Isa isa);
void myHLSToRGB_16u_C3R(const Lum16u* pSrc, int srcStep, Lum16u* pDst, int dstStep, int width,
                        int height, int nchannels, Isa isa);
void myRGBToHLS_16s_C3R(const Lum16s* pSrc, int srcStep, Lum16s* pDst, int dstStep, int width,
                        int height, int nchannels, Isa isa);
void myHLSToRGB_16s_C3R(const Lum16s* pSrc, int srcStep, Lum16s* pDst, int dstStep, int width,
                        int height, int nchannels, Isa isa);
void myRGBToHLS_32f_C3R(const Lum32f* pSrc, int srcStep, Lum32f* pDst, int dstStep, int width,
                        int height, int nchannels, Isa isa);
void myHLSToRGB_32f_C3R(const Lum32f* pSrc, int srcStep, Lum32f* pDst, int dstStep, int width,
                        int height, int nchannels, Isa isa);

}  // namespace hls
}  // namespace lum

#endif  // LUM_PCCMSKCOLOR_HLS_H
