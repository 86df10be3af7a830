#include "TypedDocuments.h"
#include "Workplace.h"

namespace {

/// Documents that ask much of their reader.
class Limits : public Workplace {
 protected:
  Limits() {
    writeFile("entities.xml", entities());
    writeFile("tables.fi", tables());
  }

  /// An entity of 100 octets, a thousand times.
  static std::string entities() {
    std::string document = "<!DOCTYPE a [<!ENTITY e '" + std::string(100, 'x') + "'>]><a>";
    for (int i = 0; i < 1000; ++i) document += "&e;";
    return document + "</a>";
  }

  /// A text of 200 octets in the table, and a thousand references to it.
  static std::string tables() {
    std::string content = octets("92") + static_cast<char>(200 - 3) + std::string(200, 'x');
    for (int i = 0; i < 1000; ++i) content += octets("A0");
    return octets("E0 00 00 01 00 3C 00 'a'") + content + octets("FF");
  }

  /// Runs every command that reads one document.
  void expectForAll(const ToolProcess::Arguments& options, const std::string& file,
                    const std::string& message) {
    for (const ToolProcess::Arguments& command : std::vector<ToolProcess::Arguments>{
             {"check", file}, {"convert", file, "out.fi"}, {"stat", file}, {"diff", file, file}}) {
      SCOPED_TRACE(command[0]);
      ToolProcess::Arguments arguments = command;
      arguments.insert(arguments.end(), options.begin(), options.end());
      const bool isTwice = command[0] == "diff";
      EXPECT_EQ(run(arguments), (Result{1, "", message + (isTwice ? message : "")}));
    }
    ToolProcess::Arguments arguments = {"events", file};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const Result result = run(arguments);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, message);
    EXPECT_EQ(files(), (Names{"entities.xml", "tables.fi"}));
  }
};

}  // namespace

TEST_F(Limits, AreWideEnoughForTheseDocuments) {
  EXPECT_EQ(run({"check", "entities.xml", "tables.fi"}),
            (Result{0, "entities.xml: well-formed\ntables.fi: well-formed\n", ""}));
}

// What follows the property in the reader's message is not lost.
TEST_F(Limits, AreNamedInEntities) {
  writeFile("e.ent", "<b><c/></b>");
  writeFile("in.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'>]><a>&e;</a>");
  EXPECT_EQ(run({"check", "--entities", "--limit", "maximum-depth=2", "in.xml"}),
            (Result{1, "",
                    "in.xml:1:4: Elements nested deeper than 2 (see --limit maximum-depth) (in the "
                    "entity e, \"e.ent\")\n"}));
}

TEST_F(Limits, AreSetInEveryCommandAndNamedWhereTheyEndTheWork) {
  // The place is where expat's count passes the threshold.
  const Result entities = run({"check", "--limit", "entity-amplification-factor=2", "--limit",
                               "entity-amplification-threshold=1", "entities.xml"});
  EXPECT_EQ(entities.status, 1);
  EXPECT_EQ(entities.err.substr(entities.err.find(": ")),
            ": limit on input amplification factor (from DTD and entities) breached "
            "(see --limit entity-amplification-factor)\n");
  expectForAll(
      {"--limit", "entity-amplification-factor=2", "--limit", "entity-amplification-threshold=1"},
      "entities.xml", entities.err);
  // 211 octets of the document may bring 2110, so at the 11th reference there are 221 and 2200.
  const Result tables = run({"check", "--limit=amplification-factor=10", "--limit",
                             "amplification-threshold=0", "tables.fi"});
  EXPECT_EQ(tables.status, 1);
  EXPECT_EQ(tables.err.substr(tables.err.find(": M")),
            ": More octets delivered for each octet read than the limit allows (see --limit "
            "amplification-factor)\n");
  expectForAll({"--limit", "amplification-factor=10", "--limit", "amplification-threshold=0"},
               "tables.fi", tables.err);
  expectForAll({"--limit", "maximum-literal-octets=199"}, "tables.fi",
               "tables.fi: octet 10: Literal longer than 199 octets (see --limit "
               "maximum-literal-octets)\n");
  expectForAll({"--limit", "maximum-table-octets=700"}, "tables.fi",
               "tables.fi: octet 210: Tables larger than 700 octets (see --limit "
               "maximum-table-octets)\n");
}

TEST_F(Limits, HaveValuesWithUnits) {
  const auto check = [&](const std::string& value) {
    return run({"check", "--limit", "maximum-literal-octets=" + value, "-"},
               octets("E0 00 00 01 00 3C 00 'a' 83 000002FE") + std::string(0x2FE + 259, 'x') +
                   octets("FF"));
  };
  const Result good = {0, "-: well-formed\n", ""};
  const auto refused = [](const std::string& limit) {
    return Result{1, "",
                  "-: octet 13: Literal longer than " + limit +
                      " octets (see --limit maximum-literal-octets)\n"};
  };
  // It has 1025 octets.
  for (const std::string value : {"1025", "2K", "1M", "1G", "1.01K", "none", "20000000000G"}) {
    SCOPED_TRACE(value);
    EXPECT_EQ(check(value), good);
  }
  EXPECT_EQ(check("1024"), refused("1024"));
  EXPECT_EQ(check("1K"), refused("1024"));
  EXPECT_EQ(check("0.5K"), refused("512"));
  // The last one counts.
  EXPECT_EQ(run({"check", "--limit", "maximum-literal-octets=1", "--limit",
                 "maximum-literal-octets=none", "tables.fi"}),
            (Result{0, "tables.fi: well-formed\n", ""}));
}

TEST_F(Limits, AreNoneWhereThatIsAskedFor) {
  // 60 octets that stand for 20,000,000: more than 8 MiB, and more than a thousand times.
  std::string document =
      octets("E0 00 00 01 00 3C 00 'a' 92") + static_cast<char>(200 - 3) + std::string(200, 'x');
  document += std::string(100000, '\xA0') + octets("FF");
  std::string nested = "<!DOCTYPE a [<!ENTITY e0 '" + std::string(100000, 'x') + "'>\n";
  nested += "<!ENTITY e1 '";
  for (int i = 0; i < 150; ++i) nested += "&e0;";
  nested += "'>]><a>&e1;</a>";
  EXPECT_EQ(run({"check", "--limit", "amplification-factor=100", "-"}, document).status, 1);
  EXPECT_EQ(run({"check", "--limit", "amplification-factor=none", "-"}, document),
            (Result{0, "-: well-formed\n", ""}));
  EXPECT_EQ(run({"check", "-"}, nested).status, 1);
  for (const std::string limit :
       {"entity-amplification-factor=none", "entity-amplification-threshold=none"}) {
    EXPECT_EQ(run({"check", "--limit", limit, "-"}, nested), (Result{0, "-: well-formed\n", ""}));
  }
}

TEST_F(Limits, AreLimitsThatThereAre) {
  const auto misused = [&](const std::string& setting) {
    return run({"check", "--limit", setting, "missing.xml"});
  };
  for (const std::string setting : {"bogus=1", "bogus", "=1", ""}) {
    EXPECT_EQ(misused(setting),
              (Result{2, "",
                      "tavrin: --limit " + setting +
                          ": there is no such limit (there are entity-amplification-factor, "
                          "entity-amplification-threshold, maximum-depth, amplification-factor, "
                          "amplification-threshold, maximum-table-octets, maximum-literal-octets, "
                          "maximum-coalesced-octets)\n"}));
  }
  EXPECT_EQ(misused("Maximum-table-octet=1"),
            (Result{2, "",
                    "tavrin: --limit Maximum-table-octet=1: there is no such limit (did you mean "
                    "\"maximum-table-octets\"?)\n"}));
  for (const std::string value : {"", "=", "=x", "=-1", "=1k", "=1KK", "=K", "=1e3", "=0x10",
                                  "=inf", "=nan", "= 1", "=1 ", "=NONE", "=1,5"}) {
    const std::string setting = "maximum-table-octets" + value;
    EXPECT_EQ(
        misused(setting),
        (Result{2, "", "tavrin: --limit " + setting + ": the value is not a number or none\n"}));
  }
  EXPECT_EQ(
      run({"check", "--limit", "amplification-factor=0.5", "tables.fi"}),
      (Result{2, "",
              "tavrin: Property \"http://tavrin/fastinfoset/properties/amplification-factor\" must "
              "be at least 1\n"}));
}

// A reader that was not chosen by name need not have them.
TEST_F(Limits, AreThoseOfAReader) {
  EXPECT_EQ(run({"check", "--limit", "maximum-table-octets=64", "entities.xml"}),
            (Result{0, "entities.xml: well-formed\n", ""}));
  EXPECT_EQ(
      run({"check", "--from", "FI", "--limit", "amplification-factor=9", "tables.fi"}),
      (Result{2, "",
              "tavrin: Property \"http://tavrin/fastinfoset/properties/amplification-factor\" "
              "not recognized\n"}));
}

// A writer leaves out of its tables what has no place there.
TEST_F(Limits, OfTablesCountForTheCopy) {
  const std::string document = "<a>text<b/>text</a>";
  EXPECT_EQ(run({"convert", "--to", "X891", "-"}, document),
            (Result{0, octets("E0 00 00 01 00 3C 00 'a' 92 01 'text' 3C 00 'b' F0 A0 FF"), ""}));
  EXPECT_EQ(run({"convert", "--limit", "maximum-table-octets=0", "--to", "X891", "-"}, document),
            (Result{0, octets("E0 00 00 01 00 3C 00 'a' 82 01 'text' 3C 00 'b' F0 82 01 'text' FF"),
                    ""}));
}
