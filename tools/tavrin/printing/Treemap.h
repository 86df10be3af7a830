#pragma once

#include <ostream>

#include "measuring/Measurement.h"

namespace tool {

/// Writes a treemap of octets by element path as HTML: boxes in boxes, whose areas are in
/// proportion to the octets. What is too small to see stands together in one box.
void writeTreemap(std::ostream& out, const PathTree& paths, Encoding encoding);

}  // namespace tool
