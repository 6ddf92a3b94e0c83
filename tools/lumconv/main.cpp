// lumconv: converts image files with liblumcc's colour conversions.
//
//   lumconv [options] <conversion> <input> <output>
//   lumconv --list | --help | --version | demo [folder]
//
// Exit status: 0 done, 1 a file could not be read, converted or written,
// 2 wrong usage.  Every failure is one line on stderr.
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
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

#ifndef LUMCONV_VERSION
#define LUMCONV_VERSION "unknown"
#endif

namespace lumconv {
namespace {

struct UsageError {
  std::string what;
};

const char kHelp[] =
    "usage: lumconv <conversion> <input> <output> [options]\n"
    "       lumconv --list        the conversions, and what they do\n"
    "       lumconv --version     this tool's and the library's version\n"
    "       lumconv demo [folder]\n"
    "       lumconv --help\n"
    "\n"
    "Converts an image file with one of liblumcc's colour conversions\n"
    "(lumconv --list shows them).  The input's format comes from its first\n"
    "bytes, the output's from its extension (or --to):\n"
    "  .ppm   PPM (P6), 3 samples a pixel, maxval 255 or 65535\n"
    "  .pam   PAM (P7), DEPTH 3, or 4 with alpha (TUPLTYPE RGB_ALPHA, YUV_ALPHA...);\n"
    "         alpha is carried over unchanged\n"
    "  .pgm   PGM (P5): read, one grey image, or with --planes three planes one\n"
    "         above the other (height 3 H); planes are written that way\n"
    "  .pnm   PPM, PAM or PGM, as the image comes\n"
    "  .y4m   YUV4MPEG2, 8-bit planes Y, Cb, Cr: C444, C422, C420jpeg, C420mpeg2,\n"
    "         C420paldv, C420; the frame rate and aspect of a .y4m input are kept\n"
    "         (else 25:1 and 1:1, or --rate, --aspect)\n"
    "  .yuv .rgbp .raw\n"
    "         headerless 8-bit frames: three planes (Y, U, V or R, G, B), or with\n"
    "         --layout / --out-layout I420, YV12, NV12, YUY2, UYVY, I422; as input\n"
    "         they need --raw WxH, and the file must hold whole frames\n"
    "\n"
    "Colour models: a .y4m holds YCbCr, studio range (Y 16..235), as every other\n"
    "tool reads it: rgb2ycbcr and ycbcr2rgb convert RGB to and from it, and write\n"
    "it tagged XCOLORRANGE=LIMITED; a file tagged XCOLORRANGE=FULL is refused.\n"
    "This library's own YUV (U = 0.492 (B - Y) + 128, V = 0.877 (R - Y) + 128) is a\n"
    "different model: rgb2yuv, rgb2yuv422, rgb2yuv420 and their inverses write it\n"
    "tagged XLUMCC_MODEL=YUV and read only it (or, with --model yuv, another\n"
    "tool's YCbCr samples as if they were YUV: the colours shift).  ycbcr2rgb\n"
    "reads 4:2:2 and 4:2:0 too; rgb2ycbcr writes them with --out-layout (a .y4m\n"
    "is C444 unless told: --out-layout I420 for the 4:2:0 most players want).\n"
    "Chroma siting: the library's 4:2:0 takes the mean of each 2x2 cell, so its\n"
    "chroma sits at the cell's centre (C420jpeg, which lumconv writes); a\n"
    "C420mpeg2, C420paldv or plain C420 input is read as if centred.\n"
    "16-bit samples (maxval 65535, big-endian) go to the conversions that have a\n"
    "16u form.  Pixels (PPM, PAM) use the library's pixel-order functions\n"
    "(C3, AC4), planes (.y4m, PGM with --planes, raw) its planar ones (P3, C3P3,\n"
    "P3C3).  Every frame of the input is converted: all frames of a .y4m or raw\n"
    "file, all images of a PNM stream; a .ppm, .pam or .pgm output then holds\n"
    "them one after the other.  The output appears only when complete: a failed\n"
    "or interrupted run leaves an existing output file as it was.\n"
    "Video conversions: repack (among I420, YV12, NV12, YUY2, UYVY, I422),\n"
    "deinterlace (4:2:0), upsample-filter (4:2:0 to 4:2:2, filtered) and\n"
    "ycbcr4202rgb-filter (chroma interpolated along the rows); --list says more.\n"
    "\n"
    "Options:\n"
    "  -              as <input>: standard input; as <output>: standard output\n"
    "  --to FORMAT    the output's format (ppm, pam, pgm, pnm, y4m, yuv, rgbp, raw);\n"
    "                 needed when the output is -\n"
    "  --raw WxH      the input is headerless frames of this size\n"
    "  --layout NAME  their layout: I420, YV12, NV12, YUY2, UYVY, I422 or I444\n"
    "                 (the default: three full planes)\n"
    "  --out-layout NAME\n"
    "                 the layout of a raw or .y4m output (a .y4m: I420, I422 or\n"
    "                 I444); repack needs it\n"
    "  --model yuv|ycbcr\n"
    "                 read a .y4m or raw input as this model: yuv reads another\n"
    "                 tool's YCbCr samples as this library's YUV\n"
    "  --planes       read a PGM as three planes one above the other\n"
    "  --rate A:B     frame rate of a .y4m output (e.g. 30000:1001)\n"
    "  --aspect A:B   pixel aspect of a .y4m output (e.g. 1:1)\n"
    "  -q, --quiet    no summary line on stderr\n"
    "  --progress     show progress on stderr even when it is not a terminal\n"
    "                 (on a terminal it shows by itself)\n"
    "\n"
    "Examples:\n"
    "  lumconv rgb2yuv photo.ppm photo.y4m\n"
    "  lumconv yuv2rgb photo.y4m back.ppm\n"
    "  lumconv rgb2ycbcr photo.ppm video.y4m        (YCbCr 4:4:4, as other tools read it)\n"
    "  lumconv rgb2yuv420 photo.ppm photo420.y4m\n"
    "  lumconv yuv4202rgb --model yuv other.y4m out.ppm\n"
    "  lumconv repack --raw 640x360 --layout NV12 in.yuv out.yuv --out-layout I420\n"
    "  cat photo.ppm | lumconv rgb2hsv - - --to ppm > photo-hsv.ppm\n"
    "\n"
    "lumconv demo [folder] converts a built-in colour chart RGB -> YUV -> RGB,\n"
    "through the pixel-order and the planar functions, prints the largest\n"
    "difference per channel and writes chart.ppm, chart.y4m and roundtrip.ppm\n"
    "to folder (default lumconv-demo).\n"
    "\n"
    "Exit status: 0 done, 1 a file could not be read, converted or written,\n"
    "2 wrong usage.\n";

struct Options {
  ReadOptions read;
  bool layoutGiven = false;
  bool outLayoutGiven = false;  // --out-layout
  Layout outLayout = Layout::P3;
  bool outSwap = false;
  std::string to;  // the output's extension from --to, lower case
  std::string rate, aspect;
  bool quiet = false;
  bool progress = false;  // --progress: also when stderr is not a terminal
};

// Frames done (of how many, when the input's size tells) on stderr, on one
// line rewritten in place, at most ten times a second.  The line ends when
// the run ends, an error too (the destructor), so that a message that
// follows starts a line of its own.
class Progress {
 public:
  Progress(bool on, const std::string& output) : on_(on), output_(output) {}
  ~Progress() { end(); }

  void frameDone(long frames, int64_t total) {
    if (!on_) return;
    const auto now = std::chrono::steady_clock::now();
    if (shown_ && now - last_ < std::chrono::milliseconds(100)) {
      pending_ = true;
      frames_ = frames;
      total_ = total;
      return;
    }
    frames_ = frames;
    total_ = total;
    show();
    last_ = now;
  }

  // Shows the last count and ends the line.
  void end() {
    if (!on_) return;
    if (pending_) show();
    if (shown_) std::fputc('\n', stderr);
    on_ = false;
  }

 private:
  void show() {
    std::fprintf(stderr, "\rlumconv: %s: frame %ld", output_.c_str(), frames_);
    if (total_ >= frames_) std::fprintf(stderr, " of %lld", static_cast<long long>(total_));
    std::fputs("  ", stderr);  // over the end of a longer line before
    std::fflush(stderr);
    shown_ = true;
    pending_ = false;
  }

  bool on_;
  std::string output_;
  bool shown_ = false, pending_ = false;
  long frames_ = 0;
  int64_t total_ = -1;
  std::chrono::steady_clock::time_point last_;
};

void warnStatus(const std::string& file, const Conversion& row, LumStatus status) {
  if (status > 0)
    std::fprintf(stderr, "lumconv: %s: warning: %s returned %s\n", file.c_str(), row.functionName,
                 statusName(status).c_str());
}

std::string describe(const Image& img) {
  return std::to_string(img.width) + "x" + std::to_string(img.height) + " " + depthName(img.depth) +
         " " + layoutName(img.layout);
}

// "RGB pixels", "YUV planes", "grey pixels", ... (the model left out when
// not known).
std::string kindWords(Layout layout, Model model) {
  std::string m = model == Model::Unknown ? "" : std::string(modelName(model)) + " ";
  switch (layout) {
    case Layout::C3: return m + "pixels";
    case Layout::AC4: return m + "pixels with alpha";
    case Layout::P3: return m + "planes";
    case Layout::C1: return "grey images";
    case Layout::P3_422: return m + "4:2:2 planes";
    case Layout::P3_420: return m + "4:2:0 planes";
    case Layout::P2_420: return m + "NV12 frames";
    case Layout::C2: return m + "YUY2 frames";
    case Layout::C2UYVY: return m + "UYVY frames";
  }
  return "?";
}

// The input formats that give `layout`.
std::string inputFormats(Layout layout) {
  switch (layout) {
    case Layout::C3: return "a PPM or PAM";
    case Layout::AC4: return "a PAM with alpha";
    case Layout::P3: return "a .y4m, raw planes (--raw WxH) or a PGM with --planes";
    case Layout::C1: return "a grey PGM";
    case Layout::P3_422: return "a C422 .y4m or raw I422 (--layout I422)";
    case Layout::P3_420: return "a C420 .y4m or raw I420, YV12 (--layout I420)";
    case Layout::P2_420: return "raw NV12 (--layout NV12)";
    case Layout::C2: return "raw YUY2 (--layout YUY2)";
    case Layout::C2UYVY: return "raw UYVY (--layout UYVY)";
  }
  return "?";
}

// The output formats that store `layout` of `model`.
std::string outputFormats(Layout layout, Model model) {
  switch (layout) {
    case Layout::C3: return "a .ppm or .pam";
    case Layout::AC4: return "a .pam";
    case Layout::C1: return "a .pgm";
    case Layout::P3:
      if (model == Model::YUV) return "a .y4m, .yuv or .pgm";
      if (model == Model::RGB) return "a .rgbp or .pgm";
      return "a .pgm or .raw";
    case Layout::P3_422: return "a .y4m or raw frames with --out-layout I422";
    case Layout::P3_420: return "a .y4m or raw frames with --out-layout I420";
    case Layout::P2_420: return "raw frames with --out-layout NV12";
    case Layout::C2: return "raw frames with --out-layout YUY2";
    case Layout::C2UYVY: return "raw frames with --out-layout UYVY";
  }
  return "?";
}

// "a or b", "a, b or c".
std::string joinOr(const std::vector<std::string>& items) {
  std::string text;
  for (size_t i = 0; i < items.size(); ++i) {
    if (i > 0) text += i + 1 == items.size() ? " or " : ", ";
    text += items[i];
  }
  return text;
}

// The files a conversion can write, e.g. "a .ppm or .pam".
std::string outputsOf(const Conversion& any) {
  std::vector<std::string> outs;
  size_t count = 0;
  const Conversion* table = conversionTable(&count);
  for (size_t i = 0; i < count; ++i) {
    if (std::string(any.name) != table[i].name) continue;
    const Layout layout = table[i].out.layout == Layout::AC4 ? Layout::C3 : table[i].out.layout;
    const std::string w = outputFormats(layout, table[i].out.model);
    bool seen = false;
    for (const auto& x : outs) seen = seen || x == w;
    if (!seen) outs.push_back(w);
  }
  return joinOr(outs);
}

// The conversions that take `model`, e.g. "rgb2yuv, rgb2hsv or rgb2hls".
std::string conversionsTaking(Model model) {
  std::vector<std::string> names;
  size_t count = 0;
  const Conversion* table = conversionTable(&count);
  for (size_t i = 0; i < count; ++i) {
    if (table[i].in.model != model) continue;
    bool seen = false;
    for (const auto& x : names) seen = seen || x == table[i].name;
    if (!seen) names.push_back(table[i].name);
  }
  return joinOr(names);
}

// What to do when `name` has no row for a `src` frame going to `format`
// (stored as `outLayout`): plain words first, the forms in brackets.
std::string explainNoForm(const Conversion& any, const Image& src, const std::string& input,
                          FileFormat inFormat, FileFormat format, Layout outLayout) {
  const std::string name = any.name;
  const std::string technical = " (" + name + " has no " + depthName(src.depth) + " " +
                                formName(src.layout, outLayout) + " form; its forms: " +
                                formsOf(name) + ")";
  std::string example = "pamdepth 255 in.ppm >in-8bit.ppm";
  if (input != "-") {
    const size_t dot = input.find_last_of('.');
    const size_t slash = input.find_last_of('/');
    const std::string stem = dot != std::string::npos && (slash == std::string::npos || dot > slash)
                                 ? input.substr(0, dot)
                                 : input;
    example = "pamdepth 255 " + input + " >" + stem + "-8bit.ppm";
  }
  const bool wide = src.depth == Depth::U16;
  const std::string fmt = formatName(format);

  if (src.layout == Layout::C1 && !hasForm(name, Layout::C1, src.depth))
    return name + " needs three channels (" + modelName(any.in.model) +
           "); this PGM is one grey image.  If it holds three planes one above the other "
           "(as lumconv writes them to a .pgm), give --planes" + technical;
  if (wide && (format == FileFormat::Y4M || format == FileFormat::Raw)) {
    if (!hasDepth(name, Depth::U16))
      return fmt + " output is 8-bit and " + name +
             " takes 8-bit samples only: reduce the input to 8 bits first, e.g. " + example +
             technical;
    return fmt + " output is 8-bit: write " + outputFormats(src.layout, any.out.model) +
           ", or reduce the input to 8 bits first, e.g. " + example + technical;
  }
  if (!hasDepth(name, src.depth))
    return name + " takes " + (wide ? "8-bit" : "16-bit") + " samples only and this " +
           formatName(inFormat) + " has " + (wide ? "16-bit ones (maxval 65535)" : "8-bit ones") +
           (wide ? ": reduce it to 8 bits first, e.g. " + example : std::string()) + technical;
  if (src.layout == Layout::AC4 && outLayout == Layout::P3)
    return fmt + " has no alpha channel: write a .pam to keep the alpha, or drop it first "
                 "(e.g. ffmpeg -i in.pam -pix_fmt rgb24 in.ppm)" + technical;

  // Which inputs make the wanted output, and which outputs this input makes.
  std::vector<std::string> ins, outs;
  size_t count = 0;
  const Conversion* table = conversionTable(&count);
  for (size_t i = 0; i < count; ++i) {
    const Conversion& c = table[i];
    if (name != c.name || c.in.depth != src.depth) continue;
    if (c.out.layout == outLayout) {
      const std::string w = inputFormats(c.in.layout);
      bool seen = false;
      for (const auto& x : ins) seen = seen || x == w;
      if (!seen) ins.push_back(w);
    }
    if (c.in.layout == src.layout) {
      const std::string w = outputFormats(c.out.layout, outputModel(c, src.model));
      bool seen = false;
      for (const auto& x : outs) seen = seen || x == w;
      if (!seen) outs.push_back(w);
    }
  }
  const Model outModel = outputModel(any, src.model);
  std::string text;
  if (!ins.empty())
    text = name + " makes " + kindWords(outLayout, outModel) + " (" + fmt +
           ") only from other input: give it " + joinOr(ins);
  else
    text = name + " makes no " + kindWords(outLayout, outModel) + " (" + fmt + ")";
  if (!outs.empty()) text += (ins.empty() ? ": write " : ", or write ") + joinOr(outs);
  return text + technical;
}

// The layout the output stores: --out-layout; for a .y4m or raw output the
// first of the conversion's forms from the input's layout that the format
// holds; else what the format stores for the input.
Layout chooseOutLayout(const std::string& name, const Image& src, FileFormat format,
                       const Options& opts) {
  if (opts.outLayoutGiven) return opts.outLayout;
  const bool video = format == FileFormat::Y4M || format == FileFormat::Raw;
  if (!video) return outputLayout(format, src.layout);
  size_t count = 0;
  const Conversion* table = conversionTable(&count);
  for (size_t i = 0; i < count; ++i) {
    const Conversion& c = table[i];
    if (name != c.name || c.in.layout != src.layout || c.in.depth != src.depth) continue;
    const Layout l = c.out.layout;
    if (l == Layout::P3 || l == Layout::P3_422 || l == Layout::P3_420) return l;
  }
  return isSubsampled(src.layout) ? src.layout : Layout::P3;
}

int convertFile(const std::string& name, const std::string& input, const std::string& output,
                const Options& opts) {
  const Conversion* any = findName(name);
  if (!any) {
    const std::string pending = notYet(name, Layout::P3, Layout::P3);
    if (!pending.empty()) fail("", pending);
    throw UsageError{"unknown conversion '" + name + "' (lumconv --list shows them)"};
  }
  if (output == "-" && opts.to.empty())
    throw UsageError{"writing to standard output (-) needs --to FORMAT (ppm, pam, pgm, pnm, y4m, "
                     "yuv, rgbp or raw)"};
  const std::string inName = displayName(input, false);
  const std::string outName = displayName(output, true);
  const std::string ext = opts.to.empty() ? extensionOf(output) : opts.to;

  // What the output can hold is checked before any input is read.
  const FileFormat format = outputFormat(outName, ext);
  if (any->out.model != Model::Unknown)
    checkModel(outName, format, ext, any->out.model, outputsOf(*any));
  if (sameFile(input, output)) fail(output, "is the input file too");

  auto reader = openReader(input, opts.read);
  const int64_t start = reader->position();
  Image src;
  if (!reader->next(src)) fail(inName, "no frames");
  // The bytes of one frame, for the progress display's count of frames.
  const int64_t record = start >= 0 ? reader->position() - start : -1;
  auto checkInputModel = [&](const Image& frame) {
    if (frame.model == Model::Unknown || any->in.model == Model::Unknown ||
        frame.model == any->in.model)
      return;
    const bool video = any->in.model == Model::YUV || any->in.model == Model::YCbCr;
    if (frame.modelAssumed && video) return;
    if (frame.model == Model::YCbCr && any->in.model == Model::YUV) {
      fail(inName, "holds YCbCr, as video files do; " + name +
                       " takes this library's YUV, a different colour model: give --model yuv "
                       "to read the samples as YUV anyway (or use ycbcr2rgb)");
    }
    const std::string others = conversionsTaking(frame.model);
    fail(inName, std::string("holds ") + modelName(frame.model) + "; " + name + " takes " +
                     modelName(any->in.model) +
                     (others.empty() ? std::string()
                                     : std::string(" (") + modelName(frame.model) + " goes to " +
                                           others + ")"));
  };
  if (notYet(name, src.layout, Layout::C3).empty()) {
    if (reader->format() == FileFormat::Y4M && src.layout == Layout::P3_420 &&
        !hasForm(name, Layout::P3_420, src.depth)) {
      // (YCbCr 4:2:0 to RGB says so itself.)
      const std::string other =
          any->in.model == Model::RGB ? "" : "; yuv4202rgb converts 4:2:0";
      fail(inName, (src.tags.chromaTag.empty() ? "no C tag, so 4:2:0 (C420jpeg), which"
                                               : src.tags.chromaTag) +
                       std::string(" is not supported by ") + name + " (4:2:0; its forms: " +
                       formsOf(name) + ")" + other);
    }
  }
  checkInputModel(src);

  const Layout outLayout = chooseOutLayout(name, src, format, opts);
  const Conversion* row = findConversion(name, src.layout, outLayout, src.depth);
  if (!row) {
    const std::string pending = notYet(name, src.layout, outLayout);
    if (!pending.empty()) fail(inName, pending);
    if (isSubsampled(src.layout) || isSubsampled(outLayout))
      fail(inName, name + " has no " + formName(src.layout, outLayout) + " form (" +
                       kindWords(src.layout, src.model) + " to " +
                       kindWords(outLayout, outputModel(*any, src.model)) + "); its forms: " +
                       formsOf(name));
    fail(inName, explainNoForm(*any, src, input, reader->format(), format, outLayout));
  }

  Image shape;  // what the output frames will be, to check the format first
  shape.width = src.width;
  shape.height = src.height;
  shape.layout = row->out.layout;
  shape.depth = row->out.depth;
  shape.model = outputModel(*row, src.model);
  checkWritable(outName, format, ext, shape, outputsOf(*row));

  auto writer = openWriter(output, format, opts.outSwap);
  const std::string firstShape = describe(src);
  Progress progress(!opts.quiet && (opts.progress || isatty(STDERR_FILENO)), outName);
  long frames = 0;
  Image dst;
  do {
    if (frames > 0) {
      checkInputModel(src);
      if (src.width != shape.width || src.height != shape.height || src.layout != row->in.layout ||
          src.depth != row->in.depth)
        fail(inName, "frame " + std::to_string(frames + 1) + " is " + describe(src) +
                         ", the first " + firstShape);
    }
    warnStatus(inName, *row, convert(*row, src, dst, inName));
    if (!opts.rate.empty()) dst.tags.frameRate = opts.rate;
    if (!opts.aspect.empty()) dst.tags.aspect = opts.aspect;
    writer->write(dst);
    ++frames;
    const int64_t left = reader->remaining();
    progress.frameDone(frames, record > 0 && left >= 0 ? frames + left / record : -1);
  } while (reader->next(src));
  writer->close();
  progress.end();
  if (!opts.quiet) {
    std::string video;
    if (format == FileFormat::Y4M)
      video = ", F" + dst.tags.frameRate + " A" + dst.tags.aspect;
    // A two-function row names both, in the order they run.
    const std::string functions =
        std::string(row->functionName) +
        (row->thenFunction ? std::string(" + ") + row->thenFunction : std::string());
    std::fprintf(stderr, "%s -> %s: %dx%d, %ld frame%s, %s%s\n", inName.c_str(), outName.c_str(),
                 shape.width, shape.height, frames, frames == 1 ? "" : "s", functions.c_str(),
                 video.c_str());
  }
  return 0;
}

int version() {
  const LumLibraryVersion* v = lumccGetLibVersion();
  std::printf("lumconv %s\n", LUMCONV_VERSION);
  if (!v) {
    std::printf("library: no version record\n");
    return 1;
  }
  const std::string tag(v->cpuTag, strnlen(v->cpuTag, sizeof v->cpuTag));
  std::printf("library %s, version %s (%d.%d.%d.%d), %s build, of %s\n",
              v->fileName ? v->fileName : "?", v->versionText ? v->versionText : "?",
              v->versionMajor, v->versionMinor, v->buildMajor, v->buildMinor, tag.c_str(),
              v->buildDate ? v->buildDate : "?");
  return 0;
}

// Writes one frame to path in format.
void writeFile(const std::string& path, FileFormat format, const Image& img) {
  checkWritable(path, format, extensionOf(path), img);
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
  if (!openReader(chartY4m, ReadOptions{})->next(reread)) fail(chartY4m, "no frames");
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

// A ratio "A:B" of two positive numbers, as Y4M tags take it.
bool isRatio(const std::string& text) {
  const size_t colon = text.find(':');
  if (colon == std::string::npos || colon == 0 || colon + 1 == text.size() || text.size() > 21)
    return false;
  for (size_t i = 0; i < text.size(); ++i)
    if (i != colon && (text[i] < '0' || text[i] > '9')) return false;
  return true;
}

int run(int argc, char** argv) {
  std::vector<std::string> args;
  Options opts;
  bool list = false, help = false, showVersion = false, options = true;
  // The value of an option given as "--name value" or "--name=value".
  auto value = [&](int& i, const std::string& a, const std::string& option,
                   const char* what) -> std::string {
    if (a == option) {
      if (i + 1 >= argc) throw UsageError{option + " needs " + what};
      return argv[++i];
    }
    return a.substr(option.size() + 1);
  };
  auto is = [](const std::string& a, const std::string& option) {
    return a == option || a.compare(0, option.size() + 1, option + "=") == 0;
  };
  for (int i = 1; i < argc; ++i) {
    const std::string a = argv[i];
    if (options && a == "--") {
      options = false;
    } else if (options && (a == "--help" || a == "-h")) {
      help = true;
    } else if (options && a == "--list") {
      list = true;
    } else if (options && a == "--version") {
      showVersion = true;
    } else if (options && (a == "-q" || a == "--quiet")) {
      opts.quiet = true;
    } else if (options && a == "--progress") {
      opts.progress = true;
    } else if (options && a == "--planes") {
      opts.read.pgmPlanes = true;
    } else if (options && is(a, "--raw")) {
      const std::string size = value(i, a, "--raw", "a size WxH");
      if (!parseRawSize(size, opts.read.raw))
        throw UsageError{"--raw size '" + size + "' is not WxH"};
    } else if (options && (is(a, "--layout") || is(a, "--out-layout"))) {
      const bool in = is(a, "--layout");
      const std::string option = in ? "--layout" : "--out-layout";
      const std::string v = value(i, a, option, "a layout name");
      Layout layout;
      bool swap = false;
      if (!layoutFromName(v, layout, swap))
        throw UsageError{option + " '" + v + "' is not a layout (" + layoutNames() + ")"};
      if (in) {
        opts.read.layout = layout;
        opts.read.swapChroma = swap;
        opts.layoutGiven = true;
      } else {
        opts.outLayout = layout;
        opts.outSwap = swap;
        opts.outLayoutGiven = true;
      }
    } else if (options && is(a, "--model")) {
      std::string v = value(i, a, "--model", "yuv or ycbcr");
      for (char& c : v)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
      if (v == "yuv") opts.read.model = Model::YUV;
      else if (v == "ycbcr") opts.read.model = Model::YCbCr;
      else throw UsageError{"--model '" + v + "' is not yuv or ycbcr"};
    } else if (options && is(a, "--to")) {
      std::string to = value(i, a, "--to", "a format (ppm, pam, pgm, pnm, y4m, yuv, rgbp, raw)");
      if (!to.empty() && to[0] == '.') to.erase(0, 1);
      for (char& c : to)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
      FileFormat f;
      if (!formatFromExtension(to, f))
        throw UsageError{"--to '" + to + "' is not a format lumconv writes (ppm, pam, pgm, pnm, "
                         "y4m, yuv, rgbp or raw)"};
      opts.to = to;
    } else if (options && (is(a, "--rate") || is(a, "--aspect"))) {
      const bool rate = is(a, "--rate");
      const std::string option = rate ? "--rate" : "--aspect";
      const std::string v = value(i, a, option, "a ratio A:B");
      if (!isRatio(v)) throw UsageError{option + " '" + v + "' is not a ratio A:B"};
      (rate ? opts.rate : opts.aspect) = v;
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
  if (showVersion) return version();
  if (list) {
    std::fputs(listing().c_str(), stdout);
    return 0;
  }
  if (args.empty()) throw UsageError{"no conversion given (lumconv --help)"};
  if (args[0] == "demo") {
    if (args.size() > 2) throw UsageError{"demo takes one folder at most"};
    if (opts.read.raw.given) throw UsageError{"demo takes no --raw"};
    return demo(args.size() == 2 ? args[1] : "lumconv-demo");
  }
  if (args.size() != 3) throw UsageError{"expected <conversion> <input> <output> (lumconv --help)"};
  if (opts.layoutGiven && !opts.read.raw.given)
    throw UsageError{"--layout names the layout of headerless frames: give --raw WxH too"};
  if (args[0] == "repack" && !opts.outLayoutGiven)
    throw UsageError{std::string("repack needs --out-layout (") + layoutNames() + ")"};
  return convertFile(args[0], args[1], args[2], opts);
}

}  // namespace
}  // namespace lumconv

int main(int argc, char** argv) {
  using namespace lumconv;
  installSignalCleanup();
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
