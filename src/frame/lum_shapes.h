// The vocabulary of the function table (lum_functions.def), in one place:
// signature shapes, layouts, check patterns and threading policies.  The
// library's public functions are built from templates named by these words
// (lum_frame.h); the tests, lumdigest, lumconv and the benchmarks read the
// table through them.  Nothing here depends on the library's internals.
#ifndef LUM_SHAPES_H
#define LUM_SHAPES_H

#include "lumcc.h"

namespace lum {

// Signature shapes.  The argument order is always source, destination,
// region, then the family's own parameters; each image gives its pointer
// then its step (a byte count).
//   A  pSrc, srcStep, pDst, dstStep, roiSize                   pixel order both sides
//   B  pSrc, srcStep, pDst[n], dstStep, roiSize                pixel order to planes
//   C  pSrc[n], srcStep, pDst, dstStep, roiSize                planes to pixel order
//   D  pSrc[n], srcStep, pDst[n], dstStep, roiSize             planes to planes
//   E  pSrc, srcStep, pDst[3], dstStep[3], roiSize             a step for each plane
//   F  pSrc[3], srcStep[3], pDst, dstStep, roiSize
//   G  pSrc[3], srcStep, pDst[3], dstStep[3], roiSize
//   H  pSrc[3], srcStep[3], pDst[3], dstStep, roiSize
//   I  pSrc[3], srcStep[3], pDst[3], dstStep[3], roiSize
//   J  pSrc, pDst[3] / pSrc[3], pDst / pSrc[3], pDst[3], roiSize: no steps,
//      each derived from the width (packed images)
//   L  pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, then a destination by the
//      rules above (pixel order: pDst, dstStep; planes: pDst[3], dstStep[3])
//   M  a source by the rules above, then pDstY, dstYStep, pDstCbCr,
//      dstCbCrStep, roiSize
//   N  value, pDst, dstStep, roiSize                           a fill
// and the service shapes, which the image suites leave to their own tests:
//   Stat      pSrc, srcStep, roiSize, pResult
//   StatHint  pSrc, srcStep, roiSize, pResult, hint
// BEGIN shape Lx (deinterlacing) ----------------------------------------------
//   Lx  shape L with a trailing int selector (`layout` of the deinterlacing
//       conversions); the table calls it with the whole-frame selector 21
// END shape Lx ----------------------------------------------------------------
// BEGIN cbycr: shape A followed by an 8-bit alphaValue (C4 destinations).
//   AAlpha    pSrc, srcStep, pDst, dstStep, roiSize, alphaValue
// END cbycr
enum class Shape { A, B, C, D, E, F, G, H, I, J, L, M, N, Stat, StatHint, Other, Lx, AAlpha };

// Layouts of one side.  An AC4 pixel's fourth sample is alpha, which a
// destination keeps as it was; a C4 destination has all four written; an
// AP4 image's fourth plane is alpha, copied through.  The subsampled layouts:
// C2 (4:2:2 in pixel order, two bytes a pixel, a pair of pixels sharing one
// chroma pair), P3_422 / P3_420 / P3_411 (three planes, chroma at half width,
// half width and height, quarter width), P2_420 / P2_411 (a luma plane and
// one plane of interleaved chroma pairs).
enum class Layout { C1, C3, AC4, C4, P3, AP4, C2, P3_422, P3_420, P3_411, P2_420, P2_411, None };

constexpr int ceilDiv(int a, int b) { return (a + b - 1) / b; }

constexpr int planeCount(Layout l) {
  return l == Layout::None ? 0
         : (l == Layout::P3 || l == Layout::P3_422 || l == Layout::P3_420 || l == Layout::P3_411)
             ? 3
         : l == Layout::AP4                             ? 4
         : (l == Layout::P2_420 || l == Layout::P2_411) ? 2
                                                        : 1;
}
constexpr bool isPlanar(Layout l) { return planeCount(l) > 1; }
// Samples in one row of plane p of a region of width w (chroma rounded up:
// the buffers hold every partial cell).
constexpr int planeRowSamples(Layout l, int p, int w) {
  return l == Layout::C1                                ? w
         : l == Layout::C3                              ? 3 * w
         : (l == Layout::AC4 || l == Layout::C4)        ? 4 * w
         : l == Layout::C2                              ? 4 * ceilDiv(w, 2)
         : p == 0                                       ? w
         : (l == Layout::P3_422 || l == Layout::P3_420) ? ceilDiv(w, 2)
         : l == Layout::P3_411                          ? ceilDiv(w, 4)
         : l == Layout::P2_420                          ? 2 * ceilDiv(w, 2)
         : l == Layout::P2_411                          ? 2 * ceilDiv(w, 4)
                                                        : w;
}
// Rows of plane p of a region of height h.
constexpr int planeRows(Layout l, int p, int h) {
  return p > 0 && (l == Layout::P3_420 || l == Layout::P2_420) ? ceilDiv(h, 2) : h;
}

// Check patterns: the order in which a public function tests its arguments
// and returns on the first failure.  Nothing is written before all pass.
//   P1  pSrc, pDst null -> LumErrNullPtr; size below the minimum -> LumErrSize
//   P2  the pointers (arrays themselves) null, then size, then each element
//       of each pointer array, source first
//   P3  all pointers, elements of arrays included, then size
//   P4  as P1 or P3, with a step check (below 1 -> LumErrStep) after the size
//   P5  all pointers, then steps, then size
//   P6  pointers only: an empty region converts nothing and is LumOk
//   P7  arrays null, size below 1 by 1, elements null, size below 2 by 2
enum class Pattern { P1, P2, P3, P4, P5, P6, P7 };

// Threading: Serial functions run on the calling thread; Group1 drivers
// split rows on an OpenMP team from width * height >= 4097 on; AnyRegion
// functions open the team at any size.  The bytes never depend on the team.
enum class Threading { Serial, Group1, AnyRegion };

}  // namespace lum

#endif  // LUM_SHAPES_H
