#pragma once

#include <Tavrin/Attributes.h>

#include <optional>
#include <string>
#include <string_view>

namespace Tavrin::text {

/// Receives what a scanner finds in a document. The strings are valid during the call.
class ScannedEvents {
 public:
  virtual ~ScannedEvents() = default;

  /// @param encoding as it is declared, or empty
  virtual void scannedDeclaration(std::string_view encoding, std::optional<bool> standalone) = 0;
  virtual void scannedPrefix(const std::string& prefix, const std::string& uri) = 0;
  virtual void scannedStart(const std::string& uri, const std::string& localName,
                            const std::string& qName, const Attributes& attributes) = 0;
  virtual void scannedEnd(const std::string& uri, const std::string& localName,
                          const std::string& qName) = 0;
  virtual void scannedPrefixEnd(const std::string& prefix) = 0;
  virtual void scannedText(std::string_view text) = 0;
  virtual void scannedStartOfCDATA() = 0;
  virtual void scannedEndOfCDATA() = 0;
  virtual void scannedInstruction(const std::string& target, const std::string& data) = 0;
  virtual void scannedComment(const std::string& text) = 0;
};

}  // namespace Tavrin::text
