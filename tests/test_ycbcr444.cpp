// RGB and YCbCr 4:4:4: worked values, and every block path (each
// instruction-set level) against the scalar forms at every width and over
// the colour cube.  Guards, alpha, statuses and check order: test_generic.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lumcc.h"
#include "test_support.h"
#include "video/pccycbcr.h"

using namespace lum::ycbcr;
using lumtest::GuardedImage;

namespace {

enum class Layout { C3, AC4, P3 };
using Pix = std::array<int, 3>;
using PixFn = std::function<Pix(int, int, int)>;

template <void (*F)(int, int, int, uint8_t*)>
Pix viaBytes(int a, int b, int c) {
  uint8_t o[3];
  F(a, b, c, o);
  return {o[0], o[1], o[2]};
}
Pix A(int r, int g, int b) { return viaBytes<formA>(r, g, b); }
Pix B(int r, int g, int b) { return viaBytes<formB>(r, g, b); }
Pix C(int r, int g, int b) { return {formCY(r, g, b), formCCb(r, g, b), formCCr(r, g, b)}; }
Pix D(int y, int cb, int cr) { return viaBytes<formD>(y, cb, cr); }
Pix E(int y, int cb, int cr) { return viaBytes<formE>(y, cb, cr); }
Pix F(int y, int cb, int cr) { return viaBytes<formF>(y, cb, cr); }
Pix G(int y, int cb, int cr) { return viaBytes<formG>(y, cb, cr); }

struct Images {
  std::vector<GuardedImage*> src, dst;
};
struct Fn {
  std::string name;
  Layout in, out;
  int block;  // the block part of a row is width & ~(block - 1); 0: no block part
  PixFn blockFn, tailFn;
  std::function<LumStatus(Images&, LumSize)> call;
};
void PrintTo(const Fn& f, std::ostream* os) { *os << f.name; }

const Lum8u* cp(GuardedImage* g) { return g->data(); }
Lum8u* mp(GuardedImage* g) { return g->data(); }

std::vector<Fn> allFunctions() {
  auto c2c = [](LumStatus (*f)(const Lum8u*, int, Lum8u*, int, LumSize)) {
    return [f](Images& im, LumSize r) {
      return f(cp(im.src[0]), im.src[0]->step(), mp(im.dst[0]), im.dst[0]->step(), r);
    };
  };
  auto p2p = [](LumStatus (*f)(const Lum8u* const*, int, Lum8u* const*, int, LumSize)) {
    return [f](Images& im, LumSize r) {
      const Lum8u* s[3] = {cp(im.src[0]), cp(im.src[1]), cp(im.src[2])};
      Lum8u* d[3] = {mp(im.dst[0]), mp(im.dst[1]), mp(im.dst[2])};
      return f(s, im.src[0]->step(), d, im.dst[0]->step(), r);
    };
  };
  return {
      {"RGBToYCbCr_C3R", Layout::C3, Layout::C3, 8, B, A, c2c(lumiRGBToYCbCr_8u_C3R)},
      {"RGBToYCbCr_AC4R", Layout::AC4, Layout::AC4, 0, A, A, c2c(lumiRGBToYCbCr_8u_AC4R)},
      {"RGBToYCbCr_P3R", Layout::P3, Layout::P3, 16, C, A, p2p(lumiRGBToYCbCr_8u_P3R)},
      {"YCbCrToRGB_C3R", Layout::C3, Layout::C3, 4, E, D, c2c(lumiYCbCrToRGB_8u_C3R)},
      {"YCbCrToRGB_AC4R", Layout::AC4, Layout::AC4, 0, D, D, c2c(lumiYCbCrToRGB_8u_AC4R)},
      {"YCbCrToRGB_P3R", Layout::P3, Layout::P3, 4, E, D, p2p(lumiYCbCrToRGB_8u_P3R)},
      {"YCbCrToRGB_P3C3R", Layout::P3, Layout::C3, 8, F, G,
       [](Images& im, LumSize r) {
         const Lum8u* s[3] = {cp(im.src[0]), cp(im.src[1]), cp(im.src[2])};
         return lumiYCbCrToRGB_8u_P3C3R(s, im.src[0]->step(), mp(im.dst[0]), im.dst[0]->step(), r);
       }},
  };
}

int channelsOf(Layout l) { return l == Layout::AC4 ? 4 : 3; }

struct CallImages {
  std::vector<std::unique_ptr<GuardedImage>> own;
  Images im;
  Layout in, out;
  CallImages(const Fn& f, int w, int h, int misalign, int pad) : in(f.in), out(f.out) {
    auto make = [&](Layout l, std::vector<GuardedImage*>& v, int mis) {
      const int planes = l == Layout::P3 ? 3 : 1;
      const int bpp = l == Layout::P3 ? 1 : channelsOf(l);
      for (int p = 0; p < planes; ++p) {
        own.push_back(std::make_unique<GuardedImage>(w * bpp, h, pad, (mis + 5 * p) & 15));
        v.push_back(own.back().get());
      }
    };
    make(f.in, im.src, misalign);
    make(f.out, im.dst, misalign + 7);
  }
  static uint8_t& at(std::vector<GuardedImage*>& v, Layout l, int x, int y, int c) {
    if (l == Layout::P3) return v[c]->row(y)[x];
    return v[0]->row(y)[channelsOf(l) * x + c];
  }
};

void expectMatchesScalarForms(const Fn& f, CallImages& s, int w, int h) {
  const int blockEnd = f.block ? w & ~(f.block - 1) : 0;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const int a = CallImages::at(s.im.src, s.in, x, y, 0);
      const int b = CallImages::at(s.im.src, s.in, x, y, 1);
      const int c = CallImages::at(s.im.src, s.in, x, y, 2);
      const Pix want = x < blockEnd ? f.blockFn(a, b, c) : f.tailFn(a, b, c);
      for (int k = 0; k < 3; ++k)
        ASSERT_EQ(CallImages::at(s.im.dst, s.out, x, y, k), want[k])
            << f.name << " w=" << w << " " << lumtest::where(x, y, k) << " in=" << a << "," << b
            << "," << c;
    }
}

class Ycbcr444 : public ::testing::TestWithParam<Fn> {};

// Random rows of every width from 1 to 70 and some wide ones, at several
// alignments and paddings, at every level: block loops against the scalar
// forms of the block part and the tail.
TEST_P(Ycbcr444, KernelsMatchScalarFormsAtEveryWidthAndLevel) {
  const Fn& f = GetParam();
  std::vector<int> widths = lumtest::widthsUpTo(70);
  for (int w : {95, 96, 97, 127, 128, 129, 1001, 1923}) widths.push_back(w);
  for (lum::Isa level : lumtest::isaLevels()) {
    const lumtest::IsaCap cap(level);
    std::mt19937 rng(4321);
    for (int w : widths) {
      const int h = 1 + (w % 3);
      CallImages s(f, w, h, w % 16, (w * 7) % 19);
      for (auto* g : s.im.src) g->fillRandom(rng);
      for (auto* g : s.im.dst) g->fillRandom(rng);
      ASSERT_EQ(f.call(s.im, LumSize{w, h}), LumOk);
      SCOPED_TRACE(lumtest::isaName(level));
      expectMatchesScalarForms(f, s, w, h);
    }
  }
}

// The colour cube in one long row through the block part, and in short rows
// through the tail, at every level.
TEST_P(Ycbcr444, ColourCubeSweepInBlockAndTail) {
  const Fn& f = GetParam();
  std::vector<Pix> colours;
  for (int a = 0; a < 256; a += 5)
    for (int b = 0; b < 256; b += 3)
      for (int c = 0; c < 256; c += 7) colours.push_back({a, b, c});
  colours.push_back({255, 255, 255});
  const int n = static_cast<int>(colours.size()) & ~15;
  for (lum::Isa level : lumtest::isaLevels()) {
    const lumtest::IsaCap cap(level);
    SCOPED_TRACE(lumtest::isaName(level));
    CallImages s(f, n, 1, 3, 0);
    for (int x = 0; x < n; ++x)
      for (int k = 0; k < 3; ++k)
        CallImages::at(s.im.src, s.in, x, 0, k) = static_cast<uint8_t>(colours[x][k]);
    ASSERT_EQ(f.call(s.im, LumSize{n, 1}), LumOk);
    expectMatchesScalarForms(f, s, n, 1);
    const int wTail = f.block ? f.block - 1 : 3;
    CallImages t(f, wTail, 1, 9, 3);
    for (int base = 0; base + wTail <= n; base += wTail * 11) {
      for (int x = 0; x < wTail; ++x)
        for (int k = 0; k < 3; ++k)
          CallImages::at(t.im.src, t.in, x, 0, k) = static_cast<uint8_t>(colours[base + x][k]);
      ASSERT_EQ(f.call(t.im, LumSize{wTail, 1}), LumOk);
      expectMatchesScalarForms(f, t, wTail, 1);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AllSeven, Ycbcr444, ::testing::ValuesIn(allFunctions()),
                         [](const ::testing::TestParamInfo<Fn>& i) { return i.param.name; });

// Worked values: the pixel at position 0 of a row of 16 (block part where the
// kernel has one) or alone in a row of 1 (tail).
struct Worked {
  const char* fn;
  bool inBlock;
  Pix in, out;
};
void PrintTo(const Worked& w, std::ostream* os) {
  *os << w.fn << (w.inBlock ? " block " : " tail ") << w.in[0] << "," << w.in[1] << "," << w.in[2];
}
class Ycbcr444Worked : public ::testing::TestWithParam<Worked> {};

TEST_P(Ycbcr444Worked, StatedValues) {
  const Worked& w = GetParam();
  for (const Fn& f : allFunctions()) {
    if (f.name != w.fn) continue;
    const int width = w.inBlock ? 16 : 1;
    CallImages s(f, width, 1, 0, 0);
    for (int x = 0; x < width; ++x)
      for (int k = 0; k < 3; ++k)
        CallImages::at(s.im.src, s.in, x, 0, k) = static_cast<uint8_t>(w.in[k]);
    ASSERT_EQ(f.call(s.im, LumSize{width, 1}), LumOk);
    for (int k = 0; k < 3; ++k)
      EXPECT_EQ(CallImages::at(s.im.dst, s.out, 0, 0, k), w.out[k]) << w.fn << " c=" << k;
    return;
  }
  FAIL() << "no function " << w.fn;
}

std::vector<Worked> workedValues() {
  const char* fwd[] = {"RGBToYCbCr_C3R", "RGBToYCbCr_AC4R", "RGBToYCbCr_P3R"};
  const char* inv[] = {"YCbCrToRGB_C3R", "YCbCrToRGB_AC4R", "YCbCrToRGB_P3R", "YCbCrToRGB_P3C3R"};
  std::vector<Worked> v;
  for (const char* fn : fwd)
    for (bool blk : {true, false}) {
      const bool c3Block = blk && std::string(fn) == "RGBToYCbCr_C3R";
      v.push_back({fn, blk, {0, 0, 0}, {16, 128, 128}});
      v.push_back({fn, blk, {255, 255, 255}, c3Block ? Pix{234, 127, 127} : Pix{235, 128, 128}});
      v.push_back({fn, blk, {255, 0, 0}, c3Block ? Pix{81, 90, 239} : Pix{82, 90, 240}});
    }
  for (const char* fn : inv)
    for (bool blk : {true, false}) {
      const bool p3c3Block = blk && std::string(fn) == "YCbCrToRGB_P3C3R";
      v.push_back({fn, blk, {16, 128, 128}, {0, 0, 0}});
      v.push_back({fn, blk, {235, 128, 128}, p3c3Block ? Pix{255, 255, 255} : Pix{254, 254, 254}});
      v.push_back({fn, blk, {0, 0, 0}, p3c3Block ? Pix{0, 136, 0} : Pix{0, 135, 0}});
    }
  return v;
}
INSTANTIATE_TEST_SUITE_P(Stated, Ycbcr444Worked, ::testing::ValuesIn(workedValues()));

// Block and tail formulas of each kernel differ by at most one level in each
// channel over the whole cube, and do differ somewhere.
TEST(Ycbcr444Formulas, BlockAndTailDifferByAtMostOneLevel) {
  const std::pair<PixFn, PixFn> pairs[] = {{B, A}, {C, A}, {E, D}, {F, G}};
  for (const auto& p : pairs) {
    Pix seen{0, 0, 0};
    for (int a = 0; a < 256; ++a)
      for (int b = 0; b < 256; b += 3)
        for (int c = 0; c < 256; c += 2) {
          const Pix x = p.first(a, b, c), y = p.second(a, b, c);
          for (int k = 0; k < 3; ++k) seen[k] = std::max(seen[k], std::abs(x[k] - y[k]));
        }
    EXPECT_EQ(seen, (Pix{1, 1, 1}));
  }
}

// chop: 0 below 1, identity from 1 to 254, 255 above, over -370 .. 629.
TEST(Ycbcr444Formulas, ChopTable) {
  for (int i = kChopLow; i <= kChopHigh; ++i)
    ASSERT_EQ(chop(i), i < 1 ? 0 : (i > 254 ? 255 : i)) << i;
}

// A step of 0 is accepted: every row lies on the first.
TEST(Ycbcr444Steps, ZeroStepWritesTheFirstRowOnly) {
  uint8_t src[3 * 21], dst[3 * 21 + 16], ref[3 * 21];
  for (int i = 0; i < 63; ++i) src[i] = static_cast<uint8_t>(i * 11);
  memset(dst, 0xAB, sizeof dst);
  ASSERT_EQ(lumiYCbCrToRGB_8u_C3R(src, 0, dst, 0, LumSize{21, 5}), LumOk);
  ASSERT_EQ(lumiYCbCrToRGB_8u_C3R(src, 63, ref, 63, LumSize{21, 1}), LumOk);
  EXPECT_EQ(0, memcmp(dst, ref, 63));
  EXPECT_EQ(dst[63], 0xAB);
}

}  // namespace
