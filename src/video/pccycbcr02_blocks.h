// RGB with YCbCr and YCrCb 4:2:2 and 4:2:0: the one-row kernels as
// templates, built of the lane forms of pccycbcr02.h and pccycbcr.h on
// I16x8, and parameterised by the (de)interleave of 16 3-byte pixels: the
// SSE2 riffle network (NetSse2, here) or the SSSE3 byte shuffles
// (pccycbcr02_ssse3.cpp).  The formulas, and so the bytes, are the same for
// both.  Included by the SSE2 unit and the SSSE3 unit; everything here has
// internal linkage, so that each unit keeps its own instructions, and no
// object has an initialiser.
#ifndef LUM_PCCYCBCR02_BLOCKS_H
#define LUM_PCCYCBCR02_BLOCKS_H

#include <string.h>

#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "video/pccycbcr.h"
#include "video/pccycbcr02.h"

namespace {
namespace ycbcrsubblocks {

using namespace lum;
using namespace lum::ycbcrsub;

using NetSse2 = lum::Net3Sse2;  // the shared network of 3-byte pixels

// ---------------------------------------------------------------------------
// Loads and stores.

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
template <class Net>
inline void loadC3x16(const Lum8u* p, I16x8 lo[3], I16x8 hi[3]) {
  __m128i b[3];
  Net::load16(p, b);
  for (int k = 0; k < 3; ++k) lo[k] = I16x8{lo8to16(b[k])}, hi[k] = I16x8{hi8to16(b[k])};
}
template <class Net>
inline void storeC3x16(const I16x8 lo[3], const I16x8 hi[3], Lum8u* p) {
  const __m128i b[3] = {vPackS16U8(lo[0].v, hi[0].v), vPackS16U8(lo[1].v, hi[1].v),
                        vPackS16U8(lo[2].v, hi[2].v)};
  Net::store16(b, p);
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
// 4 chroma samples replicated to 8 lanes.
inline I16x8 chroma4x2(const Lum8u* p) {
  int32_t v;
  memcpy(&v, p, 4);
  const __m128i b = _mm_cvtsi32_si128(v);
  return I16x8{lo8to16(_mm_unpacklo_epi8(b, b))};
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

template <Order kOrder, class Net>
void fwd422C3(const Lum8u* s, Lum8u* d, int width) {
  const int end = width & ~(kBlockFwd422 - 1);
  int x = 0;
  for (; x + 16 <= end; x += 16) {  // rounds of 16 while they fit, then one of 8
    I16x8 lo[3], hi[3];
    loadC3x16<Net>(s + 3 * x, lo, hi);
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
// 4:2:0 forward: the kry420 forms on cells & ~3 (rounds of 8 cells while they
// fit, then one of 4), A and the >> 18 cell chroma on the rest.

// 4 cells from the two rows' R, G, B lanes (8 pixels each).
inline void fwd420Cells4(const I16x8 a[3], const I16x8 b[3], Lum8u* pY0, Lum8u* pY1, __m128i* cb,
                         __m128i* cr) {
  const ycbcr::Forward420Set& k = ycbcr::kry420;
  storel64(pY0, vPackS16U8(fwd420BlockYLanes(a[0], a[1], a[2]).v, _mm_setzero_si128()));
  storel64(pY1, vPackS16U8(fwd420BlockYLanes(b[0], b[1], b[2]).v, _mm_setzero_si128()));
  I16x8 sum[3];
  for (int j = 0; j < 3; ++j) {  // the sums of each cell: pairs of the two rows' sums
    const I32x4 s = madd(a[j] + b[j], broadcast16<I16x8>(1));
    sum[j] = packS32(s, s);
  }
  *cb = fwd420BlockChromaLanes(sum[0], sum[1], sum[2], k.cbR, k.cbG, k.cbB).v;
  *cr = fwd420BlockChromaLanes(sum[0], sum[1], sum[2], k.crR, k.crG, k.crB).v;
}
template <class Net>
void fwd420C3(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1, Lum8u* pCb,
              Lum8u* pCr, int cells) {
  const int end = cells & ~(kBlockFwd420Cells - 1);
  int c = 0;
  for (; c + 8 <= end; c += 8) {
    I16x8 a[2][3], b[2][3];
    loadC3x16<Net>(pRow0 + 6 * c, a[0], a[1]);
    loadC3x16<Net>(pRow1 + 6 * c, b[0], b[1]);
    __m128i cb[2], cr[2];
    for (int h = 0; h < 2; ++h) fwd420Cells4(a[h], b[h], pY0 + 2 * c + 8 * h, pY1 + 2 * c + 8 * h, &cb[h], &cr[h]);
    // cells 0-3 in lanes 0-3 of the first, 4-7 of the second
    storel64(pCb + c, vPackS16U8(_mm_unpacklo_epi64(cb[0], cb[1]), _mm_setzero_si128()));
    storel64(pCr + c, vPackS16U8(_mm_unpacklo_epi64(cr[0], cr[1]), _mm_setzero_si128()));
  }
  for (; c < end; c += 4) {
    I16x8 a[3], b[3];
    loadC3x8(pRow0 + 6 * c, a);
    loadC3x8(pRow1 + 6 * c, b);
    __m128i cb, cr;
    fwd420Cells4(a, b, pY0 + 2 * c, pY1 + 2 * c, &cb, &cr);
    const int32_t vb = _mm_cvtsi128_si32(vPackS16U8(cb, cb));
    const int32_t vr = _mm_cvtsi128_si32(vPackS16U8(cr, cr));
    memcpy(pCb + c, &vb, 4);
    memcpy(pCr + c, &vr, 4);
  }
  for (; c < cells; ++c) {
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
// The block part of a C2 row from pixel x on: E in rounds of 8, then one of
// 4; put(x, c, n) stores n pixels at x.
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

template <Order kOrder, class Net>
void inv422C2C3(const Lum8u* s, Lum8u* d, int width, int x16 = 0) {
  // From x16 (where a wider loop stopped): rounds of 16 first (the same
  // formula, a cheaper interleave).
  for (; x16 + 16 <= (width & ~(kBlockInv422C2 - 1)); x16 += 16) {
    I16x8 lo[3], hi[3];
    inv422C2Lanes<kOrder>(loadu(s + 2 * x16), lo);
    inv422C2Lanes<kOrder>(loadu(s + 2 * x16 + 16), hi);
    storeC3x16<Net>(lo, hi, d + 3 * x16);
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

// 4:2:2 planes to pixels: F on width & ~7 (rounds of 16 while they fit, then
// one of 8), G on the rest; pixel x takes chroma column x >> 1.
template <class Net>
void inv422P3C3(const Lum8u* pY, const Lum8u* pCb, const Lum8u* pCr, Lum8u* pDst, int width) {
  const int end = width & ~(kBlockInv422P3C3 - 1);
  int x = 0;
  for (; x + 16 <= end; x += 16) {
    const __m128i y = loadu(pY + x), cb = loadl64(pCb + x / 2), cr = loadl64(pCr + x / 2);
    const __m128i cb2 = _mm_unpacklo_epi8(cb, cb), cr2 = _mm_unpacklo_epi8(cr, cr);
    I16x8 lo[3], hi[3];
    ycbcr::formFLanes(I16x8{lo8to16(y)}, I16x8{lo8to16(cb2)}, I16x8{lo8to16(cr2)}, lo);
    ycbcr::formFLanes(I16x8{hi8to16(y)}, I16x8{hi8to16(cb2)}, I16x8{hi8to16(cr2)}, hi);
    storeC3x16<Net>(lo, hi, pDst + 3 * x);
  }
  for (; x < end; x += 8) {
    I16x8 c[3];
    ycbcr::formFLanes(I16x8{lo8to16(loadl64(pY + x))}, chroma4x2(pCb + x / 2), chroma4x2(pCr + x / 2), c);
    storeC3(c, pDst + 3 * x, 8);
  }
  for (; x < width; ++x) ycbcr::formG(pY[x], pCb[x >> 1], pCr[x >> 1], pDst + 3 * x);
}

// 4:2:0 inverse: the 4767 form on cells & ~3 (rounds of 8 cells while they
// fit, then one of 4), D on the rest.
template <class Net>
void inv420P3C3(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pCb, const Lum8u* pCr,
                Lum8u* pRow0, Lum8u* pRow1, int cells) {
  const int end = cells & ~(kBlockInv420Cells - 1);
  const Lum8u* ys[2] = {pY0, pY1};
  Lum8u* rows2[2] = {pRow0, pRow1};
  int c = 0;
  for (; c + 8 <= end; c += 8) {
    const __m128i cb = loadl64(pCb + c), cr = loadl64(pCr + c);
    const __m128i cb2 = _mm_unpacklo_epi8(cb, cb), cr2 = _mm_unpacklo_epi8(cr, cr);
    const I16x8 cbLo{lo8to16(cb2)}, cbHi{hi8to16(cb2)}, crLo{lo8to16(cr2)}, crHi{hi8to16(cr2)};
    for (int r = 0; r < 2; ++r) {
      const __m128i y = loadu(ys[r] + 2 * c);
      I16x8 lo[3], hi[3];
      inv420BlockLanes(I16x8{lo8to16(y)}, cbLo, crLo, lo);
      inv420BlockLanes(I16x8{hi8to16(y)}, cbHi, crHi, hi);
      storeC3x16<Net>(lo, hi, rows2[r] + 6 * c);
    }
  }
  for (; c < end; c += 4) {
    const I16x8 cb = chroma4x2(pCb + c), cr = chroma4x2(pCr + c);
    for (int r = 0; r < 2; ++r) {
      I16x8 o[3];
      inv420BlockLanes(I16x8{lo8to16(loadl64(ys[r] + 2 * c))}, cb, cr, o);
      storeC3(o, rows2[r] + 6 * c, 8);
    }
  }
  for (; c < cells; ++c)
    for (int i = 0; i < 2; ++i) {
      ycbcr::formD(pY0[2 * c + i], pCb[c], pCr[c], pRow0 + 6 * c + 3 * i);
      ycbcr::formD(pY1[2 * c + i], pCb[c], pCr[c], pRow1 + 6 * c + 3 * i);
    }
}

}  // namespace ycbcrsubblocks
}  // namespace

#endif  // LUM_PCCYCBCR02_BLOCKS_H
