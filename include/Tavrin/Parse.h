/// @file
/// Reading a document of which it is not known whether it is XML text or Fast Infoset.
#pragma once

#include <Tavrin/Connect.h>
#include <Tavrin/Export.h>
#include <Tavrin/XMLReader.h>

#include <initializer_list>
#include <istream>
#include <memory>
#include <string>

namespace Tavrin {

/// A new reader for the document that comes next in a stream: of the type "X891" for Fast Infoset,
/// and of the type "XML10" for everything else, be it a document or not.
///
/// @code
/// std::ios::sync_with_stdio(false);
/// const auto reader = createReaderFor(std::cin);
/// XMLWriter_XML10 writer;
/// writer.setOutputStream(&std::cout);
/// connect(*reader, writer);
/// reader->parse(std::cin);
/// @endcode
///
/// A document of Fast Infoset begins with the octets E0 00 (X.891, 12.6), or with one of the XML
/// declarations that state the encoding `finf` (12.3). Nothing is consumed: the stream's buffer is
/// asked for the next octet, for which it may wait, and those that it has at hand by then are
/// examined. Where there is one alone, E0 is enough. A declaration is not recognised where its
/// encoding has not arrived, as from a pipe that brings octets one by one, or where the buffer
/// keeps none, as that of `std::cin` until std::ios::sync_with_stdio(false): the reader is then
/// that of text, which refuses the encoding.
/// @throws whatever the stream's buffer throws, such as std::ios_base::failure for a directory
TAVRIN_API std::unique_ptr<XMLReader> createReaderFor(std::istream& stream);

/// As the template of this name, which applications call.
/// @param path     the name of the file
/// @param handlers those of each object
TAVRIN_API void parseFile(const std::string& path, std::initializer_list<HandlerSet> handlers);

/// Reads the document in a file, be it XML text or Fast Infoset, and reports it to objects that are
/// writers or have other handler interfaces.
///
/// @code
/// struct Problems : ErrorHandler {
///   void warning(const SAXParseException& problem) override {
///     std::cerr << problem.getMessage() << '\n';
///   }
/// } problems;
/// XMLWriter_XML10 writer;
/// writer.setOutputStream(&std::cout);
/// parseFile("menu.finf", writer, problems);
/// @endcode
///
/// Of a file of several documents in Fast Infoset the first is read. External entities are read
/// where an object is an EntityResolver.
/// @param path    the name of the file
/// @param objects each has one handler interface or more, as Tavrin::connect takes it; of several
///                that have the same one, the last is given the events
/// @throws SAXException `Cannot read "menu.finf": No such file or directory`, and likewise for what
///         is no file
/// @throws as XMLReader::parse
template <typename... Objects>
void parseFile(const std::string& path, Objects&... objects) {
  parseFile(path, std::initializer_list<HandlerSet>{objects...});
}

}  // namespace Tavrin
