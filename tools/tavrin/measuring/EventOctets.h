#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <ostream>
#include <streambuf>
#include <string_view>
#include <vector>

namespace tool {

/// What octets of a document are for.
enum class OctetKind {
  Names,      ///< Names that are spelled out, prefixes and namespace names.
  Values,     ///< Values of attributes that are spelled out.
  Text,       ///< Text that is spelled out.
  Typed,      ///< Typed content, of elements and attributes.
  Tables,     ///< References to entries of tables, and tables that precede the document.
  Structure,  ///< All that holds these together: delimiters, lengths, ends.
  Other       ///< Comments, processing instructions and the document type.
};

inline constexpr std::size_t kOctetKinds = 7;
using OctetsByKind = std::array<std::uint64_t, kOctetKinds>;

inline std::uint64_t sumOf(const OctetsByKind& octets) {
  return std::accumulate(octets.begin(), octets.end(), std::uint64_t{0});
}

/// The octets that a writer has made of one event, each counted for one kind; and what the strings
/// of the event cost, with lengths or delimiters of their own.
struct EventOctets {
  OctetsByKind pending{};  ///< Of what came before: the writer had kept them back.
  OctetsByKind kinds{};    ///< Of the event itself.
  std::uint64_t elementName = 0;
  std::vector<std::uint64_t> attributeNames;  ///< In the order of the attributes,
  std::vector<std::uint64_t> values;          ///< without namespace declarations.
  std::uint64_t text = 0;

  void clear() {
    pending.fill(0);
    kinds.fill(0);
    elementName = 0;
    attributeNames.clear();
    values.clear();
    text = 0;
  }
};

/// Takes what a writer writes and tells what the octets are for. It keeps none of them.
class OctetSorter : public std::streambuf {
 public:
  /// An event begins.
  /// @param content what octets are for that are no part of a tag, in formats that do not tell
  void begin(OctetKind content) {
    octets_.clear();
    content_ = content;
    isPending_ = mayBePending();
  }
  /// Attributes with typed values, in their order, for formats that do not tell.
  void expectTyped(std::vector<bool> isTyped) { isTyped_ = std::move(isTyped); }
  /// What the writer has made of the event.
  const EventOctets& octets() const { return octets_; }

 protected:
  virtual void take(std::string_view octets) = 0;
  /// Whether the first octets of the next event may belong to what came before.
  virtual bool mayBePending() const = 0;

  int_type overflow(int_type c) override {
    if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
    const char octet = traits_type::to_char_type(c);
    take({&octet, 1});
    return c;
  }
  std::streamsize xsputn(const char* octets, std::streamsize size) override {
    take({octets, static_cast<std::size_t>(size)});
    return size;
  }

  void count(OctetKind kind, std::uint64_t octets = 1) {
    (isPending_ ? octets_.pending : octets_.kinds)[static_cast<std::size_t>(kind)] += octets;
  }

  EventOctets octets_;
  OctetKind content_ = OctetKind::Structure;
  std::vector<bool> isTyped_;
  bool isPending_ = false;
};

}  // namespace tool
