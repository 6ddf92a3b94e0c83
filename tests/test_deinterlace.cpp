// Deinterlacing conversions: frames run as stacked slices and as a whole,
// against a reference built from the row-by-row table of which formula
// (block or scalar, which nesting, which rounding) writes which part of
// which row; the worked values (flat areas, the + 4 brightening, the two
// nestings of the first slice, height 2); the selector values; the two
// rows above a later slice; the interchanged chroma steps of the planar
// last slice.  Checks and guards of the whole-frame call: test_generic.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "lumcc.h"
#include "test_support.h"

using lumtest::GuardedImage;

namespace {

// ---------------------------------------------------------------------------
// Reference.  A row is written by a block formula over its first blockEnd
// samples and a scalar formula over the rest.
enum class B { None, Reg, Alt, Top, Bot };
enum class S { Reg, Top, Bot, Reg4, Top4, Bot4, MidAll };
int av(int a, int b) { return (a + b + 1) >> 1; }
int blockF(B f, int a, int b, int c) {
  switch (f) {
    case B::Reg: return av(av(a, b), av(b, c));
    case B::Alt: return av(b, av(a, c));
    case B::Top: return av(av(b, c), b);
    case B::Bot: return av(b, av(a, b));
    default: return -1;
  }
}
int scalarF(S f, int a, int b, int c, int x) {
  auto cl = [](int v) { return v > 255 ? 255 : v; };
  switch (f) {
    case S::Reg: return (a + 2 * b + c) >> 2;
    case S::Top: return (3 * b + c) >> 2;
    case S::Bot: return (a + 3 * b) >> 2;
    case S::Reg4: return cl((a + 2 * b + c + 4) >> 2);
    case S::Top4: return cl((3 * b + c + 4) >> 2);
    case S::Bot4: return cl((a + 3 * b + 4) >> 2);
    default: return (x & 1) ? cl((a + 2 * b + c + 4) >> 2) : cl(((((a + c) >> 1) + b) >> 1) + 1);
  }
}
struct RowRule {
  B b;
  S s;
  int blockEnd;
};

struct Nv12 {
  int W, H;
  std::vector<uint8_t> y, c;  // H rows of W; H/2 rows of W (pairs)
  int Y(int r, int x) const { return y[r * W + x]; }
  int C(int r, int j) const { return c[r * W + j]; }
};
Nv12 randomFrame(int W, int H, unsigned seed) {
  std::mt19937 rng(seed);
  Nv12 f{W, H, std::vector<uint8_t>(W * H), std::vector<uint8_t>(W * (H / 2))};
  for (auto& v : f.y) v = static_cast<uint8_t>(rng());
  for (auto& v : f.c) v = static_cast<uint8_t>(rng());
  return f;
}
int lumaRef(const Nv12& f, int y, int x, RowRule r) {
  const int a = f.Y(y > 0 ? y - 1 : y, x), b = f.Y(y, x), c = f.Y(y + 1 < f.H ? y + 1 : y, x);
  return x < r.blockEnd ? blockF(r.b, a, b, c) : scalarF(r.s, a, b, c, x);
}
// Chroma byte j of output chroma row r (rows r, r + 1; the last n-1, n-2).
int chromaRef(const Nv12& f, int r, int j, bool block) {
  const int n = f.H / 2, p = f.C(r, j), q = f.C(r + 1 < n ? r + 1 : n - 2, j);
  return block ? av(p, q) : (p + q) >> 1;
}

// The images of one frame.
struct Images {
  int W, H;
  std::unique_ptr<GuardedImage> y, c, d[3];
  Images(const Nv12& f, bool c2, bool aligned) : W(f.W), H(f.H) {
    const int pad = aligned ? 64 : 7, mis = aligned ? 0 : 3;
    y.reset(new GuardedImage(W, H, pad, mis));
    c.reset(new GuardedImage(W, H / 2, aligned ? 64 : 5, aligned ? 0 : 1));
    for (int r = 0; r < H; ++r) std::copy(&f.y[r * W], &f.y[r * W] + W, y->row(r));
    for (int r = 0; r < H / 2; ++r) std::copy(&f.c[r * W], &f.c[r * W] + W, c->row(r));
    if (c2) {
      d[0].reset(new GuardedImage(2 * W, H, aligned ? 64 : 9, mis));
    } else {
      d[0].reset(new GuardedImage(W, H, pad, mis));
      for (int p = 1; p < 3; ++p)
        d[p].reset(new GuardedImage(W / 2, H / 2, aligned ? 64 + (32 - (W / 2) % 32) % 32 : 11, aligned ? 0 : p));  // equal chroma steps
    }
    for (auto& im : d)
      if (im) im->fill(0xEE);
  }
  // Slice from row y0 of height h (YUY2 or planes, as the images were made).
  LumStatus run(int y0, int h, int layout) {
    if (!d[1])
      return lumiYCbCr420ToYCbCr422_Filter_8u_P2C2R(y->row(y0), y->step(), c->row(y0 / 2), c->step(),
                                                    d[0]->row(y0), d[0]->step(), {W, h}, layout);
    Lum8u* p[3] = {d[0]->row(y0), d[1]->row(y0 / 2), d[2]->row(y0 / 2)};
    const int s[3] = {d[0]->step(), d[1]->step(), d[2]->step()};
    return lumiYCbCr420ToYCrCb420_Filter_8u_P2P3R(y->row(y0), y->step(), c->row(y0 / 2), c->step(), p,
                                                  s, {W, h}, layout);
  }
  bool guards() const {
    for (auto& im : d)
      if (im && !im->guardsIntact()) return false;
    return true;
  }
};

// Row rules of a frame by output row, the chroma block end by chroma row.
struct Plan {
  std::vector<RowRule> luma;
  std::vector<int> chromaBlockEnd;  // in bytes of the pair row
};

// YUY2 output: the frame row by row, as the first/middle/last slices or the
// whole-frame routine write it.
Plan yuy2Plan(int W, int H, bool all) {
  Plan p;
  const int n = H / 2;
  for (int pair = 0; pair < n; ++pair) {
    RowRule r0, r1;
    int cb;
    if (all) {
      const bool edge = pair == 0 || pair == n - 1;
      r0 = edge ? RowRule{B::None, pair == 0 ? S::Top4 : S::Reg4, 0} : RowRule{B::Reg, S::MidAll, W & ~31};
      r1 = edge ? RowRule{B::None, pair == 0 ? S::Reg4 : S::Bot4, 0} : r0;
      cb = edge ? 0 : W & ~31;
    } else {  // the first and last slices' pairs take blocks of 8, the middle's of 32
      const bool first = pair == 0, last = !first && pair == n - 1;
      cb = first || last ? W & ~7 : W & ~31;
      r0 = first ? RowRule{B::Top, S::Top, cb} : RowRule{B::Reg, S::Reg, cb};
      r1 = last ? RowRule{B::Bot, S::Bot, cb} : RowRule{B::Reg, S::Reg, cb};
    }
    p.luma.push_back(r0);
    p.luma.push_back(r1);
    p.chromaBlockEnd.push_back(cb);
  }
  return p;
}

void expectYuy2(const Images& im, const Nv12& f, const Plan& p, bool all) {
  const int n = f.H / 2;
  for (int y = 0; y < f.H; ++y)
    for (int x = 0; x < f.W; ++x) {
      const uint8_t* row = im.d[0]->row(y);
      ASSERT_EQ(row[2 * x], lumaRef(f, y, x, p.luma[y])) << "luma y=" << y << " x=" << x;
      int want;
      if (all && f.H == 2) want = f.C(0, x);
      else if (all && y >= f.H - 2) want = (f.C(n - 1, x) + f.C(n - 2, x)) >> 1;
      else if (all && y < 2) want = (f.C(0, x) + f.C(1, x)) >> 1;
      else want = chromaRef(f, y / 2, x, x < p.chromaBlockEnd[y / 2]);
      ASSERT_EQ(row[2 * x + 1], want) << "chroma y=" << y << " x=" << x;
    }
}

void expectPlanes(const Images& im, const Nv12& f, const std::vector<RowRule>& luma,
                  const std::vector<int>& chromaBlockPairs) {
  for (int y = 0; y < f.H; ++y)
    for (int x = 0; x < f.W; ++x)
      ASSERT_EQ(im.d[0]->row(y)[x], lumaRef(f, y, x, luma[y])) << "luma y=" << y << " x=" << x;
  for (int r = 0; r < f.H / 2; ++r)
    for (int k = 0; k < f.W / 2; ++k) {
      const bool blk = k < chromaBlockPairs[r];
      ASSERT_EQ(im.d[1]->row(r)[k], chromaRef(f, r, 2 * k, blk)) << "Cb r=" << r << " k=" << k;
      ASSERT_EQ(im.d[2]->row(r)[k], chromaRef(f, r, 2 * k + 1, blk)) << "Cr r=" << r << " k=" << k;
    }
}

// Planar output of stacked slices (heights h[0], h[1], h[2]) or the frame.
void planesPlan(int W, const std::vector<int>& h, bool all, bool hdtv, std::vector<RowRule>& luma,
                std::vector<int>& chroma) {
  int H = 0;
  for (int v : h) H += v;
  const int lb = W & ~15, cbk = (W / 2) & ~15;
  luma.assign(H, RowRule{B::Reg, S::Reg, hdtv ? W : lb});
  chroma.assign(H / 2, hdtv ? W / 2 : cbk);
  if (all) {
    luma[0] = {B::None, S::Top, 0};
    luma[H - 1] = {B::None, S::Bot, 0};
    chroma[H / 2 - 1] = 0;
    return;
  }
  luma[0] = {B::Top, S::Top, hdtv ? W : lb};
  for (int y = 1; y <= h[0] - 3; ++y) luma[y].b = hdtv ? B::Reg : B::Alt;
  const int lastStart = H - h.back() - 2;  // the last slice writes from 2 rows above
  if (hdtv) {
    luma[H - 1] = {B::Bot, S::Bot, W};
    return;
  }
  for (int y = lastStart; y < H; ++y) luma[y] = {B::None, y == H - 1 ? S::Bot : S::Reg, 0};
  for (int r = lastStart / 2; r < H / 2; ++r) chroma[r] = 0;
}

// Stacked first, middle and last slices and the whole frame, YUY2 and
// planar, the planar aligned form on aligned frames.
TEST(Deinterlace, SlicesAndWholeFrameFollowTheRowTable) {
  struct Case {
    bool c2;
    int W;
    std::vector<int> hs;
    bool aligned;
  };
  std::vector<Case> cases;
  for (int W : {2, 6, 8, 14, 16, 30, 32, 34, 62, 64, 66, 98})
    for (const std::vector<int>& hs : {std::vector<int>{4, 2, 2}, {6, 4, 4}, {8, 6, 2}, {4, 8, 6}})
      for (bool c2 : {true, false}) cases.push_back({c2, W, hs, c2 && W % 4 == 0});
  for (bool aligned : {true, false}) cases.push_back({false, 64, {16, 16, 16}, aligned});
  cases.push_back({false, 128, {16, 32, 16}, true});
  for (const Case& c : cases) {
    const int H = c.hs[0] + c.hs[1] + c.hs[2];
    const Nv12 f = randomFrame(c.W, H, static_cast<unsigned>(c.W * 100 + H));
    Images s(f, c.c2, c.aligned), a(f, c.c2, !c.c2 && c.aligned);
    ASSERT_EQ(s.run(0, c.hs[0], lumSliceFirst), LumOk);
    ASSERT_EQ(s.run(c.hs[0], c.hs[1], lumSliceMiddle), LumOk);
    ASSERT_EQ(s.run(c.hs[0] + c.hs[1], c.hs[2], lumSliceLast), LumOk);
    ASSERT_EQ(a.run(0, H, lumSliceAll), LumOk);
    SCOPED_TRACE(::testing::Message() << (c.c2 ? "YUY2" : "planes") << " W=" << c.W << " H=" << H
                                      << (c.aligned ? " aligned" : ""));
    ASSERT_TRUE(s.guards() && a.guards());
    if (c.c2) {
      expectYuy2(s, f, yuy2Plan(c.W, H, false), false);
      expectYuy2(a, f, yuy2Plan(c.W, H, true), true);
      continue;
    }
    std::vector<RowRule> luma;
    std::vector<int> chroma;
    planesPlan(c.W, c.hs, false, c.aligned, luma, chroma);
    expectPlanes(s, f, luma, chroma);
    planesPlan(c.W, {H}, true, c.aligned, luma, chroma);
    expectPlanes(a, f, luma, chroma);
  }
}

// ---------------------------------------------------------------------------
// Worked values.
Nv12 flatFrame(int W, int H, int v) {
  return Nv12{W, H, std::vector<uint8_t>(W * H, static_cast<uint8_t>(v)),
              std::vector<uint8_t>(W * (H / 2), static_cast<uint8_t>(v))};
}

// A flat area stays flat, except in the whole-frame YUY2 routine, which
// gives v + 1 in rows 0, 1, h-2, h-1 and in the scalar columns of the
// others (clamped at 255), v in their block columns.
TEST(Deinterlace, FlatAreasAndTheWholeFrameBrightening) {
  const int W = 40, H = 10;  // mid-row block columns 0..31, scalar 32..39
  for (int v : {0, 77, 254, 255}) {
    const Nv12 f = flatFrame(W, H, v);
    Images a(f, true, false), p(f, false, false);
    a.run(0, H, lumSliceAll);
    p.run(0, H, lumSliceAll);
    for (int y = 0; y < H; ++y)
      for (int x = 0; x < W; ++x) {
        const bool plain = y >= 2 && y < H - 2 && x < 32;
        EXPECT_EQ(a.d[0]->row(y)[2 * x], plain ? v : std::min(v + 1, 255)) << v << " " << y << " " << x;
        EXPECT_EQ(a.d[0]->row(y)[2 * x + 1], v);
        EXPECT_EQ(p.d[0]->row(y)[x], v);
      }
  }
}

// Height 2, whole frame: (3a + b + 4) >> 2 and (a + 3b + 4) >> 2, chroma
// copied as it stands, in both forms.
TEST(Deinterlace, WholeFrameOfHeightTwo) {
  Nv12 f = flatFrame(4, 2, 0);
  f.y = {10, 20, 30, 255, 14, 20, 31, 255};
  f.c = {100, 201, 7, 9};
  Images a(f, true, false), p(f, false, false);
  a.run(0, 2, 23);  // every bit of 1, 4 and 16: the whole frame
  p.run(0, 2, lumSliceAll);
  const int r0[4] = {12, 21, 31, 255}, r1[4] = {14, 21, 31, 255};
  for (int x = 0; x < 4; ++x) {
    EXPECT_EQ(a.d[0]->row(0)[2 * x], r0[x]);
    EXPECT_EQ(a.d[0]->row(1)[2 * x], r1[x]);
    EXPECT_EQ(a.d[0]->row(1)[2 * x + 1], f.c[x]);
    EXPECT_EQ(p.d[0]->row(0)[x], r0[x]);
    EXPECT_EQ(p.d[0]->row(1)[x], r1[x]);
  }
  EXPECT_EQ(p.d[1]->row(0)[0], 100);
  EXPECT_EQ(p.d[2]->row(0)[0], 201);
  EXPECT_EQ(p.d[1]->row(0)[1], 7);
}

// Selector values other than 1, 4, 16 without all three bits write nothing;
// a planar first slice of height 2 writes nothing; a YUY2 one writes rows 0
// and 1.
TEST(Deinterlace, SelectorsThatWriteNothing) {
  const Nv12 f = randomFrame(16, 6, 1);
  for (int layout : {0, 2, 5, 17, 20, -1 & ~4}) {
    Images a(f, true, false), p(f, false, false);
    const auto before = a.d[0]->snapshot();
    std::vector<std::vector<uint8_t>> planes;
    for (int i = 0; i < 3; ++i) planes.push_back(p.d[i]->snapshot());
    EXPECT_EQ(a.run(0, 6, layout), LumOk);
    EXPECT_EQ(p.run(0, 6, layout), LumOk);
    EXPECT_TRUE(a.d[0]->equals(before)) << layout;
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(p.d[i]->equals(planes[i])) << layout;
  }
  Images p(f, false, false), a(f, true, false);
  const auto before = p.d[0]->snapshot();
  p.run(0, 2, lumSliceFirst);
  EXPECT_TRUE(p.d[0]->equals(before));
  a.run(0, 2, lumSliceFirst);
  EXPECT_NE(a.d[0]->row(1)[0], 0xEE);
  EXPECT_EQ(a.d[0]->row(2)[0], 0xEE);
}

// The planar last slice starts its chroma rows with the matching steps and
// advances plane 1 by dstStep[2], plane 2 by dstStep[1].
TEST(Deinterlace, PlanarLastSliceInterchangesTheChromaSteps) {
  const int W = 8, H = 8, n = 4;
  const Nv12 f = randomFrame(W, H, 9);
  Images im(f, false, false);
  std::vector<uint8_t> cb(400, 0xEE), cr(400, 0xEE);
  const int s1 = 10, s2 = 30;  // plane 1 rows 10 apart, plane 2 rows 30 apart
  Lum8u* p[3] = {im.d[0]->row(4), cb.data() + 2 * s1, cr.data() + 2 * s2};
  const int steps[3] = {im.d[0]->step(), s1, s2};
  ASSERT_EQ(lumiYCbCr420ToYCrCb420_Filter_8u_P2P3R(im.y->row(4), im.y->step(), im.c->row(2),
                                                   im.c->step(), p, steps, {W, 4}, lumSliceLast),
            LumOk);
  for (int r = 1; r < n; ++r)  // output chroma rows 1 .. 3 (slice rows -1 .. 1)
    for (int k = 0; k < W / 2; ++k) {
      const int j = r - 1;  // rows written from the moved-up start
      EXPECT_EQ(cb[s1 + j * s2 + k], chromaRef(f, r, 2 * k, false)) << r;
      EXPECT_EQ(cr[s2 + j * s1 + k], chromaRef(f, r, 2 * k + 1, false)) << r;
    }
}

}  // namespace
