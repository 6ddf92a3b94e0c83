// RGB and HSV: the 8u C3 main loops with the 3-byte pixels (de)interleaved by
// SSSE3 byte shuffles.  Compiled with -mssse3 and entered only when the
// call's level is SSSE3 or more; the arithmetic is the 4-lane main loop of
// pccmskcolor_hsv.h, so the bytes are those of the SSE2 loop.
#include "models/pccmskcolor_hsv.h"

using namespace lum;
using namespace lum::hsv;

namespace {

template <Vec8uFn fn>
int block8uC3(const Lum8u* s, Lum8u* d, int x, int end) {
  for (; x + 16 <= end; x += 16) {
    __m128i in[3], out[3];
    deinterleave3x16Ssse3(s + 3 * x, in);
    block16x8u<fn>(in, out);
    interleave3x16Ssse3(out, d + 3 * x);
  }
  return x;
}

}  // namespace

namespace lum {
namespace hsv {

int blockRGBToHSV_8u_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int x, int end) {
  return block8uC3<rgbToHsvBlockVec<Hsv8u>>(pSrc, pDst, x, end);
}
int blockHSVToRGB_8u_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int x, int end) {
  return block8uC3<hsvToRgbBlockVec<Hsv8u>>(pSrc, pDst, x, end);
}

}  // namespace hsv
}  // namespace lum
