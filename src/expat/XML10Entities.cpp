#include <cstdlib>
#include <new>

#include "SingleByteEncoding.h"
#include "XML10Document.h"

namespace Tavrin {

namespace {

/// Entities within entities are read by parsers within parsers, on the stack.
constexpr std::size_t kMaximumDepth = 256;

/// Entities are often small, and several may be open at a time.
constexpr int kEntityBlockSize = 64 * 1024;

}  // namespace

/// Makes an entity the current one.
class XMLReader_XML10::EntityScope {
 public:
  EntityScope(XMLReader_XML10& reader, XML_Parser parser, const DeclaredEntity& entity)
      : open_(reader.document_->open) {
    open_.push_back({parser, &entity});
  }
  ~EntityScope() { open_.pop_back(); }
  EntityScope(const EntityScope&) = delete;
  EntityScope& operator=(const EntityScope&) = delete;

 private:
  std::vector<Document::OpenEntity>& open_;
};

int XMLReader_XML10::Callbacks::externalEntityRefHandler(XML_Parser argument,
                                                         const XML_Char* context,
                                                         const XML_Char* base, const XML_Char*,
                                                         const XML_Char*) {
  XMLReader_XML10& reader = from(argument);
  guard(reader, [&] {
    const std::size_t number = base ? std::strtoul(base, nullptr, 10) : 0;
    reader.readEntity(reader.document_->entities.at(number), context);
  });
  return reader.document_->failure ? XML_STATUS_ERROR : XML_STATUS_OK;
}

void XMLReader_XML10::readEntity(const DeclaredEntity& entity, const char* context) {
  Document& document = *document_;
  // Only a general entity has a context: what is bound and open where it is referred to.
  const bool isRead = context ? document.features.externalGeneralEntities
                              : document.features.externalParameterEntities;
  std::unique_ptr<std::istream> stream;
  if (isRead && entityResolver_) {
    stream = entityResolver_->resolveEntity(entity.publicId, entity.systemId);
  }
  if (!stream) {
    if (contentHandler_) contentHandler_->skippedEntity(entity.name);
    return;
  }
  if (document.open.size() > kMaximumDepth) fail("external entities are nested too deeply");

  XML_Parser parent = document.current().parser;
  const std::unique_ptr<XML_ParserStruct, ParserDeleter> child(
      XML_ExternalEntityParserCreate(parent, context, nullptr));
  if (!child) throw std::bad_alloc();
  XML_SetUnknownEncodingHandler(child.get(), Callbacks::unknownEncodingHandler, this);
  const std::size_t declared = document.entities.size();
  if (!context) numberNextEntity(child.get());
  {
    const EntityScope scope(*this, child.get(), entity);
    if (lexicalHandler_) lexicalHandler_->startEntity(entity.name);
    const XML_Status status = parseStream(child.get(), *stream, kEntityBlockSize);
    if (document.failure) return;
    if (status == XML_STATUS_ERROR) failAsParser();
    if (lexicalHandler_) lexicalHandler_->endEntity(entity.name);
  }
  if (document.entities.size() != declared) numberNextEntity(parent);
}

int XMLReader_XML10::Callbacks::unknownEncodingHandler(void* data, const XML_Char* name,
                                                       XML_Encoding* encoding) {
  XMLReader_XML10& reader = *static_cast<XMLReader_XML10*>(data);
  try {
    std::string& problem = reader.document_->encodingProblem;
    problem = std::string(" \"") + name + '"';
    const EncodingSupport support = describeEncoding(name, *encoding);
    // expat may yet refuse the table: what is ASCII must be ASCII.
    if (support == EncodingSupport::singleByte) return XML_STATUS_OK;
    if (support == EncodingSupport::multiByte) problem += ": its characters are not single octets";
  } catch (...) {
    reader.handlerThrew();
  }
  return XML_STATUS_ERROR;
}

}  // namespace Tavrin
