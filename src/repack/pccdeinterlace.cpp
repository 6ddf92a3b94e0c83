// Deinterlacing conversions of NV12: public functions, slice routines and
// the row kernels they are built of (the filter: pccdeinterlace.h).
//
// A row kernel runs its block formula over the first `blockEnd` samples of
// a row (16 at a time, then 8), and its scalar formula over the rest; a row
// with no block form passes blockEnd 0.  Each formula is a struct with its
// scalar form `one` beside its SSE2 form `block`, written over the samples
// up (row y - 1), mid (row y) and down (row y + 1) at one column; x is the
// column, which one formula needs.
//
// Rows of the YUY2 output interleave a luma row with a chroma row of pairs
// byte by byte; a column's chroma takes the block or scalar form its luma
// takes.  Rows of the planar output take their chroma in their own blocks of
// 16 pairs over the chroma width, split by a mask of the even bytes (Cb, to
// plane 1) and a shift by 8 (Cr, to plane 2).
#include "repack/pccdeinterlace.h"

#include <emmintrin.h>
#include <stdint.h>

#include "frame/lum_frame.h"
#include "frame/lum_simd.h"

using lum::rowPtr;
using u8 = Lum8u;

namespace {

inline __m128i avg(__m128i a, __m128i b) { return _mm_avg_epu8(a, b); }
inline int clamp255(int v) { return v > 255 ? 255 : v; }

// ---------------------------------------------------------------------------
// Luma formulas.
// The regular row: avg(avg(a, b), avg(b, c)) / (a + 2b + c) >> 2.
// kUp / kDown: whether the formula reads row y - 1 / y + 1 (a row it does
// not read is not addressed: the first and last rows of a frame have none).
struct Regular {
  static constexpr bool kUp = true, kDown = true;
  static int one(int a, int b, int c, int) { return (a + 2 * b + c) >> 2; }
  static __m128i block(__m128i a, __m128i b, __m128i c) { return avg(avg(a, b), avg(b, c)); }
};
// The other nesting of the planar first slice: avg(b, avg(a, c)).
struct RegularOuterB {
  static constexpr bool kUp = true, kDown = true;
  static int one(int a, int b, int c, int) { return (a + 2 * b + c) >> 2; }
  static __m128i block(__m128i a, __m128i b, __m128i c) { return avg(b, avg(a, c)); }
};
// The first row of a frame (b = Y[0], c = Y[1]): avg(avg(b, c), b) /
// (3b + c) >> 2.
struct Top {
  static constexpr bool kUp = false, kDown = true;
  static int one(int, int b, int c, int) { return (3 * b + c) >> 2; }
  static __m128i block(__m128i, __m128i b, __m128i c) { return avg(avg(b, c), b); }
};
// The last row of a frame (a = Y[h-2], b = Y[h-1]): avg(b, avg(a, b)) /
// (a + 3b) >> 2.
struct Bottom {
  static constexpr bool kUp = true, kDown = false;
  static int one(int a, int b, int, int) { return (a + 3 * b) >> 2; }
  static __m128i block(__m128i a, __m128i b, __m128i) { return avg(b, avg(a, b)); }
};
// The whole-frame YUY2 routine's scalar rows, with a rounding term of 4 and
// the clamp at 255 (the sums reach 256).  No block form.
struct Top4 {
  static constexpr bool kUp = false, kDown = true;
  static int one(int, int b, int c, int) { return clamp255((3 * b + c + 4) >> 2); }
};
struct Regular4 {
  static constexpr bool kUp = true, kDown = true;
  static int one(int a, int b, int c, int) { return clamp255((a + 2 * b + c + 4) >> 2); }
};
struct Bottom4 {
  static constexpr bool kUp = true, kDown = false;
  static int one(int a, int b, int, int) { return clamp255((a + 3 * b + 4) >> 2); }
};
// Its middle rows: the regular block; in the scalar remainder an even
// column ((((a + c) >> 1) + b) >> 1) + 1, an odd column (a + 2b + c + 4) >> 2.
struct MidAll {
  static constexpr bool kUp = true, kDown = true;
  static int one(int a, int b, int c, int x) {
    return (x & 1) ? clamp255((a + 2 * b + c + 4) >> 2) : clamp255(((((a + c) >> 1) + b) >> 1) + 1);
  }
  static __m128i block(__m128i a, __m128i b, __m128i c) { return Regular::block(a, b, c); }
};

// Chroma formulas over two chroma rows p, q (byte by byte, so Cb mixes only
// with Cb): avg(p, q) / (p + q) >> 1; or p as it stands.
struct Average {
  static int one(int p, int q) { return (p + q) >> 1; }
  static __m128i block(__m128i p, __m128i q) { return avg(p, q); }
};
struct Keep {
  static int one(int p, int) { return p; }
  static __m128i block(__m128i p, __m128i) { return p; }
};

// A formula with no block form, for rows that pass blockEnd 0.
template <class F>
struct ScalarOnly {
  static constexpr bool kUp = F::kUp, kDown = F::kDown;
  static int one(int a, int b, int c, int x) { return F::one(a, b, c, x); }
  static __m128i block(__m128i, __m128i b, __m128i) { return b; }  // never reached
};

// ---------------------------------------------------------------------------
// Row kernels.

// One luma row of n samples.
template <class F>
void lumaRow(const u8* up, const u8* mid, const u8* down, u8* d, int n, int blockEnd) {
  if (!F::kUp) up = mid;
  if (!F::kDown) down = mid;
  int i = 0;
  for (; i + 16 <= blockEnd; i += 16)
    lum::storeu(d + i, F::block(lum::loadu(up + i), lum::loadu(mid + i), lum::loadu(down + i)));
  for (; i + 8 <= blockEnd; i += 8)
    lum::storel64(d + i, F::block(lum::loadl64(up + i), lum::loadl64(mid + i), lum::loadl64(down + i)));
  for (; i < n; ++i) d[i] = static_cast<u8>(F::one(up[i], mid[i], down[i], i));
}

// One chroma row of `pairs` pairs from two rows of pairs, split to Cb and Cr
// rows; blocks of 16 pairs below blockEnd (pairs).
template <class F>
void chromaSplitRow(const u8* p, const u8* q, u8* cb, u8* cr, int pairs, int blockEnd) {
  const __m128i even = _mm_set1_epi16(0x00ff);
  int k = 0;
  for (; k + 16 <= blockEnd; k += 16) {
    const __m128i v0 = F::block(lum::loadu(p + 2 * k), lum::loadu(q + 2 * k));
    const __m128i v1 = F::block(lum::loadu(p + 2 * k + 16), lum::loadu(q + 2 * k + 16));
    lum::storeu(cb + k, _mm_packus_epi16(_mm_and_si128(v0, even), _mm_and_si128(v1, even)));
    lum::storeu(cr + k, _mm_packus_epi16(_mm_srli_epi16(v0, 8), _mm_srli_epi16(v1, 8)));
  }
  for (; k < pairs; ++k) {
    cb[k] = static_cast<u8>(F::one(p[2 * k], q[2 * k]));
    cr[k] = static_cast<u8>(F::one(p[2 * k + 1], q[2 * k + 1]));
  }
}

// One YUY2 row of n pixels: luma by FY, chroma of chroma rows p, q by FC,
// interleaved "Y0 Cb Y1 Cr".
template <class FY, class FC>
void yuy2Row(const u8* up, const u8* mid, const u8* down, const u8* p, const u8* q, u8* d, int n,
             int blockEnd) {
  if (!FY::kUp) up = mid;
  if (!FY::kDown) down = mid;
  int i = 0;
  for (; i + 16 <= blockEnd; i += 16) {
    const __m128i y = FY::block(lum::loadu(up + i), lum::loadu(mid + i), lum::loadu(down + i));
    const __m128i c = FC::block(lum::loadu(p + i), lum::loadu(q + i));
    lum::storeu(d + 2 * i, _mm_unpacklo_epi8(y, c));
    lum::storeu(d + 2 * i + 16, _mm_unpackhi_epi8(y, c));
  }
  for (; i + 8 <= blockEnd; i += 8) {
    const __m128i y =
        FY::block(lum::loadl64(up + i), lum::loadl64(mid + i), lum::loadl64(down + i));
    lum::storeu(d + 2 * i, _mm_unpacklo_epi8(y, FC::block(lum::loadl64(p + i), lum::loadl64(q + i))));
  }
  for (; i < n; ++i) {
    d[2 * i] = static_cast<u8>(FY::one(up[i], mid[i], down[i], i));
    d[2 * i + 1] = static_cast<u8>(FC::one(p[i], q[i]));
  }
}

// ---------------------------------------------------------------------------
// Frame access: luma row y and chroma row r of a source, rows of a YUY2
// destination.
struct Src {
  const u8* y;
  int ys;
  const u8* c;
  int cs;
  const u8* Y(int row) const { return rowPtr(y, row, ys); }
  const u8* C(int row) const { return rowPtr(c, row, cs); }
};

// The two rows of pair r of the YUY2 routines: luma by FY0 (row 2r) and FY1
// (row 2r + 1), the chroma of rows cr0, cr1 by FC, the block part blockEnd.
template <class FY0, class FY1, class FC>
void yuy2Pair(const Src& s, u8* pDst, int dstStep, int r, int cr0, int cr1, int width,
              int blockEnd) {
  const int y = 2 * r;
  yuy2Row<FY0, FC>(s.Y(y - 1), s.Y(y), s.Y(y + 1), s.C(cr0), s.C(cr1), rowPtr(pDst, y, dstStep),
                   width, blockEnd);
  yuy2Row<FY1, FC>(s.Y(y), s.Y(y + 1), s.Y(y + 2), s.C(cr0), s.C(cr1),
                   rowPtr(pDst, y + 1, dstStep), width, blockEnd);
}

// The regular row pair: 32 pixels a step.
void innerNV12ToYUY2Deinterlace_P2C2R(const Src& s, u8* pDst, int dstStep, int r, int width) {
  yuy2Pair<Regular, Regular, Average>(s, pDst, dstStep, r, r, r + 1, width, width & ~31);
}
// Rows 0 and 1 of a frame: 8 pixels a step.  Row 2 is read whatever the
// height.
void innerNV12ToYUY2Deinterlace_first_P2C2R(const Src& s, u8* pDst, int dstStep, int width) {
  yuy2Pair<Top, Regular, Average>(s, pDst, dstStep, 0, 0, 1, width, width & ~7);
}
// Rows 2r and 2r + 1 = the frame's last two: 8 pixels a step; the chroma of
// rows r and r - 1.
void innerNV12ToYUY2Deinterlace_last_P2C2R(const Src& s, u8* pDst, int dstStep, int r,
                                           int width) {
  yuy2Pair<Regular, Bottom, Average>(s, pDst, dstStep, r, r, r - 1, width, width & ~7);
}

// ---------------------------------------------------------------------------
// Planar output: one luma row and one chroma row.
template <class F>
void yv12Luma(const Src& s, u8* d, int y, int width, int blockEnd) {
  lumaRow<F>(s.Y(y - 1), s.Y(y), s.Y(y + 1), d, width, blockEnd);
}
template <class F>
void yv12Chroma(const Src& s, u8* cb, u8* cr, int r0, int r1, int pairs, int blockEnd) {
  chromaSplitRow<F>(s.C(r0), s.C(r1), cb, cr, pairs, blockEnd);
}

struct Planes {
  u8* p[3];
  int s[3];
  u8* row(int plane, int r) const { return rowPtr(p[plane], r, s[plane]); }
};

}  // namespace

namespace lum {
namespace deinterlace {

void myNV12ToYUY2Deinterlace_edge_P2C2R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr,
                                        int srcCbCrStep, u8* pDst, int dstStep, int width,
                                        int height, int layout) {
  const Src s{pSrcY, srcYStep, pSrcCbCr, srcCbCrStep};
  const int n = height / 2;
  if (layout == kSliceFirst) {
    // Rows 0 and 1, then the row pairs 1 .. n - 2.
    innerNV12ToYUY2Deinterlace_first_P2C2R(s, pDst, dstStep, width);
    for (int r = 1; r <= n - 2; ++r) innerNV12ToYUY2Deinterlace_P2C2R(s, pDst, dstStep, r, width);
  } else {
    // Moved up by a pair: the pairs 0 .. n - 1 regular, pair n the last.
    for (int r = 0; r < n; ++r) innerNV12ToYUY2Deinterlace_P2C2R(s, pDst, dstStep, r, width);
    innerNV12ToYUY2Deinterlace_last_P2C2R(s, pDst, dstStep, n, width);
  }
}

void myNV12ToYUY2Deinterlace_middle_P2C2R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr,
                                          int srcCbCrStep, u8* pDst, int dstStep, int width,
                                          int height) {
  const Src s{pSrcY, srcYStep, pSrcCbCr, srcCbCrStep};
  for (int r = 0; r < height / 2; ++r)
    innerNV12ToYUY2Deinterlace_P2C2R(s, pDst, dstStep, r, width);
}

void myNV12ToYUY2Deinterlace_All_P2C2R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr,
                                       int srcCbCrStep, u8* pDst, int dstStep, int width,
                                       int height) {
  const Src s{pSrcY, srcYStep, pSrcCbCr, srcCbCrStep};
  const int h = height, n = h / 2;
  if (h == 2) {  // 3, 1 and 1, 3 with the + 4; chroma row 0 as it stands
    yuy2Row<ScalarOnly<Top4>, Keep>(s.Y(0), s.Y(0), s.Y(1), s.C(0), s.C(0), pDst, width, 0);
    yuy2Row<ScalarOnly<Bottom4>, Keep>(s.Y(0), s.Y(1), s.Y(1), s.C(0), s.C(0),
                                       rowPtr(pDst, 1, dstStep), width, 0);
    return;
  }
  yuy2Pair<ScalarOnly<Top4>, ScalarOnly<Regular4>, Average>(s, pDst, dstStep, 0, 0, 1, width, 0);
  for (int r = 1; r <= n - 2; ++r)
    yuy2Pair<MidAll, MidAll, Average>(s, pDst, dstStep, r, r, r + 1, width, width & ~31);
  // Rows h - 2 and h - 1: the chroma of rows n - 1 and n - 2, the second
  // row's the same bytes as the first's.
  yuy2Row<ScalarOnly<Regular4>, Average>(s.Y(h - 3), s.Y(h - 2), s.Y(h - 1), s.C(n - 1),
                                         s.C(n - 2), rowPtr(pDst, h - 2, dstStep), width, 0);
  yuy2Row<ScalarOnly<Bottom4>, Average>(s.Y(h - 2), s.Y(h - 1), s.Y(h - 1), s.C(n - 1),
                                        s.C(n - 2), rowPtr(pDst, h - 1, dstStep), width, 0);
}

void ownNV12ToYV12Deinterlace_P2P3R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr,
                                    int srcCbCrStep, u8* const pDst[3], const int dstStep[3],
                                    int width, int height, int layout, bool hdtv) {
  const Src s{pSrcY, srcYStep, pSrcCbCr, srcCbCrStep};
  const int h = height, n = h / 2, pairs = width / 2;
  const int lumaBlock = width & ~15, chromaBlock = pairs & ~15;
  Planes d{{pDst[0], pDst[1], pDst[2]}, {dstStep[0], dstStep[1], dstStep[2]}};
  if (layout == kSliceAll) {
    // innerNV12ToYV12DeinterlaceAll_P2P3R, in both forms.
    if (h == 2) {
      lumaRow<ScalarOnly<Top4>>(s.Y(0), s.Y(0), s.Y(1), d.row(0, 0), width, 0);
      lumaRow<ScalarOnly<Bottom4>>(s.Y(0), s.Y(1), s.Y(1), d.row(0, 1), width, 0);
      yv12Chroma<Keep>(s, d.row(1, 0), d.row(2, 0), 0, 0, pairs, 0);
      return;
    }
    yv12Luma<ScalarOnly<Top>>(s, d.row(0, 0), 0, width, 0);
    for (int y = 1; y <= h - 2; ++y) yv12Luma<Regular>(s, d.row(0, y), y, width, lumaBlock);
    yv12Luma<ScalarOnly<Bottom>>(s, d.row(0, h - 1), h - 1, width, 0);
    for (int r = 0; r <= n - 2; ++r)
      yv12Chroma<Average>(s, d.row(1, r), d.row(2, r), r, r + 1, pairs, chromaBlock);
    yv12Chroma<Average>(s, d.row(1, n - 1), d.row(2, n - 1), n - 1, n - 2, pairs, 0);
    return;
  }
  if (layout == kSliceFirst) {
    // innerNV12ToYV12Deinterlace_first_P2P3R / ...HDTV_first_P2P3R: rows
    // 0 .. h - 3, chroma rows 0 .. n - 2.
    if (h < 4) return;
    yv12Luma<Top>(s, d.row(0, 0), 0, width, lumaBlock);
    for (int y = 1; y <= h - 3; ++y) {
      if (hdtv)
        yv12Luma<Regular>(s, d.row(0, y), y, width, lumaBlock);
      else
        yv12Luma<RegularOuterB>(s, d.row(0, y), y, width, lumaBlock);
    }
    for (int r = 0; r <= n - 2; ++r)
      yv12Chroma<Average>(s, d.row(1, r), d.row(2, r), r, r + 1, pairs, chromaBlock);
    return;
  }
  // Middle and last: the source is moved up by 2 luma rows and 1 chroma
  // row; the destination is moved here, by 2 rows of plane 0 and 1 row of
  // planes 1 and 2.
  d.p[0] = rowPtr(d.p[0], -2, d.s[0]);
  d.p[1] = rowPtr(d.p[1], -1, d.s[1]);
  d.p[2] = rowPtr(d.p[2], -1, d.s[2]);
  if (layout == kSliceMiddle) {
    // innerNV12ToYV12Deinterlace_P2P3R / ...HDTV_P2P3R.
    for (int y = 0; y < h; ++y) yv12Luma<Regular>(s, d.row(0, y), y, width, lumaBlock);
    for (int r = 0; r < n; ++r)
      yv12Chroma<Average>(s, d.row(1, r), d.row(2, r), r, r + 1, pairs, chromaBlock);
    return;
  }
  // Last: rows 0 .. h (slice rows -2 .. h - 2) regular, row h + 1 the
  // bottom; chroma rows 0 .. n - 1 and the last, n, of rows n and n - 1.
  if (hdtv) {  // innerNV12ToYV12DeinterlaceHDTV_last_P2P3R: all block
    for (int y = 0; y <= h; ++y) yv12Luma<Regular>(s, d.row(0, y), y, width, lumaBlock);
    yv12Luma<Bottom>(s, d.row(0, h + 1), h + 1, width, lumaBlock);
    for (int r = 0; r < n; ++r)
      yv12Chroma<Average>(s, d.row(1, r), d.row(2, r), r, r + 1, pairs, chromaBlock);
    yv12Chroma<Average>(s, d.row(1, n), d.row(2, n), n, n - 1, pairs, chromaBlock);
    return;
  }
  // innerNV12ToYV12Deinterlace_last_P2P3R: all scalar.  Its chroma rows
  // start with the matching steps but advance plane 1 by dstStep[2] and
  // plane 2 by dstStep[1].
  for (int y = 0; y <= h; ++y) yv12Luma<ScalarOnly<Regular>>(s, d.row(0, y), y, width, 0);
  yv12Luma<ScalarOnly<Bottom>>(s, d.row(0, h + 1), h + 1, width, 0);
  u8* cb = d.p[1];
  u8* cr = d.p[2];
  for (int r = 0; r <= n; ++r) {
    yv12Chroma<Average>(s, cb, cr, r, r < n ? r + 1 : n - 1, pairs, 0);
    cb = rowPtr(cb, 1, d.s[2]);
    cr = rowPtr(cr, 1, d.s[1]);
  }
}

}  // namespace deinterlace
}  // namespace lum

// ===========================================================================
// Public functions.
namespace {
using namespace lum::deinterlace;

// The routine a selector names: the three slices by their exact values; any
// other value with the bits of all three works as the whole frame; the rest
// select nothing.
int sliceOf(int layout) {
  if (layout == kSliceFirst || layout == kSliceMiddle || layout == kSliceLast) return layout;
  return (layout & kSliceAll) == kSliceAll ? kSliceAll : 0;
}
inline bool a16(const void* p) { return (reinterpret_cast<uintptr_t>(p) & 15u) == 0; }
}  // namespace

LUM_PUBLIC LumStatus lumiYCbCr420ToYCbCr422_Filter_8u_P2C2R(const Lum8u* pSrcY, int srcYStep,
                                                            const Lum8u* pSrcCbCr,
                                                            int srcCbCrStep, Lum8u* pDst,
                                                            int dstStep, LumSize roiSize,
                                                            int layout) {
  const LumStatus st = lum::checkP3({pSrcY, pSrcCbCr, pDst}, {}, roiSize, 2, 2);
  if (st != LumOk) return st;
  const int w = roiSize.width & ~1, h = roiSize.height & ~1;
  switch (sliceOf(layout)) {
    case kSliceFirst:
      myNV12ToYUY2Deinterlace_edge_P2C2R(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep,
                                         w, h, kSliceFirst);
      break;
    case kSliceMiddle:
      myNV12ToYUY2Deinterlace_middle_P2C2R(rowPtr(pSrcY, -2, srcYStep), srcYStep,
                                           rowPtr(pSrcCbCr, -1, srcCbCrStep), srcCbCrStep,
                                           rowPtr(pDst, -2, dstStep), dstStep, w, h);
      break;
    case kSliceLast:
      myNV12ToYUY2Deinterlace_edge_P2C2R(rowPtr(pSrcY, -2, srcYStep), srcYStep,
                                         rowPtr(pSrcCbCr, -1, srcCbCrStep), srcCbCrStep,
                                         rowPtr(pDst, -2, dstStep), dstStep, w, h, kSliceLast);
      break;
    case kSliceAll:
      myNV12ToYUY2Deinterlace_All_P2C2R(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep, w,
                                        h);
      break;
    default:
      break;
  }
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYCbCr420ToYCrCb420_Filter_8u_P2P3R(const Lum8u* pSrcY, int srcYStep,
                                                            const Lum8u* pSrcCbCr,
                                                            int srcCbCrStep, Lum8u* const pDst[3],
                                                            const int dstStep[3], LumSize roiSize,
                                                            int layout) {
  const LumStatus st = lum::checkP7({pSrcY, pSrcCbCr, pDst}, roiSize, {lum::arr(pDst, 3)});
  if (st != LumOk) return st;
  const int w = roiSize.width & ~1, h = roiSize.height & ~1;
  const int slice = sliceOf(layout);
  if (slice == 0) return LumOk;
  const bool hdtv = (w & 63) == 0 && (h & 15) == 0 && (srcYStep & 15) == 0 &&
                    (srcCbCrStep & 31) == 0 && (dstStep[0] & 31) == 0 &&
                    (dstStep[1] & 31) == 0 && (dstStep[2] & 31) == 0 && a16(pSrcY) &&
                    a16(pSrcCbCr) && a16(pDst[0]) && a16(pDst[1]) && a16(pDst[2]);
  const bool up = slice == kSliceMiddle || slice == kSliceLast;
  ownNV12ToYV12Deinterlace_P2P3R(up ? rowPtr(pSrcY, -2, srcYStep) : pSrcY, srcYStep,
                                 up ? rowPtr(pSrcCbCr, -1, srcCbCrStep) : pSrcCbCr, srcCbCrStep,
                                 pDst, dstStep, w, h, slice, hdtv);
  return LumOk;
}
