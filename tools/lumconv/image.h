// lumconv: the in-memory image, the error that ends a run, and checked
// size arithmetic.
#ifndef LUMCONV_IMAGE_H
#define LUMCONV_IMAGE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "lumcc.h"

namespace lumconv {

// What ends a run: printed by main as "lumconv: <file>: <what>" (or
// "lumconv: <what>" when no file is concerned).
struct Error {
  std::string file;
  std::string what;
};

[[noreturn]] void fail(const std::string& file, const std::string& what);

// Sample arrangement of an image in memory, named as the library names it.
enum class Layout {
  C3,      // three samples a pixel, interleaved
  AC4,     // four samples a pixel, the fourth is alpha
  P3,      // three planes, one after the other, each width * height samples
  C1,      // one sample a pixel: a grey image
  // The subsampled layouts (8-bit only).  Chroma planes hold every partial
  // pair or cell: (width + 1) / 2 samples a row, for 4:2:0 (height + 1) / 2
  // rows.
  P3_422,  // planes Y, Cb (U), Cr (V); chroma at half width
  P3_420,  // planes Y, Cb (U), Cr (V); chroma at half width and height (I420)
  P2_420,  // a Y plane, then one plane of pairs Cb Cr at half width and height (NV12)
  C2,      // 4:2:2 pixel pairs Y0 Cb Y1 Cr (YUY2)
  C2UYVY   // 4:2:2 pixel pairs Cb Y0 Cr Y1 (UYVY)
};

// Whether a layout shares chroma among pixels.
bool isSubsampled(Layout layout);
// Planes of a layout (C3, AC4, C1, C2: one) and the bytes of one row and the
// rows of plane p, for an image of width by height at `bytes` a sample.
int planeCount(Layout layout);
int64_t planeRowBytes(Layout layout, int p, int64_t width, int bytes = 1);
int64_t planeRows(Layout layout, int p, int64_t height);

enum class Depth { U8, U16 };

// The colour model the samples stand for, where a file says so.
// YUV is this library's analogue YUV (U = 0.492 (B - Y) + 128, ...); YCbCr
// the studio-range video YCbCr that other tools write.
enum class Model { Unknown, RGB, YUV, HSV, HLS, YCbCr };

const char* layoutName(Layout layout);         // "C3", "AC4", "P3", "C1", "P3_420", ...
const char* depthName(Depth depth);            // "8u", "16u"
const char* modelName(Model model);            // "RGB", "YUV", ... ("" for Unknown)
Model modelFromName(const std::string& name);  // the prefix of a PAM tuple type

// Stream tags of a YUV4MPEG2 sequence, carried from a .y4m input to a .y4m
// output; other inputs get these defaults.
struct VideoTags {
  std::string frameRate = "25:1";
  std::string interlace = "p";
  std::string aspect = "1:1";
  // Chroma siting of a 4:2:0 .y4m ("jpeg", "mpeg2", "paldv" or "" for a
  // plain C420): kept by the copy and the repacks; what a conversion from
  // RGB writes is centred ("jpeg").
  std::string siting = "jpeg";
  // The C tag of a 4:2:0 .y4m input as it stood ("C420jpeg"; "" when the
  // file had none), for messages.
  std::string chromaTag;
};

// One image (one frame of a sequence).  8-bit samples live in data8, 16-bit
// samples (native byte order) in data16; the other vector stays empty.
struct Image {
  int32_t width = 0;
  int32_t height = 0;
  Layout layout = Layout::C3;
  Depth depth = Depth::U8;
  Model model = Model::Unknown;
  // The file does not say its model, which was taken from its kind (an
  // untagged C444 .y4m: YUV, as lumconv wrote it before; another untagged
  // .y4m: YCbCr, as other tools write it): YUV and YCbCr conversions both
  // take it.
  bool modelAssumed = false;
  VideoTags tags;
  std::vector<Lum8u> data8;
  std::vector<Lum16u> data16;

  int channels() const { return layout == Layout::AC4 ? 4 : layout == Layout::C1 ? 1 : 3; }
  int bytesPerSample() const { return depth == Depth::U16 ? 2 : 1; }
  // Samples in one row: of pixels (C3, AC4, C1) or of one plane (P3).
  size_t rowSamples() const;
  // Byte distance between rows, as the library's step arguments take it.
  int step() const { return static_cast<int>(rowSamples()) * bytesPerSample(); }
  size_t planeSamples() const;  // P3: samples in one plane
  size_t totalSamples() const;
  size_t totalBytes() const { return totalSamples() * static_cast<size_t>(bytesPerSample()); }
  // Rows of samples: height, or 3 * height for P3 (the planes one after
  // the other); row8/row16 give row r of data8/data16.
  size_t rowCount() const;
  // Plane p of any layout: its first byte, its row length in bytes (the
  // step) and its rows.  The planes lie one after the other.
  int planes() const { return planeCount(layout); }
  size_t planeBytes(int p) const;
  size_t planeOffset(int p) const;
  int planeStep(int p) const {
    return static_cast<int>(planeRowBytes(layout, p, width, bytesPerSample()));
  }
  int planeHeight(int p) const { return static_cast<int>(planeRows(layout, p, height)); }
  Lum8u* plane8(int p) { return data8.data() + planeOffset(p); }
  const Lum8u* plane8(int p) const { return data8.data() + planeOffset(p); }
  Lum8u* row8(size_t r) { return data8.data() + r * rowSamples(); }
  const Lum8u* row8(size_t r) const { return data8.data() + r * rowSamples(); }
  Lum16u* row16(size_t r) { return data16.data() + r * rowSamples(); }
  const Lum16u* row16(size_t r) const { return data16.data() + r * rowSamples(); }

  // Sizes the storage for width, height, layout and depth (zero-filled).
  // Fails with file's name if the geometry is empty or any size overflows
  // (a row must fit the library's int step; the whole image size_t).
  void allocate(const std::string& file);
  bool sameGeometry(const Image& other) const {
    return width == other.width && height == other.height && layout == other.layout &&
           depth == other.depth;
  }
};

// Checks that width and height are at least 1 and that the image's byte
// sizes can be computed; returns the total byte count.
size_t checkedImageBytes(const std::string& file, int64_t width, int64_t height, Layout layout,
                         Depth depth);

// The bytes a header announces for an image, in 64 bits on every target
// (UINT64_MAX if even that overflows): what InFile::need checks against the
// bytes that can exist before the machine's own limits are looked at.
uint64_t announcedBytes(int64_t width, int64_t height, Layout layout, Depth depth);

// a * b and a + b for sizes, failing with file's name on overflow.
size_t checkedMul(const std::string& file, size_t a, size_t b);
size_t checkedAdd(const std::string& file, size_t a, size_t b);

}  // namespace lumconv

#endif
