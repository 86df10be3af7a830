#pragma once

#include <Tavrin/Tavrin.h>

#include <gtest/gtest.h>

#include <istream>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "WhatIsThrown.h"

/// Documents that are copied from a reader to a writer, for tests of how the two are put together.
namespace copies {

/// The names of the library's types.
inline const std::vector<std::string> kReaders = {"Expat", "XML10", "FI", "X891"};
inline const std::vector<std::string> kWriters = {"XML", "XML10", "FI", "X891"};

inline bool isFastInfoset(const std::string& type) { return type == "FI" || type == "X891"; }

/// Documents for the readers of a type, with events of all kinds that it has. In Fast Infoset there
/// is typed content of all kinds, hexadecimal and base64 among it.
std::vector<std::string> documentsFor(const std::string& readerType);

/// How a parse ended, and what was written by then.
struct Copy {
  std::string outcome;
  std::string written;

  bool operator==(const Copy&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Copy& copy);

/// Sets the handlers of a reader one by one, so that its events go to a writer.
void connectBySetters(Tavrin::XMLReader& reader, Tavrin::XMLWriter& writer);

/// What a writer makes of a document.
/// @param parse is given the reader, the writer and the document's stream
template <typename Parse>
Copy copyOf(const std::string& document, const std::string& readerType,
            const std::string& writerType, Parse parse) {
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader(readerType);
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter(writerType);
  std::ostringstream written;
  writer->setOutputStream(&written);
  std::istringstream stream(document);
  const std::string outcome = thrown([&] { parse(*reader, *writer, stream); });
  return {outcome, written.str()};
}

/// Expects that each document that is copied in some way, by each pair of types, is what it is when
/// the handlers are set one by one.
/// @param parse is given the reader, the writer and the document's stream
template <typename Parse>
void expectCopies(Parse parse) {
  const auto plain = [](auto& reader, auto& writer, std::istream& stream) {
    connectBySetters(reader, writer);
    reader.parse(stream);
  };
  for (const std::string& reader : kReaders) {
    for (const std::string& document : documentsFor(reader)) {
      for (const std::string& writer : kWriters) {
        EXPECT_EQ(copyOf(document, reader, writer, plain), copyOf(document, reader, writer, parse))
            << reader << " to " << writer;
      }
    }
  }
}

}  // namespace copies
