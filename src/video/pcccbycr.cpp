// CbYCr 4:2:2 with RGB and BGR: public functions and row drivers (each holds
// the row loop and the pixel loop; the row templates: pcccbycr_blocks.h).
// The block loops run over SSE2 registers on the first pixels of each row,
// and the forms with 3-byte pixels take the SSSE3 unit's copy when the
// call's level allows (the same bytes); the BGR forms have aligned twins, taken
// when every pointer and step is a multiple of 16, that give the same bytes.
// Everything runs on the calling thread.
#include "video/pcccbycr.h"

#include <string.h>

#include "frame/lum_frame.h"
#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "video/pcccbycr_blocks.h"

using namespace lum;
using namespace lum::cbycr;

namespace {

using namespace cbycrblocks;

template <class Row>
void rowsCC(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep, int dstStep,
            Row row) {
  rows<Threading::Serial>(width, height, [&](int y) {
    row(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width);
  });
}

inline bool aligned16(const void* a, const void* b, int s1, int s2) {
  return ((reinterpret_cast<uintptr_t>(a) | reinterpret_cast<uintptr_t>(b) |
           static_cast<uintptr_t>(static_cast<unsigned>(s1)) |
           static_cast<uintptr_t>(static_cast<unsigned>(s2))) & 15u) == 0;
}

}  // namespace

namespace lum {
namespace cbycr {

void myRGBToCbYCr422_8u_C3C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                              int dstStep, Isa isa) {
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep,
         isa >= kIsaSsse3 ? rowRGBToCbYCr422_ssse3 : rowToCbYCr<kPlainTable, true, NetSse2>);
}
void myRGBToCbYCr422Gamma_8u_C3C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height,
                                   int srcStep, int dstStep, Isa isa) {
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep,
         isa >= kIsaSsse3 ? rowRGBToCbYCr422Gamma_ssse3 : rowToCbYCr<kGammaTable, false, NetSse2>);
}
void myCbYCr422ToRGB_8u_C2C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                              int dstStep, Isa isa) {
  // AVX2 rounds of 32 first, then the SSSE3 or SSE2 row from where they stopped.
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep, [isa](const Lum8u* s, Lum8u* d, int w) {
    const int x = isa >= kIsaAvx2 ? blockCbYCr422ToRGB_avx2(s, d, w & ~(kBlockToRGB - 1)) : 0;
    if (isa >= kIsaSsse3) return rowCbYCr422ToRGB_ssse3(s, d, w, x);
    rowToRGB<NetSse2>(s, d, w, x);
  });
}
void myCbYCr422ToBGR_8u_C2AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height,
                               int srcStep, int dstStep, Lum8u alphaValue) {
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep,
         [&](const Lum8u* s, Lum8u* d, int w) { rowToBGRA<false>(s, d, w, alphaValue); });
}
void myAlCbYCr422ToBGR_8u_C2AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height,
                                 int srcStep, int dstStep, Lum8u alphaValue) {
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep,
         [&](const Lum8u* s, Lum8u* d, int w) { rowToBGRA<true>(s, d, w, alphaValue); });
}
void myBGRToCbYCr422_8u_AC4C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height,
                               int srcStep, int dstStep) {
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep, rowFromBGRA<false>);
}
void myAlBGRToCbYCr422_8u_AC4C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height,
                                 int srcStep, int dstStep) {
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep, rowFromBGRA<true>);
}

}  // namespace cbycr
}  // namespace lum

// ===========================================================================
// Public functions.

LUM_PUBLIC_A(lumiRGBToCbYCr422_8u_C3C2R, P1, Lum8u, Lum8u,
             myRGBToCbYCr422_8u_C3C2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_A(lumiRGBToCbYCr422Gamma_8u_C3C2R, P4, Lum8u, Lum8u,
             myRGBToCbYCr422Gamma_8u_C3C2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep,
                                           dstStep, isa()))
LUM_PUBLIC_A(lumiCbYCr422ToRGB_8u_C2C3R, P1, Lum8u, Lum8u,
             myCbYCr422ToRGB_8u_C2C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_A(lumiBGRToCbYCr422_8u_AC4C2R, P1, Lum8u, Lum8u,
             if (aligned16(pSrc, pDst, srcStep, dstStep))
               myAlBGRToCbYCr422_8u_AC4C2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep);
             else
               myBGRToCbYCr422_8u_AC4C2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep))

LUM_PUBLIC LumStatus lumiCbYCr422ToBGR_8u_C2C4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                                int dstStep, LumSize roiSize, Lum8u alphaValue) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  if (aligned16(pSrc, pDst, srcStep, dstStep))
    myAlCbYCr422ToBGR_8u_C2AC4R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep,
                                alphaValue);
  else
    myCbYCr422ToBGR_8u_C2AC4R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep,
                              alphaValue);
  return LumOk;
}
