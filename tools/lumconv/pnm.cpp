#include "pnm.h"

#include <cstdint>
#include <vector>

namespace lumconv {

namespace {

bool isSpace(int c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}
bool isDigit(int c) {
  return c >= '0' && c <= '9';
}

std::string shown(int c) {
  if (c >= 0x21 && c < 0x7f) return std::string("'") + static_cast<char>(c) + "'";
  return "byte " + std::to_string(c);
}

// Parses a decimal number of at most 2147483647 (the whole text); false if
// it isn't one.
bool parseNumber(const std::string& text, int64_t& value) {
  if (text.empty() || text.size() > 10) return false;
  value = 0;
  for (char c : text) {
    if (!isDigit(c)) return false;
    value = value * 10 + (c - '0');
  }
  return value <= INT32_MAX;
}

// Fails unless the digit of a "Pn" signature is one that lumconv reads.
void checkMagic(int digit, const std::string& path) {
  if (digit >= 1 && digit <= 3)
    fail(path, "plain (ASCII) P" + std::to_string(digit) +
                   " is not supported; lumconv reads binary P5, P6 and P7");
  if (digit == 4) fail(path, "bitmap P4 is not supported; lumconv reads binary P5, P6 and P7");
  if (digit < 5 || digit > 7) fail(path, "P" + std::to_string(digit) + " is not a PNM format");
}

// A decoded header, before the pixel data.
struct Header {
  int magic = 0;  // 5, 6 or 7
  int64_t width = -1, height = -1, depth = -1, maxval = -1;
  std::string tupleType;
};

class PnmReader : public FrameReader {
 public:
  PnmReader(std::unique_ptr<InFile> in, int magic, bool pgmPlanes)
      : in_(std::move(in)), firstMagic_(magic), pgmPlanes_(pgmPlanes) {}

  FileFormat format() const override { return format_; }
  // Before the first image's header, its signature ("P6"), read to choose
  // this reader, counts as not read yet: every image then spans the same
  // bytes, which the progress display's count of frames relies on.
  int64_t position() override {
    const int64_t p = in_->position();
    return p >= 2 && firstMagic_ ? p - 2 : p;
  }
  int64_t remaining() override { return in_->remaining(); }

  bool next(Image& frame) override {
    Header h;
    if (firstMagic_) {
      h.magic = firstMagic_;
      firstMagic_ = 0;
    } else {
      // Images of a stream follow one another; blanks at the very end are
      // tolerated.
      int c;
      while (isSpace(c = in_->peek())) in_->get();
      if (c == EOF) return false;
      h.magic = readMagic();
    }
    if (h.magic == 7)
      readPamHeader(h);
    else
      readPnmHeader(h);
    toFrame(h, frame);
    readSamples(frame);
    return true;
  }

 private:
  [[noreturn]] void malformed(const std::string& what) {
    fail(in_->path(), "malformed header: " + what);
  }
  [[noreturn]] void truncated() { fail(in_->path(), "truncated header"); }

  int readMagic() {
    const int p = in_->get();
    const int d = in_->get();
    if (p == EOF || d == EOF) truncated();
    if (p != 'P' || !isDigit(d)) malformed("no P5, P6 or P7 signature");
    checkMagic(d - '0', in_->path());
    return d - '0';
  }

  // Skips blanks and comments ('#' to the end of the line) between fields.
  void skipBlanks() {
    for (;;) {
      const int c = in_->peek();
      if (isSpace(c)) {
        in_->get();
      } else if (c == '#') {
        int d;
        while ((d = in_->get()) != '\n' && d != '\r' && d != EOF) {
        }
        if (d == EOF) truncated();
      } else {
        return;
      }
    }
  }

  int64_t readField(const char* name) {
    skipBlanks();
    int c = in_->get();
    if (c == EOF) truncated();
    if (!isDigit(c)) malformed(std::string("expected the ") + name + ", found " + shown(c));
    std::string digits(1, static_cast<char>(c));
    while (isDigit(in_->peek())) {
      digits += static_cast<char>(in_->get());
      if (digits.size() > 10) break;
    }
    int64_t value = 0;
    if (!parseNumber(digits, value)) malformed(std::string(name) + " too large");
    return value;
  }

  void readPnmHeader(Header& h) {
    h.width = readField("width");
    h.height = readField("height");
    h.maxval = readField("maxval");
    // Exactly one blank separates the header from the samples.
    const int c = in_->get();
    if (c == EOF) truncated();
    if (!isSpace(c)) malformed("expected a blank after the maxval, found " + shown(c));
  }

  // One header line of a PAM, without its newline.
  std::string readLine() {
    std::string line;
    for (;;) {
      const int c = in_->get();
      if (c == EOF) truncated();
      if (c == '\n') return line;
      if (line.size() >= 1024) malformed("header line longer than 1024 bytes");
      line += static_cast<char>(c);
    }
  }

  static std::string trim(const std::string& s) {
    size_t a = 0, b = s.size();
    while (a < b && isSpace(s[a])) ++a;
    while (b > a && isSpace(s[b - 1])) --b;
    return s.substr(a, b - a);
  }

  void readPamHeader(Header& h) {
    if (!trim(readLine()).empty()) malformed("P7 must end its line");
    for (;;) {
      const std::string line = trim(readLine());
      if (line.empty() || line[0] == '#') continue;
      size_t sp = 0;
      while (sp < line.size() && !isSpace(line[sp])) ++sp;
      const std::string key = line.substr(0, sp);
      const std::string value = trim(line.substr(sp));
      if (key == "ENDHDR") break;
      if (key == "TUPLTYPE") {
        h.tupleType += (h.tupleType.empty() ? "" : " ") + value;
        continue;
      }
      int64_t* field = key == "WIDTH"    ? &h.width
                       : key == "HEIGHT" ? &h.height
                       : key == "DEPTH"  ? &h.depth
                       : key == "MAXVAL" ? &h.maxval
                                         : nullptr;
      if (!field) malformed("unknown PAM header line '" + key + "'");
      if (*field >= 0) malformed(key + " given twice");
      if (!parseNumber(value, *field))
        malformed(key + " is not a number up to 2147483647: '" + value + "'");
    }
    for (auto [value, key] : {std::pair{h.width, "WIDTH"}, std::pair{h.height, "HEIGHT"},
                              std::pair{h.depth, "DEPTH"}, std::pair{h.maxval, "MAXVAL"}})
      if (value < 0) malformed(std::string("no ") + key);
  }

  void toFrame(const Header& h, Image& frame) {
    const std::string& path = in_->path();
    if (h.width < 1 || h.height < 1)
      malformed("empty image " + std::to_string(h.width) + "x" + std::to_string(h.height));
    if (h.maxval < 1 || h.maxval > 65535)
      malformed("maxval " + std::to_string(h.maxval) + " outside 1 to 65535");
    if (h.maxval != 255 && h.maxval != 65535)
      fail(path,
           "maxval " + std::to_string(h.maxval) +
               " is not supported (lumconv takes 255 for 8-bit and 65535 for 16-bit samples)");
    frame.depth = h.maxval == 65535 ? Depth::U16 : Depth::U8;
    frame.width = static_cast<int32_t>(h.width);
    frame.height = static_cast<int32_t>(h.height);
    frame.model = Model::Unknown;
    frame.tags = VideoTags{};
    switch (h.magic) {
      case 6:
        frame.layout = Layout::C3;
        format_ = FileFormat::PPM;
        break;
      case 5:
        format_ = FileFormat::PGM;
        if (!pgmPlanes_) {
          frame.layout = Layout::C1;
          break;
        }
        if (h.height % 3 != 0)
          fail(path, "PGM height " + std::to_string(h.height) +
                         " is not 3 planes (--planes reads a PGM as Y, U, V or R, G, B planes "
                         "one above the other)");
        frame.layout = Layout::P3;
        frame.height = static_cast<int32_t>(h.height / 3);
        break;
      default:
        if (h.depth != 3 && h.depth != 4)
          fail(path, "PAM depth " + std::to_string(h.depth) + " is not supported (3 or 4)");
        frame.layout = h.depth == 4 ? Layout::AC4 : Layout::C3;
        frame.model = modelFromName(h.tupleType);
        format_ = FileFormat::PAM;
        break;
    }
  }

  void readSamples(Image& frame) {
    in_->need(announcedBytes(frame.width, frame.height, frame.layout, frame.depth), "pixel data");
    const size_t bytes =
        checkedImageBytes(in_->path(), frame.width, frame.height, frame.layout, frame.depth);
    frame.allocate(in_->path());
    if (frame.depth == Depth::U8) {
      in_->read(frame.data8.data(), bytes, "pixel data");
      return;
    }
    // 16-bit samples are big-endian in the file.
    const size_t n = frame.rowSamples();
    std::vector<uint8_t> row(n * 2);
    for (size_t r = 0; r < frame.rowCount(); ++r) {
      in_->read(row.data(), row.size(), "pixel data");
      Lum16u* dst = frame.row16(r);
      for (size_t i = 0; i < n; ++i)
        dst[i] = static_cast<Lum16u>((row[2 * i] << 8) | row[2 * i + 1]);
    }
  }

  std::unique_ptr<InFile> in_;
  int firstMagic_;
  bool pgmPlanes_;
  FileFormat format_ = FileFormat::PPM;
};

class PnmWriter : public FrameWriter {
 public:
  PnmWriter(const std::string& path, FileFormat format) : out_(path), format_(format) {}

  void write(const Image& frame) override {
    const int maxval = frame.depth == Depth::U16 ? 65535 : 255;
    const std::string size = std::to_string(frame.width) + " ";
    if (frame.layout == Layout::P3) {
      out_.write("P5\n" + size + std::to_string(3 * static_cast<int64_t>(frame.height)) + "\n" +
                 std::to_string(maxval) + "\n");
    } else if (frame.layout == Layout::C1) {
      out_.write("P5\n" + size + std::to_string(frame.height) + "\n" + std::to_string(maxval) +
                 "\n");
    } else if (frame.layout == Layout::C3 && format_ != FileFormat::PAM) {
      out_.write("P6\n" + size + std::to_string(frame.height) + "\n" + std::to_string(maxval) +
                 "\n");
    } else {
      std::string header = "P7\nWIDTH " + std::to_string(frame.width) + "\nHEIGHT " +
                           std::to_string(frame.height) + "\nDEPTH " +
                           std::to_string(frame.channels()) + "\nMAXVAL " + std::to_string(maxval) +
                           "\n";
      if (frame.model != Model::Unknown)
        header += std::string("TUPLTYPE ") + modelName(frame.model) +
                  (frame.layout == Layout::AC4 ? "_ALPHA" : "") + "\n";
      out_.write(header + "ENDHDR\n");
    }
    if (frame.depth == Depth::U8) {
      out_.write(frame.data8.data(), frame.data8.size());
      return;
    }
    const size_t n = frame.rowSamples();
    std::vector<uint8_t> row(n * 2);
    for (size_t r = 0; r < frame.rowCount(); ++r) {
      const Lum16u* src = frame.row16(r);
      for (size_t i = 0; i < n; ++i) {
        row[2 * i] = static_cast<uint8_t>(src[i] >> 8);
        row[2 * i + 1] = static_cast<uint8_t>(src[i] & 0xff);
      }
      out_.write(row.data(), row.size());
    }
  }

  void close() override { out_.close(); }

 private:
  OutFile out_;
  FileFormat format_;
};

}  // namespace

std::unique_ptr<FrameReader> makePnmReader(std::unique_ptr<InFile> in, int magic,
                                           bool pgmPlanes) {
  checkMagic(magic, in->path());
  return std::make_unique<PnmReader>(std::move(in), magic, pgmPlanes);
}

std::unique_ptr<FrameWriter> makePnmWriter(const std::string& path, FileFormat format) {
  return std::make_unique<PnmWriter>(path, format);
}

}  // namespace lumconv
