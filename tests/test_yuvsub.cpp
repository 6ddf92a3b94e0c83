// RGB and YUV 4:2:2 and 4:2:0: every public function against a model built
// from the scalar forms and the rules for where each formula holds
// (pairs, cells, odd last pixels, block boundaries counted from each row's
// start, the whole-image path of the forms without steps), at every width
// from 1 to 70 and some wide ones, odd heights, at every instruction-set
// level; worked values and the documented edge cases.  Guards, statuses and
// check order: test_generic.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lumcc.h"
#include "test_support.h"
#include "video/pccyuv02.h"

using namespace lum::yuvsub;
using lumtest::GuardedImage;

namespace {

// ---------------------------------------------------------------------------
// Tight images for the model.
struct Buf {
  int rowBytes = 0, rows = 0;
  std::vector<uint8_t> b;
  uint8_t* row(int y) { return b.data() + static_cast<size_t>(y) * rowBytes; }
  const uint8_t* row(int y) const { return b.data() + static_cast<size_t>(y) * rowBytes; }
};
struct Dim {
  int rowBytes, rows;
};
using Bufs = std::vector<Buf>;

// Plane sets by layout.
std::vector<Dim> dimsC3(int w, int h) { return {{3 * w, h}}; }
std::vector<Dim> dimsAC4(int w, int h) { return {{4 * w, h}}; }
std::vector<Dim> dimsC2(int w, int h) { return {{2 * w, h}}; }
std::vector<Dim> dimsP3(int w, int h) { return {{w, h}, {w, h}, {w, h}}; }
std::vector<Dim> dims422(int w, int h) { return {{w, h}, {(w + 1) / 2, h}, {(w + 1) / 2, h}}; }
std::vector<Dim> dims420(int w, int h) { return {{w, h}, {w / 2, h / 2}, {w / 2, h / 2}}; }

// ---------------------------------------------------------------------------
// The model: one row (4:2:2) or row pair (4:2:0), by the table of which
// formula runs where.

void pix(const uint8_t* p, int out[3]) { out[0] = p[0], out[1] = p[1], out[2] = p[2]; }

void modelRGBToYUV422_C3C2(const uint8_t* s, uint8_t* d, int w) {
  int x = 0;
  for (; x + 1 < w; x += 2) {
    int a[3], b[3];
    pix(s + 3 * x, a);
    pix(s + 3 * x + 3, b);
    uint8_t y[2];
    pairT1(a, b, y, d + 2 * x + 1, d + 2 * x + 3);
    d[2 * x] = y[0], d[2 * x + 2] = y[1];
  }
  if (x < w) lastC3C2(s[3 * x], s[3 * x + 1], s[3 * x + 2], d + 2 * x, d + 2 * x + 1);
}
// Forward 4:2:2 into planes; `get` gives pixel x's R, G, B.
template <class Get>
void modelRGBToYUV422_P3out(Get get, uint8_t* y, uint8_t* u, uint8_t* v, int w, bool t3Pairs) {
  int x = 0;
  for (; x + 1 < w; x += 2) {
    int a[3], b[3];
    get(x, a);
    get(x + 1, b);
    if (t3Pairs) pairT3(a, b, y + x, u + x / 2, v + x / 2);
    else pairT1(a, b, y + x, u + x / 2, v + x / 2);
  }
  if (x < w) {
    int a[3];
    get(x, a);
    if (t3Pairs) lastToP3(a[0], a[1], a[2], 0, 0, y + x, u + x / 2, v + x / 2);
    else lastToP3(a[0], a[1], a[2], 16383, 32767, y + x, u + x / 2, v + x / 2);
  }
}
void modelYUV422ToRGB_C2C3(const uint8_t* s, uint8_t* d, int w) {
  if (w == 1) return i3(s[0], s[1], s[1], d);
  int x = 0;
  for (; x + 1 < w; x += 2) {
    i1(s[2 * x], s[2 * x + 1], s[2 * x + 3], d + 3 * x);
    i1(s[2 * x + 2], s[2 * x + 1], s[2 * x + 3], d + 3 * x + 3);
  }
  if (x < w) i4(s[2 * x], s[2 * x + 1], s[2 * x - 1], d + 3 * x);
}
// Inverse 4:2:2 from planes; `put` stores pixel x's R, G, B.
enum class Inv422 { P3, P3C3, P3AC4 };
template <class Put>
void modelYUV422ToRGB(const uint8_t* y, const uint8_t* u, const uint8_t* v, int w, Inv422 kind,
                      Put put) {
  for (int x = 0; x < w; ++x) {
    uint8_t rgb[3] = {0, 0, 0};
    const int Y = y[x], U = u[x >> 1], V = v[x >> 1];
    const bool lastOdd = (w & 1) && x == w - 1;
    switch (kind) {
      case Inv422::P3: lastOdd ? i3(Y, U, V, rgb) : i1(Y, U, V, rgb); break;
      case Inv422::P3C3: x < (w & ~15) ? i1(Y, U, V, rgb) : i3(Y, U, V, rgb); break;
      case Inv422::P3AC4: x < (w & ~3) ? i2(Y, U, V, rgb) : i3(Y, U, V, rgb); break;
    }
    put(x, rgb);
  }
}
// Forward 4:2:0 on a row pair; get(r, x, rgb).
enum class Fwd420 { C3P3, P3 };
template <class Get>
void modelRGBToYUV420(Get get, uint8_t* y0, uint8_t* y1, uint8_t* u, uint8_t* v, int cells,
                      Fwd420 kind) {
  uint8_t* yr[2] = {y0, y1};
  for (int c = 0; c < cells; ++c) {
    int sumT = 0, sumB = 0, sumR = 0;
    for (int r = 0; r < 2; ++r)
      for (int x = 2 * c; x < 2 * c + 2; ++x) {
        int p[3];
        get(r, x, p);
        const int T = kind == Fwd420::P3 ? t3(p[0], p[1], p[2])
                      : c < (cells & ~7) ? t1(p[0], p[1], p[2])
                                         : t2(p[0], p[1], p[2]);
        yr[r][x] = yOfT(T);
        sumT += T;
        sumB += kind == Fwd420::P3 ? w10(p[2]) : p[2];
        sumR += kind == Fwd420::P3 ? w10(p[0]) : p[0];
      }
    const int sh = kind == Fwd420::P3 ? 3 : 1;
    cellChroma(sumB >> sh, sumR >> sh, sumT >> 2, u + c, v + c);
  }
}
// Inverse 4:2:0 on a row pair; put(r, x, rgb).
enum class Inv420 { I1, AC4 };
template <class Put>
void modelYUV420ToRGB(const uint8_t* y0, const uint8_t* y1, const uint8_t* u, const uint8_t* v,
                      int cells, Inv420 kind, Put put) {
  const uint8_t* yr[2] = {y0, y1};
  for (int c = 0; c < cells; ++c)
    for (int r = 0; r < 2; ++r)
      for (int x = 2 * c; x < 2 * c + 2; ++x) {
        uint8_t rgb[3];
        if (kind == Inv420::I1) i1(yr[r][x], u[c], v[c], rgb);
        else if (c < (cells & ~7)) i2(yr[r][x], u[c], v[c], rgb);
        else i3(yr[r][x], u[c], v[c], rgb, 32768);
        put(r, x, rgb);
      }
}

// ---------------------------------------------------------------------------
// Whole-image models of each public function over tight buffers.

using Model = std::function<void(const Bufs&, Bufs&, int, int)>;

// The 4:2:2 forms without steps: one row of n pixels in two kernel calls
// (n & ~7, then n & 7) when n >= 256 and the width is even; rows otherwise.
bool wholeImage(int w, int h) { return static_cast<long long>(w) * h >= 256 && !(w & 1); }
template <class RowFn>
void rows422(int w, int h, bool noSteps, RowFn rowFn) {
  if (noSteps && wholeImage(w, h)) {
    const int n = w * h, m = n & ~7;
    rowFn(0, 0, m);
    rowFn(0, m, n & 7);
    return;
  }
  for (int y = 0; y < h; ++y) rowFn(y, 0, w);
}

// A one-row model run on every row of a pixel-order image.
Model everyRow(void (*rowModel)(const uint8_t*, uint8_t*, int)) {
  return [rowModel](const Bufs& s, Bufs& d, int w, int h) {
    for (int y = 0; y < h; ++y) rowModel(s[0].row(y), d[0].row(y), w);
  };
}
// Stores pixel x of row y: in planes (bpp 1) or 3 or 4 bytes a pixel (alpha 0).
void put(Bufs& d, int bpp, int y, int x, const uint8_t rgb[3]) {
  uint8_t* q = bpp == 1 ? nullptr : d[0].row(y) + bpp * x;
  for (int k = 0; k < 3; ++k) (bpp == 1 ? d[k].row(y)[x] : q[k]) = rgb[k];
  if (bpp == 4) q[3] = 0;
}
Model mRGBToYUV422_C3P3(bool noSteps) {
  return [noSteps](const Bufs& s, Bufs& d, int w, int h) {
    rows422(w, h, noSteps, [&](int y, int off, int n) {
      const uint8_t* p = s[0].row(y) + 3 * off;
      modelRGBToYUV422_P3out([&](int x, int o[3]) { pix(p + 3 * x, o); }, d[0].row(y) + off,
                             d[1].row(y) + off / 2, d[2].row(y) + off / 2, n, false);
    });
  };
}
Model mRGBToYUV422_P3(bool noSteps) {
  return [noSteps](const Bufs& s, Bufs& d, int w, int h) {
    rows422(w, h, noSteps, [&](int y, int off, int n) {
      const uint8_t *r = s[0].row(y) + off, *g = s[1].row(y) + off, *b = s[2].row(y) + off;
      modelRGBToYUV422_P3out([&](int x, int o[3]) { o[0] = r[x], o[1] = g[x], o[2] = b[x]; },
                             d[0].row(y) + off, d[1].row(y) + off / 2, d[2].row(y) + off / 2, n,
                             true);
    });
  };
}
Model mYUV422ToRGB(Inv422 kind, bool noSteps) {
  return [kind, noSteps](const Bufs& s, Bufs& d, int w, int h) {
    rows422(w, h, noSteps, [&](int y, int off, int n) {
      const uint8_t *Y = s[0].row(y) + off, *U = s[1].row(y) + off / 2, *V = s[2].row(y) + off / 2;
      const int bpp = kind == Inv422::P3 ? 1 : kind == Inv422::P3AC4 ? 4 : 3;
      modelYUV422ToRGB(Y, U, V, n, kind, [&](int x, const uint8_t rgb[3]) { put(d, bpp, y, off + x, rgb); });
    });
  };
}
Model mRGBToYUV420(Fwd420 kind) {
  return [kind](const Bufs& s, Bufs& d, int w, int h) {
    for (int j = 0; j < h / 2; ++j) {
      auto get = [&](int r, int x, int o[3]) {
        if (kind == Fwd420::C3P3) return pix(s[0].row(2 * j + r) + 3 * x, o);
        for (int k = 0; k < 3; ++k) o[k] = s[k].row(2 * j + r)[x];
      };
      modelRGBToYUV420(get, d[0].row(2 * j), d[0].row(2 * j + 1), d[1].row(j), d[2].row(j), w / 2,
                       kind);
    }
  };
}
// bpp: 1 planes, 3 C3, 4 AC4 (the I2 block part).
Model mYUV420ToRGB(int bpp) {
  return [bpp](const Bufs& s, Bufs& d, int w, int h) {
    for (int j = 0; j < h / 2; ++j)
      modelYUV420ToRGB(s[0].row(2 * j), s[0].row(2 * j + 1), s[1].row(j), s[2].row(j), w / 2,
                       bpp == 4 ? Inv420::AC4 : Inv420::I1,
                       [&](int r, int x, const uint8_t rgb[3]) { put(d, bpp, 2 * j + r, x, rgb); });
  };
}

// ---------------------------------------------------------------------------
// The twenty functions, called through the function table.  The forms
// without steps (names without a final R) take packed images.
struct Op {
  std::string name;
  std::function<std::vector<Dim>(int, int)> src, dst;
  Model model;
  bool noSteps() const { return name.back() != 'R'; }
  bool is420() const { return name.find("420") != std::string::npos; }
};
void PrintTo(const Op& o, std::ostream* os) { *os << o.name; }

std::vector<Op> allOps() {
  return {
      {"RGBToYUV422_C3C2R", dimsC3, dimsC2, everyRow(modelRGBToYUV422_C3C2)},
      {"RGBToYUV422_C3P3R", dimsC3, dims422, mRGBToYUV422_C3P3(false)},
      {"RGBToYUV422_P3R", dimsP3, dims422, mRGBToYUV422_P3(false)},
      {"RGBToYUV422_C3P3", dimsC3, dims422, mRGBToYUV422_C3P3(true)},
      {"RGBToYUV422_P3", dimsP3, dims422, mRGBToYUV422_P3(true)},
      {"YUV422ToRGB_C2C3R", dimsC2, dimsC3, everyRow(modelYUV422ToRGB_C2C3)},
      {"YUV422ToRGB_P3C3R", dims422, dimsC3, mYUV422ToRGB(Inv422::P3C3, false)},
      {"YUV422ToRGB_P3R", dims422, dimsP3, mYUV422ToRGB(Inv422::P3, false)},
      {"YUV422ToRGB_P3AC4R", dims422, dimsAC4, mYUV422ToRGB(Inv422::P3AC4, false)},
      {"YUV422ToRGB_P3C3", dims422, dimsC3, mYUV422ToRGB(Inv422::P3C3, true)},
      {"YUV422ToRGB_P3", dims422, dimsP3, mYUV422ToRGB(Inv422::P3, true)},
      {"RGBToYUV420_C3P3R", dimsC3, dims420, mRGBToYUV420(Fwd420::C3P3)},
      {"RGBToYUV420_P3R", dimsP3, dims420, mRGBToYUV420(Fwd420::P3)},
      {"RGBToYUV420_C3P3", dimsC3, dims420, mRGBToYUV420(Fwd420::C3P3)},
      {"RGBToYUV420_P3", dimsP3, dims420, mRGBToYUV420(Fwd420::P3)},
      {"YUV420ToRGB_P3C3R", dims420, dimsC3, mYUV420ToRGB(3)},
      {"YUV420ToRGB_P3R", dims420, dimsP3, mYUV420ToRGB(1)},
      {"YUV420ToRGB_P3AC4R", dims420, dimsAC4, mYUV420ToRGB(4)},
      {"YUV420ToRGB_P3C3", dims420, dimsC3, mYUV420ToRGB(3)},
      {"YUV420ToRGB_P3", dims420, dimsP3, mYUV420ToRGB(1)},
  };
}

// Runs op at w x h on random content, rows padded and unaligned (packed with
// the forms without steps); checks the status and every destination byte
// against the model (bytes outside the converted cells keep what they held).
void runAndCompare(const Op& op, int w, int h, std::mt19937& rng) {
  std::vector<std::unique_ptr<GuardedImage>> own;
  auto make = [&](const std::vector<Dim>& dims, int mis) {
    std::vector<GuardedImage*> v;
    for (size_t i = 0; i < dims.size(); ++i) {
      // (A packed plane of no bytes a row still gets a step of 1.)
      const int pad = op.noSteps() ? (dims[i].rowBytes == 0 ? 1 : 0) : (w * 7) % 19 + (dims[i].rowBytes != dims[0].rowBytes ? 3 : 0);
      own.emplace_back(new GuardedImage(dims[i].rowBytes, dims[i].rows, pad, (mis + 5 * static_cast<int>(i)) & 15));
      own.back()->fillRandom(rng);
      v.push_back(own.back().get());
    }
    return v;
  };
  const std::vector<GuardedImage*> src = make(op.src(w, h), (w + h) % 16), dst = make(op.dst(w, h), (w + h + 7) % 16);
  auto bufs = [](const std::vector<GuardedImage*>& v) {
    Bufs out;
    for (auto* g : v) out.push_back(Buf{g->rowBytes(), g->height(), g->regionBytes()});
    return out;
  };
  Bufs want = bufs(dst);
  op.model(bufs(src), want, w, h);
  const std::string fn = "lumi" + op.name.substr(0, op.name.find('_')) + "_8u" + op.name.substr(op.name.find('_'));
  std::vector<lumtest::Plane> sp, dp;
  for (auto* g : src) sp.push_back({g->data(), g->step()});
  for (auto* g : dst) dp.push_back({g->data(), g->step()});
  // The RGB planes of the 4:2:0 plane form follow element 0 of the step
  // array; the other elements are not used.
  if (op.name == "RGBToYUV420_P3R") sp[1].step = 1, sp[2].step = -7;
  ASSERT_EQ(lumtest::callTable(fn, sp, dp, LumSize{w, h}), op.is420() && ((w | h) & 1) ? LumWarnOddSize : LumOk)
      << op.name << " " << w << "x" << h;
  for (size_t i = 0; i < dst.size(); ++i) {
    const std::vector<uint8_t> got = dst[i]->regionBytes();
    const int rb = want[i].rowBytes;
    for (size_t k = 0; k < got.size(); ++k)
      ASSERT_EQ(got[k], want[i].b[k]) << op.name << " " << w << "x" << h << " plane " << i << " row " << k / rb
                                      << " byte " << k % rb;
  }
}

class YuvSub : public ::testing::TestWithParam<Op> {};

// Widths 1..70 cross every block boundary (16 pixels, 8 cells, 8 then 4
// pixels; the AVX2 rounds of 32 pixels or 16 cells) with odd and even widths
// and heights; wide rows run many rounds; the forms without steps around the
// whole-image threshold (255, 256 and 257 pixels, odd and even widths).
// Every level.
TEST_P(YuvSub, MatchesModelAtEveryWidthAndLevel) {
  const Op& op = GetParam();
  std::vector<LumSize> sizes;
  for (int w = 1; w <= 70; ++w) sizes.push_back({w, 1 + (w % 5)});
  for (int w : {95, 96, 97, 127, 128, 130, 1001, 1922}) sizes.push_back({w, 2 + (w % 3)});
  for (LumSize sz : {LumSize{16, 15}, {16, 16}, {16, 17}, {17, 16}, {2, 128}, {2, 127}, {30, 9}, {34, 8},
                     {255, 1}, {256, 1}, {258, 1}, {6, 43}})
    sizes.push_back(sz);
  for (lum::Isa level : lumtest::isaLevels()) {
    const lumtest::IsaCap cap(level);
    SCOPED_TRACE(lumtest::isaName(level));
    std::mt19937 rng(2024);
    for (LumSize sz : sizes) runAndCompare(op, sz.width, sz.height, rng);
  }
}

INSTANTIATE_TEST_SUITE_P(AllTwenty, YuvSub, ::testing::ValuesIn(allOps()),
                         [](const ::testing::TestParamInfo<Op>& i) { return i.param.name; });

// ---------------------------------------------------------------------------
// Worked values and the documented edge cases.

// The scalar forms hold fixed values (taken from the library while the
// model sweep passed; the same on both targets): red's luma 76 in the odd
// last pixel, and an FNV-1a hash of every form over a grid of inputs (black
// and U = V = 128 among them), so that a coefficient changed in a scalar
// form (which the model shares) is seen.
TEST(YuvSubWorked, ScalarFormsHoldTheirFixedValues) {
  uint8_t y, u;
  lastC3C2(255, 0, 0, &y, &u);
  EXPECT_EQ(y, 76);
  uint32_t h = 2166136261u;
  auto mix = [&h](int v) { h = (h ^ static_cast<uint32_t>(v & 0xFFFF)) * 16777619u; };
  for (int a = 0; a < 256; a += 15)
    for (int b = 0; b < 256; b += 16)
      for (int c = 0; c < 256; c += 4) {
        const int p[3] = {a, b, c}, q[3] = {c, a, b};
        uint8_t o[4][3], yy[2], uu, vv;
        mix(t1(a, b, c)), mix(t2(a, b, c)), mix(t3(a, b, c)), mix(w10(a));
        pairT1(p, q, yy, &uu, &vv), mix(yy[0]), mix(yy[1]), mix(uu), mix(vv);
        pairT3(p, q, yy, &uu, &vv), mix(yy[0]), mix(yy[1]), mix(uu), mix(vv);
        lastC3C2(a, b, c, yy, &uu), mix(yy[0]), mix(uu);
        lastToP3(a, b, c, 16383, 32767, yy, &uu, &vv), mix(yy[0]), mix(uu), mix(vv);
        cellChroma(2 * a, 2 * c, b, &uu, &vv), mix(uu), mix(vv);
        i1(a, b, c, o[0]), i2(a, b, c, o[1]), i3(a, b, c, o[2], 32768), i4(a, b, c, o[3]);
        for (auto& px : o) mix(px[0]), mix(px[1]), mix(px[2]);
        i3(a, b, c, o[2]), mix(o[2][0]), mix(o[2][1]), mix(o[2][2]);
      }
  EXPECT_EQ(h, 0x5d325048u) << std::hex << h;
}

// The step arrays of the plane forms are among the pointers tested first.
TEST(YuvSubChecks, StepArraysAreCheckedAsPointers) {
  uint8_t buf[256] = {};
  const Lum8u* sOk[3] = {buf, buf + 64, buf + 96};
  Lum8u* dOk[3] = {buf + 128, buf + 160, buf + 192};
  const int st[3] = {16, 8, 8};
  EXPECT_EQ(lumiRGBToYUV420_8u_P3R(sOk, nullptr, dOk, st, {0, 2}), LumErrNullPtr);
  EXPECT_EQ(lumiRGBToYUV420_8u_P3R(sOk, st, dOk, nullptr, {0, 2}), LumErrNullPtr);
  EXPECT_EQ(lumiRGBToYUV420_8u_C3P3R(buf, 6, dOk, nullptr, {0, 2}), LumErrNullPtr);
  EXPECT_EQ(lumiYUV420ToRGB_8u_P3AC4R(sOk, nullptr, buf, 8, {0, 2}), LumErrNullPtr);
  EXPECT_EQ(lumiYUV422ToRGB_8u_P3R(sOk, nullptr, dOk, 6, {0, 2}), LumErrNullPtr);
}

}  // namespace
