#include <cstdint>

#include "Workplace.h"

namespace {

constexpr char kURI[] = "urn:vocabulary:1";
constexpr std::uintmax_t kLargest = 1000000;

/// Documents that Debian's packages xkb-data and shared-mime-info install.
std::vector<std::string> documents() {
  std::vector<std::string> paths;
  for (const char* folder : {"/usr/share/X11/xkb/rules", "/usr/share/mime/packages"}) {
    if (!std::filesystem::exists(folder)) continue;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      if (entry.path().extension() != ".xml" || entry.file_size() > kLargest) continue;
      paths.push_back(entry.path());
    }
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

/// The first number of a line of a report.
std::uintmax_t figureOf(const std::string& report, const std::string& label) {
  const std::size_t begin = report.find("\n" + label);
  if (begin == std::string::npos) throw std::runtime_error("no " + label);
  return std::stoull(report.substr(begin + 1 + label.size()));
}

class VocabularyCorpus : public Workplace {
 protected:
  void SetUp() override {
    documents_ = documents();
    ASSERT_GE(documents_.size(), 2U) << "install Debian's package xkb-data";
  }

  /// Learns of all documents. Returns the report.
  std::string learn(ToolProcess::Arguments options) const {
    ToolProcess::Arguments arguments = {"vocabulary", "learn", "-o", "v.fi"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.insert(arguments.end(), documents_.begin(), documents_.end());
    const Result result = run(arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    return result.out;
  }

  /// Copies a document, compares the copies, and returns their octets.
  std::uintmax_t copy(const std::string& document, const ToolProcess::Arguments& vocabulary,
                      bool isNeeded) const {
    const auto with = [](ToolProcess::Arguments arguments, const ToolProcess::Arguments& more) {
      arguments.insert(arguments.end(), more.begin(), more.end());
      return arguments;
    };
    const ToolProcess::Arguments reading = isNeeded ? vocabulary : ToolProcess::Arguments();
    EXPECT_EQ(run(with({"convert", "--force", document, "copy.fi"}, vocabulary)).status, 0);
    EXPECT_EQ(run(with({"diff", document, "copy.fi"}, reading)), silent(0));
    // The copy of the copy is the same octets.
    EXPECT_EQ(run(with({"convert", "--force", "copy.fi", "again.fi"}, vocabulary)).status, 0);
    EXPECT_TRUE(readFile("again.fi") == readFile("copy.fi"));
    return std::filesystem::file_size(path("copy.fi"));
  }

  std::vector<std::string> documents_;
};

}  // namespace

TEST_F(VocabularyCorpus, ComesBackFromCopiesThatReferToAVocabulary) {
  const std::string report = learn({});
  std::uintmax_t with = 0;
  for (const std::string& document : documents_) {
    SCOPED_TRACE(document);
    with += copy(document, {"--vocabulary", "v.fi", "--uri", kURI}, true);
  }
  EXPECT_EQ(with, figureOf(report, "with the vocabulary"));
  EXPECT_LT(with, figureOf(report, "as Fast Infoset"));
  EXPECT_LE(with, figureOf(report, "with one of the others"));
}

TEST_F(VocabularyCorpus, ComesBackFromCopiesThatBeginWithAVocabulary) {
  const std::string report = learn({"--initial"});
  std::uintmax_t with = 0;
  for (const std::string& document : documents_) {
    SCOPED_TRACE(document);
    with += copy(document, {"--vocabulary", "v.fi"}, false);
  }
  EXPECT_EQ(with, figureOf(report, "with the vocabulary"));
  // What does not pay is not taken.
  EXPECT_LE(with, figureOf(report, "as Fast Infoset"));
}
