// Filtered chroma upsampling: public functions, kernels and row forms
// (pccfilter.h).
//
// 4:2:0 -> 4:2:2: Y rows are copied; source chroma row r goes to
// destination row 2r; then every odd row 2r + 1 is computed from the even
// destination rows just written, with the taps -1, 9, 9, -1 over rows r - 1,
// r, r + 1, r + 2 and a rounding 8, a missing row above the image replaced
// by the first row and one below by the last:
//   d[2r+1] = clamp((9 * (c[r] + c[r+1]) - c[r-1] - c[r+2] + 8) >> 4)
// (row indices clamped to 0 .. n-1, so the last odd row is
// (18 c[n-1] - c[n-2] - c[n-1] + 8) >> 4).  The SSE2 loop works in 16-bit
// lanes, which hold every sum exactly (at most 9 * 510 + 8), and packs with
// saturation: it writes the scalar form's bytes.
#include "repack/pccfilter.h"

#include <emmintrin.h>

#include "frame/lum_frame.h"
#include "frame/lum_simd.h"
#include "frame/pccsupport.h"

using lum::rowPtr;
using u8 = Lum8u;

namespace {

// The tap formula, scalar and on 8 samples in 16-bit lanes.
inline int tap4(int a, int b, int c, int e) { return lum::sat8u((9 * (b + c) - a - e + 8) >> 4); }
inline __m128i tap4Lanes(__m128i a, __m128i b, __m128i c, __m128i e) {
  const __m128i s = _mm_mullo_epi16(_mm_add_epi16(b, c), _mm_set1_epi16(9));
  const __m128i t = _mm_sub_epi16(_mm_sub_epi16(s, a), e);
  return _mm_srai_epi16(_mm_add_epi16(t, _mm_set1_epi16(8)), 4);
}

// A row of Cb Cr pairs split into two rows; 32 pairs a block.
void splitPairs(const u8* s, u8* cb, u8* cr, int pairs) {
  const __m128i even = _mm_set1_epi16(0x00ff);
  int k = 0;
  for (; k + 32 <= pairs; k += 32)
    for (int h = 0; h < 32; h += 16) {
      const __m128i v0 = lum::loadu(s + 2 * (k + h)), v1 = lum::loadu(s + 2 * (k + h) + 16);
      lum::storeu(cb + k + h, _mm_packus_epi16(_mm_and_si128(v0, even), _mm_and_si128(v1, even)));
      lum::storeu(cr + k + h, _mm_packus_epi16(_mm_srli_epi16(v0, 8), _mm_srli_epi16(v1, 8)));
    }
  for (; k < pairs; ++k) {
    cb[k] = s[2 * k];
    cr[k] = s[2 * k + 1];
  }
}

// The odd rows of one destination chroma plane of h rows whose even rows
// are written.
void oddRows(u8* d, int step, int width, int h) {
  const int n = h / 2;
  auto even = [&](int r) { return rowPtr(d, 2 * (r < 0 ? 0 : (r > n - 1 ? n - 1 : r)), step); };
  for (int r = 0; r < n; ++r)
    lum::filter::innerFilterRow(even(r - 1), even(r), even(r + 1), even(r + 2),
                                rowPtr(d, 2 * r + 1, step), width);
}

void copyRows(const u8* s, int sStep, u8* d, int dStep, int width, int height, int dRowMul) {
  for (int y = 0; y < height; ++y)
    lum::svc::ownccCopy_8u_C1_W7(rowPtr(s, y, sStep), rowPtr(d, dRowMul * y, dStep), width, 0);
}

// The colour step of the filtered BGR conversion (16.16 fixed point: 1.1644,
// 1.596, 0.813, 0.392, 2.017; 1220944 = 16 * 76309), arithmetic shift with
// no rounding, clamped.  Its own set: the other YCbCr inverse kernels differ
// from it in the last digits.
constexpr int kY = 76309, kCrR = 104597, kCrG = 53279, kCbG = 25675, kCbB = 132201,
              kOffset = 1220944;
inline void bgrPixel(int Y, int Cr, int Cb, u8 alpha, u8* d) {
  const int cr = Cr - 128, cb = Cb - 128, y = kY * Y - kOffset;
  d[0] = static_cast<u8>(lum::sat8u((y + kCbB * cb) >> 16));
  d[1] = static_cast<u8>(lum::sat8u((y - kCrG * cr - kCbG * cb) >> 16));
  d[2] = static_cast<u8>(lum::sat8u((y + kCrR * cr) >> 16));
  d[3] = alpha;
}

}  // namespace

namespace lum {
namespace filter {

void innerFilterRow(const u8* a, const u8* b, const u8* c, const u8* e, u8* d, int n) {
  const __m128i z = _mm_setzero_si128();
  int i = 0;
  for (; i + 16 <= n; i += 16) {
    const __m128i A = lum::loadu(a + i), B = lum::loadu(b + i), C = lum::loadu(c + i),
                  E = lum::loadu(e + i);
    const __m128i lo = tap4Lanes(_mm_unpacklo_epi8(A, z), _mm_unpacklo_epi8(B, z),
                                 _mm_unpacklo_epi8(C, z), _mm_unpacklo_epi8(E, z));
    const __m128i hi = tap4Lanes(_mm_unpackhi_epi8(A, z), _mm_unpackhi_epi8(B, z),
                                 _mm_unpackhi_epi8(C, z), _mm_unpackhi_epi8(E, z));
    lum::storeu(d + i, _mm_packus_epi16(lo, hi));
  }
  innerFilterRowScalar(a + i, b + i, c + i, e + i, d + i, n - i);
}
void innerFilterRowScalar(const u8* a, const u8* b, const u8* c, const u8* e, u8* d, int n) {
  for (int i = 0; i < n; ++i) d[i] = static_cast<u8>(tap4(a[i], b[i], c[i], e[i]));
}

void ownYCbCr420ToYCbCr422Filter_8u_P3R(const u8* const pSrc[3], const int srcStep[3],
                                        u8* const pDst[3], const int dstStep[3], int width,
                                        int height, int swap) {
  copyRows(pSrc[0], srcStep[0], pDst[0], dstStep[0], width, height, 1);
  for (int p = 1; p <= 2; ++p) {
    const int s = swap ? 3 - p : p;
    copyRows(pSrc[s], srcStep[s], pDst[p], dstStep[p], width / 2, height / 2, 2);
    oddRows(pDst[p], dstStep[p], width / 2, height);
  }
}

void ownYCbCr420ToYCbCr422Filter_8u_P2P3R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr,
                                          int srcCbCrStep, u8* const pDst[3],
                                          const int dstStep[3], int width, int height) {
  copyRows(pSrcY, srcYStep, pDst[0], dstStep[0], width, height, 1);
  for (int r = 0; r < height / 2; ++r)
    splitPairs(rowPtr(pSrcCbCr, r, srcCbCrStep), rowPtr(pDst[1], 2 * r, dstStep[1]),
               rowPtr(pDst[2], 2 * r, dstStep[2]), width / 2);
  for (int p = 1; p <= 2; ++p) oddRows(pDst[p], dstStep[p], width / 2, height);
}

// Row pairs with chroma row j; pixel 2k takes Cr[k], Cb[k], pixel 2k + 1
// the rounded-up average with the next sample, but the last pair both
// samples as they stand.  The last-pair step runs even with no whole pair
// (a width of 1), writing two pixels and reading two luma samples.
void myYCrCb420ToBGR_8u_P3C4R(const u8* const pSrc[3], const int srcStep[3], u8* pDst,
                              int dstStep, int width, int height, u8 alphaValue) {
  const int pairs = width / 2;
  for (int j = 0; j < height / 2; ++j) {
    const u8* cr = rowPtr(pSrc[1], j, srcStep[1]);
    const u8* cb = rowPtr(pSrc[2], j, srcStep[2]);
    for (int t = 0; t < 2; ++t) {
      const u8* y = rowPtr(pSrc[0], 2 * j + t, srcStep[0]);
      u8* d = rowPtr(pDst, 2 * j + t, dstStep);
      int k = 0;
      for (; k < pairs - 1; ++k) {
        bgrPixel(y[2 * k], cr[k], cb[k], alphaValue, d + 8 * k);
        bgrPixel(y[2 * k + 1], (cr[k] + cr[k + 1] + 1) >> 1, (cb[k] + cb[k + 1] + 1) >> 1,
                 alphaValue, d + 8 * k + 4);
      }
      bgrPixel(y[2 * k], cr[k], cb[k], alphaValue, d + 8 * k);
      bgrPixel(y[2 * k + 1], cr[k], cb[k], alphaValue, d + 8 * k + 4);
    }
  }
}

}  // namespace filter
}  // namespace lum

// ===========================================================================
// Public functions.
LUM_PUBLIC LumStatus lumiYCbCr420ToYCbCr422_Filter_8u_P3R(const Lum8u* const pSrc[3],
                                                          const int srcStep[3],
                                                          Lum8u* const pDst[3],
                                                          const int dstStep[3], LumSize roiSize) {
  const LumStatus st =
      lum::checkP3({pSrc, pDst}, {lum::arr(pSrc, 3), lum::arr(pDst, 3)}, roiSize, 2, 8);
  if (st != LumOk) return st;
  lum::filter::ownYCbCr420ToYCbCr422Filter_8u_P3R(pSrc, srcStep, pDst, dstStep,
                                                  roiSize.width & ~1, roiSize.height & ~7, 0);
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCrCb420ToYCbCr422_Filter_8u_P3R(const Lum8u* const pSrc[3],
                                                          const int srcStep[3],
                                                          Lum8u* const pDst[3],
                                                          const int dstStep[3], LumSize roiSize) {
  const LumStatus st =
      lum::checkP3({pSrc, pDst}, {lum::arr(pSrc, 3), lum::arr(pDst, 3)}, roiSize, 2, 8);
  if (st != LumOk) return st;
  lum::filter::ownYCbCr420ToYCbCr422Filter_8u_P3R(pSrc, srcStep, pDst, dstStep,
                                                  roiSize.width & ~1, roiSize.height & ~7, 1);
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr420ToYCbCr422_Filter_8u_P2P3R(const Lum8u* pSrcY, int srcYStep,
                                                            const Lum8u* pSrcCbCr,
                                                            int srcCbCrStep, Lum8u* const pDst[3],
                                                            const int dstStep[3],
                                                            LumSize roiSize) {
  const LumStatus st =
      lum::checkP3({pSrcY, pSrcCbCr, pDst}, {lum::arr(pDst, 3)}, roiSize, 2, 8);
  if (st != LumOk) return st;
  lum::filter::ownYCbCr420ToYCbCr422Filter_8u_P2P3R(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst,
                                                    dstStep, roiSize.width & ~1,
                                                    roiSize.height & ~7);
  return LumOk;
}
// Pattern P2: the arrays, the size, then the plane entries.
LUM_PUBLIC LumStatus lumiYCrCb420ToBGR_Filter_8u_P3C4R(const Lum8u* const pSrc[3],
                                                       const int srcStep[3], Lum8u* pDst,
                                                       int dstStep, LumSize roiSize,
                                                       Lum8u alphaValue) {
  const LumStatus st = lum::checkP2({pSrc, pDst}, roiSize, {lum::arr(pSrc, 3)});
  if (st != LumOk) return st;
  lum::filter::myYCrCb420ToBGR_8u_P3C4R(pSrc, srcStep, pDst, dstStep, roiSize.width,
                                        roiSize.height, alphaValue);
  return ((roiSize.width | roiSize.height) & 1) ? LumWarnOddSize : LumOk;
}
