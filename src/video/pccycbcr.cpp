// RGB and YCbCr 4:4:4: public functions, row drivers and one-row kernels.
//
// Each kernel runs its block formula over the first pixels of the row and its
// tail formula over the rest, counted from the start of every row; the two
// differ by up to a level on purpose (scalar and lane forms in pccycbcr.h).
// The block part takes the call's instruction-set level: AVX2 rounds of 32
// pixels first, then the SSSE3 or SSE2 loops from where they stopped; every
// level gives the same bytes.  The AC4 kernels are scalar throughout.
// Everything runs on the calling thread.
#include "video/pccycbcr.h"
#include "video/pccycbcr_blocks.h"

#include "frame/lum_frame.h"
#include "frame/lum_row.h"
#include "frame/lum_simd.h"

using namespace lum;
using namespace lum::ycbcr;

namespace {

using namespace ycbcrblocks;

// The block part by level (see pccyuv02.cpp): AVX2 rounds, then the SSSE3 or
// SSE2 loop from where they stopped.
template <class Avx2, class Ssse3, class Sse2>
inline int byLevel(Isa isa, int end, Avx2 avx2, Ssse3 ssse3, Sse2 sse2) {
  const int x = isa >= kIsaAvx2 ? avx2(0, end) : 0;
  return isa >= kIsaSsse3 ? ssse3(x, end) : sse2(x, end);
}

// One output plane of the plane forward kernel: C over the block part, A on
// the rest.
template <I16x8 (*Lanes)(I16x8, I16x8, I16x8), uint8_t (*tail)(int, int, int)>
inline void planeC(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pOut, int plane,
                   int width, Isa isa) {
  auto sse2 = [&](int x, int e) { return passC<Lanes>(pR, pG, pB, pOut, x, e); };
  walkRow<kBlockRGBToYCbCr_P3>(width, [&](int end) {
    return byLevel(isa, end,
        [&](int x, int e) { return blockRGBToYCbCr_P3_avx2(pR, pG, pB, pOut, plane, x, e); },
        sse2, sse2);
  }, [&](int x) { pOut[x] = tail(pR[x], pG[x], pB[x]); });
}

}  // namespace

namespace lum {
namespace ycbcr {

// ===========================================================================
// One-row kernels.

// Block B (8 pixels), tail A on width & 7.
void innerRGBToYCbCr_C3_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  walkRow<kBlockRGBToYCbCr_C3>(PixC3<const Lum8u>{pSrc}, PixC3<Lum8u>{pDst}, width, [&](int end) {
    return byLevel(isa, end,
        [&](int x, int e) { return blockRGBToYCbCr_C3_avx2(pSrc, pDst, x, e); },
        [&](int x, int e) { return blockRGBToYCbCr_C3_ssse3(pSrc, pDst, x, e); },
        [&](int x, int e) { return blockC3toC3<Net3Sse2>(pSrc, pDst, x, e, StepB{}); });
  }, formA);
}

// A for every pixel; the three colour bytes only (alpha neither read nor
// written).
void innerRGBToYCbCr_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa) {
  walkRow<1>(PixAC4<const Lum8u>{pSrc}, PixAC4<Lum8u>{pDst}, width, [](int) { return 0; }, formA);
}

// One pass per destination plane, Y, Cb, Cr: block C (16), tail A on
// width & 15.
void innerRGBToYCbCr_C3P2_C3P2R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                                Lum8u* pCb, Lum8u* pCr, int width, Isa isa) {
  planeC<formCYLanes<I16x8>, formAY>(pR, pG, pB, pY, 0, width, isa);
  planeC<formCCbLanes<I16x8>, formACb>(pR, pG, pB, pCb, 1, width, isa);
  planeC<formCCrLanes<I16x8>, formACr>(pR, pG, pB, pCr, 2, width, isa);
}

// Block E (rounds of 8, then one of 4), tail D on width & 3.
void innerYCbCrToRGB_C3_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  walkRow<kBlockYCbCrToRGB_C3>(PixC3<const Lum8u>{pSrc}, PixC3<Lum8u>{pDst}, width, [&](int end) {
    return byLevel(isa, end,
        [&](int x, int e) { return blockYCbCrToRGB_C3_avx2(pSrc, pDst, x, e); },
        [&](int x, int e) { return blockYCbCrToRGB_C3_ssse3(pSrc, pDst, x, e); },
        [&](int x, int e) { return blockC3toC3<Net3Sse2>(pSrc, pDst, x, e, StepE{}); });
  }, formD);
}

// D for every pixel; the three colour bytes only.
void innerYCbCrToRGB_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa) {
  walkRow<1>(PixAC4<const Lum8u>{pSrc}, PixAC4<Lum8u>{pDst}, width, [](int) { return 0; }, formD);
}

// Planes to planes: block E (rounds of 8, then one of 4), tail D on width & 3.
void innerYCbCrToRGB_C3P2_C3P2R(const Lum8u* pY, const Lum8u* pCb, const Lum8u* pCr, Lum8u* pR,
                                Lum8u* pG, Lum8u* pB, int width, Isa isa) {
  const Lum8u* const src[3] = {pY, pCb, pCr};
  Lum8u* const dst[3] = {pR, pG, pB};
  auto sse2 = [&](int x, int e) { return blockP3toP3(src, dst, x, e, StepE{}); };
  walkRow<kBlockYCbCrToRGB_P3>(PixP3<const Lum8u>{{pY, pCb, pCr}}, PixP3<Lum8u>{{pR, pG, pB}}, width,
      [&](int end) {
        return byLevel(isa, end,
            [&](int x, int e) { return blockYCbCrToRGB_P3_avx2(src, dst, x, e); }, sse2, sse2);
      }, formD);
}

// Planes to pixels: block F (8), tail G on width & 7.
void innerYCbCrToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pCb, const Lum8u* pCr, Lum8u* pDst,
                              int width, Isa isa) {
  const Lum8u* const src[3] = {pY, pCb, pCr};
  walkRow<kBlockYCbCrToRGB_P3C3>(PixP3<const Lum8u>{{pY, pCb, pCr}}, PixC3<Lum8u>{pDst}, width,
      [&](int end) {
        return byLevel(isa, end,
            [&](int x, int e) { return blockYCbCrToRGB_P3C3_avx2(src, pDst, x, e); },
            [&](int x, int e) { return blockYCbCrToRGB_P3C3_ssse3(src, pDst, x, e); },
            [&](int x, int e) { return blockP3toC3<Net3Sse2>(src, pDst, x, e, StepF{}); });
      }, formG);
}

// ===========================================================================
// Row drivers: all rows on the calling thread; in the plane forms the three
// planes of an image advance by the same step.

namespace {

// A pixel-order kernel over the rows of the region.
template <class Kernel>
void rowsC(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep, int dstStep,
           Isa isa, Kernel kernel) {
  rows<Threading::Serial>(width, height, [&](int y) {
    kernel(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width, isa);
  });
}

void myRGBToYCbCr_C3_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                         int dstStep, Isa isa) {
  rowsC(pSrc, pDst, width, height, srcStep, dstStep, isa, innerRGBToYCbCr_C3_C3R);
}
void myRGBToYCbCr_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                       int dstStep, Isa isa) {
  rowsC(pSrc, pDst, width, height, srcStep, dstStep, isa, innerRGBToYCbCr_AC4R);
}
void myYCbCrToRGB_C3_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                         int dstStep, Isa isa) {
  rowsC(pSrc, pDst, width, height, srcStep, dstStep, isa, innerYCbCrToRGB_C3_C3R);
}
void myYCbCrToRGBA_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                        int dstStep, Isa isa) {
  rowsC(pSrc, pDst, width, height, srcStep, dstStep, isa, innerYCbCrToRGB_AC4R);
}
void myRGBToYCbCr_C3P2_C3P2R(const Lum8u* const s[3], Lum8u* const d[3], int width, int height,
                             int srcStep, int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerRGBToYCbCr_C3P2_C3P2R(rowPtr(s[0], y, srcStep), rowPtr(s[1], y, srcStep),
                               rowPtr(s[2], y, srcStep), rowPtr(d[0], y, dstStep),
                               rowPtr(d[1], y, dstStep), rowPtr(d[2], y, dstStep), width, isa);
  });
}
void myYCbCrToRGB_C3P2_C3P2R(const Lum8u* const s[3], Lum8u* const d[3], int width, int height,
                             int srcStep, int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerYCbCrToRGB_C3P2_C3P2R(rowPtr(s[0], y, srcStep), rowPtr(s[1], y, srcStep),
                               rowPtr(s[2], y, srcStep), rowPtr(d[0], y, dstStep),
                               rowPtr(d[1], y, dstStep), rowPtr(d[2], y, dstStep), width, isa);
  });
}
void myYCbCrToRGB_8u_P3C3R(const Lum8u* const s[3], Lum8u* pDst, int width, int height,
                           int srcStep, int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerYCbCrToRGB_8u_P3C3R(rowPtr(s[0], y, srcStep), rowPtr(s[1], y, srcStep),
                             rowPtr(s[2], y, srcStep), rowPtr(pDst, y, dstStep), width, isa);
  });
}

}  // namespace

}  // namespace ycbcr
}  // namespace lum

// ===========================================================================
// Public functions: the checks of their pattern, then one call.

LUM_PUBLIC_A(lumiRGBToYCbCr_8u_C3R, P1, Lum8u, Lum8u,
             myRGBToYCbCr_C3_C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_A(lumiRGBToYCbCr_8u_AC4R, P1, Lum8u, Lum8u,
             myRGBToYCbCr_AC4R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_D(lumiRGBToYCbCr_8u_P3R, P2, Lum8u, Lum8u, 3, 3,
             myRGBToYCbCr_C3P2_C3P2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_A(lumiYCbCrToRGB_8u_C3R, P1, Lum8u, Lum8u,
             myYCbCrToRGB_C3_C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_A(lumiYCbCrToRGB_8u_AC4R, P1, Lum8u, Lum8u,
             myYCbCrToRGBA_AC4R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_D(lumiYCbCrToRGB_8u_P3R, P2, Lum8u, Lum8u, 3, 3,
             myYCbCrToRGB_C3P2_C3P2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_C(lumiYCbCrToRGB_8u_P3C3R, P2, Lum8u, Lum8u, 3,
             myYCbCrToRGB_8u_P3C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
