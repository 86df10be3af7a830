#include <Tavrin/Tavrin.h>

#include <gtest/gtest.h>

#include <new>
#include <sstream>
#include <string>

#include <Allocations.h>

// What writers keep of namespace declarations where memory runs short. The writers of XML text are
// here, too, for this program can make allocations fail.

namespace {

using namespace Tavrin;

// Longer than what a string holds without memory of its own.
const std::string kPrefix = "a-prefix-that-needs-some-memory-of-its-own";
const std::string kURI = "urn:a-namespace-name-that-needs-some-memory-of-its-own";

struct Written {
  std::string octets;
  bool failed = false;
};

/// A document of one element. In front of it, a number of declarations are made, and one more of
/// which an allocation fails.
/// @param repeats whether that is made again, with memory
Written write(const char* type, int declarations, std::size_t failing, bool repeats) {
  std::ostringstream stream;
  const auto writer = XMLWriterFactory::createXMLWriter(type);
  writer->setOutputStream(&stream);
  writer->startDocument();
  for (int i = 0; i < declarations; ++i) {
    writer->startPrefixMapping("p" + std::to_string(i), "urn:x");
  }
  Written result;
  allocations::failAt(failing);
  try {
    if (failing > 0) writer->startPrefixMapping(kPrefix, kURI);
  } catch (const std::bad_alloc&) {
    result.failed = true;
  }
  allocations::failAt(0);
  if (repeats) writer->startPrefixMapping(kPrefix, kURI);
  writer->startElement("", "r", "r", AttributesImpl());
  writer->endElement("", "r", "r");
  writer->endDocument();
  result.octets = stream.str();
  return result;
}

TEST(WriterAllocations, ThatFailLeaveTheDeclarationsAsTheyWere) {
  for (const char* type : {"XML", "XML10", "FI", "X891"}) {
    for (int declarations = 0; declarations < 5; ++declarations) {
      const std::string without = write(type, declarations, 0, false).octets;
      const std::string with = write(type, declarations, 0, true).octets;
      std::size_t failures = 0;
      for (;; ++failures) {
        SCOPED_TRACE(std::string(type) + ", allocation " + std::to_string(failures + 1) +
                     " behind " + std::to_string(declarations) + " declarations");
        const Written written = write(type, declarations, failures + 1, false);
        if (!written.failed) {
          EXPECT_EQ(written.octets, with);
          break;
        }
        EXPECT_EQ(written.octets, without);
        EXPECT_EQ(write(type, declarations, failures + 1, true).octets, with);
      }
      EXPECT_GE(failures, 2U) << type;
    }
  }
}

}  // namespace
