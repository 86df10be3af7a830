#include "Allocations.h"

#include <malloc.h>

#include <cstdlib>
#include <new>

namespace {

std::size_t live = 0;
bool armed = false;
bool failed = false;
int left = 0;  ///< How many allocations succeed before the one that fails.

void* allocate(std::size_t size) noexcept {
  if (armed && left-- == 0) {
    armed = false;
    failed = true;
    return nullptr;
  }
  void* block = std::malloc(size > 0 ? size : 1);
  if (block != nullptr) live += malloc_usable_size(block);
  return block;
}

void release(void* block) noexcept {
  if (block != nullptr) live -= malloc_usable_size(block);
  std::free(block);
}

}  // namespace

std::size_t liveOctets() { return live; }

FailingAllocation::FailingAllocation(int number) {
  left = number;
  failed = false;
  armed = true;
}

FailingAllocation::~FailingAllocation() { armed = false; }

bool FailingAllocation::hasFailed() { return failed; }

void* operator new(std::size_t size) {
  if (void* block = allocate(size)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { release(block); }
