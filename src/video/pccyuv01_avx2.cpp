// RGB and YUV 4:4:4: the plane passes of the P3 kernels in AVX2, 32 pixels a
// round in 16 lanes of 16 bits.  Compiled with -mavx2 and entered only when
// the call's level is AVX2 or more; the caller finishes each pass with the
// SSE2 loop and the tail formula.  The arithmetic is the block formulas of
// pccyuv01.h (f1YLanes ... g2BLanes), the SSE2 ones at twice the width, so
// the bytes are the same.
#include <immintrin.h>

#include "video/pccyuv01.h"

using namespace lum;
using namespace lum::yuv444;

namespace {

using Lanes16Fn = I16x16 (*)(I16x16, I16x16, I16x16);

// 16 bytes widened to 16 lanes of 16 bits.
inline I16x16 widen16(const Lum8u* p) {
  return I16x16{_mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)))};
}

// One output plane of a P3 kernel over [0, n), n the largest multiple of 32
// not above end: the pack works per 128-bit half, so its quarters are put
// back in pixel order before the store.  Returns n.
template <Lanes16Fn fn>
int pass(const Lum8u* a, const Lum8u* b, const Lum8u* c, Lum8u* out, int end) {
  int x = 0;
  for (; x + 32 <= end; x += 32) {
    const I16x16 lo = fn(widen16(a + x), widen16(b + x), widen16(c + x));
    const I16x16 hi = fn(widen16(a + x + 16), widen16(b + x + 16), widen16(c + x + 16));
    const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi16(lo.v, hi.v), 0xD8);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + x), packed);
  }
  return x;
}

}  // namespace

namespace lum {
namespace yuv444 {

int blockRGBToYUV_P3_avx2(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pOut,
                          int plane, int end) {
  switch (plane) {
    case 0: return pass<f1YLanes<I16x16>>(pR, pG, pB, pOut, end);
    case 1: return pass<f1ULanes<I16x16>>(pR, pG, pB, pOut, end);
    default: return pass<f1VLanes<I16x16>>(pR, pG, pB, pOut, end);
  }
}
int blockYUVToRGB_P3_avx2(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pOut,
                          int plane, int end) {
  switch (plane) {
    case 0: return pass<g2RLanes<I16x16>>(pY, pU, pV, pOut, end);
    case 1: return pass<g2GLanes<I16x16>>(pY, pU, pV, pOut, end);
    default: return pass<g2BLanes<I16x16>>(pY, pU, pV, pOut, end);
  }
}

}  // namespace yuv444
}  // namespace lum
