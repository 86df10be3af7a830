#pragma once

#include <functional>
#include <string>
#include <vector>

#include "files/Failure.h"
#include "many/Documents.h"
#include "many/Turns.h"

namespace CLI {
class App;
}

namespace tool {

/// What the command line says about the work on many files.
struct WorkOptions {
  unsigned jobs = 1;  ///< How many files are worked on at a time; 0 for as many as there are cores.
  bool quiet = false;  ///< No line of progress.
};

/// The lines of a help text about these options, in place of the line "%work%", and about what is a
/// document in a folder, in place of "%folders%".
extern const char kWorkHelp[];
extern const char kFoldersHelp[];

/// Adds --jobs and --quiet.
void addWorkOptions(CLI::App& command, WorkOptions& options);

/// What to do with a file.
/// @throws Failure when that is not possible: it is reported, and others are worked on
using Work = std::function<ExitStatus(const Document& document, std::size_t index, Turn& turn)>;

/// Works on files, several at a time, and shows what that prints in their order. On a terminal,
/// there is a line of progress where they are many or large.
/// @return the worst of all
/// @throws what the work throws besides Failure and want of memory; no other work is begun then
ExitStatus workOnAll(const std::vector<Document>& documents, const WorkOptions& options,
                     const Work& work);

}  // namespace tool
