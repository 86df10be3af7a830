#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "XML10ReaderSupport.h"

namespace {

using namespace Tavrin;

const char kSeed[] =
    "<?xml version='1.0' encoding='UTF-8' standalone='no'?><!DOCTYPE p:a PUBLIC 'p' 'd' ["
    "<!ENTITY e SYSTEM 'e'><!ENTITY % q SYSTEM 'q'>%q;<!ENTITY i '<b/>&e;'><!ENTITY x '&i;&i;'>"
    "<!NOTATION n PUBLIC 'n' 's'><!ENTITY u SYSTEM '../u' NDATA n><!ELEMENT a (b|c)*>"
    "<!ATTLIST p:a y (v|w) 'v' z NOTATION (n) #IMPLIED>]><?t d?><!--c-->"
    "<p:a xmlns:p='v' xmlns='w' p:y='1' y='w'>text<![CDATA[data]]>&x;&lt;&#xE4;&s;"
    "<b xmlns=''/><p:c xml:lang='en'>&e;</p:c></p:a>";
const std::map<std::string, std::string> kEntities = {
    {"d", "<!ATTLIST b x ID #IMPLIED><!ENTITY s 'S'><!ENTITY % r 'IGNORE'><![%r;[ <!x ]]>"},
    {"q", "<!ENTITY f SYSTEM 'f'>"},
    {"e", "<?xml encoding='ISO-8859-1'?>\xE4&f;<b/>"},
    {"f", "<c xmlns='f'/>"}};

/// Reads with all handlers and tells all that comes of it.
/// @param blockSize 0 for a stream
std::string told(const std::string& text, const std::map<std::string, std::string>& entities,
                 std::size_t blockSize) {
  EventLog log;
  log.entities = entities;
  XMLReader_XML10 reader;
  log.attachTo(reader);
  log.attachDeclarationsTo(reader);
  reader.setFeature(features::namespacePrefixes, true);
  std::string outcome;
  if (blockSize == 0) {
    outcome = parseText(reader, text);
  } else {
    std::vector<std::string> blocks = cutEvenly(text, blockSize);
    blocks.emplace_back();
    outcome = parseBlocks(reader, blocks);
  }
  // How much of a text comes before a failure in it is open.
  EventLog::Lines lines = log.lines();
  if (outcome != "done" && lines.size() > 1 && lines[lines.size() - 2].find("characters(") == 0) {
    lines.erase(lines.end() - 2);
  }
  return join(lines) + outcome;
}

/// Changes, cuts out or doubles a few octets.
std::string mutated(std::string text, std::mt19937& numbers) {
  const char marks[] =
      "<>&;%'\"=/!?-[]:# \n\x80\xFF"
      "ax";
  for (unsigned i = 0; i <= numbers() % 3 && !text.empty(); ++i) {
    const std::size_t at = numbers() % text.size();
    const std::size_t length = 1 + numbers() % 8;
    switch (numbers() % 4) {
      case 0:
        text[at] = marks[numbers() % (sizeof marks - 1)];
        break;
      case 1:
        text.erase(at, length);
        break;
      case 2:
        text.insert(at, text.substr(numbers() % text.size(), length));
        break;
      default:
        text.resize(at);
    }
  }
  return text;
}

TEST(XML10HostileInput, OfMutatedDocumentsAndEntitiesDoesNotDependOnBlocks) {
  std::mt19937 numbers(10);
  std::size_t failed = 0;
  constexpr std::size_t kRounds = 1000;
  for (std::size_t i = 0; i < kRounds; ++i) {
    std::string text = kSeed;
    std::map<std::string, std::string> entities = kEntities;
    if (i % 2 == 0) {
      text = mutated(text, numbers);
    } else {
      auto& entity = std::next(entities.begin(), static_cast<int>(numbers() % 4))->second;
      entity = mutated(entity, numbers);
    }
    const std::string whole = told(text, entities, 0);
    ASSERT_EQ(whole, told(text, entities, 1)) << text;
    if (whole.find("SAXParseException(") != std::string::npos) ++failed;
  }
  // Neither all nor none of the documents are well-formed.
  EXPECT_GT(failed, kRounds / 10);
  EXPECT_LT(failed, kRounds);
}

TEST(XML10HostileInput, OfEveryTruncationFails) {
  const std::string text = kSeed;
  EXPECT_EQ(std::string::npos, told(text, kEntities, 0).find("fatalError"));
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::string outcome = told(text.substr(0, i), kEntities, 0);
    ASSERT_NE(std::string::npos, outcome.find("\nfatalError(")) << i;
    ASSERT_NE(std::string::npos, outcome.find("\nSAXParseException(")) << i;
  }
}

TEST(XML10HostileInput, MayBe100000ElementsDeep) {
  struct Depth : ContentHandler {
    void startElement(const std::string&, const std::string&, const std::string&,
                      const Attributes&) override {
      deepest = std::max(deepest, ++depth);
    }
    void endElement(const std::string&, const std::string&, const std::string&) override {
      --depth;
    }
    int depth = 0;
    int deepest = 0;
  };
  constexpr int kDepth = 100000;
  std::string text;
  for (int i = 0; i < kDepth; ++i) text += "<a>";
  for (int i = 0; i < kDepth; ++i) text += "</a>";
  Depth depth;
  XMLReader_XML10 reader;
  reader.setContentHandler(&depth);
  EXPECT_EQ("done", parseText(reader, text));
  EXPECT_EQ(kDepth, depth.deepest);
  EXPECT_EQ(0, depth.depth);
}

TEST(XML10HostileInput, MayReferToAnEntityOftenAndDeclareMany) {
  struct Resolver : EntityResolver {
    std::unique_ptr<std::istream> resolveEntity(const std::string&, const std::string&) override {
      ++count;
      return std::make_unique<std::istringstream>("<b/>");
    }
    int count = 0;
  };
  constexpr int kCount = 5000;
  std::string text = "<!DOCTYPE a [<!ENTITY e SYSTEM 's'>]><a>";
  for (int i = 0; i < kCount; ++i) text += "&e;";
  Resolver resolver;
  XMLReader_XML10 reader;
  reader.setEntityResolver(&resolver);
  EXPECT_EQ("done", parseText(reader, text + "</a>"));
  EXPECT_EQ(kCount, resolver.count);
}

}  // namespace
