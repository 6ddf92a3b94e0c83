// The primitive frame: argument-check patterns, row addressing, the parallel
// row frame and the rounding-control bracket.  Every family builds on these.
//
// Layers: public function (checks, unpacks, one call) -> row driver (my...,
// walks rows) -> one-row kernel (inner..., block loop + tail).
#ifndef LUM_FRAME_H
#define LUM_FRAME_H

#include <omp.h>
#include <stdint.h>
#include <xmmintrin.h>

#include <stddef.h>

#include <initializer_list>
#include <type_traits>

#include "frame/lum_cpu.h"
#include "frame/lum_shapes.h"
#include "lumcc.h"

// Public entry points of this library.
#define LUM_PUBLIC extern "C" LUM_API

namespace lum {

// ---------------------------------------------------------------------------
// Row addressing.  A step is a byte count; the product is formed at pointer
// width so that large images do not wrap on x86-64.
template <class T>
inline T* rowPtr(T* base, int y, int stepBytes) {
  using Byte = typename std::conditional<std::is_const<T>::value, const char, char>::type;
  return reinterpret_cast<T*>(reinterpret_cast<Byte*>(base) +
                              static_cast<ptrdiff_t>(y) * static_cast<ptrdiff_t>(stepBytes));
}

// Row y of an image whose step is counted in elements.
template <class T>
inline T* elemRow(T* base, int y, int stepElems) {
  return base + static_cast<ptrdiff_t>(y) * static_cast<ptrdiff_t>(stepElems);
}

// A step given in bytes to a 16-bit or 32-bit member is turned into elements
// by an arithmetic shift: a step that is not a multiple of the element size
// loses its low bits, a negative odd step rounds toward minus infinity.
inline int stepToElems(int stepBytes, int shift) { return stepBytes >> shift; }

// ---------------------------------------------------------------------------
// Argument checks.  Each public function runs exactly one pattern and returns
// on the first failure.
struct PtrArray {
  const void* const* p;
  int n;
};
template <class T>
inline PtrArray arr(T* const* p, int n) {
  return PtrArray{reinterpret_cast<const void* const*>(p), n};
}

inline bool anyNull(std::initializer_list<const void*> ptrs) {
  for (const void* p : ptrs)
    if (p == nullptr) return true;
  return false;
}
inline bool anyElemNull(std::initializer_list<PtrArray> arrays) {
  for (const PtrArray& a : arrays)
    for (int i = 0; i < a.n; ++i)
      if (a.p[i] == nullptr) return true;
  return false;
}
inline bool sizeBelow(LumSize roi, int minW = 1, int minH = 1) {
  return roi.width < minW || roi.height < minH;
}
inline bool anyStepBelow1(std::initializer_list<int> steps) {
  for (int s : steps)
    if (s < 1) return true;
  return false;
}

// P1: pointers null -> LumErrNullPtr; size below minimum -> LumErrSize.
inline LumStatus checkP1(std::initializer_list<const void*> ptrs, LumSize roi, int minW = 1,
                         int minH = 1) {
  if (anyNull(ptrs)) return LumErrNullPtr;
  if (sizeBelow(roi, minW, minH)) return LumErrSize;
  return LumOk;
}

// P2: the pointers (arrays themselves) null, then size, then each element of
// each pointer array, source first.
inline LumStatus checkP2(std::initializer_list<const void*> ptrs, LumSize roi,
                         std::initializer_list<PtrArray> arrays, int minW = 1, int minH = 1) {
  if (anyNull(ptrs)) return LumErrNullPtr;
  if (sizeBelow(roi, minW, minH)) return LumErrSize;
  if (anyElemNull(arrays)) return LumErrNullPtr;
  return LumOk;
}

// P3: all pointers, elements of arrays included, then size.
inline LumStatus checkP3(std::initializer_list<const void*> ptrs,
                         std::initializer_list<PtrArray> arrays, LumSize roi, int minW = 1,
                         int minH = 1) {
  if (anyNull(ptrs) || anyElemNull(arrays)) return LumErrNullPtr;
  if (sizeBelow(roi, minW, minH)) return LumErrSize;
  return LumOk;
}

// P4: as P1 or P3, with a step check after the size check.
inline LumStatus checkP4(std::initializer_list<const void*> ptrs,
                         std::initializer_list<PtrArray> arrays, LumSize roi,
                         std::initializer_list<int> steps, int minW = 1, int minH = 1) {
  LumStatus st = checkP3(ptrs, arrays, roi, minW, minH);
  if (st != LumOk) return st;
  if (anyStepBelow1(steps)) return LumErrStep;
  return LumOk;
}

// P5: all pointers, then steps, then size.
inline LumStatus checkP5(std::initializer_list<const void*> ptrs,
                         std::initializer_list<PtrArray> arrays, std::initializer_list<int> steps,
                         LumSize roi) {
  if (anyNull(ptrs) || anyElemNull(arrays)) return LumErrNullPtr;
  if (anyStepBelow1(steps)) return LumErrStep;
  if (sizeBelow(roi)) return LumErrSize;
  return LumOk;
}

// P6: pointers only; an empty region converts nothing and is LumOk.
inline LumStatus checkP6(std::initializer_list<const void*> ptrs,
                         std::initializer_list<PtrArray> arrays) {
  if (anyNull(ptrs) || anyElemNull(arrays)) return LumErrNullPtr;
  return LumOk;
}

// P7: arrays null, size below 1x1, elements null, then size below 2x2.
inline LumStatus checkP7(std::initializer_list<const void*> ptrs, LumSize roi,
                         std::initializer_list<PtrArray> arrays) {
  if (anyNull(ptrs)) return LumErrNullPtr;
  if (sizeBelow(roi, 1, 1)) return LumErrSize;
  if (anyElemNull(arrays)) return LumErrNullPtr;
  if (sizeBelow(roi, 2, 2)) return LumErrSize;
  return LumOk;
}

// ---------------------------------------------------------------------------
// Parallel row frame.
//
// The team size is read afresh from threads_omp_of_n_lum at each region.
inline int teamSize() {
  int n = threads_omp_of_n_lum;
  return n >= 1 ? n : 1;
}

// The threshold below which a group-1 driver stays on the calling thread.
constexpr int32_t kGroup1Threshold = 4097;

// width * height as a signed 32-bit product (it may wrap, and a negative
// product takes the serial path).
inline int32_t pixelCount32(int width, int height) {
  return static_cast<int32_t>(static_cast<uint32_t>(width) * static_cast<uint32_t>(height));
}

// The bits of the SSE control register that decide a result: rounding
// control (13-14), flush to zero (15) and denormals are zero (6).
constexpr unsigned kCsrModeBits = 0x6000u | 0x8000u | 0x0040u;

// The control register is per thread, and a worker of the team keeps its own
// mode.  Every thread of a region therefore computes under the caller's mode
// bits, read before the region: a worker whose bits differ takes the caller's
// for the rows it runs and gets its own back before the region ends.  The
// result is then the same for every team size, in every mode.
class CallerModeInThread {
 public:
  explicit CallerModeInThread(unsigned callerCsr) : own_(_mm_getcsr()) {
    const unsigned want = (own_ & ~kCsrModeBits) | (callerCsr & kCsrModeBits);
    changed_ = want != own_;
    if (changed_) _mm_setcsr(want);
  }
  ~CallerModeInThread() {
    if (changed_) _mm_setcsr((_mm_getcsr() & ~kCsrModeBits) | (own_ & kCsrModeBits));
  }
  CallerModeInThread(const CallerModeInThread&) = delete;
  CallerModeInThread& operator=(const CallerModeInThread&) = delete;

 private:
  unsigned own_;
  bool changed_;
};

// Region at any size (groups 2 to 6): a parallel construct with a static
// worksharing loop over rows, each thread going upward through its block
// under the caller's rounding mode.
template <class RowFn>
inline void parallelRows(int height, RowFn&& row) {
  const unsigned callerCsr = _mm_getcsr();
#pragma omp parallel num_threads(teamSize())
  {
    const CallerModeInThread mode(callerCsr);
#pragma omp for schedule(static)
    for (int y = 0; y < height; ++y) row(y);
  }
}

// Group-1 row driver: serial below 4097 pixels, a region otherwise.
template <class RowFn>
inline void group1Rows(int width, int height, RowFn&& row) {
  if (pixelCount32(width, height) < kGroup1Threshold) {
    for (int y = 0; y < height; ++y) row(y);
    return;
  }
  parallelRows(height, row);
}

// Serial row loop (families that run on the calling thread).
template <class RowFn>
inline void serialRows(int height, RowFn&& row) {
  for (int y = 0; y < height; ++y) row(y);
}

// The rows of a driver under its threading policy, named where it is used:
// rows<Threading::Serial>, rows<Threading::Group1>, rows<Threading::AnyRegion>.
template <Threading kPolicy, class RowFn>
inline void rows(int width, int height, RowFn&& row) {
  if constexpr (kPolicy == Threading::Serial) {
    serialRows(height, row);
  } else if constexpr (kPolicy == Threading::Group1) {
    group1Rows(width, height, row);
  } else {
    parallelRows(height, row);
  }
}

// ---------------------------------------------------------------------------
// Public functions from their shape (lum_shapes.h), with the check pattern
// named where the function is defined.  checks<P> takes every pointer, the
// plane arrays and the steps of a call and runs pattern P over them.
template <Pattern P>
inline LumStatus checks(std::initializer_list<const void*> ptrs,
                        std::initializer_list<PtrArray> arrays, std::initializer_list<int> steps,
                        LumSize roi) {
  if constexpr (P == Pattern::P1) {
    return checkP1(ptrs, roi);
  } else if constexpr (P == Pattern::P2) {
    return checkP2(ptrs, roi, arrays);
  } else if constexpr (P == Pattern::P3) {
    return checkP3(ptrs, arrays, roi);
  } else if constexpr (P == Pattern::P4) {
    return checkP4(ptrs, arrays, roi, steps);
  } else if constexpr (P == Pattern::P5) {
    return checkP5(ptrs, arrays, steps, roi);
  } else {
    static_assert(P == Pattern::P1, "shapes A to D use patterns P1 to P5");
  }
}

// One public function of shape A, B, C or D: the checks of pattern P, then
// the rest of the arguments (one statement, the driver's call, seeing pSrc,
// srcStep, pDst, dstStep and roiSize).  NS and ND are the numbers of planes of a planar side.
#define LUM_PUBLIC_A(name, P, S, D, ...)                                                  \
  LUM_PUBLIC LumStatus name(const S* pSrc, int srcStep, D* pDst, int dstStep,             \
                            LumSize roiSize) {                                            \
    const LumStatus st_ =                                                                 \
        lum::checks<lum::Pattern::P>({pSrc, pDst}, {}, {srcStep, dstStep}, roiSize);      \
    if (st_ != LumOk) return st_;                                                         \
    __VA_ARGS__;                                                                          \
    return LumOk;                                                                         \
  }
#define LUM_PUBLIC_B(name, P, S, D, ND, ...)                                              \
  LUM_PUBLIC LumStatus name(const S* pSrc, int srcStep, D* const pDst[ND], int dstStep,   \
                            LumSize roiSize) {                                            \
    const LumStatus st_ = lum::checks<lum::Pattern::P>({pSrc, pDst}, {lum::arr(pDst, ND)}, \
                                                       {srcStep, dstStep}, roiSize);      \
    if (st_ != LumOk) return st_;                                                         \
    __VA_ARGS__;                                                                          \
    return LumOk;                                                                         \
  }
#define LUM_PUBLIC_C(name, P, S, D, NS, ...)                                              \
  LUM_PUBLIC LumStatus name(const S* const pSrc[NS], int srcStep, D* pDst, int dstStep,   \
                            LumSize roiSize) {                                            \
    const LumStatus st_ = lum::checks<lum::Pattern::P>({pSrc, pDst}, {lum::arr(pSrc, NS)}, \
                                                       {srcStep, dstStep}, roiSize);      \
    if (st_ != LumOk) return st_;                                                         \
    __VA_ARGS__;                                                                          \
    return LumOk;                                                                         \
  }
#define LUM_PUBLIC_D(name, P, S, D, NS, ND, ...)                                          \
  LUM_PUBLIC LumStatus name(const S* const pSrc[NS], int srcStep, D* const pDst[ND],      \
                            int dstStep, LumSize roiSize) {                               \
    const LumStatus st_ = lum::checks<lum::Pattern::P>(                                   \
        {pSrc, pDst}, {lum::arr(pSrc, NS), lum::arr(pDst, ND)}, {srcStep, dstStep}, roiSize); \
    if (st_ != LumOk) return st_;                                                         \
    __VA_ARGS__;                                                                          \
    return LumOk;                                                                         \
  }

// The argument lists of one side of the subsampled shapes (E to M), for the
// public functions the repack families write out: planes with a step each,
// 4:2:2 pixel order, and a luma plane beside interleaved chroma.
#define LUM_P3 const Lum8u* const pSrc[3], const int srcStep[3]
#define LUM_TO_P3 Lum8u* const pDst[3], const int dstStep[3]
#define LUM_C2 const Lum8u* pSrc, int srcStep
#define LUM_TO_C2 Lum8u* pDst, int dstStep
#define LUM_P2 const Lum8u* pSrcY, int srcYStep, const Lum8u* pSrcCbCr, int srcCbCrStep
#define LUM_TO_P2 Lum8u* pDstY, int dstYStep, Lum8u* pDstCbCr, int dstCbCrStep

// ---------------------------------------------------------------------------
// The colour-model families (HSV, HLS, ...): a public function of shape A
// checks P1, turns its byte steps into elements (shift 0, 1 or 2) and calls
// its row driver with the pixel stride nchannels (3 for C3, 4 for AC4) and
// the call's instruction-set level; the driver runs the group-1 frame over a
// one-row kernel kernel(srcRow, dstRow, width, nchannels, isa).
template <class T, class Driver>
inline LumStatus modelPublicP1(const T* pSrc, int srcStep, T* pDst, int dstStep, LumSize roi,
                               int stepShift, int nchannels, Driver driver) {
  const LumStatus st = checkP1({pSrc, pDst}, roi);
  if (st != LumOk) return st;
  driver(pSrc, stepToElems(srcStep, stepShift), pDst, stepToElems(dstStep, stepShift), roi.width,
         roi.height, nchannels, isa());
  return LumOk;
}
// One such public function, defined in one line.
#define LUM_MODEL_PUBLIC_P1(name, T, driver, stepShift, nchannels)                              \
  LUM_PUBLIC LumStatus name(const T* pSrc, int srcStep, T* pDst, int dstStep, LumSize roiSize) { \
    return lum::modelPublicP1(pSrc, srcStep, pDst, dstStep, roiSize, stepShift, nchannels,     \
                              driver);                                                        \
  }
// A named row driver of such a family, in one line.
#define LUM_MODEL_DRIVER_GROUP1(name, T, kernel)                                        \
  void name(const T* pSrc, int srcStep, T* pDst, int dstStep, int width, int height,    \
            int nchannels, lum::Isa isa) {                                              \
    lum::modelRowsGroup1(pSrc, srcStep, pDst, dstStep, width, height, nchannels, isa,     \
                         kernel);                                                         \
  }
template <class T, class Kernel>
inline void modelRowsGroup1(const T* pSrc, int srcStepElems, T* pDst, int dstStepElems, int width,
                            int height, int nchannels, Isa isa, Kernel kernel) {
  rows<Threading::Group1>(width, height, [&](int y) {
    kernel(elemRow(pSrc, y, srcStepElems), elemRow(pDst, y, dstStepElems), width, nchannels,
           isa);
  });
}

// ---------------------------------------------------------------------------
// Rounding-control bracket: round to nearest for the life of the object; the
// caller's mode is restored only when it was another one.
class RoundNearestBracket {
 public:
  RoundNearestBracket() : kept_(lum_set_rc_ssx(0)) {}
  ~RoundNearestBracket() {
    if (kept_ & 0x6000) lum_set_cw_ssx(kept_);
  }
  RoundNearestBracket(const RoundNearestBracket&) = delete;
  RoundNearestBracket& operator=(const RoundNearestBracket&) = delete;
  int kept() const { return kept_; }

 private:
  int kept_;
};

}  // namespace lum

#endif  // LUM_FRAME_H
