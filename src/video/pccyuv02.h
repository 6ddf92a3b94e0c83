// RGB and YUV 4:2:2 and 4:2:0: the internal layers and the scalar forms of
// every formula.  The scalar forms are the tails and the reference that the
// SSE2 block loops (pccyuv02_blocks.h) are written against.
//
// Coefficients are those of the 4:4:4 YUV family: luma 9798, 19235, 3736 in
// 32768ths; U factor 16121 and V factor 28737 in 65536ths of twice the
// difference.  Chroma is the mean difference of a pair or a cell, taken once
// on sums (never a per-pixel chroma averaged); upsampling replicates the
// pair's or the cell's U and V.
//
// Layouts: a 4:2:2 pixel-order (C2) row is Y0 U Y1 V per pair; chroma planes
// hold one sample per pair (4:2:2) or per 2x2 cell (4:2:0).  Pairs run from
// pixel 0; cells are the pairs of rows 2j and 2j + 1.
#ifndef LUM_PCCYUV02_H
#define LUM_PCCYUV02_H

#include <stdint.h>

#include "frame/lum_simd.h"
#include "lumcc.h"

namespace lum {
namespace yuvsub {

// Block sizes of the one-row kernels, in pixels (4:2:2) or cells (4:2:0).
constexpr int kBlockRGBToYUV422 = 16;        // all three forward 4:2:2 kernels
constexpr int kBlockYUV422ToRGB = 16;        // C2C3, P3, and the I1 part of P3C3
constexpr int kBlockYUV422ToRGB_AC4 = 4;     // I2 in rounds of 8, then one of 4
constexpr int kBlockRGBToYUV420_Cells = 8;   // T1 on cells & ~7 (C3P3), T3 everywhere (P3)
constexpr int kBlockYUV420ToRGB_Cells = 8;   // I1 everywhere; I2 on cells & ~7 (AC4)

// Chroma factors.
constexpr int kUFactor = 16121, kVFactor = 28737;

// The 8-bit value widened to 10 bits by repeating its top bits; used as it
// stands (it is not 4x).
inline int w10(int x) { return (257 * x) >> 6; }

// Luma terms: T is twice the luma, and Y = sat8u(T >> 1) in every path.
// T1: R and G share one shift, B has its own.
inline int t1(int R, int G, int B) { return ((9798 * R + 19235 * G) >> 14) + ((3736 * B) >> 14); }
// T2: one shift for the whole sum.
inline int t2(int R, int G, int B) { return (9798 * R + 19235 * G + 3736 * B) >> 14; }
// T3: truncated high-half products of the 10-bit values.
inline int t3(int R, int G, int B) {
  return sat16s(sat16s(Hs(w10(R), 9798) + Hs(w10(G), 19235)) + Hs(w10(B), 3736));
}
inline uint8_t yOfT(int T) { return static_cast<uint8_t>(sat8u(T >> 1)); }

// U and V of a chroma difference d (twice the mean difference of B or R and
// the luma): sat8u(H(d, factor) + 128).
inline uint8_t chromaOf(int d, int factor) { return static_cast<uint8_t>(sat8u(Hs(d, factor) + 128)); }

// 4:2:2 forward, a pair (pixel 2k, 2k + 1) by T1: S = (T0 + T1) >> 1,
// U from B0 + B1 - S, V from R0 + R1 - S.
inline void pairT1(const int p0[3], const int p1[3], uint8_t y[2], uint8_t* u, uint8_t* v) {
  const int T0 = t1(p0[0], p0[1], p0[2]), T1 = t1(p1[0], p1[1], p1[2]);
  const int S = (T0 + T1) >> 1;
  y[0] = yOfT(T0);
  y[1] = yOfT(T1);
  *u = chromaOf(p0[2] + p1[2] - S, kUFactor);
  *v = chromaOf(p0[0] + p1[0] - S, kVFactor);
}
// 4:2:2 forward, a pair by T3: s = T0 + T1, U from (w(B0) + w(B1)) >> 1 - s,
// halved after the product.
inline void pairT3(const int p0[3], const int p1[3], uint8_t y[2], uint8_t* u, uint8_t* v) {
  const int T0 = t3(p0[0], p0[1], p0[2]), T1 = t3(p1[0], p1[1], p1[2]);
  const int s = T0 + T1;
  y[0] = yOfT(T0);
  y[1] = yOfT(T1);
  *u = static_cast<uint8_t>(sat8u((Hs(((w10(p0[2]) + w10(p1[2])) >> 1) - s, kUFactor) >> 1) + 128));
  *v = static_cast<uint8_t>(sat8u((Hs(((w10(p0[0]) + w10(p1[0])) >> 1) - s, kVFactor) >> 1) + 128));
}

// 4:2:2 forward, the last pixel of an odd width.
// Pixel order to C2: Y and U by T1; there is no V byte.
inline void lastC3C2(int R, int G, int B, uint8_t* y, uint8_t* u) {
  const int T = t1(R, G, B);
  *y = yOfT(T);
  *u = chromaOf(2 * B - T, kUFactor);
}
// Pixel order or planes to planes, with L = 9798 R + 19235 G + 3736 B and
// the rounding terms of U and V (16383 and 32767 in the pixel-order kernel,
// none in the plane kernel).
inline void lastToP3(int R, int G, int B, int roundU, int roundV, uint8_t* y, uint8_t* u,
                     uint8_t* v) {
  const int L = 9798 * R + 19235 * G + 3736 * B;
  const int D = (32768 * B - L + roundU) >> 15;
  const int E = (32768 * R - L + roundV) >> 15;
  *y = static_cast<uint8_t>(L >> 15);
  *u = static_cast<uint8_t>(((D * kUFactor) >> 15) + 128);
  *v = static_cast<uint8_t>(sat8u(((E * kVFactor) >> 15) + 128));
}
constexpr int kLastRoundU_C3P3 = 16383, kLastRoundV_C3P3 = 32767;

// 4:2:0 forward, the chroma of a cell from its sums: U from A - S, V from
// C - S (A, C: the blue and red sums scaled to twice the mean; S: the mean T).
inline void cellChroma(int A, int C, int S, uint8_t* u, uint8_t* v) {
  *u = chromaOf(A - S, kUFactor);
  *v = chromaOf(C - S, kVFactor);
}

// ---------------------------------------------------------------------------
// Inverse formulas.  u, v are U - 128, V - 128 scaled as each says.

// I1: T = 2 Y, u = 16 (U - 128), v = 16 (V - 128); one bit more than the
// output, halved at the end.
inline void i1(int Y, int U, int V, uint8_t* rgb) {
  const int u = 16 * (U - 128), v = 16 * (V - 128), T = 2 * Y;
  rgb[0] = static_cast<uint8_t>(sat8u(sat16s(T + Hs(v, 9338)) >> 1));
  rgb[1] = static_cast<uint8_t>(sat8u(sat16s(sat16s(T + Hs(u, -3227)) + Hs(v, -4759)) >> 1));
  rgb[2] = static_cast<uint8_t>(sat8u(sat16s(T + Hs(u, 16645)) >> 1));
}

// I2 (the AC4 kernels): y = 16 Y, u = 128 (U - 128), v = 128 (V - 128), a
// rounding 8 before the shift by 4.
inline void i2(int Y, int U, int V, uint8_t* rgb) {
  const int y = 16 * Y, u = 128 * (U - 128), v = 128 * (V - 128);
  rgb[0] = static_cast<uint8_t>(sat8u(sat16s(sat16s(y + Hs(v, 9338)) + 8) >> 4));
  rgb[1] = static_cast<uint8_t>(sat8u(sat16s(y - sat16s(Hs(u, 3227) + Hs(v, 4759)) + 8) >> 4));
  rgb[2] = static_cast<uint8_t>(sat8u(sat16s(sat16s(y + Hs(u, 16646)) + 8) >> 4));
}

// I3, scalar, 16 fractional bits; `round` is added before each shift (0, or
// 32768 in the remaining cells of the 4:2:0 AC4 kernel).
inline void i3(int Y, int U, int V, uint8_t* rgb, int round = 0) {
  const int u = U - 128, v = V - 128, y = 65536 * Y;
  rgb[0] = static_cast<uint8_t>(sat8u((y + 74711 * v + round) >> 16));
  rgb[1] = static_cast<uint8_t>(sat8u((y - 25821 * u - 38076 * v + round) >> 16));
  rgb[2] = static_cast<uint8_t>(sat8u((y + 133169 * u + round) >> 16));
}
constexpr int kRoundI3_420AC4 = 32768;

// I4, scalar, 13 fractional bits.
inline void i4(int Y, int U, int V, uint8_t* rgb) {
  const int u = U - 128, v = V - 128, y = 8192 * Y;
  rgb[0] = static_cast<uint8_t>(sat8u((y + 9338 * v) >> 13));
  rgb[1] = static_cast<uint8_t>(sat8u((y - 3227 * u - 4759 * v) >> 13));
  rgb[2] = static_cast<uint8_t>(sat8u((y + 16645 * u) >> 13));
}

}  // namespace yuvsub
}  // namespace lum

// ---------------------------------------------------------------------------
// One-row kernels.  4:2:2: row pointers and the pixel count.  4:2:0: two
// rows at once, counted in cells.
void innerRGBToYUV422_8u_C3C2R(const Lum8u* pSrc, Lum8u* pDst, int width);
void innerRGBToYUV422_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width);
void innerRGBToYUV422_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                             Lum8u* pU, Lum8u* pV, int width);
void innerYUV422ToRGB_8u_C2C3R(const Lum8u* pSrc, Lum8u* pDst, int width);
void unrealYUV(const Lum8u* pSrc, Lum8u* pDst);
void innerYUV422ToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                               int width);
void innerYUV422ToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR,
                             Lum8u* pG, Lum8u* pB, int width);
void innerYUV422ToRGB_8u_P3AC4R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                                int width);
void innerRGBToYUV420_8u_C3P3R(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                               Lum8u* pU, Lum8u* pV, int cells);
void innerRGBToYUV420_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, int srcStep,
                             Lum8u* pY0, Lum8u* pY1, Lum8u* pU, Lum8u* pV, int cells);
void innerYUV420ToRGB_8u_P3C3R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                               const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int cells);
void innerYUV420ToRGB_8u_P3AC4R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                                const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int cells);
void innerYUV420ToRGB_8u_P3R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                             const Lum8u* pV, Lum8u* pR, Lum8u* pG, Lum8u* pB, int dstStep,
                             int cells);

// Row drivers: image pointers, then width and height (pixels for 4:2:2 and
// for the pixel-order 4:2:0 forward driver, cells for the other 4:2:0
// drivers), then the steps.  The drivers without R take a packed image as one
// row of n pixels.
void myRGBToYUV422_8u_C3C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                            int dstStep);
void myRGBToYUV422_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width,
                            int height, int srcStep, int stepY, int stepU, int stepV);
void myRGBToYUV422_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY, Lum8u* pU,
                          Lum8u* pV, int width, int height, int srcStep, int stepY, int stepU,
                          int stepV);
void myRGBToYUV422_8u_C3P3(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int n);
void myRGBToYUV422_8u_P3(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY, Lum8u* pU,
                         Lum8u* pV, int n);
void myYUV422ToRGB_8u_C2C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                            int dstStep);
void myYUV422ToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                            int width, int height, int stepY, int stepU, int stepV, int dstStep);
void myYUV422ToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR, Lum8u* pG,
                          Lum8u* pB, int width, int height, int stepY, int stepU, int stepV,
                          int dstStep);
void myYUV422ToRGB_8u_P3AC4R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                             int width, int height, int stepY, int stepU, int stepV, int dstStep);
void myYUV422ToRGB_8u_P3C3(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst, int n);
void myYUV422ToRGB_8u_P3(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR, Lum8u* pG,
                         Lum8u* pB, int n);
void myRGBToYUV420_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width,
                            int height, int srcStep, int stepY, int stepU, int stepV);
void myRGBToYUV420_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY, Lum8u* pU,
                          Lum8u* pV, int cellsW, int cellsH, int srcStep, int stepY, int stepU,
                          int stepV);
void myYUV420ToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                            int cellsW, int cellsH, int stepY, int stepU, int stepV, int dstStep);
void myYUV420ToRGB_8u_P3AC4R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                             int cellsW, int cellsH, int stepY, int stepU, int stepV, int dstStep);
void myYUV420ToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR, Lum8u* pG,
                          Lum8u* pB, int cellsW, int cellsH, int stepY, int stepU, int stepV,
                          int dstStep);

#endif  // LUM_PCCYUV02_H
