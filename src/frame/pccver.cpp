// Library identity and aligned allocation: the constant version record, the
// allocator table that applications may replace, and the 32-byte aligned
// blocks with a hidden pointer to the raw block just below them.
#include <stdlib.h>

#include "frame/lum_frame.h"
#include "frame/pccsupport.h"

using namespace lum::svc;

// ---------------------------------------------------------------------------
// Allocator table: writable, visible to applications.
LUM_API void* (*i_malloc)(size_t) = malloc;
LUM_API void* (*i_calloc)(size_t, size_t) = calloc;
LUM_API void* (*i_realloc)(void*, size_t) = realloc;
LUM_API void (*i_free)(void*) = free;
LUM_API int i_version = 1;
LUM_API int i_min_version = 0;

namespace {

const LumLibraryVersion kVersion = {
    5, 2, 108, 321, {'w', '7', '\0', '\0'}, "liblumccw7.so.5.2", "5.2", "Jul 11 2007"};

// count elements of elemSize bytes, plus alignment room and the hidden word.
// The byte count is formed in 32 bits and not tested for overflow.  The
// result is (raw + 31 + word) & ~31, at least one word above raw, and the
// word just below it holds raw.
void* alignedAlloc(int count, unsigned elemSize) {
  if (count < 1) return nullptr;
  const uint32_t bytes = static_cast<uint32_t>(count) * elemSize + kAllocExtra;
  void* const raw = i_malloc(static_cast<size_t>(bytes));
  if (raw == nullptr) return nullptr;
  const uintptr_t aligned = (reinterpret_cast<uintptr_t>(raw) + kAllocLift) & ~uintptr_t{31};
  memcpy(reinterpret_cast<void*>(aligned - kHiddenWord), &raw, kHiddenWord);
  return reinterpret_cast<void*>(aligned);
}

}  // namespace

LUM_PUBLIC const LumLibraryVersion* lumccGetLibVersion(void) { return &kVersion; }

LUM_PUBLIC Lum16s* lumsMalloc_16s(int count) {
  return static_cast<Lum16s*>(alignedAlloc(count, sizeof(Lum16s)));
}

LUM_PUBLIC Lum16u* lumsMalloc_16u(int count) {
  return static_cast<Lum16u*>(alignedAlloc(count, sizeof(Lum16u)));
}

LUM_PUBLIC Lum32f* lumsMalloc_32f(int count) {
  return static_cast<Lum32f*>(alignedAlloc(count, sizeof(Lum32f)));
}

LUM_PUBLIC void lumsFree(void* pMem) {
  if (pMem == nullptr) return;
  void* raw;
  memcpy(&raw, static_cast<char*>(pMem) - kHiddenWord, kHiddenWord);
  i_free(raw);
}
