#include "Workplace.h"

namespace {

/// The tool in the middle of a document.
class Signal : public Workplace {
 protected:
  /// Ends the tool by a signal and looks at what it leaves behind.
  void expectClean(int signal, const ToolProcess::Arguments& arguments, const Names& left) {
    SCOPED_TRACE(signal);
    ToolProcess process(arguments, directory_);
    process.write("<a>" + std::string(3000000, 'x'));
    waitForFiles(left.size() + 1);
    process.signal(signal);
    EXPECT_EQ(process.wait(), silent(-signal));
    EXPECT_EQ(files(), left);
  }
};

}  // namespace

TEST_F(Signal, LeavesNothingBehind) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    expectClean(signal, {"convert", "-", "out.xml"}, {});
  }
}

// Each is in the middle of its work, in a thread of its own.
TEST_F(Signal, LeavesNothingBehindOfManyFiles) {
  const Names pipes = {"a.xml", "b.xml", "c.xml", "d.xml"};
  for (const std::string& name : pipes) require(mkfifo(path(name).c_str(), 0600), "mkfifo");
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    SCOPED_TRACE(signal);
    std::vector<int> ends;
    for (const std::string& name : pipes) {
      ends.push_back(require(open(path(name).c_str(), O_RDWR | O_CLOEXEC), "open"));
      require(write(ends.back(), "<a>text", 7) == 7 ? 0 : -1, "write");
      // The first octets are awaited before a file is begun.
      const std::string more(1000, ' ');
      require(write(ends.back(), more.data(), more.size()) > 0 ? 0 : -1, "write");
    }
    ToolProcess process({"convert", "-j4", "-o", ".", "a.xml", "b.xml", "c.xml", "d.xml"},
                        directory_);
    waitForFiles(8);
    process.signal(signal);
    EXPECT_EQ(process.wait(), silent(-signal));
    EXPECT_EQ(files(), pipes);
    for (const int end : ends) close(end);
  }
}

TEST_F(Signal, LeavesAnOldFileAlone) {
  writeFile("out.xml", "old");
  expectClean(SIGTERM, {"convert", "--force", "-", "out.xml"}, {"out.xml"});
  EXPECT_EQ(readFile("out.xml"), "old");
}

TEST_F(Signal, EndsTheToolAlsoWhereThereIsNoFile) {
  for (const std::string command : {"check", "events", "convert"}) {
    SCOPED_TRACE(command);
    ToolProcess process({command, "-"}, directory_);
    process.write("<a>" + std::string(3000000, 'x'));
    process.signal(SIGTERM);
    EXPECT_EQ(process.wait().status, -SIGTERM);
  }
}

// As under nohup.
TEST_F(Signal, IsIgnoredWhereTheToolWasStartedSo) {
  ToolProcess process({"convert", "--no-declaration", "-", "out.xml"}, directory_,
                      [] { std::signal(SIGHUP, SIG_IGN); });
  const std::string beginning = "<a>" + std::string(1000, 'x');
  process.write(beginning);
  waitForFiles(1);
  process.signal(SIGHUP);
  process.write("</a>");
  EXPECT_EQ(process.wait(), silent(0));
  EXPECT_EQ(readFile("out.xml"), beginning + "</a>");
}
