#include <sys/resource.h>
#include <sys/socket.h>

#include <thread>

#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

/// Fast Infoset has the identifiers of an entity where it is referred to, XML text in front of all
/// content: what is needed there is found before anything is written.
class EntityDeclarations : public Workplace {
 protected:
  static constexpr char kStart[] = "E0 00 00 01 00 C4 F0 3C 00 'a' ";

  /// An empty document type, and an element with this content.
  static std::string document(const std::string& content) { return octets(kStart + content); }
  /// Of 18 octets.
  static std::string one() { return document("CA 00 'e' 02 'e.x' FF"); }
  /// With a text of so many octets in front of the reference.
  static std::string large(std::size_t size) {
    std::string text;
    const std::size_t length = size - 259;
    for (const int shift : {24, 16, 8, 0}) text += static_cast<char>(length >> shift);
    return document("83") + text + std::string(size, 'x') + octets("CA 00 'e' 02 'e.x' FF");
  }

  Result text(const std::string& document, ToolProcess::Arguments options = {}) {
    ToolProcess::Arguments arguments = {"convert", "--no-declaration"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.emplace_back("-");
    return run(arguments, document);
  }
};

Result printed(const std::string& document) { return {0, document, ""}; }

Result failed(const std::string& message) { return {1, "", message + "\n"}; }

const std::string kOne = "<!DOCTYPE a [  <!ENTITY e SYSTEM \"e.x\">]><a>&e;</a>";

}  // namespace

// --- What is declared ---

TEST_F(EntityDeclarations, HaveTheIdentifiersOfTheReferences) {
  EXPECT_EQ(text(one()), printed(kOne));
  EXPECT_EQ(text(document("C9 00 'e' 00 'p' FF")),
            printed("<!DOCTYPE a [  <!ENTITY e PUBLIC \"p\" \"\">]><a>&e;</a>"));
  EXPECT_EQ(text(document("CB 00 'e' 02 's\"t' 03 '-//p' FF")),
            printed("<!DOCTYPE a [  <!ENTITY e PUBLIC \"-//p\" 's\"t'>]><a>&e;</a>"));
}

TEST_F(EntityDeclarations, HaveQuotesThatTheIdentifiersHaveNot) {
  const std::string document =
      "<!DOCTYPE a [<!ENTITY e PUBLIC \"it's\" 'a\"b'><!ENTITY f SYSTEM \"it's\">]><a>&e;&f;</a>";
  EXPECT_EQ(run({"convert", "-", "in.fi"}, document), silent(0));
  EXPECT_EQ(run({"convert", "--no-declaration", "in.fi"}),
            printed("<!DOCTYPE a [  <!ENTITY e PUBLIC \"it's\" 'a\"b'>"
                    "  <!ENTITY f SYSTEM \"it's\">]><a>&e;&f;</a>"));
}

// In the order of the first references that have identifiers, and once each.
TEST_F(EntityDeclarations, ComeOnceForAnEntity) {
  EXPECT_EQ(text(document("C8 00 'g' CA 00 'f' 00 '1' CA 00 'e' 00 '2' CA 81 80 CA 80 00 '3' FF")),
            printed("<!DOCTYPE a [  <!ENTITY f SYSTEM \"1\">  <!ENTITY e SYSTEM \"2\">"
                    "  <!ENTITY g SYSTEM \"3\">]><a>&g;&f;&e;&f;&g;</a>"));
  // The reader does not take two of one name for the same.
  EXPECT_EQ(text(document("CA 00 'e' 00 '1' CA 80 00 '2' FF")),
            failed("-: octet 19: References to the entity \"e\" with different identifiers"));
}

TEST_F(EntityDeclarations, StandBehindWhatTheDocumentTypeHas) {
  // A notation, an unparsed entity, and in the document type a system identifier and an
  // instruction.
  const std::string head =
      "E0 00 00 01 18 C0 00 'n' F0 D0 00 'u' 00 'v' 80 F0 C6 00 's' E1 00 'p' 40 'q' F0 3C 00 'a' ";
  EXPECT_EQ(text(octets(head + "CA 00 'e' 00 'x' FF")),
            printed("<!DOCTYPE a SYSTEM \"s\" [  <!NOTATION n SYSTEM \"\">"
                    "  <!ENTITY u SYSTEM \"v\" NDATA n><?p q?>  <!ENTITY e SYSTEM \"x\">]>"
                    "<a>&e;</a>"));
  // What is declared there is not declared again.
  const std::string refused = "You cannot refer to the unparsed entity \"u\"";
  EXPECT_EQ(text(octets(head + "CA 81 00 'x' FF")), failed("-: octet 32: " + refused));
}

TEST_F(EntityDeclarations, StandBesideAnExternalSubset) {
  EXPECT_EQ(text(octets("E0 00 00 01 00 C6 00 's' F0 3C 00 'a' CA 00 'e' 00 'x' C8 00 'f' FF")),
            printed("<!DOCTYPE a SYSTEM \"s\" [  <!ENTITY e SYSTEM \"x\">]><a>&e;&f;</a>"));
}

// A relative identifier of the external subset counts from there; what is reported of it counts
// from the document, as the declaration in the copy does.
TEST_F(EntityDeclarations, OfTheExternalSubsetLeadToTheSamePlace) {
  std::filesystem::create_directory(path("dtds"));
  writeFile("dtds/a.dtd", "<!ENTITY e SYSTEM 'e.x'><!ENTITY f SYSTEM 'http://x/f'>");
  writeFile("in.xml", "<!DOCTYPE a SYSTEM 'dtds/a.dtd'><a>&e;&f;</a>");
  const Result missing{0, "",
                       "in.xml: warning: external entity \"dtds/e.x\" is not read: No such file or "
                       "directory\n"};
  EXPECT_EQ(run({"convert", "--entities", "in.xml", "in.fi"}), missing);
  const std::string copy =
      "<!DOCTYPE a SYSTEM \"dtds/a.dtd\" [  <!ENTITY e SYSTEM \"dtds/e.x\">"
      "  <!ENTITY f SYSTEM \"http://x/f\">]><a>&e;&f;</a>";
  EXPECT_EQ(run({"convert", "--no-declaration", "in.fi"}), printed(copy));
  writeFile("copy.xml", copy);
  writeFile("dtds/e.x", "<b/>");
  EXPECT_EQ(run({"diff", "--entities", "in.xml", "copy.xml"}), silent(0));
}

TEST_F(EntityDeclarations, AreNoneWhereTextKnowsTheEntityOtherwise) {
  EXPECT_EQ(text(document("CA 01 'lt' 00 'x' FF")),
            failed("-: octet 10: The entity \"lt\" cannot be declared otherwise"));
}

// There is no place for one.
TEST_F(EntityDeclarations, NeedADocumentType) {
  EXPECT_EQ(text(octets("E0 00 00 01 00 3C 00 'a' CA 00 'e' 02 'e.x' FF")),
            failed("-: octet 15: The entity \"e\" is not declared"));
}

TEST_F(EntityDeclarations, AreNotMadeUp) {
  EXPECT_EQ(text(document("C8 00 'e' FF")),
            failed("-: octet 13: The entity \"e\" is not declared"));
  EXPECT_EQ(text(document("FF")), printed("<!DOCTYPE a><a/>"));
}

TEST_F(EntityDeclarations, GoWithTheOtherOptions) {
  EXPECT_EQ(text(one(), {"--indent"}),
            printed("<!DOCTYPE a [\n  <!ENTITY e SYSTEM \"e.x\">\n]>\n<a>&e;</a>\n"));
  EXPECT_EQ(text(one(), {"--lossy"}), printed(kOne));
  EXPECT_EQ(text(one(), {"--from", "X891", "--to", "XML10"}), printed(kOne));
  EXPECT_EQ(run({"convert", "--to", "X891", "-"}, one()), printed(one()));
  EXPECT_EQ(text(one(), {"--to", "XML"}),
            failed("-: octet 17: entity \"e\" was not read, so the copy would lack it"));
  EXPECT_EQ(text(one(), {"--limit", "maximum-depth=1"}), printed(kOne));
  EXPECT_EQ(text(one(), {"--limit", "maximum-depth=0"}),
            failed("-: octet 8: Elements nested deeper than 0 (see --limit maximum-depth)"));
}

TEST_F(EntityDeclarations, CountInTheSizeThatStatTells) {
  writeFile("in.fi", one() + one());
  const std::string out = run({"stat", "in.fi"}).out;
  const std::string line = "  as XML text              " + std::to_string(38 + kOne.size()) + "\n";
  EXPECT_TRUE(out.ends_with(line)) << out;
  EXPECT_NE(out.find(line + "\nin.fi, document 2\n"), std::string::npos) << out;
}

// Of those that are kept, too, none is in the way of the next.
TEST_F(EntityDeclarations, CountInTheSizesOfDocumentsThatFollowEachOther) {
  std::string all;
  for (int i = 0; i < 9000; ++i) all += i % 100 == 99 ? large(2000) : one();
  writeFile("all.fi", all);
  const Result ofFile = run({"stat", "all.fi"}), ofPipe = run({"stat", "-"}, all);
  EXPECT_EQ(ofFile.err, "");
  EXPECT_EQ(ofPipe.err, "");
  std::string expected = ofFile.out;
  for (std::size_t place = 0; (place = expected.find("all.fi", place)) != std::string::npos;) {
    expected.replace(place, 6, "-");
  }
  EXPECT_TRUE(ofPipe.out == expected);
  const std::string last = "  as XML text              " + std::to_string(38 + 2000 + kOne.size());
  EXPECT_TRUE(expected.ends_with(last + "\n"));
  EXPECT_NE(expected.find("\n-, document 9000\n"), std::string::npos);
}

// --- Where the document comes from ---

TEST_F(EntityDeclarations, AreFoundInDocumentsOfAnyKindOfFile) {
  writeFile("in.fi", one());
  EXPECT_EQ(run({"convert", "--no-declaration", "in.fi", "out.xml"}), silent(0));
  EXPECT_EQ(readFile("out.xml"), kOne);
  const auto fromFile = [this] { dup2(open(path("in.fi").c_str(), O_RDONLY), STDIN_FILENO); };
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, "", fromFile), printed(kOne));
  require(mkfifo(path("pipe").c_str(), 0600), "mkfifo");
  std::thread writer([&] { writeFile("pipe", one()); });
  EXPECT_EQ(run({"convert", "--no-declaration", "pipe"}), printed(kOne));
  writer.join();
  // A file of which the beginning has been read already.
  writeFile("behind", "octets" + one());
  const auto fromTheMiddle = [this] {
    const int file = open(path("behind").c_str(), O_RDONLY);
    lseek(file, 6, SEEK_SET);
    dup2(file, STDIN_FILENO);
  };
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, "", fromTheMiddle), printed(kOne));
}

TEST_F(EntityDeclarations, AreFoundInDocumentsThatComeInPieces) {
  ToolProcess process({"convert", "--no-declaration", "-"}, directory_);
  for (const char c : one()) {
    process.write(std::string(1, c));
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  EXPECT_EQ(process.wait(), printed(kOne));
}

TEST_F(EntityDeclarations, AreThoseOfTheDocumentThatIsCopied) {
  const std::string other = document("CA 00 'f' 00 'g' FF");
  const std::string all = other + one() + other;
  writeFile("three.fi", all);
  EXPECT_EQ(run({"convert", "--no-declaration", "--document", "2", "three.fi"}), printed(kOne));
  EXPECT_EQ(text(all, {"--document", "2"}), printed(kOne));
  EXPECT_EQ(text(all, {"--document", "3"}),
            printed("<!DOCTYPE a [  <!ENTITY f SYSTEM \"g\">]><a>&f;</a>"));
  EXPECT_EQ(run({"convert", "three.fi", "out.xml"}),
            failed("three.fi: octet 17: A second document begins here, and XML text holds one (see "
                   "--document)"));
  EXPECT_EQ(text(one() + "rubbish"), failed("-: octet 19: No Fast Infoset document begins here"));
  EXPECT_EQ(files(), Names{"three.fi"});
}

// --- Failures ---

// The message is that of the first failure, be it the reader's or the writer's.
TEST_F(EntityDeclarations, AreNotWrittenOfADocumentThatFails) {
  const struct {
    std::string content;
    std::string message;
  } cases[] = {
      {"CA 00 'e' 02 'e.x' 3C 00 '1'", "octet 20: Invalid name \"1\""},
      {"CA 00 'e' 02 'e.x'", "octet 17: Unexpected end of document"},
      {"CA 00 'e' 02 'e.x' 90 00", "octet 19: Invalid character U+0000"},
      {"C8 00 'f' CA 00 'e' 02 'e.x' 3C 00 '1'", "octet 13: The entity \"f\" is not declared"},
  };
  for (const auto& [content, message] : cases) {
    SCOPED_TRACE(content);
    for (const bool isPiped : {false, true}) {
      writeFile("in.fi", document(content));
      const Result result =
          isPiped ? run({"convert", "-"}, document(content)) : run({"convert", "in.fi", "out.xml"});
      EXPECT_EQ(result.status, 1);
      EXPECT_EQ(result.out, "");
      EXPECT_EQ(result.err, (isPiped ? "-: " : "in.fi: ") + message + "\n");
    }
  }
  EXPECT_EQ(files(), Names{"in.fi"});
}

TEST_F(EntityDeclarations, LeaveNothingOfALargeDocumentThatFails) {
  const std::string cut = large(200000).substr(0, large(200000).size() - 1);
  const Result expected =
      failed("-: octet " + std::to_string(cut.size()) + ": Unexpected end of document");
  EXPECT_EQ(text(cut), expected);
}

TEST_F(EntityDeclarations, AreNotTakenForAllWhereReadingFails) {
  int ends[2];
  require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), "socketpair");
  const std::string document = large(100000);
  EXPECT_EQ(write(ends[1], "x", 1), 1);
  EXPECT_EQ(write(ends[0], document.data(), document.size() - 1), ssize(document) - 1);
  close(ends[0]);
  const Result result = run({"convert", "-"}, "", [&] { dup2(ends[1], STDIN_FILENO); });
  close(ends[1]);
  EXPECT_EQ(result, (Result{2, "", "tavrin: standard input: Connection reset by peer\n"}));
}

// --- Memory ---

TEST_F(EntityDeclarations, DoNotKeepALargeDocumentInMemory) {
  constexpr std::size_t kSize = 50'000'000;
  const std::string text(65536, 'x');
  std::string document = octets(kStart), whole;
  while (document.size() < kSize) {
    document += octets("83 00 00 FE FD") + text;  // The length less 259.
    whole += text;
  }
  document += octets("CA 00 'e' 02 'e.x' FF");
  whole = "<!DOCTYPE a [  <!ENTITY e SYSTEM \"e.x\">]><a>" + whole + "&e;</a>";
  const auto limit = [this] {
    setenv("TMPDIR", directory_.c_str(), 1);
    limitMemory(40'000'000);
  };
  EXPECT_EQ(run({"convert", "--no-declaration", "-", "out.xml"}, document, limit), silent(0));
  EXPECT_TRUE(readFile("out.xml") == whole);
  EXPECT_EQ(files(), Names{"out.xml"});
}

TEST_F(EntityDeclarations, NeedRoomForALargeDocumentOnly) {
  const auto noFolder = [] { setenv("TMPDIR", "/nowhere", 1); };
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, one(), noFolder), printed(kOne));
  const std::string document = large(3'000'000);
  const std::string whole =
      "<!DOCTYPE a [  <!ENTITY e SYSTEM \"e.x\">]><a>" + std::string(3'000'000, 'x') + "&e;</a>";
  EXPECT_EQ(run({"convert", "-", "out.xml"}, document, noFolder),
            (Result{2, "", "tavrin: temporary file: No such file or directory\n"}));
  writeFile("in.fi", document);
  EXPECT_EQ(run({"convert", "--no-declaration", "in.fi"}, "", noFolder), printed(whole));
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, document), printed(whole));
  const auto full = [] {
    const rlimit value{2'000'000, 2'000'000};
    setrlimit(RLIMIT_FSIZE, &value);
    std::signal(SIGXFSZ, SIG_IGN);
  };
  EXPECT_EQ(run({"convert", "-", "out.xml"}, document, full),
            (Result{2, "", "tavrin: temporary file: File too large\n"}));
  EXPECT_EQ(files(), Names{"in.fi"});
}

// A document without a document type is not kept, but for what stands in front of its root element.
TEST_F(EntityDeclarations, LetADocumentWithoutADocumentTypePass) {
  const auto noFolder = [] { setenv("TMPDIR", "/nowhere", 1); };
  std::string document = large(3'000'000);
  document.erase(5, 2);
  document.replace(document.size() - 8, 7, "");
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, document, noFolder),
            printed("<a>" + std::string(3'000'000, 'x') + "</a>"));
}
