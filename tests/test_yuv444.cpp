// RGB and YUV 4:4:4: the stated values, the block loops against their
// scalar forms across every block boundary, the largest differences of block
// and tail formulas.  Guard bytes, alpha, check orders, levels, steps and
// team sizes: the generic suite and test_frame.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lumcc.h"
#include "test_support.h"
#include "video/pccyuv01.h"

using namespace lum::yuv444;
using namespace lumtest::px444;

namespace {

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

class Yuv444 : public ::testing::TestWithParam<Fn> {};

// Random rows of every width from 1 to 70 and some wide ones: block loops
// against their block forms, tails against their tail forms.
TEST_P(Yuv444, KernelsMatchScalarFormsAtEveryWidth) {
  std::vector<int> widths = lumtest::widthsUpTo(70);
  for (int w : {95, 96, 97, 127, 128, 129, 255, 1001}) widths.push_back(w);
  expectScalarFormsAtWidths(GetParam(), widths, false);
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
  for (const Fn& f : allFunctions())
    if (f.name == w.fn) {
      EXPECT_EQ(convertOne(f, w.inBlock, w.in), w.out) << w.fn;
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
  for (const Pair& p : pairs) EXPECT_EQ(largestDifference(p.block, p.tail), p.most);
}

}  // namespace
