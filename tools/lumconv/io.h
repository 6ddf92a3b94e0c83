// lumconv: image files.  A reader gives the frames of an input one by one, a
// writer takes them; the format of an input comes from its first bytes (or
// --raw), that of an output from its extension (or --to).  "-" is standard
// input or standard output.
//
//   .ppm  P6, 3 samples a pixel (C3)                       maxval 255 or 65535
//   .pam  P7, DEPTH 3 (C3) or 4 (AC4, e.g. RGB_ALPHA)       maxval 255 or 65535
//   .pgm  P5: read, one grey image (C1), or with --planes the 3 planes of a
//         P3 image one above the other (height 3 H); written, either of them
//   .pnm  written as P6, P7 or P5 by the image's layout
//   .y4m  YUV4MPEG2, C444, 8-bit planes Y, U, V a frame
//   .yuv .rgbp .raw  headerless 8-bit planes (P3), one frame after the other;
//                    reading needs --raw WxH
//
// A file may hold several frames: PNM images one after the other, Y4M
// frames, or raw frames.  All of them are read and converted.
#ifndef LUMCONV_IO_H
#define LUMCONV_IO_H

#include <memory>
#include <string>

#include "image.h"

namespace lumconv {

enum class FileFormat { PPM, PGM, PAM, PNM, Y4M, Raw };

const char* formatName(FileFormat format);

class FrameReader {
 public:
  virtual ~FrameReader() = default;
  // Reads the next frame; false when the input ends cleanly before one.
  virtual bool next(Image& frame) = 0;
  virtual FileFormat format() const = 0;
  // Bytes read so far and bytes left, or -1 when not known (pipes): what
  // the progress display estimates the number of frames from.
  virtual int64_t position() = 0;
  virtual int64_t remaining() = 0;
};

class FrameWriter {
 public:
  virtual ~FrameWriter() = default;
  virtual void write(const Image& frame) = 0;
  // Completes the file; a writer destroyed without close() removes it.
  virtual void close() = 0;
};

struct RawSize {
  bool given = false;
  int32_t width = 0;
  int32_t height = 0;
};

// Parses "WxH" (both at least 1); false if it isn't one.
bool parseRawSize(const std::string& text, RawSize& size);

// How an input is read: raw.given for headerless planes of that size;
// pgmPlanes to read a PGM as the three planes of a P3 image one above the
// other (without it a PGM is one grey image).
// layout: the layout of headerless frames (--layout; planes P3 when not
// given); swapChroma: their chroma planes come Cr first (YV12).  model: the
// colour model to read a .y4m or raw file's samples as (--model), Unknown
// for the file's own.
struct ReadOptions {
  RawSize raw;
  bool pgmPlanes = false;
  Layout layout = Layout::P3;
  bool swapChroma = false;
  Model model = Model::Unknown;
};

// A layout name of --layout / --out-layout: I420, YV12, NV12, YUY2, UYVY,
// I422 (or 422), I444 (or 444, planes); false for none.
bool layoutFromName(const std::string& name, Layout& layout, bool& swapChroma);
// The names, for messages.
const char* layoutNames();

// Opens path ("-": standard input) and reads its signature: PNM (P5, P6, P7)
// or YUV4MPEG2; with raw.given, headerless planes of that size.
std::unique_ptr<FrameReader> openReader(const std::string& path, const ReadOptions& options);

// The extension of path's last component, lower case, without the dot.
std::string extensionOf(const std::string& path);
// The format an extension ("ppm", "y4m", ...) names; false for none.
bool formatFromExtension(const std::string& ext, FileFormat& format);
// The extensions lumconv writes, for messages: ".ppm, .pam, ...".
const char* knownExtensions();

// The output format of an extension (as extensionOf gives it); fails with
// path's name on an unknown one.
FileFormat outputFormat(const std::string& path, const std::string& ext);
// The layout a format stores for an image that comes in as `in`.
Layout outputLayout(FileFormat format, Layout in);
// The colour model a raw file's extension or a format (Y4M) promises, or
// Unknown.
Model formatModel(FileFormat format, const std::string& ext);
// Fails with path's name unless format (of extension ext) can hold frames
// like `frame`.  `instead` names the files to write instead when the colour
// model does not fit (e.g. "a .ppm or .pam"; empty: none named).
void checkWritable(const std::string& path, FileFormat format, const std::string& ext,
                   const Image& frame, const std::string& instead = "");
// Fails with path's name when format (of extension ext) holds another colour
// model than `model` (Unknown: any model).
void checkModel(const std::string& path, FileFormat format, const std::string& ext, Model model,
                const std::string& instead = "");
// Opens path ("-": standard output) for frames in format; swapChroma
// writes the chroma planes of raw 4:2:0 Cr first (YV12).
std::unique_ptr<FrameWriter> openWriter(const std::string& path, FileFormat format,
                                        bool swapChroma = false);

}  // namespace lumconv

#endif
