// RGB and YUV 4:4:4: public functions, row drivers and one-row kernels.
//
// Each kernel runs its block formula over the first (width & ~(block - 1))
// pixels of the row and its tail formula over the rest; both are required
// and differ on purpose (see pccyuv01.h for the scalar forms).  The block
// loops may take 32 or 16 pixels a round where the block is smaller: the
// formula is per pixel, so only the block/tail boundary matters.
#include "video/pccyuv01.h"

#include "frame/lum_frame.h"
#include "frame/lum_simd.h"

using namespace lum;
using namespace lum::yuv444;

namespace {

const __m128i kZero = _mm_setzero_si128();

// ---------------------------------------------------------------------------
// F1 in SSE2, 8 pixels in 16-bit lanes (the vector form of f1Y/f1U/f1V).
inline __m128i f1YVec(__m128i R, __m128i G, __m128i B) {
  const __m128i s = _mm_adds_epu16(vHu(_mm_slli_epi16(R, 8), vset16(19595)),
                                   vHu(_mm_slli_epi16(G, 8), vset16(38469)));
  return _mm_srli_epi16(_mm_adds_epu16(s, vHu(_mm_slli_epi16(B, 8), vset16(7471))), 8);
}
inline __m128i f1ChromaVec(__m128i R, __m128i G, __m128i B, int cr, int cg, int cb) {
  const __m128i s = _mm_adds_epi16(vHs(_mm_slli_epi16(R, 7), vset16(cr)),
                                   vHs(_mm_slli_epi16(G, 7), vset16(cg)));
  const __m128i t = _mm_adds_epi16(s, vHs(_mm_slli_epi16(B, 7), vset16(cb)));
  return _mm_adds_epi16(_mm_srai_epi16(t, 6), vset16(128));  // sat8u in the pack
}
inline __m128i f1UVec(__m128i R, __m128i G, __m128i B) { return f1ChromaVec(R, G, B, -4816, -9469, 14286); }
inline __m128i f1VVec(__m128i R, __m128i G, __m128i B) { return f1ChromaVec(R, G, B, 20152, -16875, -3276); }

// F1 on 16 pixels given as bytes: in[3] = R, G, B; out[3] = Y, U, V.
inline void f1x16(const __m128i in[3], __m128i out[3]) {
  const __m128i Rl = lo8to16(in[0]), Gl = lo8to16(in[1]), Bl = lo8to16(in[2]);
  const __m128i Rh = hi8to16(in[0]), Gh = hi8to16(in[1]), Bh = hi8to16(in[2]);
  out[0] = vPackS16U8(f1YVec(Rl, Gl, Bl), f1YVec(Rh, Gh, Bh));
  out[1] = vPackS16U8(f1UVec(Rl, Gl, Bl), f1UVec(Rh, Gh, Bh));
  out[2] = vPackS16U8(f1VVec(Rl, Gl, Bl), f1VVec(Rh, Gh, Bh));
}

// F2 in SSE2 for one channel of 8 pixels in 16-bit lanes: pmaddwd forms
// c0 R + c1 G in one 32-bit lane, c2 B in another; each is shifted by 15.
inline __m128i f2ChanVec(__m128i R, __m128i G, __m128i B, int c0, int c1, int c2, int d) {
  const __m128i kRG = _mm_set1_epi32(static_cast<int>((static_cast<uint32_t>(c1) << 16) |
                                                      (static_cast<uint32_t>(c0) & 0xffffu)));
  const __m128i kB = _mm_set1_epi32(c2 & 0xffff);
  const __m128i vd = _mm_set1_epi32(d);
  const __m128i lo = _mm_add_epi32(
      _mm_add_epi32(_mm_srai_epi32(_mm_madd_epi16(_mm_unpacklo_epi16(R, G), kRG), 15),
                    _mm_srai_epi32(_mm_madd_epi16(_mm_unpacklo_epi16(B, kZero), kB), 15)),
      vd);
  const __m128i hi = _mm_add_epi32(
      _mm_add_epi32(_mm_srai_epi32(_mm_madd_epi16(_mm_unpackhi_epi16(R, G), kRG), 15),
                    _mm_srai_epi32(_mm_madd_epi16(_mm_unpackhi_epi16(B, kZero), kB), 15)),
      vd);
  return vPackS32S16(lo, hi);
}

// G1 in SSE2 on 8 pixels in 16-bit lanes.
inline void g1Vec(__m128i Y, __m128i U, __m128i V, __m128i& R, __m128i& G, __m128i& B) {
  const __m128i u = _mm_slli_epi16(_mm_sub_epi16(U, vset16(128)), 3);
  const __m128i v = _mm_slli_epi16(_mm_sub_epi16(V, vset16(128)), 3);
  R = _mm_adds_epi16(Y, vHs(v, vset16(9339)));
  G = _mm_adds_epi16(_mm_adds_epi16(Y, vHs(u, vset16(-3228))), vHs(v, vset16(-4760)));
  B = _mm_adds_epi16(Y, vHs(u, vset16(16646)));
}
inline void g1x16(const __m128i in[3], __m128i out[3]) {
  __m128i Rl, Gl, Bl, Rh, Gh, Bh;
  g1Vec(lo8to16(in[0]), lo8to16(in[1]), lo8to16(in[2]), Rl, Gl, Bl);
  g1Vec(hi8to16(in[0]), hi8to16(in[1]), hi8to16(in[2]), Rh, Gh, Bh);
  out[0] = vPackS16U8(Rl, Rh);
  out[1] = vPackS16U8(Gl, Gh);
  out[2] = vPackS16U8(Bl, Bh);
}

// G2 in SSE2 on 8 pixels in 16-bit lanes, one output plane at a time.
inline __m128i g2u(__m128i U) { return _mm_slli_epi16(_mm_sub_epi16(U, vset16(128)), 6); }
inline __m128i g2RVec(__m128i Y, __m128i, __m128i V) {
  return _mm_add_epi16(Y, _mm_srai_epi16(vHs(g2u(V), vset16(18677)), 4));
}
inline __m128i g2GVec(__m128i Y, __m128i U, __m128i V) {
  return _mm_sub_epi16(Y, _mm_srai_epi16(_mm_add_epi16(vHs(g2u(U), vset16(6455)),
                                                       vHs(g2u(V), vset16(9519))), 4));
}
inline __m128i g2BVec(__m128i Y, __m128i U, __m128i) {
  return _mm_add_epi16(Y, _mm_srai_epi16(vHs(g2u(U), vset16(16646)), 3));
}

// G4 in SSE2 on 8 pixels in 16-bit lanes.
inline void g4Vec(__m128i Y, __m128i U, __m128i V, __m128i& R, __m128i& G, __m128i& B) {
  const __m128i u = _mm_sub_epi16(_mm_slli_epi16(U, 4), vset16(2048));
  const __m128i v = _mm_sub_epi16(_mm_slli_epi16(V, 4), vset16(2048));
  const __m128i T = _mm_slli_epi16(Y, 1);
  R = _mm_srai_epi16(_mm_adds_epi16(T, vHs(v, vset16(9338))), 1);
  G = _mm_srai_epi16(_mm_adds_epi16(_mm_adds_epi16(T, vHs(u, vset16(-3227))), vHs(v, vset16(-4759))), 1);
  B = _mm_srai_epi16(_mm_adds_epi16(T, vHs(u, vset16(16645))), 1);
}
inline void g4x16(const __m128i in[3], __m128i out[3]) {
  __m128i Rl, Gl, Bl, Rh, Gh, Bh;
  g4Vec(lo8to16(in[0]), lo8to16(in[1]), lo8to16(in[2]), Rl, Gl, Bl);
  g4Vec(hi8to16(in[0]), hi8to16(in[1]), hi8to16(in[2]), Rh, Gh, Bh);
  out[0] = vPackS16U8(Rl, Rh);
  out[1] = vPackS16U8(Gl, Gh);
  out[2] = vPackS16U8(Bl, Bh);
}

// A pixel-order 3-sample block loop over [0, end): 32 pixels a round, then
// 16, then 8 (end is a multiple of the kernel's block, at least 8).
template <class Fn16>
inline int blockC3toC3(const Lum8u* s, Lum8u* d, int end, Fn16 fn) {
  int x = 0;
  for (; x + 32 <= end; x += 32) {
    Planes8x32 p = deinterleave3x32(s + 3 * x), q;
    for (int h = 0; h < 2; ++h) {
      const __m128i in[3] = {p.c[0][h], p.c[1][h], p.c[2][h]};
      __m128i out[3];
      fn(in, out);
      for (int k = 0; k < 3; ++k) q.c[k][h] = out[k];
    }
    interleave3x32(q, d + 3 * x);
  }
  for (; x + 16 <= end; x += 16) {
    __m128i in[3], out[3];
    deinterleave3x16(s + 3 * x, in);
    fn(in, out);
    interleave3x16(out, d + 3 * x);
  }
  for (; x + 8 <= end; x += 8) {
    __m128i in[3], out[3];
    deinterleave3x8(s + 3 * x, in);
    fn(in, out);
    interleave3x8(out, d + 3 * x);
  }
  return x;
}

// Masked store of the three colour bytes of 4 pixels (a 16-bit and an 8-bit
// store a pixel): alpha is neither read nor written.  Ordinary stores keep
// the destination in cache, unlike a non-temporal byte-masked move.
inline void storeColourBytes(Lum8u* d, __m128i v) {
  for (int i = 0; i < 4; ++i, v = _mm_srli_si128(v, 4)) {
    const uint32_t px = static_cast<uint32_t>(_mm_cvtsi128_si32(v));
    const uint16_t lo = static_cast<uint16_t>(px);
    memcpy(d + 4 * i, &lo, 2);
    d[4 * i + 2] = static_cast<Lum8u>(px >> 16);
  }
}

}  // namespace

// ===========================================================================
// One-row kernels.

// Block F1 (16), tail F3.
void innerRGBToYUV_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  const int block = width & ~(kBlockRGBToYUV_C3 - 1);
  int x = blockC3toC3(pSrc, pDst, block, [](const __m128i* in, __m128i* out) { f1x16(in, out); });
  for (; x < width; ++x) f3(pSrc[3 * x], pSrc[3 * x + 1], pSrc[3 * x + 2], pDst + 3 * x);
}

// Block F2 (8) storing only the colour bytes, tail F3; the fourth byte of every
// destination pixel is left as it was.
void innerRGBToYUV_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  const int block = width & ~(kBlockRGBToYUV_AC4 - 1);
  int x = 0;
  for (; x < block; x += 8) {
    __m128i c[4];
    deinterleave4x8(pSrc + 4 * x, c);
    const __m128i R = lo8to16(c[0]), G = lo8to16(c[1]), B = lo8to16(c[2]);
    const __m128i Y = f2ChanVec(R, G, B, 9798, 19235, 3736, 0);
    const __m128i U = f2ChanVec(R, G, B, -4817, -9470, 14287, 128);
    const __m128i V = f2ChanVec(R, G, B, 20152, -16876, -3277, 128);
    const __m128i outc[4] = {vPackS16U8(Y, Y), vPackS16U8(U, U), vPackS16U8(V, V), kZero};
    __m128i px[2];
    interleave4x8(outc, px);
    storeColourBytes(pDst + 4 * x, px[0]);
    storeColourBytes(pDst + 4 * x + 16, px[1]);
  }
  for (; x < width; ++x) {
    Lum8u yuv[3];
    f3(pSrc[4 * x], pSrc[4 * x + 1], pSrc[4 * x + 2], yuv);
    pDst[4 * x] = yuv[0];
    pDst[4 * x + 1] = yuv[1];
    pDst[4 * x + 2] = yuv[2];
  }
}

namespace {
// One plane pass of the P3 forward kernel: block F1 (16) and tail F4 for the
// same channel.
template <class VecFn, class TailFn>
inline void passRGBToYUV_P3(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pOut,
                            int width, VecFn vec, TailFn tail) {
  const int block = width & ~(kBlockRGBToYUV_P3 - 1);
  int x = 0;
  for (; x < block; x += 16) {
    const __m128i r = loadu(pR + x), g = loadu(pG + x), b = loadu(pB + x);
    storeu(pOut + x, vPackS16U8(vec(lo8to16(r), lo8to16(g), lo8to16(b)),
                                vec(hi8to16(r), hi8to16(g), hi8to16(b))));
  }
  for (; x < width; ++x) pOut[x] = static_cast<Lum8u>(tail(pR[x], pG[x], pB[x]));
}
}  // namespace

// One pass per destination plane: Y, then U, then V.
void innerRGBToYUV_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                          Lum8u* pU, Lum8u* pV, int width) {
  passRGBToYUV_P3(pR, pG, pB, pY, width, f1YVec, f4Y);
  passRGBToYUV_P3(pR, pG, pB, pU, width, f1UVec, f4U);
  passRGBToYUV_P3(pR, pG, pB, pV, width, f1VVec, f4V);
}

// Block F1 (8), tail F5.
void innerRGBToYUV_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width) {
  const int block = width & ~(kBlockRGBToYUV_C3P3 - 1);
  int x = 0;
  for (; x + 32 <= block; x += 32) {
    const Planes8x32 p = deinterleave3x32(pSrc + 3 * x);
    for (int h = 0; h < 2; ++h) {
      const __m128i in[3] = {p.c[0][h], p.c[1][h], p.c[2][h]};
      __m128i out[3];
      f1x16(in, out);
      storeu(pY + x + 16 * h, out[0]);
      storeu(pU + x + 16 * h, out[1]);
      storeu(pV + x + 16 * h, out[2]);
    }
  }
  for (; x + 16 <= block; x += 16) {
    __m128i in[3], out[3];
    deinterleave3x16(pSrc + 3 * x, in);
    f1x16(in, out);
    storeu(pY + x, out[0]);
    storeu(pU + x, out[1]);
    storeu(pV + x, out[2]);
  }
  for (; x < block; x += 8) {
    __m128i in[3], out[3];
    deinterleave3x8(pSrc + 3 * x, in);
    f1x16(in, out);
    storel64(pY + x, out[0]);
    storel64(pU + x, out[1]);
    storel64(pV + x, out[2]);
  }
  for (; x < width; ++x) f5(pSrc[3 * x], pSrc[3 * x + 1], pSrc[3 * x + 2], pY + x, pU + x, pV + x);
}

// G1 in block loop (8) and tail.
void innerYUVToRGB_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  const int block = width & ~(kBlockYUVToRGB_C3 - 1);
  int x = blockC3toC3(pSrc, pDst, block, [](const __m128i* in, __m128i* out) { g1x16(in, out); });
  for (; x < width; ++x) g1(pSrc[3 * x], pSrc[3 * x + 1], pSrc[3 * x + 2], pDst + 3 * x);
}

// G1 in the 8-pixel loop (colour bytes only) and in the rest, which stores
// bytes; the fourth byte of every destination pixel is left as it was.
void innerYUVToRGB_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width) {
  const int block = width & ~(kBlockYUVToRGB_AC4 - 1);
  int x = 0;
  for (; x < block; x += 8) {
    __m128i c[4], R, G, B;
    deinterleave4x8(pSrc + 4 * x, c);
    g1Vec(lo8to16(c[0]), lo8to16(c[1]), lo8to16(c[2]), R, G, B);
    const __m128i outc[4] = {vPackS16U8(R, R), vPackS16U8(G, G), vPackS16U8(B, B), kZero};
    __m128i px[2];
    interleave4x8(outc, px);
    storeColourBytes(pDst + 4 * x, px[0]);
    storeColourBytes(pDst + 4 * x + 16, px[1]);
  }
  for (; x < width; ++x) {
    Lum8u rgb[3];
    g1(pSrc[4 * x], pSrc[4 * x + 1], pSrc[4 * x + 2], rgb);
    pDst[4 * x] = rgb[0];
    pDst[4 * x + 1] = rgb[1];
    pDst[4 * x + 2] = rgb[2];
  }
}

namespace {
// One plane pass of the P3 inverse kernel: block G2 (8) and tail G3.
template <class VecFn, class TailFn>
inline void passYUVToRGB_P3(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pOut,
                            int width, VecFn vec, TailFn tail) {
  const int block = width & ~(kBlockYUVToRGB_P3 - 1);
  int x = 0;
  for (; x + 16 <= block; x += 16) {
    const __m128i y = loadu(pY + x), u = loadu(pU + x), v = loadu(pV + x);
    storeu(pOut + x, vPackS16U8(vec(lo8to16(y), lo8to16(u), lo8to16(v)),
                                vec(hi8to16(y), hi8to16(u), hi8to16(v))));
  }
  for (; x < block; x += 8) {
    const __m128i r = vec(lo8to16(loadl64(pY + x)), lo8to16(loadl64(pU + x)), lo8to16(loadl64(pV + x)));
    storel64(pOut + x, vPackS16U8(r, r));
  }
  for (; x < width; ++x) pOut[x] = static_cast<Lum8u>(tail(pY[x], pU[x], pV[x]));
}
}  // namespace

// One pass per destination plane: R, then G, then B.
void innerYUVToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR,
                          Lum8u* pG, Lum8u* pB, int width) {
  passYUVToRGB_P3(pY, pU, pV, pR, width, g2RVec, g3R);
  passYUVToRGB_P3(pY, pU, pV, pG, width, g2GVec, g3G);
  passYUVToRGB_P3(pY, pU, pV, pB, width, g2BVec, g3B);
}

// G4 in block loop (16) and tail.
void innerYUVToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                            int width) {
  const int block = width & ~(kBlockYUVToRGB_P3C3 - 1);
  int x = 0;
  for (; x + 32 <= block; x += 32) {
    Planes8x32 q;
    for (int h = 0; h < 2; ++h) {
      const int o = x + 16 * h;
      const __m128i in[3] = {loadu(pY + o), loadu(pU + o), loadu(pV + o)};
      __m128i out[3];
      g4x16(in, out);
      for (int k = 0; k < 3; ++k) q.c[k][h] = out[k];
    }
    interleave3x32(q, pDst + 3 * x);
  }
  for (; x < block; x += 16) {
    const __m128i in[3] = {loadu(pY + x), loadu(pU + x), loadu(pV + x)};
    __m128i out[3];
    g4x16(in, out);
    interleave3x16(out, pDst + 3 * x);
  }
  for (; x < width; ++x) g4(pY[x], pU[x], pV[x], pDst + 3 * x);
}

// ===========================================================================
// Row drivers: pointers, width, height, steps; all rows on the calling thread.

void myRGBToYUV_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                       int dstStep) {
  serialRows(height, [&](int y) { innerRGBToYUV_8u_C3R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width); });
}
void myRGBToYUV_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                        int dstStep) {
  serialRows(height, [&](int y) { innerRGBToYUV_8u_AC4R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width); });
}
void myRGBToYUV_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY, Lum8u* pU,
                       Lum8u* pV, int width, int height, int srcStep, int dstStep) {
  serialRows(height, [&](int y) {
    innerRGBToYUV_8u_P3R(rowPtr(pR, y, srcStep), rowPtr(pG, y, srcStep), rowPtr(pB, y, srcStep),
                         rowPtr(pY, y, dstStep), rowPtr(pU, y, dstStep), rowPtr(pV, y, dstStep), width);
  });
}
void myRGBToYUV_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width,
                         int height, int srcStep, int dstStep) {
  serialRows(height, [&](int y) {
    innerRGBToYUV_8u_C3P3R(rowPtr(pSrc, y, srcStep), rowPtr(pY, y, dstStep), rowPtr(pU, y, dstStep),
                           rowPtr(pV, y, dstStep), width);
  });
}
void myYUVToRGB_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                       int dstStep) {
  serialRows(height, [&](int y) { innerYUVToRGB_8u_C3R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width); });
}
void myYUVToRGB_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, int height, int srcStep,
                        int dstStep) {
  serialRows(height, [&](int y) { innerYUVToRGB_8u_AC4R(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width); });
}
void myYUVToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR, Lum8u* pG,
                       Lum8u* pB, int width, int height, int srcStep, int dstStep) {
  serialRows(height, [&](int y) {
    innerYUVToRGB_8u_P3R(rowPtr(pY, y, srcStep), rowPtr(pU, y, srcStep), rowPtr(pV, y, srcStep),
                         rowPtr(pR, y, dstStep), rowPtr(pG, y, dstStep), rowPtr(pB, y, dstStep), width);
  });
}
void myYUVToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                         int width, int height, int srcStep, int dstStep) {
  serialRows(height, [&](int y) {
    innerYUVToRGB_8u_P3C3R(rowPtr(pY, y, srcStep), rowPtr(pU, y, srcStep), rowPtr(pV, y, srcStep),
                           rowPtr(pDst, y, dstStep), width);
  });
}

// ===========================================================================
// Public functions: checks (P1 or P2), then one call.

LUM_PUBLIC LumStatus lumiRGBToYUV_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                         LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  myRGBToYUV_8u_C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiRGBToYUV_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                          int dstStep, LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  myRGBToYUV_8u_AC4R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiRGBToYUV_8u_P3R(const Lum8u* const pSrc[3], int srcStep,
                                         Lum8u* const pDst[3], int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3), arr(pDst, 3)});
  if (st != LumOk) return st;
  myRGBToYUV_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], roiSize.width,
                    roiSize.height, srcStep, dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiRGBToYUV_8u_C3P3R(const Lum8u* pSrc, int srcStep, Lum8u* const pDst[3],
                                           int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pDst, 3)});
  if (st != LumOk) return st;
  myRGBToYUV_8u_C3P3R(pSrc, pDst[0], pDst[1], pDst[2], roiSize.width, roiSize.height, srcStep,
                      dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYUVToRGB_8u_C3R(const Lum8u* pSrc, int srcStep, Lum8u* pDst, int dstStep,
                                         LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  myYUVToRGB_8u_C3R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYUVToRGB_8u_AC4R(const Lum8u* pSrc, int srcStep, Lum8u* pDst,
                                          int dstStep, LumSize roiSize) {
  const LumStatus st = checkP1({pSrc, pDst}, roiSize);
  if (st != LumOk) return st;
  myYUVToRGB_8u_AC4R(pSrc, pDst, roiSize.width, roiSize.height, srcStep, dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYUVToRGB_8u_P3R(const Lum8u* const pSrc[3], int srcStep,
                                         Lum8u* const pDst[3], int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3), arr(pDst, 3)});
  if (st != LumOk) return st;
  myYUVToRGB_8u_P3R(pSrc[0], pSrc[1], pSrc[2], pDst[0], pDst[1], pDst[2], roiSize.width,
                    roiSize.height, srcStep, dstStep);
  return LumOk;
}

LUM_PUBLIC LumStatus lumiYUVToRGB_8u_P3C3R(const Lum8u* const pSrc[3], int srcStep, Lum8u* pDst,
                                           int dstStep, LumSize roiSize) {
  const LumStatus st = checkP2({pSrc, pDst}, roiSize, {arr(pSrc, 3)});
  if (st != LumOk) return st;
  myYUVToRGB_8u_P3C3R(pSrc[0], pSrc[1], pSrc[2], pDst, roiSize.width, roiSize.height, srcStep,
                      dstStep);
  return LumOk;
}
