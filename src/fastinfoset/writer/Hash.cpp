#include <Tavrin/XMLWriter_FI.h>

#include <cstring>
#include <random>

// The hash of the tables. A document decides what enters them; were the hash known beforehand, it
// could choose strings that all fall into one bucket.

namespace Tavrin {

namespace {

__extension__ using Product = unsigned __int128;

struct Secret {
  std::uint64_t begin;
  std::uint64_t factor;
};

std::uint64_t randomBits(std::random_device& device) {
  return std::uint64_t{device()} << 32 | device();
}

const Secret& secret() {
  static const Secret secret = [] {
    std::random_device device;
    return Secret{randomBits(device), randomBits(device) | 1};
  }();
  return secret;
}

/// Both halves of a product, so that every bit depends on all bits above and below it.
std::uint64_t mix(std::uint64_t bits, std::uint64_t factor) {
  const Product product = Product{bits} * factor;
  return static_cast<std::uint64_t>(product >> 64) ^ static_cast<std::uint64_t>(product);
}

std::uint64_t hashOf(const std::string& text, std::uint64_t begin, std::uint64_t factor) {
  std::uint64_t hash = mix(begin ^ text.size(), factor);
  const char* next = text.data();
  std::size_t left = text.size();
  std::uint64_t word = 0;
  for (; left >= sizeof word; left -= sizeof word, next += sizeof word) {
    std::memcpy(&word, next, sizeof word);
    hash = mix(hash ^ word, factor);
  }
  word = 0;
  std::memcpy(&word, next, left);
  return mix(hash ^ word, factor);
}

}  // namespace

std::size_t XMLWriter_FI::Hash::operator()(const std::string& text) const {
  return hashOf(text, secret().begin, secret().factor);
}

std::size_t XMLWriter_FI::Hash::operator()(const QualifiedName& name) const {
  const auto [begin, factor] = secret();
  return hashOf(name.namespaceName,
                hashOf(name.prefix, hashOf(name.localName, begin, factor), factor), factor);
}

std::size_t XMLWriter_FI::Hash::sizeOf(const std::string& text) { return text.size(); }

std::size_t XMLWriter_FI::Hash::sizeOf(const QualifiedName& name) {
  return name.prefix.size() + name.namespaceName.size() + name.localName.size();
}

}  // namespace Tavrin
