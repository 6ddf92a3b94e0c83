// RGB and YUV 4:2:2 and 4:2:0: every public function against a model built
// from the scalar forms and the rules for where each formula holds
// (pairs, cells, odd last pixels, block boundaries counted from each row's
// start, the whole-image path of the forms without steps), at every width
// from 1 to 70 and some wide ones, odd heights, at every instruction-set
// level; worked values and the documented edge cases.  Guards, statuses and
// check order: test_generic.
#include <gtest/gtest.h>

#include <array>
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

Model mRGBToYUV422_C3C2() {
  return [](const Bufs& s, Bufs& d, int w, int h) {
    for (int y = 0; y < h; ++y) modelRGBToYUV422_C3C2(s[0].row(y), d[0].row(y), w);
  };
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
Model mYUV422ToRGB_C2C3() {
  return [](const Bufs& s, Bufs& d, int w, int h) {
    for (int y = 0; y < h; ++y) modelYUV422ToRGB_C2C3(s[0].row(y), d[0].row(y), w);
  };
}
Model mYUV422ToRGB(Inv422 kind, bool noSteps) {
  return [kind, noSteps](const Bufs& s, Bufs& d, int w, int h) {
    rows422(w, h, noSteps, [&](int y, int off, int n) {
      const uint8_t *Y = s[0].row(y) + off, *U = s[1].row(y) + off / 2, *V = s[2].row(y) + off / 2;
      modelYUV422ToRGB(Y, U, V, n, kind, [&](int x, const uint8_t rgb[3]) {
        if (kind == Inv422::P3) {
          for (int k = 0; k < 3; ++k) d[k].row(y)[off + x] = rgb[k];
        } else {
          const int bpp = kind == Inv422::P3AC4 ? 4 : 3;
          uint8_t* q = d[0].row(y) + bpp * (off + x);
          q[0] = rgb[0], q[1] = rgb[1], q[2] = rgb[2];
          if (bpp == 4) q[3] = 0;
        }
      });
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
enum class Out420 { C3, AC4, P3 };
Model mYUV420ToRGB(Out420 out) {
  return [out](const Bufs& s, Bufs& d, int w, int h) {
    for (int j = 0; j < h / 2; ++j)
      modelYUV420ToRGB(s[0].row(2 * j), s[0].row(2 * j + 1), s[1].row(j), s[2].row(j), w / 2,
                       out == Out420::AC4 ? Inv420::AC4 : Inv420::I1,
                       [&](int r, int x, const uint8_t rgb[3]) {
                         if (out == Out420::P3) {
                           for (int k = 0; k < 3; ++k) d[k].row(2 * j + r)[x] = rgb[k];
                           return;
                         }
                         const int bpp = out == Out420::AC4 ? 4 : 3;
                         uint8_t* q = d[0].row(2 * j + r) + bpp * x;
                         q[0] = rgb[0], q[1] = rgb[1], q[2] = rgb[2];
                         if (bpp == 4) q[3] = 0;
                       });
  };
}

// ---------------------------------------------------------------------------
// The twenty functions.

using Imgs = std::vector<GuardedImage*>;
struct Op {
  std::string name;
  std::function<std::vector<Dim>(int, int)> src, dst;
  bool noSteps;   // packed images (no padding between rows)
  bool is420;     // LumWarnOddSize for odd sizes
  std::function<LumStatus(Imgs&, Imgs&, LumSize)> call;
  Model model;
};
void PrintTo(const Op& o, std::ostream* os) { *os << o.name; }

struct Ptrs {
  const Lum8u* s[3];
  Lum8u* d[3];
  int ss[3], ds[3];
  Ptrs(Imgs& si, Imgs& di) {
    for (size_t i = 0; i < 3; ++i) {
      s[i] = i < si.size() ? si[i]->data() : nullptr;
      ss[i] = i < si.size() ? si[i]->step() : 0;
      d[i] = i < di.size() ? di[i]->data() : nullptr;
      ds[i] = i < di.size() ? di[i]->step() : 0;
    }
  }
};

std::vector<Op> allOps() {
  return {
      {"RGBToYUV422_C3C2R", dimsC3, dimsC2, false, false,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiRGBToYUV422_8u_C3C2R(p.s[0], p.ss[0], p.d[0], p.ds[0], r); },
       mRGBToYUV422_C3C2()},
      {"RGBToYUV422_C3P3R", dimsC3, dims422, false, false,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiRGBToYUV422_8u_C3P3R(p.s[0], p.ss[0], p.d, p.ds, r); },
       mRGBToYUV422_C3P3(false)},
      {"RGBToYUV422_P3R", dimsP3, dims422, false, false,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiRGBToYUV422_8u_P3R(p.s, p.ss[0], p.d, p.ds, r); },
       mRGBToYUV422_P3(false)},
      {"RGBToYUV422_C3P3", dimsC3, dims422, true, false,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiRGBToYUV422_8u_C3P3(p.s[0], p.d, r); },
       mRGBToYUV422_C3P3(true)},
      {"RGBToYUV422_P3", dimsP3, dims422, true, false,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiRGBToYUV422_8u_P3(p.s, p.d, r); },
       mRGBToYUV422_P3(true)},
      {"YUV422ToRGB_C2C3R", dimsC2, dimsC3, false, false,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiYUV422ToRGB_8u_C2C3R(p.s[0], p.ss[0], p.d[0], p.ds[0], r); },
       mYUV422ToRGB_C2C3()},
      {"YUV422ToRGB_P3C3R", dims422, dimsC3, false, false,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiYUV422ToRGB_8u_P3C3R(p.s, p.ss, p.d[0], p.ds[0], r); },
       mYUV422ToRGB(Inv422::P3C3, false)},
      {"YUV422ToRGB_P3R", dims422, dimsP3, false, false,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiYUV422ToRGB_8u_P3R(p.s, p.ss, p.d, p.ds[0], r); },
       mYUV422ToRGB(Inv422::P3, false)},
      {"YUV422ToRGB_P3AC4R", dims422, dimsAC4, false, false,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiYUV422ToRGB_8u_P3AC4R(p.s, p.ss, p.d[0], p.ds[0], r); },
       mYUV422ToRGB(Inv422::P3AC4, false)},
      {"YUV422ToRGB_P3C3", dims422, dimsC3, true, false,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiYUV422ToRGB_8u_P3C3(p.s, p.d[0], r); },
       mYUV422ToRGB(Inv422::P3C3, true)},
      {"YUV422ToRGB_P3", dims422, dimsP3, true, false,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiYUV422ToRGB_8u_P3(p.s, p.d, r); },
       mYUV422ToRGB(Inv422::P3, true)},
      {"RGBToYUV420_C3P3R", dimsC3, dims420, false, true,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiRGBToYUV420_8u_C3P3R(p.s[0], p.ss[0], p.d, p.ds, r); },
       mRGBToYUV420(Fwd420::C3P3)},
      {"RGBToYUV420_P3R", dimsP3, dims420, false, true,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiRGBToYUV420_8u_P3R(p.s, p.ss, p.d, p.ds, r); },
       mRGBToYUV420(Fwd420::P3)},
      {"RGBToYUV420_C3P3", dimsC3, dims420, true, true,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiRGBToYUV420_8u_C3P3(p.s[0], p.d, r); },
       mRGBToYUV420(Fwd420::C3P3)},
      {"RGBToYUV420_P3", dimsP3, dims420, true, true,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiRGBToYUV420_8u_P3(p.s, p.d, r); },
       mRGBToYUV420(Fwd420::P3)},
      {"YUV420ToRGB_P3C3R", dims420, dimsC3, false, true,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiYUV420ToRGB_8u_P3C3R(p.s, p.ss, p.d[0], p.ds[0], r); },
       mYUV420ToRGB(Out420::C3)},
      {"YUV420ToRGB_P3R", dims420, dimsP3, false, true,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiYUV420ToRGB_8u_P3R(p.s, p.ss, p.d, p.ds, r); },
       mYUV420ToRGB(Out420::P3)},
      {"YUV420ToRGB_P3AC4R", dims420, dimsAC4, false, true,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiYUV420ToRGB_8u_P3AC4R(p.s, p.ss, p.d[0], p.ds[0], r); },
       mYUV420ToRGB(Out420::AC4)},
      {"YUV420ToRGB_P3C3", dims420, dimsC3, true, true,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiYUV420ToRGB_8u_P3C3(p.s, p.d[0], r); },
       mYUV420ToRGB(Out420::C3)},
      {"YUV420ToRGB_P3", dims420, dimsP3, true, true,
       [](Imgs& s, Imgs& d, LumSize r) { Ptrs p(s, d); return lumiYUV420ToRGB_8u_P3(p.s, p.d, r); },
       mYUV420ToRGB(Out420::P3)},
  };
}

// Guarded images of an op at one size; with the forms without steps the rows
// are packed (no padding), so that the guards stand around the whole plane.
struct Case {
  std::vector<std::unique_ptr<GuardedImage>> own;
  Imgs src, dst;
  Case(const Op& op, int w, int h, int misalign, int pad) {
    auto make = [&](const std::vector<Dim>& dims, Imgs& v, int mis) {
      for (size_t i = 0; i < dims.size(); ++i) {
        // (A packed plane of no bytes a row still gets a step of 1, which
        // the guard bookkeeping needs; nothing is written there.)
        own.push_back(std::make_unique<GuardedImage>(dims[i].rowBytes, dims[i].rows,
                                                     op.noSteps ? (dims[i].rowBytes == 0 ? 1 : 0)
                                                                : dims[i].rowBytes == dims[0].rowBytes
                                                                      ? pad
                                                                      : pad + 3,
                                                     (mis + 5 * static_cast<int>(i)) & 15));
        v.push_back(own.back().get());
      }
    };
    make(op.src(w, h), src, misalign);
    make(op.dst(w, h), dst, misalign + 7);
  }
  static Bufs toBufs(const Imgs& v) {
    Bufs out;
    for (auto* g : v) out.push_back(Buf{g->rowBytes(), g->height(), g->regionBytes()});
    return out;
  }
};

// Runs op at w x h on random content; checks the status and every
// destination byte against the model (bytes outside the converted cells keep
// what they held).
void runAndCompare(const Op& op, int w, int h, std::mt19937& rng) {
  Case c(op, w, h, (w + h) % 16, (w * 7) % 19);
  for (auto* g : c.src) g->fillRandom(rng);
  for (auto* g : c.dst) g->fillRandom(rng);
  const Bufs s = Case::toBufs(c.src);
  Bufs want = Case::toBufs(c.dst);
  op.model(s, want, w, h);
  const LumStatus expected = op.is420 && ((w | h) & 1) ? LumWarnOddSize : LumOk;
  ASSERT_EQ(op.call(c.src, c.dst, LumSize{w, h}), expected) << op.name << " " << w << "x" << h;
  for (size_t i = 0; i < c.dst.size(); ++i) {
    const std::vector<uint8_t> got = c.dst[i]->regionBytes();
    const int rb = want[i].rowBytes;
    for (size_t k = 0; k < got.size(); ++k)
      ASSERT_EQ(got[k], want[i].b[k]) << op.name << " " << w << "x" << h << " plane " << i
                                      << " row " << k / rb << " byte " << k % rb;
  }
}

class YuvSub : public ::testing::TestWithParam<Op> {};

// Widths 1..70 cross every block boundary (16 pixels, 8 cells, 8 then 4
// pixels; the AVX2 rounds of 32 pixels or 16 cells) with odd and even widths
// and heights; wide rows run many rounds.  Every level.
TEST_P(YuvSub, MatchesModelAtEveryWidthAndLevel) {
  const Op& op = GetParam();
  for (lum::Isa level : lumtest::isaLevels()) {
    const lumtest::IsaCap cap(level);
    SCOPED_TRACE(lumtest::isaName(level));
    std::mt19937 rng(2024);
    for (int w = 1; w <= 70; ++w) runAndCompare(op, w, 1 + (w % 5), rng);
    for (int w : {95, 96, 97, 127, 128, 130, 1001, 1922}) runAndCompare(op, w, 2 + (w % 3), rng);
  }
}

// The forms without steps around the whole-image threshold: 255, 256 and
// 257 pixels, odd and even widths.
TEST_P(YuvSub, WholeImageThreshold) {
  const Op& op = GetParam();
  const LumSize sizes[] = {{16, 15}, {16, 16}, {16, 17}, {17, 16}, {2, 128}, {2, 127},
                           {30, 9},  {34, 8},  {255, 1}, {256, 1}, {258, 1}, {6, 43}};
  for (lum::Isa level : lumtest::isaLevels()) {
    const lumtest::IsaCap cap(level);
    SCOPED_TRACE(lumtest::isaName(level));
    std::mt19937 rng(77);
    for (LumSize sz : sizes) runAndCompare(op, sz.width, sz.height, rng);
  }
}

INSTANTIATE_TEST_SUITE_P(AllTwenty, YuvSub, ::testing::ValuesIn(allOps()),
                         [](const ::testing::TestParamInfo<Op>& i) { return i.param.name; });

// ---------------------------------------------------------------------------
// Worked values and the documented edge cases.

TEST(YuvSubWorked, C3C2WidthOneWritesYAndUOnly) {
  GuardedImage src(3, 2, 5, 3), dst(2, 2, 7, 9);
  for (int y = 0; y < 2; ++y) memcpy(src.row(y), "\xff\x00\x00", 3);
  ASSERT_EQ(lumiRGBToYUV422_8u_C3C2R(src.data(), src.step(), dst.data(), dst.step(), {1, 2}), LumOk);
  EXPECT_TRUE(dst.guardsIntact());
  uint8_t y, u;
  lastC3C2(255, 0, 0, &y, &u);
  EXPECT_EQ(dst.row(1)[0], y);
  EXPECT_EQ(dst.row(1)[1], u);
  EXPECT_EQ(y, 76);  // red's luma, as in the 4:4:4 forms
}

TEST(YuvSubWorked, C2C3WidthOneUsesItsChromaByteAsUAndV) {
  const uint8_t src[2] = {100, 200};
  uint8_t dst[3 + 5];
  memset(dst, 0xEE, sizeof dst);
  ASSERT_EQ(lumiYUV422ToRGB_8u_C2C3R(src, 2, dst, 3, {1, 1}), LumOk);
  uint8_t want[3];
  i3(100, 200, 200, want);
  EXPECT_EQ(0, memcmp(dst, want, 3));
  EXPECT_EQ(dst[3], 0xEE);
}

TEST(YuvSubWorked, C2C3WidthThreeTakesVFromThePairBefore) {
  const uint8_t src[6] = {90, 60, 120, 220, 150, 30};  // Y0 U Y1 V Y2 U2
  uint8_t dst[9];
  ASSERT_EQ(lumiYUV422ToRGB_8u_C2C3R(src, 6, dst, 9, {3, 1}), LumOk);
  uint8_t want[3];
  i4(150, 30, 220, want);
  EXPECT_EQ(0, memcmp(dst + 6, want, 3));
}

TEST(YuvSubWorked, Rgb420OneByOneAndOneByNineWriteNothingAndWarn) {
  for (LumSize sz : {LumSize{1, 1}, LumSize{1, 9}}) {
    GuardedImage r(1, sz.height), g(1, sz.height), b(1, sz.height), y(1, sz.height), u(0, 0),
        v(0, 0);
    std::mt19937 rng(3);
    y.fillRandom(rng);
    const std::vector<uint8_t> ys = y.regionBytes();
    const Lum8u* s[3] = {r.data(), g.data(), b.data()};
    Lum8u* d[3] = {y.data(), u.data(), v.data()};
    const int ss[3] = {r.step(), g.step(), b.step()}, ds[3] = {y.step(), 1, 1};
    EXPECT_EQ(lumiRGBToYUV420_8u_P3R(s, ss, d, ds, sz), LumWarnOddSize);
    EXPECT_EQ(y.regionBytes(), ys);
    EXPECT_TRUE(y.guardsIntact() && u.guardsIntact() && v.guardsIntact());
  }
}

// Black gives 0, 128, 128 through every forward form; U = V = 128 gives grey
// through every inverse formula.
TEST(YuvSubWorked, BlackAndNeutralChroma) {
  const int zero[3] = {0, 0, 0};
  uint8_t y[2], u, v;
  pairT1(zero, zero, y, &u, &v);
  EXPECT_EQ(y[0], 0);
  EXPECT_EQ(u, 128);
  EXPECT_EQ(v, 128);
  pairT3(zero, zero, y, &u, &v);
  EXPECT_EQ(u, 128);
  EXPECT_EQ(v, 128);
  for (int Y = 0; Y < 256; ++Y) {
    uint8_t o[4][3];
    i1(Y, 128, 128, o[0]);
    i2(Y, 128, 128, o[1]);
    i3(Y, 128, 128, o[2]);
    i4(Y, 128, 128, o[3]);
    for (auto& p : o)
      for (int k = 0; k < 3; ++k) ASSERT_EQ(p[k], Y) << "Y=" << Y;
  }
}

// Both AC4 inverses write alpha 0 whatever the destination held.
TEST(YuvSubWorked, Ac4InversesZeroAlpha) {
  for (int w : {1, 3, 4, 8, 12, 17, 33}) {
    GuardedImage Y(w, 2), U((w + 1) / 2, 2), V((w + 1) / 2, 2), d(4 * w, 2);
    d.fill(0xFF);
    const Lum8u* s[3] = {Y.data(), U.data(), V.data()};
    const int ss[3] = {Y.step(), U.step(), V.step()};
    ASSERT_EQ(lumiYUV422ToRGB_8u_P3AC4R(s, ss, d.data(), d.step(), {w, 2}), LumOk);
    for (int x = 0; x < w; ++x) ASSERT_EQ(d.row(1)[4 * x + 3], 0) << "4:2:2 w=" << w;
    d.fill(0xFF);
    ASSERT_EQ(lumiYUV420ToRGB_8u_P3AC4R(s, ss, d.data(), d.step(), {w, 2}),
              w & 1 ? LumWarnOddSize : LumOk);
    for (int x = 0; x < (w & ~1); ++x) ASSERT_EQ(d.row(1)[4 * x + 3], 0) << "4:2:0 w=" << w;
  }
}

// At an even width the chroma of the pixel-order-to-planes form is that of
// the C2 form.
TEST(YuvSubWorked, C3P3ChromaEqualsC2Chroma) {
  std::mt19937 rng(5);
  for (int w = 2; w <= 66; w += 2) {
    GuardedImage src(3 * w, 3), c2(2 * w, 3), Y(w, 3), U(w / 2, 3), V(w / 2, 3);
    src.fillRandom(rng);
    Lum8u* d[3] = {Y.data(), U.data(), V.data()};
    const int ds[3] = {Y.step(), U.step(), V.step()};
    ASSERT_EQ(lumiRGBToYUV422_8u_C3C2R(src.data(), src.step(), c2.data(), c2.step(), {w, 3}), LumOk);
    ASSERT_EQ(lumiRGBToYUV422_8u_C3P3R(src.data(), src.step(), d, ds, {w, 3}), LumOk);
    for (int y = 0; y < 3; ++y)
      for (int k = 0; k < w / 2; ++k) {
        ASSERT_EQ(c2.row(y)[4 * k + 1], U.row(y)[k]) << "w=" << w;
        ASSERT_EQ(c2.row(y)[4 * k + 3], V.row(y)[k]) << "w=" << w;
        ASSERT_EQ(c2.row(y)[4 * k], Y.row(y)[2 * k]) << "w=" << w;
      }
  }
}

// The RGB planes of the 4:2:0 plane forms follow element 0 of their step
// array; the other elements are not used.
TEST(YuvSubSteps, RgbPlanesFollowTheFirstStep) {
  std::mt19937 rng(11);
  const int w = 20, h = 4;
  GuardedImage r(w, h), g(w, h), b(w, h), Y(w, h), U(w / 2, h / 2), V(w / 2, h / 2);
  for (auto* im : {&r, &g, &b}) im->fillRandom(rng);
  const Lum8u* s[3] = {r.data(), g.data(), b.data()};
  Lum8u* d[3] = {Y.data(), U.data(), V.data()};
  const int ds[3] = {Y.step(), U.step(), V.step()};
  const int good[3] = {r.step(), r.step(), r.step()}, odd[3] = {r.step(), 1, -7};
  ASSERT_EQ(lumiRGBToYUV420_8u_P3R(s, good, d, ds, {w, h}), LumOk);
  const std::vector<uint8_t> y1 = Y.regionBytes(), u1 = U.regionBytes();
  Y.fill(0), U.fill(0);
  ASSERT_EQ(lumiRGBToYUV420_8u_P3R(s, odd, d, ds, {w, h}), LumOk);
  EXPECT_EQ(Y.regionBytes(), y1);
  EXPECT_EQ(U.regionBytes(), u1);
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
