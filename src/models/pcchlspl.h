// BGR and HLS plane layouts: the 8u HLS arithmetic of pccmskcolor_hls.h in
// BGR order (B, G, R at plane or sample 0, 1, 2; H, L, S likewise; alpha at
// 3) over planar and pixel-order layouts.  The formulas are the 8u scalar
// forms and vector twins of that header: a main loop of 4 pixels a round
// with the reciprocal as it stands (rgbToHls8uBlockVec, hlsToRgb8uBlockVec)
// and a scalar tail that refines it (rgbToHls8uTail, hlsToRgb8uTail).
#ifndef LUM_PCCHLSPL_H
#define LUM_PCCHLSPL_H

#include "lumcc.h"
#include "models/pccmskcolor_hls.h"

namespace lum {
namespace hlspl {
// Pixels a round of every main loop of this family.
constexpr int kBlock = 4;

// One-row kernels: the first pixel address of each plane (or the one
// interleaved row), then the width.  Alpha goes across unchanged where the
// layout pairs have it; innerBGRToHLS_8u_AC4R leaves the destination's alpha
// as it was.
void innerBGRToHLS_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width);
void ownpi_BGRToHLS_8u_AP4(const Lum8u* pB, const Lum8u* pG, const Lum8u* pR, const Lum8u* pA,
                           Lum8u* pH, Lum8u* pL, Lum8u* pS, Lum8u* pDstA, int width);
void ownpi_BGRToHLS_8u_AP4C4(const Lum8u* pB, const Lum8u* pG, const Lum8u* pR,
                             const Lum8u* pA, Lum8u* pDst, int width);
void ownpi_BGRToHLS_8u_AC4P4(const Lum8u* pSrc, Lum8u* pH, Lum8u* pL, Lum8u* pS, Lum8u* pDstA,
                             int width);
void ownpi_BGRToHLS_8u_P3(const Lum8u* pB, const Lum8u* pG, const Lum8u* pR, Lum8u* pH,
                          Lum8u* pL, Lum8u* pS, int width);
void ownpi_BGRToHLS_8u_P3C3(const Lum8u* pB, const Lum8u* pG, const Lum8u* pR, Lum8u* pDst,
                            int width);
void ownpi_BGRToHLS_8u_C3P3(const Lum8u* pSrc, Lum8u* pH, Lum8u* pL, Lum8u* pS, int width);
void ownpi_HLSToBGR_8u_AP4(const Lum8u* pH, const Lum8u* pL, const Lum8u* pS, const Lum8u* pA,
                           Lum8u* pB, Lum8u* pG, Lum8u* pR, Lum8u* pDstA, int width);
void ownpi_HLSToBGR_8u_AP4C4(const Lum8u* pH, const Lum8u* pL, const Lum8u* pS,
                             const Lum8u* pA, Lum8u* pDst, int width);
void ownpi_HLSToBGR_8u_AC4P4(const Lum8u* pSrc, Lum8u* pB, Lum8u* pG, Lum8u* pR, Lum8u* pDstA,
                             int width);
void ownpi_HLSToBGR_8u_P3(const Lum8u* pH, const Lum8u* pL, const Lum8u* pS, Lum8u* pB,
                          Lum8u* pG, Lum8u* pR, int width);
void ownpi_HLSToBGR_8u_P3C3(const Lum8u* pH, const Lum8u* pL, const Lum8u* pS, Lum8u* pDst,
                            int width);
void ownpi_HLSToBGR_8u_C3P3(const Lum8u* pSrc, Lum8u* pB, Lum8u* pG, Lum8u* pR, int width);

// Row driver of lumiBGRToHLS_8u_AC4R: a parallel region at any size.
void myBGRToHLS_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                        int dstStep);

}  // namespace hlspl
}  // namespace lum

#endif  // LUM_PCCHLSPL_H
