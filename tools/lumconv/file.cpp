#include "file.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "image.h"

namespace lumconv {

namespace {
std::string sysError(int err) {
  return std::strerror(err);
}
}  // namespace

InFile::InFile(const std::string& path) : path_(path) {
  f_ = std::fopen(path.c_str(), "rb");
  if (!f_) fail(path, sysError(errno));
  struct stat st;
  if (fstat(fileno(f_), &st) == 0) {
    if (S_ISDIR(st.st_mode)) {
      std::fclose(f_);
      f_ = nullptr;
      fail(path, "is a directory");
    }
    if (S_ISREG(st.st_mode)) size_ = static_cast<int64_t>(st.st_size);
  }
}

InFile::~InFile() {
  if (f_) std::fclose(f_);
}

void InFile::readError() {
  fail(path_, "read error: " + sysError(errno));
}

int InFile::get() {
  const int c = std::getc(f_);
  if (c == EOF && std::ferror(f_)) readError();
  return c;
}

int InFile::peek() {
  const int c = get();
  if (c != EOF) std::ungetc(c, f_);
  return c;
}

void InFile::read(void* dst, size_t n, const char* what) {
  const size_t got = std::fread(dst, 1, n, f_);
  if (got == n) return;
  if (std::ferror(f_)) readError();
  fail(path_, std::string("truncated ") + what + " (" + std::to_string(n) + " bytes needed, " +
                  std::to_string(got) + " left)");
}

int64_t InFile::remaining() {
  if (size_ < 0) return -1;
  const off_t pos = ftello(f_);
  if (pos < 0) return -1;
  return size_ > pos ? size_ - pos : 0;
}

void InFile::need(uint64_t n, const char* what) {
  const int64_t left = remaining();
  if (left >= 0 && static_cast<uint64_t>(left) < n)
    fail(path_, std::string("truncated ") + what + " (" + std::to_string(n) + " bytes needed, " +
                    std::to_string(left) + " left)");
}

OutFile::OutFile(const std::string& path) : path_(path) {
  f_ = std::fopen(path.c_str(), "wb");
  if (!f_) fail(path, sysError(errno));
}

OutFile::~OutFile() {
  if (closed_) return;
  if (f_) std::fclose(f_);
  std::remove(path_.c_str());
}

void OutFile::write(const void* src, size_t n) {
  if (n == 0) return;
  if (std::fwrite(src, 1, n, f_) != n) fail(path_, "write error: " + sysError(errno));
}

void OutFile::close() {
  std::FILE* f = f_;
  f_ = nullptr;
  if (std::fclose(f) != 0) fail(path_, "write error: " + sysError(errno));
  closed_ = true;
}

bool sameFile(const std::string& a, const std::string& b) {
  struct stat sa, sb;
  if (stat(a.c_str(), &sa) != 0 || stat(b.c_str(), &sb) != 0) return false;
  return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

}  // namespace lumconv
