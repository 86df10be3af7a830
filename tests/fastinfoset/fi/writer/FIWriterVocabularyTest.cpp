#include <gtest/gtest.h>

#include <deque>
#include <sstream>
#include <vector>

#include "FIWriterProbe.h"

// The tables grown for real, by events, past the ranges of every form of an index.

namespace writer_test {
namespace {

/// An entry's index, and what stands for it.
struct Entry {
  std::size_t index;
  const char* octets;
};

/// A document whose root, `r`, is open.
class RootProbe : public Probe {
 public:
  RootProbe() {
    startDocument();
    start("r");
    output.news();
  }
};

std::string name(std::size_t number) { return "n" + std::to_string(number); }

constexpr Entry kIndexes[] = {
    {0, "80"},          {1, "81"},          {63, "BF"},         {64, "C0 00"},
    {65, "C0 01"},      {319, "C0 FF"},     {320, "C1 00"},     {8255, "DF FF"},
    {8256, "E0 00 00"}, {8257, "E0 00 01"}, {8511, "E0 00 FF"}, {8512, "E0 01 00"},
};
constexpr std::size_t kIndexCount = 8513;

/// Writes items until all the entries above have come, then each of them once more.
/// @param write   writes the item of a number
/// @param around  the notation of an entry's item, with # for its index
template <typename Write>
void checkIndexes(Probe& writer, Write write, const std::string& around) {
  for (std::size_t i = 0; i < kIndexCount; ++i) write(i);
  writer.output.news();
  for (const Entry& entry : kIndexes) {
    write(entry.index);
    std::string expected = around;
    expected.replace(expected.find('#'), 1, entry.octets);
    EXPECT_EQ(writer.news(), hex(expected)) << entry.index;
  }
}

TEST(WriterVocabulary, OfOtherStringsGrowsWithComments) {
  RootProbe writer;
  checkIndexes(
      writer, [&](std::size_t i) { writer.comment(shortText(i)); }, "E2 #");
}

TEST(WriterVocabulary, OfOtherStringsGrowsWithTheDataOfInstructions) {
  RootProbe writer;
  writer.processingInstruction("t", "");
  checkIndexes(
      writer, [&](std::size_t i) { writer.processingInstruction("t", shortText(i)); }, "E1 80 #");
}

TEST(WriterVocabulary, OfOtherNCNamesGrowsWithTargets) {
  RootProbe writer;
  checkIndexes(
      writer, [&](std::size_t i) { writer.processingInstruction(name(i), ""); }, "E1 # FF");
}

TEST(WriterVocabulary, OfAttributeValuesGrowsWithShortValues) {
  RootProbe writer;
  writer.leaf("r", {{"a", ""}});  // Ends with a double terminator: nothing is owed.
  checkIndexes(
      writer,
      [&](std::size_t i) {
        writer.leaf("r", {{"a", shortText(i)}});
      },
      "40 00 # FF");
}

TEST(WriterVocabulary, OfLocalNamesIsSharedByElementsAndAttributes) {
  RootProbe writer;
  for (std::size_t i = 1; i < kIndexCount; ++i) writer.start(name(i));
  writer.output.news();
  // As attributes the names are new, their local names are not. `r` came first.
  for (const Entry& entry : kIndexes) {
    const std::string local = entry.index == 0 ? "r" : name(entry.index);
    writer.leaf("r", {{local, ""}});
    EXPECT_EQ(writer.news(), hex("40 78 " + std::string(entry.octets) + " FF FF")) << entry.index;
  }
}

TEST(WriterVocabulary, OfPrefixesAndNamespaceNamesIsCountedFromZeroInDeclarations) {
  RootProbe writer;
  checkIndexes(
      writer,
      [&](std::size_t i) {
        writer.startPrefixMapping(name(i), "");
        writer.start("r");
      },
      "38 CE # F0 00");
  checkIndexes(
      writer,
      [&](std::size_t i) {
        writer.startPrefixMapping("", name(i));
        writer.start("r");
      },
      "38 CD # F0 00");
}

TEST(WriterVocabulary, OfPrefixesAndNamespaceNamesIsCountedFromOneInNames) {
  RootProbe writer;
  for (std::size_t i = 0; i < kIndexCount; ++i) writer.startPrefixMapping(name(i), name(i));
  writer.start("r");
  writer.output.news();
  for (const Entry& entry : kIndexes) {
    if (entry.index == 0) continue;  // The built-in name: nothing that is declared.
    const std::string declared = name(entry.index - 1);
    writer.startElement(declared, "r", declared + ":r", attributes({}));
    const std::string index = entry.octets;
    EXPECT_EQ(writer.news(), hex("3F " + index + " " + index + " 80")) << entry.index;
  }
}

TEST(WriterVocabulary, OfAttributeNamesGrowsWithAttributes) {
  RootProbe writer;
  Tavrin::AttributesImpl all;
  for (std::size_t i = 0; i < kIndexCount; ++i) all.addAttribute("", name(i), name(i), "CDATA", "");
  writer.startElement("", "r", "r", all);
  writer.endElement("", "r", "r");
  writer.output.news();
  // Their index starts on the second bit, behind a 0.
  constexpr Entry kNames[] = {
      {0, "00"},          {1, "01"},          {63, "3F"},         {64, "40 00"},
      {65, "40 01"},      {319, "40 FF"},     {320, "41 00"},     {8255, "5F FF"},
      {8256, "60 00 00"}, {8257, "60 00 01"}, {8511, "60 00 FF"}, {8512, "60 01 00"},
  };
  for (const Entry& entry : kNames) {
    writer.leaf("r", {{name(entry.index), ""}});
    EXPECT_EQ(writer.news(), hex("40 " + std::string(entry.octets) + " FF FF")) << entry.index;
  }
}

TEST(WriterVocabulary, OfChunksHasNoMarkerInTheSecondAndThirdForm) {
  constexpr Entry kChunks[] = {
      {0, "A0"},
      {1, "A1"},
      {14, "AE"},
      {15, "AF"},
      {16, "A0 00"},
      {17, "A0 01"},
      {271, "A0 FF"},
      {272, "A1 00"},
      {1038, "A3 FE"},
      {1039, "A3 FF"},
      {1040, "A0 00 00"},
      {1041, "A0 00 01"},
      {66575, "A0 FF FF"},
      {66576, "A1 00 00"},
      {263182, "A3 FF FE"},
      {263183, "A3 FF FF"},
      {263184, "B8 00 00 00"},
      {263185, "B8 00 00 01"},
      {263184 + 0xFF, "B8 00 00 FF"},
      {263184 + 0x100, "B8 00 01 00"},
  };
  RootProbe writer;
  const auto write = [&](std::size_t i) {
    writer.characters(shortText(i));
    writer.comment("");
  };
  for (std::size_t i = 0; i <= 263184 + 0x100; ++i) write(i);
  writer.output.news();
  for (const Entry& entry : kChunks) {
    write(entry.index);
    EXPECT_EQ(writer.news(), hex(std::string(entry.octets) + " E2 FF")) << entry.index;
  }
}

/// The last names of a document's elements, in the order of their start tags.
class LastNames : public Tavrin::ContentHandler {
 public:
  explicit LastNames(std::size_t count) : count_(count) {}
  std::vector<std::string> last() const { return {names_.begin(), names_.end()}; }

  void startElement(const std::string&, const std::string& localName, const std::string&,
                    const Tavrin::Attributes&) override {
    names_.push_back(localName);
    if (names_.size() > count_) names_.pop_front();
  }

 private:
  std::size_t count_;
  std::deque<std::string> names_;
};

TEST(WriterVocabulary, OfElementNamesHasFourFormsWithAndWithoutAttributes) {
  struct Form {
    std::size_t index;
    const char* plain;
    const char* withAttributes;
  };
  constexpr Form kForms[] = {
      {0, "00", "40"},
      {1, "01", "41"},
      {30, "1E", "5E"},
      {31, "1F", "5F"},
      {32, "20 00", "60 00"},
      {33, "20 01", "60 01"},
      {287, "20 FF", "60 FF"},
      {288, "21 00", "61 00"},
      {2078, "27 FE", "67 FE"},
      {2079, "27 FF", "67 FF"},
      {2080, "28 00 00", "68 00 00"},
      {2081, "28 00 01", "68 00 01"},
      {67615, "28 FF FF", "68 FF FF"},
      {67616, "29 00 00", "69 00 00"},
      {526366, "2F FF FE", "6F FF FE"},
      {526367, "2F FF FF", "6F FF FF"},
      {526368, "30 00 00 00", "70 00 00 00"},
      {526369, "30 00 00 01", "70 00 00 01"},
      {526368 + 0xFF, "30 00 00 FF", "70 00 00 FF"},
      {526368 + 0x100, "30 00 01 00", "70 00 01 00"},
  };
  RootProbe writer;
  writer.leaf("r", {{"a", ""}});
  const auto named = [](std::size_t i) { return i == 0 ? std::string("r") : name(i); };
  const Tavrin::AttributesImpl none;
  for (std::size_t i = 1; i <= 526368 + 0x100; ++i) {
    writer.startElement("", named(i), named(i), none);
    writer.end(named(i));
  }
  writer.comment("");  // Nothing is owed now.
  writer.output.news();
  for (const Form& form : kForms) {
    writer.leaf(named(form.index), {{"a", ""}});
    EXPECT_EQ(writer.news(), hex(std::string(form.withAttributes) + " 00 FF FF")) << form.index;
    writer.leaf(named(form.index));
    EXPECT_EQ(writer.news(), hex(form.plain)) << form.index;
    writer.comment("");
    EXPECT_EQ(writer.news(), hex("F0 E2 FF"));
  }
  writer.end("r");
  writer.endDocument();

  // A reader takes them for the same names.
  std::vector<std::string> expected;
  for (const Form& form : kForms) expected.insert(expected.end(), 2, named(form.index));
  LastNames names(2 * std::size(kForms));
  Tavrin::XMLReader_FI reader;
  reader.setContentHandler(&names);
  std::istringstream stream(writer.output.text());
  reader.parse(stream);
  EXPECT_EQ(names.last(), expected);
}

TEST(WriterVocabulary, OfElementNamesHasTheSameFormsBehindDeclarations) {
  RootProbe writer;
  for (std::size_t i = 1; i <= 2080; ++i) writer.start(name(i));
  writer.output.news();
  const auto behindDeclarations = [&](std::size_t index) {
    writer.startPrefixMapping("", "");
    writer.leaf(name(index), {{"a", ""}});
    return writer.news();
  };
  behindDeclarations(1);
  // The flag stands in front of the declarations alone.
  EXPECT_EQ(behindDeclarations(31), hex("78 CC F0 1F 00 FF FF"));
  EXPECT_EQ(behindDeclarations(32), hex("78 CC F0 20 00 00 FF FF"));
  EXPECT_EQ(behindDeclarations(2079), hex("78 CC F0 27 FF 00 FF FF"));
  EXPECT_EQ(behindDeclarations(2080), hex("78 CC F0 28 00 00 00 FF FF"));
}

}  // namespace
}  // namespace writer_test
