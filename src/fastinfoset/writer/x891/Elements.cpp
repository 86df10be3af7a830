#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLWriter_X891.h>

#include "../../../sax/AtLimit.h"
#include "../../../xml/EasyText.h"
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
  attempt([&] {
    if (state_ != Prolog && state_ != AfterDTD && state_ != InElement) {
      throw SAXException("You cannot start a prefix mapping at this point");
    }
    declare(prefix, uri);
  });
}

void XMLWriter_X891::declare(const std::string& prefix, const std::string& uri) {
  State::Document& document = own_->document;
  const std::string reason =
      xml::whyNotDeclarable(prefix, uri, own_->xmlVersion && *own_->xmlVersion == "1.1");
  if (!reason.empty()) throw SAXException(reason);
  if (!prefix.empty()) checkNCName(prefix);
  checkText(uri, "a namespace name");
  if (document.declared.contains(prefix)) {
    throw SAXException("The prefix \"" + prefix + "\" is declared twice");
  }
  const std::size_t written = namespaces_.size();
  const std::size_t bound = document.bindings.count();
  const auto declared = document.declared.insert(prefix).first;
  try {
    document.bindings.declare(prefix, uri);
    // The built-in declaration is never written (X.891, 7.2.21 and 7.2.22).
    if (prefix != "xml") XMLWriter_FI::startPrefixMapping(prefix, uri);
  } catch (...) {
    namespaces_.resize(written);
    document.bindings.undo(document.bindings.count() - bound);
    document.declared.erase(declared);
    throw;
  }
}

/// The qualified name tells, and the namespace only where there is none: otherwise it would be
/// passed over that the two do not fit.
bool XMLWriter_X891::isDeclaration(const Attributes& attributes, int index) {
  const std::string& qName = attributes.getQName(index);
  return xml::isDeclarationName(qName) || (qName.empty() && isInXmlns(attributes, index));
}

/// Takes attributes for declarations of which startPrefixMapping did not tell.
void XMLWriter_X891::takeDeclarations(const Attributes& attributes,
                                      const std::vector<int>& declarations) {
  const State::Document& document = own_->document;
  for (const int i : declarations) {
    const std::string& qName = attributes.getQName(i);
    const bool hasName = xml::isDeclarationName(qName);
    std::string prefix(hasName ? xml::declaredPrefix(qName) : attributes.getLocalName(i));
    if (!hasName && prefix == "xmlns") prefix.clear();
    const std::string& uri = attributes.getValue(i);
    const bool isTold = document.declared.contains(prefix) && document.bindings.find(prefix) == uri;
    if (isTold) continue;
    std::vector<std::string>& taken = own_->taken;
    taken.push_back(std::move(prefix));
    try {
      declare(taken.back(), uri);
    } catch (...) {
      taken.pop_back();
      throw;
    }
  }
}

// --- Elements ---

void XMLWriter_X891::startElement(const std::string& uri, const std::string& localName,
                                  const std::string& qName, const Attributes& attributes) {
  attempt([&] {
    State::Document& document = own_->document;
    const std::size_t depth = elements_.size();
    if (depth >= own_->maximumDepth) throw SAXException(tooDeep(own_->maximumDepth));
    const std::size_t told = namespaces_.size();
    if (!own_->encodedValues.empty()) own_->encodedValues.clear();
    own_->taken.clear();
    own_->newOctets = 0;
    own_->newEntries = 0;
    try {
      const bool mayBegin = state_ == Prolog || state_ == AfterDTD;
      if (mayBegin && !document.childrenBegan) own_->vocabulary = prepareVocabulary();
      XMLWriter::startElement(uri, localName, qName, attributes);
      perform([&] { encodeStartTag({uri, localName, qName}, attributes); });
    } catch (...) {
      while (elements_.size() > depth) elements_.pop_back();
      if (namespaces_.size() > told) namespaces_.resize(told);
      for (const std::string& prefix : own_->taken) document.declared.erase(prefix);
      document.bindings.undo(own_->taken.size());
      throw;
    }
    if (!document.declared.empty()) document.declared.clear();
  });
}

/// All of the tag was looked at. The first one brings the header.
void XMLWriter_X891::beginTag() {
  State::Document& document = own_->document;
  for (const std::string& part : namespaces_) own_->newOctets += part.size();
  checkRoom(own_->newOctets, own_->newEntries + namespaces_.size());
  document.declaredCount.push_back(document.declared.size());
  own_->isWriting = true;
  if (!document.childrenBegan) beginChildren(own_->vocabulary);
}

void XMLWriter_X891::endElement(const std::string& uri, const std::string& localName,
                                const std::string& qName) {
  attempt([&] {
    State::Document& document = own_->document;
    if (state_ == InElement && !document.declared.empty()) {
      throw SAXException("A prefix mapping needs an element");
    }
    const std::size_t depth = elements_.size();
    try {
      XMLWriter_FI::endElement(uri, localName, qName);
    } catch (...) {
      own_->isWriting = elements_.size() < depth;  // Else, it was refused.
      throw;
    }
    document.bindings.undo(document.declaredCount.back());
    document.declaredCount.pop_back();
  });
}

// --- Names ---

namespace {

/// Whether a qualified name is that of these parts.
bool isSpelling(const std::string& qName, std::string_view prefix, const std::string& localName) {
  if (prefix.empty()) return qName == localName || qName.empty();
  return qName.size() == prefix.size() + 1 + localName.size() && qName.ends_with(localName);
}

/// The record of a position in a table.
template <typename Record>
Record& recordAt(std::vector<Record>& records, std::size_t position) {
  if (position >= records.size()) records.resize(position + position / 2 + 1);
  return records[position];
}

}  // namespace

void XMLWriter_X891::checkPrefix(std::string_view prefix, const std::string& uri) const {
  const std::string& bound = own_->document.bindings.find(prefix);
  if (bound == uri && !(bound.empty() && !prefix.empty())) return;
  if (bound.empty() && !prefix.empty()) missingNamePart(std::string(prefix), "prefix");
  if (bound.empty()) missingNamePart(uri, "namespace");
  if (prefix.empty()) {
    throw SAXException("The default namespace is \"" + bound + "\", not \"" + uri + "\"");
  }
  throw SAXException("The prefix \"" + std::string(prefix) + "\" is bound to \"" + bound +
                     "\", not to \"" + uri + "\"");
}

/// Looks at the parts of a name that is in no table.
void XMLWriter_X891::takeNewName(const Name& name) {
  const std::string_view prefix = name.prefix();
  const std::uint64_t parts = prefix.size() + name.uri.size() + name.localName.size();
  own_->newOctets += kNameCopies * parts + kNameOctets + name.localName.size();
  ++own_->newEntries;  // The local name.
  checkNCName(name.localName);
  if (!prefix.empty()) checkNCName(prefix);
}

// A name that is in a table is looked at again only where other declarations are in force.

void XMLWriter_X891::checkElementName(const Name& name, unsigned index, bool isKnown) {
  State::Document& document = own_->document;
  document.attributes.beginTag();
  if (!isKnown && !isSpelling(name.qName, name.prefix(), name.localName)) refuseSpelling(name);
  if (index == kNoIndex) {
    takeNewName(name);
    checkPrefix(name.prefix(), name.uri);
    return;
  }
  std::uint64_t& bindings = recordAt(document.elementBindings, index);
  if (bindings == document.bindings.version()) return;
  checkPrefix(name.prefix(), name.uri);
  bindings = document.bindings.version();
}

void XMLWriter_X891::checkAttributeName(const Name& name, unsigned index, bool isKnown) {
  State::Document& document = own_->document;
  if (isKnown) {  // It was looked at, and has a record.
    const State::AttributeRecord& record = document.attributeRecords[index];
    if (record.bindings == document.bindings.version() && document.attributes.take(record.number)) {
      return;
    }
  }
  if (!isKnown && !isSpelling(name.qName, name.prefix(), name.localName)) refuseSpelling(name);
  if (!isKnown && name.localName == "xmlns" && name.prefix().empty()) {
    throw SAXException("An attribute with the name \"xmlns\" is a namespace declaration");
  }
  State::AttributeRecord fresh;
  State::AttributeRecord& record =
      index != kNoIndex ? recordAt(document.attributeRecords, index) : fresh;
  if (index == kNoIndex) takeNewName(name);
  if (record.bindings != document.bindings.version()) {
    const std::string_view prefix = name.prefix();
    if (!prefix.empty()) {
      checkPrefix(prefix, name.uri);
    } else if (!name.uri.empty()) {
      throw SAXException("The attribute \"" + name.localName + "\" has the namespace \"" +
                         name.uri + "\", but no prefix");
    }
    record.bindings = document.bindings.version();
  }
  if (record.number == xml::UniqueAttributes::kUnknown) {
    record.number = document.attributes.number(name.uri, name.localName);
  }
  if (!document.attributes.take(record.number)) {
    throw SAXException("The attribute \"" + name.localName + "\" stands twice in a start tag");
  }
}

void XMLWriter_X891::refuseSpelling(const Name& name) {
  checkNCName(name.localName);
  throw SAXException("The qualified name \"" + name.qName +
                     "\" does not belong to the local name \"" + name.localName + "\"");
}

// --- Values ---

void XMLWriter_X891::checkValue(const std::string& value, unsigned index) const {
  // What the document itself brought into the table was looked at then; an external vocabulary may
  // hold anything.
  if (index != kNoIndex && index >= own_->document.loadedValues) return;
  if (!xml::isEasyText(value) || value.size() > kLongestString) {
    checkText(value, "an attribute value");
  }
}

void XMLWriter_X891::checkTypedValue(const std::string& uri, int index, const EncodedData& data) {
  EncodingAlgorithm& algorithm = algorithmFor(uri, index);
  if (!isBuiltIn(uri, index)) {
    // It may give any text, and whoever reads the attribute may ask for it.
    checkText(data.toString(), "an attribute value");
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
      sendOctets();
      algorithmFor(uri, index).encodeToOutputStream(false, data, *out_);
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
