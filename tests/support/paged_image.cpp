#include "paged_image.h"

#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

#include <stdexcept>

namespace lumtest {

PagedImage::PagedImage(int rowBytes, int height, int step, int lead)
    : rowBytes_(rowBytes), height_(height), step_(step), lead_(lead) {
  const size_t page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
  used_ = static_cast<size_t>(lead) +
          (height > 0 ? static_cast<size_t>(height - 1) * static_cast<size_t>(step) + rowBytes : 0);
  const size_t pages = (used_ + page - 1) / page + 1;
  mapBytes_ = (pages + 1) * page;
  void* m = mmap(nullptr, mapBytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (m == MAP_FAILED) throw std::runtime_error("mmap");
  map_ = static_cast<uint8_t*>(m);
  uint8_t* guard = map_ + pages * page;
  if (mprotect(guard, page, PROT_NONE) != 0) throw std::runtime_error("mprotect");
  base_ = guard - used_;
  first_ = base_ + lead;
  for (size_t i = 0; i < used_; ++i) base_[i] = pattern(i);
}

PagedImage::~PagedImage() {
  if (map_) munmap(map_, mapBytes_);
}

bool PagedImage::inRegion(size_t i) const {
  if (i < static_cast<size_t>(lead_)) return false;
  const size_t off = i - lead_;
  const size_t y = off / static_cast<size_t>(step_);
  return y < static_cast<size_t>(height_) &&
         off - y * static_cast<size_t>(step_) < static_cast<size_t>(rowBytes_);
}

void PagedImage::fillRandom(std::mt19937& rng) {
  for (int y = 0; y < height_; ++y)
    for (int x = 0; x < rowBytes_; ++x) row(y)[x] = static_cast<uint8_t>(rng() >> 24);
}

bool PagedImage::guardsIntact() const {
  for (size_t i = 0; i < used_; ++i)
    if (!inRegion(i) && base_[i] != pattern(i)) return false;
  return true;
}

std::vector<uint8_t> PagedImage::snapshot() const { return std::vector<uint8_t>(base_, base_ + used_); }

std::vector<uint8_t> PagedImage::regionBytes() const {
  std::vector<uint8_t> out;
  for (int y = 0; y < height_; ++y) {
    const uint8_t* r = first_ + static_cast<ptrdiff_t>(y) * step_;
    out.insert(out.end(), r, r + rowBytes_);
  }
  return out;
}

void PagedImage::restore(const std::vector<uint8_t>& snap) { memcpy(base_, snap.data(), used_); }

void PagedImage::setRegion(const std::vector<uint8_t>& bytes) {
  for (int y = 0; y < height_; ++y)
    memcpy(first_ + static_cast<ptrdiff_t>(y) * step_, bytes.data() + static_cast<size_t>(y) * rowBytes_,
           static_cast<size_t>(rowBytes_));
}

}  // namespace lumtest
