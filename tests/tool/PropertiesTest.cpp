#include "HexOctets.h"
#include "Workplace.h"

namespace {

/// The options --property and --feature.
class Properties : public Workplace {
 protected:
  Properties() {
    writeFile("in.xml",
              "<!DOCTYPE a [<!NOTATION n SYSTEM 'n.gif'>]>"
              "<a b='1'>t<![CDATA[u]]>v<c xmlns='urn:x'/></a>");
    // Its external vocabulary is not known.
    writeFile("unknown.fi", octets("E0 00 00 01 20 10 00 04 'urn:x' 3C 00 'a' FF"));
  }

  static Result refused(const std::string& message) { return {2, "", "tavrin: " + message + "\n"}; }
  static Result done(const std::string& out) { return {0, out, ""}; }
};

const std::string kReaderProperties =
    " (there are base-uri, reparse-deferral, text-scanner, raw-octets)\n";
const std::string kReaderFeatures =
    " (there are coalesce-characters, namespaces, namespace-prefixes, xmlns-uris, "
    "external-general-entities, external-parameter-entities)\n";

}  // namespace

TEST_F(Properties, OfTextAreChangedInTheCopy) {
  writeFile("small.xml", "<a b='\"'><c></c></a>");
  EXPECT_EQ(
      run({"convert", "--feature", "xml-declaration=off", "--feature=empty-tags=off", "small.xml"}),
      done("<a b='\"'><c></c></a>"));
  EXPECT_EQ(run({"convert", "--no-declaration", "--property", "quote-character=\"", "--feature",
                 "auto-indent", "--property", "indent-width=1", "small.xml"}),
            done("<a b=\"&quot;\">\n <c/>\n</a>"));
  EXPECT_EQ(run({"convert", "--no-declaration", "--feature=auto-indent=on", "--property",
                 "indent-width=0", "small.xml"}),
            done("<a b='\"'>\n<c/>\n</a>"));
  // The last one counts.
  EXPECT_EQ(run({"convert", "--no-declaration", "--feature", "empty-tags=off", "--feature",
                 "empty-tags", "small.xml"}),
            done("<a b='\"'><c/></a>"));
}

TEST_F(Properties, OfFastInfosetAreChangedInTheCopy) {
  const std::string document = "<a b='xyz'>text<c b='xyz'/>text</a>";
  const auto convert = [&](const ToolProcess::Arguments& options) {
    ToolProcess::Arguments arguments = {"convert", "--to", "X891", "-"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run(arguments, document);
  };
  const std::string head = "E0 00 00 01 00 7C 00 'a' 78 00 'b' ";
  EXPECT_EQ(convert({}), done(octets(head + "42 'xyz' F0 92 01 'text' 7C 00 'c' 00 80 FF A0 FF")));
  EXPECT_EQ(convert({"--property", "indexed-chunk-length=3", "--property",
                     "indexed-attribute-value-length=2"}),
            done(octets(head + "02 'xyz' F0 82 01 'text' 7C 00 'c' 00 02 'xyz' FF 82 01 'text' "
                               "FF")));
  EXPECT_EQ(convert({"--property", "value-indexing=never"}),
            done(octets(head + "02 'xyz' F0 82 01 'text' 7C 00 'c' 00 02 'xyz' FF 82 01 'text' "
                               "FF")));
  for (const std::string indexing : {"always", "adaptive"}) {
    EXPECT_EQ(convert({"--property=value-indexing=" + indexing}), convert({}));
  }
  for (const std::string most : {"4", "0.5K", "1G", "none"}) {
    EXPECT_EQ(convert({"--property=indexed-chunk-length=" + most}), convert({}));
  }
}

TEST_F(Properties, OfReadersShowInTheEvents) {
  EXPECT_EQ(run({"events", "--declarations", "--property", "base-uri=http://x/y/z", "--feature",
                 "coalesce-characters", "--feature", "namespace-prefixes", "in.xml"}),
            done("startDocument()\n"
                 "startDTD(\"a\", \"\", \"\")\n"
                 "notationDecl(\"n\", \"\", \"http://x/y/n.gif\")\n"
                 "endDTD()\n"
                 "startElement(\"\", \"a\", \"a\", [{\"\", \"b\", \"b\", \"CDATA\", \"1\"}])\n"
                 "characters(\"t\")\n"
                 "startCDATA()\n"
                 "characters(\"u\")\n"
                 "endCDATA()\n"
                 "characters(\"v\")\n"
                 "startPrefixMapping(\"\", \"urn:x\")\n"
                 "startElement(\"urn:x\", \"c\", \"c\", [{\"\", \"\", \"xmlns\", \"CDATA\", "
                 "\"urn:x\"}])\n"
                 "endElement(\"urn:x\", \"c\", \"c\")\n"
                 "endPrefixMapping(\"\")\n"
                 "endElement(\"\", \"a\", \"a\")\n"
                 "endDocument()\n"));
  EXPECT_EQ(run({"events", "--feature", "namespaces=off", "-"}, "<p:a/>"),
            done("startDocument()\n"
                 "startElement(\"\", \"\", \"p:a\", [])\n"
                 "endElement(\"\", \"\", \"p:a\")\n"
                 "endDocument()\n"));
}

TEST_F(Properties, ChooseWhoReadsTextWhichNobodySees) {
  const std::string text = "<p:a xmlns:p='u'>t&#10;<b c='d'/></p:a>";
  for (const std::string& document : {text, text + "<"}) {
    const Result expected = run({"events", "-"}, document);
    for (const std::string scanner : {"automatic", "expat"}) {
      EXPECT_EQ(run({"events", "--property", "text-scanner=" + scanner, "-"}, document), expected);
    }
  }
}

TEST_F(Properties, LetADocumentBeReadWithoutItsVocabulary) {
  EXPECT_EQ(
      run({"check", "unknown.fi"}),
      (Result{1, "",
              "unknown.fi: octet 13: Unknown external vocabulary - urn:x (see --vocabulary and "
              "--uri)\n"}));
  EXPECT_EQ(run({"check", "--property", "raw-octets=on", "unknown.fi"}),
            done("unknown.fi: well-formed\n"));
  EXPECT_EQ(
      run({"check", "--property", "raw-octets=on", "--property", "raw-octets=off", "unknown.fi"}),
      run({"check", "unknown.fi"}));
}

TEST_F(Properties, AreThoseThatThereAre) {
  for (const std::string setting :
       {"bogus=1", "bogus", "=1", "", "Base-uri=x", "namespaces=on", "maximum-depth=3"}) {
    SCOPED_TRACE(setting);
    EXPECT_EQ(run({"check", "--property", setting, "missing.xml"}),
              (Result{2, "",
                      "tavrin: --property " + setting + ": there is no such property" +
                          kReaderProperties}));
  }
  for (const std::string setting : {"bogus=on", "bogus", "=on", "", "base-uri=on", "validation"}) {
    SCOPED_TRACE(setting);
    EXPECT_EQ(
        run({"events", "--feature", setting, "missing.xml"}),
        (Result{2, "",
                "tavrin: --feature " + setting + ": there is no such feature" + kReaderFeatures}));
  }
  // Those of writers are of use to commands that make copies.
  for (const std::string command : {"check", "events"}) {
    EXPECT_EQ(run({command, "--property", "indent-width=3", "in.xml"}),
              (Result{2, "",
                      "tavrin: --property indent-width=3: there is no such property" +
                          kReaderProperties}));
  }
  for (const std::string command : {"convert", "stat"}) {
    EXPECT_EQ(run({command, "--property", "indent-width=3", "in.xml"}).status, 0);
    EXPECT_EQ(run({command, "--property", "bogus", "in.xml"}),
              refused("--property bogus: there is no such property (there are base-uri, "
                      "reparse-deferral, text-scanner, raw-octets, indent-width, quote-character, "
                      "indexed-attribute-value-length, indexed-chunk-length, value-indexing)"));
  }
}

TEST_F(Properties, HaveValuesOfTheirOwn) {
  const auto refuse = [&](const std::string& option, const std::string& setting,
                          const std::string& reason) {
    SCOPED_TRACE(setting);
    EXPECT_EQ(run({"convert", option, setting, "in.xml"}),
              refused(option + " " + setting + ": the value is " + reason));
  };
  for (const std::string name :
       {"base-uri", "raw-octets", "indent-width", "quote-character", "indexed-chunk-length"}) {
    refuse("--property", name, "missing");
  }
  for (const std::string value : {"", "1", "ON", "true", "on "}) {
    refuse("--property", "raw-octets=" + value, "not on or off");
    refuse("--feature", "empty-tags=" + value, "not on or off");
  }
  for (const std::string value : {"", "1001", "1K", "none", "x", "-1", "1e2"}) {
    refuse("--property", "indent-width=" + value, "not a number up to 1000");
  }
  for (const std::string value : {"", "''", "x", "off"}) {
    refuse("--property", "quote-character=" + value, "not ' or \"");
  }
  for (const std::string value : {"", "x", "-1", "1KK", "0x10", "inf"}) {
    refuse("--property", "indexed-chunk-length=" + value, "not a number or none");
  }
  for (const std::string value : {"", "on", "Always", "sometimes"}) {
    refuse("--property", "value-indexing=" + value, "not always, never or adaptive");
  }
  for (const std::string value : {"", "on", "Expat", "own"}) {
    refuse("--property", "text-scanner=" + value, "not automatic or expat");
  }
}

TEST_F(Properties, NeedATypeThatHasThemWhereItWasChosen) {
  const Result text = run({"convert", "in.xml"});
  EXPECT_EQ(run({"convert", "--property", "indexed-chunk-length=9", "--property", "raw-octets=on",
                 "in.xml"}),
            text);
  EXPECT_EQ(run({"convert", "--to", "XML10", "--property", "indexed-chunk-length=9", "in.xml"}),
            refused("Property \"http://tavrin/fastinfoset/properties/indexed-chunk-length\" not "
                    "recognized"));
  EXPECT_EQ(run({"check", "--from", "XML10", "--property", "raw-octets=on", "in.xml"}),
            refused("Property \"http://tavrin/fastinfoset/properties/raw-octets\" not recognized"));
  EXPECT_EQ(run({"check", "--from", "Expat", "--feature", "namespaces", "in.xml"}),
            refused("Feature \"http://xml.org/sax/features/namespaces\" not recognized"));
}

TEST_F(Properties, BoundTheTextThatIsPutTogether) {
  const std::string document = "<a>&#65;" + std::string(99, 'x') + "</a>";
  const auto events = [&](const std::string& limit) {
    return run({"events", "--feature", "coalesce-characters", "--limit",
                "maximum-coalesced-octets=" + limit, "-"},
               document);
  };
  EXPECT_EQ(events("100"), done("startDocument()\n"
                                "startElement(\"\", \"a\", \"a\", [])\n"
                                "characters(\"A" +
                                std::string(99, 'x') +
                                "\")\n"
                                "endElement(\"\", \"a\", \"a\")\n"
                                "endDocument()\n"));
  const Result result = events("99");
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("(see --limit maximum-coalesced-octets)"), std::string::npos)
      << result.err;
}
