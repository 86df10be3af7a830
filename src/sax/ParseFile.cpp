#include <Tavrin/Parse.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace Tavrin {

namespace {

[[noreturn]] void throwCannotRead(const std::string& path, const std::error_code& reason) {
  throw SAXException("Cannot read \"" + path + "\": " + reason.message());
}

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
  // It can be opened, but not read, which libc++ takes for the end of a file.
  std::error_code unknown;
  if (std::filesystem::is_directory(path, unknown)) {
    throwCannotRead(path, std::make_error_code(std::errc::is_a_directory));
  }
  const auto reader = createReaderForFile(path, stream);
  for (const HandlerSet& each : handlers) connect(*reader, each);
  reader->parse(stream);
}

}  // namespace Tavrin
