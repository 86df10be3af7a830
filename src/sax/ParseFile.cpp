#include <Tavrin/Parse.h>

#include <cerrno>
#include <fstream>
#include <system_error>

namespace Tavrin {

namespace {

[[noreturn]] void throwCannotRead(const std::string& path, const std::error_code& reason) {
  throw SAXException("Cannot read \"" + path + "\": " + reason.message());
}

/// A directory, for one, can be opened, but not read.
std::unique_ptr<XMLReader> createReaderForFile(const std::string& path, std::istream& stream) {
  try {
    return createReaderFor(stream);
  } catch (const std::ios_base::failure& failure) {
    throwCannotRead(path, failure.code());
  }
}

}  // namespace

void parseFile(const std::string& path, std::initializer_list<HandlerSet> handlers) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throwCannotRead(path, {errno, std::generic_category()});
  const auto reader = createReaderForFile(path, stream);
  for (const HandlerSet& each : handlers) connect(*reader, each);
  reader->parse(stream);
}

}  // namespace Tavrin
