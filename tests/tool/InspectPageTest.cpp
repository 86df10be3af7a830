// The page about inspect and assemble says what the tool does.
#include <cstdio>

#include "Workplace.h"

namespace {

class InspectPage : public Workplace {
 protected:
  /// The blocks of a terminal in the page, one after the other.
  static std::string terminal() {
    std::ifstream stream(TAVRIN_DOCS "/tool/inspect.md");
    std::string text;
    bool isInside = false;
    for (std::string line; std::getline(stream, line);) {
      if (line == "```") isInside = false;
      if (isInside) text += line + "\n";
      if (line == "```console") isInside = true;
    }
    return text;
  }

  /// What a shell prints, in the directory of the test.
  std::string shell(const std::string& command) const {
    const std::string line =
        "cd '" + directory_ + "' && PATH=\"$PWD:$PATH\" && { " + command + "\n} 2>&1";
    FILE* const pipe = popen(line.c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("no shell");
    std::string printed;
    for (int c = 0; (c = std::fgetc(pipe)) != EOF;) printed += static_cast<char>(c);
    pclose(pipe);
    return printed;
  }
};

}  // namespace

TEST_F(InspectPage, ShowsWhatIsPrinted) {
  std::filesystem::create_symlink(TAVRIN_TOOL, path("tavrin"));
  writeFile("order.xml",
            "<order id=\"A-17\"><item n=\"2\">tea</item><item n=\"2\">milk</item></order>\n");
  const std::string text = terminal();
  std::string printed;
  std::size_t commands = 0;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = text.find('\n', begin);
    const std::string line = text.substr(begin, end - begin);
    begin = end + 1;
    if (!line.starts_with("$ ")) continue;
    ++commands;
    std::string output = shell(line.substr(2));
    if (!output.empty() && !output.ends_with('\n')) output += '\n';
    printed += line + "\n" + output;
  }
  EXPECT_EQ(commands, 10U);
  EXPECT_EQ(printed, text);
}
