#include "Trap.h"

#include <Tavrin/Exceptions.h>
#include <expat.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

namespace trap {

namespace {

bool isSet = false;
bool sprung = false;
Place place{};
Kind kind{};
std::size_t left = 0;
int suspended = 0;
std::ptrdiff_t live = 0;

void* counted(void* memory) {
  if (memory != nullptr) ++live;
  return memory;
}

}  // namespace

void set(Place at, std::size_t number, Kind what) {
  place = at;
  left = number;
  kind = what;
  sprung = false;
  isSet = true;
}

bool clear() {
  isSet = false;
  return std::exchange(sprung, false);
}

bool hasSprung() { return sprung; }

bool springs(Place at) {
  if (!isSet || at != place || (at == Place::allocation && suspended > 0)) return false;
  if (left-- > 0) return false;
  isSet = false;
  return sprung = true;
}

bool throwsOrEnds(Place at) {
  if (!springs(at)) return false;
  if (kind == Kind::foreign) throw Foreign();
  if (kind == Kind::saxException) throw Tavrin::SAXException("mine");
  return true;
}

NoFailure::NoFailure() { ++suspended; }
NoFailure::~NoFailure() { --suspended; }

std::ptrdiff_t liveAllocations() { return live; }

namespace {

void* allocate(std::size_t size) noexcept {
  if (springs(Place::allocation)) return nullptr;
  return counted(std::malloc(std::max<std::size_t>(size, 1)));
}

void* allocate(std::size_t size, std::align_val_t alignment) noexcept {
  if (springs(Place::allocation)) return nullptr;
  const auto boundary = static_cast<std::size_t>(alignment);
  return counted(std::aligned_alloc(boundary, (size + boundary - 1) / boundary * boundary));
}

void* orThrow(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void release(void* memory) noexcept {
  if (memory == nullptr) return;
  --live;
  std::free(memory);
}

// Not counted, because content models are given back by free, as expat wants it of handlers whose
// parser has the default allocator. Sanitizers count them.
constexpr XML_Memory_Handling_Suite kSuite = {
    [](std::size_t size) { return springs(Place::allocation) ? nullptr : std::malloc(size); },
    [](void* memory, std::size_t size) {
      return springs(Place::allocation) ? nullptr : std::realloc(memory, size);
    },
    std::free};

}  // namespace

}  // namespace trap

void* operator new(std::size_t size) { return trap::orThrow(trap::allocate(size)); }
void* operator new[](std::size_t size) { return trap::orThrow(trap::allocate(size)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return trap::allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return trap::allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  return trap::orThrow(trap::allocate(size, alignment));
}
void operator delete(void* memory) noexcept { trap::release(memory); }
void operator delete[](void* memory) noexcept { trap::release(memory); }
void operator delete(void* memory, std::size_t) noexcept { trap::release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { trap::release(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { trap::release(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { trap::release(memory); }
void operator delete(void* memory, std::align_val_t) noexcept { trap::release(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  trap::release(memory);
}

// Stand in front of expat's own functions: parsers allocate as the rest does.
extern "C" {

__attribute__((visibility("default"))) XML_Parser XML_ParserCreate(const XML_Char* encoding) {
  return XML_ParserCreate_MM(encoding, &trap::kSuite, nullptr);
}

__attribute__((visibility("default"))) XML_Parser XML_ParserCreateNS(const XML_Char* encoding,
                                                                     XML_Char separator) {
  const XML_Char separators[] = {separator, '\0'};
  return XML_ParserCreate_MM(encoding, &trap::kSuite, separators);
}

}  // extern "C"
