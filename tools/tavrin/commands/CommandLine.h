#pragma once

#include "files/Failure.h"

namespace tool {

/// Does what the arguments of main ask for.
ExitStatus runCommandLine(int argc, char** argv);

}  // namespace tool
