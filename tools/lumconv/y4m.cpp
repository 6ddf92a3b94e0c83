#include "y4m.h"

#include <cstdint>

namespace lumconv {

namespace {

constexpr size_t kMaxLine = 4096;

bool parsePositive(const std::string& text, int32_t& value) {
  if (text.empty() || text.size() > 10) return false;
  int64_t v = 0;
  for (char c : text) {
    if (c < '0' || c > '9') return false;
    v = v * 10 + (c - '0');
  }
  if (v < 1 || v > INT32_MAX) return false;
  value = static_cast<int32_t>(v);
  return true;
}

bool isRatio(const std::string& text) {
  const size_t colon = text.find(':');
  if (colon == std::string::npos || colon == 0 || colon + 1 == text.size()) return false;
  for (size_t i = 0; i < text.size(); ++i)
    if (i != colon && (text[i] < '0' || text[i] > '9')) return false;
  return true;
}

class Y4mReader : public FrameReader {
 public:
  Y4mReader(std::unique_ptr<InFile> in, Model model) : in_(std::move(in)), wanted_(model) {
    readStreamHeader();
  }

  FileFormat format() const override { return FileFormat::Y4M; }
  int64_t position() override { return in_->position(); }
  int64_t remaining() override { return in_->remaining(); }

  bool next(Image& frame) override {
    if (in_->peek() == EOF) return false;
    std::string line;
    if (!readLine(line))
      fail(in_->path(), "truncated frame header (frame " + std::to_string(frames_ + 1) + ")");
    if (line.compare(0, 5, "FRAME") != 0 || (line.size() > 5 && line[5] != ' '))
      fail(in_->path(),
           "malformed frame header (frame " + std::to_string(frames_ + 1) + "): expected FRAME");
    ++frames_;
    frame.width = width_;
    frame.height = height_;
    frame.layout = layout_;
    frame.depth = Depth::U8;
    frame.model = model_;
    frame.modelAssumed = assumed_;
    frame.tags = tags_;
    const std::string what = "pixel data of frame " + std::to_string(frames_);
    in_->need(announcedBytes(width_, height_, layout_, Depth::U8), what.c_str());
    const size_t bytes = checkedImageBytes(in_->path(), width_, height_, layout_, Depth::U8);
    frame.allocate(in_->path());
    in_->read(frame.data8.data(), bytes, what.c_str());
    return true;
  }

 private:
  // A line up to '\n' (not included); false if the file ends first.
  bool readLine(std::string& line) {
    line.clear();
    for (;;) {
      const int c = in_->get();
      if (c == EOF) return false;
      if (c == '\n') return true;
      if (line.size() >= kMaxLine)
        fail(in_->path(), "malformed header: line longer than 4096 bytes");
      line += static_cast<char>(c);
    }
  }

  void readStreamHeader() {
    const std::string& path = in_->path();
    std::string line;
    if (!readLine(line)) fail(path, "truncated header");
    // The signature is gone; what is left starts with the blank before W.
    if (!line.empty() && line[0] != ' ')
      fail(path, "malformed header: expected a blank after YUV4MPEG2");
    std::string chroma, range, model;
    bool haveW = false, haveH = false;
    size_t pos = 0;
    while (pos < line.size()) {
      if (line[pos] == ' ') {
        ++pos;
        continue;
      }
      size_t end = line.find(' ', pos);
      if (end == std::string::npos) end = line.size();
      const std::string token = line.substr(pos, end - pos);
      pos = end;
      const char tag = token[0];
      const std::string value = token.substr(1);
      switch (tag) {
        case 'W':
          if (!parsePositive(value, width_)) fail(path, "malformed header: width '" + value + "'");
          haveW = true;
          break;
        case 'H':
          if (!parsePositive(value, height_))
            fail(path, "malformed header: height '" + value + "'");
          haveH = true;
          break;
        case 'F':
          if (!isRatio(value)) fail(path, "malformed header: frame rate '" + value + "'");
          tags_.frameRate = value;
          break;
        case 'A':
          if (!isRatio(value)) fail(path, "malformed header: aspect '" + value + "'");
          tags_.aspect = value;
          break;
        case 'I':
          if (value != "p" && value != "t" && value != "b" && value != "m")
            fail(path, "malformed header: interlacing '" + value + "'");
          tags_.interlace = value;
          break;
        case 'C': chroma = value; break;
        case 'X':  // an application's own parameter; these two say the model
          if (value.compare(0, 11, "COLORRANGE=") == 0) range = value.substr(11);
          if (value.compare(0, 12, "LUMCC_MODEL=") == 0) model = value.substr(12);
          break;
        default: fail(path, "malformed header: unknown tag '" + token + "'");
      }
    }
    if (!haveW || !haveH)
      fail(path, std::string("malformed header: no ") + (haveW ? "H" : "W") + " tag");
    // A stream without a C tag is 4:2:0 with centred chroma.
    const bool haveC = !chroma.empty();
    if (!haveC) chroma = "420jpeg";
    if (chroma == "444") {
      layout_ = Layout::P3;
    } else if (chroma == "422") {
      layout_ = Layout::P3_422;
    } else if (chroma == "420jpeg" || chroma == "420mpeg2" || chroma == "420paldv" ||
               chroma == "420") {
      layout_ = Layout::P3_420;
      tags_.siting = chroma.substr(3);
      tags_.chromaTag = haveC ? "C" + chroma : "";
    } else {
      fail(path, "colour space C" + chroma +
                     " is not supported (lumconv reads C444, C422, C420jpeg, C420mpeg2, "
                     "C420paldv and C420)");
    }

    // The model: this library's YUV when tagged so (lumconv writes the tag),
    // else YCbCr as every other tool writes it, studio range only.  An
    // untagged C444 file may be YUV from an earlier lumconv: either family
    // takes it.
    if (!model.empty() && model != "YUV")
      fail(path, "malformed header: XLUMCC_MODEL=" + model + " (lumconv writes YUV)");
    if (range == "FULL")
      fail(path, "full-range YCbCr (XCOLORRANGE=FULL) is not supported: liblumcc's YCbCr is "
                 "studio range (Y 16..235); convert it first, e.g. ffmpeg -i in.y4m -vf "
                 "scale=out_range=tv -strict -1 out.y4m");
    if (!range.empty() && range != "LIMITED")
      fail(path, "malformed header: XCOLORRANGE=" + range);
    if (!model.empty() && !range.empty())
      fail(path, "malformed header: tagged both XLUMCC_MODEL=YUV and XCOLORRANGE=" + range);
    model_ = !model.empty() ? Model::YUV : Model::YCbCr;
    assumed_ = model.empty() && range.empty() && layout_ == Layout::P3;
    if (assumed_) model_ = Model::YUV;
    if (wanted_ == Model::YCbCr && !model.empty())
      fail(path, "is tagged XLUMCC_MODEL=YUV (this library's YUV, not YCbCr): read it with "
                 "yuv2rgb, yuv4222rgb or yuv4202rgb");
    if (wanted_ != Model::Unknown) {
      model_ = wanted_;
      assumed_ = false;
    }
  }

  std::unique_ptr<InFile> in_;
  Model wanted_;
  int32_t width_ = 0, height_ = 0;
  Layout layout_ = Layout::P3;
  Model model_ = Model::YCbCr;
  bool assumed_ = false;
  VideoTags tags_;
  long frames_ = 0;
};

class Y4mWriter : public FrameWriter {
 public:
  explicit Y4mWriter(const std::string& path) : out_(path) {}

  void write(const Image& frame) override {
    if (!started_) {
      // The model goes in an X tag: XCOLORRANGE=LIMITED for YCbCr, as other
      // tools write it; XLUMCC_MODEL=YUV for this library's YUV, which other
      // tools would otherwise take for YCbCr.  A file that did not say keeps
      // not saying.
      std::string chroma = frame.layout == Layout::P3_422   ? "C422"
                           : frame.layout == Layout::P3_420 ? "C420" + frame.tags.siting
                                                            : "C444";
      std::string model;
      if (!frame.modelAssumed && frame.model == Model::YCbCr) model = " XCOLORRANGE=LIMITED";
      if (!frame.modelAssumed && frame.model == Model::YUV) model = " XLUMCC_MODEL=YUV";
      out_.write("YUV4MPEG2 W" + std::to_string(frame.width) + " H" + std::to_string(frame.height) +
                 " F" + frame.tags.frameRate + " I" + frame.tags.interlace + " A" +
                 frame.tags.aspect + " " + chroma + model + "\n");
      started_ = true;
    }
    out_.write("FRAME\n");
    out_.write(frame.data8.data(), frame.data8.size());
  }

  void close() override { out_.close(); }

 private:
  OutFile out_;
  bool started_ = false;
};

}  // namespace

std::unique_ptr<FrameReader> makeY4mReader(std::unique_ptr<InFile> in, Model model) {
  return std::make_unique<Y4mReader>(std::move(in), model);
}

std::unique_ptr<FrameWriter> makeY4mWriter(const std::string& path) {
  return std::make_unique<Y4mWriter>(path);
}

}  // namespace lumconv
