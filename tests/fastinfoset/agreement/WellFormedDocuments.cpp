#include "WellFormedDocuments.h"

#include <algorithm>

namespace x891 {

using namespace Tavrin;

namespace {

/// Text of XML: no brackets, hyphens or angles either, which end one thing or another.
std::string mended(const std::string& text) {
  std::string result;
  for (const char c : text) {
    const auto octet = static_cast<unsigned char>(c);
    if (octet >= 0x80) {
      result += "\xC3\xA9";
    } else if (octet < 0x20 && c != '\t' && c != '\n' && c != '\r') {
      result += '?';
    } else {
      result += c == ']' || c == '-' || c == '>' ? '_' : c;
    }
  }
  return result;
}

std::vector<long> mended(std::vector<long> numbers) {
  for (long& number : numbers) number = static_cast<std::int32_t>(number);
  return numbers;
}

template <typename Data>
std::unique_ptr<EncodedData> copyAs(const EncodedData& data) {
  const auto* const value = dynamic_cast<const Data*>(&data);
  return value ? std::make_unique<Data>(value->data_) : nullptr;
}

std::unique_ptr<EncodedData> mended(const EncodedData& data) {
  if (const auto* ints = dynamic_cast<const IntData*>(&data)) {
    return std::make_unique<IntData>(mended(ints->data_));
  }
  if (const auto* section = dynamic_cast<const CDATAData*>(&data)) {
    return std::make_unique<CDATAData>(mended(section->data_));
  }
  for (const auto copy :
       {copyAs<HexadecimalData>, copyAs<Base64Data>, copyAs<ShortData>, copyAs<LongData>,
        copyAs<BooleanData>, copyAs<FloatData>, copyAs<DoubleData>}) {
    if (auto copied = copy(data)) return copied;
  }
  return nullptr;
}

std::string joined(const std::string& prefix, const std::string& localName) {
  return prefix.empty() ? localName : prefix + ":" + localName;
}

std::string prefixOf(const std::string& qName) {
  const std::size_t colon = qName.find(':');
  return colon == std::string::npos ? "" : qName.substr(0, colon);
}

}  // namespace

// --- Mending ---

void Mended::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  if ((uri.empty() && !prefix.empty()) || declared_.count(prefix) != 0) return;
  declare(prefix, uri);
}

void Mended::declare(const std::string& prefix, const std::string& uri) {
  if (declared_.empty()) outer_ = bindings_;
  declared_[prefix] = bindings_[prefix] = uri;
  mappings_.push_back(prefix);
  to_.content.startPrefixMapping(prefix, uri);
}

std::string Mended::prefixFor(const std::string& prefix, const std::string& uri, bool needsPrefix) {
  if (uri == namespaces::xml) return "xml";
  const auto bound = bindings_.find(prefix);
  const bool isUsable = !(prefix.empty() && needsPrefix);
  if (isUsable && bound != bindings_.end() && bound->second == uri) {
    used_.insert(prefix);
    return prefix;
  }
  if (isUsable && declared_.count(prefix) == 0 && used_.count(prefix) == 0) {
    declare(prefix, uri);
    return prefix;
  }
  const std::string made = "z" + std::to_string(declared_.size());
  if (declared_.count(made) == 0) declare(made, uri);
  return made;
}

void Mended::startElement(const std::string& uri, const std::string& localName,
                          const std::string& qName, const Attributes& attributes) {
  const auto* typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes);
  EncodingAlgorithmAttributesImpl list;
  std::vector<std::string> untold;  // Prefixes that attributes declare.
  for (int i = 0; i < attributes.getLength(); ++i) {
    const std::string& name = attributes.getLocalName(i);
    if (attributes.getURI(i) != namespaces::xmlns || declared_.count(name) != 0) continue;
    if (declared_.empty()) outer_ = bindings_;
    declared_[name] = bindings_[name] = attributes.getValue(i);
    untold.push_back(name);
    list.addAttribute(namespaces::xmlns, name, attributes.getQName(i), "CDATA",
                      attributes.getValue(i));
  }
  Open element = {uri, localName, "", {}, {}};
  if (uri.empty() && declared_.count("") != 0) {
    element.uri = bindings_[""];
    element.qName = localName;
  } else {
    element.qName = joined(prefixFor(uri.empty() ? "" : prefixOf(qName), uri, false), localName);
  }
  std::set<std::pair<std::string, std::string>> names;
  for (int i = 0; i < attributes.getLength(); ++i) {
    const std::string& attributeURI = attributes.getURI(i);
    const std::string& name = attributes.getLocalName(i);
    if (attributeURI == namespaces::xmlns || !names.emplace(attributeURI, name).second) continue;
    const std::string attributeName =
        attributeURI.empty()
            ? name
            : joined(prefixFor(prefixOf(attributes.getQName(i)), attributeURI, true), name);
    const EncodedData* const data = typed ? typed->getAlgorithmData(i) : nullptr;
    if (data && typed->getAlgorithmIndex(i) != algorithms::cdata) {
      list.addAttribute(attributeURI, name, attributeName, "CDATA", "", typed->getAlgorithmIndex(i),
                        mended(*data));
    } else {
      list.addAttribute(attributeURI, name, attributeName, "CDATA", mended(attributes.getValue(i)));
    }
  }
  element.outer = declared_.empty() ? bindings_ : outer_;
  element.mappings.swap(mappings_);
  element.mappings.insert(element.mappings.end(), untold.begin(), untold.end());
  declared_.clear();
  used_.clear();
  to_.content.startElement(element.uri, localName, element.qName, list);
  open_.push_back(element);
}

void Mended::endElement(const std::string&, const std::string&, const std::string&) {
  const Open element = open_.back();
  open_.pop_back();
  bindings_ = element.outer;
  to_.content.endElement(element.uri, element.localName, element.qName);
  for (const std::string& prefix : element.mappings) to_.content.endPrefixMapping(prefix);
}

void Mended::characters(const std::string& text) { to_.content.characters(mended(text)); }

void Mended::ignorableWhitespace(const std::string& text) { to_.content.ignorableWhitespace(text); }

void Mended::processingInstruction(const std::string& target, const std::string& data) {
  to_.content.processingInstruction(target, mended(data));
}

void Mended::notationDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId) {
  to_.dtd.notationDecl(name, publicId, systemId);
}

void Mended::elementDecl(const std::string& name, const std::string& model) {
  to_.declarations.elementDecl(name, model);
}

void Mended::startDTD(const std::string& name, const std::string& publicId,
                      const std::string& systemId) {
  to_.lexical.startDTD(name, publicId, systemId);
}

void Mended::startCDATA() {
  to_.lexical.startCDATA();
  inSection_ = true;
}

void Mended::endCDATA() {
  to_.lexical.endCDATA();
  inSection_ = false;
}

void Mended::comment(const std::string& text) { to_.lexical.comment(mended(text)); }

void Mended::ints(const std::vector<long>& data) { to_.primitives.ints(mended(data)); }

void Mended::octets(const std::string&, int index, const std::string& data) {
  to_.algorithms.octets("", index % 2, data);
}

void Mended::object(const std::string& uri, int index, const EncodedData& data) {
  to_.algorithms.object(uri, index, *mended(data));
}

// --- What comes back ---

void Expected::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  log_.startPrefixMapping(prefix, uri);
}

void Expected::startElement(const std::string& uri, const std::string& localName,
                            const std::string& qName, const Attributes& attributes) {
  const auto& typed = dynamic_cast<const EncodingAlgorithmAttributes&>(attributes);
  EncodingAlgorithmAttributesImpl list;
  for (int i = 0; i < attributes.getLength(); ++i) {
    const EncodedData* const data = typed.getAlgorithmData(i);
    if (attributes.getURI(i) == namespaces::xmlns) {
      log_.startPrefixMapping(attributes.getLocalName(i), attributes.getValue(i));
    } else if (data && !data->toString().empty()) {
      list.addAttribute(attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i),
                        "CDATA", "", typed.getAlgorithmIndex(i), mended(*data));
    } else {
      list.addAttribute(attributes.getURI(i), attributes.getLocalName(i), attributes.getQName(i),
                        "CDATA", attributes.getValue(i));
    }
  }
  log_.startElement(uri, localName, qName, list);
  ++depth_;
}

void Expected::endElement(const std::string& uri, const std::string& localName,
                          const std::string& qName) {
  log_.endElement(uri, localName, qName);
  --depth_;
}

void Expected::characters(const std::string& text) {
  if (inSection_) {
    section_ += text;
  } else if (!text.empty()) {
    log_.characters(text);
  }
}

void Expected::ignorableWhitespace(const std::string& text) {
  if (depth_ > 0) characters(text);
}

void Expected::processingInstruction(const std::string& target, const std::string& data) {
  const std::size_t space = data.find_first_not_of(" \t\r\n");
  log_.processingInstruction(target, space == std::string::npos ? "" : data.substr(space));
}

void Expected::skippedEntity(const std::string& name) {
  if (depth_ > 0) log_.skippedEntity(name);
}

void Expected::notationDecl(const std::string& name, const std::string& publicId,
                            const std::string& systemId) {
  front_.notationDecl(name, publicId, systemId);
}

void Expected::startDTD(const std::string&, const std::string& publicId,
                        const std::string& systemId) {
  log_.startDTD("", publicId, systemId);
  inType_ = true;
}

void Expected::endDTD() {
  log_.endDTD();
  inType_ = false;
}

void Expected::endCDATA() {
  inSection_ = false;
  if (!section_.empty()) object("", algorithms::cdata, CDATAData(section_));
  section_.clear();
}

void Expected::comment(const std::string& text) {
  if (!inType_) log_.comment(text);
}

void Expected::bytes(const std::string& data) { object("", algorithms::base64, Base64Data(data)); }

void Expected::shorts(const std::vector<short>& data) {
  object("", algorithms::shortInteger, ShortData(data));
}

void Expected::ints(const std::vector<long>& data) {
  object("", algorithms::integer, IntData(data));
}

void Expected::longs(const std::vector<long>& data) {
  object("", algorithms::longInteger, LongData(data));
}

void Expected::booleans(const std::vector<bool>& data) {
  object("", algorithms::boolean, BooleanData(data));
}

void Expected::floats(const std::vector<float>& data) {
  object("", algorithms::floatNumber, FloatData(data));
}

void Expected::doubles(const std::vector<double>& data) {
  object("", algorithms::doubleNumber, DoubleData(data));
}

void Expected::octets(const std::string&, int index, const std::string& data) {
  if (index == algorithms::hexadecimal) {
    object("", index, HexadecimalData(data));
  } else {
    object("", index, Base64Data(data));
  }
}

void Expected::object(const std::string&, int index, const EncodedData& data) {
  const std::string text = data.toString();
  if (text.empty()) return;
  if (index == algorithms::cdata) {
    log_.startCDATA();
    log_.characters(text);
    log_.endCDATA();
  } else {
    log_.object("", index, data);
  }
}

}  // namespace x891
