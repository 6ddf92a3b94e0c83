// RGB and HSV: the stated values, the block loops and tails against their
// scalar forms across block boundaries in every rounding mode, tie rules,
// the textbook formulas within the reciprocal's error.  Guard bytes, alpha,
// statuses, levels, steps and team sizes: the generic suite and test_frame.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "lumcc.h"
#include "models/pccmskcolor_hsv.h"
#include "test_support.h"

using namespace lum::hsv;
using lumtest::GuardedImage;
using Pix = std::array<int, 3>;

namespace {

// ---------------------------------------------------------------------------
// The eight functions as the tests see them.
using Fn8 = LumStatus (*)(const Lum8u*, int, Lum8u*, int, LumSize);
using Fn16 = LumStatus (*)(const Lum16u*, int, Lum16u*, int, LumSize);
struct Fn {
  const char* name;
  int es;  // element size in bytes
  int ch;  // samples a pixel
  bool fwd;
  Fn8 f8;
  Fn16 f16;
  LumStatus call(const void* s, int ss, void* d, int ds, LumSize r) const {
    if (es == 1) return f8(static_cast<const Lum8u*>(s), ss, static_cast<Lum8u*>(d), ds, r);
    return f16(static_cast<const Lum16u*>(s), ss, static_cast<Lum16u*>(d), ds, r);
  }
  int maxVal() const { return es == 1 ? 255 : 65535; }
};
void PrintTo(const Fn& f, std::ostream* os) { *os << f.name; }

const Fn kFns[] = {
    {"RGBToHSV_8u_C3R", 1, 3, true, lumiRGBToHSV_8u_C3R, nullptr},
    {"HSVToRGB_8u_C3R", 1, 3, false, lumiHSVToRGB_8u_C3R, nullptr},
    {"RGBToHSV_8u_AC4R", 1, 4, true, lumiRGBToHSV_8u_AC4R, nullptr},
    {"HSVToRGB_8u_AC4R", 1, 4, false, lumiHSVToRGB_8u_AC4R, nullptr},
    {"RGBToHSV_16u_C3R", 2, 3, true, nullptr, lumiRGBToHSV_16u_C3R},
    {"HSVToRGB_16u_C3R", 2, 3, false, nullptr, lumiHSVToRGB_16u_C3R},
    {"RGBToHSV_16u_AC4R", 2, 4, true, nullptr, lumiRGBToHSV_16u_AC4R},
    {"HSVToRGB_16u_AC4R", 2, 4, false, nullptr, lumiHSVToRGB_16u_AC4R},
};
const Fn& fnNamed(const std::string& n) {
  for (const Fn& f : kFns)
    if (n == f.name) return f;
  throw std::runtime_error("no function " + n);
}

// The scalar forms: `block` selects the main loop's per-lane semantics.
Pix model(const Fn& f, bool block, int a, int b, int c) {
  Pix r{};
  if (f.es == 1) {
    Lum8u o[3];
    if (f.fwd) (block ? rgbToHsvBlock<Hsv8u> : rgbToHsvTail<Hsv8u>)(a, b, c, o);
    else (block ? hsvToRgbBlock<Hsv8u> : hsvToRgbTail<Hsv8u>)(a, b, c, o);
    for (int k = 0; k < 3; ++k) r[k] = o[k];
  } else {
    Lum16u o[3];
    if (f.fwd) (block ? rgbToHsvBlock<Hsv16u> : rgbToHsvTail<Hsv16u>)(a, b, c, o);
    else (block ? hsvToRgbBlock<Hsv16u> : hsvToRgbTail<Hsv16u>)(a, b, c, o);
    for (int k = 0; k < 3; ++k) r[k] = o[k];
  }
  return r;
}

// Sample access in a row of bytes.
int getS(const uint8_t* row, int es, int i) {
  if (es == 1) return row[i];
  uint16_t v;
  memcpy(&v, row + 2 * i, 2);
  return v;
}
void setS(uint8_t* row, int es, int i, int v) {
  if (es == 1) {
    row[i] = static_cast<uint8_t>(v);
  } else {
    const uint16_t w = static_cast<uint16_t>(v);
    memcpy(row + 2 * i, &w, 2);
  }
}

// An image for one function: 16u rows stay 2-byte aligned.
std::unique_ptr<GuardedImage> image(const Fn& f, int w, int h, int pad = 6, int mis = 0) {
  if (f.es == 2) {
    pad &= ~1;
    mis &= ~1;
  }
  return std::make_unique<GuardedImage>(w * f.ch * f.es, h, pad, mis);
}
LumStatus callOn(const Fn& f, GuardedImage& s, GuardedImage& d, LumSize r) {
  return f.call(s.data(), s.step(), d.data(), d.step(), r);
}
void setPixel(const Fn& f, GuardedImage& g, int x, int y, const Pix& p) {
  for (int k = 0; k < 3; ++k) setS(g.row(y), f.es, f.ch * x + k, p[k]);
}
Pix getPixel(const Fn& f, const GuardedImage& g, int x, int y) {
  Pix p;
  for (int k = 0; k < 3; ++k) p[k] = getS(g.row(y), f.es, f.ch * x + k);
  return p;
}

// A pixel from the cases that matter: ties of two or three channels, black,
// saturated colours; for the inverse S = 0, H = 0, H = full scale.
Pix specialPixel(const Fn& f, std::mt19937& rng) {
  const int M = f.maxVal();
  std::uniform_int_distribution<int> v(0, M), kind(0, 7);
  int a = v(rng), b = v(rng), c = v(rng);
  switch (kind(rng)) {
    case 0: return f.fwd ? Pix{a, a, b} : Pix{a, 0, b};
    case 1: return f.fwd ? Pix{b, a, a} : Pix{M, b, c};
    case 2: return f.fwd ? Pix{a, b, a} : Pix{0, b, c};
    case 3: return f.fwd ? Pix{a, a, a} : Pix{a, M, c};
    case 4: return f.fwd ? Pix{0, 0, 0} : Pix{a, b, M};
    case 5: return f.fwd ? Pix{M, 0, a} : Pix{a, b, 0};
    case 6: return f.fwd ? Pix{a, M, M} : Pix{M, M, c};
    default: return Pix{a, b, c};
  }
}

struct RoundingScope {
  unsigned saved = _MM_GET_ROUNDING_MODE();
  ~RoundingScope() { _MM_SET_ROUNDING_MODE(saved); }
};

class Hsv : public ::testing::TestWithParam<Fn> {};

// Every rounding of the family follows the caller's mode (the tail of the
// 8u kernels, both paths of the 16u kernels): in every mode (every level
// gives these bytes: the generic suite), rows of every width to 70 and a
// wide one, half the pixels special: the first (w & ~3) pixels of a row give
// the block form, the rest the tail form, and the mode is the caller's on
// return.
TEST_P(Hsv, BlockAndTailGiveTheirScalarFormsInEveryRoundingMode) {
  const Fn& f = GetParam();
  std::mt19937 rng(99);
  RoundingScope scope;
  std::vector<int> widths = lumtest::widthsUpTo(70);
  widths.push_back(1003);
  for (int w : widths) {
    auto s = image(f, w, 2, 6, w % 16), d = image(f, w, 2, 6, (w + 7) % 16);
    s->fillRandom(rng);
    for (int y = 0; y < 2; ++y)
      for (int x = 0; x < w; ++x)
        if (rng() % 2) setPixel(f, *s, x, y, specialPixel(f, rng));
    for (unsigned mode : {_MM_ROUND_NEAREST, _MM_ROUND_DOWN, _MM_ROUND_UP, _MM_ROUND_TOWARD_ZERO}) {
      _MM_SET_ROUNDING_MODE(mode);
      const LumStatus st = callOn(f, *s, *d, LumSize{w, 2});
      const unsigned after = _MM_GET_ROUNDING_MODE();
      int bad = -1;
      Pix in{}, want{}, got{};
      for (int i = 0; i < 2 * w && bad < 0; ++i) {
        in = getPixel(f, *s, i % w, i / w);
        want = model(f, i % w < (w & ~3), in[0], in[1], in[2]);
        got = getPixel(f, *d, i % w, i / w);
        if (got != want) bad = i;
      }
      _MM_SET_ROUNDING_MODE(scope.saved);
      ASSERT_EQ(st, LumOk);
      ASSERT_EQ(after, mode) << f.name;
      ASSERT_LT(bad, 0) << f.name << " mode=" << mode << " w=" << w << " x=" << bad % w << " in=" << in[0] << "," << in[1]
                        << "," << in[2] << " got " << got[0] << "," << got[1] << "," << got[2]
                        << " want " << want[0] << "," << want[1] << "," << want[2];
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AllEight, Hsv, ::testing::ValuesIn(kFns),
                         [](const ::testing::TestParamInfo<Fn>& i) { return std::string(i.param.name); });

// ---------------------------------------------------------------------------
// Stated values, each in the main loop (position 0 of a row of 4) and in the
// tail (a row of 3).
Pix convertAt(const Fn& f, bool inMainLoop, const Pix& in) {
  const int w = inMainLoop ? 4 : 3;
  auto s = image(f, w, 1), d = image(f, w, 1);
  for (int x = 0; x < w; ++x) setPixel(f, *s, x, 0, in);
  EXPECT_EQ(callOn(f, *s, *d, LumSize{w, 1}), LumOk);
  EXPECT_TRUE(d->guardsIntact());
  return getPixel(f, *d, inMainLoop ? 0 : 2, 0);
}

TEST(HsvStated, BlackAndEveryGreyGiveZeroHueAndSaturation) {
  for (const Fn& f : kFns) {
    if (!f.fwd) continue;
    const int step = f.es == 1 ? 1 : 257;
    for (bool main : {true, false})
      for (int g = 0; g <= f.maxVal(); g += step)
        ASSERT_EQ(convertAt(f, main, {g, g, g}), (Pix{0, 0, g})) << f.name << " grey " << g;
  }
  EXPECT_EQ(convertAt(fnNamed("RGBToHSV_8u_C3R"), true, {10, 10, 10}), (Pix{0, 0, 10}));
  EXPECT_EQ(convertAt(fnNamed("RGBToHSV_8u_C3R"), false, {10, 10, 10}), (Pix{0, 0, 10}));
}

TEST(HsvStated, InverseWorkedValues) {
  for (const char* n : {"HSVToRGB_8u_C3R", "HSVToRGB_8u_AC4R"})
    for (bool main : {true, false}) {
      const Fn& f = fnNamed(n);
      EXPECT_EQ(convertAt(f, main, {0, 0, 77}), (Pix{77, 77, 77})) << n << main;
      EXPECT_EQ(convertAt(f, main, {255, 255, 200}), (Pix{200, 0, 0})) << n << main;
    }
}

// S == 0 gives V whatever H; H == full scale converts as H == 0.
TEST(HsvStated, InverseGreyAndFullScaleHue) {
  std::mt19937 rng(8);
  for (const Fn& f : kFns) {
    if (f.fwd) continue;
    const int M = f.maxVal();
    for (bool main : {true, false}) {
      for (int n = 0; n < 300; ++n) {
        const int h = n < 2 ? n * M : int(rng() % (M + 1)), v = int(rng() % (M + 1));
        ASSERT_EQ(convertAt(f, main, {h, 0, v}), (Pix{v, v, v})) << f.name;
        const int s = 1 + int(rng() % M);
        ASSERT_EQ(convertAt(f, main, {M, s, v}), convertAt(f, main, {0, s, v})) << f.name;
      }
      EXPECT_EQ(convertAt(f, main, {M, M, 200}), convertAt(f, main, {0, M, 200})) << f.name;
    }
  }
}

// Saturated primaries: H is exact, S depends on the processor's reciprocal
// (8u: bare, truncated in the main loop and rounded in the tail; 16u: with a
// Newton step, rounded in both).
TEST(HsvStated, SaturatedColoursFollowTheReciprocal) {
  for (const Fn& f : kFns) {
    if (!f.fwd) continue;
    const int M = f.maxVal();
    for (int v : {M, M / 2, 1, 3, 200})
      for (int k = 0; k < 3; ++k) {
        Pix in{0, 0, 0};
        in[k] = v;
        const float Vf = static_cast<float>(v);
        const float prod = f.es == 1 ? (lum::rcpS(Vf) * Vf) * 255.0f
                                     : (lum::rcpNewtonS(Vf) * Vf) * 65535.0f;
        const int hue = k * M / 3;  // 0, 85, 170 or 0, 21845, 43690
        const int sMain = f.es == 1 ? lum::sat8u(lum::cvtTrunc(prod)) : lum::cvtRound(prod);
        const int sTail = lum::cvtRound(prod) & M;
        EXPECT_EQ(convertAt(f, true, in), (Pix{hue, sMain, v})) << f.name << " v=" << v;
        EXPECT_EQ(convertAt(f, false, in), (Pix{hue, sTail, v})) << f.name << " v=" << v;
      }
  }
}

// Ties of two maximal channels.  Main loop: R,G takes the red formula and
// G,B the green one; tail: R,G takes green and G,B blue; R,B takes blue in
// both.  With c = (max - min) * rcp(max - min) the hues are, before the
// scale: red c, green (0 - c) + 2 or c + 2, blue 4 - c or c + 4.
TEST(HsvTies, MainLoopAndTailBreakTiesDifferently) {
  for (const Fn& f : kFns) {
    if (!f.fwd) continue;
    const int M = f.maxVal();
    const float Q = f.es == 1 ? 42.5f : 10922.5f;
    auto rcp = [&](float x) { return f.es == 1 ? lum::rcpS(x) : lum::rcpNewtonS(x); };
    auto conv = [&](bool main, float x) {
      if (main && f.es == 1) return lum::sat8u(lum::cvtTrunc(x));
      return lum::cvtRound(x) & M;
    };
    int differ = 0;
    for (int n = 0; n < 400; ++n) {
      const int a = 1 + (n * 7919) % M, b = (n * 104729) % a;
      const float A = static_cast<float>(a), B = static_cast<float>(b), d = A - B;
      const float c = (A - B) * rcp(d);
      const float s = (rcp(A) * d) * static_cast<float>(M);
      for (bool main : {true, false}) {
        const int S = conv(main, s);
        const int hRG = main ? conv(main, c * Q) : conv(main, ((0.0f - c) + 2.0f) * Q);
        const int hGB = main ? conv(main, (c + 2.0f) * Q) : conv(main, (4.0f - c) * Q);
        const int hRB = conv(main, (c + 4.0f) * Q);
        ASSERT_EQ(convertAt(f, main, {a, a, b}), (Pix{hRG, S, a})) << f.name << " a=" << a << " b=" << b;
        ASSERT_EQ(convertAt(f, main, {b, a, a}), (Pix{hGB, S, a})) << f.name << " a=" << a << " b=" << b;
        ASSERT_EQ(convertAt(f, main, {a, b, a}), (Pix{hRB, S, a})) << f.name << " a=" << a << " b=" << b;
      }
      differ += convertAt(f, true, {a, a, b})[0] != convertAt(f, false, {a, a, b})[0];
    }
    // With the processor's approximate reciprocal the two tie rules part
    // somewhere in these 400; an exact reciprocal (an emulator's) can make
    // them agree everywhere.
    if (f.es == 1 && lum::rcpS(3.0f) * 3.0f != 1.0f) {
      EXPECT_GT(differ, 0) << f.name;
    }
  }
}

// Against the textbook formulas in double precision: the tails round, so
// they stay within half a unit (plus the reciprocal's error); the 8u main
// loops truncate, so they stay within (-1, 0] units of it.  Hue is compared
// around the circle.
struct Exact {
  double a, b, c;
};
Exact exactForward(int r, int g, int b, double K, double Q) {
  const double V = std::max({r, g, b}), m = std::min({r, g, b}), d = V - m;
  if (V == 0 || d == 0) return {0, 0, V};
  double h = r == V ? (g - b) / d : g == V ? 2 + (b - r) / d : 4 + (r - g) / d;
  h *= Q;
  if (h < 0) h += K;
  return {h, K * d / V, V};
}
Exact exactInverse(int h, int s, int v, double K) {
  if (s == 0) return {double(v), double(v), double(v)};
  const double x = h == K ? 0 : h * 6.0 / K, f = x - std::floor(x), S = s / K, V = v;
  const double p = V * (1 - S), q = V * (1 - S * f), t = V * (1 - S * (1 - f));
  switch (int(std::floor(x))) {
    case 0: return {V, t, p};
    case 1: return {q, V, p};
    case 2: return {p, V, t};
    case 3: return {p, q, V};
    case 4: return {t, p, V};
    default: return {V, p, q};
  }
}

TEST(HsvExact, PathsAgainstTextbookFormulas) {
  std::mt19937 rng(41);
  for (const char* n : {"RGBToHSV_8u_C3R", "HSVToRGB_8u_C3R", "RGBToHSV_16u_C3R", "HSVToRGB_16u_C3R"}) {
    const Fn& f = fnNamed(n);
    const double K = f.maxVal(), Q = K / 6;
    // The reciprocal's relative error (1.5 * 2^-12 bare) and single precision.
    const double tol = f.es == 1 ? (f.fwd ? 0.15 : 0.01) : (f.fwd ? 0.05 : 0.1);
    // One row of px pixels (all in the main loop), then the same samples as
    // rows of three pixels (all in the tail).
    const int px = 120000;
    std::vector<int> src(3 * px);
    for (int& v : src) v = static_cast<int>(rng() % (f.maxVal() + 1));
    std::vector<uint8_t> in(src.size() * f.es), outMain(in.size()), outTail(in.size());
    for (size_t i = 0; i < src.size(); ++i) setS(in.data(), f.es, static_cast<int>(i), src[i]);
    ASSERT_EQ(f.call(in.data(), 0, outMain.data(), 0, LumSize{px, 1}), LumOk);
    ASSERT_EQ(f.call(in.data(), 9 * f.es, outTail.data(), 9 * f.es, LumSize{3, px / 3}), LumOk);
    for (int i = 0; i < px; ++i) {
      const int a = src[3 * i], b = src[3 * i + 1], c = src[3 * i + 2];
      const Exact e = f.fwd ? exactForward(a, b, c, K, Q) : exactInverse(a, b, c, K);
      const double ex[3] = {e.a, e.b, e.c};
      for (int path = 0; path < 2; ++path) {
        const bool trunc = path == 0 && f.es == 1;
        for (int k = 0; k < 3; ++k) {
          const int got = getS((path == 0 ? outMain : outTail).data(), f.es, 3 * i + k);
          double delta = got - ex[k];
          if (f.fwd && k == 0) delta = std::remainder(delta, K);
          // Distance outside [-1, 0] for truncation, [-0.5, 0.5] for rounding.
          const double out = trunc ? std::max(-1 - delta, delta) : std::fabs(delta) - 0.5;
          ASSERT_LE(out, tol) << n << (path == 0 ? " main" : " tail") << " in=" << a << "," << b
                              << "," << c << " k=" << k << " got=" << got << " exact=" << ex[k];
        }
      }
    }
  }
}

}  // namespace
