#pragma once

#include <Tavrin/XMLReader_X891.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <functional>
#include <istream>
#include <map>
#include <optional>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include "../../io/SingleOctets.h"
#include "../../typed/ExactNumbers.h"
#include "../../xml/NamespaceBindings.h"
#include "../../xml/UniqueAttributes.h"
#include "../Decoder.h"
#include "../../io/OctetStream.h"
#include "RestrictedAlphabet.h"
#include "StartTagAttributes.h"

namespace Tavrin {

/// A stream over the next octets of another one, for algorithms to decode from without a copy of
/// them all: none reads beyond its data.
class NextOctets {
 public:
  /// @param source outlives this
  NextOctets(std::streambuf& source, std::uint64_t count)
      : buffer_(source, count), stream_(&buffer_) {}

  std::istream& stream() { return stream_; }
  /// How many octets have been taken from the other stream.
  std::uint64_t taken() const { return buffer_.taken; }
  /// Throws what the source threw, if anything.
  void rethrow() const {
    if (buffer_.thrown) std::rethrow_exception(buffer_.thrown);
  }

 private:
  struct Buffer : std::streambuf {
    Buffer(std::streambuf& octets, std::uint64_t count) : source(octets), left(count) {}

    // What the source has at hand stays where it is until it is asked for more.
    int_type underflow() override {
      const GetArea atHand(source);
      if (const auto count = std::min<std::uint64_t>(left, atHand.size()); count > 0) {
        char* const octets = atHand.begin();
        atHand.take(count);
        return show(octets, count);
      }
      const auto wanted = std::min<std::uint64_t>(left, block.size());
      try {
        const auto got = source.sgetn(block.data(), static_cast<std::streamsize>(wanted));
        return show(block.data(), static_cast<std::uint64_t>(got));
      } catch (...) {
        thrown = std::current_exception();  // A stream would keep it to itself.
        throw;
      }
    }

    int_type show(char* octets, std::uint64_t count) {
      setg(octets, octets, octets + count);
      taken += count;
      left -= count;
      return count == 0 ? traits_type::eof() : traits_type::to_int_type(*octets);
    }

    std::streambuf& source;
    std::uint64_t left;
    std::uint64_t taken = 0;
    std::exception_ptr thrown;
    std::array<char, 512> block{};  // Sources without octets at hand are slow anyway.
  };

  Buffer buffer_;
  std::istream stream_;
};

/// What reader "X891" does beside decoding: it checks what a document says, bounds what it costs,
/// and knows the formats that "FI" does not.
class XMLReader_X891::Decoder final : public fastinfoset::Decoder {
 public:
  explicit Decoder(XMLReader_X891& reader);

  // --- As the reader has them ---

  bool setProperty(const std::string& name, void* value);
  bool getProperty(const std::string& name, void*& value);
  bool isStandalone() const { return document_.standalone.value_or(false); }
  EncodingAlgorithm* findAlgorithm(unsigned field, std::string& uri);

 private:
  using Name = fastinfoset::Name;
  using Names = fastinfoset::Names;
  using NameParts = fastinfoset::NameParts;
  using Strings = fastinfoset::Strings;

  [[noreturn]] void throwFailure(const std::string& message) const override;
  void clearTables() override;
  void decodeDocument() override;
  void decodeInitialVocabulary() override;
  void checkPadding(unsigned bits) const override;
  void checkRootElement(bool elementSeen) override;

  void checkIdentifier(const Strings* table, const std::string& text) override;
  void checkText(std::string_view text) override;
  void checkAmplification() const override;
  void decodeOtherString(unsigned octet, std::string& text) override;
  void decodeOtherChunk(unsigned octet, std::string& text) override;
  EncodingAlgorithm* getEncodingAlgorithm(unsigned field, std::string& uri) override;
  std::string describeUnknown(const std::string& uri) const override;
  EncodedData& decodeWith(EncodingAlgorithm& algorithm, unsigned field,
                          unsigned long length) override;
  void takeTyped(bool addToTable, Strings& table, unsigned field, EncodedData& value) override;
  std::uint32_t decodeDeclarations() override;
  void checkElementName(Name& name) override;
  void checkAttributeName(Name& name) override;
  bool decodeStartTag(bool hasAttributes, const Name& name, std::uint32_t declarations) override;

  void reportVersion(const std::string& version) override;
  void reportStandalone(unsigned octet) override;
  void reportUnused(const std::string& line) override;
  void reportNotation(const std::string& name, const std::string& publicId,
                      const std::string& systemId) override;
  void reportUnparsedEntity(const std::string& name, const std::string& publicId,
                            const std::string& systemId, const std::string& notationName) override;
  void reportStartDTD(const std::string& publicId, const std::string& systemId) override;
  void reportEndDTD() override;
  void reportEndElement(const Name& name, std::uint32_t declarations) override;
  void reportCharacters(const std::string& text) override;
  void reportValue(unsigned field, const std::string& uri, const EncodedData& value) override;
  void reportOctets(bool addToTable, unsigned field, const std::string& uri,
                    const std::string& octets) override;
  void reportComment(const std::string& text) override;
  void reportProcessingInstruction(const std::string& target, const std::string& data) override;
  void reportEntityReference(const std::string& name, const std::string& publicId,
                             const std::string& systemId) override;

  void decodeHeader();
  void decodeXMLDeclaration();
  unsigned long decodeListLength(unsigned long most);
  void decodeIdentifierEntries(Strings& table);
  void decodeStringEntries(Strings& table);
  void decodeSurrogateEntries(Names& table);
  unsigned long decodeSurrogateIndex();

  EncodedData& decodeFrom(std::istream& stream, EncodingAlgorithm& algorithm, unsigned long length);
  EncodedData& decodeWhole(EncodingAlgorithm& algorithm, unsigned long length);
  EncodedData& decodeItems(EncodingAlgorithm& algorithm, unsigned long length);
  void checkTextLength(std::uint64_t textOctets, std::uint64_t length);
  void checkTextOf(unsigned field, const EncodedData& value);
  void checkAlgorithmField(unsigned field) const;
  void declareEntity(const std::string& name, const std::string& publicId,
                     const std::string& systemId);
  void decodeUTF16(unsigned long length, std::string& text);
  void decodeRestrictedAlphabet(Field field, std::string& text);
  void decodeAlgorithmText(Field field, std::string& text);

  void checkExternalId(const std::string& publicId, const std::string& systemId) const;
  void failIf(const std::string& reason) const;
  void allowMoreFromTables() const;
  static std::size_t deliveredOctetsOf(const Name& name);
  SAXParseException exceptionHere(const std::string& message) const;
  void releaseProlog(const std::string& rootName);

  XMLReader_X891& reader_;

  // --- Limits ---

  static constexpr double kAmplificationFactor = 1000;
  static constexpr std::uint64_t kAmplificationThreshold = std::uint64_t{8} << 20;
  static constexpr std::uint64_t kMaximumTableOctets = fastinfoset::kReadersTableOctets;
  static constexpr std::uint64_t kMaximumLiteralOctets = std::uint64_t{1} << 30;

  double amplificationFactor_ = kAmplificationFactor;
  std::uint64_t amplificationThreshold_ = kAmplificationThreshold;

  // Used again for each start tag.
  StartTagAttributes attributes_;
  std::pair<std::string, std::string> declaration_;  // Prefix and namespace name.

  // --- Typed content ---

  UUIDEncodingAlgorithm uuid_;
  ExactShortData shorts_;
  ExactIntData ints_;
  ExactLongData longs_;
  ExactFloatData floats_;
  ExactDoubleData doubles_;
  std::string octets_;                      // Of the value that is being decoded.
  std::optional<OctetStream> octetStream_;  // Made when it is needed: that takes long.

  // --- The document; what follows is new for each ---

  /// An event that waits for the root element, whose qualified name it is called with.
  using HeldBack = std::function<void(const std::string& rootName)>;

  struct Document {
    std::string version = "1.0";
    std::optional<bool> standalone;

    std::vector<HeldBack> prolog;
    std::vector<HeldBack> declarations;  // Notations and unparsed entities.
    bool hasDocumentType = false;
    bool isHoldingBack = false;

    std::map<unsigned, RestrictedAlphabet> alphabets;  // By field, when first used.

    mutable std::uint64_t allowedFromTables =
        0;  // Octets, for what had been read by the last look.

    xml::NamespaceBindings bindings;
    xml::UniqueAttributes attributes;
    std::uint64_t tagOctets = 0;  // What the attributes count for while their tag is read.

    /// The identifiers of entities that were referred to: public and system identifier by name.
    std::map<std::string, std::pair<std::string, std::string>> entities;
  };
  Document document_;
  bool isUsed_ = false;  // The document is one that was read.
};

/// Only what comes from a table by its index can be delivered far more often than it was read; and
/// what an application's algorithm makes counts alike.
inline void XMLReader_X891::Decoder::checkAmplification() const {
  if (fromTables_ > document_.allowedFromTables) allowMoreFromTables();
}

}  // namespace Tavrin
