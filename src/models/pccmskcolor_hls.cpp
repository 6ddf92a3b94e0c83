// RGB and HLS: public functions, row drivers and one-row kernels.
//
// Each kernel runs its main loop over the first (width & ~(block - 1))
// pixels of the row (block 8 for the 8u C3 kernels, 4 for all others) and its
// scalar tail over the rest.  The formulas of both, and where they differ, are
// the scalar forms of pccmskcolor_hls.h; the SSE2 twins stand beside them.
//
// AC4 twins do the arithmetic of their C3 kernel; only loading, storing and
// the round size differ.  The 8u and 16u twins keep the destination's alpha by
// reading the destination and writing back whole words with the old alpha
// masked in (the words lie within the pixels of the row); the 16s twin writes
// 32-bit and 16-bit pieces around the alpha; the 32f twin writes the first
// two samples of a pixel as one 64-bit piece and the third by itself.
//
// The 32f forward kernel has a single formula for the whole row, run four
// pixels at a time by its vector twin and pixel by pixel for the rest.
//
// The 8u C3 main loops (pccmskcolor_hls_blocks.h) separate the channels with
// the SSE2 riffle network, or with SSSE3 byte shuffles
// (pccmskcolor_hls_ssse3.cpp) where the processor has them.
#include "models/pccmskcolor_hls.h"

#include "frame/lum_frame.h"
#include "frame/lum_row.h"
#include "frame/lum_simd.h"
#include "models/pccmskcolor_hls_blocks.h"

using namespace lum;
using namespace lum::hls;
using namespace hlsblocks;

namespace {

// The SSE2 network of the 8u C3 main loops: the riffle network separates
// the channels of 32 pixels (or 8) into bytes, which unpack to 32-bit lanes
// four pixels at a time; the results pack back (packssdw, packuswb) and
// the network interleaves them.
struct NetSse2 {
  static constexpr int kRound = 32;
  // Channel bytes of 16 pixels (c[k]) through four batches -> out[k].
  template <class Step>
  static void steps16(const __m128i c[3], __m128i out[3], Step step) {
    const __m128i z = _mm_setzero_si128();
    __m128i in[4][3], o[4][3];
    for (int k = 0; k < 3; ++k) {
      const __m128i lo = lo8to16(c[k]), hi = hi8to16(c[k]);
      in[0][k] = _mm_unpacklo_epi16(lo, z);
      in[1][k] = _mm_unpackhi_epi16(lo, z);
      in[2][k] = _mm_unpacklo_epi16(hi, z);
      in[3][k] = _mm_unpackhi_epi16(hi, z);
    }
    for (int j = 0; j < 4; ++j) step(in[j], o[j]);
    for (int k = 0; k < 3; ++k)
      out[k] = _mm_packus_epi16(_mm_packs_epi32(o[0][k], o[1][k]),
          _mm_packs_epi32(o[2][k], o[3][k]));
  }
  template <class Step>
  static void round(const Lum8u* s, Lum8u* d, Step step) {
    const Planes8x32 p = deinterleave3x32(s);
    Planes8x32 q;
    for (int h = 0; h < 2; ++h) {
      const __m128i c[3] = {p.c[0][h], p.c[1][h], p.c[2][h]};
      __m128i out[3];
      steps16(c, out, step);
      for (int k = 0; k < 3; ++k) q.c[k][h] = out[k];
    }
    interleave3x32(q, d);
  }
  template <class Step>
  static void round8(const Lum8u* s, Lum8u* d, Step step) {
    const __m128i z = _mm_setzero_si128();
    __m128i c[3], in[2][3], o[2][3], out[3];
    deinterleave3x8(s, c);
    for (int k = 0; k < 3; ++k) {
      const __m128i lo = lo8to16(c[k]);
      in[0][k] = _mm_unpacklo_epi16(lo, z);
      in[1][k] = _mm_unpackhi_epi16(lo, z);
    }
    for (int j = 0; j < 2; ++j) step(in[j], o[j]);
    for (int k = 0; k < 3; ++k) out[k] = _mm_packus_epi16(_mm_packs_epi32(o[0][k], o[1][k]), z);
    interleave3x8(out, d);
  }
};

}  // namespace

namespace lum {
namespace hls {

// ===========================================================================
// The row of every 4-pixel kernel: block4(src, dst) converts the 4 pixels at
// src into dst over the first (width & ~3) pixels, the scalar tail the rest;
// Stride is the pixel's sample count.
namespace {
// wide, where given, converts the first pixels of the block part first (a
// faster path's rounds), returning the first pixel it did not convert.
template <int Stride, class T, class Block4, class Tail>
inline void rowBy4(const T* pSrc, T* pDst, int width, Block4 block4, Tail tail,
                   int (*wide)(const T*, T*, int) = nullptr) {
  walkRow<kBlock>(PixInterleaved<const T, Stride>{pSrc}, PixInterleaved<T, Stride>{pDst}, width,
                  [&](int end) {
                    int x = wide ? wide(pSrc, pDst, end) : 0;
                    for (; x < end; x += kBlock) {
                      prefetchAhead(pSrc + Stride * x);
                      block4(pSrc + Stride * x, pDst + Stride * x);
                    }
                    return x;
                  },
                  tail);
}
}  // namespace

// ===========================================================================
// 8u kernels.

namespace {
// An 8u C3 row: the block loop (SSSE3 or SSE2 network) over the first
// (width & ~7) pixels, the scalar tail after.
template <class Step, class Tail>
inline void row8uC3(const Lum8u* pSrc, Lum8u* pDst, int width, bool ssse3,
         int (*blockSsse3)(const Lum8u*, Lum8u*, int), Step step, Tail tail) {
  walkRow<kBlock8uC3>(PixC3<const Lum8u>{pSrc}, PixC3<Lum8u>{pDst}, width, [&](int end) {
    return ssse3 ? blockSsse3(pSrc, pDst, end) : block8uC3<NetSse2>(pSrc, pDst, end, step);
  }, tail);
}
}  // namespace

// Forward, C3: 8 pixels a round in two batches of 4 lanes (rounds of 32 or
// 16 pixels where the row has them), the reciprocal as it stands; the tail
// refines it.
void innerRGBToHLS_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int nchannels, Isa isa) {
  if (nchannels == 4) {
    inner_RGBToHLS_8u_AC4R(pSrc, pDst, width);
    return;
  }
  row8uC3(pSrc, pDst, width, isa >= kIsaSsse3, blockRGBToHLS_8u_C3_ssse3, FwdStep{}, rgbToHls8uTail);
}

// Forward, AC4 twin: 4 pixels a round, 16 destination bytes read and written
// back with their alpha bytes as they were.
void inner_RGBToHLS_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  const __m128i keep = alphaMask8u();
  rowBy4<4>(pSrc, pDst, width, [&](const Lum8u* src, Lum8u* dst) {
    __m128i c[4];
    load4x4b(src, c);
    const FwdVec o = rgbToHls8uBlockVec(c[0], c[1], c[2]);
    mergeStore(dst, pack3to4x4b(o.H, o.L, o.S), keep);
  }, rgbToHls8uTail);
}

// Inverse, C3: 8 pixels a round in two batches of 4 lanes (rounds of 32 or
// 16 pixels where the row has them).
void innerHLSToRGB_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int nchannels, Isa isa) {
  if (nchannels == 4) {
    inner_HLSToRGB_8u_AC4R(pSrc, pDst, width);
    return;
  }
  row8uC3(pSrc, pDst, width, isa >= kIsaSsse3, blockHLSToRGB_8u_C3_ssse3, InvStep{}, hlsToRgb8uTail);
}

// Inverse, AC4 twin: 4 pixels a round, alpha merged back as in the forward.
void inner_HLSToRGB_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  const __m128i keep = alphaMask8u();
  rowBy4<4>(pSrc, pDst, width, [&](const Lum8u* src, Lum8u* dst) {
    __m128i c[4], rgb[3];
    load4x4b(src, c);
    hlsToRgb8uBlockVec(c[0], c[1], c[2], rgb);
    mergeStore(dst, pack3to4x4b(rgb[0], rgb[1], rgb[2]), keep);
  }, hlsToRgb8uTail);
}

// ===========================================================================
// 16u kernels: 4 pixels a round.

void innerRGBToHLS_16u_C3R(const Lum16u* pSrc, Lum16u* pDst, int width, int nchannels, Isa) {
  if (nchannels == 4) {
    inner_RGBToHLS_16u_AC4R(pSrc, pDst, width);
    return;
  }
  rowBy4<3>(pSrc, pDst, width, [&](const Lum16u* src, Lum16u* dst) {
    __m128i c[3];
    load3x4w(src, c);
    const FwdVec o = rgbToHls16uBlockVec(c[0], c[1], c[2]);
    store3x4w(dst, o.H, o.L, o.S, [](__m128i a, __m128i b) { return vPackS32U16(a, b); });
  }, rgbToHls16uTail);
}

// Each 4-word pixel is one 64-bit word, written back with its alpha word as
// it was.
void inner_RGBToHLS_16u_AC4R(const Lum16u* pSrc, Lum16u* pDst, int width) {
  const __m128i keep = alphaMask16();
  rowBy4<4>(pSrc, pDst, width, [&](const Lum16u* src, Lum16u* dst) {
    __m128i c[3], px[2];
    load4x4w(src, c);
    const FwdVec o = rgbToHls16uBlockVec(c[0], c[1], c[2]);
    interleave3to4x4w(vPackS32U16(o.H, o.L), vPackS32U16(o.S, o.S), px);
    mergeStore(dst, px[0], keep);
    mergeStore(dst + 8, px[1], keep);
  }, rgbToHls16uTail);
}

void innerHLSToRGB_16u_C3R(const Lum16u* pSrc, Lum16u* pDst, int width, int nchannels, Isa) {
  if (nchannels == 4) {
    inner_HLSToRGB_16u_AC4R(pSrc, pDst, width);
    return;
  }
  rowBy4<3>(pSrc, pDst, width, [&](const Lum16u* src, Lum16u* dst) {
    __m128i c[3], rgb[3];
    load3x4w(src, c);
    hlsToRgb16uBlockVec(c[0], c[1], c[2], rgb);
    store3x4w(dst, rgb[0], rgb[1], rgb[2],
              [](__m128i a, __m128i b) { return narrow16uInvVec(a, b); });
  }, hlsToRgb16uTail);
}

void inner_HLSToRGB_16u_AC4R(const Lum16u* pSrc, Lum16u* pDst, int width) {
  const __m128i keep = alphaMask16();
  rowBy4<4>(pSrc, pDst, width, [&](const Lum16u* src, Lum16u* dst) {
    __m128i c[3], rgb[3], px[2];
    load4x4w(src, c);
    hlsToRgb16uBlockVec(c[0], c[1], c[2], rgb);
    interleave3to4x4w(narrow16uInvVec(rgb[0], rgb[1]), narrow16uInvVec(rgb[2], rgb[2]), px);
    mergeStore(dst, px[0], keep);
    mergeStore(dst + 8, px[1], keep);
  }, hlsToRgb16uTail);
}

// ===========================================================================
// 16s kernels: the samples biased by 32768 on the way in; 4 pixels a round.

namespace {
inline __m128i narrow16sVec(__m128i a, __m128i b) {
  const __m128i bias = _mm_set1_epi32(32768);
  return _mm_packs_epi32(_mm_sub_epi32(a, bias), _mm_sub_epi32(b, bias));
}
}  // namespace

void innerRGBToHLS_16s_C3R(const Lum16s* pSrc, Lum16s* pDst, int width, int nchannels, Isa) {
  if (nchannels == 4) {
    inner_RGBToHLS_16s_AC4R(pSrc, pDst, width);
    return;
  }
  rowBy4<3>(pSrc, pDst, width, [&](const Lum16s* src, Lum16s* dst) {
    __m128i c[3];
    load3x4wBiased(src, c);
    const FwdVec o = rgbToHls16sBlockVec(c[0], c[1], c[2]);
    store3x4w(reinterpret_cast<Lum16u*>(dst), o.H, o.L, o.S,
              [](__m128i a, __m128i b) { return narrow16sVec(a, b); });
  }, rgbToHls16sTail);
}

void inner_RGBToHLS_16s_AC4R(const Lum16s* pSrc, Lum16s* pDst, int width) {
  rowBy4<4>(pSrc, pDst, width, [&](const Lum16s* src, Lum16s* dst) {
    __m128i c[3], px[2];
    load4x4wBiased(src, c);
    const FwdVec o = rgbToHls16sBlockVec(c[0], c[1], c[2]);
    interleave3to4x4w(narrow16sVec(o.H, o.L), narrow16sVec(o.S, o.S), px);
    store16sPieces(dst, px[0]);
    store16sPieces(dst + 8, px[1]);
  }, rgbToHls16sTail);
}

void innerHLSToRGB_16s_C3R(const Lum16s* pSrc, Lum16s* pDst, int width, int nchannels, Isa) {
  if (nchannels == 4) {
    inner_HLSToRGB_16s_AC4R(pSrc, pDst, width);
    return;
  }
  rowBy4<3>(pSrc, pDst, width, [&](const Lum16s* src, Lum16s* dst) {
    __m128i c[3], rgb[3];
    load3x4wBiased(src, c);
    hlsToRgb16sBlockVec(c[0], c[1], c[2], rgb);
    store3x4w(reinterpret_cast<Lum16u*>(dst), rgb[0], rgb[1], rgb[2],
              [](__m128i a, __m128i b) { return vPackS32S16(a, b); });
  }, hlsToRgb16sTail);
}

void inner_HLSToRGB_16s_AC4R(const Lum16s* pSrc, Lum16s* pDst, int width) {
  rowBy4<4>(pSrc, pDst, width, [&](const Lum16s* src, Lum16s* dst) {
    __m128i c[3], rgb[3], px[2];
    load4x4wBiased(src, c);
    hlsToRgb16sBlockVec(c[0], c[1], c[2], rgb);
    interleave3to4x4w(_mm_packs_epi32(rgb[0], rgb[1]), _mm_packs_epi32(rgb[2], rgb[2]), px);
    store16sPieces(dst, px[0]);
    store16sPieces(dst + 8, px[1]);
  }, hlsToRgb16sTail);
}

// ===========================================================================
// 32f kernels.

// Forward: 4 pixels a round through rgbToHls32fVec (8 through its AVX2 twin
// where the processor has it and the stride is 3), the rest through its
// scalar form rgbToHls32f; all give the same bits.  No AC4 twin: nchannels
// is the pixel stride (an AC4 row keeps its fourth sample).
void innerRGBToHLS_32f_C3R(const Lum32f* pSrc, Lum32f* pDst, int width, int nchannels, Isa isa) {
  if (nchannels == 3) {
    rowBy4<3>(pSrc, pDst, width, [&](const Lum32f* src, Lum32f* dst) {
      __m128 R, G, B;
      load3x4f(src, R, G, B);
      const Hls32f4 o = rgbToHls32fVec(R, G, B);
      store3x4f(dst, o.H, o.L, o.S);
    }, rgbToHls32f, isa >= kIsaAvx2 ? blockRGBToHLS_32f_C3_avx2 : nullptr);
  } else {
    rowBy4<4>(pSrc, pDst, width, [&](const Lum32f* src, Lum32f* dst) {
      __m128 R, G, B;
      load3of4x4f(src, R, G, B);
      const Hls32f4 o = rgbToHls32fVec(R, G, B);
      store3of4x4f(dst, o.H, o.L, o.S);
    }, rgbToHls32f);
  }
}

// Inverse, C3: 4 pixels a round (8 in AVX2 where the level has it),
// multiplying by 0.016666668; the tail divides by 60.
void innerHLSToRGB_32f_C3R(const Lum32f* pSrc, Lum32f* pDst, int width, int nchannels, Isa isa) {
  if (nchannels == 4) return innerHLSToRGB_32f_AC4R(pSrc, pDst, width);
  rowBy4<3>(pSrc, pDst, width, [&](const Lum32f* src, Lum32f* dst) {
    __m128 H, L, S;
    load3x4f(src, H, L, S);
    const Rgb4 c = hlsToRgb32fBlockVec(H, L, S);
    store3x4f(dst, c.R, c.G, c.B);
  }, hlsToRgb32fTail, isa >= kIsaAvx2 ? blockHLSToRGB_32f_C3_avx2 : nullptr);
}

// Inverse, AC4 twin: the fourth sample of each pixel neither read into the
// arithmetic nor written.
void innerHLSToRGB_32f_AC4R(const Lum32f* pSrc, Lum32f* pDst, int width) {
  rowBy4<4>(pSrc, pDst, width, [&](const Lum32f* src, Lum32f* dst) {
    __m128 H, L, S;
    load3of4x4f(src, H, L, S);
    const Rgb4 c = hlsToRgb32fBlockVec(H, L, S);
    store3of4x4f(dst, c.R, c.G, c.B);
  }, hlsToRgb32fTail);
}

// ===========================================================================
// Row drivers: group 1 of the parallel frame (serial below 4097 pixels).
// Steps in elements: bytes for 8u, halved for 16u and 16s, quartered for 32f.

LUM_MODEL_DRIVER_GROUP1(myRGBToHLS_8u_C3R, Lum8u, innerRGBToHLS_8u_C3R)
LUM_MODEL_DRIVER_GROUP1(myHLSToRGB_8u_C3R, Lum8u, innerHLSToRGB_8u_C3R)
LUM_MODEL_DRIVER_GROUP1(myRGBToHLS_16u_C3R, Lum16u, innerRGBToHLS_16u_C3R)
LUM_MODEL_DRIVER_GROUP1(myHLSToRGB_16u_C3R, Lum16u, innerHLSToRGB_16u_C3R)
LUM_MODEL_DRIVER_GROUP1(myRGBToHLS_16s_C3R, Lum16s, innerRGBToHLS_16s_C3R)
LUM_MODEL_DRIVER_GROUP1(myHLSToRGB_16s_C3R, Lum16s, innerHLSToRGB_16s_C3R)
LUM_MODEL_DRIVER_GROUP1(myRGBToHLS_32f_C3R, Lum32f, innerRGBToHLS_32f_C3R)
LUM_MODEL_DRIVER_GROUP1(myHLSToRGB_32f_C3R, Lum32f, innerHLSToRGB_32f_C3R)

}  // namespace hls
}  // namespace lum

// ===========================================================================
// Public functions: pattern P1 (pointers, then size; steps not checked), then
// the driver with the steps in elements and the pixel stride.

LUM_MODEL_PUBLIC_P1(lumiRGBToHLS_8u_C3R, Lum8u, myRGBToHLS_8u_C3R, 0, 3)
LUM_MODEL_PUBLIC_P1(lumiRGBToHLS_8u_AC4R, Lum8u, myRGBToHLS_8u_C3R, 0, 4)
LUM_MODEL_PUBLIC_P1(lumiHLSToRGB_8u_C3R, Lum8u, myHLSToRGB_8u_C3R, 0, 3)
LUM_MODEL_PUBLIC_P1(lumiHLSToRGB_8u_AC4R, Lum8u, myHLSToRGB_8u_C3R, 0, 4)
LUM_MODEL_PUBLIC_P1(lumiRGBToHLS_16u_C3R, Lum16u, myRGBToHLS_16u_C3R, 1, 3)
LUM_MODEL_PUBLIC_P1(lumiRGBToHLS_16u_AC4R, Lum16u, myRGBToHLS_16u_C3R, 1, 4)
LUM_MODEL_PUBLIC_P1(lumiHLSToRGB_16u_C3R, Lum16u, myHLSToRGB_16u_C3R, 1, 3)
LUM_MODEL_PUBLIC_P1(lumiHLSToRGB_16u_AC4R, Lum16u, myHLSToRGB_16u_C3R, 1, 4)
LUM_MODEL_PUBLIC_P1(lumiRGBToHLS_16s_C3R, Lum16s, myRGBToHLS_16s_C3R, 1, 3)
LUM_MODEL_PUBLIC_P1(lumiRGBToHLS_16s_AC4R, Lum16s, myRGBToHLS_16s_C3R, 1, 4)
LUM_MODEL_PUBLIC_P1(lumiHLSToRGB_16s_C3R, Lum16s, myHLSToRGB_16s_C3R, 1, 3)
LUM_MODEL_PUBLIC_P1(lumiHLSToRGB_16s_AC4R, Lum16s, myHLSToRGB_16s_C3R, 1, 4)
LUM_MODEL_PUBLIC_P1(lumiRGBToHLS_32f_C3R, Lum32f, myRGBToHLS_32f_C3R, 2, 3)
LUM_MODEL_PUBLIC_P1(lumiRGBToHLS_32f_AC4R, Lum32f, myRGBToHLS_32f_C3R, 2, 4)
LUM_MODEL_PUBLIC_P1(lumiHLSToRGB_32f_C3R, Lum32f, myHLSToRGB_32f_C3R, 2, 3)
LUM_MODEL_PUBLIC_P1(lumiHLSToRGB_32f_AC4R, Lum32f, myHLSToRGB_32f_C3R, 2, 4)
