#include "HexOctets.h"
#include "Workplace.h"

namespace {

/// Documents that Debian's packages install, to and fro: XML text, Fast Infoset, XML text.
class FastInfosetDocument : public Workplace {
 protected:
  /// A file of the package cmake-data, in whose paths the version stands.
  static std::string cmakeFile(const std::string& name) {
    for (const auto& entry : std::filesystem::directory_iterator("/usr/share")) {
      const std::string directory = entry.path().filename();
      const std::string path = entry.path().string() + "/" + name;
      if (directory.starts_with("cmake") && std::filesystem::exists(path)) return path;
    }
    throw std::runtime_error(name + " is missing: install Debian's package cmake-data");
  }

  void expectSameThereAndBack(const std::string& document) {
    SCOPED_TRACE(document);
    EXPECT_EQ(run({"convert", "--force", document, "copy.fi"}), silent(0));
    EXPECT_EQ(readFile("copy.fi").substr(0, 5), octets("E0 00 00 01 00"));
    EXPECT_EQ(run({"convert", "--force", "copy.fi", "copy.xml"}), silent(0));
    EXPECT_EQ(run({"diff", document, "copy.fi"}), silent(0));
    EXPECT_EQ(run({"diff", "copy.fi", "copy.xml"}), silent(0));
    EXPECT_EQ(run({"diff", document, "copy.xml"}), silent(0));
    // Going on changes nothing any more.
    EXPECT_EQ(run({"convert", "--force", "copy.xml", "again.fi"}), silent(0));
    EXPECT_TRUE(readFile("again.fi") == readFile("copy.fi")) << "the second copy differs";
  }

  std::uintmax_t sizeOf(const std::string& name) const {
    return std::filesystem::file_size(name.starts_with('/') ? name : path(name));
  }
};

}  // namespace

// The properties that a development environment shows: attributes, a namespace for each of several
// prefixes.
TEST_F(FastInfosetDocument, MayBeARuleFile) {
  const std::string document = cmakeFile("Templates/MSBuild/nasm.xml");
  expectSameThereAndBack(document);
  EXPECT_LT(sizeOf("copy.fi"), sizeOf(document));
}

// A property list: little but text, and a document type with an external subset.
TEST_F(FastInfosetDocument, MayBeAPropertyList) {
  const std::string document = cmakeFile("Modules/MacOSXBundleInfo.plist.in");
  expectSameThereAndBack(document);
  EXPECT_LT(sizeOf("copy.fi"), sizeOf(document));
  // That its external subset was not read is said of text only.
  const Result lexical = run({"diff", "--lexical", document, "copy.fi"});
  EXPECT_EQ(lexical.status, 1);
  EXPECT_EQ(lexical.err, "");
  EXPECT_EQ(lexical.out.substr(0, lexical.out.find('\n')),
            document + ":2:111: skippedEntity(\"[dtd]\")");
  EXPECT_EQ(lexical.out.substr(lexical.out.rfind(": ")), ": endDTD()\n");
}

// Project files: many names, conditions full of markup characters, few texts.
TEST_F(FastInfosetDocument, MayBeAProjectFile) {
  for (const std::string name :
       {"Templates/MSBuild/nasm.targets", "Modules/CompilerId/VS-Intel.vfproj.in",
        "Modules/CompilerId/VS-NsightTegra.vcxproj.in", "Modules/CompilerId/VS-10.csproj.in"}) {
    expectSameThereAndBack(cmakeFile(name));
  }
}

// What the types "FI" lose: the keyboard registry by its many short texts, the policy by its
// attributes xml:lang.
TEST_F(FastInfosetDocument, MayBeWhatTheTypesFILose) {
  for (const std::string document :
       {"/usr/share/X11/xkb/rules/evdev.xml", "/usr/share/X11/xkb/rules/base.xml",
        "/usr/share/X11/xkb/rules/evdev.extras.xml",
        "/usr/share/polkit-1/actions/org.dpkg.pkexec.update-alternatives.policy"}) {
    ASSERT_TRUE(std::filesystem::exists(document))
        << document << " is missing: install Debian's packages xkb-data and dpkg";
    expectSameThereAndBack(document);
    EXPECT_LT(sizeOf("copy.fi"), sizeOf(document));
  }
}

// The MIME types: two megabytes in many languages, with declarations and defaults.
TEST_F(FastInfosetDocument, MayBeTheMIMETypes) {
  const std::string document = "/usr/share/mime/packages/freedesktop.org.xml";
  if (!std::filesystem::exists(document)) GTEST_SKIP() << document << " is not installed.";
  EXPECT_EQ(run({"convert", document, "copy.fi"}), silent(0));
  EXPECT_EQ(run({"diff", document, "copy.fi"}), silent(0));
  EXPECT_EQ(run({"convert", "copy.fi", "copy.xml"}), silent(0));
  EXPECT_EQ(run({"diff", document, "copy.xml"}), silent(0));
  EXPECT_EQ(run({"convert", document, "text.xml"}), silent(0));
  EXPECT_EQ(run({"diff", "--lexical", document, "text.xml"}), silent(0));
  EXPECT_LT(sizeOf("copy.fi"), sizeOf(document));
}

// Carriage returns that stand in it as references. The writer "XML" writes them as they are, so
// reading the copy makes line feeds of them.
TEST_F(FastInfosetDocument, LosesCarriageReturnsWithTheWriterXMLOnly) {
  const std::string document = cmakeFile("Templates/MSBuild/CustomBuildDepFile.targets");
  expectSameThereAndBack(document);
  EXPECT_EQ(run({"convert", "--force", "--to", "XML", "copy.fi", "copy.xml"}), silent(0));
  const Result result = run({"diff", "copy.fi", "copy.xml"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "");
  EXPECT_NE(result.out.find(": characters(\"^%(CustomBuild.Identity)\\r\\n\")\n"),
            std::string::npos);
  EXPECT_NE(result.out.find(": characters(\"^%(CustomBuild.Identity)\\n\")\n"), std::string::npos);
}
