// Subsampled layout repacking: public functions, whole-image kernels and the
// one-row forms they are built of.  Nothing here computes on a sample; the
// layouts and the repack rules are described in repack/lum_layouts.h.
//
// Every row form is a struct with its scalar form `one` (one unit) beside its
// SSE2 forms `block` (kBlock units: 32 or 64 samples, or 32 pixels of a C2
// source), `half` and mostly `quarter`.  A row runs the block while a whole
// block is left, then a half and a quarter block where they fit, then the
// scalar form for the rest (by pixel pairs, or by groups of four pixels for
// 4:1:1).  Blocks split C2 data with a mask of the even bytes
// and a shift by 8 and pack with saturating packs, which is exact on bytes;
// so block and scalar form write the same bytes.
//
// The block takes a store policy: StorePlain (unaligned stores), StoreStream
// (non-temporal 16-byte stores, destination 16-byte aligned, fenced at the
// end of the kernel) or StoreAligned (aligned loads and stores of the main
// streams).
//
// Faster rounds: where the call's Isa allows, a row first runs the whole
// rounds of the form's SSSE3 (pshufb splits of C2 pairs, the C2 chroma
// exchange) or AVX2 block (32-byte rounds of the C2 splits, the C2 merge and
// the plane (de)interleaves), in pccrepack_ssse3.cpp and pccrepack_avx2.cpp;
// they keep the store policy (16-byte non-temporal stores stay 16-byte
// non-temporal stores) and give the SSE2 block's bytes.  The SSE2 block loop
// and the tail take the rest of the row.
#include "repack/pccrepack.h"

#include <emmintrin.h>
#include <limits.h>
#include <stdint.h>
#include <string.h>

#include <initializer_list>
#include <type_traits>

#include "frame/lum_cpu.h"
#include "frame/lum_frame.h"
#include "frame/lum_simd.h"
#include "frame/pccsupport.h"
#include "repack/lum_layouts.h"

using lum::rowPtr;
using u8 = Lum8u;

namespace lum {
namespace repack {
inline namespace LUM_ISA_NS {

// Store policies (StorePlain, StoreStream, StoreAligned) and the even/odd
// byte packs are the shared ones of lum_simd.h.

inline __m128i ldu(const u8* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
inline void stu(u8* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
inline void st8(u8* p, __m128i v) { _mm_storel_epi64(reinterpret_cast<__m128i*>(p), v); }
inline __m128i ld8(const u8* p) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)); }
inline void st4(u8* p, __m128i v) {
  const int x = _mm_cvtsi128_si32(v);
  memcpy(p, &x, 4);
}
inline __m128i ld4(const u8* p) {
  int x;
  memcpy(&x, p, 4);
  return _mm_cvtsi32_si128(x);
}
inline __m128i kz() { return _mm_setzero_si128(); }

// Even bytes (mask) and odd bytes (shift by 8) of 16-bit lanes, and the
// saturating pack of two such registers back to 16 bytes.

// ---------------------------------------------------------------------------
// Row forms.  `block` takes kBlock units, `half` kBlock / 2 and, where a
// form has one (kQuarter), `quarter` kBlock / 4.  Stores of 16 bytes go
// through the policy M; narrower ones are plain.

// C2 pixel pairs -> Y row and two chroma rows.  YOdd: Y in bytes 1 and 3
// (CbYCr422), else in bytes 0 and 2.  a takes the first chroma byte of the
// pair, b the second.  Unit: one pixel pair.
template <bool YOdd>
struct SplitC2 {
  static constexpr int kBlock = 16;
  static constexpr bool kQuarter = true;
  static void one(int i, const u8* s, u8* y, u8* a, u8* b) {
    const u8* p = s + 4 * i;
    y[2 * i] = p[YOdd ? 1 : 0];
    y[2 * i + 1] = p[YOdd ? 3 : 2];
    a[i] = p[YOdd ? 0 : 1];
    b[i] = p[YOdd ? 2 : 3];
  }
  template <class M>
  static void block(int i, const u8* s, u8* y, u8* a, u8* b) {
    const u8* p = s + 4 * i;
    const __m128i v0 = M::ld(p), v1 = M::ld(p + 16), v2 = M::ld(p + 32), v3 = M::ld(p + 48);
    M::st(y + 2 * i, packSel<YOdd>(v0, v1));
    M::st(y + 2 * i + 16, packSel<YOdd>(v2, v3));
    const __m128i c0 = packSel<!YOdd>(v0, v1), c1 = packSel<!YOdd>(v2, v3);
    stu(a + i, packEven(c0, c1));
    stu(b + i, packOdd(c0, c1));
  }
  template <class M>
  static void half(int i, const u8* s, u8* y, u8* a, u8* b) {
    const u8* p = s + 4 * i;
    const __m128i v0 = M::ld(p), v1 = M::ld(p + 16);
    M::st(y + 2 * i, packSel<YOdd>(v0, v1));
    const __m128i c = packSel<!YOdd>(v0, v1);
    st8(a + i, packEven(c, kz()));
    st8(b + i, packOdd(c, kz()));
  }
  template <class M>
  static void quarter(int i, const u8* s, u8* y, u8* a, u8* b) {
    const __m128i v = M::ld(s + 4 * i);
    st8(y + 2 * i, packSel<YOdd>(v, kz()));
    const __m128i c = packSel<!YOdd>(v, kz());
    st4(a + i, packEven(c, kz()));
    st4(b + i, packOdd(c, kz()));
  }
};

// C2 pixel pairs -> Y row only (the odd rows of a C2 to 4:2:0 repack).
template <bool YOdd>
struct LumaC2 {
  static constexpr int kBlock = 16;
  static constexpr bool kQuarter = true;
  static void one(int i, const u8* s, u8* y) {
    y[2 * i] = s[4 * i + (YOdd ? 1 : 0)];
    y[2 * i + 1] = s[4 * i + (YOdd ? 3 : 2)];
  }
  template <class M>
  static void block(int i, const u8* s, u8* y) {
    half<M>(i, s, y);
    half<M>(i + 8, s, y);
  }
  template <class M>
  static void half(int i, const u8* s, u8* y) {
    const u8* p = s + 4 * i;
    M::st(y + 2 * i, packSel<YOdd>(M::ld(p), M::ld(p + 16)));
  }
  template <class M>
  static void quarter(int i, const u8* s, u8* y) {
    st8(y + 2 * i, packSel<YOdd>(M::ld(s + 4 * i), kz()));
  }
};

// C2 -> Y row and 4:1:1 chroma: the chroma of the first of every two pixel
// pairs.  Pairs: a receives Cb/Cr pairs interleaved (P2), b is unused; else
// a and b are two chroma rows.  Unit: 4 pixels (8 source bytes).
template <bool YOdd, bool Pairs>
struct SplitC2To411 {
  static constexpr int kBlock = 8;
  static constexpr bool kQuarter = false;
  static void one(int i, const u8* s, u8* y, u8* a, u8* b) {
    const u8* p = s + 8 * i;
    for (int j = 0; j < 2; ++j) {
      y[4 * i + 2 * j] = p[4 * j + (YOdd ? 1 : 0)];
      y[4 * i + 2 * j + 1] = p[4 * j + (YOdd ? 3 : 2)];
    }
    if (Pairs) {
      a[2 * i] = p[YOdd ? 0 : 1];
      a[2 * i + 1] = p[YOdd ? 2 : 3];
    } else {
      a[i] = p[YOdd ? 0 : 1];
      b[i] = p[YOdd ? 2 : 3];
    }
  }
  // Dwords 0 and 2 (the first pixel pair of each 8-byte group) in the low
  // half.
  static __m128i firstPairs(__m128i v) { return _mm_shuffle_epi32(v, _MM_SHUFFLE(3, 1, 2, 0)); }
  template <class M>
  static void block(int i, const u8* s, u8* y, u8* a, u8* b) {
    const u8* p = s + 8 * i;
    const __m128i v0 = M::ld(p), v1 = M::ld(p + 16), v2 = M::ld(p + 32), v3 = M::ld(p + 48);
    M::st(y + 4 * i, packSel<YOdd>(v0, v1));
    M::st(y + 4 * i + 16, packSel<YOdd>(v2, v3));
    // The first pixel pair of each 8-byte group, then its two chroma bytes.
    const __m128i kept = packSel<!YOdd>(_mm_unpacklo_epi64(firstPairs(v0), firstPairs(v1)),
                                        _mm_unpacklo_epi64(firstPairs(v2), firstPairs(v3)));
    if (Pairs) {
      M::st(a + 2 * i, kept);
    } else {
      st8(a + i, packEven(kept, kz()));
      st8(b + i, packOdd(kept, kz()));
    }
  }
  template <class M>
  static void half(int i, const u8* s, u8* y, u8* a, u8* b) {
    const u8* p = s + 8 * i;
    const __m128i v0 = M::ld(p), v1 = M::ld(p + 16);
    M::st(y + 4 * i, packSel<YOdd>(v0, v1));
    const __m128i kept =  // low 8 bytes
        packSel<!YOdd>(_mm_unpacklo_epi64(firstPairs(v0), firstPairs(v1)), kz());
    if (Pairs) {
      st8(a + 2 * i, kept);
    } else {
      st4(a + i, packEven(kept, kz()));
      st4(b + i, packOdd(kept, kz()));
    }
  }
};

// Y row and two chroma rows -> C2 pairs Y0 a Y1 b.  Unit: one pixel pair.
struct PackC2 {
  static constexpr int kBlock = 16;
  static constexpr bool kQuarter = true;
  static void one(int i, const u8* y, const u8* a, const u8* b, u8* d) {
    d[4 * i] = y[2 * i];
    d[4 * i + 1] = a[i];
    d[4 * i + 2] = y[2 * i + 1];
    d[4 * i + 3] = b[i];
  }
  template <class M>
  static void block(int i, const u8* y, const u8* a, const u8* b, u8* d) {
    const __m128i A = ldu(a + i), B = ldu(b + i);
    storeWithLuma<M>(ldu(y + 2 * i), ldu(y + 2 * i + 16), _mm_unpacklo_epi8(A, B),
                     _mm_unpackhi_epi8(A, B), d + 4 * i);
  }
  template <class M>
  static void half(int i, const u8* y, const u8* a, const u8* b, u8* d) {
    storeWithLuma16<M>(ldu(y + 2 * i), _mm_unpacklo_epi8(ld8(a + i), ld8(b + i)), d + 4 * i);
  }
  template <class M>
  static void quarter(int i, const u8* y, const u8* a, const u8* b, u8* d) {
    M::st(d + 4 * i, _mm_unpacklo_epi8(ld8(y + 2 * i), _mm_unpacklo_epi8(ld4(a + i), ld4(b + i))));
  }
  // 32 luma bytes and 16 chroma pairs -> 64 bytes of C2.
  template <class M>
  static void storeWithLuma(__m128i y0, __m128i y1, __m128i c0, __m128i c1, u8* d) {
    storeWithLuma16<M>(y0, c0, d);
    storeWithLuma16<M>(y1, c1, d + 32);
  }
  // 16 luma bytes and 8 chroma pairs -> 32 bytes of C2.
  template <class M>
  static void storeWithLuma16(__m128i y, __m128i c, u8* d) {
    M::st(d, _mm_unpacklo_epi8(y, c));
    M::st(d + 16, _mm_unpackhi_epi8(y, c));
  }
};

// Y row and two 4:1:1 chroma rows -> C2 pairs, each chroma sample serving
// two pixel pairs.  Unit: 4 pixels.
struct Pack411C2 {
  static constexpr int kBlock = 8;
  static constexpr bool kQuarter = false;
  static void one(int i, const u8* y, const u8* a, const u8* b, u8* d) {
    for (int j = 0; j < 2; ++j) {
      d[8 * i + 4 * j] = y[4 * i + 2 * j];
      d[8 * i + 4 * j + 1] = a[i];
      d[8 * i + 4 * j + 2] = y[4 * i + 2 * j + 1];
      d[8 * i + 4 * j + 3] = b[i];
    }
  }
  template <class M>
  static void block(int i, const u8* y, const u8* a, const u8* b, u8* d) {
    const __m128i c = _mm_unpacklo_epi8(ld8(a + i), ld8(b + i));
    PackC2::storeWithLuma<M>(ldu(y + 4 * i), ldu(y + 4 * i + 16), _mm_unpacklo_epi16(c, c),
                             _mm_unpackhi_epi16(c, c), d + 8 * i);
  }
  template <class M>
  static void half(int i, const u8* y, const u8* a, const u8* b, u8* d) {
    const __m128i c = _mm_unpacklo_epi8(ld4(a + i), ld4(b + i));
    PackC2::storeWithLuma16<M>(ldu(y + 4 * i), _mm_unpacklo_epi16(c, c), d + 8 * i);
  }
};

// Y row and one 4:1:1 P2 chroma row (Cb Cr pairs) -> C2 pairs.  Unit: 4
// pixels.
struct Pack411P2C2 {
  static constexpr int kBlock = 8;
  static constexpr bool kQuarter = true;
  static void one(int i, const u8* y, const u8* c, u8* d) {
    for (int j = 0; j < 2; ++j) {
      d[8 * i + 4 * j] = y[4 * i + 2 * j];
      d[8 * i + 4 * j + 1] = c[2 * i];
      d[8 * i + 4 * j + 2] = y[4 * i + 2 * j + 1];
      d[8 * i + 4 * j + 3] = c[2 * i + 1];
    }
  }
  template <class M>
  static void block(int i, const u8* y, const u8* c, u8* d) {
    const __m128i cc = ldu(c + 2 * i);
    PackC2::storeWithLuma<M>(ldu(y + 4 * i), ldu(y + 4 * i + 16), _mm_unpacklo_epi16(cc, cc),
                             _mm_unpackhi_epi16(cc, cc), d + 8 * i);
  }
  template <class M>
  static void half(int i, const u8* y, const u8* c, u8* d) {
    const __m128i cc = ld8(c + 2 * i);
    PackC2::storeWithLuma16<M>(ldu(y + 4 * i), _mm_unpacklo_epi16(cc, cc), d + 8 * i);
  }
  template <class M>
  static void quarter(int i, const u8* y, const u8* c, u8* d) {
    const __m128i cc = ld4(c + 2 * i);
    M::st(d + 8 * i, _mm_unpacklo_epi8(ld8(y + 4 * i), _mm_unpacklo_epi16(cc, cc)));
  }
};

// Two rows -> one row of pairs a0 b0 a1 b1 ...  Unit: one sample of each.
struct Interleave2 {
  static constexpr int kBlock = 32;
  static constexpr bool kQuarter = true;
  static void one(int i, const u8* a, const u8* b, u8* d) {
    d[2 * i] = a[i];
    d[2 * i + 1] = b[i];
  }
  template <class M>
  static void block(int i, const u8* a, const u8* b, u8* d) {
    half<M>(i, a, b, d);
    half<M>(i + 16, a, b, d);
  }
  template <class M>
  static void half(int i, const u8* a, const u8* b, u8* d) {
    const __m128i A = ldu(a + i), B = ldu(b + i);
    M::st(d + 2 * i, _mm_unpacklo_epi8(A, B));
    M::st(d + 2 * i + 16, _mm_unpackhi_epi8(A, B));
  }
  template <class M>
  static void quarter(int i, const u8* a, const u8* b, u8* d) {
    M::st(d + 2 * i, _mm_unpacklo_epi8(ld8(a + i), ld8(b + i)));
  }
};

// One row of pairs -> two rows.  Unit: one pair.
struct Deinterleave2 {
  static constexpr int kBlock = 32;
  static constexpr bool kQuarter = true;
  static void one(int i, const u8* s, u8* a, u8* b) {
    a[i] = s[2 * i];
    b[i] = s[2 * i + 1];
  }
  template <class M>
  static void block(int i, const u8* s, u8* a, u8* b) {
    half<M>(i, s, a, b);
    half<M>(i + 16, s, a, b);
  }
  template <class M>
  static void half(int i, const u8* s, u8* a, u8* b) {
    const __m128i v0 = ldu(s + 2 * i), v1 = ldu(s + 2 * i + 16);
    M::st(a + i, packEven(v0, v1));
    M::st(b + i, packOdd(v0, v1));
  }
  template <class M>
  static void quarter(int i, const u8* s, u8* a, u8* b) {
    const __m128i v = ldu(s + 2 * i);
    st8(a + i, packEven(v, kz()));
    st8(b + i, packOdd(v, kz()));
  }
};

// d[k] = s[2k]: the even samples of a row.
struct EvenBytes {
  static constexpr int kBlock = 32;
  static constexpr bool kQuarter = true;
  static void one(int i, const u8* s, u8* d) { d[i] = s[2 * i]; }
  template <class M>
  static void block(int i, const u8* s, u8* d) {
    half<M>(i, s, d);
    half<M>(i + 16, s, d);
  }
  template <class M>
  static void half(int i, const u8* s, u8* d) {
    M::st(d + i, packEven(ldu(s + 2 * i), ldu(s + 2 * i + 16)));
  }
  template <class M>
  static void quarter(int i, const u8* s, u8* d) {
    st8(d + i, packEven(ldu(s + 2 * i), kz()));
  }
};

// Pairs of every second sample of two rows, from offset O (0 or 1):
// d[2k] = a[2k + O], d[2k + 1] = b[2k + O].  Unit: one pair written.
template <int O>
struct InterleaveEvery2nd {
  static constexpr int kBlock = 16;
  static constexpr bool kQuarter = true;
  static void one(int i, const u8* a, const u8* b, u8* d) {
    d[2 * i] = a[2 * i + O];
    d[2 * i + 1] = b[2 * i + O];
  }
  template <class M>
  static void block(int i, const u8* a, const u8* b, u8* d) {
    const __m128i A = packSel<O == 1>(ldu(a + 2 * i), ldu(a + 2 * i + 16));
    const __m128i B = packSel<O == 1>(ldu(b + 2 * i), ldu(b + 2 * i + 16));
    M::st(d + 2 * i, _mm_unpacklo_epi8(A, B));
    M::st(d + 2 * i + 16, _mm_unpackhi_epi8(A, B));
  }
  template <class M>
  static void half(int i, const u8* a, const u8* b, u8* d) {
    const __m128i A = packSel<O == 1>(ldu(a + 2 * i), kz());
    const __m128i B = packSel<O == 1>(ldu(b + 2 * i), kz());
    M::st(d + 2 * i, _mm_unpacklo_epi8(A, B));
  }
  template <class M>
  static void quarter(int i, const u8* a, const u8* b, u8* d) {
    const __m128i A = packSel<O == 1>(ld8(a + 2 * i), kz());
    const __m128i B = packSel<O == 1>(ld8(b + 2 * i), kz());
    st8(d + 2 * i, _mm_unpacklo_epi8(A, B));
  }
};

// Groups of 4 bytes -> 4 rows: oj[k] = s[4k + j].  Unit: one group.
struct Split4 {
  static constexpr int kBlock = 16;
  static constexpr bool kQuarter = true;
  static void one(int i, const u8* s, u8* o0, u8* o1, u8* o2, u8* o3) {
    o0[i] = s[4 * i];
    o1[i] = s[4 * i + 1];
    o2[i] = s[4 * i + 2];
    o3[i] = s[4 * i + 3];
  }
  template <class M>
  static void block(int i, const u8* s, u8* o0, u8* o1, u8* o2, u8* o3) {
    const u8* p = s + 4 * i;
    const __m128i v0 = ldu(p), v1 = ldu(p + 16), v2 = ldu(p + 32), v3 = ldu(p + 48);
    const __m128i e0 = packEven(v0, v1), e1 = packEven(v2, v3);  // bytes 0, 2
    const __m128i d0 = packOdd(v0, v1), d1 = packOdd(v2, v3);    // bytes 1, 3
    M::st(o0 + i, packEven(e0, e1));
    M::st(o2 + i, packOdd(e0, e1));
    M::st(o1 + i, packEven(d0, d1));
    M::st(o3 + i, packOdd(d0, d1));
  }
  template <class M>
  static void half(int i, const u8* s, u8* o0, u8* o1, u8* o2, u8* o3) {
    const u8* p = s + 4 * i;
    const __m128i v0 = ldu(p), v1 = ldu(p + 16);
    const __m128i e = packEven(v0, v1), d = packOdd(v0, v1);
    st8(o0 + i, packEven(e, kz()));
    st8(o2 + i, packOdd(e, kz()));
    st8(o1 + i, packEven(d, kz()));
    st8(o3 + i, packOdd(d, kz()));
  }
  template <class M>
  static void quarter(int i, const u8* s, u8* o0, u8* o1, u8* o2, u8* o3) {
    const __m128i v = ldu(s + 4 * i);
    const __m128i e = packEven(v, kz()), d = packOdd(v, kz());
    st4(o0 + i, packEven(e, kz()));
    st4(o2 + i, packOdd(e, kz()));
    st4(o1 + i, packEven(d, kz()));
    st4(o3 + i, packOdd(d, kz()));
  }
};

// 4 rows -> groups of 4 bytes: d[4k + j] = ij[k].  Unit: one group.
struct Merge4 {
  static constexpr int kBlock = 16;
  static constexpr bool kQuarter = true;
  static void one(int i, const u8* i0, const u8* i1, const u8* i2, const u8* i3, u8* d) {
    d[4 * i] = i0[i];
    d[4 * i + 1] = i1[i];
    d[4 * i + 2] = i2[i];
    d[4 * i + 3] = i3[i];
  }
  template <class M>
  static void block(int i, const u8* i0, const u8* i1, const u8* i2, const u8* i3, u8* d) {
    const __m128i x0 = ldu(i0 + i), x1 = ldu(i1 + i), x2 = ldu(i2 + i), x3 = ldu(i3 + i);
    const __m128i eLo = _mm_unpacklo_epi8(x0, x2), eHi = _mm_unpackhi_epi8(x0, x2);
    const __m128i oLo = _mm_unpacklo_epi8(x1, x3), oHi = _mm_unpackhi_epi8(x1, x3);
    M::st(d + 4 * i, _mm_unpacklo_epi8(eLo, oLo));
    M::st(d + 4 * i + 16, _mm_unpackhi_epi8(eLo, oLo));
    M::st(d + 4 * i + 32, _mm_unpacklo_epi8(eHi, oHi));
    M::st(d + 4 * i + 48, _mm_unpackhi_epi8(eHi, oHi));
  }
  template <class M>
  static void half(int i, const u8* i0, const u8* i1, const u8* i2, const u8* i3, u8* d) {
    const __m128i e = _mm_unpacklo_epi8(ld8(i0 + i), ld8(i2 + i));
    const __m128i o = _mm_unpacklo_epi8(ld8(i1 + i), ld8(i3 + i));
    M::st(d + 4 * i, _mm_unpacklo_epi8(e, o));
    M::st(d + 4 * i + 16, _mm_unpackhi_epi8(e, o));
  }
  template <class M>
  static void quarter(int i, const u8* i0, const u8* i1, const u8* i2, const u8* i3, u8* d) {
    const __m128i e = _mm_unpacklo_epi8(ld4(i0 + i), ld4(i2 + i));
    const __m128i o = _mm_unpacklo_epi8(ld4(i1 + i), ld4(i3 + i));
    M::st(d + 4 * i, _mm_unpacklo_epi8(e, o));
  }
};

// Each sample repeated: d[2k] = d[2k + 1] = s[k].  Unit: one source sample.
struct DupBytes {
  static constexpr int kBlock = 32;
  static constexpr bool kQuarter = true;
  static void one(int i, const u8* s, u8* d) { d[2 * i] = d[2 * i + 1] = s[i]; }
  template <class M>
  static void block(int i, const u8* s, u8* d) {
    half<M>(i, s, d);
    half<M>(i + 16, s, d);
  }
  template <class M>
  static void half(int i, const u8* s, u8* d) {
    const __m128i v = ldu(s + i);
    M::st(d + 2 * i, _mm_unpacklo_epi8(v, v));
    M::st(d + 2 * i + 16, _mm_unpackhi_epi8(v, v));
  }
  template <class M>
  static void quarter(int i, const u8* s, u8* d) {
    const __m128i v = ld8(s + i);
    M::st(d + 2 * i, _mm_unpacklo_epi8(v, v));
  }
};

// A row of pairs -> two rows with each sample repeated:
// a[2k] = a[2k + 1] = s[2k], b[2k] = b[2k + 1] = s[2k + 1].  Unit: one pair.
struct DeinterleaveDup {
  static constexpr int kBlock = 16;
  static constexpr bool kQuarter = true;
  static void one(int i, const u8* s, u8* a, u8* b) {
    a[2 * i] = a[2 * i + 1] = s[2 * i];
    b[2 * i] = b[2 * i + 1] = s[2 * i + 1];
  }
  template <class M>
  static void block(int i, const u8* s, u8* a, u8* b) {
    const __m128i v0 = ldu(s + 2 * i), v1 = ldu(s + 2 * i + 16);
    const __m128i A = packEven(v0, v1), B = packOdd(v0, v1);
    M::st(a + 2 * i, _mm_unpacklo_epi8(A, A));
    M::st(a + 2 * i + 16, _mm_unpackhi_epi8(A, A));
    M::st(b + 2 * i, _mm_unpacklo_epi8(B, B));
    M::st(b + 2 * i + 16, _mm_unpackhi_epi8(B, B));
  }
  template <class M>
  static void half(int i, const u8* s, u8* a, u8* b) {
    const __m128i v = ldu(s + 2 * i);
    const __m128i A = packEven(v, kz()), B = packOdd(v, kz());
    M::st(a + 2 * i, _mm_unpacklo_epi8(A, A));
    M::st(b + 2 * i, _mm_unpacklo_epi8(B, B));
  }
  template <class M>
  static void quarter(int i, const u8* s, u8* a, u8* b) {
    const __m128i v = ld8(s + 2 * i);
    const __m128i A = packEven(v, kz()), B = packOdd(v, kz());
    st8(a + 2 * i, _mm_unpacklo_epi8(A, A));
    st8(b + 2 * i, _mm_unpacklo_epi8(B, B));
  }
};

// Two rows of pairs (rows 2r and 2r+1 of a 4:1:1 P2 plane) -> two 4:2:0
// rows: a[2k] = A[2k], a[2k + 1] = B[2k], b[2k] = A[2k + 1],
// b[2k + 1] = B[2k + 1].  Unit: one pair of each source row.
struct MergeSplitPairs {
  static constexpr int kBlock = 16;
  static constexpr bool kQuarter = true;
  static void one(int i, const u8* A, const u8* B, u8* a, u8* b) {
    a[2 * i] = A[2 * i];
    a[2 * i + 1] = B[2 * i];
    b[2 * i] = A[2 * i + 1];
    b[2 * i + 1] = B[2 * i + 1];
  }
  template <class M>
  static void block(int i, const u8* A, const u8* B, u8* a, u8* b) {
    half<M>(i, A, B, a, b);
    half<M>(i + 8, A, B, a, b);
  }
  template <class M>
  static void half(int i, const u8* A, const u8* B, u8* a, u8* b) {
    const __m128i x = ldu(A + 2 * i), y = ldu(B + 2 * i);
    // Words of the riffle: (a0 a1) (b0 b1) (a2 a3) (b2 b3) ...
    const __m128i e0 = lum::evenOddWords(_mm_unpacklo_epi8(x, y));
    const __m128i e1 = lum::evenOddWords(_mm_unpackhi_epi8(x, y));
    M::st(a + 2 * i, _mm_unpacklo_epi64(e0, e1));
    M::st(b + 2 * i, _mm_unpackhi_epi64(e0, e1));
  }
  template <class M>
  static void quarter(int i, const u8* A, const u8* B, u8* a, u8* b) {
    const __m128i e = lum::evenOddWords(_mm_unpacklo_epi8(ld8(A + 2 * i), ld8(B + 2 * i)));
    st8(a + 2 * i, e);
    st8(b + 2 * i, _mm_unpackhi_epi64(e, e));
  }
};

// C2 bytes 1 and 3 of each 4-byte group exchanged.  Unit: one group.
struct SwapC2Chroma {
  static constexpr int kBlock = 16;
  static constexpr bool kQuarter = true;
  static void one(int i, const u8* s, u8* d) {
    d[4 * i] = s[4 * i];
    d[4 * i + 1] = s[4 * i + 3];
    d[4 * i + 2] = s[4 * i + 2];
    d[4 * i + 3] = s[4 * i + 1];
  }
  template <class M>
  static void block(int i, const u8* s, u8* d) {
    half<M>(i, s, d);
    half<M>(i + 8, s, d);
  }
  template <class M>
  static void half(int i, const u8* s, u8* d) {
    quarter<M>(i, s, d);
    quarter<M>(i + 4, s, d);
  }
  template <class M>
  static void quarter(int i, const u8* s, u8* d) {
    // The two 16-bit words of each group exchanged, then the luma bytes
    // taken back from the original.
    const __m128i keep = _mm_set1_epi32(0x00ff00ff);
    const __m128i v = ldu(s + 4 * i);
    const __m128i r = _mm_shufflehi_epi16(_mm_shufflelo_epi16(v, _MM_SHUFFLE(2, 3, 0, 1)),
                                          _MM_SHUFFLE(2, 3, 0, 1));
    M::st(d + 4 * i, _mm_or_si128(_mm_and_si128(v, keep), _mm_andnot_si128(keep, r)));
  }
};

// Faster rounds of a form: the whole rounds of its SSSE3 or AVX2 block
// (pccrepack_ssse3.cpp, pccrepack_avx2.cpp) when the call's Isa allows;
// returns the units done.  Forms without a faster block do none.
template <class M>
constexpr Store storeOf() {
  return std::is_same<M, StoreStream>::value
             ? Store::StoreStream
             : (std::is_same<M, StoreAligned>::value ? Store::StoreAligned : Store::StorePlain);
}
template <class F>
struct Faster {
  template <class M, class... A>
  static int run(Isa, int, A...) {
    return 0;
  }
};
template <bool YOdd>
struct Faster<SplitC2<YOdd>> {
  template <class M>
  static int run(Isa isa, int n, const u8* s, u8* y, u8* a, u8* b) {
    if (isa >= kIsaAvx2) return splitC2_avx2(n, YOdd, storeOf<M>(), s, y, a, b);
    if (isa >= kIsaSsse3) return splitC2_ssse3(n, YOdd, storeOf<M>(), s, y, a, b);
    return 0;
  }
};
template <bool YOdd>
struct Faster<LumaC2<YOdd>> {
  template <class M>
  static int run(Isa isa, int n, const u8* s, u8* y) {
    return isa >= kIsaAvx2 ? lumaC2_avx2(n, YOdd, storeOf<M>(), s, y) : 0;
  }
};
template <>
struct Faster<SwapC2Chroma> {
  template <class M>
  static int run(Isa isa, int n, const u8* s, u8* d) {
    if (isa >= kIsaAvx2) return swapC2Chroma_avx2(n, storeOf<M>(), s, d);
    if (isa >= kIsaSsse3) return swapC2Chroma_ssse3(n, storeOf<M>(), s, d);
    return 0;
  }
};
template <>
struct Faster<PackC2> {
  template <class M>
  static int run(Isa isa, int n, const u8* y, const u8* a, const u8* b, u8* d) {
    return isa >= kIsaAvx2 ? packC2_avx2(n, storeOf<M>(), y, a, b, d) : 0;
  }
};
template <>
struct Faster<Interleave2> {
  template <class M>
  static int run(Isa isa, int n, const u8* a, const u8* b, u8* d) {
    return isa >= kIsaAvx2 ? interleave2_avx2(n, storeOf<M>(), a, b, d) : 0;
  }
};
template <>
struct Faster<Deinterleave2> {
  template <class M>
  static int run(Isa isa, int n, const u8* s, u8* a, u8* b) {
    return isa >= kIsaAvx2 ? deinterleave2_avx2(n, storeOf<M>(), s, a, b) : 0;
  }
};

// One row: the faster rounds the call's Isa allows, then the block while a
// whole block is left, then a half and a quarter block where they fit, then
// the scalar form for the rest.
template <class F, class M = StorePlain, class... A>
inline void row(Isa isa, int n, A... a) {
  int i = Faster<F>::template run<M>(isa, n, a...);
  for (; i + F::kBlock <= n; i += F::kBlock) F::template block<M>(i, a...);
  if (i + F::kBlock / 2 <= n) {
    F::template half<M>(i, a...);
    i += F::kBlock / 2;
  }
  if constexpr (F::kQuarter) {
    if (i + F::kBlock / 4 <= n) {
      F::template quarter<M>(i, a...);
      i += F::kBlock / 4;
    }
  }
  for (; i < n; ++i) F::one(i, a...);
}
template <class F, class... A>
inline void rowScalar(int n, A... a) {
  for (int i = 0; i < n; ++i) F::one(i, a...);
}

// ---------------------------------------------------------------------------
// Row forms as pointer-array calls, for the tests.
template <class F>
struct FormCall;
#define LUM_FORM_CALL(F, SIG_ARGS)                                                   \
  template <>                                                                        \
  struct FormCall<F> {                                                               \
    static void vec(const u8* const* s, u8* const* d, int n, Isa isa) {               \
      row<F>(isa, n, SIG_ARGS);                                                      \
    }                                                                                \
    static void scalar(const u8* const* s, u8* const* d, int n) {                     \
      rowScalar<F>(n, SIG_ARGS);                                                     \
    }                                                                                \
  };
#define S_D3 s[0], d[0], d[1], d[2]
#define S_D1 s[0], d[0]
#define S2_D1 s[0], s[1], d[0]
#define S_D2 s[0], d[0], d[1]
#define S3_D1 s[0], s[1], s[2], d[0]
#define S2_D2 s[0], s[1], d[0], d[1]
LUM_FORM_CALL(SplitC2<false>, S_D3)
LUM_FORM_CALL(SplitC2<true>, S_D3)
LUM_FORM_CALL(LumaC2<false>, S_D1)
LUM_FORM_CALL(LumaC2<true>, S_D1)
LUM_FORM_CALL(PackC2, S3_D1)
LUM_FORM_CALL(Pack411C2, S3_D1)
LUM_FORM_CALL(Pack411P2C2, S2_D1)
LUM_FORM_CALL(Interleave2, S2_D1)
LUM_FORM_CALL(Deinterleave2, S_D2)
LUM_FORM_CALL(EvenBytes, S_D1)
LUM_FORM_CALL(InterleaveEvery2nd<0>, S2_D1)
LUM_FORM_CALL(InterleaveEvery2nd<1>, S2_D1)
LUM_FORM_CALL(DupBytes, S_D1)
LUM_FORM_CALL(DeinterleaveDup, S_D2)
LUM_FORM_CALL(MergeSplitPairs, S2_D2)
LUM_FORM_CALL(SwapC2Chroma, S_D1)
template <>
struct FormCall<SplitC2To411<false, false>> {
  static void vec(const u8* const* s, u8* const* d, int n, Isa isa) {
    row<SplitC2To411<false, false>>(isa, n, s[0], d[0], d[1], d[2]);
  }
  static void scalar(const u8* const* s, u8* const* d, int n) {
    rowScalar<SplitC2To411<false, false>>(n, s[0], d[0], d[1], d[2]);
  }
};
template <>
struct FormCall<SplitC2To411<true, false>> {
  static void vec(const u8* const* s, u8* const* d, int n, Isa isa) {
    row<SplitC2To411<true, false>>(isa, n, s[0], d[0], d[1], d[2]);
  }
  static void scalar(const u8* const* s, u8* const* d, int n) {
    rowScalar<SplitC2To411<true, false>>(n, s[0], d[0], d[1], d[2]);
  }
};
template <>
struct FormCall<SplitC2To411<false, true>> {
  static void vec(const u8* const* s, u8* const* d, int n, Isa isa) {
    row<SplitC2To411<false, true>>(isa, n, s[0], d[0], d[1], static_cast<u8*>(nullptr));
  }
  static void scalar(const u8* const* s, u8* const* d, int n) {
    rowScalar<SplitC2To411<false, true>>(n, s[0], d[0], d[1], static_cast<u8*>(nullptr));
  }
};
template <>
struct FormCall<Split4> {
  static void vec(const u8* const* s, u8* const* d, int n, Isa isa) {
    row<Split4>(isa, n, s[0], d[0], d[1], d[2], d[3]);
  }
  static void scalar(const u8* const* s, u8* const* d, int n) {
    rowScalar<Split4>(n, s[0], d[0], d[1], d[2], d[3]);
  }
};
template <>
struct FormCall<Merge4> {
  static void vec(const u8* const* s, u8* const* d, int n, Isa isa) {
    row<Merge4>(isa, n, s[0], s[1], s[2], s[3], d[0]);
  }
  static void scalar(const u8* const* s, u8* const* d, int n) {
    rowScalar<Merge4>(n, s[0], s[1], s[2], s[3], d[0]);
  }
};
#undef S_D3
#undef S_D1
#undef S2_D1
#undef S_D2
#undef S3_D1
#undef S2_D2
#undef LUM_FORM_CALL

template <class F>
constexpr lum::repack::RowForm form(const char* name, int nSrc, int nDst,
                                    std::initializer_list<int> sb, std::initializer_list<int> db) {
  lum::repack::RowForm f{name, nSrc, nDst, {0, 0, 0, 0}, {0, 0, 0, 0}, F::kBlock,
                         &FormCall<F>::vec, &FormCall<F>::scalar};
  int k = 0;
  for (int b : sb) f.srcBytes[k++] = b;
  k = 0;
  for (int b : db) f.dstBytes[k++] = b;
  return f;
}

// ---------------------------------------------------------------------------
// Shared pieces of the kernels.

// Y rows copied one at a time by the repack row copy.
void copyLuma(const u8* pSrc, int srcStep, u8* pDst, int dstStep, int width, int height,
              int nonTemporal) {
  for (int y = 0; y < height; ++y)
    lum::svc::ownccCopy_8u_C1_W7(rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep), width, nonTemporal);
}
void copyRows(const u8* pSrc, int srcStep, u8* pDst, int dstStep, int width, int height) {
  copyLuma(pSrc, srcStep, pDst, dstStep, width, height, 0);
}

inline bool aligned16(const void* p) { return (reinterpret_cast<uintptr_t>(p) & 15u) == 0; }
inline bool aligned16(int step) { return (step & 15) == 0; }

// Bytes touched per row, summed over the images, times the height, as the
// non-temporal tests of the C2 destinations measure it (32-bit product).
inline bool bigFrame(int stepSum, int height, int32_t limit) {
  return lum::pixelCount32(stepSum, height) > limit;
}

constexpr int32_t kNtY348602 = 348602;
constexpr int32_t kNtY524288 = 524288;
constexpr int32_t kNtC2Dst = 524288;
constexpr int32_t kNtC2P2 = 1572864;

// The rows of a kernel with a C2 destination, with the store policy chosen
// once per call.
template <class RowFn>
void c2DestRows(bool nonTemporal, int height, RowFn fn) {
  if (nonTemporal) {
    for (int y = 0; y < height; ++y) fn(y, StoreStream{});
    _mm_sfence();
  } else {
    for (int y = 0; y < height; ++y) fn(y, StorePlain{});
  }
}

}  // inline namespace LUM_ISA_NS
}  // namespace repack
}  // namespace lum

// ===========================================================================
// Row forms, for the tests.
namespace lum {
namespace repack {
const RowForm* rowForms(int* count) {
  static constexpr RowForm kForms[] = {
      form<SplitC2<false>>("SplitC2_YCbCr", 1, 3, {4}, {2, 1, 1}),
      form<SplitC2<true>>("SplitC2_CbYCr", 1, 3, {4}, {2, 1, 1}),
      form<LumaC2<false>>("LumaC2_YCbCr", 1, 1, {4}, {2}),
      form<LumaC2<true>>("LumaC2_CbYCr", 1, 1, {4}, {2}),
      form<SplitC2To411<false, false>>("SplitC2To411_YCbCr", 1, 3, {8}, {4, 1, 1}),
      form<SplitC2To411<true, false>>("SplitC2To411_CbYCr", 1, 3, {8}, {4, 1, 1}),
      form<SplitC2To411<false, true>>("SplitC2To411Pairs_YCbCr", 1, 2, {8}, {4, 2}),
      form<PackC2>("PackC2", 3, 1, {2, 1, 1}, {4}),
      form<Pack411C2>("Pack411C2", 3, 1, {4, 1, 1}, {8}),
      form<Pack411P2C2>("Pack411P2C2", 2, 1, {4, 2}, {8}),
      form<Interleave2>("Interleave2", 2, 1, {1, 1}, {2}),
      form<Deinterleave2>("Deinterleave2", 1, 2, {2}, {1, 1}),
      form<EvenBytes>("EvenBytes", 1, 1, {2}, {1}),
      form<InterleaveEvery2nd<0>>("InterleaveEvery2nd0", 2, 1, {2, 2}, {2}),
      form<InterleaveEvery2nd<1>>("InterleaveEvery2nd1", 2, 1, {2, 2}, {2}),
      form<Split4>("Split4", 1, 4, {4}, {1, 1, 1, 1}),
      form<Merge4>("Merge4", 4, 1, {1, 1, 1, 1}, {4}),
      form<DupBytes>("DupBytes", 1, 1, {1}, {2}),
      form<DeinterleaveDup>("DeinterleaveDup", 1, 2, {2}, {2, 2}),
      form<MergeSplitPairs>("MergeSplitPairs", 2, 2, {2, 2}, {2, 2}),
      form<SwapC2Chroma>("SwapC2Chroma", 1, 1, {4}, {4}),
  };
  *count = static_cast<int>(sizeof kForms / sizeof kForms[0]);
  return kForms;
}
}  // namespace repack
}  // namespace lum

// ===========================================================================
// Whole-image kernels.
namespace lum {
namespace repack {


void ownYCbCr422ToYCbCr420_8u_P3R(const u8* const pSrc[3], const int srcStep[3],
                                  u8* const pDst[3], const int dstStep[3], int width,
                                  int height, Isa /*isa: copies only*/) {
  const int nt = lum::pixelCount32(width, height) > kNtY348602 ? 1 : 0;
  copyLuma(pSrc[0], srcStep[0], pDst[0], dstStep[0], width, height, nt);
  for (int c = 1; c <= 2; ++c)
    for (int r = 0; r < height / 2; ++r)
      lum::svc::ownccCopy_8u_C1_W7(rowPtr(pSrc[c], 2 * r, srcStep[c]), rowPtr(pDst[c], r, dstStep[c]),
                         width / 2, 0);
}

void ownYCbCr420ToYCbCr422_8u_P3R(const u8* const pSrc[3], const int srcStep[3],
                                  u8* const pDst[3], const int dstStep[3], int width, int height,
                                  int swap, Isa /*isa: copies only*/) {
  copyRows(pSrc[0], srcStep[0], pDst[0], dstStep[0], width, height);
  for (int c = 1; c <= 2; ++c) {
    const int s = swap ? 3 - c : c;
    for (int r = 0; r < height / 2; ++r)
      for (int k = 0; k < 2; ++k)
        lum::svc::ownccCopy_8u_C1_W7(rowPtr(pSrc[s], r, srcStep[s]), rowPtr(pDst[c], 2 * r + k, dstStep[c]),
                           width / 2, 0);
  }
}

void ownYCbCr422ToYCbCr422_8u_C2P3R(const u8* pSrc, int srcStep, u8* const pDst[3],
                                    const int dstStep[3], int width, int height, int swap, Isa isa) {
  u8* const a = swap ? pDst[2] : pDst[1];
  u8* const b = swap ? pDst[1] : pDst[2];
  const int sa = swap ? dstStep[2] : dstStep[1], sb = swap ? dstStep[1] : dstStep[2];
  for (int y = 0; y < height; ++y)
    row<SplitC2<false>>(isa, width / 2, rowPtr(pSrc, y, srcStep), rowPtr(pDst[0], y, dstStep[0]),
                        rowPtr(a, y, sa), rowPtr(b, y, sb));
}

// StoreAligned loads of the source and aligned stores of Y; the chroma planes are
// not required to be aligned.  No swap: byte 1 to plane 1, byte 3 to plane 2.
void alYCbCr422ToYCbCr422_8u_C2P3R(const u8* pSrc, int srcStep, u8* const pDst[3],
                                   const int dstStep[3], int width, int height, Isa isa) {
  for (int y = 0; y < height; ++y)
    row<SplitC2<false>, StoreAligned>(isa, width / 2, rowPtr(pSrc, y, srcStep),
                                 rowPtr(pDst[0], y, dstStep[0]), rowPtr(pDst[1], y, dstStep[1]),
                                 rowPtr(pDst[2], y, dstStep[2]));
  _mm_sfence();
}

void ownCbYCr422ToYCbCr422_8u_C2P3R(const u8* pSrc, int srcStep, u8* const pDst[3],
                                    const int dstStep[3], int width, int height, Isa isa) {
  for (int y = 0; y < height; ++y)
    row<SplitC2<true>>(isa, width / 2, rowPtr(pSrc, y, srcStep), rowPtr(pDst[0], y, dstStep[0]),
                       rowPtr(pDst[1], y, dstStep[1]), rowPtr(pDst[2], y, dstStep[2]));
}

namespace {
template <bool YOdd>
void c2To420(const u8* pSrc, int srcStep, u8* const pDst[3], const int dstStep[3], int width,
             int height, int swap, Isa isa) {
  u8* const a = swap ? pDst[2] : pDst[1];
  u8* const b = swap ? pDst[1] : pDst[2];
  const int sa = swap ? dstStep[2] : dstStep[1], sb = swap ? dstStep[1] : dstStep[2];
  for (int r = 0; r < height / 2; ++r) {
    row<SplitC2<YOdd>>(isa, width / 2, rowPtr(pSrc, 2 * r, srcStep),
                       rowPtr(pDst[0], 2 * r, dstStep[0]), rowPtr(a, r, sa), rowPtr(b, r, sb));
    row<LumaC2<YOdd>>(isa, width / 2, rowPtr(pSrc, 2 * r + 1, srcStep),
                      rowPtr(pDst[0], 2 * r + 1, dstStep[0]));
  }
}
template <bool YOdd>
void c2To411(const u8* pSrc, int srcStep, u8* const pDst[3], const int dstStep[3], int width,
             int height, int swap, Isa isa) {
  u8* const a = swap ? pDst[2] : pDst[1];
  u8* const b = swap ? pDst[1] : pDst[2];
  const int sa = swap ? dstStep[2] : dstStep[1], sb = swap ? dstStep[1] : dstStep[2];
  for (int y = 0; y < height; ++y)
    row<SplitC2To411<YOdd, false>>(isa, width / 4, rowPtr(pSrc, y, srcStep),
                                   rowPtr(pDst[0], y, dstStep[0]), rowPtr(a, y, sa),
                                   rowPtr(b, y, sb));
}
}  // namespace

void ownYCbCr422ToYCbCr420_8u_C2P3R(const u8* pSrc, int srcStep, u8* const pDst[3],
                                    const int dstStep[3], int width, int height, int swap, Isa isa) {
  c2To420<false>(pSrc, srcStep, pDst, dstStep, width, height, swap, isa);
}
void ownCbYCr422ToYCbCr420_8u_C2P3R(const u8* pSrc, int srcStep, u8* const pDst[3],
                                    const int dstStep[3], int width, int height, Isa isa) {
  c2To420<true>(pSrc, srcStep, pDst, dstStep, width, height, 0, isa);
}
void ownYCbCr422ToYCbCr411_8u_C2P3R(const u8* pSrc, int srcStep, u8* const pDst[3],
                                    const int dstStep[3], int width, int height, int swap, Isa isa) {
  c2To411<false>(pSrc, srcStep, pDst, dstStep, width, height, swap, isa);
}
void ownCbYCr422ToYCbCr411_8u_C2P3R(const u8* pSrc, int srcStep, u8* const pDst[3],
                                    const int dstStep[3], int width, int height, Isa isa) {
  c2To411<true>(pSrc, srcStep, pDst, dstStep, width, height, 0, isa);
}

void ownYCbCr422ToYCbCr420_8u_P3P2R(const u8* const pSrc[3], const int srcStep[3], u8* pDstY,
                                    int dstYStep, u8* pDstCbCr, int dstCbCrStep, int width,
                                    int height, Isa isa) {
  copyRows(pSrc[0], srcStep[0], pDstY, dstYStep, width, height);
  for (int r = 0; r < height / 2; ++r)
    row<Interleave2>(isa, width / 2, rowPtr(pSrc[1], 2 * r, srcStep[1]),
                     rowPtr(pSrc[2], 2 * r, srcStep[2]), rowPtr(pDstCbCr, r, dstCbCrStep));
}

void ownYCbCr420ToYCbCr422_8u_P2P3R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr,
                                    int srcCbCrStep, u8* const pDst[3], const int dstStep[3],
                                    int width, int height, Isa isa) {
  copyRows(pSrcY, srcYStep, pDst[0], dstStep[0], width, height);
  for (int r = 0; r < height / 2; ++r)
    for (int k = 0; k < 2; ++k)
      row<Deinterleave2>(isa, width / 2, rowPtr(pSrcCbCr, r, srcCbCrStep),
                         rowPtr(pDst[1], 2 * r + k, dstStep[1]),
                         rowPtr(pDst[2], 2 * r + k, dstStep[2]));
}

void ownYCbCr420ToYCbCr420_8u_P3P2R(const u8* const pSrc[3], const int srcStep[3], u8* pDstY,
                                    int dstYStep, u8* pDstCbCr, int dstCbCrStep, int width,
                                    int height, Isa isa) {
  copyRows(pSrc[0], srcStep[0], pDstY, dstYStep, width, height);
  for (int r = 0; r < height / 2; ++r)
    row<Interleave2>(isa, width / 2, rowPtr(pSrc[1], r, srcStep[1]), rowPtr(pSrc[2], r, srcStep[2]),
                     rowPtr(pDstCbCr, r, dstCbCrStep));
}

void ownYCbCr420ToYCbCr420_8u_P2P3R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr,
                                    int srcCbCrStep, u8* const pDst[3], const int dstStep[3],
                                    int width, int height, Isa isa) {
  copyRows(pSrcY, srcYStep, pDst[0], dstStep[0], width, height);
  for (int r = 0; r < height / 2; ++r)
    row<Deinterleave2>(isa, width / 2, rowPtr(pSrcCbCr, r, srcCbCrStep), rowPtr(pDst[1], r, dstStep[1]),
                       rowPtr(pDst[2], r, dstStep[2]));
}

void ownYCbCr422ToYCbCr411_8u_P3P2R(const u8* const pSrc[3], const int srcStep[3], u8* pDstY,
                                    int dstYStep, u8* pDstCbCr, int dstCbCrStep, int width,
                                    int height, Isa isa) {
  copyRows(pSrc[0], srcStep[0], pDstY, dstYStep, width, height);
  for (int y = 0; y < height; ++y)
    row<InterleaveEvery2nd<0>>(isa, width / 4, rowPtr(pSrc[1], y, srcStep[1]),
                               rowPtr(pSrc[2], y, srcStep[2]), rowPtr(pDstCbCr, y, dstCbCrStep));
}

void ownYCrCb420ToYCbCr411_8u_P3P2R(const u8* const pSrc[3], const int srcStep[3], u8* pDstY,
                                    int dstYStep, u8* pDstCbCr, int dstCbCrStep, int width,
                                    int height, int swap, Isa isa) {
  // Flag 0: the first byte of each pair (Cb) from plane 2, as YCrCb order
  // puts it; flag 1: from plane 1.
  const int first = swap ? 1 : 2, second = 3 - first;
  copyRows(pSrc[0], srcStep[0], pDstY, dstYStep, width, height);
  for (int r = 0; r < height / 2; ++r) {
    const u8* a = rowPtr(pSrc[first], r, srcStep[first]);
    const u8* b = rowPtr(pSrc[second], r, srcStep[second]);
    row<InterleaveEvery2nd<0>>(isa, width / 4, a, b, rowPtr(pDstCbCr, 2 * r, dstCbCrStep));
    row<InterleaveEvery2nd<1>>(isa, width / 4, a, b, rowPtr(pDstCbCr, 2 * r + 1, dstCbCrStep));
  }
}

void ownYCbCr420ToYCbCr411_8u_P2P3R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr,
                                    int srcCbCrStep, u8* const pDst[3], const int dstStep[3],
                                    int width, int height, Isa isa) {
  copyRows(pSrcY, srcYStep, pDst[0], dstStep[0], width, height);
  for (int r = 0; r < height / 2; ++r)
    row<Split4>(isa, width / 4, rowPtr(pSrcCbCr, r, srcCbCrStep), rowPtr(pDst[1], 2 * r, dstStep[1]),
                rowPtr(pDst[2], 2 * r, dstStep[2]), rowPtr(pDst[1], 2 * r + 1, dstStep[1]),
                rowPtr(pDst[2], 2 * r + 1, dstStep[2]));
}

void ownYCbCr411ToYCbCr422_8u_P3C2R(const u8* const pSrc[3], const int srcStep[3], u8* pDst,
                                    int dstStep, int width, int height, int swap, Isa isa) {
  const int a = swap ? 2 : 1, b = 3 - a;
  const bool nt = aligned16(pDst) && aligned16(dstStep) &&
                  bigFrame(srcStep[0] + srcStep[1] + srcStep[2] + dstStep, height, kNtC2Dst);
  c2DestRows(nt, height, [&](int y, auto m) {
    row<Pack411C2, decltype(m)>(isa, width / 4, rowPtr(pSrc[0], y, srcStep[0]),
                                rowPtr(pSrc[a], y, srcStep[a]), rowPtr(pSrc[b], y, srcStep[b]),
                                rowPtr(pDst, y, dstStep));
  });
}

void ownYCbCr411ToYCbCr422_8u_P3R(const u8* const pSrc[3], const int srcStep[3],
                                  u8* const pDst[3], const int dstStep[3], int width, int height,
                                  int swap, Isa isa) {
  copyRows(pSrc[0], srcStep[0], pDst[0], dstStep[0], width, height);
  for (int c = 1; c <= 2; ++c) {
    const int d = swap ? 3 - c : c;
    for (int y = 0; y < height; ++y)
      row<DupBytes>(isa, width / 4, rowPtr(pSrc[c], y, srcStep[c]), rowPtr(pDst[d], y, dstStep[d]));
  }
}

void ownYCbCr411ToYCbCr420_8u_P3R(const u8* const pSrc[3], const int srcStep[3],
                                  u8* const pDst[3], const int dstStep[3], int width,
                                  int height, Isa isa) {
  copyRows(pSrc[0], srcStep[0], pDst[0], dstStep[0], width, height);
  for (int c = 1; c <= 2; ++c)
    for (int r = 0; r < height / 2; ++r)
      row<Interleave2>(isa, width / 4, rowPtr(pSrc[c], 2 * r, srcStep[c]),
                       rowPtr(pSrc[c], 2 * r + 1, srcStep[c]), rowPtr(pDst[c], r, dstStep[c]));
}

void ownYCbCr411ToYCbCr420_8u_P3P2R(const u8* const pSrc[3], const int srcStep[3], u8* pDstY,
                                    int dstYStep, u8* pDstCbCr, int dstCbCrStep, int width,
                                    int height, Isa isa) {
  const int nt = lum::pixelCount32(width, height) > kNtY348602 ? 1 : 0;
  copyLuma(pSrc[0], srcStep[0], pDstY, dstYStep, width, height, nt);
  // Pair 2m of the row takes the samples of source row 2r, pair 2m+1 those
  // of row 2r+1.
  for (int r = 0; r < height / 2; ++r)
    row<Merge4>(isa, width / 4, rowPtr(pSrc[1], 2 * r, srcStep[1]), rowPtr(pSrc[2], 2 * r, srcStep[2]),
                rowPtr(pSrc[1], 2 * r + 1, srcStep[1]), rowPtr(pSrc[2], 2 * r + 1, srcStep[2]),
                rowPtr(pDstCbCr, r, dstCbCrStep));
}

void ownYCbCr411ToYCbCr411_8u_P3P2R(const u8* const pSrc[3], const int srcStep[3], u8* pDstY,
                                    int dstYStep, u8* pDstCbCr, int dstCbCrStep, int width,
                                    int height, Isa isa) {
  const int nt = lum::pixelCount32(width, height) > kNtY348602 ? 1 : 0;
  copyLuma(pSrc[0], srcStep[0], pDstY, dstYStep, width, height, nt);
  for (int y = 0; y < height; ++y)
    row<Interleave2>(isa, width / 4, rowPtr(pSrc[1], y, srcStep[1]), rowPtr(pSrc[2], y, srcStep[2]),
                     rowPtr(pDstCbCr, y, dstCbCrStep));
}

void ownYCbCr411ToYCbCr422_8u_P2C2R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr,
                                    int srcCbCrStep, u8* pDst, int dstStep, int width,
                                    int height, Isa isa) {
  const bool nt = aligned16(pDst) && aligned16(dstStep) &&
                  bigFrame(srcYStep + srcCbCrStep + dstStep, height, kNtC2Dst);
  c2DestRows(nt, height, [&](int y, auto m) {
    row<Pack411P2C2, decltype(m)>(isa, width / 4, rowPtr(pSrcY, y, srcYStep),
                                  rowPtr(pSrcCbCr, y, srcCbCrStep), rowPtr(pDst, y, dstStep));
  });
}

void ownYCbCr411ToYCbCr422_8u_P2P3R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr,
                                    int srcCbCrStep, u8* const pDst[3], const int dstStep[3],
                                    int width, int height, Isa isa) {
  const int nt = lum::pixelCount32(width, height) > kNtY348602 ? 1 : 0;
  copyLuma(pSrcY, srcYStep, pDst[0], dstStep[0], width, height, nt);
  for (int y = 0; y < height; ++y)
    row<DeinterleaveDup>(isa, width / 4, rowPtr(pSrcCbCr, y, srcCbCrStep),
                         rowPtr(pDst[1], y, dstStep[1]), rowPtr(pDst[2], y, dstStep[2]));
}

void ownYCbCr411ToYCbCr420_8u_P2P3R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr,
                                    int srcCbCrStep, u8* const pDst[3], const int dstStep[3],
                                    int width, int height, int swap, Isa isa) {
  const int a = swap ? 2 : 1, b = 3 - a;
  copyRows(pSrcY, srcYStep, pDst[0], dstStep[0], width, height);
  for (int r = 0; r < height / 2; ++r)
    row<MergeSplitPairs>(isa, width / 4, rowPtr(pSrcCbCr, 2 * r, srcCbCrStep),
                         rowPtr(pSrcCbCr, 2 * r + 1, srcCbCrStep), rowPtr(pDst[a], r, dstStep[a]),
                         rowPtr(pDst[b], r, dstStep[b]));
}

void ownYCbCr411ToYCbCr411_8u_P2P3R(const u8* pSrcY, int srcYStep, const u8* pSrcCbCr,
                                    int srcCbCrStep, u8* const pDst[3], const int dstStep[3],
                                    int width, int height, Isa isa) {
  copyRows(pSrcY, srcYStep, pDst[0], dstStep[0], width, height);
  for (int y = 0; y < height; ++y)
    row<Deinterleave2>(isa, width / 4, rowPtr(pSrcCbCr, y, srcCbCrStep), rowPtr(pDst[1], y, dstStep[1]),
                       rowPtr(pDst[2], y, dstStep[2]));
}

void ownYCbCr422ToYCbCr411_8u_C2P2R(const u8* pSrc, int srcStep, u8* pDstY, int dstYStep,
                                    u8* pDstCbCr, int dstCbCrStep, int width, int height, Isa isa) {
  const bool nt = aligned16(pDstY) && aligned16(dstYStep) && aligned16(pDstCbCr) &&
                  aligned16(dstCbCrStep) && bigFrame(3 * width + width / 2, height, kNtC2P2);
  c2DestRows(nt, height, [&](int y, auto m) {
    row<SplitC2To411<false, true>, decltype(m)>(isa, width / 4, rowPtr(pSrc, y, srcStep),
                                                rowPtr(pDstY, y, dstYStep),
                                                rowPtr(pDstCbCr, y, dstCbCrStep),
                                                static_cast<u8*>(nullptr));
  });
}

void ownYCbCr422ToYCrCb422_8u_C2R(const u8* pSrc, int srcStep, u8* pDst, int dstStep, int width,
                                  int height, Isa isa) {
  const bool nt =
      aligned16(pDst) && aligned16(dstStep) && bigFrame(srcStep + dstStep, height, kNtC2Dst);
  c2DestRows(nt, height, [&](int y, auto m) {
    row<SwapC2Chroma, decltype(m)>(isa, width / 2, rowPtr(pSrc, y, srcStep), rowPtr(pDst, y, dstStep));
  });
}

void ownYCbCr422ToYCbCr411_8u_P3R(const u8* const pSrc[3], const int srcStep[3],
                                  u8* const pDst[3], const int dstStep[3], int width,
                                  int height, Isa isa) {
  const int nt = lum::pixelCount32(width, height) > kNtY524288 ? 1 : 0;
  copyLuma(pSrc[0], srcStep[0], pDst[0], dstStep[0], width, height, nt);
  for (int c = 1; c <= 2; ++c)
    for (int y = 0; y < height; ++y)
      row<EvenBytes>(isa, width / 4, rowPtr(pSrc[c], y, srcStep[c]), rowPtr(pDst[c], y, dstStep[c]));
}

void ownYCbCr422ToYCrCb422_8u_P3C2R(const u8* const pSrc[3], const int srcStep[3], u8* pDst,
                                    int dstStep, int width, int height, Isa isa) {
  const bool nt = aligned16(pDst) && aligned16(dstStep) &&
                  bigFrame(srcStep[0] + srcStep[1] + srcStep[2] + dstStep, height, kNtC2Dst);
  c2DestRows(nt, height, [&](int y, auto m) {
    row<PackC2, decltype(m)>(isa, width / 2, rowPtr(pSrc[0], y, srcStep[0]),
                             rowPtr(pSrc[2], y, srcStep[2]), rowPtr(pSrc[1], y, srcStep[1]),
                             rowPtr(pDst, y, dstStep));
  });
}

}  // namespace repack
}  // namespace lum

// ===========================================================================
// Public functions: checks (all pointers, plane entries included, source
// first; then width, then height), the size rounded down to whole cells, one
// kernel call.  A minimum of kAny is not tested.
using namespace lum::repack;
namespace {
constexpr int kAny = INT_MIN;
using lum::arr;
using lum::checkP3;
inline int even(int v) { return v & ~1; }
inline int four(int v) { return v & ~3; }
}  // namespace

#define LUM_CHECK(...)                           \
  do {                                           \
    const LumStatus st_ = checkP3(__VA_ARGS__);  \
    if (st_ != LumOk) return st_;                \
  } while (0)

// --- P3 to P3 ---------------------------------------------------------------
LUM_PUBLIC LumStatus lumiYCbCr422ToYCbCr420_8u_P3R(LUM_P3, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pSrc, 3), arr(pDst, 3)}, roiSize, 2, 2);
  ownYCbCr422ToYCbCr420_8u_P3R(pSrc, srcStep, pDst, dstStep, even(roiSize.width),
                               even(roiSize.height), lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr420ToYCbCr422_8u_P3R(LUM_P3, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pSrc, 3), arr(pDst, 3)}, roiSize, 2, 2);
  ownYCbCr420ToYCbCr422_8u_P3R(pSrc, srcStep, pDst, dstStep, even(roiSize.width),
                               even(roiSize.height), 0, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCrCb420ToYCbCr422_8u_P3R(LUM_P3, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pSrc, 3), arr(pDst, 3)}, roiSize, 2, 2);
  ownYCbCr420ToYCbCr422_8u_P3R(pSrc, srcStep, pDst, dstStep, even(roiSize.width),
                               even(roiSize.height), 1, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr411ToYCbCr422_8u_P3R(LUM_P3, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pSrc, 3), arr(pDst, 3)}, roiSize, 4, kAny);
  ownYCbCr411ToYCbCr422_8u_P3R(pSrc, srcStep, pDst, dstStep, four(roiSize.width), roiSize.height,
                               0, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr411ToYCrCb422_8u_P3R(LUM_P3, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pSrc, 3), arr(pDst, 3)}, roiSize, 4, kAny);
  ownYCbCr411ToYCbCr422_8u_P3R(pSrc, srcStep, pDst, dstStep, four(roiSize.width), roiSize.height,
                               1, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr411ToYCbCr420_8u_P3R(LUM_P3, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pSrc, 3), arr(pDst, 3)}, roiSize, 4, 2);
  ownYCbCr411ToYCbCr420_8u_P3R(pSrc, srcStep, pDst, dstStep, four(roiSize.width),
                               even(roiSize.height), lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr422ToYCbCr411_8u_P3R(LUM_P3, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pSrc, 3), arr(pDst, 3)}, roiSize, 4, kAny);
  ownYCbCr422ToYCbCr411_8u_P3R(pSrc, srcStep, pDst, dstStep, four(roiSize.width), roiSize.height, lum::isa());
  return LumOk;
}

// --- C2 to P3 ---------------------------------------------------------------
LUM_PUBLIC LumStatus lumiYCrCb422ToYCbCr422_8u_C2P3R(LUM_C2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pDst, 3)}, roiSize, 2, kAny);
  const int width = even(roiSize.width);
  // The aligned kernel takes no swap: byte 1 goes to plane 1 there.
  if (aligned16(pSrc) && aligned16(srcStep) && aligned16(pDst[0]) && aligned16(dstStep[0]) &&
      (width & 14) == 0)
    alYCbCr422ToYCbCr422_8u_C2P3R(pSrc, srcStep, pDst, dstStep, width, roiSize.height, lum::isa());
  else
    ownYCbCr422ToYCbCr422_8u_C2P3R(pSrc, srcStep, pDst, dstStep, width, roiSize.height, 1, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiCbYCr422ToYCbCr422_8u_C2P3R(LUM_C2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pDst, 3)}, roiSize, 2, kAny);
  ownCbYCr422ToYCbCr422_8u_C2P3R(pSrc, srcStep, pDst, dstStep, even(roiSize.width),
                                 roiSize.height, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr422ToYCbCr420_8u_C2P3R(LUM_C2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pDst, 3)}, roiSize, 2, 2);
  ownYCbCr422ToYCbCr420_8u_C2P3R(pSrc, srcStep, pDst, dstStep, even(roiSize.width),
                                 even(roiSize.height), 0, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCrCb422ToYCbCr420_8u_C2P3R(LUM_C2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pDst, 3)}, roiSize, 2, 2);
  ownYCbCr422ToYCbCr420_8u_C2P3R(pSrc, srcStep, pDst, dstStep, even(roiSize.width),
                                 even(roiSize.height), 1, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiCbYCr422ToYCbCr420_8u_C2P3R(LUM_C2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pDst, 3)}, roiSize, 2, 2);
  ownCbYCr422ToYCbCr420_8u_C2P3R(pSrc, srcStep, pDst, dstStep, even(roiSize.width),
                                 even(roiSize.height), lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr422ToYCbCr411_8u_C2P3R(LUM_C2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pDst, 3)}, roiSize, 4, kAny);
  ownYCbCr422ToYCbCr411_8u_C2P3R(pSrc, srcStep, pDst, dstStep, four(roiSize.width),
                                 roiSize.height, 0, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCrCb422ToYCbCr411_8u_C2P3R(LUM_C2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pDst, 3)}, roiSize, 4, kAny);
  ownYCbCr422ToYCbCr411_8u_C2P3R(pSrc, srcStep, pDst, dstStep, four(roiSize.width),
                                 roiSize.height, 1, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiCbYCr422ToYCbCr411_8u_C2P3R(LUM_C2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pDst, 3)}, roiSize, 4, kAny);
  ownCbYCr422ToYCbCr411_8u_C2P3R(pSrc, srcStep, pDst, dstStep, four(roiSize.width),
                                 roiSize.height, lum::isa());
  return LumOk;
}

// --- P3 to P2 ---------------------------------------------------------------
LUM_PUBLIC LumStatus lumiYCbCr422ToYCbCr420_8u_P3P2R(LUM_P3, LUM_TO_P2, LumSize roiSize) {
  LUM_CHECK({pSrc, pDstY, pDstCbCr}, {arr(pSrc, 3)}, roiSize, 2, 2);
  ownYCbCr422ToYCbCr420_8u_P3P2R(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep,
                                 even(roiSize.width), even(roiSize.height), lum::isa());
  return LumOk;
}
// The plane array itself is not tested here, only its entries.
LUM_PUBLIC LumStatus lumiYCbCr420_8u_P3P2R(LUM_P3, LUM_TO_P2, LumSize roiSize) {
  LUM_CHECK({pDstY, pDstCbCr}, {arr(pSrc, 3)}, roiSize, 2, 2);
  ownYCbCr420ToYCbCr420_8u_P3P2R(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep,
                                 even(roiSize.width), even(roiSize.height), lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr422ToYCbCr411_8u_P3P2R(LUM_P3, LUM_TO_P2, LumSize roiSize) {
  LUM_CHECK({pSrc, pDstY, pDstCbCr}, {arr(pSrc, 3)}, roiSize, 4, kAny);
  ownYCbCr422ToYCbCr411_8u_P3P2R(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep,
                                 four(roiSize.width), roiSize.height, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr420ToYCbCr411_8u_P3P2R(LUM_P3, LUM_TO_P2, LumSize roiSize) {
  LUM_CHECK({pSrc, pDstY, pDstCbCr}, {arr(pSrc, 3)}, roiSize, 4, 2);
  ownYCrCb420ToYCbCr411_8u_P3P2R(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep,
                                 four(roiSize.width), even(roiSize.height), 1, lum::isa());
  return LumOk;
}
// The plane array itself is not tested here, only its entries.
LUM_PUBLIC LumStatus lumiYCrCb420ToYCbCr411_8u_P3P2R(LUM_P3, LUM_TO_P2, LumSize roiSize) {
  LUM_CHECK({pDstY, pDstCbCr}, {arr(pSrc, 3)}, roiSize, 4, 2);
  ownYCrCb420ToYCbCr411_8u_P3P2R(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep,
                                 four(roiSize.width), even(roiSize.height), 0, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr411ToYCbCr420_8u_P3P2R(LUM_P3, LUM_TO_P2, LumSize roiSize) {
  LUM_CHECK({pSrc, pDstY, pDstCbCr}, {arr(pSrc, 3)}, roiSize, 4, 2);
  ownYCbCr411ToYCbCr420_8u_P3P2R(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep,
                                 four(roiSize.width), even(roiSize.height), lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr411_8u_P3P2R(LUM_P3, LUM_TO_P2, LumSize roiSize) {
  LUM_CHECK({pSrc, pDstY, pDstCbCr}, {arr(pSrc, 3)}, roiSize, 4, kAny);
  ownYCbCr411ToYCbCr411_8u_P3P2R(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep,
                                 four(roiSize.width), roiSize.height, lum::isa());
  return LumOk;
}

// --- P2 to P3 ---------------------------------------------------------------
LUM_PUBLIC LumStatus lumiYCbCr420ToYCbCr422_8u_P2P3R(LUM_P2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrcY, pSrcCbCr, pDst}, {arr(pDst, 3)}, roiSize, 2, 2);
  ownYCbCr420ToYCbCr422_8u_P2P3R(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep,
                                 even(roiSize.width), even(roiSize.height), lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr420_8u_P2P3R(LUM_P2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrcY, pSrcCbCr, pDst}, {arr(pDst, 3)}, roiSize, 2, 2);
  ownYCbCr420ToYCbCr420_8u_P2P3R(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep,
                                 even(roiSize.width), even(roiSize.height), lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr420ToYCbCr411_8u_P2P3R(LUM_P2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrcY, pSrcCbCr, pDst}, {arr(pDst, 3)}, roiSize, 4, 2);
  ownYCbCr420ToYCbCr411_8u_P2P3R(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep,
                                 four(roiSize.width), even(roiSize.height), lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr411ToYCbCr422_8u_P2P3R(LUM_P2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrcY, pSrcCbCr, pDst}, {arr(pDst, 3)}, roiSize, 4, kAny);
  ownYCbCr411ToYCbCr422_8u_P2P3R(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep,
                                 four(roiSize.width), roiSize.height, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr411ToYCbCr420_8u_P2P3R(LUM_P2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrcY, pSrcCbCr, pDst}, {arr(pDst, 3)}, roiSize, 4, 2);
  ownYCbCr411ToYCbCr420_8u_P2P3R(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep,
                                 four(roiSize.width), even(roiSize.height), 0, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr411ToYCrCb420_8u_P2P3R(LUM_P2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrcY, pSrcCbCr, pDst}, {arr(pDst, 3)}, roiSize, 4, 2);
  ownYCbCr411ToYCbCr420_8u_P2P3R(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep,
                                 four(roiSize.width), even(roiSize.height), 1, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr411_8u_P2P3R(LUM_P2, LUM_TO_P3, LumSize roiSize) {
  LUM_CHECK({pSrcY, pSrcCbCr, pDst}, {arr(pDst, 3)}, roiSize, 4, kAny);
  ownYCbCr411ToYCbCr411_8u_P2P3R(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep,
                                 four(roiSize.width), roiSize.height, lum::isa());
  return LumOk;
}

// --- to C2 ------------------------------------------------------------------
LUM_PUBLIC LumStatus lumiYCbCr411ToYCbCr422_8u_P3C2R(LUM_P3, LUM_TO_C2, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pSrc, 3)}, roiSize, 4, kAny);
  ownYCbCr411ToYCbCr422_8u_P3C2R(pSrc, srcStep, pDst, dstStep, four(roiSize.width),
                                 roiSize.height, 0, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr411ToYCrCb422_8u_P3C2R(LUM_P3, LUM_TO_C2, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pSrc, 3)}, roiSize, 4, kAny);
  ownYCbCr411ToYCbCr422_8u_P3C2R(pSrc, srcStep, pDst, dstStep, four(roiSize.width),
                                 roiSize.height, 1, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr411ToYCbCr422_8u_P2C2R(LUM_P2, LUM_TO_C2, LumSize roiSize) {
  LUM_CHECK({pSrcY, pSrcCbCr, pDst}, {}, roiSize, 4, kAny);
  ownYCbCr411ToYCbCr422_8u_P2C2R(pSrcY, srcYStep, pSrcCbCr, srcCbCrStep, pDst, dstStep,
                                 four(roiSize.width), roiSize.height, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr422ToYCrCb422_8u_P3C2R(LUM_P3, LUM_TO_C2, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {arr(pSrc, 3)}, roiSize, 2, kAny);
  ownYCbCr422ToYCrCb422_8u_P3C2R(pSrc, srcStep, pDst, dstStep, even(roiSize.width),
                                 roiSize.height, lum::isa());
  return LumOk;
}
LUM_PUBLIC LumStatus lumiYCbCr422ToYCrCb422_8u_C2R(LUM_C2, LUM_TO_C2, LumSize roiSize) {
  LUM_CHECK({pSrc, pDst}, {}, roiSize, 2, kAny);
  ownYCbCr422ToYCrCb422_8u_C2R(pSrc, srcStep, pDst, dstStep, even(roiSize.width),
                               roiSize.height, lum::isa());
  return LumOk;
}

// --- C2 to P2 ---------------------------------------------------------------
LUM_PUBLIC LumStatus lumiYCbCr422ToYCbCr411_8u_C2P2R(LUM_C2, LUM_TO_P2, LumSize roiSize) {
  LUM_CHECK({pSrc, pDstY, pDstCbCr}, {}, roiSize, 4, kAny);
  ownYCbCr422ToYCbCr411_8u_C2P2R(pSrc, srcStep, pDstY, dstYStep, pDstCbCr, dstCbCrStep,
                                 four(roiSize.width), roiSize.height, lum::isa());
  return LumOk;
}

#undef LUM_CHECK
#undef LUM_P3
#undef LUM_TO_P3
#undef LUM_C2
#undef LUM_TO_C2
#undef LUM_P2
#undef LUM_TO_P2
