#pragma once

#include "commands/Commands.h"

namespace tool {

/// Adds the command that makes a vocabulary of samples.
Command makeLearn(CLI::App& vocabulary);

}  // namespace tool
