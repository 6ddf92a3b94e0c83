// RGB and HSV: speed against OpenCV's cvtColor (RGB2HSV, HSV2RGB on 8u) and
// against memcpy of the same bytes.  OpenCV's 8u hue has another scale, so
// only the amount of work is the same, not the values.
//
// The library takes the widest main-loop path that the processor has (AVX2
// where present), as OpenCV does; the ratios depend on it.
//
// Arguments of every case: width, height, threads (the library's team size
// and OpenCV's thread count).
#include <benchmark/benchmark.h>
#include <string.h>

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <random>
#include <vector>

#include "lumcc.h"

namespace {

template <class T>
std::vector<T> randomPixels(int w, int h, int ch, int hueMax) {
  std::mt19937 rng(7);
  std::vector<T> v(static_cast<size_t>(w) * h * ch);
  for (size_t i = 0; i < v.size(); ++i) {
    v[i] = static_cast<T>(rng());
    if (i % ch == 0 && hueMax > 0) v[i] = static_cast<T>(v[i] % (hueMax + 1));
  }
  return v;
}

void setBytes(benchmark::State& st, int w, int h, int bytesPerPixel) {
  st.SetBytesProcessed(static_cast<int64_t>(st.iterations()) * w * h * bytesPerPixel);
}

// The library: fn on an image of w x h, ch samples of type T a pixel.
template <class T, LumStatus (*fn)(const T*, int, T*, int, LumSize), int ch>
void BM_lum(benchmark::State& st) {
  const int w = static_cast<int>(st.range(0)), h = static_cast<int>(st.range(1));
  threads_omp_of_n_lum = static_cast<int>(st.range(2));
  const std::vector<T> src = randomPixels<T>(w, h, ch, 0);
  std::vector<T> dst(src.size());
  const int step = w * ch * static_cast<int>(sizeof(T));
  for (auto _ : st) {
    fn(src.data(), step, dst.data(), step, LumSize{w, h});
    benchmark::ClobberMemory();
  }
  setBytes(st, w, h, ch * static_cast<int>(sizeof(T)));
}

void BM_cv(benchmark::State& st, int code) {
  const int w = static_cast<int>(st.range(0)), h = static_cast<int>(st.range(1));
  cv::setNumThreads(static_cast<int>(st.range(2)));
  const std::vector<uint8_t> src = randomPixels<uint8_t>(w, h, 3, code == cv::COLOR_HSV2RGB ? 179 : 0);
  const cv::Mat in(h, w, CV_8UC3, const_cast<uint8_t*>(src.data()));
  cv::Mat out(h, w, CV_8UC3);
  for (auto _ : st) {
    cv::cvtColor(in, out, code);
    benchmark::ClobberMemory();
  }
  setBytes(st, w, h, 3);
}
void BM_cv_RGB2HSV(benchmark::State& st) { BM_cv(st, cv::COLOR_RGB2HSV); }
void BM_cv_HSV2RGB(benchmark::State& st) { BM_cv(st, cv::COLOR_HSV2RGB); }

void BM_memcpy(benchmark::State& st) {
  const int w = static_cast<int>(st.range(0)), h = static_cast<int>(st.range(1));
  const size_t n = static_cast<size_t>(w) * h * 3;
  std::vector<uint8_t> src(n, 1), dst(n);
  for (auto _ : st) {
    memcpy(dst.data(), src.data(), n);
    benchmark::ClobberMemory();
  }
  setBytes(st, w, h, 3);
}

void sizes(benchmark::internal::Benchmark* b) {
  for (int t : {1, 2}) {
    b->Args({1920, 1080, t});
    b->Args({256, 256, t});
  }
  b->Unit(benchmark::kMicrosecond)->UseRealTime();
}

}  // namespace

BENCHMARK(BM_lum<Lum8u, lumiRGBToHSV_8u_C3R, 3>)->Name("lum_RGBToHSV_8u_C3R")->Apply(sizes);
BENCHMARK(BM_cv_RGB2HSV)->Name("cv_RGB2HSV_8u")->Apply(sizes);
BENCHMARK(BM_lum<Lum8u, lumiHSVToRGB_8u_C3R, 3>)->Name("lum_HSVToRGB_8u_C3R")->Apply(sizes);
BENCHMARK(BM_cv_HSV2RGB)->Name("cv_HSV2RGB_8u")->Apply(sizes);
BENCHMARK(BM_lum<Lum8u, lumiRGBToHSV_8u_AC4R, 4>)->Name("lum_RGBToHSV_8u_AC4R")->Apply(sizes);
BENCHMARK(BM_lum<Lum8u, lumiHSVToRGB_8u_AC4R, 4>)->Name("lum_HSVToRGB_8u_AC4R")->Apply(sizes);
BENCHMARK(BM_lum<Lum16u, lumiRGBToHSV_16u_C3R, 3>)->Name("lum_RGBToHSV_16u_C3R")->Apply(sizes);
BENCHMARK(BM_lum<Lum16u, lumiHSVToRGB_16u_C3R, 3>)->Name("lum_HSVToRGB_16u_C3R")->Apply(sizes);
BENCHMARK(BM_memcpy)->Name("memcpy_3B")->Args({1920, 1080, 1})->Args({256, 256, 1})
    ->Unit(benchmark::kMicrosecond)->UseRealTime();

BENCHMARK_MAIN();
