// RGB with YCbCr and YCrCb 4:2:2 and 4:2:0: the internal layers and the
// scalar forms of every formula, each beside its lane form where a block
// loop uses it.  The coefficients are the studio-range set of the 4:4:4
// YCbCr family (pccycbcr.h: kryp, kry420, the inverse formulas D, E, F, G
// and `chop`), reused here as they stand.
//
// Chroma is computed once per pair (4:2:2) or 2x2 cell (4:2:0) from the
// summed channels; upsampling replicates.  A 4:2:2 pixel-order (C2) row is
// Y0 Cb Y1 Cr per pair for YCbCr and Y0 Cr Y1 Cb for YCrCb; the two differ in
// nothing else.  Each kernel keeps its own arithmetic: the block loops and
// the tails differ by up to a level on purpose, and in the forward 4:2:2 tail
// only the first pixel of a pair is rounded.
#ifndef LUM_PCCYCBCR02_H
#define LUM_PCCYCBCR02_H

#include <stdint.h>

#include "frame/lum_cpu.h"
#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "lumcc.h"
#include "video/pccycbcr.h"

namespace lum {
namespace ycbcrsub {
inline namespace LUM_ISA_NS {

using ycbcr::kCbB;
using ycbcr::kCbG;
using ycbcr::kCbR;
using ycbcr::kCrB;
using ycbcr::kCrG;
using ycbcr::kCrR;
using ycbcr::kYB;
using ycbcr::kYG;
using ycbcr::kYR;

// Block sizes: 4:2:2 in pixels, 4:2:0 in cells.
constexpr int kBlockFwd422 = 8;        // luma block form on width & ~7
constexpr int kBlockInv422C2 = 4;      // E on width & ~3 (rounds of 8, then one of 4)
constexpr int kBlockInv422P3C3 = 8;    // F on width & ~7
constexpr int kBlockFwd420Cells = 4;   // kry420 forms on cells & ~3
constexpr int kBlockInv420Cells = 4;   // the 4767 form on cells & ~3

// ---------------------------------------------------------------------------
// 4:2:2 forward.

// Block luma: unsigned high-half products of 256 R, 256 G, 256 B, saturating
// unsigned sums, no rounding term.
inline int fwd422BlockY(int R, int G, int B) {
  const int s = sat16u(sat16u(Hu(256u * R, kYR) + Hu(256u * G, kYG)) + Hu(256u * B, kYB));
  return sat8u((s >> 8) + 16);
}
template <class I>
inline I fwd422BlockYLanes(I R, I G, I B) {
  I s = addSatU(mulHiU(shl<8>(R), broadcast16<I>(kYR)), mulHiU(shl<8>(G), broadcast16<I>(kYG)));
  s = addSatU(s, mulHiU(shl<8>(B), broadcast16<I>(kYB)));
  return shrL<8>(s) + broadcast16<I>(16);  // the pack to bytes is the sat8u
}

// Tail luma of a pair: the first pixel is formula A (rounded, 16.5), the
// second is not (16.0).
inline uint8_t fwd422TailY0(int R, int G, int B) { return ycbcr::formAY(R, G, B); }
inline uint8_t fwd422TailY1(int R, int G, int B) {
  return static_cast<uint8_t>((kYR * R + kYG * G + kYB * B + 1048576) >> 16);
}

// Chroma of a pair from the sums SR, SG, SB (block loop and tail alike).
inline uint8_t pairCb(int SR, int SG, int SB) {
  return static_cast<uint8_t>((kCbR * SR + kCbG * SG + kCbB * SB + 16842752) >> 17);
}
inline uint8_t pairCr(int SR, int SG, int SB) {
  return static_cast<uint8_t>((kCrR * SR + kCrG * SG + kCrB * SB + 16842752) >> 17);
}
// The same on lanes: pmaddwd of a channel's 16-bit lanes with the
// coefficient gives c * (X0 + X1) per pair, so the pair's sum comes with the
// product; one 32-bit lane a pair (the values stay in 16 .. 240).
template <class I, class I32>
inline I32 pairChromaLanes(I R, I G, I B, int c0, int c1, int c2) {
  const I32 s = madd(R, broadcast16<I>(c0)) + madd(G, broadcast16<I>(c1)) +
                madd(B, broadcast16<I>(c2)) + broadcast32<I32>(16842752);
  return shrA<17>(s);
}

// ---------------------------------------------------------------------------
// 4:2:0 forward (kry420, scaled by 4096).

inline int fwd420BlockY(int R, int G, int B) {
  const ycbcr::Forward420Set& k = ycbcr::kry420;
  const int s = sat16s(sat16s(Hs(128 * R, k.yR) + Hs(128 * G, k.yG)) + Hs(128 * B, k.yB));
  return sat8u(sat16s(s + k.yBias) >> 3);
}
template <class I>
inline I fwd420BlockYLanes(I R, I G, I B) {
  const ycbcr::Forward420Set& k = ycbcr::kry420;
  I s = addSat(mulHi(shl<7>(R), broadcast16<I>(k.yR)), mulHi(shl<7>(G), broadcast16<I>(k.yG)));
  s = addSat(s, mulHi(shl<7>(B), broadcast16<I>(k.yB)));
  return shrA<3>(addSat(s, broadcast16<I>(k.yBias)));
}
// Chroma of a cell in the block loop, from the sums over its four pixels.
inline int fwd420BlockChroma(int SR, int SG, int SB, int c0, int c1, int c2) {
  const int s = sat16s(sat16s(Hs(32 * SR, c0) + Hs(32 * SG, c1)) + Hs(32 * SB, c2));
  return sat8u(sat16s(s + ycbcr::kry420.cBias) >> 3);
}
inline int fwd420BlockCb(int SR, int SG, int SB) {
  const ycbcr::Forward420Set& k = ycbcr::kry420;
  return fwd420BlockChroma(SR, SG, SB, k.cbR, k.cbG, k.cbB);
}
inline int fwd420BlockCr(int SR, int SG, int SB) {
  const ycbcr::Forward420Set& k = ycbcr::kry420;
  return fwd420BlockChroma(SR, SG, SB, k.crR, k.crG, k.crB);
}
template <class I>
inline I fwd420BlockChromaLanes(I SR, I SG, I SB, int c0, int c1, int c2) {
  I s = addSat(mulHi(shl<5>(SR), broadcast16<I>(c0)), mulHi(shl<5>(SG), broadcast16<I>(c1)));
  s = addSat(s, mulHi(shl<5>(SB), broadcast16<I>(c2)));
  return shrA<3>(addSat(s, broadcast16<I>(ycbcr::kry420.cBias)));
}
// Chroma of a remaining cell: the 65536ths set, the sums of four, >> 18.
inline uint8_t cellCb(int SR, int SG, int SB) {
  return static_cast<uint8_t>((kCbR * SR + kCbG * SG + kCbB * SB + 33587200) >> 18);
}
inline uint8_t cellCr(int SR, int SG, int SB) {
  return static_cast<uint8_t>((kCrR * SR + kCrG * SG + kCrB * SB + 33587200) >> 18);
}

// ---------------------------------------------------------------------------
// 4:2:0 inverse block form (4767, 6537, 1605, 3330, 8261; a shift by 3).
inline void inv420Block(int Y, int Cb, int Cr, uint8_t* rgb) {
  const int y = Hs(128 * (Y - 16), 4767), cb = 128 * (Cb - 128), cr = 128 * (Cr - 128);
  rgb[0] = static_cast<uint8_t>(sat8u(sat16s(y + Hs(cr, 6537)) >> 3));
  rgb[1] = static_cast<uint8_t>(sat8u(sat16s(y - sat16s(Hs(cb, 1605) + Hs(cr, 3330))) >> 3));
  rgb[2] = static_cast<uint8_t>(sat8u(sat16s(y + Hs(cb, 8261)) >> 3));
}
template <class I>
inline void inv420BlockLanes(I Y, I Cb, I Cr, I o[3]) {
  const I y = mulHi(ycbcr::centred(Y, 16), broadcast16<I>(4767));
  const I cb = ycbcr::centred(Cb, 128), cr = ycbcr::centred(Cr, 128);
  o[0] = shrA<3>(addSat(y, mulHi(cr, broadcast16<I>(6537))));
  o[1] = shrA<3>(subSat(y, addSat(mulHi(cb, broadcast16<I>(1605)), mulHi(cr, broadcast16<I>(3330)))));
  o[2] = shrA<3>(addSat(y, mulHi(cb, broadcast16<I>(8261))));
}

// ---------------------------------------------------------------------------
// Width 1: the one chroma byte c of a one-pixel C2 row stands for Cb and Cr,
// with constants of its own and no separation of 128.
inline void unrealPixel(int Y, int c, uint8_t* rgb) {
  rgb[0] = static_cast<uint8_t>(sat8u((76284 * Y + 104595 * c - 14608761) >> 16));
  rgb[1] = static_cast<uint8_t>(sat8u((76284 * Y - 78971 * c + 8887730) >> 16));
  rgb[2] = static_cast<uint8_t>(sat8u((76284 * Y + 132186 * c - 18140365) >> 16));
}

}  // inline namespace LUM_ISA_NS
}  // namespace ycbcrsub
}  // namespace lum

namespace lum {
namespace ycbcrsub {

// Chroma order of a C2 row: Cb at byte 1 (YCbCr422) or Cr at byte 1
// (YCrCb422).
enum class Order { CbCr, CrCb };

// One-row kernels.  4:2:2: row pointers and the pixel count; 4:2:0: two rows
// at once, counted in cells.
void innerRGBToYCbCr422_C3_C2R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerRGBToYCrCb422_C3_C2R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerRGBToYCbCr422_C3P2_C3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pDst,
                                 int width);
void innerRGBToYCrCb422_C3P2_C3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pDst,
                                 int width);
void innerRGBToYCbCr420_8u_C3P3R(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                                 Lum8u* pCb, Lum8u* pCr, int cells, Isa isa);
void innerYCbCrToRGB422_C2_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerYCrCbToRGB422_C2_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerYCbCr422ToRGB_C2_C3P2R(const Lum8u* pSrc, Lum8u* pR, Lum8u* pG, Lum8u* pB, int width);
void innerYCrCb422ToRGB_C2_C3P2R(const Lum8u* pSrc, Lum8u* pR, Lum8u* pG, Lum8u* pB, int width);
void innerYCbCr422ToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pCb, const Lum8u* pCr,
                                 Lum8u* pDst, int width, Isa isa);
void innerYCbCr420ToRGB_8u_P3C3R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pCb,
                                 const Lum8u* pCr, Lum8u* pRow0, Lum8u* pRow1, int cells, Isa isa);
// Width 1, one pixel a row over `height` rows (the YCbCr and YCrCb forms are
// the same routine: the one chroma byte serves both).
void unrealYCbCr(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep, int height);
void unrealYCbCrP(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3], int dstStep, int height);

// The kernels with 3-byte pixels compiled for SSSE3 (pccycbcr02_ssse3.cpp):
// the same templates with the pixels (de)interleaved by byte shuffles,
// entered only when the call's level is SSSE3 or more.
void rowRGBToYCbCr422_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int width);
void rowRGBToYCrCb422_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int width);
void rowRGBToYCbCr420_C3_ssse3(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                               Lum8u* pCb, Lum8u* pCr, int cells);
// The C2 to C3 rows go on from pixel x, where the AVX2 block loop stopped.
void rowYCbCrToRGB422_C2C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int width, int x);
void rowYCrCbToRGB422_C2C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int width, int x);
void rowYCbCr422ToRGB_P3C3_ssse3(const Lum8u* pY, const Lum8u* pCb, const Lum8u* pCr, Lum8u* pDst,
                                 int width);
void rowYCbCr420ToRGB_P3C3_ssse3(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pCb,
                                 const Lum8u* pCr, Lum8u* pRow0, Lum8u* pRow1, int cells);
// AVX2 (pccycbcr02_avx2.cpp): E on C2 in rounds of 32 pixels below end; returns
// the first pixel not done.
int blockYCbCrToRGB422_C2C3_avx2(const Lum8u* pSrc, Lum8u* pDst, int end, bool cbFirst);

}  // namespace ycbcrsub
}  // namespace lum

#endif  // LUM_PCCYCBCR02_H
