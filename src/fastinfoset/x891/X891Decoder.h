#pragma once

#include <Tavrin/XMLReader_X891.h>

#include <cstdint>
#include <functional>
#include <istream>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../../io/OctetStream.h"
#include "../../sax/EventGate.h"
#include "../../sax/HandlerPlaces.h"
#include "../../sax/Properties.h"
#include "../../typed/ExactNumbers.h"
#include "../../xml/NamespaceBindings.h"
#include "../../xml/UniqueAttributes.h"
#include "../Decoder.h"
#include "StartTagAttributes.h"

namespace Tavrin::fastinfoset {

/// What reader "X891" does beside decoding: it checks what a document says, bounds what it costs,
/// and knows the formats that "FI" does not.
class X891Decoder : public Decoder {
 public:
  using Limits = XMLReader_X891::Limits;

  explicit X891Decoder(const Handlers& handlers);

  void parse(std::istream& stream);
  void parse(std::string_view block, bool isFinal);
  void stop();
  void pause();
  void resume();
  bool isStopped() const { return gate_.isStopped(); }
  bool isPaused() const { return gate_.isPaused(); }

  // --- As the reader has them ---

  template <typename Access>
  bool accessProperty(Access access) {
    constexpr Limits kStandard;
    return access(properties::amplificationFactor, amplificationFactor_,
                  kStandard.amplificationFactor) ||
           access(properties::amplificationThreshold, amplificationThreshold_,
                  kStandard.amplificationThreshold) ||
           access(properties::maximumTableOctets, maximumTableOctets_,
                  kStandard.maximumTableOctets) ||
           access(properties::maximumLiteralOctets, maximumLiteralOctets_,
                  kStandard.maximumLiteralOctets) ||
           access(properties::maximumDepth, maximumDepth_, kStandard.maximumDepth) ||
           access(properties::maximumCoalescedOctets, maximumCoalescedOctets_,
                  kStandard.maximumCoalescedOctets) ||
           access(properties::rawOctets, reportsRaw_, false) ||
           access(properties::externalVocabulary, ReadOnly{document_.externalVocabulary}) ||
           access(properties::encodingAlgorithmURIs, ReadOnly{document_.algorithmURIs}) ||
           access(properties::documentXMLVersion, ReadOnly{document_.version}) ||
           access(properties::standalone, ReadOnly{document_.standalone}) ||
           Decoder::accessProperty(access);
  }
  void setLimits(const Limits& limits);
  Limits limits() const;
  /// What strings from tables may amount to is computed anew, with the limits as they are then.
  void forgetAllowance() { document_.allowedFromTables = 0; }
  bool coalescesCharacters() const { return coalescesCharacters_; }
  void setCoalescesCharacters(bool coalesces) { coalescesCharacters_ = coalesces; }
  void setRawOctets(bool value) { reportsRaw_ = value; }
  bool rawOctets() const { return reportsRaw_; }
  /// Forgets the attributes that were reported.
  void forgetStartTag();
  /// The text of a typed value that was reported as such.
  std::string textOfReported(unsigned field, const EncodedData& value);
  bool isStandalone() const { return document_.standalone.value_or(false); }
  EncodingAlgorithm* findAlgorithm(unsigned field, std::string& uri);

 private:
  template <typename Read>
  void guardDocument(Read read);
  void checkNotPaused(const char* operation) const;
  void checkNotPulled() const;
  [[noreturn]] void throwFailure(const std::string& message) const override;
  void beginDocument() override;
  void decodeHeader() override;
  void reportStartDocument() override;
  void reportEndDocument() override;
  void checkPadding(unsigned bits) const override;
  void checkRootElement(bool hasRoot) const override;

  void checkEntry(unsigned table, std::string_view entry) override;
  void checkText(std::string_view text) override;
  void checkTextLength(std::uint64_t textOctets, std::uint64_t length) override;
  void checkAmplification() const override;
  std::string describeUnknown(const std::string& uri) const override;
  std::string describeUnknownVocabulary(const std::string& uri) const override;
  EncodedData& decodeData(EncodingAlgorithm& algorithm, Field data) override;
  RawData& decodeUnknown(Field data, const std::string& uri) override;
  const ExternalVocabulary* chooseVocabulary(const std::string& uri,
                                             const ExternalVocabulary* known) override;
  void checkValue(bool adds, Strings& table, unsigned field, EncodedData& value) override;
  std::string textOfValue(unsigned field, const EncodedData& value) override;
  void decodeDeclarations(std::uint32_t& count) override;
  void checkElementName(Name& name) override;
  void checkAttributeName(Name& name) override;
  bool finishStartTag(bool hasAttributes, const Name& name, std::uint32_t declarations) override;

  void reportVersion(const std::string& version) override;
  void reportStandalone(unsigned octet) override;
  void reportUnused(const std::string& line) override;
  void reportNotation(const std::string& name, const std::string& publicId,
                      const std::string& systemId) override;
  void reportUnparsedEntity(const std::string& name, const std::string& publicId,
                            const std::string& systemId, const std::string& notation) override;
  void reportStartDTD(const std::string& publicId, const std::string& systemId) override;
  void reportEndDTD() override;
  void reportEndElement(const Name& name, std::uint32_t declarations) override;
  void reportCharacters(const std::string& text) override;
  void reportValue(unsigned field, const std::string& uri, const EncodedData& value) override;
  void reportOctets(bool adds, unsigned field, const std::string& uri,
                    const std::string& octets) override;
  std::unique_ptr<EncodedData> copyOfRaw(const RawOctets& entry) override;
  void reportRaw(const RawOctets& entry) override;
  void reportComment(const std::string& text) override;
  void reportProcessingInstruction(const std::string& target, const std::string& data) override;
  void reportEntityReference(const std::string& name, const std::string& publicId,
                             const std::string& systemId) override;

  void decodeXMLDeclaration();
  std::int32_t columnHere() const;

  EncodedData& decodeFrom(std::istream& stream, EncodingAlgorithm& algorithm, unsigned long length);
  EncodedData& decodeWhole(EncodingAlgorithm& algorithm, unsigned long length);
  EncodedData& decodeItems(EncodingAlgorithm& algorithm, unsigned long length);
  void checkTextOf(unsigned field, const EncodedData& value);
  void checkAlgorithmField(unsigned field);
  void collectAlgorithmURIs();
  void deliverRaw(unsigned field, const std::string& uri, const std::string& octets);
  void declareEntity(const std::string& name, const std::string& publicId,
                     const std::string& systemId);

  void checkExternalId(const std::string& publicId, const std::string& systemId) const;
  void failIf(const std::string& reason) const;
  void allowMoreFromTables() const;
  static std::size_t reportedOctetsOf(const Name& name);
  SAXParseException exceptionHere(const std::string& message) const;
  void releaseProlog(const std::string& rootName);

  /// Counts octets as columns, as failures do.
  class Position : public OctetLocator {
   public:
    explicit Position(const X891Decoder& decoder) : decoder_(decoder) {}

    std::string getPublicId() const override { return {}; }
    std::string getSystemId() const override { return {}; }
    std::int32_t getLineNumber() const override { return kNoLine; }
    std::int32_t getColumnNumber() const override { return decoder_.columnHere(); }
    std::uint64_t getOctetOffset() const override { return decoder_.input_.count(); }

   private:
    const X891Decoder& decoder_;
  };

  static constexpr std::int32_t kNoLine = -1;
  const Position position_{*this};

  HandlerPlaces handlers_ = {contentHandler_,
                             errorHandler_,
                             dtdHandler_,
                             declHandler_,
                             lexicalHandler_,
                             primitiveTypeContentHandler_,
                             encodingAlgorithmContentHandler_};
  // Operations that find a failure change nothing else.
  mutable EventGate gate_{handlers_, [this](const std::string& message) { fail(message); }};
  bool coalescesCharacters_ = false;

  // --- Limits ---

  // What an event counts for that waits for the root element, and an attribute while its start tag
  // is read.
  static constexpr std::uint64_t kHeldBackOctets = 512;
  static constexpr std::uint64_t kAttributeOctets = 256;

  double amplificationFactor_ = Limits().amplificationFactor;
  std::uint64_t amplificationThreshold_ = Limits().amplificationThreshold;
  std::uint64_t maximumCoalescedOctets_ = Limits().maximumCoalescedOctets;

  // Used again for each start tag.
  StartTagAttributes attributes_;
  std::pair<std::string, std::string> declaration_;  // Prefix and namespace name.

  // --- Typed content ---

  bool reportsRaw_ = false;
  UUIDEncodingAlgorithm uuid_;
  ExactShortData shorts_;
  ExactIntData ints_;
  ExactLongData longs_;
  ExactFloatData floats_;
  ExactDoubleData doubles_;
  RawData raw_;
  std::string rawURI_;
  std::optional<OctetStream> octetStream_;  // Made when it is needed: that takes long.

  // --- The document; what follows is new for each ---

  /// An event that waits for the root element, whose qualified name it is called with.
  using HeldBack = std::function<void(const std::string& rootName)>;

  struct Document {
    std::string version = "1.0";
    std::optional<bool> standalone;
    std::optional<std::string> externalVocabulary;
    bool isVocabularyUnknown = false;
    std::vector<std::string> algorithmURIs;

    std::vector<HeldBack> prolog;
    std::vector<HeldBack> declarations;  // Notations and unparsed entities.
    bool hasDocumentType = false;
    bool isHoldingBack = false;

    mutable std::uint64_t allowedFromTables =
        0;  // Octets, for what had been read by the last look.

    xml::NamespaceBindings bindings;
    xml::UniqueAttributes attributes;
    bool isOneCompared = false;   // Of the tag: an attribute whose name has no number.
    std::uint64_t tagOctets = 0;  // What the attributes count for while their tag is read.

    /// The identifiers of entities that were referred to: public and system identifier by name.
    std::map<std::string, std::pair<std::string, std::string>> entities;

    void renew();  ///< Makes it a new document, which uses some memory again.
  };
  Document document_;
  bool isUsed_ = false;  // The document is one that was read.
};

/// Only what comes from a table by its index can be reported far more often than it was read. What
/// an application's algorithm makes of its data counts as well.
inline void X891Decoder::checkAmplification() const {
  if (fromTables_ > document_.allowedFromTables) allowMoreFromTables();
}

}  // namespace Tavrin::fastinfoset
