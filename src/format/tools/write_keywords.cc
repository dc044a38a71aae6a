// Writes the built-in keyword list to the file named on the command line, so
// that a build tree or an installation carries sfn.dat from the start.
#include <cstdio>

#include "format/keyword_resource.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s SFN.DAT\n", argv[0]);
    return 2;
  }
  std::string_view bytes = folioscope::KeywordResource();
  std::FILE* f = std::fopen(argv[1], "wb");
  if (!f) return 1;
  bool ok = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
  return (std::fclose(f) == 0 && ok) ? 0 : 1;
}
