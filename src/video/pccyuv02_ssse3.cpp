// RGB and YUV 4:2:2 and 4:2:0: the block loops of the pixel-order kernels
// with the 3-byte pixels (de)interleaved by SSSE3 byte shuffles, 16 pixels
// (8 cells) a round.  Compiled with -mssse3 and entered only when the call's
// level is SSSE3 or more; the formulas are those of the SSE2 loops
// (pccyuv02_blocks.h), so the bytes are the same.
#include "video/pccyuv02.h"
#include "video/pccyuv02_blocks.h"

namespace {

using namespace yuvsubblocks;


}  // namespace

namespace lum {
namespace yuvsub {

int blockRGBToYUV422_C3C2_ssse3(const Lum8u* pSrc, Lum8u* pDst, int x, int end) {
  return blockRGBToYUV422_C3C2<Net3Ssse3>(pSrc, pDst, x, end);
}
int blockRGBToYUV422_C3P3_ssse3(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int x,
                                int end) {
  return blockRGBToYUV422_C3P3<Net3Ssse3>(pSrc, pY, pU, pV, x, end);
}
int blockYUV422ToRGB_C2C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int x, int end) {
  return blockYUV422ToRGB_C2C3<Net3Ssse3>(pSrc, pDst, x, end);
}
int blockYUV422ToRGB_P3C3_ssse3(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                                int x, int end) {
  return blockYUV422ToRGB_I1(pY, pU, pV, x, end, StoreC3<Net3Ssse3>{pDst});
}
int blockRGBToYUV420_C3P3_ssse3(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                                Lum8u* pU, Lum8u* pV, int c, int endCells) {
  return blockRGBToYUV420_C3P3<Net3Ssse3>(pRow0, pRow1, pY0, pY1, pU, pV, c, endCells);
}
int blockYUV420ToRGB_P3C3_ssse3(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                                const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int c, int endCells) {
  const StoreC3<Net3Ssse3> rows[2] = {{pRow0}, {pRow1}};
  return blockYUV420ToRGB_I1(pY0, pY1, pU, pV, c, endCells, rows);
}

}  // namespace yuvsub
}  // namespace lum
