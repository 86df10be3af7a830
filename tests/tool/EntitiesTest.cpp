#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

/// Documents in pieces, with and without --entities.
class Entities : public Workplace {
 protected:
  Result text(const std::string& document, const ToolProcess::Arguments& options = {}) {
    ToolProcess::Arguments arguments = {"convert", "--no-declaration", "-"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run(arguments, document);
  }
};

Result printed(const std::string& document) { return {0, document, ""}; }

Result failed(int status, const std::string& message) { return {status, "", message + "\n"}; }

const ToolProcess::Arguments kEntities = {"--entities"};

}  // namespace

// --- That are read ---

TEST_F(Entities, AreFilesBesideTheDocument) {
  std::filesystem::create_directory(path("one"));
  writeFile("one/e.xml", "<b/>1");
  writeFile("one/in.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.xml'>]><a>&e;&e;</a>");
  writeFile("e.xml", "<wrong/>");
  const std::string declaration = "<!DOCTYPE a [  <!ENTITY e SYSTEM \"e.xml\">]>";
  EXPECT_EQ(run({"convert", "--entities", "--no-declaration", "one/in.xml"}),
            printed(declaration + "<a><b/>1<b/>1</a>"));
  EXPECT_EQ(run({"convert", "--entities", "one/in.xml", "one/out.fi"}), silent(0));
  EXPECT_EQ(readFile("one/out.fi"),
            octets("E0 00 00 01 00 C4 F0 3C 00 'a' 3C 00 'b' F0 90 '1' 01 F0 A0 FF"));
  EXPECT_EQ(run({"diff", "--entities", "one/in.xml", "one/out.fi"}), silent(0));
  EXPECT_EQ(run({"check", "--entities", "one/in.xml"}),
            (Result{0, "one/in.xml: well-formed\n", ""}));
  // Standard input is in the current folder.
  EXPECT_EQ(text(readFile("one/in.xml"), kEntities),
            printed(declaration + "<a><wrong/><wrong/></a>"));
}

// An identifier in an entity is relative to that entity (XML 1.0, section 4.2.2).
TEST_F(Entities, MayBeInFoldersWithinFolders) {
  std::filesystem::create_directories(path("doc/dtd/mod"));
  std::filesystem::create_directories(path("doc/text"));
  writeFile("doc/dtd/a.dtd",
            "<!ENTITY % m SYSTEM 'mod/m.ent'>%m;\n<!ENTITY up SYSTEM '../text/up.xml'>\n"
            "<!ATTLIST a x CDATA 'default'>");
  writeFile("doc/dtd/mod/m.ent", "<!ENTITY inner SYSTEM 'inner.xml'>");
  writeFile("doc/dtd/mod/inner.xml", "inner");
  writeFile("doc/text/up.xml", "<up/>");
  writeFile("doc/in.xml", "<!DOCTYPE a SYSTEM 'dtd/a.dtd'><a>&up;&inner;</a>");
  EXPECT_EQ(run({"convert", "--entities", "--no-declaration", "doc/in.xml"}),
            printed("<!DOCTYPE a SYSTEM \"dtd/a.dtd\"><a x='default'><up/>inner</a>"));
  EXPECT_EQ(run({"convert", "--entities", "doc/in.xml", "doc/out.xml"}), silent(0));
  EXPECT_EQ(run({"convert", "--entities", "doc/in.xml", "doc/out.fi"}), silent(0));
  EXPECT_EQ(run({"diff", "--entities", "doc/in.xml", "doc/out.xml"}), silent(0));
  EXPECT_EQ(run({"diff", "--entities", "doc/in.xml", "doc/out.fi"}), silent(0));
}

TEST_F(Entities, MayHaveNamesOfURIs) {
  std::filesystem::create_directory(path("a folder"));
  writeFile("a folder/100% \xC3\xA4.xml", "1");
  writeFile("%2", "2");
  writeFile("-", "3");
  for (const std::string& identifier :
       {std::string("a%20folder/100%25%20%C3%A4.xml"), std::string("a folder/100%25 \xC3\xA4.xml"),
        "file://" + directory_ + "/a%20folder/100%25%20%c3%a4.xml",
        "file:" + directory_ + "/a%20folder/100%25%20%C3%A4.xml",
        "FILE://localhost" + directory_ + "/a%20folder/100%25%20%C3%A4.xml",
        directory_ + "/a folder/100%25 \xC3\xA4.xml"}) {
    SCOPED_TRACE(identifier);
    EXPECT_EQ(text("<!DOCTYPE a [<!ENTITY e SYSTEM '" + identifier + "'>]><a>&e;</a>", kEntities),
              printed("<!DOCTYPE a [  <!ENTITY e SYSTEM \"" + identifier + "\">]><a>1</a>"));
  }
  // An octet of two digits is written so, and nothing else.
  EXPECT_EQ(text("<!DOCTYPE a [<!ENTITY e SYSTEM '%2'>]><a>&e;</a>", kEntities),
            printed("<!DOCTYPE a [  <!ENTITY e SYSTEM \"%2\">]><a>2</a>"));
  // A hyphen is standard input only in place of a document.
  EXPECT_EQ(text("<!DOCTYPE a [<!ENTITY e SYSTEM '-'>]><a>&e;</a>", kEntities),
            printed("<!DOCTYPE a [  <!ENTITY e SYSTEM \"-\">]><a>3</a>"));
}

TEST_F(Entities, AreReadInEveryCommandThatHasTheOption) {
  writeFile("e.xml", "<b>");
  writeFile("in.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.xml'>]><a>&e;</a>");
  const std::string message = "in.xml:1:4: asynchronous entity (in the entity e, \"e.xml\")";
  EXPECT_EQ(run({"check", "--entities", "in.xml"}), failed(1, message));
  EXPECT_EQ(run({"convert", "--entities", "in.xml", "out.xml"}), failed(1, message));
  EXPECT_EQ(run({"diff", "--entities", "in.xml", "in.xml"}), failed(1, message + "\n" + message));
  EXPECT_EQ(run({"check", "in.xml"}), (Result{0, "in.xml: well-formed\n", ""}));
  EXPECT_EQ(run({"diff", "in.xml", "in.xml"}), silent(0));
  EXPECT_EQ(files(), (Names{"e.xml", "in.xml"}));
}

TEST_F(Entities, AreNamedWhereADifferenceIsInOne) {
  std::filesystem::create_directory(path("one"));
  std::filesystem::create_directory(path("two"));
  const std::string document = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.xml'>]>\n<a>&e;</a>";
  for (const std::string folder : {"one", "two"}) writeFile(folder + "/in.xml", document);
  writeFile("one/e.xml", "<b/>\n<c/>");
  writeFile("two/e.xml", "<b/>\n<d/>");
  EXPECT_EQ(
      run({"diff", "--entities", "one/in.xml", "two/in.xml"}),
      (Result{1,
              "one/in.xml:2:1 (in the entity \"e.xml\"): startElement(\"\", \"c\", \"c\", [])\n"
              "two/in.xml:2:1 (in the entity \"e.xml\"): startElement(\"\", \"d\", \"d\", [])\n",
              ""}));
  EXPECT_EQ(
      run({"diff", "--entities", "one/in.xml", "-"}, "<a><b/>\n</a>"),
      (Result{1,
              "one/in.xml:2:1 (in the entity \"e.xml\"): startElement(\"\", \"c\", \"c\", [])\n"
              "-:2:1: endElement(\"\", \"a\", \"a\")\n",
              ""}));
}

TEST_F(Entities, AreNamedWhereARefusalIsInOne) {
  writeFile("a.dtd", "");
  writeFile("e.xml", "\n &f;");
  writeFile("in.xml", "<!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY e SYSTEM 'e.xml'>]><a>&e;</a>");
  EXPECT_EQ(
      run({"convert", "--entities", "--to", "XML", "in.xml", "out.xml"}),
      failed(1,
             "in.xml:2:2: entity \"f\" was not read, so the copy would lack it (in the entity "
             "\"e.xml\")"));
  EXPECT_EQ(files(), (Names{"a.dtd", "e.xml", "in.xml"}));
}

// --- That cannot be read ---

TEST_F(Entities, AreRefusedWhereThereIsNoSuchFile) {
  std::filesystem::create_directory(path("folder"));
  const auto document = [](const std::string& identifier) {
    return "<!DOCTYPE a [<!ENTITY e SYSTEM '" + identifier + "'>]><a>&e;</a>";
  };
  const struct {
    std::string identifier;
    std::string message;
  } cases[] = {
      {"missing.xml", "missing.xml: No such file or directory"},
      {"missing/e.xml", "missing/e.xml: No such file or directory"},
      {"folder", "folder: Is a directory"},
      {".", ".: Is a directory"},
      {"", ": No such file or directory"},
      {"http://example.org/e.xml", "external entity \"http://example.org/e.xml\" is not a file"},
      {"urn:e", "external entity \"urn:e\" is not a file"},
      {"file://example.org/e.xml", "external entity \"file://example.org/e.xml\" is not a file"},
      {"a%00b", "external entity \"a%00b\" is not a file"},
  };
  for (const auto& [identifier, message] : cases) {
    SCOPED_TRACE(identifier);
    const Result refused = failed(2, "tavrin: " + message);
    writeFile("in.xml", document(identifier));
    for (const std::string type : {"XML10", "Expat"}) {
      EXPECT_EQ(run({"convert", "--entities", "--from", type, "in.xml", "out.xml"}), refused);
      EXPECT_EQ(run({"check", "--entities", "--from", type, "in.xml"}), refused);
      EXPECT_EQ(run({"diff", "--entities", "--from-a", type, "in.xml", "-"}, "<a/>"), refused);
    }
  }
  EXPECT_EQ(files(), (Names{"folder", "in.xml"}));
}

TEST_F(Entities, AreRefusedWhereReadingFails) {
  // It can be opened, but there is nothing at address 0 to read.
  const std::string document = "<!DOCTYPE a [<!ENTITY e SYSTEM '/proc/self/mem'>]><a>&e;</a>";
  const Result refused = failed(2, "tavrin: /proc/self/mem: Input/output error");
  EXPECT_EQ(run({"check", "--entities", "-"}, document), refused);
  EXPECT_EQ(run({"convert", "--entities", "-", "out.xml"}, document), refused);
  EXPECT_EQ(files(), Names{});
}

TEST_F(Entities, AreRefusedWhereTheyReferToThemselves) {
  writeFile("e.xml", "&e;");
  EXPECT_EQ(
      run({"check", "--entities", "-"}, "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.xml'>]><a>&e;</a>"),
      failed(1, "-:1:1: recursive entity reference (in the entity e, \"e.xml\")"));
}

// --- That are not read ---

TEST_F(Entities, AreKeptAsReferencesInText) {
  for (const std::string document : {
           "<!DOCTYPE d SYSTEM \"d.dtd\"><d>1 &nbsp; 2 &other;</d>",
           "<!DOCTYPE d [  <!ENTITY e PUBLIC \"p\" \"chapter 1.xml\">]><d>&e;</d>",
           "<!DOCTYPE d PUBLIC \"p\" \"d.dtd\" [  <!ENTITY % p SYSTEM "
           "\"p.ent\">%p;%unknown;]><d>&e;</d>",
       }) {
    EXPECT_EQ(text(document), printed(document));
  }
}

TEST_F(Entities, AreNeverReadWithoutTheOption) {
  writeFile("e.xml", "secret");
  writeFile("d.dtd", "<!ENTITY late 'secret'>");
  const std::string external = "<!DOCTYPE d [  <!ENTITY e SYSTEM \"e.xml\">]><d>&e;</d>";
  const std::string late = "<!DOCTYPE d SYSTEM \"d.dtd\"><d>&late;</d>";
  EXPECT_EQ(text(external), printed(external));
  EXPECT_EQ(text(late), printed(late));
  EXPECT_EQ(text(external, kEntities),
            printed("<!DOCTYPE d [  <!ENTITY e SYSTEM \"e.xml\">]><d>secret</d>"));
  EXPECT_EQ(text(late, kEntities), printed("<!DOCTYPE d SYSTEM \"d.dtd\"><d>secret</d>"));
}

// An unexpanded entity reference (X.891, 7.6) with what its declaration says. Its name begins the
// table of other NCNames, its identifiers the table of other URIs.
TEST_F(Entities, AreKeptAsReferencesInFastInfoset) {
  writeFile("in.xml", "<!DOCTYPE a [<!ENTITY e PUBLIC 'p' 's'>]><a>1&e;</a>");
  EXPECT_EQ(run({"convert", "in.xml", "out.fi"}), silent(0));
  EXPECT_EQ(run({"events", "out.fi"}), printed("startDocument()\n"
                                               "startDTD(\"a\", \"\", \"\")\n"
                                               "endDTD()\n"
                                               "startElement(\"\", \"a\", \"a\", [])\n"
                                               "characters(\"1\")\n"
                                               "skippedEntity(\"e\")\n"
                                               "endElement(\"\", \"a\", \"a\")\n"
                                               "endDocument()\n"));
  EXPECT_EQ(run({"diff", "in.xml", "out.fi"}), silent(0));
  // The declaration is lost, unless a declaration that nobody has read may be there.
  EXPECT_EQ(run({"convert", "out.fi", "back.xml"}),
            failed(1, "out.fi: octet " + std::to_string(readFile("out.fi").size() - 1) +
                          ": The entity \"e\" is not declared"));
  writeFile("subset.xml", "<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>");
  EXPECT_EQ(run({"convert", "subset.xml", "subset.fi"}), silent(0));
  EXPECT_EQ(run({"convert", "--no-declaration", "subset.fi"}),
            printed("<!DOCTYPE a SYSTEM \"a.dtd\"><a>&e;</a>"));
  EXPECT_EQ(run({"diff", "subset.xml", "subset.fi"}), silent(0));
  EXPECT_EQ(files(), (Names{"in.xml", "out.fi", "subset.fi", "subset.xml"}));
}

TEST_F(Entities, ThatNothingDeclaresAreRefused) {
  EXPECT_EQ(run({"check", "-"}, "<!DOCTYPE a []><a>&e;</a>"),
            failed(1, "-:1:19: undefined entity"));
  writeFile("a.dtd", "");
  EXPECT_EQ(run({"check", "-"}, "<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>"),
            (Result{0, "-: well-formed\n", ""}));
}

// --- The external subset ---

// Its comments and instructions stay where they are: the copy refers to it.
TEST_F(Entities, ThatAreTheExternalSubsetStayOutsideOfTheCopy) {
  writeFile("a.dtd", "<!--c--><?p d?><!NOTATION n SYSTEM 'n'><!ATTLIST a x CDATA '1'>");
  writeFile("in.xml", "<!DOCTYPE a SYSTEM 'a.dtd' [<?in it?>]><a/>");
  const std::string copy = "<!DOCTYPE a SYSTEM \"a.dtd\" [<?in it?>]><a x='1'/>";
  EXPECT_EQ(run({"convert", "--entities", "--no-declaration", "in.xml"}), printed(copy));
  EXPECT_EQ(run({"convert", "--entities", "--no-declaration", "--to", "XML", "in.xml"}),
            printed(copy));
  EXPECT_EQ(run({"convert", "--entities", "in.xml", "out.fi"}), silent(0));
  EXPECT_EQ(run({"diff", "--entities", "in.xml", "out.fi"}), silent(0));
  EXPECT_EQ(run({"convert", "out.fi", "back.xml"}), silent(0));
  EXPECT_EQ(run({"diff", "--entities", "in.xml", "back.xml"}), silent(0));
}
