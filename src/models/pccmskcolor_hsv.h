// RGB and HSV: the internal layers (row drivers, one-row kernels) and the
// scalar forms of every formula.
//
// All kernels compute in single precision and divide through the approximate
// reciprocal (rcpss / rcpps), bare for 8u and with one Newton step for 16u.
// For each direction there are two scalar forms:
//   - ...Tail: the scalar tail of the kernels, branch by branch;
//   - ...Block: the per-lane meaning of the SSE2 main loop (whose vector twin,
//     ...BlockVec, stands in pccmskcolor_hsv.cpp, and its eight-lane AVX2
//     twin, ...BlockVec8, in pccmskcolor_hsv_avx2.cpp): masks instead of
//     branches, its own tie rule, and its own conversions and saturations.
// The two are not the same function on purpose; both are required.
#ifndef LUM_PCCMSKCOLOR_HSV_H
#define LUM_PCCMSKCOLOR_HSV_H

#include <stdint.h>
#include <string.h>

#include "frame/lum_simd.h"
#include "lumcc.h"

namespace lum {
namespace hsv {

// Pixels a round of the main loop; the rest of a row (0 to 3 pixels) goes
// through the scalar tail.
constexpr int kBlock = 4;

// ---------------------------------------------------------------------------
// Constants.  Those that are not exact in single precision are given by their
// bit patterns.
constexpr uint32_t kBitsInv60 = 0x3C888889u;     // 0.016666668  1/60
constexpr uint32_t kBitsDeg8u = 0x3FB4B4B5u;     // 1.4117647    360/255
constexpr uint32_t kBitsDeg16u = 0x3BB400B4u;    // 0.005493248  360/65535
constexpr uint32_t kBitsInv255 = 0x3B808081u;    // 0.003921569  1/255
constexpr uint32_t kBitsInv65535 = 0x37800080u;  // 1.5259e-05   1/65535

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
};
struct Hsv16u {
  using Elem = Lum16u;
  static constexpr int kMax = 65535;
  static constexpr float K = 65535.0f;
  static constexpr float Q = 10922.5f;
  static constexpr uint32_t kBitsD = kBitsDeg16u;
  static constexpr uint32_t kBitsE = kBitsInv65535;
  static float rcp(float x) { return rcpNewtonS(x); }  // one Newton step
};

// The saturations of the main loops, lane by lane.
// 8u: signed 32 -> 16 (packssdw), then unsigned 16 -> 8 (packuswb).
inline int satBlock8u(int v) { return sat8u(sat16s(v)); }
// 16u: subtract 32768 (wrapping), saturate to signed 16, add 32768 back.
inline int satBlock16u(int v) {
  const int32_t biased = static_cast<int32_t>(static_cast<uint32_t>(v) - 32768u);
  return sat16s(biased) + 32768;
}

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
inline int blockConvert<Hsv8u>(float x) { return satBlock8u(cvtTrunc(x)); }
template <>
inline int blockConvert<Hsv16u>(float x) { return satBlock16u(cvtRound(x)); }

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
inline int blockConvertInv<Hsv8u>(float x) { return satBlock8u(cvtTrunc(x)); }
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

}  // namespace hsv
}  // namespace lum

// ---------------------------------------------------------------------------
// One-row kernels.  The C3R kernels serve both layouts: with nchannels == 4
// they hand the row to their AC4R twin, which never writes the fourth sample.
void innerRGBToHSV_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int nchannels);
void innerHSVToRGB_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int nchannels);
void innerRGBToHSV_16u_C3R(const Lum16u* pSrc, Lum16u* pDst, int width, int nchannels);
void innerHSVToRGB_16u_C3R(const Lum16u* pSrc, Lum16u* pDst, int width, int nchannels);
void innerRGBToHSV_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width);
void innerHSVToRGB_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width);
void innerRGBToHSV_16u_AC4R(const Lum16u* pSrc, Lum16u* pDst, int width);
void innerHSVToRGB_16u_AC4R(const Lum16u* pSrc, Lum16u* pDst, int width);

// Main-loop paths.  Every path gives the same bytes; the kernels above take
// the widest that the processor has (hsvBestPath).
//   kHsvPathSse2:  SSE2 throughout (the riffle network for 3-sample pixels);
//   kHsvPathSsse3: 8u C3 (de)interleaves 16 pixels by SSSE3 byte shuffles;
//                  the other kernels as kHsvPathSse2;
//   kHsvPathAvx2:  eight float lanes (pccmskcolor_hsv_avx2.cpp) over as much
//                  of the main loop as its round allows (8u C3 32 pixels,
//                  16u C3 16, AC4 8), then the SSSE3 / SSE2 loop.
enum HsvPath : int { kHsvPathSse2 = 0, kHsvPathSsse3 = 1, kHsvPathAvx2 = 2 };
HsvPath hsvBestPath();

// The one-row kernels with an explicit path (a path wider than the
// processor has must not be asked for).
void innerRGBToHSV_8u_C3R_path(const Lum8u* pSrc, Lum8u* pDst, int width, HsvPath path);
void innerHSVToRGB_8u_C3R_path(const Lum8u* pSrc, Lum8u* pDst, int width, HsvPath path);
void innerRGBToHSV_8u_AC4R_path(const Lum8u* pSrc, Lum8u* pDst, int width, HsvPath path);
void innerHSVToRGB_8u_AC4R_path(const Lum8u* pSrc, Lum8u* pDst, int width, HsvPath path);
void innerRGBToHSV_16u_C3R_path(const Lum16u* pSrc, Lum16u* pDst, int width, HsvPath path);
void innerHSVToRGB_16u_C3R_path(const Lum16u* pSrc, Lum16u* pDst, int width, HsvPath path);
void innerRGBToHSV_16u_AC4R_path(const Lum16u* pSrc, Lum16u* pDst, int width, HsvPath path);
void innerHSVToRGB_16u_AC4R_path(const Lum16u* pSrc, Lum16u* pDst, int width, HsvPath path);

// AVX2 main loops (pccmskcolor_hsv_avx2.cpp), entered only when the
// processor has AVX2: pixels [0, n) of a row, n the largest multiple of the
// round (8u C3 32 pixels, 16u C3 16, AC4 8) not above end; each returns n
// and leaves the rest of the row to the caller.
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
                       int height, int nchannels);
void myHSVToRGB_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep, int width,
                       int height, int nchannels);
void myRGBToHSV_16u_C3R(const Lum16u* pSrc, int srcStep, Lum16u* pDst, int dstStep, int width,
                        int height, int nchannels);
void myHSVToRGB_16u_C3R(const Lum16u* pSrc, int srcStep, Lum16u* pDst, int dstStep, int width,
                        int height, int nchannels);

#endif  // LUM_PCCMSKCOLOR_HSV_H
