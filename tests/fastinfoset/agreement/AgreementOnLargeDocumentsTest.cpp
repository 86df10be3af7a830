#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "AgreementLog.h"
#include "FIWriterProbe.h"

// Agreement about documents that are large in one direction.

namespace agreement {
namespace {

using namespace Tavrin;

/// Sends a document to a writer and to the model, and compares what comes back with the latter.
template <typename Send>
void check(Send send) {
  writer_test::Probe writer;
  ExpectedEvents expected(TypedAs::primitives);
  send(writer);
  send(expected);
  const std::string events = expected.text();
  // Not EXPECT_EQ: it would print them.
  EXPECT_TRUE(readBack(writer.output.text(), TypedAs::primitives) == events);
  EXPECT_TRUE(decoded(writer.output.text(), TypedAs::primitives) == events);
}

TEST(AgreementOnLargeDocuments, HoldsForDepth) {
  check([](auto& to) {
    constexpr int kDepth = 20000;
    const AttributesImpl none = attributes({});
    const AttributesImpl one = attributes({{"a", "1"}});
    const auto name = [](int depth) { return "n" + std::to_string(depth % 100); };
    to.startDocument();
    for (int i = 0; i < kDepth; ++i) to.startElement("", name(i), name(i), i % 3 == 0 ? one : none);
    for (int i = kDepth; i-- > 0;) {
      if (i % 5 == 0) to.characters("text");
      to.endElement("", name(i), name(i));
    }
    to.endDocument();
  });
}

TEST(AgreementOnLargeDocuments, HoldsForWidth) {
  check([](auto& to) {
    AttributesImpl many;
    for (int i = 0; i < 9000; ++i) {
      const std::string name = "a" + std::to_string(i);
      many.addAttribute("", name, name, "CDATA", std::to_string(i % 8500));
    }
    to.startDocument();
    to.startElement("", "r", "r", many);
    for (int i = 0; i < 9000; ++i) {
      const std::string name = "n" + std::to_string(i);
      to.startElement("", name, name, attributes({}));
      to.endElement("", name, name);
      to.comment(std::to_string(i));
    }
    to.startElement("", "r", "r", many);  // Indexes of every form now.
    to.endElement("", "r", "r");
    for (int i = 0; i < 9000; i += 7) {
      const std::string name = "n" + std::to_string(i);
      to.processingInstruction(name, std::to_string(i));
      to.startElement("", name, name, attributes({{"a8999", "8499"}}));
      to.endElement("", name, name);
    }
    to.endElement("", "r", "r");
    to.endDocument();
  });
}

TEST(AgreementOnLargeDocuments, HoldsForManyDeclarations) {
  check([](auto& to) {
    to.startDocument();
    for (int i = 0; i < 9000; ++i) {
      to.startPrefixMapping("p" + std::to_string(i), "urn:" + std::to_string(i % 8400));
    }
    to.startElement("urn:8399", "r", "p8999:r", attributes({}));
    for (int i = 0; i < 8400; i += 11) {
      const std::string uri = "urn:" + std::to_string(i);
      const std::string qName = "p" + std::to_string(i) + ":e";
      to.startPrefixMapping("p" + std::to_string(i), uri);
      to.startElement(uri, "e", qName, namedAttributes({{uri, "e", qName, ""}}));
      to.endElement(uri, "e", qName);
    }
    to.endElement("urn:8399", "r", "p8999:r");
    to.endDocument();
  });
}

TEST(AgreementOnLargeDocuments, HoldsForLongStrings) {
  check([](auto& to) {
    const std::string text = writer_test::textOf(300000);
    to.startDocument();
    to.comment(text);
    to.processingInstruction(text, text);
    to.startPrefixMapping(text, text);
    to.startElement(text, text, text + ":" + text, attributes({{text, text}}));
    to.characters(text);
    to.startElement(text, text, text + ":" + text, attributes({{text, text}}));
    to.startCDATA();
    to.characters(text);
    to.endCDATA();
    to.bytes(text);
    to.longs(std::vector<long>(20000, -1));
    to.booleans(std::vector<bool>(100001, true));
    to.endElement(text, text, text + ":" + text);
    to.endElement(text, text, text + ":" + text);
    to.endDocument();
  });
}

}  // namespace
}  // namespace agreement
