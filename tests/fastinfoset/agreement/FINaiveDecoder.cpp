#include "FINaiveDecoder.h"

#include <stdexcept>

#include "EventLog.h"
#include "NaiveValues.h"

namespace naive {

namespace {

using Lines = std::vector<std::string>;

struct Name {
  std::string prefix;
  std::string uri;
  std::string local;

  std::string qName() const { return prefix.empty() ? local : prefix + ":" + local; }
};

struct Element {
  Name name;
  Lines endsOfMappings;
};

class Decoder {
 public:
  Decoder(const std::string& octets, TypedAs typedAs) : octets_(octets), typedAs_(typedAs) {}

  Lines decode() {
    for (const unsigned octet : {0xE0, 0x00, 0x00, 0x01, 0x00}) {
      if (next() != octet) fail("another header");
    }
    line("startDocument()");
    while (!ended_) {
      const unsigned octet = next();
      if (octet < 0x80) {
        if (open_.empty() && rootSeen_) fail("a second root");
        rootSeen_ = true;
        element(octet);
      } else if (octet == 0xE1) {
        const std::string target = identifier(targets_);
        line("processingInstruction(" + EventLog::show(target) + ", " +
             EventLog::show(string(next(), strings_)) + ")");
      } else if (octet == 0xE2) {
        line("comment(" + EventLog::show(string(next(), strings_)) + ")");
      } else if (octet == 0xF0) {
        end();
      } else if (octet == 0xFF) {
        end();
        if (!ended_) end();
      } else if (!open_.empty() && octet <= 0xC7) {
        chunk(octet);
      } else {
        fail("no child begins so");
      }
    }
    if (position_ != octets_.size()) fail("octets behind the document");
    return lines_;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw std::runtime_error(what + " at octet " + std::to_string(position_));
  }

  void line(const std::string& text) { lines_.push_back(text); }

  unsigned next() {
    if (position_ == octets_.size()) fail("the end");
    return static_cast<unsigned char>(octets_[position_++]);
  }

  /// The number in the next octets.
  std::size_t number(int octets) {
    std::size_t result = 0;
    for (int i = 0; i < octets; ++i) result = result * 256 + next();
    return result;
  }

  std::string take(std::size_t length) {
    if (length > octets_.size() - position_) fail("the end within a text");
    const std::string text = octets_.substr(position_, length);
    position_ += length;
    return text;
  }

  template <typename Entry>
  const Entry& entry(const std::vector<Entry>& table, std::size_t index) const {
    if (index >= table.size()) fail("an index beyond its table");
    return table[index];
  }

  // Integers. Each begins within an octet; what stands in front of it is cut off first.

  std::size_t indexOnSecondBit(unsigned octet) {
    const unsigned bits = octet & 0x7F;
    if (bits < 0x40) return bits;
    if (bits < 0x60) return (bits & 0x1F) * 0x100 + number(1) + 64;
    if (bits < 0x70) return (bits & 0x0F) * 0x10000 + number(2) + 8256;
    fail("no index");
  }

  std::size_t indexOnThirdBit(unsigned octet) {
    const unsigned bits = octet & 0x3F;
    if (bits < 0x20) return bits;
    if (bits < 0x28) return (bits & 0x07) * 0x100 + number(1) + 32;
    if (bits < 0x30) return (bits & 0x07) * 0x10000 + number(2) + 2080;
    if (bits == 0x30) return number(3) % 0x100000 + 526368;
    fail("no index of an element name");
  }

  std::size_t indexOnFourthBit(unsigned octet) {
    const unsigned bits = octet & 0x1F;
    if (bits < 0x10) return bits;
    if (bits < 0x14) return (bits & 0x03) * 0x100 + number(1) + 16;
    if (bits < 0x18) return (bits & 0x03) * 0x10000 + number(2) + 1040;
    if (bits == 0x18) return number(3) + 263184;
    fail("no index of a chunk");
  }

  std::size_t lengthOnSecondBit(unsigned octet) {
    const unsigned bits = octet & 0x7F;
    if (bits < 0x40) return bits + 1;
    if (bits == 0x40) return number(1) + 65;
    if (bits == 0x60) return number(4) + 321;
    fail("no length of an identifier");
  }

  std::size_t lengthOnFifthBit(unsigned octet) {
    const unsigned bits = octet & 0x0F;
    if (bits < 0x08) return bits + 1;
    if (bits == 0x08) return number(1) + 9;
    if (bits == 0x0C) return number(4) + 265;
    fail("no length of a string");
  }

  std::size_t lengthOnSeventhBit(unsigned octet) {
    const unsigned bits = octet & 0x03;
    if (bits < 2) return bits + 1;
    if (bits == 2) return number(1) + 3;
    return number(4) + 259;
  }

  // Strings and names.

  std::string identifier(Lines& table) {
    const unsigned octet = next();
    if (octet >= 0x80) return entry(table, indexOnSecondBit(octet));
    table.push_back(take(lengthOnSecondBit(octet)));
    return table.back();
  }

  std::string string(unsigned octet, Lines& table) {
    if (octet == 0xFF) return "";
    if (octet >= 0x80) return entry(table, indexOnSecondBit(octet));
    if ((octet & 0x30) != 0) fail("a string that is not UTF-8");
    const std::string text = take(lengthOnFifthBit(octet));
    if ((octet & 0x40) != 0) table.push_back(text);
    return text;
  }

  Name literalName(unsigned octet) {
    Name name;
    if ((octet & 0x02) != 0) {
      if ((octet & 0x01) == 0) fail("a prefix without a namespace");
      const std::size_t index = indexOnSecondBit(next());
      name.prefix = index == 0 ? "xml" : entry(prefixes_, index - 1);
    }
    if ((octet & 0x01) != 0) {
      const std::size_t index = indexOnSecondBit(next());
      name.uri = index == 0 ? "http://www.w3.org/XML/1998/namespace" : entry(uris_, index - 1);
    }
    name.local = identifier(locals_);
    return name;
  }

  // Elements.

  void element(unsigned first) {
    Element opened;
    unsigned octet = first;
    if ((first & 0x3F) == 0x38) {
      for (octet = next(); octet != 0xF0; octet = next()) {
        if (octet < 0xCC || octet > 0xCF) fail("no namespace declaration");
        const std::string prefix = (octet & 0x02) != 0 ? identifier(prefixes_) : "";
        const std::string uri = (octet & 0x01) != 0 ? identifier(uris_) : "";
        line("startPrefixMapping(" + EventLog::show(prefix) + ", " + EventLog::show(uri) + ")");
        opened.endsOfMappings.push_back("endPrefixMapping(" + EventLog::show(prefix) + ")");
      }
      octet = next();
    }
    if ((octet & 0x3C) == 0x3C) {
      opened.name = literalName(octet);
      elementNames_.push_back(opened.name);
    } else {
      opened.name = entry(elementNames_, indexOnThirdBit(octet));
    }
    std::string list;
    Lines typed;
    bool ends = false;
    if ((first & 0x40) != 0) ends = attributes(list, typed);
    line("startElement(" + names(opened.name) + ", [" + list + "])");
    lines_.insert(lines_.end(), typed.begin(), typed.end());
    open_.push_back(opened);
    if (ends) end();
  }

  /// @return whether the end of the list was that of the element too
  bool attributes(std::string& list, Lines& typed) {
    for (unsigned octet = next(); octet != 0xF0; octet = next()) {
      if (octet == 0xFF) return true;
      Name name;
      if (octet >= 0x78 && octet <= 0x7B) {
        name = literalName(octet);
        attributeNames_.push_back(name);
      } else if (octet < 0x80) {
        name = entry(attributeNames_, indexOnSecondBit(octet));
      } else {
        fail("no name of an attribute");
      }
      if (!list.empty()) list += ", ";
      list += "{" + names(name) + ", CDATA, ";
      const unsigned first = next();
      if (first < 0x80 && (first & 0x30) == 0x30) {
        const unsigned second = next();
        const unsigned field = (first & 0x0F) * 16 + (second >> 4);
        const Value value = valueOf(field, take(lengthOnFifthBit(second)));
        const std::string text = EventLog::show(value.text);
        list += text + ", , " + std::to_string(field) + ", " + value.holder + "{" + text + "}}";
        typed.push_back(value.primitive);
      } else {
        list += EventLog::show(string(first, values_)) + "}";
      }
    }
    return false;
  }

  static std::string names(const Name& name) {
    return EventLog::show(name.uri) + ", " + EventLog::show(name.local) + ", " +
           EventLog::show(name.qName());
  }

  /// Ends the innermost element, or the document.
  void end() {
    if (open_.empty()) {
      line("endDocument()");
      ended_ = true;
      return;
    }
    const Element element = open_.back();
    open_.pop_back();
    line("endElement(" + names(element.name) + ")");
    lines_.insert(lines_.end(), element.endsOfMappings.begin(), element.endsOfMappings.end());
  }

  // Chunks.

  void chunk(unsigned first) {
    if (first > 0xB8) fail("no chunk begins so");
    if (first >= 0xA0) {
      characters(entry(chunks_, indexOnFourthBit(first)));
    } else if ((first & 0x0C) == 0x00) {
      const std::string text = take(lengthOnSeventhBit(first));
      if ((first & 0x10) != 0) chunks_.push_back(text);
      characters(text);
    } else if ((first & 0x1C) == 0x0C) {
      const unsigned second = next();
      // Bit 8 of the first octet is written but does not count.
      const unsigned field = (first & 0x02) * 64 + (second >> 2);
      typedContent(field, take(lengthOnSeventhBit(second)));
    } else {
      fail("a chunk that is neither UTF-8 nor of an algorithm");
    }
  }

  void characters(const std::string& text) { line("characters(" + EventLog::show(text) + ")"); }

  void typedContent(unsigned field, const std::string& octets) {
    if (!isBuiltIn(field)) {
      if (field >= 32) fail("an algorithm without a URI");
      if (typedAs_ == TypedAs::objects) {
        line("octets(, " + std::to_string(field) + ", " + EventLog::showOctets(octets) + ")");
      }
      return;
    }
    const Value value = valueOf(field, octets);
    if (field == 9) {
      line("startCDATA()");
      characters(value.text);
      line("endCDATA()");
    } else if (typedAs_ == TypedAs::primitives) {
      line(value.primitive);
    } else if (typedAs_ == TypedAs::objects) {
      line("object(, " + std::to_string(field) + ", " + value.holder + "{" +
           EventLog::show(value.text) + "})");
    } else {
      characters(value.text);
    }
  }

  const std::string& octets_;
  const TypedAs typedAs_;
  std::size_t position_ = 0;
  Lines lines_;
  std::vector<Element> open_;
  bool rootSeen_ = false;
  bool ended_ = false;

  Lines prefixes_;
  Lines uris_;
  Lines locals_;
  Lines targets_;
  Lines values_;
  Lines chunks_;
  Lines strings_;
  std::vector<Name> elementNames_;
  std::vector<Name> attributeNames_;
};

}  // namespace

std::vector<std::string> decode(const std::string& octets, TypedAs typedAs) {
  return Decoder(octets, typedAs).decode();
}

}  // namespace naive
