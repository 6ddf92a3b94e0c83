// lumdigest: prints a digest of what every public function writes for fixed
// inputs, through the public API only.  Two builds (x86-64 and i386) must
// print the same lines; --check-teams also compares team sizes 1 and 4
// within one build and exits non-zero on a difference.
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include <xmmintrin.h>

#include <string>
#include <vector>

#include "lum_table.h"
#include "lumcc.h"

namespace {

// Deterministic bytes (a 32-bit LCG), independent of the platform.
struct Lcg {
  uint32_t s;
  uint32_t next() { return s = s * 1664525u + 1013904223u; }
};

uint64_t fnv1a(const void* p, size_t n, uint64_t h = 1469598103934665603ull) {
  const uint8_t* b = static_cast<const uint8_t*>(p);
  for (size_t i = 0; i < n; ++i) h = (h ^ b[i]) * 1099511628211ull;
  return h;
}

template <class T>
T sample(Lcg& g) {
  return static_cast<T>(g.next() >> 16);
}
template <>
float sample<float>(Lcg& g) {
  // Mostly 0..1, a few outside, some exact greys come from repeats below.
  return static_cast<float>(static_cast<int32_t>(g.next() >> 8) % 12000 - 1000) / 10000.0f;
}

// Elements with 16 readable zero bytes before the first (a width-1 CbYCr
// row reads the two bytes before its row).
template <class T>
struct LeadVec {
  static constexpr size_t kLead = 16 / sizeof(T);
  std::vector<T> store;
  explicit LeadVec(size_t n) : store(n + kLead, T(0)) {}
  T* data() { return store.data() + kLead; }
  const T* data() const { return store.data() + kLead; }
  size_t size() const { return store.size() - kLead; }
  T& operator[](size_t i) { return data()[i]; }
};

// One image: rows of `rowElems` elements with 7 spare elements a row.
template <class T>
struct Img {
  int rowElems, height, stepBytes;
  LeadVec<T> buf;
  Img(int rowElems_, int height_, Lcg& g, bool random)
      : rowElems(rowElems_), height(height_), stepBytes((rowElems_ + 7) * static_cast<int>(sizeof(T))),
        buf(static_cast<size_t>(rowElems_ + 7) * height_ + 1) {
    for (size_t i = 0; i < buf.size(); ++i) buf[i] = random ? sample<T>(g) : static_cast<T>(0x5A);
    if (random && rowElems >= 6)  // a grey pixel and a repeated pixel in each row
      for (int y = 0; y < height; ++y) {
        T* r = row(y);
        r[1] = r[0];
        r[2] = r[0];
      }
  }
  T* row(int y) { return buf.data() + static_cast<size_t>(y) * (rowElems + 7); }
  uint64_t hash() const { return fnv1a(buf.data(), buf.size() * sizeof(T)); }
};

const LumSize kSizes[] = {{1, 1}, {3, 2}, {7, 3}, {16, 2}, {37, 5}, {70, 3}, {130, 41}};

std::vector<std::string> gLines;

void emit(const std::string& name, LumSize sz, int status, uint64_t h) {
  char line[256];
  snprintf(line, sizeof line, "%-28s %4dx%-4d %4d %016llx", name.c_str(), sz.width, sz.height,
           status, static_cast<unsigned long long>(h));
  gLines.push_back(line);
}

// One image function of the table at one size.  The source is filled first,
// then the destination, from one generator seeded by the shape; planes of a
// side share one step.
struct Images {
  std::vector<Img<Lum8u>> p8;
  std::vector<Img<Lum16u>> p16;
  std::vector<Img<Lum32f>> p32;
  void* add(int elem, bool isFloat, int rowElems, int h, Lcg& g, bool random, int* step) {
    if (elem == 1) {
      p8.emplace_back(rowElems, h, g, random);
      *step = p8.back().stepBytes;
      return p8.back().buf.data();
    }
    if (elem == 2) {
      p16.emplace_back(rowElems, h, g, random);
      *step = p16.back().stepBytes;
      return p16.back().buf.data();
    }
    (void)isFloat;
    p32.emplace_back(rowElems, h, g, random);
    *step = p32.back().stepBytes;
    return p32.back().buf.data();
  }
};
uint32_t seedOf(lum::Shape s, LumSize sz) {
  switch (s) {
    case lum::Shape::B: return static_cast<uint32_t>(sz.width * 23 + sz.height);
    case lum::Shape::C: return static_cast<uint32_t>(sz.width * 19 + sz.height);
    case lum::Shape::D: return static_cast<uint32_t>(sz.width * 17 + sz.height);
    default: return static_cast<uint32_t>(sz.width * 131 + sz.height);
  }
}
void runEntry(const lumtable::Entry& e) {
  for (LumSize sz : kSizes) {
    if (sz.width < e.minWidth || sz.height < e.minHeight) continue;
    Lcg g{seedOf(e.shape, sz)};
    // Each side in its own store, so that the vectors do not move the images.
    Images src, dst;
    for (Images* i : {&src, &dst}) {
      i->p8.reserve(4);
      i->p16.reserve(4);
      i->p32.reserve(4);
    }
    lumtable::Args a;
    for (int p = 0; p < e.srcPlanes(); ++p)
      a.src[p] = src.add(e.srcElem, e.srcFloat, lum::planeRowSamples(e.srcLayout, p, sz.width),
                         e.srcRows(p, sz.height), g, true, &a.srcSteps[p]);
    for (int p = 0; p < e.dstPlanes(); ++p)
      a.dst[p] = dst.add(e.dstElem, false, lum::planeRowSamples(e.dstLayout, p, sz.width),
                         e.dstRows(p, sz.height), g, false, &a.dstSteps[p]);
    // A side with one step: its planes' steps are equal already (full planes).
    a.roi = sz;
    a.fill = 0xC3;
    const int st = e.call(a);
    uint64_t h = 1469598103934665603ull;
    for (auto& i : dst.p8) h = fnv1a(i.buf.data(), i.buf.size(), h);
    for (auto& i : dst.p16) h = fnv1a(i.buf.data(), i.buf.size() * 2, h);
    for (auto& i : dst.p32) h = fnv1a(i.buf.data(), i.buf.size() * 4, h);
    emit(e.name, sz, st, h);
  }
}

void services() {
  for (LumSize sz : kSizes) {
    Lcg g{static_cast<uint32_t>(sz.width * 29 + sz.height)};
    Img<Lum8u> s(sz.width, sz.height, g, true), d(sz.width, sz.height, g, false);
    emit("lumiCopy_8u_C1R", sz, lumiCopy_8u_C1R(s.buf.data(), s.stepBytes, d.buf.data(), d.stepBytes, sz), d.hash());
    emit("lumiSet_8u_C1R", sz, lumiSet_8u_C1R(0xC3, d.buf.data(), d.stepBytes, sz), d.hash());
    Img<Lum32f> f(sz.width, sz.height, g, true);
    Lum32f mx = 0;
    emit("lumiMax_32f_C1R", sz, lumiMax_32f_C1R(f.buf.data(), f.stepBytes, sz, &mx), fnv1a(&mx, sizeof mx));
    for (int hint : {0, 2}) {
      Lum64f sum = 0, mean = 0;
      const std::string n = hint == 2 ? "_hint2" : "_fast";
      emit("lumiSum_32f_C1R" + n, sz, lumiSum_32f_C1R(f.buf.data(), f.stepBytes, sz, &sum, hint), fnv1a(&sum, sizeof sum));
      emit("lumiMean_32f_C1R" + n, sz, lumiMean_32f_C1R(f.buf.data(), f.stepBytes, sz, &mean, hint), fnv1a(&mean, sizeof mean));
    }
  }
  LumRandState16s* s16 = nullptr;
  LumRandState32f* s32 = nullptr;
  std::vector<Lum16s> r16(1000);
  std::vector<Lum32f> r32(1000);
  for (unsigned seed : {0u, 1u, 12345u, 0xFFFFFFFFu}) {
    lumsRandUniformInitAlloc_16s(&s16, -32768, 32767, seed);
    lumsRandUniformInitAlloc_32f(&s32, -1.5f, 2.0f, seed);
    const LumSize n{1000, static_cast<int>(seed & 0xFFFF)};
    emit("lumsRandUniform_16s", n, lumsRandUniform_16s(r16.data(), 1000, s16), fnv1a(r16.data(), 2000));
    emit("lumsRandUniform_32f", n, lumsRandUniform_32f(r32.data(), 1000, s32), fnv1a(r32.data(), 4000));
    lumsRandUniformFree_16s(s16);
    lumsRandUniformFree_32f(s32);
  }
}



void all() {
  gLines.clear();
  for (const lumtable::Entry& e : lumtable::table())
    if (e.isImage() && strcmp(e.family, "services") != 0) runEntry(e);
  services();
}

}  // namespace

// The processor's approximate reciprocal (rcpps) is not the same on every
// processor, and some members divide through it as it stands: their bytes
// are fixed for one processor only.  The fingerprint is a digest of rcpps
// over the mantissas of [1, 2) (every 16th); the committed record holds the
// fingerprint of the machine that wrote it.
uint64_t rcpFingerprint() {
  uint64_t h = 1469598103934665603ull;
  for (uint32_t m = 0; m < (1u << 23); m += 16) {
    const uint32_t bits = 0x3F800000u | m;
    float x;
    memcpy(&x, &bits, 4);
    const float r = _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(x)));
    h = fnv1a(&r, 4, h);
  }
  return h;
}
bool dividesByRcp(const std::string& line) {
  static const char* const kMembers[] = {"lumiRGBToHSV_", "lumiHSVToRGB_", "lumiRGBToHLS_8u_",
                                         "lumiRGBToHLS_16u_", "lumiRGBToHLS_16s_", "lumiBGRToHLS_8u_"};
  for (const char* m : kMembers)
    if (line.compare(0, strlen(m), m) == 0) return true;
  return false;
}
std::string fingerprintLine() {
  char b[64];
  snprintf(b, sizeof b, "# rcpps %016llx", static_cast<unsigned long long>(rcpFingerprint()));
  return b;
}

// --expect FILE: the digests must be the lines of FILE, the committed record
// of every function's bytes.  A difference names the lines and fails.
int expect(const char* path, const std::vector<std::string>& got) {
  FILE* f = fopen(path, "r");
  if (!f) {
    fprintf(stderr, "lumdigest: cannot read %s\n", path);
    return 2;
  }
  std::vector<std::string> want;
  std::string fingerprint;
  char line[512];
  while (fgets(line, sizeof line, f)) {
    std::string l(line);
    while (!l.empty() && (l.back() == '\n' || l.back() == '\r')) l.pop_back();
    if (l.compare(0, 8, "# rcpps ") == 0) fingerprint = l;
    else if (!l.empty() && l[0] != '#') want.push_back(l);
  }
  fclose(f);
  // On a processor with another rcpps, the members that divide through it
  // are left out (the tests compare them with expectations computed by the
  // same instruction).
  const bool sameRcp = fingerprint == fingerprintLine();
  int bad = 0, skipped = 0;
  for (size_t i = 0; i < want.size() || i < got.size(); ++i) {
    const std::string w = i < want.size() ? want[i] : "(none)";
    const std::string g = i < got.size() ? got[i] : "(none)";
    if (!sameRcp && dividesByRcp(w) && dividesByRcp(g) && w.compare(0, w.find(' '), g, 0, g.find(' ')) == 0) {
      ++skipped;
      continue;
    }
    if (w != g && bad++ < 40) fprintf(stderr, "  committed: %s\n  now:       %s\n", w.c_str(), g.c_str());
  }
  if (bad) fprintf(stderr, "  (lumdigest --sizes shows the sizes behind each line)\n");
  if (skipped)
    printf("lumdigest: this processor's rcpps differs from the record's: %d digests of members "
           "that divide through it not compared\n", skipped);
  if (bad) {
    fprintf(stderr,
            "lumdigest: %d digests differ from %s: the bytes changed.  If that is meant, "
            "regenerate the file (lumdigest > %s) in the same commit and say why.\n",
            bad, path, path);
    return 1;
  }
  printf("lumdigest: %zu digests as committed\n", got.size());
  return 0;
}

// One line a function: its size lines (status and digest at every size)
// digested together.  The record holds these; --sizes shows the lines
// behind them.
std::vector<std::string> perFunction(const std::vector<std::string>& lines) {
  // Lines of one name digested together, in the order names first appear
  // (the services print their functions size by size, interleaved).
  std::vector<std::string> names;
  std::vector<uint64_t> hashes;
  std::vector<int> counts;
  for (const std::string& l : lines) {
    const std::string name = l.substr(0, l.find(' '));
    size_t k = 0;
    while (k < names.size() && names[k] != name) ++k;
    if (k == names.size()) {
      names.push_back(name);
      hashes.push_back(1469598103934665603ull);
      counts.push_back(0);
    }
    hashes[k] = fnv1a(l.data(), l.size(), hashes[k]);
    ++counts[k];
  }
  std::vector<std::string> out;
  for (size_t k = 0; k < names.size(); ++k) {
    char line[256];
    snprintf(line, sizeof line, "%-34s %3d sizes %016llx", names[k].c_str(), counts[k],
             static_cast<unsigned long long>(hashes[k]));
    out.push_back(line);
  }
  return out;
}

int main(int argc, char** argv) {
  if (argc > 1 && strcmp(argv[1], "--names") == 0) {  // the function table's names
    for (const lumtable::Entry& e : lumtable::table()) printf("%s\n", e.name);
    return 0;
  }
  const bool checkTeams = argc > 1 && strcmp(argv[1], "--check-teams") == 0;
  threads_omp_of_n_lum = 1;
  all();
  const std::vector<std::string> one = gLines;
  if (argc > 2 && strcmp(argv[1], "--expect") == 0) return expect(argv[2], perFunction(one));
  if (checkTeams) {
    threads_omp_of_n_lum = 4;
    all();
    if (gLines != one) {
      fprintf(stderr, "lumdigest: team sizes 1 and 4 give different bytes\n");
      for (size_t i = 0; i < one.size() && i < gLines.size(); ++i)
        if (one[i] != gLines[i]) fprintf(stderr, "  1: %s\n  4: %s\n", one[i].c_str(), gLines[i].c_str());
      return 1;
    }
    printf("lumdigest: %zu digests, team sizes 1 and 4 agree\n", one.size());
    return 0;
  }
  const bool sizes = argc > 1 && strcmp(argv[1], "--sizes") == 0;
  printf("%s\n", fingerprintLine().c_str());
  for (const std::string& l : sizes ? one : perFunction(one)) printf("%s\n", l.c_str());
  return 0;
}
