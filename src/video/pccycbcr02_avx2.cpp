// YCbCr and YCrCb 4:2:2 C2 to RGB: the block loop in AVX2, 32 pixels a round,
// formula E (pccycbcr.h) at 16 lanes of 16 bits.  Compiled with -mavx2 and
// entered only when the call's level is AVX2; the caller goes on with the
// narrower loops from where this stops.  The formula is the SSE2 one at twice
// the width, so the bytes are the same.  Each 128-bit half of a load holds
// whole pixel pairs: pixels 0-7 | 16-23 and 8-15 | 24-31, which pack back to
// 0-15 | 16-31, the order of the 3-byte interleave.
#include <immintrin.h>

#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "video/pccycbcr.h"
#include "video/pccycbcr02.h"

namespace {

using namespace lum;
using I = I16x16;

// 16 pixels of C2 (two 8-pixel halves) -> R, G, B lanes by E; `cbFirst`: Cb
// at byte 1 of each pair.
inline void lanesE(__m256i w, bool cbFirst, I o[3]) {
  const __m256i ch = _mm256_srli_epi16(w, 8);
  const __m256i first = _mm256_shufflehi_epi16(_mm256_shufflelo_epi16(ch, _MM_SHUFFLE(2, 2, 0, 0)),
                                               _MM_SHUFFLE(2, 2, 0, 0));
  const __m256i second = _mm256_shufflehi_epi16(_mm256_shufflelo_epi16(ch, _MM_SHUFFLE(3, 3, 1, 1)),
                                                _MM_SHUFFLE(3, 3, 1, 1));
  const I Y{_mm256_and_si256(w, _mm256_set1_epi16(0x00ff))};
  ycbcr::formELanes(Y, I{cbFirst ? first : second}, I{cbFirst ? second : first}, o);
}

}  // namespace

namespace lum {
namespace ycbcrsub {

int blockYCbCrToRGB422_C2C3_avx2(const Lum8u* s, Lum8u* d, int end, bool cbFirst) {
  int x = 0;
  for (; x + 32 <= end; x += 32) {
    const Lum8u* p = s + 2 * x;
    I a[3], b[3];
    lanesE(loadHalves(p, p + 32), cbFirst, a);       // pixels 0-7 | 16-23
    lanesE(loadHalves(p + 16, p + 48), cbFirst, b);  // pixels 8-15 | 24-31
    __m256i c[3];
    for (int k = 0; k < 3; ++k) c[k] = _mm256_packus_epi16(a[k].v, b[k].v);
    interleave3x32Avx2(c, d + 3 * x);
  }
  return x;
}

}  // namespace ycbcrsub
}  // namespace lum
