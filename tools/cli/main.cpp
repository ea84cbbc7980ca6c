// varnice: the command-line face of the library.
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tools/cli/cli.h"
#include "varnice/varnice.h"

namespace {

int Usage(FILE* out) {
  std::fputs(
      "usage: varnice COMMAND [ARGS]    ('varnice COMMAND --help' tells more)\n"
      "  convert -f FROM -t TO [-o OUT] [FILE...]\n"
      "            convert text between encodings; -f auto detects the input's\n"
      "  detect [-v] FILE...\n"
      "            name each file's encoding (with -v, the detectors' scores)\n"
      "  list      list the encodings convert takes: identifier, name, MIME name,\n"
      "            code page and nicknames (also: varnice -l)\n"
      "  char X... look characters up: each X is U+XXXX, 0xXXXX or text, and\n"
      "            every character gets its code point, category, script,\n"
      "            width and upper- and lower-case forms\n"
      "  sample -t ENCODING [--script NAME] [--bytes N] [--seed S]\n"
      "            sample text in an encoding: its characters, or random words\n"
      "  version   print the library version (also: varnice --version)\n",
      out);
  return out == stdout ? cli::kOk : cli::kUsage;
}

bool AsksForHelp(int argc, char** argv) {
  for (int i = 0; i < argc; ++i) {
    if (std::strcmp(argv[i], "--") == 0) return false;
    if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) return true;
  }
  return false;
}

// Output that never reached its destination is a failure of every command.
int Finished(int status) {
  if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
    std::fprintf(stderr, "varnice: cannot write standard output: %s\n", std::strerror(errno));
    return status == cli::kOk ? cli::kIoError : status;
  }
  return status;
}

int Run(int argc, char** argv);

}  // namespace

int main(int argc, char** argv) { return Finished(Run(argc, argv)); }

namespace {

int Run(int argc, char** argv) {
  if (argc < 2) return Usage(stderr);
  const char* command = argv[1];
  const int count = argc - 2;
  char** args = argv + 2;
  if (std::strcmp(command, "convert") == 0) return cli::RunConvert(count, args);
  // iconv's habits: -l lists, --version says which version.
  if (std::strcmp(command, "-l") == 0 || std::strcmp(command, "--list") == 0) return cli::RunList(count, args);
  if (std::strcmp(command, "--version") == 0 || std::strcmp(command, "-V") == 0) {
    std::printf("varnice %s\n", UnicodeLibrary::VersionString());
    return cli::kOk;
  }
  if (std::strcmp(command, "detect") == 0) return cli::RunDetect(count, args);
  if (std::strcmp(command, "sample") == 0) return cli::RunSample(count, args);
  if (std::strcmp(command, "help") == 0 || std::strcmp(command, "--help") == 0 || std::strcmp(command, "-h") == 0) {
    return Usage(stdout);
  }
  // The simple commands share one way of answering --help.
  struct Simple {
    const char* name;
    int (*run)(int, char**);
    const char* help;
  };
  static const Simple kSimple[] = {
      {"list", cli::RunList, "usage: varnice list [--transforms]\n\nLists the encodings convert takes: identifier, name, MIME name,\n"
                             "code page, whether it can be written, and nicknames. Any of the names\nselects it in 'varnice convert'.\n"
                             "With --transforms, lists the transforms of 'varnice convert -x' instead.\n"},
      {"char", cli::RunChar, "usage: varnice char X...\n\nEach X is U+XXXX, 0xXXXX or UTF-8 text; every character gets\n"
                             "a line with its code point, category, script, width and case forms.\n"},
      {"version", [](int, char**) { return std::printf("%s\n", UnicodeLibrary::VersionString()) < 0 ? 3 : 0; },
       "usage: varnice version\n\nPrints the library version.\n"},
  };
  for (const Simple& s : kSimple) {
    if (std::strcmp(command, s.name) != 0) continue;
    if (AsksForHelp(count, args)) return std::fputs(s.help, stdout) < 0 ? cli::kIoError : cli::kOk;
    return s.run(count, args);
  }
  std::fprintf(stderr, "varnice: unknown command '%s'\n", command);
  return Usage(stderr);
}

}  // namespace
