#include "Decoder.h"
#include "format/Octets.h"
#include "TakeOctet.h"

// Encoding algorithms: finding one by its field (X.891, C.29).

namespace Tavrin::fastinfoset {

/// Decodes the number of an algorithm or restricted alphabet, and the length of its data.
Decoder::Field Decoder::decodeStringField(unsigned octet) {
  const unsigned next = takeOctet();
  const unsigned number =
      (octet << kStringFieldLowBits | next >> (8 - kStringFieldLowBits)) & kLastAlgorithmField;
  return {number, decodeStringLength(static_cast<int>(next))};
}

/// Likewise, of a character chunk.
Decoder::Field Decoder::decodeChunkField(unsigned octet) {
  const unsigned next = takeOctet();
  const unsigned number = (octet & dialect_.chunkFieldReadBits) << kChunkFieldLowBits |
                          next >> (8 - kChunkFieldLowBits);
  return {number, decodeCharactersLength(static_cast<int>(next))};
}

EncodingAlgorithm* Decoder::getEncodingAlgorithm(unsigned field, std::string& uri) {
  return findEncodingAlgorithm(field, uri);
}

EncodingAlgorithm* Decoder::findEncodingAlgorithm(unsigned field, std::string& uri) {
  return field < dialect_.firstApplicationAlgorithm ? builtIn_.find(static_cast<int>(field))
                                                    : getApplicationAlgorithm(field, uri);
}

/// The algorithm that the application registered for a field's URI, or null.
EncodingAlgorithm* Decoder::getApplicationAlgorithm(unsigned field, std::string& uri) const {
  uri = getString(field - dialect_.firstApplicationAlgorithm, &encodingAlgorithms_,
                  externalEntries(&encodingAlgorithms_));
  if (registeredEncodingAlgorithms_ == nullptr) return nullptr;
  const auto found = registeredEncodingAlgorithms_->find(uri);
  return found == registeredEncodingAlgorithms_->end() ? nullptr : found->second;
}

}  // namespace Tavrin::fastinfoset
