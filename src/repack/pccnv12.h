// NV12, YV12, YUY2 and UYVY repacks: the internal layers.
//
// The four names are this library's aliases of the layouts of
// repack/lum_layouts.h: YUY2 is YCbCr422 in C2 form ("Y0 Cb Y1 Cr"), UYVY
// is CbYCr422 in C2 form ("Cb Y0 Cr Y1"), NV12 is 4:2:0 in P2 form (a Y
// plane and a plane of Cb Cr pairs), YV12 is 4:2:0 in P3 form with the
// planes Y, Cr, Cb.  Nothing is computed: bytes are moved, chroma rows are
// repeated (4:2:0 -> 4:2:2) or the odd rows' chroma dropped (4:2:2 ->
// 4:2:0).
//
// Each public function checks its arguments and calls one row driver
// (my..., or the aligned twin al...), which walks the rows with the one-row
// forms of pccnv12.cpp: an SSE2 block of 32 pixels (16 pixel pairs; the Y
// copy 64 bytes) and a scalar remainder by pixel pairs.  The scalar form of
// each row form is the reference of its block, which writes the same bytes.
#ifndef LUM_PCCNV12_H
#define LUM_PCCNV12_H

#include "frame/lum_cpu.h"
#include "lumcc.h"
#include "repack/pccrepack.h"

namespace lum {
namespace nv12 {

// The one-row forms, for the tests (the RowForm of the layout repacks).
const lum::repack::RowForm* rowForms(int* count);

// Faster paths (pccnv12_avx2.cpp), entered when the call's level is AVX2:
// 32 pixel pairs (64 bytes of Y) a round; each returns the units done, and
// the SSE2 row goes on from there with the same bytes.
int copyY_avx2(const Lum8u* s, Lum8u* d, int n);
int splitPairs_avx2(const Lum8u* s, Lum8u* a, Lum8u* b, int pairs);
int mergePairs_avx2(const Lum8u* a, const Lum8u* b, Lum8u* d, int pairs);
int p2ToC2_avx2(bool uyvy, const Lum8u* y, const Lum8u* c, Lum8u* d, int pairs);
int p3ToC2_avx2(bool uyvy, const Lum8u* y, const Lum8u* a, const Lum8u* b, Lum8u* d, int pairs);

// Row drivers: width and height already rounded down (width even; height
// even except for the two C2 -> C2 drivers); isa: the call's level (the
// streaming and aligned paths stay SSE2).
void myNV12ToYUY2_8u_P2C2R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                           int srcCbCrStep, Lum8u* pDst, int dstStep, int width, int height, lum::Isa isa);
void myNV12ToUYVY_8u_P2C2R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                           int srcCbCrStep, Lum8u* pDst, int dstStep, int width, int height, lum::Isa isa);
void myNV12ToYV12_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                           int srcCbCrStep, Lum8u* const pDst[3], const int dstStep[3],
                           int width, int height, lum::Isa isa);
void myYV12ToNV12_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3], Lum8u* pDstY,
                           int dstYStep, Lum8u* pDstCbCr, int dstCbCrStep, int width,
                           int height, lum::Isa isa);
void myYV12ToYUY2420_8u_P3C2R(const Lum8u* const pSrc[3], const int srcStep[3], Lum8u* pDst,
                              int dstStep, int width, int height, lum::Isa isa);
// Aligned twin: every pointer and step 16-byte aligned; aligned loads and
// non-temporal stores, fenced at the end.  Same bytes as the plain driver.
void alYV12ToYUY2420_8u_P3C2R(const Lum8u* const pSrc[3], const int srcStep[3], Lum8u* pDst,
                              int dstStep, int width, int height);
void myYV12ToUYVY420_8u_P3C2R(const Lum8u* const pSrc[3], const int srcStep[3], Lum8u* pDst,
                              int dstStep, int width, int height, lum::Isa isa);
void myYUY2ToUYVY422_8u_C2R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep, int width,
                            int height);
void myUYVYToYUY2422_8u_C2R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep, int width,
                            int height);
void myYUY2ToYV12422_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                              const int dstStep[3], int width, int height);
void myUYVYToYV12422_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                              const int dstStep[3], int width, int height);
void myYUY2ToNV12_8u_C2P2R(const Lum8u* pSrc, int srcStep, Lum8u* pDstY, int dstYStep,
                           Lum8u* pDstCbCr, int dstCbCrStep, int width, int height);
void myUYVYToNV12_8u_C2P2R(const Lum8u* pSrc, int srcStep, Lum8u* pDstY, int dstYStep,
                           Lum8u* pDstCbCr, int dstCbCrStep, int width, int height);

}  // namespace nv12
}  // namespace lum

#endif  // LUM_PCCNV12_H
