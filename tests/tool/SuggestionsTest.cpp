#include "Workplace.h"

namespace {

/// What is told of a command line with a slip of the pen.
class Suggestions : public Workplace {
 protected:
  void SetUp() override { writeFile("a.xml", "<a/>"); }
};

Result misuse(const std::string& message) { return {2, "", "tavrin: " + message + "\n"}; }

}  // namespace

TEST_F(Suggestions, AreCommands) {
  const struct {
    const char* word;
    const char* meant;
  } cases[] = {{"conver", "convert"},   {"CONVERT", "convert"}, {"covnert", "convert"},
               {"converts", "convert"}, {"chek", "check"},      {"event", "events"},
               {"dif", "diff"},         {"tsat", "stat"},       {"type", "types"}};
  for (const auto& [word, meant] : cases) {
    EXPECT_EQ(run({word, "a.xml"}),
              misuse("unknown command \"" + std::string(word) + "\" (did you mean \"" + meant +
                     "\"? see tavrin --help)"));
  }
}

TEST_F(Suggestions, AreOnlyMadeWhereTheyAreNear) {
  for (const std::string word : {"x", "a.xml", "frobnicate", "-", "\xFF\xFE"}) {
    SCOPED_TRACE(word);
    const std::string shown = word == "\xFF\xFE" ? "\\xFF\\xFE" : word;
    EXPECT_EQ(run({word}), misuse("unknown command \"" + shown + "\" (see tavrin --help)"));
  }
  // However long a word is, nobody waits for it.
  const std::string longest(100000, 'c');
  EXPECT_EQ(run({longest}), misuse("unknown command \"" + std::string(99, 'c') + "..." +
                                   std::string(97, 'c') + "\" (see tavrin --help)"));
}

TEST_F(Suggestions, AreOptions) {
  EXPECT_EQ(run({"convert", "a.xml", "--froce"}),
            misuse("unknown option \"--froce\" (did you mean \"--force\"? see tavrin convert "
                   "--help)"));
  EXPECT_EQ(run({"convert", "a.xml", "--ident=2"}),
            misuse("unknown option \"--ident=2\" (did you mean \"--indent\"? see tavrin convert "
                   "--help)"));
  EXPECT_EQ(run({"--versoin"}),
            misuse("unknown option \"--versoin\" (did you mean \"--version\"? see tavrin --help)"));
  EXPECT_EQ(run({"check", "a.xml", "--hlep"}),
            misuse("unknown option \"--hlep\" (did you mean \"--help\"? see tavrin check --help)"));
}

TEST_F(Suggestions, AreTypesAndLimits) {
  EXPECT_EQ(run({"check", "--from", "XML01", "a.xml"}),
            misuse("Unknown XML Reader: \"XML01\" (did you mean \"XML10\"? there are Expat, FI, "
                   "X891, XML10)"));
  EXPECT_EQ(run({"convert", "--to", "X981", "a.xml"}),
            misuse("Unknown XML Writer: \"X981\" (did you mean \"X891\"? there are FI, X891, XML, "
                   "XML10)"));
  EXPECT_EQ(run({"check", "--limit", "max-depth=3", "a.xml"}),
            misuse("--limit max-depth=3: there is no such limit (did you mean "
                   "\"maximum-depth\"?)"));
}
