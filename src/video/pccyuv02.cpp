// RGB and YUV 4:2:2 and 4:2:0: public functions, row drivers and one-row
// kernels.
//
// Each kernel runs a block loop over the first pixels (4:2:2) or cells
// (4:2:0) of its row and finishes with scalar forms (pccyuv02.h).  Where the
// block formula and the tail formula differ (the I1 part of the planes-to-
// pixels 4:2:2 inverse, the I2 parts of the AC4 inverses, the T1 cells of
// the pixel-order 4:2:0 forward kernel) the boundary is counted from the
// start of every row.  The block loops take the call's instruction-set
// level: AVX2 rounds of 32 pixels (16 cells) first, then the SSSE3 or SSE2
// loops of 16 pixels (8 cells) from where they stopped; every level gives
// the same bytes.  Everything runs on the calling thread.
#include "video/pccyuv02.h"
#include "video/pccyuv02_blocks.h"

#include <limits.h>
#include <string.h>

#include "frame/lum_frame.h"
#include "frame/lum_row.h"
#include "frame/lum_simd.h"

using namespace lum;
using namespace lum::yuvsub;

namespace {

using namespace yuvsubblocks;

// The block part of a kernel by level: the AVX2 rounds where the level has
// them, then the SSSE3 loop (or the SSE2 one) from where they stopped.
// Each argument is a loop (from, end) -> first not done.
template <class Avx2, class Ssse3, class Sse2>
inline int byLevel(Isa isa, int end, Avx2 avx2, Ssse3 ssse3, Sse2 sse2) {
  const int x = isa >= kIsaAvx2 ? avx2(0, end) : 0;
  return isa >= kIsaSsse3 ? ssse3(x, end) : sse2(x, end);
}

// Three samples of pixel x of a pixel-order row, as ints.
inline void px3(const Lum8u* p, int x, int out[3]) {
  out[0] = p[3 * x];
  out[1] = p[3 * x + 1];
  out[2] = p[3 * x + 2];
}
// Three plane results of a scalar form into planes.
inline void putP3(const uint8_t rgb[3], Lum8u* pR, Lum8u* pG, Lum8u* pB, int x) {
  pR[x] = rgb[0];
  pG[x] = rgb[1];
  pB[x] = rgb[2];
}

}  // namespace

namespace lum {
namespace yuvsub {

// ===========================================================================
// One-row kernels, 4:2:2 forward: the row walked by pairs (a block of 8
// pairs is the 16 pixels of the block loop), then an odd last pixel.

// Pairs by T1 (block and tail alike); an odd last pixel writes Y and U only.
void innerRGBToYUV422_8u_C3C2R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  walkRow<kBlockPairs422>(width >> 1, [&](int endPairs) {
    return byLevel(isa, 2 * endPairs,
        [&](int x, int end) { return blockRGBToYUV422_C3C2_avx2(pSrc, pDst, x, end); },
        [&](int x, int end) { return blockRGBToYUV422_C3C2_ssse3(pSrc, pDst, x, end); },
        [&](int x, int end) { return blockRGBToYUV422_C3C2<Net3Sse2>(pSrc, pDst, x, end); }) / 2;
  }, [&](int k) {
    const int x = 2 * k;
    int p0[3], p1[3];
    px3(pSrc, x, p0);
    px3(pSrc, x + 1, p1);
    uint8_t y[2];
    pairT1(p0, p1, y, pDst + 2 * x + 1, pDst + 2 * x + 3);
    pDst[2 * x] = y[0];
    pDst[2 * x + 2] = y[1];
  });
  const int x = width - 1;
  if (width & 1) lastC3C2(pSrc[3 * x], pSrc[3 * x + 1], pSrc[3 * x + 2], pDst + 2 * x, pDst + 2 * x + 1);
}

// Pairs by T1; an odd last pixel by L with the rounding terms 16383 and 32767.
void innerRGBToYUV422_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width,
                               Isa isa) {
  walkRow<kBlockPairs422>(width >> 1, [&](int endPairs) {
    return byLevel(isa, 2 * endPairs,
        [&](int x, int end) { return blockRGBToYUV422_C3P3_avx2(pSrc, pY, pU, pV, x, end); },
        [&](int x, int end) { return blockRGBToYUV422_C3P3_ssse3(pSrc, pY, pU, pV, x, end); },
        [&](int x, int end) { return blockRGBToYUV422_C3P3<Net3Sse2>(pSrc, pY, pU, pV, x, end); }) / 2;
  }, [&](int k) {
    int p0[3], p1[3];
    px3(pSrc, 2 * k, p0);
    px3(pSrc, 2 * k + 1, p1);
    pairT1(p0, p1, pY + 2 * k, pU + k, pV + k);
  });
  const int x = width - 1;
  if (width & 1)
    lastToP3(pSrc[3 * x], pSrc[3 * x + 1], pSrc[3 * x + 2], kLastRoundU_C3P3, kLastRoundV_C3P3,
             pY + x, pU + x / 2, pV + x / 2);
}

// Pairs by T3; an odd last pixel by L with no rounding terms.
void innerRGBToYUV422_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                             Lum8u* pU, Lum8u* pV, int width, Isa isa) {
  auto sse2 = [&](int x, int end) { return blockRGBToYUV422_P3(pR, pG, pB, pY, pU, pV, x, end); };
  walkRow<kBlockPairs422>(width >> 1, [&](int endPairs) {
    return byLevel(isa, 2 * endPairs,
        [&](int x, int end) { return blockRGBToYUV422_P3_avx2(pR, pG, pB, pY, pU, pV, x, end); },
        sse2, sse2) / 2;
  }, [&](int k) {
    const int x = 2 * k;
    const int p0[3] = {pR[x], pG[x], pB[x]}, p1[3] = {pR[x + 1], pG[x + 1], pB[x + 1]};
    pairT3(p0, p1, pY + x, pU + k, pV + k);
  });
  const int x = width - 1;
  if (width & 1) lastToP3(pR[x], pG[x], pB[x], 0, 0, pY + x, pU + x / 2, pV + x / 2);
}

// ===========================================================================
// One-row kernels, 4:2:2 inverse.

// I1 for pairs (block of 16 and tail alike); an odd last pixel by I4 with its
// own U and the V of the pair before.  Never called with a width of 1.
void innerYUV422ToRGB_8u_C2C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  walkRow<kBlockPairs422>(width >> 1, [&](int endPairs) {
    return byLevel(isa, 2 * endPairs,
        [&](int x, int end) { return blockYUV422ToRGB_C2C3_avx2(pSrc, pDst, x, end); },
        [&](int x, int end) { return blockYUV422ToRGB_C2C3_ssse3(pSrc, pDst, x, end); },
        [&](int x, int end) { return blockYUV422ToRGB_C2C3<Net3Sse2>(pSrc, pDst, x, end); }) / 2;
  }, [&](int k) {
    const Lum8u* s = pSrc + 4 * k;
    i1(s[0], s[1], s[3], pDst + 6 * k);
    i1(s[2], s[1], s[3], pDst + 6 * k + 3);
  });
  const int x = width - 1;
  if (width & 1) i4(pSrc[2 * x], pSrc[2 * x + 1], pSrc[2 * x - 1], pDst + 3 * x);
}

// A row of one pixel: Y and one chroma byte, used as both U and V, by I3.
void unrealYUV(const Lum8u* pSrc, Lum8u* pDst) { i3(pSrc[0], pSrc[1], pSrc[1], pDst); }

// I1 on width & ~15 pixels, I3 on the rest.
void innerYUV422ToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                               int width, Isa isa) {
  walkRow<kBlockYUV422ToRGB>(width, [&](int end) {
    return byLevel(isa, end,
        [&](int x, int e) { return blockYUV422ToRGB_P3C3_avx2(pY, pU, pV, pDst, x, e); },
        [&](int x, int e) { return blockYUV422ToRGB_P3C3_ssse3(pY, pU, pV, pDst, x, e); },
        [&](int x, int e) { return blockYUV422ToRGB_I1(pY, pU, pV, x, e, StoreC3<Net3Sse2>{pDst}); });
  }, [&](int x) { i3(pY[x], pU[x >> 1], pV[x >> 1], pDst + 3 * x); });
}

// I1 for pairs (block of 16 and tail alike); an odd last pixel by I3.
void innerYUV422ToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR,
                             Lum8u* pG, Lum8u* pB, int width, Isa isa) {
  auto sse2 = [&](int x, int e) { return blockYUV422ToRGB_I1(pY, pU, pV, x, e, StoreP3{pR, pG, pB}); };
  walkRow<kBlockPairs422>(width >> 1, [&](int endPairs) {
    return byLevel(isa, 2 * endPairs,
        [&](int x, int e) { return blockYUV422ToRGB_P3_avx2(pY, pU, pV, pR, pG, pB, x, e); },
        sse2, sse2) / 2;
  }, [&](int k) {
    uint8_t rgb[3];
    for (int x = 2 * k; x < 2 * k + 2; ++x) {
      i1(pY[x], pU[k], pV[k], rgb);
      putP3(rgb, pR, pG, pB, x);
    }
  });
  const int x = width - 1;
  if (width & 1) {
    uint8_t rgb[3];
    i3(pY[x], pU[x >> 1], pV[x >> 1], rgb);
    putP3(rgb, pR, pG, pB, x);
  }
}

// I2 on width & ~3 pixels (rounds of 8, then one of 4), I3 on the rest; the
// fourth byte of every pixel is written as 0.
void innerYUV422ToRGB_8u_P3AC4R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                                int width, Isa isa) {
  auto sse2 = [&](int x, int e) { return blockYUV422ToRGB_AC4(pY, pU, pV, pDst, x, e); };
  walkRow<kBlockYUV422ToRGB_AC4>(width, [&](int end) {
    return byLevel(isa, end,
        [&](int x, int e) { return blockYUV422ToRGB_AC4_avx2(pY, pU, pV, pDst, x, e); }, sse2, sse2);
  }, [&](int x) {
    i3(pY[x], pU[x >> 1], pV[x >> 1], pDst + 4 * x);
    pDst[4 * x + 3] = 0;
  });
}

// ===========================================================================
// One-row kernels, 4:2:0 (two rows, walked by cells).

// T1 on the cells of the block loop, T2 on the remaining cells & 7.
void innerRGBToYUV420_8u_C3P3R(const Lum8u* pRow0, const Lum8u* pRow1, Lum8u* pY0, Lum8u* pY1,
                               Lum8u* pU, Lum8u* pV, int cells, Isa isa) {
  walkRow<kBlockRGBToYUV420_Cells>(cells, [&](int end) {
    return byLevel(isa, end,
        [&](int c, int e) { return blockRGBToYUV420_C3P3_avx2(pRow0, pRow1, pY0, pY1, pU, pV, c, e); },
        [&](int c, int e) { return blockRGBToYUV420_C3P3_ssse3(pRow0, pRow1, pY0, pY1, pU, pV, c, e); },
        [&](int c, int e) { return blockRGBToYUV420_C3P3<Net3Sse2>(pRow0, pRow1, pY0, pY1, pU, pV, c, e); });
  }, [&](int c) {
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
  });
}

// T3 on all cells; the second row of each RGB plane lies srcStep further.
void innerRGBToYUV420_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, int srcStep,
                             Lum8u* pY0, Lum8u* pY1, Lum8u* pU, Lum8u* pV, int cells, Isa isa) {
  const Lum8u* const src0[3] = {pR, pG, pB};
  const Lum8u* const src1[3] = {rowPtr(pR, 1, srcStep), rowPtr(pG, 1, srcStep),
                                rowPtr(pB, 1, srcStep)};
  auto sse2 = [&](int c, int e) { return blockRGBToYUV420_P3(src0, src1, pY0, pY1, pU, pV, c, e); };
  walkRow<kBlockRGBToYUV420_Cells>(cells, [&](int end) {
    return byLevel(isa, end,
        [&](int c, int e) { return blockRGBToYUV420_P3_avx2(src0, src1, pY0, pY1, pU, pV, c, e); },
        sse2, sse2);
  }, [&](int c) {
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
  });
}

// I1 on all cells.
void innerYUV420ToRGB_8u_P3C3R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                               const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int cells, Isa isa) {
  const StoreC3<Net3Sse2> rows[2] = {{pRow0}, {pRow1}};
  walkRow<kBlockYUV420ToRGB_Cells>(cells, [&](int end) {
    return byLevel(isa, end,
        [&](int c, int e) { return blockYUV420ToRGB_P3C3_avx2(pY0, pY1, pU, pV, pRow0, pRow1, c, e); },
        [&](int c, int e) { return blockYUV420ToRGB_P3C3_ssse3(pY0, pY1, pU, pV, pRow0, pRow1, c, e); },
        [&](int c, int e) { return blockYUV420ToRGB_I1(pY0, pY1, pU, pV, c, e, rows); });
  }, [&](int c) {
    for (int x = 2 * c; x < 2 * c + 2; ++x) {
      i1(pY0[x], pU[c], pV[c], pRow0 + 3 * x);
      i1(pY1[x], pU[c], pV[c], pRow1 + 3 * x);
    }
  });
}

// I2 on cells & ~7, I3 with 32768 added before each shift on the rest; the
// fourth byte of every pixel is written as 0.
void innerYUV420ToRGB_8u_P3AC4R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                                const Lum8u* pV, Lum8u* pRow0, Lum8u* pRow1, int cells, Isa isa) {
  auto sse2 = [&](int c, int e) { return blockYUV420ToRGB_AC4(pY0, pY1, pU, pV, pRow0, pRow1, c, e); };
  walkRow<kBlockYUV420ToRGB_Cells>(cells, [&](int end) {
    return byLevel(isa, end,
        [&](int c, int e) { return blockYUV420ToRGB_AC4_avx2(pY0, pY1, pU, pV, pRow0, pRow1, c, e); },
        sse2, sse2);
  }, [&](int c) {
    for (int x = 2 * c; x < 2 * c + 2; ++x) {
      i3(pY0[x], pU[c], pV[c], pRow0 + 4 * x, kRoundI3_420AC4);
      pRow0[4 * x + 3] = 0;
      i3(pY1[x], pU[c], pV[c], pRow1 + 4 * x, kRoundI3_420AC4);
      pRow1[4 * x + 3] = 0;
    }
  });
}

// I1 on all cells; the second row of each RGB plane lies dstStep further.
void innerYUV420ToRGB_8u_P3R(const Lum8u* pY0, const Lum8u* pY1, const Lum8u* pU,
                             const Lum8u* pV, Lum8u* pR, Lum8u* pG, Lum8u* pB, int dstStep,
                             int cells, Isa isa) {
  Lum8u* const row0[3] = {pR, pG, pB};
  Lum8u* const row1[3] = {rowPtr(pR, 1, dstStep), rowPtr(pG, 1, dstStep), rowPtr(pB, 1, dstStep)};
  const StoreP3 rows[2] = {{row0[0], row0[1], row0[2]}, {row1[0], row1[1], row1[2]}};
  auto sse2 = [&](int c, int e) { return blockYUV420ToRGB_I1(pY0, pY1, pU, pV, c, e, rows); };
  walkRow<kBlockYUV420ToRGB_Cells>(cells, [&](int end) {
    return byLevel(isa, end,
        [&](int c, int e) { return blockYUV420ToRGB_P3_avx2(pY0, pY1, pU, pV, row0, row1, c, e); },
        sse2, sse2);
  }, [&](int c) {
    const Lum8u* const yRows[2] = {pY0, pY1};
    for (int r = 0; r < 2; ++r)
      for (int x = 2 * c; x < 2 * c + 2; ++x) {
        uint8_t rgb[3];
        i1(yRows[r][x], pU[c], pV[c], rgb);
        putP3(rgb, rows[r].r, rows[r].g, rows[r].b, x);
      }
  });
}

// ===========================================================================
// Row drivers: all rows on the calling thread.  4:2:2: a row at a time;
// 4:2:0: a pair of rows (one row of cells) at a time.

namespace {

void myRGBToYUV422_8u_C3C2R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                            int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerRGBToYUV422_8u_C3C2R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width, isa);
  });
}
void myRGBToYUV422_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width,
                            int height, int srcStep, int stepY, int stepU, int stepV, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerRGBToYUV422_8u_C3P3R(rowPtr(pSrc, y, srcStep), rowPtr(pY, y, stepY), rowPtr(pU, y, stepU),
                              rowPtr(pV, y, stepV), width, isa);
  });
}
void myRGBToYUV422_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY, Lum8u* pU,
                          Lum8u* pV, int width, int height, int srcStep, int stepY, int stepU,
                          int stepV, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerRGBToYUV422_8u_P3R(rowPtr(pR, y, srcStep), rowPtr(pG, y, srcStep), rowPtr(pB, y, srcStep),
                            rowPtr(pY, y, stepY), rowPtr(pU, y, stepU), rowPtr(pV, y, stepV),
                            width, isa);
  });
}

// The drivers without R: one row of n pixels (n even), the kernel called on
// the first n & ~7 pixels and on the last n & 7.
void myRGBToYUV422_8u_C3P3(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int n, Isa isa) {
  const int m = n & ~7;
  innerRGBToYUV422_8u_C3P3R(pSrc, pY, pU, pV, m, isa);
  innerRGBToYUV422_8u_C3P3R(pSrc + 3 * m, pY + m, pU + m / 2, pV + m / 2, n & 7, isa);
}
void myRGBToYUV422_8u_P3(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY, Lum8u* pU,
                         Lum8u* pV, int n, Isa isa) {
  const int m = n & ~7;
  innerRGBToYUV422_8u_P3R(pR, pG, pB, pY, pU, pV, m, isa);
  innerRGBToYUV422_8u_P3R(pR + m, pG + m, pB + m, pY + m, pU + m / 2, pV + m / 2, n & 7, isa);
}

// A width of 1 has no V byte: each row's pixel goes through unrealYUV.
void myYUV422ToRGB_8u_C2C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                            int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    if (width == 1) unrealYUV(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep));
    else innerYUV422ToRGB_8u_C2C3R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width, isa);
  });
}
void myYUV422ToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                            int width, int height, int stepY, int stepU, int stepV, int dstStep,
                            Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerYUV422ToRGB_8u_P3C3R(rowPtr(pY, y, stepY), rowPtr(pU, y, stepU), rowPtr(pV, y, stepV),
                              rowPtr(pDst, y, dstStep), width, isa);
  });
}
void myYUV422ToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR, Lum8u* pG,
                          Lum8u* pB, int width, int height, int stepY, int stepU, int stepV,
                          int dstStep, Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerYUV422ToRGB_8u_P3R(rowPtr(pY, y, stepY), rowPtr(pU, y, stepU), rowPtr(pV, y, stepV),
                            rowPtr(pR, y, dstStep), rowPtr(pG, y, dstStep), rowPtr(pB, y, dstStep),
                            width, isa);
  });
}
void myYUV422ToRGB_8u_P3AC4R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                             int width, int height, int stepY, int stepU, int stepV, int dstStep,
                             Isa isa) {
  rows<Threading::Serial>(width, height, [&](int y) {
    innerYUV422ToRGB_8u_P3AC4R(rowPtr(pY, y, stepY), rowPtr(pU, y, stepU), rowPtr(pV, y, stepV),
                               rowPtr(pDst, y, dstStep), width, isa);
  });
}
void myYUV422ToRGB_8u_P3C3(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst, int n,
                           Isa isa) {
  const int m = n & ~7;
  innerYUV422ToRGB_8u_P3C3R(pY, pU, pV, pDst, m, isa);
  innerYUV422ToRGB_8u_P3C3R(pY + m, pU + m / 2, pV + m / 2, pDst + 3 * m, n & 7, isa);
}
void myYUV422ToRGB_8u_P3(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR, Lum8u* pG,
                         Lum8u* pB, int n, Isa isa) {
  const int m = n & ~7;
  innerYUV422ToRGB_8u_P3R(pY, pU, pV, pR, pG, pB, m, isa);
  innerYUV422ToRGB_8u_P3R(pY + m, pU + m / 2, pV + m / 2, pR + m, pG + m, pB + m, n & 7, isa);
}

// 4:2:0: cellsW cells a row pair over cellsH row pairs; the RGB planes of
// the plane forms share one step.
void myRGBToYUV420_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int cellsW,
                            int cellsH, int srcStep, int stepY, int stepU, int stepV, Isa isa) {
  rows<Threading::Serial>(cellsW, cellsH, [&](int j) {
    innerRGBToYUV420_8u_C3P3R(rowPtr(pSrc, 2 * j, srcStep), rowPtr(pSrc, 2 * j + 1, srcStep),
                              rowPtr(pY, 2 * j, stepY), rowPtr(pY, 2 * j + 1, stepY),
                              rowPtr(pU, j, stepU), rowPtr(pV, j, stepV), cellsW, isa);
  });
}
void myRGBToYUV420_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY, Lum8u* pU,
                          Lum8u* pV, int cellsW, int cellsH, int srcStep, int stepY, int stepU,
                          int stepV, Isa isa) {
  rows<Threading::Serial>(cellsW, cellsH, [&](int j) {
    innerRGBToYUV420_8u_P3R(rowPtr(pR, 2 * j, srcStep), rowPtr(pG, 2 * j, srcStep),
                            rowPtr(pB, 2 * j, srcStep), srcStep, rowPtr(pY, 2 * j, stepY),
                            rowPtr(pY, 2 * j + 1, stepY), rowPtr(pU, j, stepU),
                            rowPtr(pV, j, stepV), cellsW, isa);
  });
}
void myYUV420ToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                            int cellsW, int cellsH, int stepY, int stepU, int stepV, int dstStep,
                            Isa isa) {
  rows<Threading::Serial>(cellsW, cellsH, [&](int j) {
    innerYUV420ToRGB_8u_P3C3R(rowPtr(pY, 2 * j, stepY), rowPtr(pY, 2 * j + 1, stepY),
                              rowPtr(pU, j, stepU), rowPtr(pV, j, stepV),
                              rowPtr(pDst, 2 * j, dstStep), rowPtr(pDst, 2 * j + 1, dstStep),
                              cellsW, isa);
  });
}
void myYUV420ToRGB_8u_P3AC4R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                             int cellsW, int cellsH, int stepY, int stepU, int stepV, int dstStep,
                             Isa isa) {
  rows<Threading::Serial>(cellsW, cellsH, [&](int j) {
    innerYUV420ToRGB_8u_P3AC4R(rowPtr(pY, 2 * j, stepY), rowPtr(pY, 2 * j + 1, stepY),
                               rowPtr(pU, j, stepU), rowPtr(pV, j, stepV),
                               rowPtr(pDst, 2 * j, dstStep), rowPtr(pDst, 2 * j + 1, dstStep),
                               cellsW, isa);
  });
}
void myYUV420ToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR, Lum8u* pG,
                          Lum8u* pB, int cellsW, int cellsH, int stepY, int stepU, int stepV,
                          int dstStep, Isa isa) {
  rows<Threading::Serial>(cellsW, cellsH, [&](int j) {
    innerYUV420ToRGB_8u_P3R(rowPtr(pY, 2 * j, stepY), rowPtr(pY, 2 * j + 1, stepY),
                            rowPtr(pU, j, stepU), rowPtr(pV, j, stepV), rowPtr(pR, 2 * j, dstStep),
                            rowPtr(pG, 2 * j, dstStep), rowPtr(pB, 2 * j, dstStep), dstStep,
                            cellsW, isa);
  });
}

// ---------------------------------------------------------------------------
// What the public functions share.

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

// The status of a converted region: 4:2:2 converts every pixel; 4:2:0 warns
// when the region is not a whole number of cells (whole cells converted).
LumStatus done422(LumSize) { return LumOk; }
LumStatus done420(LumSize roi) { return ((roi.width | roi.height) & 1) ? LumWarnOddSize : LumOk; }

}  // namespace

}  // namespace yuvsub
}  // namespace lum

// ===========================================================================
// Public functions, one macro a signature shape (lum_shapes.h): the checks
// of pattern P2 (the pointers, each step array among them, then the size,
// then the plane pointers, source first), one driver call (the statement),
// and the status `done` gives.  Shape A (the C2 forms) is LUM_PUBLIC_A.
#define YUVSUB_UNPAREN(...) __VA_ARGS__
#define YUVSUB_CHECKS(ptrs, arrays)                                                         \
  const LumStatus st_ =                                                                     \
      lum::checks<lum::Pattern::P2>(YUVSUB_UNPAREN ptrs, YUVSUB_UNPAREN arrays, {}, roiSize); \
  if (st_ != LumOk) return st_;
#define YUVSUB_PUBLIC_E(name, done, ...)                                                     \
  LUM_PUBLIC LumStatus name(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],            \
                            const int dstStep[3], LumSize roiSize) {                         \
    YUVSUB_CHECKS(({pSrc, pDst, dstStep}), ({lum::arr(pDst, 3)}))                            \
    __VA_ARGS__;                                                                             \
    return done(roiSize);                                                                    \
  }
#define YUVSUB_PUBLIC_F(name, done, ...)                                                     \
  LUM_PUBLIC LumStatus name(const Lum8u* const pSrc[3], const int srcStep[3], Lum8u* pDst,   \
                            int dstStep, LumSize roiSize) {                                  \
    YUVSUB_CHECKS(({pSrc, srcStep, pDst}), ({lum::arr(pSrc, 3)}))                            \
    __VA_ARGS__;                                                                             \
    return done(roiSize);                                                                    \
  }
#define YUVSUB_PUBLIC_G(name, done, ...)                                                     \
  LUM_PUBLIC LumStatus name(const Lum8u* const pSrc[3], int srcStep, Lum8u* const pDst[3],   \
                            const int dstStep[3], LumSize roiSize) {                         \
    YUVSUB_CHECKS(({pSrc, pDst, dstStep}), ({lum::arr(pSrc, 3), lum::arr(pDst, 3)}))         \
    __VA_ARGS__;                                                                             \
    return done(roiSize);                                                                    \
  }
#define YUVSUB_PUBLIC_H(name, done, ...)                                                     \
  LUM_PUBLIC LumStatus name(const Lum8u* const pSrc[3], const int srcStep[3],                \
                            Lum8u* const pDst[3], int dstStep, LumSize roiSize) {            \
    YUVSUB_CHECKS(({pSrc, srcStep, pDst}), ({lum::arr(pSrc, 3), lum::arr(pDst, 3)}))         \
    __VA_ARGS__;                                                                             \
    return done(roiSize);                                                                    \
  }
#define YUVSUB_PUBLIC_I(name, done, ...)                                                     \
  LUM_PUBLIC LumStatus name(const Lum8u* const pSrc[3], const int srcStep[3],                \
                            Lum8u* const pDst[3], const int dstStep[3], LumSize roiSize) {   \
    YUVSUB_CHECKS(({pSrc, srcStep, pDst, dstStep}), ({lum::arr(pSrc, 3), lum::arr(pDst, 3)})) \
    __VA_ARGS__;                                                                             \
    return done(roiSize);                                                                    \
  }
// Shape J, no steps: pixel order to planes, planes to planes, planes to
// pixel order.
#define YUVSUB_PUBLIC_J_CP(name, done, ...)                                                  \
  LUM_PUBLIC LumStatus name(const Lum8u* pSrc, Lum8u* const pDst[3], LumSize roiSize) {      \
    YUVSUB_CHECKS(({pSrc, pDst}), ({lum::arr(pDst, 3)}))                                     \
    __VA_ARGS__;                                                                             \
    return done(roiSize);                                                                    \
  }
#define YUVSUB_PUBLIC_J_PP(name, done, ...)                                                  \
  LUM_PUBLIC LumStatus name(const Lum8u* const pSrc[3], Lum8u* const pDst[3],                \
                            LumSize roiSize) {                                               \
    YUVSUB_CHECKS(({pSrc, pDst}), ({lum::arr(pSrc, 3), lum::arr(pDst, 3)}))                  \
    __VA_ARGS__;                                                                             \
    return done(roiSize);                                                                    \
  }
#define YUVSUB_PUBLIC_J_PC(name, done, ...)                                                  \
  LUM_PUBLIC LumStatus name(const Lum8u* const pSrc[3], Lum8u* pDst, LumSize roiSize) {      \
    YUVSUB_CHECKS(({pSrc, pDst}), ({lum::arr(pSrc, 3)}))                                     \
    __VA_ARGS__;                                                                             \
    return done(roiSize);                                                                    \
  }

// 4:2:2 forward.
LUM_PUBLIC_A(lumiRGBToYUV422_8u_C3C2R, P1, Lum8u, Lum8u,
             myRGBToYUV422_8u_C3C2R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
YUVSUB_PUBLIC_E(lumiRGBToYUV422_8u_C3P3R, done422,
                myRGBToYUV422_8u_C3P3R(pSrc, pDst[0], pDst[1], pDst[2], roiSize.width, roiSize.height,
                                       srcStep, dstStep[0], dstStep[1], dstStep[2], isa()))
YUVSUB_PUBLIC_G(lumiRGBToYUV422_8u_P3R, done422,
                myRGBToYUV422_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2],
                                     roiSize.width, roiSize.height, srcStep, dstStep[0], dstStep[1],
                                     dstStep[2], isa()))
YUVSUB_PUBLIC_J_CP(lumiRGBToYUV422_8u_C3P3, done422,
  const Isa level = isa(); int n;
  if (wholeImage422(roiSize, &n)) {
    myRGBToYUV422_8u_C3P3(pSrc, pDst[0], pDst[1], pDst[2], n, level);
  } else {
    const int w = roiSize.width, c = chroma422Stride(w);
    myRGBToYUV422_8u_C3P3R(pSrc, pDst[0], pDst[1], pDst[2], w, roiSize.height, 3 * w, w, c, c, level);
  })
YUVSUB_PUBLIC_J_PP(lumiRGBToYUV422_8u_P3, done422,
  const Isa level = isa(); int n;
  if (wholeImage422(roiSize, &n)) {
    myRGBToYUV422_8u_P3(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], n, level);
  } else {
    const int w = roiSize.width, c = chroma422Stride(w);
    myRGBToYUV422_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], w, roiSize.height,
                         w, w, c, c, level);
  })

// 4:2:2 inverse.
LUM_PUBLIC_A(lumiYUV422ToRGB_8u_C2C3R, P1, Lum8u, Lum8u,
             myYUV422ToRGB_8u_C2C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep, isa()))
YUVSUB_PUBLIC_F(lumiYUV422ToRGB_8u_P3C3R, done422,
                myYUV422ToRGB_8u_P3C3R(pSrc[0], pSrc[1], pSrc[2], pDst, roiSize.width, roiSize.height,
                                       srcStep[0], srcStep[1], srcStep[2], dstStep, isa()))
YUVSUB_PUBLIC_H(lumiYUV422ToRGB_8u_P3R, done422,
                myYUV422ToRGB_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2],
                                     roiSize.width, roiSize.height, srcStep[0], srcStep[1],
                                     srcStep[2], dstStep, isa()))
YUVSUB_PUBLIC_F(lumiYUV422ToRGB_8u_P3AC4R, done422,
                myYUV422ToRGB_8u_P3AC4R(pSrc[0], pSrc[1], pSrc[2], pDst, roiSize.width,
                                        roiSize.height, srcStep[0], srcStep[1], srcStep[2], dstStep,
                                        isa()))
YUVSUB_PUBLIC_J_PC(lumiYUV422ToRGB_8u_P3C3, done422,
  const Isa level = isa(); int n;
  if (wholeImage422(roiSize, &n)) {
    myYUV422ToRGB_8u_P3C3(pSrc[0], pSrc[1], pSrc[2], pDst, n, level);
  } else {
    const int w = roiSize.width, c = chroma422Stride(w);
    myYUV422ToRGB_8u_P3C3R(pSrc[0], pSrc[1], pSrc[2], pDst, w, roiSize.height, w, c, c, 3 * w, level);
  })
YUVSUB_PUBLIC_J_PP(lumiYUV422ToRGB_8u_P3, done422,
  const Isa level = isa(); int n;
  if (wholeImage422(roiSize, &n)) {
    myYUV422ToRGB_8u_P3(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], n, level);
  } else {
    const int w = roiSize.width, c = chroma422Stride(w);
    myYUV422ToRGB_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], w, roiSize.height,
                         w, c, c, w, level);
  })

// 4:2:0 forward: whole cells, the RGB planes of the plane forms at element 0
// of their step array.
YUVSUB_PUBLIC_E(lumiRGBToYUV420_8u_C3P3R, done420,
                myRGBToYUV420_8u_C3P3R(pSrc, pDst[0], pDst[1], pDst[2], roiSize.width >> 1,
                                       roiSize.height >> 1, srcStep, dstStep[0], dstStep[1],
                                       dstStep[2], isa()))
YUVSUB_PUBLIC_I(lumiRGBToYUV420_8u_P3R, done420,
                myRGBToYUV420_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2],
                                     roiSize.width >> 1, roiSize.height >> 1, srcStep[0], dstStep[0],
                                     dstStep[1], dstStep[2], isa()))
YUVSUB_PUBLIC_J_CP(lumiRGBToYUV420_8u_C3P3, done420,
  const int w = roiSize.width, c = chroma420Stride(w);
  myRGBToYUV420_8u_C3P3R(pSrc, pDst[0], pDst[1], pDst[2], w >> 1, roiSize.height >> 1, 3 * w, w,
                         c, c, isa()))
YUVSUB_PUBLIC_J_PP(lumiRGBToYUV420_8u_P3, done420,
  const int w = roiSize.width, c = chroma420Stride(w);
  myRGBToYUV420_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], w >> 1,
                       roiSize.height >> 1, w, w, c, c, isa()))

// 4:2:0 inverse.
YUVSUB_PUBLIC_F(lumiYUV420ToRGB_8u_P3C3R, done420,
                myYUV420ToRGB_8u_P3C3R(pSrc[0], pSrc[1], pSrc[2], pDst, roiSize.width >> 1,
                                       roiSize.height >> 1, srcStep[0], srcStep[1], srcStep[2],
                                       dstStep, isa()))
YUVSUB_PUBLIC_I(lumiYUV420ToRGB_8u_P3R, done420,
                myYUV420ToRGB_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2],
                                     roiSize.width >> 1, roiSize.height >> 1, srcStep[0], srcStep[1],
                                     srcStep[2], dstStep[0], isa()))
YUVSUB_PUBLIC_F(lumiYUV420ToRGB_8u_P3AC4R, done420,
                myYUV420ToRGB_8u_P3AC4R(pSrc[0], pSrc[1], pSrc[2], pDst, roiSize.width >> 1,
                                        roiSize.height >> 1, srcStep[0], srcStep[1], srcStep[2],
                                        dstStep, isa()))
YUVSUB_PUBLIC_J_PC(lumiYUV420ToRGB_8u_P3C3, done420,
  const int w = roiSize.width, c = chroma420Stride(w);
  myYUV420ToRGB_8u_P3C3R(pSrc[0], pSrc[1], pSrc[2], pDst, w >> 1, roiSize.height >> 1, w, c, c,
                         3 * w, isa()))
YUVSUB_PUBLIC_J_PP(lumiYUV420ToRGB_8u_P3, done420,
  const int w = roiSize.width, c = chroma420Stride(w);
  myYUV420ToRGB_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], w >> 1,
                       roiSize.height >> 1, w, c, c, w, isa()))
