#pragma once

#include <Tavrin/EncodingAlgorithmAttributes.h>
#include <Tavrin/XMLReader_FI.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "../Decoder.h"

namespace Tavrin::fastinfoset {

/// What reader "FI" does in its own way.
class FIDecoder : public Decoder {
 public:
  using QualifiedName = XMLReader_FI::QualifiedName;

  explicit FIDecoder(const Handlers& handlers);

  void parse(std::istream& stream);

  // --- The operations of derived readers, with tables of their own ---

  using Table = std::vector<std::string>;
  using NameTable = std::vector<QualifiedName>;

  std::string getString(unsigned long index, const Table* table, const StringTable* external) const;
  void decodeString(unsigned octet, Table* table, const StringTable* external, std::string& text);
  void decodeString(Table* table, const StringTable* external, std::string& text);
  void decodeIdentifier(Table* table, std::string& text);
  void decodeStringTable(Table& table);
  void decodeIdentifierTable(Table& table);
  void decodeQualifiedNameTable(NameTable& table);
  QualifiedName& decodeQualifiedName(unsigned octet, NameTable& table);
  bool decodeElement(unsigned octet);
  void decodeNamespaces(std::vector<std::string>& declarations);
  bool decodeAttributes(EncodingAlgorithmAttributesImpl& attributes);
  QualifiedName getElementName(unsigned long index);
  QualifiedName getAttributeName(unsigned long index);
  void decodeAdditionalData();
  void decodeInitialVocabulary() override;

 private:
  [[noreturn]] void throwFailure(const std::string& message) const override;
  void beginDocument() override;
  void decodeHeader() override;
  void decodeNameTable(Names& table);
  void decodeStringEntries(Strings& table);
  void decodeIdentifierEntries(Strings& table);
  void decodeQualifiedName(unsigned octet, QualifiedName& name);
  void decodeOtherString(unsigned octet, std::string& text) override;
  void decodeOtherChunk(unsigned octet, std::string& text) override;
  std::string describeUnknown(const std::string& uri) const override;
  std::string describeUnknownVocabulary(const std::string& uri) const override;
  EncodedData& decodeData(EncodingAlgorithm& algorithm, Field data) override;
  EncodedData& decodeLarge(EncodingAlgorithm& algorithm, Field data);
  void decodeDeclarations(std::uint32_t& count) override;
  bool finishStartTag(bool hasAttributes, const Name& name, std::uint32_t declarations) override;

  void reportStartDocument() override;
  void reportEndDocument() override;
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
  void reportComment(const std::string& text) override;
  void reportProcessingInstruction(const std::string& target, const std::string& data) override;
  void reportEntityReference(const std::string& name, const std::string& publicId,
                             const std::string& systemId) override;

  // Checks, which this dialect does without.
  void checkPadding(unsigned) const override {}
  void checkRootElement(bool) const override {}
  void checkEntry(unsigned, std::string_view) override {}
  void checkText(std::string_view) override {}
  void checkTextLength(std::uint64_t, std::uint64_t) override {}
  void checkAmplification() const override {}
  void checkElementName(Name&) override {}
  void checkAttributeName(Name&) override {}
  // An encoded literal is not added to a table.
  void checkValue(bool, Strings&, unsigned, EncodedData&) override {}
  std::string textOfValue(unsigned, const EncodedData&) override { return {}; }  // Never asked for.

  /// Prefix, namespace name, prefix, ... of the open elements that declare some, the innermost
  /// last.
  std::deque<std::vector<std::string>> declarations_;
  // Memory of attribute lists that are gone: a list without records, and small records.
  std::vector<std::unique_ptr<EncodingAlgorithmAttributesImpl::Attribute>> spareList_;
  std::vector<std::unique_ptr<EncodingAlgorithmAttributesImpl::Attribute>> spareAttributes_;
};

}  // namespace Tavrin::fastinfoset
