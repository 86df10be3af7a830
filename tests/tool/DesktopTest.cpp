#include <array>
#include <cstdio>
#include <sstream>

#include "Workplace.h"

// What the tool prints for shells and for man, in the programs that read it.

namespace {

class Desktop : public Workplace {
 protected:
  /// What a command of the shell prints, and that it succeeds.
  static std::string shell(const std::string& command) {
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("cannot run " + command);
    std::string out;
    std::array<char, 4096> buffer{};
    while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), pipe)) {
      out.append(buffer.data(), count);
    }
    EXPECT_EQ(0, pclose(pipe)) << command << '\n' << out;
    return out;
  }
  static bool isInstalled(const std::string& program) {
    return system(("command -v " + program + " >/dev/null").c_str()) == 0;
  }

  /// The first words of the rows below the headings of a help text that begin so.
  static Names rowsOf(const std::string& help, const std::string& heading) {
    Names rows;
    bool isBelow = false;
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);) {
      if (line.empty()) isBelow = false;
      if (line.starts_with(heading) && line.ends_with(':')) isBelow = true;
      if (isBelow && line.starts_with("  ") && line[2] != ' ') {
        rows.push_back(line.substr(2, line.find_first_of(" =[", 2) - 2));
      }
    }
    return rows;
  }
  static Names sorted(const std::string& words) {
    std::istringstream in(words);
    Names result(std::istream_iterator<std::string>(in), {});
    std::ranges::sort(result);
    result.erase(std::unique(result.begin(), result.end()), result.end());
    return result;
  }
  Names commands() const { return rowsOf(run({"--help"}).out, "Commands"); }
  std::string completion(const std::string& name) const {
    const Result result = run({"completion", name});
    EXPECT_EQ(0, result.status);
    EXPECT_EQ("", result.err);
    return result.out;
  }

  /// What bash offers behind words of a command line, the last of which is being typed.
  std::string bashOffers(const std::string& words) const {
    return shell("cd " + path("") + " && bash -c '. ./bash; COMP_WORDS=(tavrin " + words +
                 "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _tavrin; echo \"${COMPREPLY[@]}\"'");
  }
};

TEST_F(Desktop, BashCompletesCommandsOptionsAndValues) {
  writeFile("bash", completion("bash"));
  writeFile("in.xml", "<a/>");
  Names all = commands();
  all.insert(all.end(), {"--help", "--version"});
  std::ranges::sort(all);
  EXPECT_EQ(all, sorted(bashOffers("\"\"")));
  EXPECT_EQ("check\n", bashOffers("che"));
  EXPECT_EQ("bash zsh fish\n", bashOffers("completion \"\""));
  EXPECT_EQ("X891 XML XML10\n", bashOffers("convert --to X"));
  EXPECT_EQ("maximum-depth\n", bashOffers("check --limit maximum-d"));
  EXPECT_EQ("in.xml\n", bashOffers("check in"));
}

TEST_F(Desktop, BashKnowsEveryOptionThatHelpTellsOf) {
  writeFile("bash", completion("bash"));
  for (const std::string& command : commands()) {
    const std::string offered = " " + bashOffers(command + " --");
    for (const std::string& row : rowsOf(run({command, "--help"}).out, "Options")) {
      if (!row.starts_with("--")) continue;
      EXPECT_NE(std::string::npos,
                (offered.substr(0, offered.size() - 1) + " ").find(" " + row + " "))
          << command << ' ' << row;
    }
  }
}

TEST_F(Desktop, ZshTakesItsCompletion) {
  if (!isInstalled("zsh")) GTEST_SKIP() << "zsh is not installed";
  writeFile("_tavrin", completion("zsh"));
  EXPECT_EQ("", shell("zsh -n " + path("_tavrin")));
  // Loaded as zsh does it, with its functions for completion in place of a user's keys.
  EXPECT_EQ("_tavrin\n", shell("cd " + path("") +
                               " && zsh -f -c 'fpath=($PWD $fpath); autoload -U compinit; "
                               "compinit -D -u; echo $_comps[tavrin]'"));
}

TEST_F(Desktop, FishCompletes) {
  if (!isInstalled("fish")) GTEST_SKIP() << "fish is not installed";
  writeFile("fish", completion("fish"));
  const auto offers = [this](const std::string& line) {
    return shell("HOME=" + path("") + " fish --no-config -c 'source " + path("fish") +
                 "; complete -C \"" + line + "\" | string split -f 1 \\t'");
  };
  Names all = commands();
  std::ranges::sort(all);
  EXPECT_EQ(all, sorted(offers("tavrin ")));
  EXPECT_EQ("FI\nX891\nXML\nXML10\n", offers("tavrin convert --to "));
  EXPECT_EQ("--version\n", offers("tavrin --v"));
}

TEST_F(Desktop, CompletionIsForThreeShells) {
  EXPECT_EQ(
      (Result{2, "",
              "tavrin: SHELL: \"csh\" is not bash, zsh or fish (see tavrin completion --help)\n"}),
      run({"completion", "csh"}));
}

TEST_F(Desktop, ManualPageHasAllCommandsAndOptions) {
  const Result result = run({"manual"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("", result.err);
  const std::string& page = result.out;
  EXPECT_TRUE(
      page.starts_with(".\\\" Made of the texts that --help prints.\n"
                       ".TH TAVRIN 1 \"\" \"tavrin "));
  for (const std::string& command : commands()) {
    std::string upper = command;
    for (char& c : upper) c = static_cast<char>(toupper(c));
    EXPECT_NE(std::string::npos, page.find("\n.SH \"TAVRIN " + upper + "\"\n")) << command;
    for (std::string row : rowsOf(run({command, "--help"}).out, "Options")) {
      for (std::size_t dash = 0; (dash = row.find('-', dash)) != row.npos; dash += 2) {
        row.insert(dash, 1, '\\');
      }
      EXPECT_NE(std::string::npos, page.find("\n.B " + row)) << command << ' ' << row;
    }
  }
}

TEST_F(Desktop, ManualPageIsWellFormed) {
  writeFile("tavrin.1", run({"manual"}).out);
  if (isInstalled("mandoc")) {
    // A page without a date is the same whenever it is made.
    EXPECT_EQ("", shell("mandoc -T lint -W warning " + path("tavrin.1") +
                        " | grep -v 'missing date' || true"));
  }
  if (isInstalled("man")) {
    EXPECT_EQ("", shell("man --warnings --local-file " + path("tavrin.1") + " 2>&1 >/dev/null"));
  }
  if (!isInstalled("mandoc") && !isInstalled("man")) GTEST_SKIP() << "no program reads manuals";
}

/// Documents of Fast Infoset as they begin, and what is none.
struct Sample {
  const char* name;
  std::string octets;
  bool isFastInfoset;
};

const std::array<Sample, 5> kSamples = {{
    {"plain", std::string("\xE0\0\0\1\0\xC0\x40\x61\xF0", 9), true},
    {"declared", std::string("<?xml version='1.0' encoding='finf'?>\xE0\0\0\1", 41), true},
    {"standalone", "<?xml version='1.1' encoding='finf' standalone='yes'?>\xE0", true},
    {"text", "<?xml version='1.0' encoding='utf-8'?><a>encoding='finf'</a>", false},
    {"other", std::string("\xE0\0\0\2\0", 5), false},
}};

TEST_F(Desktop, FileTellsFastInfoset) {
  if (!isInstalled("file")) GTEST_SKIP() << "file is not installed";
  for (const Sample& sample : kSamples) {
    writeFile(sample.name, sample.octets);
    const std::string type = shell(
        "file --brief --mime-type --magic-file " TAVRIN_DESKTOP "/magic " + path(sample.name));
    EXPECT_EQ(sample.isFastInfoset, type == "application/fastinfoset\n") << sample.name << type;
  }
}

TEST_F(Desktop, DesktopsTellFastInfoset) {
  if (!isInstalled("update-mime-database") || !isInstalled("gio")) {
    GTEST_SKIP() << "shared-mime-info or gio is not installed";
  }
  std::filesystem::create_directories(path("share/mime/packages"));
  std::filesystem::copy(TAVRIN_DESKTOP "/tavrin-mime.xml", path("share/mime/packages"));
  std::filesystem::copy("/usr/share/mime/packages/freedesktop.org.xml",
                        path("share/mime/packages"));
  shell("update-mime-database " + path("share/mime"));
  const auto typeOf = [this](const std::string& name) {
    return shell("XDG_DATA_DIRS=" + path("share") + " XDG_DATA_HOME=" + path("none") +
                 " gio info --attributes standard::content-type " + path(name));
  };
  for (const Sample& sample : kSamples) {
    writeFile(sample.name, sample.octets);
    EXPECT_EQ(sample.isFastInfoset,
              typeOf(sample.name).find("standard::content-type: application/fastinfoset\n") !=
                  std::string::npos)
        << sample.name << typeOf(sample.name);
  }
  writeFile("model.x3db", kSamples[0].octets);
  EXPECT_NE(std::string::npos,
            typeOf("model.x3db").find("standard::content-type: model/x3d+fastinfoset\n"));
}

}  // namespace
