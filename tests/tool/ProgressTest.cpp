#include <regex>
#include <thread>

#include "HexOctets.h"
#include "Terminal.h"
#include "Workplace.h"

namespace {

constexpr std::size_t kLimit = 8 * 1024 * 1024;

/// Whether a text is a progress bar that was drawn at least once, then cleared; then a message.
bool isBarThen(const std::string& shown, const std::string& message) {
  static const std::regex bar("(\r\\[#*\\.*\\] [ 0-9]{3}%)+\r\x1B\\[K");
  std::smatch match;
  return std::regex_search(shown, match, bar, std::regex_constants::match_continuous) &&
         match.suffix() == message;
}

/// Whether a text holds the line about many files, which is cleared, and a message beside it.
bool areLinesAround(const std::string& shown, const std::string& message) {
  static const std::regex line(
      "\r\x1B\\[K[0-9]+ of [0-9]+ files, [0-9.]+ MB of [0-9.]+ MB, [0-9.-]+ MB/s, "
      "[0-9a-z ]+ left|\r\x1B\\[K");
  return shown.starts_with("\r\x1B[K") && shown.find("MB/s") != std::string::npos &&
         std::regex_replace(shown, line, "") == message;
}

class ProgressBar : public Workplace {
 protected:
  /// A document of a certain size.
  static std::string document(std::size_t size) {
    return "<a>" + std::string(size - 7, 'x') + "</a>";
  }

  /// Runs the tool with standard error on the terminal.
  Result runOnTerminal(const ToolProcess::Arguments& arguments) {
    return run(arguments, "", [this] { dup2(terminal_.program(), STDERR_FILENO); });
  }

  Terminal terminal_;
};

}  // namespace

TEST_F(ProgressBar, IsShownForALargeFileAndCleared) {
  writeFile("large.xml", document(kLimit + 1));
  EXPECT_EQ(runOnTerminal({"check", "large.xml"}), (Result{0, "large.xml: well-formed\n", ""}));
  const std::string shown = terminal_.shown();
  EXPECT_PRED2(isBarThen, shown, "");
  // The first events come with what the buffer of the input has: little of 8 MiB and an octet.
  EXPECT_EQ(shown.substr(0, 59), "\r[" + std::string(50, '.') + "]   0%" + "\r");
}

TEST_F(ProgressBar, IsShownWhileAFileIsConverted) {
  const std::string text = document(kLimit + 1);
  writeFile("large.xml", text);
  EXPECT_EQ(runOnTerminal({"convert", "--no-declaration", "large.xml", "out.xml"}), silent(0));
  EXPECT_PRED2(isBarThen, terminal_.shown(), "");
  EXPECT_EQ(readFile("out.xml"), text);
  EXPECT_EQ(runOnTerminal({"convert", "--no-declaration", "large.xml"}), (Result{0, text, ""}));
  EXPECT_PRED2(isBarThen, terminal_.shown(), "");
}

// The reader of Fast Infoset takes its octets one at a time.
TEST_F(ProgressBar, IsShownForFastInfoset) {
  // 10 MiB: a long text, then empty elements of two octets.
  constexpr std::size_t kText = 9 * 1024 * 1024;
  constexpr std::size_t kElements = 512 * 1024;
  std::string document = octets("E0 00 00 01 00 3C 00 'a' 83 00 8F FE FD");
  document.append(kText, 'x').append(octets("3C 00 'b' F0"));
  for (std::size_t i = 0; i < kElements; ++i) document.append("\x01\xF0", 2);
  document += octets("FF");
  writeFile("large.fi", document);
  EXPECT_EQ(runOnTerminal({"check", "large.fi"}), (Result{0, "large.fi: well-formed\n", ""}));
  EXPECT_PRED2(isBarThen, terminal_.shown(), "");
  writeFile("cut.fi", document.substr(0, document.size() - 1));
  EXPECT_EQ(runOnTerminal({"check", "cut.fi"}).status, 1);
  EXPECT_PRED2(isBarThen, terminal_.shown(),
               "cut.fi: octet " + std::to_string(document.size() - 1) +
                   ": Unexpected end of document\n"
                   "  in /a\n"
                   "10485761  F0 01 F0 01 F0 01 F0 01  F0 01 F0 01 F0 01 F0 01  ................\n"
                   "10485777  F0                                                .\n"
                   "          ^^\n");
}

// For text, a document with a document type is read twice: the bar does not go back.
TEST_F(ProgressBar, IsOneForADocumentThatIsReadTwice) {
  // 9 MiB in 144 texts.
  std::string content;
  for (int i = 0; i < 144; ++i) content += octets("83 00 00 FE FD") + std::string(65536, 'x');
  for (const std::string head : {"C4 F0", ""}) {
    SCOPED_TRACE(head);
    writeFile("large.fi", octets("E0 00 00 01 00 " + head + " 3C 00 'a'") + content + octets("FF"));
    EXPECT_EQ(runOnTerminal({"convert", "--force", "large.fi", "out.xml"}), silent(0));
    const std::string shown = terminal_.shown();
    EXPECT_PRED2(isBarThen, shown, "");
    int last = 0;
    for (std::size_t place = 0; (place = shown.find('%', place)) != std::string::npos; ++place) {
      const int percent = std::stoi(shown.substr(place - 3, 3));
      EXPECT_GE(percent, last);
      last = percent;
    }
  }
}

// There is room for one.
TEST_F(ProgressBar, IsShownForOneOfTwoDocuments) {
  writeFile("large.xml", document(kLimit + 1));
  writeFile("small.xml", "<a/>");
  EXPECT_EQ(runOnTerminal({"diff", "large.xml", "large.xml"}), silent(0));
  EXPECT_PRED2(isBarThen, terminal_.shown(), "");
  EXPECT_EQ(runOnTerminal({"diff", "small.xml", "large.xml"}).status, 1);
  EXPECT_PRED2(isBarThen, terminal_.shown(), "");
}

// --- The line about many files ---

TEST_F(ProgressBar, IsALineForManyFiles) {
  writeFile("large.xml", document(kLimit + 1));
  writeFile("small.xml", "<a/>");
  const ToolProcess::Arguments names = {"large.xml", "small.xml", "missing.xml", "large.xml"};
  for (const std::string jobs : {"1", "3"}) {
    SCOPED_TRACE(jobs);
    ToolProcess::Arguments arguments = {"check", "-j", jobs};
    arguments.insert(arguments.end(), names.begin(), names.end());
    EXPECT_EQ(runOnTerminal(arguments),
              (Result{2, "large.xml: well-formed\nsmall.xml: well-formed\nlarge.xml: well-formed\n",
                      ""}));
    EXPECT_PRED2(areLinesAround, terminal_.shown(),
                 "tavrin: missing.xml: No such file or directory\n");
    arguments.insert(arguments.begin() + 1, "--quiet");
    EXPECT_EQ(runOnTerminal(arguments), silent(2));
    EXPECT_EQ(terminal_.shown(), "tavrin: missing.xml: No such file or directory\n");
  }
}

TEST_F(ProgressBar, IsALineForFilesThatAreMany) {
  const auto checkFiles = [&](int number) {
    while (static_cast<int>(files().size()) < number) {
      writeFile(std::to_string(files().size()) + ".xml", "<a/>");
    }
    EXPECT_EQ(runOnTerminal({"check", "-j2", "."}).status, 0);
    return terminal_.shown();
  };
  EXPECT_EQ(checkFiles(100), "");
  EXPECT_PRED2(areLinesAround, checkFiles(101), "");
}

TEST_F(ProgressBar, IsShownForStandardInputThatIsAFile) {
  writeFile("large.xml", document(kLimit + 1));
  EXPECT_EQ(run({"events", "-"}, "",
                [this] {
                  dup2(open("large.xml", O_RDONLY), STDIN_FILENO);
                  dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
                  dup2(terminal_.program(), STDERR_FILENO);
                }),
            silent(0));
  EXPECT_PRED2(isBarThen, terminal_.shown(), "");
}

TEST_F(ProgressBar, IsClearedBeforeAFailureIsReported) {
  std::string text = document(kLimit + 1);
  text.replace(text.size() - 4, 4, "</b>");
  writeFile("large.xml", text);
  const std::string message =
      "large.xml:1:8388608: mismatched tag: expected </a> of line 1\n"
      "     1 | ..." +
      std::string(63, 'x') + "</b>\n" + "       | " + std::string(68, ' ') + "^\n";
  for (const std::string command : {"check", "convert", "events"}) {
    SCOPED_TRACE(command);
    EXPECT_EQ(runOnTerminal({command, "large.xml"}).status, 1);
    EXPECT_PRED2(isBarThen, terminal_.shown(), message);
  }
}

TEST_F(ProgressBar, IsNotShownForAFileUpToTheLimit) {
  writeFile("in.xml", document(kLimit));
  EXPECT_EQ(runOnTerminal({"check", "in.xml"}), (Result{0, "in.xml: well-formed\n", ""}));
  EXPECT_EQ(terminal_.shown(), "");
  writeFile("in.xml", "<a/>");
  EXPECT_EQ(runOnTerminal({"check", "in.xml"}), (Result{0, "in.xml: well-formed\n", ""}));
  EXPECT_EQ(runOnTerminal({"check", "missing.xml"}).status, 2);
  EXPECT_EQ(terminal_.shown(), "tavrin: missing.xml: No such file or directory\n");
}

TEST_F(ProgressBar, IsNotShownForAPipe) {
  const std::string text = document(kLimit + 1);
  EXPECT_EQ(run({"check", "-"}, text, [this] { dup2(terminal_.program(), STDERR_FILENO); }),
            (Result{0, "-: well-formed\n", ""}));
  EXPECT_EQ(terminal_.shown(), "");
}

TEST_F(ProgressBar, IsNotShownOffTheTerminal) {
  writeFile("large.xml", document(kLimit + 1));
  EXPECT_EQ(run({"check", "large.xml"}), (Result{0, "large.xml: well-formed\n", ""}));
  // Standard output on a terminal changes nothing about that.
  EXPECT_EQ(run({"check", "large.xml"}, "", [this] { dup2(terminal_.program(), STDOUT_FILENO); }),
            silent(0));
  EXPECT_EQ(terminal_.shown(), "large.xml: well-formed\n");
}

// It would run through the document.
TEST_F(ProgressBar, IsNotShownWhereTheDocumentGoesToTheTerminal) {
  writeFile("large.xml", std::string(kLimit, ' ') + "<a/>");
  const auto onTerminal = [this] {
    dup2(terminal_.program(), STDOUT_FILENO);
    dup2(terminal_.program(), STDERR_FILENO);
  };
  EXPECT_EQ(run({"convert", "--no-declaration", "large.xml"}, "", onTerminal), silent(0));
  EXPECT_EQ(terminal_.shown(), "<a/>");
  EXPECT_EQ(run({"events", "large.xml"}, "", onTerminal), silent(0));
  EXPECT_EQ(terminal_.shown(),
            "startDocument()\n"
            "startElement(\"\", \"a\", \"a\", [])\n"
            "endElement(\"\", \"a\", \"a\")\n"
            "endDocument()\n");
  EXPECT_EQ(run({"check", "large.xml"}, "", onTerminal), silent(0));
  EXPECT_PRED2(isBarThen, terminal_.shown(), "large.xml: well-formed\n");
}

TEST_F(ProgressBar, IsClearedBeforeASignalEndsTheTool) {
  writeFile("large.xml", document(kLimit + 1));
  require(mkfifo(path("pipe").c_str(), 0600), "mkfifo");
  ToolProcess process({"convert", "large.xml", "pipe"}, directory_,
                      [this] { dup2(terminal_.program(), STDERR_FILENO); });
  // Nobody empties the pipe, so the work stands still once it is full.
  const int pipe = require(open(path("pipe").c_str(), O_RDONLY | O_CLOEXEC), "open");
  std::string shown;
  while (shown.empty()) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    shown = terminal_.shown();
  }
  process.signal(SIGTERM);
  EXPECT_EQ(process.wait(), silent(-SIGTERM));
  EXPECT_PRED2(isBarThen, shown + terminal_.shown(), "");
  close(pipe);
}
