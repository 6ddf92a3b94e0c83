// RGB and YUV 4:4:4: the AC4 block loops with AVX-512 byte-masked stores
// (one store writes the colour bytes of four pixels and leaves their alpha
// bytes untouched).  Compiled with -mavx512bw -mavx512vl and entered only
// when the processor has both; the formulas are the SSE2 ones of
// pccyuv01_blocks.h, so the bytes are the same.
#include <immintrin.h>

#include "video/pccyuv01.h"
#include "video/pccyuv01_blocks.h"

namespace {

using namespace yuv444blocks;

struct StoreMasked {
  static void store4(Lum8u* d, __m128i v) { _mm_mask_storeu_epi8(d, 0x7777, v); }
};

}  // namespace

namespace lum {
namespace yuv444 {

int blockRGBToYUV_AC4_avx512(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return blockAC4<StoreMasked>(pSrc, pDst, end, StepF2{});
}
int blockYUVToRGB_AC4_avx512(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return blockAC4<StoreMasked>(pSrc, pDst, end, StepG1AC4{});
}

}  // namespace yuv444
}  // namespace lum
