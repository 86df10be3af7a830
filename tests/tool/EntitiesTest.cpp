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
        "//localhost" + directory_ + "/a%20folder/100%25%20%C3%A4.xml",
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
  const std::string message =
      "in.xml:1:4: asynchronous entity: <b> of line 1 is not closed (in the entity e, \"e.xml\")";
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

// As without the option: the reference is kept, and nothing more need be said.
TEST_F(Entities, ArePassedOverWhereTheyAreNotFiles) {
  for (const std::string identifier :
       {"http://www.w3.org/TR/xhtml1/DTD/xhtml1-strict.dtd", "urn:e", "file://example.org/e.xml",
        "//example.org/e.xml", "a%00b", "HTTP:e"}) {
    SCOPED_TRACE(identifier);
    const std::string subset = "<!DOCTYPE a SYSTEM \"" + identifier + "\"><a>&e;</a>";
    const std::string entity =
        "<!DOCTYPE a [  <!ENTITY e SYSTEM \"" + identifier + "\">]><a>&e;</a>";
    for (const std::string option : {"--entities", "--entities=any"}) {
      EXPECT_EQ(text(subset, {option}), printed(subset));
      EXPECT_EQ(text(entity, {option}), printed(entity));
      EXPECT_EQ(run({"check", option, "-"}, subset), printed("-: well-formed\n"));
      writeFile("in.xml", subset);
      EXPECT_EQ(run({"diff", option, "in.xml", "-"}, subset), silent(0));
    }
  }
}

TEST_F(Entities, ArePassedOverWithAWarningWhereThereIsNoRegularFile) {
  std::filesystem::create_directory(path("folder"));
  writeFile("file", "");
  require(mkfifo(path("pipe").c_str(), 0666), "mkfifo");
  const struct {
    const char* identifier;
    const char* reason;
  } cases[] = {
      {"missing.dtd", "No such file or directory"},
      {"missing/a.dtd", "No such file or directory"},
      {"file/a.dtd", "Not a directory"},
      {"folder", "it is not a regular file"},
      {"folder/", "it is not a regular file"},
      {".", "it is not a regular file"},
      {"", "it is not a regular file"},
      {"pipe", "it is not a regular file"},
  };
  const Names before = files();
  for (const auto& [identifier, reason] : cases) {
    SCOPED_TRACE(identifier);
    const std::string id = identifier;
    const std::string warning =
        "-: warning: external entity \"" + id + "\" is not read: " + reason + "\n";
    // Twice the same: one warning is enough.
    const std::string entity = "<!DOCTYPE a [  <!ENTITY e SYSTEM \"" + id + "\">]><a>&e;&e;</a>";
    for (const std::string option : {"--entities", "--entities=any"}) {
      EXPECT_EQ(text(entity, {option}), (Result{0, entity, warning}));
      EXPECT_EQ(run({"check", option, "-"}, entity), (Result{0, "-: well-formed\n", warning}));
      EXPECT_EQ(run({"convert", option, "--from", "Expat", "-", "out.xml"}, entity),
                (Result{1, "",
                        warning + "-:1:" + std::to_string(entity.find("&e;") + 1) +
                            ": external entity \"" + id +
                            "\" was not read, so the copy would lack it\n"}));
    }
    if (id.empty()) continue;  // Then there is no identifier.
    const std::string subset = "<!DOCTYPE a SYSTEM \"" + id + "\"><a>&late;</a>";
    EXPECT_EQ(text(subset, kEntities), (Result{0, subset, warning}));
  }
  EXPECT_EQ(files(), before);
}

// A device: not even one that has no end.
TEST_F(Entities, AreNeverDevices) {
  for (const std::string device : {"/dev/zero", "/dev/null", "/dev/stdin", "/dev/tty"}) {
    SCOPED_TRACE(device);
    const std::string entity = "<!DOCTYPE a [  <!ENTITY e SYSTEM \"" + device + "\">]><a>&e;</a>";
    const Result result = text(entity, {"--entities=any"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, entity);
    EXPECT_EQ(result.err.substr(0, 10), "-: warning");
  }
}

TEST_F(Entities, AreRefusedWhereReadingFails) {
  // It can be opened, but there is nothing at address 0 to read.
  const std::string document = "<!DOCTYPE a [<!ENTITY e SYSTEM '/proc/self/mem'>]><a>&e;</a>";
  const Result refused = failed(2, "tavrin: /proc/self/mem: Input/output error");
  for (const std::string command : {"check", "stat"}) {
    EXPECT_EQ(run({command, "--entities=any", "-"}, document), refused);
  }
  EXPECT_EQ(run({"events", "--entities=any", "-"}, document).err, refused.err);
  EXPECT_EQ(run({"convert", "--entities=any", "-", "out.xml"}, document), refused);
  EXPECT_EQ(files(), Names{});
}

// --- The folder of the document ---

TEST_F(Entities, AreInTheFolderOfTheDocumentUnlessOthersAreAllowed) {
  std::filesystem::create_directories(path("doc/sub"));
  writeFile("secret", "secret");
  writeFile("document", "beside");
  writeFile("doc/inside", "inside");
  std::filesystem::create_symlink("../secret", path("doc/link"));
  std::filesystem::create_symlink("..", path("doc/up"));
  std::filesystem::create_symlink("inside", path("doc/good"));
  std::filesystem::create_symlink("doc", path("alias"));
  const auto document = [](const std::string& identifier) {
    return "<!DOCTYPE a [  <!ENTITY e SYSTEM \"" + identifier + "\">]><a>&e;</a>";
  };
  const auto replaced = [&](const std::string& identifier, const std::string& text) {
    std::string copy = document(identifier);
    return copy.replace(copy.find("&e;"), 3, text);
  };
  const auto convert = [&](const std::string& option, const std::string& name) {
    return run({"convert", option, "--no-declaration", name});
  };
  for (const std::string& identifier :
       {std::string("../secret"), std::string("sub/../../secret"), std::string("link"),
        std::string("up/secret"), "file://" + directory_ + "/secret", directory_ + "/secret",
        directory_ + "/doc/../secret", std::string("%2e%2e/secret")}) {
    SCOPED_TRACE(identifier);
    writeFile("doc/in.xml", document(identifier));
    EXPECT_EQ(convert("--entities", "doc/in.xml"),
              (Result{0, document(identifier),
                      "doc/in.xml: warning: external entity \"" + identifier +
                          "\" is not read: it is outside of the folder of the document (see "
                          "--entities=any)\n"}));
    EXPECT_EQ(convert("--entities=any", "doc/in.xml"), printed(replaced(identifier, "secret")));
  }
  // A folder whose name only begins the same.
  writeFile("doc/in.xml", document("../document"));
  EXPECT_EQ(convert("--entities", "doc/in.xml").out, document("../document"));
  // The document's folder may be reached over a link, and so may what is in it.
  for (const std::string& identifier :
       {std::string("inside"), std::string("good"), std::string("sub/../inside"),
        directory_ + "/doc/inside", directory_ + "/alias/inside", std::string("up/doc/inside")}) {
    SCOPED_TRACE(identifier);
    writeFile("doc/in.xml", document(identifier));
    for (const std::string name : {"doc/in.xml", "alias/in.xml", "./doc/sub/../in.xml"}) {
      for (const std::string option : {"--entities", "--entities=folder", "--entities=any"}) {
        EXPECT_EQ(convert(option, name), printed(replaced(identifier, "inside")));
      }
    }
  }
}

TEST_F(Entities, AreNotReadByAnyCommandOutsideOfTheFolder) {
  std::filesystem::create_directory(path("doc"));
  writeFile("secret", "<b>");  // It would break the document.
  writeFile("doc/in.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM '../secret'>]><a>&e;</a>");
  const std::string warning =
      "doc/in.xml: warning: external entity \"../secret\" is not read: it is outside of the folder "
      "of the document (see --entities=any)\n";
  for (const ToolProcess::Arguments& command :
       std::vector<ToolProcess::Arguments>{{"check", "doc/in.xml"},
                                           {"convert", "doc/in.xml"},
                                           {"events", "doc/in.xml"},
                                           {"stat", "doc/in.xml"},
                                           {"diff", "doc/in.xml", "doc/in.xml"}}) {
    SCOPED_TRACE(command[0]);
    ToolProcess::Arguments arguments = command;
    arguments.push_back("--entities");
    const Result result = run(arguments);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, command[0] == "diff" ? warning + warning : warning);
    arguments.back() = "--entities=any";
    EXPECT_EQ(run(arguments).status, 1);
  }
}

// --- Events and counts ---

TEST_F(Entities, ShowInEventsWhereTheyAreRead) {
  writeFile("e.xml", "<b/>");
  writeFile("a.dtd", "<!--c--><!ENTITY e SYSTEM 'e.xml'>");
  const std::string document = "<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>";
  EXPECT_EQ(run({"events", "--entities", "-"}, document),
            printed("startDocument()\n"
                    "startDTD(\"a\", \"\", \"a.dtd\")\n"
                    "resolveEntity(\"\", \"a.dtd\")\n"
                    "startEntity(\"[dtd]\")\n"
                    "comment(\"c\")\n"
                    "endEntity(\"[dtd]\")\n"
                    "endDTD()\n"
                    "startElement(\"\", \"a\", \"a\", [])\n"
                    "resolveEntity(\"\", \"e.xml\")\n"
                    "startEntity(\"e\")\n"
                    "startElement(\"\", \"b\", \"b\", [])\n"
                    "endElement(\"\", \"b\", \"b\")\n"
                    "endEntity(\"e\")\n"
                    "endElement(\"\", \"a\", \"a\")\n"
                    "endDocument()\n"));
}

TEST_F(Entities, CountWhereTheyAreRead) {
  writeFile("e.xml", "<b/>text<!--in-->");
  writeFile("a.dtd", "<!--c--><?p d?><!ENTITY e SYSTEM 'e.xml'>");
  const std::string document = "<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;&e;</a>";
  const auto lines = [](int elements, int names, int text, int comments, int depth, int size) {
    return "-\n  octets                   40\n  elements                 " +
           std::to_string(elements) +
           "\n  attributes               0\n  distinct names           " + std::to_string(names) +
           "\n  text octets              " + std::to_string(text) +
           "\n  attribute value octets   0\n  comments                 " +
           std::to_string(comments) +
           "\n  processing instructions  0\n  depth                    " + std::to_string(depth) +
           "\n  typed values             0\n  typed items              0\n  as Fast Infoset        "
           "  " +
           std::to_string(size) + "\n";
  };
  // Header 5, document type 8, a 3; reference 3 (an index the second time: 2), two ends 1.
  EXPECT_EQ(run({"stat", "-"}, document), printed(lines(1, 1, 0, 0, 1, 5 + 8 + 3 + 3 + 2 + 1)));
  // b 4, then 1 and an end in an octet of its own; text 6, then 1; comment 4, then 2.
  EXPECT_EQ(run({"stat", "--entities", "-"}, document),
            printed(lines(3, 2, 8, 2, 2, 5 + 8 + 3 + 4 + 6 + 4 + 2 + 1 + 2 + 1)));
}

// What the copy refuses is counted all the same.
TEST_F(Entities, CountBehindARefusal) {
  writeFile("e.xml", "<b/>");
  writeFile("in.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.xml'>]><a>&e;<b>&e;</b></a>");
  const Result result = run({"stat", "--entities", "in.xml"});
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.out.find("  elements                 4\n"), std::string::npos) << result.out;
}

TEST_F(Entities, AreRefusedWhereTheyReferToThemselves) {
  writeFile("e.xml", "&e;");
  EXPECT_EQ(
      run({"check", "--entities", "-"}, "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.xml'>]><a>&e;</a>"),
      failed(1, "-:1:1: recursive entity reference: \"e\" (in the entity e, \"e.xml\")"));
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
  EXPECT_EQ(run({"convert", "--no-declaration", "out.fi"}),
            printed("<!DOCTYPE a [  <!ENTITY e PUBLIC \"p\" \"s\">]><a>1&e;</a>"));
  writeFile("subset.xml", "<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>");
  EXPECT_EQ(run({"convert", "subset.xml", "subset.fi"}), silent(0));
  EXPECT_EQ(run({"convert", "--no-declaration", "subset.fi"}),
            printed("<!DOCTYPE a SYSTEM \"a.dtd\"><a>&e;</a>"));
  EXPECT_EQ(run({"diff", "subset.xml", "subset.fi"}), silent(0));
  EXPECT_EQ(files(), (Names{"in.xml", "out.fi", "subset.fi", "subset.xml"}));
}

TEST_F(Entities, ThatNothingDeclaresAreRefused) {
  EXPECT_EQ(run({"check", "-"}, "<!DOCTYPE a []><a>&e;</a>"),
            failed(1, "-:1:19: undefined entity: \"e\""));
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
