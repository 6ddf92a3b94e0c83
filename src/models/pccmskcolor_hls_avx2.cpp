// RGB and HLS: the main loops of the 32f C3 kernels in AVX2, eight pixels a
// float register.  Compiled with -mavx2 and entered only when the processor
// has AVX2; the caller finishes each row with its SSE2 loop and scalar forms.
//
// rgbToHls32fVec8 and hlsToRgbBlockVec8 are the eight-lane twins of
// rgbToHls32fVec and hlsToRgbBlockVec (pccmskcolor_hls.h): the same IEEE
// operations in the same order, lane by lane (vdivps rounds as divps does,
// vminps and vmaxps pass on their second operand as minps and maxps do, the
// comparisons are the same predicates), and the same masks, which blends
// apply bit for bit.  So the bits are those of the SSE2 forms.
//
// The forms of pccmskcolor_hls.h included here live in the AVX2 namespace of
// lum_simd.h, so none of them stands in for a copy of another unit.
#include <immintrin.h>

#include "models/pccmskcolor_hls.h"
#include "models/pccmskcolor_hls_blocks.h"

namespace {

using namespace lum;
using namespace lum::hls;

inline __m256 splat8(float v) { return _mm256_set1_ps(v); }
// mask ? a : b, the mask all ones or all zeros in each lane.
inline __m256 select8(__m256 mask, __m256 a, __m256 b) { return _mm256_blendv_ps(b, a, mask); }
// The predicates of cmpltps, cmpleps (signalling) and cmpeqps (quiet);
// a > b is b < a.
inline __m256 lt8(__m256 a, __m256 b) { return _mm256_cmp_ps(a, b, _CMP_LT_OS); }
inline __m256 gt8(__m256 a, __m256 b) { return _mm256_cmp_ps(b, a, _CMP_LT_OS); }
inline __m256 le8(__m256 a, __m256 b) { return _mm256_cmp_ps(a, b, _CMP_LE_OS); }
inline __m256 eq8(__m256 a, __m256 b) { return _mm256_cmp_ps(a, b, _CMP_EQ_OQ); }

// Eight-lane twin of rgbToHls32fVec.
struct Hls32f8 {
  __m256 H, L, S;
};
inline Hls32f8 rgbToHls32fVec8(__m256 R, __m256 G, __m256 B) {
  const __m256 V = _mm256_max_ps(_mm256_max_ps(R, G), B);
  const __m256 m = _mm256_min_ps(_mm256_min_ps(R, G), B);
  const __m256 d = _mm256_sub_ps(V, m);
  const __m256 s = _mm256_add_ps(m, V);
  const __m256 L = _mm256_mul_ps(splat8(0.5f), s);
  const __m256 colour = gt8(d, splat8(floatFromBits(kBitsGrey32f)));
  const __m256 den = _mm256_min_ps(s, _mm256_sub_ps(splat8(2.0f), s));
  const __m256 S = _mm256_and_ps(colour, _mm256_div_ps(d, den));
  const __m256 isR = eq8(R, V);
  const __m256 isG = eq8(G, V);  // counts only where R != V
  const __m256 diff = select8(isR, _mm256_sub_ps(G, B),
                              select8(isG, _mm256_sub_ps(B, R), _mm256_sub_ps(R, G)));
  const __m256 q = _mm256_div_ps(_mm256_mul_ps(diff, splat8(60.0f)), d);
  const __m256 off = select8(isG, splat8(120.0f), splat8(240.0f));
  __m256 h = select8(isR, q, _mm256_add_ps(q, off));
  h = select8(lt8(h, _mm256_setzero_ps()), _mm256_add_ps(h, splat8(360.0f)), h);
  h = _mm256_and_ps(colour, h);
  return Hls32f8{_mm256_div_ps(h, splat8(360.0f)), L, S};
}

// Eight-lane twins of hlsChannelBlockVec and hlsToRgbBlockVec.
inline __m256 hlsChannelBlockVec8(__m256 a, __m256 M1, __m256 M2g, __m256 dM, __m256 grey) {
  const __m256 t = _mm256_min_ps(a, _mm256_sub_ps(splat8(240.0f), a));
  const __m256 k = splat8(floatFromBits(kBitsInv60));
  const __m256 slope = _mm256_add_ps(_mm256_mul_ps(_mm256_mul_ps(t, k), dM), M1);
  const __m256 lt60 = lt8(a, splat8(60.0f));
  const __m256 flat = _mm256_or_ps(_mm256_andnot_ps(lt60, lt8(a, splat8(180.0f))), grey);
  return select8(flat, M2g, select8(lt8(a, splat8(240.0f)), slope, M1));
}
struct Rgb8 {
  __m256 R, G, B;
};
inline Rgb8 hlsToRgbBlockVec8(__m256 Hd, __m256 Lf, __m256 Sf) {
  const __m256 LS = _mm256_mul_ps(Lf, Sf);
  const __m256 M2 = select8(le8(Lf, splat8(0.5f)), _mm256_add_ps(Lf, LS),
                            _mm256_sub_ps(_mm256_add_ps(Lf, Sf), LS));
  const __m256 M1 = _mm256_sub_ps(_mm256_mul_ps(splat8(2.0f), Lf), M2);
  const __m256 dM = _mm256_sub_ps(M2, M1);
  const __m256 k360 = splat8(360.0f);
  __m256 aR = _mm256_add_ps(Hd, splat8(120.0f));
  aR = _mm256_sub_ps(aR, _mm256_and_ps(gt8(aR, k360), k360));
  __m256 aB = _mm256_sub_ps(Hd, splat8(120.0f));
  aB = _mm256_add_ps(aB, _mm256_and_ps(lt8(aB, _mm256_setzero_ps()), k360));
  const __m256 grey = eq8(Sf, _mm256_setzero_ps());
  const __m256 M2g = select8(grey, Lf, M2);
  return Rgb8{hlsChannelBlockVec8(aR, M1, M2g, dM, grey),
              hlsChannelBlockVec8(Hd, M1, M2g, dM, grey),
              hlsChannelBlockVec8(aB, M1, M2g, dM, grey)};
}

// Eight pixels of 3 floats (24 floats, read and written exactly): pixels
// 0-3 in the low 128-bit half of each register, 4-7 in the high half, so
// that the in-half shuffles of deinterleave3x4ps / interleave3x4ps sort both
// halves at once.
inline __m256 load2x4f(const Lum32f* lo, const Lum32f* hi) {
  return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(lo)), _mm_loadu_ps(hi), 1);
}
inline void load3x8f(const Lum32f* p, __m256 c[3]) {
  const __m256 a = load2x4f(p, p + 12), b = load2x4f(p + 4, p + 16), e = load2x4f(p + 8, p + 20);
  const __m256 x = _mm256_shuffle_ps(a, b, _MM_SHUFFLE(1, 0, 2, 1));
  const __m256 y = _mm256_shuffle_ps(b, e, _MM_SHUFFLE(2, 1, 3, 2));
  c[0] = _mm256_shuffle_ps(a, y, _MM_SHUFFLE(2, 0, 3, 0));
  c[1] = _mm256_shuffle_ps(x, y, _MM_SHUFFLE(3, 1, 2, 0));
  c[2] = _mm256_shuffle_ps(x, e, _MM_SHUFFLE(3, 0, 3, 1));
}
inline void store2x4f(Lum32f* lo, Lum32f* hi, __m256 v) {
  _mm_storeu_ps(lo, _mm256_castps256_ps128(v));
  _mm_storeu_ps(hi, _mm256_extractf128_ps(v, 1));
}
inline void store3x8f(Lum32f* p, __m256 s0, __m256 s1, __m256 s2) {
  const __m256 t0 = _mm256_shuffle_ps(s0, s1, _MM_SHUFFLE(2, 0, 2, 0));
  const __m256 t1 = _mm256_shuffle_ps(s2, s0, _MM_SHUFFLE(3, 1, 2, 0));
  const __m256 t2 = _mm256_shuffle_ps(s1, s2, _MM_SHUFFLE(3, 1, 3, 1));
  store2x4f(p, p + 12, _mm256_shuffle_ps(t0, t1, _MM_SHUFFLE(2, 0, 2, 0)));
  store2x4f(p + 4, p + 16, _mm256_shuffle_ps(t2, t0, _MM_SHUFFLE(3, 1, 2, 0)));
  store2x4f(p + 8, p + 20, _mm256_shuffle_ps(t1, t2, _MM_SHUFFLE(3, 1, 3, 1)));
}

// A 32f C3 block loop, 8 pixels a round: step(three channel registers) gives
// the three output registers.
template <class Step>
inline int block32fC3(const Lum32f* pSrc, Lum32f* pDst, int end, Step step) {
  int x = 0;
  for (; x + 8 <= end; x += 8) {
    hlsblocks::prefetchAhead(pSrc + 3 * x);
    hlsblocks::prefetchAhead(pSrc + 3 * x + 12);
    __m256 c[3], o[3];
    load3x8f(pSrc + 3 * x, c);
    step(c, o);
    store3x8f(pDst + 3 * x, o[0], o[1], o[2]);
  }
  return x;
}

}  // namespace

int blockRGBToHLS_32f_C3_avx2(const Lum32f* pSrc, Lum32f* pDst, int end) {
  return block32fC3(pSrc, pDst, end, [](const __m256* c, __m256* o) {
    const Hls32f8 r = rgbToHls32fVec8(c[0], c[1], c[2]);
    o[0] = r.H;
    o[1] = r.L;
    o[2] = r.S;
  });
}
int blockHLSToRGB_32f_C3_avx2(const Lum32f* pSrc, Lum32f* pDst, int end) {
  return block32fC3(pSrc, pDst, end, [](const __m256* c, __m256* o) {
    const Rgb8 r = hlsToRgbBlockVec8(_mm256_mul_ps(c[0], splat8(360.0f)), c[1], c[2]);
    o[0] = r.R;
    o[1] = r.G;
    o[2] = r.B;
  });
}
