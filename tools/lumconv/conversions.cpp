#include "conversions.h"

#include <array>

namespace lumconv {

namespace {

#define LUMCONV_FN(f) \
#f, Function {      \
    f                 \
  }

constexpr Kind kRgbC3{Model::RGB, Layout::C3, Depth::U8};
constexpr Kind kRgbAC4{Model::RGB, Layout::AC4, Depth::U8};
constexpr Kind kRgbP3{Model::RGB, Layout::P3, Depth::U8};
constexpr Kind kYuvC3{Model::YUV, Layout::C3, Depth::U8};
constexpr Kind kYuvAC4{Model::YUV, Layout::AC4, Depth::U8};
constexpr Kind kYuvP3{Model::YUV, Layout::P3, Depth::U8};

constexpr Kind kRgbC3_16{Model::RGB, Layout::C3, Depth::U16};
constexpr Kind kRgbAC4_16{Model::RGB, Layout::AC4, Depth::U16};
constexpr Kind kHsvC3{Model::HSV, Layout::C3, Depth::U8};
constexpr Kind kHsvAC4{Model::HSV, Layout::AC4, Depth::U8};
constexpr Kind kHsvC3_16{Model::HSV, Layout::C3, Depth::U16};
constexpr Kind kHsvAC4_16{Model::HSV, Layout::AC4, Depth::U16};
constexpr Kind kHlsC3{Model::HLS, Layout::C3, Depth::U8};
constexpr Kind kHlsAC4{Model::HLS, Layout::AC4, Depth::U8};
constexpr Kind kHlsC3_16{Model::HLS, Layout::C3, Depth::U16};
constexpr Kind kHlsAC4_16{Model::HLS, Layout::AC4, Depth::U16};

constexpr const char* kRgbToYuv =
    "RGB to YUV 4:4:4 (Y = 0.299 R + 0.587 G + 0.114 B, U and V about 128)";
constexpr const char* kYuvToRgb = "YUV 4:4:4 to RGB";
constexpr const char* kRgbToHsv = "RGB to HSV (H: 255 or 65535 steps a circle, S, V = max)";
constexpr const char* kHsvToRgb = "HSV to RGB";
constexpr const char* kRgbToHls = "RGB to HLS (H: 255 or 65535 steps a circle, L, S)";
constexpr const char* kHlsToRgb = "HLS to RGB";

// What a conversion does, for --list: the formulas, and what a user must know.
constexpr const char* kRgbToYuvWords =
    "Analogue YUV, no chroma subsampling: Y = 0.299 R + 0.587 G + 0.114 B,\n"
    "U = 0.492 (B - Y) + 128, V = 0.877 (R - Y) + 128.  This is not the YCbCr\n"
    "(BT.601/709, Y 16..235) that video files and video tools use: a .y4m written\n"
    "here holds this YUV.  Saturated colours take V (and U) beyond 0..255; they\n"
    "are clipped, so saturated reds and magentas come back darker.";
constexpr const char* kYuvToRgbWords =
    "The inverse of rgb2yuv: R = Y + 1.140 (V - 128), G = Y - 0.394 (U - 128)\n"
    "- 0.581 (V - 128), B = Y + 2.032 (U - 128).  It expects the YUV rgb2yuv makes;\n"
    "the YCbCr of a video file (a .y4m from a video tool) comes out with wrong\n"
    "colours.";
constexpr const char* kRgbToHsvWords =
    "Hue, saturation, value: H one full circle in 255 steps (8-bit) or 65535\n"
    "(16-bit), so 0 and 255 are both red; S = full scale (max - min) / max;\n"
    "V = max(R, G, B).  Grey and black have H = S = 0.";
constexpr const char* kHsvToRgbWords = "The inverse of rgb2hsv.";
constexpr const char* kRgbToHlsWords =
    "Hue, lightness, saturation, stored in that order (L in the middle):\n"
    "H as in rgb2hsv, L = (max + min) / 2, S = (max - min) / (max + min) up to\n"
    "half lightness, (max - min) / (2 full scale - max - min) above, at full scale.\n"
    "Grey has H = S = 0 and L = the grey level.";
constexpr const char* kHlsToRgbWords = "The inverse of rgb2hls.";
constexpr const char* kCopy = "Copies the samples unchanged (a change of file format)";
constexpr const char* kCopyWords =
    "Copies every sample as it is: PPM to PAM, one .y4m to another (with its\n"
    "frame rate and aspect), standard input to a file.  It never changes the\n"
    "layout: pixels stay pixels, planes stay planes.";

constexpr Kind kAnyC1{Model::Unknown, Layout::C1, Depth::U8};
constexpr Kind kAnyC3{Model::Unknown, Layout::C3, Depth::U8};
constexpr Kind kAnyAC4{Model::Unknown, Layout::AC4, Depth::U8};
constexpr Kind kAnyP3{Model::Unknown, Layout::P3, Depth::U8};
constexpr Kind kAnyC1_16{Model::Unknown, Layout::C1, Depth::U16};
constexpr Kind kAnyC3_16{Model::Unknown, Layout::C3, Depth::U16};
constexpr Kind kAnyAC4_16{Model::Unknown, Layout::AC4, Depth::U16};
constexpr Kind kAnyP3_16{Model::Unknown, Layout::P3, Depth::U16};

constexpr Conversion kTable[] = {
    // RGB and YUV 4:4:4, 8u.  PPM/PAM pixels use the pixel-order functions,
    // .y4m and raw planes the planar ones; PAM RGB_ALPHA goes through AC4.
    {"rgb2yuv", kRgbToYuv, kRgbToYuvWords, kRgbC3, kYuvC3, LUMCONV_FN(lumiRGBToYUV_8u_C3R)},
    {"rgb2yuv", kRgbToYuv, kRgbToYuvWords, kRgbAC4, kYuvAC4, LUMCONV_FN(lumiRGBToYUV_8u_AC4R)},
    {"rgb2yuv", kRgbToYuv, kRgbToYuvWords, kRgbC3, kYuvP3, LUMCONV_FN(lumiRGBToYUV_8u_C3P3R)},
    {"rgb2yuv", kRgbToYuv, kRgbToYuvWords, kRgbP3, kYuvP3, LUMCONV_FN(lumiRGBToYUV_8u_P3R)},
    {"yuv2rgb", kYuvToRgb, kYuvToRgbWords, kYuvC3, kRgbC3, LUMCONV_FN(lumiYUVToRGB_8u_C3R)},
    {"yuv2rgb", kYuvToRgb, kYuvToRgbWords, kYuvAC4, kRgbAC4, LUMCONV_FN(lumiYUVToRGB_8u_AC4R)},
    {"yuv2rgb", kYuvToRgb, kYuvToRgbWords, kYuvP3, kRgbC3, LUMCONV_FN(lumiYUVToRGB_8u_P3C3R)},
    {"yuv2rgb", kYuvToRgb, kYuvToRgbWords, kYuvP3, kRgbP3, LUMCONV_FN(lumiYUVToRGB_8u_P3R)},

    // RGB and HSV, RGB and HLS, 8u and 16u: C3 for PPM and PAM, AC4 for PAM
    // with alpha.
    {"rgb2hsv", kRgbToHsv, kRgbToHsvWords, kRgbC3, kHsvC3, LUMCONV_FN(lumiRGBToHSV_8u_C3R)},
    {"rgb2hsv", kRgbToHsv, kRgbToHsvWords, kRgbAC4, kHsvAC4, LUMCONV_FN(lumiRGBToHSV_8u_AC4R)},
    {"rgb2hsv", kRgbToHsv, kRgbToHsvWords, kRgbC3_16, kHsvC3_16, LUMCONV_FN(lumiRGBToHSV_16u_C3R)},
    {"rgb2hsv", kRgbToHsv, kRgbToHsvWords, kRgbAC4_16, kHsvAC4_16,
     LUMCONV_FN(lumiRGBToHSV_16u_AC4R)},
    {"hsv2rgb", kHsvToRgb, kHsvToRgbWords, kHsvC3, kRgbC3, LUMCONV_FN(lumiHSVToRGB_8u_C3R)},
    {"hsv2rgb", kHsvToRgb, kHsvToRgbWords, kHsvAC4, kRgbAC4, LUMCONV_FN(lumiHSVToRGB_8u_AC4R)},
    {"hsv2rgb", kHsvToRgb, kHsvToRgbWords, kHsvC3_16, kRgbC3_16, LUMCONV_FN(lumiHSVToRGB_16u_C3R)},
    {"hsv2rgb", kHsvToRgb, kHsvToRgbWords, kHsvAC4_16, kRgbAC4_16,
     LUMCONV_FN(lumiHSVToRGB_16u_AC4R)},
    {"rgb2hls", kRgbToHls, kRgbToHlsWords, kRgbC3, kHlsC3, LUMCONV_FN(lumiRGBToHLS_8u_C3R)},
    {"rgb2hls", kRgbToHls, kRgbToHlsWords, kRgbAC4, kHlsAC4, LUMCONV_FN(lumiRGBToHLS_8u_AC4R)},
    {"rgb2hls", kRgbToHls, kRgbToHlsWords, kRgbC3_16, kHlsC3_16, LUMCONV_FN(lumiRGBToHLS_16u_C3R)},
    {"rgb2hls", kRgbToHls, kRgbToHlsWords, kRgbAC4_16, kHlsAC4_16,
     LUMCONV_FN(lumiRGBToHLS_16u_AC4R)},
    {"hls2rgb", kHlsToRgb, kHlsToRgbWords, kHlsC3, kRgbC3, LUMCONV_FN(lumiHLSToRGB_8u_C3R)},
    {"hls2rgb", kHlsToRgb, kHlsToRgbWords, kHlsAC4, kRgbAC4, LUMCONV_FN(lumiHLSToRGB_8u_AC4R)},
    {"hls2rgb", kHlsToRgb, kHlsToRgbWords, kHlsC3_16, kRgbC3_16, LUMCONV_FN(lumiHLSToRGB_16u_C3R)},
    {"hls2rgb", kHlsToRgb, kHlsToRgbWords, kHlsAC4_16, kRgbAC4_16,
     LUMCONV_FN(lumiHLSToRGB_16u_AC4R)},

    // The service copy, row by row over the bytes of any layout and depth.
    {"copy", kCopy, kCopyWords, kAnyC1, kAnyC1, "lumiCopy_8u_C1R", Bytes{lumiCopy_8u_C1R}},
    {"copy", kCopy, kCopyWords, kAnyC3, kAnyC3, "lumiCopy_8u_C1R", Bytes{lumiCopy_8u_C1R}},
    {"copy", kCopy, kCopyWords, kAnyAC4, kAnyAC4, "lumiCopy_8u_C1R", Bytes{lumiCopy_8u_C1R}},
    {"copy", kCopy, kCopyWords, kAnyP3, kAnyP3, "lumiCopy_8u_C1R", Bytes{lumiCopy_8u_C1R}},
    {"copy", kCopy, kCopyWords, kAnyC1_16, kAnyC1_16, "lumiCopy_8u_C1R", Bytes{lumiCopy_8u_C1R}},
    {"copy", kCopy, kCopyWords, kAnyC3_16, kAnyC3_16, "lumiCopy_8u_C1R", Bytes{lumiCopy_8u_C1R}},
    {"copy", kCopy, kCopyWords, kAnyAC4_16, kAnyAC4_16, "lumiCopy_8u_C1R", Bytes{lumiCopy_8u_C1R}},
    {"copy", kCopy, kCopyWords, kAnyP3_16, kAnyP3_16, "lumiCopy_8u_C1R", Bytes{lumiCopy_8u_C1R}},

    // Further families add their rows here: the tool picks a row by the
    // input's layout and depth and the layout the output file stores.
};

#undef LUMCONV_FN

constexpr size_t kCount = sizeof(kTable) / sizeof(kTable[0]);

// --- Compile-time checks of the table -------------------------------------
// A row's function shape must fit its kinds, and no two rows of one name may
// take and make the same layouts at the same depth.
constexpr bool sameText(const char* a, const char* b) {
  while (*a && *a == *b) ++a, ++b;
  return *a == *b;
}

constexpr bool shapeFits(const Conversion& c) {
  const Layout i = c.in.layout, o = c.out.layout;
  if (c.in.depth != c.out.depth) return false;
  const bool pixels = (i == Layout::C3 || i == Layout::AC4) && i == o;
  switch (c.function.index()) {
    case 0: return c.in.depth == Depth::U8 && pixels;
    case 1: return c.in.depth == Depth::U8 && i == Layout::C3 && o == Layout::P3;
    case 2: return c.in.depth == Depth::U8 && i == Layout::P3 && o == Layout::C3;
    case 3: return c.in.depth == Depth::U8 && i == Layout::P3 && o == Layout::P3;
    case 4: return c.in.depth == Depth::U16 && pixels;
    case 5: return i == o;
  }
  return false;
}

constexpr bool tableIsSound() {
  for (size_t a = 0; a < kCount; ++a) {
    if (!shapeFits(kTable[a])) return false;
    for (size_t b = a + 1; b < kCount; ++b) {
      const Conversion &x = kTable[a], &y = kTable[b];
      if (sameText(x.name, y.name) && x.in.layout == y.in.layout && x.out.layout == y.out.layout &&
          x.in.depth == y.in.depth)
        return false;
      // One name, one meaning: the same description and models on every row.
      if (sameText(x.name, y.name) &&
          (!sameText(x.description, y.description) || !sameText(x.words, y.words) ||
           x.in.model != y.in.model || x.out.model != y.out.model))
        return false;
    }
  }
  return true;
}
static_assert(tableIsSound(),
              "a conversion row's function does not fit its kinds, or repeats a form");

template <class... F>
struct Overload : F... {
  using F::operator()...;
};
template <class... F>
Overload(F...) -> Overload<F...>;

}  // namespace

std::string formName(Layout in, Layout out) {
  if (in == out) return layoutName(in);
  return std::string(layoutName(in)) + "->" + layoutName(out);
}

const Conversion* conversionTable(size_t* count) {
  *count = kCount;
  return kTable;
}

const Conversion* findName(const std::string& name) {
  for (const Conversion& c : kTable)
    if (name == c.name) return &c;
  return nullptr;
}

const Conversion* findConversion(const std::string& name, Layout in, Layout out, Depth depth) {
  for (const Conversion& c : kTable)
    if (name == c.name && c.in.layout == in && c.out.layout == out && c.in.depth == depth)
      return &c;
  return nullptr;
}

bool hasForm(const std::string& name, Layout in, Depth depth) {
  for (const Conversion& c : kTable)
    if (name == c.name && c.in.layout == in && c.in.depth == depth) return true;
  return false;
}

bool hasDepth(const std::string& name, Depth depth) {
  for (const Conversion& c : kTable)
    if (name == c.name && c.in.depth == depth) return true;
  return false;
}

Model outputModel(const Conversion& row, Model src) {
  return row.out.model == Model::Unknown ? src : row.out.model;
}

std::string formsOf(const std::string& name) {
  std::string text;
  for (Depth depth : {Depth::U8, Depth::U16}) {
    std::string forms;
    for (const Conversion& c : kTable) {
      if (name != c.name || c.in.depth != depth) continue;
      forms += forms.empty() ? "" : ", ";
      forms += formName(c.in.layout, c.out.layout);
    }
    if (forms.empty()) continue;
    text += text.empty() ? "" : "; ";
    text += std::string(depthName(depth)) + " " + forms;
  }
  return text;
}

std::string listing() {
  auto firstOfName = [](size_t i) {
    for (size_t j = 0; j < i; ++j)
      if (sameText(kTable[i].name, kTable[j].name)) return false;
    return true;
  };
  std::string text;
  for (size_t i = 0; i < kCount; ++i) {
    if (!firstOfName(i)) continue;
    std::string name = kTable[i].name;
    name.resize(name.size() < 10 ? 10 : name.size() + 1, ' ');
    text += name + kTable[i].description + " [" + formsOf(kTable[i].name) + "]\n";
  }
  text +=
      "\n"
      "Forms: 8u and 16u are 8-bit and 16-bit samples (maxval 255 and 65535).\n"
      "C3 is pixels of three samples (PPM, PAM), AC4 pixels with alpha (PAM\n"
      "RGB_ALPHA; the alpha is carried over), P3 three planes one after the other\n"
      "(YUV4MPEG2, raw planes, a PGM with --planes), C1 one grey sample a pixel\n"
      "(PGM).  lumconv picks the form from the input and the output format.\n";
  for (size_t i = 0; i < kCount; ++i) {
    if (!firstOfName(i)) continue;
    text += std::string("\n") + kTable[i].name + ":\n";
    const std::string words = kTable[i].words;
    size_t start = 0;
    while (start < words.size()) {
      size_t end = words.find('\n', start);
      if (end == std::string::npos) end = words.size();
      text += "  " + words.substr(start, end - start) + "\n";
      start = end + 1;
    }
  }
  return text;
}

std::string statusName(LumStatus status) {
  const char* name = nullptr;
  switch (status) {
    case LumErrNoise: name = "LumErrNoise"; break;
    case LumErrLevels: name = "LumErrLevels"; break;
    case LumErrValueRange: name = "LumErrValueRange"; break;
    case LumErrContext: name = "LumErrContext"; break;
    case LumErrStep: name = "LumErrStep"; break;
    case LumErrMemAlloc: name = "LumErrMemAlloc"; break;
    case LumErrNullPtr: name = "LumErrNullPtr"; break;
    case LumErrSize: name = "LumErrSize"; break;
    case LumErrEnum: name = "LumErrEnum"; break;
    case LumOk: name = "LumOk"; break;
    case LumWarnNoOp: name = "LumWarnNoOp"; break;
    case LumWarnOddSize: name = "LumWarnOddSize"; break;
  }
  const std::string code = std::to_string(static_cast<int>(status));
  return name ? std::string(name) + " (" + code + ")" : "status " + code;
}

LumStatus convert(const Conversion& row, const Image& src, Image& dst, const std::string& file) {
  dst.width = src.width;
  dst.height = src.height;
  dst.layout = row.out.layout;
  dst.depth = row.out.depth;
  dst.model = outputModel(row, src.model);
  dst.tags = src.tags;
  if (row.out.layout == Layout::AC4) {
    dst.data8 = src.data8;  // the alpha samples stay the source's
    dst.data16 = src.data16;
  } else {
    dst.allocate(file);
  }

  const LumSize roi{src.width, src.height};
  const int ss = src.step(), ds = dst.step();
  const size_t n = src.planeSamples();
  auto srcPlanes = [&]() -> std::array<const Lum8u*, 3> {
    const Lum8u* p = src.data8.data();
    return {p, p + n, p + 2 * n};
  };
  auto dstPlanes = [&]() -> std::array<Lum8u*, 3> {
    Lum8u* p = dst.data8.data();
    return {p, p + n, p + 2 * n};
  };

  const LumStatus status = std::visit(
      Overload{
          [&](Pixels8 f) { return f(src.data8.data(), ss, dst.data8.data(), ds, roi); },
          [&](PixelsToPlanes8 f) { return f(src.data8.data(), ss, dstPlanes().data(), ds, roi); },
          [&](PlanesToPixels8 f) { return f(srcPlanes().data(), ss, dst.data8.data(), ds, roi); },
          [&](Planes8 f) { return f(srcPlanes().data(), ss, dstPlanes().data(), ds, roi); },
          [&](Pixels16 f) { return f(src.data16.data(), ss, dst.data16.data(), ds, roi); },
          [&](Bytes b) {
            const bool wide = src.depth == Depth::U16;
            const Lum8u* s8 = wide ? reinterpret_cast<const Lum8u*>(src.data16.data())
                                   : src.data8.data();
            Lum8u* d8 = wide ? reinterpret_cast<Lum8u*>(dst.data16.data()) : dst.data8.data();
            const LumSize bytes{ss, static_cast<int32_t>(src.rowCount())};
            return b.f(s8, ss, d8, ds, bytes);
          },
      },
      row.function);
  if (status < 0) fail(file, std::string(row.functionName) + " returned " + statusName(status));
  return status;
}

}  // namespace lumconv
