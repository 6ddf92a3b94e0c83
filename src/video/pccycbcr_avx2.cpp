// RGB and YCbCr 4:4:4: the block loops in AVX2, 32 pixels a round, the lane
// forms of B, C, E and F (pccycbcr.h) at 16 lanes of 16 bits.  Compiled
// with -mavx2 and entered only when the call's level is AVX2; the caller
// goes on with the narrower loops from where these stop.  The formulas are
// the SSE2 ones at twice the width, so the bytes are the same.  32 bytes of
// a channel widen within each 128-bit half (pixels 0-7 | 16-23 and 8-15 |
// 24-31) and pack back in order.
#include <immintrin.h>

#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "video/pccycbcr.h"

using namespace lum;
using namespace lum::ycbcr;

namespace {

using I = I16x16;

inline __m256i load256(const void* p) { return _mm256_loadu_si256(static_cast<const __m256i*>(p)); }
inline void store256(void* p, __m256i v) { _mm256_storeu_si256(static_cast<__m256i*>(p), v); }
inline I lo16(__m256i b) { return I{_mm256_unpacklo_epi8(b, _mm256_setzero_si256())}; }
inline I hi16(__m256i b) { return I{_mm256_unpackhi_epi8(b, _mm256_setzero_si256())}; }

// A formula of three lane registers to three on 32 pixels given as bytes.
template <void (*Lanes)(I, I, I, I*)>
inline void x32(const __m256i in[3], __m256i out[3]) {
  I lo[3], hi[3];
  Lanes(lo16(in[0]), lo16(in[1]), lo16(in[2]), lo);
  Lanes(hi16(in[0]), hi16(in[1]), hi16(in[2]), hi);
  for (int k = 0; k < 3; ++k) out[k] = _mm256_packus_epi16(lo[k].v, hi[k].v);
}

template <void (*Lanes)(I, I, I, I*)>
int c3toC3(const Lum8u* s, Lum8u* d, int x, int end) {
  for (; x + 32 <= end; x += 32) {
    __m256i in[3], out[3];
    deinterleave3x32Avx2(s + 3 * x, in);
    x32<Lanes>(in, out);
    interleave3x32Avx2(out, d + 3 * x);
  }
  return x;
}

template <I (*Lanes)(I, I, I)>
int passC(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pOut, int x, int end) {
  for (; x + 32 <= end; x += 32) {
    const __m256i r = load256(pR + x), g = load256(pG + x), b = load256(pB + x);
    const I lo = Lanes(lo16(r), lo16(g), lo16(b)), hi = Lanes(hi16(r), hi16(g), hi16(b));
    store256(pOut + x, _mm256_packus_epi16(lo.v, hi.v));
  }
  return x;
}

}  // namespace

namespace lum {
namespace ycbcr {

int blockRGBToYCbCr_C3_avx2(const Lum8u* pSrc, Lum8u* pDst, int x, int end) {
  return c3toC3<formBLanes<I>>(pSrc, pDst, x, end);
}
int blockRGBToYCbCr_P3_avx2(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pOut,
                            int plane, int x, int end) {
  switch (plane) {
    case 0: return passC<formCYLanes<I>>(pR, pG, pB, pOut, x, end);
    case 1: return passC<formCCbLanes<I>>(pR, pG, pB, pOut, x, end);
    default: return passC<formCCrLanes<I>>(pR, pG, pB, pOut, x, end);
  }
}
int blockYCbCrToRGB_C3_avx2(const Lum8u* pSrc, Lum8u* pDst, int x, int end) {
  return c3toC3<formELanes<I>>(pSrc, pDst, x, end);
}
int blockYCbCrToRGB_P3_avx2(const Lum8u* const src[3], Lum8u* const dst[3], int x, int end) {
  for (; x + 32 <= end; x += 32) {
    const __m256i in[3] = {load256(src[0] + x), load256(src[1] + x), load256(src[2] + x)};
    __m256i out[3];
    x32<formELanes<I>>(in, out);
    for (int k = 0; k < 3; ++k) store256(dst[k] + x, out[k]);
  }
  return x;
}
int blockYCbCrToRGB_P3C3_avx2(const Lum8u* const src[3], Lum8u* pDst, int x, int end) {
  for (; x + 32 <= end; x += 32) {
    const __m256i in[3] = {load256(src[0] + x), load256(src[1] + x), load256(src[2] + x)};
    __m256i out[3];
    x32<formFLanes<I>>(in, out);
    interleave3x32Avx2(out, pDst + 3 * x);
  }
  return x;
}

}  // namespace ycbcr
}  // namespace lum
