// CbYCr 4:2:2: the rows with 3-byte pixels, (de)interleaved by SSSE3 byte
// shuffles.  Compiled with -mssse3 and entered only when the call's level is
// SSSE3 or more; the formulas are those of the SSE2 rows
// (pcccbycr_blocks.h), so the bytes are the same.
#include "video/pcccbycr.h"
#include "video/pcccbycr_blocks.h"

namespace {

using NetSsse3 = lum::Net3Ssse3;  // the shared network of 3-byte pixels

}  // namespace

namespace lum {
namespace cbycr {

using namespace cbycrblocks;

void rowRGBToCbYCr422_ssse3(const Lum8u* pSrc, Lum8u* pDst, int width) {
  rowToCbYCr<kPlainTable, true, NetSsse3>(pSrc, pDst, width);
}
void rowRGBToCbYCr422Gamma_ssse3(const Lum8u* pSrc, Lum8u* pDst, int width) {
  rowToCbYCr<kGammaTable, false, NetSsse3>(pSrc, pDst, width);
}
void rowCbYCr422ToRGB_ssse3(const Lum8u* pSrc, Lum8u* pDst, int width, int x) {
  rowToRGB<NetSsse3>(pSrc, pDst, width, x);
}

}  // namespace cbycr
}  // namespace lum
