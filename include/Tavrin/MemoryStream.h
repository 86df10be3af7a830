/// @file
/// A stream over octets in memory.
#pragma once

#include <Tavrin/Export.h>

#include <istream>
#include <memory>
#include <string_view>

namespace Tavrin {

/// A stream to read a document from memory without a copy of it, as std::istringstream would make.
///
/// @code
/// const std::string document = "<menu><dish>Fish</dish></menu>";
/// XMLWriter_X891 writer;
/// writer.setOutputStream(&std::cout);
/// XMLReader_XML10 reader;
/// connect(reader, writer);
/// MemoryStream stream(document);
/// reader.parse(stream);
/// @endcode
///
/// The octets are not owned, and must neither change nor end as long as the stream is read. As with
/// any stream, documents of Fast Infoset that follow each other are read one by one, `tellg` tells
/// how far reading has come, and `seekg` goes back. An EntityResolver may return such a stream.
class TAVRIN_API MemoryStream : public std::istream {
 public:
  /// @param octets what the stream holds, from its first octet on
  explicit MemoryStream(std::string_view octets);
  ~MemoryStream() override;

 private:
  class TAVRIN_LOCAL Buffer;
  const std::unique_ptr<Buffer> buffer_;
};

}  // namespace Tavrin
