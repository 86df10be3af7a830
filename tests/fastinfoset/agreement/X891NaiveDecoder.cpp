#include "X891NaiveDecoder.h"

#include "EventLog.h"
#include "X891NaiveCursor.h"
#include "X891NaiveValues.h"

namespace x891 {

namespace {

using Lines = std::vector<std::string>;

struct Element {
  Name name;
  Lines endsOfMappings;
};

/// A string, and what it was made of where that is an algorithm's octets.
struct Text {
  std::string text;
  bool isTyped = false;
  unsigned field = 0;
  std::string octets;
};

std::string show(const std::string& text) { return EventLog::show(text); }

class Decoder : private Cursor {
 public:
  Decoder(const std::string& octets, TypedAs typedAs,
          const std::map<std::string, Vocabulary>& external)
      : Cursor(octets), typedAs_(typedAs), external_(external) {}

  Decoded decode() {
    declaration();
    for (const unsigned octet : {0xE0, 0x00, 0x00, 0x01}) {
      if (next() != octet) fail("another header");
    }
    line("startDocument()");
    components();
    while (!ended_) child();
    if (!rootSeen_) fail("no root");
    result_.octets = position_;
    result_.vocabulary = tables_;
    return result_;
  }

 private:
  void line(const std::string& text) { result_.lines.push_back(text); }

  /// Clause 12: one of nine strings.
  void declaration() {
    if (octets_.compare(0, 5, "<?xml") != 0) return;
    for (const std::string version : {"", " version='1.0'", " version='1.1'"}) {
      for (const std::string standalone : {"", " standalone='yes'", " standalone='no'"}) {
        const std::string whole = "<?xml" + version + " encoding='finf'" + standalone + "?>";
        if (octets_.compare(0, whole.size(), whole) == 0) {
          position_ = whole.size();
          return;
        }
      }
    }
    fail("another declaration");
  }

  // --- Tables ---

  template <typename Entry>
  void add(std::vector<Entry>& table, const Entry& entry, std::size_t builtIn = 0) {
    if (table.size() + builtIn < kMeg) table.push_back(entry);
  }

  template <typename Entry>
  Entry entry(const std::vector<Entry>& table, std::size_t index) const {
    if (index == 0 || index > table.size()) fail("an index beyond its table");
    return table[index - 1];
  }

  /// Prefixes and namespace names, of which the first is built in.
  std::string namePart(const Lines& table, std::size_t index, const std::string& builtIn) const {
    return index == 1 ? builtIn : entry(table, index - 1);
  }

  // --- Strings ---

  /// C.22, behind a bit that is zero.
  std::string literal() {
    const unsigned octet = next();
    if (octet >= 0x80) fail("padding that is not zero");
    return take(lengthOnSecondBit(octet));
  }

  /// C.13
  std::string identifier(Lines& table) {
    const unsigned octet = next();
    if (octet >= 0x80) return entry(table, indexOnSecondBit(octet));
    const std::string text = take(lengthOnSecondBit(octet));
    charactersOf(text);
    add(table, text);
    return text;
  }

  /// C.13 of a prefix or namespace name.
  std::string namePart(Lines& table, const std::string& builtIn) {
    const unsigned octet = next();
    if (octet >= 0x80) return namePart(table, indexOnSecondBit(octet), builtIn);
    const std::string text = take(lengthOnSecondBit(octet));
    add(table, text, 1);
    return text;
  }

  std::string alphabet(unsigned field) const {
    if (field == 0) return "0123456789-+.E ";
    if (field == 1) return "0123456789-:TZ ";
    if (field < 15) fail("a reserved alphabet");
    return entry(tables_.alphabets, field - 14);
  }

  std::string algorithm(unsigned field) const {
    return field < 31 ? "" : entry(tables_.algorithms, field - 30);
  }

  /// The text of an encoded string; of an application's algorithm nobody knows it.
  Text textOf(unsigned format, unsigned field, const std::string& octets) {
    Text text;
    if (format == 0) {
      charactersOf(octets);
      text.text = octets;
    } else if (format == 1) {
      text.text = ofUTF16(octets);
    } else if (format == 2) {
      text.text = ofAlphabet(alphabet(field), octets);
    } else {
      text = {"", true, field, octets};
      algorithm(field);
      if (field < 31) text.text = valueOf(field, octets).text;
    }
    return text;
  }

  /// C.19, whose first two bits are done with.
  Text encodedString(unsigned octet) {
    const unsigned format = octet >> 4 & 0x03;
    unsigned field = 0;
    if (format >= 2) {
      const unsigned second = next();
      field = (octet & 0x0F) * 16 + (second >> 4);
      octet = second;
    }
    return textOf(format, field, take(lengthOnFifthBit(octet)));
  }

  /// C.14
  Text string(Lines& table) {
    const unsigned octet = next();
    if (octet == 0xFF) return {};
    if (octet >= 0x80) return {entry(table, indexOnSecondBit(octet)), false, 0, ""};
    const Text text = encodedString(octet);
    if ((octet & 0x40) != 0) add(table, text.text);
    return text;
  }

  /// C.14 where an algorithm makes no sense but as text.
  std::string plainString(Lines& table) {
    const Text text = string(table);
    if (text.isTyped && text.field >= 31) fail("an application's algorithm in a plain string");
    return text.text;
  }

  // --- Components (C.2) ---

  void components() {
    const unsigned present = next();
    if (present >= 0x80) fail("padding that is not zero");
    if ((present & 0x40) != 0) {
      for (std::size_t count = itemCount(); count > 0; --count) {
        result_.additionalData.push_back(literal());
        result_.additionalData.push_back(literal());
      }
    }
    if ((present & 0x20) != 0) initialVocabulary();
    if ((present & 0x10) != 0) notations();
    if ((present & 0x08) != 0) unparsedEntities();
    if ((present & 0x04) != 0) result_.scheme = literal();
    if ((present & 0x02) != 0) {
      const unsigned octet = next();
      if (octet > 1) fail("padding that is not zero");
      result_.standalone = octet == 1 ? "yes" : "no";
    }
    if ((present & 0x01) != 0) result_.version = plainString(tables_.otherStrings);
  }

  void notations() {
    unsigned octet = next();
    for (; (octet & 0xFC) == 0xC0; octet = next()) {
      const std::string name = identifier(tables_.otherNames);
      const std::string systemId = (octet & 0x02) != 0 ? identifier(tables_.otherURIs) : "";
      const std::string publicId = (octet & 0x01) != 0 ? identifier(tables_.otherURIs) : "";
      line("notationDecl(" + show(name) + ", " + show(publicId) + ", " + show(systemId) + ")");
    }
    if (octet != 0xF0) fail("no notation");
  }

  void unparsedEntities() {
    unsigned octet = next();
    for (; (octet & 0xFE) == 0xD0; octet = next()) {
      const std::string name = identifier(tables_.otherNames);
      const std::string systemId = identifier(tables_.otherURIs);
      const std::string publicId = (octet & 0x01) != 0 ? identifier(tables_.otherURIs) : "";
      const std::string notation = identifier(tables_.otherNames);
      line("unparsedEntityDecl(" + show(name) + ", " + show(publicId) + ", " + show(systemId) +
           ", " + show(notation) + ")");
    }
    if (octet != 0xF0) fail("no unparsed entity");
  }

  void initialVocabulary() {
    const std::size_t present = number(2);
    if (present == 0 || present >= 0x2000) fail("no initial vocabulary");
    if ((present & 0x1000) != 0) {
      const std::string uri = literal();
      const auto found = external_.find(uri);
      if (found == external_.end()) fail("an unknown external vocabulary");
      tables_ = found->second;
    }
    Lines* const literals[] = {&tables_.alphabets, &tables_.algorithms, &tables_.prefixes,
                               &tables_.uris,      &tables_.locals,     &tables_.otherNames,
                               &tables_.otherURIs};
    std::size_t bit = 0x0800;
    for (Lines* const table : literals) {
      if ((present & bit) != 0) {
        for (std::size_t count = itemCount(); count > 0; --count) table->push_back(literal());
      }
      bit >>= 1;
    }
    for (Lines* const table : {&tables_.values, &tables_.chunks, &tables_.otherStrings}) {
      if ((present & bit) != 0) {
        for (std::size_t count = itemCount(); count > 0; --count) {
          const unsigned octet = next();
          if (octet >= 0x40) fail("padding that is not zero");
          table->push_back(encodedString(octet).text);
        }
      }
      bit >>= 1;
    }
    for (std::vector<Name>* const table : {&tables_.elementNames, &tables_.attributeNames}) {
      if ((present & bit) != 0) {
        for (std::size_t count = itemCount(); count > 0; --count) table->push_back(surrogate());
      }
      bit >>= 1;
    }
  }

  /// '0' and C.25
  std::size_t surrogateIndex() {
    const unsigned octet = next();
    if (octet >= 0x80) fail("padding that is not zero");
    return indexOnSecondBit(octet);
  }

  /// C.16
  Name surrogate() {
    const unsigned octet = next();
    if (octet > 3 || octet == 2) fail("no name surrogate");
    Name name;
    if ((octet & 0x02) != 0) name.prefix = namePart(tables_.prefixes, surrogateIndex(), kXML);
    if ((octet & 0x01) != 0) name.uri = namePart(tables_.uris, surrogateIndex(), kXMLNamespace);
    name.local = entry(tables_.locals, surrogateIndex());
    return name;
  }

  // --- Children ---

  void child() {
    const unsigned octet = next();
    if (inType_ && octet != 0xE1 && octet < 0xF0) fail("no child of a document type");
    if (octet < 0x80) {
      if (open_.empty() && rootSeen_) fail("a second root");
      rootSeen_ = true;
      element(octet);
    } else if (octet == 0xE1) {
      const std::string target = identifier(tables_.otherNames);
      line("processingInstruction(" + show(target) + ", " +
           show(plainString(tables_.otherStrings)) + ")");
    } else if (octet == 0xE2) {
      line("comment(" + show(plainString(tables_.otherStrings)) + ")");
    } else if (octet == 0xF0) {
      end();
    } else if (octet == 0xFF) {
      end();
      if (ended_) fail("an end too many");
      end();
    } else if (!open_.empty() && octet < 0xC0) {
      chunk(octet);
    } else if (!open_.empty() && octet >= 0xC8 && octet <= 0xCB) {
      entityReference(octet);
    } else if (open_.empty() && octet >= 0xC4 && octet <= 0xC7) {
      documentType(octet);
    } else {
      fail("no child begins so");
    }
  }

  void documentType(unsigned octet) {
    if (rootSeen_ || typeSeen_) fail("a document type that comes too late");
    typeSeen_ = inType_ = true;
    const std::string systemId = (octet & 0x02) != 0 ? identifier(tables_.otherURIs) : "";
    const std::string publicId = (octet & 0x01) != 0 ? identifier(tables_.otherURIs) : "";
    line("startDTD(, " + show(publicId) + ", " + show(systemId) + ")");
  }

  void entityReference(unsigned octet) {
    const std::string name = identifier(tables_.otherNames);
    const std::string systemId = (octet & 0x02) != 0 ? identifier(tables_.otherURIs) : "";
    const std::string publicId = (octet & 0x01) != 0 ? identifier(tables_.otherURIs) : "";
    line("skippedEntity(" + show(name) + ")");
    for (const std::string& part : {name, publicId, systemId}) result_.entities.push_back(part);
  }

  /// Ends the document type, the innermost element, or the document.
  void end() {
    if (inType_) {
      inType_ = false;
      line("endDTD()");
    } else if (open_.empty()) {
      ended_ = true;
      line("endDocument()");
    } else {
      const Element element = open_.back();
      open_.pop_back();
      line("endElement(" + names(element.name) + ")");
      for (const std::string& mapping : element.endsOfMappings) line(mapping);
    }
  }

  static std::string names(const Name& name) {
    return show(name.uri) + ", " + show(name.local) + ", " +
           show(name.prefix.empty() ? name.local : name.prefix + ":" + name.local);
  }

  /// The literal of C.17 and C.18, whose last two bits tell the parts.
  Name literalName(unsigned octet) {
    Name name;
    if ((octet & 0x03) == 0x02) fail("a prefix without a namespace");
    if ((octet & 0x02) != 0) name.prefix = namePart(tables_.prefixes, kXML);
    if ((octet & 0x01) != 0) name.uri = namePart(tables_.uris, kXMLNamespace);
    name.local = identifier(tables_.locals);
    return name;
  }

  /// C.3
  void element(unsigned first) {
    Element opened;
    unsigned octet = first & 0x3F;
    if (octet == 0x38) {
      unsigned declaration = next();
      for (; (declaration & 0xFC) == 0xCC; declaration = next()) {
        const std::string prefix =
            (declaration & 0x02) != 0 ? namePart(tables_.prefixes, kXML) : "";
        const std::string uri =
            (declaration & 0x01) != 0 ? namePart(tables_.uris, kXMLNamespace) : "";
        line("startPrefixMapping(" + show(prefix) + ", " + show(uri) + ")");
        opened.endsOfMappings.push_back("endPrefixMapping(" + show(prefix) + ")");
      }
      if (declaration != 0xF0) fail("no namespace declaration");
      octet = next();
      if (octet >= 0x40) fail("padding that is not zero");
    }
    if (octet >= 0x3C) {
      opened.name = literalName(octet);
      add(tables_.elementNames, opened.name);
    } else {
      opened.name = entry(tables_.elementNames, indexOnThirdBit(octet));
    }
    std::string list;
    Lines typed;
    const bool ends = (first & 0x40) != 0 && attributes(list, typed);
    line("startElement(" + names(opened.name) + ", [" + list + "])");
    for (const std::string& value : typed) line(value);
    open_.push_back(opened);
    if (ends) end();
  }

  /// @return whether the end of the list was that of the element, too
  bool attributes(std::string& list, Lines& typed) {
    unsigned octet = next();
    for (; octet < 0x80; octet = next()) {
      Name name;
      if ((octet & 0x7C) == 0x78) {
        name = literalName(octet);
        add(tables_.attributeNames, name);
      } else {
        name = entry(tables_.attributeNames, indexOnSecondBit(octet));
      }
      const Text value = string(tables_.values);
      if (!list.empty()) list += ", ";
      list += "{" + names(name) + ", CDATA, " + show(value.text);
      if (value.isTyped) typedAttribute(value, list, typed);
      list += "}";
    }
    if (list.empty()) fail("no attributes");
    if (octet != 0xF0 && octet != 0xFF) fail("no attribute");
    return octet == 0xFF;
  }

  void typedAttribute(const Text& value, std::string& list, Lines& typed) {
    if (value.field == 9) fail("cdata in an attribute");
    list += ", " + show(algorithm(value.field)) + ", " + std::to_string(value.field) + ", ";
    if (value.field >= 31) {
      list += "octets{" + EventLog::showOctets(value.octets) + "}";
      return;
    }
    const Value decoded = valueOf(value.field, value.octets);
    list += decoded.holder + "{" + show(decoded.text) + "}";
    if (!decoded.primitive.empty()) typed.push_back(decoded.primitive);
  }

  /// C.15 and C.20
  void chunk(unsigned first) {
    if (first >= 0xA0) {
      characters(entry(tables_.chunks, indexOnFourthBit(first)));
      return;
    }
    const unsigned format = first >> 2 & 0x03;
    unsigned field = 0;
    unsigned octet = first;
    if (format >= 2) {
      octet = next();
      field = (first & 0x03) * 64 + (octet >> 2);
    }
    const Text text = textOf(format, field, take(lengthOnSeventhBit(octet)));
    if ((first & 0x10) != 0) add(tables_.chunks, text.text);
    if (text.isTyped) {
      typedContent(text);
    } else {
      characters(text.text);
    }
  }

  void characters(const std::string& text) { line("characters(" + show(text) + ")"); }

  void typedContent(const Text& text) {
    if (text.field >= 31) {
      line("octets(" + show(algorithm(text.field)) + ", " + std::to_string(text.field) + ", " +
           EventLog::showOctets(text.octets) + ")");
      return;
    }
    const Value value = valueOf(text.field, text.octets);
    if (text.field == 9) {
      line("startCDATA()");
      characters(value.text);
      line("endCDATA()");
    } else if (typedAs_ == TypedAs::primitives && !value.primitive.empty()) {
      line(value.primitive);
    } else if (typedAs_ == TypedAs::objects) {
      line("object(, " + std::to_string(text.field) + ", " + value.holder + "{" + show(value.text) +
           "})");
    } else {
      characters(value.text);
    }
  }

  static constexpr char kXML[] = "xml";
  static constexpr char kXMLNamespace[] = "http://www.w3.org/XML/1998/namespace";

  const TypedAs typedAs_;
  const std::map<std::string, Vocabulary>& external_;
  Decoded result_;
  Vocabulary tables_;
  std::vector<Element> open_;
  bool rootSeen_ = false;
  bool typeSeen_ = false;
  bool inType_ = false;
  bool ended_ = false;
};

}  // namespace

Decoded decode(const std::string& octets, TypedAs typedAs,
               const std::map<std::string, Vocabulary>& external) {
  return Decoder(octets, typedAs, external).decode();
}

}  // namespace x891
