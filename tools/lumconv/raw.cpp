#include "raw.h"

namespace lumconv {

namespace {

class RawReader : public FrameReader {
 public:
  RawReader(std::unique_ptr<InFile> in, const RawSize& size, Model model, Layout layout,
            bool swapChroma)
      : in_(std::move(in)), size_(size), model_(model), layout_(layout), swap_(swapChroma) {
    // From a pipe, the frame limit first (a file's size is checked below).
    if (in_->remaining() < 0)
      in_->need(announcedBytes(size.width, size.height, layout, Depth::U8),
                "pixel data of frame 1");
    frameBytes_ = checkedImageBytes(in_->path(), size.width, size.height, layout, Depth::U8);
    const int64_t total = in_->remaining();
    if (total >= 0 && (total == 0 || static_cast<uint64_t>(total) % frameBytes_ != 0))
      fail(in_->path(), "size " + std::to_string(total) + " bytes is not a whole number of " +
                            std::to_string(size.width) + "x" + std::to_string(size.height) +
                            " frames of " + (layout == Layout::P3 ? std::string("3 planes") : layoutName(layout)) + " (" + std::to_string(frameBytes_) + " bytes each)");
  }

  FileFormat format() const override { return FileFormat::Raw; }
  void modelGiven() { assumed_ = false; }
  int64_t position() override { return in_->position(); }
  int64_t remaining() override { return in_->remaining(); }

  bool next(Image& frame) override {
    if (in_->peek() == EOF) return false;
    ++frames_;
    frame.width = size_.width;
    frame.height = size_.height;
    frame.layout = layout_;
    frame.depth = Depth::U8;
    frame.model = model_;
    frame.modelAssumed = assumed_;
    frame.tags = VideoTags{};
    const std::string what = "pixel data of frame " + std::to_string(frames_);
    in_->need(frameBytes_, what.c_str());
    frame.allocate(in_->path());
    if (swap_) {  // YV12: Y, Cr, Cb
      in_->read(frame.plane8(0), frame.planeBytes(0), what.c_str());
      in_->read(frame.plane8(2), frame.planeBytes(2), what.c_str());
      in_->read(frame.plane8(1), frame.planeBytes(1), what.c_str());
    } else {
      in_->read(frame.data8.data(), frameBytes_, what.c_str());
    }
    return true;
  }

 private:
  std::unique_ptr<InFile> in_;
  RawSize size_;
  Model model_;
  Layout layout_;
  bool swap_;
  // A .yuv file may hold YCbCr as well as this library's YUV.
  bool assumed_ = model_ == Model::YUV;
  size_t frameBytes_ = 0;
  long frames_ = 0;
};

class RawWriter : public FrameWriter {
 public:
  RawWriter(const std::string& path, bool swapChroma) : out_(path), swap_(swapChroma) {}
  void write(const Image& frame) override {
    if (swap_ && frame.planes() == 3) {  // YV12: Y, Cr, Cb
      out_.write(frame.plane8(0), frame.planeBytes(0));
      out_.write(frame.plane8(2), frame.planeBytes(2));
      out_.write(frame.plane8(1), frame.planeBytes(1));
    } else {
      out_.write(frame.data8.data(), frame.data8.size());
    }
  }
  void close() override { out_.close(); }

 private:
  OutFile out_;
  bool swap_;
};

}  // namespace

std::unique_ptr<FrameReader> makeRawReader(std::unique_ptr<InFile> in, const RawSize& size,
                                           Model model, Layout layout, bool swapChroma, bool modelGiven) {
  auto reader = std::make_unique<RawReader>(std::move(in), size, model, layout, swapChroma);
  if (modelGiven) reader->modelGiven();
  return reader;
}

std::unique_ptr<FrameWriter> makeRawWriter(const std::string& path, bool swapChroma) {
  return std::make_unique<RawWriter>(path, swapChroma);
}

}  // namespace lumconv
