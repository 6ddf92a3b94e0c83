// RGB and HSV: the internal layers (row drivers, one-row kernels) and the
// scalar forms of every formula.
//
// All kernels compute in single precision and divide through the approximate
// reciprocal (rcpss / rcpps), bare for 8u and with one Newton step for 16u.
// For each direction there are two scalar forms:
//   - ...Tail: the scalar tail of the kernels, branch by branch;
//   - ...Block: the per-lane meaning of the main loop, whose vector form,
//     ...Lanes, stands right after it, written once on a lane type and
//     compiled at 4 float lanes (SSE2) and 8 (AVX2): masks instead of
//     branches, its own tie rule, and its own conversions and saturations.
// The two are not the same function on purpose; both are required.
#ifndef LUM_PCCMSKCOLOR_HSV_H
#define LUM_PCCMSKCOLOR_HSV_H

#include <stdint.h>
#include <string.h>

#include "frame/lum_cpu.h"
#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "lumcc.h"

namespace lum {
namespace hsv {
inline namespace LUM_ISA_NS {

// Pixels a round of the main loop; the rest of a row (0 to 3 pixels) goes
// through the scalar tail.
constexpr int kBlock = 4;

// ---------------------------------------------------------------------------
// Constants.  Those that are not exact in single precision are given by their
// bit patterns.
// (kBitsInv60, kBitsDeg8u, kBitsDeg16u, kBitsInv255, kBitsInv65535: lum_simd.h.)

// The element types: K full scale, Q hue steps a sextant, D hue step in
// degrees, E = 1/K.  rcp is the kernel's reciprocal.
struct Hsv8u {
  using Elem = Lum8u;
  static constexpr int kMax = 255;
  static constexpr float K = 255.0f;
  static constexpr float Q = 42.5f;
  static constexpr uint32_t kBitsD = kBitsDeg8u;
  static constexpr uint32_t kBitsE = kBitsInv255;
  static float rcp(float x) { return rcpS(x); }  // as it stands
  static constexpr bool kNewton = false;
  static constexpr bool kTruncate = true;        // main loop: cvttps2dq
};
struct Hsv16u {
  using Elem = Lum16u;
  static constexpr int kMax = 65535;
  static constexpr float K = 65535.0f;
  static constexpr float Q = 10922.5f;
  static constexpr uint32_t kBitsD = kBitsDeg16u;
  static constexpr uint32_t kBitsE = kBitsInv65535;
  static float rcp(float x) { return rcpNewtonS(x); }  // one Newton step
  static constexpr bool kNewton = true;
  static constexpr bool kTruncate = false;             // main loop: cvtps2dq
};

// The main loop's reciprocal and conversion, on a lane type.
template <class T, class F>
inline F rcpLanes(F x) {
  if constexpr (T::kNewton) return rcpNewton(x);
  else return rcp(x);
}
template <class T, class F>
inline typename LanesOf<F>::Int convertLanes(F x) {
  if constexpr (T::kTruncate) return cvtTrunc(x);
  else return cvtRound(x);
}

// The saturations of the main loops, lane by lane, are those of the packs:
// satPack8u (8u) and satPack16u (16u forward), lum_simd.h.

// ---------------------------------------------------------------------------
// Forward, RGB to HSV.  out = H, S, V.

// Largest and smallest of three samples, compared as the kernels do.
inline float max3(float R, float G, float B) {
  const float v = R > G ? R : G;
  return v > B ? v : B;
}
inline float min3(float R, float G, float B) {
  const float m = R < G ? R : G;
  return m < B ? m : B;
}

// Tail: branches for black and grey, the last true sextant test wins, H and
// S rounded in the mode in force, the low bits stored.
template <class T>
inline void rgbToHsvTail(int r, int g, int b, typename T::Elem out[3]) {
  using E = typename T::Elem;
  const float R = static_cast<float>(r), G = static_cast<float>(g), B = static_cast<float>(b);
  const float V = max3(R, G, B);
  const float d = V - min3(R, G, B);
  out[2] = static_cast<E>(cvtRound(V));
  if (V == 0.0f || d == 0.0f) {
    out[0] = 0;
    out[1] = 0;
    return;
  }
  const float rV = T::rcp(V);
  const float rd = T::rcp(d);
  const float s = (rV * d) * T::K;
  const float Cr = (V - R) * rd;
  const float Cg = (V - G) * rd;
  const float Cb = (V - B) * rd;
  float h = 0.0f;
  if (R == V) h = Cb - Cg;
  if (G == V) h = (Cr - Cb) + 2.0f;
  if (B == V) h = (Cg - Cr) + 4.0f;
  h = h * T::Q;
  if (h < 0.0f) h = h + T::K;
  out[0] = static_cast<E>(cvtRound(h));
  out[1] = static_cast<E>(cvtRound(s));
}

// Main loop, one lane: a lane with V == 0 or d == 0 has K added to V and d
// before the reciprocals and its H and S forced to 0 afterwards (which is all
// that the addition can change); V is taken before.  Tie rule: green wins
// over blue, red over green unless blue is also the maximum, blue over red.
// 8u truncates and saturates through the packs; 16u rounds and clamps.
template <class T>
inline int blockConvert(float x);
template <>
inline int blockConvert<Hsv8u>(float x) { return satPack8u(cvtTrunc(x)); }
template <>
inline int blockConvert<Hsv16u>(float x) { return satPack16u(cvtRound(x)); }

template <class T>
inline void rgbToHsvBlock(int r, int g, int b, typename T::Elem out[3]) {
  using E = typename T::Elem;
  const float R = static_cast<float>(r), G = static_cast<float>(g), B = static_cast<float>(b);
  const float V = max3(R, G, B);
  const float d = V - min3(R, G, B);
  out[2] = static_cast<E>(blockConvert<T>(V));
  const bool flagged = V == 0.0f || d == 0.0f;
  if (flagged) {
    out[0] = static_cast<E>(blockConvert<T>(0.0f));
    out[1] = static_cast<E>(blockConvert<T>(0.0f));
    return;
  }
  const float rV = T::rcp(V);
  const float rd = T::rcp(d);
  const float s = (rV * d) * T::K;
  const float Cr = (V - R) * rd;
  const float Cg = (V - G) * rd;
  const float Cb = (V - B) * rd;
  const bool selG = G == V && !(R == V);
  const bool selB = B == V && !selG;
  const bool selR = R == V && !selB;
  float h = 0.0f;
  if (selR) h = Cb - Cg;
  if (selG) h = (Cr - Cb) + 2.0f;
  if (selB) h = (Cg - Cr) + 4.0f;
  h = h * T::Q;
  if (h < 0.0f) h = h + T::K;
  out[0] = static_cast<E>(blockConvert<T>(h));
  out[1] = static_cast<E>(blockConvert<T>(s));
}

// rgbToHsvBlock on a lane type: R, G, B as floats in, H, S, V as converted
// 32-bit integers out (not yet saturated: the packs do that).  Black (V == 0)
// and grey (d == 0) lanes are flagged; as the samples are not negative,
// V == 0 implies d == 0 and the test on d covers both.  K goes into V and d of
// flagged lanes, so that no lane takes the reciprocal of zero; their H is
// forced to 0 at the end, and their S is 0 already as it multiplies the d
// taken before the fill.
template <class T, class F, class I = typename LanesOf<F>::Int>
inline void rgbToHsvLanes(F R, F G, F B, I& H, I& S, I& V) {
  const F K = broadcast<F>(T::K);
  F Vf = max(max(R, G), B);
  const F m = min(min(R, G), B);
  const F d = Vf - m;
  V = convertLanes<T>(Vf);  // taken before the fill below
  const F flag = cmpEq(d, zero<F>());
  const F fill = flag & K;
  const F eqR = cmpEq(R, Vf);
  const F eqG = cmpEq(G, Vf);
  const F eqB = cmpEq(B, Vf);
  Vf = Vf + fill;
  const F dk = d + fill;
  const F rV = rcpLanes<T>(Vf);
  const F rd = rcpLanes<T>(dk);
  const F s = (rV * d) * K;
  const F Cr = (Vf - R) * rd;
  const F Cg = (Vf - G) * rd;
  const F Cb = (Vf - B) * rd;
  // Tie rule of the main loop.
  const F selG = andNot(eqR, eqG);
  const F selB = andNot(selG, eqB);
  const F selR = andNot(selB, eqR);
  const F hR = Cb - Cg;
  const F hG = (Cr - Cb) + broadcast<F>(2.0f);
  const F hB = (Cg - Cr) + broadcast<F>(4.0f);
  F h = (selR & hR) | ((selG & hG) | (selB & hB));
  h = h * broadcast<F>(T::Q);
  // h < 0: h + K; otherwise h + 0, which leaves h as it is.
  h = h + (cmpLt(h, zero<F>()) & K);
  H = convertLanes<T>(andNot(flag, h));
  S = convertLanes<T>(s);
}

// ---------------------------------------------------------------------------
// Inverse, HSV to RGB.  in = H, S, V; out = R, G, B.

// The sextant arithmetic shared by both forms: x in [0, 6), i its integer
// part, and p, q, t.
struct Sextant {
  int i;
  float p, q, t;
};
template <class T>
inline Sextant hsvSextant(int h, int s, int v) {
  const float x = h == T::kMax ? 0.0f
                               : (static_cast<float>(h) * floatFromBits(kBitsInv60)) *
                                     floatFromBits(T::kBitsD);
  const int i = cvtTrunc(x);
  const float fi = static_cast<float>(i);
  const float Vf = static_cast<float>(v);
  const float vs = Vf * (static_cast<float>(s) * floatFromBits(T::kBitsE));
  const float f = (x - fi) * vs;
  const float p = Vf - vs;
  const float q = Vf - f;
  const float t = p + f;
  return Sextant{i, p, q, t};
}

// Tail: S == 0 copies V; p, q, t rounded in the mode in force and stored as
// their low bits; V is the input integer.
template <class T>
inline void hsvToRgbTail(int h, int s, int v, typename T::Elem out[3]) {
  using E = typename T::Elem;
  if (s == 0) {
    out[0] = out[1] = out[2] = static_cast<E>(v);
    return;
  }
  const Sextant x = hsvSextant<T>(h, s, v);
  const E V = static_cast<E>(v);
  const E p = static_cast<E>(cvtRound(x.p));
  const E q = static_cast<E>(cvtRound(x.q));
  const E t = static_cast<E>(cvtRound(x.t));
  switch (x.i) {
    case 0: out[0] = V; out[1] = t; out[2] = p; break;
    case 1: out[0] = q; out[1] = V; out[2] = p; break;
    case 2: out[0] = p; out[1] = V; out[2] = t; break;
    case 3: out[0] = p; out[1] = q; out[2] = V; break;
    case 4: out[0] = t; out[1] = p; out[2] = V; break;
    default: out[0] = V; out[1] = p; out[2] = q; break;  // 5
  }
}

// Main loop, one lane: every lane computes p, q, t; the sextant is chosen by
// float equality of i with 0..5; a lane with S == 0 takes V.  8u truncates
// and saturates through the packs; 16u rounds and keeps the low 16 bits.
template <class T>
inline int blockConvertInv(float x);
template <>
inline int blockConvertInv<Hsv8u>(float x) { return satPack8u(cvtTrunc(x)); }
template <>
inline int blockConvertInv<Hsv16u>(float x) { return cvtRound(x) & 0xFFFF; }

template <class T>
inline void hsvToRgbBlock(int h, int s, int v, typename T::Elem out[3]) {
  using E = typename T::Elem;
  const Sextant x = hsvSextant<T>(h, s, v);
  const float Vf = static_cast<float>(v);
  float c[3];
  if (s == 0) {
    c[0] = c[1] = c[2] = Vf;
  } else {
    const float fi = static_cast<float>(x.i);
    const float tab[6][3] = {{Vf, x.t, x.p}, {x.q, Vf, x.p}, {x.p, Vf, x.t},
                             {x.p, x.q, Vf}, {x.t, x.p, Vf}, {Vf, x.p, x.q}};
    c[0] = c[1] = c[2] = 0.0f;
    for (int k = 0; k < 6; ++k)
      if (fi == static_cast<float>(k)) {
        c[0] = tab[k][0];
        c[1] = tab[k][1];
        c[2] = tab[k][2];
      }
  }
  for (int k = 0; k < 3; ++k) out[k] = static_cast<E>(blockConvertInv<T>(c[k]));
}

// hsvToRgbBlock on a lane type: H, S, V as floats in, R, G, B as converted
// 32-bit integers out.  H == K acts as 0.  Every sextant takes V, p and one of
// q (odd i) or t (even i): u below.  S == 0 takes V in all three: its vs is
// 0, so p, q and t are V exactly in every sextant, and the selection has
// already given V.
template <class T, class F, class I = typename LanesOf<F>::Int>
inline void hsvToRgbLanes(F Hf, F Sf, F Vf, I& R, I& G, I& B) {
  const F zero_ = zero<F>();
  const F one = broadcast<F>(1.0f);
  const F two = one + one;
  const F three = two + one;
  const F four = three + one;
  const F five = four + one;
  F x = (Hf * broadcastBits<F>(kBitsInv60)) * broadcastBits<F>(T::kBitsD);
  x = andNot(cmpEq(Hf, broadcast<F>(T::K)), x);
  const F fi = toFloat(cvtTrunc(x));
  const F vs = Vf * (Sf * broadcastBits<F>(T::kBitsE));
  const F f = (x - fi) * vs;
  const F p = Vf - vs;
  const F q = Vf - f;
  const F t = p + f;
  const F i0 = cmpEq(fi, zero_), i1 = cmpEq(fi, one);
  const F i2 = cmpEq(fi, two), i3 = cmpEq(fi, three);
  const F i4 = cmpEq(fi, four), i5 = cmpEq(fi, five);
  //            i:  0  1  2  3  4  5
  //            R:  V  q  p  p  t  V
  //            G:  t  V  V  q  p  p
  //            B:  p  p  t  V  V  q
  const F u = select((i1 | i3) | i5, q, t);
  const F r = ((i0 | i5) & Vf) | (((i1 | i4) & u) | ((i2 | i3) & p));
  const F g = ((i1 | i2) & Vf) | (((i0 | i3) & u) | ((i4 | i5) & p));
  const F b = ((i3 | i4) & Vf) | (((i2 | i5) & u) | ((i0 | i1) & p));
  R = convertLanes<T>(r);
  G = convertLanes<T>(g);
  B = convertLanes<T>(b);
}

// ---------------------------------------------------------------------------
// The main loop's formulas on raw registers, as the block loops use them:
// R, G, B (or H, S, V) as floats in, converted 32-bit integers out.  F is the
// float lane type (F32x4 in the SSE2 and SSSE3 loops, F32x8 in the AVX2 ones).
template <class T, class F, class I = typename LanesOf<F>::Int>
inline void rgbToHsvRegs(decltype(F::v) R, decltype(F::v) G, decltype(F::v) B,
                         decltype(I::v)& H, decltype(I::v)& S, decltype(I::v)& V) {
  I h, s, v;
  rgbToHsvLanes<T>(F{R}, F{G}, F{B}, h, s, v);
  H = h.v;
  S = s.v;
  V = v.v;
}
template <class T, class F, class I = typename LanesOf<F>::Int>
inline void hsvToRgbRegs(decltype(F::v) H, decltype(F::v) S, decltype(F::v) V,
                         decltype(I::v)& R, decltype(I::v)& G, decltype(I::v)& B) {
  I r, g, b;
  hsvToRgbLanes<T>(F{H}, F{S}, F{V}, r, g, b);
  R = r.v;
  G = g.v;
  B = b.v;
}
// The 4-lane forms.
template <class T>
constexpr auto rgbToHsvBlockVec = rgbToHsvRegs<T, F32x4>;
template <class T>
constexpr auto hsvToRgbBlockVec = hsvToRgbRegs<T, F32x4>;

inline __m128 u8LanesToFloat(__m128i v, int group) {  // bytes 4g..4g+3 of v
  const __m128i w = group < 2 ? lo8to16(v) : hi8to16(v);
  const __m128i z = _mm_setzero_si128();
  return _mm_cvtepi32_ps((group & 1) ? _mm_unpackhi_epi16(w, z) : _mm_unpacklo_epi16(w, z));
}

// The 8u main-loop conversion of 16 pixels (one register of bytes per input
// channel) to 16 pixels (one register of bytes per output channel), four
// lanes at a time; 8u saturates through packssdw and packuswb.
using Vec8uFn = void (*)(__m128, __m128, __m128, __m128i&, __m128i&, __m128i&);
template <Vec8uFn fn>
inline void block16x8u(const __m128i in[3], __m128i out[3]) {
  __m128i o[3][4];
  for (int g = 0; g < 4; ++g)
    fn(u8LanesToFloat(in[0], g), u8LanesToFloat(in[1], g), u8LanesToFloat(in[2], g), o[0][g],
       o[1][g], o[2][g]);
  for (int k = 0; k < 3; ++k)
    out[k] = vPackS16U8(vPackS32S16(o[k][0], o[k][1]), vPackS32S16(o[k][2], o[k][3]));
}

}  // inline namespace LUM_ISA_NS
}  // namespace hsv
}  // namespace lum

namespace lum {
namespace hsv {

// ---------------------------------------------------------------------------
// One-row kernels.  The C3R kernels serve both layouts: with nchannels == 4
// they hand the row to their AC4R twin, which never writes the fourth sample.
// isa is the call's instruction-set level: SSE2 runs the 4-lane main loop
// (the riffle network for 3-sample pixels); SSSE3 (de)interleaves 8u C3
// pixels by byte shuffles; AVX2 runs the same main loop on 8 float lanes
// over as much of it as its round allows (8u C3 32 pixels, 16u C3 16, AC4 8)
// and leaves the rest to the narrower loops.  Every level gives the same
// bytes.
void innerRGBToHSV_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int nchannels, Isa isa);
void innerHSVToRGB_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int nchannels, Isa isa);
void innerRGBToHSV_16u_C3R(const Lum16u* pSrc, Lum16u* pDst, int width, int nchannels,
                           Isa isa);
void innerHSVToRGB_16u_C3R(const Lum16u* pSrc, Lum16u* pDst, int width, int nchannels,
                           Isa isa);
void innerRGBToHSV_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerHSVToRGB_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerRGBToHSV_16u_AC4R(const Lum16u* pSrc, Lum16u* pDst, int width, Isa isa);
void innerHSVToRGB_16u_AC4R(const Lum16u* pSrc, Lum16u* pDst, int width, Isa isa);

// SSSE3 main loops of the 8u C3 kernels (pccmskcolor_hsv_ssse3.cpp): from
// pixel x on, 16 pixels a round while they fit below end; each returns the
// first pixel not done.
int blockRGBToHSV_8u_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int x, int end);
int blockHSVToRGB_8u_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int x, int end);

// AVX2 main loops (pccmskcolor_hsv_avx2.cpp): pixels [0, n) of a row, n the
// largest multiple of the round (8u C3 32 pixels, 16u C3 16, AC4 8) not
// above end; each returns n and leaves the rest of the row to the caller.
int blockRGBToHSV_8u_C3_avx2(const Lum8u* pSrc, Lum8u* pDst, int end);
int blockHSVToRGB_8u_C3_avx2(const Lum8u* pSrc, Lum8u* pDst, int end);
int blockRGBToHSV_8u_AC4_avx2(const Lum8u* pSrc, Lum8u* pDst, int end);
int blockHSVToRGB_8u_AC4_avx2(const Lum8u* pSrc, Lum8u* pDst, int end);
int blockRGBToHSV_16u_C3_avx2(const Lum16u* pSrc, Lum16u* pDst, int end);
int blockHSVToRGB_16u_C3_avx2(const Lum16u* pSrc, Lum16u* pDst, int end);
int blockRGBToHSV_16u_AC4_avx2(const Lum16u* pSrc, Lum16u* pDst, int end);
int blockHSVToRGB_16u_AC4_avx2(const Lum16u* pSrc, Lum16u* pDst, int end);

// Row drivers (group-1 frame): steps in bytes for 8u, in elements for 16u.
void myRGBToHSV_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep, int width,
                       int height, int nchannels, Isa isa);
void myHSVToRGB_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep, int width,
                       int height, int nchannels, Isa isa);
void myRGBToHSV_16u_C3R(const Lum16u* pSrc, int srcStep, Lum16u* pDst, int dstStep, int width,
                        int height, int nchannels, Isa isa);
void myHSVToRGB_16u_C3R(const Lum16u* pSrc, int srcStep, Lum16u* pDst, int dstStep, int width,
                        int height, int nchannels, Isa isa);

}  // namespace hsv
}  // namespace lum

#endif  // LUM_PCCMSKCOLOR_HSV_H
