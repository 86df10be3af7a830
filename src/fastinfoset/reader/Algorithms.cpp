#include <Tavrin/XMLReader_FI.h>

#include <cstdint>
#include <limits>

#include "../Dialect.h"
#include "../Octets.h"
#include "TakeOctet.h"

// Encoding algorithms: finding one by its field (X.891, C.29), and letting it decode.

namespace Tavrin {

using namespace fastinfoset;

/// Decodes the number of an algorithm or restricted alphabet, and the length of its data.
XMLReader_FI::Field XMLReader_FI::decodeStringField(unsigned octet) {
  const unsigned next = takeOctet();
  const unsigned number =
      (octet << kStringFieldLowBits | next >> (8 - kStringFieldLowBits)) & kLastAlgorithmField;
  return {number, decodeStringLength(static_cast<int>(next))};
}

/// Likewise, of a character chunk.
XMLReader_FI::Field XMLReader_FI::decodeChunkField(unsigned octet) {
  const unsigned next = takeOctet();
  const unsigned number = (octet & dialect_.chunkFieldReadBits) << kChunkFieldLowBits |
                          next >> (8 - kChunkFieldLowBits);
  return {number, decodeCharactersLength(static_cast<int>(next))};
}

EncodingAlgorithm* XMLReader_FI::getEncodingAlgorithm(unsigned int field, std::string& uri) {
  return field < dialect_.firstApplicationAlgorithm ? builtIn_.find(static_cast<int>(field))
                                                    : getApplicationAlgorithm(field, uri);
}

/// The algorithm that the application registered for a field's URI, or null.
EncodingAlgorithm* XMLReader_FI::getApplicationAlgorithm(unsigned field, std::string& uri) const {
  uri = getString(field - dialect_.firstApplicationAlgorithm, &encodingAlgorithms_,
                  externalEntries(&encodingAlgorithms_));
  if (registeredEncodingAlgorithms_ == nullptr) return nullptr;
  const auto found = registeredEncodingAlgorithms_->find(uri);
  return found == registeredEncodingAlgorithms_->end() ? nullptr : found->second;
}

/// Lets an algorithm decode its data. Algorithms do not notice the end of the stream.
EncodedData& XMLReader_FI::decodeWith(EncodingAlgorithm& algorithm, unsigned,
                                      unsigned long length) {
  if (length > std::numeric_limits<std::uint32_t>::max()) {
    fail("Encoded data longer than 4294967295 octets");
  }
  EncodedData& value =
      algorithm.decodeFromInputStream(static_cast<std::uint32_t>(length), *stream_);
  if (stream_->fail()) fail("Unexpected end of document");
  return value;
}

/// An encoded literal is not added to a table.
void XMLReader_FI::takeTyped(bool, Strings&, unsigned, EncodedData&) {}

}  // namespace Tavrin
