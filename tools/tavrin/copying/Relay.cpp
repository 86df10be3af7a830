#include "copying/Relay.h"

#include <Tavrin/Identifiers.h>

#include "files/Failure.h"
#include "options/Limits.h"
#include "reading/Reading.h"

namespace tool {

namespace {

/// Has declarations of namespaces come as such alone. As attributes, too, they would be written
/// twice by writers that do not follow the standards.
void reportDeclarationsOnce(Tavrin::XMLReader& reader) {
  try {
    if (reader.getFeature(Tavrin::features::namespaces)) {
      reader.setFeature(Tavrin::features::namespacePrefixes, false);
    }
  } catch (const Tavrin::SAXNotRecognizedException&) {
    // It knows no other way.
  }
}

/// Algorithms from here on are the application's, in X.891: a table in the document names them, and
/// the writers here have none.
constexpr int kFirstApplicationAlgorithm = 31;

/// Whether a writer follows the standards: it keeps declarations, what a document states of itself
/// and references to entities.
bool followsStandard(Tavrin::XMLWriter& writer) {
  try {
    writer.getProperty(Tavrin::properties::standalone);
    return true;
  } catch (const Tavrin::SAXNotRecognizedException&) {
    return false;
  }
}

std::string describe(const std::string& uri, int index) {
  return std::to_string(index) + (uri.empty() ? "" : " \"" + uri + "\"");
}

}  // namespace

Relay::Relay(Tavrin::XMLWriter& writer, const Output* output, const Input& input,
             Tavrin::EntityResolver* resolver)
    : writer_(writer),
      typedWriter_(dynamic_cast<Tavrin::EncodingAlgorithmContentHandler*>(&writer)),
      output_(output),
      input_(input),
      resolver_(resolver),
      writerFollowsStandard_(followsStandard(writer)) {}

void Relay::expectFrom(Tavrin::XMLReader& reader) {
  reader_ = &reader;
  reportDeclarationsOnce(reader);
  readerFollowsStandard_ = tool::followsStandard(reader);
  readerIsTyped_ = knowsTypedContent(reader);
}

bool Relay::needsEntityDeclarations() const {
  return takesDeclarations() && readerIsTyped_ && typedWriter_ == nullptr;
}

bool Relay::mayLackWayBack() const {
  return takesDeclarations() && !readerIsTyped_ && typedWriter_ != nullptr;
}

void Relay::check() const {
  if (failure_) std::rethrow_exception(failure_);
}

/// Hands one event to the writer. There is no use in going on after a failure, be it the writer's
/// or that of the output.
template <typename Event>
void Relay::pass(Event event) {
  if (failure_) return;  // Some events still come before the reader has stopped.
  try {
    event();
    if (output_) output_->checkWritten();
  } catch (const Tavrin::SAXException& exception) {
    fail(Limits::withOption(exception.getMessage()));
  } catch (const Tavrin::FastInfosetException& exception) {
    fail(Limits::withOption(exception.getMessage()));
  } catch (...) {
    failure_ = std::current_exception();
    throw;
  }
}

void Relay::fail(const std::string& message) {
  check();
  const Failure failure = failureReached(input_, locator_, message + entityAt(locator_));
  failure_ = std::make_exception_ptr(failure);
  throw failure;
}

// --- What is watched ---

void Relay::setDocumentLocator(const Tavrin::Locator* locator) {
  locator_ = withLines(locator);
  pass([&] { writer_.setDocumentLocator(locator); });
}

void Relay::startDTD(const std::string& name, const std::string& publicId,
                     const std::string& systemId) {
  inDTD_ = true;
  if (wayBack_) wayBack_->startDTD(publicId, systemId);
  pass([&] { writer_.startDTD(name, publicId, systemId); });
}

void Relay::endDTD() {
  inDTD_ = false;
  if (entities_) {
    for (const EntityDeclarations::Entity& entity : entities_->entities()) {
      pass([&] { writer_.externalEntityDecl(entity.name, entity.publicId, entity.systemId); });
    }
  }
  pass([&] { writer_.endDTD(); });
}

void Relay::skippedEntity(const std::string& name) {
  if (!inDTD_ && !writerFollowsStandard_) {
    fail("entity \"" + name + "\" was not read, so the copy would lack it");
  }
  pass([&] { writer_.skippedEntity(name); });
  if (wayBack_ == nullptr || inDTD_ || failure_) return;
  const std::string obstacle = wayBack_->skippedEntity(name);
  if (obstacle.empty()) return;
  warn(placeReached(input_, locator_),
       "The copy cannot be written as XML text again: " + obstacle + entityAt(locator_));
}

std::unique_ptr<std::istream> Relay::resolveEntity(const std::string& publicId,
                                                   const std::string& systemId) {
  std::unique_ptr<std::istream> entity;
  if (resolver_) pass([&] { entity = resolver_->resolveEntity(publicId, systemId); });
  if (!entity) passOver(systemId);
  return entity;
}

// Within the document type this is its external subset or a parameter entity, behind it a reference
// in the content. Readers that follow the standards report that as skipped, too.
void Relay::passOver(const std::string& systemId) {
  if (!inDTD_ && !readerFollowsStandard_) {
    fail("external entity \"" + systemId + "\" was not read, so the copy would lack it");
  }
}

// --- Typed content ---

void Relay::octets(const std::string& uri, int index, const std::string& data) {
  if (typedWriter_ == nullptr || index >= kFirstApplicationAlgorithm) {
    fail("encoding algorithm " + describe(uri, index) +
         " is unknown, so the copy would lack its content");
  }
  pass([&] { typedWriter_->octets(uri, index, data); });
}

void Relay::object(const std::string& uri, int index, const Tavrin::EncodedData& data) {
  pass([&] {
    if (typedWriter_) {
      typedWriter_->object(uri, index, data);
    } else {
      writer_.characters(data.toString());
    }
  });
}

// --- What just passes ---

void Relay::startDocument() {
  pass([&] {
    passOnStatements();
    writer_.startDocument();
  });
}

/// What a document states of itself. Its version of XML goes to Fast Infoset alone: text is
/// XML 1.0.
void Relay::passOnStatements() {
  if (!takesDeclarations()) return;
  writer_.setProperty(Tavrin::properties::standalone,
                      reader_->getProperty(Tavrin::properties::standalone));
  void* version = reader_->getProperty(Tavrin::properties::documentXMLVersion);
  if (typedWriter_ && version && *static_cast<std::string*>(version) != "1.0") {
    writer_.setProperty(Tavrin::properties::documentXMLVersion, version);
  }
}

void Relay::endDocument() {
  pass([&] { writer_.endDocument(); });
}

void Relay::startPrefixMapping(const std::string& prefix, const std::string& uri) {
  pass([&] { writer_.startPrefixMapping(prefix, uri); });
}

void Relay::endPrefixMapping(const std::string& prefix) {
  pass([&] { writer_.endPrefixMapping(prefix); });
}

void Relay::startElement(const std::string& uri, const std::string& localName,
                         const std::string& qName, const Tavrin::Attributes& attributes) {
  pass([&] { writer_.startElement(uri, localName, qName, attributes); });
}

void Relay::endElement(const std::string& uri, const std::string& localName,
                       const std::string& qName) {
  pass([&] { writer_.endElement(uri, localName, qName); });
}

void Relay::characters(const std::string& text) {
  pass([&] { writer_.characters(text); });
}

void Relay::ignorableWhitespace(const std::string& text) {
  pass([&] { writer_.ignorableWhitespace(text); });
}

void Relay::processingInstruction(const std::string& target, const std::string& data) {
  if (inExternalSubset_) return;
  pass([&] { writer_.processingInstruction(target, data); });
}

void Relay::notationDecl(const std::string& name, const std::string& publicId,
                         const std::string& systemId) {
  if (inExternalSubset_) return;
  pass([&] { writer_.notationDecl(name, publicId, systemId); });
}

void Relay::unparsedEntityDecl(const std::string& name, const std::string& publicId,
                               const std::string& systemId, const std::string& notationName) {
  if (inExternalSubset_) return;
  pass([&] { writer_.unparsedEntityDecl(name, publicId, systemId, notationName); });
  if (wayBack_) wayBack_->unparsedEntityDecl(name, publicId, systemId, notationName);
}

void Relay::elementDecl(const std::string& name, const std::string& model) {
  pass([&] { writer_.elementDecl(name, model); });
}

void Relay::attributeDecl(const std::string& eName, const std::string& aName,
                          const std::string& type, const std::string& mode,
                          const std::string& value) {
  pass([&] { writer_.attributeDecl(eName, aName, type, mode, value); });
}

void Relay::internalEntityDecl(const std::string& name, const std::string& value) {
  pass([&] { writer_.internalEntityDecl(name, value); });
}

void Relay::externalEntityDecl(const std::string& name, const std::string& publicId,
                               const std::string& systemId) {
  // In Fast Infoset a reference has identifiers. In text it is declared already.
  if (!inDTD_ && typedWriter_ == nullptr) return;
  if (wayBack_) wayBack_->externalEntityDecl(name, publicId, systemId);
  pass([&] { writer_.externalEntityDecl(name, publicId, systemId); });
}

void Relay::startEntity(const std::string& name) {
  if (name == kExternalSubset) inExternalSubset_ = true;
  pass([&] { writer_.startEntity(name); });
}

void Relay::endEntity(const std::string& name) {
  if (name == kExternalSubset) inExternalSubset_ = false;
  pass([&] { writer_.endEntity(name); });
}

void Relay::startCDATA() {
  pass([&] { writer_.startCDATA(); });
}

void Relay::endCDATA() {
  pass([&] { writer_.endCDATA(); });
}

void Relay::comment(const std::string& text) {
  if (inExternalSubset_) return;
  pass([&] { writer_.comment(text); });
}

}  // namespace tool
