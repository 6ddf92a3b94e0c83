#include "file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <vector>

#include "image.h"

namespace lumconv {

namespace {

std::string sysError(int err) {
  return std::strerror(err);
}

// --- Removal of the temporary output on a signal ---------------------------
// The one temporary file of a run, for the signal handler: written only with
// the signals blocked, read by the handler (async-signal-safe: unlink,
// raise).
constexpr int kCleanupSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};
char gTempPath[PATH_MAX + 64];
volatile sig_atomic_t gTempSet = 0;

extern "C" void removeTempAndDie(int sig) {
  if (gTempSet) unlink(gTempPath);
  // SA_RESETHAND restored the default action; the raised signal is
  // delivered when the handler returns and ends the process as it would
  // have ended without lumconv's handler.
  raise(sig);
}

// Blocks the cleanup signals for its lifetime.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t set;
    sigemptyset(&set);
    for (int s : kCleanupSignals) sigaddset(&set, s);
    sigprocmask(SIG_BLOCK, &set, &old_);
  }
  ~SignalsBlocked() { sigprocmask(SIG_SETMASK, &old_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t old_;
};

// The directory part of path ("." when it has none).
std::string directoryOf(const std::string& path) {
  const size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  if (slash == 0) return "/";
  return path.substr(0, slash);
}

std::string baseOf(const std::string& path) {
  const size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// The file that writing to path replaces: path itself, or where its chain
// of symbolic links ends (a link to a file not there yet ends at that name).
std::string followLinks(const std::string& path) {
  std::string p = path;
  for (int hops = 0; hops < 40; ++hops) {
    struct stat st;
    if (lstat(p.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) return p;
    std::vector<char> buf(PATH_MAX + 1);
    const ssize_t n = readlink(p.c_str(), buf.data(), buf.size() - 1);
    if (n <= 0) fail(path, "cannot read the symbolic link: " + sysError(errno));
    std::string target(buf.data(), static_cast<size_t>(n));
    if (target[0] != '/') target = directoryOf(p) + "/" + target;
    p = target;
  }
  fail(path, "too many levels of symbolic links");
}

}  // namespace

void installSignalCleanup() {
  for (int s : kCleanupSignals) {
    struct sigaction old;
    if (sigaction(s, nullptr, &old) == 0 && old.sa_handler == SIG_IGN) continue;
    struct sigaction sa;
    std::memset(&sa, 0, sizeof sa);
    sa.sa_handler = removeTempAndDie;
    sigemptyset(&sa.sa_mask);
    for (int t : kCleanupSignals) sigaddset(&sa.sa_mask, t);
    sa.sa_flags = SA_RESETHAND;
    sigaction(s, &sa, nullptr);
  }
}

std::string displayName(const std::string& path, bool output) {
  if (path != "-") return path;
  return output ? "standard output" : "standard input";
}

// --- InFile -----------------------------------------------------------------

InFile::InFile(const std::string& path) : path_(displayName(path, false)) {
  if (path == "-") {
    f_ = stdin;
    own_ = false;
    if (isatty(fileno(f_)))
      fail(path_, "is a terminal: pipe an image in (cat in.ppm | lumconv ...) or name a file");
  } else {
    f_ = std::fopen(path.c_str(), "rb");
    if (!f_) fail(path_, sysError(errno));
  }
  struct stat st;
  if (fstat(fileno(f_), &st) == 0) {
    if (S_ISDIR(st.st_mode)) {
      if (own_) std::fclose(f_);
      f_ = nullptr;
      fail(path_, "is a directory");
    }
    if (S_ISREG(st.st_mode)) size_ = static_cast<int64_t>(st.st_size);
  }
}

InFile::~InFile() {
  if (f_ && own_) std::fclose(f_);
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

int64_t InFile::position() {
  if (size_ < 0) return -1;
  const off_t pos = ftello(f_);
  return pos < 0 ? -1 : static_cast<int64_t>(pos);
}

int64_t InFile::remaining() {
  const int64_t pos = position();
  if (pos < 0) return -1;
  return size_ > pos ? size_ - pos : 0;
}

void InFile::need(uint64_t n, const char* what) {
  const int64_t left = remaining();
  if (left >= 0) {
    if (static_cast<uint64_t>(left) < n)
      fail(path_, std::string("truncated ") + what + " (" + std::to_string(n) +
                      " bytes needed, " + std::to_string(left) + " left)");
    return;
  }
  if (n > kPipeFrameLimit)
    fail(path_, "the header announces " + std::to_string(n) + " bytes of " + what +
                    ", more than the " + std::to_string(kPipeFrameLimit >> 20) +
                    " MiB a frame that lumconv takes from a pipe; if the image is real, "
                    "save it to a file and convert the file");
}

// --- OutFile ----------------------------------------------------------------

OutFile::OutFile(const std::string& path) : path_(displayName(path, true)) {
  if (path == "-") {
    f_ = stdout;
    direct_ = true;
    if (isatty(fileno(f_)))
      fail(path_, "is a terminal: redirect it (> out.ppm, | next-program) or name a file");
    return;
  }
  target_ = followLinks(path);
  struct stat st;
  const bool exists = stat(target_.c_str(), &st) == 0;
  if (exists && S_ISDIR(st.st_mode)) fail(path_, "is a directory");
  if (exists && !S_ISREG(st.st_mode)) {
    // A device or a named pipe: nothing to replace.
    f_ = std::fopen(target_.c_str(), "wb");
    if (!f_) fail(path_, sysError(errno));
    direct_ = true;
    return;
  }
  mode_t mode;
  if (exists) {
    mode = st.st_mode & 07777;
  } else {
    const mode_t mask = umask(0);
    umask(mask);
    mode = 0666 & ~mask;
  }
  const std::string dir = directoryOf(target_);
  std::string base = baseOf(target_);
  if (base.size() > 200) base.resize(200);
  std::string name = dir + "/." + base + ".lumconv-XXXXXX";
  if (name.size() >= sizeof gTempPath) fail(path_, "path too long");
  int fd;
  {
    SignalsBlocked blocked;
    fd = mkstemp(&name[0]);
    if (fd < 0) {
      const int err = errno;
      fail(path_, "cannot create a file in " + dir + ": " + sysError(err));
    }
    std::memcpy(gTempPath, name.c_str(), name.size() + 1);
    gTempSet = 1;
  }
  temp_ = name;
  // The old file's permissions, or those of a new file; where the file
  // system has none (fchmod fails), it goes on without them.
  if (fchmod(fd, mode) != 0) {
  }
  f_ = fdopen(fd, "wb");
  if (!f_) {
    const int err = errno;
    ::close(fd);
    discard();
    fail(path_, sysError(err));
  }
}

OutFile::~OutFile() {
  if (!closed_) discard();
}

void OutFile::discard() {
  if (f_ && f_ != stdout) std::fclose(f_);
  f_ = nullptr;
  if (temp_.empty()) return;
  SignalsBlocked blocked;
  unlink(temp_.c_str());
  gTempSet = 0;
  temp_.clear();
}

void OutFile::write(const void* src, size_t n) {
  if (n == 0) return;
  if (std::fwrite(src, 1, n, f_) != n) fail(path_, "write error: " + sysError(errno));
}

void OutFile::close() {
  std::FILE* f = f_;
  f_ = nullptr;
  if (f == stdout) {
    if (std::fflush(f) != 0 || std::ferror(f)) fail(path_, "write error: " + sysError(errno));
    closed_ = true;
    return;
  }
  bool ok = std::fflush(f) == 0;
  // On the disk before it replaces the old file: a crash leaves the old
  // file or the new one, never an empty one.
  if (ok && !direct_) ok = fsync(fileno(f)) == 0;
  const int err = errno;
  if (std::fclose(f) != 0 || !ok) fail(path_, "write error: " + sysError(ok ? errno : err));
  if (!direct_) {
    SignalsBlocked blocked;
    if (std::rename(temp_.c_str(), target_.c_str()) != 0) {
      const int renameErr = errno;
      unlink(temp_.c_str());
      gTempSet = 0;
      temp_.clear();
      fail(path_, "cannot replace " + target_ + ": " + sysError(renameErr));
    }
    gTempSet = 0;
    temp_.clear();
  }
  closed_ = true;
}

bool sameFile(const std::string& a, const std::string& b) {
  if (a == "-" || b == "-") return false;
  struct stat sa, sb;
  if (stat(a.c_str(), &sa) != 0 || stat(b.c_str(), &sb) != 0) return false;
  return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

}  // namespace lumconv
