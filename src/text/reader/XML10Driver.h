#pragma once

#include <Tavrin/XMLReader_XML10.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "AttributeTypes.h"
#include "Callbacks.h"
#include "GeneralEntities.h"
#include "Parser.h"
#include "PassedDeclarations.h"
#include "XML10Event.h"
#include "XML10Position.h"

namespace Tavrin {

/// What an application sets and asks. All of it outlives the document.
struct XML10Settings {
  struct Features {
    bool namespaces = true;
    bool namespacePrefixes = false;
    bool externalGeneralEntities = true;
    bool externalParameterEntities = true;
    bool xmlnsURIs = false;
  };

  static constexpr double kAmplificationFactor = 100;
  static constexpr std::uint64_t kAmplificationThreshold = std::uint64_t{8} * 1024 * 1024;
  static constexpr std::uint64_t kMaximumDepth = UINT64_MAX;

  /// The switch of a feature, or null.
  bool* find(const std::string& name);

  Features features;
  std::optional<std::string> baseURI;
  double amplificationFactor = kAmplificationFactor;
  std::uint64_t amplificationThreshold = kAmplificationThreshold;
  std::uint64_t maximumDepth = kMaximumDepth;

  DeclHandler* declHandler = nullptr;        ///< Not owned.
  LexicalHandler* lexicalHandler = nullptr;  ///< Not owned.

  // Of the last document that has begun.
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

/// What belongs to the open document.
struct XML10Document {
  /// An external entity that is being read, or the document itself.
  struct OpenEntity {
    XML_Parser parser;
    const DeclaredEntity* entity;
    std::string encoding = {};  ///< As it is declared.
  };

  XML10Document(XML_Parser parser, const XML10Settings& settings)
      : features(settings.features),
        amplificationFactor(settings.amplificationFactor),
        amplificationThreshold(settings.amplificationThreshold),
        maximumDepth(settings.maximumDepth),
        self{{}, {}, settings.baseURI.value_or(std::string())},
        open{{parser, &self}} {}

  const OpenEntity& current() const { return open.back(); }
  /// There are declarations that may not be read, or not by every reader: an entity need not be
  /// declared, unless the document states that it is standalone.
  void lackDeclarations() { mayLackDeclarations = !standalone.value_or(false); }
  std::string resolve(const XML_Char* systemId) const;
  /// Take note of the encoding of an entity, by its declared name or its first octets.
  void noteEncoding(const XML_Char* name);
  void noteStart(std::string_view octets);

  /// How many octets have been read, of all entities.
  std::uint64_t octetsRead() const;

  const XML10Settings::Features features;
  const double amplificationFactor;
  const std::uint64_t amplificationThreshold;
  const std::uint64_t maximumDepth;
  /// The first octets of a document of blocks, while it is open what its encoding is.
  std::optional<std::string> start = std::string();
  const DeclaredEntity self;
  std::vector<OpenEntity> open;

  /// The external entities that are declared. What expat calls the base of an entity is its number
  /// here: expat hands on with a reference what was set when the entity was declared. The external
  /// subset is number 0 and has no base.
  std::deque<DeclaredEntity> entities{1};

  // What the XML declaration states.
  std::string version = "1.0";
  std::optional<bool> standalone;

  /// An entity is in an encoding in which expat takes too much for letters.
  bool checksNames = false;

  XML10Event event;
  std::uint64_t depth = 0;  ///< Elements that are open.
  AttributeTypes attributeTypes;
  bool hasDefaults = false;             ///< An attribute has one.
  bool hasDeclarationDefaults = false;  ///< One that declares a namespace has one.
  std::uint64_t defaultOctets = 0;      ///< How many have been reported because of defaults.
  std::uint64_t entityOctets = 0;       ///< Of external entities that have been read.
  GeneralEntities generalEntities;
  bool mayLackDeclarations = false;
  /// Texts of internal parameter entities that have references to general ones.
  std::vector<std::string> parameterTexts;
  /// While declarations are not processed.
  std::optional<PassedDeclarations> passed;
  /// The current event as the document has it, while it is looked at.
  std::string markup;
  /// The namespace declarations of the start tag that follows, while they are to be attributes.
  std::vector<std::pair<std::string, std::string>> declarations;
  /// What the parse failed for.
  std::exception_ptr failure;
  /// What an encoding is refused for, to follow expat's message.
  std::string encodingProblem;
};

/// Leads a reader through its documents.
class XMLReader_XML10::Driver final : public EventTarget {
 public:
  /// @param settings what is set and asked from outside
  Driver(const HandlerPointers& pointers, XML10Settings& settings);
  ~Driver() override;

  void parse(std::istream& stream);
  void parse(const void* data, unsigned long size, bool isFinal);

 private:
  class Locator_XML10;
  class EntityScope;
  struct Callbacks;

  /// @param parse the work of a call of parse
  template <typename Parse>
  void guardParse(Parse parse);
  void setupParser();
  /// Sets the encoding where the start of an entity has a name for it that expat does not know.
  static void chooseEncoding(XML_Parser parser, std::string_view start);
  /// Keeps the start of a document of blocks back until its encoding is known.
  XML_Status parseFirstBlocks(const char* block, unsigned long size, bool isFinal);
  /// Gives a block of any size to the parser.
  XML_Status parseBlock(const char* block, unsigned long size, bool isFinal);
  void endDocument();
  /// Ends the document with what stopped the parse.
  [[noreturn]] void reportError();
  /// Refuses a name, or a text with names and no other letters, for what expat lets in wrongly.
  void requireName(std::string_view name, const XML10Position& position);
  void requireName(std::string_view name);
  void requireNames(const XML_Char* element, const XML_Char** attributes);
  /// Refuses a name of an element or attribute that is no qualified name.
  void requireQName(const char* name);
  /// Where the current entity stands.
  XML10Position positionHere() const;
  /// A failure, or a warning, in the current entity.
  SAXParseException exceptionAt(const std::string& message, const XML10Position& position) const;
  SAXParseException exceptionHere(const std::string& message) const {
    return exceptionAt(message, positionHere());
  }
  /// Ends the document with a failure in the current entity.
  [[noreturn]] void failAt(const std::string& message, const XML10Position& position);
  [[noreturn]] void fail(const std::string& message) { failAt(message, positionHere()); }
  /// Ends the document with expat's failure in the current entity.
  [[noreturn]] void failAsParser();
  /// Frees what belongs to the open document.
  void releaseParser();

  void reportStart(ContentHandler& handler, const XML_Char* name, const XML_Char** attributes);
  /// Counts what defaults have added to the document.
  void addDefaults(std::uint64_t octets);

  /// Warns of something in the document that no event tells.
  void warnOfLoss(const std::string& message, const XML10Position& position);
  /// Whether the current event stands in an internal entity. Positions are then those of the
  /// reference.
  bool isInInternalEntity() const;
  /// Warns of each reference in a text for which there is no text.
  /// @param place     what the text is, for the message
  /// @param position  where it begins
  /// @param isWritten whether the text stands there as it is
  void warnOfLostReferences(std::string_view source, const char* place, XML10Position position,
                            bool isWritten);
  /// Does so for the current start tag. It moves the place of the event to the end of the tag.
  void warnOfLossesInTag();
  /// Does so for the default of an attribute that is being declared.
  void warnOfLossesInDefault();
  /// What a warning of a lost reference says.
  static std::string lostReference(std::string_view entity, const char* place);

  /// From now on, expat processes no more declarations of entities and attributes. Those in the
  /// internal subset are reported from their text.
  void passOverDeclarations();
  void takePassedMarkup(std::string_view piece);
  void reportPassedEntity(DeclarationTokens tokens);
  void reportPassedAttributes(DeclarationTokens tokens);
  /// Whether a declaration of an entity is the first, and notes it.
  bool isFirstPassed(const std::string& name);
  void warnOfReferencesInPassed(std::string_view literal);
  [[noreturn]] void failInPassed(XML_Error error);

  bool makeReady() override;
  void handlerThrew() override;

  /// The entity that the next external declaration of a parser declares.
  void numberNextEntity(XML_Parser parser);
  void readEntity(const DeclaredEntity& entity, const char* context);

  XML10Settings& settings_;
  bool parsing_ = false;  // A call of parse is on the stack.

  // While a document is open.
  std::unique_ptr<XML10Document> document_;
  OwnedParser parser_;
  std::unique_ptr<Locator> locator_;
};

/// What the reader consists of.
struct XMLReader_XML10::State {
  explicit State(XMLReader_XML10& reader);

  XML10Settings settings;
  Driver driver;
};

/// expat's callbacks in which this reader has its own way.
struct XMLReader_XML10::Driver::Callbacks : Tavrin::Callbacks {
  static void install(XML_Parser parser, Driver& driver);

  static Driver& from(void* userData) {
    return static_cast<Driver&>(Tavrin::Callbacks::from(userData));
  }

  // Elements and content: XML10Content.cpp.
  static void startElementHandler(void* userData, const XML_Char* name,
                                  const XML_Char** attributes);
  static void endElementHandler(void* userData, const XML_Char* name);
  static void startNamespaceHandler(void* userData, const XML_Char* prefix, const XML_Char* uri);
  static void endNamespaceHandler(void* userData, const XML_Char* prefix);
  static void skippedEntityHandler(void* userData, const XML_Char* name, int isParameterEntity);
  // Names: XML10Names.cpp.
  static void processingInstructionHandler(void* userData, const XML_Char* target,
                                           const XML_Char* data);

  // Declarations: XML10Declarations.cpp.
  static void xmlDeclHandler(void* userData, const XML_Char* version, const XML_Char* encoding,
                             int standalone);
  static void startDoctypeDeclHandler(void* userData, const XML_Char* name,
                                      const XML_Char* systemId, const XML_Char* publicId,
                                      int hasInternalSubset);
  static void notationDeclHandler(void* userData, const XML_Char* name, const XML_Char* base,
                                  const XML_Char* systemId, const XML_Char* publicId);
  static void entityDeclHandler(void* userData, const XML_Char* name, int isParameterEntity,
                                const XML_Char* value, int valueLength, const XML_Char* base,
                                const XML_Char* systemId, const XML_Char* publicId,
                                const XML_Char* notationName);
  static void elementDeclHandler(void* userData, const XML_Char* name, XML_Content* model);
  static void attlistDeclHandler(void* userData, const XML_Char* elementName,
                                 const XML_Char* attributeName, const XML_Char* type,
                                 const XML_Char* defaultValue, int isRequired);

  // Declarations that are not processed: XML10PassedDeclarations.cpp.
  static void endDoctypeDeclHandler(void* userData);
  static void passedMarkupHandler(void* userData, const XML_Char* text, int length);

  // Lost references: XML10Losses.cpp.
  static void markupHandler(void* userData, const XML_Char* text, int length);

  // External entities and encodings: XML10Entities.cpp.
  static int externalEntityRefHandler(XML_Parser argument, const XML_Char* context,
                                      const XML_Char* base, const XML_Char* systemId,
                                      const XML_Char* publicId);
  static int unknownEncodingHandler(void* data, const XML_Char* name, XML_Encoding* encoding);
};

}  // namespace Tavrin
