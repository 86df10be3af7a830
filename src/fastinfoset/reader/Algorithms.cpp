#include <Tavrin/XMLReader_FI.h>

#include <cstdint>
#include <limits>
#include <utility>

#include "../../io/SingleOctets.h"
#include "../../typed/EncodedLength.h"
#include "../Dialect.h"
#include "../Octets.h"
#include "OctetStream.h"
#include "Pieces.h"
#include "TakeOctet.h"

// Encoding algorithms: finding one by its field (X.891, C.29), and letting it decode.

namespace Tavrin {

using namespace fastinfoset;

namespace {

bool isString(unsigned field) {
  return field == algorithms::hexadecimal || field == algorithms::base64 ||
         field == algorithms::cdata;
}

}  // namespace

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
  return dialectGetEncodingAlgorithm(field, uri);
}

EncodingAlgorithm* XMLReader_FI::dialectGetEncodingAlgorithm(unsigned field, std::string& uri) {
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

/// Lets an algorithm decode its data from the stream. Algorithms do not notice its end.
EncodedData& XMLReader_FI::dialectDecodeWith(EncodingAlgorithm& algorithm, unsigned field,
                                             unsigned long length) {
  const bool isBuiltIn = &algorithm == builtIn_.find(static_cast<int>(field));
  if (isBuiltIn) checkEncodedLength(static_cast<int>(field), length);
  // So many octets cannot be asked for, nor do they come.
  if (length > std::numeric_limits<std::uint32_t>::max()) failAtEnd();
  // A built-in algorithm takes the memory for a value before its octets.
  if (isBuiltIn && !haveArrived(length)) return decodeLarge(algorithm, field, length);
  EncodedData& value =
      algorithm.decodeFromInputStream(static_cast<std::uint32_t>(length), *stream_);
  if (stream_->fail()) failAtEnd();
  return value;
}

/// Waits for the octets of a value, and lets a built-in algorithm decode them. They are read with
/// the operation of the stream with which the algorithm would read them.
EncodedData& XMLReader_FI::decodeLarge(EncodingAlgorithm& algorithm, unsigned field,
                                       unsigned long length) {
  const bool isBoolean = field == algorithms::boolean;
  const int first = isBoolean ? getOctet() : 0;
  if (first == std::istream::traits_type::eof()) failAtEnd();
  const std::uint64_t taken =
      isBoolean ? octetsOfBooleans(countBooleans(static_cast<unsigned>(first), length)) : length;
  std::size_t pending = isBoolean ? 1 : 0;  // The octet that has been read already.
  std::string octets;
  readPieces(taken, octets, [&](char* piece, std::streamsize wanted) -> std::streamsize {
    if (isString(field)) {
      stream_->read(piece, wanted);
      return stream_->gcount();
    }
    if (pending > 0) *piece = static_cast<char>(first);
    const std::size_t begin = std::exchange(pending, 0);
    const SingleOctets source(*stream_, *source_);
    return static_cast<std::streamsize>(
        begin + source.copy(piece + begin, static_cast<std::size_t>(wanted) - begin));
  });
  OctetStream stream;
  return algorithm.decodeFromInputStream(static_cast<std::uint32_t>(length), stream.over(octets));
}

std::string XMLReader_FI::dialectDescribeUnknown(const std::string& uri) const {
  return "Unknown encoding algorithm - " + uri;
}

/// An encoded literal is not added to a table.
void XMLReader_FI::dialectTakeTyped(bool, Strings&, unsigned, EncodedData&) {}

}  // namespace Tavrin
