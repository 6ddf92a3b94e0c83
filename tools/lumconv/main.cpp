// lumconv: converts image files with liblumcc's colour conversions.
//
//   lumconv [--raw WxH] <conversion> <input> <output>
//   lumconv --list | --help | demo [folder]
//
// Exit status: 0 done, 1 a file could not be read, converted or written,
// 2 wrong usage.  Every failure is one line on stderr.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <new>
#include <string>
#include <vector>

#include "chart.h"
#include "conversions.h"
#include "file.h"
#include "image.h"
#include "io.h"
#include "lumcc.h"

namespace lumconv {
namespace {

struct UsageError {
  std::string what;
};

const char kHelp[] =
    "usage: lumconv <conversion> <input> <output>\n"
    "       lumconv --raw WxH <conversion> <input> <output>\n"
    "       lumconv --list\n"
    "       lumconv demo [folder]\n"
    "       lumconv --help\n"
    "\n"
    "Converts an image file with one of liblumcc's colour conversions\n"
    "(lumconv --list shows them).  The input's format comes from its first\n"
    "bytes, the output's from its extension:\n"
    "  .ppm   PPM (P6), 3 samples a pixel, maxval 255 or 65535\n"
    "  .pam   PAM (P7), DEPTH 3, or 4 with alpha (TUPLTYPE RGB_ALPHA, YUV_ALPHA...);\n"
    "         alpha is carried over unchanged\n"
    "  .pgm   PGM (P5), the three planes one above the other (height 3 H)\n"
    "  .pnm   PPM, PAM or PGM, as the image comes\n"
    "  .y4m   YUV4MPEG2 with C444: 8-bit planes Y, U, V\n"
    "  .yuv .rgbp .raw\n"
    "         headerless 8-bit planes (Y, U, V or R, G, B); as input they need\n"
    "         --raw WxH, and the file must hold whole frames\n"
    "16-bit samples (maxval 65535, big-endian) go to the conversions that have a\n"
    "16u form.  Pixels (PPM, PAM) use the library's pixel-order functions\n"
    "(C3, AC4), planes (.y4m, .pgm, raw) its planar ones (P3, C3P3, P3C3).\n"
    "Every frame of the input is converted: all frames of a .y4m or raw file,\n"
    "all images of a PNM stream; a .ppm, .pam or .pgm output then holds them one\n"
    "after the other.\n"
    "\n"
    "lumconv demo [folder] converts a built-in colour chart RGB -> YUV -> RGB,\n"
    "through the pixel-order and the planar functions, prints the largest\n"
    "difference per channel and writes chart.ppm, chart.y4m and roundtrip.ppm\n"
    "to folder (default lumconv-demo).\n"
    "\n"
    "Exit status: 0 done, 1 a file could not be read, converted or written,\n"
    "2 wrong usage.\n";

void warnStatus(const std::string& file, const Conversion& row, LumStatus status) {
  if (status > 0)
    std::fprintf(stderr, "lumconv: %s: warning: %s returned %s\n", file.c_str(), row.functionName,
                 statusName(status).c_str());
}

std::string describe(const Image& img) {
  return std::to_string(img.width) + "x" + std::to_string(img.height) + " " + depthName(img.depth) +
         " " + layoutName(img.layout);
}

int convertFile(const std::string& name, const std::string& input, const std::string& output,
                const RawSize& raw) {
  const Conversion* any = findName(name);
  if (!any) throw UsageError{"unknown conversion '" + name + "' (lumconv --list shows them)"};

  auto reader = openReader(input, raw);
  Image src;
  if (!reader->next(src)) fail(input, "no frames");
  auto checkModel = [&](const Image& frame) {
    if (frame.model != Model::Unknown && frame.model != any->in.model)
      fail(input, std::string("holds ") + modelName(frame.model) + "; " + name + " takes " +
                      modelName(any->in.model));
  };
  checkModel(src);

  const FileFormat format = outputFormat(output);
  const Layout outLayout = outputLayout(format, src.layout);
  const Conversion* row = findConversion(name, src.layout, outLayout, src.depth);
  if (!row)
    fail(input, name + " has no " + depthName(src.depth) + " " + formName(src.layout, outLayout) +
                    " form for " + formatName(reader->format()) + " to " + formatName(format) +
                    " (its forms: " + formsOf(name) + ")");

  Image shape;  // what the output frames will be, to check the format first
  shape.width = src.width;
  shape.height = src.height;
  shape.layout = row->out.layout;
  shape.depth = row->out.depth;
  shape.model = row->out.model;
  checkWritable(output, format, shape);
  if (sameFile(input, output)) fail(output, "is the input file too");

  auto writer = openWriter(output, format);
  const std::string firstShape = describe(src);
  long frames = 0;
  Image dst;
  do {
    if (frames > 0) {
      checkModel(src);
      if (src.width != shape.width || src.height != shape.height || src.layout != row->in.layout ||
          src.depth != row->in.depth)
        fail(input, "frame " + std::to_string(frames + 1) + " is " + describe(src) +
                        ", the first " + firstShape);
    }
    warnStatus(input, *row, convert(*row, src, dst, input));
    writer->write(dst);
    ++frames;
  } while (reader->next(src));
  writer->close();
  std::printf("%s -> %s: %dx%d, %ld frame%s, %s\n", input.c_str(), output.c_str(), shape.width,
              shape.height, frames, frames == 1 ? "" : "s", row->functionName);
  return 0;
}

// Writes one frame to path in format.
void writeFile(const std::string& path, FileFormat format, const Image& img) {
  checkWritable(path, format, img);
  auto writer = openWriter(path, format);
  writer->write(img);
  writer->close();
}

// Largest |a - b| of each of the three channels of two C3 images.
void largestDifference(const Image& a, const Image& b, int diff[3]) {
  diff[0] = diff[1] = diff[2] = 0;
  for (size_t i = 0; i < a.data8.size(); ++i) {
    const int d = std::abs(static_cast<int>(a.data8[i]) - static_cast<int>(b.data8[i]));
    if (d > diff[i % 3]) diff[i % 3] = d;
  }
}

const Conversion& demoRow(const char* name, Layout in, Layout out) {
  const Conversion* row = findConversion(name, in, out, Depth::U8);
  if (!row) fail("", std::string("the demo needs ") + name + " " + formName(in, out));
  return *row;
}

int demo(const std::string& folder) {
  std::error_code ec;
  std::filesystem::create_directories(folder, ec);
  if (ec) fail(folder, ec.message());
  const std::string chartPpm = folder + "/chart.ppm";
  const std::string chartY4m = folder + "/chart.y4m";
  const std::string roundtripPpm = folder + "/roundtrip.ppm";

  const Image chart = makeChart();
  std::printf("lumconv demo: colour chart %dx%d, RGB -> YUV 4:4:4 -> RGB\n", chart.width,
              chart.height);

  // Pixel order: C3 to C3 and back.
  const Conversion& toYuv = demoRow("rgb2yuv", Layout::C3, Layout::C3);
  const Conversion& toRgb = demoRow("yuv2rgb", Layout::C3, Layout::C3);
  Image yuv, back;
  warnStatus("chart", toYuv, convert(toYuv, chart, yuv, "chart"));
  warnStatus("chart", toRgb, convert(toRgb, yuv, back, "chart"));
  int diff[3];
  largestDifference(chart, back, diff);
  std::printf("  pixel order, %s + %s: largest difference R %d, G %d, B %d\n", toYuv.functionName,
              toRgb.functionName, diff[0], diff[1], diff[2]);

  // Planar: C3 to P3, through chart.y4m as written and read back, P3 to C3.
  const Conversion& toPlanes = demoRow("rgb2yuv", Layout::C3, Layout::P3);
  const Conversion& fromPlanes = demoRow("yuv2rgb", Layout::P3, Layout::C3);
  Image planes;
  warnStatus("chart", toPlanes, convert(toPlanes, chart, planes, "chart"));
  writeFile(chartPpm, FileFormat::PPM, chart);
  writeFile(chartY4m, FileFormat::Y4M, planes);
  Image reread;
  if (!openReader(chartY4m, RawSize{})->next(reread)) fail(chartY4m, "no frames");
  if (reread.data8 != planes.data8) fail(chartY4m, "reads back different from what was written");
  Image roundtrip;
  warnStatus(chartY4m, fromPlanes, convert(fromPlanes, reread, roundtrip, chartY4m));
  writeFile(roundtripPpm, FileFormat::PPM, roundtrip);
  largestDifference(chart, roundtrip, diff);
  std::printf("  planar, %s + %s: largest difference R %d, G %d, B %d\n", toPlanes.functionName,
              fromPlanes.functionName, diff[0], diff[1], diff[2]);

  std::printf(
      "  (V = 0.877 (R - Y) + 128 leaves 0..255 for saturated reds and magentas,\n"
      "  which come back darker in R)\n");
  std::printf("wrote %s (the chart, RGB)\n", chartPpm.c_str());
  std::printf("wrote %s (the chart as YUV 4:4:4 planes)\n", chartY4m.c_str());
  std::printf("wrote %s (RGB again, from %s)\n", roundtripPpm.c_str(), chartY4m.c_str());
  return 0;
}

int run(int argc, char** argv) {
  std::vector<std::string> args;
  RawSize raw;
  bool list = false, help = false, options = true;
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    if (options && a == "--") {
      options = false;
    } else if (options && (a == "--help" || a == "-h")) {
      help = true;
    } else if (options && a == "--list") {
      list = true;
    } else if (options && (a == "--raw" || a.compare(0, 6, "--raw=") == 0)) {
      std::string size;
      if (a == "--raw") {
        if (i + 1 >= argc) throw UsageError{"--raw needs a size WxH"};
        size = argv[++i];
      } else {
        size = a.substr(6);
      }
      if (!parseRawSize(size, raw)) throw UsageError{"--raw size '" + size + "' is not WxH"};
    } else if (options && a.size() > 1 && a[0] == '-') {
      throw UsageError{"unknown option '" + a + "' (lumconv --help)"};
    } else {
      args.push_back(a);
    }
  }
  if (help) {
    std::fputs(kHelp, stdout);
    return 0;
  }
  if (list) {
    std::fputs(listing().c_str(), stdout);
    return 0;
  }
  if (args.empty()) throw UsageError{"no conversion given (lumconv --help)"};
  if (args[0] == "demo") {
    if (args.size() > 2) throw UsageError{"demo takes one folder at most"};
    if (raw.given) throw UsageError{"demo takes no --raw"};
    return demo(args.size() == 2 ? args[1] : "lumconv-demo");
  }
  if (args.size() != 3) throw UsageError{"expected <conversion> <input> <output> (lumconv --help)"};
  return convertFile(args[0], args[1], args[2], raw);
}

}  // namespace
}  // namespace lumconv

int main(int argc, char** argv) {
  using namespace lumconv;
  try {
    return run(argc, argv);
  } catch (const Error& e) {
    if (e.file.empty())
      std::fprintf(stderr, "lumconv: %s\n", e.what.c_str());
    else
      std::fprintf(stderr, "lumconv: %s: %s\n", e.file.c_str(), e.what.c_str());
  } catch (const UsageError& e) {
    std::fprintf(stderr, "lumconv: %s\n", e.what.c_str());
    return 2;
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "lumconv: out of memory\n");
  } catch (const std::exception& e) {
    std::fprintf(stderr, "lumconv: %s\n", e.what());
  } catch (...) {
    std::fprintf(stderr, "lumconv: unexpected failure\n");
  }
  return 1;
}
