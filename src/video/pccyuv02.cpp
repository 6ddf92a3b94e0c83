// RGB and YUV 4:2:2 and 4:2:0: public functions, row drivers and one-row
// kernels.
//
// Each kernel runs an SSE2 block loop over the first pixels (4:2:2) or cells
// (4:2:0) of its row and finishes with scalar forms (pccyuv02.h).  Where the
// block formula and the tail formula differ (the I1 part of the planes-to-
// pixels 4:2:2 inverse, the I2 parts of the AC4 inverses, the T1 cells of
// the pixel-order 4:2:0 forward kernel) the boundary is counted from the
// start of every row.  The block loops are functions of their own,
// block..._sse2(..., end) returning the first pixel or cell not done, so that
// a wider path can stand beside them.  Everything runs on the calling
// thread.
#include "video/pccyuv02.h"
#include "video/pccyuv02_blocks.h"

#include <limits.h>
#include <string.h>

#include "frame/lum_frame.h"
#include "frame/lum_simd.h"

using namespace lum;
using namespace lum::yuvsub;

namespace {

using namespace yuvsubblocks;

// Three samples of pixel x of a pixel-order row, as ints.
inline void px3(const Lum8u* p, int x, int out[3]) {
  out[0] = p[3 * x];
  out[1] = p[3 * x + 1];
  out[2] = p[3 * x + 2];
}

// Stores of three results for 16 pixels (operator()) or 32 pixels
// (store32): pixel order, or three planes; the 4:2:0 forms take a pair of
// them, one per row.
struct StoreC3 {
  Lum8u* d;
  void operator()(int x, const __m128i* out) const { interleave3x16(out, d + 3 * x); }
  void store32(int x, const __m128i* a, const __m128i* b) const {
    interleave3x32(Planes8x32{{{a[0], b[0]}, {a[1], b[1]}, {a[2], b[2]}}}, d + 3 * x);
  }
};
struct StoreP3 {
  Lum8u *r, *g, *b;
  void operator()(int x, const __m128i* out) const {
    storeu(r + x, out[0]);
    storeu(g + x, out[1]);
    storeu(b + x, out[2]);
  }
  void store32(int x, const __m128i* a, const __m128i* c) const {
    (*this)(x, a);
    (*this)(x + 16, c);
  }
};
template <class Row>
struct StoreRows {
  Row rows[2];
  void operator()(int r, int x, const __m128i* out) const { rows[r](x, out); }
  void store32(int r, int x, const __m128i* a, const __m128i* b) const { rows[r].store32(x, a, b); }
};

// ---------------------------------------------------------------------------
// SSE2 block loops over [0, end).

// Forward 4:2:2 by T1 on 16 pixels a round; Store writes luma and chroma.
template <class Store>
int blockRGBToYUV422_T1_sse2(const Lum8u* pSrc, int end, Store store) {
  int x = 0;
  for (; x + 32 <= end; x += 32) {
    const Planes8x32 p = deinterleave3x32(pSrc + 3 * x);
    store(x, fwd422T1x16(p.c[0][0], p.c[1][0], p.c[2][0]));
    store(x + 16, fwd422T1x16(p.c[0][1], p.c[1][1], p.c[2][1]));
  }
  for (; x < end; x += 16) {
    __m128i c[3];
    deinterleave3x16(pSrc + 3 * x, c);
    store(x, fwd422T1x16(c[0], c[1], c[2]));
  }
  return x;
}

int blockRGBToYUV422_C3C2_sse2(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return blockRGBToYUV422_T1_sse2(pSrc, end, [pDst](int x, const Fwd16& f) {
    const __m128i uv = _mm_unpacklo_epi8(f.u, f.v);
    storeu(pDst + 2 * x, _mm_unpacklo_epi8(f.y, uv));
    storeu(pDst + 2 * x + 16, _mm_unpackhi_epi8(f.y, uv));
  });
}
int blockRGBToYUV422_C3P3_sse2(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int end) {
  return blockRGBToYUV422_T1_sse2(pSrc, end, [=](int x, const Fwd16& f) {
    storeu(pY + x, f.y);
    storel64(pU + x / 2, f.u);
    storel64(pV + x / 2, f.v);
  });
}
int blockRGBToYUV422_P3_sse2(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                             Lum8u* pU, Lum8u* pV, int end) {
  int x = 0;
  for (; x < end; x += 16) {
    const Fwd16 f = fwd422T3x16(loadu(pR + x), loadu(pG + x), loadu(pB + x));
    storeu(pY + x, f.y);
    storel64(pU + x / 2, f.u);
    storel64(pV + x / 2, f.v);
  }
  return x;
}

// I1 on 16 pixels of C2 bytes (32 bytes).
inline void i1C2x16(const Lum8u* s, __m128i out[3]) {
  __m128i Y[2], U, V, lo[3], hi[3];
  splitC2x16(s, Y, U, V);
  const I1Terms t = i1Terms(U, V);
  i1Apply(Y[0], spreadLo(t), lo);
  i1Apply(Y[1], spreadHi(t), hi);
  for (int k = 0; k < 3; ++k) out[k] = vPackS16U8(lo[k], hi[k]);
}
int blockYUV422ToRGB_C2C3_sse2(const Lum8u* pSrc, Lum8u* pDst, int end) {
  int x = 0;
  for (; x + 32 <= end; x += 32) {
    __m128i a[3], b[3];
    i1C2x16(pSrc + 2 * x, a);
    i1C2x16(pSrc + 2 * x + 32, b);
    interleave3x32(Planes8x32{{{a[0], b[0]}, {a[1], b[1]}, {a[2], b[2]}}}, pDst + 3 * x);
  }
  for (; x < end; x += 16) {
    __m128i out[3];
    i1C2x16(pSrc + 2 * x, out);
    interleave3x16(out, pDst + 3 * x);
  }
  return x;
}
// I1 on 16 pixels of planes a round; Store writes the three results.
template <class Store>
int blockYUV422ToRGB_I1_sse2(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, int end,
                             Store store) {
  int x = 0;
  for (; x + 32 <= end; x += 32) {
    const __m128i u = loadu(pU + x / 2), v = loadu(pV + x / 2);
    __m128i a[3], b[3];
    i1x16(loadu(pY + x), i1TermsLo(u, v), a);
    i1x16(loadu(pY + x + 16), i1TermsHi(u, v), b);
    store.store32(x, a, b);
  }
  for (; x < end; x += 16) {
    __m128i out[3];
    i1x16(loadu(pY + x), i1TermsLo(loadl64(pU + x / 2), loadl64(pV + x / 2)), out);
    store(x, out);
  }
  return x;
}
// I2 in rounds of 8 pixels, then one of 4; alpha written as 0.
int blockYUV422ToRGB_AC4_sse2(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                              int end) {
  int x = 0;
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

// Forward 4:2:0 on 8 cells a round.
int blockRGBToYUV420_C3P3_sse2(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                               Lum8u* pU, Lum8u* pV, int endCells) {
  int c = 0;
  for (; c + 16 <= endCells; c += 16) {
    const int x = 2 * c;
    const Planes8x32 a = deinterleave3x32(pRow0 + 3 * x), b = deinterleave3x32(pRow1 + 3 * x);
    for (int h = 0; h < 2; ++h) {
      const __m128i R[2] = {a.c[0][h], b.c[0][h]}, G[2] = {a.c[1][h], b.c[1][h]};
      const __m128i B[2] = {a.c[2][h], b.c[2][h]};
      const Fwd420 f = fwd420x8<Cells420T1>(R, G, B);
      storeu(pY0 + x + 16 * h, f.y0);
      storeu(pY1 + x + 16 * h, f.y1);
      storel64(pU + c + 8 * h, f.u);
      storel64(pV + c + 8 * h, f.v);
    }
  }
  for (; c < endCells; c += 8) {
    const int x = 2 * c;
    __m128i a[3], b[3];
    deinterleave3x16(pRow0 + 3 * x, a);
    deinterleave3x16(pRow1 + 3 * x, b);
    const __m128i R[2] = {a[0], b[0]}, G[2] = {a[1], b[1]}, B[2] = {a[2], b[2]};
    const Fwd420 f = fwd420x8<Cells420T1>(R, G, B);
    storeu(pY0 + x, f.y0);
    storeu(pY1 + x, f.y1);
    storel64(pU + c, f.u);
    storel64(pV + c, f.v);
  }
  return c;
}
int blockRGBToYUV420_P3_sse2(const Lum8u* const src0[3], const Lum8u* const src1[3], Lum8u* pY0,
                             Lum8u* pY1, Lum8u* pU, Lum8u* pV, int endCells) {
  int c = 0;
  for (; c < endCells; c += 8) {
    const int x = 2 * c;
    const __m128i R[2] = {loadu(src0[0] + x), loadu(src1[0] + x)};
    const __m128i G[2] = {loadu(src0[1] + x), loadu(src1[1] + x)};
    const __m128i B[2] = {loadu(src0[2] + x), loadu(src1[2] + x)};
    const Fwd420 f = fwd420x8<Cells420T3>(R, G, B);
    storeu(pY0 + x, f.y0);
    storeu(pY1 + x, f.y1);
    storel64(pU + c, f.u);
    storel64(pV + c, f.v);
  }
  return c;
}

// Inverse 4:2:0 by I1 on 8 cells a round; Store writes row r's results for
// pixels [x, x + 16).
template <class Store>
int blockYUV420ToRGB_I1_sse2(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                             const Lum8u* pV, int endCells, Store store) {
  int c = 0;
  for (; c + 16 <= endCells; c += 16) {
    const __m128i u = loadu(pU + c), v = loadu(pV + c);
    const I1Terms lo = i1TermsLo(u, v), hi = i1TermsHi(u, v);  // both rows' cells
    const Lum8u* const yRows[2] = {pY0, pY1};
    for (int r = 0; r < 2; ++r) {
      __m128i a[3], b[3];
      i1x16(loadu(yRows[r] + 2 * c), lo, a);
      i1x16(loadu(yRows[r] + 2 * c + 16), hi, b);
      store.store32(r, 2 * c, a, b);
    }
  }
  for (; c < endCells; c += 8) {
    const I1Terms t = i1TermsLo(loadl64(pU + c), loadl64(pV + c));
    __m128i out[3];
    i1x16(loadu(pY0 + 2 * c), t, out);
    store(0, 2 * c, out);
    i1x16(loadu(pY1 + 2 * c), t, out);
    store(1, 2 * c, out);
  }
  return c;
}
int blockYUV420ToRGB_AC4_sse2(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                              const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int endCells) {
  int c = 0;
  for (; c < endCells; c += 8) {
    const __m128i U = replicate8(loadl64(pU + c)), V = replicate8(loadl64(pV + c));
    const Lum8u* const yRows[2] = {pY0, pY1};
    Lum8u* const dRows[2] = {pRow0, pRow1};
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

// Three plane results of a scalar form into planes.
inline void putP3(const uint8_t rgb[3], Lum8u* pR, Lum8u* pG, Lum8u* pB, int x) {
  pR[x] = rgb[0];
  pG[x] = rgb[1];
  pB[x] = rgb[2];
}

}  // namespace

// ===========================================================================
// One-row kernels, 4:2:2 forward.

// Pairs by T1 (block of 16 and tail alike); an odd last pixel writes Y and
// U only.
void innerRGBToYUV422_8u_C3C2R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  int x = blockRGBToYUV422_C3C2_sse2(pSrc, pDst, width & ~(kBlockRGBToYUV422 - 1));
  for (; x + 1 < width; x += 2) {
    int p0[3], p1[3];
    px3(pSrc, x, p0);
    px3(pSrc, x + 1, p1);
    uint8_t y[2];
    pairT1(p0, p1, y, pDst + 2 * x + 1, pDst + 2 * x + 3);
    pDst[2 * x] = y[0];
    pDst[2 * x + 2] = y[1];
  }
  if (x < width) lastC3C2(pSrc[3 * x], pSrc[3 * x + 1], pSrc[3 * x + 2], pDst + 2 * x, pDst + 2 * x + 1);
}

// Pairs by T1; an odd last pixel by L with the rounding terms 16383 and 32767.
void innerRGBToYUV422_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width) {
  int x = blockRGBToYUV422_C3P3_sse2(pSrc, pY, pU, pV, width & ~(kBlockRGBToYUV422 - 1));
  for (; x + 1 < width; x += 2) {
    int p0[3], p1[3];
    px3(pSrc, x, p0);
    px3(pSrc, x + 1, p1);
    pairT1(p0, p1, pY + x, pU + x / 2, pV + x / 2);
  }
  if (x < width)
    lastToP3(pSrc[3 * x], pSrc[3 * x + 1], pSrc[3 * x + 2], kLastRoundU_C3P3, kLastRoundV_C3P3,
             pY + x, pU + x / 2, pV + x / 2);
}

// Pairs by T3; an odd last pixel by L with no rounding terms.
void innerRGBToYUV422_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                             Lum8u* pU, Lum8u* pV, int width) {
  int x = blockRGBToYUV422_P3_sse2(pR, pG, pB, pY, pU, pV, width & ~(kBlockRGBToYUV422 - 1));
  for (; x + 1 < width; x += 2) {
    const int p0[3] = {pR[x], pG[x], pB[x]}, p1[3] = {pR[x + 1], pG[x + 1], pB[x + 1]};
    pairT3(p0, p1, pY + x, pU + x / 2, pV + x / 2);
  }
  if (x < width) lastToP3(pR[x], pG[x], pB[x], 0, 0, pY + x, pU + x / 2, pV + x / 2);
}

// ===========================================================================
// One-row kernels, 4:2:2 inverse.

// I1 for pairs (block of 16 and tail alike); an odd last pixel by I4 with its
// own U and the V of the pair before.  Never called with a width of 1.
void innerYUV422ToRGB_8u_C2C3R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  int x = blockYUV422ToRGB_C2C3_sse2(pSrc, pDst, width & ~(kBlockYUV422ToRGB - 1));
  for (; x + 1 < width; x += 2) {
    const Lum8u* s = pSrc + 2 * x;
    i1(s[0], s[1], s[3], pDst + 3 * x);
    i1(s[2], s[1], s[3], pDst + 3 * x + 3);
  }
  if (x < width) i4(pSrc[2 * x], pSrc[2 * x + 1], pSrc[2 * x - 1], pDst + 3 * x);
}

// A row of one pixel: Y and one chroma byte, used as both U and V, by I3.
void unrealYUV(const Lum8u* pSrc, Lum8u* pDst) { i3(pSrc[0], pSrc[1], pSrc[1], pDst); }

// I1 on width & ~15 pixels, I3 on the rest.
void innerYUV422ToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                               int width) {
  int x = blockYUV422ToRGB_I1_sse2(pY, pU, pV, width & ~(kBlockYUV422ToRGB - 1), StoreC3{pDst});
  for (; x < width; ++x) i3(pY[x], pU[x >> 1], pV[x >> 1], pDst + 3 * x);
}

// I1 for pairs (block of 16 and tail alike); an odd last pixel by I3.
void innerYUV422ToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR,
                             Lum8u* pG, Lum8u* pB, int width) {
  int x = blockYUV422ToRGB_I1_sse2(pY, pU, pV, width & ~(kBlockYUV422ToRGB - 1),
                                   StoreP3{pR, pG, pB});
  uint8_t rgb[3];
  for (; x + 1 < width; x += 2) {
    i1(pY[x], pU[x >> 1], pV[x >> 1], rgb);
    putP3(rgb, pR, pG, pB, x);
    i1(pY[x + 1], pU[x >> 1], pV[x >> 1], rgb);
    putP3(rgb, pR, pG, pB, x + 1);
  }
  if (x < width) {
    i3(pY[x], pU[x >> 1], pV[x >> 1], rgb);
    putP3(rgb, pR, pG, pB, x);
  }
}

// I2 on width & ~3 pixels (rounds of 8, then one of 4), I3 on the rest; the
// fourth byte of every pixel is written as 0.
void innerYUV422ToRGB_8u_P3AC4R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                                int width) {
  int x = blockYUV422ToRGB_AC4_sse2(pY, pU, pV, pDst, width & ~(kBlockYUV422ToRGB_AC4 - 1));
  for (; x < width; ++x) {
    i3(pY[x], pU[x >> 1], pV[x >> 1], pDst + 4 * x);
    pDst[4 * x + 3] = 0;
  }
}

// ===========================================================================
// One-row kernels, 4:2:0 (two rows, counted in cells).

// T1 on the cells of the block loop (8 a round), T2 on the remaining cells & 7.
void innerRGBToYUV420_8u_C3P3R(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                               Lum8u* pU, Lum8u* pV, int cells) {
  int c = blockRGBToYUV420_C3P3_sse2(pRow0, pRow1, pY0, pY1, pU, pV,
                                     cells & ~(kBlockRGBToYUV420_Cells - 1));
  for (; c < cells; ++c) {
    const Lum8u* const rows[2] = {pRow0, pRow1};
    Lum8u* const yRows[2] = {pY0, pY1};
    int sumT = 0, sumB = 0, sumR = 0;
    for (int r = 0; r < 2; ++r)
      for (int x = 2 * c; x < 2 * c + 2; ++x) {
        const Lum8u* p = rows[r] + 3 * x;
        const int T = t2(p[0], p[1], p[2]);
        yRows[r][x] = yOfT(T);
        sumT += T;
        sumB += p[2];
        sumR += p[0];
      }
    cellChroma(sumB >> 1, sumR >> 1, sumT >> 2, pU + c, pV + c);
  }
}

// T3 on all cells; the second row of each RGB plane lies srcStep further.
void innerRGBToYUV420_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, int srcStep,
                             Lum8u* pY0, Lum8u* pY1, Lum8u* pU, Lum8u* pV, int cells) {
  const Lum8u* const src0[3] = {pR, pG, pB};
  const Lum8u* const src1[3] = {rowPtr(pR, 1, srcStep), rowPtr(pG, 1, srcStep),
                                rowPtr(pB, 1, srcStep)};
  int c = blockRGBToYUV420_P3_sse2(src0, src1, pY0, pY1, pU, pV,
                                   cells & ~(kBlockRGBToYUV420_Cells - 1));
  for (; c < cells; ++c) {
    const Lum8u* const* rows[2] = {src0, src1};
    Lum8u* const yRows[2] = {pY0, pY1};
    int sumT = 0, sumB = 0, sumR = 0;
    for (int r = 0; r < 2; ++r)
      for (int x = 2 * c; x < 2 * c + 2; ++x) {
        const int R = rows[r][0][x], G = rows[r][1][x], B = rows[r][2][x];
        const int T = t3(R, G, B);
        yRows[r][x] = yOfT(T);
        sumT += T;
        sumB += w10(B);
        sumR += w10(R);
      }
    cellChroma(sumB >> 3, sumR >> 3, sumT >> 2, pU + c, pV + c);
  }
}

// I1 on all cells.
void innerYUV420ToRGB_8u_P3C3R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                               const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int cells) {
  int c = blockYUV420ToRGB_I1_sse2(pY0, pY1, pU, pV, cells & ~(kBlockYUV420ToRGB_Cells - 1),
                                   StoreRows<StoreC3>{{{pRow0}, {pRow1}}});
  for (; c < cells; ++c)
    for (int x = 2 * c; x < 2 * c + 2; ++x) {
      i1(pY0[x], pU[c], pV[c], pRow0 + 3 * x);
      i1(pY1[x], pU[c], pV[c], pRow1 + 3 * x);
    }
}

// I2 on cells & ~7, I3 with 32768 added before each shift on the rest; the
// fourth byte of every pixel is written as 0.
void innerYUV420ToRGB_8u_P3AC4R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                                const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int cells) {
  int c = blockYUV420ToRGB_AC4_sse2(pY0, pY1, pU, pV, pRow0, pRow1,
                                    cells & ~(kBlockYUV420ToRGB_Cells - 1));
  for (; c < cells; ++c)
    for (int x = 2 * c; x < 2 * c + 2; ++x) {
      i3(pY0[x], pU[c], pV[c], pRow0 + 4 * x, kRoundI3_420AC4);
      pRow0[4 * x + 3] = 0;
      i3(pY1[x], pU[c], pV[c], pRow1 + 4 * x, kRoundI3_420AC4);
      pRow1[4 * x + 3] = 0;
    }
}

// I1 on all cells; the second row of each RGB plane lies dstStep further.
void innerYUV420ToRGB_8u_P3R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                             const Lum8u* pV, Lum8u* pR, Lum8u* pG, Lum8u* pB, int dstStep,
                             int cells) {
  const StoreP3 rows[2] = {{pR, pG, pB},
                           {rowPtr(pR, 1, dstStep), rowPtr(pG, 1, dstStep), rowPtr(pB, 1, dstStep)}};
  int c = blockYUV420ToRGB_I1_sse2(pY0, pY1, pU, pV, cells & ~(kBlockYUV420ToRGB_Cells - 1),
                                   StoreRows<StoreP3>{{rows[0], rows[1]}});
  const Lum8u* const yRows[2] = {pY0, pY1};
  for (; c < cells; ++c)
    for (int r = 0; r < 2; ++r)
      for (int x = 2 * c; x < 2 * c + 2; ++x) {
        uint8_t rgb[3];
        i1(yRows[r][x], pU[c], pV[c], rgb);
        putP3(rgb, rows[r].r, rows[r].g, rows[r].b, x);
      }
}

// ===========================================================================
// Row drivers.

void myRGBToYUV422_8u_C3C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                            int dstStep) {
  serialRows(height, [&](int y) {
    innerRGBToYUV422_8u_C3C2R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width);
  });
}
void myRGBToYUV422_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width,
                            int height, int srcStep, int stepY, int stepU, int stepV) {
  serialRows(height, [&](int y) {
    innerRGBToYUV422_8u_C3P3R(rowPtr(pSrc, y, srcStep), rowPtr(pY, y, stepY), rowPtr(pU, y, stepU),
                              rowPtr(pV, y, stepV), width);
  });
}
void myRGBToYUV422_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY, Lum8u* pU,
                          Lum8u* pV, int width, int height, int srcStep, int stepY, int stepU,
                          int stepV) {
  serialRows(height, [&](int y) {
    innerRGBToYUV422_8u_P3R(rowPtr(pR, y, srcStep), rowPtr(pG, y, srcStep), rowPtr(pB, y, srcStep),
                            rowPtr(pY, y, stepY), rowPtr(pU, y, stepU), rowPtr(pV, y, stepV),
                            width);
  });
}

// The drivers without R: one row of n pixels (n even), the kernel called on
// the first n & ~7 pixels and on the last n & 7.
void myRGBToYUV422_8u_C3P3(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int n) {
  const int m = n & ~7;
  innerRGBToYUV422_8u_C3P3R(pSrc, pY, pU, pV, m);
  innerRGBToYUV422_8u_C3P3R(pSrc + 3 * m, pY + m, pU + m / 2, pV + m / 2, n & 7);
}
void myRGBToYUV422_8u_P3(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY, Lum8u* pU,
                         Lum8u* pV, int n) {
  const int m = n & ~7;
  innerRGBToYUV422_8u_P3R(pR, pG, pB, pY, pU, pV, m);
  innerRGBToYUV422_8u_P3R(pR + m, pG + m, pB + m, pY + m, pU + m / 2, pV + m / 2, n & 7);
}

// A width of 1 has no V byte: each row's pixel goes through unrealYUV.
void myYUV422ToRGB_8u_C2C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                            int dstStep) {
  serialRows(height, [&](int y) {
    if (width == 1) unrealYUV(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep));
    else innerYUV422ToRGB_8u_C2C3R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width);
  });
}
void myYUV422ToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                            int width, int height, int stepY, int stepU, int stepV, int dstStep) {
  serialRows(height, [&](int y) {
    innerYUV422ToRGB_8u_P3C3R(rowPtr(pY, y, stepY), rowPtr(pU, y, stepU), rowPtr(pV, y, stepV),
                              rowPtr(pDst, y, dstStep), width);
  });
}
void myYUV422ToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR, Lum8u* pG,
                          Lum8u* pB, int width, int height, int stepY, int stepU, int stepV,
                          int dstStep) {
  serialRows(height, [&](int y) {
    innerYUV422ToRGB_8u_P3R(rowPtr(pY, y, stepY), rowPtr(pU, y, stepU), rowPtr(pV, y, stepV),
                            rowPtr(pR, y, dstStep), rowPtr(pG, y, dstStep), rowPtr(pB, y, dstStep),
                            width);
  });
}
void myYUV422ToRGB_8u_P3AC4R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                             int width, int height, int stepY, int stepU, int stepV, int dstStep) {
  serialRows(height, [&](int y) {
    innerYUV422ToRGB_8u_P3AC4R(rowPtr(pY, y, stepY), rowPtr(pU, y, stepU), rowPtr(pV, y, stepV),
                               rowPtr(pDst, y, dstStep), width);
  });
}
void myYUV422ToRGB_8u_P3C3(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst, int n) {
  const int m = n & ~7;
  innerYUV422ToRGB_8u_P3C3R(pY, pU, pV, pDst, m);
  innerYUV422ToRGB_8u_P3C3R(pY + m, pU + m / 2, pV + m / 2, pDst + 3 * m, n & 7);
}
void myYUV422ToRGB_8u_P3(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR, Lum8u* pG,
                         Lum8u* pB, int n) {
  const int m = n & ~7;
  innerYUV422ToRGB_8u_P3R(pY, pU, pV, pR, pG, pB, m);
  innerYUV422ToRGB_8u_P3R(pY + m, pU + m / 2, pV + m / 2, pR + m, pG + m, pB + m, n & 7);
}

// Pixel-order 4:2:0 forward: takes pixels, converts width >> 1 cells a row
// pair while the row index is below height & ~1.
void myRGBToYUV420_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width,
                            int height, int srcStep, int stepY, int stepU, int stepV) {
  const int cells = width >> 1;
  for (int y = 0; y < (height & ~1); y += 2)
    innerRGBToYUV420_8u_C3P3R(rowPtr(pSrc, y, srcStep), rowPtr(pSrc, y + 1, srcStep),
                              rowPtr(pY, y, stepY), rowPtr(pY, y + 1, stepY),
                              rowPtr(pU, y / 2, stepU), rowPtr(pV, y / 2, stepV), cells);
}
// The other 4:2:0 drivers take cells; the RGB planes share one step.
void myRGBToYUV420_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY, Lum8u* pU,
                          Lum8u* pV, int cellsW, int cellsH, int srcStep, int stepY, int stepU,
                          int stepV) {
  for (int j = 0; j < cellsH; ++j)
    innerRGBToYUV420_8u_P3R(rowPtr(pR, 2 * j, srcStep), rowPtr(pG, 2 * j, srcStep),
                            rowPtr(pB, 2 * j, srcStep), srcStep, rowPtr(pY, 2 * j, stepY),
                            rowPtr(pY, 2 * j + 1, stepY), rowPtr(pU, j, stepU),
                            rowPtr(pV, j, stepV), cellsW);
}
void myYUV420ToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                            int cellsW, int cellsH, int stepY, int stepU, int stepV, int dstStep) {
  for (int j = 0; j < cellsH; ++j)
    innerYUV420ToRGB_8u_P3C3R(rowPtr(pY, 2 * j, stepY), rowPtr(pY, 2 * j + 1, stepY),
                              rowPtr(pU, j, stepU), rowPtr(pV, j, stepV),
                              rowPtr(pDst, 2 * j, dstStep), rowPtr(pDst, 2 * j + 1, dstStep), cellsW);
}
void myYUV420ToRGB_8u_P3AC4R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                             int cellsW, int cellsH, int stepY, int stepU, int stepV, int dstStep) {
  for (int j = 0; j < cellsH; ++j)
    innerYUV420ToRGB_8u_P3AC4R(rowPtr(pY, 2 * j, stepY), rowPtr(pY, 2 * j + 1, stepY),
                               rowPtr(pU, j, stepU), rowPtr(pV, j, stepV),
                               rowPtr(pDst, 2 * j, dstStep), rowPtr(pDst, 2 * j + 1, dstStep),
                               cellsW);
}
void myYUV420ToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR, Lum8u* pG,
                          Lum8u* pB, int cellsW, int cellsH, int stepY, int stepU, int stepV,
                          int dstStep) {
  for (int j = 0; j < cellsH; ++j)
    innerYUV420ToRGB_8u_P3R(rowPtr(pY, 2 * j, stepY), rowPtr(pY, 2 * j + 1, stepY),
                            rowPtr(pU, j, stepU), rowPtr(pV, j, stepV), rowPtr(pR, 2 * j, dstStep),
                            rowPtr(pG, 2 * j, dstStep), rowPtr(pB, 2 * j, dstStep), dstStep,
                            cellsW);
}

// ===========================================================================
// Public functions: checks (P1, or P2 with the step arrays among the arrays
// tested first), then one call.

namespace {

// The strides of the forms without steps.
int chroma422Stride(int width) { return width / 2 + (width & 1); }
int chroma420Stride(int width) { return width / 2; }

// The 4:2:2 forms without steps take the image as one row when it has at
// least 256 pixels and an even width.
bool wholeImage422(LumSize roi, int* n) {
  const long long count = static_cast<long long>(roi.width) * roi.height;
  if (count < 256 || (roi.width & 1) || count > INT_MAX) return false;
  *n = static_cast<int>(count);
  return true;
}

LumStatus oddSize420(LumSize roi) {
  return ((roi.width | roi.height) & 1) ? LumWarnOddSize : LumOk;
}

}  // namespace

LUM_PUBLIC LumStatus lumiRGBToYUV422_8u_C3C2R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                              int dstStep, LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  myRGBToYUV422_8u_C3C2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiRGBToYUV422_8u_C3P3R(const Lum8u* pSrc, int srcStep,
                                              Lum8u* const pDst[3], const int dstStep[3],
                                              LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst, dstStep}, roiSize, {arr(pDst, 3)});
  if (st != LumOk) return st;
  myRGBToYUV422_8u_C3P3R(pSrc, pDst[0], pDst[1], pDst[2], roiSize.width, roiSize.height, srcStep,
                         dstStep[0], dstStep[1], dstStep[2]);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiRGBToYUV422_8u_P3R(const Lum8u* const pSrc[3], int srcStep,
                                            Lum8u* const pDst[3], const int dstStep[3],
                                            LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst, dstStep}, roiSize, {arr(pSrc, 3), arr(pDst, 3)});
  if (st != LumOk) return st;
  myRGBToYUV422_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], roiSize.width,
                       roiSize.height, srcStep, dstStep[0], dstStep[1], dstStep[2]);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiRGBToYUV422_8u_C3P3(const Lum8u* pSrc, Lum8u* const pDst[3],
                                             LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pDst, 3)});
  if (st != LumOk) return st;
  int n;
  if (wholeImage422(roiSize, &n)) {
    myRGBToYUV422_8u_C3P3(pSrc, pDst[0], pDst[1], pDst[2], n);
  } else {
    const int w = roiSize.width, c = chroma422Stride(w);
    myRGBToYUV422_8u_C3P3R(pSrc, pDst[0], pDst[1], pDst[2], w, roiSize.height, 3 * w, w, c, c);
  }
  return LumOk;
}

LUM_PUBLIC LumStatus lumiRGBToYUV422_8u_P3(const Lum8u* const pSrc[3], Lum8u* const pDst[3],
                                           LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3), arr(pDst, 3)});
  if (st != LumOk) return st;
  int n;
  if (wholeImage422(roiSize, &n)) {
    myRGBToYUV422_8u_P3(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], n);
  } else {
    const int w = roiSize.width, c = chroma422Stride(w);
    myRGBToYUV422_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], w, roiSize.height,
                         w, w, c, c);
  }
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYUV422ToRGB_8u_C2C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                              int dstStep, LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  myYUV422ToRGB_8u_C2C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYUV422ToRGB_8u_P3C3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                              Lum8u* pDst, int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, srcStep, pDst}, roiSize, {arr(pSrc, 3)});
  if (st != LumOk) return st;
  myYUV422ToRGB_8u_P3C3R(pSrc[0], pSrc[1], pSrc[2], pDst, roiSize.width, roiSize.height,
                         srcStep[0], srcStep[1], srcStep[2], dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYUV422ToRGB_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                            Lum8u* const pDst[3], int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, srcStep, pDst}, roiSize, {arr(pSrc, 3), arr(pDst, 3)});
  if (st != LumOk) return st;
  myYUV422ToRGB_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], roiSize.width,
                       roiSize.height, srcStep[0], srcStep[1], srcStep[2], dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYUV422ToRGB_8u_P3AC4R(const Lum8u* const pSrc[3], const int srcStep[3],
                                               Lum8u* pDst, int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, srcStep, pDst}, roiSize, {arr(pSrc, 3)});
  if (st != LumOk) return st;
  myYUV422ToRGB_8u_P3AC4R(pSrc[0], pSrc[1], pSrc[2], pDst, roiSize.width, roiSize.height,
                          srcStep[0], srcStep[1], srcStep[2], dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYUV422ToRGB_8u_P3C3(const Lum8u* const pSrc[3], Lum8u* pDst,
                                             LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3)});
  if (st != LumOk) return st;
  int n;
  if (wholeImage422(roiSize, &n)) {
    myYUV422ToRGB_8u_P3C3(pSrc[0], pSrc[1], pSrc[2], pDst, n);
  } else {
    const int w = roiSize.width, c = chroma422Stride(w);
    myYUV422ToRGB_8u_P3C3R(pSrc[0], pSrc[1], pSrc[2], pDst, w, roiSize.height, w, c, c, 3 * w);
  }
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYUV422ToRGB_8u_P3(const Lum8u* const pSrc[3], Lum8u* const pDst[3],
                                           LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3), arr(pDst, 3)});
  if (st != LumOk) return st;
  int n;
  if (wholeImage422(roiSize, &n)) {
    myYUV422ToRGB_8u_P3(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], n);
  } else {
    const int w = roiSize.width, c = chroma422Stride(w);
    myYUV422ToRGB_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], w, roiSize.height,
                         w, c, c, w);
  }
  return LumOk;
}

LUM_PUBLIC LumStatus lumiRGBToYUV420_8u_C3P3R(const Lum8u* pSrc, int srcStep,
                                              Lum8u* const pDst[3], const int dstStep[3],
                                              LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst, dstStep}, roiSize, {arr(pDst, 3)});
  if (st != LumOk) return st;
  myRGBToYUV420_8u_C3P3R(pSrc, pDst[0], pDst[1], pDst[2], roiSize.width, roiSize.height, srcStep,
                         dstStep[0], dstStep[1], dstStep[2]);
  return oddSize420(roiSize);
}

LUM_PUBLIC LumStatus lumiRGBToYUV420_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                            Lum8u* const pDst[3], const int dstStep[3],
                                            LumSize roiSize) {
  const LumStatus st =
      checkP2({pSrc, srcStep, pDst, dstStep}, roiSize, {arr(pSrc, 3), arr(pDst, 3)});
  if (st != LumOk) return st;
  myRGBToYUV420_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], roiSize.width >> 1,
                       roiSize.height >> 1, srcStep[0], dstStep[0], dstStep[1], dstStep[2]);
  return oddSize420(roiSize);
}

LUM_PUBLIC LumStatus lumiRGBToYUV420_8u_C3P3(const Lum8u* pSrc, Lum8u* const pDst[3],
                                             LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pDst, 3)});
  if (st != LumOk) return st;
  const int w = roiSize.width, c = chroma420Stride(w);
  myRGBToYUV420_8u_C3P3R(pSrc, pDst[0], pDst[1], pDst[2], w, roiSize.height, 3 * w, w, c, c);
  return oddSize420(roiSize);
}

LUM_PUBLIC LumStatus lumiRGBToYUV420_8u_P3(const Lum8u* const pSrc[3], Lum8u* const pDst[3],
                                           LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3), arr(pDst, 3)});
  if (st != LumOk) return st;
  const int w = roiSize.width, c = chroma420Stride(w);
  myRGBToYUV420_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], w >> 1,
                       roiSize.height >> 1, w, w, c, c);
  return oddSize420(roiSize);
}

LUM_PUBLIC LumStatus lumiYUV420ToRGB_8u_P3C3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                              Lum8u* pDst, int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, srcStep, pDst}, roiSize, {arr(pSrc, 3)});
  if (st != LumOk) return st;
  myYUV420ToRGB_8u_P3C3R(pSrc[0], pSrc[1], pSrc[2], pDst, roiSize.width >> 1, roiSize.height >> 1,
                         srcStep[0], srcStep[1], srcStep[2], dstStep);
  return oddSize420(roiSize);
}

LUM_PUBLIC LumStatus lumiYUV420ToRGB_8u_P3R(const Lum8u* const pSrc[3], const int srcStep[3],
                                            Lum8u* const pDst[3], const int dstStep[3],
                                            LumSize roiSize) {
  const LumStatus st =
      checkP2({pSrc, srcStep, pDst, dstStep}, roiSize, {arr(pSrc, 3), arr(pDst, 3)});
  if (st != LumOk) return st;
  myYUV420ToRGB_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], roiSize.width >> 1,
                       roiSize.height >> 1, srcStep[0], srcStep[1], srcStep[2], dstStep[0]);
  return oddSize420(roiSize);
}

LUM_PUBLIC LumStatus lumiYUV420ToRGB_8u_P3AC4R(const Lum8u* const pSrc[3], const int srcStep[3],
                                               Lum8u* pDst, int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, srcStep, pDst}, roiSize, {arr(pSrc, 3)});
  if (st != LumOk) return st;
  myYUV420ToRGB_8u_P3AC4R(pSrc[0], pSrc[1], pSrc[2], pDst, roiSize.width >> 1,
                          roiSize.height >> 1, srcStep[0], srcStep[1], srcStep[2], dstStep);
  return oddSize420(roiSize);
}

LUM_PUBLIC LumStatus lumiYUV420ToRGB_8u_P3C3(const Lum8u* const pSrc[3], Lum8u* pDst,
                                             LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3)});
  if (st != LumOk) return st;
  const int w = roiSize.width, c = chroma420Stride(w);
  myYUV420ToRGB_8u_P3C3R(pSrc[0], pSrc[1], pSrc[2], pDst, w >> 1, roiSize.height >> 1, w, c, c,
                         3 * w);
  return oddSize420(roiSize);
}

LUM_PUBLIC LumStatus lumiYUV420ToRGB_8u_P3(const Lum8u* const pSrc[3], Lum8u* const pDst[3],
                                           LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3), arr(pDst, 3)});
  if (st != LumOk) return st;
  const int w = roiSize.width, c = chroma420Stride(w);
  myYUV420ToRGB_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], w >> 1,
                       roiSize.height >> 1, w, c, c, w);
  return oddSize420(roiSize);
}
