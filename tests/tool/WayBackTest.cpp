#include "Workplace.h"

namespace {

/// What is said while a copy in Fast Infoset is made that could not be XML text again.
class WayBack : public Workplace {
 protected:
  /// Makes a copy in Fast Infoset, and one of that in XML text.
  /// @return what the copies say, and the second
  Result thereAndBack(const std::string& document, const ToolProcess::Arguments& options = {}) {
    ToolProcess::Arguments arguments = {"convert", "--force", "-", "copy.fi"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Result there = run(arguments, document);
    EXPECT_EQ(there.status, 0);
    EXPECT_EQ(there.out, "");
    EXPECT_EQ(run({"check", "copy.fi"}), (Result{0, "copy.fi: well-formed\n", ""}));
    Result back = run({"convert", "--no-declaration", "copy.fi"});
    back.err = there.err + back.err;
    return back;
  }
};

std::string warning(int column, const std::string& message) {
  return "-:1:" + std::to_string(column) +
         ": warning: The copy cannot be written as XML text again: " + message + "\n";
}

std::string undeclared(const std::string& name) {
  return "The entity \"" + name + "\" is not declared";
}

Result silentCopy(const std::string& copy) { return {0, copy, ""}; }

}  // namespace

// Declarations behind a parameter entity that is not read do not count (XML 1.0, section 5.1).
TEST_F(WayBack, IsMissedOnceForEachEntityWithoutIdentifiers) {
  EXPECT_EQ(thereAndBack("<!DOCTYPE a [<!ENTITY % p SYSTEM 'p'>%p;<!ENTITY e 'x'>]>"
                         "<a>&e;&f;<b>&e;&f;</b></a>"),
            (Result{1, "",
                    warning(61, undeclared("e")) + warning(64, undeclared("f")) +
                        "copy.fi: octet 13: " + undeclared("e") + "\n"}));
}

TEST_F(WayBack, IsMissedWhereIdentifiersAreEmpty) {
  EXPECT_EQ(
      thereAndBack("<!DOCTYPE a [<!ENTITY e SYSTEM ''>]><a>&e;</a>"),
      (Result{1, "",
              warning(40, undeclared("e")) + "copy.fi: octet 13: " + undeclared("e") + "\n"}));
}

// What declares it in the external subset counts no less for a document that states so.
TEST_F(WayBack, IsMissedWhereNothingOutsideCounts) {
  const std::string document = "<!DOCTYPE a SYSTEM 's' [<!ENTITY e SYSTEM ''>]><a>&e;</a>";
  EXPECT_EQ(thereAndBack(document), silentCopy("<!DOCTYPE a SYSTEM \"s\"><a>&e;</a>"));
  EXPECT_EQ(run({"convert", "-", "alone.fi"}, "<?xml version='1.0' standalone='yes'?>" + document),
            (Result{0, "", warning(89, undeclared("e"))}));
  EXPECT_EQ(run({"convert", "alone.fi"}),
            (Result{1, "", "alone.fi: octet 16: " + undeclared("e") + "\n"}));
}

TEST_F(WayBack, IsMissedWhereTheEntityIsNoneOfText) {
  const std::string message = "You cannot refer to the unparsed entity \"u\"";
  EXPECT_EQ(thereAndBack("<!DOCTYPE a [<!ENTITY % p SYSTEM 'p'>%p;<!NOTATION n SYSTEM 'n'>"
                         "<!ENTITY u SYSTEM 'u' NDATA n>]><a>&u;</a>"),
            (Result{1, "", warning(100, message) + "copy.fi: octet 23: " + message + "\n"}));
}

TEST_F(WayBack, IsMissedWhereAnEntityThatIsReadRefersToAnother) {
  writeFile("e.x", "\n &f;");
  EXPECT_EQ(run({"convert", "--entities", "--to", "X891", "-"},
                "<!DOCTYPE a [<!ENTITY % p SYSTEM 'p'>%p;<!ENTITY e SYSTEM 'e.x'>]><a>&e;</a>")
                .err,
            "-: warning: external entity \"p\" is not read: No such file or directory\n");
  EXPECT_EQ(run({"convert", "--entities", "--to", "X891", "-"},
                "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.x'><!ENTITY f SYSTEM ''>]><a>&e;</a>")
                .err,
            "-: warning: external entity \"\" is not read: it is not a regular file\n"
            "-:2:2: warning: The copy cannot be written as XML text again: " +
                undeclared("f") + " (in the entity \"e.x\")\n");
}

TEST_F(WayBack, IsThereForOtherReferences) {
  EXPECT_EQ(thereAndBack("<!DOCTYPE a [<!ENTITY e PUBLIC 'p' ''><!ENTITY f SYSTEM 'f'>]>"
                         "<a>&e;&f;</a>"),
            silentCopy("<!DOCTYPE a [  <!ENTITY e PUBLIC \"p\" \"\">  <!ENTITY f SYSTEM \"f\">]>"
                       "<a>&e;&f;</a>"));
  EXPECT_EQ(thereAndBack("<?xml version='1.0' standalone='yes'?>"
                         "<!DOCTYPE a SYSTEM 's' [<!ENTITY f SYSTEM 'f'>]><a>&f;</a>"),
            silentCopy("<!DOCTYPE a SYSTEM \"s\" [  <!ENTITY f SYSTEM \"f\">]><a>&f;</a>"));
  EXPECT_EQ(thereAndBack("<!DOCTYPE a SYSTEM 's'><a>&e;</a>"),
            silentCopy("<!DOCTYPE a SYSTEM \"s\"><a>&e;</a>"));
  EXPECT_EQ(thereAndBack("<!DOCTYPE a PUBLIC 'p' ''><a>&e;</a>"),
            silentCopy("<!DOCTYPE a PUBLIC \"p\" \"\"><a>&e;</a>"));
  // Nothing refers to it.
  EXPECT_EQ(thereAndBack("<!DOCTYPE a [<!ENTITY e SYSTEM ''>]><a/>"),
            silentCopy("<!DOCTYPE a><a/>"));
}

// Of what is no text it may be missing from the beginning, and XML text has it in itself.
TEST_F(WayBack, IsNoMatterOfOtherCopies) {
  const std::string document = "<!DOCTYPE a [<!ENTITY % p SYSTEM 'p'>%p;]><a>&e;</a>";
  EXPECT_EQ(run({"convert", "-", "copy.xml"}, document), silent(0));
  EXPECT_EQ(run({"convert", "-", "copy.fi"}, document),
            (Result{0, "", warning(46, undeclared("e"))}));
  EXPECT_EQ(run({"convert", "copy.fi", "again.fi"}), silent(0));
  EXPECT_EQ(readFile("again.fi"), readFile("copy.fi"));
  EXPECT_EQ(run({"stat", "copy.xml"}).err, "");
  EXPECT_EQ(run({"check", "copy.xml"}).err, "");
}
