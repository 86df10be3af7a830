#include <Tavrin/Tavrin.h>

#include <sstream>

#include "EventLog.h"
#include "Workplace.h"

namespace {

// The keyboard registry that Debian's package xkb-data installs: 250 kB with a document type,
// comments, attributes and text in many scripts.
constexpr char kDocument[] = "/usr/share/X11/xkb/rules/evdev.xml";

EventLog::Lines eventsOf(const std::string& document) {
  EventLog log;
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader("XML10");
  log.attachTo(*reader);
  std::istringstream stream(document);
  reader->parse(stream);
  return log.lines();
}

/// The lines that tell of elements, attributes and namespaces, not of what stands between.
EventLog::Lines elementsOf(const EventLog::Lines& events) {
  EventLog::Lines elements;
  for (const std::string& line : events) {
    for (const char* operation : {"startElement(", "endElement(", "startPrefixMapping("}) {
      if (line.starts_with(operation)) elements.push_back(line);
    }
  }
  return elements;
}

class RealDocument : public Workplace {
 protected:
  void SetUp() override {
    ASSERT_TRUE(std::filesystem::exists(kDocument))
        << kDocument << " is missing: install Debian's package xkb-data";
    std::ifstream file(kDocument, std::ios::binary);
    document_.assign(std::istreambuf_iterator<char>(file), {});
    events_ = eventsOf(document_);
    ASSERT_GT(events_.size(), 10000U);
  }

  /// The octets of a copy.
  std::string copy(const std::string& from, const ToolProcess::Arguments& options = {}) {
    ToolProcess::Arguments arguments = {"convert", "--force", from, "copy.xml"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    EXPECT_EQ(run(arguments), silent(0));
    return readFile("copy.xml");
  }

  std::string document_;
  EventLog::Lines events_;
};

}  // namespace

TEST_F(RealDocument, IsCopiedEventForEvent) {
  EXPECT_EQ(join(eventsOf(copy(kDocument))), join(events_));
  EXPECT_EQ(files(), Names{"copy.xml"});
}

TEST_F(RealDocument, ComesThroughFastInfosetEventForEvent) {
  EXPECT_EQ(run({"convert", kDocument, "copy.fi"}), silent(0));
  EXPECT_EQ(join(eventsOf(copy("copy.fi"))), join(events_));
}

TEST_F(RealDocument, HasACopyWhoseCopyIsTheSame) {
  const std::string first = copy(kDocument);
  EXPECT_TRUE(copy("copy.xml") == first) << "the copy of the copy differs";
}

TEST_F(RealDocument, IsTheSameThroughPipes) {
  const Result result = run({"convert", "-"}, document_);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(result.out == copy(kDocument)) << "what came through the pipe differs";
}

TEST_F(RealDocument, KeepsItsElementsWhenItIsIndented) {
  const std::string indented = copy(kDocument, {"--indent"});
  EXPECT_EQ(join(elementsOf(eventsOf(indented))), join(elementsOf(events_)));
  EXPECT_GT(indented.size(), copy(kDocument).size());
}

TEST_F(RealDocument, HasNoDeclarationWhereNoneIsWanted) {
  const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
  const std::string with = copy(kDocument);
  ASSERT_EQ(with.substr(0, declaration.size()), declaration);
  EXPECT_TRUE(copy(kDocument, {"--no-declaration"}) == with.substr(declaration.size()));
}

TEST_F(RealDocument, IsWellFormedAndPrintsTheEventsThatAreRead) {
  EXPECT_EQ(run({"check", kDocument}), (Result{0, std::string(kDocument) + ": well-formed\n", ""}));
  EventLog log;
  log.mergeCharacters = false;
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader("XML10");
  log.attachTo(*reader);
  std::istringstream stream(document_);
  reader->parse(stream);
  for (const ToolProcess::Arguments& options : {ToolProcess::Arguments{}, {"--json"}}) {
    ToolProcess::Arguments arguments = {"events", kDocument};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Result result = run(arguments);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    // One line for every event but setDocumentLocator.
    EXPECT_EQ(static_cast<std::size_t>(std::count(result.out.begin(), result.out.end(), '\n')),
              log.eventCount() - 1);
  }
}
