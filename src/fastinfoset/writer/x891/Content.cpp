#include <Tavrin/XMLWriter_X891.h>

#include <algorithm>

#include "../../../xml/EasyText.h"
#include "../../Octets.h"
#include "Checks.h"
#include "State.h"

// Text, references to entities, and typed content.

namespace Tavrin {

using namespace fastinfoset;

// --- Text ---

/// Text runs on until something else comes, or until a chunk is as long as it may be.
void XMLWriter_X891::gather(const std::string& text) {
  if (characters_.size() + text.size() > kLongestString) {
    if (state_ == InCDATA) {
      throw SAXException("String longer than " + std::to_string(kLongestString) + " octets");
    }
    flushCharacters();
    sendOctets();
  }
  characters_ += text;
}

void XMLWriter_X891::characters(const std::string& text) {
  // The commonest event, without what only a section or a hard text needs.
  if (state_ == InElement && xml::isEasyText(text) &&
      characters_.size() + text.size() <= kLongestString) {
    hasContent_ = true;
    characters_ += text;
    return;
  }
  XMLWriter::characters(text);
  checkText(text, "character data");
  // "]]>" may also come in pieces.
  if (state_ == InCDATA && !text.empty() && !characters_.empty()) {
    const std::size_t border = characters_.size() - std::min<std::size_t>(2, characters_.size());
    if ((characters_.substr(border) + text.substr(0, 2)).find("]]>") != std::string::npos) {
      throw SAXException("You cannot put \"]]>\" into a CDATA section");
    }
  }
  gather(text);
}

void XMLWriter_X891::ignorableWhitespace(const std::string& text) {
  XMLWriter_FI::ignorableWhitespace(text);
  if (state_ == InElement || state_ == InCDATA) gather(text);
}

void XMLWriter_X891::startCDATA() {
  XMLWriter_FI::startCDATA();
  flushCharacters();
  sendOctets();
}

void XMLWriter_X891::endCDATA() {
  XMLWriter::endCDATA();
  std::string section;
  section.swap(characters_);
  putContent(algorithms::cdata, section);
}

void XMLWriter_X891::skippedEntity(const std::string& name) {
  XMLWriter_FI::skippedEntity(name);
  if (state_ != InElement || name == "[dtd]" || (!name.empty() && name[0] == '%')) return;
  checkNCName(name);
  const auto& entities = own_->document.externalEntities;
  const auto found = entities.find(name);
  const auto [publicId, systemId] =
      found == entities.end() ? std::pair<std::string, std::string>() : found->second;
  checkRoom(name.size() + publicId.size() + systemId.size(), 3);
  flushCharacters();
  flushTerminator(false);
  if (!out_) return;
  put(kFirstEntityReference | (systemId.empty() ? 0 : kSystemIdentifier) |
      (publicId.empty() ? 0 : kPublicIdentifier));
  encodeIdentifier(&vocabulary_.otherNCNames, name);
  encodeIdentifiers(systemId, publicId);
  sendOctets();
}

// --- Typed content ---

void XMLWriter_X891::checkTypedContent() const {
  if (state_ != InElement) throw SAXException("You cannot write character data at this point");
}

/// @return whether there is anything to write
bool XMLWriter_X891::beginTypedContent(std::uint64_t octets) const {
  checkTypedContent();
  checkValueLength(octets);
  return octets > 0;
}

/// Writes octets of an algorithm as a chunk, behind the text that has gathered.
void XMLWriter_X891::putContent(unsigned field, const std::string& octets) {
  if (octets.empty()) return;
  flushCharacters();
  flushTerminator(false);
  if (!out_) return;
  putAlgorithm(true, field, octets.size());
  putOctets(octets);
  sendOctets();
}

void XMLWriter_X891::bytes(const std::string& data) { octets("", algorithms::base64, data); }

void XMLWriter_X891::shorts(const std::vector<short>& data) {
  if (beginTypedContent(data.size() * sizeof(std::int16_t))) XMLWriter_FI::shorts(data);
}

void XMLWriter_X891::ints(const std::vector<long>& data) {
  checkTypedContent();
  checkIntegers(data);
  if (beginTypedContent(data.size() * sizeof(std::int32_t))) XMLWriter_FI::ints(data);
}

void XMLWriter_X891::longs(const std::vector<long>& data) {
  if (beginTypedContent(data.size() * sizeof(std::int64_t))) XMLWriter_FI::longs(data);
}

void XMLWriter_X891::booleans(const std::vector<bool>& data) {
  if (beginTypedContent(octetsOfBooleans(data.size()))) XMLWriter_FI::booleans(data);
}

void XMLWriter_X891::floats(const std::vector<float>& data) {
  if (beginTypedContent(data.size() * sizeof(float))) XMLWriter_FI::floats(data);
}

void XMLWriter_X891::doubles(const std::vector<double>& data) {
  if (beginTypedContent(data.size() * sizeof(double))) XMLWriter_FI::doubles(data);
}

void XMLWriter_X891::octets(const std::string& uri, int index, const std::string& data) {
  checkTypedContent();
  const unsigned field = fieldOf(uri, index);
  checkOctets(field, data);
  putContent(field, data);
}

void XMLWriter_X891::object(const std::string& uri, int index, const EncodedData& data) {
  checkTypedContent();
  EncodingAlgorithm& algorithm = algorithmOrThrow(uri, index);
  if (isBuiltIn(uri, index)) {
    if (checkBuiltIn(index, data) > 0) encodeContent(algorithm, data);
  } else {
    putContent(fieldOf(uri, index), encodedBy(algorithm, uri, true, data));
  }
}

}  // namespace Tavrin
