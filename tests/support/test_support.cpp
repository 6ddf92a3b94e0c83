#include "test_support.h"

#include <sstream>

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

}  // namespace lumtest
