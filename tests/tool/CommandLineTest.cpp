#include <Tavrin/Version.h>
#include <sys/resource.h>

#include "Workplace.h"

namespace {

class CommandLine : public Workplace {
 protected:
  void SetUp() override { writeFile("a.xml", "<a/>"); }
};

Result misuse(const std::string& message) { return {2, "", "tavrin: " + message + "\n"}; }

}  // namespace

TEST_F(CommandLine, TellsTheVersionOfTheLibrary) {
  const std::string version = std::to_string(TAVRIN_VERSION_MAJOR) + "." +
                              std::to_string(TAVRIN_VERSION_MINOR) + "." +
                              std::to_string(TAVRIN_VERSION_PATCH);
  EXPECT_EQ(run({"--version"}), (Result{0, "tavrin " + version + "\n", ""}));
}

TEST_F(CommandLine, ListsTheRegisteredTypes) {
  EXPECT_EQ(run({"types"}), (Result{0,
                                    "reader Expat\nreader FI\nreader X891\nreader XML10\n"
                                    "writer FI\nwriter X891\nwriter XML\nwriter XML10\n",
                                    ""}));
}

TEST_F(CommandLine, NamesTheHelpOfWhatIsMisused) {
  const struct {
    ToolProcess::Arguments arguments;
    const char* message;
  } cases[] = {
      {{}, "a command is required (see tavrin --help)"},
      {{""}, "unknown command \"\" (see tavrin --help)"},
      {{"bogus"}, "unknown command \"bogus\" (see tavrin --help)"},
      {{"CHECK", "a.xml"}, "unknown command \"CHECK\" (did you mean \"check\"? see tavrin --help)"},
      {{"--bogus"}, "unknown option \"--bogus\" (see tavrin --help)"},
      {{"a\nb"}, "unknown command \"a\\nb\" (see tavrin --help)"},
      {{"--bogus", "types"}, "unknown option \"--bogus\" (see tavrin types --help)"},
      {{"types", "a.xml"}, "unexpected argument \"a.xml\" (see tavrin types --help)"},
      {{"types", "types"}, "unexpected argument \"types\" (see tavrin types --help)"},
      {{"convert"}, "IN is required (see tavrin convert --help)"},
      {{"convert", "--force"}, "IN is required (see tavrin convert --help)"},
      {{"convert", "a.xml", "b.xml", "c.xml"},
       "several documents need a folder for their copies, -o DIR (see tavrin convert --help)"},
      {{"convert", "a.xml", "--bogus"}, "unknown option \"--bogus\" (see tavrin convert --help)"},
      {{"convert", "-x", "a.xml"}, "unknown option \"-x\" (see tavrin convert --help)"},
      {{"convert", "a.xml", "--from"}, "--from: TYPE is missing (see tavrin convert --help)"},
      {{"convert", "a.xml", "--to"}, "--to: TYPE is missing (see tavrin convert --help)"},
      {{"convert", "a.xml", "--indent=yes"},
       "--indent: \"yes\" is not a number of blanks from 0 to 16 (see tavrin convert --help)"},
      {{"convert", "a.xml", "--indent=17"},
       "--indent: \"17\" is not a number of blanks from 0 to 16 (see tavrin convert --help)"},
      {{"convert", "a.xml", "--indent=-1"},
       "--indent: \"-1\" is not a number of blanks from 0 to 16 (see tavrin convert --help)"},
      {{"convert", "a.xml", "--tabs=1"}, "--tabs takes no value (see tavrin convert --help)"},
      {{"convert", "a.xml", "b.fi", "--tabs"},
       "--tabs: the copy is not XML text, and has no lines"},
      {{"convert", "a.xml", "--canonical=2"},
       "--canonical: \"2\" is not 1.0, 1.1 or exclusive (see tavrin convert --help)"},
      {{"convert", "a.xml", "--canonical", "--indent"},
       "--indent excludes --canonical (see tavrin convert --help)"},
      {{"convert", "a.xml", "--canonical", "--tabs"},
       "--tabs excludes --canonical (see tavrin convert --help)"},
      {{"convert", "a.xml", "--to", "XML10", "--canonical"},
       "--to excludes --canonical (see tavrin convert --help)"},
      {{"convert", "a.xml", "--no-declaration", "--canonical"},
       "--no-declaration excludes --canonical (see tavrin convert --help)"},
      {{"convert", "a.xml", "--comments"},
       "--comments requires --canonical (see tavrin convert --help)"},
      {{"convert", "a.xml", "--inclusive-prefixes", "p"},
       "--inclusive-prefixes requires --canonical (see tavrin convert --help)"},
      {{"convert", "a.xml", "--canonical", "--inclusive-prefixes", "p"},
       "--inclusive-prefixes requires --canonical=exclusive"},
      {{"convert", "a.xml", "b.fi", "--canonical"},
       "Canonical XML is text, and \"b.fi\" is the name of another format"},
      {{"convert", "a.xml", "--json"}, "unknown option \"--json\" (see tavrin convert --help)"},
      {{"check"}, "FILE is required (see tavrin check --help)"},
      {{"check", "--from", "Expat"}, "FILE is required (see tavrin check --help)"},
      {{"check", "--to", "XML", "a.xml"}, "unknown option \"--to\" (see tavrin check --help)"},
      {{"check", "a.xml", "--from"}, "--from: TYPE is missing (see tavrin check --help)"},
      {{"check", "--entities=no", "a.xml"},
       "--entities: \"no\" is not folder or any (see tavrin check --help)"},
      {{"events", "a.xml", "--from"}, "--from: TYPE is missing (see tavrin events --help)"},
      {{"events", "--document", "1", "a.xml"},
       "unknown option \"--document\" (see tavrin events --help)"},
      {{"convert", "--document", "0", "a.xml"},
       "--document: \"0\" is not the number of a document (see tavrin convert --help)"},
      {{"convert", "--document", "1x", "a.xml"},
       "--document: \"1x\" is not the number of a document (see tavrin convert --help)"},
      {{"stat", "a.xml", "--from"}, "--from: TYPE is missing (see tavrin stat --help)"},
      {{"stat", "--limit"}, "--limit: NAME=VALUE is missing (see tavrin stat --help)"},
      {{"diff", "--from", "Expat", "a.xml", "a.xml"},
       "unknown option \"--from\" (did you mean \"--from-a\"? see tavrin diff --help)"},
      {{"diff", "a.xml", "a.xml", "--from-a"},
       "--from-a: TYPE is missing (see tavrin diff --help)"},
      {{"diff", "a.xml", "a.xml", "--from-b"},
       "--from-b: TYPE is missing (see tavrin diff --help)"},
      {{"convert", "a.xml", "b.x3db", "--indent"},
       "--indent: the copy is not XML text, and has no lines"},
      {{"convert", "a.xml", "b.fi", "--indent"},
       "--indent: the copy is not XML text, and has no lines"},
      {{"convert", "a.xml", "--to", "FI", "--no-declaration"},
       "--no-declaration: the copy is not XML text"},
      {{"stat"}, "FILE is required (see tavrin stat --help)"},
      {{"stat", "--json", "a.xml"}, "unknown option \"--json\" (see tavrin stat --help)"},
      {{"diff"}, "A is required (see tavrin diff --help)"},
      {{"diff", "a.xml"}, "B is required (see tavrin diff --help)"},
      {{"diff", "a.xml", "a.xml", "a.xml"},
       "unexpected argument \"a.xml\" (see tavrin diff --help)"},
      {{"diff", "-", "-"}, "only one of the documents can be standard input"},
      {{"events"}, "FILE is required (see tavrin events --help)"},
      {{"events", "a.xml", "a.xml"}, "unexpected argument \"a.xml\" (see tavrin events --help)"},
      {{"check", "--"}, "FILE is required (see tavrin check --help)"},
      {{"--"}, "a command is required (see tavrin --help)"},
      {{"check", ""}, "\"\": No such file or directory"},
      {{"convert", "", "b.xml"}, "\"\": No such file or directory"},
      {{"convert", "a.xml", ""}, "\"\": No such file or directory"},
      {{"convert", "--to", "A", "--to", "B", "a.xml"},
       "--to: it may stand once (see tavrin convert --help)"},
      {{"check", "-j1", "--jobs", "2", "a.xml"},
       "--jobs: it may stand once (see tavrin check --help)"},
      {{"get", "--null=x", "//a", "a.xml"}, "--null takes no value (see tavrin get --help)"},
      {{"inspect", "--color=red", "a.xml"},
       "--color: \"red\" is not auto, always or never (see tavrin inspect --help)"},
      {{"vocabulary"}, "a command is required (see tavrin vocabulary --help)"},
      {{"vocabulary", "shw", "a"},
       "unknown command \"shw\" (did you mean \"show\"? see tavrin vocabulary --help)"},
      {{"vocabulary", "learn", "--memory", "5X", "a.xml"},
       "--memory: \"5X\" is not a number, maybe with K, M or G behind it (see tavrin vocabulary "
       "learn --help)"},
      {{"vocabulary", "learn", "--memory=-1", "a.xml"},
       "--memory: \"-1\" is not a number, maybe with K, M or G behind it (see tavrin vocabulary "
       "learn --help)"},
  };
  for (const auto& [arguments, message] : cases) {
    SCOPED_TRACE(message);
    EXPECT_EQ(run(arguments), misuse(message));
  }
  EXPECT_EQ(files(), Names{"a.xml"});
}

TEST_F(CommandLine, TakesNoOtherWordForAValueThatIsEmpty) {
  writeFile("5", "<a/>");
  const auto missing = [](const std::string& name, const std::string& command) {
    return misuse(name + ": the value is missing (see tavrin " + command + " --help)");
  };
  for (const std::string name : {"--from", "--to", "--encoding", "--document", "--indent",
                                 "--canonical", "--entities", "--output", "--jobs", "--feature",
                                 "--property", "--limit", "--typed", "--compress", "--repeat"}) {
    EXPECT_EQ(run({"convert", name + "=", "5", "a.xml"}), missing(name, "convert"));
    EXPECT_EQ(run({"convert", "5", "a.xml", name + "="}), missing(name, "convert"));
  }
  EXPECT_EQ(run({"get", "--max=", "5", "//a", "a.xml"}), missing("--max", "get"));
  EXPECT_EQ(run({"get", "--ns=", "p=u", "//a", "a.xml"}), missing("--ns", "get"));
  EXPECT_EQ(run({"vocabulary", "learn", "--memory=", "5", "a.xml"}),
            missing("--memory", "vocabulary learn"));
  EXPECT_EQ(run({"convert", "--force=", "a.xml"}),
            misuse("--force takes no value (see tavrin convert --help)"));
  EXPECT_EQ(run({"convert", "--bogus=", "a.xml"}),
            misuse("unknown option \"--bogus=\" (see tavrin convert --help)"));
  // It is the name of a file behind this.
  EXPECT_EQ(run({"check", "--", "--from="}), misuse("--from=: No such file or directory"));
  EXPECT_EQ(files(), (Names{"5", "a.xml"}));
}

TEST_F(CommandLine, ListsTheTypesThereAreWhereThereIsNoneOfAName) {
  const std::string readers = " (there are Expat, FI, X891, XML10)";
  const std::string writers = " (there are FI, X891, XML, XML10)";
  EXPECT_EQ(run({"convert", "a.xml", "b.xml", "--from", "Bogus"}),
            misuse("Unknown XML Reader: \"Bogus\"" + readers));
  EXPECT_EQ(run({"convert", "a.xml", "b.xml", "--to", "Bogus"}),
            misuse("Unknown XML Writer: \"Bogus\"" + writers));
  EXPECT_EQ(run({"convert", "a.xml", "--from", "XML"}),
            misuse("Unknown XML Reader: \"XML\"" + readers));
  EXPECT_EQ(run({"convert", "a.xml", "--to", "Expat"}),
            misuse("Unknown XML Writer: \"Expat\"" + writers));
  const Result unknown = misuse("Unknown XML Reader: \"Bogus\"" + readers);
  EXPECT_EQ(run({"check", "--from", "Bogus", "a.xml"}), unknown);
  EXPECT_EQ(run({"events", "--from", "Bogus", "a.xml"}), unknown);
  EXPECT_EQ(run({"stat", "--from", "Bogus", "a.xml"}), unknown);
  EXPECT_EQ(run({"diff", "--from-a", "Bogus", "a.xml", "a.xml"}), unknown);
  EXPECT_EQ(run({"diff", "--from-b", "Bogus", "a.xml", "a.xml"}), unknown);
  EXPECT_EQ(files(), Names{"a.xml"});
}

TEST_F(CommandLine, TakesTypesInUpperAndLowerCase) {
  EXPECT_EQ(run({"convert", "a.xml", "--from", "eXPAT", "--to=xml"}),
            (Result{0, "<?xml version=\"1.0\" encoding=\"UTF-8\"?><a/>", ""}));
}

TEST_F(CommandLine, TakesOptionsBeforeBetweenAndBehindFiles) {
  const Result done = {0, "<a/>", ""};
  EXPECT_EQ(run({"convert", "--no-declaration", "a.xml", "-"}), done);
  EXPECT_EQ(run({"convert", "a.xml", "--no-declaration", "-"}), done);
  EXPECT_EQ(run({"convert", "a.xml", "-", "--no-declaration"}), done);
  EXPECT_EQ(run({"convert", "--no-declaration", "--no-declaration", "--", "a.xml", "-"}), done);
}

TEST_F(CommandLine, TakesNamesThatLookLikeSomethingElse) {
  const Names names = {"with space.xml", "types",     "check", "-dash.xml", "--force",
                       "\xC3\xA4.xml",   "a,b",       "%%",    "#",         "'quoted'",
                       "$HOME",          "\"quoted\""};
  for (const std::string& name : names) {
    SCOPED_TRACE(name);
    writeFile(name, "<a/>");
    EXPECT_EQ(run({"check", "--", name}), (Result{0, name + ": well-formed\n", ""}));
    EXPECT_EQ(run({"convert", "--no-declaration", "--", name, "-"}), (Result{0, "<a/>", ""}));
    EXPECT_EQ(run({"convert", "--no-declaration", "--force", "--", "a.xml", name}), silent(0));
    EXPECT_EQ(readFile(name), "<a/>");
  }
}

TEST_F(CommandLine, WritesBracketedNamesAsPaths) {
  for (const std::string name : {"[a,b]", "[]", "{}", "++"}) {
    SCOPED_TRACE(name);
    writeFile(name, "<a/>");
    EXPECT_EQ(run({"check", name}), (Result{0, "./" + name + ": well-formed\n", ""}));
    EXPECT_EQ(run({"convert", "--no-declaration", name}), (Result{0, "<a/>", ""}));
  }
}

TEST_F(CommandLine, KeepsNamesWithControlCharactersOnOneLine) {
  const std::string name = "a\n\t\r\x1B\x7F.xml";
  EXPECT_EQ(run({"check", name}),
            (Result{2, "", "tavrin: a\\n\\t\\r\\x1B\\x7F.xml: No such file or directory\n"}));
  writeFile(name, "<a>");
  EXPECT_EQ(
      run({"check", name}),
      (Result{1, "",
              "a\\n\\t\\r\\x1B\\x7F.xml:1:4: no element found: <a> of line 1 is not closed\n"}));
  writeFile(name, "<a/>");
  EXPECT_EQ(run({"check", name}), (Result{0, "a\\n\\t\\r\\x1B\\x7F.xml: well-formed\n", ""}));
}

TEST_F(CommandLine, ReportsThatHelpAndTypesCannotBeWritten) {
  const auto fullOutput = [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); };
  const Result full = misuse("standard output: No space left on device");
  EXPECT_EQ(run({"--help"}, "", fullOutput), full);
  EXPECT_EQ(run({"--version"}, "", fullOutput), full);
  EXPECT_EQ(run({"types"}, "", fullOutput), full);
  EXPECT_EQ(run({"types"}, "", [] { close(STDOUT_FILENO); }),
            misuse("standard output: Bad file descriptor"));
}

TEST_F(CommandLine, ReadsADeepDocumentWithASmallStack) {
  constexpr int kDepth = 200000;
  std::string document, end;
  for (int i = 0; i < kDepth; ++i) document += "<a>";
  for (int i = 0; i < kDepth; ++i) end += "</a>";
  document.replace(document.size() - 3, 3, "<a/>");
  document += end.substr(4);
  const auto smallStack = [] {
    const rlimit limit = {512 * 1024, 512 * 1024};
    setrlimit(RLIMIT_STACK, &limit);
  };
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, document, smallStack),
            (Result{0, document, ""}));
  EXPECT_EQ(run({"check", "-"}, document, smallStack), (Result{0, "-: well-formed\n", ""}));
}
