#include "many/Work.h"

#include <sys/stat.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <charconv>
#include <new>
#include <optional>
#include <system_error>
#include <thread>

#include "files/Process.h"

namespace tool {

const char kWorkHelp[] =
    R"(  -j, --jobs N      work on N files at a time; 0 for as many as there are processors
  --quiet           tell only of what is wrong: no line of progress on a terminal, no summary
)";

const char kFoldersHelp[] =
    R"(What counts in a folder are the names that end in .xml .fi .finf .x3d .x3db .svg .xsd .xsl .xslt
.rng .sch .wsdl .xhtml .rdf .rss .atom .gml .kml .gpx .dae .mml .dita .dbk .tei .xmi .xlf .osm
.musicxml, in upper or lower case, maybe with .gz or .zst behind. Names that begin with a dot do
not, nor do folders behind symbolic links.
)";

namespace {

constexpr unsigned kMostJobs = 256;
static_assert(kMostJobs <= kMostUnfinishedFiles);

// From so many files, or octets of them, on there is a line of progress.
constexpr std::size_t kManyFiles = 100;
constexpr std::uint64_t kManyOctets = std::uint64_t{8} << 20;

std::uint64_t octetsOf(const std::vector<Document>& documents) {
  std::uint64_t octets = 0;
  for (const Document& document : documents) {
    struct stat status {};
    const bool isFile = stat(document.name.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    if (isFile) octets += static_cast<std::uint64_t>(status.st_size);
  }
  return octets;
}

/// Takes one file after another, as the other threads do.
class Worker {
 public:
  Worker(const std::vector<Document>& documents, Turns& turns, const Work& work)
      : documents_(documents), turns_(turns), work_(work) {}

  void run() {
    for (std::size_t index = next_++; index < documents_.size(); index = next_++) {
      if (!turns_.mayBegin(index)) return;
      Turn turn(turns_, index);
      // A file alone has the terminal to itself.
      std::optional<Listening> listening;
      if (documents_.size() > 1) listening.emplace(turn);
      try {
        note(workOn(index, turn));
        turn.end();
      } catch (...) {
        turn.fail(std::current_exception());
      }
    }
  }

  ExitStatus worst() const { return worst_; }

 private:
  ExitStatus workOn(std::size_t index, Turn& turn) const {
    const Document& document = documents_[index];
    try {
      return work_(document, index, turn);
    } catch (const Failure& failure) {
      // By now a progress bar is gone.
      return reported(failure);
    } catch (const std::bad_alloc&) {
      const std::string which = documents_.size() > 1 ? document.name + ": " : "";
      return reported(Failure::usage(which + "not enough memory"));
    }
  }

  static ExitStatus reported(const Failure& failure) {
    failure.report();
    return failure.status();
  }

  void note(ExitStatus status) {
    ExitStatus worst = worst_;
    while (worst < status && !worst_.compare_exchange_weak(worst, status)) {
    }
  }

  const std::vector<Document>& documents_;
  Turns& turns_;
  const Work& work_;
  std::atomic<std::size_t> next_ = 0;
  std::atomic<ExitStatus> worst_ = Done;
};

}  // namespace

void addWorkOptions(CLI::App& command, WorkOptions& options) {
  const auto checkJobs = [](const std::string& text) -> std::string {
    unsigned jobs = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), jobs);
    const bool isNumber = error == std::errc() && end == text.data() + text.size();
    return isNumber && jobs <= kMostJobs
               ? ""
               : "\"" + text + "\" is not a number from 0 to " + std::to_string(kMostJobs);
  };
  command.add_option("-j,--jobs", options.jobs)->type_name("N")->check(checkJobs);
  command.add_flag("--quiet", options.quiet);
}

ExitStatus workOnAll(const std::vector<Document>& documents, const WorkOptions& options,
                     const Work& work) {
  const bool mayShow = documents.size() > 1 && !options.quiet && isatty(STDERR_FILENO);
  const std::uint64_t octets = mayShow ? octetsOf(documents) : 0;
  ProgressLine line(mayShow && (documents.size() > kManyFiles || octets > kManyOctets),
                    documents.size(), octets);
  Turns turns(line);
  Worker worker(documents, turns, work);

  const unsigned jobs = options.jobs > 0 ? options.jobs : std::thread::hardware_concurrency();
  const std::size_t count = std::min<std::size_t>(jobs, documents.size());
  std::vector<std::thread> threads;
  threads.reserve(count);  // Nothing fails between the beginning of a thread and its end.
  try {
    // This thread works, too.
    for (std::size_t i = 1; i < count; ++i) {
      threads.emplace_back([&worker] { worker.run(); });
    }
  } catch (const std::system_error&) {
    // The system allows no more of them; those that there are do all of the work.
  }
  worker.run();
  for (std::thread& thread : threads) thread.join();
  turns.check();
  return worker.worst();
}

}  // namespace tool
