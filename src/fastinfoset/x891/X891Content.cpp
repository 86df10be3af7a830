#include <Tavrin/XMLWriter_X891.h>

#include <algorithm>

#include "../../xml/simd/EasyText.h"
#include "../format/Octets.h"
#include "Checks.h"
#include "X891Encoder.h"

// Text, references to entities, and typed content.

namespace Tavrin {

using namespace fastinfoset;

// --- Text ---

/// Text runs on until something else comes, or until a chunk is as long as it may be.
void XMLWriter_X891::Encoder::gather(const std::string& text) {
  if (characters_.size() + text.size() > kLongestString) {
    if (state_ == InCDATA) {
      throw SAXException("String longer than " + std::to_string(kLongestString) + " octets");
    }
    isWriting_ = true;
    flushCharacters();
    sendOctets();
  }
  characters_ += text;
}

void XMLWriter_X891::Encoder::characters(const std::string& text) {
  // The commonest event, without what only a section or a hard text needs.
  if (state_ == InElement && xml::isEasyText(text) &&
      characters_.size() + text.size() <= kLongestString) {
    characters_ += text;
    hasContent_ = true;
    return;
  }
  attempt([&] {
    writer_.XMLWriter::characters({});  // The order alone: a section may hold its own end here.
    checkText(text, "character data");
    gather(text);
  });
}

void XMLWriter_X891::Encoder::ignorableWhitespace(const std::string& text) {
  attempt([&] {
    writer_.XMLWriter::ignorableWhitespace(text);
    if (state_ == InElement || state_ == InCDATA) gather(text);
  });
}

void XMLWriter_X891::Encoder::startCDATA() {
  attempt([this] {
    writer_.XMLWriter::startCDATA();
    isWriting_ = true;
    flushCharacters();
    sendOctets();
  });
}

void XMLWriter_X891::Encoder::endCDATA() {
  attempt([this] {
    writer_.XMLWriter::endCDATA();
    std::string section;
    section.swap(characters_);
    isWriting_ = true;
    putSection(section);
  });
}

/// Writes a CDATA section. What would end it as text begins another one.
void XMLWriter_X891::Encoder::putSection(const std::string& text) {
  constexpr std::string_view kEnd = "]]>";
  constexpr std::size_t kBrackets = 2;
  std::size_t begin = 0;
  for (std::size_t end = text.find(kEnd); end != std::string::npos; end = text.find(kEnd, begin)) {
    putContent(algorithms::cdata, text.substr(begin, end + kBrackets - begin));
    begin = end + kBrackets;
  }
  if (begin == 0) return putContent(algorithms::cdata, text);
  putContent(algorithms::cdata, text.substr(begin));
}

void XMLWriter_X891::Encoder::skippedEntity(const std::string& name) {
  attempt([&] {
    if (name == "[dtd]") return;
    if (state_ == InCDATA) throw SAXException("You cannot refer to an entity at this point");
    if (state_ != InElement || (!name.empty() && name[0] == '%')) return;
    checkNCName(name);
    const auto& entities = document_.externalEntities;
    const auto found = entities.find(name);
    const auto [publicId, systemId] =
        found == entities.end() ? std::pair<std::string, std::string>() : found->second;
    checkRoom(name.size() + publicId.size() + systemId.size(), 3);
    isWriting_ = true;
    flushCharacters();
    flushTerminator(false);
    if (!out_) return;
    put(kFirstEntityReference | (systemId.empty() ? 0 : kSystemIdentifier) |
        (publicId.empty() ? 0 : kPublicIdentifier));
    writeIdentifier(&vocabulary_.otherNCNames, name);
    encodeIdentifiers(systemId, publicId);
    sendOctets();
  });
}

// --- Typed content ---

void XMLWriter_X891::Encoder::checkTypedContent() const {
  if (state_ != InElement) throw SAXException("You cannot write character data at this point");
}

/// Writes a value that takes so many octets.
template <typename Write>
void XMLWriter_X891::Encoder::putValue(std::uint64_t octets, Write write) {
  attempt([&] {
    checkTypedContent();
    checkValueLength(octets);
    if (octets > 0) write();
  });
}

/// Writes octets of an algorithm as a chunk, behind the text that has gathered.
void XMLWriter_X891::Encoder::putContent(unsigned field, const std::string& octets) {
  if (octets.empty()) return;
  isWriting_ = true;
  flushCharacters();
  flushTerminator(false);
  if (!out_) return;
  putAlgorithm(true, field, octets.size());
  putOctets(octets);
  sendOctets();
}

void XMLWriter_X891::Encoder::bytes(const std::string& data) {
  octets("", algorithms::base64, data);
}

void XMLWriter_X891::Encoder::shorts(const std::vector<short>& data) {
  putValue(data.size() * sizeof(std::int16_t), [&] {
    isWriting_ = true;
    encodeContent(builtIn_.shortInteger, data);
  });
}

void XMLWriter_X891::Encoder::ints(const std::vector<long>& data) {
  putValue(data.size() * sizeof(std::int32_t), [&] {
    checkIntegers(data);
    isWriting_ = true;
    encodeContent(builtIn_.integer, data);
  });
}

void XMLWriter_X891::Encoder::longs(const std::vector<long>& data) {
  putValue(data.size() * sizeof(std::int64_t), [&] {
    isWriting_ = true;
    encodeContent(builtIn_.longInteger, data);
  });
}

void XMLWriter_X891::Encoder::booleans(const std::vector<bool>& data) {
  putValue(octetsOfBooleans(data.size()), [&] {
    isWriting_ = true;
    encodeContent(builtIn_.boolean, data);
  });
}

void XMLWriter_X891::Encoder::floats(const std::vector<float>& data) {
  putValue(data.size() * sizeof(float), [&] {
    isWriting_ = true;
    encodeContent(builtIn_.floatNumber, data);
  });
}

void XMLWriter_X891::Encoder::doubles(const std::vector<double>& data) {
  putValue(data.size() * sizeof(double), [&] {
    isWriting_ = true;
    encodeContent(builtIn_.doubleNumber, data);
  });
}

void XMLWriter_X891::Encoder::octets(const std::string& uri, int index, const std::string& data) {
  attempt([&] {
    checkTypedContent();
    const unsigned field = fieldOf(uri, index);
    checkOctets(field, data);
    if (field == algorithms::cdata) return putSection(data);
    putContent(field, data);
  });
}

void XMLWriter_X891::Encoder::object(const std::string& uri, int index, const EncodedData& data) {
  attempt([&] {
    checkTypedContent();
    EncodingAlgorithm& algorithm = algorithmFor(uri, index);
    if (!isBuiltIn(uri, index)) {
      return putContent(fieldOf(uri, index), encodedBy(algorithm, uri, true, data));
    }
    if (checkBuiltIn(index, data) == 0) return;
    if (index == algorithms::cdata) {
      return putSection(dynamic_cast<const CDATAData&>(data).data_);
    }
    isWriting_ = true;
    encodeContent(algorithm, data);
  });
}

}  // namespace Tavrin
