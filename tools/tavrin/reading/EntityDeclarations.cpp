#include "reading/EntityDeclarations.h"

#include <Tavrin/Identifiers.h>

#include "reading/Reading.h"

namespace tool {

void EntityDeclarations::findIn(Tavrin::XMLReader& reader, Input& input) {
  reader_ = &reader;
  input_ = &input;
  connect(reader, anyAlgorithm_);
  reader.setContentHandler(this);
  reader.setDTDHandler(this);
  reader.setProperty(Tavrin::properties::declarationHandler,
                     static_cast<Tavrin::DeclHandler*>(this));
  reader.setProperty(Tavrin::properties::lexicalHandler,
                     static_cast<Tavrin::LexicalHandler*>(this));
  input.mark();
  try {
    parse(reader, input);
  } catch (...) {
    if (!hasEnough_) failure_ = std::current_exception();
  }
  input.returnToMark();
}

void EntityDeclarations::check() const {
  if (failure_) std::rethrow_exception(failure_);
}

// The handlers of the content are of no use any more; without them the reader is faster.
void EntityDeclarations::startElement(const std::string&, const std::string&, const std::string&,
                                      const Tavrin::Attributes&) {
  if (!hasDocumentType_) {
    hasEnough_ = true;
    throw Enough();
  }
  reader_->setContentHandler(nullptr);
  reader_->setProperty(Tavrin::properties::lexicalHandler, nullptr);
  input_->expectToReturn();
}

void EntityDeclarations::startDTD(const std::string&, const std::string&, const std::string&) {
  hasDocumentType_ = inDTD_ = true;
}

void EntityDeclarations::endDTD() { inDTD_ = false; }

// The first declaration of an entity counts (XML 1.0, section 4.2).

void EntityDeclarations::unparsedEntityDecl(const std::string& name, const std::string&,
                                            const std::string&, const std::string&) {
  declared_.insert(name);
}

void EntityDeclarations::internalEntityDecl(const std::string& name, const std::string&) {
  declared_.insert(name);
}

void EntityDeclarations::externalEntityDecl(const std::string& name, const std::string& publicId,
                                            const std::string& systemId) {
  const bool isNew = declared_.insert(name).second;
  if (isNew && !inDTD_) entities_.push_back({name, publicId, systemId});
}

}  // namespace tool
