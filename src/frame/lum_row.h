// The row skeleton: how a one-row kernel walks its row, and how it reads and
// writes one pixel of each layout.
//
// A kernel names its block size, its block loop and its tail formula:
//
//   walkRow<kBlock>(src, dst, width, blockLoop, tail);
//
// The block loop converts pixels [0, end), end = width & ~(kBlock - 1)
// counted from the row's start, in whatever rounds it likes (rounds of 32,
// 16 or 8 pixels, a wider instruction set first), and returns the first pixel
// it did not convert (end); the tail formula then converts each remaining
// pixel on its own.  The block formula holds for the first pixels of a row,
// the tail formula for the rest; the two may differ, and both are required.
//
// Pixel sides: PixC3 (three samples a pixel), PixAC4 (four samples, the
// fourth neither read as colour nor written), PixP3 (three planes),
// PixPlane (one plane of a per-plane pass).  get() gives the three colour
// samples of pixel x, put() stores three results.  A tail formula is
// tail(a, b, c, out[3]); a kernel whose tail carries more (alpha across)
// gives walkRow its own tailAt(x).
//
// Rounds of 4 pixels of 8-bit samples in 32-bit lanes, with alpha: Lanes4*
// below, load4 / store4 for the block loop, load1 / store1 for the tail.
#ifndef LUM_ROW_H
#define LUM_ROW_H

#include <type_traits>

#include <stdint.h>
#include <string.h>

#include "frame/lum_simd.h"
#include "lumcc.h"

namespace lum {
inline namespace LUM_ISA_NS {

template <class T, int kSamples>
struct PixInterleaved {
  using Elem = typename std::remove_const<T>::type;
  T* p;
  void get(int x, Elem v[3]) const {
    const T* q = p + kSamples * x;
    v[0] = q[0];
    v[1] = q[1];
    v[2] = q[2];
  }
  void put(int x, const Elem o[3]) const {
    T* q = p + kSamples * x;
    q[0] = o[0];
    q[1] = o[1];
    q[2] = o[2];
  }
};
template <class T>
using PixC3 = PixInterleaved<T, 3>;
template <class T>
using PixAC4 = PixInterleaved<T, 4>;  // sample 3 is alpha: put() leaves it

template <class T>
struct PixP3 {
  using Elem = typename std::remove_const<T>::type;
  T* p[3];
  void get(int x, Elem v[3]) const {
    v[0] = p[0][x];
    v[1] = p[1][x];
    v[2] = p[2][x];
  }
  void put(int x, const Elem o[3]) const {
    p[0][x] = o[0];
    p[1][x] = o[1];
    p[2][x] = o[2];
  }
};

// One plane of a per-plane pass: put() stores the first result only.
template <class T>
struct PixPlane {
  using Elem = typename std::remove_const<T>::type;
  T* p;
  void get(int x, Elem v[3]) const { v[0] = v[1] = v[2] = p[x]; }
  void put(int x, const Elem o[3]) const { p[x] = o[0]; }
};

// The tail formula of three samples to three results as a per-pixel step:
// get, convert, put.
template <class Src, class Dst, class Formula>
struct PixelTail {
  const Src& s;
  const Dst& d;
  Formula& f;
  void operator()(int x) const {
    typename Src::Elem v[3];
    typename Dst::Elem o[3];
    s.get(x, v);
    f(v[0], v[1], v[2], o);
    d.put(x, o);
  }
};

// The skeleton itself: the block loop over [0, width & ~(kBlock - 1)), then
// tailAt(x) for each remaining pixel.
template <int kBlock, class BlockLoop, class TailAt>
inline void walkRow(int width, BlockLoop&& block, TailAt&& tailAt) {
  static_assert((kBlock & (kBlock - 1)) == 0, "a block is a power of two");
  const int end = width & ~(kBlock - 1);
  for (int x = block(end); x < width; ++x) tailAt(x);
}

// The usual case: a tail formula between two pixel sides.
template <int kBlock, class Src, class Dst, class BlockLoop, class Formula>
inline void walkRow(const Src& s, const Dst& d, int width, BlockLoop&& block, Formula&& tail) {
  walkRow<kBlock>(width, block, PixelTail<Src, Dst, Formula>{s, d, tail});
}

// Three plane pointers as one argument (an array that lives for the call).
template <class T>
struct Planes3Of {
  T* p[3];
};
inline Planes3Of<Lum8u> planes3(Lum8u* a, Lum8u* b, Lum8u* c) { return {{a, b, c}}; }
inline Planes3Of<const Lum8u> planes3c(const Lum8u* a, const Lum8u* b, const Lum8u* c) {
  return {{a, b, c}};
}

// ---------------------------------------------------------------------------
// Block loops over 3-byte pixels and byte planes, for the formulas that take
// 16 pixels a step as three byte registers in and three out (the network of
// 3-byte pixels is a policy: Net3Sse2 or Net3Ssse3 of lum_simd.h).

// Loads and stores of 16, 8 or 4 pixels: 3-byte pixels (exactly 3n bytes
// read or written) and plane samples.
template <class Net>
inline void loadC3(const Lum8u* p, int n, __m128i c[3]) {
  if (n == 16) return Net::load16(p, c);
  if (n == 8) return deinterleave3x8(p, c);
  alignas(16) Lum8u t[24] = {};
  memcpy(t, p, 12);
  deinterleave3x8(t, c);
}
template <class Net>
inline void storeC3(const __m128i c[3], Lum8u* p, int n) {
  if (n == 16) return Net::store16(c, p);
  if (n == 8) return interleave3x8(c, p);
  alignas(16) Lum8u t[24];
  interleave3x8(c, t);
  memcpy(p, t, 12);
}
inline __m128i loadPlane(const Lum8u* p, int n) {
  if (n == 16) return loadu(p);
  if (n == 8) return loadl64(p);
  int32_t v;
  memcpy(&v, p, 4);
  return _mm_cvtsi32_si128(v);
}
inline void storePlane(Lum8u* p, __m128i v, int n) {
  if (n == 16) return storeu(p, v);
  if (n == 8) return storel64(p, v);
  const int32_t s = _mm_cvtsi128_si32(v);
  memcpy(p, &s, 4);
}

// Block loops from x to end in rounds of 32 pixels (SSE2, pixel-order
// sides), then 16, then at most one of 8 and one of 4 (end is a multiple of
// the kernel's block; the formula is per pixel, so only end matters).  Fn is
// a 16-pixel step on byte registers.  Each returns end.
template <class Net, class Fn>
inline int blockC3toC3(const Lum8u* s, Lum8u* d, int x, int end, Fn fn) {
  if constexpr (Net::kRound32) {
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
  }
  for (int n = 16; n >= 4; n >>= 1)
    for (; x + n <= end; x += n) {
      __m128i in[3], out[3];
      loadC3<Net>(s + 3 * x, n, in);
      fn(in, out);
      storeC3<Net>(out, d + 3 * x, n);
    }
  return x;
}
template <class Fn>
inline int blockP3toP3(const Lum8u* const s[3], Lum8u* const d[3], int x, int end, Fn fn) {
  for (int n = 16; n >= 4; n >>= 1)
    for (; x + n <= end; x += n) {
      const __m128i in[3] = {loadPlane(s[0] + x, n), loadPlane(s[1] + x, n),
                             loadPlane(s[2] + x, n)};
      __m128i out[3];
      fn(in, out);
      for (int k = 0; k < 3; ++k) storePlane(d[k] + x, out[k], n);
    }
  return x;
}
template <class Net, class Fn>
inline int blockP3toC3(const Lum8u* const s[3], Lum8u* d, int x, int end, Fn fn) {
  if constexpr (Net::kRound32) {
    for (; x + 32 <= end; x += 32) {
      Planes8x32 q;
      for (int h = 0; h < 2; ++h) {
        const int o = x + 16 * h;
        const __m128i in[3] = {loadu(s[0] + o), loadu(s[1] + o), loadu(s[2] + o)};
        __m128i out[3];
        fn(in, out);
        for (int k = 0; k < 3; ++k) q.c[k][h] = out[k];
      }
      interleave3x32(q, d + 3 * x);
    }
  }
  for (int n = 16; n >= 4; n >>= 1)
    for (; x + n <= end; x += n) {
      const __m128i in[3] = {loadPlane(s[0] + x, n), loadPlane(s[1] + x, n),
                             loadPlane(s[2] + x, n)};
      __m128i out[3];
      fn(in, out);
      storeC3<Net>(out, d + 3 * x, n);
    }
  return x;
}
template <class Net, class Fn>
inline int blockC3toP3(const Lum8u* s, Lum8u* const d[3], int x, int end, Fn fn) {
  if constexpr (Net::kRound32) {
    for (; x + 32 <= end; x += 32) {
      const Planes8x32 p = deinterleave3x32(s + 3 * x);
      for (int h = 0; h < 2; ++h) {
        const __m128i in[3] = {p.c[0][h], p.c[1][h], p.c[2][h]};
        __m128i out[3];
        fn(in, out);
        for (int k = 0; k < 3; ++k) storeu(d[k] + x + 16 * h, out[k]);
      }
    }
  }
  for (int n = 16; n >= 4; n >>= 1)
    for (; x + n <= end; x += n) {
      __m128i in[3], out[3];
      loadC3<Net>(s + 3 * x, n, in);
      fn(in, out);
      for (int k = 0; k < 3; ++k) storePlane(d[k] + x, out[k], n);
    }
  return x;
}

// ---------------------------------------------------------------------------
// Loads and stores of four pixels: one sample a 32-bit lane (floats or
// integers), channel k of the four pixels in register k.

// Four pixels of 3 samples, one sample a 32-bit lane: in pixel order in three
// registers (a = p0.0 p0.1 p0.2 p1.0, b = p1.1 p1.2 p2.0 p2.1, c = p2.2 p3.0
// p3.1 p3.2) <-> sample k of the four pixels in register k.  Five shuffles
// in, six out; the same network serves floats and integers.
inline void deinterleave3x4ps(__m128 a, __m128 b, __m128 c, __m128 out[3]) {
  const __m128 x = _mm_shuffle_ps(a, b, _MM_SHUFFLE(1, 0, 2, 1));  // p0.1 p0.2 p1.1 p1.2
  const __m128 y = _mm_shuffle_ps(b, c, _MM_SHUFFLE(2, 1, 3, 2));  // p2.0 p2.1 p3.0 p3.1
  out[0] = _mm_shuffle_ps(a, y, _MM_SHUFFLE(2, 0, 3, 0));
  out[1] = _mm_shuffle_ps(x, y, _MM_SHUFFLE(3, 1, 2, 0));
  out[2] = _mm_shuffle_ps(x, c, _MM_SHUFFLE(3, 0, 3, 1));
}
inline void interleave3x4ps(__m128 s0, __m128 s1, __m128 s2, __m128 out[3]) {
  const __m128 t0 = _mm_shuffle_ps(s0, s1, _MM_SHUFFLE(2, 0, 2, 0));  // p0.0 p2.0 p0.1 p2.1
  const __m128 t1 = _mm_shuffle_ps(s2, s0, _MM_SHUFFLE(3, 1, 2, 0));  // p0.2 p2.2 p1.0 p3.0
  const __m128 t2 = _mm_shuffle_ps(s1, s2, _MM_SHUFFLE(3, 1, 3, 1));  // p1.1 p3.1 p1.2 p3.2
  out[0] = _mm_shuffle_ps(t0, t1, _MM_SHUFFLE(2, 0, 2, 0));
  out[1] = _mm_shuffle_ps(t2, t0, _MM_SHUFFLE(3, 1, 2, 0));
  out[2] = _mm_shuffle_ps(t1, t2, _MM_SHUFFLE(3, 1, 3, 1));
}
inline void deinterleave3x4d(__m128i a, __m128i b, __m128i c, __m128i out[3]) {
  __m128 o[3];
  deinterleave3x4ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), _mm_castsi128_ps(c), o);
  for (int k = 0; k < 3; ++k) out[k] = _mm_castps_si128(o[k]);
}
inline void interleave3x4d(__m128i s0, __m128i s1, __m128i s2, __m128i out[3]) {
  __m128 o[3];
  interleave3x4ps(_mm_castsi128_ps(s0), _mm_castsi128_ps(s1), _mm_castsi128_ps(s2), o);
  for (int k = 0; k < 3; ++k) out[k] = _mm_castps_si128(o[k]);
}
// 12 words (four 3-word pixels) given as words 0-7 in lo and 8-11 in the low
// half of hi -> channel k in the 32-bit lanes of c[k], zero-extended.
inline void widen3x4w(__m128i lo, __m128i hi, __m128i c[3]) {
  const __m128i z = _mm_setzero_si128();
  deinterleave3x4d(_mm_unpacklo_epi16(lo, z), _mm_unpackhi_epi16(lo, z),
                   _mm_unpacklo_epi16(hi, z), c);
}
// Low 4 words -> 32-bit lanes, zero- or sign-free (unsigned samples).
inline __m128i words4to32(__m128i v) { return _mm_unpacklo_epi16(v, _mm_setzero_si128()); }
// Low 4 bytes -> 32-bit lanes.
inline __m128i bytes4to32(__m128i v) { return words4to32(lo8to16(v)); }
// 32-bit loads and stores of any alignment.
inline __m128i load32(const void* p) {
  int32_t v;
  memcpy(&v, p, 4);
  return _mm_cvtsi32_si128(v);
}
inline void store32(void* p, __m128i v) {
  const int32_t x = _mm_cvtsi128_si32(v);
  memcpy(p, &x, 4);
}
// Four pixels of 3 bytes (12 bytes, read exactly) -> channel k in 32-bit
// lanes of c[k].
inline void load3x4b(const Lum8u* p, __m128i c[3]) {
  const __m128i v = _mm_unpacklo_epi64(loadl64(p), load32(p + 8));
  widen3x4w(lo8to16(v), hi8to16(v), c);
}
// Channel k as signed 16-bit words (low 4 of c[k]) -> unsigned 8-bit
// saturation -> 12 bytes written.  (The words widen with their sign, go
// through the network in 32-bit lanes and pack back unchanged.)
inline void store3x4b(Lum8u* p, const __m128i c[3]) {
  __m128i px[3];
  interleave3x4d(_mm_srai_epi32(_mm_unpacklo_epi16(c[0], c[0]), 16),
                 _mm_srai_epi32(_mm_unpacklo_epi16(c[1], c[1]), 16),
                 _mm_srai_epi32(_mm_unpacklo_epi16(c[2], c[2]), 16), px);
  const __m128i b = _mm_packus_epi16(_mm_packs_epi32(px[0], px[1]), _mm_packs_epi32(px[2], px[2]));
  storel64(p, b);
  store32(p + 8, _mm_srli_si128(b, 8));
}
// Four pixels of 4 bytes (16 bytes) -> channel k in 32-bit lanes of c[k]:
// each pixel is a 32-bit lane already, so shifts and masks do it.
inline void load4x4b(const Lum8u* p, __m128i c[4]) {
  const __m128i v = loadu(p), low = _mm_set1_epi32(0xFF);
  c[0] = _mm_and_si128(v, low);
  c[1] = _mm_and_si128(_mm_srli_epi32(v, 8), low);
  c[2] = _mm_and_si128(_mm_srli_epi32(v, 16), low);
  c[3] = _mm_srli_epi32(v, 24);
}
// Three channels as 32-bit lanes -> signed 16, then unsigned 8 saturation
// -> bytes of four 4-byte pixels, the fourth byte of each 0.
inline __m128i pack3to4x4b(__m128i c0, __m128i c1, __m128i c2) {
  const __m128i b = _mm_packus_epi16(_mm_packs_epi32(c0, c1),
                                     _mm_packs_epi32(c2, _mm_setzero_si128()));
  // b = c0 x4 | c1 x4 | c2 x4 | 0 x4
  const __m128i t = _mm_unpacklo_epi8(b, _mm_srli_si128(b, 8));  // c0 c2 pairs | c1 0 pairs
  return _mm_unpacklo_epi8(t, _mm_srli_si128(t, 8));
}
// Bytes of one channel (low 4 bytes) from saturated 32-bit lanes.
inline __m128i pack4b(__m128i c) {
  const __m128i w = _mm_packs_epi32(c, c);
  return _mm_packus_epi16(w, w);
}


// Read-modify-write of 16 bytes: the bytes under `keep` stay as they were.
inline void mergeStore(void* p, __m128i v, __m128i keep) {
  const __m128i old = loadu(p);
  storeu(p, _mm_or_si128(_mm_and_si128(old, keep), _mm_andnot_si128(keep, v)));
}
// The alpha byte of four 4-byte pixels; the alpha word of two 4-word pixels.
inline __m128i alphaMask8u() { return _mm_set1_epi32(static_cast<int>(0xFF000000u)); }
inline __m128i alphaMask16() {
  return _mm_set_epi32(static_cast<int>(0xFFFF0000u), 0, static_cast<int>(0xFFFF0000u), 0);
}

// Four pixels of 3 words: channel k in 32-bit lanes of c[k] (unsigned).
inline void load3x4w(const Lum16u* p, __m128i c[3]) { widen3x4w(loadu(p), loadl64(p + 8), c); }
// Results of four pixels in 32-bit lanes (channel k in c[k]) -> pixel order
// -> narrowed in pairs of registers by Narrow (32 -> 16 bits) -> 12 words
// written.
template <class Narrow>
inline void store3x4w(Lum16u* p, __m128i c0, __m128i c1, __m128i c2, Narrow narrow) {
  __m128i px[3];
  interleave3x4d(c0, c1, c2, px);
  storeu(p, narrow(px[0], px[1]));
  storel64(p + 8, narrow(px[2], px[2]));
}
// Four pixels of 4 words given as two registers of two pixels -> channel k
// in 32-bit lanes of c[k] (unsigned): samples 0, 1 of each pixel are one
// 32-bit lane, samples 2, 3 the next; two shuffles gather them, shifts and
// masks split them.
inline void split4x4w(__m128i v0, __m128i v1, __m128i c[3]) {
  const __m128 a = _mm_castsi128_ps(v0), b = _mm_castsi128_ps(v1);
  const __m128i s01 = _mm_castps_si128(_mm_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0)));
  const __m128i s23 = _mm_castps_si128(_mm_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1)));
  const __m128i low = _mm_set1_epi32(0xFFFF);
  c[0] = _mm_and_si128(s01, low);
  c[1] = _mm_srli_epi32(s01, 16);
  c[2] = _mm_and_si128(s23, low);
}
inline void load4x4w(const Lum16u* p, __m128i c[3]) { split4x4w(loadu(p), loadu(p + 8), c); }
// Three channels as words (c01 = ch 0 in words 0-3, ch 1 in words 4-7; c2 in
// words 0-3) -> two registers of two 4-word pixels, word 3 of each zero.
inline void interleave3to4x4w(__m128i c01, __m128i c2, __m128i px[2]) {
  const __m128i x0 = _mm_unpacklo_epi16(c01, c2);                                  // 0 2 pairs
  const __m128i x1 = _mm_unpacklo_epi16(_mm_srli_si128(c01, 8), _mm_setzero_si128());  // 1 z pairs
  px[0] = _mm_unpacklo_epi16(x0, x1);
  px[1] = _mm_unpackhi_epi16(x0, x1);
}
// Bias of 16s samples: sample + 32768 is the sample with its top bit flipped.
inline __m128i flipTop16(__m128i v) {
  return _mm_xor_si128(v, _mm_set1_epi16(static_cast<short>(0x8000)));
}
inline void load3x4wBiased(const Lum16s* p, __m128i c[3]) {
  const Lum16u* q = reinterpret_cast<const Lum16u*>(p);
  widen3x4w(flipTop16(loadu(q)), flipTop16(loadl64(q + 8)), c);
}
inline void load4x4wBiased(const Lum16s* p, __m128i c[3]) {
  const Lum16u* q = reinterpret_cast<const Lum16u*>(p);
  split4x4w(flipTop16(loadu(q)), flipTop16(loadu(q + 8)), c);
}
// 16s pixels of 4 words written as a 32-bit piece (samples 0, 1) and a
// 16-bit piece (sample 2): the alpha word is neither read nor written.
inline void store16sPieces(Lum16s* d, __m128i px) {
  store32(d, px);
  const uint16_t s2 = static_cast<uint16_t>(_mm_extract_epi16(px, 2));
  memcpy(d + 2, &s2, 2);
  store32(d + 4, _mm_srli_si128(px, 8));
  const uint16_t s6 = static_cast<uint16_t>(_mm_extract_epi16(px, 6));
  memcpy(d + 6, &s6, 2);
}

// Four pixels of 3 floats (12 floats, read and written exactly) <-> three
// registers of one channel each.
inline void load3x4f(const Lum32f* p, __m128& R, __m128& G, __m128& B) {
  __m128 c[3];
  deinterleave3x4ps(_mm_loadu_ps(p), _mm_loadu_ps(p + 4), _mm_loadu_ps(p + 8), c);
  R = c[0];
  G = c[1];
  B = c[2];
}
inline void store3x4f(Lum32f* p, __m128 R, __m128 G, __m128 B) {
  __m128 v[3];
  interleave3x4ps(R, G, B, v);
  _mm_storeu_ps(p, v[0]);
  _mm_storeu_ps(p + 4, v[1]);
  _mm_storeu_ps(p + 8, v[2]);
}
// Four pixels of 4 floats: the first three samples of each as three
// registers, and back with the fourth sample of each pixel not written (two
// samples and one sample a pixel).
inline void load3of4x4f(const Lum32f* p, __m128& R, __m128& G, __m128& B) {
  __m128 v0 = _mm_loadu_ps(p), v1 = _mm_loadu_ps(p + 4), v2 = _mm_loadu_ps(p + 8),
         v3 = _mm_loadu_ps(p + 12);
  _MM_TRANSPOSE4_PS(v0, v1, v2, v3);
  R = v0;
  G = v1;
  B = v2;
}
inline void store3of4x4f(Lum32f* p, __m128 R, __m128 G, __m128 B) {
  const __m128 rg01 = _mm_unpacklo_ps(R, G), rg23 = _mm_unpackhi_ps(R, G);
  const __m128 b1 = _mm_shuffle_ps(B, B, _MM_SHUFFLE(1, 1, 1, 1));
  _mm_storel_pi(reinterpret_cast<__m64*>(p), rg01);
  _mm_store_ss(p + 2, B);
  _mm_storeh_pi(reinterpret_cast<__m64*>(p + 4), rg01);
  _mm_store_ss(p + 6, b1);
  _mm_storel_pi(reinterpret_cast<__m64*>(p + 8), rg23);
  _mm_store_ss(p + 10, _mm_movehl_ps(B, B));
  _mm_storeh_pi(reinterpret_cast<__m64*>(p + 12), rg23);
  _mm_store_ss(p + 14, _mm_shuffle_ps(B, B, _MM_SHUFFLE(3, 3, 3, 3)));
}

// Row start in elements.

// ---------------------------------------------------------------------------
// 4 pixels of 8-bit samples as 32-bit lanes: channel k (0, 1, 2; 3 alpha) in
// c[k].  Readers give alpha 0 where the layout has none; writers narrow
// through signed 16-bit, then unsigned 8-bit saturation, and write alpha
// where the layout has it.  Tail pixels go as ints in, bytes out.

// Three or four planes (p[3] null: no alpha plane).
struct Lanes4PlanesIn {
  const Lum8u* p[4];
  void load4(int x, __m128i c[4]) const {
    for (int k = 0; k < 4; ++k) c[k] = p[k] ? bytes4to32(load32(p[k] + x)) : _mm_setzero_si128();
  }
  void load1(int x, int c[4]) const {
    for (int k = 0; k < 4; ++k) c[k] = p[k] ? p[k][x] : 0;
  }
};
struct Lanes4C3In {
  const Lum8u* p;
  void load4(int x, __m128i c[4]) const {
    load3x4b(p + 3 * x, c);
    c[3] = _mm_setzero_si128();
  }
  void load1(int x, int c[4]) const {
    const Lum8u* q = p + 3 * x;
    c[0] = q[0];
    c[1] = q[1];
    c[2] = q[2];
    c[3] = 0;
  }
};
struct Lanes4C4In {
  const Lum8u* p;
  void load4(int x, __m128i c[4]) const { load4x4b(p + 4 * x, c); }
  void load1(int x, int c[4]) const {
    const Lum8u* q = p + 4 * x;
    for (int k = 0; k < 4; ++k) c[k] = q[k];
  }
};
struct Lanes4PlanesOut {
  Lum8u* p[4];
  void store4(int x, const __m128i c[4]) const {
    for (int k = 0; k < 4; ++k)
      if (p[k]) store32(p[k] + x, pack4b(c[k]));
  }
  void store1(int x, const Lum8u c[4]) const {
    for (int k = 0; k < 4; ++k)
      if (p[k]) p[k][x] = c[k];
  }
};
struct Lanes4C3Out {
  Lum8u* p;
  void store4(int x, const __m128i c[4]) const {
    const __m128i w[3] = {_mm_packs_epi32(c[0], c[0]), _mm_packs_epi32(c[1], c[1]),
                          _mm_packs_epi32(c[2], c[2])};
    store3x4b(p + 3 * x, w);
  }
  void store1(int x, const Lum8u c[4]) const {
    Lum8u* q = p + 3 * x;
    q[0] = c[0];
    q[1] = c[1];
    q[2] = c[2];
  }
};
// All four samples written (alpha carried across).
struct Lanes4C4Out {
  Lum8u* p;
  void store4(int x, const __m128i c[4]) const {
    storeu(p + 4 * x, _mm_or_si128(pack3to4x4b(c[0], c[1], c[2]), _mm_slli_epi32(c[3], 24)));
  }
  void store1(int x, const Lum8u c[4]) const {
    Lum8u* q = p + 4 * x;
    for (int k = 0; k < 4; ++k) q[k] = c[k];
  }
};

}  // inline namespace LUM_ISA_NS
}  // namespace lum

#endif  // LUM_ROW_H
