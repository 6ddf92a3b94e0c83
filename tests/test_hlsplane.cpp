// BGR and HLS plane layouts: every kernel against the 8u scalar forms in BGR
// order across block boundaries and destination alignments, alpha carried or
// kept, grey in every layout, and the agreement with lumiRGBToHLS_8u_C3R
// wherever both take the same path.  Guard bytes, the stated check cases and
// check orders, levels, steps and team sizes: the generic suite.
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lum_table.h"
#include "lumcc.h"
#include "models/pccmskcolor_hls.h"
#include "test_support.h"

using namespace lum::hls;
using lumtest::GuardedImage;

namespace {

// C4: four samples, all written; AC4: four samples, the fourth of the
// destination kept; AP4: four planes.
enum class Layout { C3, C4, AC4, P3, AP4 };
int planesOf(Layout l) { return l == Layout::P3 ? 3 : (l == Layout::AP4 ? 4 : 1); }
int samplesOf(Layout l) {
  return l == Layout::C3 ? 3 : (l == Layout::P3 || l == Layout::AP4 ? 1 : 4);
}
bool hasAlpha(Layout l) { return l == Layout::C4 || l == Layout::AC4 || l == Layout::AP4; }

using Images = std::vector<GuardedImage*>;
struct Fn {
  std::string name;
  bool forward;
  Layout in, out;
  // The call through the function table: one step a side.
  LumStatus call(Images& s, int ss, Images& d, int ds, LumSize r) const {
    lumtable::Args a;
    for (size_t p = 0; p < s.size(); ++p) a.src[p] = s[p]->data(), a.srcSteps[p] = ss;
    for (size_t p = 0; p < d.size(); ++p) a.dst[p] = d[p]->data(), a.dstSteps[p] = ds;
    a.roi = r;
    return lumtable::find(name.c_str())->call(a);
  }
};
void PrintTo(const Fn& f, std::ostream* os) { *os << f.name; }

std::vector<Fn> allFunctions() {
  return {
      {"lumiBGRToHLS_8u_AC4R", true, Layout::AC4, Layout::AC4},
      {"lumiBGRToHLS_8u_AP4R", true, Layout::AP4, Layout::AP4},
      {"lumiBGRToHLS_8u_AP4C4R", true, Layout::AP4, Layout::C4},
      {"lumiBGRToHLS_8u_AC4P4R", true, Layout::C4, Layout::AP4},
      {"lumiBGRToHLS_8u_P3R", true, Layout::P3, Layout::P3},
      {"lumiBGRToHLS_8u_P3C3R", true, Layout::P3, Layout::C3},
      {"lumiBGRToHLS_8u_C3P3R", true, Layout::C3, Layout::P3},
      {"lumiHLSToBGR_8u_AP4R", false, Layout::AP4, Layout::AP4},
      {"lumiHLSToBGR_8u_AP4C4R", false, Layout::AP4, Layout::C4},
      {"lumiHLSToBGR_8u_AC4P4R", false, Layout::C4, Layout::AP4},
      {"lumiHLSToBGR_8u_P3R", false, Layout::P3, Layout::P3},
      {"lumiHLSToBGR_8u_P3C3R", false, Layout::P3, Layout::C3},
      {"lumiHLSToBGR_8u_C3P3R", false, Layout::C3, Layout::P3},
  };
}

// The images of one call: guard bytes, padded rows, planes of one side
// sharing a step but not an alignment.
struct Call {
  std::vector<std::unique_ptr<GuardedImage>> own;
  Images src, dst;
  Layout in, out;
  Call(const Fn& f, int w, int h, int misalign, int pad) : in(f.in), out(f.out) {
    make(f.in, w, h, misalign, pad, src);
    make(f.out, w, h, (misalign + 7) & 15, (pad * 3) % 11, dst);
  }
  void make(Layout l, int w, int h, int mis, int pad, Images& v) {
    for (int p = 0; p < planesOf(l); ++p) {
      own.push_back(std::make_unique<GuardedImage>(w * samplesOf(l), h, pad, (mis + 5 * p) & 15));
      v.push_back(own.back().get());
    }
  }
  int srcStep() const { return src[0]->step(); }
  int dstStep() const { return dst[0]->step(); }
  // Sample c (0..3) of pixel (x, y) of a side.
  static uint8_t& at(Images& v, Layout l, int x, int y, int c) {
    if (planesOf(l) > 1) return v[c]->row(y)[x];
    return v[0]->row(y)[samplesOf(l) * x + c];
  }
  LumStatus run(const Fn& f, LumSize r) { return f.call(src, srcStep(), dst, dstStep(), r); }
  void fillRandom(std::mt19937& rng, int w, int h) {
    for (auto* g : src) g->fillRandom(rng);
    for (auto* g : dst) g->fillRandom(rng);
    // A share of grey pixels, ties and zero saturation.
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) switch (rng() % 6) {
          case 0: at(src, in, x, y, 1) = at(src, in, x, y, 2) = at(src, in, x, y, 0); break;
          case 1: at(src, in, x, y, 2) = at(src, in, x, y, 1); break;
          case 2: at(src, in, x, y, 2) = 0; break;
          default: break;
        }
  }
  bool guardsIntact() const {
    for (auto* g : dst)
      if (!g->guardsIntact()) return false;
    return true;
  }
};

// The bytes a call must give: the 8u main-loop forms over the first
// (width & ~3) pixels of each row, the tail forms after; alpha copied where
// the destination has it, kept (AC4).
std::array<int, 3> expected(const Fn& f, int c0, int c1, int c2, bool mainLoop) {
  Lum8u o[3];
  if (f.forward) {
    (mainLoop ? rgbToHls8uBlock : rgbToHls8uTail)(c2, c1, c0, o);
    return {o[0], o[1], o[2]};
  }
  (mainLoop ? hlsToRgb8uBlock : hlsToRgb8uTail)(c0, c1, c2, o);
  return {o[2], o[1], o[0]};
}
void expectScalarForms(const Fn& f, Call& s, const std::vector<std::vector<uint8_t>>& dstBefore,
                       int w, int h) {
  const int blockEnd = w & ~3;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) {
      const std::array<int, 3> want =
          expected(f, Call::at(s.src, s.in, x, y, 0), Call::at(s.src, s.in, x, y, 1),
                   Call::at(s.src, s.in, x, y, 2), x < blockEnd);
      for (int c = 0; c < 3; ++c)
        ASSERT_EQ(Call::at(s.dst, s.out, x, y, c), want[c])
            << f.name << " w=" << w << " " << lumtest::where(x, y, c);
      if (s.out == Layout::AC4) {
        ASSERT_EQ(Call::at(s.dst, s.out, x, y, 3), dstBefore[0][(y * w + x) * 4 + 3])
            << f.name << " alpha changed w=" << w << " " << lumtest::where(x, y, 3);
      } else if (hasAlpha(s.out)) {
        ASSERT_EQ(Call::at(s.dst, s.out, x, y, 3), Call::at(s.src, s.in, x, y, 3))
            << f.name << " alpha not copied w=" << w << " " << lumtest::where(x, y, 3);
      }
    }
}
std::vector<std::vector<uint8_t>> regions(const Images& v) {
  std::vector<std::vector<uint8_t>> r;
  for (auto* g : v) r.push_back(g->regionBytes());
  return r;
}

class HlsPlane : public ::testing::TestWithParam<Fn> {};

// The widths take the destination through every alignment: the AC4R kernel
// switches between its 64-bit read-modify-write loop and its piecewise one
// by the address.
TEST_P(HlsPlane, KernelsMatchScalarFormsAtEveryWidth) {
  const Fn& f = GetParam();
  std::mt19937 rng(77);
  std::vector<int> widths = lumtest::widthsUpTo(70);
  for (int w : {95, 96, 97, 127, 128, 129, 1001}) widths.push_back(w);
  for (int w : widths) {
    const int h = 1 + (w % 3);
    Call s(f, w, h, w % 16, (w * 7) % 19);
    s.fillRandom(rng, w, h);
    const auto before = regions(s.dst);
    ASSERT_EQ(s.run(f, LumSize{w, h}), LumOk);
    expectScalarForms(f, s, before, w, h);
    ASSERT_TRUE(s.guardsIntact()) << f.name << " w=" << w;
  }
}

INSTANTIATE_TEST_SUITE_P(AllThirteen, HlsPlane, ::testing::ValuesIn(allFunctions()),
                         [](const ::testing::TestParamInfo<Fn>& i) { return i.param.name; });

// lumiBGRToHLS_8u_C3P3R on B and R swapped gives the numbers of
// lumiRGBToHLS_8u_C3R wherever both take the same path: both main loops
// (below width & ~7) or both tails (from width & ~3); the pixels between are
// in this family's main loop and in that one's tail, and may differ by one.
TEST(HlsPlaneAgreement, BgrPlanesMatchRgbWhereThePathsAgree) {
  std::mt19937 rng(29);
  int differInBetween = 0;
  for (int w = 1; w <= 40; ++w)
    for (int rep = 0; rep < 40; ++rep) {
      std::vector<Lum8u> rgb(3 * w), bgr(3 * w), hls(3 * w), h(w), l(w), s(w);
      for (auto& v : rgb) v = static_cast<Lum8u>(rng());
      for (int x = 0; x < w; ++x) {
        bgr[3 * x] = rgb[3 * x + 2];
        bgr[3 * x + 1] = rgb[3 * x + 1];
        bgr[3 * x + 2] = rgb[3 * x];
      }
      Lum8u* planes[3] = {h.data(), l.data(), s.data()};
      ASSERT_EQ(lumiRGBToHLS_8u_C3R(rgb.data(), 3 * w, hls.data(), 3 * w, LumSize{w, 1}), LumOk);
      ASSERT_EQ(lumiBGRToHLS_8u_C3P3R(bgr.data(), 3 * w, planes, w, LumSize{w, 1}), LumOk);
      for (int x = 0; x < w; ++x) {
        const bool same = x < (w & ~7) || x >= (w & ~3);
        const int dh = std::abs(hls[3 * x] - h[x]), dl = std::abs(hls[3 * x + 1] - l[x]),
                  ds = std::abs(hls[3 * x + 2] - s[x]);
        if (same) {
          ASSERT_EQ(dh + dl + ds, 0) << "w=" << w << " x=" << x;
        } else {
          ASSERT_EQ(dl, 0);
          ASSERT_LE(dh, 1);
          ASSERT_LE(ds, 1);
          differInBetween += dh + ds > 0;
        }
      }
    }
  EXPECT_GT(differInBetween, 0);
}

// Grey: H = S = 0, L = the level, in every forward layout; S = 0 in the
// inverse gives B = G = R = L.  Main loop and tail (width 7).
TEST(HlsPlaneAgreement, GreyInEveryLayout) {
  for (const Fn& f : allFunctions()) {
    const int w = 7;
    Call s(f, w, 2, 0, 0);
    for (int y = 0; y < 2; ++y)
      for (int x = 0; x < w; ++x) {
        const int level = 37 * (x + w * y) % 256;
        for (int c = 0; c < 3; ++c) Call::at(s.src, s.in, x, y, c) = static_cast<uint8_t>(level);
        if (!f.forward) {
          Call::at(s.src, s.in, x, y, 0) = static_cast<uint8_t>(x * 40);
          Call::at(s.src, s.in, x, y, 2) = 0;
        }
      }
    ASSERT_EQ(s.run(f, LumSize{w, 2}), LumOk);
    for (int y = 0; y < 2; ++y)
      for (int x = 0; x < w; ++x) {
        const int level = 37 * (x + w * y) % 256;
        const std::array<int, 3> want =
            f.forward ? std::array<int, 3>{0, level, 0} : std::array<int, 3>{level, level, level};
        for (int c = 0; c < 3; ++c)
          EXPECT_EQ(Call::at(s.dst, s.out, x, y, c), want[c]) << f.name << lumtest::where(x, y, c);
      }
  }
}

}  // namespace
