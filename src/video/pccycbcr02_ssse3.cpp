// RGB with YCbCr and YCrCb 4:2:x: the kernels with 3-byte pixels, with the
// pixels (de)interleaved by SSSE3 byte shuffles.  Compiled with -mssse3 and
// entered only when the call's level is SSSE3 or more; the formulas are
// those of the SSE2 kernels (pccycbcr02_blocks.h), so the bytes are the same.
#include "video/pccycbcr02.h"
#include "video/pccycbcr02_blocks.h"

namespace {

using NetSsse3 = lum::Net3Ssse3;  // the shared network of 3-byte pixels

}  // namespace

namespace lum {
namespace ycbcrsub {

using namespace ycbcrsubblocks;

void rowRGBToYCbCr422_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int width) {
  fwd422C3<Order::CbCr, NetSsse3>(pSrc, pDst, width);
}
void rowRGBToYCrCb422_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int width) {
  fwd422C3<Order::CrCb, NetSsse3>(pSrc, pDst, width);
}
void rowRGBToYCbCr420_C3_ssse3(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                               Lum8u* pCb, Lum8u* pCr, int cells) {
  fwd420C3<NetSsse3>(pRow0, pRow1, pY0, pY1, pCb, pCr, cells);
}
void rowYCbCrToRGB422_C2C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int width, int x) {
  inv422C2C3<Order::CbCr, NetSsse3>(pSrc, pDst, width, x);
}
void rowYCrCbToRGB422_C2C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int width, int x) {
  inv422C2C3<Order::CrCb, NetSsse3>(pSrc, pDst, width, x);
}
void rowYCbCr422ToRGB_P3C3_ssse3(const Lum8u* pY, const Lum8u* pCb, const Lum8u* pCr, Lum8u* pDst,
                                 int width) {
  inv422P3C3<NetSsse3>(pY, pCb, pCr, pDst, width);
}
void rowYCbCr420ToRGB_P3C3_ssse3(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pCb,
                                 const Lum8u* pCr, Lum8u* pRow0, Lum8u* pRow1, int cells) {
  inv420P3C3<NetSsse3>(pY0, pY1, pCb, pCr, pRow0, pRow1, cells);
}

}  // namespace ycbcrsub
}  // namespace lum
