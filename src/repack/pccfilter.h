// Filtered chroma upsampling: the internal layers.
//
// 4:2:0 -> 4:2:2 with the new chroma rows computed by a four-tap vertical
// filter (-1, 9, 9, -1 over 16, rounding 8) in place of repeated rows, and
// 4:2:0 YCrCb -> BGR with chroma interpolated horizontally between
// neighbouring samples.
#ifndef LUM_PCCFILTER_H
#define LUM_PCCFILTER_H

#include "lumcc.h"

namespace lum {
namespace filter {

// The odd chroma rows of the filtered upsampling, from the even rows: d =
// clamp((9 * (b + c) - a - e + 8) >> 4), the shift arithmetic.  `vec` is the
// SSE2 loop (16 samples a step) with its scalar remainder, `scalar` the
// scalar form alone.
void innerFilterRow(const Lum8u* a, const Lum8u* b, const Lum8u* c, const Lum8u* e, Lum8u* d,
                    int n);
void innerFilterRowScalar(const Lum8u* a, const Lum8u* b, const Lum8u* c, const Lum8u* e,
                          Lum8u* d, int n);

// Whole-image kernels: width even, height a multiple of 8 (at least 8).
// swap 1: source plane 2 to destination plane 1 and plane 1 to plane 2.
void ownYCbCr420ToYCbCr422Filter_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                        Lum8u* const pDst[3], const int dstStep[3], int width,
                                        int height, int swap);
void ownYCbCr420ToYCbCr422Filter_8u_P2P3R(const Lum8u* pSrcY, int srcYStep,
                                          const Lum8u* pSrcCbCr, int srcCbCrStep,
                                          Lum8u* const pDst[3], const int dstStep[3], int width,
                                          int height);
// Planes Y, Cr, Cb -> B, G, R, alpha; scalar.  The full width and height.
void myYCrCb420ToBGR_8u_P3C4R(const Lum8u* const pSrc[3], const int srcStep[3], Lum8u* pDst,
                              int dstStep, int width, int height, Lum8u alphaValue);

}  // namespace filter
}  // namespace lum

#endif  // LUM_PCCFILTER_H
