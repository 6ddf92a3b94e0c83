// RGB and YCbCr 4:4:4: public functions, row drivers and one-row kernels.
//
// Each kernel runs its block formula over the first pixels of the row and its
// tail formula over the rest, counted from the start of every row; the two
// differ by up to a level on purpose (scalar forms in pccycbcr.h, SSE2 forms
// in pccycbcr_blocks.h).  The block loops are functions of their own,
// block..._sse2(..., end) returning the first pixel not done, so that a wider
// path can stand beside them with the same contract.  The AC4 kernels are
// scalar throughout.  Everything runs on the calling thread.
#include "video/pccycbcr.h"
#include "video/pccycbcr_blocks.h"

#include <string.h>

#include "frame/lum_frame.h"
#include "frame/lum_simd.h"

using namespace lum;
using namespace lum::ycbcr;

namespace {

using namespace ycbcrblocks;

// ---------------------------------------------------------------------------
// SSE2 block loops over [0, end).

int blockRGBToYCbCr_C3_sse2(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return blockC3toC3(pSrc, pDst, end, StepB{});
}

// One plane pass of formula C, 16 pixels a round.
template <class Vec>
int passC_sse2(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pOut, int end, Vec vec) {
  int x = 0;
  for (; x < end; x += 16) {
    const __m128i r = loadu(pR + x), g = loadu(pG + x), b = loadu(pB + x);
    storeu(pOut + x, vPackS16U8(vec(lo8to16(r), lo8to16(g), lo8to16(b)),
                                vec(hi8to16(r), hi8to16(g), hi8to16(b))));
  }
  return x;
}

int blockYCbCrToRGB_C3_sse2(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return blockC3toC3(pSrc, pDst, end, StepE{});
}
int blockYCbCrToRGB_P3_sse2(const Lum8u* const src[3], Lum8u* const dst[3], int end) {
  return blockP3toP3(src, dst, end, StepE{});
}
int blockYCbCrToRGB_P3C3_sse2(const Lum8u* const src[3], Lum8u* pDst, int end) {
  return blockP3toC3(src, pDst, end, StepF{});
}

}  // namespace

// ===========================================================================
// One-row kernels.

// Block B (8 pixels), tail A on width & 7.
void innerRGBToYCbCr_C3_C3R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  int x = blockRGBToYCbCr_C3_sse2(pSrc, pDst, width & ~(kBlockRGBToYCbCr_C3 - 1));
  for (; x < width; ++x) formA(pSrc[3 * x], pSrc[3 * x + 1], pSrc[3 * x + 2], pDst + 3 * x);
}

// A for every pixel; the three colour bytes only (alpha neither read nor
// written).
void innerRGBToYCbCr_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  for (int x = 0; x < width; ++x) formA(pSrc[4 * x], pSrc[4 * x + 1], pSrc[4 * x + 2], pDst + 4 * x);
}

// One pass per destination plane, Y, Cb, Cr: block C (16), tail A on
// width & 15.
void innerRGBToYCbCr_C3P2_C3P2R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                                Lum8u* pCb, Lum8u* pCr, int width) {
  const int end = width & ~(kBlockRGBToYCbCr_P3 - 1);
  int x = passC_sse2(pR, pG, pB, pY, end, formCYVec);
  for (; x < width; ++x) pY[x] = formAY(pR[x], pG[x], pB[x]);
  x = passC_sse2(pR, pG, pB, pCb, end, formCCbVec);
  for (; x < width; ++x) pCb[x] = formACb(pR[x], pG[x], pB[x]);
  x = passC_sse2(pR, pG, pB, pCr, end, formCCrVec);
  for (; x < width; ++x) pCr[x] = formACr(pR[x], pG[x], pB[x]);
}

// Block E (rounds of 8, then one of 4), tail D on width & 3.
void innerYCbCrToRGB_C3_C3R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  int x = blockYCbCrToRGB_C3_sse2(pSrc, pDst, width & ~(kBlockYCbCrToRGB_C3 - 1));
  for (; x < width; ++x) formD(pSrc[3 * x], pSrc[3 * x + 1], pSrc[3 * x + 2], pDst + 3 * x);
}

// D for every pixel; the three colour bytes only.
void innerYCbCrToRGB_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  for (int x = 0; x < width; ++x) formD(pSrc[4 * x], pSrc[4 * x + 1], pSrc[4 * x + 2], pDst + 4 * x);
}

// Planes to planes: block E (rounds of 8, then one of 4), tail D on width & 3.
void innerYCbCrToRGB_C3P2_C3P2R(const Lum8u* pY, const Lum8u* pCb, const Lum8u* pCr, Lum8u* pR,
                                Lum8u* pG, Lum8u* pB, int width) {
  const Lum8u* const src[3] = {pY, pCb, pCr};
  Lum8u* const dst[3] = {pR, pG, pB};
  int x = blockYCbCrToRGB_P3_sse2(src, dst, width & ~(kBlockYCbCrToRGB_P3 - 1));
  for (; x < width; ++x) {
    Lum8u rgb[3];
    formD(pY[x], pCb[x], pCr[x], rgb);
    pR[x] = rgb[0];
    pG[x] = rgb[1];
    pB[x] = rgb[2];
  }
}

// Planes to pixels: block F (8), tail G on width & 7.
void innerYCbCrToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pCb, const Lum8u* pCr, Lum8u* pDst,
                              int width) {
  const Lum8u* const src[3] = {pY, pCb, pCr};
  int x = blockYCbCrToRGB_P3C3_sse2(src, pDst, width & ~(kBlockYCbCrToRGB_P3C3 - 1));
  for (; x < width; ++x) formG(pY[x], pCb[x], pCr[x], pDst + 3 * x);
}

// ===========================================================================
// Row drivers: all rows on the calling thread; in the plane forms the three
// planes of an image advance by the same step.

void myRGBToYCbCr_C3_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                         int dstStep) {
  serialRows(height, [&](int y) {
    innerRGBToYCbCr_C3_C3R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width);
  });
}
void myRGBToYCbCr_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                       int dstStep) {
  serialRows(height, [&](int y) {
    innerRGBToYCbCr_AC4R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width);
  });
}
void myRGBToYCbCr_C3P2_C3P2R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                             Lum8u* pCb, Lum8u* pCr, int width, int height, int srcStep,
                             int dstStep) {
  serialRows(height, [&](int y) {
    innerRGBToYCbCr_C3P2_C3P2R(rowPtr(pR, y, srcStep), rowPtr(pG, y, srcStep),
                               rowPtr(pB, y, srcStep), rowPtr(pY, y, dstStep),
                               rowPtr(pCb, y, dstStep), rowPtr(pCr, y, dstStep), width);
  });
}
void myYCbCrToRGB_C3_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                         int dstStep) {
  serialRows(height, [&](int y) {
    innerYCbCrToRGB_C3_C3R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width);
  });
}
void myYCbCrToRGBA_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                        int dstStep) {
  serialRows(height, [&](int y) {
    innerYCbCrToRGB_AC4R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width);
  });
}
void myYCbCrToRGB_C3P2_C3P2R(const Lum8u* pY, const Lum8u* pCb, const Lum8u* pCr, Lum8u* pR,
                             Lum8u* pG, Lum8u* pB, int width, int height, int srcStep,
                             int dstStep) {
  serialRows(height, [&](int y) {
    innerYCbCrToRGB_C3P2_C3P2R(rowPtr(pY, y, srcStep), rowPtr(pCb, y, srcStep),
                               rowPtr(pCr, y, srcStep), rowPtr(pR, y, dstStep),
                               rowPtr(pG, y, dstStep), rowPtr(pB, y, dstStep), width);
  });
}
void myYCbCrToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pCb, const Lum8u* pCr, Lum8u* pDst,
                           int width, int height, int srcStep, int dstStep) {
  serialRows(height, [&](int y) {
    innerYCbCrToRGB_8u_P3C3R(rowPtr(pY, y, srcStep), rowPtr(pCb, y, srcStep),
                             rowPtr(pCr, y, srcStep), rowPtr(pDst, y, dstStep), width);
  });
}

// ===========================================================================
// Public functions: checks (P1 or P2), then one call.

LUM_PUBLIC LumStatus lumiRGBToYCbCr_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                           int dstStep, LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  myRGBToYCbCr_C3_C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiRGBToYCbCr_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                            int dstStep, LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  myRGBToYCbCr_AC4R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiRGBToYCbCr_8u_P3R(const Lum8u* const pSrc[3], int srcStep,
                                           Lum8u* const pDst[3], int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3), arr(pDst, 3)});
  if (st != LumOk) return st;
  myRGBToYCbCr_C3P2_C3P2R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], roiSize.width,
                          roiSize.height, srcStep, dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYCbCrToRGB_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                           int dstStep, LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  myYCbCrToRGB_C3_C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYCbCrToRGB_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                            int dstStep, LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  myYCbCrToRGBA_AC4R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYCbCrToRGB_8u_P3R(const Lum8u* const pSrc[3], int srcStep,
                                           Lum8u* const pDst[3], int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3), arr(pDst, 3)});
  if (st != LumOk) return st;
  myYCbCrToRGB_C3P2_C3P2R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], roiSize.width,
                          roiSize.height, srcStep, dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYCbCrToRGB_8u_P3C3R(const Lum8u* const pSrc[3], int srcStep,
                                             Lum8u* pDst, int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3)});
  if (st != LumOk) return st;
  myYCbCrToRGB_8u_P3C3R(pSrc[0], pSrc[1], pSrc[2], pDst, roiSize.width, roiSize.height, srcStep,
                        dstStep);
  return LumOk;
}
