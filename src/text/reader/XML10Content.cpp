#include <algorithm>
#include <string_view>

#include "../../sax/AtLimit.h"
#include "XML10Driver.h"

namespace Tavrin::text {

namespace {

/// Whether a name has U+00AA, U+00B5 or U+00BA. expat accepts them as letters where it reads
/// ISO-8859-1 or UTF-16. In no edition of XML 1.0 are they characters of names (production 4;
/// fourth edition, production 85).
bool hasFalseLetter(std::string_view name) {
  for (std::size_t i = name.find('\xC2'); i < name.size(); i = name.find('\xC2', i + 1)) {
    const std::string_view next = name.substr(i + 1, 1);
    if (next == "\xAA" || next == "\xB5" || next == "\xBA") return true;
  }
  return false;
}

/// The name of an element or attribute without its namespace name. The prefix may follow it.
std::string_view withoutNamespace(std::string_view name) {
  return name.substr(name.find(kXML10Separator) + 1);  // npos + 1 is 0.
}

/// The prefix xml is bound without a declaration, so SAX2 does not report one.
bool isAlwaysBound(const XML_Char* prefix) { return prefix && std::string_view(prefix) == "xml"; }

}  // namespace

void XML10Driver::requireName(std::string_view name, const Position& position) {
  if (!document_->checksNames || !hasFalseLetter(name)) return;
  failAt(XML_ErrorString(XML_ERROR_INVALID_TOKEN), position);
}

void XML10Driver::requireName(std::string_view name) {
  // The position is slow to find, so it is not passed on for all names.
  if (document_->checksNames && hasFalseLetter(name)) requireName(name, positionHere());
}

void XML10Driver::startElement(const XML_Char* name, const XML_Char** attributes) {
  if (comesToRoot()) return;
  XML10Document& document = *document_;
  const XML10Settings& current = document.settings;
  const std::uint64_t maximumDepth = current.limits.maximumDepth;
  document.elements.push(document.current().octetsRead());
  if (document.elements.depth() > maximumDepth) fail(tooDeep(maximumDepth));
  if (document.checksNames) {
    requireName(withoutNamespace(name));
    for (auto pair = attributes; *pair; pair += 2) requireName(withoutNamespace(*pair));
  }
  if (handlers.content) {
    element_.assign(name, document.separator);
    ElementAttributes& list = document.attributes;
    list.clear();
    for (const auto& [prefix, uri] : document.declarations) {
      list.addDeclaration(prefix, uri, current.features.xmlnsURIs);
    }
    for (; *attributes; attributes += 2) {
      list.add(attributes[0], attributes[1], current.features.namespaces);
    }
    if (!document.attributeTypes.isEmpty()) applyDeclarations();
    handlers.content->startElement(element_.uri, element_.localName, element_.qName, list);
  }
  if (document.mayLackDeclarations) warnOfLossesInTag();
  document.declarations.clear();
}

void XML10Driver::applyDeclarations() {
  XML10Document& document = *document_;
  document.attributes.setTypes(document.attributeTypes.find(element_.qName));
  if (!document.hasDefaults) return;
  // expat counts names and values. The attributes that are written precede the defaults.
  const int written = XML_GetSpecifiedAttributeCount(document.current().parser) / 2;
  const std::size_t first = document.declarations.size() + static_cast<std::size_t>(written);
  addDefaults(document.attributes.octetsFrom(first));
}

void XML10Driver::startNamespace(const XML_Char* prefix, const XML_Char* uri) {
  if (comesToRoot()) return;
  XML10Document& document = *document_;
  if (prefix) requireName(prefix);
  // expat has no namespace name for `xmlns=""`.
  document.bindings.push(textOrEmpty(prefix), textOrEmpty(uri));
  if (!handlers.content) return;
  const std::string declaredPrefix = textOrEmpty(prefix);
  const std::string declaredURI = textOrEmpty(uri);
  if (document.settings.features.namespacePrefixes) {
    document.declarations.emplace_back(declaredPrefix, declaredURI);
  }
  if (isAlwaysBound(prefix)) return;
  // expat does not report which declarations are defaults, so all are counted.
  if (document.hasDeclarationDefaults) addDefaults(declaredPrefix.size() + declaredURI.size());
  handlers.content->startPrefixMapping(declaredPrefix, declaredURI);
}

void XML10Driver::endNamespace(const XML_Char* prefix) {
  document_->bindings.pop();
  if (!isAlwaysBound(prefix)) EventTarget::endNamespace(prefix);
}

void XML10Driver::skippedEntity(const XML_Char* name, int isParameterEntity) {
  requireName(name);
  stayInParser();
  if (isParameterEntity) {
    document_->lackDeclarations();
    stopProcessing();
  }
  if (!handlers.content) return;
  handlers.content->skippedEntity(isParameterEntity ? std::string("%") + name : name);
}

void XML10Driver::processingInstruction(const XML_Char* target, const XML_Char* data) {
  if (document_->checksNames) guard([&] { requireName(target); });
  EventTarget::processingInstruction(target, data);
}

void XML10Driver::addDefaults(std::uint64_t octets) {
  XML10Document& document = *document_;
  document.defaultOctets += octets;
  if (document.defaultOctets <= document.settings.limits.entityAmplificationThreshold) return;
  // As expat counts for entities: the octets of the result in proportion to those that were read.
  std::uint64_t octetsRead = document.entityOctets;
  for (const OpenEntity& entity : document.open) octetsRead += entity.octetsRead();
  const auto read = static_cast<double>(octetsRead);
  const double limit = document.settings.limits.entityAmplificationFactor * read;
  if (read + static_cast<double>(document.defaultOctets) <= limit) return;
  fail(atLimit("limit on input amplification factor (from defaults of attributes) breached",
               properties::entityAmplificationFactor));
}

}  // namespace Tavrin::text
