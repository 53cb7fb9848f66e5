// Writes a file with something of everything that an import reads.
#include <cstdio>

#include "fuzz/aaf/import_host.h"
#include "tests/support/aaf_example.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s FILE\n", argv[0]);
    return 1;
  }
  fuzzing::ImportHost host;
  support::AafBuilder file(argv[1]);
  support::describe_everything(file);
  file.save();
  return 0;
}
