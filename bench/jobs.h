#pragma once

#include <Tavrin/Tavrin.h>

#include <functional>
#include <istream>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "document.h"
#include "totals.h"

/// What benchmarks have readers and writers do, peers and our own alike.
namespace jobs {

/// Each creates what it works with, and lets it go when it is done.
Totals read(const std::string& type, std::istream& stream);
void convert(const std::string& readerType, const std::string& writerType, std::istream& stream,
             std::ostream& out);

struct Reader {
  std::string name;
  std::string writer;  ///< Whose output it reads; empty for the text of the document.
  std::function<Totals(std::istream&)> read;
  bool takesNamesApart = true;

  /// What it reads of a document.
  const std::string& inputOf(Document& document) const {
    return writer.empty() ? document.xml() : document.writtenBy(writer);
  }
};

/// All readers, first the peers with the baseline at their head.
const std::vector<Reader>& readers();

/// @throws std::runtime_error when there is none of that name
const Reader& findReader(const std::string& name);

/// A reader that is given blocks.
struct PushReader {
  std::string name;
  std::string stream;  ///< Our reader of streams of that name; empty for a peer.
  std::function<Totals(std::string_view, std::size_t blockSize)> read;

  const std::string& inputOf(Document& document) const {
    return stream.empty() ? document.xml() : findReader(stream).inputOf(document);
  }
};

/// All of them, first the peers with the baseline at their head.
const std::vector<PushReader>& pushReaders();

struct Writer {
  std::string name;
  std::function<void(Document&, std::ostream&)> write;
};

/// All writers of text, first the peers with the baseline at their head.
const std::vector<Writer>& textWriters();

/// What was written to a string.
std::string written(const Writer& writer, Document& document);

/// A job that is not like the others has no place beside them.
/// @throws std::runtime_error when the reader hears anything else than it must
void requireAgreement(const Reader& reader, const std::string& input, Document& document);
void requireAgreement(const Reader& reader, Document& document);
void requireAgreement(const PushReader& reader, const std::string& input, std::size_t blockSize,
                      Document& document);

}  // namespace jobs
