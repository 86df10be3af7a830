#pragma once

#include <string>

#include "copying/Conversion.h"

namespace tool {

/// Copies the documents of a file, as convertFile does, and tells how long that took if that is
/// asked for. Repeated are the reading alone, and the copying to nowhere.
CopiedOctets convertMeasured(const ConversionOptions& options, const std::string& in,
                             const std::string& out);

}  // namespace tool
