#include "Workplace.h"

/// The features namespaces and namespace-prefixes, which decide how declarations of namespaces are
/// reported, with each command.

namespace {

class NamespaceFeatures : public Workplace {
 protected:
  NamespaceFeatures() {
    writeFile("in.xml", "<p:l xmlns:p='urn:p' xmlns='urn:d' p:a='1'><c xmlns=''/></p:l>");
  }

  static Result refused(const std::string& who) {
    return {
        2, "",
        "tavrin: " + who + " needs the feature namespaces, and does without namespace-prefixes\n"};
  }
};

}  // namespace

TEST_F(NamespaceFeatures, LeaveACopyWithEachDeclarationOnce) {
  for (const std::string type : {"XML", "XML10", "FI", "X891"}) {
    const auto copy = [&](const ToolProcess::Arguments& features) {
      ToolProcess::Arguments arguments = {"convert", "--to", type, "in.xml"};
      arguments.insert(arguments.end(), features.begin(), features.end());
      return run(arguments);
    };
    const Result usual = copy({});
    EXPECT_EQ(0, usual.status);
    EXPECT_EQ(usual, copy({"--feature", "namespace-prefixes"})) << type;
    EXPECT_EQ(usual, copy({"--feature", "namespace-prefixes", "--feature", "xmlns-uris"})) << type;
    EXPECT_EQ(usual, copy({"--feature", "namespace-prefixes", "--feature", "namespaces"})) << type;
  }
}

TEST_F(NamespaceFeatures, CopyTextWithoutNamespacesToText) {
  writeFile("unbound.xml", "<p:a b:c='1' xmlns:d='urn:d'/>");
  const auto copy = [&](const std::string& type, const std::string& file,
                        const std::string& second) {
    return run({"convert", "--to", type, "--no-declaration", "--feature", "namespaces=off",
                "--feature", second, file});
  };
  for (const std::string second : {"namespace-prefixes", "namespace-prefixes=off"}) {
    EXPECT_EQ((Result{0, "<p:a b:c='1' xmlns:d='urn:d'/>", ""}),
              copy("XML", "unbound.xml", second));
    for (const std::string type : {"XML", "XML10"}) {
      EXPECT_EQ((Result{0, readFile("in.xml"), ""}), copy(type, "in.xml", second)) << type;
    }
  }
}

TEST_F(NamespaceFeatures, AreWhatFastInfosetIsMadeOf) {
  const Result none{2, "", "tavrin: a copy in Fast Infoset needs the feature namespaces\n"};
  EXPECT_EQ(none, run({"convert", "--feature", "namespaces=off", "in.xml", "out.fi"}));
  EXPECT_EQ(none, run({"convert", "--feature", "namespaces=off", "--to", "FI", "in.xml"}));
  EXPECT_EQ((Names{"in.xml"}), files());
}

TEST_F(NamespaceFeatures, AreNotForCommandsThatGoByNames) {
  for (const std::string feature : {"namespace-prefixes", "namespaces=off"}) {
    EXPECT_EQ(refused("vocabulary learn"),
              run({"vocabulary", "learn", "--feature", feature, "-o", "out", "in.xml"}));
    EXPECT_EQ(refused("stat"), run({"stat", "--feature", feature, "in.xml"}));
    EXPECT_EQ(refused("stat"),
              run({"stat", "--html", "out", "--feature", feature, "in.xml", "none"}));
    EXPECT_EQ(refused("get"), run({"get", "--feature", feature, "//c", "in.xml"}));
  }
  // What says what is so anyway is no mistake, and the last one counts.
  EXPECT_EQ((Result{0, "1\n", ""}), run({"get", "--count", "--feature", "namespaces=off",
                                         "--feature", "namespaces", "//c", "in.xml"}));
  EXPECT_EQ(run({"stat", "in.xml"}),
            run({"stat", "--feature", "namespace-prefixes=off", "in.xml"}));
  EXPECT_EQ((Names{"in.xml"}), files());
}
