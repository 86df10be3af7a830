#include "Allocations.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <new>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define WITH_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define WITH_SANITIZER 1
#endif
#endif

namespace {

// Signed: what was given out before counting began may be freed later.
std::atomic<std::ptrdiff_t> blocks{0};
std::atomic<std::ptrdiff_t> octets{0};
std::atomic<std::ptrdiff_t> mostOctets{0};
std::atomic<std::size_t> allBlocks{0};

void enter(std::size_t size) {
  ++blocks;
  ++allBlocks;
  const std::ptrdiff_t now = octets += static_cast<std::ptrdiff_t>(size);
  std::ptrdiff_t most = mostOctets;
  while (now > most && !mostOctets.compare_exchange_weak(most, now)) {
  }
}

void leave(std::size_t size) {
  --blocks;
  octets -= static_cast<std::ptrdiff_t>(size);
}

/// What a thread has been told about failing.
struct Plan {
  bool isOn;
  bool onceOnly;
  bool hasHappened;
  std::size_t allocationsBefore;
};
thread_local Plan plan = {};

bool fails() {
  if (!plan.isOn) return false;
  if (plan.hasHappened) return !plan.onceOnly;
  if (plan.allocationsBefore > 0) {
    --plan.allocationsBefore;
    return false;
  }
  plan.hasHappened = true;
  return true;
}

}  // namespace

namespace allocations {

bool areCounted() {
  static const bool result = [] {
    const std::size_t before = allBlocks;
    // Called by pointer, so that no compiler leaves the pair out.
    void* (*volatile allocate)(std::size_t) = std::malloc;
    std::free(allocate(1));
    return allBlocks != before;
  }();
  return result;
}

std::size_t live() { return static_cast<std::size_t>(blocks.load()); }
std::size_t total() { return allBlocks; }
std::size_t inUse() { return static_cast<std::size_t>(octets.load()); }
std::size_t peak() { return static_cast<std::size_t>(mostOctets.load()); }
void resetPeak() { mostOctets = octets.load(); }

Failure::Failure(std::size_t number, Later later) {
  plan = {true, later == Later::succeeds, false, number};
}
Failure::~Failure() { plan = {}; }
bool Failure::happened() const { return plan.hasHappened; }

void failAt(std::size_t count) { plan = {count > 0, true, false, count - 1}; }
void failAfter(std::size_t count) { plan = {true, false, false, count}; }
void stopFailing() { plan = {}; }

}  // namespace allocations

#ifdef WITH_SANITIZER

// GCC has no header for these functions of the sanitizers.
extern "C" {
int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*, std::size_t),
                                              void (*onFree)(const volatile void*));
std::size_t __sanitizer_get_allocated_size(const volatile void* block);
}

namespace {

[[maybe_unused]] const int kHooks = __sanitizer_install_malloc_and_free_hooks(
    [](const volatile void*, std::size_t size) { enter(size); },
    [](const volatile void* block) { leave(__sanitizer_get_allocated_size(block)); });

void* allocate(std::size_t size) noexcept {
  return fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* allocateOrThrow(std::size_t size) {
  void* block = allocate(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}

}  // namespace

// The sanitizers' own have no hook that could make them fail.
void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { std::free(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { std::free(block); }

#else

#include <malloc.h>

// The names under which the C library keeps its own functions for those that replace them.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

/// Counts what a function of the C library gives, unless it is to fail.
template <typename Allocate>
void* counted(Allocate allocate) {
  void* block = fails() ? nullptr : allocate();
  if (block == nullptr) {
    errno = ENOMEM;
  } else {
    enter(malloc_usable_size(block));
  }
  return block;
}

}  // namespace

// These replace those of the C library, for all libraries of the program.
extern "C" {
#pragma GCC visibility push(default)

void* malloc(std::size_t size) noexcept {
  return counted([=] { return __libc_malloc(size); });
}

void* calloc(std::size_t count, std::size_t size) noexcept {
  return counted([=] { return __libc_calloc(count, size); });
}

void* realloc(void* block, std::size_t size) noexcept {
  const std::size_t before = block == nullptr ? 0 : malloc_usable_size(block);
  // A size of zero frees the block and gives none.
  void* result = fails() && size > 0 ? nullptr : __libc_realloc(block, size);
  if (block != nullptr && (result != nullptr || size == 0)) leave(before);
  if (result != nullptr) {
    enter(malloc_usable_size(result));
  } else if (block == nullptr || size > 0) {
    errno = ENOMEM;
  }
  return result;
}

void free(void* block) noexcept {
  if (block != nullptr) leave(malloc_usable_size(block));
  __libc_free(block);
}

void* memalign(std::size_t alignment, std::size_t size) noexcept {
  return counted([=] { return __libc_memalign(alignment, size); });
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
  return memalign(alignment, size);
}

int posix_memalign(void** result, std::size_t alignment, std::size_t size) noexcept {
  if (alignment % sizeof(void*) != 0 || alignment == 0 || (alignment & (alignment - 1)) != 0) {
    return EINVAL;
  }
  const int before = errno;
  void* block = memalign(alignment, size);
  errno = before;  // This function leaves it alone.
  if (block == nullptr) return ENOMEM;
  *result = block;
  return 0;
}

#pragma GCC visibility pop
}

#endif
