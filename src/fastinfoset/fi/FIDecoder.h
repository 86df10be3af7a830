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

namespace Tavrin {

/// What reader "FI" does in its own way.
class XMLReader_FI::Decoder final : public fastinfoset::Decoder {
 public:
  explicit Decoder(XMLReader_FI& reader);

  void decodeInitialVocabulary() override;
  void decodeStringTable(fastinfoset::Strings& table);
  void decodeIdentifierTable(fastinfoset::Strings& table);
  void decodeQualifiedNameTable(std::vector<QualifiedName>& table);
  QualifiedName& decodeQualifiedName(unsigned octet, std::vector<QualifiedName>& table);
  bool decodeElement(int octet);
  void decodeNamespaces(fastinfoset::Strings& declarations);
  bool decodeAttributes(EncodingAlgorithmAttributesImpl& attributes);
  QualifiedName getElementName(unsigned long index) const;
  QualifiedName getAttributeName(unsigned long index) const;

 private:
  using Name = fastinfoset::Name;
  using Names = fastinfoset::Names;
  using Strings = fastinfoset::Strings;

  [[noreturn]] void throwFailure(const std::string& message) const override;
  void clearTables() override;
  void decodeDocument() override;
  void decodeNameTable(Names& table);
  QualifiedName getName(unsigned long index, const Names& table, const char* message) const;
  void decodeOtherString(unsigned octet, std::string& text) override;
  void decodeOtherChunk(unsigned octet, std::string& text) override;
  std::string describeUnknown(const std::string& uri) const override;
  EncodedData& decodeWith(EncodingAlgorithm& algorithm, unsigned field,
                          unsigned long length) override;
  EncodedData& decodeLarge(EncodingAlgorithm& algorithm, unsigned field, unsigned long length);
  std::uint32_t decodeDeclarations() override;
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

  // Checks, which this dialect does without.
  void checkPadding(unsigned) const override {}
  void checkRootElement(bool) override {}
  void checkIdentifier(const Strings*, const std::string&) override {}
  void checkText(std::string_view) override {}
  void checkAmplification() const override {}
  void checkElementName(Name&) override {}
  void checkAttributeName(Name&) override {}
  // An encoded literal is not added to a table.
  void takeTyped(bool, Strings&, unsigned, EncodedData&) override {}

  std::deque<Strings> declarations_;  // Of the open elements that have some, the innermost last.
  // Memory of attribute lists that are gone: a list without records, and small records.
  std::vector<std::unique_ptr<EncodingAlgorithmAttributesImpl::Attribute>> spareList_;
  std::vector<std::unique_ptr<EncodingAlgorithmAttributesImpl::Attribute>> spareAttributes_;
};

}  // namespace Tavrin
