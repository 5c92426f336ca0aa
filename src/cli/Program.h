// The command line as a whole.
#pragma once

namespace orv::cli {

/// Does what the arguments of `orv` ask for; the exit code of the process.
int runProgram(int argc, char** argv);

}  // namespace orv::cli
