#include "FailingAllocations.h"

#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t kNone = ~std::size_t{0};

std::size_t left = kNone;
bool hasFailed = false;

void* allocate(std::size_t size) {
  if (left != kNone && left-- == 0) {
    left = kNone;
    hasFailed = true;
    throw std::bad_alloc();
  }
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

namespace allocations {

void failAt(std::size_t number) {
  hasFailed = false;
  left = number;
}

bool failed() {
  left = kNone;
  return hasFailed;
}

}  // namespace allocations

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
