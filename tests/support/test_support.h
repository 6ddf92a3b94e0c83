// Shared test support: images with guard bytes around every row, padded and
// unaligned rows, seeded random content, a team-size scope.
#ifndef LUM_TEST_SUPPORT_H
#define LUM_TEST_SUPPORT_H

#include <stdint.h>
#include <string.h>

#include <array>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "frame/lum_cpu.h"
#include "lumcc.h"

namespace lumtest {

// An image of `height` rows of `rowBytes` bytes inside a larger buffer: each
// row is followed by `pad` guard bytes, the first row starts `misalign` bytes
// past a 16-byte boundary, and 64 guard bytes stand before and after.  Every
// byte outside the region holds a known pattern, so that a write outside the
// region is seen by guardsIntact().
class GuardedImage {
 public:
  GuardedImage(int rowBytes, int height, int pad = 13, int misalign = 1);

  uint8_t* data() { return buf_.data() + lead_; }
  const uint8_t* data() const { return buf_.data() + lead_; }
  uint8_t* row(int y) { return data() + static_cast<ptrdiff_t>(y) * step_; }
  const uint8_t* row(int y) const { return data() + static_cast<ptrdiff_t>(y) * step_; }
  template <class T>
  T* rowAs(int y) {
    return reinterpret_cast<T*>(row(y));
  }
  int step() const { return step_; }
  int rowBytes() const { return rowBytes_; }
  int height() const { return height_; }

  // Random bytes in the region (guards keep their pattern).
  void fillRandom(std::mt19937& rng);
  // Region bytes 0 or 255 only (the extremes of every formula).
  void fillExtremes(std::mt19937& rng);
  // Region filled with one byte value.
  void fill(uint8_t v);
  // True when no byte outside the region differs from the guard pattern.
  bool guardsIntact() const;
  // The whole buffer, guards included, for "nothing was written" checks.
  std::vector<uint8_t> snapshot() const { return buf_; }
  bool equals(const std::vector<uint8_t>& snap) const { return snap == buf_; }
  // Region rows copied out contiguously (rowBytes each).
  std::vector<uint8_t> regionBytes() const;

 private:
  static uint8_t pattern(size_t i) { return static_cast<uint8_t>((i * 131u + 77u) ^ 0xA5u); }
  bool inRegion(size_t i) const;
  int rowBytes_, height_, step_;
  size_t lead_;
  std::vector<uint8_t> buf_;
};

// Sets threads_omp_of_n_lum for the life of the object.
class TeamSize {
 public:
  explicit TeamSize(int n) : old_(threads_omp_of_n_lum) { threads_omp_of_n_lum = n; }
  ~TeamSize() { threads_omp_of_n_lum = old_; }

 private:
  int old_;
};

// Lowers the instruction-set cap for the life of the object, so that the
// public functions take the paths of that level (never more than the
// processor has).
class IsaCap {
 public:
  explicit IsaCap(lum::Isa cap) : old_(lum::setIsaCap(cap)) {}
  ~IsaCap() { lum::setIsaCap(old_); }
  IsaCap(const IsaCap&) = delete;
  IsaCap& operator=(const IsaCap&) = delete;

 private:
  lum::Isa old_;
};

// Every level from SSE2 up to what this processor has.
std::vector<lum::Isa> isaLevels();
const char* isaName(lum::Isa level);

// Widths that cross every block boundary of blocks up to 32 pixels.
std::vector<int> widthsUpTo(int maxWidth);

// A readable "x=.. y=.. c=.." for failure messages.
std::string where(int x, int y, int c);

// Calls a function of the table on planes (the data and step of each) or on
// guarded images; fill is a trailing value (alpha, shape N).
struct Plane {
  uint8_t* data;
  int step;
};
LumStatus callTable(const std::string& name, const std::vector<Plane>& src,
                    const std::vector<Plane>& dst, LumSize roi, unsigned fill = 0);
LumStatus callTable(const std::string& name, const std::vector<GuardedImage*>& src,
                    const std::vector<GuardedImage*>& dst, LumSize roi, unsigned fill = 0);

// The 4:4:4 conversions (a pixel in, a pixel out): a function as its tests
// see it, with its layouts, its block size (the block part of a row is
// width & ~(block - 1); 0: none) and the scalar forms of its block loop and
// tail.  `name` is the table's name without "lumi" and "_8u".
namespace px444 {
enum class Layout { C3, AC4, P3 };
using Pix = std::array<int, 3>;
using PixFn = std::function<Pix(int, int, int)>;
struct Fn {
  std::string name;
  Layout in, out;
  int block;
  PixFn blockFn, tailFn;
};
inline void PrintTo(const Fn& f, std::ostream* os) { *os << f.name; }

// Random rows of every width at several alignments and paddings (at every
// level with everyLevel): block parts against the block form, tails against
// the tail form.
void expectScalarFormsAtWidths(const Fn& f, const std::vector<int>& widths, bool everyLevel);
// Pixel 0 of a row of 16 (block part) or of 1 (tail), all pixels `in`.
Pix convertOne(const Fn& f, bool inBlock, Pix in);
// The largest difference of two forms in each channel over a grid of the cube.
Pix largestDifference(const PixFn& a, const PixFn& b);
}  // namespace px444

}  // namespace lumtest

#endif  // LUM_TEST_SUPPORT_H
