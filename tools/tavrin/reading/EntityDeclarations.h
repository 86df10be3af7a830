#pragma once

#include <Tavrin/Handlers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>

#include <exception>
#include <string>
#include <unordered_set>
#include <vector>

#include "files/Input.h"
#include "reading/Reading.h"

namespace tool {

/// The external entities of which a reader tells in the content, where it comes to references. XML
/// text declares them in the document type, in front of all content: the document is read twice.
class EntityDeclarations : private Tavrin::ContentHandler,
                           private Tavrin::DTDHandler,
                           private Tavrin::DeclHandler,
                           private Tavrin::LexicalHandler {
 public:
  struct Entity {
    std::string name;
    std::string publicId;
    std::string systemId;
  };

  /// Looks through the document at whose beginning the input is, and goes back there. A document
  /// without a document type has no place for declarations: it is left at its first start tag.
  ///
  /// The reader keeps handlers that are a part of this object. What fails here will fail again when
  /// the document is read for its copy, unless something in front of it does.
  void findIn(Tavrin::XMLReader& reader, Input& input);

  /// The entities that the document type itself does not declare, in the order of the references.
  const std::vector<Entity>& entities() const { return entities_; }
  /// Whether the document could be read.
  bool areComplete() const { return failure_ == nullptr; }
  /// Throws the failure where it could not.
  void check() const;

 private:
  struct Enough {};  // There is nothing to find.

  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Tavrin::Attributes& attributes) override;
  void startDTD(const std::string& name, const std::string& publicId,
                const std::string& systemId) override;
  void endDTD() override;
  void unparsedEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId, const std::string& notationName) override;
  void internalEntityDecl(const std::string& name, const std::string& value) override;
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId) override;

  AnyAlgorithm anyAlgorithm_;
  Tavrin::XMLReader* reader_ = nullptr;
  Input* input_ = nullptr;
  bool hasDocumentType_ = false;
  bool inDTD_ = false;
  bool hasEnough_ = false;
  std::unordered_set<std::string> declared_;
  std::vector<Entity> entities_;
  std::exception_ptr failure_;
};

}  // namespace tool
