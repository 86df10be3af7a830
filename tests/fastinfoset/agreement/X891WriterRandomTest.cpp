#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

#include "RandomDocuments.h"
#include "WellFormedDocuments.h"
#include "X891NaiveDecoder.h"

// What the naive decoder makes of random documents, and what should come of them. TAVRIN_SEED
// begins the run at another seed.

namespace x891 {
namespace {

using namespace Tavrin;

constexpr std::uint64_t kDocuments = 5000;

void send(std::uint64_t seed, const agreement::Receiver& to) {
  Mended mended(to);
  agreement::sendRandomDocument(seed, agreement::receiverOf(mended));
}

/// Some of the names that the documents use, and texts.
ExternalVocabulary commonEntries() {
  static const char* const prefixes[] = {"p1", "p2", "p1"};
  static const char* const uris[] = {"urn:3"};
  static const char* const locals[] = {"n1", "n2", "n3", "n10", "n20"};
  static const char* const texts[] = {"a", "b", "c", "z"};
  static const char* const names[][3] = {
      {"", "", "n7"}, {"p3", "urn:7", "n8"}, {"xml", namespaces::xml, "n9"}};
  ExternalVocabulary vocabulary;
  vocabulary.prefixes = {prefixes, 3, 3};
  vocabulary.namespaceNames = {uris, 1, 1};
  vocabulary.localNames = vocabulary.otherNCNames = {locals, 5, 5};
  vocabulary.attributeValues = vocabulary.contentCharacterChunks =
      vocabulary.otherStrings = {texts, 4, 4};
  vocabulary.elementNameSurrogates = vocabulary.attributeNameSurrogates = {names, 3, 3};
  return vocabulary;
}

std::string written(std::uint64_t seed) {
  std::ostringstream stream;
  XMLWriter_X891 writer;
  writer.setOutputStream(&stream);
  const std::uint64_t lengths[] = {32, 0, 6, 1000};
  std::uint64_t length = lengths[seed % 4];
  writer.setProperty(properties::indexedAttributeValueLength, &length);
  writer.setProperty(properties::indexedChunkLength, &length);
  std::uint64_t few = 1000;
  if (seed % 5 == 0) writer.setProperty(properties::maximumTableOctets, &few);
  ExternalVocabulary vocabulary = commonEntries();
  if (seed % 3 == 0) writer.setProperty(properties::initialVocabulary, &vocabulary);
  try {
    send(seed, agreement::receiverOf(writer));
  } catch (const SAXException& e) {
    throw std::runtime_error("refused: " + e.getMessage());
  }
  return stream.str();
}

std::string expected(std::uint64_t seed) {
  Expected events;
  send(seed, agreement::receiverOf(events));
  return events.text();
}

/// The events that the decoder finds, with texts in a row as one.
std::string decoded(const std::string& octets) {
  const Decoded document = decode(octets, TypedAs::objects);
  if (document.octets != octets.size()) throw std::runtime_error("octets behind the document");
  const std::string begin = "characters(";
  std::vector<std::string> merged;
  for (const std::string& line : document.lines) {
    const bool isText = line.compare(0, begin.size(), begin) == 0;
    if (isText && !merged.empty() && merged.back().compare(0, begin.size(), begin) == 0) {
      merged.back().pop_back();
      merged.back() += line.substr(begin.size());
    } else {
      merged.push_back(line);
    }
  }
  return join(merged);
}

TEST(X891WriterAndNaiveDecoder, AgreeOnRandomDocuments) {
  const std::uint64_t first = agreement::firstSeed();
  std::size_t octets = 0;
  for (std::uint64_t seed = first; seed < first + kDocuments; ++seed) {
    SCOPED_TRACE("TAVRIN_SEED=" + std::to_string(seed));
    const std::string document = written(seed);
    octets += document.size();
    ASSERT_EQ(decoded(document), expected(seed));
  }
  EXPECT_GE(octets, 100 * kDocuments);
}

TEST(X891WriterAndNaiveDecoder, AgreeOnDeepAndWideDocuments) {
  constexpr int kMany = 20000;
  std::ostringstream stream;
  XMLWriter_X891 writer;
  writer.setOutputStream(&stream);
  writer.startDocument();
  for (int i = 0; i < kMany; ++i) {
    writer.startPrefixMapping("p", "u");
    writer.startElement("u", "a", "p:a", AttributesImpl());
  }
  AttributesImpl wide;
  for (int i = 0; i < kMany; ++i) {
    const std::string name = "n" + std::to_string(i);
    wide.addAttribute("u", name, "p:" + name, "CDATA", "");
  }
  for (int i = 0; i < kMany; ++i) {
    writer.startPrefixMapping("p" + std::to_string(i), "u" + std::to_string(i));
  }
  writer.startElement("u", "b", "p:b", wide);
  writer.endElement("u", "b", "p:b");
  for (int i = 0; i < kMany; ++i) writer.endElement("u", "a", "p:a");
  writer.endDocument();
  const std::vector<std::string> lines = decode(stream.str()).lines;
  // Each element begins and ends, and each mapping, too.
  EXPECT_EQ(lines.size(), 2U + 4U * kMany + 2U * kMany + 2U);
}

TEST(X891WriterAndNaiveDecoder, AreAboutTheSameOctetsForTheSameDocument) {
  EXPECT_EQ(written(7), written(7));
  EXPECT_NE(written(7), written(8));
}

}  // namespace
}  // namespace x891
