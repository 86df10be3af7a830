#include "options/TypingOptions.h"

#include <CLI/CLI.hpp>

#include "files/Failure.h"
#include "files/Input.h"

namespace tool {

const char kTypingOptionsHelp[] =
    R"(  --typed RULES     in Fast Infoset, write the text of the elements and attributes that the file
                    RULES names as the values that it tells
  --typed=auto      write all text as values that is printed from them octet for octet
  --typed-exact     leave text as it is where its value would be printed in another form
  --typed-lenient   leave text as it is where it is not what RULES says
)";

const char kTypingHelp[] =
    R"(Each line of RULES is a path and a type, with white space between; # begins a comment. Of the
rules that match, the first one counts:

  # PATH          TYPE
  shape/@points   float
  /scene/*/image  base64
  visible         boolean
  @*              auto

A path ends with the name of an element, or with @ and that of an attribute; the elements in front
of it are those around it, and a slash at the beginning is the document. A name is a local name,
{URI}NAME, PREFIX:NAME or *. Types are short, int, long, float, double, boolean, uuid, base64,
hexadecimal, cdata and auto. Text that is something else is an error, and white space, signs and
zeros may take another form when a value becomes text again: 1.50 comes back as 1.5. auto types
text of more than 32 octets, and only where each octet of it comes back and the value is shorter.

Only an element that has nothing but text is typed; its text is kept until its end tag. In XML text
values are text: there the copy is the same with --typed and without it.
)";

namespace {

constexpr char kAutomatic[] = "auto";

/// All text of a document.
Tavrin::TypingRules automaticRules() {
  Tavrin::TypingRules rules;
  rules.add("*", kAutomatic);
  rules.add("@*", kAutomatic);
  return rules;
}

}  // namespace

void TypingOptions::load() {
  if (rules == kAutomatic) loaded_ = automaticRules();
  if (!isWanted() || rules == kAutomatic) return;
  Input input(rules, true);
  try {
    loaded_ = Tavrin::TypingRules::read(input.stream());
  } catch (const Tavrin::SAXParseException& failure) {
    throw Failure::usageAt(placeIn(rules, failure.getLineNumber(), failure.getColumnNumber()),
                           failure.getMessage());
  }
  input.checkRead();
}

Tavrin::TypedContentFilter::Options TypingOptions::filterOptions() const {
  Tavrin::TypedContentFilter::Options options;
  options.exact = isExact;
  options.lenient = isLenient;
  return options;
}

void addTypingOptions(CLI::App& command, TypingOptions& options) {
  auto* const typed = command.add_option("--typed", options.rules)->type_name("RULES");
  command.add_flag("--typed-exact", options.isExact)->needs(typed);
  command.add_flag("--typed-lenient", options.isLenient)->needs(typed);
}

}  // namespace tool
