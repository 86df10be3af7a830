#include "Workplace.h"

namespace {

using Convert = Workplace;

const std::string kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>";

Result printed(const std::string& document) { return {0, document, ""}; }

}  // namespace

TEST_F(Convert, WritesTheFileThatIsNamed) {
  writeFile("in.xml", "<a>\n<b/></a>\n");
  EXPECT_EQ(run({"convert", "in.xml", "out.xml"}), silent(0));
  EXPECT_EQ(readFile("out.xml"), kDeclaration + "<a>\n<b/></a>");
  EXPECT_EQ(files(), (Names{"in.xml", "out.xml"}));
}

TEST_F(Convert, WritesToStandardOutputUnlessAFileIsNamed) {
  writeFile("in.xml", "<a/>");
  EXPECT_EQ(run({"convert", "in.xml"}), printed(kDeclaration + "<a/>"));
  EXPECT_EQ(run({"convert", "in.xml", "-"}), printed(kDeclaration + "<a/>"));
  EXPECT_EQ(files(), Names{"in.xml"});
}

TEST_F(Convert, ReadsStandardInput) {
  EXPECT_EQ(run({"convert", "-"}, "<a/>"), printed(kDeclaration + "<a/>"));
  EXPECT_EQ(run({"convert", "-", "-"}, "<a/>"), printed(kDeclaration + "<a/>"));
  EXPECT_EQ(run({"convert", "-", "out.xml"}, "<a/>"), silent(0));
  EXPECT_EQ(readFile("out.xml"), kDeclaration + "<a/>");
}

TEST_F(Convert, ReadsAndWritesAFileInAnotherDirectory) {
  std::filesystem::create_directories(path("one/two"));
  writeFile("one/in.xml", "<a/>");
  EXPECT_EQ(run({"convert", "one/in.xml", "./one/two/../two/out.xml"}), silent(0));
  EXPECT_EQ(readFile("one/two/out.xml"), kDeclaration + "<a/>");
  EXPECT_EQ(run({"convert", path("one/in.xml"), path("absolute.xml")}), silent(0));
  EXPECT_EQ(readFile("absolute.xml"), kDeclaration + "<a/>");
  EXPECT_EQ(files(), (Names{"absolute.xml", "one"}));
}

TEST_F(Convert, TakesAnyNameForXMLText) {
  writeFile("in.bin", "<a/>");
  for (const std::string name : {"out.xml", "out.XML", "out.txt", "out", "out.", ".xml", "xml"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(run({"convert", "in.bin", name}), silent(0));
    EXPECT_EQ(readFile(name), kDeclaration + "<a/>");
  }
}

TEST_F(Convert, TakesTheTypesThatAreNamed) {
  writeFile("in.xml", "<a/>");
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "XML", "in.xml"}),
            printed(kDeclaration + "<a/>"));
  EXPECT_EQ(run({"convert", "--from=Expat", "in.xml", "--to=XML", "out.xml"}), silent(0));
  EXPECT_EQ(readFile("out.xml"), kDeclaration + "<a/>");
}

TEST_F(Convert, LeavesTheDeclarationOut) {
  EXPECT_EQ(run({"convert", "--no-declaration", "-"}, "<?xml version='1.0'?><a/>"),
            printed("<a/>"));
}

TEST_F(Convert, Indents) {
  EXPECT_EQ(run({"convert", "--indent", "-"},
                "<!--c--><!DOCTYPE a SYSTEM 's'><a><b><?p d?><c>t</c></b><b/></a><!--d-->"),
            printed(kDeclaration + "\n<!--c-->"
                                   "\n<!DOCTYPE a SYSTEM \"s\">"
                                   "\n<a>"
                                   "\n  <b>"
                                   "\n    <?p d?>"
                                   "\n    <c>t</c>"
                                   "\n  </b>"
                                   "\n  <b/>"
                                   "\n</a>"
                                   "\n<!--d-->\n"));
}

TEST_F(Convert, IndentsWithoutADeclaration) {
  EXPECT_EQ(run({"convert", "--indent", "--no-declaration", "-"}, "<a><b/></a>"),
            printed("<a>\n  <b/>\n</a>\n"));
}

TEST_F(Convert, LeavesNothingBehindOfADocumentThatFails) {
  writeFile("in.xml", "<a>\n<b></c></a>");
  const Result failed = {1, "", "in.xml:2:6: mismatched tag: expected </b> of line 2\n"};
  EXPECT_EQ(run({"convert", "in.xml", "out.xml"}), failed);
  EXPECT_EQ(files(), Names{"in.xml"});
}

TEST_F(Convert, LeavesAnOldFileAloneWhenTheDocumentFails) {
  writeFile("in.xml", "<a>\n<b></c></a>");
  writeFile("out.xml", "old");
  const Result failed = {1, "", "in.xml:2:6: mismatched tag: expected </b> of line 2\n"};
  EXPECT_EQ(run({"convert", "--force", "in.xml", "out.xml"}), failed);
  EXPECT_EQ(readFile("out.xml"), "old");
  EXPECT_EQ(run({"convert", "--force", "in.xml", "in.xml"}), failed);
  EXPECT_EQ(readFile("in.xml"), "<a>\n<b></c></a>");
  EXPECT_EQ(files(), (Names{"in.xml", "out.xml"}));
}

TEST_F(Convert, MayHavePrintedTheBeginningOfADocumentThatFails) {
  EXPECT_EQ(run({"convert", "-"}, "<a>\n<b></c></a>"),
            (Result{1, "", "-:2:6: mismatched tag: expected </b> of line 2\n"}));
  const std::string document = "<a>" + std::string(3000000, 'x');
  const Result result = run({"convert", "--no-declaration", "-"}, document + "</b>");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "-:1:3000006: mismatched tag: expected </a> of line 1\n");
  EXPECT_GT(result.out.size(), 1000000U);
  EXPECT_EQ(result.out, document.substr(0, result.out.size()));
}

TEST_F(Convert, FailsOnAnEmptyDocument) {
  EXPECT_EQ(run({"convert", "-", "out.xml"}),
            (Result{1, "", "-:1:1: no element found (the input is empty)\n"}));
  EXPECT_EQ(run({"convert", "-", "out.xml"}, "\n"), (Result{1, "", "-:2:1: no element found\n"}));
  EXPECT_EQ(files(), Names{});
}

// --- Entities, with the types that do not follow the standards ---

TEST_F(Convert, PutsTheTextOfInternalEntitiesInTheirPlace) {
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "XML", "--no-declaration", "-"},
                "<!DOCTYPE d [<!ENTITY in '&#60;b/>1'><!ENTITY out '[&in;]'>]>"
                "<d a='&#x41;&lt;'>&out;&out;&amp;</d>"),
            printed("<!DOCTYPE d><d a='A&lt;'>[<b/>1][<b/>1]&amp;</d>"));
}

TEST_F(Convert, FailsOnAnEntityThatNothingDeclares) {
  EXPECT_EQ(run({"convert", "-", "out.xml"}, "<d>\n &nbsp;</d>"),
            (Result{1, "", "-:2:2: undefined entity: \"nbsp\"\n"}));
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "XML", "-", "out.xml"}, "<d>\n &nbsp;</d>"),
            (Result{1, "", "-:2:2: undefined entity\n"}));
  EXPECT_EQ(files(), Names{});
}

TEST_F(Convert, FailsOnAnEntityThatTheExternalSubsetMayDeclare) {
  writeFile("in.xml", "<!DOCTYPE d SYSTEM 'd.dtd'>\n<d>1 &nbsp; 2 &other;</d>");
  const std::string message =
      "in.xml:2:6: entity \"nbsp\" was not read, so the copy would lack it\n";
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "XML", "in.xml", "out.xml"}),
            (Result{1, "", message}));
  EXPECT_EQ(files(), Names{"in.xml"});
}

TEST_F(Convert, FailsOnAnEntityThatAParameterEntityMayDeclare) {
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "XML", "-", "out.xml"},
                "<!DOCTYPE d [<!ENTITY % p SYSTEM 'p.ent'>%p;\n"
                "<!ENTITY late 'not taken, as p may declare it'>]>\n<d>&late;</d>"),
            (Result{1, "", "-:3:4: entity \"late\" was not read, so the copy would lack it\n"}));
  EXPECT_EQ(files(), Names{});
}

TEST_F(Convert, FailsOnAnExternalEntity) {
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "XML", "-", "out.xml"},
                "<!DOCTYPE d [<!ENTITY e PUBLIC 'p' 'chapter 1.xml'>]>\n<d>\n&e;</d>"),
            (Result{1, "",
                    "-:3:1: external entity \"chapter 1.xml\" was not read, so the copy would lack "
                    "it\n"}));
  EXPECT_EQ(files(), Names{});
}

TEST_F(Convert, FailsOnAnExternalEntityWithinAnInternalOne) {
  EXPECT_EQ(
      run({"convert", "--from", "Expat", "--to", "XML", "-", "out.xml"},
          "<!DOCTYPE d [<!ENTITY e SYSTEM 'e.xml'><!ENTITY i '<x>&e;</x>'>]><d>&i;</d>"),
      (Result{1, "",
              "-:1:69: external entity \"e.xml\" was not read, so the copy would lack it\n"}));
}

TEST_F(Convert, NeverReadsTheFilesThatADocumentRefersTo) {
  writeFile("e.xml", "secret");
  writeFile("d.dtd", "<!ENTITY late 'secret'>");
  EXPECT_EQ(
      run({"convert", "--from", "Expat", "--to", "XML", "-", "out.xml"},
          "<!DOCTYPE d [<!ENTITY e SYSTEM 'e.xml'>]><d>&e;</d>"),
      (Result{1, "",
              "-:1:45: external entity \"e.xml\" was not read, so the copy would lack it\n"}));
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "XML", "-", "out.xml"},
                "<!DOCTYPE d SYSTEM 'd.dtd'><d>&late;</d>"),
            (Result{1, "", "-:1:31: entity \"late\" was not read, so the copy would lack it\n"}));
  EXPECT_EQ(files(), (Names{"d.dtd", "e.xml"}));
}

TEST_F(Convert, DoesWithoutTheExternalSubsetAndParameterEntities) {
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "XML", "--no-declaration", "-"},
                "<!DOCTYPE d PUBLIC 'p' 'd.dtd' [<!ENTITY % p SYSTEM 'p.ent'>%p; %unknown;]><d/>"),
            printed("<!DOCTYPE d PUBLIC \"p\" \"d.dtd\"><d/>"));
}

TEST_F(Convert, DoesNotMindExternalEntitiesThatAreOnlyDeclared) {
  EXPECT_EQ(run({"convert", "--from", "Expat", "--to", "XML", "--no-declaration", "-"},
                "<!DOCTYPE d [<!ENTITY e SYSTEM 'e.xml'><!NOTATION n SYSTEM 'n'>"
                "<!ENTITY u SYSTEM 'u' NDATA n>]><d/>"),
            printed("<!DOCTYPE d><d/>"));
}
