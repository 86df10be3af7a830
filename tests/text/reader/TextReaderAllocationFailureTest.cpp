#include <gtest/gtest.h>

#include <new>
#include <sstream>

#include <Allocations.h>
#include "TextReaderSupport.h"

// A reader of XML text for which there was no memory can be used again once there is.

namespace {

/// Allocates nothing.
struct Counter : Tavrin::ContentHandler {
  void setDocumentLocator(const Tavrin::Locator* locator) override {
    ++locators;
    EXPECT_EQ(1, locator->getLineNumber());
  }
  void startDocument() override { ++starts; }
  void endDocument() override { ++ends; }
  void startElement(const std::string&, const std::string&, const std::string&,
                    const Tavrin::Attributes&) override {
    ++elements;
  }

  int locators = 0;
  int starts = 0;
  int ends = 0;
  int elements = 0;
};

/// What fails for want of memory.
template <typename Call>
bool runsOutOfMemory(Call call) {
  try {
    call();
    return false;
  } catch (const std::bad_alloc&) {
    return true;
  } catch (const Tavrin::SAXException&) {
    return true;  // An event inside of expat could not be made.
  }
}

/// Lets every allocation of the first block of a document fail in turn.
/// @return how many there are
template <typename Reader>
std::size_t failEveryAllocation(const std::string& block) {
  std::size_t number = 0;
  for (;; ++number) {
    SCOPED_TRACE(number);
    Reader reader;
    Counter handler;
    reader.setContentHandler(&handler);
    bool failed = false;
    {
      const allocations::Failure failure(number);
      const bool ranOut = runsOutOfMemory([&] { reader.parse(block.data(), block.size(), false); });
      failed = failure.happened();
      EXPECT_EQ(failed, ranOut);
    }
    if (!failed) return number;
    // The document never began, or it failed: in both cases this is a new one.
    handler = {};
    EXPECT_EQ("done", parseBlocks(reader, {"<good>", "<b/>", "</good>"}));
    EXPECT_EQ(1, handler.locators);
    EXPECT_EQ(1, handler.starts);
    EXPECT_EQ(2, handler.elements);
    EXPECT_EQ(1, handler.ends);
    EXPECT_EQ("done", parseText(reader, "<good/>"));
    EXPECT_EQ(2, handler.ends);
  }
}

const std::string kElement =
    "<a name-longer-than-what-strings-hold='a value longer than what strings hold'>";

TEST(ExpatAllocationFailure, InTheSetUpLeavesTheReaderIdle) {
  EXPECT_LT(0U, failEveryAllocation<Tavrin::XMLReader_Expat>(""));
}

TEST(ExpatAllocationFailure, AnywhereInABlockLeavesTheReaderIdle) {
  EXPECT_LT(failEveryAllocation<Tavrin::XMLReader_Expat>(""),
            failEveryAllocation<Tavrin::XMLReader_Expat>(kElement));
}

TEST(XML10AllocationFailure, InTheSetUpLeavesTheReaderIdle) {
  EXPECT_LT(0U, failEveryAllocation<Tavrin::XMLReader_XML10>(""));
}

TEST(XML10AllocationFailure, AnywhereInABlockLeavesTheReaderIdle) {
  EXPECT_LT(failEveryAllocation<Tavrin::XMLReader_XML10>(""),
            failEveryAllocation<Tavrin::XMLReader_XML10>(kElement));
}

/// Lets every allocation of a document fail in turn, and reads it again with the same reader.
template <typename Reader>
void readAgainAfterEveryFailure() {
  const std::string uri(50, 'u');
  const std::string local(40, 'n');
  const std::string prefix(30, 'p');
  const std::string document = "<" + prefix + ":" + local + " xmlns:" + prefix + "='" + uri + "'/>";
  const std::string names = uri + ", " + local + ", " + prefix + ":" + local;
  const std::string expected = wholeLog(
      {"startPrefixMapping(" + prefix + ", " + uri + ")", "startElement(" + names + ", [])",
       "endElement(" + names + ")", "endPrefixMapping(" + prefix + ")"});
  for (std::size_t number = 0;; ++number) {
    SCOPED_TRACE(number);
    Reader reader;
    Counter counter;
    reader.setContentHandler(&counter);
    std::istringstream stream(document);
    bool failed = false;
    {
      const allocations::Failure failure(number);
      runsOutOfMemory([&] { reader.parse(stream); });
      failed = failure.happened();
    }
    EventLog log;
    log.attachTo(reader);
    EXPECT_EQ("done", parseText(reader, document));
    EXPECT_EQ(expected, log.text());
    if (!failed) break;
  }
}

TEST(ExpatAllocationFailure, InTheMidstOfANameIsNotSeenInTheNextDocument) {
  readAgainAfterEveryFailure<Tavrin::XMLReader_Expat>();
}

TEST(XML10AllocationFailure, InTheMidstOfANameIsNotSeenInTheNextDocument) {
  readAgainAfterEveryFailure<Tavrin::XMLReader_XML10>();
}

TEST(ExpatAllocationFailure, OfAReaderIsThatOfItsMaker) {
  for (std::size_t number = 0; number < 2; ++number) {
    const allocations::Failure failure(number);
    EXPECT_THROW(Tavrin::XMLReaderFactory::createXMLReader(), std::bad_alloc);
  }
}

}  // namespace
