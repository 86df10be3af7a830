#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_X891.h>

#include <algorithm>

#include "../../../xml/Characters.h"
#include "../../Octets.h"
#include "Checks.h"
#include "State.h"
#include "Vocabulary.h"

// Elements and namespace declarations. A start tag is checked as a whole before any of it is
// written.

namespace Tavrin {

using namespace fastinfoset;

// --- Namespace declarations ---

void XMLWriter_X891::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  if (state_ != Prolog && state_ != AfterDTD && state_ != InElement) {
    throw SAXException("You cannot start a prefix mapping at this point");
  }
  declare(prefix, uri);
}

void XMLWriter_X891::declare(const std::string& prefix, const std::string& uri) {
  State::Document& document = own_->document;
  const std::string reason =
      xml::whyNotDeclarable(prefix, uri, own_->xmlVersion && *own_->xmlVersion == "1.1");
  if (!reason.empty()) throw SAXException(reason);
  if (!prefix.empty()) checkNCName(prefix);
  checkText(uri, "a namespace name");
  if (document.declared.count(prefix) != 0) {
    throw SAXException("The prefix \"" + prefix + "\" is declared twice");
  }
  document.declared.insert(prefix);
  document.bindings.declare(prefix, uri);
  // The built-in declaration is never written (X.891, 7.2.21 and 7.2.22).
  if (prefix != "xml") XMLWriter_FI::startPrefixMapping(prefix, uri);
}

namespace {

bool isXmlns(const std::string& qName) {
  return !qName.empty() && qName[0] == 'x' && qName.compare(0, 5, "xmlns") == 0 &&
         (qName.size() == 5 || qName[5] == ':');
}

}  // namespace

bool XMLWriter_X891::isDeclaration(const Attributes& attributes, int index) const {
  if (!own_->mayDeclare) return false;
  return isXmlns(attributes.getQName(index)) || XMLWriter_FI::isDeclaration(attributes, index);
}

/// Takes attributes for declarations of which startPrefixMapping did not tell.
void XMLWriter_X891::takeDeclarations(const Attributes& attributes) {
  const State::Document& document = own_->document;
  const int length = attributes.getLength();
  bool declares = false;
  for (int i = 0; i < length; ++i) {
    if (!isDeclaration(attributes, i)) continue;
    declares = true;
    const std::string& qName = attributes.getQName(i);
    std::string prefix = isXmlns(qName) ? qName.substr(std::min<std::size_t>(qName.size(), 6))
                                        : attributes.getLocalName(i);
    if (!isXmlns(qName) && prefix == "xmlns") prefix.clear();
    const std::string& uri = attributes.getValue(i);
    const bool isTold =
        document.declared.count(prefix) != 0 && document.bindings.find(prefix) == uri;
    if (!isTold) declare(prefix, uri);
  }
  own_->mayDeclare = declares;
}

// --- Elements ---

void XMLWriter_X891::startElement(const std::string& uri, const std::string& localName,
                                  const std::string& qName, const Attributes& attributes) {
  State::Document& document = own_->document;
  own_->mayDeclare = true;
  if (state_ == Prolog || state_ == AfterDTD || state_ == InElement) {
    const std::size_t told = namespaces_.size();
    const std::set<std::string> declared = document.declared;
    try {
      checkStartTag(uri, localName, qName, attributes);
    } catch (...) {
      namespaces_.resize(told);
      document.bindings.undo(document.declared.size() - declared.size());
      document.declared = declared;
      throw;
    }
  }
  XMLWriter_FI::startElement(uri, localName, qName, attributes);
  sendOctets();
  document.declaredCount.push_back(document.declared.size());
  document.declared.clear();
}

void XMLWriter_X891::checkStartTag(const std::string& uri, const std::string& localName,
                                   const std::string& qName, const Attributes& attributes) {
  std::optional<WrittenVocabulary> vocabulary;
  if (!own_->document.childrenBegan) vocabulary = prepareVocabulary();
  takeDeclarations(attributes);
  checkNames(uri, localName, qName, attributes);
  checkValues(attributes);
  if (vocabulary) beginChildren(*vocabulary);
}

/// Done before.
void XMLWriter_X891::checkElement(const std::string&, const Attributes&) {}

void XMLWriter_X891::endElement(const std::string& uri, const std::string& localName,
                                const std::string& qName) {
  if (state_ == InElement && !own_->document.declared.empty()) {
    throw SAXException("A prefix mapping needs an element");
  }
  XMLWriter_FI::endElement(uri, localName, qName);
  sendOctets();
  own_->document.bindings.undo(own_->document.declaredCount.back());
  own_->document.declaredCount.pop_back();
}

// --- Names ---

namespace {

/// The part of a qualified name in front of its last colon.
std::string_view prefixOf(const std::string& qName) {
  const std::size_t colon = qName.rfind(':');
  return std::string_view(qName).substr(0, colon == std::string::npos ? 0 : colon);
}

/// @return the prefix
std::string_view checkLocalName(const std::string& localName, const std::string& qName) {
  checkNCName(localName);
  if (qName == localName || qName.empty()) return {};
  const std::string_view prefix = prefixOf(qName);
  if (prefix.empty() || qName.size() != prefix.size() + 1 + localName.size() ||
      !qName.ends_with(localName)) {
    throw SAXException("The qualified name \"" + qName + "\" does not belong to the local name \"" +
                       localName + "\"");
  }
  return prefix;
}

}  // namespace

void XMLWriter_X891::checkPrefix(std::string_view prefix, const std::string& uri) const {
  const std::string& bound = own_->document.bindings.find(prefix);
  if (bound == uri && !(bound.empty() && !prefix.empty())) return;
  if (bound.empty() && !prefix.empty())
    XMLWriter_FI::missingNamePart(std::string(prefix), "prefix");
  if (bound.empty()) XMLWriter_FI::missingNamePart(uri, "namespace");
  if (prefix.empty()) {
    throw SAXException("The default namespace is \"" + bound + "\", not \"" + uri + "\"");
  }
  throw SAXException("The prefix \"" + std::string(prefix) + "\" is bound to \"" + bound +
                     "\", not to \"" + uri + "\"");
}

void XMLWriter_X891::checkNames(const std::string& uri, const std::string& localName,
                                const std::string& qName, const Attributes& attributes) {
  checkPrefix(checkLocalName(localName, qName), uri);
  std::uint64_t octets = qName.size() + uri.size() + localName.size();
  auto& names = own_->expandedNames;
  names.clear();
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    if (isDeclaration(attributes, i)) continue;
    const std::string& attributeURI = attributes.getURI(i);
    const std::string& name = attributes.getLocalName(i);
    const std::string_view prefix = checkLocalName(name, attributes.getQName(i));
    if (!prefix.empty()) {
      checkPrefix(prefix, attributeURI);
    } else if (!attributeURI.empty()) {
      throw SAXException("The attribute \"" + name + "\" has the namespace \"" + attributeURI +
                         "\", but no prefix");
    }
    names.emplace_back(name, attributeURI);
    octets += prefix.size() + attributeURI.size() + 2 * name.size();
  }
  checkDuplicates();
  for (const std::string& part : namespaces_) octets += part.size();
  // The name and the local name, of each.
  checkRoom(octets, 2 * (names.size() + 1) + namespaces_.size());
}

/// No two attributes may have the same expanded name (Namespaces in XML, section 6.3).
void XMLWriter_X891::checkDuplicates() {
  auto& names = own_->expandedNames;
  constexpr std::size_t kFew = 8;
  std::size_t twice = names.size();
  if (names.size() <= kFew) {
    for (std::size_t i = 1; i < names.size(); ++i) {
      for (std::size_t k = 0; k < i; ++k) {
        if (names[i] == names[k]) twice = i;
      }
    }
  } else {
    std::ranges::sort(names);
    const auto found = std::ranges::adjacent_find(names);
    twice = static_cast<std::size_t>(found - names.begin());
  }
  if (twice == names.size()) return;
  throw SAXException("The attribute \"" + std::string(names[twice].first) +
                     "\" stands twice in a start tag");
}

/// The parts were checked: only a full table lacks one.
void XMLWriter_X891::missingNamePart(const std::string&, const char*) const {}

// --- Values ---

void XMLWriter_X891::checkValues(const Attributes& attributes) {
  own_->encodedValues.clear();
  if (attributes.getLength() == 0) return;
  const auto* typed = dynamic_cast<const EncodingAlgorithmAttributes*>(&attributes);
  const int length = attributes.getLength();
  for (int i = 0; i < length; ++i) {
    if (isDeclaration(attributes, i)) continue;
    if (const EncodedData* const data = typed ? typed->getAlgorithmData(i) : nullptr) {
      checkTypedValue(typed->getAlgorithmURI(i), typed->getAlgorithmIndex(i), *data);
    } else {
      checkText(attributes.getValue(i), "an attribute value");
    }
  }
}

void XMLWriter_X891::checkTypedValue(const std::string& uri, int index, const EncodedData& data) {
  EncodingAlgorithm& algorithm = algorithmOrThrow(uri, index);
  if (!isBuiltIn(uri, index)) {
    own_->encodedValues.push_back(encodedBy(algorithm, uri, false, data));
    return;
  }
  if (index == algorithms::cdata) {
    throw SAXException("The cdata algorithm cannot encode an attribute value");
  }
  checkBuiltIn(index, data);
}

void XMLWriter_X891::encodeTypedValue(const std::string& uri, int index, const EncodedData& data) {
  if (isBuiltIn(uri, index)) {
    if (checkBuiltIn(index, data) == 0) {
      put(kEmptyString);
    } else {
      XMLWriter_FI::encodeTypedValue(uri, index, data);
    }
    return;
  }
  const std::string octets = std::move(own_->encodedValues.front());
  own_->encodedValues.pop_front();
  if (octets.empty()) {
    put(kEmptyString);
  } else {
    putAlgorithm(false, fieldOf(uri, index), octets.size());
    putOctets(octets);
  }
}

}  // namespace Tavrin
