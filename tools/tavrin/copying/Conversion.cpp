#include "copying/Conversion.h"

#include <Tavrin/Factories.h>
#include <Tavrin/Identifiers.h>
#include <Tavrin/TypedContentFilter.h>
#include <Tavrin/TypedData.h>
#include <Tavrin/XMLReader.h>
#include <Tavrin/XMLWriter.h>

#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

#include "copying/EncodedStream.h"
#include "copying/Relay.h"
#include "files/EntityFiles.h"
#include "files/Failure.h"
#include "files/Input.h"
#include "files/Output.h"
#include "options/TypeChoice.h"
#include "reading/EntityDeclarations.h"
#include "reading/Losses.h"
#include "reading/Reading.h"
#include "reading/WayBack.h"
#include "writing/CanonicalWriter.h"

namespace tool {

namespace {

std::unique_ptr<Tavrin::XMLWriter> createCanonicalWriterFor(const std::string& out,
                                                            const ConversionOptions& options) {
  if (writerTypeFor(out) != kTextWriter) {
    throw Failure::usage("Canonical XML is text, and \"" + out +
                         "\" is the name of another format");
  }
  options.reading.properties.requireNamespaces("--canonical");
  return options.canonical.createWriter();
}

void checkEncoding(const std::string& type, const ConversionOptions& options) {
  const std::string option = "--encoding " + options.encoding;
  if (type != "XML10") throw Failure::usage(option + ": the writer " + type + " has no encodings");
  if (options.noDeclaration ||
      options.reading.properties.sets(Tavrin::features::xmlDeclaration, false)) {
    throw Failure::usage(option + ": without an XML declaration nothing tells the encoding");
  }
  if (!EncodingBuffer::isUsable(options.encoding)) {
    throw Failure::usage(option + ": there is no such encoding for XML text");
  }
}

void makeFolderOf(const std::string& out) {
  const std::filesystem::path folder = std::filesystem::path(out).parent_path();
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) throw Failure::system(folder.string(), error.value());
}

/// Reads the document into the relay. Of all failures the one is thrown that led to the others.
void parseInto(Relay& relay, Tavrin::XMLReader& reader, Input& input, const EntityFiles& entities) {
  try {
    parse(reader, input, &entities);
  } catch (...) {
    relay.check();
    throw;
  }
  relay.check();
}

/// Reads a document that is not to be copied.
void skip(Tavrin::XMLReader& reader, Input& input) {
  AnyAlgorithm anyAlgorithm;
  connect(reader, anyAlgorithm);
  parse(reader, input);
}

/// Copies documents from an input, each with a writer of its own.
class Copier {
 public:
  /// @param in, out names of files; that of the copy may tell the type of writer
  /// @param writer for the first document
  /// @throws Failure when there are to be typed values, and their rules cannot be read
  Copier(const ConversionOptions& options, const std::string& in, Input& input,
         const std::string& out, Output& output, std::unique_ptr<Tavrin::XMLWriter> writer)
      : options_(options),
        out_(out),
        input_(input),
        output_(output),
        entities_(in, options.reading.entityAccess()),
        writer_(std::move(writer)),
        rules_(options.typing.loadedRules()),
        isText_(!writesFastInfoset(*writer_)) {}

  /// @param reader for the first document
  void copyAll(std::unique_ptr<Tavrin::XMLReader> reader) {
    for (; reader; reader = nextReader(input_, options_.reading)) {
      const std::uint64_t number = input_.documentNumber();
      if (options_.document == 0) {
        if (isText_ && number > 1) refuseSecond();
        copy(*reader);
      } else if (number < options_.document) {
        skip(*reader, input_);
      } else {
        return copy(*reader);
      }
    }
    if (options_.document == 0) return;
    throw Failure::document(input_.name(),
                            "There is no document " + std::to_string(options_.document));
  }

 private:
  void copy(Tavrin::XMLReader& reader) {
    if (!writer_) writer_ = createWriterFor(out_, options_);
    Relay relay(*writer_, &output_, input_, entities_.resolver());
    relay.expectFrom(reader);
    EntityDeclarations declarations;
    if (relay.needsEntityDeclarations()) declarations.findIn(reader, input_);
    relay.declare(&declarations);
    WayBack wayBack(reader);
    if (relay.mayLackWayBack()) relay.watch(&wayBack);
    // In text, a value is text.
    std::optional<Tavrin::TypedContentFilter> typing;
    if (options_.typing.isWanted() && !isText_) {
      typing.emplace(rules_, options_.typing.filterOptions());
      typing->setParent(&reader);
    }
    Tavrin::XMLReader& source = typing ? *typing : reader;
    attach(source, relay, relay.takesDeclarations());
    // What cannot be read to its end is read only for the failure that comes first.
    std::optional<EncodedStream> encoded;
    if (!options_.encoding.empty()) encoded.emplace(options_.encoding, output_.stream());
    std::ostream* const stream = encoded ? &*encoded : &output_.stream();
    if (declarations.areComplete()) writer_->setOutputStream(stream);
    const Losses losses(source, input_, [this](const auto& place, const auto& message) {
      reportLoss(place, message);
    });
    parseInto(relay, source, input_, entities_);
    declarations.check();  // A file may have changed meanwhile.
    if (encoded) encoded->finish();
    checkDeclarations(reader);
    writer_.reset();  // Nothing of a document shall show in the next.
  }

  /// Canonical XML has the defaults of attributes, wherever they are declared.
  void checkDeclarations(Tavrin::XMLReader& reader) const {
    const auto* const canonical = dynamic_cast<const CanonicalWriter*>(writer_.get());
    if (canonical == nullptr || !canonical->lacksDeclarations()) return;
    if (followsStandard(reader) && reader.getFeature(Tavrin::features::isStandalone)) return;
    reportLoss(input_.name(),
               "A part of the document type was not read: it may have defaults of "
               "attributes");
  }

  void reportLoss(const std::string& place, const std::string& message) const {
    if (options_.lossy) return warn(place, message);
    throw Failure::document(place, message + " (see --entities and --lossy)");
  }

  [[noreturn]] void refuseSecond() const {
    throw Failure::document(placeIn(input_.name(), input_.documentStart() + 1),
                            "A second document begins here, and XML text holds one (see "
                            "--document)");
  }

  const ConversionOptions& options_;
  const std::string& out_;
  Input& input_;
  Output& output_;
  EntityFiles entities_;
  std::unique_ptr<Tavrin::XMLWriter> writer_;
  const Tavrin::TypingRules& rules_;
  bool isText_;
};

}  // namespace

std::unique_ptr<Tavrin::XMLWriter> createWriterFor(const std::string& out,
                                                   const ConversionOptions& options) {
  if (options.canonical.isChosen()) return createCanonicalWriterFor(out, options);
  const std::string usual = options.usualType.empty() ? writerTypeFor(out) : options.usualType;
  const std::string type = options.to.empty() ? usual : options.to;
  auto writer = createWriter(type);
  if (writesFastInfoset(*writer) &&
      options.reading.properties.sets(Tavrin::features::namespaces, false)) {
    throw Failure::usage("a copy in Fast Infoset needs the feature namespaces");
  }
  if (!options.encoding.empty()) checkEncoding(type, options);
  if (options.noDeclaration) {
    if (writesFastInfoset(*writer)) {
      throw Tavrin::SAXException("--no-declaration: the copy is not XML text");
    }
    writer->setFeature(Tavrin::features::xmlDeclaration, false);
  }
  options.reading.applyTo(*writer, !options.to.empty());
  options.reading.vocabularies.applyTo(*writer);
  return options.layout.layOut(std::move(writer));
}

void checkOptions(const std::string& out, const ConversionOptions& options) {
  createWriterFor(out, options);
  const std::string& from = options.reading.from;
  if (!from.empty()) options.reading.applyTo(*createReader(from));
}

bool writesFastInfoset(Tavrin::XMLWriter& writer) {
  return dynamic_cast<Tavrin::EncodingAlgorithmContentHandler*>(&writer) != nullptr;
}

CopiedOctets convertFile(const ConversionOptions& options, const std::string& in,
                         const std::string& out) {
  Output output(out, options.force, options.compression.choiceFor(out));
  auto writer = createWriterFor(out, options);
  Input input(in, output.isTerminal());
  auto reader = nextReader(input, options.reading);
  if (options.makesFolders) makeFolderOf(out);
  output.open();
  Copier(options, in, input, out, output, std::move(writer)).copyAll(std::move(reader));
  output.commit();
  return {input.octetsRead(), output.octetsWritten()};
}

}  // namespace tool
