#pragma once

#include <ostream>

#include "measuring/Measurement.h"

namespace tool {

/// Writes a page of HTML about a measurement that stands alone: it refers to nothing else and has
/// no script.
void writeStatPage(std::ostream& out, const Measurement& measurement);

}  // namespace tool
