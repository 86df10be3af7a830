#include "options/EncodingOption.h"

#include <CLI/CLI.hpp>
namespace tool {

const char kEncodingOptionHelp[] =
    R"(  --encoding NAME   write XML text in this encoding instead of UTF-8
)";

const char kEncodingHelp[] =
    R"(NAME is an encoding that iconv knows, if it has the characters of markup: ISO-8859-1, Shift_JIS,
UTF-16, ... Its name is in the XML declaration. Characters that it lacks are written as references
in text and in values, and between two CDATA sections. In names, comments, processing instructions
and identifiers there are no references: the work fails. IN may be in any encoding of iconv.
)";

void addEncodingOption(CLI::App& command, std::string& encoding) {
  command.add_option("--encoding", encoding)->type_name("NAME");
}

}  // namespace tool
