#include "raw.h"

namespace lumconv {

namespace {

class RawReader : public FrameReader {
 public:
  RawReader(std::unique_ptr<InFile> in, const RawSize& size, Model model)
      : in_(std::move(in)), size_(size), model_(model) {
    // From a pipe, the frame limit first (a file's size is checked below).
    if (in_->remaining() < 0)
      in_->need(announcedBytes(size.width, size.height, Layout::P3, Depth::U8),
                "pixel data of frame 1");
    frameBytes_ = checkedImageBytes(in_->path(), size.width, size.height, Layout::P3, Depth::U8);
    const int64_t total = in_->remaining();
    if (total >= 0 && (total == 0 || static_cast<uint64_t>(total) % frameBytes_ != 0))
      fail(in_->path(), "size " + std::to_string(total) + " bytes is not a whole number of " +
                            std::to_string(size.width) + "x" + std::to_string(size.height) +
                            " frames of 3 planes (" + std::to_string(frameBytes_) + " bytes each)");
  }

  FileFormat format() const override { return FileFormat::Raw; }
  int64_t position() override { return in_->position(); }
  int64_t remaining() override { return in_->remaining(); }

  bool next(Image& frame) override {
    if (in_->peek() == EOF) return false;
    ++frames_;
    frame.width = size_.width;
    frame.height = size_.height;
    frame.layout = Layout::P3;
    frame.depth = Depth::U8;
    frame.model = model_;
    frame.tags = VideoTags{};
    const std::string what = "pixel data of frame " + std::to_string(frames_);
    in_->need(frameBytes_, what.c_str());
    frame.allocate(in_->path());
    in_->read(frame.data8.data(), frameBytes_, what.c_str());
    return true;
  }

 private:
  std::unique_ptr<InFile> in_;
  RawSize size_;
  Model model_;
  size_t frameBytes_ = 0;
  long frames_ = 0;
};

class RawWriter : public FrameWriter {
 public:
  explicit RawWriter(const std::string& path) : out_(path) {}
  void write(const Image& frame) override { out_.write(frame.data8.data(), frame.data8.size()); }
  void close() override { out_.close(); }

 private:
  OutFile out_;
};

}  // namespace

std::unique_ptr<FrameReader> makeRawReader(std::unique_ptr<InFile> in, const RawSize& size,
                                           Model model) {
  return std::make_unique<RawReader>(std::move(in), size, model);
}

std::unique_ptr<FrameWriter> makeRawWriter(const std::string& path) {
  return std::make_unique<RawWriter>(path);
}

}  // namespace lumconv
