#include "HexOctets.h"
#include "OrderMessages.h"
#include "Workplace.h"

namespace {

/// A message of 177 octets as XML text, and four others from which a vocabulary is learned.
class VocabularyMessage : public Workplace {
 protected:
  void SetUp() override {
    writeFile("4711.xml", orderMessage("4711", "rye bread", "2", "butter", "1", "coffee", "1"));
    writeFile("4712.xml", orderMessage("4712", "butter", "2", "honey", "1", "tea", "1"));
    writeFile("4713.xml", orderMessage("4713", "coffee", "3", "rye bread", "1", "honey", "2"));
    writeFile("4714.xml", orderMessage("4714", "tea", "2", "butter", "3", "rye bread", "1"));
    writeFile("4715.xml", orderMessage("4715", "coffee", "1", "tea", "1", "honey", "2"));
  }

  std::size_t sizeOf(const std::string& name) const {
    return std::filesystem::file_size(path(name));
  }

  /// The size of a copy that refers to a vocabulary.
  std::size_t sizeWith(const std::string& vocabulary, const std::string& uri,
                       const std::string& message) {
    EXPECT_EQ(
        run({"convert", "--force", "--vocabulary", vocabulary, "--uri", uri, message, "copy.fi"}),
        silent(0));
    return sizeOf("copy.fi");
  }

  const ToolProcess::Arguments learn_ = {"vocabulary", "learn",    "-o",       "orders.fi",
                                         "4712.xml",   "4713.xml", "4714.xml", "4715.xml"};
};

// The header and its components; the vocabulary's URI; the declaration of the prefix, whose parts
// are entries; the root with its number, which is no entry; items, each with three numbers.
const std::string kMessage = octets(
    "E0000001 20 1000 05'shop:1' 78 CF8181F0 01 01 43'4711' F0"
    "40 00 84 F0 A1 F0"
    "40 00 82 F0 A0 F0"
    "40 00 83 F0 A0 FF F0");

}  // namespace

TEST_F(VocabularyMessage, ShrinksFrom177OctetsTo46) {
  EXPECT_EQ(sizeOf("4711.xml"), 177U);
  EXPECT_EQ(run({"convert", "4711.xml", "4711.fi"}), silent(0));
  EXPECT_EQ(sizeOf("4711.fi"), 117U);
  EXPECT_EQ(run(learn_).status, 0);
  EXPECT_EQ(sizeWith("orders.fi", "shop:1", "4711.xml"), 46U);
  EXPECT_EQ(readFile("copy.fi"), kMessage);
}

TEST_F(VocabularyMessage, ComesBackWithTheVocabulary) {
  EXPECT_EQ(run(learn_).status, 0);
  writeFile("copy.fi", kMessage);
  const ToolProcess::Arguments with = {"--vocabulary", "orders.fi", "--uri", "shop:1"};
  const auto runWith = [&](ToolProcess::Arguments arguments) {
    arguments.insert(arguments.end(), with.begin(), with.end());
    return run(arguments);
  };
  EXPECT_EQ(runWith({"diff", "4711.xml", "copy.fi"}), silent(0));
  EXPECT_EQ(runWith({"check", "copy.fi"}), (Result{0, "copy.fi: well-formed\n", ""}));
  EXPECT_EQ(runWith({"convert", "--no-declaration", "copy.fi"}),
            (Result{0, readFile("4711.xml"), ""}));
  EXPECT_EQ(runWith({"events", "copy.fi"}), run({"events", "4711.xml"}));
  EXPECT_EQ(runWith({"check", "--from", "X891", "copy.fi"}).status, 0);
}

TEST_F(VocabularyMessage, IsLearnedFromOthersWithTheirSavingsInFigures) {
  // 4 messages of 109, 117, 115 and 109 octets. With the vocabulary each has 56: as above, with the
  // ten octets more of a longer URI. What others save is tested below.
  EXPECT_EQ(run(learn_), (Result{0,
                                 "samples                   4\n"
                                 "entries                   18\n"
                                 "octets of the vocabulary  128\n"
                                 "as Fast Infoset           450\n"
                                 "with the vocabulary       224 (49.8 %)\n"
                                 "with one of the others    270 (60.0 %)\n",
                                 ""}));
  EXPECT_EQ(sizeOf("orders.fi"), 128U);
}

// What is used most stands first, and what is used as often in the order of the characters.
TEST_F(VocabularyMessage, HasAVocabularyThatShows) {
  EXPECT_EQ(run(learn_).status, 0);
  EXPECT_EQ(run({"vocabulary", "show", "orders.fi"}), (Result{0,
                                                              "orders.fi: 18 entries\n"
                                                              "  prefixes\n"
                                                              "        2  \"o\"\n"
                                                              "  namespace names\n"
                                                              "        2  "
                                                              "\"http://example.com/orders\"\n"
                                                              "  local names\n"
                                                              "        1  \"article\"\n"
                                                              "        2  \"item\"\n"
                                                              "        3  \"number\"\n"
                                                              "        4  \"order\"\n"
                                                              "  attribute values\n"
                                                              "        1  \"honey\"\n"
                                                              "        2  \"tea\"\n"
                                                              "        3  \"butter\"\n"
                                                              "        4  \"coffee\"\n"
                                                              "        5  \"rye bread\"\n"
                                                              "  character data\n"
                                                              "        1  \"1\"\n"
                                                              "        2  \"2\"\n"
                                                              "        3  \"3\"\n"
                                                              "  element names\n"
                                                              "        1  o:item  "
                                                              "\"http://example.com/orders\"\n"
                                                              "        2  o:order  "
                                                              "\"http://example.com/orders\"\n"
                                                              "  attribute names\n"
                                                              "        1  article\n"
                                                              "        2  number\n",
                                                              ""}));
}

// The figures are those of copies that the tool makes.
TEST_F(VocabularyMessage, TakesWhatWasTold) {
  const Names messages = {"4712.xml", "4713.xml", "4714.xml", "4715.xml"};
  std::size_t without = 0;
  std::size_t with = 0;
  std::size_t withOthers = 0;
  EXPECT_EQ(run(learn_).status, 0);
  for (const std::string& message : messages) {
    EXPECT_EQ(run({"convert", "--force", message, "copy.fi"}), silent(0));
    without += sizeOf("copy.fi");
    with += sizeWith("orders.fi", "urn:vocabulary:1", message);
    ToolProcess::Arguments others = {"vocabulary", "learn", "--force", "-o", "others.fi"};
    for (const std::string& other : messages) {
      if (other != message) others.push_back(other);
    }
    EXPECT_EQ(run(others).status, 0);
    withOthers += sizeWith("others.fi", "urn:vocabulary:1", message);
  }
  EXPECT_EQ(without, 450U);
  EXPECT_EQ(with, 224U);
  EXPECT_EQ(withOthers, 270U);
}

// The same entries in each document; a reader needs nothing else.
TEST_F(VocabularyMessage, MayBeginWithTheVocabulary) {
  EXPECT_EQ(run(learn_).status, 0);
  EXPECT_EQ(run({"convert", "--vocabulary", "orders.fi", "4711.xml", "copy.fi"}), silent(0));
  EXPECT_EQ(run({"diff", "4711.xml", "copy.fi"}), silent(0));
  const auto entriesOf = [](const std::string& listing) {
    return listing.substr(listing.find('\n'));
  };
  EXPECT_EQ(entriesOf(run({"vocabulary", "show", "copy.fi"}).out),
            entriesOf(run({"vocabulary", "show", "orders.fi"}).out));
  // stat counts the copy that convert would make.
  const std::string size = std::to_string(sizeOf("copy.fi"));
  EXPECT_NE(run({"stat", "--vocabulary", "orders.fi", "4711.xml"})
                .out.find("as Fast Infoset          " + size + "\n"),
            std::string::npos);
  EXPECT_NE(run({"stat", "--vocabulary", "orders.fi", "--uri", "shop:1", "4711.xml"})
                .out.find("as Fast Infoset          46\n"),
            std::string::npos);
}

// Documents in Fast Infoset teach the same, also those that refer to a vocabulary themselves.
TEST_F(VocabularyMessage, IsTheSameSampleInBothEncodings) {
  EXPECT_EQ(run(learn_).status, 0);
  ToolProcess::Arguments plain = {"vocabulary", "learn", "-o", "plain.fi"};
  ToolProcess::Arguments referring = {"vocabulary",   "learn",     "-o",    "referring.fi",
                                      "--vocabulary", "orders.fi", "--uri", "shop:1"};
  for (const std::string number : {"4712", "4713", "4714", "4715"}) {
    EXPECT_EQ(run({"convert", number + ".xml", number + ".fi"}), silent(0));
    EXPECT_EQ(run({"convert", "--vocabulary", "orders.fi", "--uri", "shop:1", number + ".xml",
                   number + "-short.fi"}),
              silent(0));
    plain.push_back(number + ".fi");
    referring.push_back(number + "-short.fi");
  }
  const Result told = run(plain);
  EXPECT_EQ(told.status, 0);
  EXPECT_EQ(run(referring), told);
  EXPECT_EQ(readFile("plain.fi"), readFile("orders.fi"));
  EXPECT_EQ(readFile("referring.fi"), readFile("orders.fi"));
}

// One file with the documents of all, from a pipe.
TEST_F(VocabularyMessage, MayBeOneOfManyInAFile) {
  const Result told = run(learn_);
  std::string all;
  for (const std::string number : {"4712", "4713", "4714", "4715"}) {
    EXPECT_EQ(run({"convert", number + ".xml", number + ".fi"}), silent(0));
    all += readFile(number + ".fi");
  }
  EXPECT_EQ(run({"vocabulary", "learn", "-o", "piped.fi", "-"}, all), told);
  EXPECT_EQ(readFile("piped.fi"), readFile("orders.fi"));
  // A vocabulary alone on standard output.
  EXPECT_EQ(run({"vocabulary", "learn", "-o", "-", "-"}, all),
            (Result{0, readFile("orders.fi"), ""}));
}
