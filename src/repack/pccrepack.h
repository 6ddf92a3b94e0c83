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

#include "frame/lum_cpu.h"
#include "lumcc.h"

// ---------------------------------------------------------------------------
// One-row forms, for the tests: every form as a pointer-array call, with the
// bytes each stream holds per unit of the form.  `vec` is the row as the
// kernels run it (the faster rounds the call's Isa allows, the SSE2 block
// loop, its tail), `scalar` the scalar form alone; both write exactly n units.
namespace lum {
namespace repack {

struct RowForm {
  const char* name;
  int nSrc, nDst;
  int srcBytes[4], dstBytes[4];  // bytes per unit of each stream
  int block;                     // units per round of the block loop
  void (*vec)(const Lum8u* const* s, Lum8u* const* d, int n, Isa isa);
  void (*scalar)(const Lum8u* const* s, Lum8u* const* d, int n);
};
// All row forms; *count receives their number.
const RowForm* rowForms(int* count);


// ---------------------------------------------------------------------------
// Faster rounds of the row forms (pccrepack_ssse3.cpp, pccrepack_avx2.cpp),
// entered only when the call's Isa allows.  Each runs its whole rounds from
// unit 0 and returns the number of units done (a multiple of its round,
// at most n); the SSE2 block loop and the tail take the rest.  They give
// the bytes of the SSE2 block loop.  Store: how the 16-byte stores of the
// main destination stream go (as the SSE2 policies StorePlain, StoreStream, StoreAligned:
// StoreStream is non-temporal 16-byte stores, fenced by the kernel; StoreAligned
// also loads the source aligned); narrower and chroma stores are plain.
enum class Store { StorePlain, StoreStream, StoreAligned };
// SplitC2 (C2 pixel pairs -> Y and two chroma rows); yOdd: Y in bytes 1, 3.
int splitC2_ssse3(int n, bool yOdd, Store m, const Lum8u* s, Lum8u* y, Lum8u* a, Lum8u* b);
int splitC2_avx2(int n, bool yOdd, Store m, const Lum8u* s, Lum8u* y, Lum8u* a, Lum8u* b);
// LumaC2 (C2 pixel pairs -> Y row).
int lumaC2_avx2(int n, bool yOdd, Store m, const Lum8u* s, Lum8u* y);
// SwapC2Chroma (bytes 1 and 3 of each 4-byte group exchanged).
int swapC2Chroma_ssse3(int n, Store m, const Lum8u* s, Lum8u* d);
int swapC2Chroma_avx2(int n, Store m, const Lum8u* s, Lum8u* d);
// PackC2 (Y row and two chroma rows -> C2 pairs).
int packC2_avx2(int n, Store m, const Lum8u* y, const Lum8u* a, const Lum8u* b, Lum8u* d);
// Interleave2 (two rows -> pairs) and Deinterleave2 (pairs -> two rows).
int interleave2_avx2(int n, Store m, const Lum8u* a, const Lum8u* b, Lum8u* d);
int deinterleave2_avx2(int n, Store m, const Lum8u* s, Lum8u* a, Lum8u* b);

// ---------------------------------------------------------------------------
// Whole-image kernels: sizes already rounded down to whole cells; height may
// be 0 or negative (nothing is done).  `swap` as documented in lumcc.h for
// the public functions that pass it.
void ownYCbCr422ToYCbCr420_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                  Lum8u* const pDst[3], const int dstStep[3], int width,
                                  int height, Isa isa);
void ownYCbCr420ToYCbCr422_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                  Lum8u* const pDst[3], const int dstStep[3], int width,
                                  int height, int swap, Isa isa);
void ownYCbCr422ToYCbCr422_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                    const int dstStep[3], int width, int height, int swap, Isa isa);
void alYCbCr422ToYCbCr422_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                   const int dstStep[3], int width, int height, Isa isa);
void ownCbYCr422ToYCbCr422_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                    const int dstStep[3], int width, int height, Isa isa);
void ownYCbCr422ToYCbCr420_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                    const int dstStep[3], int width, int height, int swap, Isa isa);
void ownCbYCr422ToYCbCr420_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                    const int dstStep[3], int width, int height, Isa isa);
void ownYCbCr422ToYCbCr411_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                    const int dstStep[3], int width, int height, int swap, Isa isa);
void ownCbYCr422ToYCbCr411_8u_C2P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                    const int dstStep[3], int width, int height, Isa isa);
void ownYCbCr422ToYCbCr420_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                    int dstCbCrStep, int width, int height, Isa isa);
void ownYCbCr420ToYCbCr422_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* const pDst[3], const int dstStep[3],
                                    int width, int height, Isa isa);
void ownYCbCr420ToYCbCr420_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                    int dstCbCrStep, int width, int height, Isa isa);
void ownYCbCr420ToYCbCr420_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* const pDst[3], const int dstStep[3],
                                    int width, int height, Isa isa);
void ownYCbCr422ToYCbCr411_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                    int dstCbCrStep, int width, int height, Isa isa);
void ownYCrCb420ToYCbCr411_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                    int dstCbCrStep, int width, int height, int swap, Isa isa);
void ownYCbCr420ToYCbCr411_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* const pDst[3], const int dstStep[3],
                                    int width, int height, Isa isa);
void ownYCbCr411ToYCbCr422_8u_P3C2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDst, int dstStep, int width, int height, int swap, Isa isa);
void ownYCbCr411ToYCbCr422_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                  Lum8u* const pDst[3], const int dstStep[3], int width,
                                  int height, int swap, Isa isa);
void ownYCbCr411ToYCbCr420_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                  Lum8u* const pDst[3], const int dstStep[3], int width,
                                  int height, Isa isa);
void ownYCbCr411ToYCbCr420_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                    int dstCbCrStep, int width, int height, Isa isa);
void ownYCbCr411ToYCbCr411_8u_P3P2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr,
                                    int dstCbCrStep, int width, int height, Isa isa);
void ownYCbCr411ToYCbCr422_8u_P2C2R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* pDst, int dstStep, int width,
                                    int height, Isa isa);
void ownYCbCr411ToYCbCr422_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* const pDst[3], const int dstStep[3],
                                    int width, int height, Isa isa);
void ownYCbCr411ToYCbCr420_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* const pDst[3], const int dstStep[3],
                                    int width, int height, int swap, Isa isa);
void ownYCbCr411ToYCbCr411_8u_P2P3R(const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr,
                                    int srcCbCrStep, Lum8u* const pDst[3], const int dstStep[3],
                                    int width, int height, Isa isa);
void ownYCbCr422ToYCbCr411_8u_C2P2R(const Lum8u* pSrc, int srcStep, Lum8u* pDstY, int dstYStep,
                                    Lum8u* pDstCbCr, int dstCbCrStep, int width, int height, Isa isa);
void ownYCbCr422ToYCrCb422_8u_C2R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                  int width, int height, Isa isa);
void ownYCbCr422ToYCbCr411_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                  Lum8u* const pDst[3], const int dstStep[3], int width,
                                  int height, Isa isa);
void ownYCbCr422ToYCrCb422_8u_P3C2R(const Lum8u* const pSrc[3], const int srcStep[3],
                                    Lum8u* pDst, int dstStep, int width, int height, Isa isa);

}  // namespace repack
}  // namespace lum

#endif  // LUM_PCCREPACK_H
