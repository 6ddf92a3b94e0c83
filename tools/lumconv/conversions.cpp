#include "conversions.h"

#include <cstring>
#include <utility>
#include <vector>

#include "frame/lum_shapes.h"
#include "lum_table.h"

namespace lumconv {

namespace {

// A row names its function; LUMCONV_FN also makes a name that is not a
// public function fail to compile.
#define LUMCONV_FN(f) (static_cast<void>(&f), #f)

constexpr Kind kRgbC3{Model::RGB, Layout::C3, Depth::U8};
constexpr Kind kRgbAC4{Model::RGB, Layout::AC4, Depth::U8};
constexpr Kind kRgbP3{Model::RGB, Layout::P3, Depth::U8};
constexpr Kind kYuvC3{Model::YUV, Layout::C3, Depth::U8};
constexpr Kind kYuvAC4{Model::YUV, Layout::AC4, Depth::U8};
constexpr Kind kYuvP3{Model::YUV, Layout::P3, Depth::U8};

constexpr Kind kYcbC3{Model::YCbCr, Layout::C3, Depth::U8};
constexpr Kind kYcbAC4{Model::YCbCr, Layout::AC4, Depth::U8};
constexpr Kind kYcbP3{Model::YCbCr, Layout::P3, Depth::U8};
constexpr Kind kYcbP3_420{Model::YCbCr, Layout::P3_420, Depth::U8};
constexpr Kind kYcbP3_422{Model::YCbCr, Layout::P3_422, Depth::U8};
constexpr Kind kYcbP2_420{Model::YCbCr, Layout::P2_420, Depth::U8};
constexpr Kind kYcbC2{Model::YCbCr, Layout::C2, Depth::U8};
constexpr Kind kYcbC2UYVY{Model::YCbCr, Layout::C2UYVY, Depth::U8};
constexpr Kind kYuvC2{Model::YUV, Layout::C2, Depth::U8};
constexpr Kind kYuvP3_422{Model::YUV, Layout::P3_422, Depth::U8};
constexpr Kind kYuvP3_420{Model::YUV, Layout::P3_420, Depth::U8};

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
constexpr const char* kRgbToYcbcr =
    "RGB to YCbCr 4:4:4, studio range (Y 16..235, Cb, Cr 16..240), as video files hold it";
constexpr const char* kYcbcrToRgb = "YCbCr 4:4:4 (studio range) to RGB";
constexpr const char* kRgbToYuv422 = "RGB to YUV 4:2:2 (this library's YUV, chroma of pixel pairs)";
constexpr const char* kYuv422ToRgb = "YUV 4:2:2 to RGB";
constexpr const char* kRgbToYuv420 = "RGB to YUV 4:2:0 (this library's YUV, chroma of 2x2 cells)";
constexpr const char* kYuv420ToRgb = "YUV 4:2:0 to RGB";
constexpr const char* kRepack = "Moves samples between 4:2:2 and 4:2:0 layouts (any model)";
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
constexpr const char* kRgbToYcbcrWords =
    "The YCbCr of video files and of every video tool (BT.601 weights, studio\n"
    "range): Y = 16 + (65.481 R + 128.553 G + 24.966 B) / 255, Cb and Cr about\n"
    "128.  A .y4m written here is tagged XCOLORRANGE=LIMITED; one tagged FULL is\n"
    "refused.  The pixel-order form rounds down in its 8-pixel blocks (white\n"
    "gives Y 234 there, 235 in the rest of a row).  4:2:0 (--out-layout I420,\n"
    "YV12, NV12; C420jpeg in a .y4m) takes each 2x2 cell's mean chroma, 4:2:2\n"
    "(I422, YUY2) each pair's; UYVY filters chroma 1, 2, 1 along the row,\n"
    "sited on each pair's first pixel.  A .y4m is C444 unless --out-layout\n"
    "says otherwise.";
constexpr const char* kYcbcrToRgbWords =
    "The inverse of rgb2ycbcr: R = 1.164 (Y - 16) + 1.596 (Cr - 128), ...\n"
    "It reads a C444, C422 or C420 .y4m as other tools write it\n"
    "(XCOLORRANGE=LIMITED or no tag; FULL is refused) and raw I420, YV12, NV12,\n"
    "YUY2, UYVY, I422: the pixels of a pair or cell share its chroma (no\n"
    "interpolation; ycbcr4202rgb-filter interpolates along the rows).  Every\n"
    "4:2:0 siting is read as centred.";
constexpr const char* kRgbToYuv422Words =
    "This library's YUV (as rgb2yuv), one U, V for each pair of pixels: the\n"
    "mean of the pair's chroma.  Written to a .y4m as C422 tagged\n"
    "XLUMCC_MODEL=YUV (other tools would take it for YCbCr), or to raw YUY2\n"
    "(--out-layout YUY2).";
constexpr const char* kYuv422ToRgbWords =
    "The inverse of rgb2yuv422: each pixel of a pair gets the pair's U, V.";
constexpr const char* kRgbToYuv420Words =
    "This library's YUV (as rgb2yuv), one U, V for each 2x2 cell: the mean of\n"
    "the cell's four chroma values, so the chroma sits at the cell's centre\n"
    "(C420jpeg siting).  Written to a .y4m as C420jpeg tagged XLUMCC_MODEL=YUV\n"
    "(other tools would take it for YCbCr), or to raw I420, YV12.";
constexpr const char* kYuv420ToRgbWords =
    "The inverse of rgb2yuv420: the four pixels of a cell share its U, V (no\n"
    "interpolation).  Other sitings (C420mpeg2, C420paldv, C420) are read as\n"
    "if centred.  A .y4m from another tool holds YCbCr: give --model yuv to\n"
    "read its samples as YUV anyway (the colours shift).";
constexpr const char* kRepackWords =
    "Moves samples between the layouts of --layout / the .y4m and --out-layout\n"
    "(I420, YV12, NV12, YUY2, UYVY, 422, ...): luma is copied; chroma is\n"
    "copied, interleaved, dropped (4:2:2 to 4:2:0 keeps the even rows' chroma)\n"
    "or repeated (4:2:0 to 4:2:2), never averaged.";
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
constexpr const char* kDeinterlace =
    "Deinterlaces 4:2:0 (NV12 or planes): blends each luma row with its neighbours";
constexpr const char* kDeinterlaceWords =
    "Smooths each luma row with the rows above and below (1, 2, 1 over 4; the\n"
    "first row 3, 1, the last 1, 3), which blends the two fields of an\n"
    "interlaced frame, and averages neighbouring chroma rows.  Takes raw NV12,\n"
    "or 4:2:0 planes (a C420 .y4m, raw I420, YV12: interleaved to NV12 first);\n"
    "makes 4:2:0 planes (a .y4m, now tagged progressive, raw I420 or YV12) or\n"
    "YUY2 (--out-layout YUY2), whose row pairs share the pair's chroma.  The block\n"
    "loops average pairwise with rounding, so a result can differ by one level\n"
    "from (a + 2b + c) / 4; the YUY2 form lifts a flat area by one level in its\n"
    "first two and last two rows.  An odd size is converted as the even size\n"
    "that repeats the last column and row, then cut back.";
constexpr const char* kUpsample = "Upsamples 4:2:0 to 4:2:2, filtering the chroma rows (taps -1 9 9 -1)";
constexpr const char* kUpsampleWords =
    "Luma is copied; chroma row r becomes row 2r, and each new row between is\n"
    "(9 (c[r] + c[r+1]) - c[r-1] - c[r+2] + 8) / 16, clamped (the first and\n"
    "last rows stand in for the rows beyond).  repack repeats rows instead.\n"
    "Takes a C420 .y4m, raw I420, YV12 or NV12; makes a C422 .y4m or raw I422.\n"
    "The library converts heights in steps of 8: lumconv converts the image\n"
    "grown to one (its last row repeated, which is the filter's own edge rule)\n"
    "and cuts it back, so every height works.";
constexpr const char* kFilterRgb =
    "YCbCr 4:2:0 (studio range) to RGB, chroma interpolated along the rows";
constexpr const char* kFilterRgbWords =
    "Each pixel pair's second pixel takes the mean of its chroma and the next\n"
    "pair's (the last pair repeats its own); rows share their cell's chroma.\n"
    "R = 1.164 (Y - 16) + 1.596 (Cr - 128), ... in 16-bit fixed point, no\n"
    "rounding term.  The library writes B, G, R, alpha: lumconv reorders the\n"
    "bytes to R, G, B and drops the alpha for the PPM / PAM.  Takes a C420 .y4m\n"
    "(XCOLORRANGE=FULL refused) or raw I420, YV12.";
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
constexpr Kind kAnyP3_422{Model::Unknown, Layout::P3_422, Depth::U8};
constexpr Kind kAnyP3_420{Model::Unknown, Layout::P3_420, Depth::U8};
constexpr Kind kAnyP2_420{Model::Unknown, Layout::P2_420, Depth::U8};
constexpr Kind kAnyC2{Model::Unknown, Layout::C2, Depth::U8};
constexpr Kind kAnyC2UYVY{Model::Unknown, Layout::C2UYVY, Depth::U8};

// The filtered YCrCb 4:2:0 -> BGR with alpha, reordered to RGB pixels: the
// library writes B, G, R, alpha (255) a pixel into a scratch image, which
// is then copied as R, G, B.  src holds Y, Cr, Cb (the row's crCb).
LumStatus filteredBgrAsRgb(const void* const src[3], const int srcSteps[3], Lum8u* dst,
                           int dstStep, LumSize roi);

constexpr Conversion kTable[] = {
    // RGB and YUV 4:4:4, 8u.  PPM/PAM pixels use the pixel-order functions,
    // .y4m and raw planes the planar ones; PAM RGB_ALPHA goes through AC4.
    // RGB and YUV 4:4:4, 8u.  PPM/PAM pixels use the pixel-order functions,
    {"rgb2yuv", kRgbToYuv, kRgbToYuvWords, kRgbC3, kYuvC3, LUMCONV_FN(lumiRGBToYUV_8u_C3R)},
    {"rgb2yuv", kRgbToYuv, kRgbToYuvWords, kRgbAC4, kYuvAC4, LUMCONV_FN(lumiRGBToYUV_8u_AC4R)},
    {"rgb2yuv", kRgbToYuv, kRgbToYuvWords, kRgbC3, kYuvP3, LUMCONV_FN(lumiRGBToYUV_8u_C3P3R)},
    {"rgb2yuv", kRgbToYuv, kRgbToYuvWords, kRgbP3, kYuvP3, LUMCONV_FN(lumiRGBToYUV_8u_P3R)},
    {"yuv2rgb", kYuvToRgb, kYuvToRgbWords, kYuvC3, kRgbC3, LUMCONV_FN(lumiYUVToRGB_8u_C3R)},
    {"yuv2rgb", kYuvToRgb, kYuvToRgbWords, kYuvAC4, kRgbAC4, LUMCONV_FN(lumiYUVToRGB_8u_AC4R)},
    {"yuv2rgb", kYuvToRgb, kYuvToRgbWords, kYuvP3, kRgbC3, LUMCONV_FN(lumiYUVToRGB_8u_P3C3R)},
    {"yuv2rgb", kYuvToRgb, kYuvToRgbWords, kYuvP3, kRgbP3, LUMCONV_FN(lumiYUVToRGB_8u_P3R)},

    // RGB and YCbCr 4:4:4.  The library converts pixels to planes only from
    // planes: the tool splits PPM pixels first.
    {"rgb2ycbcr", kRgbToYcbcr, kRgbToYcbcrWords, kRgbC3, kYcbC3,
     LUMCONV_FN(lumiRGBToYCbCr_8u_C3R)},
    {"rgb2ycbcr", kRgbToYcbcr, kRgbToYcbcrWords, kRgbAC4, kYcbAC4,
     LUMCONV_FN(lumiRGBToYCbCr_8u_AC4R)},
    {"rgb2ycbcr", kRgbToYcbcr, kRgbToYcbcrWords, kRgbC3, kYcbP3,
     LUMCONV_FN(lumiRGBToYCbCr_8u_P3R), true},
    {"rgb2ycbcr", kRgbToYcbcr, kRgbToYcbcrWords, kRgbP3, kYcbP3,
     LUMCONV_FN(lumiRGBToYCbCr_8u_P3R)},
    {"ycbcr2rgb", kYcbcrToRgb, kYcbcrToRgbWords, kYcbC3, kRgbC3,
     LUMCONV_FN(lumiYCbCrToRGB_8u_C3R)},
    {"ycbcr2rgb", kYcbcrToRgb, kYcbcrToRgbWords, kYcbAC4, kRgbAC4,
     LUMCONV_FN(lumiYCbCrToRGB_8u_AC4R)},
    {"ycbcr2rgb", kYcbcrToRgb, kYcbcrToRgbWords, kYcbP3, kRgbC3,
     LUMCONV_FN(lumiYCbCrToRGB_8u_P3C3R)},
    {"ycbcr2rgb", kYcbcrToRgb, kYcbcrToRgbWords, kYcbP3, kRgbP3,
     LUMCONV_FN(lumiYCbCrToRGB_8u_P3R)},

    // RGB and YCbCr 4:2:0 and 4:2:2: video files and raw frames.  A C422 .y4m
    // is made as YCrCb pixel pairs, then split into planes (the YCrCb and
    // YCbCr kernels are the same arithmetic).  UYVY is the CbYCr family,
    // whose chroma is filtered 1, 2, 1 along the row.
    {"rgb2ycbcr", kRgbToYcbcr, kRgbToYcbcrWords, kRgbC3, kYcbP3_420,
     LUMCONV_FN(lumiRGBToYCbCr420_8u_C3P3R)},
    {"rgb2ycbcr", kRgbToYcbcr, kRgbToYcbcrWords, kRgbC3, kYcbP3_422,
     LUMCONV_FN(lumiRGBToYCrCb422_8u_C3C2R), false, false, nullptr,
     LUMCONV_FN(lumiYCrCb422ToYCbCr422_8u_C2P3R), Layout::C2},
    {"rgb2ycbcr", kRgbToYcbcr, kRgbToYcbcrWords, kRgbC3, kYcbP2_420,
     LUMCONV_FN(lumiRGBToYCbCr420_8u_C3P3R), false, false, nullptr,
     LUMCONV_FN(lumiYCbCr420_8u_P3P2R), Layout::P3_420},
    {"rgb2ycbcr", kRgbToYcbcr, kRgbToYcbcrWords, kRgbC3, kYcbC2,
     LUMCONV_FN(lumiRGBToYCbCr422_8u_C3C2R)},
    {"rgb2ycbcr", kRgbToYcbcr, kRgbToYcbcrWords, kRgbP3, kYcbC2,
     LUMCONV_FN(lumiRGBToYCbCr422_8u_P3C2R)},
    {"rgb2ycbcr", kRgbToYcbcr, kRgbToYcbcrWords, kRgbC3, kYcbC2UYVY,
     LUMCONV_FN(lumiRGBToCbYCr422_8u_C3C2R)},
    {"ycbcr2rgb", kYcbcrToRgb, kYcbcrToRgbWords, kYcbP3_420, kRgbC3,
     LUMCONV_FN(lumiYCbCr420ToRGB_8u_P3C3R)},
    {"ycbcr2rgb", kYcbcrToRgb, kYcbcrToRgbWords, kYcbP2_420, kRgbC3,
     LUMCONV_FN(lumiYCbCr420_8u_P2P3R), false, false, nullptr,
     LUMCONV_FN(lumiYCbCr420ToRGB_8u_P3C3R), Layout::P3_420},
    {"ycbcr2rgb", kYcbcrToRgb, kYcbcrToRgbWords, kYcbP3_422, kRgbC3,
     LUMCONV_FN(lumiYCbCr422ToRGB_8u_P3C3R)},
    {"ycbcr2rgb", kYcbcrToRgb, kYcbcrToRgbWords, kYcbC2, kRgbC3,
     LUMCONV_FN(lumiYCbCr422ToRGB_8u_C2C3R)},
    {"ycbcr2rgb", kYcbcrToRgb, kYcbcrToRgbWords, kYcbC2, kRgbP3,
     LUMCONV_FN(lumiYCbCr422ToRGB_8u_C2P3R)},
    {"ycbcr2rgb", kYcbcrToRgb, kYcbcrToRgbWords, kYcbC2UYVY, kRgbC3,
     LUMCONV_FN(lumiCbYCr422ToRGB_8u_C2C3R)},

    // RGB and this library's YUV 4:2:2 and 4:2:0.
    {"rgb2yuv422", kRgbToYuv422, kRgbToYuv422Words, kRgbC3, kYuvP3_422,
     LUMCONV_FN(lumiRGBToYUV422_8u_C3P3R)},
    {"rgb2yuv422", kRgbToYuv422, kRgbToYuv422Words, kRgbC3, kYuvC2,
     LUMCONV_FN(lumiRGBToYUV422_8u_C3C2R)},
    {"rgb2yuv422", kRgbToYuv422, kRgbToYuv422Words, kRgbP3, kYuvP3_422,
     LUMCONV_FN(lumiRGBToYUV422_8u_P3R)},
    {"yuv4222rgb", kYuv422ToRgb, kYuv422ToRgbWords, kYuvP3_422, kRgbC3,
     LUMCONV_FN(lumiYUV422ToRGB_8u_P3C3R)},
    {"yuv4222rgb", kYuv422ToRgb, kYuv422ToRgbWords, kYuvP3_422, kRgbP3,
     LUMCONV_FN(lumiYUV422ToRGB_8u_P3R)},
    {"yuv4222rgb", kYuv422ToRgb, kYuv422ToRgbWords, kYuvC2, kRgbC3,
     LUMCONV_FN(lumiYUV422ToRGB_8u_C2C3R)},
    {"rgb2yuv420", kRgbToYuv420, kRgbToYuv420Words, kRgbC3, kYuvP3_420,
     LUMCONV_FN(lumiRGBToYUV420_8u_C3P3R)},
    {"rgb2yuv420", kRgbToYuv420, kRgbToYuv420Words, kRgbP3, kYuvP3_420,
     LUMCONV_FN(lumiRGBToYUV420_8u_P3R)},
    {"yuv4202rgb", kYuv420ToRgb, kYuv420ToRgbWords, kYuvP3_420, kRgbC3,
     LUMCONV_FN(lumiYUV420ToRGB_8u_P3C3R)},
    {"yuv4202rgb", kYuv420ToRgb, kYuv420ToRgbWords, kYuvP3_420, kRgbP3,
     LUMCONV_FN(lumiYUV420ToRGB_8u_P3R)},

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
    {"copy", kCopy, kCopyWords, kAnyC1, kAnyC1, LUMCONV_FN(lumiCopy_8u_C1R)},
    {"copy", kCopy, kCopyWords, kAnyC3, kAnyC3, LUMCONV_FN(lumiCopy_8u_C1R)},
    {"copy", kCopy, kCopyWords, kAnyAC4, kAnyAC4, LUMCONV_FN(lumiCopy_8u_C1R)},
    {"copy", kCopy, kCopyWords, kAnyP3, kAnyP3, LUMCONV_FN(lumiCopy_8u_C1R)},
    {"copy", kCopy, kCopyWords, kAnyC1_16, kAnyC1_16, LUMCONV_FN(lumiCopy_8u_C1R)},
    {"copy", kCopy, kCopyWords, kAnyC3_16, kAnyC3_16, LUMCONV_FN(lumiCopy_8u_C1R)},
    {"copy", kCopy, kCopyWords, kAnyAC4_16, kAnyAC4_16, LUMCONV_FN(lumiCopy_8u_C1R)},
    {"copy", kCopy, kCopyWords, kAnyP3_16, kAnyP3_16, LUMCONV_FN(lumiCopy_8u_C1R)},
    {"copy", kCopy, kCopyWords, kAnyP3_422, kAnyP3_422, LUMCONV_FN(lumiCopy_8u_C1R)},
    {"copy", kCopy, kCopyWords, kAnyP3_420, kAnyP3_420, LUMCONV_FN(lumiCopy_8u_C1R)},
    {"copy", kCopy, kCopyWords, kAnyP2_420, kAnyP2_420, LUMCONV_FN(lumiCopy_8u_C1R)},
    {"copy", kCopy, kCopyWords, kAnyC2, kAnyC2, LUMCONV_FN(lumiCopy_8u_C1R)},
    {"copy", kCopy, kCopyWords, kAnyC2UYVY, kAnyC2UYVY, LUMCONV_FN(lumiCopy_8u_C1R)},

    // The plain repacks among 4:2:2 and 4:2:0 layouts: samples move, no
    // arithmetic (any model).
    {"repack", kRepack, kRepackWords, kAnyP3_420, kAnyP2_420, LUMCONV_FN(lumiYCbCr420_8u_P3P2R)},
    {"repack", kRepack, kRepackWords, kAnyP2_420, kAnyP3_420, LUMCONV_FN(lumiYCbCr420_8u_P2P3R)},
    {"repack", kRepack, kRepackWords, kAnyC2, kAnyP3_420,
     LUMCONV_FN(lumiYCbCr422ToYCbCr420_8u_C2P3R)},
    {"repack", kRepack, kRepackWords, kAnyC2UYVY, kAnyP3_420,
     LUMCONV_FN(lumiCbYCr422ToYCbCr420_8u_C2P3R)},
    {"repack", kRepack, kRepackWords, kAnyC2UYVY, kAnyP3_422,
     LUMCONV_FN(lumiCbYCr422ToYCbCr422_8u_C2P3R)},
    {"repack", kRepack, kRepackWords, kAnyP3_420, kAnyP3_422,
     LUMCONV_FN(lumiYCbCr420ToYCbCr422_8u_P3R)},
    {"repack", kRepack, kRepackWords, kAnyP3_422, kAnyP3_420,
     LUMCONV_FN(lumiYCbCr422ToYCbCr420_8u_P3R)},
    {"repack", kRepack, kRepackWords, kAnyP3_422, kAnyP2_420,
     LUMCONV_FN(lumiYCbCr422ToYCbCr420_8u_P3P2R)},
    {"repack", kRepack, kRepackWords, kAnyP2_420, kAnyP3_422,
     LUMCONV_FN(lumiYCbCr420ToYCbCr422_8u_P2P3R)},

    // NV12, YUY2 and UYVY among themselves and from I420 / YV12.  The YV12
    // functions take planes Y, Cr, Cb: the tool hands them its I420-ordered
    // planes exchanged (a YV12 file is read into that order), so they serve
    // I420 and YV12 frames alike.  NV12 and YUY2 to I420 / YV12 keep the rows
    // above: the library's YV12 forms of them are the same moves.
    {"repack", kRepack, kRepackWords, kAnyP2_420, kAnyC2,
     LUMCONV_FN(lumiYCbCr420ToYCbCr422_8u_P2C2R)},
    {"repack", kRepack, kRepackWords, kAnyP2_420, kAnyC2UYVY,
     LUMCONV_FN(lumiYCbCr420ToCbYCr422_8u_P2C2R)},
    {"repack", kRepack, kRepackWords, kAnyC2, kAnyC2UYVY,
     LUMCONV_FN(lumiYCbCr422ToCbYCr422_8u_C2R)},
    {"repack", kRepack, kRepackWords, kAnyC2UYVY, kAnyC2,
     LUMCONV_FN(lumiCbYCr422ToYCbCr422_8u_C2R)},
    {"repack", kRepack, kRepackWords, kAnyC2, kAnyP2_420,
     LUMCONV_FN(lumiYCbCr422ToYCbCr420_8u_C2P2R)},
    {"repack", kRepack, kRepackWords, kAnyC2UYVY, kAnyP2_420,
     LUMCONV_FN(lumiCbYCr422ToYCbCr420_8u_C2P2R)},
    {"repack", kRepack, kRepackWords, kAnyP3_420, kAnyC2,
     LUMCONV_FN(lumiYCrCb420ToYCbCr422_8u_P3C2R), false, true},
    {"repack", kRepack, kRepackWords, kAnyP3_420, kAnyC2UYVY,
     LUMCONV_FN(lumiYCrCb420ToCbYCr422_8u_P3C2R), false, true},

    // Deinterlacing NV12 (the whole frame at once).
    {"deinterlace", kDeinterlace, kDeinterlaceWords, kAnyP2_420, kAnyP3_420,
     LUMCONV_FN(lumiYCbCr420ToYCrCb420_Filter_8u_P2P3R)},
    {"deinterlace", kDeinterlace, kDeinterlaceWords, kAnyP2_420, kAnyC2,
     LUMCONV_FN(lumiYCbCr420ToYCbCr422_Filter_8u_P2C2R)},
    // 4:2:0 planes (a .y4m, I420, YV12) are interleaved to NV12 first.
    {"deinterlace", kDeinterlace, kDeinterlaceWords, kAnyP3_420, kAnyP3_420,
     LUMCONV_FN(lumiYCbCr420_8u_P3P2R), false, false, nullptr,
     LUMCONV_FN(lumiYCbCr420ToYCrCb420_Filter_8u_P2P3R), Layout::P2_420},
    {"deinterlace", kDeinterlace, kDeinterlaceWords, kAnyP3_420, kAnyC2,
     LUMCONV_FN(lumiYCbCr420_8u_P3P2R), false, false, nullptr,
     LUMCONV_FN(lumiYCbCr420ToYCbCr422_Filter_8u_P2C2R), Layout::P2_420},

    // 4:2:0 to 4:2:2 with filtered chroma rows, and YCbCr 4:2:0 to RGB with
    // chroma interpolated along the rows.
    {"upsample-filter", kUpsample, kUpsampleWords, kAnyP3_420, kAnyP3_422,
     LUMCONV_FN(lumiYCbCr420ToYCbCr422_Filter_8u_P3R)},
    {"upsample-filter", kUpsample, kUpsampleWords, kAnyP2_420, kAnyP3_422,
     LUMCONV_FN(lumiYCbCr420ToYCbCr422_Filter_8u_P2P3R)},
    {"ycbcr4202rgb-filter", kFilterRgb, kFilterRgbWords, kYcbP3_420, kRgbC3,
     LUMCONV_FN(lumiYCrCb420ToBGR_Filter_8u_P3C4R), false, true, &filteredBgrAsRgb},

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

// The function table, as far as a row needs it: each public function's
// name, layouts and sample size.
struct TableLine {
  const char* name;
  lum::Layout src, dst;
  int srcElem;
};
constexpr TableLine kLines[] = {
#define LUM_FN(name, shape, S, D, sl, dl, pat, thr, fam, minW, minH) \
  {#name, lum::Layout::sl, lum::Layout::dl, static_cast<int>(sizeof(S))},
#include "frame/lum_functions.def"
};

constexpr lum::Layout tableLayout(Layout l) {
  switch (l) {
    case Layout::C3: return lum::Layout::C3;
    case Layout::AC4: return lum::Layout::AC4;
    case Layout::P3: return lum::Layout::P3;
    case Layout::C1: return lum::Layout::C1;
    case Layout::P3_422: return lum::Layout::P3_422;
    case Layout::P3_420: return lum::Layout::P3_420;
    case Layout::P2_420: return lum::Layout::P2_420;
    case Layout::C2:
    case Layout::C2UYVY: return lum::Layout::C2;
  }
  return lum::Layout::None;
}

// A row fits its function: the function is in the table and takes and makes
// the row's layouts at the row's depth (a split row's function takes planes).
// The copy runs one-channel rows over the bytes of every plane, so it takes
// any layout of either depth.
constexpr bool shapeFits(const Conversion& c);

// A two-function row: the first function makes `via` from the input, the
// second the output from `via`; each must fit as a row of its own.
constexpr bool bothFit(const Conversion& c) {
  Conversion first = c, second = c;
  first.thenFunction = second.thenFunction = nullptr;
  first.out.layout = c.via;
  second.in.layout = c.via;
  second.functionName = c.thenFunction;
  second.split = second.crCb = false;
  return shapeFits(first) && shapeFits(second);
}

constexpr bool shapeFits(const Conversion& c) {
  if (c.thenFunction) return bothFit(c);
  if (c.in.depth != c.out.depth) return false;
  for (const TableLine& t : kLines) {
    if (!sameText(t.name, c.functionName)) continue;
    if (sameText(t.name, "lumiCopy_8u_C1R")) return c.in.layout == c.out.layout && !c.split;
    // The planes a YV12-order row exchanges are three chroma-sharing planes.
    if (c.crCb && c.in.layout != Layout::P3_420 && c.out.layout != Layout::P3_420) return false;
    // The tool's own call (a function the table cannot invoke, which it
    // lists without layouts): 4:2:0 planes to pixels.  (Whether the row has
    // its direct call is not a constant expression in every build, so the
    // function's table line decides.)
    if (t.src == lum::Layout::None)
      return c.in.layout == Layout::P3_420 && c.out.layout == Layout::C3 && c.crCb;
    const lum::Layout in = c.split ? lum::Layout::P3 : tableLayout(c.in.layout);
    if (c.split && c.in.layout != Layout::C3) return false;
    return t.src == in && t.dst == tableLayout(c.out.layout) &&
           t.srcElem == (c.in.depth == Depth::U16 ? 2 : 1);
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
      "(PGM).  P3_422 and P3_420 are planes Y, Cb, Cr with chroma at half width\n"
      "(and half height): a C422 or C420 .y4m, raw I420 or YV12; P2_420 a luma\n"
      "plane and one of Cb Cr pairs (raw NV12); C2 pixel pairs Y0 Cb Y1 Cr (raw\n"
      "YUY2; UYVY is Cb Y0 Cr Y1).  lumconv picks the form from the input and the\n"
      "output format.\n";
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

namespace {

// Whether a row's layouts share chroma: such an image of odd width or
// height is converted as the even-sized image that repeats its last column
// and row, then cut back (the library's 4:2:x functions and repacks convert
// whole pairs and cells only).
bool needsEvenSize(const Conversion& row) {
  if (std::strcmp(row.functionName, "lumiCopy_8u_C1R") == 0) return false;
  return isSubsampled(row.in.layout) || isSubsampled(row.out.layout);
}

// The multiple of rows such a row's function converts: 2, or its smallest
// height where that is more (the filtered upsampling converts heights in
// steps of 8).
int32_t rowMultiple(const Conversion& row) {
  if (row.direct) return 2;
  const lumtable::Entry* e = lumtable::find(row.functionName);
  return e && e->minHeight > 2 ? e->minHeight : 2;
}

// Rounds v up to a multiple of m.
int32_t roundUp(int32_t v, int32_t m) { return (v + m - 1) / m * m; }

// img grown to width by height (at least its own), its last column and row
// repeated.
Image padded(const Image& img, int32_t width, int32_t height, const std::string& file) {
  Image out = img;
  out.width = width;
  out.height = height;
  out.allocate(file);
  for (int p = 0; p < img.planes(); ++p) {
    const size_t from = static_cast<size_t>(img.planeStep(p));
    const size_t to = static_cast<size_t>(out.planeStep(p));
    // The bytes a pixel has in this plane, to repeat the last one.
    const size_t unit = img.layout == Layout::C3 ? 3 : img.layout == Layout::AC4 ? 4 : 1;
    for (int r = 0; r < out.planeHeight(p); ++r) {
      const int rs = r < img.planeHeight(p) ? r : img.planeHeight(p) - 1;
      const Lum8u* s = img.plane8(p) + static_cast<size_t>(rs) * from;
      Lum8u* d = out.plane8(p) + static_cast<size_t>(r) * to;
      std::memcpy(d, s, from);
      for (size_t x = from; x < to; ++x) d[x] = d[x - unit];
      // A pair of pixel pairs whose second pixel lies beyond the width:
      // that pixel's Y repeats the first's.
      if (img.width % 2 == 1 && width > img.width) {
        Lum8u* pair = d + from - 4;
        if (img.layout == Layout::C2) pair[2] = pair[0];
        if (img.layout == Layout::C2UYVY) pair[3] = pair[1];
      }
    }
  }
  return out;
}

// The top left width by height of img.
void crop(const Image& img, Image& out, const std::string& file) {
  out.layout = img.layout;
  out.depth = img.depth;
  out.allocate(file);
  for (int p = 0; p < out.planes(); ++p) {
    const size_t bytes = static_cast<size_t>(out.planeStep(p));
    for (int r = 0; r < out.planeHeight(p); ++r)
      std::memcpy(out.plane8(p) + static_cast<size_t>(r) * bytes,
                  img.plane8(p) + static_cast<size_t>(r) * static_cast<size_t>(img.planeStep(p)),
                  bytes);
  }
}

// The three planes of a C3 image.
Image splitPlanes(const Image& img, const std::string& file) {
  Image out = img;
  out.layout = Layout::P3;
  out.allocate(file);
  const size_t n = img.planeSamples();
  for (size_t i = 0; i < n; ++i)
    for (size_t c = 0; c < 3; ++c) out.data8[c * n + i] = img.data8[3 * i + c];
  return out;
}

const lumtable::Entry& entryOf(const Conversion& row) {
  const lumtable::Entry* e = lumtable::find(row.functionName);
  if (!e || !e->isImage()) fail("", std::string("no function ") + row.functionName);
  return *e;
}

void* bytesOf(Image& img) {
  return img.depth == Depth::U16 ? static_cast<void*>(img.data16.data())
                                 : static_cast<void*>(img.data8.data());
}
const void* bytesOf(const Image& img) {
  return img.depth == Depth::U16 ? static_cast<const void*>(img.data16.data())
                                 : static_cast<const void*>(img.data8.data());
}

// Runs the row's function on src (sized for it) into dst (allocated).
LumStatus run(const Conversion& row, const Image& src, Image& dst) {
  if (row.direct) {
    const void* planes[3];
    int steps[3];
    for (int p = 0; p < 3; ++p) {
      planes[p] = src.plane8(p);
      steps[p] = src.planeStep(p);
    }
    if (row.crCb) std::swap(planes[1], planes[2]), std::swap(steps[1], steps[2]);
    return row.direct(planes, steps, dst.plane8(0), dst.planeStep(0),
                      LumSize{src.width, src.height});
  }
  const lumtable::Entry& fn = entryOf(row);
  if (std::strcmp(row.functionName, "lumiCopy_8u_C1R") == 0) {
    // One-channel rows over the bytes of each plane.
    const Lum8u* s = static_cast<const Lum8u*>(bytesOf(src));
    Lum8u* d = static_cast<Lum8u*>(bytesOf(dst));
    for (int p = 0; p < src.planes(); ++p) {
      lumtable::Args a;
      const size_t offset = src.planeOffset(p) * static_cast<size_t>(src.bytesPerSample());
      a.src[0] = s + offset;
      a.dst[0] = d + offset;
      a.srcSteps[0] = a.dstSteps[0] = src.planeStep(p);
      a.roi = LumSize{src.planeStep(p), src.planeHeight(p)};
      const LumStatus status = fn.call(a);
      if (status != LumOk) return status;
    }
    return LumOk;
  }
  lumtable::Args a;
  for (int p = 0; p < src.planes(); ++p) {
    a.src[p] = static_cast<const Lum8u*>(bytesOf(src)) +
               src.planeOffset(p) * static_cast<size_t>(src.bytesPerSample());
    a.srcSteps[p] = src.planeStep(p);
  }
  for (int p = 0; p < dst.planes(); ++p) {
    a.dst[p] = static_cast<Lum8u*>(bytesOf(dst)) +
               dst.planeOffset(p) * static_cast<size_t>(dst.bytesPerSample());
    a.dstSteps[p] = dst.planeStep(p);
  }
  if (row.crCb) {  // the function's plane side is Y, Cr, Cb
    if (src.planes() == 3) std::swap(a.src[1], a.src[2]), std::swap(a.srcSteps[1], a.srcSteps[2]);
    if (dst.planes() == 3) std::swap(a.dst[1], a.dst[2]), std::swap(a.dstSteps[1], a.dstSteps[2]);
  }
  a.roi = LumSize{src.width, src.height};
  return fn.call(a);
}

}  // namespace

LumStatus convert(const Conversion& row, const Image& src, Image& dst, const std::string& file) {
  if (row.thenFunction) {
    Conversion first = row, second = row;
    first.thenFunction = second.thenFunction = nullptr;
    first.out.layout = row.via;
    second.in.layout = row.via;
    second.functionName = row.thenFunction;
    second.split = second.crCb = false;
    Image mid;
    const LumStatus a = convert(first, src, mid, file);
    const LumStatus b = convert(second, mid, dst, file);
    return a != LumOk ? a : b;
  }
  if (row.split) {
    const Image planes = splitPlanes(src, file);
    Conversion planar = row;
    planar.in.layout = Layout::P3;
    planar.split = false;
    return convert(planar, planes, dst, file);
  }
  const int32_t rows = needsEvenSize(row) ? rowMultiple(row) : 1;
  const bool pad = needsEvenSize(row) && (src.width % 2 == 1 || src.height % rows != 0);
  Image even;
  if (pad) even = padded(src, src.width + src.width % 2, roundUp(src.height, rows), file);
  const Image& in = pad ? even : src;

  Image out;
  out.width = in.width;
  out.height = in.height;
  out.layout = row.out.layout;
  out.depth = row.out.depth;
  out.model = outputModel(row, src.model);
  out.modelAssumed = row.out.model == Model::Unknown && src.modelAssumed;
  out.tags = src.tags;
  if (row.in.model == Model::RGB && row.out.layout == Layout::P3_420) out.tags.siting = "jpeg";
  // The fields are blended: the frame is progressive now.
  if (std::strcmp(row.name, "deinterlace") == 0) out.tags.interlace = "p";
  if (row.out.layout == Layout::AC4) {
    out.data8 = in.data8;  // the alpha samples stay the source's
    out.data16 = in.data16;
  } else {
    out.allocate(file);
  }
  const LumStatus status = run(row, in, out);
  if (status < 0) fail(file, std::string(row.functionName) + " returned " + statusName(status));
  if (pad) {
    dst.width = src.width;
    dst.height = src.height;
    dst.model = out.model;
    dst.modelAssumed = out.modelAssumed;
    dst.tags = out.tags;
    crop(out, dst, file);
  } else {
    dst = std::move(out);
  }
  return status;
}

namespace {

LumStatus filteredBgrAsRgb(const void* const src[3], const int srcSteps[3], Lum8u* dst,
                           int dstStep, LumSize roi) {
  // A width of 1 still gets two pixels a row from the library.
  const size_t width = static_cast<size_t>(roi.width < 2 ? 2 : roi.width);
  std::vector<Lum8u> bgra(width * 4 * static_cast<size_t>(roi.height));
  const Lum8u* const planes[3] = {static_cast<const Lum8u*>(src[0]),
                                  static_cast<const Lum8u*>(src[1]),
                                  static_cast<const Lum8u*>(src[2])};
  const LumStatus status = lumiYCrCb420ToBGR_Filter_8u_P3C4R(
      planes, srcSteps, bgra.data(), static_cast<int>(width * 4), roi, 255);
  if (status < 0) return status;
  for (int32_t y = 0; y < roi.height; ++y) {
    const Lum8u* s = bgra.data() + static_cast<size_t>(y) * width * 4;
    Lum8u* d = dst + static_cast<size_t>(y) * static_cast<size_t>(dstStep);
    for (int32_t x = 0; x < roi.width; ++x) {
      d[3 * x] = s[4 * x + 2];
      d[3 * x + 1] = s[4 * x + 1];
      d[3 * x + 2] = s[4 * x];
    }
  }
  return status;
}

}  // namespace

std::string notYet(const std::string& name, Layout in, Layout out) {
  (void)in;
  (void)out;
  if (name == "rgb2ycbcr420" || name == "rgb2ycbcr422")
    return "no conversion " + name + ": rgb2ycbcr makes YCbCr 4:2:" +
           (name == "rgb2ycbcr420" ? "0 (--out-layout I420, YV12 or NV12)"
                                   : "2 (--out-layout I422, YUY2 or UYVY)");
  if (name == "ycbcr4202rgb" || name == "ycbcr4222rgb")
    return "no conversion " + name + ": ycbcr2rgb reads YCbCr 4:2:0 and 4:2:2 (a C420 or C422 "
                                     ".y4m, raw I420, YV12, YUY2, UYVY or I422)";
  return "";
}

}  // namespace lumconv
