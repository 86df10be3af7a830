#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "octets/Content.h"
#include "octets/Cursor.h"
#include "octets/Format.h"
#include "octets/Note.h"
#include "octets/OpenElements.h"
#include "octets/Tables.h"
#include "octets/TextForm.h"
#include "options/Vocabularies.h"

namespace tool::octets {

/// Where octets cannot be what comes next in Fast Infoset.
struct Break {
  std::uint64_t octet;  ///< Counted from 1; one more than there are where octets are missing.
  std::string message;
  std::uint64_t begin = 0;  ///< How many octets were told of before.
};

/// Tells of every octet of Fast Infoset what it is. It knows the octets' structure: which of them
/// can come next, lengths, indexes, and what the tables hold. What texts and names may be is no
/// matter of it.
///
/// Nothing is kept of the document but its tables, the names of the open elements, and a block.
class Scanner {
 public:
  /// @param hasTables whether the tables are printed behind each document
  /// @param vocabularies those whose entries are known where a document refers to them
  /// @param whenLong  is called before a literal of more than kLong octets is gone through
  Scanner(Cursor& cursor, TextForm& form, bool hasTables, const Vocabularies& vocabularies,
          std::function<void()> whenLong)
      : cursor_(cursor),
        form_(form),
        note_(form.isColoured()),
        hasTables_(hasTables),
        vocabularies_(vocabularies),
        whenLong_(std::move(whenLong)) {}

  static constexpr std::uint64_t kLong = std::uint64_t{16} << 20;

  /// Scans all documents. Octets that cannot be scanned are written as they are.
  /// @return null where there are none
  std::optional<Break> scan();

 private:
  /// An integer, in octets that are in view.
  struct Number {
    std::uint64_t value;
    std::size_t size;  // In octets, with the first.
  };

  /// A literal whose octets are not written yet.
  struct Literal {
    std::size_t head;      // How many octets precede its own.
    std::uint64_t length;  // How many octets are its own.
    Content content;
    Excerpt excerpt;  // Of what it says.
  };

  /// An identifying string that is not written yet; the note tells what it is.
  struct Identifier {
    std::uint32_t index = Name::kUnknown;  // Of its entry.
    std::optional<Literal> literal;        // Or an index,
    std::size_t size = 0;                  // of so many octets.
  };

  // --- What the parts have in common (Scanner.cpp) ---

  [[noreturn]] void fail(const std::string& expected, std::size_t ahead = 0);
  [[noreturn]] void fail(const std::string& expected, std::size_t ahead, const std::string& found);
  unsigned octetAhead(std::size_t ahead, const char* expected);
  Number numberAhead(const format::Integer& integer, std::size_t ahead, const char* expected);
  /// Writes octets that are in view, with the note.
  void write(std::size_t size) { writeAt(level(), size); }
  void writeAt(std::size_t level, std::size_t size);
  std::size_t level() const { return 1 + open_.count() + extraLevels_; }
  void writeRest(const Break& broken);
  void writeTables();
  void writeTable(const StringTable& table);
  void writeTable(const NameTable& table);

  // --- Documents (ScanDocument.cpp) ---

  void scanDocument();
  void scanHeader();
  void scanComponents();
  void scanAdditionalData();
  void scanNotations();
  void scanUnparsedEntities();
  void scanStandalone();
  bool scanChild();
  void endDocument();
  bool scanDocumentType(unsigned octet);
  void scanInstruction();
  void scanComment();
  void scanEntityReference(unsigned octet);
  void scanIdentifiers(unsigned octet);

  // --- The initial vocabulary (ScanVocabulary.cpp) ---

  void scanVocabulary();
  void scanExternalVocabulary();
  std::uint64_t scanCount(std::string_view what, std::uint64_t most);
  void scanEntries(unsigned table);
  void scanEncodedEntry(unsigned table);
  void scanSurrogates(NameTable& names);
  struct SurrogatePart {
    std::uint32_t index;
    std::size_t size;
  };
  SurrogatePart peekSurrogatePart(const char* what, unsigned table);
  std::uint32_t scanSurrogatePart(const char* what, unsigned table);

  // --- Elements (ScanElements.cpp) ---

  struct LiteralName {
    Name name;
    std::uint32_t index = 0;  // In the table of names, or 0.
    Identifier localName;
  };

  bool scanContentItem();
  bool endElements(unsigned octet);
  void scanElement(unsigned octet);
  void scanNamespaces();
  void scanElementName(const char* what, const std::string& clauses, unsigned octet,
                       const char* words);
  void checkParts(unsigned octet);
  LiteralName peekLiteralName(unsigned parts, NameTable& names);
  Name findName(const NameTable& names, std::uint64_t index);
  void scanAttributes();
  void scanAttribute(unsigned octet, bool isLiteral);

  // --- Strings (ScanStrings.cpp) ---

  /// @param mayBeIndex whether it may be an index of the table, and need not be a literal
  Identifier peekIdentifier(const char* what, unsigned table, bool mayBeIndex = true);
  void writeIdentifier(Identifier identifier);
  std::uint32_t scanIdentifier(const char* what, unsigned table);
  void scanString(const char* what, const char* clause, unsigned table, const std::string& path);
  void scanChunk(unsigned octet);
  /// A literal of one of the encoding formats.
  struct Encoded {
    format::Encoding encoding;
    unsigned number;  // Of an alphabet or an algorithm, from 0 as the octets have it.
    Number length;
    std::size_t head;    // How many octets precede those of the literal.
    const char* clause;  // Of the length.
  };
  Encoded encodedAhead(unsigned octet);
  void scanEncoded(const char* what, std::string clauses, const Encoded& encoded, unsigned table,
                   bool adds, const std::string& path);
  Content contentOf(const Encoded& encoded, std::string& clauses, std::string& format);
  Content contentOfAlgorithm(const Encoded& encoded, std::string& clauses, std::string& format);
  std::uint32_t noteEntry(unsigned table, std::uint64_t index);
  void noteAdded(std::string_view table, std::uint32_t index);
  Literal peekLiteral(std::size_t head, std::uint64_t length, const Content& content);
  void noteLiteral(const Literal& literal);
  /// @param whole receives the text, if it is not null and there is not too much of it
  void writeLiteral(Literal literal, std::string* whole = nullptr);

  Cursor& cursor_;
  TextForm& form_;
  Note note_;
  bool hasTables_;
  const Vocabularies& vocabularies_;
  std::function<void()> whenLong_;
  std::uint64_t documents_ = 0;

  // --- The document ---

  Tables tables_;
  std::map<unsigned, Alphabet> alphabets_;  // By number, counted from 1.
  bool hasRoot_ = false;
  bool hasDocumentType_ = false;
  std::size_t extraLevels_ = 0;
  OpenElements open_{tables_};
};

}  // namespace tool::octets
