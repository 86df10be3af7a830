#include <regex>

#include "Workplace.h"

namespace {

/// The options --timing and --repeat.
class Timing : public Workplace {
 protected:
  void SetUp() override { writeFile("in.xml", "<a>text</a>"); }

  static void expectLines(const std::string& text, const std::string& pattern) {
    EXPECT_TRUE(std::regex_match(text, std::regex(pattern))) << text;
  }

  static Result refused(const std::string& message) { return {2, "", "tavrin: " + message + "\n"}; }
};

const std::string kTime = "[0-9]+\\.[0-9]{3} ms";
const std::string kRate = "[0-9]+\\.[0-9] MB/s\n";

std::string repeated(const std::string& what, int times) {
  return what + " " + std::to_string(times) + " times: min " + kTime + ", median " + kTime + ", " +
         kRate;
}

}  // namespace

TEST_F(Timing, TellsOfReading) {
  const Result result = run({"check", "--timing", "in.xml"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "in.xml: well-formed\n");
  expectLines(result.err, "in\\.xml: read 11 octets in " + kTime + ", " + kRate);
}

TEST_F(Timing, TellsOfCopying) {
  const Result result = run({"convert", "--timing", "in.xml", "out.fi"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "");
  expectLines(result.err, "in\\.xml: copied 11 octets to 15 in " + kTime + ", " + kRate);
  EXPECT_EQ(readFile("out.fi").size(), 15U);
}

TEST_F(Timing, TakesStandardInput) {
  const Result result = run({"convert", "--timing", "--no-declaration", "-"}, "<a/>");
  EXPECT_EQ(result.out, "<a/>");
  expectLines(result.err, "-: copied 4 octets to 4 in " + kTime + ", " + kRate);
}

TEST_F(Timing, TellsOfEveryRepetition) {
  const Result check = run({"check", "--repeat", "2", "in.xml"});
  EXPECT_EQ(check.out, "in.xml: well-formed\n");
  expectLines(check.err, "in\\.xml: read 11 octets in " + kTime + ", " + kRate +
                             "in\\.xml: " + repeated("reading", 2));
  const Result convert =
      run({"convert", "--timing", "--repeat=3", "--no-declaration", "in.xml", "-"});
  EXPECT_EQ(convert.out, "<a>text</a>");
  expectLines(convert.err, "in\\.xml: copied 11 octets to 11 in " + kTime + ", " + kRate +
                               "in\\.xml: " + repeated("reading", 3) +
                               "in\\.xml: " + repeated("copying", 3));
  EXPECT_EQ(files(), Names{"in.xml"});
}

TEST_F(Timing, TellsOfEveryFileInOrder) {
  writeFile("two.xml", "<a/>");
  for (const std::string jobs : {"1", "2"}) {
    const Result result = run({"convert", "--quiet", "--repeat", "1", "-j", jobs, "-o",
                               "out" + jobs, "in.xml", "two.xml"});
    EXPECT_EQ(result.status, 0);
    std::string pattern;
    for (const std::string line :
         {"in\\.xml: copied 11 octets to 15", "two\\.xml: copied 4 octets to 9"}) {
      const std::string name = line.substr(0, line.find(' ') + 1);
      pattern += line + " in " + kTime + ", " + kRate + name + repeated("reading", 1) + name +
                 repeated("copying", 1);
    }
    expectLines(result.err, pattern);
  }
}

TEST_F(Timing, LetsWarningsBeHeardOnce) {
  writeFile("loss.xml", "<!DOCTYPE a SYSTEM 'd'><a b='&e;'/>");
  const Result result = run({"check", "--repeat", "3", "loss.xml"});
  EXPECT_EQ(result.status, 0);
  const std::size_t first = result.err.find("warning");
  EXPECT_NE(first, std::string::npos);
  EXPECT_EQ(result.err.find("warning", first + 1), std::string::npos);
}

TEST_F(Timing, EndsWithADocumentThatFails) {
  writeFile("broken.xml", "<a>");
  const Result failed = {1, "", "broken.xml:1:4: no element found: <a> of line 1 is not closed\n"};
  EXPECT_EQ(run({"check", "--repeat", "3", "broken.xml"}), failed);
  EXPECT_EQ(run({"convert", "--repeat", "3", "broken.xml", "out.fi"}), failed);
}

TEST_F(Timing, NeedsWhatCanBeReadAgain) {
  EXPECT_EQ(run({"check", "--repeat", "2", "in.xml", "-"}),
            refused("--repeat: - can be read only once"));
  EXPECT_EQ(run({"convert", "--repeat", "2", "-", "out.xml"}),
            refused("--repeat: - can be read only once"));
  require(mkfifo(path("pipe").c_str(), 0600), "mkfifo");
  EXPECT_EQ(run({"check", "--repeat", "2", "pipe"}),
            refused("--repeat: pipe can be read only once"));
  // Standard output is not read again.
  EXPECT_EQ(run({"convert", "--repeat", "2", "in.xml", "-"}).status, 0);
}

TEST_F(Timing, RepeatsACertainNumberOfTimes) {
  for (const std::string number : {"0", "10001", "-1", "x", "1.5", "1K"}) {
    EXPECT_EQ(run({"check", "--repeat=" + number, "in.xml"}),
              refused("--repeat: \"" + number +
                      "\" is not a number from 1 to 10000 (see tavrin check --help)"));
  }
}
