#include "options/CanonicalOptions.h"

#include <CLI/CLI.hpp>
#include <string_view>
#include <utility>
#include <vector>

#include "files/Failure.h"
#include "options/Suggestion.h"
#include "writing/CanonicalWriter.h"

namespace tool {

const char kCanonicalOptionsHelp[] =
    R"(  --canonical       write Canonical XML 1.0, without comments
  --canonical=1.1   the same by version 1.1; for whole documents, as here, there is no difference
  --canonical=exclusive
                    write Exclusive XML Canonicalization 1.0, without comments
  --comments        with --canonical: write comments, too
  --inclusive-prefixes PREFIXES
                    with --canonical=exclusive: declare these prefixes as --canonical does; with
                    commas or blanks between them, and #default for the default namespace
)";

const char kCanonicalHelp[] =
    R"(--canonical writes documents that mean the same to an application in the same octets, to compare or
to sign them: in UTF-8, without a document type, with attributes in order and no superfluous
declarations of namespaces. It needs all of the document: references to entities that are not read
end the work, and so does an external part of the document type that is not read, unless --lossy
allows the loss of the defaults of attributes there. Namespace names have to be absolute.
)";

namespace {

std::vector<std::string> prefixesIn(std::string_view list) {
  constexpr std::string_view kSeparators = ", \t\r\n";
  std::vector<std::string> prefixes;
  for (;;) {
    const std::size_t begin = list.find_first_not_of(kSeparators);
    if (begin == std::string_view::npos) return prefixes;
    list.remove_prefix(begin);
    const std::string_view prefix = list.substr(0, list.find_first_of(kSeparators));
    prefixes.emplace_back(prefix == "#default" ? "" : prefix);
    list.remove_prefix(prefix.size());
  }
}

}  // namespace

std::unique_ptr<Tavrin::XMLWriter> CanonicalOptions::createWriter() const {
  const bool isExclusive = form == "exclusive";
  auto prefixes = prefixesIn(inclusivePrefixes);
  if (!prefixes.empty() && !isExclusive) {
    throw Failure::usage("--inclusive-prefixes requires --canonical=exclusive");
  }
  return std::make_unique<CanonicalWriter>(
      CanonicalWriter::Form{comments, isExclusive, std::move(prefixes)});
}

void addCanonicalOptions(CLI::App& command, CanonicalOptions& options) {
  // A flag that may have a value; as an option it would take the name of the document for one.
  CLI::Option* const canonical = command.add_flag("--canonical{1.0}", options.form)
                                     ->disable_flag_override(false)
                                     ->check(oneOf({"1.0", "1.1", "exclusive"}));
  for (const char* const other : {"--to", "--no-declaration", "--indent", "--tabs", "--encoding"}) {
    canonical->excludes(command.get_option(other));
  }
  command.add_flag("--comments", options.comments)->needs(canonical);
  command.add_option("--inclusive-prefixes", options.inclusivePrefixes)
      ->type_name("PREFIXES")
      ->needs(canonical);
}

}  // namespace tool
