// RGB and YCbCr 4:4:4: the block loops of the pixel-order kernels with the
// 3-byte pixels (de)interleaved by SSSE3 byte shuffles.  Compiled with
// -mssse3 and entered only when the call's level is SSSE3 or more; the
// formulas are those of the SSE2 loops (pccycbcr_blocks.h), so the bytes are
// the same.
#include "video/pccycbcr.h"
#include "video/pccycbcr_blocks.h"

namespace {

using namespace ycbcrblocks;


}  // namespace

namespace lum {
namespace ycbcr {

int blockRGBToYCbCr_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int x, int end) {
  return blockC3toC3<Net3Ssse3>(pSrc, pDst, x, end, StepB{});
}
int blockYCbCrToRGB_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int x, int end) {
  return blockC3toC3<Net3Ssse3>(pSrc, pDst, x, end, StepE{});
}
int blockYCbCrToRGB_P3C3_ssse3(const Lum8u* const src[3], Lum8u* pDst, int x, int end) {
  return blockP3toC3<Net3Ssse3>(src, pDst, x, end, StepF{});
}

}  // namespace ycbcr
}  // namespace lum
