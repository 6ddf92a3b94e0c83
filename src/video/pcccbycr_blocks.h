// CbYCr 4:2:2: the row kernels as templates, built of the lane forms of
// pcccbycr.h and pccycbcr.h on I16x8; those with 3-byte pixels are
// parameterised by the (de)interleave of 16 pixels: the SSE2 riffle network
// (NetSse2, here) or the SSSE3 byte shuffles (pcccbycr_ssse3.cpp), with the
// same bytes.  Included by the SSE2 unit and the SSSE3 unit; everything here
// has internal linkage, and no object has an initialiser.
#ifndef LUM_PCCCBYCR_BLOCKS_H
#define LUM_PCCCBYCR_BLOCKS_H

#include <string.h>

#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "video/pcccbycr.h"

namespace {
namespace cbycrblocks {

using namespace lum;
using namespace lum::cbycr;

using NetSse2 = lum::Net3Sse2;  // the shared network of 3-byte pixels

template <bool kAligned>
inline __m128i load16(const Lum8u* p) {
  return kAligned ? _mm_load_si128(reinterpret_cast<const __m128i*>(p)) : loadu(p);
}
template <bool kAligned>
inline void store16(Lum8u* p, __m128i v) {
  if (kAligned) _mm_store_si128(reinterpret_cast<__m128i*>(p), v);
  else storeu(p, v);
}

// ---------------------------------------------------------------------------
// RGB to CbYCr: the table's values of pixel x, and one row.  Rounds of 8
// pixels (4 pairs) over the whole pairs while they fit, then pair by pair;
// one arithmetic throughout.  The left neighbour of the first pair is
// (0, 0, 0), which adds nothing.
template <const ChannelTable& kTable, bool kIdentity>
inline void loadTable8(const Lum8u* s, I16x8 c[3]) {
  __m128i b[3];
  if (kIdentity) {
    deinterleave3x8(s, b);
  } else {
    alignas(16) Lum8u t[24];
    for (int i = 0; i < 24; ++i) t[i] = static_cast<Lum8u>(kTable.v[s[i]]);
    deinterleave3x8(t, b);
  }
  for (int k = 0; k < 3; ++k) c[k] = I16x8{lo8to16(b[k])};
}

template <const ChannelTable& kTable, bool kIdentity, class Net>
inline void loadTable16(const Lum8u* s, I16x8 lo[3], I16x8 hi[3]) {
  __m128i b[3];
  if (kIdentity) {
    Net::load16(s, b);
  } else {
    alignas(16) Lum8u t[48];
    for (int i = 0; i < 48; ++i) t[i] = static_cast<Lum8u>(kTable.v[s[i]]);
    Net::load16(t, b);
  }
  for (int k = 0; k < 3; ++k) lo[k] = I16x8{lo8to16(b[k])}, hi[k] = I16x8{hi8to16(b[k])};
}

template <const ChannelTable& kTable, bool kIdentity, class Net>
void rowToCbYCr(const Lum8u* s, Lum8u* d, int width) {
  auto px = [&](int x, int v[3]) {
    v[0] = kTable.v[s[3 * x]], v[1] = kTable.v[s[3 * x + 1]], v[2] = kTable.v[s[3 * x + 2]];
  };
  int prev[3] = {0, 0, 0}, a[3], b[3];
  const int end = (width & ~1) & ~7;
  int x = 0;
  const __m128i lowHalves = _mm_set1_epi32(0xFFFF);
  I16x8 next[3] = {};  // set by a 16-pixel load before any round that reads it
  for (; x < end; x += 8) {
    I16x8 c[3], A[3];
    if (x & 8) {  // the high half of the 16 pixels loaded last round
      for (int k = 0; k < 3; ++k) c[k] = next[k];
    } else if (x + 16 <= end) {
      loadTable16<kTable, kIdentity, Net>(s + 3 * x, c, next);
    } else {
      loadTable8<kTable, kIdentity>(s + 3 * x, c);
    }
    for (int k = 0; k < 3; ++k) {
      const __m128i left = _mm_insert_epi16(_mm_slli_si128(c[k].v, 2), prev[k], 0);
      const __m128i sides = _mm_add_epi16(left, _mm_srli_si128(c[k].v, 2));
      A[k] = I16x8{_mm_or_si128(_mm_and_si128(c[k].v, lowHalves), _mm_slli_epi32(sides, 16))};
      prev[k] = _mm_extract_epi16(c[k].v, 7);
    }
    I32x4 y[2];
    filterYLanes(c[0], c[1], c[2], y);
    const I32x4 cb = pairFilteredLanes<I16x8, I32x4>(A[0], A[1], A[2], kFilterCb);
    const I32x4 cr = pairFilteredLanes<I16x8, I32x4>(A[0], A[1], A[2], kFilterCr);
    const __m128i Y = _mm_packs_epi32(y[0].v, y[1].v);
    const __m128i C = _mm_unpacklo_epi16(_mm_packs_epi32(cb.v, cb.v), _mm_packs_epi32(cr.v, cr.v));
    storeu(d + 2 * x, _mm_unpacklo_epi8(vPackS16U8(C, C), vPackS16U8(Y, Y)));
  }
  for (; x + 1 < width; x += 2) {
    px(x, a);
    px(x + 1, b);
    Lum8u* q = d + 2 * x;
    q[0] = pairFiltered(prev, a, b, kFilterCb);
    q[1] = filterY(a[0], a[1], a[2]);
    q[2] = pairFiltered(prev, a, b, kFilterCr);
    q[3] = filterY(b[0], b[1], b[2]);
    prev[0] = b[0], prev[1] = b[1], prev[2] = b[2];
  }
  if (x < width) {  // an odd last pixel: Cb at double weight, Y
    px(x, a);
    d[2 * x] = lastFilteredCb(a);
    d[2 * x + 1] = filterY(a[0], a[1], a[2]);
  }
}

// ---------------------------------------------------------------------------
// CbYCr to RGB or BGR: F on width & ~7 in rounds of 8, the 32768 form of G on
// the rest; an odd last pixel takes the Cb before its Y and the Cr of the
// pair before (at a width of 1, the two bytes before the row).
inline void toRGBLanes(__m128i w, I16x8 c[3]) {
  const __m128i ch = _mm_and_si128(w, _mm_set1_epi16(0x00ff));
  const __m128i cb = _mm_shufflehi_epi16(_mm_shufflelo_epi16(ch, _MM_SHUFFLE(2, 2, 0, 0)),
                                         _MM_SHUFFLE(2, 2, 0, 0));
  const __m128i cr = _mm_shufflehi_epi16(_mm_shufflelo_epi16(ch, _MM_SHUFFLE(3, 3, 1, 1)),
                                         _MM_SHUFFLE(3, 3, 1, 1));
  ycbcr::formFLanes(I16x8{_mm_srli_epi16(w, 8)}, I16x8{cb}, I16x8{cr}, c);
}
template <class Put>
inline void tailToRGBRow(const Lum8u* s, int x, int width, Put put) {
  for (; x < width; ++x) {
    const Lum8u* pair = s + 2 * (x & ~1);
    const int cr = (x + 1 < width || (x & 1)) ? pair[2] : pair[-2];
    uint8_t rgb[3];
    tailToRGB(s[2 * x + 1], pair[0], cr, rgb);
    put(x, rgb);
  }
}

template <class Net>
void rowToRGB(const Lum8u* s, Lum8u* d, int width, int x16 = 0) {  // from x16 on
  const int end = width & ~(kBlockToRGB - 1);
  for (; x16 + 16 <= end; x16 += 16) {  // rounds of 16 while they fit, then one of 8
    I16x8 lo[3], hi[3];
    toRGBLanes(loadu(s + 2 * x16), lo);
    toRGBLanes(loadu(s + 2 * x16 + 16), hi);
    const __m128i b[3] = {vPackS16U8(lo[0].v, hi[0].v), vPackS16U8(lo[1].v, hi[1].v),
                          vPackS16U8(lo[2].v, hi[2].v)};
    Net::store16(b, d + 3 * x16);
  }
  for (int x = x16; x < end; x += 8) {
    I16x8 c[3];
    toRGBLanes(loadu(s + 2 * x), c);
    const __m128i b[3] = {vPackS16U8(c[0].v, c[0].v), vPackS16U8(c[1].v, c[1].v),
                          vPackS16U8(c[2].v, c[2].v)};
    interleave3x8(b, d + 3 * x);
  }
  tailToRGBRow(s, end, width, [&](int x, const uint8_t* rgb) { memcpy(d + 3 * x, rgb, 3); });
}

template <bool kAligned>
void rowToBGRA(const Lum8u* s, Lum8u* d, int width, Lum8u alpha) {
  const int end = width & ~(kBlockToRGB - 1);
  const __m128i a = _mm_set1_epi8(static_cast<char>(alpha));
  for (int x = 0; x < end; x += 8) {
    I16x8 c[3];
    toRGBLanes(load16<kAligned>(s + 2 * x), c);
    const __m128i ch[4] = {vPackS16U8(c[2].v, c[2].v), vPackS16U8(c[1].v, c[1].v),
                           vPackS16U8(c[0].v, c[0].v), a};
    __m128i out[2];
    interleave4x8(ch, out);
    store16<kAligned>(d + 4 * x, out[0]);
    store16<kAligned>(d + 4 * x + 16, out[1]);
  }
  tailToRGBRow(s, end, width, [&](int x, const uint8_t* rgb) {
    Lum8u* q = d + 4 * x;
    q[0] = rgb[2], q[1] = rgb[1], q[2] = rgb[0], q[3] = alpha;
  });
}

// ---------------------------------------------------------------------------
// BGR (alpha not read) to CbYCr: the block forms on width & ~7; A and the
// pair chroma of the 4:2:2 YCbCr family on the other pairs; an odd last
// pixel by A with its first byte taken as red.
template <bool kAligned>
void rowFromBGRA(const Lum8u* s, Lum8u* d, int width) {
  const int end = width & ~(kBlockFromBGR - 1);
  const I16x8 one = broadcast16<I16x8>(1);
  for (int x = 0; x < end; x += 8) {
    __m128i v[2] = {load16<kAligned>(s + 4 * x), load16<kAligned>(s + 4 * x + 16)};
    riffle8Times<3>(v);  // B G R A, 8 samples each, as deinterleave4x8
    const I16x8 B{lo8to16(v[0])}, G{lo8to16(_mm_srli_si128(v[0], 8))}, R{lo8to16(v[1])};
    const I16x8 Y = blockFromBGRYLanes(R, G, B);
    const I32x4 sr = madd(R, one), sg = madd(G, one), sb = madd(B, one);
    const I16x8 SR = packS32(sr, sr), SG = packS32(sg, sg), SB = packS32(sb, sb);
    const I16x8 cb = blockFromBGRChromaLanes(SR, SG, SB, ycbcr::kCbR, ycbcr::kCbG, ycbcr::kCbB);
    const I16x8 cr = blockFromBGRChromaLanes(SR, SG, SB, ycbcr::kCrR, ycbcr::kCrG, ycbcr::kCrB);
    const __m128i c = _mm_unpacklo_epi16(cb.v, cr.v);  // Cb0 Cr0 Cb1 Cr1 ...
    store16<kAligned>(d + 2 * x, _mm_unpacklo_epi8(vPackS16U8(c, c), vPackS16U8(Y.v, Y.v)));
  }
  int x = end;
  for (; x + 1 < width; x += 2) {
    const Lum8u* p = s + 4 * x;
    const Lum8u* q = p + 4;
    const int SR = p[2] + q[2], SG = p[1] + q[1], SB = p[0] + q[0];
    Lum8u* o = d + 2 * x;
    o[0] = ycbcrsub::pairCb(SR, SG, SB);
    o[1] = ycbcr::formAY(p[2], p[1], p[0]);
    o[2] = ycbcrsub::pairCr(SR, SG, SB);
    o[3] = ycbcr::formAY(q[2], q[1], q[0]);
  }
  if (x < width) {  // the reverse channel order, at this pixel only
    const Lum8u* p = s + 4 * x;
    d[2 * x] = ycbcr::formACb(p[0], p[1], p[2]);
    d[2 * x + 1] = ycbcr::formAY(p[0], p[1], p[2]);
  }
}

}  // namespace cbycrblocks
}  // namespace

#endif  // LUM_PCCCBYCR_BLOCKS_H
