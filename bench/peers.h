#pragma once

#include <Tavrin/Tavrin.h>

#include <functional>
#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "totals.h"

/// Other programs' readers and writers, made to do the same work for each event as ours.
namespace peers {

struct Reader {
  std::string name;
  std::function<Totals(std::istream&)> read;
  bool takesNamesApart = true;
};

/// One that is given blocks.
struct PushReader {
  std::string name;
  std::function<Totals(std::string_view, std::size_t blockSize)> read;
};

/// Whoever writes is a handler that the same events are played to.
struct Writer {
  std::string name;
  std::function<std::unique_ptr<Tavrin::ContentHandler>(std::ostream&)> create;
};

/// Those that were found when the program was configured.
std::vector<Reader> readers();
std::vector<PushReader> pushReaders();
std::vector<Writer> writers();

/// Calls with one block after the other, and with whether it is the last.
template <typename Parse>
void forEachBlock(std::string_view text, std::size_t blockSize, Parse parse) {
  do {
    const std::string_view block = text.substr(0, blockSize);
    text.remove_prefix(block.size());
    parse(block, text.empty());
  } while (!text.empty());
}

/// The baselines of reading and of writing, which are always there.
Totals readExpatStream(std::istream& stream);
std::unique_ptr<Tavrin::ContentHandler> createEscapeLoop(std::ostream& out);

// --- For the peers themselves ---

/// A name in the strings that a handler is given.
struct Name {
  std::string uri, localName, qName;

  std::size_t octets() const { return uri.size() + localName.size() + qName.size(); }
};

struct Attribute {
  Name name;
  std::string value;
};

inline void countStart(Totals& totals, const Name& name, const std::vector<Attribute>& list) {
  ++totals.elements;
  totals.elementNameOctets += name.octets();
  totals.attributes += list.size();
  for (const Attribute& attribute : list) {
    totals.attributeNameOctets += attribute.name.octets();
    totals.valueOctets += attribute.value.size();
  }
}

inline void countEnd(Totals& totals, const Name& name) {
  totals.elementNameOctets += name.octets();
}

inline void countText(Totals& totals, const std::string& text) { totals.textOctets += text.size(); }

Totals readRawExpat(std::istream& stream);
Totals readLibxml2(std::istream& stream);
Totals pushExpat(std::string_view text, std::size_t blockSize);
Totals pushLibxml2(std::string_view text, std::size_t blockSize);
Totals readXerces(std::istream& stream);
Totals readPugixml(std::istream& stream);
std::unique_ptr<Tavrin::ContentHandler> createTextWriter(std::ostream& out);

}  // namespace peers
