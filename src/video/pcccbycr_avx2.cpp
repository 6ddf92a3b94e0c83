// CbYCr 4:2:2 to RGB: the block loop in AVX2, 32 pixels a round, formula F
// (pccycbcr.h) at 16 lanes of 16 bits.  Compiled with -mavx2 and entered only
// when the call's level is AVX2; the caller goes on with the narrower loops
// from where this stops.  The formula is the SSE2 one at twice the width, so
// the bytes are the same.  Each 128-bit half of a load holds whole pixel
// pairs: pixels 0-7 | 16-23 and 8-15 | 24-31, which pack back to 0-15 |
// 16-31, the order of the 3-byte interleave.
#include <immintrin.h>

#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "video/pccycbcr.h"
#include "video/pcccbycr.h"

namespace {

using namespace lum;
using I = I16x16;

inline void lanesF(__m256i w, I o[3]) {
  const __m256i ch = _mm256_and_si256(w, _mm256_set1_epi16(0x00ff));
  const __m256i cb = _mm256_shufflehi_epi16(_mm256_shufflelo_epi16(ch, _MM_SHUFFLE(2, 2, 0, 0)),
                                            _MM_SHUFFLE(2, 2, 0, 0));
  const __m256i cr = _mm256_shufflehi_epi16(_mm256_shufflelo_epi16(ch, _MM_SHUFFLE(3, 3, 1, 1)),
                                            _MM_SHUFFLE(3, 3, 1, 1));
  ycbcr::formFLanes(I{_mm256_srli_epi16(w, 8)}, I{cb}, I{cr}, o);
}

}  // namespace

namespace lum {
namespace cbycr {

int blockCbYCr422ToRGB_avx2(const Lum8u* s, Lum8u* d, int end) {
  int x = 0;
  for (; x + 32 <= end; x += 32) {
    const Lum8u* p = s + 2 * x;
    I a[3], b[3];
    lanesF(loadHalves(p, p + 32), a);       // pixels 0-7 | 16-23
    lanesF(loadHalves(p + 16, p + 48), b);  // pixels 8-15 | 24-31
    __m256i c[3];
    for (int k = 0; k < 3; ++k) c[k] = _mm256_packus_epi16(a[k].v, b[k].v);
    interleave3x32Avx2(c, d + 3 * x);
  }
  return x;
}

}  // namespace cbycr
}  // namespace lum
