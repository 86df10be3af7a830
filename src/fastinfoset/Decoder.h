#pragma once

#include <Tavrin/EncodingAlgorithms.h>
#include <Tavrin/Handlers.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/Vocabulary.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <istream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../io/OctetInput.h"
#include "RestrictedAlphabet.h"
#include "SharedVocabulary.h"
#include "Vocabulary.h"
#include "format/Dialect.h"
#include "format/Integers.h"

namespace Tavrin::fastinfoset {

inline constexpr const char* kInvalidStringIndex = "Error when decoding string - invalid index";

/// Decodes documents: the part of the format that all readers of Fast Infoset share. It is
/// implemented by clause: Document.cpp, Vocabulary.cpp, Items.cpp, Elements.cpp, Names.cpp,
/// Strings.cpp and Primitives.cpp.
///
/// The decoder of a reader derives from this one. It checks what is decoded (the `check`
/// operations) and reports it to handlers (the `report` operations).
class Decoder {
 public:
  /// The handlers of a reader: its own pointers, because a handler may remove itself, or another,
  /// during any event.
  struct Handlers {
    ContentHandler* const& content;
    ErrorHandler* const& error;
    DTDHandler* const& dtd;
  };

  virtual ~Decoder() = default;
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  /// The properties that all readers of Fast Infoset have; see Properties.h.
  template <typename Access>
  bool accessProperty(Access access) {
    return access(properties::lexicalHandler, lexicalHandler_) ||
           access(properties::declarationHandler, declHandler_) ||
           access(properties::primitiveTypeContentHandler, primitiveTypeContentHandler_) ||
           access(properties::encodingAlgorithmContentHandler, encodingAlgorithmContentHandler_) ||
           access(properties::registeredEncodingAlgorithms, registeredEncodingAlgorithms_) ||
           access(properties::externalVocabularies, externalVocabularies_);
  }

  /// Decodes one document.
  void parse(std::istream& stream);
  /// Decodes what has arrived of a document with another block. What belongs to an octet that is
  /// missing is left for the next one.
  void parse(std::string_view block, bool isFinal);
  /// Decodes a document up to the end of its initial vocabulary.
  void parseVocabulary(std::istream& stream);
  /// How many octets of the last block come after the document.
  std::size_t unusedOctets() const { return unusedOctets_; }

  /// Makes a vocabulary known by a URI, also where the property has another one.
  void addExternalVocabulary(const std::string& uri, const OwnedVocabulary& vocabulary) {
    sharedVocabularies_[uri] = shared(vocabulary);
  }

  // --- Item by item (Pulled.cpp) ---
  // A document is decoded by calls of `pull` instead of `parse`. What a call reports stays where it
  // is until the next one: names, text, attributes and values.

  enum class Pulled : std::uint8_t { item, text, needsBlock, end };

  /// Begins a document. The stream must outlive its use.
  void beginPulling(std::istream& stream);
  /// Provides a block, which begins a document where none is open. It must stay where it is until
  /// `pull` has asked for another one.
  void supply(std::string_view block, bool isFinal);
  /// Decodes an item, or the end of an element, which may report nothing. Where it returns `text`,
  /// nothing was reported: it is characters.
  Pulled pull();
  std::string_view pulledText() const { return pulledText_; }
  /// Frees memory that a long text took.
  void forgetText();

  // --- Integers (Primitives.cpp) ---
  // Each is given the octet in which the integer begins and reads those that follow. Bits that do
  // not belong to the integer are ignored; a form that does not exist is refused.

  unsigned long decodeIndex(unsigned octet);             ///< Begins on the second bit.
  unsigned long decodeElementIndex(unsigned octet);      ///< Begins on the third bit.
  unsigned long decodeCharactersIndex(int octet);        ///< Begins on the fourth bit.
  unsigned long decodeIdentifierLength(unsigned octet);  ///< Begins on the second bit.
  unsigned long decodeStringLength(unsigned octet);      ///< Begins on the fifth bit.
  unsigned long decodeCharactersLength(unsigned octet);  ///< Begins on the seventh bit.
  unsigned long decodeNumberOfItems();                   ///< All octets of it.

  // --- Document (Document.cpp, Vocabulary.cpp) ---

  /// Reads the header up to its first wrong octet. Returns whether there was none.
  bool isFastInfosetDocument();
  void decodeAdditionalData();
  virtual void decodeInitialVocabulary();
  void decodeNotations();
  void decodeUnparsedEntities();
  void decodeCharacterEncodingScheme();
  void decodeStandalone() { reportStandalone(readOctet()); }
  void decodeVersion();

  // --- Items (Items.cpp, Elements.cpp). The octet that is given was read already. ---

  /// @return true when it ended with a double terminator, which ends the document too
  bool decodeDTD(unsigned octet);
  /// Decodes an element with all of its content.
  /// @return true when it ended with a double terminator that also ends what contains it
  bool decodeElement(unsigned octet);
  void decodeCharacters(unsigned octet);
  void decodeComment();
  void decodeProcessingInstruction();
  void decodeUnexpandedEntityReference(unsigned octet);

  /// The algorithm of a field, or null.
  /// @param uri receives the URI of an application-defined algorithm
  virtual EncodingAlgorithm* getEncodingAlgorithm(unsigned field, std::string& uri);

 protected:
  Decoder(const Dialect& dialect, const Handlers& handlers);

  /// An element whose end has not come yet. An octet of the document may begin one, so it is small.
  struct OpenElement {
    std::uint32_t position;      // Of its name in the table, or Name::kUnlisted.
    std::uint32_t declarations;  // How many namespace declarations it has.
  };

  /// What precedes the data of an algorithm or restricted alphabet.
  struct Field {
    unsigned number;
    unsigned long length;
  };

  // --- What the dialects do differently ---

  virtual void beginDocument();  ///< Forgets what belongs to the last document.
  virtual void decodeHeader() = 0;
  virtual void decodeOtherString(unsigned octet, std::string& text);  ///< Not in UTF-8.
  virtual void decodeOtherChunk(unsigned octet, std::string& text);   ///< Likewise.
  virtual EncodedData& decodeData(EncodingAlgorithm& algorithm, Field data) = 0;
  /// Decodes the namespace declarations of an element, and may report them.
  /// @param count how many there are; those before the step are counted already
  virtual void decodeDeclarations(std::uint32_t& count) = 0;
  /// Decodes the attributes of an element, if it has any, and reports its start.
  /// @return true when the end of the attributes is that of the element, too
  virtual bool finishStartTag(bool hasAttributes, const Name& name, std::uint32_t declarations) = 0;

  // --- Checks of a dialect; what the format itself forbids is refused where it is decoded ---

  [[noreturn]] virtual void throwFailure(const std::string& message) const = 0;
  virtual void checkPadding(unsigned bits) const = 0;  ///< Bits that the standard wants to be zero.
  virtual void checkRootElement(bool hasRoot) const = 0;
  virtual void checkEntry(unsigned table, std::string_view entry) = 0;
  virtual void checkText(std::string_view text) = 0;
  /// A text that may be longer than the octets from which an algorithm or alphabet made it.
  virtual void checkTextLength(std::uint64_t textOctets, std::uint64_t length) = 0;
  virtual void checkAmplification() const = 0;  ///< After strings were used from tables.
  virtual void checkElementName(Name& name) = 0;
  virtual void checkAttributeName(Name& name) = 0;
  /// A typed value of a table's kind, before it is reported.
  /// @param adds whether its text enters the table
  virtual void checkValue(bool adds, Strings& table, unsigned field, EncodedData& value) = 0;
  /// The text of a value that stands where nothing typed is reported.
  virtual std::string textOfValue(unsigned field, const EncodedData& value) = 0;
  virtual std::string describeUnknown(const std::string& uri) const = 0;
  virtual std::string describeUnknownVocabulary(const std::string& uri) const = 0;
  /// Reads what an unknown algorithm has made, of an attribute or of an entry, or refuses it.
  virtual RawData& decodeUnknown(Field data, const std::string& uri);
  /// Called with the URI of the external vocabulary.
  /// @param known null where it is unknown
  /// @return the one that is used
  virtual const ExternalVocabulary* chooseVocabulary(const std::string& uri,
                                                     const ExternalVocabulary* known);

  // --- Reports to handlers ---

  virtual void reportStartDocument() = 0;
  virtual void reportEndDocument() = 0;
  virtual void reportVersion(const std::string& version) = 0;
  virtual void reportStandalone(unsigned octet) = 0;
  virtual void reportUnused(const std::string& line) = 0;  ///< What SAX2 has no event for.
  virtual void reportNotation(const std::string& name, const std::string& publicId,
                              const std::string& systemId) = 0;
  virtual void reportUnparsedEntity(const std::string& name, const std::string& publicId,
                                    const std::string& systemId, const std::string& notation) = 0;
  virtual void reportStartDTD(const std::string& publicId, const std::string& systemId) = 0;
  virtual void reportEndDTD() = 0;
  virtual void reportEndElement(const Name& name, std::uint32_t declarations) = 0;
  virtual void reportCharacters(const std::string& text) = 0;
  virtual void reportValue(unsigned field, const std::string& uri, const EncodedData& value) = 0;
  virtual void reportOctets(bool adds, unsigned field, const std::string& uri,
                            const std::string& octets) = 0;
  /// Octets that an attribute has by their index.
  virtual std::unique_ptr<EncodedData> copyOfRaw(const RawOctets&) { return nullptr; }
  /// Octets that are reported by their index, in content.
  virtual void reportRaw(const RawOctets&) {}
  virtual void reportComment(const std::string& text) = 0;
  virtual void reportProcessingInstruction(const std::string& target, const std::string& data) = 0;
  virtual void reportEntityReference(const std::string& name, const std::string& publicId,
                                     const std::string& systemId) = 0;

  // --- Octets and integers (Primitives.cpp) ---

  /// The next octet, which must be there.
  unsigned readOctet() {
    const int octet = input_.next();
    if (octet == OctetInput::kEnd) failAtEnd();
    return static_cast<unsigned>(octet);
  }
  void readOctets(std::uint64_t length, std::string& octets);
  void readText(std::uint64_t length, std::string& text);
  template <const auto& Encoding>
  unsigned long decodeInteger(unsigned octet, const char* message);
  unsigned long withoutPadding(unsigned long index, const IntegerForm& longest,
                               std::uint32_t fieldBits) const;

  // --- Failures and limits (Decoder.cpp) ---

  [[noreturn]] void fail(const std::string& message) const;
  [[noreturn]] void failAtLimit(const std::string& message, const char* property) const;
  [[noreturn]] void failAtEnd() const;
  void checkLiteralLength(std::uint64_t length) const;
  /// To be called where something that cannot be undone comes before the octets of a literal.
  void expectLiteral(std::uint64_t length) const {
    checkLiteralLength(length);
    input_.expect(length);
  }
  void accountFor(std::uint64_t octets);

  // --- Steps (Decoder.cpp) ---
  // Blocks are decoded in steps. A step that lacks octets is undone as a whole. What it has done
  // before its last octet must therefore be known to undoStep, and what cannot be undone comes
  // after that octet.
  //
  // A step that lacks octets ends with an exception. Where blocks end most often, which is in text
  // and between steps, isCut_ is set instead, and everyone returns. Measured: an exception takes as
  // long as it takes to decode 400 octets.

  /// What the step has done stays.
  void endStep() {
    if (input_.blocks() != nullptr) keepStep();
  }
  /// Ends a step, and returns whether there is to be another one, and an octet for it.
  bool nextStep() {
    if (!isStepwise_) return true;
    if (isCut_) return false;
    endStep();
    if (!isHalted_ && !input_.blocks()->lacks(1)) return true;
    isCut_ = true;
    return false;
  }
  /// As nextStep, for an item that most often is no more than an octet, an index, or a length and a
  /// literal. Where these octets but the literal are at hand, the step is not kept now, but by
  /// isCutBefore if the literal is cut, and by keepItem if more comes than that. Measured: in large
  /// blocks, documents take a tenth less time.
  bool nextItem() {
    constexpr std::uint64_t kIndexOrLength = 16;  // Or more.
    if (!isStepwise_) return true;
    if (isCut_ || isHalted_) return nextStep();
    return input_.blocks()->hasInBlock(kIndexOrLength) || nextStep();
  }
  /// To be called after the octet that begins an item, and before anything else is decoded.
  void keepItem() {
    if (input_.blocks() != nullptr) keepStepBefore(1);
  }
  /// Whether an item lacks octets of its literal, which comes next.
  /// @param begin how many octets precede the item
  bool isCutBefore(std::uint64_t length, std::uint64_t begin) {
    if (input_.blocks() == nullptr) return false;
    checkLiteralLength(length);
    if (input_.blocks()->has(length)) return false;
    keepStepBefore(input_.count() - begin);
    isCut_ = input_.blocks()->lacks(length);
    return isCut_;
  }
  void keepStep() {
    input_.blocks()->endStep();
    keepCounts();
  }
  /// Keeps the state before so many octets, which have changed nothing.
  void keepStepBefore(std::uint64_t octets) {
    input_.blocks()->endStepBefore(octets);
    keepCounts();
  }
  void keepCounts() {
    stepTableOctets_ = tableOctets_;
    stepFromTables_ = fromTables_;
    stepEntryCount_ = 0;
  }
  void recordEntry(unsigned table) {
    if (input_.blocks() == nullptr) return;
    stepEntries_.resize(stepEntryCount_++);
    stepEntries_.push_back(static_cast<std::uint8_t>(table));
  }
  void undoStep();
  /// What parse does, after the call was found to be allowed.
  void decodeStream(std::istream& stream);
  void decodeNextBlock(std::string_view block, bool isFinal);
  /// Lets decoding end with the step that is under way, which stays.
  void halt() { isStepwise_ = isHalted_ = true; }
  /// Decodes on after that, from the same stream, or what is there of the same block.
  void continueDocument();
  /// Decodes what is there of a document that comes in blocks.
  void decodeBlock();
  /// Decodes the items of a list that begins with their number, a step each.
  /// @param most how many there may be in an initial vocabulary
  template <typename DecodeItem>
  void decodeItems(unsigned long most, DecodeItem decodeItem) {
    std::optional<unsigned long>& left = progress_.itemsLeft;
    if (!left) {
      left = decodeNumberOfItems();
      if (*left > most) failAtEntries(most);
      endStep();
    }
    while (*left > 0) {
      decodeItem();
      --*left;
      endStep();
    }
    left.reset();
  }
  [[noreturn]] void failAtEntries(unsigned long most) const;

  // --- Document and items ---

  void beginBlocks();
  void decodeDocument();
  void decodeComponentBits();
  void decodeBeginning();
  void endDocument();
  void decodeOptionalComponents();
  void decodeVocabularyComponents();
  void decodeChildren();
  bool decodeChild(unsigned octet);
  bool decodeDTDContent();
  Pulled pullFromBlock();
  Pulled pullItem();
  Pulled pullContent();
  Pulled pullText(unsigned octet);
  Pulled pullIndexedText(unsigned octet);
  Pulled pullDocument();
  void decodeIdentifiers(unsigned octet, std::string& systemId, std::string& publicId);
  void decodeLiteralChunk(unsigned octet, std::string& text);
  void decodeTypedChunk(unsigned octet);

  // --- Vocabulary ---

  Strings& strings(unsigned table) { return strings_[table]; }
  Names& names(unsigned table) { return names_[table - kStringTables]; }
  void useExternalVocabulary(const std::string& uri);
  void setExternalVocabulary(const ExternalVocabulary* vocabulary,
                             std::shared_ptr<const SharedVocabulary> shared = nullptr);
  void decodeEntries(Strings& table);
  void decodeEntries(Names& table);
  void decodeTypedEntry(unsigned octet, Strings& table);
  const std::string* addEntry(Strings& table, std::string_view entry);
  void addEntry(Strings& table, unsigned field, const std::string& uri, const std::string& octets);
  Name& appendName(Names& table);

  // --- Elements and names ---

  void beginElement(unsigned octet);
  void beginRootElement(unsigned octet);
  bool decodeContent(std::size_t outer);
  unsigned decodeContentItem(unsigned octet);
  const std::string* decodeIndexedChunk(unsigned octet);
  bool decodeStartTag();
  Name& decodeElementName(unsigned bits);
  void openElement(Name& name);
  void closeElement();
  /// @tparam List `begin(name, isListed)` gives the record of the next attribute, with its name and
  ///              without a value, and `end()` appends it to the list. Where kRefersToTables is
  ///              true, `refer` lets the value be that of a table.
  /// @return true when the list ended with a double terminator
  template <typename List>
  bool decodeAttributes(List& attributes);
  template <typename List>
  void decodeAttributeValue(List& attributes, const Name& name);
  void decodeDeclaration(unsigned octet, std::string& prefix, std::string& namespaceName);
  void decodeDeclaredPart(unsigned table, std::string& part);
  Name& decodeLiteralName(unsigned octet, Names& table);
  void decodeNameParts(unsigned octet, Name& name);
  const std::string& decodeNamePart(unsigned table, const char* message, std::string& unlisted);
  Name decodeNameSurrogate();
  const std::string& decodeSurrogatePart(unsigned table);
  Name& nameAt(unsigned long index, Names& table, const char* message);

  // --- Strings ---

  const std::string& stringAt(unsigned long index, Strings& table);
  /// A non-identifying string.
  /// @param table null where it cannot be an index and is not added to a table
  void decodeString(unsigned octet, Strings* table, std::string& text);
  void decodeString(unsigned table, std::string& text);
  void decodeLiteralText(unsigned octet, std::uint64_t length, Strings* table, std::string& text);
  const std::string& decodeListedText(std::uint64_t length, Strings& table, std::string& unlisted);
  /// An identifying string. A literal is added to the table.
  void decodeIdentifier(unsigned table, std::string& text);
  /// Likewise, where it is: in the table, or where that is full, in `unlisted`.
  const std::string& decodeEntry(unsigned table, std::string& unlisted);
  /// An identifying string that belongs to no table.
  void decodeIdentifier(std::string& text);
  void decodeLiteralIdentifier(unsigned octet, std::string& text);
  const std::string& decodeLiteralIdentifier(unsigned octet, Strings& table, std::string& unlisted);
  void decodeUTF16(std::uint64_t length, std::string& text);
  void decodeRestrictedAlphabet(Field field, std::string& text);
  std::string charactersOfAlphabet(unsigned number);
  void decodeAlgorithmText(Field field, std::string& text);
  Field decodeStringField(unsigned octet);
  Field decodeChunkField(unsigned octet);
  EncodingAlgorithm* findEncodingAlgorithm(unsigned field, std::string& uri);

  const Dialect& dialect_;

  ContentHandler* const& contentHandler_;
  ErrorHandler* const& errorHandler_;
  DTDHandler* const& dtdHandler_;
  DeclHandler* declHandler_ = nullptr;
  LexicalHandler* lexicalHandler_ = nullptr;
  PrimitiveTypeContentHandler* primitiveTypeContentHandler_ = nullptr;
  EncodingAlgorithmContentHandler* encodingAlgorithmContentHandler_ = nullptr;
  EncodingAlgorithmMap* registeredEncodingAlgorithms_ = nullptr;
  ExternalVocabularyMap* externalVocabularies_ = nullptr;
  std::map<std::string, std::shared_ptr<const SharedVocabulary>> sharedVocabularies_;  // By URI.

  std::uint64_t maximumLiteralOctets_ = UINT64_MAX;
  std::uint64_t maximumTableOctets_ = UINT64_MAX;
  std::uint64_t maximumDepth_ = UINT64_MAX;

  /// How far a document has been decoded.
  struct Progress {
    bool hasHeader = false;
    bool hasStarted = false;
    unsigned components = 0;                 // Those that are still to come.
    std::optional<unsigned> vocabulary;      // Of an initial vocabulary, likewise.
    std::optional<unsigned long> itemsLeft;  // Of the list that is being decoded.
    bool isInDTD = false;
    bool hasDTD = false;
    bool hasRoot = false;
    bool hasEnded = false;
  };

  /// A start tag that is being decoded.
  struct StartTag {
    enum Part : std::uint8_t { kNone, kDeclarations, kName, kAttributes };
    Part part = kNone;  // What comes next.
    unsigned octet = 0;
    std::uint32_t declarations = 0;
    Name* name = nullptr;
    Name* attribute = nullptr;  // Of which the value comes next.
  };

  bool parsing_ = false;     // A call of parse is on the stack.
  bool isFed_ = false;       // A document has begun that comes in blocks.
  bool isComplete_ = false;  // The last block completed a document.
  std::unique_ptr<Blocks> blocks_;
  std::size_t unusedOctets_ = 0;
  Progress progress_;
  StartTag tag_;
  bool isHalted_ = false;
  bool isStepwise_ = false;  // Decoding halts, or blocks are decoded: only then steps matter.
  // What the last step left, for undoStep, and the tables that the next one appended to.
  bool isCut_ = false;
  std::vector<std::uint8_t> stepEntries_;
  std::size_t stepEntryCount_ = 0;
  // What keepStep copies is not side by side: the compiler would copy both at once, and the
  // processor wait until both were written. Measured: attributes in blocks take a seventh longer.
  std::uint64_t stepFromTables_ = 0;
  std::uint64_t tableOctets_ = 0;
  OctetInput input_;
  std::uint64_t stepTableOctets_ = 0;
  std::uint64_t fromTables_ = 0;  // Octets of strings that were reported by their index.
  std::string octets_;            // Of a string in another encoding than UTF-8.
  std::string text_;              // Of a chunk; used again for each, as it keeps its memory.
  // Much is not held for long.
  static constexpr std::size_t kMostKeptText = std::size_t{64} * 1024;

  bool isPulled_ = false;
  bool hasOctets_ = false;  // The block may have octets that were not decoded.
  bool isAtEnd_ = false;    // The octet that ends the document has been read.
  std::string_view pulledText_;
  unsigned ends_ = 0;  // How many elements end, by an octet that was read.

  /// The name of an open element that is in none of the document's tables.
  struct UnlistedName {
    std::unique_ptr<Name> own;  // Where it is not an external entry.
    Name* name;
  };
  Name unlisted_;                          // A name that is in no table.
  std::vector<OpenElement> openElements_;  // Nesting is not limited by the call stack.
  // The names that handlers are given stay where they are, whatever a derived reader decodes
  // meanwhile.
  std::vector<UnlistedName> unlistedElements_;  // The innermost last.
  std::unique_ptr<Name> ended_;                 // That of the last end, for whoever pulls.

  template <typename Entries, unsigned First, unsigned... Tables>
  static std::array<Entries, sizeof...(Tables)> makeTables(
      std::integer_sequence<unsigned, Tables...>) {
    return {Entries(First + Tables)...};
  }
  std::shared_ptr<const SharedVocabulary> vocabulary_;  // To which the tables refer, or null.
  std::array<Strings, kStringTables> strings_ =
      makeTables<Strings, 0>(std::make_integer_sequence<unsigned, kStringTables>());  // By Table.
  std::array<Names, kTables - kStringTables> names_ = makeTables<Names, kStringTables>(
      std::make_integer_sequence<unsigned, kTables - kStringTables>());
  std::map<unsigned, RestrictedAlphabet> alphabets_;  // By field, as they were used.
  BuiltInAlgorithms builtIn_;
};

}  // namespace Tavrin::fastinfoset
