#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// Whether a file of this name is taken for Fast Infoset.
bool isNameOfFastInfoset(std::string_view name);

/// The name of a copy in Fast Infoset: ".xml" becomes ".fi" and ".x3d" ".x3db"; behind any other
/// ending stands ".fi". A name of Fast Infoset stays.
std::string nameInFastInfoset(std::string_view name);

/// The name of a copy in XML text: ".x3db" becomes ".x3d"; ".fi" and ".finf" become ".xml", but
/// go where the ending of a document stands before them. Any other name stays.
std::string nameInText(std::string_view name);

}  // namespace tool
