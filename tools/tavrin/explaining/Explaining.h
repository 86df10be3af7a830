#pragma once

namespace tool {

/// Explains failures from now on wherever standard error leads. Call it before documents are
/// opened.
void alwaysExplain();

/// Whether below a failure stands what is around its place: where people read it, on a terminal,
/// and where the command line asks for it.
bool explains();

/// How many columns a line of an explanation may take.
int explanationWidth();

}  // namespace tool
