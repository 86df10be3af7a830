#include "HexOctets.h"
#include "Workplace.h"

namespace {

using VocabularyFile = Workplace;

}  // namespace

TEST_F(VocabularyFile, ShowsAllTables) {
  const std::string document = octets(
      "E0000001 20 0FFF"
      "00 01'01'"             // A restricted alphabet,
      "00 04'urn:x'"          // an encoding algorithm,
      "00 00'p'"              // a prefix,
      "00 04'urn:p'"          // a namespace name,
      "01 00'a' 00'b'"        // local names,
      "00 00'n'"              // a name of something else,
      "00 05'system'"         // an identifier,
      "01 01'1'22 02C3A4'!'"  // attribute values,
      "00 020A0D09"           // character data,
      "00 02E280AE"           // another string: U+202E turns the direction of text,
      "01 03010100 0001"      // the element names p:a in urn:p, and b,
      "00 03010101"           // the attribute name p:b in urn:p.
      "3C00'c' FF");
  writeFile("all.fi", document);
  const std::string shown =
      "  restricted alphabets\n"
      "       16  \"01\"\n"
      "  encoding algorithms\n"
      "       32  \"urn:x\"\n"
      "  prefixes\n"
      "        2  \"p\"\n"
      "  namespace names\n"
      "        2  \"urn:p\"\n"
      "  local names\n"
      "        1  \"a\"\n"
      "        2  \"b\"\n"
      "  other names\n"
      "        1  \"n\"\n"
      "  other URIs\n"
      "        1  \"system\"\n"
      "  attribute values\n"
      "        1  \"1\\\"\"\n"
      "        2  \"\xC3\xA4!\"\n"
      "  character data\n"
      "        1  \"\\n\\r\\t\"\n"
      "  other strings\n"
      "        1  \"\\u202E\"\n"
      "  element names\n"
      "        1  p:a  \"urn:p\"\n"
      "        2  b\n"
      "  attribute names\n"
      "        1  p:b  \"urn:p\"\n";
  EXPECT_EQ(run({"vocabulary", "show", "all.fi"}), (Result{0, "all.fi: 15 entries\n" + shown, ""}));
  EXPECT_EQ(run({"vocabulary", "show", "-"}, document), (Result{0, "-: 15 entries\n" + shown, ""}));
  // What follows the vocabulary is not read.
  EXPECT_EQ(run({"vocabulary", "show", "-"}, document.substr(0, document.size() - 4) + "rest").out,
            "-: 15 entries\n" + shown);
}

TEST_F(VocabularyFile, ShowsThatThereIsNone) {
  writeFile("a.fi", octets("E0000001 00 3C00'a' FF"));
  EXPECT_EQ(run({"vocabulary", "show", "a.fi"}), (Result{0, "a.fi: no entries\n", ""}));
  writeFile("b.fi", octets("E0000001 20 0080 00 00'a' 3C00'a' FF"));
  EXPECT_EQ(run({"vocabulary", "show", "b.fi"}),
            (Result{0, "b.fi: 1 entry\n  local names\n        1  \"a\"\n", ""}));
}

TEST_F(VocabularyFile, BecomesAHeader) {
  writeFile("v.fi", octets("E0000001 20 0193 00 04'urn:p' 01 00'a' 00'b'"
                           "02 01'1'22 02C3A4'7' 02'a\?\?'"
                           "01 010100 0001 00 0001 3C00'c' FF"));
  const std::string header =
      R"(// Made by tavrin vocabulary header. The position of an entry is its number: a vocabulary
// that has others, or in another order, needs another URI.
#pragma once

#include <Tavrin/OwnedVocabulary.h>

namespace shop::orders {

/// The URI by which documents refer to the vocabulary that make makes.
inline constexpr char makeURI[] = "urn:o:1";

inline ::Tavrin::OwnedVocabulary make() {
  ::Tavrin::OwnedVocabulary vocabulary;
  {
    static const char* const entries[] = {
        "urn:p",
    };
    for (const char* entry : entries) vocabulary.addNamespaceName(entry);
  }
  {
    static const char* const entries[] = {
        "a",
        "b",
    };
    for (const char* entry : entries) vocabulary.addLocalName(entry);
  }
  {
    static const char* const entries[] = {
        "1\"",
        "\303\2447",
        "a\?\?",
    };
    for (const char* entry : entries) vocabulary.addAttributeValue(entry);
  }
  {
    static const char* const names[][3] = {
        {"urn:p", "a", "a"},
        {"", "b", "b"},
    };
    for (const auto& name : names) vocabulary.addElementName(name[0], name[1], name[2]);
  }
  {
    static const char* const names[][3] = {
        {"", "b", "b"},
    };
    for (const auto& name : names) vocabulary.addAttributeName(name[0], name[1], name[2]);
  }
  return vocabulary;
}

}  // namespace shop::orders
)";
  const ToolProcess::Arguments arguments = {"vocabulary", "header",  "--name", "shop::orders::make",
                                            "--uri",      "urn:o:1", "v.fi"};
  EXPECT_EQ(run(arguments), (Result{0, header, ""}));
  ToolProcess::Arguments toFile = arguments;
  toFile.insert(toFile.end(), {"-o", "Orders.h"});
  EXPECT_EQ(run(toFile), silent(0));
  EXPECT_EQ(readFile("Orders.h"), header);
  EXPECT_EQ(run(toFile),
            (Result{2, "", "tavrin: Orders.h: already exists; --force replaces it\n"}));
  toFile.emplace_back("--force");
  EXPECT_EQ(run(toFile), silent(0));
}

TEST_F(VocabularyFile, BecomesAHeaderWithoutEntries) {
  writeFile("a.fi", octets("E0000001 00 3C00'a' FF"));
  EXPECT_EQ(
      run({"vocabulary", "header", "a.fi"}),
      (Result{
          0,
          R"(// Made by tavrin vocabulary header. The position of an entry is its number: a vocabulary
// that has others, or in another order, needs another URI.
#pragma once

#include <Tavrin/OwnedVocabulary.h>

inline ::Tavrin::OwnedVocabulary makeVocabulary() {
  ::Tavrin::OwnedVocabulary vocabulary;
  return vocabulary;
}
)",
          ""}));
}

// Other writers may put an entry into a table twice. The operations of a program do not.
TEST_F(VocabularyFile, BecomesNoHeaderWhereAnEntryStandsTwice) {
  writeFile("v.fi", octets("E0000001 20 0080 02 00'a' 00'b' 00'a' 3C00'a' FF"));
  EXPECT_EQ(run({"vocabulary", "show", "v.fi"}).status, 0);
  EXPECT_EQ(run({"vocabulary", "header", "-o", "V.h", "v.fi"}),
            (Result{1, "",
                    "v.fi: No program can make this vocabulary: entry 3 of its local names is the "
                    "same as entry 1\n"}));
  EXPECT_EQ(files(), Names{"v.fi"});
}
