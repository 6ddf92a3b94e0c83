// RGB and YUV 4:2:2 and 4:2:0: the block loops in AVX2, 32 pixels (16
// cells) a round, the lane formulas of pccyuv02.h at 16 lanes of 16 bits.
// Compiled with -mavx2 and entered only when the call's level is AVX2; the
// caller goes on with the 16-pixel loops from where these stop.  The
// formulas are the SSE2 ones at twice the width, so the bytes are the same.
//
// Lane order: 32 bytes of a channel (pixels 0-31 in order) widen within
// each 128-bit half, to pixels 0-7 | 16-23 (lo) and 8-15 | 24-31 (hi); the
// pair and cell sums of those pack back to pairs or cells 0-15 in order, the
// chroma of 16 pairs or cells widens in order (vpmovzxbw) and spreads back
// to lo and hi, and the byte packs put every pixel back in order.
#include <immintrin.h>

#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "video/pccyuv02.h"

using namespace lum;
using namespace lum::yuvsub;

namespace {

using I = I16x16;

inline __m256i load256(const void* p) { return _mm256_loadu_si256(static_cast<const __m256i*>(p)); }
inline void store256(void* p, __m256i v) { _mm256_storeu_si256(static_cast<__m256i*>(p), v); }

// 32 bytes -> lo, hi (within each half); w10 likewise; and back.
inline void widen(__m256i b, I w[2]) {
  const __m256i z = _mm256_setzero_si256();
  w[0] = I{_mm256_unpacklo_epi8(b, z)};
  w[1] = I{_mm256_unpackhi_epi8(b, z)};
}
inline void widen10(__m256i b, I w[2]) {
  w[0] = I{_mm256_srli_epi16(_mm256_unpacklo_epi8(b, b), 6)};
  w[1] = I{_mm256_srli_epi16(_mm256_unpackhi_epi8(b, b), 6)};
}
inline __m256i pack(I lo, I hi) { return _mm256_packus_epi16(lo.v, hi.v); }
inline __m256i packY(const I T[2]) { return pack(shrA<1>(T[0]), shrA<1>(T[1])); }
// The chroma of 16 pairs or cells, u and v in order, to their planes: one
// pack and one exchange of quarters.
inline void storeUV(Lum8u* pU, Lum8u* pV, I u, I v) {
  const __m256i b = _mm256_permute4x64_epi64(_mm256_packus_epi16(u.v, v.v), 0xD8);
  storeu(pU, _mm256_castsi256_si128(b));
  storeu(pV, _mm256_extracti128_si256(b, 1));
}
// 16 lanes in order <-> 16 bytes.
inline __m128i pack16(I c) {
  return _mm_packus_epi16(_mm256_castsi256_si128(c.v), _mm256_extracti128_si256(c.v, 1));
}
inline I widen16(__m128i b) { return I{_mm256_cvtepu8_epi16(b)}; }

// ---------------------------------------------------------------------------
// Forward steps: 32 pixels (one row) or 16 cells (two rows).
struct Fwd32 {
  __m256i y;
  I u, v;  // the chroma of the 16 pairs, in order, before the pack
};
struct Fwd420x16 {
  __m256i y0, y1;
  I u, v;  // the chroma of the 16 cells, in order, before the pack
};
// One pixel-order row of 32 pixels for T1, straight from the 96 bytes: the
// byte shuffles put R and B of the lo and hi pixels in words, and R, G in
// pairs of words for the pmaddwd of T1, without byte planes between.  Mask
// groups: R lo, R hi, B lo, B hi, then R G of pixels 0-3, 4-7, 8-11, 12-15
// of each half; mask [g][j] takes what lies in source register j.
struct WordMasks {
  alignas(16) uint8_t m[8][3][16];
};
constexpr int sourceByte(int g, int i) {
  return g == 0 ? 3 * i : g == 1 ? 3 * (i + 8) : g == 2 ? 3 * i + 2 : g == 3 ? 3 * (i + 8) + 2
                                                                    : 3 * (4 * (g - 4) + i / 2) + i % 2;
}
constexpr WordMasks makeWordMasks() {
  WordMasks w{};
  for (int g = 0; g < 8; ++g)
    for (int j = 0; j < 3; ++j)
      for (int i = 0; i < 8; ++i) {
        const int b = sourceByte(g, i);
        w.m[g][j][2 * i] = b / 16 == j ? static_cast<uint8_t>(b % 16) : 0x80;
        w.m[g][j][2 * i + 1] = 0x80;
      }
  return w;
}
constexpr WordMasks kWords = makeWordMasks();

inline void rowT1(const Lum8u* p, I R[2], I B[2], I T[2]) {
  const __m256i v[3] = {loadHalves(p, p + 48), loadHalves(p + 16, p + 64), loadHalves(p + 32, p + 80)};
  auto one = [&](int g, int j) { return _mm256_shuffle_epi8(v[j], shuffleMask2(kWords.m[g][j])); };
  auto two = [&](int g, int j) { return I{_mm256_or_si256(one(g, j), one(g, j + 1))}; };
  R[0] = two(0, 0), R[1] = two(1, 1), B[0] = two(2, 0), B[1] = two(3, 1);
  T[0] = t1RGLanes(I{one(4, 0)}, two(5, 0), B[0]);
  T[1] = t1RGLanes(two(6, 1), I{one(7, 2)}, B[1]);
}

// 4:2:2 on 32 pixels by T1, from pixel order.
inline Fwd32 fwd422T1(const Lum8u* p) {
  I R[2], B[2], T[2], u, v;
  rowT1(p, R, B, T);
  pairT1ChromaLanes(T, R, B, u, v);
  return {packY(T), u, v};
}

// 4:2:0 on 16 cells: by T1 from two pixel-order rows, by T3 from planes.
inline Fwd420x16 fwd420T1(const Lum8u* row0, const Lum8u* row1) {
  I R[2][2], B[2][2], T[2][2], u, v;
  rowT1(row0, R[0], B[0], T[0]);
  rowT1(row1, R[1], B[1], T[1]);
  cellsLanes<1>(T, R, B, u, v);
  return {packY(T[0]), packY(T[1]), u, v};
}
inline Fwd420x16 fwd420T3(const __m256i R[2], const __m256i G[2], const __m256i B[2]) {
  I r[2][2], g[2][2], b[2][2], T[2][2], u, v;
  for (int row = 0; row < 2; ++row) {
    widen10(R[row], r[row]), widen10(G[row], g[row]), widen10(B[row], b[row]);
    for (int h = 0; h < 2; ++h) T[row][h] = t3Lanes(r[row][h], g[row][h], b[row][h]);
  }
  cellsLanes<3>(T, r, b, u, v);
  return {packY(T[0]), packY(T[1]), u, v};
}

// ---------------------------------------------------------------------------
// Inverse steps.

// I1 on 32 pixels: Y bytes and the terms of their 16 pairs or cells.
inline void i1x32(__m256i Y, const I1Terms<I>& t, __m256i out[3]) {
  I y[2], lo[3], hi[3];
  widen(Y, y);
  i1ApplyLanes(y[0], spreadLo(t), lo);
  i1ApplyLanes(y[1], spreadHi(t), hi);
  for (int k = 0; k < 3; ++k) out[k] = pack(lo[k], hi[k]);
}
inline I1Terms<I> i1Terms16(const Lum8u* pU, const Lum8u* pV) {
  return i1TermsLanes(widen16(loadu(pU)), widen16(loadu(pV)));
}

// I2 on 32 pixels: Y bytes and the terms of their 16 pairs or cells; out:
// 32 4-byte pixels, alpha 0.  The results pack to bytes in order (the clamp),
// R and G unpack to pairs, B with a zero, and those to 32-bit pixels:
// 0-3 | 16-19, 4-7 | 20-23, 8-11 | 24-27 and 12-15 | 28-31, stored a half
// at a time.
inline I2Terms<I> i2Terms16(const Lum8u* pU, const Lum8u* pV) {
  return i2TermsLanes(widen16(loadu(pU)), widen16(loadu(pV)));
}
inline void i2x32ToAC4(__m256i Y, const I2Terms<I>& t, Lum8u* d) {
  I y[2], lo[3], hi[3];
  widen(Y, y);
  i2ApplyLanes(y[0], spreadLo(t), lo);
  i2ApplyLanes(y[1], spreadHi(t), hi);
  const __m256i R = pack(lo[0], hi[0]), G = pack(lo[1], hi[1]), B = pack(lo[2], hi[2]);
  const __m256i z = _mm256_setzero_si256();
  const __m256i rg[2] = {_mm256_unpacklo_epi8(R, G), _mm256_unpackhi_epi8(R, G)};
  const __m256i b0[2] = {_mm256_unpacklo_epi8(B, z), _mm256_unpackhi_epi8(B, z)};
  for (int h = 0; h < 2; ++h) {
    const __m256i p0 = _mm256_unpacklo_epi16(rg[h], b0[h]), p1 = _mm256_unpackhi_epi16(rg[h], b0[h]);
    Lum8u* q = d + 32 * h;
    storeu(q, _mm256_castsi256_si128(p0));
    storeu(q + 16, _mm256_castsi256_si128(p1));
    storeu(q + 64, _mm256_extracti128_si256(p0, 1));
    storeu(q + 80, _mm256_extracti128_si256(p1, 1));
  }
}

inline void storeP3(Lum8u* const d[3], int x, const __m256i out[3]) {
  for (int k = 0; k < 3; ++k) store256(d[k] + x, out[k]);
}

}  // namespace

namespace lum {
namespace yuvsub {

// ===========================================================================
// 4:2:2 forward.

int blockRGBToYUV422_C3C2_avx2(const Lum8u* pSrc, Lum8u* pDst, int x, int end) {
  for (; x + 32 <= end; x += 32) {
    const Fwd32 f = fwd422T1(pSrc + 3 * x);
    const __m128i u = pack16(f.u), v = pack16(f.v);
    const __m128i uvLo = _mm_unpacklo_epi8(u, v), uvHi = _mm_unpackhi_epi8(u, v);
    const __m128i y0 = _mm256_castsi256_si128(f.y), y1 = _mm256_extracti128_si256(f.y, 1);
    Lum8u* d = pDst + 2 * x;
    storeu(d, _mm_unpacklo_epi8(y0, uvLo));
    storeu(d + 16, _mm_unpackhi_epi8(y0, uvLo));
    storeu(d + 32, _mm_unpacklo_epi8(y1, uvHi));
    storeu(d + 48, _mm_unpackhi_epi8(y1, uvHi));
  }
  return x;
}
int blockRGBToYUV422_C3P3_avx2(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int x,
                               int end) {
  for (; x + 32 <= end; x += 32) {
    const Fwd32 f = fwd422T1(pSrc + 3 * x);
    store256(pY + x, f.y);
    storeUV(pU + x / 2, pV + x / 2, f.u, f.v);
  }
  return x;
}
int blockRGBToYUV422_P3_avx2(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                             Lum8u* pU, Lum8u* pV, int x, int end) {
  for (; x + 32 <= end; x += 32) {
    I r[2], g[2], b[2], T[2], u, v;
    widen10(load256(pR + x), r), widen10(load256(pG + x), g), widen10(load256(pB + x), b);
    pairT3Lanes(r, g, b, T, u, v);
    store256(pY + x, packY(T));
    storeUV(pU + x / 2, pV + x / 2, u, v);
  }
  return x;
}

// ===========================================================================
// 4:2:2 inverse.

// 32 pixels of C2 (64 bytes): the halves exchanged so that Y, U and V come
// out in the lane order above.
int blockYUV422ToRGB_C2C3_avx2(const Lum8u* pSrc, Lum8u* pDst, int x, int end) {
  for (; x + 32 <= end; x += 32) {
    const __m256i a = load256(pSrc + 2 * x), b = load256(pSrc + 2 * x + 32);
    const __m256i A = _mm256_permute2x128_si256(a, b, 0x20);  // pixels 0-7 | 16-23
    const __m256i B = _mm256_permute2x128_si256(a, b, 0x31);  // pixels 8-15 | 24-31
    const __m256i lo8 = _mm256_set1_epi16(0x00ff), even = _mm256_set1_epi32(0xffff);
    const I Y[2] = {I{_mm256_and_si256(A, lo8)}, I{_mm256_and_si256(B, lo8)}};
    const __m256i ca = _mm256_srli_epi16(A, 8), cb = _mm256_srli_epi16(B, 8);  // U V of the pairs
    const I U{_mm256_packs_epi32(_mm256_and_si256(ca, even), _mm256_and_si256(cb, even))};
    const I V{_mm256_packs_epi32(_mm256_srli_epi32(ca, 16), _mm256_srli_epi32(cb, 16))};
    const I1Terms<I> t = i1TermsLanes(U, V);
    I lo[3], hi[3];
    i1ApplyLanes(Y[0], spreadLo(t), lo);
    i1ApplyLanes(Y[1], spreadHi(t), hi);
    const __m256i out[3] = {pack(lo[0], hi[0]), pack(lo[1], hi[1]), pack(lo[2], hi[2])};
    interleave3x32Avx2(out, pDst + 3 * x);
  }
  return x;
}
int blockYUV422ToRGB_P3C3_avx2(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                               int x, int end) {
  for (; x + 32 <= end; x += 32) {
    __m256i out[3];
    i1x32(load256(pY + x), i1Terms16(pU + x / 2, pV + x / 2), out);
    interleave3x32Avx2(out, pDst + 3 * x);
  }
  return x;
}
int blockYUV422ToRGB_P3_avx2(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR,
                             Lum8u* pG, Lum8u* pB, int x, int end) {
  Lum8u* const d[3] = {pR, pG, pB};
  for (; x + 32 <= end; x += 32) {
    __m256i out[3];
    i1x32(load256(pY + x), i1Terms16(pU + x / 2, pV + x / 2), out);
    storeP3(d, x, out);
  }
  return x;
}
int blockYUV422ToRGB_AC4_avx2(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                              int x, int end) {
  for (; x + 32 <= end; x += 32)
    i2x32ToAC4(load256(pY + x), i2Terms16(pU + x / 2, pV + x / 2), pDst + 4 * x);
  return x;
}

// ===========================================================================
// 4:2:0 forward.

int blockRGBToYUV420_C3P3_avx2(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                               Lum8u* pU, Lum8u* pV, int c, int endCells) {
  for (; c + 16 <= endCells; c += 16) {
    const Fwd420x16 f = fwd420T1(pRow0 + 6 * c, pRow1 + 6 * c);
    store256(pY0 + 2 * c, f.y0);
    store256(pY1 + 2 * c, f.y1);
    storeUV(pU + c, pV + c, f.u, f.v);
  }
  return c;
}
int blockRGBToYUV420_P3_avx2(const Lum8u* const src0[3], const Lum8u* const src1[3], Lum8u* pY0,
                             Lum8u* pY1, Lum8u* pU, Lum8u* pV, int c, int endCells) {
  for (; c + 16 <= endCells; c += 16) {
    const int x = 2 * c;
    const __m256i R[2] = {load256(src0[0] + x), load256(src1[0] + x)};
    const __m256i G[2] = {load256(src0[1] + x), load256(src1[1] + x)};
    const __m256i B[2] = {load256(src0[2] + x), load256(src1[2] + x)};
    const Fwd420x16 f = fwd420T3(R, G, B);
    store256(pY0 + x, f.y0);
    store256(pY1 + x, f.y1);
    storeUV(pU + c, pV + c, f.u, f.v);
  }
  return c;
}

// ===========================================================================
// 4:2:0 inverse: the terms of 16 cells serve both rows.

int blockYUV420ToRGB_P3C3_avx2(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                               const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int c, int endCells) {
  for (; c + 16 <= endCells; c += 16) {
    const I1Terms<I> t = i1Terms16(pU + c, pV + c);
    __m256i out[3];
    i1x32(load256(pY0 + 2 * c), t, out);
    interleave3x32Avx2(out, pRow0 + 6 * c);
    i1x32(load256(pY1 + 2 * c), t, out);
    interleave3x32Avx2(out, pRow1 + 6 * c);
  }
  return c;
}
int blockYUV420ToRGB_P3_avx2(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                             const Lum8u* pV, Lum8u* const row0[3], Lum8u* const row1[3], int c,
                             int endCells) {
  for (; c + 16 <= endCells; c += 16) {
    const I1Terms<I> t = i1Terms16(pU + c, pV + c);
    __m256i out[3];
    i1x32(load256(pY0 + 2 * c), t, out);
    storeP3(row0, 2 * c, out);
    i1x32(load256(pY1 + 2 * c), t, out);
    storeP3(row1, 2 * c, out);
  }
  return c;
}
int blockYUV420ToRGB_AC4_avx2(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                              const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int c, int endCells) {
  for (; c + 16 <= endCells; c += 16) {
    const I2Terms<I> t = i2Terms16(pU + c, pV + c);
    i2x32ToAC4(load256(pY0 + 2 * c), t, pRow0 + 8 * c);
    i2x32ToAC4(load256(pY1 + 2 * c), t, pRow1 + 8 * c);
  }
  return c;
}

}  // namespace yuvsub
}  // namespace lum
