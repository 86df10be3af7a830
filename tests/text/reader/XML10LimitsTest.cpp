#include <gtest/gtest.h>

#include <cstdint>

#include "XML10ReaderSupport.h"

namespace {

using namespace Tavrin;

/// Reads with limits.
class LimitedReader {
 public:
  LimitedReader() { log_.attachTo(reader_); }

  template <typename Value>
  LimitedReader& set(const char* property, Value value) {
    reader_.setProperty(property, &value);
    return *this;
  }
  void add(const std::string& systemId, const std::string& text) { log_.entities[systemId] = text; }
  void withoutContentHandler() { reader_.setContentHandler(nullptr); }

  /// What parsing ends with, after the same was told to the error handler.
  std::string read(const std::string& text) {
    log_.clear();
    const std::string outcome = parseText(reader_, text);
    if (outcome != "done") {
      EXPECT_EQ("SAXParseException" + log_.lines().back().substr(std::string("fatalError").size()),
                outcome);
    }
    return outcome;
  }

 private:
  EventLog log_;
  XMLReader_XML10 reader_;
};

std::string tooDeep(const std::string& depth, const std::string& position) {
  return "SAXParseException(Elements nested deeper than " + depth + " (property maximum-depth)" +
         position + ")";
}

TEST(XML10Limits, OfDepth) {
  LimitedReader reader;
  EXPECT_EQ("done", reader.read("<a><b><c/></b></a>"));
  reader.set(properties::maximumDepth, std::uint64_t{2});
  EXPECT_EQ(tooDeep("2", ", 1, 7"), reader.read("<a><b><c/></b></a>"));
  EXPECT_EQ("done", reader.read("<a><b/><b><?t?></b><b/></a>"));
  EXPECT_EQ(tooDeep("2", ", 2, 2"), reader.read("<a><b/><b>\n <c></c></b></a>"));
  reader.withoutContentHandler();
  EXPECT_EQ(tooDeep("2", ", 1, 7"), reader.read("<a><b><c/></b></a>"));
  EXPECT_EQ(tooDeep("0", ", 1, 1"),
            reader.set(properties::maximumDepth, std::uint64_t{0}).read("<a/>"));
}

TEST(XML10Limits, OfDepthCountElementsOfAllEntities) {
  LimitedReader reader;
  reader.add("e", "<b>&f;</b>");
  reader.add("f", "<c/>");
  const std::string text =
      "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'><!ENTITY f SYSTEM 'f'><!ENTITY g '<d>&e;</d>'>]>"
      "<a>&g;</a>";
  EXPECT_EQ("done", reader.set(properties::maximumDepth, std::uint64_t{4}).read(text));
  EXPECT_EQ(tooDeep("3", " (in the entity f, \"f\"), 1, 1"),
            reader.set(properties::maximumDepth, std::uint64_t{3}).read(text));
}

TEST(XML10Limits, OfDepthCanBeAskedAndTakenBack) {
  XMLReader_XML10 reader;
  const auto get = [&] {
    return *static_cast<std::uint64_t*>(reader.getProperty(properties::maximumDepth));
  };
  EXPECT_EQ(UINT64_MAX, get());
  std::uint64_t depth = 7;
  reader.setProperty(properties::maximumDepth, &depth);
  EXPECT_EQ(7U, get());
  reader.setProperty(properties::maximumDepth, nullptr);
  EXPECT_EQ(UINT64_MAX, get());
}

std::string repeated(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

constexpr char kBreached[] =
    "SAXParseException(limit on input amplification factor (from defaults of attributes) breached "
    "(property entity-amplification-factor), ";

/// 100,000 octets by defaults.
std::string withDefaults(const std::string& name, int count = 99) {
  return "<!DOCTYPE a [<!ATTLIST b " + name + " CDATA '" + std::string(1000, 'v') + "'>]>\n<a>" +
         repeated("<b/>", count) + "</a>";
}

TEST(XML10Limits, OfDefaultsOfAttributes) {
  LimitedReader reader;
  // More than the default threshold, and more than a hundred octets for one.
  EXPECT_EQ(0U, reader.read(withDefaults("c", 20000)).find(kBreached));
  // Threshold: each element has 1001 octets.
  reader.set(properties::entityAmplificationFactor, 1.0);
  EXPECT_EQ("done", reader.set(properties::entityAmplificationThreshold, std::uint64_t{99 * 1001})
                        .read(withDefaults("c")));
  EXPECT_EQ(std::string(kBreached) + "2, 396)",
            reader.set(properties::entityAmplificationThreshold, std::uint64_t{99 * 1001 - 1})
                .read(withDefaults("c")));
  // Factor: about 1,500 octets are read.
  reader.set(properties::entityAmplificationThreshold, std::uint64_t{0});
  EXPECT_EQ("done",
            reader.set(properties::entityAmplificationFactor, 100.0).read(withDefaults("c")));
  EXPECT_EQ(std::string(kBreached) + "2, 40)",
            reader.set(properties::entityAmplificationFactor, 10.0).read(withDefaults("c")));
}

TEST(XML10Limits, OfDefaultsCountDeclarationsOfNamespaces) {
  LimitedReader reader;
  reader.set(properties::entityAmplificationThreshold, std::uint64_t{50000});
  reader.set(properties::entityAmplificationFactor, 1.0);
  EXPECT_EQ(0U, reader.read(withDefaults("xmlns")).find(kBreached));
  EXPECT_EQ(0U, reader.read(withDefaults("xmlns:p")).find(kBreached));
}

TEST(XML10Limits, OfDefaultsDoNotCountWhatIsWritten) {
  LimitedReader reader;
  reader.set(properties::entityAmplificationThreshold, std::uint64_t{0});
  reader.set(properties::entityAmplificationFactor, 1.0);
  EXPECT_EQ("done", reader.read("<!DOCTYPE a [<!ATTLIST a b CDATA 'c' d CDATA #IMPLIED>]><a b='" +
                                std::string(10000, 'v') + "' d='e'/>"));
  EXPECT_EQ("done", reader.read("<a xmlns:p='u' p:b='" + std::string(10000, 'v') + "'/>"));
}

TEST(XML10Limits, OfDefaultsCountWhatEntitiesHoldAsRead) {
  LimitedReader reader;
  reader.add("e", repeated("<c/>", 5000));
  reader.set(properties::entityAmplificationThreshold, std::uint64_t{0});
  reader.set(properties::entityAmplificationFactor, 100.0);
  const std::string start = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e'><!ATTLIST b d CDATA '" +
                            std::string(1000, 'v') + "'>]><a>";
  EXPECT_EQ("done", reader.read(start + "&e;" + repeated("<b/>", 200) + "</a>"));
  EXPECT_EQ(0U, reader.read(start + repeated("<b/>", 200) + "&e;</a>").find(kBreached));
}

}  // namespace
