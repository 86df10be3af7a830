#include <algorithm>
#include <cstdlib>
#include <new>

#include "SingleByteEncoding.h"
#include "XML10Driver.h"

namespace Tavrin {

namespace {

/// Entities within entities are read by parsers within parsers, on the stack.
constexpr std::size_t kMaximumDepth = 256;

/// Entities are often small, and several may be open at a time.
constexpr int kEntityBlockSize = 64 * 1024;

}  // namespace

/// Makes an entity the current one.
class XMLReader_XML10::Driver::EntityScope {
 public:
  EntityScope(XML10Document& document, XML_Parser parser, const DeclaredEntity& entity)
      : open_(document.open) {
    open_.push_back({parser, &entity});
  }
  ~EntityScope() { open_.pop_back(); }
  EntityScope(const EntityScope&) = delete;
  EntityScope& operator=(const EntityScope&) = delete;

 private:
  std::vector<XML10Document::OpenEntity>& open_;
};

int XMLReader_XML10::Driver::Callbacks::externalEntityRefHandler(XML_Parser argument,
                                                                 const XML_Char* context,
                                                                 const XML_Char* base,
                                                                 const XML_Char*, const XML_Char*) {
  Driver& driver = from(argument);
  driver.guard([&] {
    const std::size_t number = base ? std::strtoul(base, nullptr, 10) : 0;
    driver.readEntity(driver.document_->entities.at(number), context);
  });
  return driver.document_->failure ? XML_STATUS_ERROR : XML_STATUS_OK;
}

void XMLReader_XML10::Driver::readEntity(const DeclaredEntity& entity, const char* context) {
  XML10Document& document = *document_;
  // Only a general entity has a context: what is bound and open where it is referred to.
  const bool isRead = context ? document.features.externalGeneralEntities
                              : document.features.externalParameterEntities;
  std::unique_ptr<std::istream> stream;
  if (isRead && handlers.resolver) {
    stream = handlers.resolver->resolveEntity(entity.publicId, entity.systemId);
  }
  if (!stream) {
    if (!context && &entity != &document.entities.front()) passOverDeclarations();
    if (handlers.content) handlers.content->skippedEntity(entity.name);
    return;
  }
  if (document.open.size() > kMaximumDepth) fail("external entities are nested too deeply");

  XML_Parser parent = document.current().parser;
  const OwnedParser child(XML_ExternalEntityParserCreate(parent, context, nullptr));
  if (!child) throw std::bad_alloc();
  XML_SetUnknownEncodingHandler(child.get(), Callbacks::unknownEncodingHandler,
                                static_cast<EventTarget*>(this));
  const std::size_t declared = document.entities.size();
  if (!context) numberNextEntity(child.get());
  {
    const EntityScope scope(document, child.get(), entity);
    if (handlers.lexical) handlers.lexical->startEntity(entity.name);
    const XML_Status status = parseStream(child.get(), *stream, kEntityBlockSize, chooseEncoding);
    if (document.failure) return;
    if (status == XML_STATUS_ERROR) failAsParser();
    document.entityOctets +=
        static_cast<std::uint64_t>(std::max(XML_GetCurrentByteIndex(child.get()), XML_Index{0}));
    if (handlers.lexical) handlers.lexical->endEntity(entity.name);
  }
  if (document.entities.size() != declared) numberNextEntity(parent);
}

int XMLReader_XML10::Driver::Callbacks::unknownEncodingHandler(void* data, const XML_Char* name,
                                                               XML_Encoding* encoding) {
  Driver& driver = from(data);
  try {
    std::string& problem = driver.document_->encodingProblem;
    problem = std::string(" \"") + name + '"';
    const EncodingSupport support = describeEncoding(name, *encoding);
    // expat may yet refuse the table: what is ASCII must be ASCII.
    if (support == EncodingSupport::singleByte) return XML_STATUS_OK;
    if (support == EncodingSupport::multiByte) problem += ": its characters are not single octets";
  } catch (...) {
    driver.handlerThrew();
  }
  return XML_STATUS_ERROR;
}

}  // namespace Tavrin
