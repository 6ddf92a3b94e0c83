// RGB and YCbCr 4:4:4: worked values, and every block path (each
// instruction-set level) against the scalar forms at every width.  Guards,
// alpha, statuses and check order: test_generic.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lumcc.h"
#include "test_support.h"
#include "video/pccycbcr.h"

using namespace lum::ycbcr;
using namespace lumtest::px444;

namespace {

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

std::vector<Fn> allFunctions() {
  return {
      {"RGBToYCbCr_C3R", Layout::C3, Layout::C3, 8, B, A},
      {"RGBToYCbCr_AC4R", Layout::AC4, Layout::AC4, 0, A, A},
      {"RGBToYCbCr_P3R", Layout::P3, Layout::P3, 16, C, A},
      {"YCbCrToRGB_C3R", Layout::C3, Layout::C3, 4, E, D},
      {"YCbCrToRGB_AC4R", Layout::AC4, Layout::AC4, 0, D, D},
      {"YCbCrToRGB_P3R", Layout::P3, Layout::P3, 4, E, D},
      {"YCbCrToRGB_P3C3R", Layout::P3, Layout::C3, 8, F, G},
  };
}

class Ycbcr444 : public ::testing::TestWithParam<Fn> {};

// Every width from 1 to 70 and some wide ones, at every level.
TEST_P(Ycbcr444, KernelsMatchScalarFormsAtEveryWidthAndLevel) {
  std::vector<int> widths = lumtest::widthsUpTo(70);
  for (int w : {95, 96, 97, 127, 128, 129, 1001, 1923}) widths.push_back(w);
  expectScalarFormsAtWidths(GetParam(), widths, true);
}
INSTANTIATE_TEST_SUITE_P(AllSeven, Ycbcr444, ::testing::ValuesIn(allFunctions()),
                         [](const ::testing::TestParamInfo<Fn>& i) { return i.param.name; });

// Worked values: black, white and red in the block part and in the tail of
// every forward form; studio black, white and (0, 0, 0) of every inverse.
// The C3 forward block and the P3C3 inverse block round their own way.
TEST(Ycbcr444Worked, StatedValues) {
  for (const Fn& f : allFunctions())
    for (bool blk : {true, false}) {
      const bool fwd = f.name.compare(0, 3, "RGB") == 0, odd = blk && f.block == 8;
      const Pix in[3] = {fwd ? Pix{0, 0, 0} : Pix{16, 128, 128},
                         fwd ? Pix{255, 255, 255} : Pix{235, 128, 128},
                         fwd ? Pix{255, 0, 0} : Pix{0, 0, 0}};
      const Pix out[3] = {fwd ? Pix{16, 128, 128} : Pix{0, 0, 0},
                          fwd ? (odd ? Pix{234, 127, 127} : Pix{235, 128, 128})
                              : (odd ? Pix{255, 255, 255} : Pix{254, 254, 254}),
                          fwd ? (odd ? Pix{81, 90, 239} : Pix{82, 90, 240})
                              : (odd ? Pix{0, 136, 0} : Pix{0, 135, 0})};
      for (int i = 0; i < 3; ++i) EXPECT_EQ(convertOne(f, blk, in[i]), out[i]) << f.name << " " << blk;
    }
}

// Block and tail formulas of each kernel differ by at most one level in each
// channel over the cube, and do differ somewhere.
TEST(Ycbcr444Formulas, BlockAndTailDifferByAtMostOneLevel) {
  const std::pair<PixFn, PixFn> pairs[] = {{B, A}, {C, A}, {E, D}, {F, G}};
  for (const auto& p : pairs) EXPECT_EQ(largestDifference(p.first, p.second), (Pix{1, 1, 1}));
}

// chop: 0 below 1, identity from 1 to 254, 255 above, over -370 .. 629.
TEST(Ycbcr444Formulas, ChopTable) {
  for (int i = kChopLow; i <= kChopHigh; ++i) ASSERT_EQ(chop(i), i < 1 ? 0 : (i > 254 ? 255 : i)) << i;
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
