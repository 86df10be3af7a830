#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

using FastInfoset = Workplace;
using namespace std::string_literals;

const std::string kText =
    "<!--c--><a xmlns:p='u' x='12' p:yy='3'><b>text</b><b><?p d?>more</b></a>";

/// The same, from header to final terminator.
std::string binary() {
  return octets(
      "E0 00 00 01 00 E2 40 'c' 78 CF 00 'p' 00 'u' F0 3C 00 'a' 78 00 'x' 41 '12' "
      "7B 81 81 01 'yy' 40 '3' F0 3C 00 'b' 92 01 'text' F0 01 E1 00 'p' 40 'd' 92 01 'more' FF "
      "F0");
}

Result failed(const std::string& message) { return {1, "", message + "\n"}; }

}  // namespace

TEST_F(FastInfoset, IsWrittenToFilesThatAreNamedSo) {
  for (const std::string name : {"out.fi", "out.finf", "out.x3db", ".fi", ".x3db", "a.xml.fi"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(run({"convert", "-", name}, kText), silent(0));
    EXPECT_EQ(readFile(name), binary());
  }
  for (const std::string name :
       {"fi", "out.FI", "out.fi.xml", "out.finfo", "finf", "x3db", "out.x3d", "out.x3dbx"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(run({"convert", "--no-declaration", "-", name}, kText), silent(0));
    EXPECT_EQ(readFile(name), kText);
  }
}

TEST_F(FastInfoset, IsWrittenWhereThatIsAskedFor) {
  EXPECT_EQ(run({"convert", "--to", "fi", "-"}, kText), (Result{0, binary(), ""}));
  EXPECT_EQ(run({"convert", "--to", "FI", "-", "out.xml"}, kText), silent(0));
  EXPECT_EQ(readFile("out.xml"), binary());
  EXPECT_EQ(run({"convert", "--to", "XML", "--no-declaration", "-", "out.fi"}, kText), silent(0));
  EXPECT_EQ(readFile("out.fi"), kText);
}

TEST_F(FastInfoset, IsKnownByItsFirstOctetsWhateverItsName) {
  writeFile("in.xml", binary());
  EXPECT_EQ(run({"convert", "--no-declaration", "in.xml"}), (Result{0, kText, ""}));
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, binary()), (Result{0, kText, ""}));
  EXPECT_EQ(run({"check", "in.xml", "-"}, binary()),
            (Result{0, "in.xml: well-formed\n-: well-formed\n", ""}));
  writeFile("text.fi", "<a/>");
  EXPECT_EQ(run({"check", "text.fi"}), (Result{0, "text.fi: well-formed\n", ""}));
}

TEST_F(FastInfoset, IsReadAsTextOnlyWhereThatIsAskedFor) {
  EXPECT_EQ(run({"convert", "--from", "Expat", "-"}, binary()),
            failed("-:1:3: not well-formed (invalid token)"));
  EXPECT_EQ(run({"convert", "--from", "FI", "-"}, "<a/>"),
            failed("-: octet 1: Not a Fast Infoset document"));
  EXPECT_EQ(run({"convert", "--from", "FI", "-"}),
            failed("-: Not a Fast Infoset document (the input is empty)"));
}

TEST_F(FastInfoset, IsCopiedOctetForOctet) {
  EXPECT_EQ(run({"convert", "--to", "X891", "-"}, binary()), (Result{0, binary(), ""}));
  EXPECT_EQ(run({"convert", "--to", "FI", "-"}, binary()), (Result{0, binary(), ""}));
}

TEST_F(FastInfoset, HasTwoMarksOfItsOwn) {
  EXPECT_EQ(run({"check", "-"}, "\xE0\0"s), failed("-: octet 2: Not a Fast Infoset document"));
  EXPECT_EQ(run({"check", "-"}, "\xE0"), failed("-:1:1: partial character"));
}

TEST_F(FastInfoset, FailsWhereItIsCutOff) {
  const std::string document = binary();
  for (std::size_t size = 2; size < document.size(); ++size) {
    SCOPED_TRACE(size);
    const std::string message =
        size < 4 ? "Not a Fast Infoset document" : "Unexpected end of document";
    EXPECT_EQ(run({"check", "-"}, document.substr(0, size)),
              failed("-: octet " + std::to_string(size) + ": " + message));
  }
}

TEST_F(FastInfoset, FailsAtTheOctetThatIsWrong) {
  const struct {
    const char* document;
    const char* message;
    const char* messageOfFI = message;  ///< Where the reader "FI" says something else.
  } cases[] = {
      {"E0 00 00 02 00", "octet 4: Not a Fast Infoset document"},
      {"E0 00 01 01 00", "octet 3: Not a Fast Infoset document"},
      {"E0 00 00 01 00 C8", "octet 6: Error while parsing document"},
      {"E0 00 00 01 00 39", "octet 6: Error when decoding element name"},
      {"E0 00 00 01 00 00", "octet 6: Error when decoding element name - invalid index"},
      {"E0 00 00 01 00 3C 00 'a' A0",
       "octet 9: Error when decoding character chunk - invalid index"},
      {"E0 00 00 01 00 3C 00 'a' B9", "octet 9: Error when decoding character chunk"},
      {"E0 00 00 01 00 3C 00 'a' F0 3C", "octet 10: Found more than one element on the top level"},
      {"E0 00 00 01 00 7C 00 'a' 78 00 'x' 30 A0", "octet 13: Reserved encoding algorithm 11",
       "octet 13: Unknown encoding algorithm - "},
      {"E0 00 00 01 00 3C 00 'a' 8C 0A 00 010203",
       "octet 14: Invalid length for encoded short data",
       "octet 11: Invalid length for encoded short data"},
      // Lengths of 4 GiB that nothing follows.
      {"E0 00 00 01 00 3C 00 'a' 83 FFFFFFFF 'x'",
       "octet 13: Literal longer than 1073741824 octets (see --limit maximum-literal-octets)",
       "octet 14: Unexpected end of document"},
      {"E0 00 00 01 00 3C 60 FFFFFFFF 'x'",
       "octet 11: Literal longer than 1073741824 octets (see --limit maximum-literal-octets)",
       "octet 12: Unexpected end of document"},
      {"E0 00 00 01 00 3C 00 'a' 8C 07 FFFF0000 'x'",
       "octet 14: Literal longer than 1073741824 octets (see --limit maximum-literal-octets)",
       "octet 15: Unexpected end of document"},
      {"E0 00 00 01 00 3C 00 'a' 8C 07 FFFFFFFF 'x'",
       "octet 14: Literal longer than 1073741824 octets (see --limit maximum-literal-octets)",
       "octet 14: Unexpected end of document"},
      // A length of 1 GiB, less the 259 that its form adds, is as long as may be.
      {"E0 00 00 01 00 3C 00 'a' 83 3FFFFEFD 'x'", "octet 14: Unexpected end of document"},
      {"E0 00 00 01 00 3C 00 'a' 83 3FFFFEFE 'x'",
       "octet 13: Literal longer than 1073741824 octets (see --limit maximum-literal-octets)",
       "octet 14: Unexpected end of document"},
  };
  for (const auto& [document, message, messageOfFI] : cases) {
    SCOPED_TRACE(document);
    writeFile("in.fi", octets(document));
    const std::string line = std::string("in.fi: ") + message;
    const std::string lineOfFI = std::string("in.fi: ") + messageOfFI;
    EXPECT_EQ(run({"check", "--from", "FI", "in.fi"}), failed(lineOfFI));
    EXPECT_EQ(run({"convert", "--from", "FI", "in.fi", "out.xml"}), failed(lineOfFI));
    EXPECT_EQ(run({"check", "in.fi"}), failed(line));
    EXPECT_EQ(run({"convert", "in.fi", "out.xml"}), failed(line));
    EXPECT_EQ(run({"convert", "in.fi", "out.fi"}), failed(line));
    EXPECT_EQ(run({"stat", "in.fi"}), failed(line));
  }
  EXPECT_EQ(files(), Names{"in.fi"});
}

TEST_F(FastInfoset, FailsWhereItHoldsWhatTextCannot) {
  EXPECT_EQ(run({"convert", "--to", "XML", "-", "out.xml"}, typed::element("8C 26 00 ']]>'")),
            failed("-: octet 14: You cannot put \"]]>\" into a CDATA section"));
  EXPECT_EQ(run({"convert", "--from", "FI", "--to", "XML", "-", "out.xml"},
                typed::element("E2 02 '-->'")),
            failed("-: octet 13: You cannot put \"-->\" into a comment"));
  EXPECT_EQ(run({"convert", "--from", "FI", "-", "out.xml"}, typed::element("E2 02 '-->'")),
            failed("-: octet 13: You cannot put \"-->\" into a comment"));
  EXPECT_EQ(run({"convert", "-", "out.xml"}, typed::element("E2 02 '-->'")),
            failed("-: octet 13: You cannot put \"--\" into a comment"));
  EXPECT_EQ(files(), Names{});
  // Such a section is written in two.
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, typed::element("8C 26 00 ']]>'")),
            (Result{0, "<a><![CDATA[]]]]><![CDATA[>]]></a>", ""}));
}

// The reader "FI" has no event for them.
TEST_F(FastInfoset, HasWhatNobodyTakesPrintedBesideTheCopy) {
  // A version, then a reference to an entity: name, system identifier and public identifier.
  const std::string document =
      octets("E0 00 00 01 01 02 '1.0' 3C 00 'a' CB 00 'e' 00 's' 00 'p' FF");
  const std::string diagnostics =
      "decodeVersion - \"1.0\"\n"
      "unexpanded entity reference - name = \"e\", systemID = \"s\", publicID = \"p\"\n";
  EXPECT_EQ(run({"convert", "--from", "FI", "--no-declaration", "-"}, document),
            (Result{0, "<a/>", diagnostics}));
  EXPECT_EQ(run({"check", "--from", "FI", "-"}, document),
            (Result{0, "-: well-formed\n", diagnostics}));
  EXPECT_EQ(run({"check", "-"}, document), (Result{0, "-: well-formed\n", ""}));
}

// Options of text mean nothing to a binary format.
TEST_F(FastInfoset, HasNoFeatures) {
  writeFile("in.xml", "<a/>");
  EXPECT_EQ(run({"convert", "--indent", "in.xml", "out.fi"}),
            (Result{2, "", "tavrin: --indent: the copy is not XML text, and has no lines\n"}));
  EXPECT_EQ(run({"convert", "--no-declaration", "--to", "FI", "in.xml"}),
            (Result{2, "", "tavrin: --no-declaration: the copy is not XML text\n"}));
  EXPECT_EQ(files(), Names{"in.xml"});
}

TEST_F(FastInfoset, MayComeOctetByOctet) {
  ToolProcess process({"convert", "--no-declaration", "-"}, directory_);
  for (const char c : binary()) {
    process.write(std::string(1, c));
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  EXPECT_EQ(process.wait(), (Result{0, kText, ""}));
}

// The buffer of the input holds 64 KiB; an item may lie across its border.
TEST_F(FastInfoset, IsOneWhereverItsBufferEnds) {
  for (std::size_t before = 65536 - 20; before <= 65536 + 2; ++before) {
    SCOPED_TRACE(before);
    // 13 octets come before the text: header, element and the chunk's form and length.
    const std::string size = octets("00 00") + static_cast<char>((before - 13 - 259) >> 8) +
                             static_cast<char>(before - 13 - 259);
    const std::string text(before - 13, 'x');
    const std::string document = octets("E0 00 00 01 00 3C 00 'a' 83") + size + text +
                                 octets("3C 03 'long' F0 E2 03 'text' FF");
    EXPECT_EQ(run({"convert", "--no-declaration", "-"}, document),
              (Result{0, "<a>" + text + "<long/><!--text--></a>", ""}));
    EXPECT_EQ(
        run({"check", "-"}, document.substr(0, document.size() - 1)),
        failed("-: octet " + std::to_string(document.size() - 1) + ": Unexpected end of document"));
  }
}

// What X.891 and XML do not allow, the reader "FI" may deliver all the same.
TEST_F(FastInfoset, IsWellFormedOnlyIfItCouldBeText) {
  const struct {
    const char* document;
    const char* message;
  } cases[] = {
      {"E0 00 00 01 00 3C 00 '1' FF", "octet 8: Invalid name \"1\""},
      {"E0 00 00 01 00 3C 00 'a' 90 01 FF", "octet 10: Invalid character U+0001"},
      {"E0 00 00 01 00 3C 00 'a' 90 FF FF", "octet 10: Invalid UTF-8 octet 0xFF"},
      {"E0 00 00 01 00 90 'x' 3C 00 'a' FF", "octet 6: Error while parsing document"},
  };
  for (const auto& [document, message] : cases) {
    SCOPED_TRACE(document);
    EXPECT_EQ(run({"check", "-"}, octets(document)), failed(std::string("-: ") + message));
    EXPECT_EQ(run({"convert", "-", "out.xml"}, octets(document)),
              failed(std::string("-: ") + message));
    EXPECT_EQ(run({"stat", "-"}, octets(document)), failed(std::string("-: ") + message));
  }
  EXPECT_EQ(files(), Names{});
}
