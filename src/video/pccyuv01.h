// RGB and YUV 4:4:4: the internal layers (row drivers, one-row kernels) and
// the scalar forms of every formula.  The scalar forms are the tails, and
// the reference that the SSE2 block loops are written against.
#ifndef LUM_PCCYUV01_H
#define LUM_PCCYUV01_H

#include "frame/lum_cpu.h"
#include "frame/lum_lanes.h"
#include "frame/lum_simd.h"
#include "lumcc.h"

namespace lum {
namespace yuv444 {
inline namespace LUM_ISA_NS {

// Block sizes of the one-row kernels.
constexpr int kBlockRGBToYUV_C3 = 16;
constexpr int kBlockRGBToYUV_AC4 = 8;
constexpr int kBlockRGBToYUV_P3 = 16;
constexpr int kBlockRGBToYUV_C3P3 = 8;
constexpr int kBlockYUVToRGB_C3 = 8;
constexpr int kBlockYUVToRGB_AC4 = 8;
constexpr int kBlockYUVToRGB_P3 = 8;
constexpr int kBlockYUVToRGB_P3C3 = 16;

// F1: block loops of the C3, P3 and C3P3 forward kernels.  The three luma
// products are truncated before they are added.
inline int f1Y(int R, int G, int B) {
  return sat16u(sat16u(Hu(256u * R, 19595) + Hu(256u * G, 38469)) + Hu(256u * B, 7471)) >> 8;
}
inline int f1U(int R, int G, int B) {
  return sat8u(sat16s((sat16s(sat16s(Hs(128 * R, -4816) + Hs(128 * G, -9469)) + Hs(128 * B, 14286)) >> 6) + 128));
}
inline int f1V(int R, int G, int B) {
  return sat8u(sat16s((sat16s(sat16s(Hs(128 * R, 20152) + Hs(128 * G, -16875)) + Hs(128 * B, -3276)) >> 6) + 128));
}

// F1 on a lane type of 16-bit lanes (I16x8 for SSE2, I16x16 for AVX2): the
// samples widened to 16 bits in, the results (not yet narrowed: the pack to
// bytes saturates, which is the sat8u above) out.
template <class I>
inline I f1YLanes(I R, I G, I B) {
  const I s = addSatU(mulHiU(shl<8>(R), broadcast16<I>(19595)), mulHiU(shl<8>(G), broadcast16<I>(38469)));
  return shrL<8>(addSatU(s, mulHiU(shl<8>(B), broadcast16<I>(7471))));
}
template <class I>
inline I f1ChromaLanes(I R, I G, I B, int cr, int cg, int cb) {
  const I s = addSat(mulHi(shl<7>(R), broadcast16<I>(cr)), mulHi(shl<7>(G), broadcast16<I>(cg)));
  const I t = addSat(s, mulHi(shl<7>(B), broadcast16<I>(cb)));
  return addSat(shrA<6>(t), broadcast16<I>(128));
}
template <class I>
inline I f1ULanes(I R, I G, I B) { return f1ChromaLanes(R, G, B, -4816, -9469, 14286); }
template <class I>
inline I f1VLanes(I R, I G, I B) { return f1ChromaLanes(R, G, B, 20152, -16875, -3276); }

// F2: block loop of the AC4 forward kernel.  R and G share one shift, B has
// its own; the chroma constants are one off those of F1, on purpose.
inline int f2Chan(int R, int G, int B, int c0, int c1, int c2, int d) {
  return sat8u(sat16s(((c0 * R + c1 * G) >> 15) + ((c2 * B) >> 15) + d));
}
inline int f2Y(int R, int G, int B) { return f2Chan(R, G, B, 9798, 19235, 3736, 0); }
inline int f2U(int R, int G, int B) { return f2Chan(R, G, B, -4817, -9470, 14287, 128); }
inline int f2V(int R, int G, int B) { return f2Chan(R, G, B, 20152, -16876, -3277, 128); }

// F3: tails of the C3 and AC4 forward kernels.  T is twice the luma.
inline void f3(int R, int G, int B, uint8_t* yuv) {
  const int T = ((2 * 9798 * R + 2 * 19235 * G) >> 15) + ((2 * 3736 * B) >> 15);
  yuv[0] = static_cast<uint8_t>(sat8u(T >> 1));
  yuv[1] = static_cast<uint8_t>(sat8u(Hs(2 * B - T, 16121) + 128));
  yuv[2] = static_cast<uint8_t>(sat8u(Hs(2 * R - T, 28737) + 128));
}

// F4: tail of the P3 forward kernel: plain sums of full products.
inline int f4Y(int R, int G, int B) { return sat8u((19595 * R + 38469 * G + 7471 * B) >> 16); }
inline int f4U(int R, int G, int B) { return sat8u(((-4816 * R - 9469 * G + 14286 * B) >> 15) + 128); }
inline int f4V(int R, int G, int B) { return sat8u(((20152 * R - 16875 * G - 3276 * B) >> 15) + 128); }

// F5: tail of the C3P3 forward kernel.  Green is 38470 here so that the luma
// coefficients add up to 65536; U is not clamped (it cannot leave the range).
inline void f5(int R, int G, int B, uint8_t* y, uint8_t* u, uint8_t* v) {
  const int L = 19595 * R + 38470 * G + 7471 * B;
  const int D = (65536 * B - L + 32767) >> 16;
  const int E = (65536 * R - L + 32767) >> 16;
  *y = static_cast<uint8_t>(L >> 16);
  *u = static_cast<uint8_t>(((D * 32244) >> 16) + 128);
  *v = static_cast<uint8_t>(sat8u(((E * 57475) >> 16) + 128));
}

// G1: every path of the C3 and AC4 inverse kernels.
inline void g1(int Y, int U, int V, uint8_t* rgb) {
  const int u = 8 * (U - 128), v = 8 * (V - 128);
  rgb[0] = static_cast<uint8_t>(sat8u(sat16s(Y + Hs(v, 9339))));
  rgb[1] = static_cast<uint8_t>(sat8u(sat16s(sat16s(Y + Hs(u, -3228)) + Hs(v, -4760))));
  rgb[2] = static_cast<uint8_t>(sat8u(sat16s(Y + Hs(u, 16646))));
}

// G1 on a lane type of 16-bit lanes (saturating adds; the pack saturates
// to bytes).
template <class I>
inline void g1Lanes(I Y, I U, I V, I& R, I& G, I& B) {
  const I u = shl<3>(U - broadcast16<I>(128));
  const I v = shl<3>(V - broadcast16<I>(128));
  R = addSat(Y, mulHi(v, broadcast16<I>(9339)));
  G = addSat(addSat(Y, mulHi(u, broadcast16<I>(-3228))), mulHi(v, broadcast16<I>(-4760)));
  B = addSat(Y, mulHi(u, broadcast16<I>(16646)));
}

// G2: block loop of the P3 inverse kernel.
inline int g2R(int Y, int, int V) { return sat8u(Y + (Hs(64 * (V - 128), 18677) >> 4)); }
inline int g2G(int Y, int U, int V) {
  return sat8u(Y - ((Hs(64 * (U - 128), 6455) + Hs(64 * (V - 128), 9519)) >> 4));
}
inline int g2B(int Y, int U, int) { return sat8u(Y + (Hs(64 * (U - 128), 16646) >> 3)); }

// G2 on a lane type of 16-bit lanes, one output plane at a time.
template <class I>
inline I g2Chroma(I U) { return shl<6>(U - broadcast16<I>(128)); }
template <class I>
inline I g2RLanes(I Y, I, I V) { return Y + shrA<4>(mulHi(g2Chroma(V), broadcast16<I>(18677))); }
template <class I>
inline I g2GLanes(I Y, I U, I V) {
  return Y - shrA<4>(mulHi(g2Chroma(U), broadcast16<I>(6455)) + mulHi(g2Chroma(V), broadcast16<I>(9519)));
}
template <class I>
inline I g2BLanes(I Y, I U, I) { return Y + shrA<3>(mulHi(g2Chroma(U), broadcast16<I>(16646))); }

// G3: tail of the P3 inverse kernel (coefficients times 128).
inline int g3R(int Y, int, int V) { return sat8u((16384 * Y + 18677 * V - 2390656) >> 14); }
inline int g3G(int Y, int U, int V) { return sat8u((16384 * Y - 6455 * U - 9519 * V + 2044672) >> 14); }
inline int g3B(int Y, int U, int) { return sat8u((8192 * Y + 16646 * U - 2130688) >> 13); }

// G4: every path of the P3C3 inverse kernel, one bit more precision than G1.
inline void g4(int Y, int U, int V, uint8_t* rgb) {
  const int u = 16 * U - 2048, v = 16 * V - 2048, T = 2 * Y;
  rgb[0] = static_cast<uint8_t>(sat8u(sat16s(T + Hs(v, 9338)) >> 1));
  rgb[1] = static_cast<uint8_t>(sat8u(sat16s(sat16s(T + Hs(u, -3227)) + Hs(v, -4759)) >> 1));
  rgb[2] = static_cast<uint8_t>(sat8u(sat16s(T + Hs(u, 16645)) >> 1));
}

// G4 on a lane type of 16-bit lanes.
template <class I>
inline void g4Lanes(I Y, I U, I V, I& R, I& G, I& B) {
  const I u = shl<4>(U) - broadcast16<I>(2048);
  const I v = shl<4>(V) - broadcast16<I>(2048);
  const I T = shl<1>(Y);
  R = shrA<1>(addSat(T, mulHi(v, broadcast16<I>(9338))));
  G = shrA<1>(addSat(addSat(T, mulHi(u, broadcast16<I>(-3227))), mulHi(v, broadcast16<I>(-4759))));
  B = shrA<1>(addSat(T, mulHi(u, broadcast16<I>(16645))));
}

}  // inline namespace LUM_ISA_NS
}  // namespace yuv444
}  // namespace lum

namespace lum {
namespace yuv444 {

// One-row kernels.  The kernels take the instruction-set level of the call:
// SSSE3 (de)interleaves 3-byte pixels by byte shuffles, AVX2 runs the plane
// passes of the P3 kernels at 16 lanes, AVX-512 stores the colour bytes of
// AC4 pixels by byte masks; every level gives the bytes of the SSE2 block
// loop.
void innerRGBToYUV_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerRGBToYUV_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerRGBToYUV_8u_P3R(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pY,
                          Lum8u* pU, Lum8u* pV, int width, Isa isa);
void innerRGBToYUV_8u_C3P3R(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int width,
                            Isa isa);
void innerYUVToRGB_8u_C3R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerYUVToRGB_8u_AC4R(const Lum8u* pSrc, Lum8u* pDst, int width, Isa isa);
void innerYUVToRGB_8u_P3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pR,
                          Lum8u* pG, Lum8u* pB, int width, Isa isa);
void innerYUVToRGB_8u_P3C3R(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                            int width, Isa isa);

// AVX2 plane passes of the P3 kernels (pccyuv01_avx2.cpp): output plane
// `plane` (0, 1, 2) over pixels [0, n), n the largest multiple of 32 not
// above end; each returns n.
int blockRGBToYUV_P3_avx2(const Lum8u* pR, const Lum8u* pG, const Lum8u* pB, Lum8u* pOut,
                          int plane, int end);
int blockYUVToRGB_P3_avx2(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pOut,
                          int plane, int end);

// AVX-512 (BW, VL) byte-masked stores for the AC4 block loops
// (pccyuv01_avx512.cpp): pixels [0, end), end a multiple of 8; each returns
// end.
int blockRGBToYUV_AC4_avx512(const Lum8u* pSrc, Lum8u* pDst, int end);
int blockYUVToRGB_AC4_avx512(const Lum8u* pSrc, Lum8u* pDst, int end);

// SSSE3 block loops (pccyuv01_ssse3.cpp): pixels [0, end), end a multiple of
// 8; each returns end.
int blockRGBToYUV_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int end);
int blockRGBToYUV_C3P3_ssse3(const Lum8u* pSrc, Lum8u* pY, Lum8u* pU, Lum8u* pV, int end);
int blockYUVToRGB_C3_ssse3(const Lum8u* pSrc, Lum8u* pDst, int end);
int blockYUVToRGB_P3C3_ssse3(const Lum8u* pY, const Lum8u* pU, const Lum8u* pV, Lum8u* pDst,
                             int end);

}  // namespace yuv444
}  // namespace lum

#endif  // LUM_PCCYUV01_H
