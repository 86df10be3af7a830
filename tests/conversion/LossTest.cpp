#include "Workplace.h"

namespace {

/// What docs/conversion.md says that copies do not keep, with the types that follow the standards.
class Loss : public Workplace {
 protected:
  /// The copy of a document as XML text.
  Result asText(const std::string& document) {
    return run({"convert", "--no-declaration", "-"}, document);
  }
  /// What comes back from Fast Infoset.
  Result fromFastInfoset(const std::string& document) {
    EXPECT_EQ(run({"convert", "--force", "-", "copy.fi"}, document), silent(0));
    return run({"convert", "--no-declaration", "copy.fi"});
  }
  static Result printed(const std::string& copy) { return {0, copy, ""}; }
};

}  // namespace

TEST_F(Loss, IsTheOrderOfNotationsAndInstructionsInFastInfoset) {
  const std::string document =
      "<!DOCTYPE a [<!NOTATION n SYSTEM 'n'><?p q?><!ENTITY u SYSTEM 'u' NDATA n><?r s?>"
      "<!NOTATION m SYSTEM 'm'>]><a/>";
  EXPECT_EQ(asText(document),
            printed("<!DOCTYPE a [  <!NOTATION n SYSTEM \"n\"><?p q?>  <!ENTITY u SYSTEM \"u\" "
                    "NDATA n><?r s?>  <!NOTATION m SYSTEM \"m\">]><a/>"));
  EXPECT_EQ(fromFastInfoset(document),
            printed("<!DOCTYPE a [  <!NOTATION n SYSTEM \"n\">  <!NOTATION m SYSTEM \"m\">  "
                    "<!ENTITY u SYSTEM \"u\" NDATA n><?p q?><?r s?>]><a/>"));
}

TEST_F(Loss, IsWhatDeclarationsReferToInFastInfoset) {
  const std::string document = "<!DOCTYPE a [<!ENTITY % p SYSTEM 'p'>%p;]><a/>";
  EXPECT_EQ(asText(document), printed("<!DOCTYPE a [  <!ENTITY % p SYSTEM \"p\">%p;]><a/>"));
  EXPECT_EQ(fromFastInfoset(document), printed("<!DOCTYPE a><a/>"));
  // Its default is kept where it is read.
  writeFile("p", "<!ATTLIST a x CDATA '1'>");
  EXPECT_EQ(run({"convert", "--entities", "-", "whole.fi"}, document), silent(0));
  EXPECT_EQ(run({"convert", "--no-declaration", "whole.fi"}), printed("<!DOCTYPE a><a x='1'/>"));
}

// A reference has the identifiers of its entity; what nothing refers to is lost.
TEST_F(Loss, IsTheDeclarationWithoutAReferenceInFastInfoset) {
  const std::string declarations = "<!ENTITY f SYSTEM 'f'><!ENTITY e SYSTEM 'e'>]><a>&e;</a>";
  EXPECT_EQ(fromFastInfoset("<!DOCTYPE a SYSTEM 'd' [" + declarations),
            printed("<!DOCTYPE a SYSTEM \"d\" [  <!ENTITY e SYSTEM \"e\">]><a>&e;</a>"));
  EXPECT_EQ(fromFastInfoset("<!DOCTYPE a [" + declarations),
            printed("<!DOCTYPE a [  <!ENTITY e SYSTEM \"e\">]><a>&e;</a>"));
}

TEST_F(Loss, IsTheDeclarationOfAReferenceWithoutIdentifiersInFastInfoset) {
  const std::string message = "The entity \"e\" is not declared\n";
  EXPECT_EQ(
      run({"convert", "-", "copy.fi"}, "<!DOCTYPE a [<!ENTITY e SYSTEM ''>]><a>&e;</a>"),
      (Result{0, "", "-:1:40: warning: The copy cannot be written as XML text again: " + message}));
  EXPECT_EQ(run({"convert", "copy.fi"}), (Result{1, "", "copy.fi: octet 13: " + message}));
}

TEST_F(Loss, IsTheNameOfADocumentTypeInFastInfoset) {
  EXPECT_EQ(fromFastInfoset("<!DOCTYPE b SYSTEM 's'><a/>"),
            printed("<!DOCTYPE a SYSTEM \"s\"><a/>"));
}

TEST_F(Loss, IsWhatChangesNothing) {
  EXPECT_EQ(asText("<!DOCTYPE a [<!ENTITY lt '&#38;#60;'><!ENTITY gt '>'>]><a>&lt;</a>"),
            printed("<!DOCTYPE a><a>&lt;</a>"));
  EXPECT_EQ(asText("<!DOCTYPE a [<!ENTITY e '1'><!ENTITY e '2'>]><a>&e;</a>"),
            printed("<!DOCTYPE a [  <!ENTITY e \"1\">]><a>1</a>"));
  EXPECT_EQ(asText("<!DOCTYPE a [ ]><a/>"), printed("<!DOCTYPE a><a/>"));
}

TEST_F(Loss, IsTheReferenceToAnInternalParameterEntity) {
  EXPECT_EQ(asText("<!DOCTYPE a [<!ENTITY % p '<!ELEMENT a ANY><?q r?>'>%p;]><a/>"),
            printed("<!DOCTYPE a [  <!ENTITY % p \"<!ELEMENT a ANY><?q r?>\">  "
                    "<!ELEMENT a ANY><?q r?>]><a/>"));
}

TEST_F(Loss, IsVersion11InXMLText) {
  EXPECT_EQ(asText("<?xml version='1.1'?><a>\xC2\x85</a>"), printed("<a>\xC2\x85</a>"));
  EXPECT_EQ(fromFastInfoset("<?xml version='1.1'?><a/>"), printed("<a/>"));
  EXPECT_EQ(asText("<?xml version='1.1'?><a>&#1;</a>").status, 1);
}

// Text keeps them.
TEST_F(Loss, IsCarriageReturnsInCommentsAndInstructions) {
  EXPECT_EQ(fromFastInfoset("<!DOCTYPE a [<!ENTITY e '<!--&#13;--><?p q&#13;?>&#13;'>]><a>&e;</a>"),
            printed("<!DOCTYPE a><a><!--\n--><?p q\n?>&#xD;</a>"));
}
