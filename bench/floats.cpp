// Many numbers as typed content, beside the same numbers as text.

#include <Tavrin/Tavrin.h>
#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <vector>

#include "groups.h"
#include "jobs.h"
#include "sources.h"
#include "streams.h"

namespace groups {

namespace {

using Numbers = std::vector<float>;

// --- Reading ---

/// Passes typed content on.
class TypedFloats : public Tavrin::PrimitiveTypeContentHandler {
 public:
  explicit TypedFloats(std::function<void(const Numbers&)> take) : take_(std::move(take)) {}
  void floats(const Numbers& data) override { take_(data); }

 private:
  std::function<void(const Numbers&)> take_;
};

void readTyped(const std::string& type, std::istream& stream,
               Tavrin::PrimitiveTypeContentHandler& handler) {
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader(type);
  reader->setProperty(Tavrin::properties::primitiveTypeContentHandler, &handler);
  reader->parse(stream);
}

/// Takes text apart, number by number.
template <typename Take>
void readText(const char* text, Take take) {
  for (char* end = nullptr;; text = end) {
    const float number = std::strtof(text, &end);
    if (end == text) return;
    take(number);
  }
}

void checkNumbers(const std::string& type, Document& mesh, const char* text) {
  Numbers typed;
  TypedFloats handler(
      [&](const Numbers& data) { typed.insert(typed.end(), data.begin(), data.end()); });
  streams::MemoryStream stream(mesh.writtenBy(type));
  readTyped(type, stream, handler);
  Numbers fromText;
  readText(text, [&](float number) { fromText.push_back(number); });
  if (typed != mesh.numbers() || fromText != mesh.numbers()) {
    throw std::runtime_error("the numbers do not come back");
  }
}

Comparison compareReading(const std::string& type, const DocumentPointer& mesh) {
  const std::string& input = mesh->writtenBy(type);
  const char* const text = mesh->xml().c_str() + mesh->xml().find("<mesh>") + sizeof "<mesh>" - 1;
  checkNumbers(type, *mesh, text);
  return {fromStream(input,
                     [type](std::istream& stream) {
                       TypedFloats handler(
                           [](const Numbers& data) { benchmark::DoNotOptimize(data.data()); });
                       readTyped(type, stream, handler);
                     }),
          [text] { readText(text, [](float number) { benchmark::DoNotOptimize(number); }); },
          input.size()};
}

// --- Writing ---

void writeText(const Numbers& numbers) {
  std::string text;
  std::array<char, 32> digits;
  for (const float number : numbers) {
    if (!text.empty()) text += ' ';
    text.append(digits.data(),
                std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
  }
  Tavrin::XMLWriter_XML writer;
  writer.setOutputStream(&streams::null());
  writer.startDocument();
  writer.startElement("", "mesh", "mesh", Tavrin::AttributesImpl());
  writer.characters(text);
  writer.endElement("", "mesh", "mesh");
  writer.endDocument();
}

Comparison compareWriting(const std::string& type, const DocumentPointer& mesh) {
  jobs::requireAgreement(jobs::findReader(type), *mesh);
  return {[type, mesh] { mesh->write(type, streams::null()); },
          [mesh] { writeText(mesh->numbers()); }, mesh->writtenBy(type).size()};
}

}  // namespace

void addFloats(const Corpus& corpus) {
  const DocumentPointer mesh = corpus.mesh;
  for (const std::string type : {"FI", "X891"}) {
    add("floats-read/mesh/" + type, mesh, [=] { return compareReading(type, mesh); });
    add("floats-write/mesh/" + type, mesh, [=] { return compareWriting(type, mesh); });
  }
}

}  // namespace groups
