/// @file
/// A filter that turns text into typed content, and the rules that tell which.
#pragma once

#include <Tavrin/Export.h>
#include <Tavrin/XMLFilter.h>

#include <cstdint>
#include <istream>
#include <memory>
#include <string>
#include <vector>

namespace Tavrin {

/// Tells of which elements and attributes the text is typed, and as what. Of the rules that match,
/// the first one counts.
///
/// @code
/// TypingRules rules;
/// rules.add("Coordinate/@point", "float");
/// rules.add("/model/{urn:example:data}image", "base64");
/// rules.add("*", "auto");
/// @endcode
///
/// A path consists of the names of elements, separated by slashes, of which the last one is the
/// element with the text; or of an attribute behind `@`, alone or after its element. It matches at
/// the end of where something stands; a path that begins with a slash, from the root element on.
/// A name is one of these:
/// - `name`: the local name, whatever the namespace;
/// - `{uri}name`: in this namespace, or in none with `{}`;
/// - `p:name`: as written in the document, with that prefix;
/// - `*` or `{uri}*`: any, or any in this namespace.
///
/// Types are `short`, `int`, `long`, `float`, `double`, `boolean`, `uuid` (not for the writer
/// "FI"), `base64`, `hexadecimal`, `cdata` (not for attributes) and `auto`.
///
/// `auto` types text of more than 32 octets where the value prints exactly as the text was and
/// takes fewer octets: integers in the smallest size, otherwise single precision, otherwise double;
/// booleans; UUIDs, which the writer "FI" refuses; and a single word as hexadecimal or base64.
/// Shorter text stays: a writer of Fast Infoset has it in a table, where it costs less than a
/// number when it occurs again.
class TAVRIN_API TypingRules {
 public:
  /// A path and the type of the text there.
  struct Rule {
    std::string path;  ///< Where.
    std::string type;  ///< What it is.
  };

  /// Appends a rule.
  /// @throws SAXException for a path that is none, and for an unknown type, with those that are
  ///         known and the one that was meant, where a name is near
  void add(const std::string& path, const std::string& type);

  /// Reads rules, one in a line: `PATH TYPE`, with white space between. What begins with `#` at the
  /// beginning of a line or after white space is a comment.
  /// @throws SAXParseException with the line and the column, in characters, of what is wrong;
  ///         SAXException where the stream cannot be read
  static TypingRules read(std::istream& stream);

  /// The rules in their order.
  const std::vector<Rule>& rules() const { return rules_; }

 private:
  std::vector<Rule> rules_;
};

/// Turns the text of elements and attributes into typed content, so that XML text becomes Fast
/// Infoset with numbers and octets as they are.
///
/// @code
/// TypingRules rules;
/// rules.add("Coordinate/@point", "float");
/// TypedContentFilter filter(rules);
/// XMLReader_XML10 reader;
/// filter.setParent(&reader);
/// XMLWriter_X891 writer;
/// std::ofstream document("scene.finf", std::ios::binary);
/// writer.setOutputStream(&document);
/// connect(filter, writer);
/// std::ifstream text("scene.xml", std::ios::binary);
/// filter.parse(text);
/// @endcode
///
/// The text of an element is typed where it has nothing else: no element, comment, CDATA section,
/// processing instruction or reference that is reported. It is kept until the end tag, and then
/// goes where readers report typed content: for `cdata`, to the lexical and the content handler; to
/// the handler of primitive types; or to EncodingAlgorithmContentHandler::object. Where there is
/// nobody for the type, content passes as it is. An attribute list in which a value is typed
/// becomes an EncodingAlgorithmAttributesImpl; as text, it has the values as they were. Text
/// without items, which is empty or white space, has no typed form and stays.
///
/// A rule with any type but `auto` says that the text is such: white space and digits may take
/// another form when the value becomes text again. Text that is something else fails with a
/// SAXParseException, which the error handler gets first (ErrorHandler::fatalError). See Options.
class TAVRIN_API TypedContentFilter : public XMLFilter {
 public:
  /// What happens to text to which a rule applies.
  struct Options {
    /// Text whose value would print in another form stays text.
    bool exact = false;
    /// Text that is not of the type, or too long, stays text instead of a failure.
    bool lenient = false;
    /// How many octets of text of an element are kept for its type; longer text fails, or stays
    /// text where the type is `auto`.
    std::uint64_t maximumTextOctets = std::uint64_t{1} << 30;
  };

  /// @param rules are copied
  explicit TypedContentFilter(const TypingRules& rules);
  TypedContentFilter(const TypingRules& rules, const Options& options);  ///< With other options.
  ~TypedContentFilter() override;

  /// @name Events
  /// As in XMLFilter, but for text that becomes typed.
  /// @{
  void setDocumentLocator(const Locator* locator) override;
  void startDocument() override;
  void startPrefixMapping(const std::string& prefix, const std::string& uri) override;
  /// @throws SAXParseException for an attribute value that is not of its type
  void startElement(const std::string& uri, const std::string& localName, const std::string& qName,
                    const Attributes& attributes) override;
  /// @throws SAXParseException for text that is not of its type
  void endElement(const std::string& uri, const std::string& localName,
                  const std::string& qName) override;
  /// @throws SAXParseException for text that is too long
  void characters(const std::string& text) override;
  void ignorableWhitespace(const std::string& text) override;
  void processingInstruction(const std::string& target, const std::string& data) override;
  void skippedEntity(const std::string& name) override;
  void externalEntityDecl(const std::string& name, const std::string& publicId,
                          const std::string& systemId) override;
  void startEntity(const std::string& name) override;
  void endEntity(const std::string& name) override;
  void startCDATA() override;
  void endCDATA() override;
  void comment(const std::string& text) override;
  void warning(const SAXParseException& exception) override;
  void error(const SAXParseException& exception) override;
  void fatalError(const SAXParseException& exception) override;
  std::unique_ptr<std::istream> resolveEntity(const std::string& publicId,
                                              const std::string& systemId) override;
  void bytes(const std::string& data) override;
  void shorts(const std::vector<short>& data) override;
  void ints(const std::vector<long>& data) override;
  void longs(const std::vector<long>& data) override;
  void booleans(const std::vector<bool>& data) override;
  void floats(const std::vector<float>& data) override;
  void doubles(const std::vector<double>& data) override;
  void octets(const std::string& uri, int index, const std::string& data) override;
  void object(const std::string& uri, int index, const EncodedData& data) override;
  /// @}

 private:
  class Typing;
  TAVRIN_LOCAL bool receives(int type) const;
  TAVRIN_LOCAL void deliver(const std::string& qName);
  TAVRIN_LOCAL void release();
  TAVRIN_LOCAL void refuse(const std::string& message);

  const std::unique_ptr<Typing> typing_;
};

}  // namespace Tavrin
