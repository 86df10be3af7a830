#include <EventLog.h>
#include <gtest/gtest.h>

#include <future>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

// All types at work in many threads at once, each thread with objects of its own: every thread must
// get what one alone gets. The threads come first, so that what is made once for all objects is
// made by several threads at the same time. ThreadSanitizer tells of what goes well by luck.

namespace {

constexpr std::size_t kThreads = 8;
constexpr std::size_t kRounds = 3;

// --- Documents ---

std::string manyAttributes() {
  std::string document = "<a xmlns:p='urn:p'";
  for (int i = 0; i < 100; ++i) {
    document += " p:n" + std::to_string(i) + "='" + std::to_string(i % 7) + "'";
  }
  return document + "/>";
}

std::string deep() {
  std::string starts;
  std::string ends;
  for (int i = 0; i < 200; ++i) {
    const std::string name = "e" + std::to_string(i % 5);
    starts += "<" + name + " xmlns='urn:" + std::to_string(i % 3) + "'>some longer text ";
    ends.insert(0, "</" + name + ">");
  }
  return starts + ends;
}

const std::vector<std::string>& documents() {
  static const std::vector<std::string> result = {
      "<a/>",
      "<?xml version='1.0'?><!--c--><?t d?>"
      "<x:a xmlns:x='u' xmlns='urn:d' b='1' x:b='&lt;2'>text<c><![CDATA[<&]]></c>&#x10FFFF;"
      "Grüße, 世界, мир</x:a>",
      "<!DOCTYPE a [<!ENTITY e 'of an entity'><!ELEMENT a ANY><!ATTLIST a b CDATA 'default'>]>"
      "<a>&e; and &e;</a>",
      // An encoding that the C library converts.
      "<?xml version='1.0' encoding='windows-1251'?><a b='\xEC\xE8\xF0'>\xEC\xE8\xF0</a>",
      manyAttributes(),
      deep(),
      // Malformed.
      "<a><b></a>",
      "",
  };
  return result;
}

// --- Work ---

/// What an action throws, or nothing.
template <typename Action>
std::string failureOf(Action action) {
  try {
    action();
  } catch (const Tavrin::SAXException& failure) {
    return "failed: " + failure.getMessage() + "\n";
  } catch (const Tavrin::FastInfosetException& failure) {
    return "failed: " + failure.getMessage() + "\n";
  }
  return {};
}

/// The log of a document, and how reading it ended.
std::string eventsOf(const std::string& type, const std::string& document) {
  EventLog log;
  const auto reader = Tavrin::XMLReaderFactory::createXMLReader(type);
  log.attachTo(*reader);
  if (type == "FI" || type == "X891") log.attachPrimitiveTypesTo(*reader);
  std::istringstream in(document);
  const std::string failure = failureOf([&] { reader->parse(in); });
  return log.text() + failure;
}

/// A type of writer, and that of the reader of what it writes.
struct Output {
  const char* writer;
  const char* reader;
};
constexpr Output kOutputs[] = {
    {"XML", "Expat"}, {"XML10", "XML10"}, {"FI", "FI"}, {"X891", "X891"}};

/// What a writer makes of a document, and what its reader makes of that.
std::string conversionOf(const std::string& reader, const Output& output,
                         const std::string& document) {
  std::ostringstream out;
  const auto from = Tavrin::XMLReaderFactory::createXMLReader(reader);
  const auto to = Tavrin::XMLWriterFactory::createXMLWriter(output.writer);
  to->setOutputStream(&out);
  from->setContentHandler(to.get());
  from->setProperty(Tavrin::properties::lexicalHandler,
                    static_cast<Tavrin::LexicalHandler*>(to.get()));
  std::istringstream in(document);
  const std::string failure = failureOf([&] { from->parse(in); });
  return out.str() + "\n" + failure + eventsOf(output.reader, out.str());
}

/// Typed content, written and read.
std::string typedContentOf(const std::string& type) {
  std::ostringstream out;
  const auto writer = Tavrin::XMLWriterFactory::createXMLWriter(type);
  writer->setOutputStream(&out);
  Tavrin::PrimitiveTypeContentHandler* typed =
      dynamic_cast<Tavrin::PrimitiveTypeContentHandler*>(writer.get());
  if (typed == nullptr) return "takes no typed content";
  writer->startDocument();
  writer->startElement("", "a", "a", Tavrin::AttributesImpl());
  typed->ints({1, -2, 1L << 30});
  typed->longs({1, -2, 1L << 40});
  typed->floats({0.1F, -1e30F});
  typed->doubles({0.1, 1e300});
  typed->booleans({true, false, true});
  typed->shorts({1, -1});
  typed->bytes("octets");
  writer->endElement("", "a", "a");
  writer->endDocument();
  return out.str() + "\n" + eventsOf(type, out.str());
}

/// What the factories say.
std::string namesAndFailures() {
  std::string result;
  for (const std::string& name : Tavrin::XMLReaderFactory::getTypeNames()) result += name + " ";
  for (const std::string& name : Tavrin::XMLWriterFactory::getTypeNames()) result += name + " ";
  result += failureOf([] { Tavrin::XMLReaderFactory::createXMLReader("none"); });
  result += failureOf([] { Tavrin::XMLWriterFactory::createXMLWriter("none"); });
  Tavrin::XMLReaderFactory::createXMLReader();
  Tavrin::XMLWriterFactory::createXMLWriter();
  return result;
}

/// All that there is to do, each with what came of it.
std::vector<std::string> results() {
  std::vector<std::string> all;
  for (const std::string& document : documents()) {
    for (const char* reader : {"Expat", "XML10"}) {
      all.push_back(eventsOf(reader, document));
      for (const Output& output : kOutputs) {
        all.push_back(conversionOf(reader, output, document));
      }
    }
  }
  for (const char* type : {"FI", "X891"}) all.push_back(typedContentOf(type));
  all.push_back(namesAndFailures());
  return all;
}

TEST(Concurrency, OfObjectsOfTheirOwnChangesNothing) {
  std::vector<std::vector<std::string>> ofThreads(kThreads * kRounds);
  std::promise<void> start;
  const std::shared_future<void> started = start.get_future().share();
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (std::size_t thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&ofThreads, started, thread] {
      started.wait();
      for (std::size_t round = 0; round < kRounds; ++round) {
        ofThreads[thread * kRounds + round] = results();
      }
    });
  }
  start.set_value();
  for (std::thread& thread : threads) thread.join();

  const std::vector<std::string> expected = results();
  for (std::size_t i = 0; i < ofThreads.size(); ++i) {
    SCOPED_TRACE("thread " + std::to_string(i / kRounds));
    EXPECT_EQ(expected, ofThreads[i]);
  }
}

TEST(Concurrency, IsTestedWithAllTypes) {
  // What one thread gets is more than failures.
  const std::vector<std::string> names = {"Expat", "FI", "X891", "XML10"};
  EXPECT_EQ(names, Tavrin::XMLReaderFactory::getTypeNames());
  EXPECT_EQ((std::vector<std::string>{"FI", "X891", "XML", "XML10"}),
            Tavrin::XMLWriterFactory::getTypeNames());
  for (const Output& output : kOutputs) {
    for (const char* reader : {"Expat", "XML10"}) {
      const std::string result = conversionOf(reader, output, documents()[1]);
      EXPECT_EQ(std::string::npos, result.find("failed")) << result;
      EXPECT_NE(std::string::npos, result.find("endDocument()")) << result;
    }
  }
  for (const char* type : {"FI", "X891"}) {
    const std::string result = typedContentOf(type);
    EXPECT_NE(std::string::npos, result.find("doubles(")) << result;
  }
}

/// Objects that a thread made are used, and destroyed, by another.
TEST(Concurrency, ObjectsMayMoveFromThreadToThread) {
  for (const Output& output : kOutputs) {
    std::unique_ptr<Tavrin::XMLWriter> writer;
    std::ostringstream out;
    std::thread([&] {
      writer = Tavrin::XMLWriterFactory::createXMLWriter(output.writer);
      writer->setOutputStream(&out);
    }).join();
    std::thread([&] {
      writer->startDocument();
      writer->startElement("", "a", "a", Tavrin::AttributesImpl());
    }).join();
    std::thread([&] {
      writer->endElement("", "a", "a");
      writer->endDocument();
      writer.reset();
    }).join();
    const std::string log = eventsOf(output.reader, out.str());
    // Readers of XML text have a locator.
    EXPECT_EQ(join({"startDocument()", "startElement(, a, a, [])", "endElement(, a, a)",
                    "endDocument()"}),
              log.substr(log.find("startDocument()")))
        << output.writer;
  }
}

}  // namespace
