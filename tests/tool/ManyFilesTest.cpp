#include <linux/capability.h>
#include <sys/prctl.h>

#include <regex>

#include "HexOctets.h"
#include "Workplace.h"

namespace {

namespace fs = std::filesystem;

const std::string kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

/// Many documents copied into a folder.
class ManyFiles : public Workplace {
 protected:
  /// All files below a folder, with their paths, in order.
  Names tree(const std::string& folder) const {
    Names names;
    for (const auto& entry : fs::recursive_directory_iterator(path(folder))) {
      if (!entry.is_directory()) names.push_back(entry.path().string().substr(path("").size()));
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  void makeFolder(const std::string& name) const { fs::create_directories(path(name)); }

  /// Runs without the summary, which tells the time.
  Result convert(ToolProcess::Arguments arguments, const std::function<void()>& beforeExec = {}) {
    arguments.insert(arguments.begin(), {"convert", "--quiet"});
    return run(arguments, "", beforeExec);
  }

  static Result refused(const std::string& message) { return {2, "", "tavrin: " + message + "\n"}; }
};

/// An element "a" without content.
const std::string kElement = octets("E0 00 00 01 00 3C 00 'a' FF");

/// The superuser may read any file, but not without these capabilities.
void giveUpReadingAnyFile() {
  prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE);
  prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH);
}

}  // namespace

// --- What the copies are and are called ---

TEST_F(ManyFiles, AreCopiedIntoAFolderUnderTheirOwnNames) {
  makeFolder("deep/er");
  writeFile("one.xml", "<a/>");
  writeFile("deep/er/two.xml", "<a/>");
  EXPECT_EQ(convert({"-o", "out", "one.xml", "deep/er/two.xml"}), silent(0));
  EXPECT_EQ(tree("out"), (Names{"out/one.fi", "out/two.fi"}));
  EXPECT_EQ(readFile("out/one.fi"), kElement);
  EXPECT_EQ(readFile("out/two.fi"), kElement);
}

TEST_F(ManyFiles, OfAFolderKeepTheirPlaces) {
  makeFolder("in/b/c");
  for (const std::string name : {"in/z.xml", "in/b/y.xml", "in/b/c/x.xml"}) writeFile(name, "<a/>");
  for (const std::string folder : {"in", "in/", "./in", "in//"}) {
    SCOPED_TRACE(folder);
    EXPECT_EQ(convert({"--force", "--output=new/out", folder}), silent(0));
    EXPECT_EQ(tree("new"), (Names{"new/out/b/c/x.fi", "new/out/b/y.fi", "new/out/z.fi"}));
    EXPECT_EQ(readFile("new/out/b/c/x.fi"), kElement);
    fs::remove_all(path("new"));
  }
}

TEST_F(ManyFiles, HaveEndingsThatSuitTheFormat) {
  makeFolder("in");
  for (const std::string name :
       {"a.xml", "b.XML", "c.x3d", "d.svg", "e.xsd", "f.tar.xml", "g.h.rng"}) {
    writeFile("in/" + name, "<a/>");
  }
  EXPECT_EQ(convert({"-o", "binary", "in"}), silent(0));
  EXPECT_EQ(tree("binary"), (Names{"binary/a.fi", "binary/b.fi", "binary/c.x3db", "binary/d.svg.fi",
                                   "binary/e.xsd.fi", "binary/f.tar.fi", "binary/g.h.rng.fi"}));
  // And back.
  writeFile("binary/i.finf", kElement);
  EXPECT_EQ(convert({"--no-declaration", "-o", "text", "binary"}), silent(0));
  EXPECT_EQ(tree("text"), (Names{"text/a.xml", "text/b.xml", "text/c.x3d", "text/d.svg",
                                 "text/e.xsd", "text/f.tar.xml", "text/g.h.rng", "text/i.xml"}));
  for (const std::string& name : tree("text")) EXPECT_EQ(readFile(name), "<a/>");
}

TEST_F(ManyFiles, TakeTheTypeThatIsNamed) {
  writeFile("a.xml", "<a/>");
  writeFile("b.fi", kElement);
  writeFile("c.svg", "<a/>");
  writeFile("noending", "<a/>");
  const Names in = {"a.xml", "b.fi", "c.svg", "noending"};
  const auto convertTo = [&](const std::string& type) {
    ToolProcess::Arguments arguments = {"--to", type, "-o", type};
    arguments.insert(arguments.end(), in.begin(), in.end());
    return convert(arguments);
  };
  EXPECT_EQ(convertTo("XML10"), silent(0));
  EXPECT_EQ(tree("XML10"), (Names{"XML10/a.xml", "XML10/b.xml", "XML10/c.svg", "XML10/noending"}));
  EXPECT_EQ(readFile("XML10/b.xml"), kDeclaration + "<a/>");
  EXPECT_EQ(convertTo("X891"), silent(0));
  EXPECT_EQ(tree("X891"), (Names{"X891/a.fi", "X891/b.fi", "X891/c.svg.fi", "X891/noending.fi"}));
  EXPECT_EQ(readFile("X891/b.fi"), kElement);
  EXPECT_EQ(convertTo("FI"), silent(0));
  EXPECT_EQ(tree("FI"), (Names{"FI/a.fi", "FI/b.fi", "FI/c.svg.fi", "FI/noending.fi"}));
  EXPECT_EQ(convertTo("Bogus"),
            refused("Unknown XML Writer: \"Bogus\" (there are FI, X891, XML, XML10)"));
  EXPECT_FALSE(fs::exists(path("Bogus")));
}

// A file alone may go to a folder, too.
TEST_F(ManyFiles, MayBeOne) {
  writeFile("a.xml", "<a/>");
  EXPECT_EQ(run({"convert", "-o", "out", "a.xml"}), silent(0));
  EXPECT_EQ(readFile("out/a.fi"), kElement);
  EXPECT_EQ(run({"convert", "a.xml", "-o", "."}), silent(0));
  EXPECT_EQ(files(), (Names{"a.fi", "a.xml", "out"}));
}

TEST_F(ManyFiles, AreSummedUp) {
  writeFile("a.xml", "<a>" + std::string(2000000, 'x') + "</a>");
  writeFile("b.xml", "<a/>");
  const Result result = run({"convert", "-o", "out", "a.xml", "b.xml"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, "");
  const std::regex summary(
      "tavrin: 2 of 2 files converted: 2\\.0 MB to 2\\.0 MB in [0-9]+\\.[0-9]{3} s, [0-9.-]+ "
      "MB/s\n");
  EXPECT_TRUE(std::regex_match(result.err, summary)) << result.err;
}

// --- What is a document in a folder ---

TEST_F(ManyFiles, OfAFolderAreThoseWithTheNamesOfDocuments) {
  makeFolder("in/.hidden");
  makeFolder("in/folder.xml");
  for (const std::string name :
       {"in/a.xml", "in/b.txt", "in/c", "in/.d.xml", "in/.xml", "in/xml", "in/.hidden/e.xml",
        "in/folder.xml/f.xml", "in/g.xml~", "in/h.xml.bak"}) {
    writeFile(name, "<a/>");
  }
  EXPECT_EQ(convert({"-o", "out", "in"}), silent(0));
  EXPECT_EQ(tree("out"), (Names{"out/a.fi", "out/folder.xml/f.fi"}));
}

TEST_F(ManyFiles, HaveAnyNameWhereTheyAreNamed) {
  makeFolder(".hidden");
  writeFile(".hidden/.a.txt", "<a/>");
  writeFile("c\nd\x1B.xml", "<a/>");
  writeFile("b", "<a/>");
  EXPECT_EQ(convert({"-o", "out", ".hidden/.a.txt", "b", "c\nd\x1B.xml"}), silent(0));
  EXPECT_EQ(tree("out"), (Names{"out/.a.txt.fi", "out/b.fi", "out/c\nd\x1B.fi"}));
}

TEST_F(ManyFiles, AreNoPipesAndNoFoldersBehindLinks) {
  makeFolder("in/a");
  makeFolder("elsewhere");
  writeFile("elsewhere/x.xml", "<a/>");
  writeFile("in/a/y.xml", "<a/>");
  require(mkfifo(path("in/pipe.xml").c_str(), 0600), "mkfifo");
  fs::create_directory_symlink("..", path("in/a/loop"));
  fs::create_directory_symlink("../elsewhere", path("in/other.xml"));
  fs::create_symlink("../elsewhere/x.xml", path("in/link.xml"));
  EXPECT_EQ(convert({"-o", "out", "in"}), silent(0));
  EXPECT_EQ(tree("out"), (Names{"out/a/y.fi", "out/link.fi"}));
  // A link that is named is followed.
  EXPECT_EQ(convert({"-o", "out2", "in/other.xml"}), silent(0));
  EXPECT_EQ(tree("out2"), (Names{"out2/x.fi"}));
}

TEST_F(ManyFiles, BehindLinksThatLeadNowhereAreToldOf) {
  makeFolder("in");
  writeFile("in/b.xml", "<a/>");
  fs::create_symlink("missing", path("in/a.xml"));
  fs::create_symlink("c.xml", path("in/c.xml"));
  EXPECT_EQ(convert({"-o", "out", "in"}),
            (Result{2, "",
                    "tavrin: in/a.xml: No such file or directory\n"
                    "tavrin: in/c.xml: Too many levels of symbolic links\n"}));
  EXPECT_EQ(tree("out"), (Names{"out/b.fi"}));
}

TEST_F(ManyFiles, AreMissingInAnEmptyFolder) {
  makeFolder("empty/below");
  const Result nothing = {0, "", "empty: warning: there are no documents in this folder\n"};
  EXPECT_EQ(convert({"-o", "out", "empty"}), nothing);
  EXPECT_EQ(files(), Names{"empty"});
  writeFile("a.xml", "<a/>");
  EXPECT_EQ(convert({"-o", "out", "empty", "a.xml"}), nothing);
  EXPECT_EQ(tree("out"), Names{"out/a.fi"});
}

TEST_F(ManyFiles, AreNotThoseInTheFolderOfTheCopies) {
  makeFolder("out/below");
  writeFile("a.xml", "<a/>");
  writeFile("out/below/b.xml", "<a/>");
  EXPECT_EQ(convert({"-o", "out", "."}), silent(0));
  EXPECT_EQ(tree("out"), (Names{"out/a.fi", "out/below/b.xml"}));
  EXPECT_EQ(convert({"-o", "out", "./out/below/.."}),
            refused("./out/below/..: is the folder of the copies, too"));
  // But those that are named are.
  EXPECT_EQ(convert({"-o", "out", "out/below/b.xml"}), silent(0));
  EXPECT_EQ(tree("out"), (Names{"out/a.fi", "out/b.fi", "out/below/b.xml"}));
}

// --- What is refused before any work ---

TEST_F(ManyFiles, NeedAFolder) {
  writeFile("a.xml", "<a/>");
  writeFile("file", "");
  EXPECT_EQ(convert({"-o", "file", "a.xml"}), refused("file: Not a directory"));
  EXPECT_EQ(convert({"-o", "file/below", "a.xml"}), refused("file/below: Not a directory"));
  EXPECT_EQ(convert({"-o", "", "a.xml"}), refused("\"\": No such file or directory"));
  EXPECT_EQ(convert({"-o", "out", "-"}), refused("-o DIR: a copy of standard input has no name"));
  EXPECT_EQ(convert({"a.xml", "b.fi", "-o"}),
            refused("--output: DIR is missing (see tavrin convert --help)"));
  EXPECT_EQ(convert({"-o", "out"}), refused("IN is required (see tavrin convert --help)"));
  EXPECT_EQ(files(), (Names{"a.xml", "file"}));
}

TEST_F(ManyFiles, NeedNamesOfTheirOwn) {
  makeFolder("one");
  makeFolder("two");
  for (const std::string name : {"one/a.xml", "two/a.xml", "one/b.xml"}) writeFile(name, "<a/>");
  EXPECT_EQ(convert({"-o", "out", "one", "two"}),
            refused("one/a.xml and two/a.xml would have the same copy: out/a.fi"));
  EXPECT_EQ(convert({"-o", "out", "one/a.xml", "one/b.xml", "one/a.xml"}),
            refused("one/a.xml and one/a.xml would have the same copy: out/a.fi"));
  writeFile("one/a.XML", "<a/>");
  EXPECT_EQ(convert({"-o", "out", "one"}),
            refused("one/a.XML and one/a.xml would have the same copy: out/a.fi"));
  EXPECT_EQ(files(), (Names{"one", "two"}));
}

TEST_F(ManyFiles, AreNotReplacedByCopiesOfOthers) {
  writeFile("a.xml", "<a/>");
  writeFile("a.fi", kElement);
  EXPECT_EQ(convert({"--force", "-o", ".", "a.xml", "a.fi"}),
            refused("the copy of a.fi would replace a.xml"));
  EXPECT_EQ(readFile("a.xml"), "<a/>");
  // By copies of themselves they may be.
  EXPECT_EQ(convert({"--force", "--to", "XML10", "-o", ".", "a.xml"}), silent(0));
  EXPECT_EQ(readFile("a.xml"), kDeclaration + "<a/>");
  EXPECT_EQ(files(), (Names{"a.fi", "a.xml"}));
}

TEST_F(ManyFiles, AreNotBegunWithOptionsThatNoWriterHas) {
  writeFile("a.xml", "<a/>");
  writeFile("b.xml", "<a/>");
  EXPECT_EQ(convert({"--to", "X891", "--indent", "-o", "out", "a.xml", "b.xml"}),
            refused("--indent: the copy is not XML text, and has no lines"));
  EXPECT_EQ(convert({"--indent", "-o", "out", "a.xml", "b.xml"}),
            refused("--indent: the copy is not XML text, and has no lines"));
  // Once, whatever the first of them is.
  writeFile("c.fi", kElement);
  EXPECT_EQ(convert({"--encoding", "UTF-16", "-o", "out", "c.fi", "a.xml", "b.xml"}),
            refused("--encoding UTF-16: the writer X891 has no encodings"));
  EXPECT_EQ(convert({"--no-declaration", "-o", "out", "a.xml", "b.xml"}),
            refused("--no-declaration: the copy is not XML text"));
  EXPECT_EQ(convert({"--to", "XML", "--property=quote-character='", "-o", "out", "a.xml", "b.xml"}),
            refused("Property \"http://tavrin/sax/properties/quote-character\" not recognized"));
  EXPECT_EQ(convert({"--from", "Other", "-o", "out", "a.xml", "b.xml"}),
            refused("Unknown XML Reader: \"Other\" (there are Expat, FI, X891, XML10)"));
  EXPECT_EQ(convert({"--from", "Expat", "--feature", "namespaces", "-o", "out", "a.xml"}),
            refused("Feature \"http://xml.org/sax/features/namespaces\" not recognized"));
  EXPECT_EQ(convert({"--from", "FI", "--limit", "maximum-depth=1", "-o", "out", "a.xml"}),
            refused("Property \"http://tavrin/sax/properties/maximum-depth\" not recognized"));
  EXPECT_EQ(files(), (Names{"a.xml", "b.xml", "c.fi"}));
}

TEST_F(ManyFiles, LeaveNoFolderWhereNoneCanBeOpened) {
  EXPECT_EQ(convert({"-o", "out", "none.xml"}), refused("none.xml: No such file or directory"));
  EXPECT_EQ(files(), Names());
}

// --- What fails ---

TEST_F(ManyFiles, DoNotMindThoseThatFail) {
  makeFolder("in/folder");
  writeFile("in/a.xml", "<a>");
  writeFile("in/b.xml", "<a/>");
  writeFile("in/folder/c.fi", octets("E0 00 00 01 00 3C"));
  writeFile("in/d.xml", "");
  writeFile("in/e.xml", "<a/>");
  const std::string messages =
      "in/a.xml:1:4: no element found: <a> of line 1 is not closed\n"
      "in/d.xml:1:1: no element found (the input is empty)\n"
      "in/folder/c.fi: octet 6: Unexpected end of document\n";
  for (const std::string jobs : {"1", "2", "7", "0"}) {
    SCOPED_TRACE(jobs);
    EXPECT_EQ(convert({"-j", jobs, "-o", "out", "in"}), (Result{1, "", messages}));
    EXPECT_EQ(tree("out"), (Names{"out/b.fi", "out/e.fi"}));
    fs::remove_all(path("out"));
  }
  // A file that cannot be opened is worse.
  EXPECT_EQ(convert({"-j2", "-o", "out", "missing.xml", "in"}),
            (Result{2, "", "tavrin: missing.xml: No such file or directory\n" + messages}));
  EXPECT_EQ(tree("out"), (Names{"out/b.fi", "out/e.fi"}));
  const Result again = run({"convert", "-o", "out", "in"});
  EXPECT_EQ(again.status, 2);
  const std::string exist =
      "in/a.xml:1:4: no element found: <a> of line 1 is not closed\n"
      "tavrin: out/b.fi: already exists; --force replaces it\n"
      "in/d.xml:1:1: no element found (the input is empty)\n"
      "tavrin: out/e.fi: already exists; --force replaces it\n"
      "in/folder/c.fi: octet 6: Unexpected end of document\n"
      "tavrin: 0 of 5 files converted: 0 octets to 0 octets in ";
  EXPECT_EQ(again.err.substr(0, exist.size()), exist);
  EXPECT_EQ(std::count(again.err.begin(), again.err.end(), '\n'), 6);
}

TEST_F(ManyFiles, DoNotMindFoldersThatCannotBeLookedInto) {
  makeFolder("in/closed");
  writeFile("in/closed/a.xml", "<a/>");
  writeFile("in/b.xml", "<a/>");
  writeFile("in/c.xml", "<a/>");
  fs::permissions(path("in/closed"), fs::perms::none);
  fs::permissions(path("in/c.xml"), fs::perms::none);
  const Result result = convert({"-o", "out", "in"}, giveUpReadingAnyFile);
  fs::permissions(path("in/closed"), fs::perms::owner_all);
  EXPECT_EQ(result, (Result{2, "",
                            "tavrin: in/closed: Permission denied\n"
                            "tavrin: in/c.xml: Permission denied\n"}));
  EXPECT_EQ(tree("out"), Names{"out/b.fi"});
}

TEST_F(ManyFiles, AreCopiedByHundreds) {
  Names copies;
  std::string messages;
  for (int i = 100; i < 500; ++i) {
    const std::string folder = std::to_string(i % 7);
    makeFolder("in/" + folder);
    const std::string name = folder + "/" + std::to_string(i);
    const bool isBroken = i % 50 == 0;
    writeFile("in/" + name + ".xml", "<a>" + std::to_string(i) + (isBroken ? "" : "</a>"));
    if (!isBroken) copies.push_back("out/" + name + ".fi");
  }
  std::sort(copies.begin(), copies.end());
  for (const std::string name :
       {"0/350", "1/400", "2/100", "2/450", "3/150", "4/200", "5/250", "6/300"}) {
    messages += "in/" + name + ".xml:1:7: no element found: <a> of line 1 is not closed\n";
  }
  EXPECT_EQ(convert({"-j8", "-o", "out", "in"}), (Result{1, "", messages}));
  EXPECT_EQ(tree("out"), copies);
  for (const std::string& name : copies) {
    EXPECT_EQ(readFile(name),
              octets("E0 00 00 01 00 3C 00 'a' 92 00 '" + name.substr(6, 3) + "' FF"));
  }
}

TEST_F(ManyFiles, HaveANumberOfJobs) {
  for (const std::string number : {"-1", "257", "x", "1x", "1.5", "99999999999"}) {
    SCOPED_TRACE(number);
    const Result result = convert({"--jobs=" + number, "-o", "out", "a.xml"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "tavrin: --jobs: \"" + number +
                              "\" is not a number from 0 to 256 (see tavrin convert --help)\n");
  }
}

// --- Commands that print ---

TEST_F(ManyFiles, AreCheckedAndCountedInOrder) {
  makeFolder("in/b");
  for (const std::string name : {"in/a.xml", "in/b/c.svg", "in/d.xml", "in/e.txt"}) {
    writeFile(name, name == "in/d.xml" ? "<a>" : "<a/>");
  }
  const std::string failure = "in/d.xml:1:4: no element found: <a> of line 1 is not closed\n";
  const auto block = [](const std::string& name) {
    return name +
           "\n  octets                   4\n  elements                 1\n"
           "  attributes               0\n  distinct names           1\n"
           "  text octets              0\n  attribute value octets   0\n"
           "  comments                 0\n  processing instructions  0\n"
           "  depth                    1\n  typed values             0\n"
           "  typed items              0\n  as Fast Infoset          9\n";
  };
  for (const std::string jobs : {"1", "3", "0"}) {
    SCOPED_TRACE(jobs);
    EXPECT_EQ(run({"check", "-j", jobs, "in", "in/e.txt"}),
              (Result{1, "in/a.xml: well-formed\nin/b/c.svg: well-formed\nin/e.txt: well-formed\n",
                      failure}));
    EXPECT_EQ(run({"check", "--quiet", "-j", jobs, "in", "in/e.txt"}), (Result{1, "", failure}));
    EXPECT_EQ(run({"stat", "-j", jobs, "in/d.xml", "in", "in/e.txt"}),
              (Result{1, block("in/a.xml") + "\n" + block("in/b/c.svg") + "\n" + block("in/e.txt"),
                      failure + failure}));
  }
}

// What is printed too early is kept, but not without end.
TEST_F(ManyFiles, WaitForTheirTurn) {
  require(mkfifo(path("pipe").c_str(), 0600), "mkfifo");
  std::string noisy = "<!DOCTYPE a SYSTEM 'd'><a>\n";
  constexpr int kLosses = 70000;
  for (int i = 0; i < kLosses; ++i) noisy += "<b c='&e;'/>\n";
  const std::string name = std::string(180, 'n') + ".xml";
  writeFile(name, noisy + "</a>");
  writeFile("small.xml", "<a/>");
  ToolProcess process({"check", "-j3", "pipe", name, "small.xml"}, directory_);
  const int pipe = require(open(path("pipe").c_str(), O_WRONLY | O_CLOEXEC), "open");
  std::this_thread::sleep_for(std::chrono::milliseconds(200));  // Enough on most days.
  require(write(pipe, "<a>", 3) == 3 ? 0 : -1, "write");
  close(pipe);
  const Result result = process.wait();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, name + ": well-formed\nsmall.xml: well-formed\n");
  EXPECT_TRUE(result.err.starts_with("pipe:1:4: no element found: <a> of line 1 is not closed\n" +
                                     name + ":2:7: warning: "));
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), kLosses + 1);
}

TEST_F(ManyFiles, AreNotReadOnceNothingCanBePrinted) {
  for (const std::string name : {"a.xml", "b.xml", "c.xml"}) writeFile(name, "<a/>");
  for (const std::string jobs : {"1", "3"}) {
    EXPECT_EQ(run({"check", "-j", jobs, "a.xml", "b.xml", "c.xml"}, "",
                  [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); }),
              refused("standard output: No space left on device"));
  }
}
