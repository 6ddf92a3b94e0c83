// RGB and HSV: public functions, row drivers and one-row kernels.
//
// Every kernel runs its SSE2 main loop over the first (width & ~3) pixels of
// the row, four pixels a round in 32-bit float lanes, and its scalar tail
// over the rest.  The main loop and the tail differ on purpose (see
// pccmskcolor_hsv.h, where both scalar forms stand):
//   - black and grey are branches in the tail, masks in the main loop;
//   - a tie between two maximal channels is broken differently;
//   - 8u: the main loop truncates and saturates, the tail rounds in the mode
//     in force and stores the low 8 bits;
//   - 16u: both round; the forward main loop clamps to 0..65535, the inverse
//     main loop and the tails store the low 16 bits.
// No kernel divides: 8u takes the approximate reciprocal as it stands, 16u
// refines it with one Newton step.
//
// Where a loop takes 32, 16 or 8 pixels a round it runs the four-pixel round's
// arithmetic on each group of four lanes: the formula is per pixel, so only
// the boundary between main loop and tail matters.  The same holds for the
// AVX2 loops (pccmskcolor_hsv_avx2.cpp), which run the same arithmetic on
// eight lanes over the first part of the main loop when the processor has
// AVX2, and hand the rest of it to the loops below.
#include "models/pccmskcolor_hsv.h"

#include "frame/lum_frame.h"
#include "frame/lum_row.h"
#include "frame/lum_simd.h"

using namespace lum;
using namespace lum::hsv;

namespace {

// ---------------------------------------------------------------------------
// Packs of the main loops, four 32-bit lanes of each of a, b, c.
// 8u: packssdw then packuswb; bytes a0..a3 b0..b3 c0..c3 in the low 12.
inline __m128i packSat8u(__m128i a, __m128i b, __m128i c) {
  return vPackS16U8(vPackS32S16(a, b), vPackS32S16(c, c));
}
// Low 16 bits of each 32-bit lane, without saturation.
inline __m128i packLow16(__m128i lo, __m128i hi) {
  return _mm_packs_epi32(_mm_srai_epi32(_mm_slli_epi32(lo, 16), 16),
                         _mm_srai_epi32(_mm_slli_epi32(hi, 16), 16));
}

inline __m128 u16LanesToFloat(__m128i v, int half) {  // words 4h..4h+3 of v
  const __m128i z = _mm_setzero_si128();
  return _mm_cvtepi32_ps(half ? _mm_unpackhi_epi16(v, z) : _mm_unpacklo_epi16(v, z));
}
template <class E>
inline __m128 gather4(const E* p, int stride) {  // sample 0 of four pixels
  return _mm_cvtepi32_ps(_mm_setr_epi32(p[0], p[stride], p[2 * stride], p[3 * stride]));
}

// C3: 32 pixels a round in AVX2; 16 pixels a round by SSSE3 shuffles, or
// else 32 and then 16 a round through the SSE2 riffle network; then four at
// a time.
using Avx8uFn = int (*)(const Lum8u*, Lum8u*, int);
using Ssse3Fn = int (*)(const Lum8u*, Lum8u*, int, int);
template <Vec8uFn fn, void (*tail)(int, int, int, Lum8u*), Avx8uFn avx2, Ssse3Fn ssse3>
inline void kernel8uC3(const Lum8u* s, Lum8u* d, int width, Isa isa) {
  walkRow<kBlock>(PixC3<const Lum8u>{s}, PixC3<Lum8u>{d}, width, [&](int block) {
    int x = 0;
    if (isa >= kIsaAvx2) x = avx2(s, d, block);
    if (isa >= kIsaSsse3) {
      x = ssse3(s, d, x, block);
    } else {
      for (; x + 32 <= block; x += 32) {
        const Planes8x32 in = deinterleave3x32(s + 3 * x);
        Planes8x32 out;
        for (int h = 0; h < 2; ++h) {
          const __m128i i3[3] = {in.c[0][h], in.c[1][h], in.c[2][h]};
          __m128i o3[3];
          block16x8u<fn>(i3, o3);
          for (int k = 0; k < 3; ++k) out.c[k][h] = o3[k];
        }
        interleave3x32(out, d + 3 * x);
      }
      for (; x + 16 <= block; x += 16) {
        __m128i in[3], out[3];
        deinterleave3x16(s + 3 * x, in);
        block16x8u<fn>(in, out);
        interleave3x16(out, d + 3 * x);
      }
    }
    for (; x < block; x += 4) {
      const Lum8u* p = s + 3 * x;
      __m128i a, b, c;
      fn(gather4(p, 3), gather4(p + 1, 3), gather4(p + 2, 3), a, b, c);
      alignas(16) Lum8u o[16];
      storeu(o, packSat8u(a, b, c));
      Lum8u* q = d + 3 * x;
      for (int j = 0; j < 4; ++j) {
        q[3 * j] = o[j];
        q[3 * j + 1] = o[4 + j];
        q[3 * j + 2] = o[8 + j];
      }
    }
    return x;
  }, tail);
}

// AC4: one 16-byte load of four pixels a round; each pixel's colour goes out
// as a 16-bit and an 8-bit store around the alpha byte, which is neither
// read from the source's meaning nor written.
template <Vec8uFn fn, void (*tail)(int, int, int, Lum8u*), Avx8uFn avx2>
inline void kernel8uAC4(const Lum8u* s, Lum8u* d, int width, Isa isa) {
  const __m128i lowByte = _mm_set1_epi32(0xFF);
  walkRow<kBlock>(PixAC4<const Lum8u>{s}, PixAC4<Lum8u>{d}, width, [&](int block) {
    int x = 0;
    if (isa >= kIsaAvx2) x = avx2(s, d, block);
    for (; x < block; x += 4) {
      const __m128i v = loadu(s + 4 * x);
      const __m128 R = _mm_cvtepi32_ps(_mm_and_si128(v, lowByte));
      const __m128 G = _mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(v, 8), lowByte));
      const __m128 B = _mm_cvtepi32_ps(_mm_and_si128(_mm_srli_epi32(v, 16), lowByte));
      __m128i a, b, c;
      fn(R, G, B, a, b, c);
      const __m128i bytes = packSat8u(a, b, c);                              // a0..3 b0..3 c0..3
      const __m128i ab = _mm_unpacklo_epi8(bytes, _mm_srli_si128(bytes, 4));  // a0 b0 a1 b1 ...
      const uint32_t cs = static_cast<uint32_t>(_mm_cvtsi128_si32(_mm_srli_si128(bytes, 8)));
      Lum8u* q = d + 4 * x;
      const uint16_t w0 = static_cast<uint16_t>(_mm_extract_epi16(ab, 0));
      const uint16_t w1 = static_cast<uint16_t>(_mm_extract_epi16(ab, 1));
      const uint16_t w2 = static_cast<uint16_t>(_mm_extract_epi16(ab, 2));
      const uint16_t w3 = static_cast<uint16_t>(_mm_extract_epi16(ab, 3));
      memcpy(q, &w0, 2);
      memcpy(q + 4, &w1, 2);
      memcpy(q + 8, &w2, 2);
      memcpy(q + 12, &w3, 2);
      q[2] = static_cast<Lum8u>(cs);
      q[6] = static_cast<Lum8u>(cs >> 8);
      q[10] = static_cast<Lum8u>(cs >> 16);
      q[14] = static_cast<Lum8u>(cs >> 24);
    }
    return x;
  }, tail);
}

// ---------------------------------------------------------------------------
// 16u kernels.  pack is the main loop's 32 -> 16 bit pack: vPackS32U16 for
// the forward (clamps), packLow16 for the inverse (low bits).
using Vec16uFn = Vec8uFn;
using Pack16Fn = __m128i (*)(__m128i, __m128i);
using Avx16uFn = int (*)(const Lum16u*, Lum16u*, int);

// C3: 16 pixels a round in AVX2, or through the word riffle network (four
// riffles of six registers put channel k, pixels 8h..8h+7, in v[2k + h]),
// then 8, then four at a time.
template <Vec16uFn fn, Pack16Fn pack, void (*tail)(int, int, int, Lum16u*), Avx16uFn avx2>
inline void kernel16uC3(const Lum16u* s, Lum16u* d, int width, Isa isa) {
  walkRow<kBlock>(PixC3<const Lum16u>{s}, PixC3<Lum16u>{d}, width, [&](int block) {
    int x = 0;
    if (isa >= kIsaAvx2) x = avx2(s, d, block);
    for (; x + 16 <= block; x += 16) {
      const Lum16u* p = s + 3 * x;
      __m128i v[6] = {loadu(p), loadu(p + 8), loadu(p + 16), loadu(p + 24), loadu(p + 32), loadu(p + 40)};
      for (int i = 0; i < 4; ++i) riffle16(v);
      for (int h = 0; h < 2; ++h) {
        __m128i o[3][2];
        for (int q = 0; q < 2; ++q)
          fn(u16LanesToFloat(v[h], q), u16LanesToFloat(v[2 + h], q), u16LanesToFloat(v[4 + h], q),
             o[0][q], o[1][q], o[2][q]);
        for (int k = 0; k < 3; ++k) v[2 * k + h] = pack(o[k][0], o[k][1]);
      }
      for (int i = 0; i < 4; ++i) unriffle16(v);
      Lum16u* o = d + 3 * x;
      for (int i = 0; i < 6; ++i) storeu(o + 8 * i, v[i]);
    }
    for (; x + 8 <= block; x += 8) {
      __m128i in[3], out[3], o[3][2];
      deinterleave3x8w(s + 3 * x, in);
      for (int h = 0; h < 2; ++h)
        fn(u16LanesToFloat(in[0], h), u16LanesToFloat(in[1], h), u16LanesToFloat(in[2], h), o[0][h],
           o[1][h], o[2][h]);
      for (int k = 0; k < 3; ++k) out[k] = pack(o[k][0], o[k][1]);
      interleave3x8w(out, d + 3 * x);
    }
    for (; x < block; x += 4) {
      const Lum16u* p = s + 3 * x;
      __m128i a, b, c;
      fn(gather4(p, 3), gather4(p + 1, 3), gather4(p + 2, 3), a, b, c);
      alignas(16) Lum16u o[16];
      storeu(o, pack(a, b));
      storeu(o + 8, pack(c, c));
      Lum16u* q = d + 3 * x;
      for (int j = 0; j < 4; ++j) {
        q[3 * j] = o[j];
        q[3 * j + 1] = o[4 + j];
        q[3 * j + 2] = o[8 + j];
      }
    }
    return x;
  }, tail);
}

// AC4: two 16-byte loads of four pixels a round; each pixel's colour goes out
// as a 32-bit and a 16-bit store around the alpha word, which is not written.
template <Vec16uFn fn, Pack16Fn pack, void (*tail)(int, int, int, Lum16u*), Avx16uFn avx2>
inline void kernel16uAC4(const Lum16u* s, Lum16u* d, int width, Isa isa) {
  walkRow<kBlock>(PixAC4<const Lum16u>{s}, PixAC4<Lum16u>{d}, width, [&](int block) {
    int x = 0;
    if (isa >= kIsaAvx2) x = avx2(s, d, block);
    for (; x < block; x += 4) {
      const __m128i v0 = loadu(s + 4 * x);      // R0 G0 B0 A0 R1 G1 B1 A1
      const __m128i v1 = loadu(s + 4 * x + 8);  // R2 G2 B2 A2 R3 G3 B3 A3
      const __m128i a = _mm_unpacklo_epi16(v0, v1);  // R0 R2 G0 G2 B0 B2 A0 A2
      const __m128i b = _mm_unpackhi_epi16(v0, v1);  // R1 R3 G1 G3 B1 B3 A1 A3
      const __m128i rg = _mm_unpacklo_epi16(a, b);   // R0 R1 R2 R3 G0 G1 G2 G3
      const __m128i ba = _mm_unpackhi_epi16(a, b);   // B0 B1 B2 B3 A0 A1 A2 A3
      __m128i c0, c1, c2;
      fn(u16LanesToFloat(rg, 0), u16LanesToFloat(rg, 1), u16LanesToFloat(ba, 0), c0, c1, c2);
      const __m128i w01 = pack(c0, c1);                                     // c0 0..3, c1 0..3
      const __m128i w2 = pack(c2, c2);                                      // c2 0..3
      const __m128i pairs = _mm_unpacklo_epi16(w01, _mm_srli_si128(w01, 8));  // (c0 c1) per pixel
      Lum16u* q = d + 4 * x;
      alignas(16) uint32_t pr[4];
      _mm_store_si128(reinterpret_cast<__m128i*>(pr), pairs);
      for (int j = 0; j < 4; ++j) memcpy(q + 4 * j, &pr[j], 4);
      q[2] = static_cast<Lum16u>(_mm_extract_epi16(w2, 0));
      q[6] = static_cast<Lum16u>(_mm_extract_epi16(w2, 1));
      q[10] = static_cast<Lum16u>(_mm_extract_epi16(w2, 2));
      q[14] = static_cast<Lum16u>(_mm_extract_epi16(w2, 3));
    }
    return x;
  }, tail);
}

}  // namespace

namespace lum {
namespace hsv {

// ===========================================================================
// One-row kernels.  The C3R kernels test nchannels first and hand four-sample
// rows to their AC4R twin, which carries the same arithmetic.  isa is the
// call's instruction-set level.

void innerRGBToHSV_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  kernel8uAC4<rgbToHsvBlockVec<Hsv8u>, rgbToHsvTail<Hsv8u>, blockRGBToHSV_8u_AC4_avx2>(
      pSrc, pDst, width, isa);
}
void innerRGBToHSV_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int nchannels, Isa isa) {
  if (nchannels == 4) return innerRGBToHSV_8u_AC4R(pSrc, pDst, width, isa);
  kernel8uC3<rgbToHsvBlockVec<Hsv8u>, rgbToHsvTail<Hsv8u>, blockRGBToHSV_8u_C3_avx2,
             blockRGBToHSV_8u_C3_ssse3>(pSrc, pDst, width, isa);
}
void innerHSVToRGB_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa) {
  kernel8uAC4<hsvToRgbBlockVec<Hsv8u>, hsvToRgbTail<Hsv8u>, blockHSVToRGB_8u_AC4_avx2>(
      pSrc, pDst, width, isa);
}
void innerHSVToRGB_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, int nchannels, Isa isa) {
  if (nchannels == 4) return innerHSVToRGB_8u_AC4R(pSrc, pDst, width, isa);
  kernel8uC3<hsvToRgbBlockVec<Hsv8u>, hsvToRgbTail<Hsv8u>, blockHSVToRGB_8u_C3_avx2,
             blockHSVToRGB_8u_C3_ssse3>(pSrc, pDst, width, isa);
}
void innerRGBToHSV_16u_AC4R(const Lum16u* pSrc, Lum16u* pDst, int width, Isa isa) {
  kernel16uAC4<rgbToHsvBlockVec<Hsv16u>, vPackS32U16, rgbToHsvTail<Hsv16u>,
               blockRGBToHSV_16u_AC4_avx2>(pSrc, pDst, width, isa);
}
void innerRGBToHSV_16u_C3R(const Lum16u* pSrc, Lum16u* pDst, int width, int nchannels, Isa isa) {
  if (nchannels == 4) return innerRGBToHSV_16u_AC4R(pSrc, pDst, width, isa);
  kernel16uC3<rgbToHsvBlockVec<Hsv16u>, vPackS32U16, rgbToHsvTail<Hsv16u>,
              blockRGBToHSV_16u_C3_avx2>(pSrc, pDst, width, isa);
}
void innerHSVToRGB_16u_AC4R(const Lum16u* pSrc, Lum16u* pDst, int width, Isa isa) {
  kernel16uAC4<hsvToRgbBlockVec<Hsv16u>, packLow16, hsvToRgbTail<Hsv16u>,
               blockHSVToRGB_16u_AC4_avx2>(pSrc, pDst, width, isa);
}
void innerHSVToRGB_16u_C3R(const Lum16u* pSrc, Lum16u* pDst, int width, int nchannels, Isa isa) {
  if (nchannels == 4) return innerHSVToRGB_16u_AC4R(pSrc, pDst, width, isa);
  kernel16uC3<hsvToRgbBlockVec<Hsv16u>, packLow16, hsvToRgbTail<Hsv16u>,
              blockHSVToRGB_16u_C3_avx2>(pSrc, pDst, width, isa);
}

// ===========================================================================
// Row drivers (group 1): serial below 4097 pixels, a static parallel loop
// over rows otherwise.  8u steps are bytes, 16u steps elements.

LUM_MODEL_DRIVER_GROUP1(myRGBToHSV_8u_C3R, Lum8u, innerRGBToHSV_8u_C3R)
LUM_MODEL_DRIVER_GROUP1(myHSVToRGB_8u_C3R, Lum8u, innerHSVToRGB_8u_C3R)
LUM_MODEL_DRIVER_GROUP1(myRGBToHSV_16u_C3R, Lum16u, innerRGBToHSV_16u_C3R)
LUM_MODEL_DRIVER_GROUP1(myHSVToRGB_16u_C3R, Lum16u, innerHSVToRGB_16u_C3R)

}  // namespace hsv
}  // namespace lum

// ===========================================================================
// Public functions: pattern P1 (pointers, then size), then one call.  The
// 16u members give the driver their steps in elements.

LUM_MODEL_PUBLIC_P1(lumiRGBToHSV_8u_C3R, Lum8u, myRGBToHSV_8u_C3R, 0, 3)
LUM_MODEL_PUBLIC_P1(lumiHSVToRGB_8u_C3R, Lum8u, myHSVToRGB_8u_C3R, 0, 3)
LUM_MODEL_PUBLIC_P1(lumiRGBToHSV_8u_AC4R, Lum8u, myRGBToHSV_8u_C3R, 0, 4)
LUM_MODEL_PUBLIC_P1(lumiHSVToRGB_8u_AC4R, Lum8u, myHSVToRGB_8u_C3R, 0, 4)
LUM_MODEL_PUBLIC_P1(lumiRGBToHSV_16u_C3R, Lum16u, myRGBToHSV_16u_C3R, 1, 3)
LUM_MODEL_PUBLIC_P1(lumiHSVToRGB_16u_C3R, Lum16u, myHSVToRGB_16u_C3R, 1, 3)
LUM_MODEL_PUBLIC_P1(lumiRGBToHSV_16u_AC4R, Lum16u, myRGBToHSV_16u_C3R, 1, 4)
LUM_MODEL_PUBLIC_P1(lumiHSVToRGB_16u_AC4R, Lum16u, myHSVToRGB_16u_C3R, 1, 4)
