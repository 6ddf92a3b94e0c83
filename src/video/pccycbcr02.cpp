// RGB with YCbCr and YCrCb 4:2:2 and 4:2:0: public functions, row drivers and
// one-row kernels.  The block loops run over SSE2 registers on the first
// pixels (or cells) of each row, counted from the row's start; the tails take
// the scalar forms of pccycbcr02.h and pccycbcr.h (kernel templates:
// pccycbcr02_blocks.h).  The kernels with 3-byte pixels take the SSSE3 unit's
// copy when the call's level allows; the bytes are the same.  Everything
// runs on the calling thread.
#include "video/pccycbcr02.h"

#include <string.h>

#include "frame/lum_frame.h"
#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "video/pccycbcr.h"
#include "video/pccycbcr02_blocks.h"

using namespace lum;
using namespace lum::ycbcrsub;

namespace {

using namespace ycbcrsubblocks;

// ---------------------------------------------------------------------------
// Row drivers.

template <class Kernel>
void rowsCC(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep, int dstStep,
            Isa isa, Kernel kernel) {
  rows<Threading::Serial>(width, height, [&](int y) {
    kernel(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width, isa);
  });
}

}  // namespace

namespace lum {
namespace ycbcrsub {

// ===========================================================================
// One-row kernels.

// Luma block form and pair chroma on width & ~7; A / unrounded A on the
// remaining pairs; A on an odd last pixel, with its first chroma byte only.
void innerRGBToYCbCr422_C3_C2R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  if (isa >= kIsaSsse3) return rowRGBToYCbCr422_C3_ssse3(pSrc, pDst, width);
  fwd422C3<Order::CbCr, NetSse2>(pSrc, pDst, width);
}
void innerRGBToYCrCb422_C3_C2R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  if (isa >= kIsaSsse3) return rowRGBToYCrCb422_C3_ssse3(pSrc, pDst, width);
  fwd422C3<Order::CrCb, NetSse2>(pSrc, pDst, width);
}
void innerRGBToYCbCr422_C3P2_C3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pDst,
                                 int width) {
  fwd422P3<Order::CbCr>(pR, pG, pB, pDst, width);
}
void innerRGBToYCrCb422_C3P2_C3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pDst,
                                 int width) {
  fwd422P3<Order::CrCb>(pR, pG, pB, pDst, width);
}


// E on width & ~3, D on the rest (see inv422C2Tail for an odd last pixel).
// AVX2 rounds of 32 first, then the SSSE3 or SSE2 row from where they stopped.
void innerYCbCrToRGB422_C2_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  const int x = isa >= kIsaAvx2 ? blockYCbCrToRGB422_C2C3_avx2(pSrc, pDst, width & ~3, true) : 0;
  if (isa >= kIsaSsse3) return rowYCbCrToRGB422_C2C3_ssse3(pSrc, pDst, width, x);
  inv422C2C3<Order::CbCr, NetSse2>(pSrc, pDst, width, x);
}
void innerYCrCbToRGB422_C2_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  const int x = isa >= kIsaAvx2 ? blockYCbCrToRGB422_C2C3_avx2(pSrc, pDst, width & ~3, false) : 0;
  if (isa >= kIsaSsse3) return rowYCrCbToRGB422_C2C3_ssse3(pSrc, pDst, width, x);
  inv422C2C3<Order::CrCb, NetSse2>(pSrc, pDst, width, x);
}
void innerYCbCr422ToRGB_C2_C3P2R(const Lum8u* pSrc, Lum8u* pR, Lum8u* pG, Lum8u* pB, int width) {
  inv422C2P3<Order::CbCr>(pSrc, pR, pG, pB, width);
}
void innerYCrCb422ToRGB_C2_C3P2R(const Lum8u* pSrc, Lum8u* pR, Lum8u* pG, Lum8u* pB, int width) {
  inv422C2P3<Order::CrCb>(pSrc, pR, pG, pB, width);
}

// kry420 forms on cells & ~3 (8 pixels of each row a group of 4), A and the
// >> 18 cell chroma on the rest.
void innerRGBToYCbCr420_8u_C3P3R(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                                 Lum8u* pCb, Lum8u* pCr, int cells, Isa isa) {
  if (isa >= kIsaSsse3) return rowRGBToYCbCr420_C3_ssse3(pRow0, pRow1, pY0, pY1, pCb, pCr, cells);
  fwd420C3<NetSse2>(pRow0, pRow1, pY0, pY1, pCb, pCr, cells);
}

// F on width & ~7, G on the rest; pixel x takes chroma column x >> 1.
void innerYCbCr422ToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pCb, const Lum8u* pCr,
                                 Lum8u* pDst, int width, Isa isa) {
  if (isa >= kIsaSsse3) return rowYCbCr422ToRGB_P3C3_ssse3(pY, pCb, pCr, pDst, width);
  inv422P3C3<NetSse2>(pY, pCb, pCr, pDst, width);
}

// The 4767 form on cells & ~3, D on the rest.
void innerYCbCr420ToRGB_8u_P3C3R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pCb,
                                 const Lum8u* pCr, Lum8u* pRow0, Lum8u* pRow1, int cells, Isa isa) {
  if (isa >= kIsaSsse3)
    return rowYCbCr420ToRGB_P3C3_ssse3(pY0, pY1, pCb, pCr, pRow0, pRow1, cells);
  inv420P3C3<NetSse2>(pY0, pY1, pCb, pCr, pRow0, pRow1, cells);
}



void unrealYCbCr(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep, int height) {
  for (int y = 0; y < height; ++y) {
    const Lum8u* s = rowPtr(pSrc, y, srcStep);
    unrealPixel(s[0], s[1], rowPtr(pDst, y, dstStep));
  }
}
void unrealYCbCrP(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3], int dstStep, int height) {
  for (int y = 0; y < height; ++y) {
    const Lum8u* s = rowPtr(pSrc, y, srcStep);
    uint8_t rgb[3];
    unrealPixel(s[0], s[1], rgb);
    for (int k = 0; k < 3; ++k) *rowPtr(pDst[k], y, dstStep) = rgb[k];
  }
}
// The YCrCb names: the same routines.
inline void unrealYCrCb(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep, int height) {
  unrealYCbCr(pSrc, srcStep, pDst, dstStep, height);
}
inline void unrealYCrCbP(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3], int dstStep,
                         int height) {
  unrealYCbCrP(pSrc, srcStep, pDst, dstStep, height);
}

// ===========================================================================
// Row drivers.

void myRGBToYCbCr422_C3_C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                            int dstStep, Isa isa) {
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep, isa, innerRGBToYCbCr422_C3_C2R);
}
void myRGBToYCrCb422_C3_C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                            int dstStep, Isa isa) {
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep, isa, innerRGBToYCrCb422_C3_C2R);
}
template <void (*Kernel)(const Lum8u*, const Lum8u*, const Lum8u*, Lum8u*, int)>
void rowsP3C2(const Lum8u* const s[3], Lum8u* pDst, int width, int height, int srcStep,
              int dstStep) {
  rows<Threading::Serial>(width, height, [&](int y) {
    Kernel(rowPtr(s[0], y, srcStep), rowPtr(s[1], y, srcStep), rowPtr(s[2], y, srcStep),
           rowPtr(pDst, y, dstStep), width);
  });
}
void myRGBToYCbCr422_C3P2_C2R(const Lum8u* const s[3], Lum8u* pDst, int width, int height,
                              int srcStep, int dstStep) {
  rowsP3C2<innerRGBToYCbCr422_C3P2_C3R>(s, pDst, width, height, srcStep, dstStep);
}
void myRGBToYCrCb422_C3P2_C2R(const Lum8u* const s[3], Lum8u* pDst, int width, int height,
                              int srcStep, int dstStep) {
  rowsP3C2<innerRGBToYCrCb422_C3P2_C3R>(s, pDst, width, height, srcStep, dstStep);
}
// Cells: width and height in cells; rows go by pairs.
void myRGBToYCbCr420_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pCb, Lum8u* pCr, int cellsW,
                              int cellsH, int srcStep, int yStep, int cbStep, int crStep, Isa isa) {
  rows<Threading::Serial>(cellsW, cellsH, [&](int j) {
    innerRGBToYCbCr420_8u_C3P3R(rowPtr(pSrc, 2 * j, srcStep), rowPtr(pSrc, 2 * j + 1, srcStep),
                                rowPtr(pY, 2 * j, yStep), rowPtr(pY, 2 * j + 1, yStep),
                                rowPtr(pCb, j, cbStep), rowPtr(pCr, j, crStep), cellsW, isa);
  });
}

void myYCbCrToRGB422_C2_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                            int dstStep, Isa isa) {
  if (width == 1) return unrealYCbCr(pSrc, srcStep, pDst, dstStep, height);
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep, isa, innerYCbCrToRGB422_C2_C3R);
}
void myYCrCbToRGB422_C2_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                            int dstStep, Isa isa) {
  if (width == 1) return unrealYCrCb(pSrc, srcStep, pDst, dstStep, height);
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep, isa, innerYCrCbToRGB422_C2_C3R);
}
template <void (*Kernel)(const Lum8u*, Lum8u*, Lum8u*, Lum8u*, int)>
void rowsC2P3(const Lum8u* pSrc, Lum8u* const d[3], int width, int height, int srcStep,
              int dstStep) {
  rows<Threading::Serial>(width, height, [&](int y) {
    Kernel(rowPtr(pSrc, y, srcStep), rowPtr(d[0], y, dstStep), rowPtr(d[1], y, dstStep),
           rowPtr(d[2], y, dstStep), width);
  });
}
void myYCbCr422ToRGB_C2_C3P2R(const Lum8u* pSrc, Lum8u* const d[3], int width, int height,
                              int srcStep, int dstStep) {
  if (width == 1) return unrealYCbCrP(pSrc, srcStep, d, dstStep, height);
  rowsC2P3<innerYCbCr422ToRGB_C2_C3P2R>(pSrc, d, width, height, srcStep, dstStep);
}
void myYCrCb422ToRGB_C2_C3P2R(const Lum8u* pSrc, Lum8u* const d[3], int width, int height,
                              int srcStep, int dstStep) {
  if (width == 1) return unrealYCrCbP(pSrc, srcStep, d, dstStep, height);
  rowsC2P3<innerYCrCb422ToRGB_C2_C3P2R>(pSrc, d, width, height, srcStep, dstStep);
}
void myYCbCr422ToRGB_8u_P3C3R(const Lum8u* const s[3], Lum8u* pDst, int width, int height,
                              const int srcStep[3], int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerYCbCr422ToRGB_8u_P3C3R(rowPtr(s[0], y, srcStep[0]), rowPtr(s[1], y, srcStep[1]),
                                rowPtr(s[2], y, srcStep[2]), rowPtr(pDst, y, dstStep), width, isa);
  });
}
// Gets the full width and height, passes width >> 1 cells to the kernel and
// stops at height & ~1.
void myYCbCr420ToRGB_8u_P3C3R(const Lum8u* const s[3], Lum8u* pDst, int width, int height,
                              const int srcStep[3], int dstStep, Isa isa) {
  const int cells = width >> 1;
  rows<Threading::Serial>(cells, height >> 1, [&](int j) {
    innerYCbCr420ToRGB_8u_P3C3R(rowPtr(s[0], 2 * j, srcStep[0]), rowPtr(s[0], 2 * j + 1, srcStep[0]),
                                rowPtr(s[1], j, srcStep[1]), rowPtr(s[2], j, srcStep[2]),
                                rowPtr(pDst, 2 * j, dstStep), rowPtr(pDst, 2 * j + 1, dstStep), cells, isa);
  });
}

}  // namespace ycbcrsub
}  // namespace lum

// ===========================================================================
// Public functions: the checks of their pattern, then one call.  The plane
// forms run pattern P2: the single pointer is tested with the arrays
// themselves, before the size; the arrays' entries after it.

namespace {
inline LumStatus oddCells(LumSize roi) {
  return ((roi.width | roi.height) & 1) ? LumWarnOddSize : LumOk;
}
}  // namespace

LUM_PUBLIC_A(lumiRGBToYCbCr422_8u_C3C2R, P1, Lum8u, Lum8u,
             myRGBToYCbCr422_C3_C2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_A(lumiRGBToYCrCb422_8u_C3C2R, P1, Lum8u, Lum8u,
             myRGBToYCrCb422_C3_C2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_C(lumiRGBToYCbCr422_8u_P3C2R, P2, Lum8u, Lum8u, 3,
             myRGBToYCbCr422_C3P2_C2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep))
LUM_PUBLIC_C(lumiRGBToYCrCb422_8u_P3C2R, P2, Lum8u, Lum8u, 3,
             myRGBToYCrCb422_C3P2_C2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep))

LUM_PUBLIC LumStatus lumiRGBToYCbCr420_8u_C3P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                                const int dstStep[3], LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pDst, 3)});
  if (st != LumOk) return st;
  myRGBToYCbCr420_8u_C3P3R(pSrc, pDst[0], pDst[1], pDst[2], roiSize.width >> 1,
                           roiSize.height >> 1, srcStep, dstStep[0], dstStep[1], dstStep[2], isa());
  return oddCells(roiSize);
}

LUM_PUBLIC_A(lumiYCbCr422ToRGB_8u_C2C3R, P1, Lum8u, Lum8u,
             myYCbCrToRGB422_C2_C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_A(lumiYCrCb422ToRGB_8u_C2C3R, P1, Lum8u, Lum8u,
             myYCrCbToRGB422_C2_C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
LUM_PUBLIC_B(lumiYCbCr422ToRGB_8u_C2P3R, P2, Lum8u, Lum8u, 3,
             myYCbCr422ToRGB_C2_C3P2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep))
LUM_PUBLIC_B(lumiYCrCb422ToRGB_8u_C2P3R, P2, Lum8u, Lum8u, 3,
             myYCrCb422ToRGB_C2_C3P2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep))

LUM_PUBLIC LumStatus lumiYCbCr422ToRGB_8u_P3C3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                Lum8u* pDst, int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3)});
  if (st != LumOk) return st;
  myYCbCr422ToRGB_8u_P3C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr420ToRGB_8u_P3C3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                Lum8u* pDst, int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3)});
  if (st != LumOk) return st;
  myYCbCr420ToRGB_8u_P3C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa());
  return oddCells(roiSize);
}
