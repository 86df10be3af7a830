#pragma once

#include <Tavrin/Tavrin.h>

#include <cstddef>
#include <map>
#include <string>

#include "HexOctets.h"
#include "WriterWithOutput.h"

/// What the tests of the Fast Infoset writer share.
namespace writer_test {

/// The octets of a notation (see HexOctets.h), as hexadecimal pairs that a failure shows well.
std::string hex(const std::string& notation);

/// A document without optional components, from the notation of what follows them, likewise.
std::string document(const std::string& body);

/// A writer with its primitives laid open.
class Probe : public WriterWithOutput<Tavrin::XMLWriter_FI> {
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
};

/// A text of a given length, not all the same octet.
std::string textOf(std::size_t length);

/// The number-th of a sequence of different texts of 1 to 6 octets.
std::string shortText(std::size_t number);

}  // namespace writer_test
