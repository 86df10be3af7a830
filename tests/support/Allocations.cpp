#include "Allocations.h"

#include <malloc.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> used{0};
std::atomic<std::size_t> most{0};
std::atomic<std::size_t> untilFailure{0};
std::atomic<bool> fails{false};
std::atomic<std::size_t> left{0};  // Before they fail.

bool isToFail() {
  if (!fails) return false;
  if (left == 0) return true;
  --left;
  return false;
}

void* allocate(std::size_t size) noexcept {
  if (untilFailure > 0 && --untilFailure == 0) return nullptr;
  if (isToFail()) return nullptr;
  void* memory = std::malloc(std::max<std::size_t>(size, 1));
  if (memory != nullptr) {
    // Where a test has no threads, these two steps are one.
    const std::size_t now = used += malloc_usable_size(memory);
    most = std::max(most.load(), now);
  }
  return memory;
}

void* allocateOrThrow(std::size_t size) {
  void* memory = allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void release(void* memory) noexcept {
  if (memory == nullptr) return;
  used -= malloc_usable_size(memory);
  std::free(memory);
}

}  // namespace

namespace allocations {

std::size_t inUse() { return used; }
std::size_t peak() { return most; }
void resetPeak() { most = used.load(); }
void failAt(std::size_t count) { untilFailure = count; }

void failAfter(std::size_t count) {
  left = count;
  fails = true;
}
void stopFailing() { fails = false; }

}  // namespace allocations

void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { release(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { release(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { release(memory); }
