#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>

#include "AgreementLog.h"
#include "RandomDocuments.h"

// What the reader and the naive decoder make of what the writer wrote, and what should come of it,
// for random documents. TAVRIN_SEED begins the run at another seed: the first document is then the
// one of that seed.

namespace agreement {
namespace {

using namespace Tavrin;

constexpr std::uint64_t kDocuments = 10000;

TypedAs typedAsOf(std::uint64_t seed) {
  return seed % 3 == 0 ? TypedAs::primitives : seed % 3 == 1 ? TypedAs::objects : TypedAs::text;
}

std::string written(std::uint64_t seed) {
  std::ostringstream stream;
  XMLWriter_FI writer;
  writer.setOutputStream(&stream);
  sendRandomDocument(seed, receiverOf(writer));
  return stream.str();
}

std::string expected(std::uint64_t seed, TypedAs typedAs) {
  ExpectedEvents events(typedAs);
  sendRandomDocument(seed, receiverOf(events));
  return events.text();
}

TEST(Agreement, OfWriterReaderAndNaiveDecoderHoldsForRandomDocuments) {
  const std::uint64_t first = firstSeed();
  for (std::uint64_t seed = first; seed < first + kDocuments; ++seed) {
    SCOPED_TRACE("TAVRIN_SEED=" + std::to_string(seed));
    const TypedAs typedAs = typedAsOf(seed);
    const std::string octets = written(seed);
    const std::string events = expected(seed, typedAs);
    ASSERT_EQ(readBack(octets, typedAs), events);
    ASSERT_EQ(decoded(octets, typedAs), events);
  }
}

/// The operation that a line of a log tells of.
std::string operationOf(const std::string& line) { return line.substr(0, line.find('(')); }

// Without this the test above could agree about nothing.
TEST(Agreement, IsAskedAboutEverythingThereIs) {
  const std::uint64_t first = firstSeed();
  std::map<std::string, int> operations;
  std::map<std::string, int> holders;
  for (std::uint64_t seed = first; seed < first + 2000; ++seed) {
    std::istringstream lines(expected(seed, typedAsOf(seed)));
    for (std::string line; std::getline(lines, line);) {
      const std::string operation = operationOf(line);
      ++operations[operation];
      for (const char* holder :
           {"HexadecimalData{", "Base64Data{", "CDATAData{", "ShortData{", "IntData{", "LongData{",
            "BooleanData{", "FloatData{", "DoubleData{"}) {
        if (line.find(holder) != std::string::npos) ++holders[operation + " " + holder];
      }
    }
  }
  for (const char* operation :
       {"startPrefixMapping", "endPrefixMapping", "startElement", "endElement", "characters",
        "processingInstruction", "startCDATA", "endCDATA", "comment", "bytes", "shorts", "ints",
        "longs", "booleans", "floats", "doubles", "octets", "object"}) {
    EXPECT_GE(operations[operation], 20) << operation;
  }
  EXPECT_EQ(operations.size(), 18U + 2);  // And the document's beginning and end.
  for (const char* holder : {"HexadecimalData{", "Base64Data{", "ShortData{", "IntData{",
                             "LongData{", "BooleanData{", "FloatData{", "DoubleData{"}) {
    EXPECT_GE(holders[std::string("startElement ") + holder], 20) << holder;
    EXPECT_GE(holders[std::string("object ") + holder], 20) << holder;
  }
  EXPECT_GE(holders["startElement CDATAData{"], 20);
  EXPECT_EQ(holders["object CDATAData{"], 0);  // Content of it is a section.
}

TEST(Agreement, IsAboutTheSameDocumentForTheSameSeed) {
  EXPECT_EQ(written(7), written(7));
  EXPECT_NE(written(7), written(8));
}

}  // namespace
}  // namespace agreement
