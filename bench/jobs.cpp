#include "jobs.h"

#include <set>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "peers.h"
#include "streams.h"

namespace jobs {

using Tavrin::XMLReaderFactory;
using Tavrin::XMLWriterFactory;

Totals read(const std::string& type, std::istream& stream) {
  const auto reader = XMLReaderFactory::createXMLReader(type);
  Counter counter;
  reader->setContentHandler(&counter);
  reader->parse(stream);
  return counter.totals;
}

void convert(const std::string& readerType, const std::string& writerType, std::istream& stream,
             std::ostream& out) {
  const auto reader = XMLReaderFactory::createXMLReader(readerType);
  const auto writer = XMLWriterFactory::createXMLWriter(writerType);
  writer->setOutputStream(&out);
  reader->setContentHandler(writer.get());
  reader->parse(stream);
}

const std::vector<Reader>& readers() {
  static const std::vector<Reader> all = [] {
    std::vector<Reader> list;
    for (peers::Reader& peer : peers::readers()) {
      list.push_back({std::move(peer.name), "", std::move(peer.read), peer.takesNamesApart});
    }
    for (const auto& [type, writer] :
         {std::pair("Expat", ""), {"XML10", ""}, {"FI", "FI"}, {"X891", "X891"}}) {
      list.push_back({type, writer, [type = std::string(type)](std::istream& stream) {
                        return read(type, stream);
                      }});
    }
    return list;
  }();
  return all;
}

const Reader& findReader(const std::string& name) {
  for (const Reader& reader : readers()) {
    if (reader.name == name) return reader;
  }
  throw std::runtime_error("there is no reader " + name);
}

const std::vector<PushReader>& pushReaders() {
  static const std::vector<PushReader> all = [] {
    std::vector<PushReader> list;
    for (peers::PushReader& peer : peers::pushReaders()) {
      list.push_back({std::move(peer.name), "", std::move(peer.read)});
    }
    for (const char* type : {"XML10", "X891"}) {
      list.push_back({type, type, [type](std::string_view octets, std::size_t blockSize) {
                        const auto reader = XMLReaderFactory::createXMLReader(type);
                        Counter counter;
                        reader->setContentHandler(&counter);
                        peers::forEachBlock(octets, blockSize,
                                            [&](std::string_view block, bool isFinal) {
                                              reader->parse(block.data(), block.size(), isFinal);
                                            });
                        return counter.totals;
                      }});
    }
    return list;
  }();
  return all;
}

const std::vector<Writer>& textWriters() {
  static const std::vector<Writer> all = [] {
    std::vector<Writer> list;
    for (peers::Writer& peer : peers::writers()) {
      list.push_back({std::move(peer.name),
                      [create = std::move(peer.create)](Document& document, std::ostream& out) {
                        document.events().play(*create(out));
                      }});
    }
    for (const char* type : {"XML", "XML10"}) {
      list.push_back({type, [type = std::string(type)](Document& document, std::ostream& out) {
                        document.write(type, out);
                      }});
    }
    return list;
  }();
  return all;
}

std::string written(const Writer& writer, Document& document) {
  std::ostringstream out;
  writer.write(document, out);
  return std::move(out).str();
}

namespace {

/// @param takesNamesApart whether the reader does
void requireAgreement(const std::string& reader, const Totals& heard, const Totals& expected,
                      bool takesNamesApart) {
  if (takesNamesApart ? heard == expected : heard.sameCounts(expected)) return;
  const auto describe = [](const Totals& totals) {
    std::ostringstream out;
    out << totals.elements << " elements, " << totals.attributes << " attributes, "
        << totals.elementNameOctets << '/' << totals.attributeNameOctets << '/'
        << totals.valueOctets << '/' << totals.textOctets
        << " octets of names of elements/of attributes/values/text";
    return out.str();
  };
  throw std::runtime_error(reader + " hears " + describe(heard) + " instead of " +
                           describe(expected));
}

}  // namespace

void requireAgreement(const Reader& reader, const std::string& input, Document& document) {
  streams::MemoryStream stream(input);
  requireAgreement(reader.name, reader.read(stream), document.totals(), reader.takesNamesApart);
}

void requireAgreement(const PushReader& reader, const std::string& input, std::size_t blockSize,
                      Document& document) {
  requireAgreement(reader.name, reader.read(input, blockSize), document.totals(), true);
}

void requireAgreement(const Reader& reader, Document& document) {
  static std::set<std::pair<const Document*, std::string>> done;
  if (done.contains({&document, reader.name})) return;
  requireAgreement(reader, reader.inputOf(document), document);
  done.emplace(&document, reader.name);
}

}  // namespace jobs
