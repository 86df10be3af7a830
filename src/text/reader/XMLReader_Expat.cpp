#include <Tavrin/Attributes.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/XMLReader_Expat.h>

#include "../../sax/ParseScope.h"
#include "Callbacks.h"
#include "Parser.h"

namespace Tavrin {

using namespace text;

namespace {

class Locator_Expat : public Locator {
 public:
  explicit Locator_Expat(XML_Parser parser) : parser_(parser) {}

  std::string getPublicId() const override { return {}; }
  std::string getSystemId() const override { return {}; }
  std::int32_t getLineNumber() const override { return lineOf(parser_); }
  std::int32_t getColumnNumber() const override { return columnOf(parser_); }

 private:
  XML_Parser parser_;
};

/// An attribute as expat gives it. It is converted in the list's memory: making a record, with its
/// five strings, and moving it there takes about twice as long.
struct GivenAttribute {
  const XML_Char* name;
  const XML_Char* value;

  // The second separator is searched from the length of the namespace name on, so the prefix of a
  // local name shorter than that is not found and stays in the local name. Applications rely on
  // these names: they must not change.
  explicit operator AttributesImpl::Attribute() const {
    const std::string_view given = name;
    const std::size_t uriLength = given.find(kExpatSeparator);
    const ExpatName parts = splitAt(given, kExpatSeparator, uriLength, uriLength);
    return {std::string(parts.uri), std::string(parts.localName), qNameOf(parts), "CDATA", value};
  }
};

void fill(AttributesImpl& list, const XML_Char** attributes) {
  std::size_t count = 0;
  while (attributes[2 * count]) ++count;
  list.attributes_.reserve(count);
  for (; *attributes; attributes += 2) {
    list.attributes_.emplace_back(GivenAttribute{attributes[0], attributes[1]});
  }
}

/// A system identifier as declarations report it: the base URI directly followed by the identifier.
/// The reader sets no base URI, so the parse ends here.
std::string systemIdFrom(const XML_Char* base, const XML_Char* systemId) {
  if (base == nullptr) throw SAXException("No base URI");
  return std::string(base) + systemId;
}

}  // namespace

class XMLReader_Expat::Driver : public EventTarget {
 public:
  using EventTarget::EventTarget;

  void parse(std::istream& stream) {
    guardParse([&] {
      setupParser();
      const XML_Status status = parseStream(parser_.get(), stream, kBlockSize);
      if (status == XML_STATUS_ERROR) reportError();
      endDocument(status);
    });
  }

  void parse(const void* data, unsigned long size, bool isFinal) {
    guardParse([&] {
      if (!parser_) setupParser();
      if (data == nullptr) {
        if (isFinal) releaseParser();
        return;
      }
      const XML_Status status = XML_Parse(parser_.get(), static_cast<const char*>(data),
                                          static_cast<std::int32_t>(size), isFinal);
      if (status == XML_STATUS_ERROR) reportError();
      if (isFinal) endDocument(status);
    });
  }

  // Events, within guard.

  void startElement(const XML_Char* name, const XML_Char** attributes) {
    if (!handlers.content) return;
    // A new list for each start tag, so that memory is not kept. Applications may rely on its
    // class.
    AttributesImpl list;
    fill(list, attributes);
    element_.assign(name, kExpatSeparator);
    handlers.content->startElement(element_.uri, element_.localName, element_.qName, list);
  }

  void endElement(const XML_Char* name) {
    if (!handlers.content) return;
    element_.assign(name, kExpatSeparator);
    handlers.content->endElement(element_.uri, element_.localName, element_.qName);
  }

  void startNamespace(const XML_Char* prefix, const XML_Char* uri) {
    if (!handlers.content) return;
    // expat has no namespace name for `xmlns=""`. An undeclaration ends the parse.
    if (uri == nullptr) throw SAXException("Default namespace undeclared");
    handlers.content->startPrefixMapping(textOrEmpty(prefix), uri);
  }

  void skippedEntity(const XML_Char* name, int) {
    if (handlers.content) handlers.content->skippedEntity(name);
  }

  void notationDecl(const XML_Char* name, const XML_Char* base, const XML_Char* systemId,
                    const XML_Char* publicId) {
    if (!handlers.dtd) return;
    handlers.dtd->notationDecl(name, textOrEmpty(publicId), systemIdFrom(base, systemId));
  }

  void entityDecl(const XML_Char* name, int isParameterEntity, const XML_Char* value,
                  int valueLength, const XML_Char* base, const XML_Char* systemId,
                  const XML_Char* publicId, const XML_Char* notationName) {
    // Unparsed entities go to the DTD handler, but only while there is a declaration handler.
    if (!handlers.decl) return;
    const std::string entityName = isParameterEntity ? std::string("%") + name : name;
    if (!systemId) {
      const auto size = static_cast<std::size_t>(valueLength);
      return handlers.decl->internalEntityDecl(entityName, std::string(value, size));
    }
    // A missing base URI ends the parse whether there is a DTD handler or not.
    const std::string wholeId = systemIdFrom(base, systemId);
    if (!notationName) {
      handlers.decl->externalEntityDecl(entityName, textOrEmpty(publicId), wholeId);
    } else if (handlers.dtd) {
      handlers.dtd->unparsedEntityDecl(entityName, textOrEmpty(publicId), wholeId, notationName);
    }
  }

  void attlistDecl(const XML_Char* element, const XML_Char* attribute, const XML_Char* type,
                   const XML_Char* defaultValue, int isRequired) {
    if (!handlers.decl) return;
    handlers.decl->attributeDecl(element, attribute, type, defaultMode(defaultValue, isRequired),
                                 textOrEmpty(defaultValue));
  }

  int externalEntityRef(const XML_Char* context, const XML_Char*, const XML_Char* systemId,
                        const XML_Char* publicId) {
    if (!pointers.resolver) return XML_STATUS_OK;
    XML_Status status = XML_STATUS_ERROR;
    guard([&] { status = readExternalEntity(context, publicId, systemId); });
    return status;
  }

 private:
  // After a SAX failure the reader can read another document. Failures are thrown as one of the two
  // types that callers of parse know, also where the type was derived from these. Exceptions of
  // other kinds, from a handler or a stream, pass through, and the document stays open.
  template <typename Parse>
  void guardParse(Parse parse) {
    const ParseScope scope(parsing_);
    try {
      parse();
    } catch (const SAXParseException& exception) {
      releaseParser();
      throw SAXParseException(exception);
    } catch (const SAXException& exception) {
      releaseParser();
      throw SAXException(exception);
    }
  }

  /// Creates and configures the parser of a new document, and announces the document.
  void setupParser() {
    releaseParser();  // An abandoned document may still be open.
    OwnedParser parser(XML_ParserCreateNS(nullptr, kExpatSeparator));
    if (!parser) throw SAXException("Cannot create expat xml parser");
    installCallbacks(parser.get(), *this);
    locator_ = std::make_unique<Locator_Expat>(parser.get());
    parser_ = std::move(parser);  // Last: with it, a document is open.
    if (handlers.content) handlers.content->setDocumentLocator(locator_.get());
    if (handlers.content) handlers.content->startDocument();  // A handler may unset itself.
  }

  void endDocument(XML_Status status) {
    if (status == XML_STATUS_OK && handlers.content) handlers.content->endDocument();
    releaseParser();
  }

  [[noreturn]] void reportError() {
    const SAXParseException exception(XML_ErrorString(XML_GetErrorCode(parser_.get())),
                                      lineOf(parser_.get()), columnOf(parser_.get()));
    if (handlers.error) handlers.error->fatalError(exception);
    throw exception;
  }

  void handlerThrew() override { XML_StopParser(parser_.get(), XML_FALSE); }

  XML_Status readExternalEntity(const XML_Char* context, const XML_Char* publicId,
                                const XML_Char* systemId) {
    const std::unique_ptr<std::istream> stream =
        pointers.resolver->resolveEntity(textOrEmpty(publicId), textOrEmpty(systemId));
    if (!stream) return XML_STATUS_OK;
    // The child always belongs to the document's parser, also for an entity within an entity:
    // handlerThrew stops that parser only.
    const OwnedParser child(XML_ExternalEntityParserCreate(parser_.get(), context, nullptr));
    if (!child) return XML_STATUS_ERROR;
    return parseStream(child.get(), *stream, kBlockSize);
  }

  void releaseParser() {
    locator_.reset();
    parser_.reset();
    releaseMemory();
  }

  bool parsing_ = false;  // A call of parse is on the stack.
  // While a document is open.
  std::unique_ptr<Locator> locator_;
  OwnedParser parser_;
};

const XMLReaderType XMLReader_Expat::type_("Expat", &XMLReader_Expat::create);

XMLReader_Expat::XMLReader_Expat()
    : driver_(std::make_unique<Driver>(
          HandlerPointers{contentHandler_, errorHandler_, entityResolver_, dtdHandler_})) {}

XMLReader_Expat::~XMLReader_Expat() = default;

std::unique_ptr<XMLReader> XMLReader_Expat::create() { return std::make_unique<XMLReader_Expat>(); }

void XMLReader_Expat::setProperty(const std::string& name, void* value) {
  if (name == properties::lexicalHandler) {
    driver_->pointers.lexical = static_cast<LexicalHandler*>(value);
  } else if (name == properties::declarationHandler) {
    driver_->pointers.decl = static_cast<DeclHandler*>(value);
  } else {
    XMLReader::setProperty(name, value);
  }
}

void* XMLReader_Expat::getProperty(const std::string& name) {
  if (name == properties::lexicalHandler) return driver_->pointers.lexical;
  if (name == properties::declarationHandler) return driver_->pointers.decl;
  return XMLReader::getProperty(name);
}

void XMLReader_Expat::parse(std::istream& stream) { driver_->parse(stream); }

void XMLReader_Expat::parse(const void* data, unsigned long size, bool isFinal) {
  driver_->parse(data, size, isFinal);
}

}  // namespace Tavrin
