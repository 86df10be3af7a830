#pragma once

#include <Tavrin/XMLReader_X891.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <functional>
#include <istream>
#include <map>
#include <optional>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include "../../../io/SingleOctets.h"
#include "../../../typed/ExactNumbers.h"
#include "../../../xml/NamespaceBindings.h"
#include "../../../xml/UniqueAttributes.h"
#include "../../Dialect.h"
#include "../OctetStream.h"
#include "RestrictedAlphabet.h"
#include "StartTagAttributes.h"

namespace Tavrin {

/// A stream over the next octets of another one, for algorithms to decode from without a copy of
/// them all: none reads beyond its data.
class NextOctets {
 public:
  /// @param source outlives this
  NextOctets(std::streambuf& source, std::uint64_t count)
      : buffer_(source, count), stream_(&buffer_) {}

  std::istream& stream() { return stream_; }
  /// How many octets have been taken from the other stream.
  std::uint64_t taken() const { return buffer_.taken; }
  /// Throws what the source threw, if anything.
  void rethrow() const {
    if (buffer_.thrown) std::rethrow_exception(buffer_.thrown);
  }

 private:
  struct Buffer : std::streambuf {
    Buffer(std::streambuf& octets, std::uint64_t count) : source(octets), left(count) {}

    // What the source has at hand stays where it is until it is asked for more.
    int_type underflow() override {
      const GetArea atHand(source);
      if (const auto count = std::min<std::uint64_t>(left, atHand.size()); count > 0) {
        char* const octets = atHand.begin();
        atHand.take(count);
        return show(octets, count);
      }
      const auto wanted = std::min<std::uint64_t>(left, block.size());
      try {
        const auto got = source.sgetn(block.data(), static_cast<std::streamsize>(wanted));
        return show(block.data(), static_cast<std::uint64_t>(got));
      } catch (...) {
        thrown = std::current_exception();  // A stream would keep it to itself.
        throw;
      }
    }

    int_type show(char* octets, std::uint64_t count) {
      setg(octets, octets, octets + count);
      taken += count;
      left -= count;
      return count == 0 ? traits_type::eof() : traits_type::to_int_type(*octets);
    }

    std::streambuf& source;
    std::uint64_t left;
    std::uint64_t taken = 0;
    std::exception_ptr thrown;
    std::array<char, 512> block{};  // Sources without octets at hand are slow anyway.
  };

  Buffer buffer_;
  std::istream stream_;
};

/// What the reader knows beside what it shares with that of "FI".
struct XMLReader_X891::State {
  // --- Limits ---

  static constexpr double kAmplificationFactor = 1000;
  static constexpr std::uint64_t kAmplificationThreshold = std::uint64_t{8} << 20;
  static constexpr std::uint64_t kMaximumTableOctets = fastinfoset::kReadersTableOctets;
  static constexpr std::uint64_t kMaximumLiteralOctets = std::uint64_t{1} << 30;

  double amplificationFactor = kAmplificationFactor;
  std::uint64_t amplificationThreshold = kAmplificationThreshold;

  // Used again for each start tag.
  StartTagAttributes attributes;
  std::pair<std::string, std::string> declaration;  // Prefix and namespace name.

  // --- Typed content ---

  UUIDEncodingAlgorithm uuid;
  ExactShortData shorts;
  ExactIntData ints;
  ExactLongData longs;
  ExactFloatData floats;
  ExactDoubleData doubles;
  std::string octets;                      // Of the value that is being decoded.
  std::optional<OctetStream> octetStream;  // Made when it is needed: that takes long.

  // --- The document; what follows is new for each ---

  /// An event that waits for the root element, whose qualified name it is called with.
  using HeldBack = std::function<void(const std::string& rootName)>;

  struct Document {
    std::string version = "1.0";
    std::optional<bool> standalone;

    std::vector<HeldBack> prolog;
    std::vector<HeldBack> declarations;  // Notations and unparsed entities.
    bool hasDocumentType = false;
    bool isHoldingBack = false;

    std::map<unsigned, RestrictedAlphabet> alphabets;  // By field, when first used.

    std::uint64_t allowedFromTables = 0;  // Octets, for what had been read by the last look.

    xml::NamespaceBindings bindings;
    xml::UniqueAttributes attributes;
    std::uint64_t tagOctets = 0;  // What the attributes count for while their tag is read.

    /// The identifiers of entities that were referred to: public and system identifier by name.
    std::map<std::string, std::pair<std::string, std::string>> entities;
  };
  Document document;
  bool isUsed = false;  // The document is one that was read.
};

/// Only what comes from a table by its index can be delivered far more often than it was read; and
/// what an application's algorithm makes counts alike.
inline void XMLReader_X891::dialectCheckAmplification() const {
  if (fromTables_ > state_->document.allowedFromTables) allowMoreFromTables();
}

}  // namespace Tavrin
