// Deinterlacing conversions of NV12 (4:2:0 P2): the internal layers.
//
// Each luma row is smoothed with its two vertical neighbours (1, 2, 1 over
// 4; the first row of a frame 3, 1 over 4, the last 1, 3 over 4), which
// blends the two fields of an interlaced frame, and each output chroma row
// r is the average of source chroma rows r and r + 1 (the last one, with no
// row below, of rows n - 1 and n - 2).  A frame is done at once or in
// horizontal slices run from the top; a slice's last two rows need the next
// slice, so every slice after the first writes two rows above its start.
//
// The block loops average with the one-instruction rounding-up average
// avg(a, b) = (a + b + 1) >> 1 nested two ways; the scalar loops add and
// shift down, some with a rounding term of 4.  Which part of a row goes to
// which is fixed routine by routine (pccdeinterlace.cpp) and is part of the
// result.
#ifndef LUM_PCCDEINTERLACE_H
#define LUM_PCCDEINTERLACE_H

#include "lumcc.h"

namespace lum {
namespace deinterlace {

// The slice selector of the public functions.
constexpr int kSliceFirst = 1, kSliceMiddle = 4, kSliceLast = 16, kSliceAll = 21;

// Whole-slice routines; width and height even, at least 2.  Source pointers
// of middle and last slices are already moved up by 2 luma rows and 1
// chroma row.  C2: the destination likewise moved up by 2 rows.  P3: the
// routines move the destination themselves.
void myNV12ToYUY2Deinterlace_edge_P2C2R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                        int srcCbCrStep, Lum8u* pDst, int dstStep, int width,
                                        int height, int layout);
void myNV12ToYUY2Deinterlace_middle_P2C2R(const Lum8u* pSrcY, int srcYStep,
                                          const Lum8u* pSrcCbCr, int srcCbCrStep, Lum8u* pDst,
                                          int dstStep, int width, int height);
void myNV12ToYUY2Deinterlace_All_P2C2R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                       int srcCbCrStep, Lum8u* pDst, int dstStep, int width,
                                       int height);
// P3: `hdtv` selects the aligned form (width a multiple of 64, every row
// 16-byte aligned), which has block formulas only.
void ownNV12ToYV12Deinterlace_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* const pDst[3], const int dstStep[3],
                                    int width, int height, int layout, bool hdtv);

}  // namespace deinterlace
}  // namespace lum

#endif  // LUM_PCCDEINTERLACE_H
