/// @file
/// The library's version. The build reads the numbers from here, so that they stand in one place.
#pragma once

#define TAVRIN_VERSION_MAJOR 0  ///< Raised by a change that breaks callers.
#define TAVRIN_VERSION_MINOR 1  ///< Raised by an addition (while MAJOR is 0, also by a break).
#define TAVRIN_VERSION_PATCH 0  ///< Raised by a correction.
