#include "chart.h"

namespace lumconv {

namespace {

struct Rgb {
  int r, g, b;
};

// Fully saturated colour of hue h, 0 to 1535 (256 steps a sixth).
Rgb hueColour(int h) {
  const int f = h % 256, s = h / 256;
  switch (s) {
    case 0: return {255, f, 0};
    case 1: return {255 - f, 255, 0};
    case 2: return {0, 255, f};
    case 3: return {0, 255 - f, 255};
    case 4: return {f, 0, 255};
    default: return {255, 0, 255 - f};
  }
}

// a + (b - a) * num / den, for num from 0 to den.
int mix(int a, int b, int num, int den) {
  return den > 0 ? a + (b - a) * num / den : a;
}

}  // namespace

Image makeChart(int32_t width, int32_t height) {
  Image img;
  img.width = width;
  img.height = height;
  img.layout = Layout::C3;
  img.depth = Depth::U8;
  img.model = Model::RGB;
  img.allocate("chart");

  static const Rgb bars[8] = {{255, 255, 255}, {255, 255, 0}, {0, 255, 255}, {0, 255, 0},
                              {255, 0, 255},   {255, 0, 0},   {0, 0, 255},   {0, 0, 0}};
  const int barsEnd = height / 3;
  const int rampEnd = barsEnd + height / 12;
  const int stepsEnd = height / 2;
  const int tintEnd = stepsEnd + height / 6;
  const int shadeEnd = stepsEnd + height / 3;
  const int last = width > 1 ? width - 1 : 1;

  for (int y = 0; y < height; ++y) {
    Lum8u* row = img.row8(static_cast<size_t>(y));
    for (int x = 0; x < width; ++x) {
      Rgb c;
      if (y < barsEnd) {
        c = bars[static_cast<int64_t>(x) * 8 / width];
      } else if (y < rampEnd) {
        const int v = static_cast<int>(static_cast<int64_t>(x) * 255 / last);
        c = {v, v, v};
      } else if (y < stepsEnd) {
        const int v = static_cast<int>(static_cast<int64_t>(x) * 11 / width * 255 / 10);
        c = {v, v, v};
      } else if (y < shadeEnd) {
        const Rgb hue = hueColour(static_cast<int>(static_cast<int64_t>(x) * 1535 / last));
        const bool tint = y < tintEnd;  // toward white, then toward black
        const int t = tint ? y - stepsEnd : y - tintEnd;
        const int span = (tint ? tintEnd - stepsEnd : shadeEnd - tintEnd) - 1;
        const int to = tint ? 255 : 0;
        c = {mix(hue.r, to, t, span), mix(hue.g, to, t, span), mix(hue.b, to, t, span)};
      } else {
        const int v = static_cast<int>(static_cast<int64_t>(x) * 255 / last);
        const int band = (y - shadeEnd) * 3 / (height - shadeEnd);
        c = {band == 0 ? v : 0, band == 1 ? v : 0, band == 2 ? v : 0};
      }
      row[3 * x] = static_cast<Lum8u>(c.r);
      row[3 * x + 1] = static_cast<Lum8u>(c.g);
      row[3 * x + 2] = static_cast<Lum8u>(c.b);
    }
  }
  return img;
}

}  // namespace lumconv
