#include <Tavrin/Parse.h>
#include <Tavrin/Tavrin.h>

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>

#include "EventLog.h"
#include "HexOctets.h"
#include "WhatIsThrown.h"

namespace {

using namespace Tavrin;

std::string typeFor(std::istream& stream) {
  const auto reader = createReaderFor(stream);
  if (dynamic_cast<XMLReader_X891*>(reader.get())) return "X891";
  if (dynamic_cast<XMLReader_XML10*>(reader.get())) return "XML10";
  return "another";
}

std::string typeFor(const std::string& document) {
  MemoryStream stream(document);
  return typeFor(stream);
}

TEST(ReaderForAStream, IsThatOfFastInfosetByTheHeader) {
  const std::string header = octets("E0 00 00 01");
  EXPECT_EQ("X891", typeFor(header + octets("00 3C 00 'a' FF")));
  for (std::size_t arrived = 1; arrived <= header.size(); ++arrived) {
    EXPECT_EQ("X891", typeFor(header.substr(0, arrived))) << arrived;
  }
}

TEST(ReaderForAStream, IsThatOfFastInfosetByTheXMLDeclaration) {
  const std::string rest = octets("E0 00 00 01 00 3C 00 'a' FF");
  for (const std::string version : {"", " version='1.0'", " version='1.1'"}) {
    for (const std::string standalone : {"", " standalone='yes'", " standalone='no'"}) {
      const std::string declaration = "<?xml" + version + " encoding='finf'" + standalone + "?>";
      EXPECT_EQ("X891", typeFor(declaration)) << declaration;
      const std::string document = declaration + rest;
      MemoryStream whole(document);
      createReaderFor(whole)->parse(whole);
    }
  }
}

TEST(ReaderForAStream, IsThatOfTextForEverythingElse) {
  for (const std::string document :
       {"", "<", "<a/>", " <a/>", "text", "<?xml", "<?xml version='1.0'?><a/>",
        "<?xml version='1.0' encoding='UTF-8'?><a b=\" encoding='finf'\"/>",
        "<?xml version='1.0'?><?b encoding='finf'?><a/>", "<?xmlx encoding='finf'?><a/>",
        "<?xml version=\"1.0\" encoding='finf'?>", "<?xml version='1.0' encoding='finf",
        "<?xml version='1.2' encoding='finf'?>", "<a encoding='finf'/>",
        "<?xml version='1.0' xencoding='finf'?>"}) {
    EXPECT_EQ("XML10", typeFor(document)) << document;
  }
  for (const std::string document :
       {"EF BB BF '<a/>'", "FE FF 00 '<'", "FF FE '<' 00", "E0 'a'", "E0 01", "00", "00 E0 00"}) {
    EXPECT_EQ("XML10", typeFor(octets(document))) << document;
  }
}

TEST(ReaderForAStream, LeavesTheStreamUnread) {
  for (const std::string& document : {std::string("<?xml encoding='finf'?>"), octets("E0 00 00 01"),
                                      std::string("<a/>"), std::string()}) {
    std::istringstream stream(document);
    createReaderFor(stream);
    createReaderFor(stream);
    EXPECT_TRUE(stream.good());
    EXPECT_EQ(0, stream.tellg());
    EXPECT_EQ(document, std::string(std::istreambuf_iterator<char>(stream), {}));
  }
}

TEST(ReaderForAStream, IsThatOfTheDocumentThatComesNext) {
  MemoryStream stream("<a/>\xE0");
  EXPECT_EQ("XML10", typeFor(stream));
  stream.ignore(4);
  EXPECT_EQ("X891", typeFor(stream));
}

TEST(ReaderForAStream, WithoutABufferIsThatOfText) {
  std::istream stream(nullptr);
  EXPECT_EQ("XML10", typeFor(stream));
}

/// Gives one octet at a time, and keeps none, as the buffer of std::cin.
class KeepingNone : public std::streambuf {
 public:
  explicit KeepingNone(std::string octets) : octets_(std::move(octets)) {}

 protected:
  int_type underflow() override {
    return next_ < octets_.size() ? traits_type::to_int_type(octets_[next_]) : traits_type::eof();
  }
  int_type uflow() override {
    const int_type octet = underflow();
    ++next_;
    return octet;
  }

 private:
  std::string octets_;
  std::size_t next_ = 0;
};

TEST(ReaderForAStream, IsChosenByTheFirstOctetWhereNoneIsKept) {
  const auto typeForUnbuffered = [](const std::string& document) {
    KeepingNone buffer(document);
    std::istream stream(&buffer);
    return typeFor(stream);
  };
  EXPECT_EQ("X891", typeForUnbuffered(octets("E0 00 00 01")));
  EXPECT_EQ("XML10", typeForUnbuffered("<?xml encoding='finf'?>"));
  EXPECT_EQ("XML10", typeForUnbuffered("<a/>"));
  EXPECT_EQ("XML10", typeForUnbuffered(""));
}

TEST(ReaderForAStream, PassesOnWhatTheBufferThrows) {
  struct Broken : std::streambuf {
    int_type underflow() override { throw std::out_of_range("broken"); }
  } buffer;
  std::istream stream(&buffer);
  EXPECT_EQ("std::out_of_range: broken", thrown([&] { createReaderFor(stream); }));
}

// A directory as standard input is one.
TEST(ReaderForAStream, PassesOnThatADirectoryCannotBeRead) {
#ifdef _LIBCPP_VERSION
  GTEST_SKIP() << "libc++ takes a directory for an empty file";
#endif
  std::ifstream stream("/", std::ios::binary);
  EXPECT_THROW(createReaderFor(stream), std::ios_base::failure);
  // So do the readers, where they are chosen by name.
  EXPECT_THROW(XMLReader_XML10().parse(stream), std::ios_base::failure);
  EXPECT_THROW(XMLReader_X891().parse(stream), std::ios_base::failure);
}

// --- Files ---

/// A file that lives as long as the object.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& content) {
    std::ofstream(path_, std::ios::binary) << content;
  }
  ~TemporaryFile() { std::filesystem::remove(path_); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::string& path() const { return path_; }

 private:
  const std::string path_ = testing::TempDir() + "tavrin-" + std::to_string(getpid()) + "-" +
                            testing::UnitTest::GetInstance()->current_test_info()->name();
};

constexpr char kText[] = "<!DOCTYPE a [<!ENTITY x SYSTEM 'x'>]><a><!--b-->&x;</a>";
const std::string kFastInfoset = octets("E0 00 00 01 00 3C 00 'a' 8C 09 00 05 FF");

TEST(ParsedFile, IsReportedToAnObjectByAllOfItsInterfaces) {
  const TemporaryFile file(kText);
  EventLog log;
  log.entities = {{"x", "entity"}};
  parseFile(file.path(), log);
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartDTD(a, , )\nexternalEntityDecl(x, , x)\n"
      "endDTD()\nstartElement(, a, a, [])\ncomment(b)\nresolveEntity(, x)\nstartEntity(x)\n"
      "characters(entity)\nendEntity(x)\nendElement(, a, a)\nendDocument()\n",
      log.text());
}

TEST(ParsedFile, MayBeFastInfoset) {
  const TemporaryFile file(kFastInfoset);
  EventLog log;
  parseFile(file.path(), log);
  EXPECT_EQ(
      "setDocumentLocator()\nstartDocument()\nstartElement(, a, a, [])\nshorts(5)\nendElement(, a, "
      "a)\nendDocument()\n",
      log.text());
}

TEST(ParsedFile, IsReportedToSeveralObjects) {
  struct Content : ContentHandler {
    void startElement(const std::string&, const std::string&, const std::string& qName,
                      const Attributes&) override {
      names += qName;
    }
    std::string names;
  } content;
  struct Others : LexicalHandler, EntityResolver {
    void comment(const std::string& text) override { events += "comment " + text; }
    std::unique_ptr<std::istream> resolveEntity(const std::string&,
                                                const std::string& systemId) override {
      events += ", entity " + systemId;
      return nullptr;
    }
    std::string events;
  } others;
  const TemporaryFile file(kText);
  parseFile(file.path(), content, others);
  EXPECT_EQ("a", content.names);
  EXPECT_EQ("comment b, entity x", others.events);
}

TEST(ParsedFile, IsReportedToTheLastObjectThatHasAnInterface) {
  const TemporaryFile file("<a><!--b--></a>");
  EventLog first;
  struct Last : ContentHandler {
  } last;
  parseFile(file.path(), first, last);
  EXPECT_EQ("comment(b)\n", first.text());
}

TEST(ParsedFile, IsCopiedByAWriter) {
  const TemporaryFile file(kFastInfoset);
  std::ostringstream copy;
  XMLWriter_X891 writer;
  writer.setOutputStream(&copy);
  parseFile(file.path(), static_cast<XMLWriter&>(writer));
  EXPECT_EQ(kFastInfoset, copy.str());
}

TEST(ParsedFile, IsOnlyCheckedWithoutAnObject) {
  const TemporaryFile file("<a></b>");
  EXPECT_EQ("SAXParseException: mismatched tag: expected </a> of line 1 (1:6)",
            thrown([&] { parseFile(file.path()); }));
}

TEST(ParsedFile, IsReportedToASet) {
  const TemporaryFile file("<a><!--b--></a>");
  EventLog log;
  HandlerSet handlers(log);
  handlers.content = nullptr;
  parseFile(file.path(), handlers);
  EXPECT_EQ("comment(b)\n", log.text());
}

TEST(ParsedFile, ThatDoesNotExistIsRefused) {
  EventLog log;
  EXPECT_EQ("SAXException: Cannot read \"/no/such/file\": No such file or directory",
            thrown([&] { parseFile("/no/such/file", log); }));
  EXPECT_EQ("SAXException: Cannot read \"\": No such file or directory",
            thrown([&] { parseFile("", log); }));
  EXPECT_EQ("", log.text());
}

TEST(ParsedFile, ThatIsAFolderIsRefused) {
  EXPECT_EQ("SAXException: Cannot read \"/\": Is a directory", thrown([] { parseFile("/"); }));
}

}  // namespace
