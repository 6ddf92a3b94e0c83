// RGB and YUV 4:4:4: the block loops of the pixel-order kernels with the
// 3-byte pixels (de)interleaved by SSSE3 byte shuffles.  Compiled with
// -mssse3 and entered only when the processor has SSSE3; the formulas are
// the SSE2 ones of pccyuv01_blocks.h, so the bytes are the same.
#include "video/pccyuv01.h"
#include "video/pccyuv01_blocks.h"

namespace {

using namespace yuv444blocks;

struct NetSsse3 {
  static constexpr bool kRound32 = false;
  static void load16(const Lum8u* p, __m128i c[3]) { deinterleave3x16Ssse3(p, c); }
  static void store16(const __m128i c[3], Lum8u* p) { interleave3x16Ssse3(c, p); }
};

}  // namespace

namespace lum {
namespace yuv444 {

int blockRGBToYUV_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return blockC3toC3<NetSsse3>(pSrc, pDst, end, StepF1{});
}
int blockRGBToYUV_C3P3_ssse3(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int end) {
  return blockC3toP3<NetSsse3>(pSrc, pY, pU, pV, end, StepF1{});
}
int blockYUVToRGB_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return blockC3toC3<NetSsse3>(pSrc, pDst, end, StepG1{});
}
int blockYUVToRGB_P3C3_ssse3(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                             int end) {
  return blockP3toC3<NetSsse3>(pY, pU, pV, pDst, end, StepG4{});
}

}  // namespace yuv444
}  // namespace lum
