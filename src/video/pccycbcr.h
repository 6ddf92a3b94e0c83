// RGB and YCbCr (BT.601, studio range): the coefficient sets of the YCbCr
// and YUV families, the clamping table `chop`, and the scalar forms of the
// 4:4:4 kernels.  The later video, packed-RGB and 4:2:x YCbCr families
// include this header for the constants and `chop`; the 4:4:4 kernels use
// the scalar forms as their tails and as the reference that their SSE2 block
// loops (pccycbcr_blocks.h) are written against.
//
// Every kernel has arithmetic of its own: a block formula and a tail formula
// that differ by up to one level, and constants that differ in the last digit
// from one kernel to the next.  That is the contract; nothing here is to be
// unified.
#ifndef LUM_PCCYCBCR_H
#define LUM_PCCYCBCR_H

#include <stdint.h>

#include "frame/lum_cpu.h"
#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "lumcc.h"

namespace lum {
namespace ycbcr {
inline namespace LUM_ISA_NS {

// ---------------------------------------------------------------------------
// Coefficient sets, as 16-bit lanes of the block loops.

// kryp: forward coefficients scaled by 65536, Y (R, G, B), Cb (R, G, B),
// Cr (G, B) -- the red coefficient of Cr equals the blue one of Cb, 28770.
// The green luma coefficient 33030 does not fit a signed lane and is stored
// as -32506 (its bit pattern; the luma products are unsigned).  Then the byte
// mask and the luma offset 16.
struct ForwardSet {
  int16_t yR, yG, yB, cbR, cbG, cbB, crG, crB;
  int16_t byteMask, yOffset;
};
inline constexpr ForwardSet kryp = {16843, -32506, 6423, -9699, -19071, 28770, -24117, -4653,
                                    0x00ff, 16};
// The same, as the integers the scalar forms use.
constexpr int kYR = 16843, kYG = 33030, kYB = 6423;
constexpr int kCbR = -9699, kCbG = -19071, kCbB = 28770;
constexpr int kCrR = 28770, kCrG = -24117, kCrB = -4653;

// kyr (kyrp in the YUV kernels): the YUV inverse set of the 4:2:2 and 4:2:0
// YUV kernels, V to R, V to G, U to G, U to B.  Some packed-RGB kernels hold
// 16646 in place of the last one.
struct YuvInverseSet {
  int16_t vR, vG, uG, uB;
};
inline constexpr YuvInverseSet kyr = {9338, -4759, -3227, 16645};

// kyrXXX: the YCbCr inverse set scaled by 8192: Y, Cr to R, Cr to G (negated),
// Cb to G (negated), Cb to B, and the luma offset.
struct InverseSet8192 {
  int16_t y, crR, crG, cbG, cbB, yOffset;
};
inline constexpr InverseSet8192 kyrXXX = {9535, 13074, 6660, 3211, 16523, 16};

// kyrp of this family: the YCbCr inverse set scaled by 16384, then the luma
// and chroma offsets.
struct InverseSet16384 {
  int16_t y, crR, crG, cbG, cbB, yOffset, cOffset;
};
inline constexpr InverseSet16384 kyrp16384 = {19069, 26146, 13318, 6421, 16520, 16, 128};

// kry420: the forward set of the 4:2:0 YCbCr kernel, scaled by 4096: luma
// (R, G, B); Cb of red and Cr of red-or-blue share 1798, so the pairs run
// (Cb R, Cb B), (Cb G, Cr G), (Cr R, Cr B); then the luma and chroma biases.
struct Forward420Set {
  int16_t yR, yG, yB, cbR, cbB, cbG, crG, crR, crB, yBias, cBias;
};
inline constexpr Forward420Set kry420 = {1052, 2064, 401, -607, 1798, -1192, -1508, 1798, -291,
                                         132, 1028};

// ---------------------------------------------------------------------------
// chop: clamps -370 .. 629 to 0 .. 255 by lookup.  Entry i is 0 for i below
// 1, i for 1 to 254, and 255 above.
struct ChopTable {
  uint8_t v[1000];
};
constexpr ChopTable makeChop() {
  ChopTable t{};
  for (int k = 0; k < 1000; ++k) {
    const int i = k - 370;
    t.v[k] = static_cast<uint8_t>(i < 1 ? 0 : (i > 254 ? 255 : i));
  }
  return t;
}
inline constexpr ChopTable kChop = makeChop();
constexpr int kChopLow = -370, kChopHigh = 629;
inline uint8_t chop(int i) { return kChop.v[i - kChopLow]; }

// ---------------------------------------------------------------------------
// Block sizes of the one-row kernels.
constexpr int kBlockRGBToYCbCr_C3 = 8;     // B, then A on width & 7
constexpr int kBlockRGBToYCbCr_P3 = 16;    // C per plane, then A on width & 15
constexpr int kBlockYCbCrToRGB_C3 = 4;     // E in rounds of 8 then one of 4, D on width & 3
constexpr int kBlockYCbCrToRGB_P3 = 4;     // the same over planes
constexpr int kBlockYCbCrToRGB_P3C3 = 8;   // F, then G on width & 7

// ---------------------------------------------------------------------------
// Scalar forms.  Notation: Hs/Hu (a * b) >> 16 signed/unsigned, sat8u,
// sat16s, sat16u clamps (lum_simd.h); >> is arithmetic.

// A: the forward formula on the studio range, with a rounding term (16.5 and
// 128.5 times 65536).  The values cannot leave 0..255: the low byte is kept.
inline uint8_t formAY(int R, int G, int B) {
  return static_cast<uint8_t>((kYR * R + kYG * G + kYB * B + 1081344) >> 16);
}
inline uint8_t formACb(int R, int G, int B) {
  return static_cast<uint8_t>((kCbR * R + kCbG * G + kCbB * B + 8421376) >> 16);
}
inline uint8_t formACr(int R, int G, int B) {
  return static_cast<uint8_t>((kCrR * R + kCrG * G + kCrB * B + 8421376) >> 16);
}
inline void formA(int R, int G, int B, uint8_t* out) {
  out[0] = formAY(R, G, B);
  out[1] = formACb(R, G, B);
  out[2] = formACr(R, G, B);
}

// B: block loop of the C3 forward kernel.  R and G share one shift by 11, B
// has its own, the sum is shifted by 4 more; no rounding term.
struct FormBRow {
  int c0, c1, c2, d;
};
constexpr FormBRow kFormBY = {8421, 16515, 3211, 16};
constexpr FormBRow kFormBCb = {-4850, -9535, 14385, 128};
constexpr FormBRow kFormBCr = {14385, -12059, -2327, 128};
inline int formBChan(int R, int G, int B, FormBRow k) {
  return sat8u(((((k.c0 * R + k.c1 * G) >> 11) + ((k.c2 * B) >> 11)) >> 4) + k.d);
}
inline void formB(int R, int G, int B, uint8_t* out) {
  out[0] = static_cast<uint8_t>(formBChan(R, G, B, kFormBY));
  out[1] = static_cast<uint8_t>(formBChan(R, G, B, kFormBCb));
  out[2] = static_cast<uint8_t>(formBChan(R, G, B, kFormBCr));
}
// B on a lane type of 16-bit lanes (I16x8, I16x16): pmaddwd forms c0 R + c1 G
// in 32-bit lanes, shifted by 11 and packed back; (c2 B) >> 11 is the high
// half of (32 B) * c2, exact since 32 B and c2 fit 16 bits.  Then the shift
// by 4 and d; the pack to bytes clamps (the sat8u).
template <class I>
inline void formBLanes(I R, I G, I B, I o[3]) {
  const I rgLo = interleaveLo(R, G), rgHi = interleaveHi(R, G), b32 = shl<5>(B);
  auto chan = [&](FormBRow k) {
    const I kRG = broadcastPair16<I>(k.c0, k.c1);
    const I s = packS32(shrA<11>(madd(rgLo, kRG)), shrA<11>(madd(rgHi, kRG)));
    return shrA<4>(s + mulHi(b32, broadcast16<I>(k.c2))) + broadcast16<I>(k.d);
  };
  o[0] = chan(kFormBY);
  o[1] = chan(kFormBCb);
  o[2] = chan(kFormBCr);
}

// C: block loop of the plane forward kernel.  Luma in unsigned 16-bit
// arithmetic with truncated products and a rounding 128; chroma in signed
// 16-bit arithmetic on 128 R, 128 G, 128 B with a rounding 64.
inline int formCY(int R, int G, int B) {
  const int s = sat16u(sat16u(Hu(256u * R, kYR) + Hu(256u * G, kYG)) + Hu(256u * B, kYB));
  return sat8u((sat16u(s + 128) >> 8) + 16);
}
inline int formCChroma(int R, int G, int B, int c0, int c1, int c2) {
  const int s = sat16s(sat16s(Hs(128 * R, c0) + Hs(128 * G, c1)) + Hs(128 * B, c2));
  return sat8u(sat16s((sat16s(s + 64) >> 7) + 128));
}
inline int formCCb(int R, int G, int B) { return formCChroma(R, G, B, kCbR, kCbG, kCbB); }
inline int formCCr(int R, int G, int B) { return formCChroma(R, G, B, kCrR, kCrG, kCrB); }
// C on lanes, one output plane at a time (the pack clamps to bytes).
template <class I>
inline I formCYLanes(I R, I G, I B) {
  I s = addSatU(mulHiU(shl<8>(R), broadcast16<I>(kYR)), mulHiU(shl<8>(G), broadcast16<I>(kYG)));
  s = addSatU(s, mulHiU(shl<8>(B), broadcast16<I>(kYB)));
  return shrL<8>(addSatU(s, broadcast16<I>(128))) + broadcast16<I>(16);
}
template <class I>
inline I formCChromaLanes(I R, I G, I B, int c0, int c1, int c2) {
  I s = addSat(mulHi(shl<7>(R), broadcast16<I>(c0)), mulHi(shl<7>(G), broadcast16<I>(c1)));
  s = addSat(s, mulHi(shl<7>(B), broadcast16<I>(c2)));
  return addSat(shrA<7>(addSat(s, broadcast16<I>(64))), broadcast16<I>(128));
}
template <class I>
inline I formCCbLanes(I R, I G, I B) { return formCChromaLanes(R, G, B, kCbR, kCbG, kCbB); }
template <class I>
inline I formCCrLanes(I R, I G, I B) { return formCChromaLanes(R, G, B, kCrR, kCrG, kCrB); }

// D: the scalar inverse formula, clamped by chop.
inline void formD(int Y, int Cb, int Cr, uint8_t* rgb) {
  const int cb = Cb - 128, cr = Cr - 128;
  const int S = 76284 * Y - 1220544;
  rgb[0] = chop((104595 * cr + S) >> 16);
  rgb[1] = chop((S - 25690 * cb - 53281 * cr) >> 16);
  rgb[2] = chop((132186 * cb + S) >> 16);
}

// E: block loops of the C3 and plane inverse kernels: luma 9536, Cb to G
// -3203, no rounding before the shift by 4.
inline void formE(int Y, int Cb, int Cr, uint8_t* rgb) {
  const int y = Hs(128 * (Y - 16), 9536), cb = 128 * (Cb - 128), cr = 128 * (Cr - 128);
  rgb[0] = static_cast<uint8_t>(sat8u(sat16s(y + Hs(cr, 13074)) >> 4));
  rgb[1] = static_cast<uint8_t>(sat8u(sat16s(sat16s(Hs(cb, -3203) + y) + Hs(cr, -6660)) >> 4));
  rgb[2] = static_cast<uint8_t>(sat8u(sat16s(y + Hs(cb, 16523)) >> 4));
}

// The operands of E and F on lanes: 128 (C - 128) and 128 (Y - 16).
template <class I>
inline I centred(I v, int offset) { return shl<7>(v - broadcast16<I>(offset)); }
// E on lanes: R, G, B before the pack.
template <class I>
inline void formELanes(I Y, I Cb, I Cr, I o[3]) {
  const I y = mulHi(centred(Y, 16), broadcast16<I>(9536));
  const I cb = centred(Cb, 128), cr = centred(Cr, 128);
  o[0] = shrA<4>(addSat(y, mulHi(cr, broadcast16<I>(13074))));
  o[1] = shrA<4>(addSat(addSat(mulHi(cb, broadcast16<I>(-3203)), y), mulHi(cr, broadcast16<I>(-6660))));
  o[2] = shrA<4>(addSat(y, mulHi(cb, broadcast16<I>(16523))));
}

// F: block loop of the planes-to-pixels inverse kernel: the kyrXXX constants
// (luma 9535, Cb to G -3211) and a rounding 8 before the shift by 4.
inline void formF(int Y, int Cb, int Cr, uint8_t* rgb) {
  const int y = Hs(128 * (Y - 16), kyrXXX.y), cb = 128 * (Cb - 128), cr = 128 * (Cr - 128);
  rgb[0] = static_cast<uint8_t>(sat8u(sat16s(sat16s(y + Hs(cr, kyrXXX.crR)) + 8) >> 4));
  rgb[1] = static_cast<uint8_t>(
      sat8u(sat16s(sat16s(sat16s(y + Hs(cb, -kyrXXX.cbG)) + Hs(cr, -kyrXXX.crG)) + 8) >> 4));
  rgb[2] = static_cast<uint8_t>(sat8u(sat16s(sat16s(y + Hs(cb, kyrXXX.cbB)) + 8) >> 4));
}

// F on lanes.
template <class I>
inline void formFLanes(I Y, I Cb, I Cr, I o[3]) {
  const I y = mulHi(centred(Y, 16), broadcast16<I>(kyrXXX.y));
  const I cb = centred(Cb, 128), cr = centred(Cr, 128), r8 = broadcast16<I>(8);
  o[0] = shrA<4>(addSat(addSat(y, mulHi(cr, broadcast16<I>(kyrXXX.crR))), r8));
  o[1] = shrA<4>(addSat(addSat(addSat(y, mulHi(cb, broadcast16<I>(-kyrXXX.cbG))),
                               mulHi(cr, broadcast16<I>(-kyrXXX.crG))),
                        r8));
  o[2] = shrA<4>(addSat(addSat(y, mulHi(cb, broadcast16<I>(kyrXXX.cbB))), r8));
}

// G: tail of the planes-to-pixels inverse kernel: D with other constants and
// comparisons in place of chop.
inline void formG(int Y, int Cb, int Cr, uint8_t* rgb) {
  const int cb = Cb - 128, cr = Cr - 128;
  const int S = 76282 * Y - 1220512;
  rgb[0] = static_cast<uint8_t>(sat8u((104593 * cr + S) >> 16));
  rgb[1] = static_cast<uint8_t>(sat8u((S - 25689 * cb - 53279 * cr) >> 16));
  rgb[2] = static_cast<uint8_t>(sat8u((132184 * cb + S) >> 16));
}

}  // inline namespace LUM_ISA_NS
}  // namespace ycbcr
}  // namespace lum

namespace lum {
namespace ycbcr {

// One-row kernels: row pointers, the pixel count, the call's level.
void innerRGBToYCbCr_C3_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerRGBToYCbCr_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerRGBToYCbCr_C3P2_C3P2R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                                Lum8u* pCb, Lum8u* pCr, int width, Isa isa);
void innerYCbCrToRGB_C3_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerYCbCrToRGB_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerYCbCrToRGB_C3P2_C3P2R(const Lum8u* pY, const Lum8u* pCb, const Lum8u* pCr, Lum8u* pR,
                                Lum8u* pG, Lum8u* pB, int width, Isa isa);
void innerYCbCrToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pCb, const Lum8u* pCr, Lum8u* pDst,
                              int width, Isa isa);

// Faster block loops: from pixel x (a multiple of the round) in rounds while
// a whole round fits below end; each returns the first pixel not done, and
// the caller goes on from there with the narrower loops.  SSSE3
// (pccycbcr_ssse3.cpp): the SSE2 loops with the 3-byte pixels
// (de)interleaved by byte shuffles, 16 pixels a round.  AVX2
// (pccycbcr_avx2.cpp): the lane formulas at 16 lanes, 32 pixels a round;
// the plane pass of C writes output plane `plane` (0 Y, 1 Cb, 2 Cr).
int blockRGBToYCbCr_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int x, int end);
int blockYCbCrToRGB_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int x, int end);
int blockYCbCrToRGB_P3C3_ssse3(const Lum8u* const src[3], Lum8u* pDst, int x, int end);
int blockRGBToYCbCr_C3_avx2(const Lum8u* pSrc, Lum8u* pDst, int x, int end);
int blockRGBToYCbCr_P3_avx2(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pOut,
                            int plane, int x, int end);
int blockYCbCrToRGB_C3_avx2(const Lum8u* pSrc, Lum8u* pDst, int x, int end);
int blockYCbCrToRGB_P3_avx2(const Lum8u* const src[3], Lum8u* const dst[3], int x, int end);
int blockYCbCrToRGB_P3C3_avx2(const Lum8u* const src[3], Lum8u* pDst, int x, int end);

}  // namespace ycbcr
}  // namespace lum

#endif  // LUM_PCCYCBCR_H
