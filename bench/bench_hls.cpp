// RGB <-> HLS, 8u and 32f pixel order (C3), against OpenCV's cvtColor
// (COLOR_RGB2HLS / COLOR_HLS2RGB on the same buffers) and memcpy of the same
// bytes.
//
// Groups "<function>/<implementation>/<width>x<height>":
//   lum_t1/_t2     this library with threads_omp_of_n_lum = 1 and 2 (the
//                  drivers share rows in a team from 4097 pixels on)
//   memcpy         the source bytes copied onto the destination
//   opencv_t1/_t2  cv::cvtColor with cv::setNumThreads(1) and (2)
// OpenCV's 8u hue runs 0..180 where ours runs 0..255 (its 32f hue is in
// degrees: its source gets the same hues times 360), and its 8u HLS to RGB
// rounds where ours truncates; the work per pixel is alike.
// Counters: bytes_per_second = bytes read + written per call, items = pixels,
// both over wall time.
#include "bench_common.h"

#include <opencv2/imgproc.hpp>

#include <random>

using namespace lumbench;

namespace {

size_t pixelsOf(Dims d) { return static_cast<size_t>(d.width) * static_cast<size_t>(d.height); }

// A three-channel image of 8u or 32f samples in one aligned buffer; float
// samples uniform in [0, 1] (hue too), 8u samples noise.
struct Buf {
  Image raw;
  int width, height, elem;
  Buf(Dims d, int elemSize, uint32_t seed)
      : raw(d.width * elemSize, d.height, 3, seed),
        width(d.width),
        height(d.height),
        elem(elemSize) {
    if (elemSize == 4) {
      std::mt19937 rng(seed);
      float* p = reinterpret_cast<float*>(raw.data());
      for (size_t i = 0; i < pixelsOf(d) * 3; ++i) p[i] = (rng() >> 8) / 16777216.0f;
    }
  }
  int step() const { return raw.step(); }
  cv::Mat mat() {
    return cv::Mat(height, width, elem == 4 ? CV_32FC3 : CV_8UC3, raw.data(), raw.step());
  }
  LumSize roi() const { return LumSize{width, height}; }
};

using LumFn8 = LumStatus (*)(const Lum8u*, int, Lum8u*, int, LumSize);
using LumFn32 = LumStatus (*)(const Lum32f*, int, Lum32f*, int, LumSize);

struct Case {
  const char* name;
  int elem;
  LumFn8 f8;
  LumFn32 f32;
  int cvCode;
  float cvHueScale;  // OpenCV's 32f hue is in degrees
};

LumStatus runLum(const Case& c, Buf& s, Buf& d) {
  if (c.elem == 1) return c.f8(s.raw.data(), s.step(), d.raw.data(), d.step(), s.roi());
  return c.f32(reinterpret_cast<const Lum32f*>(s.raw.data()), s.step(),
               reinterpret_cast<Lum32f*>(d.raw.data()), d.step(), s.roi());
}

void registerCase(const Case& c) {
  for (const Dims d : standardDims()) {
    const std::string base = std::string(c.name) + "/", size = "/" + dimsName(d);
    for (int threads : {1, 2}) {
      benchmark::RegisterBenchmark(
          (base + "lum_t" + std::to_string(threads) + size).c_str(),
          [c, d, threads](benchmark::State& st) {
            setThreads(threads);
            Buf s(d, c.elem, 5), t(d, c.elem, 6);
            if (runLum(c, s, t) != LumOk) {
              st.SkipWithError("status not LumOk");
              return;
            }
            for (auto _ : st) {
              benchmark::DoNotOptimize(runLum(c, s, t));
              benchmark::ClobberMemory();
            }
            setCounters(st, s.raw.bytes(), t.raw.bytes(), pixelsOf(d), threads);
          })
          ->UseRealTime();
      benchmark::RegisterBenchmark(
          (base + "opencv_t" + std::to_string(threads) + size).c_str(),
          [c, d, threads](benchmark::State& st) {
            setThreads(threads);
            Buf s(d, c.elem, 5), t(d, c.elem, 6);
            if (c.elem == 4 && c.cvHueScale != 1.0f) {
              float* p = reinterpret_cast<float*>(s.raw.data());
              for (size_t i = 0; i < pixelsOf(d); ++i) p[3 * i] *= c.cvHueScale;
            }
            cv::Mat a = s.mat(), b = t.mat();
            cv::cvtColor(a, b, c.cvCode);
            for (auto _ : st) {
              cv::cvtColor(a, b, c.cvCode);
              benchmark::ClobberMemory();
            }
            setCounters(st, s.raw.bytes(), t.raw.bytes(), pixelsOf(d), threads);
          })
          ->UseRealTime();
    }
    benchmark::RegisterBenchmark((base + "memcpy" + size).c_str(), [c, d](benchmark::State& st) {
      setThreads(1);
      Buf s(d, c.elem, 5), t(d, c.elem, 6);
      for (auto _ : st) {
        std::memcpy(t.raw.data(), s.raw.data(), s.raw.bytes());
        benchmark::ClobberMemory();
      }
      setCounters(st, s.raw.bytes(), t.raw.bytes(), pixelsOf(d), 1);
    })->UseRealTime();
  }
}

}  // namespace

int main(int argc, char** argv) {
  registerCase({"RGBToHLS_8u_C3R", 1, lumiRGBToHLS_8u_C3R, nullptr, cv::COLOR_RGB2HLS, 1.0f});
  registerCase({"HLSToRGB_8u_C3R", 1, lumiHLSToRGB_8u_C3R, nullptr, cv::COLOR_HLS2RGB, 1.0f});
  registerCase({"RGBToHLS_32f_C3R", 4, nullptr, lumiRGBToHLS_32f_C3R, cv::COLOR_RGB2HLS, 1.0f});
  registerCase({"HLSToRGB_32f_C3R", 4, nullptr, lumiHLSToRGB_32f_C3R, cv::COLOR_HLS2RGB, 360.0f});
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
