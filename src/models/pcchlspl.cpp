// BGR and HLS plane layouts: public functions, the row driver of the AC4R
// member and the one-row kernels.
//
// Every kernel runs the 8u HLS arithmetic of pccmskcolor_hls.h: a main loop
// of 4 pixels a round over the first (width & ~3) pixels, with the
// reciprocal as it stands (forward), and the scalar tail for the rest, which
// refines it.  Colour channels sit in BGR order, so R is sample or plane 2.
// The layouts differ only in how a round of 4 pixels, or one tail pixel, is
// read and written; that is what the Planes and Pixels accessors below hold.
#include "models/pcchlspl.h"

#include "frame/lum_frame.h"
#include "frame/lum_row.h"
#include "frame/lum_simd.h"

using namespace lum;
using namespace lum::hls;
using namespace lum::hlspl;

namespace {

// The readers and writers of 4 pixels and of one pixel are the Lanes4*
// accessors of lum_row.h.
using PlanesIn = Lanes4PlanesIn;
using Pixels3In = Lanes4C3In;
using Pixels4In = Lanes4C4In;
using PlanesOut = Lanes4PlanesOut;
using Pixels3Out = Lanes4C3Out;
using Pixels4Out = Lanes4C4Out;

// ---------------------------------------------------------------------------
// The two directions over any reader and writer.

// B, G, R -> H, L, S; alpha across.
template <class In, class Out>
inline void bgrToHlsRow(const In& in, const Out& out, int width) {
  walkRow<hlspl::kBlock>(
      width,
      [&](int end) {
        int x = 0;
        for (; x < end; x += hlspl::kBlock) {
          __m128i c[4];
          in.load4(x, c);
          const FwdVec o = rgbToHls8uBlockVec(c[2], c[1], c[0]);
          const __m128i res[4] = {o.H, o.L, o.S, c[3]};
          out.store4(x, res);
        }
        return x;
      },
      [&](int x) {
        int c[4];
        in.load1(x, c);
        Lum8u res[4];
        rgbToHls8uTail(c[2], c[1], c[0], res);
        res[3] = static_cast<Lum8u>(c[3]);
        out.store1(x, res);
      });
}

// H, L, S -> B, G, R; alpha across.
template <class In, class Out>
inline void hlsToBgrRow(const In& in, const Out& out, int width) {
  walkRow<hlspl::kBlock>(
      width,
      [&](int end) {
        int x = 0;
        for (; x < end; x += hlspl::kBlock) {
          __m128i c[4], rgb[3];
          in.load4(x, c);
          hlsToRgb8uBlockVec(c[0], c[1], c[2], rgb);
          const __m128i res[4] = {rgb[2], rgb[1], rgb[0], c[3]};
          out.store4(x, res);
        }
        return x;
      },
      [&](int x) {
        int c[4];
        in.load1(x, c);
        Lum8u rgb[3];
        hlsToRgb8uTail(c[0], c[1], c[2], rgb);
        const Lum8u res[4] = {rgb[2], rgb[1], rgb[0], static_cast<Lum8u>(c[3])};
        out.store1(x, res);
      });
}

}  // namespace

namespace lum {
namespace hlspl {

// ===========================================================================
// One-row kernels.

// Two main loops with the same arithmetic, chosen at entry by the
// destination address: on a multiple of 8, whole 64-bit words are read, the
// old alpha bytes masked back in and written; otherwise the three colour
// bytes of each pixel are written in smaller pieces (a 16-bit and an 8-bit
// store where the address is a multiple of 4, chosen again each round, else
// byte by byte), and the destination is not read.  The tail writes bytes.
void innerBGRToHLS_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  walkRow<hlspl::kBlock>(
      width,
      [&](int block) {
        int x = 0;
        if ((reinterpret_cast<uintptr_t>(pDst) & 7u) == 0) {
          const __m128i keep = _mm_set1_epi32(static_cast<int>(0xFF000000u));
          for (; x < block; x += hlspl::kBlock) {
            __m128i c[4];
            load4x4b(pSrc + 4 * x, c);
            const FwdVec o = rgbToHls8uBlockVec(c[2], c[1], c[0]);
            const __m128i px = pack3to4x4b(o.H, o.L, o.S);
            Lum8u* d = pDst + 4 * x;
            const __m128i old = _mm_unpacklo_epi64(loadl64(d), loadl64(d + 8));
            const __m128i v = _mm_or_si128(_mm_and_si128(old, keep), _mm_andnot_si128(keep, px));
            storel64(d, v);
            storel64(d + 8, _mm_srli_si128(v, 8));
          }
        } else {
          for (; x < block; x += hlspl::kBlock) {
            __m128i c[4];
            load4x4b(pSrc + 4 * x, c);
            const FwdVec o = rgbToHls8uBlockVec(c[2], c[1], c[0]);
            alignas(16) Lum8u px[16];
            _mm_store_si128(reinterpret_cast<__m128i*>(px), pack3to4x4b(o.H, o.L, o.S));
            Lum8u* d = pDst + 4 * x;
            if ((reinterpret_cast<uintptr_t>(d) & 3u) == 0) {
              for (int i = 0; i < 4; ++i) {
                memcpy(d + 4 * i, px + 4 * i, 2);
                d[4 * i + 2] = px[4 * i + 2];
              }
            } else {
              for (int i = 0; i < 4; ++i) {
                d[4 * i] = px[4 * i];
                d[4 * i + 1] = px[4 * i + 1];
                d[4 * i + 2] = px[4 * i + 2];
              }
            }
          }
        }
        return x;
      },
      [&](int x) {
        const Lum8u* s = pSrc + 4 * x;
        rgbToHls8uTail(s[2], s[1], s[0], pDst + 4 * x);
      });
}

void ownpi_BGRToHLS_8u_AP4(const Lum8u* pB, const Lum8u* pG, const Lum8u* pR, const Lum8u* pA,
                           Lum8u* pH, Lum8u* pL, Lum8u* pS, Lum8u* pDstA, int width) {
  bgrToHlsRow(PlanesIn{{pB, pG, pR, pA}}, PlanesOut{{pH, pL, pS, pDstA}}, width);
}
void ownpi_BGRToHLS_8u_AP4C4(const Lum8u* pB, const Lum8u* pG, const Lum8u* pR, const Lum8u* pA,
                             Lum8u* pDst, int width) {
  bgrToHlsRow(PlanesIn{{pB, pG, pR, pA}}, Pixels4Out{pDst}, width);
}
void ownpi_BGRToHLS_8u_AC4P4(const Lum8u* pSrc, Lum8u* pH, Lum8u* pL, Lum8u* pS, Lum8u* pDstA,
                             int width) {
  bgrToHlsRow(Pixels4In{pSrc}, PlanesOut{{pH, pL, pS, pDstA}}, width);
}
void ownpi_BGRToHLS_8u_P3(const Lum8u* pB, const Lum8u* pG, const Lum8u* pR, Lum8u* pH, Lum8u* pL,
                          Lum8u* pS, int width) {
  bgrToHlsRow(PlanesIn{{pB, pG, pR, nullptr}}, PlanesOut{{pH, pL, pS, nullptr}}, width);
}
void ownpi_BGRToHLS_8u_P3C3(const Lum8u* pB, const Lum8u* pG, const Lum8u* pR, Lum8u* pDst,
                            int width) {
  bgrToHlsRow(PlanesIn{{pB, pG, pR, nullptr}}, Pixels3Out{pDst}, width);
}
void ownpi_BGRToHLS_8u_C3P3(const Lum8u* pSrc, Lum8u* pH, Lum8u* pL, Lum8u* pS, int width) {
  bgrToHlsRow(Pixels3In{pSrc}, PlanesOut{{pH, pL, pS, nullptr}}, width);
}

void ownpi_HLSToBGR_8u_AP4(const Lum8u* pH, const Lum8u* pL, const Lum8u* pS, const Lum8u* pA,
                           Lum8u* pB, Lum8u* pG, Lum8u* pR, Lum8u* pDstA, int width) {
  hlsToBgrRow(PlanesIn{{pH, pL, pS, pA}}, PlanesOut{{pB, pG, pR, pDstA}}, width);
}
void ownpi_HLSToBGR_8u_AP4C4(const Lum8u* pH, const Lum8u* pL, const Lum8u* pS, const Lum8u* pA,
                             Lum8u* pDst, int width) {
  hlsToBgrRow(PlanesIn{{pH, pL, pS, pA}}, Pixels4Out{pDst}, width);
}
void ownpi_HLSToBGR_8u_AC4P4(const Lum8u* pSrc, Lum8u* pB, Lum8u* pG, Lum8u* pR, Lum8u* pDstA,
                             int width) {
  hlsToBgrRow(Pixels4In{pSrc}, PlanesOut{{pB, pG, pR, pDstA}}, width);
}
void ownpi_HLSToBGR_8u_P3(const Lum8u* pH, const Lum8u* pL, const Lum8u* pS, Lum8u* pB, Lum8u* pG,
                          Lum8u* pR, int width) {
  hlsToBgrRow(PlanesIn{{pH, pL, pS, nullptr}}, PlanesOut{{pB, pG, pR, nullptr}}, width);
}
void ownpi_HLSToBGR_8u_P3C3(const Lum8u* pH, const Lum8u* pL, const Lum8u* pS, Lum8u* pDst,
                            int width) {
  hlsToBgrRow(PlanesIn{{pH, pL, pS, nullptr}}, Pixels3Out{pDst}, width);
}
void ownpi_HLSToBGR_8u_C3P3(const Lum8u* pSrc, Lum8u* pB, Lum8u* pG, Lum8u* pR, int width) {
  hlsToBgrRow(Pixels3In{pSrc}, PlanesOut{{pB, pG, pR, nullptr}}, width);
}

// ===========================================================================
// Row driver of the AC4R member: a region at any size.
void myBGRToHLS_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                        int dstStep) {
  rows<Threading::AnyRegion>(width, height, [&](int y) {
    innerBGRToHLS_8u_AC4R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width);
  });
}

}  // namespace hlspl
}  // namespace lum

// ===========================================================================
// Public functions.  lumiBGRToHLS_8u_AC4R: pointers, size, then steps (P4).
// All others: pointers (plane pointers included), steps, then size (P5).
// Each names its threading: AnyRegion shares the rows by a static OpenMP
// loop at any size, Serial stays on the calling thread.

#define LUM_HLSPL_ROWS(policy, ...) \
  rows<Threading::policy>(roiSize.width, roiSize.height, [&](int y) { __VA_ARGS__; })

LUM_PUBLIC_A(lumiBGRToHLS_8u_AC4R, P4, Lum8u, Lum8u,
             myBGRToHLS_8u_AC4R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep))

LUM_PUBLIC_D(lumiBGRToHLS_8u_AP4R, P5, Lum8u, Lum8u, 4, 4,
             LUM_HLSPL_ROWS(Serial, ownpi_BGRToHLS_8u_AP4(
                                        rowPtr(pSrc[0], y, srcStep), rowPtr(pSrc[1], y, srcStep),
                                        rowPtr(pSrc[2], y, srcStep), rowPtr(pSrc[3], y, srcStep),
                                        rowPtr(pDst[0], y, dstStep), rowPtr(pDst[1], y, dstStep),
                                        rowPtr(pDst[2], y, dstStep), rowPtr(pDst[3], y, dstStep),
                                        roiSize.width)))
LUM_PUBLIC_C(lumiBGRToHLS_8u_AP4C4R, P5, Lum8u, Lum8u, 4,
             LUM_HLSPL_ROWS(AnyRegion, ownpi_BGRToHLS_8u_AP4C4(
                                           rowPtr(pSrc[0], y, srcStep), rowPtr(pSrc[1], y, srcStep),
                                           rowPtr(pSrc[2], y, srcStep), rowPtr(pSrc[3], y, srcStep),
                                           rowPtr(pDst, y, dstStep), roiSize.width)))
LUM_PUBLIC_B(lumiBGRToHLS_8u_AC4P4R, P5, Lum8u, Lum8u, 4,
             LUM_HLSPL_ROWS(AnyRegion, ownpi_BGRToHLS_8u_AC4P4(
                                           rowPtr(pSrc, y, srcStep), rowPtr(pDst[0], y, dstStep),
                                           rowPtr(pDst[1], y, dstStep), rowPtr(pDst[2], y, dstStep),
                                           rowPtr(pDst[3], y, dstStep), roiSize.width)))
LUM_PUBLIC_D(lumiBGRToHLS_8u_P3R, P5, Lum8u, Lum8u, 3, 3,
             LUM_HLSPL_ROWS(Serial, ownpi_BGRToHLS_8u_P3(
                                        rowPtr(pSrc[0], y, srcStep), rowPtr(pSrc[1], y, srcStep),
                                        rowPtr(pSrc[2], y, srcStep), rowPtr(pDst[0], y, dstStep),
                                        rowPtr(pDst[1], y, dstStep), rowPtr(pDst[2], y, dstStep),
                                        roiSize.width)))
LUM_PUBLIC_C(lumiBGRToHLS_8u_P3C3R, P5, Lum8u, Lum8u, 3,
             LUM_HLSPL_ROWS(AnyRegion,
                            ownpi_BGRToHLS_8u_P3C3(rowPtr(pSrc[0], y, srcStep),
                                                   rowPtr(pSrc[1], y, srcStep),
                                                   rowPtr(pSrc[2], y, srcStep),
                                                   rowPtr(pDst, y, dstStep), roiSize.width)))
LUM_PUBLIC_B(lumiBGRToHLS_8u_C3P3R, P5, Lum8u, Lum8u, 3,
             LUM_HLSPL_ROWS(AnyRegion,
                            ownpi_BGRToHLS_8u_C3P3(rowPtr(pSrc, y, srcStep),
                                                   rowPtr(pDst[0], y, dstStep),
                                                   rowPtr(pDst[1], y, dstStep),
                                                   rowPtr(pDst[2], y, dstStep), roiSize.width)))
LUM_PUBLIC_D(lumiHLSToBGR_8u_AP4R, P5, Lum8u, Lum8u, 4, 4,
             LUM_HLSPL_ROWS(Serial, ownpi_HLSToBGR_8u_AP4(
                                        rowPtr(pSrc[0], y, srcStep), rowPtr(pSrc[1], y, srcStep),
                                        rowPtr(pSrc[2], y, srcStep), rowPtr(pSrc[3], y, srcStep),
                                        rowPtr(pDst[0], y, dstStep), rowPtr(pDst[1], y, dstStep),
                                        rowPtr(pDst[2], y, dstStep), rowPtr(pDst[3], y, dstStep),
                                        roiSize.width)))
LUM_PUBLIC_C(lumiHLSToBGR_8u_AP4C4R, P5, Lum8u, Lum8u, 4,
             LUM_HLSPL_ROWS(Serial, ownpi_HLSToBGR_8u_AP4C4(
                                        rowPtr(pSrc[0], y, srcStep), rowPtr(pSrc[1], y, srcStep),
                                        rowPtr(pSrc[2], y, srcStep), rowPtr(pSrc[3], y, srcStep),
                                        rowPtr(pDst, y, dstStep), roiSize.width)))
LUM_PUBLIC_B(lumiHLSToBGR_8u_AC4P4R, P5, Lum8u, Lum8u, 4,
             LUM_HLSPL_ROWS(AnyRegion, ownpi_HLSToBGR_8u_AC4P4(
                                           rowPtr(pSrc, y, srcStep), rowPtr(pDst[0], y, dstStep),
                                           rowPtr(pDst[1], y, dstStep), rowPtr(pDst[2], y, dstStep),
                                           rowPtr(pDst[3], y, dstStep), roiSize.width)))
LUM_PUBLIC_D(lumiHLSToBGR_8u_P3R, P5, Lum8u, Lum8u, 3, 3,
             LUM_HLSPL_ROWS(Serial, ownpi_HLSToBGR_8u_P3(
                                        rowPtr(pSrc[0], y, srcStep), rowPtr(pSrc[1], y, srcStep),
                                        rowPtr(pSrc[2], y, srcStep), rowPtr(pDst[0], y, dstStep),
                                        rowPtr(pDst[1], y, dstStep), rowPtr(pDst[2], y, dstStep),
                                        roiSize.width)))
LUM_PUBLIC_C(lumiHLSToBGR_8u_P3C3R, P5, Lum8u, Lum8u, 3,
             LUM_HLSPL_ROWS(AnyRegion,
                            ownpi_HLSToBGR_8u_P3C3(rowPtr(pSrc[0], y, srcStep),
                                                   rowPtr(pSrc[1], y, srcStep),
                                                   rowPtr(pSrc[2], y, srcStep),
                                                   rowPtr(pDst, y, dstStep), roiSize.width)))
LUM_PUBLIC_B(lumiHLSToBGR_8u_C3P3R, P5, Lum8u, Lum8u, 3,
             LUM_HLSPL_ROWS(AnyRegion,
                            ownpi_HLSToBGR_8u_C3P3(rowPtr(pSrc, y, srcStep),
                                                   rowPtr(pDst[0], y, dstStep),
                                                   rowPtr(pDst[1], y, dstStep),
                                                   rowPtr(pDst[2], y, dstStep), roiSize.width)))
