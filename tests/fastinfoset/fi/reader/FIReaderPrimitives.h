#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "FIReaderSupport.h"

namespace reader_test {

/// Reaches the decoding operations. They read from the stream of a running parse, so a test's
/// action runs in startDocument, with its octets next and a terminator behind them.
class Primitives : public Tavrin::XMLReader_FI, private Tavrin::ContentHandler {
 public:
  using Strings = std::vector<std::string>;
  using XMLReader_FI::QualifiedName;

  using XMLReader_FI::decodeCharactersIndex;
  using XMLReader_FI::decodeCharactersLength;
  using XMLReader_FI::decodeElementIndex;
  using XMLReader_FI::decodeIdentifier;
  using XMLReader_FI::decodeIdentifierLength;
  using XMLReader_FI::decodeIdentifierTable;
  using XMLReader_FI::decodeIndex;
  using XMLReader_FI::decodeNumberOfItems;
  using XMLReader_FI::decodeQualifiedName;
  using XMLReader_FI::decodeQualifiedNameTable;
  using XMLReader_FI::decodeString;
  using XMLReader_FI::decodeStringLength;
  using XMLReader_FI::decodeStringTable;
  using XMLReader_FI::getAttributeName;
  using XMLReader_FI::getElementName;
  using XMLReader_FI::getString;

  Primitives() { setContentHandler(this); }

  /// Runs the action on these octets: "done" when it took them exactly, or what was thrown.
  /// @param components the document from its octet of optional components up to its first child
  std::string run(const std::string& octets, const std::function<void()>& action,
                  const std::string& components = std::string(1, '\0')) {
    return runOn(fromComponents("") + components + octets + "\xF0", action);
  }

  /// Runs the action on these octets, with the end of the stream behind them.
  std::string runCutOff(const std::string& octets, const std::function<void()>& action) {
    return runOn(document("") + octets, action);
  }

 private:
  std::string runOn(const std::string& all, const std::function<void()>& action) {
    action_ = action;
    std::istringstream stream(all);
    const std::string outcome = outcomeOf([&] { parse(stream); });
    if (outcome == "done" && stream.tellg() != static_cast<std::streamoff>(all.size())) {
      return "octets left";
    }
    return outcome;
  }

  void startDocument() override { action_(); }

  std::function<void()> action_;
};

}  // namespace reader_test
