#include "HexOctets.h"
#include "Workplace.h"

namespace {

Result printed(const std::string& document) { return {0, document, ""}; }

/// Canonical XML of whole documents.
class Canonical : public Workplace {
 protected:
  using Arguments = ToolProcess::Arguments;

  Result canonical(const std::string& document, const Arguments& options = {"--canonical"}) const {
    Arguments arguments = {"convert", "-"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run(arguments, document);
  }
  Result exclusive(const std::string& document, const std::string& prefixes = {}) const {
    Arguments options = {"--canonical=exclusive"};
    if (!prefixes.empty()) options.insert(options.end(), {"--inclusive-prefixes", prefixes});
    return canonical(document, options);
  }

  /// An example of the recommendation: by both versions, and from Fast Infoset.
  void expectExample(const std::string& document, const std::string& expected) const {
    for (const std::string option : {"--canonical", "--canonical=1.0", "--canonical=1.1"}) {
      SCOPED_TRACE(option);
      EXPECT_EQ(canonical(document, {option, "--entities"}), printed(expected));
    }
    EXPECT_EQ(run({"convert", "--force", "--entities", "-", "example.fi"}, document), silent(0));
    EXPECT_EQ(run({"convert", "--canonical", "example.fi"}), printed(expected)) << "binary";
    EXPECT_EQ(canonical(expected), printed(expected)) << "the second time";
  }
};

}  // namespace

// --- The examples of Canonical XML 1.0 and 1.1, section 3 ---

TEST_F(Canonical, LeavesOutTheProlog) {
  writeFile("doc.dtd", "");
  const std::string document =
      "<?xml version=\"1.0\"?>\n"
      "\n"
      "<?xml-stylesheet   href=\"doc.xsl\"\n"
      "   type=\"text/xsl\"   ?>\n"
      "\n"
      "<!DOCTYPE doc SYSTEM \"doc.dtd\">\n"
      "\n"
      "<doc>Hello, world!<!-- Comment 1 --></doc>\n"
      "\n"
      "<?pi-without-data     ?>\n"
      "\n"
      "<!-- Comment 2 -->\n"
      "\n"
      "<!-- Comment 3 -->\n";
  expectExample(document,
                "<?xml-stylesheet href=\"doc.xsl\"\n"
                "   type=\"text/xsl\"   ?>\n"
                "<doc>Hello, world!</doc>\n"
                "<?pi-without-data?>");
  EXPECT_EQ(canonical(document, {"--canonical", "--comments", "--entities"}),
            printed("<?xml-stylesheet href=\"doc.xsl\"\n"
                    "   type=\"text/xsl\"   ?>\n"
                    "<doc>Hello, world!<!-- Comment 1 --></doc>\n"
                    "<?pi-without-data?>\n"
                    "<!-- Comment 2 -->\n"
                    "<!-- Comment 3 -->"));
}

TEST_F(Canonical, KeepsWhiteSpaceInContent) {
  const std::string document =
      "<doc>\n"
      "   <clean>   </clean>\n"
      "   <dirty>   A   B   </dirty>\n"
      "   <mixed>\n"
      "      A\n"
      "      <clean>   </clean>\n"
      "      B\n"
      "      <dirty>   A   B   </dirty>\n"
      "      C\n"
      "   </mixed>\n"
      "</doc>";
  expectExample(document + "\n", document);
}

TEST_F(Canonical, OrdersAttributesAndDeclarations) {
  expectExample(
      "<!DOCTYPE doc [<!ATTLIST e9 attr CDATA \"default\">]>\n"
      "<doc>\n"
      "   <e1   />\n"
      "   <e2   ></e2>\n"
      "   <e3   name = \"elem3\"   id=\"elem3\"   />\n"
      "   <e4   name=\"elem4\"   id=\"elem4\"   ></e4>\n"
      "   <e5 a:attr=\"out\" b:attr=\"sorted\" attr2=\"all\" attr=\"I'm\"\n"
      "      xmlns:b=\"http://www.ietf.org\"\n"
      "      xmlns:a=\"http://www.w3.org\"\n"
      "      xmlns=\"http://example.org\"/>\n"
      "   <e6 xmlns=\"\" xmlns:a=\"http://www.w3.org\">\n"
      "      <e7 xmlns=\"http://www.ietf.org\">\n"
      "         <e8 xmlns=\"\" xmlns:a=\"http://www.w3.org\">\n"
      "            <e9 xmlns=\"\" xmlns:a=\"http://www.ietf.org\"/>\n"
      "         </e8>\n"
      "      </e7>\n"
      "   </e6>\n"
      "</doc>\n",
      "<doc>\n"
      "   <e1></e1>\n"
      "   <e2></e2>\n"
      "   <e3 id=\"elem3\" name=\"elem3\"></e3>\n"
      "   <e4 id=\"elem4\" name=\"elem4\"></e4>\n"
      "   <e5 xmlns=\"http://example.org\" xmlns:a=\"http://www.w3.org\" "
      "xmlns:b=\"http://www.ietf.org\" attr=\"I'm\" attr2=\"all\" b:attr=\"sorted\" "
      "a:attr=\"out\"></e5>\n"
      "   <e6 xmlns:a=\"http://www.w3.org\">\n"
      "      <e7 xmlns=\"http://www.ietf.org\">\n"
      "         <e8 xmlns=\"\">\n"
      "            <e9 xmlns:a=\"http://www.ietf.org\" attr=\"default\"></e9>\n"
      "         </e8>\n"
      "      </e7>\n"
      "   </e6>\n"
      "</doc>");
}

TEST_F(Canonical, ReplacesCharactersAndReferences) {
  expectExample(
      "<!DOCTYPE doc [\n"
      "<!ATTLIST normId id ID #IMPLIED>\n"
      "<!ATTLIST normNames attr NMTOKENS #IMPLIED>\n"
      "]>\n"
      "<doc>\n"
      "   <text>First line&#x0d;&#10;Second line</text>\n"
      "   <value>&#x32;</value>\n"
      "   <compute><![CDATA[value>\"0\" && value<\"10\" ?\"valid\":\"error\"]]></compute>\n"
      "   <compute expr='value>\"0\" &amp;&amp; value&lt;\"10\" ?\"valid\":\"error\"'>"
      "valid</compute>\n"
      "   <norm attr=' &apos;   &#x20;&#13;&#xa;&#9;   &apos; '/>\n"
      "   <normNames attr='   A   &#x20;&#13;&#xa;&#9;   B   '/>\n"
      "   <normId id=' &apos;   &#x20;&#13;&#xa;&#9;   &apos; '/>\n"
      "</doc>\n",
      "<doc>\n"
      "   <text>First line&#xD;\n"
      "Second line</text>\n"
      "   <value>2</value>\n"
      "   <compute>value&gt;\"0\" &amp;&amp; value&lt;\"10\" ?\"valid\":\"error\"</compute>\n"
      "   <compute expr=\"value>&quot;0&quot; &amp;&amp; value&lt;&quot;10&quot; "
      "?&quot;valid&quot;:&quot;error&quot;\">valid</compute>\n"
      "   <norm attr=\" '    &#xD;&#xA;&#x9;   ' \"></norm>\n"
      "   <normNames attr=\"A &#xD;&#xA;&#x9; B\"></normNames>\n"
      "   <normId id=\"' &#xD;&#xA;&#x9; '\"></normId>\n"
      "</doc>");
}

TEST_F(Canonical, PutsTheTextOfEntitiesInTheirPlace) {
  writeFile("world.txt", "world");
  expectExample(
      "<!DOCTYPE doc [\n"
      "<!ATTLIST doc attrExtEnt ENTITY #IMPLIED>\n"
      "<!ENTITY ent1 \"Hello\">\n"
      "<!ENTITY ent2 SYSTEM \"world.txt\">\n"
      "<!ENTITY entExt SYSTEM \"earth.gif\" NDATA gif>\n"
      "<!NOTATION gif SYSTEM \"viewgif.exe\">\n"
      "]>\n"
      "<doc attrExtEnt=\"entExt\">\n"
      "   &ent1;, &ent2;!\n"
      "</doc>\n"
      "\n"
      "<!-- Let world.txt contain \"world\" (excluding the quotes) -->\n",
      "<doc attrExtEnt=\"entExt\">\n"
      "   Hello, world!\n"
      "</doc>");
}

TEST_F(Canonical, IsInUTF8) {
  expectExample("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<doc>&#169;</doc>",
                "<doc>\xC2\xA9</doc>");
  EXPECT_EQ(canonical("\xEF\xBB\xBF<doc/>"), printed("<doc></doc>"));
}

// --- The exclusive form ---

// Exclusive XML Canonicalization 1.0, sections 2.1 and 2.2: the element n1:elem2 has the same form
// whatever is around it.
TEST_F(Canonical, ExclusiveHasDeclarationsWhereTheyAreUsed) {
  const std::string element = "<n1:elem2 xml:lang=\"en\">\n     <n3:stuff/>\n   </n1:elem2>";
  EXPECT_EQ(exclusive("<n0:pdu xmlns:n0=\"http://a.example\"\n"
                      "     xmlns:n1=\"http://b.example\"\n"
                      "     xmlns:n3=\"ftp://example.org\"\n"
                      "     xml:lang=\"fr\" xml:space=\"retain\">\n   " +
                      element + "\n</n0:pdu>"),
            printed("<n0:pdu xmlns:n0=\"http://a.example\" xml:lang=\"fr\" xml:space=\"retain\">\n"
                    "   <n1:elem2 xmlns:n1=\"http://b.example\" xml:lang=\"en\">\n"
                    "     <n3:stuff xmlns:n3=\"ftp://example.org\"></n3:stuff>\n"
                    "   </n1:elem2>\n</n0:pdu>"));
}

TEST_F(Canonical, ExclusiveDeclaresThePrefixesOfAttributes) {
  EXPECT_EQ(exclusive("<a xmlns:q='u:q' xmlns:p='u:p' xmlns='u:d'><b p:y='1' q:x='2' z='3'>"
                      "<p:c q:x=''/></b><q:d/></a>"),
            printed("<a xmlns=\"u:d\"><b xmlns:p=\"u:p\" xmlns:q=\"u:q\" z=\"3\" p:y=\"1\" "
                    "q:x=\"2\"><p:c q:x=\"\"></p:c></b><q:d xmlns:q=\"u:q\"></q:d></a>"));
}

TEST_F(Canonical, ExclusiveUndeclaresTheDefaultNamespaceWhereItIsUsed) {
  EXPECT_EQ(
      exclusive("<a xmlns='u:d' xmlns:p='u:p'><p:b xmlns=''><p:c><d/></p:c></p:b></a>"),
      printed("<a xmlns=\"u:d\"><p:b xmlns:p=\"u:p\"><p:c><d xmlns=\"\"></d></p:c></p:b></a>"));
  EXPECT_EQ(exclusive("<p:a xmlns='u:d' xmlns:p='u:p'><b xmlns=''/></p:a>"),
            printed("<p:a xmlns:p=\"u:p\"><b></b></p:a>"));
  EXPECT_EQ(exclusive("<p:a xmlns='u:d' xmlns:p='u:p'><b/><p:c/><b xmlns='u:e'><b/></b></p:a>"),
            printed("<p:a xmlns:p=\"u:p\"><b xmlns=\"u:d\"></b><p:c></p:c><b xmlns=\"u:e\">"
                    "<b></b></b></p:a>"));
}

TEST_F(Canonical, ExclusiveTakesPrefixesThatAreInclusive) {
  const std::string document =
      "<p:a xmlns='u:d' xmlns:p='u:p' xmlns:q='u:q' xmlns:r='u:r'><p:b xmlns='' xmlns:q='u:2'/>"
      "<q:c/></p:a>";
  EXPECT_EQ(exclusive(document),
            printed("<p:a xmlns:p=\"u:p\"><p:b></p:b><q:c xmlns:q=\"u:q\"></q:c></p:a>"));
  EXPECT_EQ(exclusive(document, "q"),
            printed("<p:a xmlns:p=\"u:p\" xmlns:q=\"u:q\"><p:b xmlns:q=\"u:2\"></p:b>"
                    "<q:c></q:c></p:a>"));
  const std::string all =
      "<p:a xmlns=\"u:d\" xmlns:p=\"u:p\" xmlns:q=\"u:q\" xmlns:r=\"u:r\">"
      "<p:b xmlns=\"\" xmlns:q=\"u:2\"></p:b><q:c></q:c></p:a>";
  EXPECT_EQ(exclusive(document, "r q,#default"), printed(all));
  EXPECT_EQ(exclusive(document, " #default , q\tr none"), printed(all));
  EXPECT_EQ(canonical(document), printed(all));
}

// --- What nobody has an example for ---

TEST_F(Canonical, LeavesOutSuperfluousDeclarations) {
  EXPECT_EQ(canonical("<a xmlns='' xmlns:p='u:1'><b xmlns:p='u:1'><c xmlns:p='u:2'/>"
                      "<c xmlns:p='u:1' xmlns='u:3'><d xmlns='u:3'/></c></b></a>"),
            printed("<a xmlns:p=\"u:1\"><b><c xmlns:p=\"u:2\"></c><c xmlns=\"u:3\"><d></d></c></b>"
                    "</a>"));
  EXPECT_EQ(canonical("<a xmlns:xml='http://www.w3.org/XML/1998/namespace' xml:id='x'/>"),
            printed("<a xml:id=\"x\"></a>"));
}

TEST_F(Canonical, OrdersByOctetsOfUTF8) {
  // U+FFFD sorts before U+10000, which UTF-16 would not do.
  EXPECT_EQ(canonical("<a xmlns:b='u:\xF0\x90\x80\x80' xmlns:c='u:\xEF\xBF\xBD' c:z='1' b:y='2' "
                      "_='3' Z='4' a='5' a-='6'/>"),
            printed("<a xmlns:b=\"u:\xF0\x90\x80\x80\" xmlns:c=\"u:\xEF\xBF\xBD\" Z=\"4\" _=\"3\" "
                    "a=\"5\" a-=\"6\" c:z=\"1\" b:y=\"2\"></a>"));
}

TEST_F(Canonical, EscapesNamespaceNames) {
  EXPECT_EQ(canonical("<a xmlns='u:&amp;&quot;&#9;>'/>"),
            printed("<a xmlns=\"u:&amp;&quot;&#x9;>\"></a>"));
}

TEST_F(Canonical, LeavesOutTheDocumentTypeWithAllThatIsInIt) {
  EXPECT_EQ(canonical("<!--1--><!DOCTYPE a [<!--2--><?p 3?><!ENTITY e '<?q?>'>]><?r?><a>&e;</a>",
                      {"--canonical", "--comments"}),
            printed("<!--1-->\n<?r?>\n<a><?q?></a>"));
}

// Only Fast Infoset can have them there.
TEST_F(Canonical, EscapesCarriageReturnsEverywhere) {
  EXPECT_EQ(run({"convert", "-", "in.fi"}, "<a><?p 1_2?><!--3_4--></a>"), silent(0));
  std::string document = readFile("in.fi");
  for (char& octet : document) octet = octet == '_' ? '\r' : octet;
  EXPECT_EQ(canonical(document, {"--canonical", "--comments"}),
            printed("<a><?p 1&#xD;2?><!--3&#xD;4--></a>"));
}

TEST_F(Canonical, HasTypedValuesAsText) {
  EXPECT_EQ(canonical(octets("E0 00 00 01 00 3C 00 'a' 8C 12 05 0000000000000005 FF")),
            printed("<a>5</a>"));
}

TEST_F(Canonical, IsWrittenWhole) {
  std::string document = "<a>", expected = "<a>";
  for (int i = 0; i < 30000; ++i) {
    document += "<b c='d'/><e>\n</e>";
    expected += "<b c=\"d\"></b><e>\n</e>";
  }
  writeFile("in.xml", document + "</a>");
  EXPECT_EQ(run({"convert", "--canonical", "in.xml", "out.xml"}), silent(0));
  EXPECT_TRUE(readFile("out.xml") == expected + "</a>");
}

TEST_F(Canonical, NeedsNoMemoryForTheDocument) {
  std::string document = "<a>";
  for (int i = 0; document.size() < std::size_t{16} << 20U; ++i) {
    const std::string name = "n" + std::to_string(i % 100);
    document += "<b xmlns:" + name + "='u:" + name + "' " + name + ":c='d'>text</b>";
  }
  writeFile("in.xml", document + "</a>");
  for (const std::string option : {"--canonical", "--canonical=exclusive"}) {
    const Result result = run({"convert", option, "in.xml", option.substr(2)}, "",
                              [] { limitMemory(rlim_t{20} << 20U); });
    EXPECT_EQ(result, silent(0)) << option;
  }
  EXPECT_TRUE(readFile("canonical") == readFile("canonical=exclusive"));
}

// --- What has no canonical form ---

TEST_F(Canonical, FailsOnAnEntityThatIsNotRead) {
  const std::string document = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.xml'>]>\n<a>&e;</a>";
  EXPECT_EQ(run({"convert", "--canonical", "-", "out.xml"}, document),
            (Result{1, "", "-:2:4: entity \"e\" was not read, so the copy would lack it\n"}));
  EXPECT_EQ(run({"convert", "-", "in.fi"}, document), silent(0));
  EXPECT_EQ(
      run({"convert", "--canonical", "--lossy", "in.fi", "out.xml"}),
      (Result{1, "", "in.fi: octet 19: entity \"e\" was not read, so the copy would lack it\n"}));
  EXPECT_EQ(files(), Names{"in.fi"});
}

TEST_F(Canonical, FailsWhereDefaultsMayBeMissing) {
  const std::string message =
      "A part of the document type was not read: it may have defaults of "
      "attributes";
  const std::string document = "<!DOCTYPE a SYSTEM 's'><a/>";
  const Result failed{1, "", "-: " + message + " (see --entities and --lossy)\n"};
  EXPECT_EQ(run({"convert", "--canonical", "-", "out.xml"}, document), failed);
  EXPECT_EQ(files(), Names{});
  EXPECT_EQ(run({"convert", "--canonical", "-", "out.xml"},
                "<!DOCTYPE a [<!ENTITY % p SYSTEM 's'>%p;]><a/>"),
            failed);
  EXPECT_EQ(canonical(document, {"--canonical", "--lossy"}),
            (Result{0, "<a></a>", "-: warning: " + message + "\n"}));
  EXPECT_EQ(canonical("<?xml version='1.0' standalone='yes'?>" + document), printed("<a></a>"));
  writeFile("s", "<!ATTLIST a b CDATA 'c'>");
  EXPECT_EQ(canonical(document, {"--canonical", "--entities"}), printed("<a b=\"c\"></a>"));
}

TEST_F(Canonical, FailsOnARelativeNamespaceName) {
  for (const std::string name : {"b", "/b:c", "1b:c", "#", "b/c:d"}) {
    EXPECT_EQ(run({"convert", "--canonical", "-", "out.xml"}, "<a>\n<b xmlns='" + name + "'/></a>"),
              (Result{1, "",
                      "-:2:1: The namespace name \"" + name +
                          "\" is relative, for which there is no canonical form\n"}));
  }
  EXPECT_EQ(canonical("<a xmlns='b+c.d-1:'/>"), printed("<a xmlns=\"b+c.d-1:\"></a>"));
}

// Fast Infoset can hold what XML cannot.
TEST_F(Canonical, FailsOnWhatIsNotXML) {
  EXPECT_EQ(run({"convert", "-", "in.fi"}, "<a><!--3_4--></a>"), silent(0));
  std::string document = readFile("in.fi");
  document.replace(document.find("3_4"), 3, "---");
  EXPECT_EQ(canonical(document).status, 1);
  EXPECT_EQ(canonical(document).err, run({"convert", "-"}, document).err);
}

TEST_F(Canonical, IsOneDocument) {
  const std::string two = octets("E0 00 00 01 00 3C 00 'a' FF E0 00 00 01 00 3C 00 'b' FF");
  EXPECT_EQ(run({"convert", "--canonical", "-", "out.xml"}, two),
            (Result{1, "",
                    "-: octet 10: A second document begins here, and XML text holds one (see "
                    "--document)\n"}));
  EXPECT_EQ(canonical(two, {"--canonical", "--document", "2"}), printed("<b></b>"));
}

TEST_F(Canonical, NeverTakesAFileNameForItsVersion) {
  writeFile("1.1", "<a/>");
  EXPECT_EQ(run({"convert", "--canonical", "1.1", "out.xml"}), silent(0));
  EXPECT_EQ(readFile("out.xml"), "<a></a>");
}
