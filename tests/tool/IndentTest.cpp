#include "HexOctets.h"
#include "Workplace.h"

namespace {

/// The layout of XML text. All that is laid out is laid out again: nothing may change then.
class Indent : public Workplace {
 protected:
  Result indented(const std::string& document, const std::string& option = "--indent") const {
    const Result once = layOut(document, option);
    if (once.status == 0) {
      EXPECT_EQ(layOut(once.out, option), once) << "the second time";
    }
    return once;
  }

 private:
  Result layOut(const std::string& document, const std::string& option) const {
    return run({"convert", option, "--no-declaration", "-"}, document);
  }
};

Result printed(const std::string& document) { return {0, document, ""}; }

/// So many octets of elements.
std::string elements(std::size_t octets) {
  std::string text = "<x/>";
  for (std::size_t i = 0; i < (octets - 4) / 4; ++i) text += "<y/>";
  return text;
}

/// The same, each on a line of its own in front of which are two blanks.
std::string lines(std::size_t octets) {
  std::string text = "\n  <x/>";
  for (std::size_t i = 0; i < (octets - 4) / 4; ++i) text += "\n  <y/>";
  return text;
}

constexpr std::size_t kLookAhead = 65536;

}  // namespace

// --- What is laid out ---

TEST_F(Indent, ReplacesTheLayoutThereIs) {
  const std::string laidOut = "<a>\n  <b>\n    <c/>\n    <d/>\n  </b>\n  <e>t</e>\n</a>\n";
  for (const std::string document : {
           "<a><b><c/><d/></b><e>t</e></a>",
           "<a>\n<b>\n<c/>\n<d/>\n</b>\n<e>t</e>\n</a>",
           "<a>\t<b>\r\n\r\n<c></c >   <d /> </b><e>t</e>     </a>\n\n",
           "<a><b>\n\n\n<c/><d/></b>&#32;&#9;&#10;&#13;<e>t</e></a>",
       }) {
    SCOPED_TRACE(document);
    EXPECT_EQ(indented(document), printed(laidOut));
  }
}

TEST_F(Indent, IsAsWideAsItIsAskedFor) {
  const std::string document = "<a> <b><c/></b></a>";
  EXPECT_EQ(indented(document, "--indent=0"), printed("<a>\n<b>\n<c/>\n</b>\n</a>\n"));
  EXPECT_EQ(indented(document, "--indent=1"), printed("<a>\n <b>\n  <c/>\n </b>\n</a>\n"));
  EXPECT_EQ(indented(document, "--indent=16"),
            printed("<a>\n" + std::string(16, ' ') + "<b>\n" + std::string(32, ' ') + "<c/>\n" +
                    std::string(16, ' ') + "</b>\n</a>\n"));
  EXPECT_EQ(indented(document, "--tabs"), printed("<a>\n\t<b>\n\t\t<c/>\n\t</b>\n</a>\n"));
}

TEST_F(Indent, TakesTheLastWidthAndTabsBeforeAll) {
  const auto run2 = [this](const std::string& one, const std::string& other) {
    return run({"convert", one, other, "--no-declaration", "-"}, "<a><b/></a>");
  };
  EXPECT_EQ(run2("--indent=4", "--indent=1"), printed("<a>\n <b/>\n</a>\n"));
  EXPECT_EQ(run2("--indent", "--indent"), printed("<a>\n  <b/>\n</a>\n"));
  EXPECT_EQ(run2("--tabs", "--indent=4"), printed("<a>\n\t<b/>\n</a>\n"));
}

TEST_F(Indent, NeverTakesAFileNameForItsWidth) {
  writeFile("4", "<a> <b/></a>");
  EXPECT_EQ(run({"convert", "--no-declaration", "--indent", "4", "out.xml"}), silent(0));
  EXPECT_EQ(readFile("out.xml"), "<a>\n  <b/>\n</a>\n");
}

TEST_F(Indent, EndsTheLastLine) {
  EXPECT_EQ(indented("<a/>"), printed("<a/>\n"));
  EXPECT_EQ(indented("<a>t</a>"), printed("<a>t</a>\n"));
  EXPECT_EQ(indented("<a/><!--b--><?c d?>"), printed("<a/>\n<!--b-->\n<?c d?>\n"));
}

TEST_F(Indent, TakesCommentsAndInstructionsForChildren) {
  EXPECT_EQ(indented("<!--1--> <?p q?> <a><!--2\n 2--><?p?></a>"),
            printed("<!--1-->\n<?p q?>\n<a>\n  <!--2\n 2-->\n  <?p ?>\n</a>\n"));
}

TEST_F(Indent, LaysTheDocumentTypeOut) {
  EXPECT_EQ(indented("<!DOCTYPE a SYSTEM 's' [<!ELEMENT a (b)*><!--c--><!ENTITY e 'f'><?p q?>"
                     "<!ENTITY % g SYSTEM 'h'>%g;<!NOTATION n SYSTEM 'o'>]><a>&e;</a>"),
            printed("<!DOCTYPE a SYSTEM \"s\" [\n"
                    "  <!ELEMENT a (b)*>\n"
                    "  <!--c-->\n"
                    "  <!ENTITY e \"f\">\n"
                    "  <?p q?>\n"
                    "  <!ENTITY % g SYSTEM \"h\">\n"
                    "  %g;\n"
                    "  <!NOTATION n SYSTEM \"o\">\n"
                    "]>\n"
                    "<a>f</a>\n"));
  EXPECT_EQ(indented("<!DOCTYPE a [ ]><a/>"), printed("<!DOCTYPE a>\n<a/>\n"));
}

// Of the external subset nothing is written.
TEST_F(Indent, LeavesTheExternalSubsetAlone) {
  writeFile("s", "<!--1--><!ELEMENT a ANY><!ENTITY e '2'>");
  const std::string document = "<!DOCTYPE a SYSTEM \"s\">\n<a>2</a>\n";
  EXPECT_EQ(run({"convert", "--indent", "--entities", "--no-declaration", "-"},
                "<!DOCTYPE a SYSTEM 's'><a>&e;</a>"),
            printed(document));
  EXPECT_EQ(run({"convert", "--indent", "--entities", "--no-declaration", "-"},
                "<!DOCTYPE a SYSTEM 's' [<!ENTITY f '3'>]><a>&e;</a>"),
            printed("<!DOCTYPE a SYSTEM \"s\" [\n  <!ENTITY f \"3\">\n]>\n<a>2</a>\n"));
}

TEST_F(Indent, IsBoundedInDepth) {
  constexpr std::size_t kDepth = 3000;
  std::string document, expected;
  for (std::size_t i = 0; i < kDepth; ++i) {
    document += "<e>";
    if (i > 0) expected += "\n" + std::string(std::min<std::size_t>(i, 100), ' ');
    expected += i + 1 < kDepth ? "<e>" : "<e/>";
  }
  for (std::size_t i = kDepth; i-- > 0;) {
    document += "</e>";
    if (i + 1 < kDepth) expected += "\n" + std::string(std::min<std::size_t>(i, 100), ' ') + "</e>";
  }
  EXPECT_EQ(indented(document, "--indent=1"), printed(expected + "\n"));
}

// --- What is left as it is ---

TEST_F(Indent, LeavesAnElementWithText) {
  for (const std::string mixed : {
           "<p>one <b> <i/> </b> two <!--c--> </p>",
           "<p> <b/> <b> <i/></b> text</p>",
           "<p><b>bold</b>text</p>",
           "<p><b><i> <u/> </i></b><?p q?> .</p>",
       }) {
    SCOPED_TRACE(mixed);
    EXPECT_EQ(indented("<a> <q/>" + mixed + "<r> <s/></r></a>"),
              printed("<a>\n  <q/>\n  " + mixed + "\n  <r>\n    <s/>\n  </r>\n</a>\n"));
  }
  EXPECT_EQ(indented("<a> <b> <c/> </b>\n.</a>"), printed("<a> <b> <c/> </b>\n.</a>\n"));
}

TEST_F(Indent, LeavesWhiteSpaceThatIsAlone) {
  EXPECT_EQ(indented("<a> <b> </b> <c>\n\n</c></a>"),
            printed("<a>\n  <b> </b>\n  <c>\n\n</c>\n</a>\n"));
  EXPECT_EQ(indented("<a> </a>"), printed("<a> </a>\n"));
}

TEST_F(Indent, LeavesCDATASections) {
  EXPECT_EQ(indented("<a> <b><![CDATA[ ]]></b> <c> <d/> <![CDATA[<>]]></c></a>"),
            printed("<a>\n  <b><![CDATA[ ]]></b>\n  <c> <d/> <![CDATA[<>]]></c>\n</a>\n"));
  // A section without text is not written, and is no text.
  EXPECT_EQ(indented("<a><![CDATA[]]><b/> <![CDATA[]]> <c><![CDATA[]]></c></a>"),
            printed("<a>\n  <b/>\n  <c/>\n</a>\n"));
}

TEST_F(Indent, LeavesReferences) {
  EXPECT_EQ(indented("<!DOCTYPE a [<!ENTITY e SYSTEM 's'>]><a> <b> <c/> &e;</b> <c/></a>"),
            printed("<!DOCTYPE a [\n  <!ENTITY e SYSTEM \"s\">\n]>\n"
                    "<a>\n  <b> <c/> &e;</b>\n  <c/>\n</a>\n"));
}

TEST_F(Indent, ObeysXmlSpace) {
  EXPECT_EQ(indented("<a> <b xml:space='preserve'> <c> <d/></c> "
                     "<e xml:space='default'> <f/> <g xml:space='preserve'> </g></e> </b> </a>"),
            printed("<a>\n  <b xml:space='preserve'> <c> <d/></c> "
                    "<e xml:space='default'>\n      <f/>\n      <g xml:space='preserve'> </g>\n"
                    "    </e> </b>\n</a>\n"));
  EXPECT_EQ(indented("<a xml:space='preserve'> <b/> </a><!--c-->"),
            printed("<a xml:space='preserve'> <b/> </a>\n<!--c-->\n"));
  // It says nothing of what an element with text around it is.
  EXPECT_EQ(indented("<a>t<b xml:space='default'> <c/></b></a>"),
            printed("<a>t<b xml:space='default'> <c/></b></a>\n"));
  EXPECT_EQ(indented("<a xml:space='other'> <b/></a>"),
            printed("<a xml:space='other'>\n  <b/>\n</a>\n"));
}

TEST_F(Indent, ObeysXmlSpaceThatIsDeclared) {
  const std::string declared =
      "<!DOCTYPE a [\n  <!ATTLIST b xml:space (default|preserve) 'preserve'>\n]>\n";
  EXPECT_EQ(indented(declared + "<a> <b> <c/></b></a>"),
            printed(declared + "<a>\n  <b xml:space='preserve'> <c/></b>\n</a>\n"));
}

// --- How far it looks ahead ---

TEST_F(Indent, SeesTextWithin64KiBBehindTheFirstChild) {
  const std::string near = "<a><p>" + elements(kLookAhead) + "t<z/></p></a>";
  EXPECT_EQ(indented(near), printed("<a>\n  " + near.substr(3, near.size() - 7) + "\n</a>\n"));
  EXPECT_EQ(indented("<p>" + elements(kLookAhead + 4) + "t<z> <x/></z></p>"),
            printed("<p>" + lines(kLookAhead + 4) + "t<z> <x/></z></p>\n"));
  // With the white space in front of it.
  EXPECT_EQ(indented("<p>" + elements(kLookAhead) + " t</p>"),
            printed("<p>" + elements(kLookAhead) + " t</p>\n"));
}

TEST_F(Indent, SeesTextAtAnyDistanceWithoutAChild) {
  const std::string text(3 * kLookAhead, 't');
  EXPECT_EQ(indented("<a> <p>" + text + "<b/></p></a>"),
            printed("<a>\n  <p>" + text + "<b/></p>\n</a>\n"));
  // Nor is it far from what is in an element around it.
  EXPECT_EQ(indented("<a> <p>" + text + "</p>t</a>"), printed("<a>\n  <p>" + text + "</p>t</a>\n"));
}

TEST_F(Indent, TakesLongWhiteSpaceForText) {
  const std::string longest(kLookAhead, ' ');
  EXPECT_EQ(indented("<a>" + longest + "<b/></a>"), printed("<a>\n  <b/>\n</a>\n"));
  const std::string longer = "<a>" + longest + "\n<b/> </a>";
  EXPECT_EQ(indented(longer), printed(longer + "\n"));
}

TEST_F(Indent, NeedsNoMemoryForTheDocument) {
  std::string document = "<a>", expected = "<a>";
  while (document.size() < std::size_t{16} << 20U) {
    document += "<b><c>text</c>\n<d e='f'/><g><h/></g></b>";
    expected += "\n\t<b>\n\t\t<c>text</c>\n\t\t<d e='f'/>\n\t\t<g>\n\t\t\t<h/>\n\t\t</g>\n\t</b>";
  }
  writeFile("in.xml", document + "</a>");
  EXPECT_EQ(run({"convert", "--tabs", "--no-declaration", "in.xml", "out.xml"}, "",
                [] { limitMemory(rlim_t{20} << 20U); }),
            silent(0));
  EXPECT_TRUE(readFile("out.xml") == expected + "\n</a>\n");
}

// --- Encodings, types, failures ---

TEST_F(Indent, IsTheSameFromFastInfoset) {
  const std::string document =
      "<!--1--><a> <b x='y'>\n<c/> </b> <p>one <i/></p> <d xml:space='preserve'> <e/></d></a>";
  EXPECT_EQ(run({"convert", "-", "in.fi"}, document), silent(0));
  EXPECT_EQ(run({"convert", "--indent", "--no-declaration", "in.fi"}), indented(document));
}

TEST_F(Indent, TakesATypedValueForText) {
  // An integer of 64 bits.
  EXPECT_EQ(run({"convert", "--indent", "--no-declaration", "-"},
                octets("E0 00 00 01 00 3C 00 'a' 3C 00 'b' 8C 12 05 0000000000000005 FF F0")),
            printed("<a>\n  <b>5</b>\n</a>\n"));
}

TEST_F(Indent, IsForTheOtherWriterOfText) {
  EXPECT_EQ(run({"convert", "--indent", "--to", "XML", "-"}, "<!--c--><a> <b> <d/></b></a>"),
            printed("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!--c-->\n<a>\n  <b>\n    <d/>\n"
                    "  </b>\n</a>\n"));
}

TEST_F(Indent, LeavesNothingOfADocumentThatFails) {
  EXPECT_EQ(run({"convert", "--indent", "-", "out.xml"}, "<a>\n <b/></c>"),
            (Result{1, "", "-:2:8: mismatched tag: expected </a> of line 1\n"}));
  EXPECT_EQ(files(), Names{});
}
