/// @file
/// A vocabulary that owns its entries, to be shared by readers and writers of Fast Infoset.
#pragma once

#include <Tavrin/Export.h>
#include <Tavrin/Vocabulary.h>

#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <string>

namespace Tavrin {

/// The names and strings that documents of one kind have in common (X.891, clause 8). Where writer
/// and reader know it, as an external vocabulary, documents hold small numbers in their place;
/// where the reader does not, the writer puts it into each document, as its initial vocabulary.
///
/// @code
/// OwnedVocabulary vocabulary;
/// vocabulary.addElementName("urn:menu", "dish", "m:dish");
/// vocabulary.addAttributeName("", "price");
/// vocabulary.addAttributeValue("vegetarian");
/// std::ofstream file("menu.vocabulary", std::ios::binary);
/// vocabulary.write(file);
///
/// XMLWriter_X891 writer;
/// writer.setExternalVocabulary("urn:menu:vocabulary:1", vocabulary);
/// XMLReader_X891 reader;
/// reader.addExternalVocabulary("urn:menu:vocabulary:1", vocabulary);
/// @endcode
///
/// Copies share the entries until one of them is changed, so that a copy costs the same whatever
/// their number. Readers and writers keep a copy: what becomes of the object later concerns none of
/// them. Any number of threads may use one object at a time as long as none changes it, and each
/// may change its own copy at any time.
///
/// The index of an entry is its position, so a vocabulary that documents refer to must not change:
/// one that has more entries, or others, needs another URI.
///
/// Each operation whose name begins with `add` returns the index of the entry, as X.891 counts it
/// (7.2): from 1, of prefixes and namespace names from 2, behind those of XML; of restricted
/// alphabets from 16, of encoding algorithms from 32. An entry that the table has already is not
/// added again. A SAXException refuses an entry that no document can use, and changes nothing: one
/// that is empty or has characters that XML 1.0 does not allow, a name that breaks the rules of
/// Namespaces in XML, and any that is too many: a table has at most 1048576 entries, the built-in
/// ones among them, and there are at most 241 restricted alphabets and 225 encoding algorithms.
class TAVRIN_API OwnedVocabulary {
 public:
  OwnedVocabulary();                                  ///< Without entries.
  OwnedVocabulary(const OwnedVocabulary& other);      ///< Shares the entries of the other one.
  OwnedVocabulary(OwnedVocabulary&& other) noexcept;  ///< Leaves the other one without entries.
  OwnedVocabulary& operator=(const OwnedVocabulary& other);      ///< Likewise.
  OwnedVocabulary& operator=(OwnedVocabulary&& other) noexcept;  ///< As the constructor does.
  ~OwnedVocabulary();

  /// @name Names
  /// The prefix, namespace name and local name are added to their own tables, too, where they are
  /// missing.
  /// @param uri       the namespace name; empty for a name in no namespace
  /// @param localName an NCName
  /// @param qName     the local name, with its prefix if it has one, as in events; where it is
  ///                  empty, there is no prefix. The name with another prefix is another name.
  /// @{

  /// Adds the name of an element.
  std::uint32_t addElementName(const std::string& uri, const std::string& localName,
                               const std::string& qName = {});
  /// Adds the name of an attribute.
  std::uint32_t addAttributeName(const std::string& uri, const std::string& localName,
                                 const std::string& qName = {});
  /// @}

  /// @name Strings
  /// @{
  std::uint32_t addAttributeValue(const std::string& value);  ///< For attributes.
  /// @param text a whole run of character data
  std::uint32_t addCharacters(const std::string& text);
  /// @param text of a comment or the data of a processing instruction
  std::uint32_t addOtherString(const std::string& text);
  std::uint32_t addPrefix(const std::string& prefix);      ///< For declarations and names.
  std::uint32_t addNamespaceName(const std::string& uri);  ///< For declarations and names.
  std::uint32_t addLocalName(const std::string& name);     ///< For names that are in no table.
  /// @param name of an entity or notation, or the target of a processing instruction
  std::uint32_t addOtherNCName(const std::string& name);
  /// @param identifier a system or public identifier
  std::uint32_t addOtherURI(const std::string& identifier);
  /// @param uri of an algorithm that an application defines
  std::uint32_t addEncodingAlgorithm(const std::string& uri);
  /// @param characters at least two, each once (7.17)
  std::uint32_t addRestrictedAlphabet(const std::string& characters);
  /// @}

  bool isEmpty() const;  ///< Whether there are no entries.

  /// The entries, for iteration over them, and to give them to whom wants the structure. They stay
  /// as they are, whatever becomes of this object, for as long as the pointer is kept or this
  /// object is not changed.
  std::shared_ptr<const ExternalVocabulary> tables() const;

  /// Writes the vocabulary as a Fast Infoset document: its initial vocabulary and one empty
  /// element, which has the first of the element names, or else the name `vocabulary`. The same
  /// entries in the same order give the same octets. The state of the stream tells of its failures.
  /// @throws SAXException for a vocabulary that the reader "X891" would refuse for its size: one
  ///         that takes more than 512 MiB
  void write(std::ostream& stream) const;

  /// Reads the initial vocabulary of a Fast Infoset document, whoever wrote it, up to the end of
  /// that vocabulary and not beyond. It is empty where the document has none.
  /// @throws SAXParseException for a stream that does not hold a Fast Infoset document, for a
  ///         vocabulary that refers to an external one, and at the limits that the reader "X891"
  ///         has by default
  /// @throws SAXException for an entry that no document can use
  static OwnedVocabulary read(std::istream& stream);

 private:
  std::uint32_t add(unsigned table, const std::string& entry);
  std::uint32_t addName(unsigned table, const std::string& uri, const std::string& localName,
                        const std::string& qName);

  std::shared_ptr<ExternalVocabulary> tables_;  // With what the library adds to it; or null.
};

}  // namespace Tavrin
