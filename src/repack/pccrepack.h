// Subsampled layout repacking: the internal layers.
//
// Each public repack checks its arguments and calls one whole-image kernel
// (own...), which walks the rows and runs one-row kernels.  The one-row
// kernels are the row forms below: each has an SSE2 block loop with a scalar
// tail (inner...) and its scalar form (owncn...), which is the tail's code
// and the reference for the block.  No form does arithmetic on a sample:
// bytes are copied, dropped or repeated.  Layouts: repack/lum_layouts.h.
#ifndef LUM_PCCREPACK_H
#define LUM_PCCREPACK_H

#include "lumcc.h"

// ---------------------------------------------------------------------------
// One-row forms, for the tests: every form as a pointer-array call, with the
// bytes each stream holds per unit of the form.  `vec` is the SSE2 block loop
// with its tail, `scalar` the scalar form alone; both write exactly n units.
namespace lum {
namespace repack {

struct RowForm {
  const char* name;
  int nSrc, nDst;
  int srcBytes[4], dstBytes[4];  // bytes per unit of each stream
  int block;                     // units per round of the block loop
  void (*vec)(const Lum8u* const* s, Lum8u* const* d, int n);
  void (*scalar)(const Lum8u* const* s, Lum8u* const* d, int n);
};
// All row forms; *count receives their number.
const RowForm* rowForms(int* count);

}  // namespace repack
}  // namespace lum

// ---------------------------------------------------------------------------
// Whole-image kernels: sizes already rounded down to whole cells; height may
// be 0 or negative (nothing is done).  `swap` as documented in lumcc.h for
// the public functions that pass it.
void ownYCbCr422ToYCbCr420_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                  Lum8u* const pDst[3], const int dstStep[3], int width,
                                  int height);
void ownYCbCr420ToYCbCr422_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                  Lum8u* const pDst[3], const int dstStep[3], int width,
                                  int height, int swap);
void ownYCbCr422ToYCbCr422_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                    const int dstStep[3], int width, int height, int swap);
void alYCbCr422ToYCbCr422_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                   const int dstStep[3], int width, int height);
void ownCbYCr422ToYCbCr422_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                    const int dstStep[3], int width, int height);
void ownYCbCr422ToYCbCr420_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                    const int dstStep[3], int width, int height, int swap);
void ownCbYCr422ToYCbCr420_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                    const int dstStep[3], int width, int height);
void ownYCbCr422ToYCbCr411_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                    const int dstStep[3], int width, int height, int swap);
void ownCbYCr422ToYCbCr411_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                    const int dstStep[3], int width, int height);
void ownYCbCr422ToYCbCr420_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                    int dstCbCrStep, int width, int height);
void ownYCbCr420ToYCbCr422_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* const pDst[3], const int dstStep[3],
                                    int width, int height);
void ownYCbCr420ToYCbCr420_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                    int dstCbCrStep, int width, int height);
void ownYCbCr420ToYCbCr420_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* const pDst[3], const int dstStep[3],
                                    int width, int height);
void ownYCbCr422ToYCbCr411_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                    int dstCbCrStep, int width, int height);
void ownYCrCb420ToYCbCr411_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                    int dstCbCrStep, int width, int height, int swap);
void ownYCbCr420ToYCbCr411_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* const pDst[3], const int dstStep[3],
                                    int width, int height);
void ownYCbCr411ToYCbCr422_8u_P3C2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDst, int dstStep, int width, int height, int swap);
void ownYCbCr411ToYCbCr422_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                  Lum8u* const pDst[3], const int dstStep[3], int width,
                                  int height, int swap);
void ownYCbCr411ToYCbCr420_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                  Lum8u* const pDst[3], const int dstStep[3], int width,
                                  int height);
void ownYCbCr411ToYCbCr420_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                    int dstCbCrStep, int width, int height);
void ownYCbCr411ToYCbCr411_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                    int dstCbCrStep, int width, int height);
void ownYCbCr411ToYCbCr422_8u_P2C2R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* pDst, int dstStep, int width,
                                    int height);
void ownYCbCr411ToYCbCr422_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* const pDst[3], const int dstStep[3],
                                    int width, int height);
void ownYCbCr411ToYCbCr420_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* const pDst[3], const int dstStep[3],
                                    int width, int height, int swap);
void ownYCbCr411ToYCbCr411_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* const pDst[3], const int dstStep[3],
                                    int width, int height);
void ownYCbCr422ToYCbCr411_8u_C2P2R(const Lum8u* pSrc, int srcStep, Lum8u* pDstY, int dstYStep,
                                    Lum8u* pDstCbCr, int dstCbCrStep, int width, int height);
void ownYCbCr422ToYCrCb422_8u_C2R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                  int width, int height);
void ownYCbCr422ToYCbCr411_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                  Lum8u* const pDst[3], const int dstStep[3], int width,
                                  int height);
void ownYCbCr422ToYCrCb422_8u_P3C2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDst, int dstStep, int width, int height);

#endif  // LUM_PCCREPACK_H
