// RGB and HLS: the stated values (grey, black, saturated colours, the full-
// scale hue, the even-only 16u inverse, the 16s bias and rounding, the 32f
// grey threshold and signed zero), every kernel against its scalar forms
// across block boundaries in every rounding mode (32f on
// NaNs, infinities and denormals too).  Guard bytes, alpha, statuses,
// levels, steps and team sizes: the generic suite and test_frame.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <xmmintrin.h>

#include "lumcc.h"
#include "models/pccmskcolor_hls.h"
#include "test_support.h"

using namespace lum;
using namespace lum::hls;
using lumtest::GuardedImage;

namespace {

enum class Kind { U8, U16, S16, F32 };
int sizeOf(Kind k) { return k == Kind::U8 ? 1 : (k == Kind::F32 ? 4 : 2); }

using Call = std::function<LumStatus(const void*, int, void*, int, LumSize)>;
// One pixel's three output samples (raw bytes) from its three input samples.
using PixelFn = std::function<void(const uint8_t* in, uint8_t* out)>;

// One public function: element type, pixel stride, main-loop round (0: no
// main loop), the scalar forms of main loop and tail, the call.
struct Fn {
  std::string name;
  Kind kind;
  int nch, block;
  PixelFn blockFn, tailFn;
  Call call;
};
void PrintTo(const Fn& f, std::ostream* os) { *os << f.name; }

// Scalar forms on raw bytes (memcpy keeps the reads aligned for UBSan).
template <class T, class F>
PixelFn intForm(F f) {
  return [f](const uint8_t* in, uint8_t* out) {
    T s[3], o[3];
    memcpy(s, in, sizeof s);
    f(s[0], s[1], s[2], o);
    memcpy(out, o, sizeof o);
  };
}
template <class F>
PixelFn floatForm(F f) {
  return [f](const uint8_t* in, uint8_t* out) {
    float s[3], o[3];
    memcpy(s, in, sizeof s);
    f(s[0], s[1], s[2], o);
    memcpy(out, o, sizeof o);
  };
}
template <class T>
Call call(LumStatus (*f)(const T*, int, T*, int, LumSize)) {
  return [f](const void* s, int ss, void* d, int ds, LumSize r) {
    return f(static_cast<const T*>(s), ss, static_cast<T*>(d), ds, r);
  };
}

std::vector<Fn> allFunctions() {
  std::vector<Fn> v;
  for (int nch : {3, 4}) {
    const bool c3 = nch == 3;
    const std::string lay = c3 ? "_C3R" : "_AC4R";
    v.push_back({"RGBToHLS_8u" + lay, Kind::U8, nch, c3 ? 8 : 4, intForm<Lum8u>(rgbToHls8uBlock),
                 intForm<Lum8u>(rgbToHls8uTail),
                 call<Lum8u>(c3 ? lumiRGBToHLS_8u_C3R : lumiRGBToHLS_8u_AC4R)});
    v.push_back({"HLSToRGB_8u" + lay, Kind::U8, nch, c3 ? 8 : 4, intForm<Lum8u>(hlsToRgb8uBlock),
                 intForm<Lum8u>(hlsToRgb8uTail),
                 call<Lum8u>(c3 ? lumiHLSToRGB_8u_C3R : lumiHLSToRGB_8u_AC4R)});
    v.push_back({"RGBToHLS_16u" + lay, Kind::U16, nch, 4, intForm<Lum16u>(rgbToHls16uBlock),
                 intForm<Lum16u>(rgbToHls16uTail),
                 call<Lum16u>(c3 ? lumiRGBToHLS_16u_C3R : lumiRGBToHLS_16u_AC4R)});
    v.push_back({"HLSToRGB_16u" + lay, Kind::U16, nch, 4, intForm<Lum16u>(hlsToRgb16uBlock),
                 intForm<Lum16u>(hlsToRgb16uTail),
                 call<Lum16u>(c3 ? lumiHLSToRGB_16u_C3R : lumiHLSToRGB_16u_AC4R)});
    v.push_back({"RGBToHLS_16s" + lay, Kind::S16, nch, 4, intForm<Lum16s>(rgbToHls16sBlock),
                 intForm<Lum16s>(rgbToHls16sTail),
                 call<Lum16s>(c3 ? lumiRGBToHLS_16s_C3R : lumiRGBToHLS_16s_AC4R)});
    v.push_back({"HLSToRGB_16s" + lay, Kind::S16, nch, 4, intForm<Lum16s>(hlsToRgb16sBlock),
                 intForm<Lum16s>(hlsToRgb16sTail),
                 call<Lum16s>(c3 ? lumiHLSToRGB_16s_C3R : lumiHLSToRGB_16s_AC4R)});
    v.push_back({"RGBToHLS_32f" + lay, Kind::F32, nch, 0, floatForm(rgbToHls32f),
                 floatForm(rgbToHls32f),
                 call<Lum32f>(c3 ? lumiRGBToHLS_32f_C3R : lumiRGBToHLS_32f_AC4R)});
    v.push_back({"HLSToRGB_32f" + lay, Kind::F32, nch, 4, floatForm(hlsToRgb32fBlock),
                 floatForm(hlsToRgb32fTail),
                 call<Lum32f>(c3 ? lumiHLSToRGB_32f_C3R : lumiHLSToRGB_32f_AC4R)});
  }
  return v;
}
const Fn& fn(const std::string& name) {
  static const std::vector<Fn> all = allFunctions();
  for (const Fn& f : all)
    if (f.name == name) return f;
  ADD_FAILURE() << "no function " << name;
  return all[0];
}


// ---------------------------------------------------------------------------
// 32f: the vector forms give the bits of their scalar forms on any float.
// Samples drawn from the awkward ones: zeros of both signs, denormals,
// infinities, NaNs of several payloads, values outside 0..1, greys, near
// greys on both sides of the 1.1920929e-7 threshold, ties between channels,
// and a red arm that underflows to -0.
struct AwkwardFloats {
  std::mt19937& rng;
  float pick() {
    static const uint32_t bits[] = {
        0x00000000u, 0x80000000u, 0x3F800000u, 0xBF800000u, 0x3F000000u, 0x40000000u,
        0x00000001u, 0x80000008u, 0x00700000u, 0x34000000u, 0x7F7FFFFFu, 0xFF7FFFFFu,
        0x7F800000u, 0xFF800000u, 0x7FC00000u, 0xFFC00001u, 0x7FA00000u, 0x7FC12345u,
        0x43B40000u, 0x42F00000u, 0x43700000u, 0x42700000u, 0x43340000u, 0x3DCCCCCDu};
    const uint32_t r = rng();
    if (r % 3 == 0) return floatFromBits(bits[(r / 3) % (sizeof bits / sizeof bits[0])]);
    if (r % 3 == 1) return -0.5f + 2.0f * static_cast<float>(rng() >> 8) / 16777216.0f;
    return static_cast<float>(rng() >> 8) / 16777216.0f;
  }
  // b moved by k units in the last place.
  static float ulps(float b, int k) {
    for (int i = 0; i < k; ++i) b = std::nextafter(b, 4.0f);
    return b;
  }
  void pixel(float p[3]) {
    for (int c = 0; c < 3; ++c) p[c] = pick();
    const int a = rng() % 3, b = (a + 1 + rng() % 2) % 3;
    switch (rng() % 8) {
      case 0: p[1] = p[2] = p[0]; break;       // grey
      case 1: p[b] = p[a]; break;              // a tie
      case 2: {                                // near grey: 0..6 ulps apart
        const float base = 0.25f + 0.75f * static_cast<float>(rng() >> 8) / 16777216.0f;
        for (int c = 0; c < 3; ++c) p[c] = base;
        p[a] = ulps(base, rng() % 7);
        break;
      }
      case 3: {                                // red arm underflowing to -0
        p[0] = 1e5f;
        p[1] = (rng() & 1) ? 0.0f : -0.0f;
        p[2] = floatFromBits(1 + rng() % 8);
        break;
      }
      case 4:                                  // zeros of both signs
        p[a] = (rng() & 1) ? 0.0f : -0.0f;
        p[b] = -p[a];
        break;
      default: break;
    }
  }
};

// ---------------------------------------------------------------------------
// Sample values: random, with a good share of the special pixels (grey,
// ties, zero saturation, full-scale hue, almost-grey floats).
struct Gen {
  Kind kind;
  std::mt19937& rng;
  double zero() const { return kind == Kind::S16 ? -32768 : 0; }
  double full() const {
    switch (kind) {
      case Kind::U8: return 255;
      case Kind::U16: return 65535;
      case Kind::S16: return 32767;
      default: return 1.0;
    }
  }
  double any() {
    switch (kind) {
      case Kind::U8: return rng() & 255u;
      case Kind::U16: return rng() & 65535u;
      case Kind::S16: return static_cast<int16_t>(rng() & 65535u);
      default: return -0.125 + 1.25 * (rng() >> 8) / 16777216.0;
    }
  }
  void put(uint8_t* p, double v) const {
    switch (kind) {
      case Kind::U8: *p = static_cast<uint8_t>(v); break;
      case Kind::U16: { const uint16_t x = static_cast<uint16_t>(v); memcpy(p, &x, 2); break; }
      case Kind::S16: { const int16_t x = static_cast<int16_t>(v); memcpy(p, &x, 2); break; }
      default: { const float x = static_cast<float>(v); memcpy(p, &x, 4); break; }
    }
  }
  void pixel(uint8_t* p, int nch) {
    if (kind == Kind::F32) {
      AwkwardFloats a{rng};
      float f[4];
      a.pixel(f);
      f[3] = a.pick();
      memcpy(p, f, 4 * nch);
      return;
    }
    double s[4] = {any(), any(), any(), any()};
    switch (rng() % 10) {
      case 0: s[1] = s[2] = s[0]; break;                        // grey
      case 1: s[1] = s[0]; break;                               // ties
      case 2: s[2] = s[0]; break;
      case 3: s[2] = s[1]; break;
      case 4: s[2] = zero(); break;                             // S = 0
      case 5: s[0] = full(); break;                             // H = full scale
      case 6: s[0] = zero(); s[1] = full(); s[2] = zero(); break;  // primaries
      default: break;
    }
    const int es = sizeOf(kind);
    for (int c = 0; c < nch; ++c) put(p + c * es, s[c]);
  }
};

// An image of `w` by `h` pixels of a function's layout and type, with guard
// bytes, element-aligned padding and the given misalignment.
std::unique_ptr<GuardedImage> image(const Fn& f, int w, int h, int misalign, int pad) {
  const int es = sizeOf(f.kind);
  return std::make_unique<GuardedImage>(w * f.nch * es, h, pad * es, misalign * es);
}
void fill(GuardedImage& g, const Fn& f, int w, std::mt19937& rng) {
  Gen gen{f.kind, rng};
  const int px = f.nch * sizeOf(f.kind);
  for (int y = 0; y < g.height(); ++y)
    for (int x = 0; x < w; ++x) gen.pixel(g.row(y) + x * px, f.nch);
}

// The destination region the scalar forms give: the block form for the
// first (width & ~(block - 1)) pixels of each row, the tail form after; the
// fourth sample (AC4) as it was.
std::vector<uint8_t> scalarForms(const Fn& f, const GuardedImage& src, std::vector<uint8_t> dst,
                                 int w, int h) {
  const int es = sizeOf(f.kind), px = f.nch * es;
  const int blockEnd = f.block ? (w & ~(f.block - 1)) : 0;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      (x < blockEnd ? f.blockFn : f.tailFn)(src.row(y) + x * px, &dst[(y * w + x) * px]);
  return dst;
}

// First sample that differs, or -1.  Where two NaNs meet in a sum or a
// product of the 32f inverse, C++ leaves open which one the scalar form
// passes on: there any NaN stands for a NaN.
int firstDifference(const Fn& f, const std::vector<uint8_t>& got, const std::vector<uint8_t>& want) {
  const int es = sizeOf(f.kind);
  const bool anyNaN = f.kind == Kind::F32 && f.name.compare(0, 3, "HLS") == 0;
  for (size_t i = 0; i < got.size(); i += es) {
    if (memcmp(&got[i], &want[i], es) == 0) continue;
    float a, b;
    if (anyNaN && (memcpy(&a, &got[i], 4), memcpy(&b, &want[i], 4), std::isnan(a) && std::isnan(b)))
      continue;
    return static_cast<int>(i / es);
  }
  return -1;
}

class Hls : public ::testing::TestWithParam<Fn> {};

// Random rows of every width from 1 to 70 and some wide ones, in every
// rounding mode: block loops against their block forms, tails against their
// tail forms, alpha kept (every level gives these bytes: the generic suite).
TEST_P(Hls, KernelsMatchScalarFormsAtEveryWidth) {
  const Fn& f = GetParam();
  std::mt19937 rng(99);
  const unsigned saved = _MM_GET_ROUNDING_MODE();
  std::vector<int> widths = lumtest::widthsUpTo(70);
  for (int w : {95, 96, 97, 103, 104, 111, 112, 127, 128, 129, 1001}) widths.push_back(w);
  for (int w : widths) {
    const int h = 1 + (w % 3);
    auto src = image(f, w, h, w % 4, w % 5);
    auto dst = image(f, w, h, (w * 3) % 16 / sizeOf(f.kind), (w * 7) % 6);
    fill(*src, f, w, rng);
    dst->fillRandom(rng);
    const std::vector<uint8_t> initial = dst->regionBytes();
    for (unsigned mode : {_MM_ROUND_NEAREST, _MM_ROUND_DOWN, _MM_ROUND_UP, _MM_ROUND_TOWARD_ZERO}) {
      _MM_SET_ROUNDING_MODE(mode);
      const LumStatus st = f.call(src->data(), src->step(), dst->data(), dst->step(), LumSize{w, h});
      const std::vector<uint8_t> want = scalarForms(f, *src, initial, w, h);
      _MM_SET_ROUNDING_MODE(saved);
      ASSERT_EQ(st, LumOk);
      const int bad = firstDifference(f, dst->regionBytes(), want);
      ASSERT_LT(bad, 0) << f.name << " mode=" << mode << " w=" << w << " pixel " << bad / f.nch % w
                        << " row " << bad / f.nch / w << " sample " << bad % f.nch;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AllSixteen, Hls, ::testing::ValuesIn(allFunctions()),
                         [](const ::testing::TestParamInfo<Fn>& i) { return i.param.name; });

// ---------------------------------------------------------------------------
// Stated values.

// Run one pixel through a public function in the main loop (position 0 of a
// row of one round) or in the tail (a row of one pixel).
template <class T>
std::vector<T> runPixel(const std::string& name, std::vector<T> in, bool inMainLoop) {
  const Fn& f = fn(name);
  const int w = inMainLoop && f.block ? f.block : 1;
  std::vector<T> src(w * f.nch), dst(w * f.nch);
  for (int x = 0; x < w; ++x)
    for (int c = 0; c < 3; ++c) src[x * f.nch + c] = in[c];
  const int step = w * f.nch * static_cast<int>(sizeof(T));
  EXPECT_EQ(f.call(src.data(), step, dst.data(), step, LumSize{w, 1}), LumOk);
  return {dst[0], dst[1], dst[2]};
}
template <class T>
std::vector<T> vec3(T a, T b, T c) {
  return {a, b, c};
}

// A grey pixel: H = S = 0 (16s: -32768) and L = the level, in main loop
// and tail, black included.
TEST(HlsStated, GreyPixelsForward) {
  for (bool main : {true, false})
    for (const char* lay : {"_C3R", "_AC4R"}) {
      for (int g = 0; g < 256; ++g)
        ASSERT_EQ(runPixel<Lum8u>(std::string("RGBToHLS_8u") + lay, vec3<Lum8u>(g, g, g), main),
                  vec3<Lum8u>(0, g, 0)) << g << lay << main;
      for (int g : {0, 1, 2, 255, 256, 32767, 32768, 65534, 65535})
        ASSERT_EQ(runPixel<Lum16u>(std::string("RGBToHLS_16u") + lay, vec3<Lum16u>(g, g, g), main),
                  vec3<Lum16u>(0, g, 0)) << g << lay << main;
      for (int g : {-32768, -32767, -1, 0, 1, 32766, 32767})
        ASSERT_EQ(runPixel<Lum16s>(std::string("RGBToHLS_16s") + lay, vec3<Lum16s>(g, g, g), main),
                  vec3<Lum16s>(-32768, g, -32768)) << g << lay << main;
      for (float g : {0.0f, 0.25f, 1.0f, 1.5f})
        ASSERT_EQ(runPixel<float>(std::string("RGBToHLS_32f") + lay, vec3(g, g, g), main),
                  vec3(0.0f, g, 0.0f));
    }
}

// Saturated primaries: L = trunc(K / 2); S through the reciprocal of x = K,
// bare in the 8u main loop, refined elsewhere; H from the hue formula of the
// channel that is the maximum (0, 120 and 240 degrees times Y).
TEST(HlsStated, SaturatedPrimaries) {
  const float y8 = floatFromBits(0x3F355555u), y16 = floatFromBits(0x43360AABu);
  for (bool main : {true, false}) {
    const float r8 = main ? rcpS(255.0f) : rcpNewtonS(255.0f);
    const int s8 = std::min(255, cvtTrunc((255.0f * r8) * 255.0f));
    EXPECT_EQ(runPixel<Lum8u>("RGBToHLS_8u_C3R", {255, 0, 0}, main), vec3<Lum8u>(0, 127, s8));
    EXPECT_EQ(runPixel<Lum8u>("RGBToHLS_8u_C3R", {0, 255, 0}, main),
              vec3<Lum8u>(cvtTrunc(120.0f * y8), 127, s8));
    EXPECT_EQ(runPixel<Lum8u>("RGBToHLS_8u_C3R", {0, 0, 255}, main),
              vec3<Lum8u>(cvtTrunc(240.0f * y8), 127, s8));
    const int s16 = std::min(65535, cvtTrunc((65535.0f * rcpNewtonS(65535.0f)) * 65535.0f));
    EXPECT_EQ(runPixel<Lum16u>("RGBToHLS_16u_AC4R", {0, 0, 65535}, main),
              vec3<Lum16u>(cvtTrunc(240.0f * y16), 32767, s16));
    EXPECT_EQ(runPixel<Lum16s>("RGBToHLS_16s_C3R", {-32768, 32767, -32768}, main),
              vec3<Lum16s>(cvtTrunc(120.0f * y16) - 32768, -1, s16 - 32768));
  }
  // 32f: true divisions, exact here; values outside 0..1 are not clamped.
  EXPECT_EQ(runPixel<float>("RGBToHLS_32f_C3R", {0.0f, 0.0f, 1.0f}, false),
            vec3(240.0f / 360.0f, 0.5f, 1.0f));
  EXPECT_EQ(runPixel<float>("RGBToHLS_32f_C3R", {1.5f, 0.0f, 0.0f}, false),
            vec3(0.0f, 0.75f, 3.0f));
}

// The 16s forward members are the 16u arithmetic through a bias of 32768,
// in main loop and tail.
TEST(HlsStated, SixteenSignedForwardIsBiasedUnsigned) {
  std::mt19937 rng(23);
  const int w = 37, n = w * 3;
  std::vector<Lum16u> u(n), uo(n);
  std::vector<Lum16s> s(n), so(n);
  for (int rep = 0; rep < 20; ++rep) {
    for (int i = 0; i < n; ++i) {
      u[i] = static_cast<Lum16u>(rng() % 5 == 0 ? u[i - i % 3] : rng());
      s[i] = static_cast<Lum16s>(u[i] - 32768);
    }
    ASSERT_EQ(lumiRGBToHLS_16u_C3R(u.data(), 2 * n, uo.data(), 2 * n, LumSize{w, 1}), LumOk);
    ASSERT_EQ(lumiRGBToHLS_16s_C3R(s.data(), 2 * n, so.data(), 2 * n, LumSize{w, 1}), LumOk);
    for (int i = 0; i < n; ++i) ASSERT_EQ(so[i], static_cast<Lum16s>(uo[i] - 32768)) << i;
  }
}

// 32f: d must exceed 1.1920929e-7 = 2^-23 (not merely be non-zero) for a
// colour.  Around 0.25 a float step is 2^-25.
TEST(HlsStated, FloatGreyThreshold) {
  const float base = 0.25f, ulp = 0x1p-25f;
  for (float d : {ulp, 4 * ulp}) {  // 2^-25 and 2^-23: grey
    const std::vector<float> o = runPixel<float>("RGBToHLS_32f_C3R", {base, base + d, base}, false);
    EXPECT_EQ(o[0], 0.0f);
    EXPECT_EQ(o[2], 0.0f);
    EXPECT_EQ(o[1], 0.5f * (base + (base + d)));
  }
  // 5 * 2^-25 is a colour: green, H = 120 / 360, S = d / s (L below 0.5).
  const float g = base + 5 * ulp;
  const std::vector<float> o = runPixel<float>("RGBToHLS_32f_AC4R", {base, g, base}, false);
  EXPECT_EQ(o[0], 120.0f / 360.0f);
  EXPECT_EQ(o[2], (g - base) / (base + g));
}

// 32f: the red arm is ((G - B) * 60) / d with nothing added, so a quotient
// that underflows to -0 stays -0 (not below 0, so no 360 is added) and H is
// -0; an arm that added a zero would turn it into +0.
TEST(HlsStated, FloatRedArmKeepsNegativeZero) {
  const std::vector<float> o = runPixel<float>("RGBToHLS_32f_C3R", {1e5f, 0.0f, 1e-44f}, false);
  EXPECT_EQ(o[0], 0.0f);
  EXPECT_TRUE(std::signbit(o[0]));
}

// Inverse: a hue of full scale acts as 0, in main loop and tail.
TEST(HlsStated, FullScaleHueActsAsZero) {
  std::mt19937 rng(31);
  for (int i = 0; i < 300; ++i)
    for (bool main : {true, false}) {
      const int l8 = rng() & 255, s8 = 1 + rng() % 255;
      ASSERT_EQ(runPixel<Lum8u>("HLSToRGB_8u_C3R", {255, Lum8u(l8), Lum8u(s8)}, main),
                runPixel<Lum8u>("HLSToRGB_8u_C3R", {0, Lum8u(l8), Lum8u(s8)}, main));
      const int l16 = rng() & 65535, s16 = 1 + rng() % 65535;
      ASSERT_EQ(runPixel<Lum16u>("HLSToRGB_16u_AC4R", {65535, Lum16u(l16), Lum16u(s16)}, main),
                runPixel<Lum16u>("HLSToRGB_16u_AC4R", {0, Lum16u(l16), Lum16u(s16)}, main));
      ASSERT_EQ(runPixel<Lum16s>("HLSToRGB_16s_C3R", {32767, Lum16s(l16), Lum16s(s16)}, main),
                runPixel<Lum16s>("HLSToRGB_16s_C3R", {-32768, Lum16s(l16), Lum16s(s16)}, main));
      const float lf = (rng() >> 8) / 16777216.0f, sf = (1 + (rng() >> 8)) / 16777216.0f;
      ASSERT_EQ(runPixel<float>("HLSToRGB_32f_C3R", {1.0f, lf, sf}, main),
                runPixel<float>("HLSToRGB_32f_C3R", {0.0f, lf, sf}, main));
    }
}

// Inverse 8u: S = 0 returns L exactly, in main loop and tail, for every L;
// a pure hue at full saturation gives the primary.
TEST(HlsStated, EightBitInverseGreyAndPrimaries) {
  for (bool main : {true, false}) {
    for (int l = 0; l < 256; ++l)
      ASSERT_EQ(runPixel<Lum8u>("HLSToRGB_8u_AC4R", {77, Lum8u(l), 0}, main),
                vec3<Lum8u>(l, l, l)) << l;
    const std::vector<Lum8u> red = runPixel<Lum8u>("HLSToRGB_8u_C3R", {0, 127, 255}, main);
    EXPECT_GE(red[0], 252);
    EXPECT_LE(red[1], 1);
    EXPECT_LE(red[2], 1);
  }
}

// Inverse 16u: the computed path doubles sat16(trunc(c * 32767.5)), so it is
// even and at most 65534; only the tail's copy of L for S = 0 can be odd.
// The constant 1.5259e-05 is 2^-16 + 2^-32 (bits 0x37800080), the one of
// 1/65535, not the float nearest to the decimal (0x37800074): with it a grey
// pixel of even L comes out as L in the main loop, and of odd L as L - 1,
// mostly; the expectation below is computed from the bits and differs from
// the other constant's for thousands of L.
TEST(HlsStated, SixteenBitInverseEvenOnlyAndItsConstant) {
  EXPECT_EQ(runPixel<Lum16u>("HLSToRGB_16u_C3R", {1234, 65535, 0}, false),
            vec3<Lum16u>(65535, 65535, 65535));
  EXPECT_EQ(runPixel<Lum16u>("HLSToRGB_16u_C3R", {1234, 65535, 0}, true),
            vec3<Lum16u>(65534, 65534, 65534));
  auto mainGrey = [](int l, uint32_t bits) {
    return 2 * cvtTrunc((static_cast<float>(l) * floatFromBits(bits)) * 32767.5f);
  };
  // One row of all 65536 grey levels: 65536 pixels in the main loop; then
  // the same levels as rows of one pixel (tail).
  std::vector<Lum16u> src(65536 * 3), dst(65536 * 3);
  for (int l = 0; l < 65536; ++l) {
    src[3 * l] = static_cast<Lum16u>(l * 7);
    src[3 * l + 1] = static_cast<Lum16u>(l);
    src[3 * l + 2] = 0;
  }
  ASSERT_EQ(lumiHLSToRGB_16u_C3R(src.data(), 0, dst.data(), 0, LumSize{65536, 1}), LumOk);
  int otherConstantDiffers = 0;
  for (int l = 0; l < 65536; ++l) {
    const int want = mainGrey(l, 0x37800080u);
    ASSERT_EQ(dst[3 * l], want) << "L=" << l;
    ASSERT_EQ(dst[3 * l + 2], want) << "L=" << l;
    if (l % 2 == 0 && l <= 512) {
      ASSERT_EQ(want, l);
    }
    otherConstantDiffers += want != mainGrey(l, 0x37800074u);
  }
  EXPECT_GT(otherConstantDiffers, 1000);
  ASSERT_EQ(lumiHLSToRGB_16u_C3R(src.data(), 6, dst.data(), 6, LumSize{1, 65536}), LumOk);
  for (int l = 0; l < 65536; ++l) ASSERT_EQ(dst[3 * l + 1], l) << "tail L=" << l;
  // With S > 0 no output is ever odd, in main loop and tail.
  std::mt19937 rng(41);
  const int w = 203;
  std::vector<Lum16u> s2(w * 4), d2(w * 4);
  for (int rep = 0; rep < 30; ++rep) {
    for (int x = 0; x < w; ++x) {
      s2[4 * x] = static_cast<Lum16u>(rng());
      s2[4 * x + 1] = static_cast<Lum16u>(rng());
      s2[4 * x + 2] = static_cast<Lum16u>(1 + rng() % 65535);
    }
    ASSERT_EQ(lumiHLSToRGB_16u_AC4R(s2.data(), 8 * w, d2.data(), 8 * w, LumSize{w, 1}), LumOk);
    for (int x = 0; x < w; ++x)
      for (int c = 0; c < 3; ++c) ASSERT_EQ(d2[4 * x + c] & 1, 0) << x;
  }
}

// Inverse 16s: the main loop truncates, the tail adds 0.49998999 (just below
// one half) before truncating.
TEST(HlsStated, SixteenSignedInverseRounding) {
  // Grey, biased level 257: the main loop's 257 * 1.5259e-05 * 65535 falls
  // just short of 257 and truncates to 256; the tail's 257 / 65535 * 65535
  // rounds back to 257.
  EXPECT_EQ(runPixel<Lum16s>("HLSToRGB_16s_C3R", {0, 257 - 32768, -32768}, true),
            vec3<Lum16s>(256 - 32768, 256 - 32768, 256 - 32768));
  EXPECT_EQ(runPixel<Lum16s>("HLSToRGB_16s_C3R", {0, 257 - 32768, -32768}, false),
            vec3<Lum16s>(257 - 32768, 257 - 32768, 257 - 32768));
  // Biased H 0, L 1, S 32767: G and B are M1, with M1 * 65535 just above one
  // half (0.5000076): the tail's constant keeps it at 0, where adding 0.5
  // would give 1; R is M2 (1.50001...) and gives 1 either way.
  EXPECT_EQ(runPixel<Lum16s>("HLSToRGB_16s_AC4R", {-32768, -32767, -1}, false),
            vec3<Lum16s>(1 - 32768, -32768, -32768));
  // Tail outputs are the low 16 bits, unsaturated; main loop saturated.
  for (bool main : {true, false})
    EXPECT_EQ(runPixel<Lum16s>("HLSToRGB_16s_C3R", {0, 32767, -32768}, main),
              vec3<Lum16s>(32767, 32767, 32767));
}

}  // namespace
