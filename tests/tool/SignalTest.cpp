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
