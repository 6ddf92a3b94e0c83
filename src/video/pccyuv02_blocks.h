// RGB and YUV 4:2:2 and 4:2:0: the block loops at 8 lanes (16 pixels or 8
// cells a step), built of the lane formulas of pccyuv02.h on I16x8, and
// parameterised by the (de)interleave of 3-byte pixels: the SSE2 riffle
// network (rounds of 32 pixels, then 16) or the SSSE3 byte shuffles.
// Included by the SSE2 unit and the SSSE3 unit; internal linkage throughout,
// so that each unit keeps its own instructions, and no object here has an
// initialiser (constants are built where used).
#ifndef LUM_PCCYUV02_BLOCKS_H
#define LUM_PCCYUV02_BLOCKS_H

#include <string.h>

#include "frame/lum_lanes.h"
#include "frame/lum_row.h"
#include "frame/lum_simd.h"
#include "video/pccyuv02.h"

namespace {
namespace yuvsubblocks {

using namespace lum;
using namespace lum::yuvsub;

// ---------------------------------------------------------------------------
// 16 bytes -> two registers of 8 16-bit lanes, and back (the pack saturates:
// it is the sat8u of the scalar forms).
inline void widen(__m128i b, I16x8 w[2]) { w[0] = I16x8{lo8to16(b)}, w[1] = I16x8{hi8to16(b)}; }
// w10 of 16 bytes: the byte unpacked with itself is 257 x, then a shift by 6.
inline void widen10(__m128i b, I16x8 w[2]) {
  w[0] = I16x8{_mm_srli_epi16(_mm_unpacklo_epi8(b, b), 6)};
  w[1] = I16x8{_mm_srli_epi16(_mm_unpackhi_epi8(b, b), 6)};
}
inline __m128i pack(I16x8 lo, I16x8 hi) { return vPackS16U8(lo.v, hi.v); }
inline __m128i packY(const I16x8 T[2]) { return pack(shrA<1>(T[0]), shrA<1>(T[1])); }

// Result of a forward step on 16 pixels (or 8 cells): luma bytes, and the
// chroma of 8 pairs or cells in the low 8 bytes of u and v.
struct Fwd16 {
  __m128i y, u, v;
};
// 4:2:2 on 16 pixels given as bytes: by T1 (pairT1) or T3 (pairT3).
inline Fwd16 fwd422T1x16(__m128i R, __m128i G, __m128i B) {
  I16x8 r[2], g[2], b[2], T[2], u, v;
  widen(R, r), widen(G, g), widen(B, b);
  for (int h = 0; h < 2; ++h) T[h] = t1Lanes(r[h], g[h], b[h]);
  pairT1ChromaLanes(T, r, b, u, v);
  return {packY(T), pack(u, u), pack(v, v)};
}
inline Fwd16 fwd422T3x16(__m128i R, __m128i G, __m128i B) {
  I16x8 r[2], g[2], b[2], T[2], u, v;
  widen10(R, r), widen10(G, g), widen10(B, b);
  pairT3Lanes(r, g, b, T, u, v);
  return {packY(T), pack(u, u), pack(v, v)};
}

// 4:2:0 on 8 cells: the two rows' R, G, B as bytes (16 pixels each), by T1
// (pixel-order kernel: bytes, sums >> 1) or T3 (plane kernel: w10, sums >> 3).
struct Fwd420 {
  __m128i y0, y1, u, v;
};
template <bool kT3>
inline Fwd420 fwd420x8(const __m128i R[2], const __m128i G[2], const __m128i B[2]) {
  I16x8 r[2][2], g[2][2], b[2][2], T[2][2], u, v;
  for (int row = 0; row < 2; ++row) {
    if (kT3) widen10(R[row], r[row]), widen10(G[row], g[row]), widen10(B[row], b[row]);
    else widen(R[row], r[row]), widen(G[row], g[row]), widen(B[row], b[row]);
  }
  for (int row = 0; row < 2; ++row)
    for (int h = 0; h < 2; ++h)
      T[row][h] = kT3 ? t3Lanes(r[row][h], g[row][h], b[row][h]) : t1Lanes(r[row][h], g[row][h], b[row][h]);
  if (kT3) cellsLanes<3>(T, r, b, u, v);
  else cellsLanes<1>(T, r, b, u, v);
  return {packY(T[0]), packY(T[1]), pack(u, u), pack(v, v)};
}

// I1 on 16 pixels: Y bytes and the terms of their 8 pairs or cells; out bytes.
inline void i1x16(__m128i Y, const I1Terms<I16x8>& t, __m128i out[3]) {
  I16x8 y[2], lo[3], hi[3];
  widen(Y, y);
  i1ApplyLanes(y[0], spreadLo(t), lo);
  i1ApplyLanes(y[1], spreadHi(t), hi);
  for (int k = 0; k < 3; ++k) out[k] = pack(lo[k], hi[k]);
}
// The terms of 8 pairs or cells from chroma bytes (the low 8 of u and v), or
// of the next 8 from the high 8.
inline I1Terms<I16x8> i1TermsLo(__m128i u, __m128i v) {
  return i1TermsLanes(I16x8{lo8to16(u)}, I16x8{lo8to16(v)});
}
inline I1Terms<I16x8> i1TermsHi(__m128i u, __m128i v) {
  return i1TermsLanes(I16x8{hi8to16(u)}, I16x8{hi8to16(v)});
}

// 4:2:2 pixel-order C2 bytes (Y0 U Y1 V) of 16 pixels (32 bytes) -> the Y
// bytes of pixels 0-7 and 8-15 in 16-bit lanes, and U and V of the 8 pairs.
inline void splitC2x16(const Lum8u* p, I16x8 Y[2], I16x8& U, I16x8& V) {
  const __m128i a = loadu(p), b = loadu(p + 16), lo = vset16(0x00ff);
  Y[0] = I16x8{_mm_and_si128(a, lo)};
  Y[1] = I16x8{_mm_and_si128(b, lo)};
  const __m128i ca = _mm_srli_epi16(a, 8), cb = _mm_srli_epi16(b, 8);  // U0 V0 U1 V1 ...
  const __m128i even = _mm_set1_epi32(0xffff);
  U = I16x8{_mm_packs_epi32(_mm_and_si128(ca, even), _mm_and_si128(cb, even))};
  V = I16x8{_mm_packs_epi32(_mm_srli_epi32(ca, 16), _mm_srli_epi32(cb, 16))};
}
inline void i1C2x16(const Lum8u* s, __m128i out[3]) {
  I16x8 Y[2], U, V, lo[3], hi[3];
  splitC2x16(s, Y, U, V);
  const I1Terms<I16x8> t = i1TermsLanes(U, V);
  i1ApplyLanes(Y[0], spreadLo(t), lo);
  i1ApplyLanes(Y[1], spreadHi(t), hi);
  for (int k = 0; k < 3; ++k) out[k] = pack(lo[k], hi[k]);
}

// I2 on 8 pixels from bytes (low 8 bytes of each register), packed and
// interleaved with a zero alpha: two registers of 4 four-byte pixels.
inline void i2x8ToAC4(__m128i Y, __m128i U, __m128i V, __m128i px[2]) {
  I16x8 o[3];
  i2Lanes(I16x8{lo8to16(Y)}, I16x8{lo8to16(U)}, I16x8{lo8to16(V)}, o);
  const __m128i c[4] = {pack(o[0], o[0]), pack(o[1], o[1]), pack(o[2], o[2]), _mm_setzero_si128()};
  interleave4x8(c, px);
}
// The chroma of 8 pairs (low 8 bytes) replicated to 16 pixels.
inline __m128i replicate8(__m128i c) { return _mm_unpacklo_epi8(c, c); }
inline __m128i load16(const void* p) {
  uint16_t v;
  memcpy(&v, p, 2);
  return _mm_cvtsi32_si128(v);
}

// ---------------------------------------------------------------------------
// The (de)interleave of 3-byte pixels.  SSE2: 32 pixels a round through the
// six-register network, then 16; SSSE3: 16 by byte shuffles.

// Stores of three results for 16 pixels (put) or 32 pixels (put32): pixel
// order, or three planes.
template <class Net>
struct StoreC3 {
  Lum8u* d;
  void put(int x, const __m128i* out) const { Net::store16(out, d + 3 * x); }
  void put32(int x, const __m128i* a, const __m128i* b) const {
    if constexpr (Net::kRound32) {
      interleave3x32(Planes8x32{{{a[0], b[0]}, {a[1], b[1]}, {a[2], b[2]}}}, d + 3 * x);
    } else {
      put(x, a);
      put(x + 16, b);
    }
  }
};
struct StoreP3 {
  Lum8u *r, *g, *b;
  void put(int x, const __m128i* out) const {
    storeu(r + x, out[0]);
    storeu(g + x, out[1]);
    storeu(b + x, out[2]);
  }
  void put32(int x, const __m128i* a, const __m128i* c) const {
    put(x, a);
    put(x + 16, c);
  }
};

// ---------------------------------------------------------------------------
// Block loops from x (or cell c) to end, 16 pixels (8 cells) a step, 32 (16)
// where the network has such rounds.  Each returns the first pixel or cell
// not done.

// Forward 4:2:2 by T1; store(x, Fwd16) writes luma and chroma.
template <class Net, class Store>
inline int blockRGBToYUV422_T1(const Lum8u* pSrc, int x, int end, Store store) {
  if constexpr (Net::kRound32) {
    for (; x + 32 <= end; x += 32) {
      const Planes8x32 p = deinterleave3x32(pSrc + 3 * x);
      store(x, fwd422T1x16(p.c[0][0], p.c[1][0], p.c[2][0]));
      store(x + 16, fwd422T1x16(p.c[0][1], p.c[1][1], p.c[2][1]));
    }
  }
  for (; x + 16 <= end; x += 16) {
    __m128i c[3];
    Net::load16(pSrc + 3 * x, c);
    store(x, fwd422T1x16(c[0], c[1], c[2]));
  }
  return x;
}
template <class Net>
inline int blockRGBToYUV422_C3C2(const Lum8u* pSrc, Lum8u* pDst, int x, int end) {
  return blockRGBToYUV422_T1<Net>(pSrc, x, end, [pDst](int at, const Fwd16& f) {
    const __m128i uv = _mm_unpacklo_epi8(f.u, f.v);
    storeu(pDst + 2 * at, _mm_unpacklo_epi8(f.y, uv));
    storeu(pDst + 2 * at + 16, _mm_unpackhi_epi8(f.y, uv));
  });
}
template <class Net>
inline int blockRGBToYUV422_C3P3(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int x,
                                 int end) {
  return blockRGBToYUV422_T1<Net>(pSrc, x, end, [=](int at, const Fwd16& f) {
    storeu(pY + at, f.y);
    storel64(pU + at / 2, f.u);
    storel64(pV + at / 2, f.v);
  });
}
inline int blockRGBToYUV422_P3(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                               Lum8u* pU, Lum8u* pV, int x, int end) {
  for (; x + 16 <= end; x += 16) {
    const Fwd16 f = fwd422T3x16(loadu(pR + x), loadu(pG + x), loadu(pB + x));
    storeu(pY + x, f.y);
    storel64(pU + x / 2, f.u);
    storel64(pV + x / 2, f.v);
  }
  return x;
}

template <class Net>
inline int blockYUV422ToRGB_C2C3(const Lum8u* pSrc, Lum8u* pDst, int x, int end) {
  for (; x + 32 <= end; x += 32) {
    __m128i a[3], b[3];
    i1C2x16(pSrc + 2 * x, a);
    i1C2x16(pSrc + 2 * x + 32, b);
    StoreC3<Net>{pDst}.put32(x, a, b);
  }
  for (; x + 16 <= end; x += 16) {
    __m128i out[3];
    i1C2x16(pSrc + 2 * x, out);
    Net::store16(out, pDst + 3 * x);
  }
  return x;
}
// I1 on planes; Store writes the three results.
template <class Store>
inline int blockYUV422ToRGB_I1(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, int x, int end,
                               Store store) {
  for (; x + 32 <= end; x += 32) {
    const __m128i u = loadu(pU + x / 2), v = loadu(pV + x / 2);
    __m128i a[3], b[3];
    i1x16(loadu(pY + x), i1TermsLo(u, v), a);
    i1x16(loadu(pY + x + 16), i1TermsHi(u, v), b);
    store.put32(x, a, b);
  }
  for (; x + 16 <= end; x += 16) {
    __m128i out[3];
    i1x16(loadu(pY + x), i1TermsLo(loadl64(pU + x / 2), loadl64(pV + x / 2)), out);
    store.put(x, out);
  }
  return x;
}
// I2 in rounds of 8 pixels, then one of 4; alpha written as 0.
inline int blockYUV422ToRGB_AC4(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                                int x, int end) {
  for (; x + 8 <= end; x += 8) {
    __m128i px[2];
    i2x8ToAC4(loadl64(pY + x), replicate8(load32(pU + x / 2)), replicate8(load32(pV + x / 2)), px);
    storeu(pDst + 4 * x, px[0]);
    storeu(pDst + 4 * x + 16, px[1]);
  }
  if (x + 4 <= end) {
    __m128i px[2];
    i2x8ToAC4(load32(pY + x), replicate8(load16(pU + x / 2)), replicate8(load16(pV + x / 2)), px);
    storeu(pDst + 4 * x, px[0]);
    x += 4;
  }
  return x;
}

// Forward 4:2:0 by T1 on the cells of two pixel-order rows.
template <class Net>
inline int blockRGBToYUV420_C3P3(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                                 Lum8u* pU, Lum8u* pV, int c, int endCells) {
  auto put = [&](int cell, const Fwd420& f) {
    storeu(pY0 + 2 * cell, f.y0);
    storeu(pY1 + 2 * cell, f.y1);
    storel64(pU + cell, f.u);
    storel64(pV + cell, f.v);
  };
  if constexpr (Net::kRound32) {
    for (; c + 16 <= endCells; c += 16) {
      const Planes8x32 a = deinterleave3x32(pRow0 + 6 * c), b = deinterleave3x32(pRow1 + 6 * c);
      for (int h = 0; h < 2; ++h) {
        const __m128i R[2] = {a.c[0][h], b.c[0][h]}, G[2] = {a.c[1][h], b.c[1][h]};
        const __m128i B[2] = {a.c[2][h], b.c[2][h]};
        put(c + 8 * h, fwd420x8<false>(R, G, B));
      }
    }
  }
  for (; c + 8 <= endCells; c += 8) {
    __m128i a[3], b[3];
    Net::load16(pRow0 + 6 * c, a);
    Net::load16(pRow1 + 6 * c, b);
    const __m128i R[2] = {a[0], b[0]}, G[2] = {a[1], b[1]}, B[2] = {a[2], b[2]};
    put(c, fwd420x8<false>(R, G, B));
  }
  return c;
}
// Forward 4:2:0 by T3 on the cells of two rows of planes.
inline int blockRGBToYUV420_P3(const Lum8u* const src0[3], const Lum8u* const src1[3], Lum8u* pY0,
                               Lum8u* pY1, Lum8u* pU, Lum8u* pV, int c, int endCells) {
  for (; c + 8 <= endCells; c += 8) {
    const int x = 2 * c;
    const __m128i R[2] = {loadu(src0[0] + x), loadu(src1[0] + x)};
    const __m128i G[2] = {loadu(src0[1] + x), loadu(src1[1] + x)};
    const __m128i B[2] = {loadu(src0[2] + x), loadu(src1[2] + x)};
    const Fwd420 f = fwd420x8<true>(R, G, B);
    storeu(pY0 + x, f.y0);
    storeu(pY1 + x, f.y1);
    storel64(pU + c, f.u);
    storel64(pV + c, f.v);
  }
  return c;
}

// Inverse 4:2:0 by I1; rows[r] stores row r's results.
template <class Store>
inline int blockYUV420ToRGB_I1(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                               const Lum8u* pV, int c, int endCells, const Store rows[2]) {
  const Lum8u* const yRows[2] = {pY0, pY1};
  for (; c + 16 <= endCells; c += 16) {
    const __m128i u = loadu(pU + c), v = loadu(pV + c);
    const I1Terms<I16x8> lo = i1TermsLo(u, v), hi = i1TermsHi(u, v);  // both rows' cells
    for (int r = 0; r < 2; ++r) {
      __m128i a[3], b[3];
      i1x16(loadu(yRows[r] + 2 * c), lo, a);
      i1x16(loadu(yRows[r] + 2 * c + 16), hi, b);
      rows[r].put32(2 * c, a, b);
    }
  }
  for (; c + 8 <= endCells; c += 8) {
    const I1Terms<I16x8> t = i1TermsLo(loadl64(pU + c), loadl64(pV + c));
    for (int r = 0; r < 2; ++r) {
      __m128i out[3];
      i1x16(loadu(yRows[r] + 2 * c), t, out);
      rows[r].put(2 * c, out);
    }
  }
  return c;
}
// Inverse 4:2:0 by I2 into 4-byte pixels, alpha written as 0.
inline int blockYUV420ToRGB_AC4(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                                const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int c, int endCells) {
  const Lum8u* const yRows[2] = {pY0, pY1};
  Lum8u* const dRows[2] = {pRow0, pRow1};
  for (; c + 8 <= endCells; c += 8) {
    const __m128i U = replicate8(loadl64(pU + c)), V = replicate8(loadl64(pV + c));
    for (int r = 0; r < 2; ++r) {
      const __m128i Y = loadu(yRows[r] + 2 * c);
      __m128i px[2];
      i2x8ToAC4(Y, U, V, px);
      storeu(dRows[r] + 8 * c, px[0]);
      storeu(dRows[r] + 8 * c + 16, px[1]);
      i2x8ToAC4(_mm_srli_si128(Y, 8), _mm_srli_si128(U, 8), _mm_srli_si128(V, 8), px);
      storeu(dRows[r] + 8 * c + 32, px[0]);
      storeu(dRows[r] + 8 * c + 48, px[1]);
    }
  }
  return c;
}

}  // namespace yuvsubblocks
}  // namespace

#endif  // LUM_PCCYUV02_BLOCKS_H
