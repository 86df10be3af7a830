#include "Recording.h"

#include <cstring>

using namespace Tavrin;

namespace {

std::string octetsOf(const std::string& data) { return data; }

std::string octetsOf(const std::vector<bool>& data) {
  std::string octets;
  for (const bool item : data) octets += item ? '1' : '0';
  return octets;
}

template <typename Item>
std::string octetsOf(const std::vector<Item>& data) {
  std::string octets(data.size() * sizeof(Item), '\0');
  if (!data.empty()) std::memcpy(octets.data(), data.data(), octets.size());
  return octets;
}

template <typename Data>
bool keepAs(const EncodedData& from, TypedValue& to) {
  const auto* data = dynamic_cast<const Data*>(&from);
  if (data == nullptr) return false;
  to.data = std::make_shared<Data>(data->data_);
  to.octets = octetsOf(data->data_);
  return true;
}

std::string shown(const std::string& text) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string result = "\"";
  for (const char c : text) {
    if (c >= ' ' && c <= '~' && c != '\\') {
      result += c;
    } else {
      const auto octet = static_cast<unsigned char>(c);
      result += {'\\', kDigits[octet >> 4U], kDigits[octet & 15U]};
    }
  }
  return result + '"';
}

std::string shown(const TypedValue& value) {
  return value.algorithmURI + '#' + std::to_string(value.algorithmIndex) + ' ' +
         shown(value.octets);
}

constexpr const char* kNames[] = {"startDocument",
                                  "endDocument",
                                  "startPrefixMapping",
                                  "endPrefixMapping",
                                  "startElement",
                                  "endElement",
                                  "characters",
                                  "ignorableWhitespace",
                                  "processingInstruction",
                                  "skippedEntity",
                                  "notationDecl",
                                  "unparsedEntityDecl",
                                  "elementDecl",
                                  "attributeDecl",
                                  "internalEntityDecl",
                                  "externalEntityDecl",
                                  "startDTD",
                                  "endDTD",
                                  "startEntity",
                                  "endEntity",
                                  "startCDATA",
                                  "endCDATA",
                                  "comment",
                                  "octets",
                                  "object"};

}  // namespace

TypedValue keep(const std::string& algorithmURI, int algorithmIndex, const EncodedData& data) {
  TypedValue value{algorithmURI, algorithmIndex, nullptr, {}};
  keepAs<HexadecimalData>(data, value) || keepAs<Base64Data>(data, value) ||
      keepAs<CDATAData>(data, value) || keepAs<ShortData>(data, value) ||
      keepAs<IntData>(data, value) || keepAs<LongData>(data, value) ||
      keepAs<BooleanData>(data, value) || keepAs<FloatData>(data, value) ||
      keepAs<DoubleData>(data, value) || keepAs<UUIDData>(data, value);
  return value;
}

std::string Event::show() const {
  std::string line = kNames[kind];
  for (const std::string& text : texts) line += ' ' + shown(text);
  for (const Attribute& attribute : attributes) {
    line += " {" + shown(attribute.uri) + ' ' + shown(attribute.localName) + ' ' +
            shown(attribute.qName) + ' ' + attribute.type + ' ';
    line += attribute.typed.algorithmIndex < 0 ? shown(attribute.value) : shown(attribute.typed);
    line += '}';
  }
  if (kind == octets || kind == object) line += ' ' + shown(value);
  return line;
}

void Recording::attachTo(XMLReader& reader) {
  reader.setContentHandler(this);
  reader.setDTDHandler(this);
  reader.setProperty(properties::lexicalHandler, static_cast<LexicalHandler*>(this));
  reader.setProperty(properties::declarationHandler, static_cast<DeclHandler*>(this));
  if (!typed_) return;
  reader.setProperty(properties::encodingAlgorithmContentHandler,
                     static_cast<EncodingAlgorithmContentHandler*>(this));
}

void Recording::startElement(const std::string& uri, const std::string& localName,
                             const std::string& qName, const Attributes& attributes) {
  Event event{Event::startElement, {uri, localName, qName}};
  const auto* typed =
      typed_ ? dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes) : nullptr;
  for (int i = 0; i < attributes.getLength(); ++i) {
    Event::Attribute attribute{attributes.getURI(i),   attributes.getLocalName(i),
                               attributes.getQName(i), attributes.getType(i),
                               attributes.getValue(i), {}};
    if (typed != nullptr && typed->getAlgorithmData(i) != nullptr) {
      attribute.typed =
          keep(typed->getAlgorithmURI(i), typed->getAlgorithmIndex(i), *typed->getAlgorithmData(i));
    }
    event.attributes.push_back(std::move(attribute));
  }
  add(std::move(event));
}

void Recording::octets(const std::string& uri, int index, const std::string& data) {
  add(Event{Event::octets, {}, {}, {uri, index, nullptr, data}});
}

void Recording::object(const std::string& uri, int index, const EncodedData& data) {
  add(Event{Event::object, {}, {}, keep(uri, index, data)});
}

void send(const Event& event, XMLWriter& writer) {
  const auto& texts = event.texts;
  switch (event.kind) {
    case Event::startDocument:
      return writer.startDocument();
    case Event::endDocument:
      return writer.endDocument();
    case Event::startPrefixMapping:
      return writer.startPrefixMapping(texts[0], texts[1]);
    case Event::endPrefixMapping:
      return writer.endPrefixMapping(texts[0]);
    case Event::startElement: {
      EncodingAlgorithmAttributesImpl attributes;
      for (const Event::Attribute& a : event.attributes) {
        if (a.typed.data == nullptr) {
          attributes.addAttribute(a.uri, a.localName, a.qName, a.type, a.value);
        } else {
          // clone empties what it is called of, and the event may be sent again.
          TypedValue copy = keep(a.typed.algorithmURI, a.typed.algorithmIndex, *a.typed.data);
          attributes.addAttribute(a.uri, a.localName, a.qName, a.type, copy.algorithmURI,
                                  copy.algorithmIndex, copy.data->clone());
        }
      }
      return writer.startElement(texts[0], texts[1], texts[2], attributes);
    }
    case Event::endElement:
      return writer.endElement(texts[0], texts[1], texts[2]);
    case Event::characters:
      return writer.characters(texts[0]);
    case Event::ignorableWhitespace:
      return writer.ignorableWhitespace(texts[0]);
    case Event::processingInstruction:
      return writer.processingInstruction(texts[0], texts[1]);
    case Event::skippedEntity:
      return writer.skippedEntity(texts[0]);
    case Event::notationDecl:
      return writer.notationDecl(texts[0], texts[1], texts[2]);
    case Event::unparsedEntityDecl:
      return writer.unparsedEntityDecl(texts[0], texts[1], texts[2], texts[3]);
    case Event::elementDecl:
      return writer.elementDecl(texts[0], texts[1]);
    case Event::attributeDecl:
      return writer.attributeDecl(texts[0], texts[1], texts[2], texts[3], texts[4]);
    case Event::internalEntityDecl:
      return writer.internalEntityDecl(texts[0], texts[1]);
    case Event::externalEntityDecl:
      return writer.externalEntityDecl(texts[0], texts[1], texts[2]);
    case Event::startDTD:
      return writer.startDTD(texts[0], texts[1], texts[2]);
    case Event::endDTD:
      return writer.endDTD();
    case Event::startEntity:
      return writer.startEntity(texts[0]);
    case Event::endEntity:
      return writer.endEntity(texts[0]);
    case Event::startCDATA:
      return writer.startCDATA();
    case Event::endCDATA:
      return writer.endCDATA();
    case Event::comment:
      return writer.comment(texts[0]);
    case Event::octets:
    case Event::object: {
      auto* const typed = dynamic_cast<EncodingAlgorithmContentHandler*>(&writer);
      if (typed == nullptr) return;
      if (event.kind == Event::octets) {
        typed->octets(event.value.algorithmURI, event.value.algorithmIndex, event.value.octets);
      } else {
        typed->object(event.value.algorithmURI, event.value.algorithmIndex, *event.value.data);
      }
    }
  }
}
