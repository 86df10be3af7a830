#include "CopiedDocuments.h"

#include "EventLog.h"

namespace copies {

using namespace Tavrin;

namespace {

constexpr char kText[] =
    "<?xml version='1.0'?><!--first--><!DOCTYPE p:a [<!ELEMENT p:a ANY><!ATTLIST p:a d CDATA 'v'>"
    "<!ENTITY e 'entity'><!--in the type-->]><p:a xmlns:p='urn:p' b='1'><p:b xmlns='urn:d' "
    "p:c='2'/>"
    "text &e; &amp;<![CDATA[a section]]><?target data?><!--comment--></p:a><!--last-->";
/// The reader "Expat" ends at its notation, and at its entity.
constexpr char kDeclarations[] =
    "<!DOCTYPE a [<!NOTATION n SYSTEM 'n'><!ENTITY u SYSTEM 'u' NDATA n><!ENTITY x SYSTEM 'x'>]>"
    "<a>&x;</a>";

/// Content of every kind. The nil UUID and the octets 00 to 02 stand for all values.
template <typename Writer>
std::string writeTyped(bool hasUUIDs) {
  std::ostringstream stream;
  Writer writer;
  writer.setOutputStream(&stream);
  writer.startDocument();
  writer.comment("first");
  writer.startPrefixMapping("p", "urn:p");
  EncodingAlgorithmAttributesImpl list;
  list.addAttribute("", "b", "b", "CDATA", "1");
  list.addAttribute("urn:p", "c", "p:c", "CDATA", "", algorithms::integer,
                    std::make_unique<IntData>(std::vector<long>{1, -2}));
  writer.startElement("urn:p", "a", "p:a", list);
  writer.characters("text");
  const std::string octets("\0\1\2", 3);
  writer.bytes(octets);
  writer.object("", algorithms::hexadecimal, HexadecimalData(octets));
  writer.shorts({1, -2});
  writer.ints({1, -2});
  writer.longs({1, -2});
  writer.booleans({true, false});
  writer.floats({0.1F});
  writer.doubles({0.1});
  if (hasUUIDs) writer.object("", algorithms::uuid, UUIDData({UUID()}));
  writer.startCDATA();
  writer.characters("a section");
  writer.endCDATA();
  writer.processingInstruction("target", "data");
  writer.comment("comment");
  writer.endElement("urn:p", "a", "p:a");
  writer.endPrefixMapping("p");
  writer.endDocument();
  return stream.str();
}

std::string writeDeclarations() {
  std::ostringstream stream;
  XMLWriter_X891 writer;
  writer.setOutputStream(&stream);
  writer.startDocument();
  writer.startDTD("a", "", "a.dtd");
  writer.notationDecl("n", "", "n");
  writer.unparsedEntityDecl("u", "", "u", "n");
  writer.externalEntityDecl("x", "", "x");
  writer.endDTD();
  writer.startElement("", "a", "a", AttributesImpl());
  writer.skippedEntity("x");
  writer.endElement("", "a", "a");
  writer.endDocument();
  return stream.str();
}

}  // namespace

std::vector<std::string> documentsFor(const std::string& readerType) {
  if (readerType == "FI") return {writeTyped<XMLWriter_FI>(false)};
  if (readerType == "X891") return {writeTyped<XMLWriter_X891>(true), writeDeclarations()};
  return {kText, kDeclarations};
}

std::ostream& operator<<(std::ostream& out, const Copy& copy) {
  return out << copy.outcome << ", written: " << EventLog::show(copy.written);
}

void connectBySetters(XMLReader& reader, XMLWriter& writer) {
  reader.setContentHandler(&writer);
  reader.setDTDHandler(&writer);
  reader.setProperty(properties::lexicalHandler, static_cast<LexicalHandler*>(&writer));
  reader.setProperty(properties::declarationHandler, static_cast<DeclHandler*>(&writer));
  const bool isTyped =
      dynamic_cast<XMLReader_FI*>(&reader) || dynamic_cast<XMLReader_X891*>(&reader);
  if (!isTyped) return;
  reader.setProperty(properties::encodingAlgorithmContentHandler,
                     dynamic_cast<EncodingAlgorithmContentHandler*>(&writer));
}

}  // namespace copies
