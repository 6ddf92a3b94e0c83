// An image whose last row ends where an inaccessible page begins, so that a
// kernel reading past the region faults at once; every accessible byte
// outside the region (the padding of each row and the bytes before the
// first row) holds a known pattern, so that a write outside the region is
// seen by guardsIntact().
#ifndef LUM_PAGED_IMAGE_H
#define LUM_PAGED_IMAGE_H

#include <stddef.h>
#include <stdint.h>

#include <random>
#include <vector>

namespace lumtest {

class PagedImage {
 public:
  // step >= rowBytes; lead: guard bytes before the first row (also sets the
  // first row's alignment).
  PagedImage(int rowBytes, int height, int step, int lead);
  ~PagedImage();
  PagedImage(const PagedImage&) = delete;
  PagedImage& operator=(const PagedImage&) = delete;

  uint8_t* data() { return first_; }
  int step() const { return step_; }
  int rowBytes() const { return rowBytes_; }
  int height() const { return height_; }
  uint8_t* row(int y) { return first_ + static_cast<ptrdiff_t>(y) * step_; }

  void fillRandom(std::mt19937& rng);
  bool guardsIntact() const;
  // Every accessible byte, guards included.
  std::vector<uint8_t> snapshot() const;
  std::vector<uint8_t> regionBytes() const;
  // Puts back what snapshot() took.
  void restore(const std::vector<uint8_t>& snap);
  // Region rows from contiguous bytes (rowBytes each).
  void setRegion(const std::vector<uint8_t>& bytes);

 private:
  bool inRegion(size_t offset) const;  // offset from base_
  uint8_t pattern(size_t i) const { return static_cast<uint8_t>((i * 131u + 77u) ^ 0xA5u); }
  int rowBytes_, height_, step_, lead_;
  uint8_t* map_ = nullptr;
  size_t mapBytes_ = 0;
  uint8_t* base_ = nullptr;  // first accessible byte we use
  size_t used_ = 0;          // bytes from base_ to the guard page
  uint8_t* first_ = nullptr;
};

}  // namespace lumtest

#endif  // LUM_PAGED_IMAGE_H
