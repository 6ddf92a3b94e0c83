// RGB and YUV 4:4:4: the block loops of the pixel-order kernels with the
// 3-byte pixels (de)interleaved by SSSE3 byte shuffles.  Compiled with
// -mssse3 and entered only when the processor has SSSE3; the formulas are
// the SSE2 ones of pccyuv01_blocks.h, so the bytes are the same.
#include "video/pccyuv01.h"
#include "video/pccyuv01_blocks.h"

namespace {

using namespace yuv444blocks;


}  // namespace

namespace lum {
namespace yuv444 {

int blockRGBToYUV_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return blockC3toC3<Net3Ssse3>(pSrc, pDst, 0, end, StepF1{});
}
int blockRGBToYUV_C3P3_ssse3(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int end) {
  return blockC3toP3<Net3Ssse3>(pSrc, planes3(pY, pU, pV).p, 0, end, StepF1{});
}
int blockYUVToRGB_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return blockC3toC3<Net3Ssse3>(pSrc, pDst, 0, end, StepG1{});
}
int blockYUVToRGB_P3C3_ssse3(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                             int end) {
  return blockP3toC3<Net3Ssse3>(planes3c(pY, pU, pV).p, pDst, 0, end, StepG4{});
}

}  // namespace yuv444
}  // namespace lum
