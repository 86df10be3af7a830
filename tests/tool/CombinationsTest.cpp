#include "Workplace.h"

// Options that meet each other.

namespace {

using Combinations = Workplace;

TEST_F(Combinations, RulesFromAPipeAreForAllDocuments) {
  std::filesystem::create_directory(path("in"));
  for (const char* name : {"in/a.xml", "in/b.xml", "in/c.xml"}) {
    writeFile(name, "<r><v>1 2 3 4 5 6 7 8 9 10</v></r>");
  }
  writeFile("rules", "v short\n");
  EXPECT_EQ(0, run({"convert", "--typed", "rules", "-o", "byFile", "in"}).status);
  EXPECT_EQ(0,
            run({"convert", "--typed", "-", "-o", "byPipe", "-j", "2", "in"}, "v short\n").status);
  for (const std::string name : {"/a.fi", "/b.fi", "/c.fi"}) {
    EXPECT_EQ(readFile("byFile" + name), readFile("byPipe" + name)) << name;
  }
  // Wrong rules are told of once, and nothing has been begun.
  const Result wrong = run({"convert", "--typed", "-", "-o", "none", "in"}, "v shrt\n");
  EXPECT_EQ(2, wrong.status);
  EXPECT_EQ(1, std::count(wrong.err.begin(), wrong.err.end(), '\n')) << wrong.err;
  EXPECT_EQ((Names{"byFile", "byPipe", "in", "rules"}), files());
}

TEST_F(Combinations, CanonicalXMLNeedsNamespacesAsTheyAre) {
  writeFile("in.xml", "<p:l xmlns:p='urn:p' p:a='1'/>");
  const Result refused{
      2, "",
      "tavrin: --canonical needs the feature namespaces, and does without namespace-prefixes\n"};
  EXPECT_EQ(refused, run({"convert", "--canonical", "--feature", "namespace-prefixes", "in.xml"}));
  EXPECT_EQ(refused, run({"convert", "--canonical", "--feature", "namespaces=off", "in.xml"}));
  EXPECT_EQ((Result{0, "<p:l xmlns:p=\"urn:p\" p:a=\"1\"></p:l>", ""}),
            run({"convert", "--canonical", "--feature", "namespaces", "in.xml"}));
}

TEST_F(Combinations, WhatIsPassedOverStaysSoWhenItIsRepeated) {
  writeFile("in.xml", "<a/>");
  EXPECT_EQ(
      0, run({"convert", "--repeat", "2", "--feature", "auto-indent", "in.xml", "out.fi"}).status);
  EXPECT_EQ((Result{2, "", "tavrin: --no-declaration: the copy is not XML text\n"}),
            run({"convert", "--no-declaration", "in.xml", "other.fi"}));
}

TEST_F(Combinations, ThePageOfOctetsCountsWhatACopyWithTheSameOptionsHas) {
  std::string text = "<r>";
  for (int i = 0; i < 9; ++i) text += "<v>a text of more than two and thirty octets</v>";
  writeFile("in.xml", text + "</r>");
  EXPECT_EQ(0,
            run({"convert", "--property", "indexed-chunk-length=none", "in.xml", "out.fi"}).status);
  const Result page =
      run({"stat", "--html", "-", "--property", "indexed-chunk-length=none", "in.xml"});
  EXPECT_EQ(0, page.status);
  EXPECT_NE(std::string::npos, page.out.find(std::to_string(readFile("out.fi").size())));
  const Result other = run({"stat", "--html", "-", "in.xml"});
  EXPECT_EQ(std::string::npos,
            other.out.find(">" + std::to_string(readFile("out.fi").size()) + "<"));
}

TEST_F(Combinations, CountsAreNumbersOfAtLeastOne) {
  for (const std::string wrong : {"0", "1.5", "-1"}) {
    EXPECT_EQ((Result{2, "",
                      "tavrin: --max: \"" + wrong +
                          "\" is not a number of at least 1 (see tavrin get --help)\n"}),
              run({"get", "--max=" + wrong, "//a", "in.xml"}))
        << wrong;
  }
}

TEST_F(Combinations, CompletionKnowsWhatTheCommandsTake) {
  writeFile("bash", run({"completion", "bash"}).out);
  const std::string bash = readFile("bash");
  EXPECT_NE(std::string::npos, bash.find("check:--feature) values='coalesce-characters "));
  EXPECT_EQ(
      std::string::npos,
      bash.find(
          "check:--property) values='base-uri reparse-deferral text-scanner raw-octets indent"));
  const std::size_t vocabulary = bash.find("vocabulary) words='");
  ASSERT_NE(std::string::npos, vocabulary);
  EXPECT_NE(
      std::string::npos,
      bash.substr(vocabulary, bash.find('\n', vocabulary) - vocabulary).find("--maximum-entries"));
}

}  // namespace
