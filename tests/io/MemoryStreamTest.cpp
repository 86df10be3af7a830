#include <Tavrin/MemoryStream.h>
#include <Tavrin/Tavrin.h>

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <string_view>

#include "EventLog.h"
#include "HexOctets.h"

namespace {

using namespace Tavrin;

std::string rest(std::istream& stream) {
  return {std::istreambuf_iterator<char>(stream.rdbuf()), {}};
}

TEST(MemoryStream, GivesItsOctetsAndEnds) {
  const std::string all = octets("00 'text' 0A FF 1A 00");
  MemoryStream stream(all);
  EXPECT_TRUE(stream.good());
  EXPECT_EQ(all, rest(stream));
  EXPECT_EQ(-1, stream.get());
  EXPECT_TRUE(stream.eof());
}

TEST(MemoryStream, MayBeEmpty) {
  for (const std::string_view none : {std::string_view(), std::string_view("")}) {
    MemoryStream stream(none);
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(0, stream.tellg());
    EXPECT_EQ(-1, stream.get());
    EXPECT_TRUE(stream.eof());
  }
}

TEST(MemoryStream, HoldsNoCopy) {
  std::string text = "abc";
  MemoryStream stream(text);
  text[2] = 'd';
  EXPECT_EQ("abd", rest(stream));
}

TEST(MemoryStream, HoldsAPartOfALargerText) {
  const std::string text = "abcdef";
  MemoryStream stream(std::string_view(text).substr(1, 3));
  EXPECT_EQ("bcd", rest(stream));
}

TEST(MemoryStream, LetsNothingBeWrittenBack) {
  const std::string text = "ab";
  MemoryStream stream(text);
  stream.get();
  EXPECT_EQ(-1, stream.rdbuf()->sputbackc('x'));
  EXPECT_EQ('a', stream.rdbuf()->sputbackc('a'));
  EXPECT_EQ("ab", rest(stream));
  EXPECT_EQ("ab", text);
}

TEST(MemoryStream, KnowsItsPosition) {
  MemoryStream stream("abcde");
  stream.get();
  EXPECT_EQ(1, stream.tellg());
  EXPECT_EQ('d', stream.seekg(3).peek());
  EXPECT_EQ('c', stream.seekg(-1, std::ios::cur).peek());
  EXPECT_EQ('e', stream.seekg(-1, std::ios::end).peek());
  EXPECT_EQ('a', stream.seekg(0, std::ios::beg).peek());
  EXPECT_EQ(5, stream.seekg(0, std::ios::end).tellg());
  EXPECT_EQ(-1, stream.get());
}

TEST(MemoryStream, RefusesPositionsOutsideOfIt) {
  for (const int position : {-1, 4}) {
    MemoryStream stream("abc");
    stream.get();
    EXPECT_TRUE(stream.seekg(position).fail()) << position;
    stream.clear();
    EXPECT_EQ(1, stream.tellg()) << position;
  }
  MemoryStream stream("abc");
  EXPECT_EQ(-1, stream.rdbuf()->pubseekoff(0, std::ios::beg, std::ios::out));
}

TEST(MemoryStream, HoldsDocumentsThatFollowEachOther) {
  const std::string documents = octets("E0 00 00 01 00 3C 00 'a' FF E0 00 00 01 00 3C 00 'b' FF");
  MemoryStream stream(documents);
  XMLReader_X891 reader;
  EventLog log;
  log.attachTo(reader);
  reader.parse(stream);
  EXPECT_EQ(9, stream.tellg());
  reader.parse(stream);
  EXPECT_EQ(18, stream.tellg());
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartElement(, a, a, [])\nendElement(, a, "
      "a)\nendDocument()\n"
      "setDocumentLocator()\nstartDocument()\nstartElement(, b, b, [])\nendElement(, b, "
      "b)\nendDocument()\n",
      log.text());
}

TEST(MemoryStream, MayBeAnEntity) {
  struct Resolver : EntityResolver {
    std::unique_ptr<std::istream> resolveEntity(const std::string&, const std::string&) override {
      return std::make_unique<MemoryStream>("entity<b/>");
    }
  } resolver;
  EventLog log;
  XMLReader_XML10 reader;
  reader.setContentHandler(&log);
  reader.setEntityResolver(&resolver);
  MemoryStream stream("<!DOCTYPE a [<!ENTITY x SYSTEM 'x'>]><a>&x;</a>");
  reader.parse(stream);
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartElement(, a, a, [])\ncharacters(entity)\n"
      "startElement(, b, b, [])\nendElement(, b, b)\nendElement(, a, a)\nendDocument()\n",
      log.text());
}

}  // namespace
