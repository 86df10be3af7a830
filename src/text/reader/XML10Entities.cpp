#include <cstdlib>
#include <new>

#include "Callbacks.h"
#include "CharacterEncodings.h"
#include "XML10Driver.h"

namespace Tavrin::text {

namespace {

/// Entities within entities are read by recursion.
constexpr std::size_t kMaximumDepth = 256;

/// Makes an entity the current one during its lifetime.
class EntityScope {
 public:
  EntityScope(XML10Document& document, XML_Parser parser, const DeclaredEntity& entity)
      : open_(document.open) {
    open_.push_back({.parser = parser, .entity = &entity, .depth = document.elements.depth()});
  }
  ~EntityScope() { open_.pop_back(); }
  EntityScope(const EntityScope&) = delete;
  EntityScope& operator=(const EntityScope&) = delete;

 private:
  std::vector<OpenEntity>& open_;
};

}  // namespace

int XML10Driver::externalEntityRef(const XML_Char* context, const XML_Char* base, const XML_Char*,
                                   const XML_Char*) {
  guard([&] {
    const std::size_t number = base ? std::strtoul(base, nullptr, 10) : 0;
    readEntity(document_->entities.at(number), context);
  });
  if (document_->failure || isStopped()) return XML_STATUS_ERROR;
  if (isPaused() && !document_->isInExternalEntity()) stopParser(XML_TRUE);
  return XML_STATUS_OK;
}

void XML10Driver::readEntity(const DeclaredEntity& entity, const char* context) {
  if (isStopped()) return;  // expat passes on the external subset nevertheless.
  XML10Document& document = *document_;
  const XML10Settings::Features& features = document.settings.features;
  // Only a general entity has a context: the bindings and open entities at the reference.
  const bool isRead =
      context ? features.externalGeneralEntities : features.externalParameterEntities;
  std::unique_ptr<std::istream> stream;
  gate_.settle();  // The resolver may throw.
  if (isRead && pointers.resolver) {
    stream = pointers.resolver->resolveEntity(entity.publicId, entity.systemId);
  }
  if (isStopped()) return;
  if (!stream) {
    if (!context && &entity != &document.entities.front()) stopProcessing();
    if (handlers.content) handlers.content->skippedEntity(entity.name);
    return;
  }
  stayInParser();
  if (document.open.size() > kMaximumDepth) fail("external entities are nested too deeply");

  XML_Parser parent = document.current().parser;
  const OwnedParser child(XML_ExternalEntityParserCreate(parent, context, nullptr));
  if (!child) throw std::bad_alloc();
  // A child inherits every callback, but this one without its argument.
  setUnknownEncodingHandler(child.get());
  const std::size_t declared = document.entities.size();
  if (!context) numberNextEntity(child.get());
  nameOpenElements();  // While expat has the octets of those around the reference.
  {
    const EntityScope scope(document, child.get(), entity);
    if (handlers.lexical) handlers.lexical->startEntity(entity.name);
    if (isStopped()) return;
    const XML_Status status = parseEntity(*stream, true);
    if (document.failure || isStopped()) return;
    if (status == XML_STATUS_ERROR) failAsParser();
    document.entityOctets += document.current().octetsRead();
    if (handlers.lexical) handlers.lexical->endEntity(entity.name);
  }
  if (document.entities.size() != declared) numberNextEntity(parent);
}

void XML10Driver::setUnknownEncodingHandler(XML_Parser parser) {
  EventTarget* const target = this;
  XML_SetUnknownEncodingHandler(parser, on<&XML10Driver::unknownEncoding>, target);
}

int XML10Driver::unknownEncoding(const XML_Char* name, XML_Encoding* encoding) {
  try {
    std::string& problem = document_->encodingProblem;
    problem = std::string(" \"") + name + '"';
    if (describeEncoding(name, *encoding)) return XML_STATUS_OK;
    // If the declaration were in that encoding, its entity would have been converted.
    if (isKnownEncoding(name)) problem += ": the declaration is in another one";
  } catch (...) {
    handlerThrew();
  }
  return XML_STATUS_ERROR;
}

}  // namespace Tavrin::text
