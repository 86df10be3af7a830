#include "copying/FolderConversion.h"

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <utility>

#include "files/Compression.h"
#include "many/CopyNames.h"
#include "measuring/MeasuredConversion.h"
#include "options/TypeChoice.h"
#include "printing/Quantities.h"

namespace tool {

namespace {

/// What the copies of documents are called.
class CopyPlaces {
 public:
  CopyPlaces(const ConversionOptions& options, const std::string& folder)
      : folder_(folder.ends_with('/') ? folder : folder + "/"),
        goesByName_(options.to.empty() && !options.canonical.isChosen()) {
    // What is wrong about the options of a writer shows here.
    isBinary_ = !goesByName_ && writesFastInfoset(*createWriterFor("", options));
    if (options.compression.chosen) ending_ = endingOf(options.compression.chosen->compression);
  }

  std::string operator()(const Document& document) const {
    const std::string_view name = withoutCompression(document.keptName());
    const bool isBinary = goesByName_ ? !isNameOfFastInfoset(name) : isBinary_;
    return folder_ + (isBinary ? nameInFastInfoset(name) : nameInText(name)) + ending_;
  }

 private:
  std::string folder_;
  bool goesByName_;
  bool isBinary_;
  std::string ending_;  // Of a compressed file.
};

/// Refuses copies that would have the same name.
void refuseSameNames(const std::vector<Document>& documents, const CopyPlaces& placeOf) {
  // Names of a million files take their time and room: only those with the same hash are compared.
  std::vector<std::pair<std::size_t, std::size_t>> hashes;
  hashes.reserve(documents.size());
  for (std::size_t i = 0; i < documents.size(); ++i) {
    hashes.emplace_back(std::hash<std::string>()(placeOf(documents[i])), i);
  }
  std::sort(hashes.begin(), hashes.end());
  for (std::size_t first = 0; first < hashes.size(); ++first) {
    for (std::size_t i = first + 1; i < hashes.size() && hashes[i].first == hashes[first].first;
         ++i) {
      const Document& one = documents[hashes[first].second];
      const Document& other = documents[hashes[i].second];
      if (const std::string place = placeOf(one); place == placeOf(other)) {
        throw Failure::usage(one.name + " and " + other.name +
                             " would have the same copy: " + place);
      }
    }
  }
}

using FileNumber = std::pair<dev_t, ino_t>;

/// Which file stands at a name; {0, 0} for none.
FileNumber numberOf(const std::string& name) {
  struct stat status {};
  return stat(name.c_str(), &status) == 0 ? FileNumber(status.st_dev, status.st_ino) : FileNumber();
}

/// Refuses a copy that would replace what another is made of. It may replace what it is made of
/// itself.
void refuseOriginals(const std::vector<Document>& documents, const CopyPlaces& placeOf) {
  std::map<FileNumber, std::size_t> replaced;  // And by the copy of which document.
  for (std::size_t i = 0; i < documents.size(); ++i) {
    const FileNumber number = numberOf(placeOf(documents[i]));
    if (number != FileNumber()) replaced.emplace(number, i);
  }
  if (replaced.empty()) return;
  for (std::size_t i = 0; i < documents.size(); ++i) {
    const auto found = replaced.find(numberOf(documents[i].name));
    if (found == replaced.end() || found->second == i) continue;
    throw Failure::usage("the copy of " + documents[found->second].name + " would replace " +
                         documents[i].name);
  }
}

/// Refuses options that would not do for any copy of one of the formats, before one is made.
void checkOptionsForAll(const ConversionOptions& options, const std::vector<Document>& documents,
                        const CopyPlaces& placeOf) {
  std::set<std::string> types;
  for (const Document& document : documents) {
    const std::string place = placeOf(document);
    if (types.insert(writerTypeFor(place)).second) checkOptions(place, options);
  }
}

void checkFolder(const std::string& folder) {
  if (folder.empty()) throw Failure::system(folder, ENOENT);
  struct stat status {};
  const bool exists = stat(folder.c_str(), &status) == 0;
  if (exists ? !S_ISDIR(status.st_mode) : errno == ENOTDIR) throw Failure::system(folder, ENOTDIR);
}

/// What came of the work on many files.
struct Totals {
  std::atomic<std::uint64_t> files = 0;
  std::atomic<std::uint64_t> read = 0;
  std::atomic<std::uint64_t> written = 0;

  void add(const CopiedOctets& octets) {
    ++files;
    read += octets.read;
    written += octets.written;
  }
};

void summarize(const Totals& totals, std::size_t documents, double seconds) {
  say("tavrin: " + std::to_string(totals.files) + " of " + std::to_string(documents) +
      " files converted: " + size(totals.read) + " to " + size(totals.written) + " in " +
      timeTaken(seconds) + ", " + rate(totals.read, seconds) + "\n");
}

}  // namespace

ExitStatus convertAll(const ConversionOptions& options, const std::vector<std::string>& names,
                      const std::string& folder, const WorkOptions& work) {
  checkFolder(folder);
  const CopyPlaces placeOf(options, folder);
  Documents documents(folder);
  for (const std::string& name : names) {
    if (name == "-") throw Failure::usage("-o DIR: a copy of standard input has no name");
    documents.add(name);
  }
  checkOptionsForAll(options, documents.all(), placeOf);
  refuseSameNames(documents.all(), placeOf);
  if (options.force) refuseOriginals(documents.all(), placeOf);

  const Stopwatch stopwatch;
  Totals totals;
  const auto copy = [&](const Document& document, std::size_t, Turn&) {
    totals.add(convertMeasured(options, document.name, placeOf(document)));
    return Done;
  };
  const ExitStatus status = workOnAll(documents.all(), work, copy);
  if (documents.all().size() > 1 && !work.quiet) {
    summarize(totals, documents.all().size(), stopwatch.seconds());
  }
  return std::max(status, documents.status());
}

}  // namespace tool
