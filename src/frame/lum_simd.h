// Shared arithmetic of the kernels, each in its scalar form and its SSE2 form:
// saturations, high-half multiplies, the approximate reciprocal with and
// without its Newton step, float-to-integer conversions, and the
// (de)interleave networks for 3- and 4-sample pixels.
#ifndef LUM_SIMD_H
#define LUM_SIMD_H

#include <emmintrin.h>
#if defined(__SSSE3__)
#include <tmmintrin.h>
#endif
#include <stdint.h>
#include <string.h>

// The helpers live in an inline namespace named after the instruction set the
// translation unit is compiled for, so that a unit built for a wider set
// (the SSSE3 or AVX2 variants) never lends its copies to the others.
#if defined(__AVX512BW__)
#define LUM_ISA_NS isa_avx512
#elif defined(__AVX2__)
#define LUM_ISA_NS isa_avx2
#elif defined(__SSSE3__)
#define LUM_ISA_NS isa_ssse3
#else
#define LUM_ISA_NS isa_sse2
#endif

namespace lum {
inline namespace LUM_ISA_NS {

// ---------------------------------------------------------------------------
// Scalar saturations.
inline int sat8u(int v) { return v < 0 ? 0 : (v > 255 ? 255 : v); }
inline int sat16u(int v) { return v < 0 ? 0 : (v > 65535 ? 65535 : v); }
inline int sat16s(int v) { return v < -32768 ? -32768 : (v > 32767 ? 32767 : v); }

// High half of a 16x16-bit product: (a * b) >> 16.  Hs is the signed form
// (pmulhw), Hu the unsigned one (pmulhuw).
inline int Hs(int a, int b) { return (a * b) >> 16; }
inline int Hu(unsigned a, unsigned b) { return static_cast<int>((a * b) >> 16); }

// Vector forms of the same.
inline __m128i vHs(__m128i a, __m128i b) { return _mm_mulhi_epi16(a, b); }
inline __m128i vHu(__m128i a, __m128i b) { return _mm_mulhi_epu16(a, b); }
inline __m128i vset16(int v) { return _mm_set1_epi16(static_cast<short>(v)); }

// Saturating packs: signed 32 -> signed 16, signed 16 -> unsigned 8.
inline __m128i vPackS32S16(__m128i lo, __m128i hi) { return _mm_packs_epi32(lo, hi); }
inline __m128i vPackS16U8(__m128i lo, __m128i hi) { return _mm_packus_epi16(lo, hi); }
// 32-bit lanes clamped to 0..65535 and packed to unsigned 16: subtract 32768,
// saturate to signed 16, add 32768 back.
inline __m128i vPackS32U16(__m128i lo, __m128i hi) {
  const __m128i bias32 = _mm_set1_epi32(32768);
  const __m128i bias16 = _mm_set1_epi16(static_cast<short>(0x8000));
  return _mm_add_epi16(_mm_packs_epi32(_mm_sub_epi32(lo, bias32), _mm_sub_epi32(hi, bias32)),
                       bias16);
}

// The scalar meaning of the packs, lane by lane: packssdw then packuswb
// (32 -> 8 bits, saturating twice), and vPackS32U16 (32 -> unsigned 16:
// subtract 32768 wrapping, saturate to signed 16, add 32768 back).
inline int32_t wrapSub(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
}
inline int32_t wrapAdd(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}
inline int satPack8u(int v) { return sat8u(sat16s(v)); }
inline int satPack16u(int32_t v) { return sat16s(wrapSub(v, 32768)) + 32768; }

// Single-precision constants that are not exact, by their bit patterns,
// shared by the colour-model families.
constexpr uint32_t kBitsInv60 = 0x3C888889u;     // 0.016666668  1/60
constexpr uint32_t kBitsDeg8u = 0x3FB4B4B5u;     // 1.4117647    360/255
constexpr uint32_t kBitsDeg16u = 0x3BB400B4u;    // 0.005493248  360/65535
constexpr uint32_t kBitsInv255 = 0x3B808081u;    // 0.003921569  1/255
constexpr uint32_t kBitsInv65535 = 0x37800080u;  // 1.5259e-05   1/65535 (2^-16 + 2^-32)

// A single-precision constant given by its bit pattern, scalar and vector.
inline float floatFromBits(uint32_t bits) {
  float f;
  memcpy(&f, &bits, sizeof f);
  return f;
}
inline __m128 vFloatFromBits(uint32_t bits) {
  return _mm_castsi128_ps(_mm_set1_epi32(static_cast<int>(bits)));
}

// ---------------------------------------------------------------------------
// Approximate reciprocal (rcpss / rcpps) and its one Newton step
// r' = (r + r) - (x * r) * r, in this order of operations.
inline float rcpS(float x) { return _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(x))); }
inline float rcpNewtonS(float x) {
  const __m128 vx = _mm_set_ss(x);
  const __m128 r = _mm_rcp_ss(vx);
  return _mm_cvtss_f32(_mm_sub_ss(_mm_add_ss(r, r), _mm_mul_ss(_mm_mul_ss(vx, r), r)));
}
inline __m128 vRcp(__m128 x) { return _mm_rcp_ps(x); }
inline __m128 vRcpNewton(__m128 x) {
  const __m128 r = _mm_rcp_ps(x);
  return _mm_sub_ps(_mm_add_ps(r, r), _mm_mul_ps(_mm_mul_ps(x, r), r));
}

// Float to 32-bit integer: in the SSE rounding mode in force (cvtss2si), or
// truncated toward zero (cvttss2si).
inline int cvtRound(float x) { return _mm_cvtss_si32(_mm_set_ss(x)); }
inline int cvtTrunc(float x) { return _mm_cvttss_si32(_mm_set_ss(x)); }

// ---------------------------------------------------------------------------
// (De)interleave networks.
//
// A riffle of N registers (N even) interleaves the first half of the byte (or
// word) sequence with the second: out[2j], out[2j+1] = unpacklo/hi(in[j],
// in[j + N/2]).  Sample k of the sequence moves to 2k mod (L - 1), L the
// sequence length.  Repeating it separates channels:
//   3 samples of 8 bits, 6 registers (32 pixels): 5 riffles;
//   4 samples of 8 bits, 2 registers (8 pixels):  3 riffles;
//   4 samples of 8 bits, 4 registers (16 pixels): 4 riffles;
//   3 samples of 16 bits, 6 registers (16 pixels): 4 riffles;
// and the unriffle (its inverse) the same number of times re-interleaves.
template <int N>
inline void riffle8(__m128i (&v)[N]) {
  __m128i t[N];
  for (int j = 0; j < N / 2; ++j) {
    t[2 * j] = _mm_unpacklo_epi8(v[j], v[j + N / 2]);
    t[2 * j + 1] = _mm_unpackhi_epi8(v[j], v[j + N / 2]);
  }
  for (int j = 0; j < N; ++j) v[j] = t[j];
}
template <int N>
inline void unriffle8(__m128i (&v)[N]) {
  const __m128i lo = _mm_set1_epi16(0x00ff);
  __m128i t[N];
  for (int j = 0; j < N / 2; ++j) {
    t[j] = _mm_packus_epi16(_mm_and_si128(v[2 * j], lo), _mm_and_si128(v[2 * j + 1], lo));
    t[j + N / 2] = _mm_packus_epi16(_mm_srli_epi16(v[2 * j], 8), _mm_srli_epi16(v[2 * j + 1], 8));
  }
  for (int j = 0; j < N; ++j) v[j] = t[j];
}
template <int N>
inline void riffle16(__m128i (&v)[N]) {
  __m128i t[N];
  for (int j = 0; j < N / 2; ++j) {
    t[2 * j] = _mm_unpacklo_epi16(v[j], v[j + N / 2]);
    t[2 * j + 1] = _mm_unpackhi_epi16(v[j], v[j + N / 2]);
  }
  for (int j = 0; j < N; ++j) v[j] = t[j];
}
// Even words of a register in its low half, odd words in its high half.
inline __m128i evenOddWords(__m128i a) {
  a = _mm_shufflelo_epi16(a, _MM_SHUFFLE(3, 1, 2, 0));
  a = _mm_shufflehi_epi16(a, _MM_SHUFFLE(3, 1, 2, 0));
  return _mm_shuffle_epi32(a, _MM_SHUFFLE(3, 1, 2, 0));
}
template <int N>
inline void unriffle16(__m128i (&v)[N]) {
  __m128i t[N];
  for (int j = 0; j < N / 2; ++j) {
    const __m128i a = evenOddWords(v[2 * j]);
    const __m128i b = evenOddWords(v[2 * j + 1]);
    t[j] = _mm_unpacklo_epi64(a, b);
    t[j + N / 2] = _mm_unpackhi_epi64(a, b);
  }
  for (int j = 0; j < N; ++j) v[j] = t[j];
}
template <int Times, int N>
inline void riffle8Times(__m128i (&v)[N]) {
  for (int i = 0; i < Times; ++i) riffle8(v);
}
template <int Times, int N>
inline void unriffle8Times(__m128i (&v)[N]) {
  for (int i = 0; i < Times; ++i) unriffle8(v);
}

inline __m128i loadu(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
inline void storeu(void* p, __m128i v) { _mm_storeu_si128(static_cast<__m128i*>(p), v); }
inline __m128i loadl64(const void* p) { return _mm_loadl_epi64(static_cast<const __m128i*>(p)); }
inline void storel64(void* p, __m128i v) { _mm_storel_epi64(static_cast<__m128i*>(p), v); }

// 3-byte pixels, 32 at a time: 96 bytes -> R, G, B as two registers of 16
// bytes each (r[0] pixels 0-15, r[1] pixels 16-31), and back.
struct Planes8x32 {
  __m128i c[3][2];
};
inline Planes8x32 deinterleave3x32(const uint8_t* p) {
  __m128i v[6] = {loadu(p), loadu(p + 16), loadu(p + 32),
                  loadu(p + 48), loadu(p + 64), loadu(p + 80)};
  riffle8Times<5>(v);
  return Planes8x32{{{v[0], v[1]}, {v[2], v[3]}, {v[4], v[5]}}};
}
inline void interleave3x32(const Planes8x32& s, uint8_t* p) {
  __m128i v[6] = {s.c[0][0], s.c[0][1], s.c[1][0], s.c[1][1], s.c[2][0], s.c[2][1]};
  unriffle8Times<5>(v);
  for (int i = 0; i < 6; ++i) storeu(p + 16 * i, v[i]);
}

// 3-byte pixels, 16 at a time (48 bytes): the same network with the second
// half empty.  c[k] holds the 16 samples of channel k.
inline void deinterleave3x16(const uint8_t* p, __m128i c[3]) {
  const __m128i z = _mm_setzero_si128();
  __m128i v[6] = {loadu(p), loadu(p + 16), loadu(p + 32), z, z, z};
  riffle8Times<5>(v);
  c[0] = v[0];
  c[1] = v[2];
  c[2] = v[4];
}
inline void interleave3x16(const __m128i c[3], uint8_t* p) {
  const __m128i z = _mm_setzero_si128();
  __m128i v[6] = {c[0], z, c[1], z, c[2], z};
  unriffle8Times<5>(v);
  storeu(p, v[0]);
  storeu(p + 16, v[1]);
  storeu(p + 32, v[2]);
}

// 3-byte pixels, 8 at a time (24 bytes, read and written exactly): channel
// k in the low 8 bytes of c[k].
inline void deinterleave3x8(const uint8_t* p, __m128i c[3]) {
  const __m128i z = _mm_setzero_si128();
  __m128i v[6] = {loadu(p), loadl64(p + 16), z, z, z, z};
  riffle8Times<5>(v);
  c[0] = v[0];
  c[1] = v[2];
  c[2] = v[4];
}
inline void interleave3x8(const __m128i c[3], uint8_t* p) {
  const __m128i z = _mm_setzero_si128();
  __m128i v[6] = {c[0], z, c[1], z, c[2], z};
  unriffle8Times<5>(v);
  storeu(p, v[0]);
  storel64(p + 16, v[1]);
}

// 4-byte pixels, 8 at a time (32 bytes): c[k] low 8 bytes = channel k.
inline void deinterleave4x8(const uint8_t* p, __m128i c[4]) {
  __m128i v[2] = {loadu(p), loadu(p + 16)};
  riffle8Times<3>(v);
  c[0] = v[0];
  c[1] = _mm_srli_si128(v[0], 8);
  c[2] = v[1];
  c[3] = _mm_srli_si128(v[1], 8);
}
// Channels (low 8 bytes each) -> two registers of 4 interleaved pixels each.
inline void interleave4x8(const __m128i c[4], __m128i out[2]) {
  const __m128i a = _mm_unpacklo_epi8(c[0], c[1]);
  const __m128i b = _mm_unpacklo_epi8(c[2], c[3]);
  out[0] = _mm_unpacklo_epi16(a, b);
  out[1] = _mm_unpackhi_epi16(a, b);
}

// 3-word pixels (16-bit samples), 8 at a time (48 bytes): c[k] = 8 words.
inline void deinterleave3x8w(const uint16_t* p, __m128i c[3]) {
  const __m128i z = _mm_setzero_si128();
  __m128i v[6] = {loadu(p), loadu(p + 8), loadu(p + 16), z, z, z};
  for (int i = 0; i < 4; ++i) riffle16(v);
  c[0] = v[0];
  c[1] = v[2];
  c[2] = v[4];
}
inline void interleave3x8w(const __m128i c[3], uint16_t* p) {
  const __m128i z = _mm_setzero_si128();
  __m128i v[6] = {c[0], z, c[1], z, c[2], z};
  for (int i = 0; i < 4; ++i) unriffle16(v);
  storeu(p, v[0]);
  storeu(p + 8, v[1]);
  storeu(p + 16, v[2]);
}

// SSSE3 (de)interleave of 16 3-byte pixels by byte shuffles: the same bytes
// as deinterleave3x16 / interleave3x16.  Present only in the units compiled
// for SSSE3 or more (the *_ssse3.cpp and wider units), which are entered
// only after the processor test.
#if defined(__SSSE3__)

// Gather: m[k][j] takes the bytes of channel k that lie in source register j
// to their pixel positions.  Scatter: m[j][k] puts the pixels of channel k
// that belong in output register j in place.  0x80 clears a byte.
struct ShuffleMasks3 {
  alignas(16) uint8_t m[3][3][16];
};
constexpr ShuffleMasks3 makeGather3() {
  ShuffleMasks3 s{};
  for (int k = 0; k < 3; ++k)
    for (int j = 0; j < 3; ++j)
      for (int pos = 0; pos < 16; ++pos) {
        const int byte = 3 * pos + k;
        s.m[k][j][pos] = byte / 16 == j ? static_cast<uint8_t>(byte % 16) : 0x80;
      }
  return s;
}
constexpr ShuffleMasks3 makeScatter3() {
  ShuffleMasks3 s{};
  for (int j = 0; j < 3; ++j)
    for (int k = 0; k < 3; ++k)
      for (int pos = 0; pos < 16; ++pos) {
        const int byte = 16 * j + pos;
        s.m[j][k][pos] = byte % 3 == k ? static_cast<uint8_t>(byte / 3) : 0x80;
      }
  return s;
}
inline constexpr ShuffleMasks3 kGather3 = makeGather3();
inline constexpr ShuffleMasks3 kScatter3 = makeScatter3();

inline __m128i shuffleMask(const uint8_t* m) {
  return _mm_load_si128(reinterpret_cast<const __m128i*>(m));
}
inline void deinterleave3x16Ssse3(const uint8_t* p, __m128i c[3]) {
  const __m128i v[3] = {loadu(p), loadu(p + 16), loadu(p + 32)};
  for (int k = 0; k < 3; ++k)
    c[k] = _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(v[0], shuffleMask(kGather3.m[k][0])),
                                     _mm_shuffle_epi8(v[1], shuffleMask(kGather3.m[k][1]))),
                        _mm_shuffle_epi8(v[2], shuffleMask(kGather3.m[k][2])));
}
inline void interleave3x16Ssse3(const __m128i c[3], uint8_t* p) {
  for (int j = 0; j < 3; ++j)
    storeu(p + 16 * j,
           _mm_or_si128(_mm_or_si128(_mm_shuffle_epi8(c[0], shuffleMask(kScatter3.m[j][0])),
                                     _mm_shuffle_epi8(c[1], shuffleMask(kScatter3.m[j][1]))),
                        _mm_shuffle_epi8(c[2], shuffleMask(kScatter3.m[j][2]))));
}
#endif  // __SSSE3__

// The (de)interleave networks of 3-byte pixels as block-loop policies:
// Net3Sse2 takes 32 pixels a round through the six-register network, then 16;
// Net3Ssse3 (units compiled for SSSE3 or more) 16 by byte shuffles.  Both
// give the same bytes.
struct Net3Sse2 {
  static constexpr bool kRound32 = true;
  static void load16(const uint8_t* p, __m128i c[3]) { deinterleave3x16(p, c); }
  static void store16(const __m128i c[3], uint8_t* p) { interleave3x16(c, p); }
};
#if defined(__SSSE3__)
struct Net3Ssse3 {
  static constexpr bool kRound32 = false;
  static void load16(const uint8_t* p, __m128i c[3]) { deinterleave3x16Ssse3(p, c); }
  static void store16(const __m128i c[3], uint8_t* p) { interleave3x16Ssse3(c, p); }
};
#endif

// Store policies of the copy-like kernels: how a 16-byte register is
// loaded and stored (plain, non-temporal, aligned, aligned with non-temporal
// stores).  A kernel that streams ends with _mm_sfence.
struct StorePlain {
  static __m128i ld(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
  static void st(uint8_t* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
};
struct StoreStream {
  static __m128i ld(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
  static void st(uint8_t* p, __m128i v) { _mm_stream_si128(reinterpret_cast<__m128i*>(p), v); }
};
struct StoreAligned {
  static __m128i ld(const uint8_t* p) { return _mm_load_si128(reinterpret_cast<const __m128i*>(p)); }
  static void st(uint8_t* p, __m128i v) { _mm_store_si128(reinterpret_cast<__m128i*>(p), v); }
};
struct StoreAlignedStream {
  static __m128i ld(const uint8_t* p) { return _mm_load_si128(reinterpret_cast<const __m128i*>(p)); }
  static void st(uint8_t* p, __m128i v) { _mm_stream_si128(reinterpret_cast<__m128i*>(p), v); }
};

// The even bytes (low halves) and odd bytes (high halves) of the 16-bit
// lanes, and two registers' even or odd bytes packed into one.
inline __m128i evenBytes(__m128i v) { return _mm_and_si128(v, _mm_set1_epi16(0x00ff)); }
inline __m128i oddBytes(__m128i v) { return _mm_srli_epi16(v, 8); }
inline __m128i packEven(__m128i a, __m128i b) { return _mm_packus_epi16(evenBytes(a), evenBytes(b)); }
inline __m128i packOdd(__m128i a, __m128i b) { return _mm_packus_epi16(oddBytes(a), oddBytes(b)); }
template <bool Odd>
inline __m128i packSel(__m128i a, __m128i b) {
  return Odd ? packOdd(a, b) : packEven(a, b);
}

// Widen bytes to 16-bit lanes.
inline __m128i lo8to16(__m128i v) { return _mm_unpacklo_epi8(v, _mm_setzero_si128()); }
inline __m128i hi8to16(__m128i v) { return _mm_unpackhi_epi8(v, _mm_setzero_si128()); }

}  // inline namespace LUM_ISA_NS
}  // namespace lum


// ===========================================================================
// AVX2 (de)interleave of 32 3-byte pixels (96 bytes), for the block loops of
// the subsampled and YCbCr families (pccyuv02_avx2.cpp, pccycbcr_avx2.cpp):
// the SSSE3 byte shuffles above on both 128-bit halves at once, pixels 0-15
// of each channel in the low half, 16-31 in the high half.  Present only in
// units compiled for AVX2.
#if defined(__AVX2__)
#include <immintrin.h>
namespace lum {
inline namespace LUM_ISA_NS {

inline __m256i loadHalves(const void* lo, const void* hi) {
  return _mm256_inserti128_si256(_mm256_castsi128_si256(loadu(lo)), loadu(hi), 1);
}
inline __m256i shuffleMask2(const uint8_t* m) {
  return _mm256_broadcastsi128_si256(shuffleMask(m));
}
inline void deinterleave3x32Avx2(const uint8_t* p, __m256i c[3]) {
  const __m256i v[3] = {loadHalves(p, p + 48), loadHalves(p + 16, p + 64),
                        loadHalves(p + 32, p + 80)};
  for (int k = 0; k < 3; ++k)
    c[k] = _mm256_or_si256(
        _mm256_or_si256(_mm256_shuffle_epi8(v[0], shuffleMask2(kGather3.m[k][0])),
                        _mm256_shuffle_epi8(v[1], shuffleMask2(kGather3.m[k][1]))),
        _mm256_shuffle_epi8(v[2], shuffleMask2(kGather3.m[k][2])));
}
inline void interleave3x32Avx2(const __m256i c[3], uint8_t* p) {
  for (int j = 0; j < 3; ++j) {
    const __m256i o = _mm256_or_si256(
        _mm256_or_si256(_mm256_shuffle_epi8(c[0], shuffleMask2(kScatter3.m[j][0])),
                        _mm256_shuffle_epi8(c[1], shuffleMask2(kScatter3.m[j][1]))),
        _mm256_shuffle_epi8(c[2], shuffleMask2(kScatter3.m[j][2])));
    storeu(p + 16 * j, _mm256_castsi256_si128(o));
    storeu(p + 48 + 16 * j, _mm256_extracti128_si256(o, 1));
  }
}

}  // inline namespace LUM_ISA_NS
}  // namespace lum
#endif  // __AVX2__
// ===========================================================================

#endif  // LUM_SIMD_H
