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
#include "frame/lum_row.h"
#include "frame/lum_simd.h"

using namespace lum;
using namespace lum::yuv444;

namespace {

using namespace yuv444blocks;

}  // namespace

namespace lum {
namespace yuv444 {

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

namespace {

// The tails as formulas of three samples to three results.
void f5Tail(int R, int G, int B, Lum8u o[3]) { f5(R, G, B, &o[0], &o[1], &o[2]); }
template <int (*f)(int, int, int)>
void planeTail(int a, int b, int c, Lum8u o[3]) { o[0] = static_cast<Lum8u>(f(a, b, c)); }

// One plane pass of a P3 kernel: the block formula over 16 pixels a round
// (then 8 where the block is 8), after the AVX2 pass where the level has it;
// the tail formula for the same channel.
using PassAvx2 = int (*)(const Lum8u*, const Lum8u*, const Lum8u*, Lum8u*, int, int);
template <int kBlock, int (*tail)(int, int, int), class VecFn>
inline void passP3(const Lum8u* p0, const Lum8u* p1, const Lum8u* p2, Lum8u* pOut, int width,
                   int plane, Isa isa, PassAvx2 avx2, VecFn vec) {
  walkRow<kBlock>(PixP3<const Lum8u>{{p0, p1, p2}}, PixPlane<Lum8u>{pOut}, width, [&](int end) {
    int x = isa >= kIsaAvx2 ? avx2(p0, p1, p2, pOut, plane, end) : 0;
    for (; x + 16 <= end; x += 16) {
      const __m128i a = loadu(p0 + x), b = loadu(p1 + x), c = loadu(p2 + x);
      storeu(pOut + x, vPackS16U8(vec(lo8to16(a), lo8to16(b), lo8to16(c)),
                                  vec(hi8to16(a), hi8to16(b), hi8to16(c))));
    }
    for (; x < end; x += 8) {
      const __m128i r = vec(lo8to16(loadl64(p0 + x)), lo8to16(loadl64(p1 + x)), lo8to16(loadl64(p2 + x)));
      storel64(pOut + x, vPackS16U8(r, r));
    }
    return x;
  }, planeTail<tail>);
}

}  // namespace

// Block F1 (16), tail F3.
void innerRGBToYUV_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  walkRow<kBlockRGBToYUV_C3>(PixC3<const Lum8u>{pSrc}, PixC3<Lum8u>{pDst}, width, [&](int end) {
    return isa >= kIsaSsse3 ? blockRGBToYUV_C3_ssse3(pSrc, pDst, end)
                            : blockC3toC3<Net3Sse2>(pSrc, pDst, 0, end, StepF1{});
  }, f3);
}

// Block F2 (8) storing only the colour bytes, tail F3; the fourth byte of
// every destination pixel is left as it was.
void innerRGBToYUV_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  walkRow<kBlockRGBToYUV_AC4>(PixAC4<const Lum8u>{pSrc}, PixAC4<Lum8u>{pDst}, width, [&](int end) {
    return isa >= kIsaAvx512 ? blockRGBToYUV_AC4_avx512(pSrc, pDst, end)
                             : blockAC4<StoreSplit>(pSrc, pDst, end, StepF2{});
  }, f3);
}

// One pass per destination plane, Y, U, V: block F1 (16), tail F4.
void innerRGBToYUV_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                          Lum8u* pU, Lum8u* pV, int width, Isa isa) {
  passP3<kBlockRGBToYUV_P3, f4Y>(pR, pG, pB, pY, width, 0, isa, blockRGBToYUV_P3_avx2, f1YVec);
  passP3<kBlockRGBToYUV_P3, f4U>(pR, pG, pB, pU, width, 1, isa, blockRGBToYUV_P3_avx2, f1UVec);
  passP3<kBlockRGBToYUV_P3, f4V>(pR, pG, pB, pV, width, 2, isa, blockRGBToYUV_P3_avx2, f1VVec);
}

// Block F1 (8), tail F5.
void innerRGBToYUV_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width,
                            Isa isa) {
  walkRow<kBlockRGBToYUV_C3P3>(PixC3<const Lum8u>{pSrc}, PixP3<Lum8u>{{pY, pU, pV}}, width, [&](int end) {
    return isa >= kIsaSsse3 ? blockRGBToYUV_C3P3_ssse3(pSrc, pY, pU, pV, end)
                            : blockC3toP3<Net3Sse2>(pSrc, planes3(pY, pU, pV).p, 0, end, StepF1{});
  }, f5Tail);
}

// G1 in block loop (8) and tail.
void innerYUVToRGB_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  walkRow<kBlockYUVToRGB_C3>(PixC3<const Lum8u>{pSrc}, PixC3<Lum8u>{pDst}, width, [&](int end) {
    return isa >= kIsaSsse3 ? blockYUVToRGB_C3_ssse3(pSrc, pDst, end)
                            : blockC3toC3<Net3Sse2>(pSrc, pDst, 0, end, StepG1{});
  }, g1);
}

// G1 in the 8-pixel loop (colour bytes only) and in the tail; the fourth
// byte of every destination pixel is left as it was.
void innerYUVToRGB_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  walkRow<kBlockYUVToRGB_AC4>(PixAC4<const Lum8u>{pSrc}, PixAC4<Lum8u>{pDst}, width, [&](int end) {
    return isa >= kIsaAvx512 ? blockYUVToRGB_AC4_avx512(pSrc, pDst, end)
                             : blockAC4<StoreSplit>(pSrc, pDst, end, StepG1AC4{});
  }, g1);
}

// One pass per destination plane, R, G, B: block G2 (8), tail G3.
void innerYUVToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR,
                          Lum8u* pG, Lum8u* pB, int width, Isa isa) {
  passP3<kBlockYUVToRGB_P3, g3R>(pY, pU, pV, pR, width, 0, isa, blockYUVToRGB_P3_avx2, g2RVec);
  passP3<kBlockYUVToRGB_P3, g3G>(pY, pU, pV, pG, width, 1, isa, blockYUVToRGB_P3_avx2, g2GVec);
  passP3<kBlockYUVToRGB_P3, g3B>(pY, pU, pV, pB, width, 2, isa, blockYUVToRGB_P3_avx2, g2BVec);
}

// G4 in block loop (16) and tail.
void innerYUVToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                            int width, Isa isa) {
  walkRow<kBlockYUVToRGB_P3C3>(PixP3<const Lum8u>{{pY, pU, pV}}, PixC3<Lum8u>{pDst}, width, [&](int end) {
    return isa >= kIsaSsse3 ? blockYUVToRGB_P3C3_ssse3(pY, pU, pV, pDst, end)
                            : blockP3toC3<Net3Sse2>(planes3c(pY, pU, pV).p, pDst, 0, end, StepG4{});
  }, g4);
}

// ===========================================================================
// Row drivers: pointers, width, height, steps; all rows on the calling thread.

void myRGBToYUV_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                       int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) { innerRGBToYUV_8u_C3R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width, isa); });
}
void myRGBToYUV_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                        int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) { innerRGBToYUV_8u_AC4R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width, isa); });
}
void myRGBToYUV_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY, Lum8u* pU,
                       Lum8u* pV, int width, int height, int srcStep, int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerRGBToYUV_8u_P3R(rowPtr(pR, y, srcStep), rowPtr(pG, y, srcStep), rowPtr(pB, y, srcStep),
                         rowPtr(pY, y, dstStep), rowPtr(pU, y, dstStep), rowPtr(pV, y, dstStep), width, isa);
  });
}
void myRGBToYUV_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width,
                         int height, int srcStep, int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerRGBToYUV_8u_C3P3R(rowPtr(pSrc, y, srcStep), rowPtr(pY, y, dstStep), rowPtr(pU, y, dstStep),
                           rowPtr(pV, y, dstStep), width, isa);
  });
}
void myYUVToRGB_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                       int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) { innerYUVToRGB_8u_C3R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width, isa); });
}
void myYUVToRGB_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                        int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) { innerYUVToRGB_8u_AC4R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width, isa); });
}
void myYUVToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR, Lum8u* pG,
                       Lum8u* pB, int width, int height, int srcStep, int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerYUVToRGB_8u_P3R(rowPtr(pY, y, srcStep), rowPtr(pU, y, srcStep), rowPtr(pV, y, srcStep),
                         rowPtr(pR, y, dstStep), rowPtr(pG, y, dstStep), rowPtr(pB, y, dstStep), width, isa);
  });
}
void myYUVToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                         int width, int height, int srcStep, int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerYUVToRGB_8u_P3C3R(rowPtr(pY, y, srcStep), rowPtr(pU, y, srcStep), rowPtr(pV, y, srcStep),
                           rowPtr(pDst, y, dstStep), width, isa);
  });
}

}  // namespace yuv444
}  // namespace lum

// ===========================================================================
// Public functions: the checks of their pattern, then one call.

LUM_PUBLIC_A(lumiRGBToYUV_8u_C3R, P1, Lum8u, Lum8u,
             myRGBToYUV_8u_C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_A(lumiRGBToYUV_8u_AC4R, P1, Lum8u, Lum8u,
             myRGBToYUV_8u_AC4R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_D(lumiRGBToYUV_8u_P3R, P2, Lum8u, Lum8u, 3, 3,
             myRGBToYUV_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], roiSize.width,
                               roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_B(lumiRGBToYUV_8u_C3P3R, P2, Lum8u, Lum8u, 3,
             myRGBToYUV_8u_C3P3R(pSrc, pDst[0], pDst[1], pDst[2], roiSize.width, roiSize.height,
                                 srcStep, dstStep, isa()))
LUM_PUBLIC_A(lumiYUVToRGB_8u_C3R, P1, Lum8u, Lum8u,
             myYUVToRGB_8u_C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_A(lumiYUVToRGB_8u_AC4R, P1, Lum8u, Lum8u,
             myYUVToRGB_8u_AC4R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_D(lumiYUVToRGB_8u_P3R, P2, Lum8u, Lum8u, 3, 3,
             myYUVToRGB_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], roiSize.width,
                               roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_C(lumiYUVToRGB_8u_P3C3R, P2, Lum8u, Lum8u, 3,
             myYUVToRGB_8u_P3C3R(pSrc[0], pSrc[1], pSrc[2], pDst, roiSize.width, roiSize.height,
                                 srcStep, dstStep, isa()))
