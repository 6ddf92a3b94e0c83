// lumconv: the built-in colour chart of `lumconv demo`.
#ifndef LUMCONV_CHART_H
#define LUMCONV_CHART_H

#include "image.h"

namespace lumconv {

// The demo's chart size: an odd width, so that each row ends in a tail
// after the library's 8- and 16-pixel blocks.
constexpr int32_t kChartWidth = 321;
constexpr int32_t kChartHeight = 241;

// An 8-bit RGB chart (C3), top to bottom: the saturated primaries and
// secondaries with white and black as bars; a smooth grey ramp above eleven
// grey steps; a hue sweep fading to white and then to black; red, green and
// blue ramps.
Image makeChart(int32_t width = kChartWidth, int32_t height = kChartHeight);

}  // namespace lumconv

#endif
