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

#include "frame/lum_cpu.h"
#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "lumcc.h"

namespace lum {
namespace yuvsub {
inline namespace LUM_ISA_NS {

// Block sizes of the one-row kernels, in pixels (4:2:2) or cells (4:2:0).
constexpr int kBlockRGBToYUV422 = 16;        // all three forward 4:2:2 kernels
constexpr int kBlockYUV422ToRGB = 16;        // C2C3, P3, and the I1 part of P3C3
constexpr int kBlockYUV422ToRGB_AC4 = 4;     // I2 in rounds of 8, then one of 4
constexpr int kBlockRGBToYUV420_Cells = 8;   // T1 on cells & ~7 (C3P3), T3 everywhere (P3)
constexpr int kBlockYUV420ToRGB_Cells = 8;   // I1 everywhere; I2 on cells & ~7 (AC4)
// The same counted in pairs where a 4:2:2 kernel walks its row by pairs.
constexpr int kBlockPairs422 = kBlockRGBToYUV422 / 2;

// Chroma factors.
constexpr int kUFactor = 16121, kVFactor = 28737;

// The 8-bit value widened to 10 bits by repeating its top bits; used as it
// stands (it is not 4x).
inline int w10(int x) { return (257 * x) >> 6; }

// Luma terms: T is twice the luma, and Y = sat8u(T >> 1) in every path.
// T1: R and G share one shift, B has its own.
inline int t1(int R, int G, int B) { return ((9798 * R + 19235 * G) >> 14) + ((3736 * B) >> 14); }
// T1 on a lane type of 16-bit lanes (I16x8, I16x16): pmaddwd forms
// 9798 R + 19235 G in 32-bit lanes, shifted by 14 and packed back; (3736 B)
// >> 14 is the high half of B * (4 * 3736), exact since B and 14944 fit 16
// bits.  t1RGLanes takes R and G already in pairs of words (R, G of a
// pixel): the low and the high four pixels of each 128-bit half.
template <class I>
inline I t1RGLanes(I rgLo, I rgHi, I B) {
  const I k = broadcastPair16<I>(9798, 19235);
  const I rg = packS32(shrA<14>(madd(rgLo, k)), shrA<14>(madd(rgHi, k)));
  return rg + mulHi(B, broadcast16<I>(4 * 3736));
}
template <class I>
inline I t1Lanes(I R, I G, I B) { return t1RGLanes(interleaveLo(R, G), interleaveHi(R, G), B); }
// T2: one shift for the whole sum.
inline int t2(int R, int G, int B) { return (9798 * R + 19235 * G + 3736 * B) >> 14; }
// T3: truncated high-half products of the 10-bit values.
inline int t3(int R, int G, int B) {
  return sat16s(sat16s(Hs(w10(R), 9798) + Hs(w10(G), 19235)) + Hs(w10(B), 3736));
}
// T3 on lanes of the 10-bit values (saturating adds).
template <class I>
inline I t3Lanes(I wR, I wG, I wB) {
  return addSat(addSat(mulHi(wR, broadcast16<I>(9798)), mulHi(wG, broadcast16<I>(19235))),
                mulHi(wB, broadcast16<I>(3736)));
}
inline uint8_t yOfT(int T) { return static_cast<uint8_t>(sat8u(T >> 1)); }

// U and V of a chroma difference d (twice the mean difference of B or R and
// the luma): sat8u(H(d, factor) + 128).
inline uint8_t chromaOf(int d, int factor) { return static_cast<uint8_t>(sat8u(Hs(d, factor) + 128)); }
// The same on lanes, before the pack (which is the sat8u).
template <class I>
inline I chromaLanes(I d, int factor) { return addSat(mulHi(d, broadcast16<I>(factor)), broadcast16<I>(128)); }
// Sums of adjacent 16-bit lanes, 2k and 2k + 1, as 32-bit lanes.
template <class I>
inline Wide32<I> pairSum(I w) { return madd(w, broadcast16<I>(1)); }

// The lane forms of the pair and cell formulas below work on a group of
// pixels given as two lane registers, lo and hi, as a byte register widens
// within each 128-bit half: pixels 0-7 and 8-15 at 8 lanes; 0-7 | 16-23 and
// 8-15 | 24-31 at 16 lanes.  Pair (cell) sums then pack back in pixel order:
// the chroma of pairs (cells) 0-7, or 0-15, in order.

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
// The same on lanes: T of the lo and hi pixels (t1Lanes) and their R and B
// in, the chroma of their pairs in order out (16-bit, before the pack).  The
// pair sums fit 16 bits and pack back before the shift.
template <class I>
inline void pairT1ChromaLanes(const I T[2], const I R[2], const I B[2], I& u, I& v) {
  const I S = shrA<1>(packS32(pairSum(T[0]), pairSum(T[1])));
  u = chromaLanes(packS32(pairSum(B[0]), pairSum(B[1])) - S, kUFactor);
  v = chromaLanes(packS32(pairSum(R[0]), pairSum(R[1])) - S, kVFactor);
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

// The same on lanes of the 10-bit values.
template <class I>
inline void pairT3Lanes(const I wR[2], const I wG[2], const I wB[2], I T[2], I& u, I& v) {
  Wide32<I> dB[2], dR[2];
  for (int h = 0; h < 2; ++h) {
    T[h] = t3Lanes(wR[h], wG[h], wB[h]);
    const Wide32<I> s = pairSum(T[h]);
    dB[h] = shrA<1>(pairSum(wB[h])) - s;
    dR[h] = shrA<1>(pairSum(wR[h])) - s;
  }
  u = addSat(shrA<1>(mulHi(packS32(dB[0], dB[1]), broadcast16<I>(kUFactor))), broadcast16<I>(128));
  v = addSat(shrA<1>(mulHi(packS32(dR[0], dR[1]), broadcast16<I>(kVFactor))), broadcast16<I>(128));
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

// The chroma of the cells of two rows on lanes: T[row][lo/hi] (by T1 or T3)
// and R, B [row][lo/hi] widened as that T wants them (bytes for T1, w10 for
// T3) in; the chroma of the cells in order out.  A and C are the cell sums
// of B and R shifted by kSumShift (1 for T1, 3 for T3); S is the cell sum of
// T >> 2.  The column sums of the two rows, and the cell sums (their pair
// sums), fit 16 bits (at most 4 * 1023), so the sums pack back to 16-bit
// lanes before the shifts.
template <int kSumShift, class I>
inline void cellsLanes(const I T[2][2], const I R[2][2], const I B[2][2], I& u, I& v) {
  auto cellSums = [](const I x[2][2]) {
    return packS32(pairSum(x[0][0] + x[1][0]), pairSum(x[0][1] + x[1][1]));
  };
  const I S = shrA<2>(cellSums(T));
  u = chromaLanes(shrA<kSumShift>(cellSums(B)) - S, kUFactor);
  v = chromaLanes(shrA<kSumShift>(cellSums(R)) - S, kVFactor);
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

// I1 on lanes, in two steps: the chroma terms H(v, 9338), H(u, -3227),
// H(v, -4759), H(u, 16645) of the pairs or cells, then, for each pixel, those
// of its pair or cell added to T = 2 Y in the formula's order.  The terms are
// computed once per pair or cell and spread to its two pixels
// (interleaveLo/Hi of the terms with themselves, which spread pairs 0-3 and
// 4-7 of each 128-bit half to the lo and hi pixels): the same lanes as
// computing them per pixel from replicated U and V.
template <class I>
struct I1Terms {
  I r, gu, gv, b;
};
template <class I>
inline I1Terms<I> i1TermsLanes(I U, I V) {
  const I u = shl<4>(U - broadcast16<I>(128)), v = shl<4>(V - broadcast16<I>(128));
  return {mulHi(v, broadcast16<I>(9338)), mulHi(u, broadcast16<I>(-3227)),
          mulHi(v, broadcast16<I>(-4759)), mulHi(u, broadcast16<I>(16645))};
}
template <class I>
inline I1Terms<I> spreadLo(const I1Terms<I>& t) {
  return {interleaveLo(t.r, t.r), interleaveLo(t.gu, t.gu), interleaveLo(t.gv, t.gv),
          interleaveLo(t.b, t.b)};
}
template <class I>
inline I1Terms<I> spreadHi(const I1Terms<I>& t) {
  return {interleaveHi(t.r, t.r), interleaveHi(t.gu, t.gu), interleaveHi(t.gv, t.gv),
          interleaveHi(t.b, t.b)};
}
template <class I>
inline void i1ApplyLanes(I Y, const I1Terms<I>& t, I o[3]) {
  const I T = shl<1>(Y);
  o[0] = shrA<1>(addSat(T, t.r));
  o[1] = shrA<1>(addSat(addSat(T, t.gu), t.gv));
  o[2] = shrA<1>(addSat(T, t.b));
}

// I2 (the AC4 kernels): y = 16 Y, u = 128 (U - 128), v = 128 (V - 128), a
// rounding 8 before the shift by 4.
inline void i2(int Y, int U, int V, uint8_t* rgb) {
  const int y = 16 * Y, u = 128 * (U - 128), v = 128 * (V - 128);
  rgb[0] = static_cast<uint8_t>(sat8u(sat16s(sat16s(y + Hs(v, 9338)) + 8) >> 4));
  rgb[1] = static_cast<uint8_t>(sat8u(sat16s(y - sat16s(Hs(u, 3227) + Hs(v, 4759)) + 8) >> 4));
  rgb[2] = static_cast<uint8_t>(sat8u(sat16s(sat16s(y + Hs(u, 16646)) + 8) >> 4));
}

// I2 on lanes, in two steps as I1: the chroma terms of U and V (per pixel,
// or once per pair or cell and spread to its pixels: the same lanes), then
// each pixel's y = 16 Y with them.  No sum of I2 can leave the 16-bit range
// (y is at most 4080, H(u, 16646) lies in -4162 .. 4128, H(v, 9338) and
// H(u, 3227) + H(v, 4759) within +-2400), so every saturating add of the
// scalar form is a plain one, and the rounding 8 goes into the terms:
// H(v, 9338) + 8, H(u, 3227) + H(v, 4759) - 8, H(u, 16646) + 8.
template <class I>
struct I2Terms {
  I r, g, b;
};
template <class I>
inline I2Terms<I> i2TermsLanes(I U, I V) {
  const I u = shl<7>(U - broadcast16<I>(128)), v = shl<7>(V - broadcast16<I>(128));
  const I r8 = broadcast16<I>(8);
  return {mulHi(v, broadcast16<I>(9338)) + r8,
          mulHi(u, broadcast16<I>(3227)) + mulHi(v, broadcast16<I>(4759)) - r8,
          mulHi(u, broadcast16<I>(16646)) + r8};
}
template <class I>
inline void i2ApplyLanes(I Y, const I2Terms<I>& t, I o[3]) {
  const I y = shl<4>(Y);
  o[0] = shrA<4>(y + t.r);
  o[1] = shrA<4>(y - t.g);
  o[2] = shrA<4>(y + t.b);
}
template <class I>
inline void i2Lanes(I Y, I U, I V, I o[3]) { i2ApplyLanes(Y, i2TermsLanes(U, V), o); }
template <class I>
inline I2Terms<I> spreadLo(const I2Terms<I>& t) {
  return {interleaveLo(t.r, t.r), interleaveLo(t.g, t.g), interleaveLo(t.b, t.b)};
}
template <class I>
inline I2Terms<I> spreadHi(const I2Terms<I>& t) {
  return {interleaveHi(t.r, t.r), interleaveHi(t.g, t.g), interleaveHi(t.b, t.b)};
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

}  // inline namespace LUM_ISA_NS
}  // namespace yuvsub
}  // namespace lum


namespace lum {
namespace yuvsub {

// ---------------------------------------------------------------------------
// One-row kernels, taking the call's instruction-set level.  4:2:2: row
// pointers and the pixel count.  4:2:0: two rows at once, counted in cells.
void innerRGBToYUV422_8u_C3C2R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerRGBToYUV422_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width,
                               Isa isa);
void innerRGBToYUV422_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                             Lum8u* pU, Lum8u* pV, int width, Isa isa);
void innerYUV422ToRGB_8u_C2C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void unrealYUV(const Lum8u* pSrc, Lum8u* pDst);
void innerYUV422ToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                               int width, Isa isa);
void innerYUV422ToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR,
                             Lum8u* pG, Lum8u* pB, int width, Isa isa);
void innerYUV422ToRGB_8u_P3AC4R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                                int width, Isa isa);
void innerRGBToYUV420_8u_C3P3R(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                               Lum8u* pU, Lum8u* pV, int cells, Isa isa);
void innerRGBToYUV420_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, int srcStep,
                             Lum8u* pY0, Lum8u* pY1, Lum8u* pU, Lum8u* pV, int cells,
                             Isa isa);
void innerYUV420ToRGB_8u_P3C3R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                               const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int cells,
                               Isa isa);
void innerYUV420ToRGB_8u_P3AC4R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                                const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int cells,
                                Isa isa);
void innerYUV420ToRGB_8u_P3R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                             const Lum8u* pV, Lum8u* pR, Lum8u* pG, Lum8u* pB, int dstStep,
                             int cells, Isa isa);

// ---------------------------------------------------------------------------
// Faster block loops.  Each converts from pixel (4:2:2) or cell (4:2:0) x,
// a multiple of its round, in rounds while a whole round fits below end,
// and returns the first pixel or cell not done; the caller goes on from
// there with the narrower loops.  SSSE3 (pccyuv02_ssse3.cpp): the SSE2 block
// loops with the 3-byte pixels (de)interleaved by byte shuffles, 16 pixels
// (8 cells) a round.  AVX2 (pccyuv02_avx2.cpp): the lane formulas at 16
// lanes, 32 pixels (16 cells) a round.
int blockRGBToYUV422_C3C2_ssse3(const Lum8u* pSrc, Lum8u* pDst, int x, int end);
int blockRGBToYUV422_C3P3_ssse3(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int x, int end);
int blockYUV422ToRGB_C2C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int x, int end);
int blockYUV422ToRGB_P3C3_ssse3(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                                int x, int end);
int blockRGBToYUV420_C3P3_ssse3(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                                Lum8u* pU, Lum8u* pV, int c, int endCells);
int blockYUV420ToRGB_P3C3_ssse3(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                                const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int c, int endCells);

int blockRGBToYUV422_C3C2_avx2(const Lum8u* pSrc, Lum8u* pDst, int x, int end);
int blockRGBToYUV422_C3P3_avx2(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int x, int end);
int blockRGBToYUV422_P3_avx2(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                             Lum8u* pU, Lum8u* pV, int x, int end);
int blockYUV422ToRGB_C2C3_avx2(const Lum8u* pSrc, Lum8u* pDst, int x, int end);
int blockYUV422ToRGB_P3C3_avx2(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                               int x, int end);
int blockYUV422ToRGB_P3_avx2(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR,
                             Lum8u* pG, Lum8u* pB, int x, int end);
int blockYUV422ToRGB_AC4_avx2(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                              int x, int end);
int blockRGBToYUV420_C3P3_avx2(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                               Lum8u* pU, Lum8u* pV, int c, int endCells);
int blockRGBToYUV420_P3_avx2(const Lum8u* const src0[3], const Lum8u* const src1[3], Lum8u* pY0,
                             Lum8u* pY1, Lum8u* pU, Lum8u* pV, int c, int endCells);
int blockYUV420ToRGB_P3C3_avx2(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                               const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int c, int endCells);
int blockYUV420ToRGB_P3_avx2(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                             const Lum8u* pV, Lum8u* const row0[3], Lum8u* const row1[3], int c,
                             int endCells);
int blockYUV420ToRGB_AC4_avx2(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                              const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int c, int endCells);

}  // namespace yuvsub
}  // namespace lum

#endif  // LUM_PCCYUV02_H
