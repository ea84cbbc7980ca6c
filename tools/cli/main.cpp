// varnice: the command-line face of the library.
#include <cstdio>
#include <cstring>

#include "varnice/varnice.h"

namespace {

int Usage(FILE* out) {
  std::fputs(
      "usage: varnice COMMAND\n"
      "  version   print the library version\n"
      "  list      list every registered encoding\n",
      out);
  return out == stdout ? 0 : 2;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return Usage(stderr);
  const char* command = argv[1];
  if (std::strcmp(command, "version") == 0) {
    std::printf("%s\n", UnicodeLibrary::VersionString());
    return 0;
  }
  if (std::strcmp(command, "help") == 0 || std::strcmp(command, "--help") == 0) return Usage(stdout);
  std::fprintf(stderr, "varnice: unknown command '%s'\n", command);
  return Usage(stderr);
}
