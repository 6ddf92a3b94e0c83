// RGB and YUV 4:4:4: public functions, row drivers and one-row kernels.
//
// Each kernel runs its block formula over the first (width & ~(block - 1))
// pixels of the row and its tail formula over the rest; both are required
// and differ on purpose (see pccyuv01.h for the scalar forms).  The block
// loops may take 32 or 16 pixels a round where the block is smaller: the
// formula is per pixel, so only the block/tail boundary matters.
#include "video/pccyuv01.h"
#include "video/pccyuv01_blocks.h"

#include "frame/lum_frame.h"
#include "frame/lum_simd.h"

using namespace lum;
using namespace lum::yuv444;

namespace {

using namespace yuv444blocks;

// AC4 rows: the block loop (8 pixels a round) in the shared template, then
// the tail formula one pixel at a time; only the three colour bytes of each
// destination pixel are stored.
template <class Tail>
inline void tailAC4(const Lum8u* pSrc, Lum8u* pDst, int x, int width, Tail tail) {
  for (; x < width; ++x) {
    Lum8u out[3];
    tail(pSrc[4 * x], pSrc[4 * x + 1], pSrc[4 * x + 2], out);
    memcpy(pDst + 4 * x, out, 3);
  }
}

}  // namespace

// ===========================================================================
// One-row kernels.
//
// The four pixel-order kernels have two block paths with the same bytes: the
// SSE2 network, and the SSSE3 byte shuffles where the processor has them
// (the formulas are the same SSE2 code in both; only the (de)interleave of
// the 3-byte pixels differs).  The two AC4 kernels store the colour bytes of
// a pixel with a 16-bit and an 8-bit store, or, where the processor has
// AVX-512 byte masks, with one masked store for four pixels; alpha is never
// read nor written either way.  The call's instruction-set level chooses.

// Block F1 (16), tail F3.
void innerRGBToYUV_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  const bool ssse3 = isa >= kIsaSsse3;
  const int block = width & ~(kBlockRGBToYUV_C3 - 1);
  int x = ssse3 ? blockRGBToYUV_C3_ssse3(pSrc, pDst, block)
                : blockC3toC3<NetSse2>(pSrc, pDst, block, StepF1{});
  for (; x < width; ++x) f3(pSrc[3 * x], pSrc[3 * x + 1], pSrc[3 * x + 2], pDst + 3 * x);
}

// Block F2 (8) storing only the colour bytes, tail F3; the fourth byte of every
// destination pixel is left as it was.
void innerRGBToYUV_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  const bool masked = isa >= kIsaAvx512;
  const int block = width & ~(kBlockRGBToYUV_AC4 - 1);
  const int x = masked ? blockRGBToYUV_AC4_avx512(pSrc, pDst, block)
                       : blockAC4<StoreSplit>(pSrc, pDst, block, StepF2{});
  tailAC4(pSrc, pDst, x, width, f3);
}

namespace {
// One plane pass of the P3 forward kernel: block F1 (16) and tail F4 for the
// same channel.
template <class VecFn, class TailFn>
inline void passRGBToYUV_P3(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pOut,
                            int width, int plane, Isa isa, VecFn vec, TailFn tail) {
  const int block = width & ~(kBlockRGBToYUV_P3 - 1);
  int x = isa >= kIsaAvx2 ? blockRGBToYUV_P3_avx2(pR, pG, pB, pOut, plane, block) : 0;
  for (; x < block; x += 16) {
    const __m128i r = loadu(pR + x), g = loadu(pG + x), b = loadu(pB + x);
    storeu(pOut + x, vPackS16U8(vec(lo8to16(r), lo8to16(g), lo8to16(b)),
                                vec(hi8to16(r), hi8to16(g), hi8to16(b))));
  }
  for (; x < width; ++x) pOut[x] = static_cast<Lum8u>(tail(pR[x], pG[x], pB[x]));
}
}  // namespace

// One pass per destination plane: Y, then U, then V.
void innerRGBToYUV_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                          Lum8u* pU, Lum8u* pV, int width, Isa isa) {
  passRGBToYUV_P3(pR, pG, pB, pY, width, 0, isa, f1YVec, f4Y);
  passRGBToYUV_P3(pR, pG, pB, pU, width, 1, isa, f1UVec, f4U);
  passRGBToYUV_P3(pR, pG, pB, pV, width, 2, isa, f1VVec, f4V);
}

// Block F1 (8), tail F5.
void innerRGBToYUV_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width,
                            Isa isa) {
  const bool ssse3 = isa >= kIsaSsse3;
  const int block = width & ~(kBlockRGBToYUV_C3P3 - 1);
  int x = ssse3 ? blockRGBToYUV_C3P3_ssse3(pSrc, pY, pU, pV, block)
                : blockC3toP3<NetSse2>(pSrc, pY, pU, pV, block, StepF1{});
  for (; x < width; ++x) f5(pSrc[3 * x], pSrc[3 * x + 1], pSrc[3 * x + 2], pY + x, pU + x, pV + x);
}

// G1 in block loop (8) and tail.
void innerYUVToRGB_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  const bool ssse3 = isa >= kIsaSsse3;
  const int block = width & ~(kBlockYUVToRGB_C3 - 1);
  int x = ssse3 ? blockYUVToRGB_C3_ssse3(pSrc, pDst, block)
                : blockC3toC3<NetSse2>(pSrc, pDst, block, StepG1{});
  for (; x < width; ++x) g1(pSrc[3 * x], pSrc[3 * x + 1], pSrc[3 * x + 2], pDst + 3 * x);
}

// G1 in the 8-pixel loop (colour bytes only) and in the rest, which stores
// bytes; the fourth byte of every destination pixel is left as it was.
void innerYUVToRGB_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  const bool masked = isa >= kIsaAvx512;
  const int block = width & ~(kBlockYUVToRGB_AC4 - 1);
  const int x = masked ? blockYUVToRGB_AC4_avx512(pSrc, pDst, block)
                       : blockAC4<StoreSplit>(pSrc, pDst, block, StepG1AC4{});
  tailAC4(pSrc, pDst, x, width, g1);
}

namespace {
// One plane pass of the P3 inverse kernel: block G2 (8) and tail G3.
template <class VecFn, class TailFn>
inline void passYUVToRGB_P3(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pOut,
                            int width, int plane, Isa isa, VecFn vec, TailFn tail) {
  const int block = width & ~(kBlockYUVToRGB_P3 - 1);
  int x = isa >= kIsaAvx2 ? blockYUVToRGB_P3_avx2(pY, pU, pV, pOut, plane, block) : 0;
  for (; x + 16 <= block; x += 16) {
    const __m128i y = loadu(pY + x), u = loadu(pU + x), v = loadu(pV + x);
    storeu(pOut + x, vPackS16U8(vec(lo8to16(y), lo8to16(u), lo8to16(v)),
                                vec(hi8to16(y), hi8to16(u), hi8to16(v))));
  }
  for (; x < block; x += 8) {
    const __m128i r = vec(lo8to16(loadl64(pY + x)), lo8to16(loadl64(pU + x)), lo8to16(loadl64(pV + x)));
    storel64(pOut + x, vPackS16U8(r, r));
  }
  for (; x < width; ++x) pOut[x] = static_cast<Lum8u>(tail(pY[x], pU[x], pV[x]));
}
}  // namespace

// One pass per destination plane: R, then G, then B.
void innerYUVToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR,
                          Lum8u* pG, Lum8u* pB, int width, Isa isa) {
  passYUVToRGB_P3(pY, pU, pV, pR, width, 0, isa, g2RVec, g3R);
  passYUVToRGB_P3(pY, pU, pV, pG, width, 1, isa, g2GVec, g3G);
  passYUVToRGB_P3(pY, pU, pV, pB, width, 2, isa, g2BVec, g3B);
}

// G4 in block loop (16) and tail.
void innerYUVToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                                 int width, Isa isa) {
  const bool ssse3 = isa >= kIsaSsse3;
  const int block = width & ~(kBlockYUVToRGB_P3C3 - 1);
  int x = ssse3 ? blockYUVToRGB_P3C3_ssse3(pY, pU, pV, pDst, block)
                : blockP3toC3<NetSse2>(pY, pU, pV, pDst, block, StepG4{});
  for (; x < width; ++x) g4(pY[x], pU[x], pV[x], pDst + 3 * x);
}

// ===========================================================================
// Row drivers: pointers, width, height, steps; all rows on the calling thread.

void myRGBToYUV_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                       int dstStep, Isa isa) {
  serialRows(height, [&](int y) { innerRGBToYUV_8u_C3R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width, isa); });
}
void myRGBToYUV_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                        int dstStep, Isa isa) {
  serialRows(height, [&](int y) { innerRGBToYUV_8u_AC4R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width, isa); });
}
void myRGBToYUV_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY, Lum8u* pU,
                       Lum8u* pV, int width, int height, int srcStep, int dstStep, Isa isa) {
  serialRows(height, [&](int y) {
    innerRGBToYUV_8u_P3R(rowPtr(pR, y, srcStep), rowPtr(pG, y, srcStep), rowPtr(pB, y, srcStep),
                         rowPtr(pY, y, dstStep), rowPtr(pU, y, dstStep), rowPtr(pV, y, dstStep), width, isa);
  });
}
void myRGBToYUV_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width,
                         int height, int srcStep, int dstStep, Isa isa) {
  serialRows(height, [&](int y) {
    innerRGBToYUV_8u_C3P3R(rowPtr(pSrc, y, srcStep), rowPtr(pY, y, dstStep), rowPtr(pU, y, dstStep),
                           rowPtr(pV, y, dstStep), width, isa);
  });
}
void myYUVToRGB_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                       int dstStep, Isa isa) {
  serialRows(height, [&](int y) { innerYUVToRGB_8u_C3R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width, isa); });
}
void myYUVToRGB_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                        int dstStep, Isa isa) {
  serialRows(height, [&](int y) { innerYUVToRGB_8u_AC4R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width, isa); });
}
void myYUVToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR, Lum8u* pG,
                       Lum8u* pB, int width, int height, int srcStep, int dstStep, Isa isa) {
  serialRows(height, [&](int y) {
    innerYUVToRGB_8u_P3R(rowPtr(pY, y, srcStep), rowPtr(pU, y, srcStep), rowPtr(pV, y, srcStep),
                         rowPtr(pR, y, dstStep), rowPtr(pG, y, dstStep), rowPtr(pB, y, dstStep), width, isa);
  });
}
void myYUVToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                         int width, int height, int srcStep, int dstStep, Isa isa) {
  serialRows(height, [&](int y) {
    innerYUVToRGB_8u_P3C3R(rowPtr(pY, y, srcStep), rowPtr(pU, y, srcStep), rowPtr(pV, y, srcStep),
                           rowPtr(pDst, y, dstStep), width, isa);
  });
}

// ===========================================================================
// Public functions: checks (P1 or P2), then one call.

LUM_PUBLIC LumStatus lumiRGBToYUV_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                         LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  myRGBToYUV_8u_C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa());
  return LumOk;
}

LUM_PUBLIC LumStatus lumiRGBToYUV_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                          int dstStep, LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  myRGBToYUV_8u_AC4R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa());
  return LumOk;
}

LUM_PUBLIC LumStatus lumiRGBToYUV_8u_P3R(const Lum8u* const pSrc[3], int srcStep,
                                         Lum8u* const pDst[3], int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3), arr(pDst, 3)});
  if (st != LumOk) return st;
  myRGBToYUV_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], roiSize.width,
                    roiSize.height, srcStep, dstStep, isa());
  return LumOk;
}

LUM_PUBLIC LumStatus lumiRGBToYUV_8u_C3P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                           int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pDst, 3)});
  if (st != LumOk) return st;
  myRGBToYUV_8u_C3P3R(pSrc, pDst[0], pDst[1], pDst[2], roiSize.width, roiSize.height, srcStep,
                      dstStep, isa());
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYUVToRGB_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                         LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  myYUVToRGB_8u_C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa());
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYUVToRGB_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                          int dstStep, LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  myYUVToRGB_8u_AC4R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa());
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYUVToRGB_8u_P3R(const Lum8u* const pSrc[3], int srcStep,
                                         Lum8u* const pDst[3], int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3), arr(pDst, 3)});
  if (st != LumOk) return st;
  myYUVToRGB_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], roiSize.width,
                    roiSize.height, srcStep, dstStep, isa());
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYUVToRGB_8u_P3C3R(const Lum8u* const pSrc[3], int srcStep, Lum8u* pDst,
                                           int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3)});
  if (st != LumOk) return st;
  myYUVToRGB_8u_P3C3R(pSrc[0], pSrc[1], pSrc[2], pDst, roiSize.width, roiSize.height, srcStep,
                      dstStep, isa());
  return LumOk;
}
