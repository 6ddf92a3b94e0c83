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
    case Layout::P3_422: return "P3_422";
    case Layout::P3_420: return "P3_420";
    case Layout::P2_420: return "P2_420";
    case Layout::C2: return "C2";
    case Layout::C2UYVY: return "C2 (CbYCr)";
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
    case Model::YCbCr: return "YCbCr";
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
  for (Model m : {Model::RGB, Model::YUV, Model::HSV, Model::HLS, Model::YCbCr})
    if (base == modelName(m)) return m;
  return Model::Unknown;
}

bool isSubsampled(Layout layout) {
  return layout == Layout::P3_422 || layout == Layout::P3_420 || layout == Layout::P2_420 ||
         layout == Layout::C2 || layout == Layout::C2UYVY;
}

int planeCount(Layout layout) {
  switch (layout) {
    case Layout::P3:
    case Layout::P3_422:
    case Layout::P3_420: return 3;
    case Layout::P2_420: return 2;
    default: return 1;
  }
}

int64_t planeRowBytes(Layout layout, int p, int64_t width, int bytes) {
  const int64_t half = (width + 1) / 2;
  switch (layout) {
    case Layout::C1:
    case Layout::P3: return width * bytes;
    case Layout::C3: return 3 * width * bytes;
    case Layout::AC4: return 4 * width * bytes;
    case Layout::C2:
    case Layout::C2UYVY: return 4 * half;
    case Layout::P3_422:
    case Layout::P3_420: return p == 0 ? width : half;
    case Layout::P2_420: return p == 0 ? width : 2 * half;
  }
  return 0;
}

int64_t planeRows(Layout layout, int p, int64_t height) {
  return p > 0 && (layout == Layout::P3_420 || layout == Layout::P2_420) ? (height + 1) / 2
                                                                         : height;
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
  if (width > INT32_MAX || height > INT32_MAX) return UINT64_MAX;
  const int bytes = depth == Depth::U16 ? 2 : 1;
  uint64_t total = 0;
  for (int p = 0; p < planeCount(layout); ++p) {
    const int64_t planeRowsP = layout == Layout::P3 ? height : planeRows(layout, p, height);
    uint64_t plane = 0;
    if (__builtin_mul_overflow(static_cast<uint64_t>(planeRowBytes(layout, p, width, bytes)),
                               static_cast<uint64_t>(planeRowsP), &plane) ||
        __builtin_add_overflow(total, plane, &total))
      return UINT64_MAX;
  }
  return total;
}

size_t checkedImageBytes(const std::string& file, int64_t width, int64_t height, Layout layout,
                         Depth depth) {
  if (width < 1 || height < 1)
    fail(file, "empty image (" + std::to_string(width) + "x" + std::to_string(height) + ")");
  if (width > INT32_MAX || height > INT32_MAX) fail(file, "width or height beyond 2147483647");
  const int bytes = depth == Depth::U16 ? 2 : 1;
  // The library takes a row's step as an int.
  for (int p = 0; p < planeCount(layout); ++p)
    if (planeRowBytes(layout, p, width, bytes) > INT_MAX)
      fail(file, "row too long (" + std::to_string(width) + " pixels)");
  size_t total = 0;
  for (int p = 0; p < planeCount(layout); ++p)
    total = checkedAdd(
        file, total,
        checkedMul(file, static_cast<size_t>(planeRowBytes(layout, p, width, bytes)),
                   static_cast<size_t>(planeRows(layout, p, height))));
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
  size_t total = 0;
  for (int p = 0; p < planes(); ++p) total += planeBytes(p);
  return total / static_cast<size_t>(bytesPerSample());
}

size_t Image::planeBytes(int p) const {
  return static_cast<size_t>(planeRowBytes(layout, p, width, bytesPerSample())) *
         static_cast<size_t>(planeRows(layout, p, height));
}

size_t Image::planeOffset(int p) const {
  size_t offset = 0;
  for (int q = 0; q < p; ++q) offset += planeBytes(q);
  return offset;
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
