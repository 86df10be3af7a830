#pragma once

#include <Tavrin/Tavrin.h>

#include <functional>
#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "totals.h"

/// Other programs' readers and writers, made to do the same work for each event as ours.
namespace peers {

struct Reader {
  std::string name;
  std::function<Totals(std::istream&)> read;
  bool takesNamesApart = true;
};

/// Whoever writes is a handler that the same events are played to.
struct Writer {
  std::string name;
  std::function<std::unique_ptr<Tavrin::ContentHandler>(std::ostream&)> create;
};

/// Those that were found when the program was configured.
std::vector<Reader> readers();
std::vector<Writer> writers();

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
Totals readXerces(std::istream& stream);
Totals readPugixml(std::istream& stream);
std::unique_ptr<Tavrin::ContentHandler> createTextWriter(std::ostream& out);

}  // namespace peers
