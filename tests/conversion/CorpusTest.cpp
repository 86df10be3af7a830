#include <cstdlib>
#include <utility>

#include "HexOctets.h"
#include "Workplace.h"

namespace {

#ifdef TAVRIN_XERCES_COMPARE
constexpr char kXerces[] = " --xerces '" TAVRIN_XERCES_COMPARE "'";
#else
constexpr char kXerces[] = "";
#endif

/// The script that converts all documents below folders.
class Corpus : public Workplace {
 protected:
  void SetUp() override { std::filesystem::create_directories(path("corpus/inner")); }

  /// Runs the script, which prints on standard output alone.
  Result corpus(const std::string& arguments) {
    const std::string command = "cd '" + directory_ + "' && bash '" TAVRIN_CORPUS_SCRIPT "' " +
                                arguments + " >report 2>errors; echo $? >status";
    EXPECT_EQ(std::system(command.c_str()), 0);
    return {std::stoi(readFile("status")), readFile("report"), readFile("errors")};
  }
  /// With the tool alone.
  Result corpus() { return corpus("--tool '" TAVRIN_TOOL "' --xmllint '' corpus"); }

  /// A program in place of another.
  void writeProgram(const std::string& name, const std::string& commands) {
    writeFile(name, "#!/bin/sh\n" + commands);
    std::filesystem::permissions(path(name), std::filesystem::perms::owner_all);
  }

  static bool isInstalled(const std::string& program) {
    return std::system(("command -v " + program + " >/dev/null").c_str()) == 0;
  }
};

struct Counts {
  int documents = 0, strangers = 0, text = 0, binary = 0, refused = 0, xmllint = 0, xerces = 0,
      leftOut = 0, differences = 0;
};

std::string line(const std::string& name, int count) {
  const std::string number = std::to_string(count);
  return name + std::string(25 - name.size() + 12 - number.size(), ' ') + number + '\n';
}

std::string report(const Counts& counts) {
  return line("documents", counts.documents) + line("not well-formed XML", counts.strangers) +
         line("octets as XML text", counts.text) + line("octets as Fast Infoset", counts.binary) +
         line("refused copies", counts.refused) + line("seen by xmllint", counts.xmllint) +
         line("seen by Xerces-C++", counts.xerces) + line("left out for time", counts.leftOut) +
         line("differences", counts.differences);
}

/// The number behind a name in a report.
int count(const std::string& report, const std::string& name) {
  const std::size_t place = report.find("\n" + name + " ");
  if (place == std::string::npos) throw std::runtime_error("no " + name + " in " + report);
  return std::stoi(report.substr(place + 1 + name.size()));
}

}  // namespace

TEST_F(Corpus, IsReportedInCounts) {
  // 4 and 11 octets as text; in Fast Infoset 5 + 3 + 1, and with an attribute 5 + 3 + 6 + 2.
  writeFile("corpus/one.xml", "<a/>");
  writeFile("corpus/inner/two words.svg", "<a b='12'/>");
  writeFile("corpus/broken.xml", "<a>");
  writeFile("corpus/notes.txt", "no XML at all");
  writeFile("corpus/empty", "");
  EXPECT_EQ(corpus(),
            (Result{0, report({.documents = 2, .strangers = 1, .text = 15, .binary = 25}), ""}));
}

TEST_F(Corpus, MayBeInAnyEncodingOfXML) {
  std::string utf16 = "\xFF\xFE";
  for (const char c : std::string("<a/>")) utf16 += c + std::string(1, '\0');
  writeFile("corpus/utf16.xml", utf16);
  writeFile("corpus/bom.xml", "\xEF\xBB\xBF\n<a/>");
  EXPECT_EQ(corpus(), (Result{0, report({.documents = 2, .text = 18, .binary = 18}), ""}));
}

// A reference to an entity that nothing is known of, which the tool warns of. Other refusals are
// failures, and so is a warning without need.
TEST_F(Corpus, MayHaveDocumentsThatCannotComeBack) {
  writeFile("corpus/e.xml", "<!DOCTYPE a [<!ENTITY % p SYSTEM 'p'>%p;]><a>&e;</a>");
  writeFile("corpus/one.xml", "<a/>");
  EXPECT_EQ(corpus(),
            (Result{0, report({.documents = 2, .text = 56, .binary = 23, .refused = 2}), ""}));
  writeProgram("tool", "test $1 != convert && exit 0; echo 'no reason' >&2; exit 1");
  const Result result = corpus("--tool ./tool --xmllint '' corpus");
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(result.out.ends_with(report({.documents = 2, .text = 56, .differences = 6})))
      << result.out;
  EXPECT_NE(result.out.find("/corpus/one.xml: cannot be written as XML text\n  no reason\n"),
            std::string::npos);
}

TEST_F(Corpus, MayHaveNoWarningsWithoutNeed) {
  writeFile("corpus/one.xml", "<a/>");
  writeProgram("tool",
               "'" TAVRIN_TOOL
               "' \"$@\" || exit; test $1 != convert || "
               "echo 'a: warning: The copy cannot be written as XML text again: never' >&2");
  EXPECT_EQ(
      corpus("--tool ./tool --xmllint '' corpus"),
      (Result{1,
              path("corpus/one.xml") +
                  ": can be written from Fast Infoset, in spite of a warning\n"
                  "  a: warning: The copy cannot be written as XML text again: never\n" +
                  report({.documents = 1, .text = 4, .binary = 9, .refused = 1, .differences = 1}),
              ""}));
}

TEST_F(Corpus, MayHaveReferencesThatComeBack) {
  writeFile("corpus/e.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 's'>]><a>&e;</a>");
  EXPECT_EQ(corpus(), (Result{0, report({.documents = 1, .text = 47, .binary = 16}), ""}));
}

TEST_F(Corpus, ReadsWhatADocumentNames) {
  writeFile("corpus/e.xml",
            "<!DOCTYPE a SYSTEM 'd' [<!ENTITY % p SYSTEM 'p'>%p;<!ENTITY e SYSTEM 's'>]>"
            "<a x='&v;'>&e;</a>");
  writeFile("corpus/d", "<!ATTLIST a y CDATA '1'>");
  writeFile("corpus/p", "<!ENTITY v '2'>");
  writeFile("corpus/s", "three");
  const Result result = corpus();
  EXPECT_EQ(result.status, 0) << result.out;
  EXPECT_EQ(count("\n" + result.out, "documents"), 1);
  EXPECT_EQ(count(result.out, "differences"), 0);
}

// A copy that lacks something, and a tool that does not notice.
TEST_F(Corpus, IsJudgedByXmllint) {
  if (!isInstalled("xmllint")) GTEST_SKIP() << "xmllint is missing: Debian's libxml2-utils";
  writeFile("corpus/one.xml", "<a b='1'/>");
  EXPECT_EQ(corpus("--tool '" TAVRIN_TOOL "' corpus"),
            (Result{0, report({.documents = 1, .text = 10, .binary = 15, .xmllint = 2}), ""}));
  writeProgram("tool", "test $1 = convert && echo '<a/>' >\"$4\"; exit 0");
  const Result result = corpus("--tool ./tool corpus");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.out.find("one.xml: differs as XML text, in the canonical form\n"),
            std::string::npos);
  EXPECT_NE(result.out.find("one.xml: differs from Fast Infoset, in the canonical form\n"),
            std::string::npos);
  EXPECT_EQ(count(result.out, "differences"), 2);
}

TEST_F(Corpus, IsJudgedByXerces) {
  const std::string xerces = kXerces;
  if (xerces.empty()) GTEST_SKIP() << "Xerces-C++ is missing: Debian's libxerces-c-dev";
  writeFile("corpus/one.xml", "<!DOCTYPE a [<!ENTITY e '1'>]><a b='1'/>");
  EXPECT_EQ(corpus("--tool '" TAVRIN_TOOL "' --xmllint ''" + xerces + " corpus"),
            (Result{0, report({.documents = 1, .text = 40, .binary = 17, .xerces = 2}), ""}));
  writeProgram("tool", "test $1 = convert && echo '<a b=\"1\"/>' >\"$4\"; exit 0");
  const Result result = corpus("--tool ./tool --xmllint ''" + xerces + " corpus");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.out.find("one.xml: differs as XML text, to Xerces-C++\n"), std::string::npos);
  EXPECT_EQ(count(result.out, "differences"), 1) << result.out;
}

TEST_F(Corpus, MayBeLimited) {
  for (int i = 0; i < 10; ++i) writeFile("corpus/" + std::to_string(i) + ".xml", "<a/>");
  const std::string options = "--tool '" TAVRIN_TOOL "' --xmllint '' ";
  // Every fourth of ten.
  EXPECT_EQ(corpus(options + "--most 3 corpus").out,
            report({.documents = 3, .text = 12, .binary = 27}));
  EXPECT_EQ(corpus(options + "--most 100 corpus corpus/inner").out,
            report({.documents = 10, .text = 40, .binary = 90}));
}

TEST_F(Corpus, MayBeEmpty) { EXPECT_EQ(corpus(), (Result{0, report({}), ""})); }

TEST_F(Corpus, HasToBeAFolder) {
  for (const std::string arguments : {"", "missing", "corpus missing", "--some corpus", "--tool"}) {
    SCOPED_TRACE(arguments);
    EXPECT_EQ(corpus(arguments),
              (Result{2, "", "usage: " TAVRIN_CORPUS_SCRIPT " [OPTION]... DIR...\n"}));
  }
  EXPECT_EQ(corpus("--tool missing-tool corpus"),
            (Result{2, "",
                    TAVRIN_CORPUS_SCRIPT ": there is no program \"missing-tool\"; build it "
                                         "first, or name it\n"}));
}

// Documents of this machine: some of all folders, as many as a minute is enough for. With
// TAVRIN_CORPUS, all documents below the folder that it names.
TEST_F(Corpus, MayBeWhatIsInstalled) {
  if (!isInstalled("xmllint")) GTEST_SKIP() << "xmllint is missing: Debian's libxml2-utils";
  const char* own = std::getenv("TAVRIN_CORPUS");
  const std::string documents =
      own ? "'" + std::string(own) + "'" : "--most 200 --seconds 40 /usr/share /etc";
  const Result result = corpus("--tool '" TAVRIN_TOOL "'" + std::string(kXerces) + " " + documents);
  EXPECT_EQ(result.status, 0) << result.out;
  EXPECT_GT(count(result.out, "seen by xmllint"), 0);
}

TEST_F(Corpus, MayBeTheXMLSuite) {
  const char* suite = std::getenv("TAVRIN_XML_SUITE");
  if (!suite) GTEST_SKIP() << "TAVRIN_XML_SUITE does not name the folder of the suite.";
  if (!isInstalled("xmllint")) GTEST_SKIP() << "xmllint is missing: Debian's libxml2-utils";
  const std::string folder = suite;
  const Result result =
      corpus("--tool '" TAVRIN_TOOL "'" + std::string(kXerces) + " --seconds 60 '" + folder +
             "/xmltest/valid' '" + folder + "/sun/valid'");
  EXPECT_EQ(result.status, 0) << result.out;
  EXPECT_GT(count(result.out, "seen by xmllint"), 0);
}
