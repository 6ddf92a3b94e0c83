// RGB with YCbCr and YCrCb 4:2:2 and 4:2:0: public functions, row drivers and
// one-row kernels.  The block loops run over SSE2 registers on the first
// pixels (or cells) of each row, counted from the row's start; the tails take
// the scalar forms of pccycbcr02.h and pccycbcr.h.  Everything runs on the
// calling thread.
#include "video/pccycbcr02.h"

#include <string.h>

#include "frame/lum_frame.h"
#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "video/pccycbcr.h"

using namespace lum;
using namespace lum::ycbcrsub;

namespace {

// ---------------------------------------------------------------------------
// Loads and stores of 8 pixels.

// 8 pixels of 3 bytes -> R, G, B in 16-bit lanes.
inline void loadC3x8(const Lum8u* p, I16x8 c[3]) {
  __m128i b[3];
  deinterleave3x8(p, b);
  for (int k = 0; k < 3; ++k) c[k] = I16x8{lo8to16(b[k])};
}
inline void loadP3x8(const Lum8u* r, const Lum8u* g, const Lum8u* b, I16x8 c[3]) {
  c[0] = I16x8{lo8to16(loadl64(r))};
  c[1] = I16x8{lo8to16(loadl64(g))};
  c[2] = I16x8{lo8to16(loadl64(b))};
}
// 16 pixels: the low and the high 8 in 16-bit lanes.
inline void loadC3x16(const Lum8u* p, I16x8 lo[3], I16x8 hi[3]) {
  __m128i b[3];
  deinterleave3x16(p, b);
  for (int k = 0; k < 3; ++k) lo[k] = I16x8{lo8to16(b[k])}, hi[k] = I16x8{hi8to16(b[k])};
}
inline void storeC3x16(const I16x8 lo[3], const I16x8 hi[3], Lum8u* p) {
  const __m128i b[3] = {vPackS16U8(lo[0].v, hi[0].v), vPackS16U8(lo[1].v, hi[1].v),
                        vPackS16U8(lo[2].v, hi[2].v)};
  interleave3x16(b, p);
}
// n (8 or 4) pixels of three 16-bit lanes -> 3-byte pixels (the pack clamps).
inline void storeC3(const I16x8 c[3], Lum8u* p, int n) {
  const __m128i b[3] = {vPackS16U8(c[0].v, c[0].v), vPackS16U8(c[1].v, c[1].v),
                        vPackS16U8(c[2].v, c[2].v)};
  if (n == 8) return interleave3x8(b, p);
  alignas(16) Lum8u t[24];
  interleave3x8(b, t);
  memcpy(p, t, 12);
}
inline void storePlanes(const I16x8 c[3], Lum8u* const d[3], int x, int n) {
  for (int k = 0; k < 3; ++k) {
    const __m128i b = vPackS16U8(c[k].v, c[k].v);
    if (n == 8) {
      storel64(d[k] + x, b);
    } else {
      const int32_t s = _mm_cvtsi128_si32(b);
      memcpy(d[k] + x, &s, 4);
    }
  }
}

// ---------------------------------------------------------------------------
// 4:2:2 forward: 8 pixels from R, G, B lanes to 16 bytes of C2.
template <Order kOrder>
inline void fwd422Block(const I16x8 c[3], Lum8u* out) {
  const I16x8 Y = fwd422BlockYLanes(c[0], c[1], c[2]);
  const I32x4 cb = pairChromaLanes<I16x8, I32x4>(c[0], c[1], c[2], kCbR, kCbG, kCbB);
  const I32x4 cr = pairChromaLanes<I16x8, I32x4>(c[0], c[1], c[2], kCrR, kCrG, kCrB);
  const __m128i first = kOrder == Order::CbCr ? cb.v : cr.v;
  const __m128i second = kOrder == Order::CbCr ? cr.v : cb.v;
  // 16-bit lanes first0 second0 first1 second1 ...: byte 1 and byte 3 of
  // each pair.
  const __m128i ch = _mm_unpacklo_epi16(_mm_packs_epi32(first, first), _mm_packs_epi32(second, second));
  storeu(out, _mm_unpacklo_epi8(vPackS16U8(Y.v, Y.v), vPackS16U8(ch, ch)));
}

// The tail of a forward 4:2:2 row from pixel x on: remaining pairs, then an
// odd last pixel (Y and the first chroma byte only).
template <Order kOrder, class Get>
inline void fwd422Tail(Get get, Lum8u* d, int x, int width) {
  for (; x + 1 < width; x += 2) {
    int a[3], b[3];
    get(x, a);
    get(x + 1, b);
    const int SR = a[0] + b[0], SG = a[1] + b[1], SB = a[2] + b[2];
    const uint8_t cb = pairCb(SR, SG, SB), cr = pairCr(SR, SG, SB);
    Lum8u* q = d + 2 * x;
    q[0] = fwd422TailY0(a[0], a[1], a[2]);
    q[1] = kOrder == Order::CbCr ? cb : cr;
    q[2] = fwd422TailY1(b[0], b[1], b[2]);
    q[3] = kOrder == Order::CbCr ? cr : cb;
  }
  if (x < width) {
    int a[3];
    get(x, a);
    d[2 * x] = ycbcr::formAY(a[0], a[1], a[2]);
    d[2 * x + 1] = kOrder == Order::CbCr ? ycbcr::formACb(a[0], a[1], a[2])
                                         : ycbcr::formACr(a[0], a[1], a[2]);
  }
}

template <Order kOrder>
void fwd422C3(const Lum8u* s, Lum8u* d, int width) {
  const int end = width & ~(kBlockFwd422 - 1);
  int x = 0;
  for (; x + 16 <= end; x += 16) {  // rounds of 16 while they fit, then one of 8
    I16x8 lo[3], hi[3];
    loadC3x16(s + 3 * x, lo, hi);
    fwd422Block<kOrder>(lo, d + 2 * x);
    fwd422Block<kOrder>(hi, d + 2 * x + 16);
  }
  if (x < end) {
    I16x8 c[3];
    loadC3x8(s + 3 * x, c);
    fwd422Block<kOrder>(c, d + 2 * x);
  }
  fwd422Tail<kOrder>([&](int x, int v[3]) { v[0] = s[3 * x], v[1] = s[3 * x + 1], v[2] = s[3 * x + 2]; },
                     d, end, width);
}
template <Order kOrder>
void fwd422P3(const Lum8u* r, const Lum8u* g, const Lum8u* b, Lum8u* d, int width) {
  const int end = width & ~(kBlockFwd422 - 1);
  for (int x = 0; x < end; x += 8) {
    I16x8 c[3];
    loadP3x8(r + x, g + x, b + x, c);
    fwd422Block<kOrder>(c, d + 2 * x);
  }
  fwd422Tail<kOrder>([&](int x, int v[3]) { v[0] = r[x], v[1] = g[x], v[2] = b[x]; }, d, end, width);
}

// ---------------------------------------------------------------------------
// 4:2:2 inverse from C2.  The chroma of 8 (or 4) pixels: 16-bit lanes of the
// odd bytes, first0 second0 first1 ..., each replicated over its pair.
template <Order kOrder>
inline void inv422C2Lanes(__m128i w, I16x8 c[3]) {
  const __m128i ch = _mm_srli_epi16(w, 8);
  const __m128i first = _mm_shufflehi_epi16(_mm_shufflelo_epi16(ch, _MM_SHUFFLE(2, 2, 0, 0)),
                                            _MM_SHUFFLE(2, 2, 0, 0));
  const __m128i second = _mm_shufflehi_epi16(_mm_shufflelo_epi16(ch, _MM_SHUFFLE(3, 3, 1, 1)),
                                             _MM_SHUFFLE(3, 3, 1, 1));
  const I16x8 Y{_mm_and_si128(w, _mm_set1_epi16(0x00ff))};
  const I16x8 Cb{kOrder == Order::CbCr ? first : second};
  const I16x8 Cr{kOrder == Order::CbCr ? second : first};
  ycbcr::formELanes(Y, Cb, Cr, c);
}
// The block part of a C2 row: E in rounds of 8, then one of 4; put(x, c, n)
// stores n pixels at x.
template <Order kOrder, class Put>
inline int inv422C2Block(const Lum8u* s, int width, Put put, int x = 0) {
  const int end = width & ~(kBlockInv422C2 - 1);
  for (; x + 8 <= end; x += 8) {
    I16x8 c[3];
    inv422C2Lanes<kOrder>(loadu(s + 2 * x), c);
    put(x, c, 8);
  }
  if (x < end) {
    I16x8 c[3];
    inv422C2Lanes<kOrder>(loadl64(s + 2 * x), c);
    put(x, c, 4);
    x += 4;
  }
  return x;
}
// The tail: formula D on the remaining pair, and on an odd last pixel with
// the chroma byte after it and the other chroma byte of the pair before.
template <Order kOrder, class PutPixel>
inline void inv422C2Tail(const Lum8u* s, int x, int width, PutPixel put) {
  for (; x < width; ++x) {
    const Lum8u* q = s + 2 * x;
    const int pairStart = 2 * (x & ~1);
    int first, second;
    if (x + 1 < width || (x & 1)) {
      first = s[pairStart + 1], second = s[pairStart + 3];
    } else {
      first = q[1], second = q[-1];
    }
    uint8_t rgb[3];
    ycbcr::formD(q[0], kOrder == Order::CbCr ? first : second, kOrder == Order::CbCr ? second : first, rgb);
    put(x, rgb);
  }
}

template <Order kOrder>
void inv422C2C3(const Lum8u* s, Lum8u* d, int width) {
  int x16 = 0;  // rounds of 16 first (the same formula, a cheaper interleave)
  for (; x16 + 16 <= (width & ~(kBlockInv422C2 - 1)); x16 += 16) {
    I16x8 lo[3], hi[3];
    inv422C2Lanes<kOrder>(loadu(s + 2 * x16), lo);
    inv422C2Lanes<kOrder>(loadu(s + 2 * x16 + 16), hi);
    storeC3x16(lo, hi, d + 3 * x16);
  }
  const int x = inv422C2Block<kOrder>(s, width, [&](int x0, const I16x8* c, int n) { storeC3(c, d + 3 * x0, n); }, x16);
  inv422C2Tail<kOrder>(s, x, width, [&](int x0, const uint8_t* rgb) { memcpy(d + 3 * x0, rgb, 3); });
}
template <Order kOrder>
void inv422C2P3(const Lum8u* s, Lum8u* pR, Lum8u* pG, Lum8u* pB, int width) {
  Lum8u* const d[3] = {pR, pG, pB};
  const int x = inv422C2Block<kOrder>(s, width, [&](int x0, const I16x8* c, int n) { storePlanes(c, d, x0, n); });
  inv422C2Tail<kOrder>(s, x, width, [&](int x0, const uint8_t* rgb) {
    pR[x0] = rgb[0], pG[x0] = rgb[1], pB[x0] = rgb[2];
  });
}

// 4 chroma samples replicated to 8 lanes.
inline I16x8 chroma4x2(const Lum8u* p) {
  int32_t v;
  memcpy(&v, p, 4);
  const __m128i b = _mm_cvtsi32_si128(v);
  return I16x8{lo8to16(_mm_unpacklo_epi8(b, b))};
}

// ---------------------------------------------------------------------------
// Row drivers.

template <class Kernel>
void rowsCC(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep, int dstStep,
            Kernel kernel) {
  rows<Threading::Serial>(width, height, [&](int y) {
    kernel(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width);
  });
}

}  // namespace

namespace lum {
namespace ycbcrsub {

// ===========================================================================
// One-row kernels.

// Luma block form and pair chroma on width & ~7; A / unrounded A on the
// remaining pairs; A on an odd last pixel, with its first chroma byte only.
void innerRGBToYCbCr422_C3_C2R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  fwd422C3<Order::CbCr>(pSrc, pDst, width);
}
void innerRGBToYCrCb422_C3_C2R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  fwd422C3<Order::CrCb>(pSrc, pDst, width);
}
void innerRGBToYCbCr422_C3P2_C3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pDst,
                                 int width) {
  fwd422P3<Order::CbCr>(pR, pG, pB, pDst, width);
}
void innerRGBToYCrCb422_C3P2_C3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pDst,
                                 int width) {
  fwd422P3<Order::CrCb>(pR, pG, pB, pDst, width);
}

// kry420 forms on cells & ~3 (8 pixels of each row), A and the >> 18 cell
// chroma on the rest.
void innerRGBToYCbCr420_8u_C3P3R(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                                 Lum8u* pCb, Lum8u* pCr, int cells) {
  const int end = cells & ~(kBlockFwd420Cells - 1);
  const ycbcr::Forward420Set& k = ycbcr::kry420;
  const I16x8 one = broadcast16<I16x8>(1);
  for (int c = 0; c < end; c += 4) {
    I16x8 a[3], b[3], sum[3];
    loadC3x8(pRow0 + 6 * c, a);
    loadC3x8(pRow1 + 6 * c, b);
    storel64(pY0 + 2 * c, vPackS16U8(fwd420BlockYLanes(a[0], a[1], a[2]).v, _mm_setzero_si128()));
    storel64(pY1 + 2 * c, vPackS16U8(fwd420BlockYLanes(b[0], b[1], b[2]).v, _mm_setzero_si128()));
    // The sums of each cell (pairs of the two rows' sums), 4 lanes.
    for (int j = 0; j < 3; ++j) {
      const I32x4 s = madd(a[j] + b[j], one);
      sum[j] = packS32(s, s);
    }
    const I16x8 cb = fwd420BlockChromaLanes(sum[0], sum[1], sum[2], k.cbR, k.cbG, k.cbB);
    const I16x8 cr = fwd420BlockChromaLanes(sum[0], sum[1], sum[2], k.crR, k.crG, k.crB);
    const int32_t vb = _mm_cvtsi128_si32(vPackS16U8(cb.v, cb.v));
    const int32_t vr = _mm_cvtsi128_si32(vPackS16U8(cr.v, cr.v));
    memcpy(pCb + c, &vb, 4);
    memcpy(pCr + c, &vr, 4);
  }
  for (int c = end; c < cells; ++c) {
    const Lum8u* p[4] = {pRow0 + 6 * c, pRow0 + 6 * c + 3, pRow1 + 6 * c, pRow1 + 6 * c + 3};
    Lum8u* y[4] = {pY0 + 2 * c, pY0 + 2 * c + 1, pY1 + 2 * c, pY1 + 2 * c + 1};
    int SR = 0, SG = 0, SB = 0;
    for (int i = 0; i < 4; ++i) {
      *y[i] = ycbcr::formAY(p[i][0], p[i][1], p[i][2]);
      SR += p[i][0], SG += p[i][1], SB += p[i][2];
    }
    pCb[c] = cellCb(SR, SG, SB);
    pCr[c] = cellCr(SR, SG, SB);
  }
}

// E on width & ~3, D on the rest (see inv422C2Tail for an odd last pixel).
void innerYCbCrToRGB422_C2_C3R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  inv422C2C3<Order::CbCr>(pSrc, pDst, width);
}
void innerYCrCbToRGB422_C2_C3R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  inv422C2C3<Order::CrCb>(pSrc, pDst, width);
}
void innerYCbCr422ToRGB_C2_C3P2R(const Lum8u* pSrc, Lum8u* pR, Lum8u* pG, Lum8u* pB, int width) {
  inv422C2P3<Order::CbCr>(pSrc, pR, pG, pB, width);
}
void innerYCrCb422ToRGB_C2_C3P2R(const Lum8u* pSrc, Lum8u* pR, Lum8u* pG, Lum8u* pB, int width) {
  inv422C2P3<Order::CrCb>(pSrc, pR, pG, pB, width);
}

// F on width & ~7, G on the rest; pixel x takes chroma column x >> 1.
void innerYCbCr422ToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pCb, const Lum8u* pCr,
                                 Lum8u* pDst, int width) {
  const int end = width & ~(kBlockInv422P3C3 - 1);
  int x16 = 0;
  for (; x16 + 16 <= end; x16 += 16) {  // rounds of 16 while they fit, then one of 8
    const __m128i y = loadu(pY + x16), cb = loadl64(pCb + x16 / 2), cr = loadl64(pCr + x16 / 2);
    const __m128i cb2 = _mm_unpacklo_epi8(cb, cb), cr2 = _mm_unpacklo_epi8(cr, cr);
    I16x8 lo[3], hi[3];
    ycbcr::formFLanes(I16x8{lo8to16(y)}, I16x8{lo8to16(cb2)}, I16x8{lo8to16(cr2)}, lo);
    ycbcr::formFLanes(I16x8{hi8to16(y)}, I16x8{hi8to16(cb2)}, I16x8{hi8to16(cr2)}, hi);
    storeC3x16(lo, hi, pDst + 3 * x16);
  }
  for (int x = x16; x < end; x += 8) {
    I16x8 c[3];
    ycbcr::formFLanes(I16x8{lo8to16(loadl64(pY + x))}, chroma4x2(pCb + x / 2), chroma4x2(pCr + x / 2), c);
    storeC3(c, pDst + 3 * x, 8);
  }
  for (int x = end; x < width; ++x) ycbcr::formG(pY[x], pCb[x >> 1], pCr[x >> 1], pDst + 3 * x);
}

// The 4767 form on cells & ~3, D on the rest.
void innerYCbCr420ToRGB_8u_P3C3R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pCb,
                                 const Lum8u* pCr, Lum8u* pRow0, Lum8u* pRow1, int cells) {
  const int end = cells & ~(kBlockInv420Cells - 1);
  int c8 = 0;
  for (; c8 + 8 <= end; c8 += 8) {  // rounds of 8 cells while they fit, then one of 4
    const __m128i cb = loadl64(pCb + c8), cr = loadl64(pCr + c8);
    const __m128i cb2 = _mm_unpacklo_epi8(cb, cb), cr2 = _mm_unpacklo_epi8(cr, cr);
    const I16x8 cbLo{lo8to16(cb2)}, cbHi{hi8to16(cb2)}, crLo{lo8to16(cr2)}, crHi{hi8to16(cr2)};
    const Lum8u* ys[2] = {pY0, pY1};
    Lum8u* rows2[2] = {pRow0, pRow1};
    for (int r = 0; r < 2; ++r) {
      const __m128i y = loadu(ys[r] + 2 * c8);
      I16x8 lo[3], hi[3];
      inv420BlockLanes(I16x8{lo8to16(y)}, cbLo, crLo, lo);
      inv420BlockLanes(I16x8{hi8to16(y)}, cbHi, crHi, hi);
      storeC3x16(lo, hi, rows2[r] + 6 * c8);
    }
  }
  for (int c = c8; c < end; c += 4) {
    const I16x8 cb = chroma4x2(pCb + c), cr = chroma4x2(pCr + c);
    I16x8 o[3];
    inv420BlockLanes(I16x8{lo8to16(loadl64(pY0 + 2 * c))}, cb, cr, o);
    storeC3(o, pRow0 + 6 * c, 8);
    inv420BlockLanes(I16x8{lo8to16(loadl64(pY1 + 2 * c))}, cb, cr, o);
    storeC3(o, pRow1 + 6 * c, 8);
  }
  for (int c = end; c < cells; ++c)
    for (int i = 0; i < 2; ++i) {
      ycbcr::formD(pY0[2 * c + i], pCb[c], pCr[c], pRow0 + 6 * c + 3 * i);
      ycbcr::formD(pY1[2 * c + i], pCb[c], pCr[c], pRow1 + 6 * c + 3 * i);
    }
}

void unrealYCbCr(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep, int height) {
  for (int y = 0; y < height; ++y) {
    const Lum8u* s = rowPtr(pSrc, y, srcStep);
    unrealPixel(s[0], s[1], rowPtr(pDst, y, dstStep));
  }
}
void unrealYCbCrP(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3], int dstStep, int height) {
  for (int y = 0; y < height; ++y) {
    const Lum8u* s = rowPtr(pSrc, y, srcStep);
    uint8_t rgb[3];
    unrealPixel(s[0], s[1], rgb);
    for (int k = 0; k < 3; ++k) *rowPtr(pDst[k], y, dstStep) = rgb[k];
  }
}
// The YCrCb names: the same routines.
inline void unrealYCrCb(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep, int height) {
  unrealYCbCr(pSrc, srcStep, pDst, dstStep, height);
}
inline void unrealYCrCbP(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3], int dstStep,
                         int height) {
  unrealYCbCrP(pSrc, srcStep, pDst, dstStep, height);
}

// ===========================================================================
// Row drivers.

void myRGBToYCbCr422_C3_C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                            int dstStep) {
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep, innerRGBToYCbCr422_C3_C2R);
}
void myRGBToYCrCb422_C3_C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                            int dstStep) {
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep, innerRGBToYCrCb422_C3_C2R);
}
template <void (*Kernel)(const Lum8u*, const Lum8u*, const Lum8u*, Lum8u*, int)>
void rowsP3C2(const Lum8u* const s[3], Lum8u* pDst, int width, int height, int srcStep,
              int dstStep) {
  rows<Threading::Serial>(width, height, [&](int y) {
    Kernel(rowPtr(s[0], y, srcStep), rowPtr(s[1], y, srcStep), rowPtr(s[2], y, srcStep),
           rowPtr(pDst, y, dstStep), width);
  });
}
void myRGBToYCbCr422_C3P2_C2R(const Lum8u* const s[3], Lum8u* pDst, int width, int height,
                              int srcStep, int dstStep) {
  rowsP3C2<innerRGBToYCbCr422_C3P2_C3R>(s, pDst, width, height, srcStep, dstStep);
}
void myRGBToYCrCb422_C3P2_C2R(const Lum8u* const s[3], Lum8u* pDst, int width, int height,
                              int srcStep, int dstStep) {
  rowsP3C2<innerRGBToYCrCb422_C3P2_C3R>(s, pDst, width, height, srcStep, dstStep);
}
// Cells: width and height in cells; rows go by pairs.
void myRGBToYCbCr420_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pCb, Lum8u* pCr, int cellsW,
                              int cellsH, int srcStep, int yStep, int cbStep, int crStep) {
  rows<Threading::Serial>(cellsW, cellsH, [&](int j) {
    innerRGBToYCbCr420_8u_C3P3R(rowPtr(pSrc, 2 * j, srcStep), rowPtr(pSrc, 2 * j + 1, srcStep),
                                rowPtr(pY, 2 * j, yStep), rowPtr(pY, 2 * j + 1, yStep),
                                rowPtr(pCb, j, cbStep), rowPtr(pCr, j, crStep), cellsW);
  });
}

void myYCbCrToRGB422_C2_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                            int dstStep) {
  if (width == 1) return unrealYCbCr(pSrc, srcStep, pDst, dstStep, height);
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep, innerYCbCrToRGB422_C2_C3R);
}
void myYCrCbToRGB422_C2_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                            int dstStep) {
  if (width == 1) return unrealYCrCb(pSrc, srcStep, pDst, dstStep, height);
  rowsCC(pSrc, pDst, width, height, srcStep, dstStep, innerYCrCbToRGB422_C2_C3R);
}
template <void (*Kernel)(const Lum8u*, Lum8u*, Lum8u*, Lum8u*, int)>
void rowsC2P3(const Lum8u* pSrc, Lum8u* const d[3], int width, int height, int srcStep,
              int dstStep) {
  rows<Threading::Serial>(width, height, [&](int y) {
    Kernel(rowPtr(pSrc, y, srcStep), rowPtr(d[0], y, dstStep), rowPtr(d[1], y, dstStep),
           rowPtr(d[2], y, dstStep), width);
  });
}
void myYCbCr422ToRGB_C2_C3P2R(const Lum8u* pSrc, Lum8u* const d[3], int width, int height,
                              int srcStep, int dstStep) {
  if (width == 1) return unrealYCbCrP(pSrc, srcStep, d, dstStep, height);
  rowsC2P3<innerYCbCr422ToRGB_C2_C3P2R>(pSrc, d, width, height, srcStep, dstStep);
}
void myYCrCb422ToRGB_C2_C3P2R(const Lum8u* pSrc, Lum8u* const d[3], int width, int height,
                              int srcStep, int dstStep) {
  if (width == 1) return unrealYCrCbP(pSrc, srcStep, d, dstStep, height);
  rowsC2P3<innerYCrCb422ToRGB_C2_C3P2R>(pSrc, d, width, height, srcStep, dstStep);
}
void myYCbCr422ToRGB_8u_P3C3R(const Lum8u* const s[3], Lum8u* pDst, int width, int height,
                              const int srcStep[3], int dstStep) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerYCbCr422ToRGB_8u_P3C3R(rowPtr(s[0], y, srcStep[0]), rowPtr(s[1], y, srcStep[1]),
                                rowPtr(s[2], y, srcStep[2]), rowPtr(pDst, y, dstStep), width);
  });
}
// Gets the full width and height, passes width >> 1 cells to the kernel and
// stops at height & ~1.
void myYCbCr420ToRGB_8u_P3C3R(const Lum8u* const s[3], Lum8u* pDst, int width, int height,
                              const int srcStep[3], int dstStep) {
  const int cells = width >> 1;
  rows<Threading::Serial>(cells, height >> 1, [&](int j) {
    innerYCbCr420ToRGB_8u_P3C3R(rowPtr(s[0], 2 * j, srcStep[0]), rowPtr(s[0], 2 * j + 1, srcStep[0]),
                                rowPtr(s[1], j, srcStep[1]), rowPtr(s[2], j, srcStep[2]),
                                rowPtr(pDst, 2 * j, dstStep), rowPtr(pDst, 2 * j + 1, dstStep), cells);
  });
}

}  // namespace ycbcrsub
}  // namespace lum

// ===========================================================================
// Public functions: the checks of their pattern, then one call.  The plane
// forms run pattern P2: the single pointer is tested with the arrays
// themselves, before the size; the arrays' entries after it.

namespace {
inline LumStatus oddCells(LumSize roi) {
  return ((roi.width | roi.height) & 1) ? LumWarnOddSize : LumOk;
}
}  // namespace

LUM_PUBLIC_A(lumiRGBToYCbCr422_8u_C3C2R, P1, Lum8u, Lum8u,
             myRGBToYCbCr422_C3_C2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep))
LUM_PUBLIC_A(lumiRGBToYCrCb422_8u_C3C2R, P1, Lum8u, Lum8u,
             myRGBToYCrCb422_C3_C2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep))
LUM_PUBLIC_C(lumiRGBToYCbCr422_8u_P3C2R, P2, Lum8u, Lum8u, 3,
             myRGBToYCbCr422_C3P2_C2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep))
LUM_PUBLIC_C(lumiRGBToYCrCb422_8u_P3C2R, P2, Lum8u, Lum8u, 3,
             myRGBToYCrCb422_C3P2_C2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep))

LUM_PUBLIC LumStatus lumiRGBToYCbCr420_8u_C3P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                                const int dstStep[3], LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pDst, 3)});
  if (st != LumOk) return st;
  myRGBToYCbCr420_8u_C3P3R(pSrc, pDst[0], pDst[1], pDst[2], roiSize.width >> 1,
                           roiSize.height >> 1, srcStep, dstStep[0], dstStep[1], dstStep[2]);
  return oddCells(roiSize);
}

LUM_PUBLIC_A(lumiYCbCr422ToRGB_8u_C2C3R, P1, Lum8u, Lum8u,
             myYCbCrToRGB422_C2_C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep))
LUM_PUBLIC_A(lumiYCrCb422ToRGB_8u_C2C3R, P1, Lum8u, Lum8u,
             myYCrCbToRGB422_C2_C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep))
LUM_PUBLIC_B(lumiYCbCr422ToRGB_8u_C2P3R, P2, Lum8u, Lum8u, 3,
             myYCbCr422ToRGB_C2_C3P2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep))
LUM_PUBLIC_B(lumiYCrCb422ToRGB_8u_C2P3R, P2, Lum8u, Lum8u, 3,
             myYCrCb422ToRGB_C2_C3P2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep))

LUM_PUBLIC LumStatus lumiYCbCr422ToRGB_8u_P3C3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                Lum8u* pDst, int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3)});
  if (st != LumOk) return st;
  myYCbCr422ToRGB_8u_P3C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep);
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr420ToRGB_8u_P3C3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                                Lum8u* pDst, int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3)});
  if (st != LumOk) return st;
  myYCbCr420ToRGB_8u_P3C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep);
  return oddCells(roiSize);
}
