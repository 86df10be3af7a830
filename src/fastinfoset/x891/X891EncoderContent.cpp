#include <Tavrin/XMLWriter_X891.h>

#include <algorithm>

#include "../../xml/Rules.h"
#include "../../xml/simd/EasyText.h"
#include "../format/Octets.h"
#include "X891Encoder.h"

// Text, CDATA sections and references to entities.

namespace Tavrin {

using namespace fastinfoset;

/// Appends to the buffered text. A chunk ends before another item, or when it has the greatest
/// length.
void XMLWriter_X891::Encoder::addText(const std::string& text) {
  if (characters.size() + text.size() > kLongestString) {
    if (writer_.state_ == InCDATA) checkLength(characters.size() + text.size());
    isWriting_ = true;
    flushCharacters();
    sendOctets();
  }
  characters += text;
}

bool XMLWriter_X891::Encoder::addsChunk(const std::string& text, bool isFound) {
  ValueTally& tally = tallyOf(elementRecords_, document_.textElement);
  if (!isFound) return addsNew(kContentCharacterChunks, text, tally);
  if (isAdaptive_) tally.count(true);
  return false;
}

void XMLWriter_X891::characters(const std::string& text) {
  std::string& buffer = encoder_->characters;
  // The most frequent event; sections and unusual characters need more.
  if (state_ == InElement && xml::isEasyText(text) &&
      buffer.size() + text.size() <= kLongestString) {
    buffer += text;
    hasContent_ = true;
    return;
  }
  encoder_->attempt([&](Encoder& encoder) {
    XMLWriter::characters({});  // Only the order is checked: a section may hold its own end here.
    checkText(text, "character data");
    encoder.addText(text);
  });
}

void XMLWriter_X891::ignorableWhitespace(const std::string& text) {
  encoder_->attempt([&](Encoder& encoder) {
    XMLWriter::ignorableWhitespace(text);
    if (state_ == InElement || state_ == InCDATA) encoder.addText(text);
  });
}

void XMLWriter_X891::startCDATA() {
  encoder_->attempt([this](Encoder& encoder) {
    XMLWriter::startCDATA();
    encoder.isWriting_ = true;
    encoder.flushCharacters();
    encoder.sendOctets();
  });
}

void XMLWriter_X891::endCDATA() {
  encoder_->attempt([this](Encoder& encoder) {
    XMLWriter::endCDATA();
    std::string section;
    section.swap(encoder.characters);
    encoder.isWriting_ = true;
    encoder.encodeCDATA(section);
  });
}

/// Writes a CDATA section. Where its text would end it, another one begins.
void XMLWriter_X891::Encoder::encodeCDATA(const std::string& text) {
  constexpr std::string_view kEnd = "]]>";
  constexpr std::size_t kBrackets = 2;
  std::size_t begin = 0;
  for (std::size_t end = text.find(kEnd); end != std::string::npos; end = text.find(kEnd, begin)) {
    encodeChunk(algorithms::cdata, text.substr(begin, end + kBrackets - begin));
    begin = end + kBrackets;
  }
  if (begin == 0) return encodeChunk(algorithms::cdata, text);
  encodeChunk(algorithms::cdata, text.substr(begin));
}

void XMLWriter_X891::skippedEntity(const std::string& name) {
  encoder_->attempt([&](Encoder& encoder) {
    if (name == "[dtd]") return;
    if (state_ == InCDATA) throw SAXException("You cannot refer to an entity at this point");
    if (state_ != InElement || name.starts_with('%')) return;
    checkNCName(name);
    const auto& entities = encoder.document_.externalEntities;
    const auto found = entities.find(name);
    const auto [publicId, systemId] =
        found == entities.end() ? std::pair<std::string, std::string>() : found->second;
    encoder.checkTableOctets(name.size() + publicId.size() + systemId.size(), 3);
    encoder.isWriting_ = true;
    encoder.encodeEntityReference({name, publicId, systemId, {}});
    encoder.sendOctets();
  });
}

}  // namespace Tavrin
