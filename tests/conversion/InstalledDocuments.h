#pragma once

#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "Workplace.h"

/// Documents to try things on: those of the machine, or all below the folder that TAVRIN_CORPUS
/// names; and what other programs make of them.
class InstalledDocuments : public Workplace {
 protected:
  /// No more than so many, of all folders alike.
  std::vector<std::string> documents(int most) const {
    const char* own = std::getenv("TAVRIN_CORPUS");
    const std::string folders =
        own ? "1000000 '" + std::string(own) + "'" : std::to_string(most) + " /usr/share /etc";
    shell("bash \"$(dirname '" TAVRIN_CORPUS_SCRIPT "')/../support/list-documents.sh\" " + folders +
          " >list");
    std::vector<std::string> names;
    std::istringstream list(readFile("list"));
    for (std::string name; std::getline(list, name, '\0');) names.push_back(name);
    return names;
  }

  /// Runs a command where the tool runs, and returns its status.
  int shell(const std::string& command) const {
    return std::system(("cd '" + directory_ + "' && " + command).c_str());
  }

  static bool isInstalled(const std::string& program) {
    return std::system(("command -v " + program + " >/dev/null").c_str()) == 0;
  }
};
