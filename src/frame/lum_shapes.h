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
//   A  pSrc, srcStep, pDst, dstStep, roiSize                 pixel order both sides
//   B  pSrc, srcStep, pDst[n], dstStep, roiSize              pixel order to planes
//   C  pSrc[n], srcStep, pDst, dstStep, roiSize              planes to pixel order
//   D  pSrc[n], srcStep, pDst[n], dstStep, roiSize           planes to planes
//   N  value, pDst, dstStep, roiSize                         a fill
// and the service shapes, which the image suites leave to their own tests:
//   Stat      pSrc, srcStep, roiSize, pResult
//   StatHint  pSrc, srcStep, roiSize, pResult, hint
//   Other     allocation, identity, generator
enum class Shape { A, B, C, D, N, Stat, StatHint, Other };

// Layouts of one side: samples a pixel, planes, and which samples belong to
// the conversion.  An AC4 pixel's fourth sample is alpha, which a
// destination keeps as it was; a C4 destination has all four written; an
// AP4 image's fourth plane is alpha, copied through.
enum class Layout { C1, C3, AC4, C4, P3, AP4, None };
struct LayoutInfo {
  int samples;  // samples a pixel in one plane (pixel order) or 1 (planes)
  int planes;   // 1 for pixel order
};
constexpr LayoutInfo layoutInfo(Layout l) {
  return l == Layout::C1    ? LayoutInfo{1, 1}
         : l == Layout::C3  ? LayoutInfo{3, 1}
         : l == Layout::AC4 ? LayoutInfo{4, 1}
         : l == Layout::C4  ? LayoutInfo{4, 1}
         : l == Layout::P3  ? LayoutInfo{1, 3}
         : l == Layout::AP4 ? LayoutInfo{1, 4}
                            : LayoutInfo{0, 0};
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
