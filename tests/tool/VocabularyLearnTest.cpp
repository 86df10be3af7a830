#include "HexOctets.h"
#include "Workplace.h"

namespace {

class VocabularyLearn : public Workplace {
 protected:
  /// What is shown of the vocabulary of some samples, without the first line.
  std::string entriesOf(const std::vector<std::string>& samples,
                        const ToolProcess::Arguments& options = {}) {
    ToolProcess::Arguments arguments = {"vocabulary", "learn", "--force", "-o", "learned.fi"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    for (std::size_t i = 0; i < samples.size(); ++i) {
      const std::string name = "sample" + std::to_string(i) + ".xml";
      writeFile(name, samples[i]);
      arguments.push_back(name);
    }
    report_ = run(arguments);
    EXPECT_EQ(report_.status, 0) << report_.err;
    const std::string shown = run({"vocabulary", "show", "learned.fi"}).out;
    return shown.substr(shown.find('\n') + 1);
  }

  Result report_;
};

/// A line of the report.
std::string line(const std::string& label, const std::string& value) {
  return label + std::string(26 - label.size(), ' ') + value + "\n";
}

std::string repeated(const std::string& text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

}  // namespace

TEST_F(VocabularyLearn, TakesOneSample) {
  EXPECT_EQ(entriesOf({"<a/>"}),
            "  local names\n        1  \"a\"\n  element names\n        1  a\n");
  EXPECT_EQ(readFile("learned.fi"), octets("E0000001 20 0082 00 00'a' 00 0000 00 FF"));
  // The URI and its frame take 19 octets.
  EXPECT_EQ(
      report_,
      (Result{0,
              line("samples", "1") + line("entries", "2") + line("octets of the vocabulary", "15") +
                  line("as Fast Infoset", "9") + line("with the vocabulary", "26 (288.9 %)") +
                  line("with one of the others", "impossible: there are no others"),
              ""}));
}

// Nothing in common: a vocabulary without entries.
TEST_F(VocabularyLearn, TakesNothingThatOneSampleHasAlone) {
  EXPECT_EQ(entriesOf({"<a b='c'>d</a>", "<e f='g'>h</e>"}), "");
  EXPECT_EQ(readFile("learned.fi"), octets("E0000001 00 3C09'vocabulary' FF"));
  EXPECT_EQ(report_.out.substr(0, 56), line("samples", "2") + line("entries", "0"));
  // Copies that refer to it are only larger, and are read.
  EXPECT_EQ(run({"convert", "--vocabulary", "learned.fi", "--uri", "u", "sample0.xml", "a.fi"}),
            silent(0));
  EXPECT_EQ(run({"diff", "--vocabulary", "learned.fi", "--uri", "u", "sample0.xml", "a.fi"}),
            silent(0));
}

TEST_F(VocabularyLearn, TakesStringsOfAllKinds) {
  const std::string sample =
      "<!DOCTYPE p:a PUBLIC 'public' 'system' [<!NOTATION n SYSTEM 'notation'>]><?target data?>"
      "<p:a xmlns:p='urn:p' p:b='value' xml:lang='en'>text<!--comment--><![CDATA[section]]></p:a>";
  EXPECT_EQ(entriesOf({sample, sample}),
            "  prefixes\n"
            "        2  \"p\"\n"
            "  namespace names\n"
            "        2  \"urn:p\"\n"
            "  local names\n"
            "        1  \"a\"\n"
            "        2  \"b\"\n"
            "        3  \"lang\"\n"
            "  other names\n"
            "        1  \"n\"\n"
            "        2  \"target\"\n"
            "  other URIs\n"
            "        1  \"notation\"\n"
            "        2  \"public\"\n"
            "        3  \"system\"\n"
            "  attribute values\n"
            "        1  \"en\"\n"
            "        2  \"value\"\n"
            "  character data\n"
            "        1  \"text\"\n"
            "  other strings\n"
            "        1  \"comment\"\n"
            "        2  \"data\"\n"
            "  element names\n"
            "        1  p:a  \"urn:p\"\n"
            "  attribute names\n"
            "        1  p:b  \"urn:p\"\n"
            "        2  xml:lang  \"http://www.w3.org/XML/1998/namespace\"\n");
  EXPECT_EQ(run({"convert", "--vocabulary", "learned.fi", "--uri", "u", "sample0.xml", "a.fi"}),
            silent(0));
  EXPECT_EQ(run({"diff", "--vocabulary", "learned.fi", "--uri", "u", "sample0.xml", "a.fi"}),
            silent(0));
}

// A run of character data is one string, however it is written. White space is text like any other.
TEST_F(VocabularyLearn, TakesRunsOfCharacterDataAsTheWriterHasThem) {
  EXPECT_EQ(entriesOf({"<a>x&amp;y&#33;<b/>\n </a>", "<a>x&#38;y!<b/>\n </a>"}),
            "  local names\n        1  \"a\"\n        2  \"b\"\n"
            "  character data\n        1  \"\\n \"\n        2  \"x&y!\"\n"
            "  element names\n        1  a\n        2  b\n");
}

TEST_F(VocabularyLearn, PutsInFrontWhatIsUsedMost) {
  const std::string sample =
      "<a>" + repeated("<rare/>", 1) + repeated("<some/>", 2) + repeated("<often/>", 3) + "</a>";
  EXPECT_EQ(entriesOf({sample}),
            "  local names\n"
            "        1  \"a\"\n        2  \"often\"\n        3  \"rare\"\n        4  \"some\"\n"
            "  element names\n"
            "        1  often\n        2  some\n        3  a\n        4  rare\n");
}

// Another prefix in each sample: no name is an entry, but what they have in common is.
TEST_F(VocabularyLearn, TakesPartsOfNamesWhereTheNamesDiffer) {
  EXPECT_EQ(entriesOf({"<p:order xmlns:p='urn:orders'/>", "<q:order xmlns:q='urn:orders'/>"}),
            "  namespace names\n        2  \"urn:orders\"\n"
            "  local names\n        1  \"order\"\n");
}

// Only 16 runs of character data have an index of one octet. Where a document needs many of them
// for its own, frequent ones, a vocabulary that takes them all would make it larger.
TEST_F(VocabularyLearn, LeavesTheShortIndexesToADocumentThatNeedsThem) {
  std::vector<std::string> samples(2);
  for (int sample = 0; sample < 2; ++sample) {
    std::string& text = samples[static_cast<std::size_t>(sample)];
    text = "<a>";
    for (int i = 10; i < 25; ++i) {
      text += repeated("<b>own " + std::to_string(15 * sample + i) + "</b>", 20);
    }
    for (char c = 'A'; c <= 'P'; ++c) text += "<b>" + std::string(2, c) + "</b>";
    text += "</a>";
  }
  const std::string entries = entriesOf(samples);
  EXPECT_EQ(entries.find("character data"), std::string::npos) << entries;
  // Without these, it takes them.
  for (std::string& sample : samples) sample.replace(3, sample.find("<b>AA") - 3, "");
  EXPECT_NE(entriesOf(samples).find("       16  \"PP\""), std::string::npos);
}

// What is too long for the writer's tables is written each time, so that it pays in each document.
TEST_F(VocabularyLearn, MakesInitialVocabulariesOfWhatPaysInEachDocument) {
  const std::string value(40, 'x');
  const std::string b = "<b c='" + value + "'/>";
  const std::string sample = "<a>" + b + b + b + "</a>";
  EXPECT_EQ(entriesOf({sample, sample}, {"--initial"}),
            "  attribute values\n        1  \"" + value + "\"\n");
  EXPECT_EQ(
      report_,
      (Result{0,
              line("samples", "2") + line("entries", "1") + line("octets of the vocabulary", "63") +
                  line("as Fast Infoset", "296") + line("with the vocabulary", "140 (47.3 %)") +
                  line("with one of the others", "140 (47.3 %)"),
              ""}));
  EXPECT_EQ(run({"convert", "--vocabulary", "learned.fi", "sample0.xml", "a.fi"}), silent(0));
  EXPECT_EQ(std::filesystem::file_size(path("a.fi")), 70U);
  EXPECT_EQ(run({"diff", "sample0.xml", "a.fi"}), silent(0));
}

TEST_F(VocabularyLearn, KeepsWhatSavesMostOfTooManyEntries) {
  const std::string sample = "<a b='much longer than the others'/>";
  EXPECT_EQ(entriesOf({sample}, {"--maximum-entries", "1"}),
            "  attribute values\n        1  \"much longer than the others\"\n");
  // A name takes two entries.
  EXPECT_EQ(entriesOf({sample}, {"--maximum-entries", "2"}),
            "  attribute values\n        1  \"much longer than the others\"\n");
  EXPECT_EQ(entriesOf({sample}, {"--maximum-entries", "3"}),
            "  local names\n        1  \"a\"\n"
            "  attribute values\n        1  \"much longer than the others\"\n"
            "  element names\n        1  a\n");
}

TEST_F(VocabularyLearn, TakesNothingLongerThanWasAllowed) {
  const std::string sample = "<a b='12345678'/>";
  EXPECT_NE(entriesOf({sample}, {"--longest", "8"}).find("\"12345678\""), std::string::npos);
  EXPECT_EQ(entriesOf({sample}, {"--longest", "7"}).find("\"12345678\""), std::string::npos);
  // So long without the option.
  for (const std::size_t size : {1024U, 1025U}) {
    const std::string text(size, 'x');
    EXPECT_EQ(entriesOf({"<a>" + text + "</a>"}).find(text) != std::string::npos, size == 1024);
  }
}

// Memory is bounded: of 20000 values, those that repeat are found in the memory for a tenth.
TEST_F(VocabularyLearn, ForgetsWhatSavesLeastWhereMemoryIsShort) {
  std::string sample = "<a>";
  for (int i = 0; i < 20000; ++i) {
    sample += "<b c='" + std::to_string(1000000 + i) + "'/>";
    if (i % 100 == 0) sample += "<b c='this one comes again'/>";
  }
  sample += "</a>";
  const std::string entries = entriesOf({sample}, {"--memory", "400K"});
  EXPECT_NE(entries.find("        1  \"this one comes again\""), std::string::npos);
  EXPECT_LT(std::count(entries.begin(), entries.end(), '\n'), 2200);
  EXPECT_EQ(run({"vocabulary", "learn", "--memory", "1", "sample0.xml"}).status, 0);
}

// More samples than folds: each is measured with a vocabulary of nine tenths of the others.
TEST_F(VocabularyLearn, MeasuresManySamplesByFolds) {
  std::vector<std::string> samples;
  for (int i = 0; i < 25; ++i) {
    samples.push_back("<message><id>" + std::to_string(1000 + i) + "</id></message>");
  }
  entriesOf(samples);
  // 36 octets: 4 of the header, 1; 3C06'message', 3C01'id', 92 01 '1000', FF, F0; 5+9+4+6+2.
  EXPECT_EQ(report_.out,
            line("samples", "25") + line("entries", "4") + line("octets of the vocabulary", "26") +
                line("as Fast Infoset", "650") + line("with the vocabulary", "850 (130.8 %)") +
                line("with one of the others", "850 (130.8 %)"));
}

TEST_F(VocabularyLearn, IsTheSameWheneverItIsLearned) {
  const std::vector<std::string> samples = {"<a><b c='d' e='f'/>g</a>", "<a><b e='f' c='d'/>g</a>"};
  entriesOf(samples);
  const std::string first = readFile("learned.fi");
  entriesOf(samples);
  EXPECT_EQ(readFile("learned.fi"), first);
  entriesOf({samples[1], samples[0]});
  EXPECT_EQ(readFile("learned.fi"), first);
}

TEST_F(VocabularyLearn, WritesNothingWithoutAName) {
  writeFile("a.xml", "<a/>");
  EXPECT_EQ(run({"vocabulary", "learn", "a.xml"}).status, 0);
  EXPECT_EQ(files(), Names{"a.xml"});
}

TEST_F(VocabularyLearn, WritesAWholeFileOrNone) {
  writeFile("a.xml", "<a/>");
  writeFile("b.xml", "<a>\n<b></a>");
  writeFile("old.fi", "old");
  const Result failed = {1, "", "b.xml:2:6: mismatched tag: expected </b> of line 2\n"};
  EXPECT_EQ(run({"vocabulary", "learn", "-o", "new.fi", "a.xml", "b.xml"}), failed);
  EXPECT_EQ(run({"vocabulary", "learn", "--force", "-o", "old.fi", "a.xml", "b.xml"}), failed);
  EXPECT_EQ(run({"vocabulary", "learn", "-o", "old.fi", "a.xml"}),
            (Result{2, "", "tavrin: old.fi: already exists; --force replaces it\n"}));
  EXPECT_EQ(run({"vocabulary", "learn", "-o", "new.fi", "a.xml", "missing.xml"}),
            (Result{2, "", "tavrin: missing.xml: No such file or directory\n"}));
  EXPECT_EQ(run({"vocabulary", "learn", "-o", "new.fi", "-"}),
            (Result{1, "", "-:1:1: no element found (the input is empty)\n"}));
  EXPECT_EQ(files(), (Names{"a.xml", "b.xml", "old.fi"}));
  EXPECT_EQ(readFile("old.fi"), "old");
}

// A sample that Fast Infoset has no form for could not be measured.
TEST_F(VocabularyLearn, WarnsOnceOfWhatIsNotRead) {
  writeFile("a.xml", "<!DOCTYPE a SYSTEM 'a.dtd'><a b='&x;'>&y;</a>");
  const Result result = run({"vocabulary", "learn", "a.xml"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err,
            "a.xml:1:34: warning: The entity \"x\" was not read: a reference to it in an attribute "
            "value is lost\n");
  const Result withEntities = run({"vocabulary", "learn", "--entities", "a.xml"});
  EXPECT_EQ(std::count(withEntities.err.begin(), withEntities.err.end(), '\n'), 2)
      << withEntities.err;
}

// Typed values have no place in the tables of strings.
TEST_F(VocabularyLearn, PassesOverTypedContent) {
  // <a b='int 1'>int 2</a>, twice.
  const std::string document =
      octets("E0000001 00 7C00'a' 7800'b' 303300000001 F0 8C0E01 00000002 FF");
  writeFile("a.fi", document);
  ASSERT_EQ(run({"check", "a.fi"}), (Result{0, "a.fi: well-formed\n", ""}));
  writeFile("two.fi", document + document);
  EXPECT_EQ(run({"vocabulary", "learn", "-o", "v.fi", "two.fi"}).status, 0);
  EXPECT_EQ(run({"vocabulary", "show", "v.fi"}),
            (Result{0,
                    "v.fi: 4 entries\n  local names\n        1  \"a\"\n        2  \"b\"\n"
                    "  element names\n        1  a\n  attribute names\n        1  b\n",
                    ""}));
}
