// lumconv: binary input and output files that report their failures as
// "lumconv: <file>: <what>".
#ifndef LUMCONV_FILE_H
#define LUMCONV_FILE_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace lumconv {

class InFile {
 public:
  explicit InFile(const std::string& path);  // fails if it can't be opened
  ~InFile();
  InFile(const InFile&) = delete;
  InFile& operator=(const InFile&) = delete;

  const std::string& path() const { return path_; }
  int get();   // the next byte, or EOF
  int peek();  // the next byte without taking it, or EOF
  // Reads exactly n bytes, or fails with "truncated <what>".
  void read(void* dst, size_t n, const char* what);
  // Fails with "truncated <what>" when the file is known to hold fewer than
  // n more bytes: called before a frame is allocated, so that a header
  // announcing a huge image is refused without the allocation.
  void need(uint64_t n, const char* what);
  // Bytes from the current position to the end, or -1 if not known.
  int64_t remaining();

 private:
  [[noreturn]] void readError();
  std::FILE* f_ = nullptr;
  std::string path_;
  int64_t size_ = -1;
};

// An output file that is removed again unless close() succeeds: a run that
// fails half-way leaves no half-written file behind.
class OutFile {
 public:
  explicit OutFile(const std::string& path);
  ~OutFile();
  OutFile(const OutFile&) = delete;
  OutFile& operator=(const OutFile&) = delete;

  const std::string& path() const { return path_; }
  void write(const void* src, size_t n);
  void write(const std::string& text) { write(text.data(), text.size()); }
  void close();

 private:
  std::FILE* f_ = nullptr;
  std::string path_;
  bool closed_ = false;
};

// True when both names lead to one existing file.
bool sameFile(const std::string& a, const std::string& b);

}  // namespace lumconv

#endif
