#include "options/ReadingOptions.h"

#include <CLI/CLI.hpp>
#include <string_view>
#include <vector>

#include "commands/Commands.h"
#include "explaining/Explaining.h"
#include "many/Work.h"
#include "measuring/Timing.h"
#include "options/Suggestion.h"

namespace tool {

namespace {

constexpr char kEntitiesOptionHelp[] =
    R"(  --entities        read external entities and the external subset, as far as they are files in
                    the folder of the document or below it
  --entities=any    read them wherever the files are: whoever wrote the document then chooses
                    which of your files are read, and their text shows in the result
)";

constexpr char kExplainOptionHelp[] =
    R"(  --explain         show what is around the place of a failure, as is done on a terminal
)";

constexpr char kEntitiesHelp[] =
    R"(With --entities, an entity that is not a file is passed over, as without the option. So is one
whose file is missing, no regular file or outside of the folder, with a warning on standard error.

)";

constexpr char kPropertyNamesHelp[] =
    R"(
Properties and features are those of the library that bear these names. What the reader or the
writer of a document does not have is passed over, unless its type was chosen by name. VALUE is on
or off, a number as above, or a text. Unless it is changed, it is that in brackets:

)";

}  // namespace

void replaceLine(std::string& help, std::string_view line, const std::string& text) {
  const std::size_t begin = help.find(line);
  if (begin != std::string::npos) help.replace(begin, line.size(), text);
}

EntityAccess ReadingOptions::entityAccess() const {
  if (entities.empty()) return EntityAccess::None;
  return entities == "any" ? EntityAccess::Any : EntityAccess::Folder;
}

void ReadingOptions::applyTo(Tavrin::XMLReader& reader) const {
  const bool isChosen = !from.empty();
  limits.applyTo(reader, isChosen);
  properties.applyTo(reader, isChosen);
}

void ReadingOptions::applyTo(Tavrin::XMLWriter& writer, bool isChosen) const {
  limits.applyTo(writer);
  properties.applyTo(writer, isChosen);
}

CLI::App* addReadingCommand(CLI::App& app, const char* name, const std::string& help,
                            Properties::Owners owners) {
  std::string text = help;
  replaceLine(text, "%options%\n",
              std::string(kEntitiesOptionHelp) + kLimitOptionHelp + kExplainOptionHelp +
                  kPropertiesHelp + kVocabularyOptionsHelp);
  replaceLine(text, "%limits%\n",
              std::string(kEntitiesHelp) + kLimitsHelp + Limits::help() + kPropertyNamesHelp +
                  Properties::help(owners));
  replaceLine(text, "%work%\n", kWorkHelp);
  replaceLine(text, "%folders%\n", kFoldersHelp);
  replaceLine(text, "%timing%\n", kTimingHelp);
  return addCommand(app, name, text);
}

void addReadingOptions(CLI::App& command, ReadingOptions& options, VocabularyUse use) {
  // A flag that may have a value; as an option it would take the name of the document for one.
  command.add_flag("--entities{folder}", options.entities)
      ->disable_flag_override(false)
      ->check(oneOf({"folder", "any"}));
  command.add_flag_callback("--explain", alwaysExplain);
  addPropertyOptions(command, options.properties);
  addLimitOption(command, options.limits);
  addVocabularyOptions(command, options.vocabularies, use);
}

}  // namespace tool
