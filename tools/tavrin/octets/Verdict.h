#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader_X891.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "options/Limits.h"
#include "options/Vocabularies.h"

namespace tool::octets {

/// Reads the octets that are scanned with the library's reader, which also knows what texts and
/// names may be. It tells where that refuses them.
class Verdict {
 public:
  struct Refusal {
    std::uint64_t octet;  ///< The last that was read, counted from 1.
    std::string message;
  };

  Verdict(const Vocabularies& vocabularies, const Limits& limits);
  Verdict(const Verdict&) = delete;
  Verdict& operator=(const Verdict&) = delete;

  /// Reads the octets that come next. Once octets are refused, it does nothing.
  void read(std::string_view block);
  /// No octets are left.
  void end();
  /// Judges no further. To be called before a literal that would take too much memory: the reader
  /// needs it whole.
  void stop() { isOver_ = true; }
  const std::optional<Refusal>& refusal() const { return refusal_; }

 private:
  struct End : Tavrin::ContentHandler {
    void endDocument() override { isReached = true; }
    bool isReached = false;
  };

  void parse(std::string_view block, bool isFinal);

  Tavrin::XMLReader_X891 reader_;
  Tavrin::EncodingAlgorithmContentHandler anyAlgorithm_;  // Without it, unknown ones are refused.
  End end_;
  std::uint64_t read_ = 0;           // Octets of all blocks.
  std::uint64_t documentStart_ = 0;  // Octets in front of the document.
  bool isOver_ = false;
  std::optional<Refusal> refusal_;
};

}  // namespace tool::octets
