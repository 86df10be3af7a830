#pragma once

#include <cstdint>
#include <string>

#include "files/RecentOctets.h"

namespace tool {

/// The line of a text, and below it a mark at a column: lines for standard error. What does not
/// show as it is stands as in messages, and of a long line there is the part around the column.
/// @param column counts characters, from 1
/// @param width  how many columns of a terminal there are
/// @return nothing where the line is not kept any more
std::string lineAround(const RecentOctets& recent, std::uint64_t line, std::uint64_t column,
                       int width);

/// The octets around the place of a failure, a mark below the last one that was read, and the
/// elements that are open.
/// @param octet counts from 1
std::string octetsAround(const RecentOctets& recent, std::uint64_t octet, const std::string& path);

}  // namespace tool
