// Service primitives: copy and fill of 8-bit images, maximum, sum and mean of
// float images.  The copy and fill kernels are shared with the repack
// families; the order of the sum's additions is part of its result.
#include "frame/pccsupport.h"

#include <emmintrin.h>

#include "frame/lum_frame.h"
#include "frame/lum_simd.h"

using namespace lum;
using namespace lum::svc;

namespace {

// ===========================================================================
// Copy and fill rows.
//
// A row below 64 bytes is copied byte by byte.  Otherwise a destination off
// a 16-byte boundary gets one unaligned 16-byte store over its head and moves
// up to the boundary; then 64 bytes a round with aligned stores (streaming
// ones when asked, closed by an sfence); then 16 bytes at a time and single
// bytes.  Every store lies inside the row.
constexpr int kPlainBelow = 64;

inline void store16(Lum8u* d, __m128i v) { _mm_store_si128(reinterpret_cast<__m128i*>(d), v); }
inline void stream16(Lum8u* d, __m128i v) { _mm_stream_si128(reinterpret_cast<__m128i*>(d), v); }

// Source loads for the 64-byte rounds, one policy per source alignment.
struct SrcAligned16 {  // movdqa
  static __m128i load(const Lum8u* s) { return _mm_load_si128(reinterpret_cast<const __m128i*>(s)); }
};
struct SrcAligned8 {  // two aligned 8-byte halves (movq, movhps): never split a cache line
  static __m128i load(const Lum8u* s) {
    const __m128d lo = _mm_castsi128_pd(loadl64(s));
    return _mm_castpd_si128(_mm_loadh_pd(lo, reinterpret_cast<const double*>(s + 8)));
  }
};
struct SrcUnaligned {  // alignment 4 and below: movdqu
  static __m128i load(const Lum8u* s) { return loadu(s); }
};

// 64-byte rounds over n bytes (n a multiple of 64), destination 16-aligned.
template <class Src, bool Stream>
inline void copyRounds(const Lum8u* s, Lum8u* d, int n) {
  for (int i = 0; i < n; i += 64) {
    const __m128i a = Src::load(s + i), b = Src::load(s + i + 16);
    const __m128i c = Src::load(s + i + 32), e = Src::load(s + i + 48);
    if (Stream) {
      stream16(d + i, a);
      stream16(d + i + 16, b);
      stream16(d + i + 32, c);
      stream16(d + i + 48, e);
    } else {
      store16(d + i, a);
      store16(d + i + 16, b);
      store16(d + i + 32, c);
      store16(d + i + 48, e);
    }
  }
}

template <bool Stream>
inline void copyRoundsBySource(const Lum8u* s, Lum8u* d, int n) {
  const uintptr_t a = reinterpret_cast<uintptr_t>(s);
  if ((a & 15) == 0)
    copyRounds<SrcAligned16, Stream>(s, d, n);
  else if ((a & 7) == 0)
    copyRounds<SrcAligned8, Stream>(s, d, n);
  else
    copyRounds<SrcUnaligned, Stream>(s, d, n);
}

inline void copyRow(const Lum8u* s, Lum8u* d, int length, bool nonTemporal) {
  if (length < kPlainBelow) {
    for (int i = 0; i < length; ++i) d[i] = s[i];
    return;
  }
  const int mis = static_cast<int>(reinterpret_cast<uintptr_t>(d) & 15);
  if (mis != 0) {
    storeu(d, loadu(s));
    const int head = 16 - mis;
    s += head;
    d += head;
    length -= head;
  }
  const int rounds = length & ~63;
  if (nonTemporal) {
    copyRoundsBySource<true>(s, d, rounds);
    _mm_sfence();
  } else {
    copyRoundsBySource<false>(s, d, rounds);
  }
  int i = rounds;
  for (; i + 16 <= length; i += 16) store16(d + i, loadu(s + i));
  for (; i < length; ++i) d[i] = s[i];
}

inline void setRow(const Lum8u* pattern, Lum8u* d, int length, bool nonTemporal) {
  if (length < kPlainBelow) {
    for (int i = 0; i < length; ++i) d[i] = pattern[i & 15];
    return;
  }
  const __m128i v = loadu(pattern);
  const int mis = static_cast<int>(reinterpret_cast<uintptr_t>(d) & 15);
  if (mis != 0) {
    storeu(d, v);
    const int head = 16 - mis;
    d += head;
    length -= head;
  }
  const int rounds = length & ~63;
  int i = 0;
  if (nonTemporal) {
    for (; i < rounds; i += 64) {
      stream16(d + i, v);
      stream16(d + i + 16, v);
      stream16(d + i + 32, v);
      stream16(d + i + 48, v);
    }
    _mm_sfence();
  } else {
    for (; i < rounds; i += 64) {
      store16(d + i, v);
      store16(d + i + 16, v);
      store16(d + i + 32, v);
      store16(d + i + 48, v);
    }
  }
  for (; i + 16 <= length; i += 16) store16(d + i, v);
  for (; i < length; ++i) d[i] = pattern[0];
}

// ===========================================================================
// Maximum.
//
// Four running values in one register; each row gives element 4k + j to
// value j and its last (width & 3) elements to value 0, one at a time.  At
// the end value 0 meets value 2 and value 1 meets value 3, then the first of
// those results meets the second, always by the same rule with the running
// side first.
inline float loadF(const char* p) {
  float v;
  memcpy(&v, p, sizeof v);
  return v;
}

// Vector twin of maxStep: maxps with the running values first.
inline __m128 maxStepVec(__m128 running, __m128 x) { return _mm_max_ps(running, x); }

inline __m128 maxRow(__m128 m, const char* p, int width) {
  int x = 0;
  for (; x + 4 <= width; x += 4) m = maxStepVec(m, _mm_loadu_ps(reinterpret_cast<const float*>(p + 4 * x)));
  for (; x < width; ++x) m = _mm_max_ss(m, _mm_set_ss(loadF(p + 4 * x)));  // maxStep on lane 0
  return m;
}

inline float maxLanes(__m128 m) {
  const __m128 pairs = maxStepVec(m, _mm_movehl_ps(m, m));  // lane 0: (0, 2), lane 1: (1, 3)
  const __m128 lane1 = _mm_shuffle_ps(pairs, pairs, _MM_SHUFFLE(1, 1, 1, 1));
  return maxStep(_mm_cvtss_f32(pairs), _mm_cvtss_f32(lane1));
}

// ===========================================================================
// Sum, accurate path (hint 2): A takes the even elements of every row, B the
// odd ones, each converted to double and added in order; an odd last element
// goes to A.
//
// One pair in scalar form is A = A + (double)x0, B = B + (double)x1; the
// vector twin does both at once, A in lane 0 and B in lane 1 (cvtps2pd,
// addpd), and the odd last element takes the scalar form's first half.
inline __m128d sumPairVec(__m128d AB, const char* p) {
  return _mm_add_pd(AB, _mm_cvtps_pd(_mm_castsi128_ps(loadl64(p))));
}

inline void sumRowDouble(const char* p, int width, double& A, double& B) {
  __m128d AB = _mm_set_pd(B, A);
  const int pairs = width & ~1;
  for (int x = 0; x < pairs; x += 2) AB = sumPairVec(AB, p + 4 * x);
  A = _mm_cvtsd_f64(AB);
  B = _mm_cvtsd_f64(_mm_unpackhi_pd(AB, AB));
  if (width & 1) A = A + static_cast<double>(loadF(p + 4 * (width - 1)));
}

// Sum, fast path (any other hint): four single-precision accumulators of four
// lanes per row; the two lanes left of each row go into an 80-bit total.
//
// Partial additions: lanes 0 and 1 only (the others kept as they are), and
// lane 0 only.
inline __m128 addLanes01(__m128 v, const char* p) {
  const __m128 s = _mm_add_ps(v, _mm_castsi128_ps(loadl64(p)));
  return _mm_castpd_ps(_mm_move_sd(_mm_castps_pd(v), _mm_castps_pd(s)));
}
inline __m128 addLane0(__m128 v, const char* p) { return _mm_add_ss(v, _mm_set_ss(loadF(p))); }
inline __m128 load4(const char* p) { return _mm_loadu_ps(reinterpret_cast<const float*>(p)); }
inline __m128 load4a(const char* p) { return _mm_load_ps(reinterpret_cast<const float*>(p)); }

inline void sumRowFast(const char* p, int width, long double& S) {
  __m128 V0 = _mm_setzero_ps(), V1 = V0, V2 = V0, V3 = V0;
  const uintptr_t a = reinterpret_cast<uintptr_t>(p);
  const bool wordAligned = (a & 3) == 0;
  // Head: a word-aligned row off a 16-byte boundary first takes h elements.
  if (wordAligned && (a & 15) != 0) {
    const int h = 4 - static_cast<int>((a >> 2) & 3);
    if (width >= h) {
      if (h >= 2) {
        V0 = addLanes01(V0, p);
        p += 8;
      }
      if (h & 1) {
        V1 = addLane0(V1, p);
        p += 4;
      }
      width -= h;
    }
  }
  // Body: 16 elements a round over four accumulators from a 16-byte boundary,
  // or 4 a round into V0 when the row is not even word-aligned.
  if (wordAligned) {
    for (; width >= 16; width -= 16, p += 64) {
      V0 = _mm_add_ps(V0, load4a(p));
      V1 = _mm_add_ps(V1, load4a(p + 16));
      V2 = _mm_add_ps(V2, load4a(p + 32));
      V3 = _mm_add_ps(V3, load4a(p + 48));
    }
  } else {
    for (; width >= 4; width -= 4, p += 16) V0 = _mm_add_ps(V0, load4(p));
  }
  // Remainder, tested in this order on what is left.
  if (width >= 8) {
    V0 = _mm_add_ps(V0, load4(p));
    V1 = _mm_add_ps(V1, load4(p + 16));
    p += 32;
    width -= 8;
  }
  if (width >= 4) {
    V2 = _mm_add_ps(V2, load4(p));
    p += 16;
    width -= 4;
  }
  if (width >= 2) {
    V3 = addLanes01(V3, p);
    p += 8;
    width -= 2;
  }
  if (width >= 1) V2 = addLane0(V2, p);
  // Row result: lanes 2 and 3 are added onto lanes 0 and 1 last.
  V0 = _mm_add_ps(V0, V1);
  V2 = _mm_add_ps(V2, V3);
  V0 = _mm_add_ps(V0, V2);
  V0 = _mm_add_ps(V0, _mm_movehl_ps(V0, V0));
  const float lane0 = _mm_cvtss_f32(V0);
  const float lane1 = _mm_cvtss_f32(_mm_shuffle_ps(V0, V0, _MM_SHUFFLE(1, 1, 1, 1)));
  S = S + static_cast<long double>(lane0);
  S = S + static_cast<long double>(lane1);
}

constexpr int kHintAccurate = 2;

}  // namespace

namespace lum {
namespace svc {

// ===========================================================================
// Own kernels.

void owniCopy_8u_C1_W7(const Lum8u* pSrc, Lum8u* pDst, int length, int nonTemporal) {
  copyRow(pSrc, pDst, length, nonTemporal != 0);
}

void ownccCopy_8u_C1_W7(const Lum8u* pSrc, Lum8u* pDst, int length, int nonTemporal) {
  copyRow(pSrc, pDst, length, nonTemporal != 0);
}

void owniSet_8u_C1_W7(const Lum8u* pPattern, Lum8u* pDst, int length, int nonTemporal) {
  setRow(pPattern, pDst, length, nonTemporal != 0);
}

void ownpi_Max_32f_C1R(const Lum32f* pSrc, int srcStep, LumSize roiSize, Lum32f* pMax) {
  __m128 m = _mm_set1_ps(maxStart());
  for (int y = 0; y < roiSize.height; ++y)
    m = maxRow(m, reinterpret_cast<const char*>(rowPtr(pSrc, y, srcStep)), roiSize.width);
  *pMax = maxLanes(m);
}

void ownpi_Sum_32f_C1R(const Lum32f* pSrc, int srcStep, LumSize roiSize, Lum64f* pSum, int hint) {
  if (hint == kHintAccurate) {
    double A = 0.0, B = 0.0;
    for (int y = 0; y < roiSize.height; ++y)
      sumRowDouble(reinterpret_cast<const char*>(rowPtr(pSrc, y, srcStep)), roiSize.width, A, B);
    *pSum = B + A;
    return;
  }
  long double S = 0.0L;
  for (int y = 0; y < roiSize.height; ++y)
    sumRowFast(reinterpret_cast<const char*>(rowPtr(pSrc, y, srcStep)), roiSize.width, S);
  *pSum = static_cast<double>(S);
}

}  // namespace svc
}  // namespace lum

// ===========================================================================
// Public functions.

LUM_PUBLIC LumStatus lumiCopy_8u_C1R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                     LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  const int nonTemporal = copyNonTemporal(roiSize.width, roiSize.height) ? 1 : 0;
  int length = roiSize.width, rows = roiSize.height;
  if (srcStep == dstStep && srcStep == roiSize.width) {  // one contiguous run
    length = pixelCount32(roiSize.width, roiSize.height);
    rows = 1;
  }
  for (int y = 0; y < rows; ++y)
    owniCopy_8u_C1_W7(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), length, nonTemporal);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiSet_8u_C1R(Lum8u value, Lum8u* pDst, int dstStep, LumSize roiSize) {
  const LumStatus st = checkP1({pDst}, roiSize);
  if (st != LumOk) return st;
  Lum8u pattern[16];
  for (Lum8u& b : pattern) b = value;
  const int nonTemporal = setNonTemporal(roiSize.width, roiSize.height) ? 1 : 0;
  int length = roiSize.width, rows = roiSize.height;
  if (dstStep == roiSize.width) {  // one contiguous run
    length = pixelCount32(roiSize.width, roiSize.height);
    rows = 1;
  }
  for (int y = 0; y < rows; ++y) owniSet_8u_C1_W7(pattern, rowPtr(pDst, y, dstStep), length, nonTemporal);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiMax_32f_C1R(const Lum32f* pSrc, int srcStep, LumSize roiSize,
                                     Lum32f* pMax) {
  const LumStatus st = checkP1({pSrc, pMax}, roiSize);
  if (st != LumOk) return st;
  ownpi_Max_32f_C1R(pSrc, srcStep, roiSize, pMax);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiSum_32f_C1R(const Lum32f* pSrc, int srcStep, LumSize roiSize,
                                     Lum64f* pSum, int hint) {
  const LumStatus st = checkP1({pSrc, pSum}, roiSize);
  if (st != LumOk) return st;
  ownpi_Sum_32f_C1R(pSrc, srcStep, roiSize, pSum, hint);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiMean_32f_C1R(const Lum32f* pSrc, int srcStep, LumSize roiSize,
                                      Lum64f* pMean, int hint) {
  if (pMean == nullptr) return LumErrNullPtr;
  Lum64f sum;
  const LumStatus st = lumiSum_32f_C1R(pSrc, srcStep, roiSize, &sum, hint);
  if (st != LumOk) return st;
  // The sum, already a double, over the 32-bit pixel count, in double.
  *pMean = sum / static_cast<double>(pixelCount32(roiSize.width, roiSize.height));
  return LumOk;
}
