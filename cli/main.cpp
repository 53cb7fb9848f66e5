#include "cli/program.h"

int main(int argc, char** argv) {
  return cli::run_program(format_table(), argc, argv);
}
