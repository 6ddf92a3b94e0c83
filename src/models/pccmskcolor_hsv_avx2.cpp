// RGB and HSV: the main loops in AVX2, eight pixels a float register.
// Compiled with -mavx2 and entered only when the call's level is AVX2 or
// more; the caller finishes each row with the narrower loops and the scalar
// tail.
//
// The arithmetic is rgbToHsvLanes and hsvToRgbLanes of pccmskcolor_hsv.h,
// the formulas of the SSE2 loop, instantiated here on eight lanes: the same
// operations in the same order, lane by lane, so the bytes are the same.
// What is this unit's own is how pixels reach the lanes and leave them: the
// 256-bit packs work per 128-bit half, and the loads place the pixels so
// that each half packs into pixel order.
//
// Everything from the headers lives in the AVX2 instruction-set namespace,
// and nothing here but the entry points has external linkage.
#include <immintrin.h>

#include "models/pccmskcolor_hsv.h"

using namespace lum;
using namespace lum::hsv;

namespace {

// The main loop's formulas of pccmskcolor_hsv.h at eight float lanes.
template <class T>
constexpr auto rgbToHsvBlockVec8 = rgbToHsvRegs<T, F32x8>;
template <class T>
constexpr auto hsvToRgbBlockVec8 = hsvToRgbRegs<T, F32x8>;

using Vec8Fn = void (*)(__m256, __m256, __m256, __m256i&, __m256i&, __m256i&);

// ---------------------------------------------------------------------------
// Packs, per 128-bit half, as in the SSE2 main loops.
// 8u: packssdw then packuswb.
inline __m256i packSat8u8(__m256i a, __m256i b, __m256i c, __m256i d) {
  return _mm256_packus_epi16(_mm256_packs_epi32(a, b), _mm256_packs_epi32(c, d));
}
// 16u forward: subtract 32768, packssdw, add 32768 back (clamps to 0..65535).
inline __m256i packS32U16x8(__m256i lo, __m256i hi) {
  const __m256i bias32 = _mm256_set1_epi32(32768);
  const __m256i bias16 = _mm256_set1_epi16(static_cast<short>(0x8000));
  return _mm256_add_epi16(
      _mm256_packs_epi32(_mm256_sub_epi32(lo, bias32), _mm256_sub_epi32(hi, bias32)), bias16);
}
// 16u inverse: the low 16 bits of each lane.
inline __m256i packLow16x8(__m256i lo, __m256i hi) {
  return _mm256_packs_epi32(_mm256_srai_epi32(_mm256_slli_epi32(lo, 16), 16),
                            _mm256_srai_epi32(_mm256_slli_epi32(hi, 16), 16));
}
using Pack16x8Fn = __m256i (*)(__m256i, __m256i);

// ---------------------------------------------------------------------------
// 3-sample pixels, 96 bytes a round: each register holds 16 bytes of the
// first 48 in its low half and the matching 16 of the second 48 in its high
// half, so both halves see the same byte layout and one set of byte
// shuffles serves both.
//
// Gather (ES bytes a sample): the 32-bit lanes of group g of channel k hold,
// zero-extended, sample k of pixels 4g..4g+3 of the half; the mask for
// source register j takes the bytes that lie in it.  Scatter: output
// register j takes from the packed channel registers (pixel order, ES bytes
// a sample) the bytes that belong in it.  0x80 clears a byte.
template <int ES>
struct Masks3 {
  alignas(32) uint8_t gather[3][4][3][32];       // [channel][group][source register]
  alignas(32) uint8_t scatter[3][3][32];         // [output register][channel]
};
template <int ES>
constexpr Masks3<ES> makeMasks3() {
  Masks3<ES> s{};
  for (int k = 0; k < 3; ++k)
    for (int g = 0; g < 4; ++g)
      for (int j = 0; j < 3; ++j)
        for (int pos = 0; pos < 32; ++pos) {
          const int pixel = 4 * g + (pos % 16) / 4, byteInLane = pos % 4;
          const int src = ES * (3 * pixel + k) + byteInLane;
          s.gather[k][g][j][pos] =
              byteInLane < ES && src / 16 == j ? static_cast<uint8_t>(src % 16) : 0x80;
        }
  for (int j = 0; j < 3; ++j)
    for (int k = 0; k < 3; ++k)
      for (int pos = 0; pos < 32; ++pos) {
        const int byte = 16 * j + pos % 16;
        const int sample = byte / ES;
        s.scatter[j][k][pos] = sample % 3 == k
                                   ? static_cast<uint8_t>(ES * (sample / 3) + byte % ES)
                                   : 0x80;
      }
  return s;
}
template <int ES>
constexpr Masks3<ES> kMasks3 = makeMasks3<ES>();

inline __m256i mask256(const uint8_t* m) {
  return _mm256_load_si256(reinterpret_cast<const __m256i*>(m));
}

// Source registers of group g, channel k: the first and the last (at most
// one apart).
template <int ES>
constexpr int firstReg(int k, int g) { return ES * (12 * g + k) / 16; }
template <int ES>
constexpr int lastReg(int k, int g) { return (ES * (12 * g + 9 + k) + ES - 1) / 16; }

template <int ES, int k, int g>
inline __m256 gatherGroup(const __m256i v[3]) {
  const Masks3<ES>& M = kMasks3<ES>;
  constexpr int a = firstReg<ES>(k, g), b = lastReg<ES>(k, g);
  static_assert(b - a <= 1, "a group spans at most two registers");
  __m256i r = _mm256_shuffle_epi8(v[a], mask256(M.gather[k][g][a]));
  if constexpr (b != a) r = _mm256_or_si256(r, _mm256_shuffle_epi8(v[b], mask256(M.gather[k][g][b])));
  return _mm256_cvtepi32_ps(r);
}

template <class E>
inline void load3Halves(const E* p, __m256i v[3]) {  // p: 96 bytes
  const uint8_t* b = reinterpret_cast<const uint8_t*>(p);
  for (int j = 0; j < 3; ++j)
    v[j] = _mm256_inserti128_si256(_mm256_castsi128_si256(loadu(b + 16 * j)), loadu(b + 48 + 16 * j), 1);
}
template <int ES, class E>
inline void scatterStore3(const __m256i c[3], E* p) {  // p: 96 bytes
  const Masks3<ES>& M = kMasks3<ES>;
  uint8_t* b = reinterpret_cast<uint8_t*>(p);
  for (int j = 0; j < 3; ++j) {
    const __m256i o = _mm256_or_si256(
        _mm256_or_si256(_mm256_shuffle_epi8(c[0], mask256(M.scatter[j][0])),
                        _mm256_shuffle_epi8(c[1], mask256(M.scatter[j][1]))),
        _mm256_shuffle_epi8(c[2], mask256(M.scatter[j][2])));
    storeu(b + 16 * j, _mm256_castsi256_si128(o));
    storeu(b + 48 + 16 * j, _mm256_extracti128_si256(o, 1));
  }
}

// ---------------------------------------------------------------------------
// 8u C3: 32 pixels a round.  Group g of a half is pixels 4g..4g+3 of it, so
// the packs of groups 0-3 give each half's 16 pixels in order.
template <Vec8Fn fn>
int block8uC3(const Lum8u* s, Lum8u* d, int end) {
  int x = 0;
  for (; x + 32 <= end; x += 32) {
    __m256i v[3], o[3][4], c[3];
    load3Halves(s + 3 * x, v);
    fn(gatherGroup<1, 0, 0>(v), gatherGroup<1, 1, 0>(v), gatherGroup<1, 2, 0>(v), o[0][0], o[1][0], o[2][0]);
    fn(gatherGroup<1, 0, 1>(v), gatherGroup<1, 1, 1>(v), gatherGroup<1, 2, 1>(v), o[0][1], o[1][1], o[2][1]);
    fn(gatherGroup<1, 0, 2>(v), gatherGroup<1, 1, 2>(v), gatherGroup<1, 2, 2>(v), o[0][2], o[1][2], o[2][2]);
    fn(gatherGroup<1, 0, 3>(v), gatherGroup<1, 1, 3>(v), gatherGroup<1, 2, 3>(v), o[0][3], o[1][3], o[2][3]);
    for (int k = 0; k < 3; ++k) c[k] = packSat8u8(o[k][0], o[k][1], o[k][2], o[k][3]);
    scatterStore3<1>(c, d + 3 * x);
  }
  return x;
}

// 16u C3: 16 pixels a round, eight a half in two groups.
template <Vec8Fn fn, Pack16x8Fn pack>
int block16uC3(const Lum16u* s, Lum16u* d, int end) {
  int x = 0;
  for (; x + 16 <= end; x += 16) {
    __m256i v[3], o[3][2], c[3];
    load3Halves(s + 3 * x, v);
    fn(gatherGroup<2, 0, 0>(v), gatherGroup<2, 1, 0>(v), gatherGroup<2, 2, 0>(v), o[0][0], o[1][0], o[2][0]);
    fn(gatherGroup<2, 0, 1>(v), gatherGroup<2, 1, 1>(v), gatherGroup<2, 2, 1>(v), o[0][1], o[1][1], o[2][1]);
    for (int k = 0; k < 3; ++k) c[k] = pack(o[k][0], o[k][1]);
    scatterStore3<2>(c, d + 3 * x);
  }
  return x;
}

// 8u AC4: eight pixels a round (pixels 0-3 in the low half, 4-7 in the
// high one); each pixel's colour goes out as a 16-bit and an 8-bit store
// around the alpha byte, which is not written.
template <Vec8Fn fn>
int block8uAC4(const Lum8u* s, Lum8u* d, int end) {
  const __m256i lowByte = _mm256_set1_epi32(0xFF);
  // Each half: a0 b0 a1 b1 a2 b2 a3 b3, then c0 c1 c2 c3.
  const __m256i order = _mm256_setr_epi8(0, 4, 1, 5, 2, 6, 3, 7, 8, 9, 10, 11, -128, -128, -128, -128,
                                         0, 4, 1, 5, 2, 6, 3, 7, 8, 9, 10, 11, -128, -128, -128, -128);
  int x = 0;
  for (; x + 8 <= end; x += 8) {
    const __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 4 * x));
    const __m256 R = _mm256_cvtepi32_ps(_mm256_and_si256(v, lowByte));
    const __m256 G = _mm256_cvtepi32_ps(_mm256_and_si256(_mm256_srli_epi32(v, 8), lowByte));
    const __m256 B = _mm256_cvtepi32_ps(_mm256_and_si256(_mm256_srli_epi32(v, 16), lowByte));
    __m256i a, b, c;
    fn(R, G, B, a, b, c);
    const __m256i bytes = _mm256_shuffle_epi8(packSat8u8(a, b, c, c), order);
    alignas(32) Lum8u t[32];
    _mm256_store_si256(reinterpret_cast<__m256i*>(t), bytes);
    Lum8u* q = d + 4 * x;
    for (int j = 0; j < 8; ++j) {
      const Lum8u* h = t + 16 * (j >> 2);
      memcpy(q + 4 * j, h + 2 * (j & 3), 2);
      q[4 * j + 2] = h[8 + (j & 3)];
    }
  }
  return x;
}

// 16u AC4: eight pixels a round, pixels 0-3 in the low halves and 4-7 in the
// high ones, each half unpacked as in the SSE2 loop; each pixel's colour goes
// out as a 32-bit and a 16-bit store around the alpha word.
template <Vec8Fn fn, Pack16x8Fn pack>
int block16uAC4(const Lum16u* s, Lum16u* d, int end) {
  const __m256i z = _mm256_setzero_si256();
  int x = 0;
  for (; x + 8 <= end; x += 8) {
    const Lum16u* p = s + 4 * x;
    const __m256i v0 = _mm256_inserti128_si256(_mm256_castsi128_si256(loadu(p)), loadu(p + 16), 1);
    const __m256i v1 = _mm256_inserti128_si256(_mm256_castsi128_si256(loadu(p + 8)), loadu(p + 24), 1);
    const __m256i a = _mm256_unpacklo_epi16(v0, v1);
    const __m256i b = _mm256_unpackhi_epi16(v0, v1);
    const __m256i rg = _mm256_unpacklo_epi16(a, b);  // R0 R1 R2 R3 G0 G1 G2 G3 (a half)
    const __m256i ba = _mm256_unpackhi_epi16(a, b);  // B0 B1 B2 B3 A0 A1 A2 A3
    __m256i c0, c1, c2;
    fn(_mm256_cvtepi32_ps(_mm256_unpacklo_epi16(rg, z)), _mm256_cvtepi32_ps(_mm256_unpackhi_epi16(rg, z)),
       _mm256_cvtepi32_ps(_mm256_unpacklo_epi16(ba, z)), c0, c1, c2);
    const __m256i w01 = pack(c0, c1);
    const __m256i w2 = pack(c2, c2);
    const __m256i pairs = _mm256_unpacklo_epi16(w01, _mm256_srli_si256(w01, 8));
    alignas(32) uint32_t pr[8];
    alignas(32) Lum16u t2[16];
    _mm256_store_si256(reinterpret_cast<__m256i*>(pr), pairs);
    _mm256_store_si256(reinterpret_cast<__m256i*>(t2), w2);
    Lum16u* q = d + 4 * x;
    for (int j = 0; j < 8; ++j) {
      memcpy(q + 4 * j, &pr[j], 4);
      q[4 * j + 2] = t2[8 * (j >> 2) + (j & 3)];
    }
  }
  return x;
}

}  // namespace

namespace lum {
namespace hsv {

// ===========================================================================
// Entry points: pixels [0, n) of a row, n the largest multiple of the round
// not above end; each returns n.

int blockRGBToHSV_8u_C3_avx2(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return block8uC3<rgbToHsvBlockVec8<Hsv8u>>(pSrc, pDst, end);
}
int blockHSVToRGB_8u_C3_avx2(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return block8uC3<hsvToRgbBlockVec8<Hsv8u>>(pSrc, pDst, end);
}
int blockRGBToHSV_8u_AC4_avx2(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return block8uAC4<rgbToHsvBlockVec8<Hsv8u>>(pSrc, pDst, end);
}
int blockHSVToRGB_8u_AC4_avx2(const Lum8u* pSrc, Lum8u* pDst, int end) {
  return block8uAC4<hsvToRgbBlockVec8<Hsv8u>>(pSrc, pDst, end);
}
int blockRGBToHSV_16u_C3_avx2(const Lum16u* pSrc, Lum16u* pDst, int end) {
  return block16uC3<rgbToHsvBlockVec8<Hsv16u>, packS32U16x8>(pSrc, pDst, end);
}
int blockHSVToRGB_16u_C3_avx2(const Lum16u* pSrc, Lum16u* pDst, int end) {
  return block16uC3<hsvToRgbBlockVec8<Hsv16u>, packLow16x8>(pSrc, pDst, end);
}
int blockRGBToHSV_16u_AC4_avx2(const Lum16u* pSrc, Lum16u* pDst, int end) {
  return block16uAC4<rgbToHsvBlockVec8<Hsv16u>, packS32U16x8>(pSrc, pDst, end);
}
int blockHSVToRGB_16u_AC4_avx2(const Lum16u* pSrc, Lum16u* pDst, int end) {
  return block16uAC4<hsvToRgbBlockVec8<Hsv16u>, packLow16x8>(pSrc, pDst, end);
}

}  // namespace hsv
}  // namespace lum
