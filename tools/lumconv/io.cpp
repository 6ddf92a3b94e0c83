#include "io.h"

#include "file.h"
#include "pnm.h"
#include "raw.h"
#include "y4m.h"

namespace lumconv {

namespace {

bool isRawExtension(const std::string& ext) {
  return ext == "yuv" || ext == "rgbp" || ext == "raw";
}

}  // namespace

std::string extensionOf(const std::string& path) {
  const size_t slash = path.find_last_of('/');
  const size_t dot = path.find_last_of('.');
  if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return "";
  std::string ext = path.substr(dot + 1);
  for (char& c : ext)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return ext;
}

bool formatFromExtension(const std::string& ext, FileFormat& format) {
  if (ext == "ppm") format = FileFormat::PPM;
  else if (ext == "pgm") format = FileFormat::PGM;
  else if (ext == "pam") format = FileFormat::PAM;
  else if (ext == "pnm") format = FileFormat::PNM;
  else if (ext == "y4m") format = FileFormat::Y4M;
  else if (isRawExtension(ext)) format = FileFormat::Raw;
  else return false;
  return true;
}

const char* knownExtensions() {
  return ".ppm, .pam, .pgm, .pnm, .y4m, .yuv, .rgbp or .raw";
}

const char* formatName(FileFormat format) {
  switch (format) {
    case FileFormat::PPM: return "PPM";
    case FileFormat::PGM: return "PGM";
    case FileFormat::PAM: return "PAM";
    case FileFormat::PNM: return "PNM";
    case FileFormat::Y4M: return "YUV4MPEG2";
    case FileFormat::Raw: return "raw planes";
  }
  return "?";
}

bool layoutFromName(const std::string& text, Layout& layout, bool& swapChroma) {
  std::string name = text;
  for (char& c : name)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  swapChroma = false;
  if (name == "I420" || name == "420" || name == "IYUV") layout = Layout::P3_420;
  else if (name == "YV12") layout = Layout::P3_420, swapChroma = true;
  else if (name == "NV12") layout = Layout::P2_420;
  else if (name == "YUY2" || name == "YUYV") layout = Layout::C2;
  else if (name == "UYVY") layout = Layout::C2UYVY;
  else if (name == "I422" || name == "422") layout = Layout::P3_422;
  else if (name == "I444" || name == "444" || name == "PLANES") layout = Layout::P3;
  else return false;
  return true;
}

const char* layoutNames() { return "I420, YV12, NV12, YUY2, UYVY, I422 or I444"; }

bool parseRawSize(const std::string& text, RawSize& size) {
  const size_t x = text.find('x');
  if (x == std::string::npos) return false;
  auto number = [](const std::string& s, int32_t& v) {
    if (s.empty() || s.size() > 10) return false;
    int64_t n = 0;
    for (char c : s) {
      if (c < '0' || c > '9') return false;
      n = n * 10 + (c - '0');
    }
    if (n < 1 || n > INT32_MAX) return false;
    v = static_cast<int32_t>(n);
    return true;
  };
  if (!number(text.substr(0, x), size.width) || !number(text.substr(x + 1), size.height))
    return false;
  size.given = true;
  return true;
}

std::unique_ptr<FrameReader> openReader(const std::string& path, const ReadOptions& options) {
  auto in = std::make_unique<InFile>(path);
  const std::string& name = in->path();
  if (options.raw.given)
    return makeRawReader(std::move(in), options.raw,
                         options.model != Model::Unknown
                             ? options.model
                             : formatModel(FileFormat::Raw, extensionOf(path)),
                         options.layout, options.swapChroma, options.model != Model::Unknown);

  const int first = in->get();
  if (first == EOF) fail(name, path == "-" ? "empty input" : "empty file");
  if (first == 'P') {
    const int digit = in->get();
    if (digit == EOF) fail(name, "truncated header");
    if (digit >= '0' && digit <= '9')
      return makePnmReader(std::move(in), digit - '0', options.pgmPlanes);
  } else if (first == 'Y') {
    static const char rest[] = "UV4MPEG2";
    size_t i = 0;
    int c = 0;
    while (rest[i] && (c = in->get()) == rest[i]) ++i;
    if (!rest[i]) return makeY4mReader(std::move(in), options.model);
    if (c == EOF) fail(name, "truncated header");
  }
  if (isRawExtension(extensionOf(path)))
    fail(name, "headerless planes: give their size with --raw WxH");
  fail(name, std::string("not a PNM (P5, P6, P7) or YUV4MPEG2 ") +
                 (path == "-" ? "stream" : "file") +
                 " (headerless planes need --raw WxH)");
}

FileFormat outputFormat(const std::string& path, const std::string& ext) {
  FileFormat format;
  if (formatFromExtension(ext, format)) return format;
  fail(path,
       (ext.empty() ? std::string("no extension") : "unknown output extension '" + ext + "'") +
           " (" + knownExtensions() + ")");
}

Layout outputLayout(FileFormat format, Layout in) {
  switch (format) {
    case FileFormat::PGM: return in == Layout::C1 ? Layout::C1 : Layout::P3;
    case FileFormat::PNM:
      return isSubsampled(in) ? Layout::P3 : in;
    case FileFormat::Y4M:
    case FileFormat::Raw: return Layout::P3;
    case FileFormat::PPM:
    case FileFormat::PAM: break;
  }
  return in == Layout::AC4 ? Layout::AC4 : Layout::C3;
}

Model formatModel(FileFormat format, const std::string& ext) {
  if (format == FileFormat::Y4M) return Model::YUV;
  if (format == FileFormat::Raw) {
    if (ext == "yuv") return Model::YUV;
    if (ext == "rgbp") return Model::RGB;
  }
  return Model::Unknown;
}

void checkWritable(const std::string& path, FileFormat format, const std::string& ext,
                   const Image& frame, const std::string& instead) {
  const bool planes = frame.layout == Layout::P3;
  const bool grey = frame.layout == Layout::C1;
  const bool sub = isSubsampled(frame.layout);
  if (sub && format != FileFormat::Y4M && format != FileFormat::Raw)
    fail(path, std::string(formatName(format)) +
                   " holds no 4:2:2 or 4:2:0 chroma: write a .y4m or raw frames (.yuv)");
  if (format == FileFormat::Y4M && (frame.layout == Layout::P2_420 || frame.layout == Layout::C2 ||
                                    frame.layout == Layout::C2UYVY))
    fail(path, std::string("YUV4MPEG2 holds planes; ") + layoutName(frame.layout) +
                   " goes to raw frames (.yuv)");
  switch (format) {
    case FileFormat::PPM:
      if (frame.layout == Layout::AC4)
        fail(path, "PPM has no alpha channel: write a .pam to keep it");
      if (planes) fail(path, "PPM holds pixels, not planes: write a .pgm, .y4m or raw planes");
      if (grey) fail(path, "PPM holds colour pixels: write the grey image to a .pgm");
      break;
    case FileFormat::PAM:
      if (planes) fail(path, "PAM holds pixels, not planes: write a .pgm, .y4m or raw planes");
      if (grey)
        fail(path, "lumconv writes PAM with 3 or 4 channels: write the grey image to a .pgm");
      break;
    case FileFormat::PGM:
      if (!planes && !grey) fail(path, "PGM holds planes, not pixels: write a .ppm or .pam");
      if (planes && frame.height > INT32_MAX / 3)
        fail(path, "3 planes of this height don't fit a PGM");
      break;
    case FileFormat::PNM:
      if (planes && frame.height > INT32_MAX / 3)
        fail(path, "3 planes of this height don't fit a PGM");
      break;
    case FileFormat::Y4M:
    case FileFormat::Raw:
      if (!planes && !sub)
        fail(path, std::string(formatName(format)) +
                       " holds three planes, not pixels: write a .ppm, .pam or .pgm");
      if (frame.depth != Depth::U8)
        fail(path, std::string(formatName(format)) +
                       " output is 8-bit: write a .ppm or .pam, or reduce the input to 8 bits "
                       "first (e.g. pamdepth 255 in.ppm >in8.ppm)");
      break;
  }
  checkModel(path, format, ext, frame.model, instead);
}

void checkModel(const std::string& path, FileFormat format, const std::string& ext, Model model,
                const std::string& instead) {
  if (format == FileFormat::Y4M) {
    if (model != Model::Unknown && model != Model::YUV && model != Model::YCbCr)
      fail(path, std::string("this file holds YUV, the conversion makes ") + modelName(model) +
                     " (a .y4m holds YUV or YCbCr" +
                     (instead.empty() ? ")" : "; write " + instead + ")"));
    return;
  }
  const Model holds = formatModel(format, ext);
  if (holds == Model::YUV && model == Model::YCbCr) return;  // a .yuv holds either
  if (holds != Model::Unknown && model != Model::Unknown && holds != model)
    fail(path, std::string("this file holds ") + modelName(holds) + ", the conversion makes " +
                   modelName(model) + (instead.empty() ? "" : " (write " + instead + ")"));
}

std::unique_ptr<FrameWriter> openWriter(const std::string& path, FileFormat format,
                                        bool swapChroma) {
  switch (format) {
    case FileFormat::Y4M: return makeY4mWriter(path);
    case FileFormat::Raw: return makeRawWriter(path, swapChroma);
    default: return makePnmWriter(path, format);
  }
}

}  // namespace lumconv
