#include <Tavrin/XMLReader.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "commands/Commands.h"
#include "comparing/EventQueue.h"
#include "comparing/EventRecorder.h"
#include "files/EntityFiles.h"
#include "files/Input.h"
#include "files/Output.h"
#include "options/ReadingOptions.h"
#include "printing/EventPrinter.h"
#include "printing/Text.h"
#include "reading/Losses.h"
#include "reading/Reading.h"

namespace tool {

namespace {

constexpr char kHelp[] =
    R"(Compares two documents event by event, whatever their encodings.

Usage: tavrin diff [OPTIONS] A B

  A, B              the documents; one of them may be -, standard input

Options:
  --lexical         also compare the borders of CDATA sections, and document types but for
                    their declarations
%options%
  --from-a TYPE     the type of reader of A, instead of going by its first octets
  --from-b TYPE     the type of reader of B
  -h, --help        print this help

Nothing is printed if the documents are the same. Otherwise the first difference is: what
comes there in A, and what comes there in B, in the form of tavrin events, and where it begins.
A place is a line and a column in XML text, in Fast Infoset the number of an octet:

  a.xml:2:4: startElement("", "b", "b", [])
  b.fi: octet 9: endElement("", "a", "a")

Where one document has come to its end, the line says so. Of long texts the part around the
first difference is shown, with ... for what is left out.

Compared are prefix mappings, elements, attributes in their order, text, comments, processing
instructions, and references to entities that were not read. Text is the same in whatever
pieces, CDATA sections or typed values it comes; a typed value of an attribute is the same as
its text. The content of an encoding algorithm that is not known is compared octet for octet,
with the URI that names the algorithm.

In Fast Infoset, documents may follow each other in one file. They are compared one by one, the
first with the first, and a place in a later one tells its number. Where only one file has another
document, that is the difference:

  a.fi: end of the document
  b.fi: octet 72: document 2 begins

Document types, with the comments in them, and CDATA sections are left out because Fast Infoset
does not keep them as they are, and so are the types of attributes. Instructions in the internal
subset are compared. Not looked at is what a document states of its version of XML, of its encoding
and of being standalone.

%limits%

The exit status is 0 if the documents are the same, and 1 if they differ, if one of them cannot be
read, or if nobody can tell: an attribute value refers to an entity that is not read. Whatever the
other document has there, the reference may stand for it or not.

Example:
  tavrin diff in.xml in.fi
)";

// Of a text longer than this only a part is shown: so much before and behind the difference.
constexpr std::size_t kLongText = 80;
constexpr std::size_t kShownBefore = 30;
constexpr std::size_t kShownBehind = 50;
constexpr std::size_t kLongestCharacter = 4;

struct Options {
  std::string a;
  std::string b;
  std::string fromA;
  std::string fromB;
  bool lexical = false;
  ReadingOptions reading;
};

/// A file of documents whose events come from a thread of their own.
class Documents {
 public:
  Documents(const std::string& name, const std::string& from, const Options& options, bool quiet)
      : input_(name, quiet),
        options_(options.reading),
        lexical_(options.lexical),
        entities_(name, options.reading.entityAccess()) {
    options_.from = from;
    reader_ = nextReader(input_, options_);
  }
  ~Documents() {
    queue_.stop();
    if (thread_.joinable()) thread_.join();
  }
  Documents(const Documents&) = delete;
  Documents& operator=(const Documents&) = delete;

  const std::string& name() const { return input_.name(); }
  bool hasProgress() const { return input_.hasProgress(); }
  /// How many documents there are. Call it after the last event.
  std::uint64_t number() const { return input_.documentNumber(); }

  void start() {
    try {
      thread_ = std::thread([this] { run(); });
    } catch (const std::system_error& error) {
      throw Failure::usage("no thread can be started: " + error.code().message());
    }
  }

  /// The next event, valid until the next call; null when there is none.
  const Event* next() {
    if (position_ == batch_.size()) {
      position_ = 0;
      batch_.clear();
      if (!queue_.pop(batch_)) return nullptr;
    }
    return &batch_[position_++];
  }

  /// @throws what ended the reading before the last document did. Call it after the last event
  void check() const {
    if (queue_.failure()) std::rethrow_exception(queue_.failure());
  }

 private:
  void run() {
    std::exception_ptr failure;
    try {
      for (; reader_; reader_ = nextReader(input_, options_)) read();
    } catch (...) {
      failure = std::current_exception();
    }
    queue_.close(failure);
  }

  void read() {
    EventRecorder recorder(queue_, input_, lexical_, entities_.resolver());
    recorder.attachTo(*reader_);
    const Losses losses(*reader_, input_, [](const auto& place, const auto& message) {
      throw Failure::document(place, message + ", and cannot be compared (see --entities)");
    });
    try {
      parse(*reader_, input_, &entities_);
    } catch (...) {
      recorder.check();
      recorder.finish(true);
      throw;
    }
    recorder.finish(false);
  }

  Input input_;
  ReadingOptions options_;
  bool lexical_;
  EntityFiles entities_;
  std::unique_ptr<Tavrin::XMLReader> reader_;
  EventQueue queue_;
  EventBatch batch_;
  std::size_t position_ = 0;
  std::thread thread_;
};

// --- Comparing ---

/// The type of an attribute is not looked at: only a document type tells it.
bool isSame(const Tavrin::AttributesImpl::Attribute& a,
            const Tavrin::AttributesImpl::Attribute& b) {
  return std::tie(a.uri, a.localName, a.qName, a.value) ==
         std::tie(b.uri, b.localName, b.qName, b.value);
}

/// The number of an encoding algorithm is a matter of the document's table where a URI names it.
bool isSame(Event::Kind kind, const std::vector<std::string>& a,
            const std::vector<std::string>& b) {
  if (kind != Event::Kind::Octets || a[0].empty()) return a == b;
  return a[0] == b[0] && a[2] == b[2];
}

bool isSame(const Event& a, const Event& b) {
  if (a.kind != b.kind) return false;
  if (a.isCutOff || b.isCutOff) {
    // As far as it goes. What would have followed is a matter of the failure.
    return a.arguments[0].starts_with(b.arguments[0]) || b.arguments[0].starts_with(a.arguments[0]);
  }
  return isSame(a.kind, a.arguments, b.arguments) &&
         std::equal(a.attributes.begin(), a.attributes.end(), b.attributes.begin(),
                    b.attributes.end(), [](const auto& x, const auto& y) { return isSame(x, y); });
}

// --- Printing ---

bool isText(Event::Kind kind) {
  return kind == Event::Kind::Characters || kind == Event::Kind::Comment;
}

/// The index of the first octet that the texts of two events do not have in common.
std::size_t firstDifference(const Event& event, const Event* other) {
  if (other == nullptr || event.kind != other->kind) return 0;
  const std::string& a = event.arguments[0];
  const std::string& b = other->arguments[0];
  const auto end = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first;
  return static_cast<std::size_t>(end - a.begin());
}

bool isWithinCharacter(const std::string& text, std::size_t index) {
  return index < text.size() && (static_cast<unsigned char>(text[index]) & 0xC0U) == 0x80;
}

/// A text in quotes, or of a long one the part around an index.
std::string excerpt(const std::string& text, std::size_t index) {
  std::size_t begin = 0;
  std::size_t end = text.size();
  if (text.size() > kLongText) {
    begin = index - std::min(index, kShownBefore);
    end = std::min(text.size(), index + kShownBehind);
    // Characters stay whole.
    for (std::size_t i = 1; i < kLongestCharacter && isWithinCharacter(text, begin); ++i) --begin;
    for (std::size_t i = 1; i < kLongestCharacter && isWithinCharacter(text, end); ++i) ++end;
  }
  std::string result = begin > 0 ? "..." : "";
  appendQuoted(result, std::string_view(text).substr(begin, end - begin));
  return end < text.size() ? result + "..." : result;
}

void print(const Event& event, EventPrinter& printer) {
  const std::vector<std::string>& arguments = event.arguments;
  switch (event.kind) {
    case Event::Kind::StartPrefixMapping:
      return printer.startPrefixMapping(arguments[0], arguments[1]);
    case Event::Kind::StartElement: {
      Tavrin::AttributesImpl attributes;
      for (const auto& [uri, localName, qName, type, value] : event.attributes) {
        attributes.addAttribute(uri, localName, qName, type, value);
      }
      return printer.startElement(arguments[0], arguments[1], arguments[2], attributes);
    }
    case Event::Kind::EndElement:
      return printer.endElement(arguments[0], arguments[1], arguments[2]);
    case Event::Kind::Characters:
      return printer.characters(arguments[0]);
    case Event::Kind::Octets:
      return printer.octets(arguments[0], std::stoi(arguments[1]), arguments[2]);
    case Event::Kind::ProcessingInstruction:
      return printer.processingInstruction(arguments[0], arguments[1]);
    case Event::Kind::Comment:
      return printer.comment(arguments[0]);
    case Event::Kind::SkippedEntity:
      return printer.skippedEntity(arguments[0]);
    case Event::Kind::ResolveEntity:
      printer.resolveEntity(arguments[0], arguments[1]);
      return;
    case Event::Kind::StartDTD:
      return printer.startDTD(arguments[0], arguments[1], arguments[2]);
    case Event::Kind::EndDTD:
      return printer.endDTD();
    case Event::Kind::StartCDATA:
      return printer.startCDATA();
    case Event::Kind::EndCDATA:
      return printer.endCDATA();
    case Event::Kind::Border:
      return;  // No event of a document.
  }
}

/// Where an event begins, as a message tells it.
std::string placeOf(const Documents& documents, const Event::Position& position) {
  const std::string& name = documents.name();
  const std::string place = position.line > 0 ? placeIn(name, position.line, position.column)
                                              : placeIn(name, position.octet);
  const std::string number = " (document " + std::to_string(position.document) + ")";
  return escaped(place + position.entity + (position.document > 1 ? number : ""));
}

std::string describeEnd(const Documents& documents) {
  const std::string number = std::to_string(documents.number());
  return escaped(documents.name()) + ": end of " +
         (documents.number() > 1 ? "document " + number + ", the last" : "the document") + "\n";
}

std::string describeBorder(const Documents& documents, const Event::Position& position) {
  return escaped(placeIn(documents.name(), position.octet)) + ": document " +
         std::to_string(position.document) + " begins\n";
}

/// One side of a difference.
std::string describe(const Documents& documents, const Event* event, const Event* other) {
  if (event == nullptr) return describeEnd(documents);
  if (event->kind == Event::Kind::Border) return describeBorder(documents, event->position);
  std::string line = placeOf(documents, event->position) + ": ";
  if (isText(event->kind)) {
    line += event->kind == Event::Kind::Comment ? "comment(" : "characters(";
    return line + excerpt(event->arguments[0], firstDifference(*event, other)) + ")\n";
  }
  EventPrinter printer([&line](const std::string& text) { line += text; },
                       EventPrinter::Format::Text);
  print(*event, printer);
  return line;
}

/// What a comparison came to.
struct Outcome {
  std::vector<Failure> failures;  // Of the documents that cannot be read up to a difference.
  std::string difference;         // Empty where the documents are the same.
};

void collectFailure(const Documents& documents, const Event* last, Outcome& outcome) {
  if (last) return;
  try {
    documents.check();
  } catch (const Failure& failure) {
    outcome.failures.push_back(failure);
  }
}

Outcome compare(const Options& options) {
  Documents a(options.a, options.fromA, options, false);
  // There is room for one progress bar.
  Documents b(options.b, options.fromB, options, a.hasProgress());
  a.start();
  b.start();
  for (;;) {
    const Event* inA = a.next();
    const Event* inB = b.next();
    if (inA && inB && isSame(*inA, *inB)) continue;
    Outcome outcome;
    collectFailure(a, inA, outcome);
    collectFailure(b, inB, outcome);
    if (outcome.failures.empty() && (inA || inB)) {
      outcome.difference = describe(a, inA, inB) + describe(b, inB, inA);
    }
    return outcome;
  }
}

ExitStatus diff(const Options& options) {
  if (options.a == "-" && options.b == "-") {
    throw Failure::usage("only one of the documents can be standard input");
  }
  const Outcome outcome = compare(options);
  // By now a progress bar is gone.
  ExitStatus worst = outcome.difference.empty() ? Done : DocumentFailed;
  for (const Failure& failure : outcome.failures) {
    failure.report();
    worst = std::max(worst, failure.status());
  }
  Output output("-", false);
  output.open();
  output.stream() << outcome.difference;
  output.commit();
  return worst;
}

}  // namespace

Command makeDiff(CLI::App& app) {
  CLI::App* command = addReadingCommand(app, "diff", kHelp);
  const auto options = std::make_shared<Options>();
  command->add_option("A", options->a)->required();
  command->add_option("B", options->b)->required();
  command->add_flag("--lexical", options->lexical);
  addReadingOptions(*command, options->reading);
  command->add_option("--from-a", options->fromA)->type_name("TYPE");
  command->add_option("--from-b", options->fromB)->type_name("TYPE");
  return {command, [options] { return diff(*options); }};
}

}  // namespace tool
