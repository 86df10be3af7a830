#pragma once

#include <string>

#include "comparing/ComparedDocuments.h"
#include "comparing/Records.h"
#include "comparing/TextComparison.h"

namespace tool {

/// How a side of a difference is shown.
enum class Form {
  Events,  ///< As tavrin events does.
  Markup   ///< As XML text.
};

/// Where something is, as a message tells it: a line up to the colon.
std::string describe(ComparedDocuments& documents, const Location& location);

/// The line about a side that has come to its end.
std::string describeEnd(const ComparedDocuments& documents);
/// The line about a text.
std::string describeText(ComparedDocuments& documents, const Location& location,
                         const Excerpt& excerpt, Form form);
/// The line about a record that is no part of a text.
/// @param other what the other side has there, or null
std::string describe(ComparedDocuments& documents, const Record& record, const Record* other,
                     Form form);

/// The markup that a record stands for; nothing for one that is no markup.
std::string markupOf(const Record& record);

}  // namespace tool
