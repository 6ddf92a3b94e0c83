// lumconv: binary input and output files that report their failures as
// "lumconv: <file>: <what>".  The name "-" stands for standard input or
// standard output.
#ifndef LUMCONV_FILE_H
#define LUMCONV_FILE_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace lumconv {

// The most pixel data of one frame that lumconv takes from a pipe, where the
// bytes that will come cannot be known before they arrive (1 GiB).  From a
// file the limit is the file's size.
constexpr uint64_t kPipeFrameLimit = uint64_t{1} << 30;

class InFile {
 public:
  // Opens path ("-": standard input); fails if it can't be opened.
  explicit InFile(const std::string& path);
  ~InFile();
  InFile(const InFile&) = delete;
  InFile& operator=(const InFile&) = delete;

  // The name messages use: the path, or "standard input".
  const std::string& path() const { return path_; }
  int get();   // the next byte, or EOF
  int peek();  // the next byte without taking it, or EOF
  // Reads exactly n bytes, or fails with "truncated <what>".
  void read(void* dst, size_t n, const char* what);
  // Called before a frame of n bytes is allocated, so that a header
  // announcing a huge image is refused without the allocation: fails with
  // "truncated <what>" when the file holds fewer than n more bytes, or, from
  // a pipe, when n is beyond kPipeFrameLimit.
  void need(uint64_t n, const char* what);
  // Bytes from the current position to the end, or -1 if not known (pipes).
  int64_t remaining();
  // Bytes read so far, or -1 if not known.
  int64_t position();

 private:
  [[noreturn]] void readError();
  std::FILE* f_ = nullptr;
  bool own_ = true;
  std::string path_;
  int64_t size_ = -1;
};

// An output file that appears only when complete.  The bytes go to a
// temporary file beside the target (beside the file a symbolic link leads
// to), which close() renames over the target; a run that fails half-way, or
// is stopped by a signal (see installSignalCleanup), removes the temporary
// file and leaves an existing target as it was.  "-" writes to standard
// output directly, and so does a target that exists and is not a regular
// file (a device, a named pipe).
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
  void discard();
  std::FILE* f_ = nullptr;
  std::string path_;     // as given, for messages
  std::string target_;   // the file that close() replaces
  std::string temp_;     // empty when writing to the target directly
  bool direct_ = false;  // standard output, a device or a named pipe
  bool closed_ = false;
};

// Makes SIGINT, SIGTERM, SIGHUP and SIGQUIT remove the temporary file of an
// OutFile before the process ends by the signal (a signal ignored when the
// program started stays ignored).  Call once, at the start.
void installSignalCleanup();

// True when both names lead to one existing file ("-" never does).
bool sameFile(const std::string& a, const std::string& b);

// The name messages use for path: "standard input" / "standard output" for
// "-", else path itself.
std::string displayName(const std::string& path, bool output);

}  // namespace lumconv

#endif
