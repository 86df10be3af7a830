#pragma once

#include <string>
#include <vector>

#include "copying/Conversion.h"
#include "files/Failure.h"
#include "many/Work.h"

namespace tool {

/// Copies files, and what is in folders, into a folder. What is in a folder keeps its place below
/// it; the ending of its name goes by the type of the copy. Where no type is named, Fast Infoset
/// becomes XML text and all else Fast Infoset, going by the names.
///
/// @param names as the command line has them
/// @param folder made where it is not there; what is in it is not copied
/// @return the worst of all; what failed has been reported
/// @throws Failure before any work, where two copies would have the same name, or one that of
///         another's original
ExitStatus convertAll(const ConversionOptions& options, const std::vector<std::string>& names,
                      const std::string& folder, const WorkOptions& work);

}  // namespace tool
