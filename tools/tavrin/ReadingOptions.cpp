#include "ReadingOptions.h"

#include <string_view>
#include <vector>

#include "Commands.h"

namespace tool {

namespace {

constexpr char kOptionsHelp[] =
    R"(  --entities        read external entities and the external subset, as far as they are files in
                    the folder of the document or below it
  --entities=any    read them as far as they are files, wherever: whoever wrote the document
                    then says which files of yours are read, and their text is in the result
  --limit NAME=VALUE
                    change a limit to what hostile documents may cost; may stand several times
)";

constexpr char kLimitsHelp[] =
    R"(With --entities, what is not a file is not read all the same. Nor is a file that is not there, no
regular file, or outside of the folder, and a warning says so on standard error.

These are the limits, with what they are unless --limit says otherwise. VALUE is a number, maybe
with K, M or G behind it, or none:

)";

/// Puts a text in place of a line that stands for it.
void replaceLine(std::string& help, std::string_view line, const std::string& text) {
  const std::size_t begin = help.find(line);
  if (begin != help.npos) help.replace(begin, line.size(), text);
}

}  // namespace

EntityAccess ReadingOptions::entityAccess() const {
  if (entities.empty()) return EntityAccess::None;
  return entities == "any" ? EntityAccess::Any : EntityAccess::Folder;
}

CLI::App* addReadingCommand(CLI::App& app, const char* name, const char* help) {
  std::string text = help;
  replaceLine(text, "%options%\n", kOptionsHelp);
  replaceLine(text, "%limits%\n", kLimitsHelp + Limits::help());
  return addCommand(app, name, text);
}

void addReadingOptions(CLI::App& command, ReadingOptions& options) {
  // A flag that may have a value; as an option it would take the name of the document for one.
  command.add_flag("--entities{folder}", options.entities)
      ->disable_flag_override(false)
      ->check(CLI::IsMember({"folder", "any"}));
  command
      .add_option_function<std::vector<std::string>>(
          "--limit",
          [&options](const std::vector<std::string>& settings) {
            for (const std::string& setting : settings) options.limits.add(setting);
          })
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
}

}  // namespace tool
