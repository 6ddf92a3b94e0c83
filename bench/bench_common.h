// Shared pieces of the benchmark programs: images in aligned memory filled
// with reproducible noise, OpenCV headers over them, the memcpy baseline
// (the same bytes read and written as the conversion it stands beside), the
// team size of both libraries, and the throughput counters.
#ifndef LUM_BENCH_COMMON_H
#define LUM_BENCH_COMMON_H

#include <benchmark/benchmark.h>
#include <lumcc.h>

#include <opencv2/core.hpp>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

namespace lumbench {

// The two region sizes every benchmark runs at.
struct Dims {
  int width, height;
};
inline std::vector<Dims> standardDims() { return {{1920, 1080}, {256, 256}}; }
inline std::string dimsName(Dims d) {
  return std::to_string(d.width) + "x" + std::to_string(d.height);
}

// An 8-bit image (or one plane) of `channels` interleaved samples a pixel.
// Rows are tight (step = width * channels) and the buffer starts on a
// 64-byte boundary, so that OpenCV sees a continuous matrix and both
// libraries get the same memory layout.
class Image {
 public:
  Image(int width, int height, int channels, uint32_t seed = 1)
      : width_(width), height_(height), channels_(channels), step_(width * channels) {
    const size_t n = bytes();
    const size_t rounded = (n + 63) & ~static_cast<size_t>(63);
    data_.reset(static_cast<uint8_t*>(std::aligned_alloc(64, rounded == 0 ? 64 : rounded)));
    fillNoise(seed);
  }
  uint8_t* data() { return data_.get(); }
  const uint8_t* data() const { return data_.get(); }
  int width() const { return width_; }
  int height() const { return height_; }
  int channels() const { return channels_; }
  int step() const { return step_; }
  size_t bytes() const { return static_cast<size_t>(step_) * static_cast<size_t>(height_); }
  LumSize roi() const { return LumSize{width_, height_}; }
  // An OpenCV header over the same memory (no copy).
  cv::Mat mat() { return cv::Mat(height_, width_, CV_8UC(channels_), data_.get(), step_); }

  // xorshift32 noise: every byte value occurs, and the same seed gives the
  // same image in every run.
  void fillNoise(uint32_t seed) {
    uint32_t s = seed ? seed : 0x9e3779b9u;
    uint8_t* p = data_.get();
    for (size_t i = 0; i < bytes(); ++i) {
      s ^= s << 13;
      s ^= s >> 17;
      s ^= s << 5;
      p[i] = static_cast<uint8_t>(s >> 24);
    }
  }

 private:
  struct Free {
    void operator()(uint8_t* p) const { std::free(p); }
  };
  int width_, height_, channels_, step_;
  std::unique_ptr<uint8_t, Free> data_;
};

// Three planes of one image, sharing one step (as the plane forms require).
struct Planes3 {
  Image p[3];
  Planes3(int width, int height, uint32_t seed)
      : p{Image(width, height, 1, seed), Image(width, height, 1, seed + 1),
          Image(width, height, 1, seed + 2)} {}
  const Lum8u* src[3] = {p[0].data(), p[1].data(), p[2].data()};
  Lum8u* dst[3] = {p[0].data(), p[1].data(), p[2].data()};
  int step() const { return p[0].step(); }
  size_t bytes() const { return p[0].bytes() * 3; }
  std::vector<cv::Mat> mats() { return {p[0].mat(), p[1].mat(), p[2].mat()}; }
};

// A run of bytes: one image or one plane.
struct Span {
  uint8_t* p;
  size_t n;
};
inline Span span(Image& im) { return Span{im.data(), im.bytes()}; }
inline size_t totalBytes(const std::vector<Span>& s) {
  size_t n = 0;
  for (const Span& x : s) n += x.n;
  return n;
}

// The memcpy baseline: the source buffers, taken in order as one sequence of
// bytes, copied into the destination buffers taken likewise, with as few
// memcpy calls as the buffer boundaries allow.  Every source byte is read
// once and every destination byte written once, as in the conversion.
// Source and destination must hold the same number of bytes.
inline void copySpans(const std::vector<Span>& src, const std::vector<Span>& dst) {
  size_t si = 0, so = 0, di = 0, doff = 0;
  while (si < src.size() && di < dst.size()) {
    const size_t n = std::min(src[si].n - so, dst[di].n - doff);
    std::memcpy(dst[di].p + doff, src[si].p + so, n);
    so += n;
    doff += n;
    if (so == src[si].n) ++si, so = 0;
    if (doff == dst[di].n) ++di, doff = 0;
  }
}

// Team size of both libraries: OpenCV's worker count and the OpenMP team of
// this library's threaded families.
inline void setThreads(int n) {
  cv::setNumThreads(n);
  threads_omp_of_n_lum = n;
}

// Throughput counters: bytes/s counts the bytes read plus the bytes written
// in one call; items/s counts pixels.  With UseRealTime() both are over wall
// time, which is what a multi-threaded reference needs.
inline void setCounters(benchmark::State& st, size_t bytesRead, size_t bytesWritten,
                        size_t pixels, int threads) {
  st.SetBytesProcessed(static_cast<int64_t>(st.iterations()) *
                       static_cast<int64_t>(bytesRead + bytesWritten));
  st.SetItemsProcessed(static_cast<int64_t>(st.iterations()) * static_cast<int64_t>(pixels));
  st.counters["threads"] = threads;
}

}  // namespace lumbench

#endif  // LUM_BENCH_COMMON_H
