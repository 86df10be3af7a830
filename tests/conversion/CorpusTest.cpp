#include "../tool/Workplace.h"
#include "HexOctets.h"

namespace {

/// The script that converts all documents below a folder.
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
  Result corpus() { return corpus("corpus '" TAVRIN_TOOL "'"); }
};

}  // namespace

TEST_F(Corpus, IsReportedInCounts) {
  // 4 and 11 octets as text; in Fast Infoset 5 + 3 + 1, and with an attribute 5 + 3 + 6 + 2.
  writeFile("corpus/one.xml", "<a/>");
  writeFile("corpus/inner/two words.svg", "<a b='12'/>");
  writeFile("corpus/broken.xml", "<a>");
  writeFile("corpus/notes.txt", "no XML at all");
  writeFile("corpus/empty", "");
  EXPECT_EQ(corpus(), (Result{0,
                              "documents                           2\n"
                              "not well-formed XML                 1\n"
                              "octets as XML text                 15\n"
                              "octets as Fast Infoset             25\n"
                              "differences                         0\n",
                              ""}));
}

TEST_F(Corpus, MayBeInAnyEncodingOfXML) {
  std::string utf16 = "\xFF\xFE";
  for (const char c : std::string("<a/>")) utf16 += c + std::string(1, '\0');
  writeFile("corpus/utf16.xml", utf16);
  writeFile("corpus/bom.xml", "\xEF\xBB\xBF\n<a/>");
  EXPECT_EQ(corpus(), (Result{0,
                              "documents                           2\n"
                              "not well-formed XML                 0\n"
                              "octets as XML text                 18\n"
                              "octets as Fast Infoset             18\n"
                              "differences                         0\n",
                              ""}));
}

// A reference whose declaration Fast Infoset cannot keep.
TEST_F(Corpus, IsReportedWithTheDocumentsThatDoNotComeBack) {
  writeFile("corpus/e.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 's'>]><a>&e;</a>");
  writeFile("corpus/one.xml", "<a/>");
  const Result report = corpus();
  const std::string message = report.out.substr(0, report.out.find("documents  "));
  EXPECT_EQ(report, (Result{1,
                            message + "documents                           2\n"
                                      "not well-formed XML                 0\n"
                                      "octets as XML text                 51\n"
                                      "octets as Fast Infoset             25\n"
                                      "differences                         1\n",
                            ""}));
  // The place is a temporary file.
  EXPECT_EQ(message.substr(0, message.find("\n  /")),
            "corpus/e.xml: does not come back from Fast Infoset");
  EXPECT_TRUE(message.ends_with("/copy.fi: octet 15: The entity \"e\" is not declared\n"))
      << message;
}

TEST_F(Corpus, MayBeEmpty) {
  EXPECT_EQ(corpus().out.substr(0, 37), "documents                           0");
  EXPECT_EQ(corpus().status, 0);
}

TEST_F(Corpus, HasToBeAFolder) {
  for (const std::string arguments : {"", "missing", "a b c"}) {
    SCOPED_TRACE(arguments);
    const Result result = corpus(arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "usage: " TAVRIN_CORPUS_SCRIPT " DIR [TOOL]\n");
  }
  const Result result = corpus("corpus missing-tool");
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err,
            std::string(TAVRIN_CORPUS_SCRIPT) + ": there is no tool; build it first, or name it\n");
}
