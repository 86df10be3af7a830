#pragma once

#include <Tavrin/Tavrin.h>

#include <cstddef>
#include <initializer_list>
#include <map>
#include <string>

#include "EventLog.h"
#include "HexOctets.h"
#include "TextWriter.h"

/// What the tests of the Fast Infoset writer share.
namespace writer_test {

/// The octets of a notation (see HexOctets.h), as hexadecimal pairs that a failure shows well.
std::string hex(const std::string& notation);

/// A document without optional components, from the notation of what follows them, likewise.
std::string document(const std::string& body);

/// An attribute without a namespace.
struct Plain {
  std::string name;
  std::string value;
};

/// An attribute with all its names.
struct Named {
  std::string uri;
  std::string localName;
  std::string qName;
  std::string value;
};

Tavrin::AttributesImpl attributes(std::initializer_list<Plain> list);
Tavrin::AttributesImpl namedAttributes(std::initializer_list<Named> list);

/// A writer with its primitives laid open, a stream that shows octets at once, and short forms of
/// the commonest events.
class Probe : public Tavrin::XMLWriter_FI {
 public:
  using XMLWriter_FI::countAttributes;
  using XMLWriter_FI::encodeAttributes;
  using XMLWriter_FI::encodeCharacters;
  using XMLWriter_FI::encodeIdentifier;
  using XMLWriter_FI::encodeIndex;
  using XMLWriter_FI::encodeNamespaces;
  using XMLWriter_FI::encodeQualifiedName;
  using XMLWriter_FI::encodeString;
  using XMLWriter_FI::flushCharacters;
  using XMLWriter_FI::flushTerminator;

  using NameMap = std::map<QualifiedName, unsigned int>;
  using StringMap = std::map<std::string, unsigned int>;

  Probe() { setOutputStream(&output); }

  /// Everything written so far, as hexadecimal pairs.
  std::string written() const { return EventLog::showOctets(output.text()); }
  /// What was written since this was asked last, as hexadecimal pairs.
  std::string news() { return EventLog::showOctets(output.news()); }

  /// Starts an element without a namespace.
  void start(const std::string& name, std::initializer_list<Plain> list = {}) {
    startElement("", name, name, attributes(list));
  }
  void end(const std::string& name) { endElement("", name, name); }
  /// Starts an element without a namespace and ends it again.
  void leaf(const std::string& name, std::initializer_list<Plain> list = {}) {
    start(name, list);
    end(name);
  }

  Output output;
};

/// A text of a given length, not all the same octet.
std::string textOf(std::size_t length);

/// The number-th of a sequence of different texts of 1 to 6 octets.
std::string shortText(std::size_t number);

}  // namespace writer_test
