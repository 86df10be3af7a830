#include <Tavrin/XMLReader_XML10.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

// The locator counts octets: where the markup or text of the current event begins.

namespace {

using namespace Tavrin;

class Offsets : public ContentHandler, public EntityResolver {
 public:
  std::vector<std::pair<std::string, std::uint64_t>> noted;

  void setDocumentLocator(const Locator* locator) override {
    locator_ = dynamic_cast<const OctetLocator*>(locator);
  }
  void startElement(const std::string&, const std::string& localName, const std::string&,
                    const Attributes&) override {
    note("<" + localName);
  }
  void endElement(const std::string&, const std::string& localName, const std::string&) override {
    note("/" + localName);
  }
  void characters(const std::string& text) override { note(text); }
  std::unique_ptr<std::istream> resolveEntity(const std::string&, const std::string&) override {
    return std::make_unique<std::istringstream>("<c/>in");
  }

 private:
  void note(const std::string& event) {
    ASSERT_NE(nullptr, locator_);
    noted.emplace_back(event, locator_->getOctetOffset());
  }

  const OctetLocator* locator_ = nullptr;
};

using Noted = std::vector<std::pair<std::string, std::uint64_t>>;

TEST(XML10OctetLocator, CountsOctetsNotCharacters) {
  Offsets offsets;
  XMLReader_XML10 reader;
  reader.setContentHandler(&offsets);
  std::istringstream stream("<a>\xC3\xA9\n<b x='\xE2\x82\xAC'>t</b></a>");
  reader.parse(stream);
  EXPECT_EQ(
      (Noted{{"<a", 0}, {"\xC3\xA9", 3}, {"\n", 5}, {"<b", 6}, {"t", 17}, {"/b", 18}, {"/a", 22}}),
      offsets.noted);
}

TEST(XML10OctetLocator, CountsInTheEntityThatIsRead) {
  Offsets offsets;
  XMLReader_XML10 reader;
  reader.setContentHandler(&offsets);
  reader.setEntityResolver(&offsets);
  std::istringstream stream("<!DOCTYPE a [<!ENTITY e SYSTEM 'e'>]><a>&e;<b/></a>");
  reader.parse(stream);
  EXPECT_EQ(
      (Noted{{"<a", 37}, {"<c", 0}, {"/c", 4}, {"in", 4}, {"<b", 43}, {"/b", 47}, {"/a", 47}}),
      offsets.noted);
}

}  // namespace
