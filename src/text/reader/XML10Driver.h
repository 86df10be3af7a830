#pragma once

#include <Tavrin/XMLReader_XML10.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../../sax/EventGate.h"
#include "../../xml/Place.h"
#include "../scanner/XML10Scanner.h"
#include "AttributeTypes.h"
#include "DeclarationText.h"
#include "ElementAttributes.h"
#include "EventTarget.h"
#include "GeneralEntities.h"
#include "OpenElements.h"
#include "Parser.h"
#include "Recoder.h"
#include "WaitingOctets.h"

namespace Tavrin::text {

/// What an application sets. Changes apply to the documents that begin afterwards.
struct XML10Settings {
  struct Features {
    bool namespaces = true;
    bool namespacePrefixes = false;
    bool externalGeneralEntities = true;
    bool externalParameterEntities = true;
    bool xmlnsURIs = false;
    bool coalesceCharacters = false;
  };

  static constexpr bool kReparseDeferral = true;
  static constexpr char kAutomatic[] = "automatic";
  static constexpr char kExpat[] = "expat";

  Features features;
  std::optional<std::string> baseURI;
  bool reparseDeferral = kReparseDeferral;
  std::string textScanner = kAutomatic;
  XMLReader_XML10::Limits limits;
};

/// What an application can get about the last document that has begun.
struct XML10Facts {
  std::optional<std::string> version;
  std::optional<bool> standalone;
  std::uint64_t losses = 0;
};

/// An external entity that can be referred to.
struct DeclaredEntity {
  std::string name;  ///< As SAX2 reports it: "[dtd]", "%name" or "name".
  std::string publicId;
  std::string systemId;  ///< Resolved.
};

/// An external entity that is being read, or the document itself.
struct OpenEntity {
  XML_Parser parser;  ///< Null while the document is scanned.
  const DeclaredEntity* entity;
  std::string encoding = {};  ///< As it is declared; empty where expat gets UTF-8.
  std::size_t depth = 0;      ///< How many elements contain it.
  /// Makes UTF-8 of it; null where expat reads its octets.
  std::unique_ptr<Recoder> recoder = nullptr;
  const XML10Scanner* scanner = nullptr;

  /// Where the document goes on that expat reads after another one: a place in both.
  struct Junction {
    std::uint64_t octets = 0;
    xml::Place place = {};
  };
  Junction inDocument = {};
  Junction inParser = {};

  /// Where the current event begins.
  std::uint64_t octetsRead() const;
  std::uint64_t line() const;
  std::uint64_t column() const;
  Position position() const;
};

/// What a document declares after a parameter entity that was not read, where expat processes no
/// declarations any more (XML 1.0, section 5.1).
struct UnprocessedDeclarations {
  DeclarationText text;    ///< Of the current one.
  Position position = {};  ///< Where it begins.
  bool isInInternalEntity = false;
  std::set<std::string> entities;  ///< By the names that SAX2 reports.
  AttributeTypes attributes;
};

/// The state of the document that is being read.
struct XML10Document {
  explicit XML10Document(const XML10Settings& current)
      : settings(current), self{{}, {}, settings.baseURI.value_or(std::string())} {
    open.push_back({.parser = nullptr, .entity = &self});
  }

  OpenEntity& current() { return open.back(); }
  const OpenEntity& current() const { return open.back(); }
  bool isInExternalEntity() const { return open.size() > 1; }
  /// Records that there are declarations which some readers do not read: entities need not be
  /// declared any more, unless the document states that it is standalone.
  void lackDeclarations() { mayLackDeclarations = !standalone.value_or(false); }
  /// An absent identifier is empty.
  std::string resolve(const XML_Char* systemId) const;

  const XML10Settings settings;
  const char separator = settings.features.namespaces ? kXML10Separator : kNoSeparator;
  /// The first octets of a document that is parsed in blocks, while its encoding is unknown.
  std::optional<std::string> start = std::string();
  const DeclaredEntity self;
  std::vector<OpenEntity> open;
  /// Reads the document; null where expat does.
  std::unique_ptr<XML10Scanner> scanner;
  WaitingOctets waiting;  ///< For the scanner.
  /// What expat reads between two parts that are scanned; none where the scanner is not to go on.
  struct Prolog {
    std::unique_ptr<XML10Scanner> scanner;
    std::string octets = {};               ///< Those that expat has got.
    std::optional<std::size_t> root = {};  ///< Where in them the root element begins.
  };
  std::optional<Prolog> prolog;

  // While the document is paused: what has not been given to expat.
  std::istream* stream = nullptr;
  std::string rest;
  bool isFinal = false;   ///< Of a block: whether the document ends with it.
  bool hasEnded = false;  ///< All events have been reported, or wait.

  /// The external entities that are declared, by number. With a reference, expat passes on the base
  /// that was set when the entity was declared: the number of the entity is used for it. The
  /// external subset has the number 0 and no base.
  std::deque<DeclaredEntity> entities{1};

  // What the XML declaration states.
  std::string version = "1.0";
  std::optional<bool> standalone;

  /// Whether an entity has an encoding in which expat accepts wrong characters in names.
  bool checksNames = false;

  ElementAttributes attributes;  ///< Of the current start tag.
  OpenElements elements;
  AttributeTypes attributeTypes;
  bool hasDefaults = false;             ///< An attribute has a default.
  bool hasDeclarationDefaults = false;  ///< An attribute that declares a namespace has a default.
  std::uint64_t defaultOctets = 0;      ///< Octets that have been reported because of defaults.
  std::uint64_t entityOctets = 0;       ///< Octets of external entities that have been read.
  GeneralEntities generalEntities;
  bool mayLackDeclarations = false;
  /// Texts of internal parameter entities that refer to general entities.
  std::vector<std::string> parameterTexts;
  /// While declarations are not processed.
  std::optional<UnprocessedDeclarations> unprocessed;
  /// The current start tag as the document writes it, while it is searched for references.
  std::string markup;
  /// The namespace declarations of the next start tag, while they are reported as attributes.
  std::vector<std::pair<std::string, std::string>> declarations;
  OpenDeclarations bindings;
  /// The exception that stopped the parse.
  std::exception_ptr failure;
  /// What is appended to expat's message about an encoding.
  std::string encodingProblem;
};

/// Names the driver of a reader, for those who pull from it.
inline constexpr char kDriverProperty[] = "http://tavrin/parser/properties/driver";

/// Reads documents for the reader "XML10".
class XML10Driver : public EventTarget, public ScannedEvents {
 public:
  using EventTarget::EventTarget;

  void parse(std::istream& stream);
  void parse(const void* data, unsigned long size, bool isFinal);
  void stop();
  void pause();
  void resume();
  bool isStopped() const { return gate_.isStopped(); }
  bool isPaused() const { return gate_.isPaused(); }

  // Documents that are scanned, a few events at a time: `parse` begins with the octets of a block,
  // `pull` goes on after `hold` or `haltHere`.
  /// @return whether one of them was called again
  bool pull();
  bool isHaltedHere() const {
    return document_ && document_->scanner && document_->scanner->isHaltedHere();
  }
  void hold() { document_->scanner->hold(); }
  void haltHere() { document_->scanner->haltHere(); }
  /// Whether no event has to come before the current one.
  bool isReady() const { return ready_; }
  /// Checks what the scanner has come to against the limits.
  void checkPrefix(const std::string& prefix, const std::string& uri) {
    // As where expat reports them, all are counted.
    if (document_->hasDeclarationDefaults) addDefaults(prefix.size() + uri.size());
  }
  void checkStart() {
    const std::uint64_t maximumDepth = document_->settings.limits.maximumDepth;
    if (document_->scanner->depth() > maximumDepth) failTooDeep();
    if (document_->hasDefaults && handlers.content) {
      addDefaults(document_->scanner->defaultOctets());
    }
  }
  /// Who receives the scanner's events; null for the driver itself, which takes all of them.
  ScannedEvents* pulledEvents = nullptr;

  XML10Settings settings;
  XML10Facts facts;

  // Events of elements and content: XML10Content.cpp.
  void startElement(const XML_Char* name, const XML_Char** attributes);
  void endElement(const XML_Char* name) {
    document_->elements.pop();
    if (!handlers.content) return;
    element_.assign(name, document_->separator);
    handlers.content->endElement(element_.uri, element_.localName, element_.qName);
  }
  void startNamespace(const XML_Char* prefix, const XML_Char* uri);
  void endNamespace(const XML_Char* prefix);
  void skippedEntity(const XML_Char* name, int isParameterEntity);
  void processingInstruction(const XML_Char* target, const XML_Char* data);

  // Declarations: XML10Declarations.cpp.
  void xmlDecl(const XML_Char* version, const XML_Char* encoding, int standalone);
  void startDoctype(const XML_Char* name, const XML_Char* systemId, const XML_Char* publicId, int);
  void endDoctype();
  void notationDecl(const XML_Char* name, const XML_Char*, const XML_Char* systemId,
                    const XML_Char* publicId);
  void entityDecl(const XML_Char* name, int isParameterEntity, const XML_Char* value,
                  int valueLength, const XML_Char*, const XML_Char* systemId,
                  const XML_Char* publicId, const XML_Char* notationName);
  void elementDecl(const XML_Char* name, XML_Content* model);
  void attlistDecl(const XML_Char* element, const XML_Char* attribute, const XML_Char* type,
                   const XML_Char* defaultValue, int isRequired);

  // External entities and encodings: XML10Entities.cpp.
  int externalEntityRef(const XML_Char* context, const XML_Char* base, const XML_Char*,
                        const XML_Char*);

 private:
  template <typename Parse>
  void guardParse(Parse parse);
  [[gnu::noinline]] bool pullRarer();
  void checkNotPaused(const char* operation) const;
  void beginDocument();
  void createParser();
  void installDocumentCallbacks();
  /// Reports the end of the document, or its failure, unless it is paused or stopped.
  void finishParse(XML_Status status, bool isFinal);
  void stopParser(XML_Bool isResumable);
  void suspendOutsideOfEntities();
  /// Expat can change it between blocks.
  void setReparseDeferral();
  // The octets: XML10Blocks.cpp.
  XML_Status continueParse();
  /// Parses the first blocks of a document, which are kept until its encoding is known.
  XML_Status parseFirstBlocks(const char* block, unsigned long size, bool isFinal);
  /// Parses a block of any size.
  XML_Status parseBlock(const char* block, unsigned long size, bool isFinal);
  /// Likewise, by expat.
  XML_Status parseByExpat(const char* block, unsigned long size, bool isFinal);
  /// Likewise, for an entity that expat does not get as it is.
  XML_Status parseRecoded(XML_Parser parser, Recoder& recoder, std::string_view octets,
                          bool areLast);
  /// Gives a whole entity to its parser, in blocks of what has arrived: where a stream waits, as a
  /// socket does, all events of the octets before have been reported.
  /// @param isFirst whether the entity begins with the octets that come
  /// @return the parser's last status; XML_STATUS_ERROR also where it has no memory for a block
  XML_Status parseEntity(std::istream& stream, bool isFirst);
  char* roomFor(int size);
  XML_Status parseRoom(std::string_view octets, bool areLast);
  XML_Status parseScanned(std::string_view octets, bool areLast);
  /// So much is read at a time: entities are often small, and several may be open.
  static constexpr int kMostRead = 64 * 1024;
  /// Prepares for the encoding of an entity, by the entity's first octets.
  void chooseEncoding(std::string_view start);

  bool makeReady() override;
  void handlerThrew() override;
  void endDocument();
  /// Ends the document with the failure that stopped the parse.
  [[noreturn]] void reportError();
  /// Frees what belongs to the open document.
  void releaseParser();

  Position positionHere() const { return document_->current().position(); }
  /// The exception for a failure or warning in the current entity.
  SAXParseException exceptionAt(const std::string& message, const Position& position) const;
  /// Ends the document with a failure in the current entity.
  [[noreturn]] void failAt(const std::string& message, const Position& position);
  [[noreturn]] void fail(const std::string& message) { failAt(message, positionHere()); }
  /// Ends the document with expat's failure in the current entity.
  [[noreturn]] void failAsParser();

  // Documents that are scanned: XML10Scanned.cpp.
  bool isScanned() const { return document_->current().scanner != nullptr; }
  XML_Status scanBlock(const char* block, unsigned long size, bool isFinal);
  XML_Status scan(std::string_view octets, bool areLast);
  XML_Status afterScan(XML10Scanner::Outcome outcome, bool areLast);
  // Likewise, from the root element on.
  XML_Status scanContent(std::string_view octets, bool areLast);
  XML_Status afterContent(XML10Scanner::Outcome outcome, bool areLast);
  /// Has expat go on where the scanner has stopped in the prolog.
  XML_Status passPrologToExpat(std::string_view rest, bool areLast);
  /// Likewise, anywhere else.
  XML_Status passToExpat(std::string_view rest, bool areLast);
  XML_Status leadParserHere();
  // Documents that are scanned from the root element on: XML10Prolog.cpp.
  XML_Status parseProlog(std::string_view octets, bool areLast);
  XML_Status scanFromRoot(std::string_view octets, std::size_t kept, bool areLast);
  /// Whether the parser has come to the root element, which is the scanner's. Then it stops.
  bool comesToRoot();
  bool isInProlog() const { return document_->prolog && !document_->isInExternalEntity(); }
  /// Leaves the rest of the document to expat.
  void stayInParser() { document_->prolog.reset(); }
  void announce() {
    if (!ready_) makeReady();
  }
  void scannedDeclaration(std::string_view encoding, std::optional<bool> standalone) override;
  void scannedPrefix(const std::string& prefix, const std::string& uri) override;
  void scannedStart(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes) override;
  void scannedEnd(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  void scannedPrefixEnd(const std::string& prefix) override;
  void scannedText(std::string_view text) override;
  void scannedStartOfCDATA() override;
  void scannedEndOfCDATA() override;
  void scannedInstruction(const std::string& target, const std::string& data) override;
  void scannedComment(const std::string& text) override;

  // What expat's messages do not tell: XML10Failures.cpp.
  /// The name that a failure of the current entity is about, as it follows expat's message.
  std::string describeFailure(XML_Error code);
  std::string describeEntity(XML_Error code, std::string_view markup);
  std::string describeInTag(XML_Error code, std::string_view tag) const;
  std::string describeInnermost(const char* before, const char* after);
  /// Finds the names and lines of elements that stay open when a block ends.
  void nameOpenElements();

  /// Refuses a name that expat accepts wrongly. The text may have other markup around names.
  void requireName(std::string_view name, const Position& position);
  void requireName(std::string_view name);
  /// Refuses a name of an element or attribute that is not a qualified name.
  void requireQName(const char* name);

  [[noreturn]] void failTooDeep();
  /// Completes the attributes of a start tag by what is declared.
  void applyDeclarations();
  /// Counts octets that defaults have added to the document, and checks the limit.
  void addDefaults(std::uint64_t octets);

  /// Sets the number of the entity that the parser's next external declaration declares.
  void numberNextEntity(XML_Parser parser);
  void readEntity(const DeclaredEntity& entity, const char* context);
  void setUnknownEncodingHandler(XML_Parser parser);
  int unknownEncoding(const XML_Char* name, XML_Encoding* encoding);

  // References that expat drops without an event: XML10Losses.cpp.
  void warnOfLoss(const std::string& message, const Position& position);
  static constexpr char kInDefault[] = "the default of an attribute";
  /// @param place where the reference is, for the message
  void warnOfLostReference(std::string_view entity, const char* place, const Position& position);
  /// Whether the current event is in an internal entity. Positions are then those of the reference.
  bool isInInternalEntity() const;
  /// Warns of each reference in a text to an entity that was not read.
  /// @param position  that of the text
  /// @param isWritten whether the text stands at that position, and did not come from an entity
  void warnOfLostReferences(std::string_view source, const char* place, Position position,
                            bool isWritten);
  /// Does this for the current start tag. Afterwards expat's position is the end of the tag.
  void warnOfLossesInTag();
  /// Does this for the default of an attribute that is being declared.
  void warnOfLossesInDefault();
  void markup(const XML_Char* text, int length);

  // Declarations that expat does not process: XML10UnprocessedDeclarations.cpp.
  /// Called where expat stops processing declarations of entities and attributes. From there on,
  /// those in the internal subset are reported from their text.
  void stopProcessing();
  void unprocessedMarkup(const XML_Char* text, int length);
  void reportUnprocessedEntity(DeclarationTokens& tokens);
  void reportUnprocessedAttributes(DeclarationTokens& tokens);
  void reportUnprocessedAttribute(const std::string& element, DeclarationTokens& tokens);
  /// Records the declaration of an entity, and returns whether it is the first.
  bool isFirstUnprocessed(const std::string& name);
  [[noreturn]] void failInUnprocessed(XML_Error error);

  bool parsing_ = false;  // A call of parse is on the stack.
  std::uint64_t maximumCoalescedOctets_ = 0;
  EventGate gate_{handlers, [this](const std::string& message) { fail(message); },
                  [this] { suspendOutsideOfEntities(); }};

  // While a document is open.
  std::unique_ptr<XML10Document> document_;
  OwnedParser parser_;
  std::unique_ptr<Locator> locator_;
};

}  // namespace Tavrin::text
