#pragma once

namespace velgrove {

/// Runs the desk with its windows until the operator leaves or a signal ends it. The result is the program's.
int runDesktop(int argc, char** argv);

}  // namespace velgrove
