// RGB and HSV: worked values, the main loops against the per-lane scalar
// form of their semantics and the tails against the scalar tails at every
// width and on every main-loop path (SSE2, SSSE3, AVX2) in every rounding
// mode, tie rules, guard bytes, alpha, statuses, steps, threading.
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

// Every pixel of the region against the scalar forms: the first (w & ~3)
// pixels of each row by the main loop's, the rest by the tail's.
void expectModel(const Fn& f, const GuardedImage& s, const GuardedImage& d, int w, int h,
                 const char* what = "") {
  const int blockEnd = w & ~3;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const Pix in = getPixel(f, s, x, y);
      const Pix want = model(f, x < blockEnd, in[0], in[1], in[2]);
      const Pix got = getPixel(f, d, x, y);
      ASSERT_EQ(got, want) << f.name << " " << what << " w=" << w << " "
                           << lumtest::where(x, y, -1) << " in=" << in[0] << "," << in[1]
                           << "," << in[2];
    }
}

// Alpha samples of an AC4 destination: equal before and after.
void expectAlphaKept(const Fn& f, const std::vector<uint8_t>& before, const GuardedImage& d) {
  if (f.ch != 4) return;
  const std::vector<uint8_t> after = d.regionBytes();
  const size_t px = static_cast<size_t>(4 * f.es);
  for (size_t i = 3 * f.es; i < after.size(); i += px)
    for (int b = 0; b < f.es; ++b) ASSERT_EQ(after[i + b], before[i + b]) << f.name << " alpha";
}

class Hsv : public ::testing::TestWithParam<Fn> {};

// Random rows, a third of the pixels from the special cases, widths 1..70
// and some wide ones, several heights, alignments and paddings.
TEST_P(Hsv, MainLoopAndTailMatchScalarFormsAtEveryWidth) {
  const Fn& f = GetParam();
  std::mt19937 rng(99);
  std::vector<int> widths = lumtest::widthsUpTo(70);
  for (int w : {127, 128, 129, 130, 131, 1003}) widths.push_back(w);
  for (int w : widths) {
    const int h = 1 + w % 3;
    auto s = image(f, w, h, (w * 5) % 17, w % 16);
    auto d = image(f, w, h, (w * 7) % 19, (w + 7) % 16);
    s->fillRandom(rng);
    d->fillRandom(rng);
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x)
        if (rng() % 3 == 0) setPixel(f, *s, x, y, specialPixel(f, rng));
    const std::vector<uint8_t> before = d->regionBytes();
    ASSERT_EQ(callOn(f, *s, *d, LumSize{w, h}), LumOk);
    expectModel(f, *s, *d, w, h);
    ASSERT_TRUE(d->guardsIntact()) << f.name << " w=" << w;
    expectAlphaKept(f, before, *d);
  }
}

// The same with the SSE rounding mode changed by the caller: every rounding
// of the family follows the mode in force (the tail of the 8u kernels, and
// both paths of the 16u kernels), and the family leaves the mode alone.
TEST_P(Hsv, RoundingFollowsTheModeInForce) {
  const Fn& f = GetParam();
  std::mt19937 rng(5);
  const unsigned saved = _MM_GET_ROUNDING_MODE();
  for (unsigned mode : {_MM_ROUND_DOWN, _MM_ROUND_UP, _MM_ROUND_TOWARD_ZERO, _MM_ROUND_NEAREST}) {
    for (int w = 1; w <= 23; ++w) {
      auto s = image(f, w, 2), d = image(f, w, 2);
      s->fillRandom(rng);
      _MM_SET_ROUNDING_MODE(mode);
      const LumStatus st = callOn(f, *s, *d, LumSize{w, 2});
      const unsigned after = _MM_GET_ROUNDING_MODE();
      // Expectations under the same mode.
      const int blockEnd = w & ~3;
      std::vector<Pix> want, got;
      for (int y = 0; y < 2; ++y)
        for (int x = 0; x < w; ++x) {
          const Pix in = getPixel(f, *s, x, y);
          want.push_back(model(f, x < blockEnd, in[0], in[1], in[2]));
          got.push_back(getPixel(f, *d, x, y));
        }
      _MM_SET_ROUNDING_MODE(saved);
      ASSERT_EQ(st, LumOk);
      ASSERT_EQ(after, mode) << f.name;
      ASSERT_EQ(got, want) << f.name << " mode=" << mode << " w=" << w;
    }
  }
}

// Nothing is written on a failed check; pointers are checked before sizes.
TEST_P(Hsv, StatusesAndNothingWrittenOnError) {
  const Fn& f = GetParam();
  auto s = image(f, 9, 3), d = image(f, 9, 3);
  std::mt19937 rng(3);
  s->fillRandom(rng);
  const std::vector<uint8_t> snap = d->snapshot();
  const int ss = s->step(), ds = d->step();
  EXPECT_EQ(f.call(nullptr, ss, d->data(), ds, LumSize{9, 3}), LumErrNullPtr);
  EXPECT_EQ(f.call(s->data(), ss, nullptr, ds, LumSize{9, 3}), LumErrNullPtr);
  EXPECT_EQ(f.call(nullptr, ss, nullptr, ds, LumSize{0, 0}), LumErrNullPtr);
  EXPECT_EQ(f.call(s->data(), ss, nullptr, ds, LumSize{-1, 3}), LumErrNullPtr);
  for (LumSize bad : {LumSize{0, 3}, LumSize{9, 0}, LumSize{-4, 3}, LumSize{9, -1},
                      LumSize{-2147483647 - 1, 1}})
    EXPECT_EQ(f.call(s->data(), ss, d->data(), ds, bad), LumErrSize) << f.name;
  EXPECT_TRUE(d->equals(snap)) << f.name;
  // Steps are not checked: zero and negative steps pass.
  EXPECT_EQ(f.call(s->data(), 0, d->data(), ds, LumSize{9, 3}), LumOk);
  EXPECT_EQ(f.call(s->row(2), -ss, d->data(), ds, LumSize{9, 3}), LumOk);
}

// Identical bytes for team sizes 1, 2 and 4 on an image above the threshold,
// width not a multiple of 4 so that every row has a tail.
TEST_P(Hsv, SameBytesForTeamSizes1And2And4) {
  const Fn& f = GetParam();
  const int w = 157, h = 41;  // 6437 pixels
  auto s = image(f, w, h);
  std::mt19937 rng(11);
  s->fillRandom(rng);
  std::vector<std::vector<uint8_t>> results;
  for (int n : {1, 2, 4}) {
    lumtest::TeamSize team(n);
    auto d = image(f, w, h);
    ASSERT_EQ(callOn(f, *s, *d, LumSize{w, h}), LumOk);
    ASSERT_TRUE(d->guardsIntact());
    if (n == 4) expectModel(f, *s, *d, w, h, "team 4");
    results.push_back(d->regionBytes());
  }
  EXPECT_EQ(results[0], results[1]) << f.name;
  EXPECT_EQ(results[0], results[2]) << f.name;
}

// 64 x 64 and 4096 x 1 stay on the calling thread, 4097 x 1 and 1 x 4097 take
// the parallel path; the bytes follow the same formulas either way.
TEST_P(Hsv, ThresholdDoesNotChangeBytes) {
  const Fn& f = GetParam();
  lumtest::TeamSize team(2);
  std::mt19937 rng(17);
  for (LumSize r : {LumSize{64, 64}, LumSize{4096, 1}, LumSize{4097, 1}, LumSize{1, 4097},
                    LumSize{63, 65}}) {
    auto s = image(f, r.width, r.height), d = image(f, r.width, r.height);
    s->fillRandom(rng);
    d->fillRandom(rng);
    const std::vector<uint8_t> before = d->regionBytes();
    ASSERT_EQ(callOn(f, *s, *d, r), LumOk);
    expectModel(f, *s, *d, r.width, r.height, "threshold");
    ASSERT_TRUE(d->guardsIntact());
    expectAlphaKept(f, before, *d);
  }
}

// A row of five equal pixels: the first four take the main loop, the fifth
// the tail.
TEST_P(Hsv, WidthFiveRowPositionsZeroAndFour) {
  const Fn& f = GetParam();
  std::mt19937 rng(23);
  int differing = 0;
  for (int n = 0; n < 3000; ++n) {
    const Pix p = n % 2 ? specialPixel(f, rng) : Pix{int(rng() % (f.maxVal() + 1)),
                                                     int(rng() % (f.maxVal() + 1)),
                                                     int(rng() % (f.maxVal() + 1))};
    auto s = image(f, 5, 1), d = image(f, 5, 1);
    for (int x = 0; x < 5; ++x) setPixel(f, *s, x, 0, p);
    ASSERT_EQ(callOn(f, *s, *d, LumSize{5, 1}), LumOk);
    const Pix first = getPixel(f, *d, 0, 0), last = getPixel(f, *d, 4, 0);
    ASSERT_EQ(first, model(f, true, p[0], p[1], p[2])) << f.name;
    ASSERT_EQ(last, model(f, false, p[0], p[1], p[2])) << f.name;
    for (int x = 1; x < 4; ++x) ASSERT_EQ(getPixel(f, *d, x, 0), first);
    differing += first != last;
  }
  // 8u: truncation against rounding makes equal pixels differ by place.
  if (f.es == 1) {
    EXPECT_GT(differing, 100) << f.name;
  }
}

INSTANTIATE_TEST_SUITE_P(AllEight, Hsv, ::testing::ValuesIn(kFns),
                         [](const ::testing::TestParamInfo<Fn>& i) { return std::string(i.param.name); });

// Every main-loop path of every kernel (SSE2, the SSSE3 (de)interleave, the
// eight-lane AVX2 loops: each that the processor has) against the scalar
// forms, in all four rounding modes, at every width from 1 to 100 and a few
// wider ones, so that each path's rounds and hand-overs (AVX2 to SSSE3 or
// SSE2 to the four-pixel step to the tail) fall at every place.  Half the
// pixels come from the special cases.  Unaligned rows; guard bytes before
// and after the destination row; AC4 alpha as it was.
struct RoundingScope {
  unsigned saved = _MM_GET_ROUNDING_MODE();
  ~RoundingScope() { _MM_SET_ROUNDING_MODE(saved); }
};

TEST(HsvPaths, EveryPathMatchesTheScalarFormsInEveryRoundingMode) {
  using Pub8 = LumStatus (*)(const Lum8u*, int, Lum8u*, int, LumSize);
  using Pub16 = LumStatus (*)(const Lum16u*, int, Lum16u*, int, LumSize);
  const struct {
    const char* fn;
    Pub8 p8;
    Pub16 p16;
  } kernels[] = {
      {"RGBToHSV_8u_C3R", lumiRGBToHSV_8u_C3R, nullptr},
      {"HSVToRGB_8u_C3R", lumiHSVToRGB_8u_C3R, nullptr},
      {"RGBToHSV_8u_AC4R", lumiRGBToHSV_8u_AC4R, nullptr},
      {"HSVToRGB_8u_AC4R", lumiHSVToRGB_8u_AC4R, nullptr},
      {"RGBToHSV_16u_C3R", nullptr, lumiRGBToHSV_16u_C3R},
      {"HSVToRGB_16u_C3R", nullptr, lumiHSVToRGB_16u_C3R},
      {"RGBToHSV_16u_AC4R", nullptr, lumiRGBToHSV_16u_AC4R},
      {"HSVToRGB_16u_AC4R", nullptr, lumiHSVToRGB_16u_AC4R},
  };
  const std::vector<lum::Isa> paths = lumtest::isaLevels();
  std::vector<int> widths = lumtest::widthsUpTo(100);
  for (int w : {127, 131, 259}) widths.push_back(w);
  const unsigned kModes[] = {_MM_ROUND_NEAREST, _MM_ROUND_DOWN, _MM_ROUND_UP, _MM_ROUND_TOWARD_ZERO};
  constexpr int kGuard = 32;  // bytes
  RoundingScope scope;
  std::mt19937 rng(71);
  for (const auto& k : kernels) {
    const Fn& f = fnNamed(k.fn);
    for (int w : widths) {
      const int n = w * f.ch;  // samples of the row
      const int rowBytes = n * f.es;
      // Source: 2 + (w % 7) * es bytes past an 8-byte boundary.
      std::vector<uint64_t> srcStore(rowBytes / 8 + 4);
      uint8_t* src = reinterpret_cast<uint8_t*>(srcStore.data()) + 2 + (w % 7) * f.es;
      for (int i = 0; i < n; ++i) setS(src, f.es, i, static_cast<int>(rng() % (f.maxVal() + 1)));
      for (int x = 0; x < w; ++x)
        if (rng() % 2) {
          const Pix p = specialPixel(f, rng);
          for (int c = 0; c < 3; ++c) setS(src, f.es, f.ch * x + c, p[c]);
        }
      // Destination prefill (guards and alpha included).
      std::vector<uint8_t> fill(rowBytes + 2 * kGuard);
      for (auto& b : fill) b = static_cast<uint8_t>(rng());
      for (unsigned mode : kModes) {
        _MM_SET_ROUNDING_MODE(mode);
        std::vector<uint8_t> want = fill;
        for (int x = 0; x < w; ++x) {
          const Pix p = model(f, x < (w & ~3), getS(src, f.es, f.ch * x),
                              getS(src, f.es, f.ch * x + 1), getS(src, f.es, f.ch * x + 2));
          for (int c = 0; c < 3; ++c) setS(want.data() + kGuard, f.es, f.ch * x + c, p[c]);
        }
        for (lum::Isa path : paths) {
          const lumtest::IsaCap cap(path);
          std::vector<uint64_t> dstStore(fill.size() / 8 + 2);
          uint8_t* dst = reinterpret_cast<uint8_t*>(dstStore.data()) + 2 * (w % 3);
          memcpy(dst, fill.data(), fill.size());
          const LumSize row{w, 1};
          if (f.es == 1) {
            ASSERT_EQ(k.p8(src, rowBytes, dst + kGuard, rowBytes, row), LumOk);
          } else {
            ASSERT_EQ(k.p16(reinterpret_cast<const Lum16u*>(src), rowBytes,
                            reinterpret_cast<Lum16u*>(dst + kGuard), rowBytes, row),
                      LumOk);
          }
          for (size_t i = 0; i < want.size(); ++i) {
            const long at = static_cast<long>(i) - kGuard;
            ASSERT_EQ(dst[i], want[i])
                << k.fn << " path=" << lumtest::isaName(path) << " mode=" << mode << " w=" << w
                << (at < 0 || at >= rowBytes ? " guard byte " : " byte ") << at
                << (at >= 0 && at < rowBytes ? " pixel " + std::to_string(at / (f.ch * f.es)) : "");
          }
        }
      }
      _MM_SET_ROUNDING_MODE(scope.saved);
    }
  }
}

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
    if (f.es == 1) {
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

// ---------------------------------------------------------------------------
// Steps of the 16u members are byte counts shifted right by one: an odd step
// loses its low bit, a negative odd one rounds toward minus infinity.
TEST(HsvSteps, OddStepsOfSixteenBitMembers) {
  std::mt19937 rng(31);
  const int w = 9, h = 4;
  for (const Fn& f : kFns) {
    if (f.es != 2) continue;
    const int re = f.ch * w;  // elements of one row
    // Positive: 2 * re + 1 bytes is re elements.
    std::vector<Lum16u> src(re * h), dst(re * h + 8, 0xBEEF), ref(re * h + 8, 0xBEEF);
    for (auto& v : src) v = static_cast<Lum16u>(rng());
    ASSERT_EQ(f.f16(src.data(), 2 * re + 1, dst.data(), 2 * re + 1, LumSize{w, h}), LumOk);
    ASSERT_EQ(f.f16(src.data(), 2 * re, ref.data(), 2 * re, LumSize{w, h}), LumOk);
    EXPECT_EQ(dst, ref) << f.name;
    // Negative: -(2 * re) - 1 bytes is -(re + 1) elements, rows re + 1 apart
    // going down in memory; a rounding toward zero would give -re.
    std::vector<Lum16u> back((re + 1) * h);
    for (auto& v : back) v = static_cast<Lum16u>(rng());
    const Lum16u* last = back.data() + (re + 1) * (h - 1);
    std::vector<Lum16u> out(re * h + 8, 0xBEEF);
    ASSERT_EQ(f.f16(last, -2 * re - 1, out.data(), 2 * re, LumSize{w, h}), LumOk);
    for (int y = 0; y < h; ++y) {
      Lum16u one[4 * 9 + 1];
      one[re] = 0xBEEF;
      ASSERT_EQ(f.f16(last - (re + 1) * y, 0, one, 0, LumSize{w, 1}), LumOk);
      for (int i = 0; i < re; ++i)
        if (f.ch == 3 || i % 4 != 3) {
          ASSERT_EQ(out[re * y + i], one[i]) << f.name << " y=" << y;
        }
    }
    EXPECT_EQ(out[re * h], 0xBEEF);
  }
}

// 8u: a zero source step reads the first row for every row; a negative
// destination step writes upward.
TEST(HsvSteps, ZeroAndNegativeStepsOfEightBitMembers) {
  const Fn& f = fnNamed("RGBToHSV_8u_C3R");
  std::mt19937 rng(2);
  auto s = image(f, 10, 1), d = image(f, 10, 3), one = image(f, 10, 1);
  s->fillRandom(rng);
  ASSERT_EQ(f.call(s->data(), 0, d->row(2), -d->step(), LumSize{10, 3}), LumOk);
  ASSERT_EQ(callOn(f, *s, *one, LumSize{10, 1}), LumOk);
  for (int y = 0; y < 3; ++y) EXPECT_EQ(0, memcmp(d->row(y), one->row(0), 30)) << y;
  EXPECT_TRUE(d->guardsIntact());
}

}  // namespace
