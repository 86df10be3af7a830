#include <Tavrin/XMLWriter_FI.h>

#include "../Octets.h"

// Text and typed content. Text gathers until something else comes, so that a chunk is as long as
// it can be.

namespace Tavrin {

using namespace fastinfoset;

void XMLWriter_FI::characters(const std::string& text) {
  XMLWriter::characters(text);
  characters_ += text;
}

// The section takes in the text in front of it, which has not been written yet. Output
// compatibility: keep.
void XMLWriter_FI::endCDATA() {
  XMLWriter::endCDATA();
  flushTerminator(false);
  if (out_) cdata_.encodeToOutputStream(true, characters_, *out_);
  characters_.clear();
}

template <typename Algorithm, typename Value>
void XMLWriter_FI::encodeContent(Algorithm& algorithm, const Value& value) {
  flushCharacters();
  flushTerminator(false);
  if (out_) algorithm.encodeToOutputStream(true, value, *out_);
}

void XMLWriter_FI::bytes(const std::string& data) { encodeContent(base64_, data); }

void XMLWriter_FI::shorts(const std::vector<short>& data) { encodeContent(short_, data); }

void XMLWriter_FI::ints(const std::vector<long>& data) { encodeContent(int_, data); }

void XMLWriter_FI::longs(const std::vector<long>& data) { encodeContent(long_, data); }

void XMLWriter_FI::booleans(const std::vector<bool>& data) { encodeContent(boolean_, data); }

void XMLWriter_FI::floats(const std::vector<float>& data) { encodeContent(float_, data); }

void XMLWriter_FI::doubles(const std::vector<double>& data) { encodeContent(double_, data); }

void XMLWriter_FI::object(const std::string& uri, int index, const EncodedData& data) {
  encodeContent(algorithmOrThrow(uri, index), data);
}

void XMLWriter_FI::octets(const std::string& uri, int index, const std::string& data) {
  if (index < 0 || index > static_cast<int>(kLastAlgorithmField)) throwUnknownAlgorithm(uri);
  flushCharacters();
  flushTerminator(false);
  if (!out_) return;
  // What introduces the octets does not depend on the algorithm that asks for it.
  base64_.writeSize(index, true, static_cast<std::uint32_t>(data.size()), *out_);
  putOctets(data);
}

// --- Algorithms ---

EncodingAlgorithm* XMLWriter_FI::getEncodingAlgorithm(const std::string& uri, int index) {
  if (!uri.empty()) return nullptr;
  switch (index) {
    case algorithms::hexadecimal:
      return &hexadecimal_;
    case algorithms::base64:
      return &base64_;
    case algorithms::shortInteger:
      return &short_;
    case algorithms::integer:
      return &int_;
    case algorithms::longInteger:
      return &long_;
    case algorithms::boolean:
      return &boolean_;
    case algorithms::floatNumber:
      return &float_;
    case algorithms::doubleNumber:
      return &double_;
    case algorithms::cdata:
      return &cdata_;
    default:
      return nullptr;
  }
}

void XMLWriter_FI::throwUnknownAlgorithm(const std::string& uri) {
  throw EncodingAlgorithmException("Unknown encoding algorithm - " + uri);
}

EncodingAlgorithm& XMLWriter_FI::algorithmOrThrow(const std::string& uri, int index) {
  EncodingAlgorithm* algorithm = getEncodingAlgorithm(uri, index);
  if (algorithm == nullptr) throwUnknownAlgorithm(uri);
  return *algorithm;
}

}  // namespace Tavrin
