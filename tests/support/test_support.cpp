#include "test_support.h"

#include <gtest/gtest.h>

#include <sstream>

#include "lum_table.h"

namespace lumtest {

GuardedImage::GuardedImage(int rowBytes, int height, int pad, int misalign)
    : rowBytes_(rowBytes), height_(height), step_(rowBytes + pad) {
  // 64 guard bytes before the region, moved so that the region starts
  // `misalign` bytes past a 16-byte boundary of the vector's storage.
  size_t total = 64 + 16 + static_cast<size_t>(step_) * (height > 0 ? height : 0) + 64;
  buf_.resize(total);
  for (size_t i = 0; i < total; ++i) buf_[i] = pattern(i);
  uintptr_t base = reinterpret_cast<uintptr_t>(buf_.data());
  size_t lead = 64;
  while (((base + lead) & 15u) != static_cast<uintptr_t>(misalign & 15)) ++lead;
  lead_ = lead;
}

bool GuardedImage::inRegion(size_t i) const {
  if (i < lead_) return false;
  size_t off = i - lead_;
  size_t y = off / static_cast<size_t>(step_);
  if (y >= static_cast<size_t>(height_)) return false;
  return off - y * static_cast<size_t>(step_) < static_cast<size_t>(rowBytes_);
}

void GuardedImage::fillRandom(std::mt19937& rng) {
  for (int y = 0; y < height_; ++y)
    for (int x = 0; x < rowBytes_; ++x) row(y)[x] = static_cast<uint8_t>(rng() >> 24);
}

void GuardedImage::fillExtremes(std::mt19937& rng) {
  for (int y = 0; y < height_; ++y)
    for (int x = 0; x < rowBytes_; ++x) row(y)[x] = (rng() >> 9) & 1 ? 255 : 0;
}

void GuardedImage::fill(uint8_t v) {
  for (int y = 0; y < height_; ++y) memset(row(y), v, static_cast<size_t>(rowBytes_));
}

bool GuardedImage::guardsIntact() const {
  for (size_t i = 0; i < buf_.size(); ++i)
    if (!inRegion(i) && buf_[i] != pattern(i)) return false;
  return true;
}

std::vector<uint8_t> GuardedImage::regionBytes() const {
  std::vector<uint8_t> out;
  out.reserve(static_cast<size_t>(rowBytes_) * height_);
  for (int y = 0; y < height_; ++y) out.insert(out.end(), row(y), row(y) + rowBytes_);
  return out;
}

std::vector<int> widthsUpTo(int maxWidth) {
  std::vector<int> w;
  for (int i = 1; i <= maxWidth; ++i) w.push_back(i);
  return w;
}

std::string where(int x, int y, int c) {
  std::ostringstream s;
  s << "x=" << x << " y=" << y << " c=" << c;
  return s.str();
}

std::vector<lum::Isa> isaLevels() {
  std::vector<lum::Isa> levels;
  for (int l = lum::kIsaSse2; l <= lum::processorIsa(); ++l) levels.push_back(static_cast<lum::Isa>(l));
  return levels;
}

const char* isaName(lum::Isa level) {
  switch (level) {
    case lum::kIsaSse2: return "sse2";
    case lum::kIsaSsse3: return "ssse3";
    case lum::kIsaAvx2: return "avx2";
    default: return "avx512";
  }
}

LumStatus callTable(const std::string& name, const std::vector<GuardedImage*>& src,
                    const std::vector<GuardedImage*>& dst, LumSize roi, unsigned fill) {
  std::vector<Plane> s, d;
  for (auto* g : src) s.push_back({g->data(), g->step()});
  for (auto* g : dst) d.push_back({g->data(), g->step()});
  return callTable(name, s, d, roi, fill);
}

LumStatus callTable(const std::string& name, const std::vector<Plane>& src, const std::vector<Plane>& dst,
                    LumSize roi, unsigned fill) {
  lumtable::Args a;
  for (size_t p = 0; p < src.size(); ++p) a.src[p] = src[p].data, a.srcSteps[p] = src[p].step;
  for (size_t p = 0; p < dst.size(); ++p) a.dst[p] = dst[p].data, a.dstSteps[p] = dst[p].step;
  a.roi = roi;
  a.fill = fill;
  const lumtable::Entry* e = lumtable::find(name.c_str());
  EXPECT_NE(e, nullptr) << name;
  return e ? e->call(a) : LumErrNullPtr;
}

namespace px444 {

namespace {
// Guarded images of one call (pixel order: one image; planes: three).
struct CallImages {
  std::vector<std::unique_ptr<GuardedImage>> own;
  std::vector<GuardedImage*> src, dst;
  const Fn& f;
  CallImages(const Fn& fn, int w, int h, int misalign, int pad) : f(fn) {
    for (int side = 0; side < 2; ++side) {
      const Layout l = side ? f.out : f.in;
      for (int p = 0; p < (l == Layout::P3 ? 3 : 1); ++p) {
        own.emplace_back(new GuardedImage(w * (l == Layout::P3 ? 1 : l == Layout::AC4 ? 4 : 3), h, pad,
                                          (misalign + 7 * side + 5 * p) & 15));
        (side ? dst : src).push_back(own.back().get());
      }
    }
  }
  uint8_t& at(bool dstSide, int x, int y, int c) {
    const Layout l = dstSide ? f.out : f.in;
    std::vector<GuardedImage*>& v = dstSide ? dst : src;
    return l == Layout::P3 ? v[c]->row(y)[x] : v[0]->row(y)[(l == Layout::AC4 ? 4 : 3) * x + c];
  }
  LumStatus run(LumSize roi) {
    const size_t u = f.name.find('_');
    return callTable("lumi" + f.name.substr(0, u) + "_8u" + f.name.substr(u), src, dst, roi);
  }
};
}  // namespace

void expectScalarFormsAtWidths(const Fn& f, const std::vector<int>& widths, bool everyLevel) {
  const std::vector<lum::Isa> levels = everyLevel ? isaLevels() : std::vector<lum::Isa>{lum::kIsaSse2};
  for (lum::Isa level : levels) {
    const IsaCap cap(level);
    std::mt19937 rng(4321);
    for (int w : widths) {
      const int h = 1 + (w % 3), blockEnd = f.block ? w & ~(f.block - 1) : 0;
      CallImages s(f, w, h, w % 16, (w * 7) % 19);
      for (auto* g : s.src) g->fillRandom(rng);
      ASSERT_EQ(s.run(LumSize{w, h}), LumOk);
      for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
          const int a = s.at(false, x, y, 0), b = s.at(false, x, y, 1), c = s.at(false, x, y, 2);
          const Pix want = x < blockEnd ? f.blockFn(a, b, c) : f.tailFn(a, b, c);
          for (int k = 0; k < 3; ++k)
            ASSERT_EQ(s.at(true, x, y, k), want[k]) << f.name << " w=" << w << " " << where(x, y, k)
                                                    << " in=" << a << "," << b << "," << c << " at "
                                                    << isaName(level);
        }
    }
  }
}

Pix convertOne(const Fn& f, bool inBlock, Pix in) {
  const int width = inBlock ? 16 : 1;
  CallImages s(f, width, 1, 0, 0);
  for (int x = 0; x < width; ++x)
    for (int k = 0; k < 3; ++k) s.at(false, x, 0, k) = static_cast<uint8_t>(in[k]);
  EXPECT_EQ(s.run(LumSize{width, 1}), LumOk) << f.name;
  return {s.at(true, 0, 0, 0), s.at(true, 0, 0, 1), s.at(true, 0, 0, 2)};
}

Pix largestDifference(const PixFn& p, const PixFn& q) {
  Pix seen{0, 0, 0};
  for (int a = 0; a < 256; ++a)
    for (int b = 0; b < 256; b += 3)
      for (int c = 0; c < 256; c += 2) {
        const Pix x = p(a, b, c), y = q(a, b, c);
        for (int k = 0; k < 3; ++k) seen[k] = std::max(seen[k], std::abs(x[k] - y[k]));
      }
  return seen;
}

}  // namespace px444

}  // namespace lumtest
