// CbYCr 4:2:2 (bytes Cb Y0 Cr Y1 per pixel pair) with RGB and BGR: the
// internal layers, the two channel tables and the scalar forms of every
// formula, each beside its lane form where a block loop uses it.  The
// coefficients are those of the YCbCr family (pccycbcr.h), the pair chroma of
// the plain BGR conversion that of the 4:2:2 YCbCr family (pccycbcr02.h).
//
// RGB to CbYCr filters chroma: each chroma sample is taken from three
// pixels with weights 1, 2, 1 (the missing neighbour at a row's start counts
// as neutral chroma); the gamma form passes each channel through the BT.601
// transfer curve first.  BGR to CbYCr takes a plain pair mean, and its block
// loop and tail differ by up to a level.  CbYCr to RGB or BGR replicates a
// pair's chroma.
#ifndef LUM_PCCCBYCR_H
#define LUM_PCCCBYCR_H

#include <stdint.h>

#include "frame/lum_cpu.h"
#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "lumcc.h"
#include "video/pccycbcr.h"
#include "video/pccycbcr02.h"

namespace lum {
namespace cbycr {
inline namespace LUM_ISA_NS {

// Block sizes, in pixels.
constexpr int kBlockToRGB = 8;    // F on width & ~7
constexpr int kBlockFromBGR = 8;  // the block forms on width & ~7

// ---------------------------------------------------------------------------
// The channel tables of the forward conversion: the identity, and the
// transfer curve round(255 * f(i / 255)), f(x) = 4.5 x below 0.018 and
// 1.099 x^0.45 - 0.099 above, computed in double with halves rounded away
// from zero (entry 1 is 4.5, stored as 5).
struct ChannelTable {
  int32_t v[256];
};
constexpr ChannelTable makeIdentity() {
  ChannelTable t{};
  for (int i = 0; i < 256; ++i) t.v[i] = i;
  return t;
}
inline constexpr ChannelTable kPlainTable = makeIdentity();
inline constexpr ChannelTable kGammaTable = {{
    0,   5,   9,   14,  18,  23,  27,  30,  34,  37,  40,  43,  46,  48,  51,  53,  55,  58,  60,
    62,  64,  66,  68,  70,  72,  73,  75,  77,  78,  80,  82,  83,  85,  86,  88,  89,  91,  92,
    94,  95,  97,  98,  99,  101, 102, 103, 104, 106, 107, 108, 109, 111, 112, 113, 114, 115, 116,
    118, 119, 120, 121, 122, 123, 124, 125, 126, 127, 128, 129, 130, 131, 132, 133, 134, 135, 136,
    137, 138, 139, 140, 141, 142, 143, 144, 145, 146, 147, 147, 148, 149, 150, 151, 152, 153, 154,
    154, 155, 156, 157, 158, 159, 159, 160, 161, 162, 163, 164, 164, 165, 166, 167, 168, 168, 169,
    170, 171, 171, 172, 173, 174, 174, 175, 176, 177, 177, 178, 179, 180, 180, 181, 182, 182, 183,
    184, 185, 185, 186, 187, 187, 188, 189, 189, 190, 191, 191, 192, 193, 193, 194, 195, 195, 196,
    197, 197, 198, 199, 199, 200, 201, 201, 202, 203, 203, 204, 205, 205, 206, 206, 207, 208, 208,
    209, 209, 210, 211, 211, 212, 213, 213, 214, 214, 215, 216, 216, 217, 217, 218, 218, 219, 220,
    220, 221, 221, 222, 223, 223, 224, 224, 225, 225, 226, 227, 227, 228, 228, 229, 229, 230, 230,
    231, 232, 232, 233, 233, 234, 234, 235, 235, 236, 236, 237, 238, 238, 239, 239, 240, 240, 241,
    241, 242, 242, 243, 243, 244, 244, 245, 245, 246, 246, 247, 247, 248, 248, 249, 249, 250, 251,
    251, 252, 252, 253, 253, 254, 254, 255, 255}};

// ---------------------------------------------------------------------------
// RGB to CbYCr, on the table's values.  One arithmetic for the whole row.

inline uint8_t filterY(int R, int G, int B) {
  return static_cast<uint8_t>(sat8u(((8422 * R + 16515 * G + 3212 * B + 16384) >> 15) + 16));
}
// Coefficients of the centre pixel and of each neighbour (half weight).
struct FilterSet {
  int c0, c1, c2, h0, h1, h2;
};
constexpr FilterSet kFilterCb = {-2426, -4769, 7193, -1213, -2385, 3596};
constexpr FilterSet kFilterCr = {7193, -6030, -1164, 3596, -3015, -582};
inline int centreTerm(const int p[3], const FilterSet& k) { return k.c0 * p[0] + k.c1 * p[1] + k.c2 * p[2]; }
inline int halfTerm(const int p[3], const FilterSet& k) { return k.h0 * p[0] + k.h1 * p[1] + k.h2 * p[2]; }
inline uint8_t filterChroma(int X) { return static_cast<uint8_t>(sat8u(((X + 16383) >> 15) + 128)); }
// The chroma of the pair at pixel i: centre i, neighbours i - 1 and i + 1
// (a null neighbour is outside the row and adds nothing).
inline uint8_t pairFiltered(const int* left, const int centre[3], const int* right,
                            const FilterSet& k) {
  int X = centreTerm(centre, k);
  if (left) X += halfTerm(left, k);
  if (right) X += halfTerm(right, k);
  return filterChroma(X);
}
// On lanes.  Y of 8 pixels in two registers of four 32-bit lanes (pixels
// 0-3, 4-7), the rounding 16384 paired with B.
template <class I, class I32>
inline void filterYLanes(I R, I G, I B, I32 out[2]) {
  const I kRG = broadcastPair16<I>(8422, 16515), kB1 = broadcastPair16<I>(3212, 16384);
  const I one = broadcast16<I>(1);
  const I32 y16 = broadcast32<I32>(16);
  out[0] = shrA<15>(madd(interleaveLo(R, G), kRG) + madd(interleaveLo(B, one), kB1)) + y16;
  out[1] = shrA<15>(madd(interleaveHi(R, G), kRG) + madd(interleaveHi(B, one), kB1)) + y16;
}
// The chroma of 4 pairs: each channel given as 32-bit lanes of (centre,
// sum of the two neighbours) 16-bit halves, one lane a pair.
template <class I, class I32>
inline I32 pairFilteredLanes(I R, I G, I B, const FilterSet& k) {
  const I32 X = madd(R, broadcastPair16<I>(k.c0, k.h0)) + madd(G, broadcastPair16<I>(k.c1, k.h1)) +
                madd(B, broadcastPair16<I>(k.c2, k.h2));
  return shrA<15>(X + broadcast32<I32>(16383)) + broadcast32<I32>(128);  // the packs clamp
}
// An odd last pixel: its own Cb at double weight, no neighbours.
inline uint8_t lastFilteredCb(const int p[3]) { return filterChroma(2 * centreTerm(p, kFilterCb)); }

// ---------------------------------------------------------------------------
// CbYCr to RGB: F on the block (pccycbcr.h); G with 32768 added before each
// shift on the other pixels.
inline void tailToRGB(int Y, int Cb, int Cr, uint8_t* rgb) {
  const int cb = Cb - 128, cr = Cr - 128;
  const int S = 76282 * Y - 1220512 + 32768;
  rgb[0] = static_cast<uint8_t>(sat8u((104593 * cr + S) >> 16));
  rgb[1] = static_cast<uint8_t>(sat8u((S - 25689 * cb - 53279 * cr) >> 16));
  rgb[2] = static_cast<uint8_t>(sat8u((132184 * cb + S) >> 16));
}

// ---------------------------------------------------------------------------
// BGR to CbYCr, block forms: unsigned luma with a bias 2112 and a shift by 7;
// chroma from the pair sums times 64, a bias 16448 and a shift by 7.
inline int blockFromBGRY(int R, int G, int B) {
  const int s = sat16u(sat16u(Hu(256u * R, 8422) + Hu(256u * G, 16515)) + Hu(256u * B, 3212));
  return sat8u(sat16u(s + 2112) >> 7);
}
template <class I>
inline I blockFromBGRYLanes(I R, I G, I B) {
  I s = addSatU(mulHiU(shl<8>(R), broadcast16<I>(8422)), mulHiU(shl<8>(G), broadcast16<I>(16515)));
  s = addSatU(s, mulHiU(shl<8>(B), broadcast16<I>(3212)));
  return shrL<7>(addSatU(s, broadcast16<I>(2112)));  // the pack is the sat8u
}
inline int blockFromBGRChroma(int SR, int SG, int SB, int c0, int c1, int c2) {
  return sat8u((Hs(64 * SR, c0) + Hs(64 * SG, c1) + Hs(64 * SB, c2) + 16448) >> 7);
}
inline int blockFromBGRCb(int SR, int SG, int SB) {
  return blockFromBGRChroma(SR, SG, SB, ycbcr::kCbR, ycbcr::kCbG, ycbcr::kCbB);
}
inline int blockFromBGRCr(int SR, int SG, int SB) {
  return blockFromBGRChroma(SR, SG, SB, ycbcr::kCrR, ycbcr::kCrG, ycbcr::kCrB);
}
// On lanes of pair sums (the sums stay below 16 bits and the total inside
// a signed lane: plain additions).
template <class I>
inline I blockFromBGRChromaLanes(I SR, I SG, I SB, int c0, int c1, int c2) {
  const I s = mulHi(shl<6>(SR), broadcast16<I>(c0)) + mulHi(shl<6>(SG), broadcast16<I>(c1)) +
              mulHi(shl<6>(SB), broadcast16<I>(c2));
  return shrA<7>(s + broadcast16<I>(16448));
}

}  // inline namespace LUM_ISA_NS
}  // namespace cbycr
}  // namespace lum

namespace lum {
namespace cbycr {

// Row drivers (the row loop and the pixel loop together).
void myRGBToCbYCr422_8u_C3C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                              int dstStep, Isa isa);
void myRGBToCbYCr422Gamma_8u_C3C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height,
                                   int srcStep, int dstStep, Isa isa);
void myCbYCr422ToRGB_8u_C2C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                              int dstStep, Isa isa);
void myCbYCr422ToBGR_8u_C2AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height,
                               int srcStep, int dstStep, Lum8u alphaValue);
void myAlCbYCr422ToBGR_8u_C2AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height,
                                 int srcStep, int dstStep, Lum8u alphaValue);
void myBGRToCbYCr422_8u_AC4C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height,
                               int srcStep, int dstStep);
void myAlBGRToCbYCr422_8u_AC4C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height,
                                 int srcStep, int dstStep);


// The rows with 3-byte pixels compiled for SSSE3 (pcccbycr_ssse3.cpp), entered
// only when the call's level is SSSE3 or more.
void rowRGBToCbYCr422_ssse3(const Lum8u* pSrc, Lum8u* pDst, int width);
void rowRGBToCbYCr422Gamma_ssse3(const Lum8u* pSrc, Lum8u* pDst, int width);
// CbYCr to RGB goes on from pixel x, where the AVX2 block loop stopped.
void rowCbYCr422ToRGB_ssse3(const Lum8u* pSrc, Lum8u* pDst, int width, int x);
// AVX2 (pcccbycr_avx2.cpp): F in rounds of 32 pixels below end; returns the
// first pixel not done.
int blockCbYCr422ToRGB_avx2(const Lum8u* pSrc, Lum8u* pDst, int end);

}  // namespace cbycr
}  // namespace lum

#endif  // LUM_PCCCBYCR_H
