#include <Tavrin/XMLWriter_FI.h>

#include "../Encoder.h"
#include "../format/Octets.h"

// Text and typed content. Text gathers until something else comes, so that a chunk is as long as
// it can be.

namespace Tavrin {

using namespace fastinfoset;

namespace {

[[noreturn]] void throwUnknownAlgorithm(const std::string& uri) {
  throw EncodingAlgorithmException("Unknown encoding algorithm - " + uri);
}

}  // namespace

void XMLWriter_FI::characters(const std::string& text) {
  XMLWriter::characters(text);
  characters_ += text;
}

// The section takes in the text in front of it, which has not been written yet. Output
// compatibility: keep.
void XMLWriter_FI::endCDATA() {
  XMLWriter::endCDATA();
  encoder_->flushTerminator(false);
  if (out_) builtIn_.cdata.encodeToOutputStream(true, characters_, *out_);
  characters_.clear();
}

void XMLWriter_FI::bytes(const std::string& data) {
  encoder_->encodeContent(builtIn_.base64, data);
}

void XMLWriter_FI::shorts(const std::vector<short>& data) {
  encoder_->encodeContent(builtIn_.shortInteger, data);
}

void XMLWriter_FI::ints(const std::vector<long>& data) {
  encoder_->encodeContent(builtIn_.integer, data);
}

void XMLWriter_FI::longs(const std::vector<long>& data) {
  encoder_->encodeContent(builtIn_.longInteger, data);
}

void XMLWriter_FI::booleans(const std::vector<bool>& data) {
  encoder_->encodeContent(builtIn_.boolean, data);
}

void XMLWriter_FI::floats(const std::vector<float>& data) {
  encoder_->encodeContent(builtIn_.floatNumber, data);
}

void XMLWriter_FI::doubles(const std::vector<double>& data) {
  encoder_->encodeContent(builtIn_.doubleNumber, data);
}

void XMLWriter_FI::object(const std::string& uri, int index, const EncodedData& data) {
  encoder_->encodeContent(algorithmOrThrow(uri, index), data);
}

void XMLWriter_FI::octets(const std::string& uri, int index, const std::string& data) {
  if (index < 0 || index > static_cast<int>(kLastAlgorithmField)) throwUnknownAlgorithm(uri);
  encoder_->flushCharacters();
  encoder_->flushTerminator(false);
  if (!out_) return;
  // What introduces the octets does not depend on the algorithm that asks for it.
  builtIn_.base64.writeSize(index, true, static_cast<std::uint32_t>(data.size()), *out_);
  encoder_->putOctets(data);
}

// --- Algorithms ---

EncodingAlgorithm* XMLWriter_FI::getEncodingAlgorithm(const std::string& uri, int index) {
  return uri.empty() ? builtIn_.find(index) : nullptr;
}

EncodingAlgorithm& XMLWriter_FI::algorithmOrThrow(const std::string& uri, int index) {
  EncodingAlgorithm* algorithm = getEncodingAlgorithm(uri, index);
  if (algorithm == nullptr) throwUnknownAlgorithm(uri);
  return *algorithm;
}

}  // namespace Tavrin
