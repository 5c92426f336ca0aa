// The program `orv`.
#include "cli/Program.h"

int main(int argc, char** argv) {
  return orv::cli::runProgram(argc, argv);
}
