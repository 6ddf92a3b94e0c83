// RGB and HLS: the main loops of the 32f C3 kernels in AVX2, eight pixels a
// float register.  Compiled with -mavx2 and entered only when the call's
// level is AVX2 or more; the caller finishes each row with its four-lane
// loop and scalar forms.
//
// The arithmetic is rgbToHls32fLanes and hlsToRgbLanes of
// pccmskcolor_hls.h, the formulas of the four-lane loop instantiated on
// eight lanes: the same IEEE operations in the same order, lane by lane
// (vdivps rounds as divps does, vminps and vmaxps pass on their second
// operand as minps and maxps do, the comparisons are the same predicates),
// so the bits are those of the SSE2 forms.  What is this unit's own is the
// (de)interleave of 3-float pixels across the two 128-bit halves.
//
// The forms of the headers live in the AVX2 namespace of lum_simd.h, so none
// of them stands in for a copy of another unit.
#include <immintrin.h>

#include "models/pccmskcolor_hls.h"
#include "models/pccmskcolor_hls_blocks.h"

namespace {

using namespace lum;
using namespace lum::hls;

// Eight pixels of 3 floats (24 floats, read and written exactly): pixels
// 0-3 in the low 128-bit half of each register, 4-7 in the high half, so
// that the in-half shuffles of deinterleave3x4ps / interleave3x4ps sort both
// halves at once.
inline __m256 load2x4f(const Lum32f* lo, const Lum32f* hi) {
  return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(lo)), _mm_loadu_ps(hi), 1);
}
inline void load3x8f(const Lum32f* p, __m256 c[3]) {
  const __m256 a = load2x4f(p, p + 12), b = load2x4f(p + 4, p + 16), e = load2x4f(p + 8, p + 20);
  const __m256 x = _mm256_shuffle_ps(a, b, _MM_SHUFFLE(1, 0, 2, 1));
  const __m256 y = _mm256_shuffle_ps(b, e, _MM_SHUFFLE(2, 1, 3, 2));
  c[0] = _mm256_shuffle_ps(a, y, _MM_SHUFFLE(2, 0, 3, 0));
  c[1] = _mm256_shuffle_ps(x, y, _MM_SHUFFLE(3, 1, 2, 0));
  c[2] = _mm256_shuffle_ps(x, e, _MM_SHUFFLE(3, 0, 3, 1));
}
inline void store2x4f(Lum32f* lo, Lum32f* hi, __m256 v) {
  _mm_storeu_ps(lo, _mm256_castps256_ps128(v));
  _mm_storeu_ps(hi, _mm256_extractf128_ps(v, 1));
}
inline void store3x8f(Lum32f* p, __m256 s0, __m256 s1, __m256 s2) {
  const __m256 t0 = _mm256_shuffle_ps(s0, s1, _MM_SHUFFLE(2, 0, 2, 0));
  const __m256 t1 = _mm256_shuffle_ps(s2, s0, _MM_SHUFFLE(3, 1, 2, 0));
  const __m256 t2 = _mm256_shuffle_ps(s1, s2, _MM_SHUFFLE(3, 1, 3, 1));
  store2x4f(p, p + 12, _mm256_shuffle_ps(t0, t1, _MM_SHUFFLE(2, 0, 2, 0)));
  store2x4f(p + 4, p + 16, _mm256_shuffle_ps(t2, t0, _MM_SHUFFLE(3, 1, 2, 0)));
  store2x4f(p + 8, p + 20, _mm256_shuffle_ps(t1, t2, _MM_SHUFFLE(3, 1, 3, 1)));
}

// A 32f C3 block loop, 8 pixels a round: step(three channel registers) gives
// the three output registers.
template <class Step>
inline int block32fC3(const Lum32f* pSrc, Lum32f* pDst, int end, Step step) {
  int x = 0;
  for (; x + 8 <= end; x += 8) {
    hlsblocks::prefetchAhead(pSrc + 3 * x);
    hlsblocks::prefetchAhead(pSrc + 3 * x + 12);
    __m256 c[3], o[3];
    load3x8f(pSrc + 3 * x, c);
    step(c, o);
    store3x8f(pDst + 3 * x, o[0], o[1], o[2]);
  }
  return x;
}

}  // namespace

namespace lum {
namespace hls {

int blockRGBToHLS_32f_C3_avx2(const Lum32f* pSrc, Lum32f* pDst, int end) {
  return block32fC3(pSrc, pDst, end, [](const __m256* c, __m256* o) {
    const Hls32fLanes<F32x8> r = rgbToHls32fLanes(F32x8{c[0]}, F32x8{c[1]}, F32x8{c[2]});
    o[0] = r.H.v;
    o[1] = r.L.v;
    o[2] = r.S.v;
  });
}
int blockHLSToRGB_32f_C3_avx2(const Lum32f* pSrc, Lum32f* pDst, int end) {
  return block32fC3(pSrc, pDst, end, [](const __m256* c, __m256* o) {
    const RgbLanes<F32x8> r =
        hlsToRgbLanes(F32x8{c[0]} * broadcast<F32x8>(360.0f), F32x8{c[1]}, F32x8{c[2]});
    o[0] = r.R.v;
    o[1] = r.G.v;
    o[2] = r.B.v;
  });
}

}  // namespace hls
}  // namespace lum
