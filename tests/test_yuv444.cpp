// RGB and YUV 4:4:4: the stated values, the block loops against their
// scalar forms across every block boundary, the largest differences of block
// and tail formulas.  Guard bytes, alpha, check orders, levels, steps and
// team sizes: the generic suite and test_frame.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lum_table.h"
#include "lumcc.h"
#include "test_support.h"
#include "video/pccyuv01.h"

using namespace lum::yuv444;
using lumtest::GuardedImage;

namespace {

enum class Layout { C3, AC4, P3 };
using Pix = std::array<int, 3>;
using PixFn = std::function<Pix(int, int, int)>;

Pix F1(int r, int g, int b) { return {f1Y(r, g, b), f1U(r, g, b), f1V(r, g, b)}; }
Pix F2(int r, int g, int b) { return {f2Y(r, g, b), f2U(r, g, b), f2V(r, g, b)}; }
Pix F3(int r, int g, int b) {
  uint8_t o[3];
  f3(r, g, b, o);
  return {o[0], o[1], o[2]};
}
Pix F4(int r, int g, int b) { return {f4Y(r, g, b), f4U(r, g, b), f4V(r, g, b)}; }
Pix F5(int r, int g, int b) {
  uint8_t y, u, v;
  f5(r, g, b, &y, &u, &v);
  return {y, u, v};
}
Pix G1(int y, int u, int v) {
  uint8_t o[3];
  g1(y, u, v, o);
  return {o[0], o[1], o[2]};
}
Pix G2(int y, int u, int v) { return {g2R(y, u, v), g2G(y, u, v), g2B(y, u, v)}; }
Pix G3(int y, int u, int v) { return {g3R(y, u, v), g3G(y, u, v), g3B(y, u, v)}; }
Pix G4(int y, int u, int v) {
  uint8_t o[3];
  g4(y, u, v, o);
  return {o[0], o[1], o[2]};
}

// One public function as the tests see it: its layouts, its block size, the
// formulas of its block loop and tail; the call from the function table.
struct Images {
  // Pixel-order images use img[0]; plane forms use img[0..2].
  std::vector<GuardedImage*> src, dst;
};
struct Fn {
  std::string name;
  Layout in, out;
  int block;
  PixFn blockFn, tailFn;
  LumStatus call(Images& im, LumSize r) const {
    lumtable::Args a;
    for (size_t p = 0; p < im.src.size(); ++p) a.src[p] = im.src[p]->data(), a.srcSteps[p] = im.src[p]->step();
    for (size_t p = 0; p < im.dst.size(); ++p) a.dst[p] = im.dst[p]->data(), a.dstSteps[p] = im.dst[p]->step();
    a.roi = r;
    return lumtable::find(("lumi" + name.substr(0, name.find('_')) + "_8u" + name.substr(name.find('_'))).c_str())->call(a);
  }
};

std::vector<Fn> allFunctions() {
  return {
      {"RGBToYUV_C3R", Layout::C3, Layout::C3, 16, F1, F3},
      {"RGBToYUV_AC4R", Layout::AC4, Layout::AC4, 8, F2, F3},
      {"RGBToYUV_P3R", Layout::P3, Layout::P3, 16, F1, F4},
      {"RGBToYUV_C3P3R", Layout::C3, Layout::P3, 8, F1, F5},
      {"YUVToRGB_C3R", Layout::C3, Layout::C3, 8, G1, G1},
      {"YUVToRGB_AC4R", Layout::AC4, Layout::AC4, 8, G1, G1},
      {"YUVToRGB_P3R", Layout::P3, Layout::P3, 8, G2, G3},
      {"YUVToRGB_P3C3R", Layout::P3, Layout::C3, 16, G4, G4},
  };
}

void PrintTo(const Fn& f, std::ostream* os) { *os << f.name; }

int channelsOf(Layout l) { return l == Layout::AC4 ? 4 : 3; }

// Images for one call, with guard bytes, padded and unaligned rows.
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
  // Sample c of pixel (x, y) of a side.
  static uint8_t& at(std::vector<GuardedImage*>& v, Layout l, int x, int y, int c) {
    if (l == Layout::P3) return v[c]->row(y)[x];
    return v[0]->row(y)[channelsOf(l) * x + c];
  }
};

// The bytes a call must give, from the scalar forms: block formula over the
// first (width & ~(block - 1)) pixels of each row, tail formula after.
void expectMatchesScalarForms(const Fn& f, CallImages& s, int w, int h) {
  const int blockEnd = w & ~(f.block - 1);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const int a = CallImages::at(s.im.src, s.in, x, y, 0);
      const int b = CallImages::at(s.im.src, s.in, x, y, 1);
      const int c = CallImages::at(s.im.src, s.in, x, y, 2);
      const Pix want = x < blockEnd ? f.blockFn(a, b, c) : f.tailFn(a, b, c);
      for (int k = 0; k < 3; ++k)
        ASSERT_EQ(CallImages::at(s.im.dst, s.out, x, y, k), want[k])
            << f.name << " w=" << w << " " << lumtest::where(x, y, k) << " in=" << a << ","
            << b << "," << c;
    }
}

class Yuv444 : public ::testing::TestWithParam<Fn> {};

// Random rows of every width from 1 to 70 and some wide ones: block loops
// against their block forms, tails against their tail forms.
TEST_P(Yuv444, KernelsMatchScalarFormsAtEveryWidth) {
  const Fn& f = GetParam();
  std::mt19937 rng(1234);
  std::vector<int> widths = lumtest::widthsUpTo(70);
  for (int w : {95, 96, 97, 127, 128, 129, 255, 1001}) widths.push_back(w);
  for (int w : widths) {
    const int h = 1 + (w % 3);
    CallImages s(f, w, h, w % 16, (w * 7) % 19);
    for (auto* g : s.im.src) g->fillRandom(rng);
    ASSERT_EQ(f.call(s.im, LumSize{w, h}), LumOk);
    expectMatchesScalarForms(f, s, w, h);
  }
}

INSTANTIATE_TEST_SUITE_P(AllEight, Yuv444, ::testing::ValuesIn(allFunctions()),
                         [](const ::testing::TestParamInfo<Fn>& i) { return i.param.name; });

// Worked values: one pixel placed in the block loop (position 0 of a row of
// one block) or in the tail (a row of one pixel).
struct Worked {
  const char* fn;
  bool inBlock;
  Pix in, out;
};
void PrintTo(const Worked& w, std::ostream* os) {
  *os << w.fn << (w.inBlock ? " block " : " tail ") << w.in[0] << "," << w.in[1] << "," << w.in[2];
}
class Yuv444Worked : public ::testing::TestWithParam<Worked> {};

TEST_P(Yuv444Worked, StatedValues) {
  const Worked& w = GetParam();
  for (const Fn& f : allFunctions()) {
    if (f.name != w.fn) continue;
    const int width = w.inBlock ? f.block : 1;
    CallImages s(f, width, 1, 0, 0);
    for (int x = 0; x < width; ++x)
      for (int k = 0; k < 3; ++k) CallImages::at(s.im.src, s.in, x, 0, k) = static_cast<uint8_t>(w.in[k]);
    ASSERT_EQ(f.call(s.im, LumSize{width, 1}), LumOk);
    for (int k = 0; k < 3; ++k) EXPECT_EQ(CallImages::at(s.im.dst, s.out, 0, 0, k), w.out[k]) << w.fn << " c=" << k;
    return;
  }
  FAIL() << "no function " << w.fn;
}

std::vector<Worked> workedValues() {
  std::vector<Worked> v = {
      {"RGBToYUV_C3R", false, {255, 255, 255}, {254, 128, 128}},
      {"RGBToYUV_C3R", true, {255, 255, 255}, {254, 127, 127}},
      {"RGBToYUV_C3P3R", false, {255, 255, 255}, {255, 128, 128}},
      {"RGBToYUV_C3P3R", true, {255, 255, 255}, {254, 127, 127}},
      {"RGBToYUV_P3R", true, {128, 128, 128}, {127, 127, 128}},
      {"YUVToRGB_C3R", true, {128, 0, 0}, {0, 252, 0}},
      {"YUVToRGB_C3R", false, {128, 0, 0}, {0, 252, 0}},
      {"YUVToRGB_P3R", true, {128, 0, 0}, {0, 253, 0}},
      {"YUVToRGB_P3R", false, {128, 0, 0}, {0, 252, 0}},
  };
  // Black and the primaries through every forward path.
  for (const char* fn : {"RGBToYUV_C3R", "RGBToYUV_AC4R", "RGBToYUV_P3R", "RGBToYUV_C3P3R"})
    for (bool blk : {true, false}) {
      v.push_back({fn, blk, {0, 0, 0}, {0, 128, 128}});
      v.push_back({fn, blk, {255, 0, 0}, {76, 90, 255}});
      v.push_back({fn, blk, {0, 255, 0}, {149, 54, 0}});
      v.push_back({fn, blk, {0, 0, 255}, {29, 239, 102}});
    }
  return v;
}
INSTANTIATE_TEST_SUITE_P(Stated, Yuv444Worked, ::testing::ValuesIn(workedValues()));

// U = V = 128 gives R = G = B = Y in every inverse path, for every Y.
TEST(Yuv444Inverse, NeutralChromaGivesGrey) {
  for (PixFn fn : {PixFn(G1), PixFn(G2), PixFn(G3), PixFn(G4)})
    for (int y = 0; y < 256; ++y) {
      const Pix p = fn(y, 128, 128);
      ASSERT_EQ(p[0], y);
      ASSERT_EQ(p[1], y);
      ASSERT_EQ(p[2], y);
    }
}

// Block and tail formulas of one kernel differ by at most the stated levels,
// over the whole colour cube.
TEST(Yuv444Formulas, BlockAndTailDifferByAtMostTheStatedLevels) {
  struct Pair {
    PixFn block, tail;
    Pix most;
  };
  const Pair pairs[] = {{F1, F3, {1, 1, 1}}, {F2, F3, {1, 2, 2}}, {F1, F4, {1, 1, 1}},
                        {F1, F5, {1, 1, 1}}, {G2, G3, {0, 2, 0}}};
  for (const Pair& p : pairs) {
    Pix seen{0, 0, 0};
    for (int a = 0; a < 256; a += 1)
      for (int b = 0; b < 256; b += 3)
        for (int c = 0; c < 256; c += 2) {
          const Pix x = p.block(a, b, c), y = p.tail(a, b, c);
          for (int k = 0; k < 3; ++k) seen[k] = std::max(seen[k], std::abs(x[k] - y[k]));
        }
    EXPECT_EQ(seen, p.most);
  }
}

}  // namespace
