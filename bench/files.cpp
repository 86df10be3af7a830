#include "files.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace files {

namespace {

void write(const std::filesystem::path& path, const std::string& octets) {
  std::ofstream out(path, std::ios::binary);
  out << octets << std::flush;
  if (!out) throw std::runtime_error("cannot write " + path.string());
}

void writeForms(Document& document, const std::filesystem::path& directory,
                const std::string& name) {
  write(directory / (name + ".xml"), document.xml());
  write(directory / (name + ".fi"), document.writtenBy("X891"));
}

}  // namespace

void writeAll(const Corpus& corpus, const std::string& directory) {
  std::filesystem::create_directories(directory);
  for (const DocumentPointer& document : corpus.documents) {
    writeForms(*document, directory, document->name());
  }
  writeForms(*corpus.small, directory, "small");
  writeForms(*corpus.messages, directory, corpus.messages->name());
}

}  // namespace files
