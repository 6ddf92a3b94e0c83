#include "image.h"

#include <climits>

namespace lumconv {

void fail(const std::string& file, const std::string& what) {
  throw Error{file, what};
}

const char* layoutName(Layout layout) {
  switch (layout) {
    case Layout::C3: return "C3";
    case Layout::AC4: return "AC4";
    case Layout::P3: return "P3";
    case Layout::C1: return "C1";
  }
  return "?";
}

const char* depthName(Depth depth) {
  return depth == Depth::U16 ? "16u" : "8u";
}

const char* modelName(Model model) {
  switch (model) {
    case Model::RGB: return "RGB";
    case Model::YUV: return "YUV";
    case Model::HSV: return "HSV";
    case Model::HLS: return "HLS";
    case Model::Unknown: break;
  }
  return "";
}

Model modelFromName(const std::string& name) {
  // "RGB", "RGB_ALPHA", "YUV", ...: the part before an "_ALPHA" suffix.
  std::string base = name;
  const std::string alpha = "_ALPHA";
  if (base.size() > alpha.size() &&
      base.compare(base.size() - alpha.size(), alpha.size(), alpha) == 0)
    base.resize(base.size() - alpha.size());
  for (Model m : {Model::RGB, Model::YUV, Model::HSV, Model::HLS})
    if (base == modelName(m)) return m;
  return Model::Unknown;
}

size_t checkedMul(const std::string& file, size_t a, size_t b) {
  size_t r = 0;
  if (__builtin_mul_overflow(a, b, &r)) fail(file, "image too large for this machine");
  return r;
}

size_t checkedAdd(const std::string& file, size_t a, size_t b) {
  size_t r = 0;
  if (__builtin_add_overflow(a, b, &r)) fail(file, "image too large for this machine");
  return r;
}

uint64_t announcedBytes(int64_t width, int64_t height, Layout layout, Depth depth) {
  if (width < 1 || height < 1) return 0;
  const uint64_t channels = layout == Layout::AC4 ? 4 : layout == Layout::C1 ? 1 : 3;
  const uint64_t bytes = depth == Depth::U16 ? 2 : 1;
  uint64_t total = 0;
  if (__builtin_mul_overflow(static_cast<uint64_t>(width), static_cast<uint64_t>(height), &total) ||
      __builtin_mul_overflow(total, channels * bytes, &total))
    return UINT64_MAX;
  return total;
}

size_t checkedImageBytes(const std::string& file, int64_t width, int64_t height, Layout layout,
                         Depth depth) {
  if (width < 1 || height < 1)
    fail(file, "empty image (" + std::to_string(width) + "x" + std::to_string(height) + ")");
  if (width > INT32_MAX || height > INT32_MAX) fail(file, "width or height beyond 2147483647");
  const int64_t channels = layout == Layout::AC4 ? 4 : layout == Layout::C1 ? 1 : 3;
  const int64_t bytes = depth == Depth::U16 ? 2 : 1;
  const int64_t rowSamples = layout == Layout::P3 ? width : width * channels;
  // The library takes a row's step as an int.
  if (rowSamples * bytes > INT_MAX)
    fail(file, "row too long (" + std::to_string(width) + " pixels)");
  size_t total = checkedMul(file, static_cast<size_t>(width), static_cast<size_t>(height));
  total = checkedMul(file, total, static_cast<size_t>(channels * bytes));
  // Keep every byte offset a valid ptrdiff_t.
  if (total > static_cast<size_t>(PTRDIFF_MAX)) fail(file, "image too large for this machine");
  return total;
}

size_t Image::rowSamples() const {
  return layout == Layout::P3 ? static_cast<size_t>(width)
                              : static_cast<size_t>(width) * static_cast<size_t>(channels());
}

size_t Image::planeSamples() const {
  return static_cast<size_t>(width) * static_cast<size_t>(height);
}

size_t Image::totalSamples() const {
  return planeSamples() * static_cast<size_t>(channels());
}

size_t Image::rowCount() const {
  return layout == Layout::P3 ? 3 * static_cast<size_t>(height) : static_cast<size_t>(height);
}

void Image::allocate(const std::string& file) {
  const size_t bytes = checkedImageBytes(file, width, height, layout, depth);
  data8.clear();
  data16.clear();
  if (depth == Depth::U16)
    data16.assign(bytes / 2, 0);
  else
    data8.assign(bytes, 0);
}

}  // namespace lumconv
