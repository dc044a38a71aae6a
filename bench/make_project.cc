// make_project: writes a synthetic VB6 project for the benchmark.
//
//   make_project --modules N --out DIR [--seed S] [--members M] [--name NAME]
//
// Prints one line: modules, procedures and source bytes written.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "project_generator.h"

namespace {

int Usage() {
  std::fprintf(stderr,
               "usage: make_project --modules N --out DIR [--seed S] [--members M] "
               "[--name NAME]\n");
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  folioscope::bench::GeneratorOptions options;
  std::string out;
  for (int i = 1; i < argc; ++i) {
    std::string arg = argv[i];
    if (i + 1 >= argc) return Usage();
    const char* value = argv[++i];
    if (arg == "--modules") {
      options.modules = std::atoi(value);
    } else if (arg == "--seed") {
      options.seed = std::strtoull(value, nullptr, 10);
    } else if (arg == "--members") {
      options.members_per_module = std::atoi(value);
    } else if (arg == "--name") {
      options.project_name = value;
    } else if (arg == "--out") {
      out = value;
    } else {
      return Usage();
    }
  }
  if (out.empty() || options.modules < 1 || options.members_per_module < 1) return Usage();

  folioscope::bench::GeneratedProject project = folioscope::bench::GenerateProject(options);
  std::string error;
  if (!folioscope::bench::WriteProject(project, out, &error)) {
    std::fprintf(stderr, "make_project: %s\n", error.c_str());
    return 1;
  }
  std::printf("%zu modules, %d procedures, %lld source bytes\n", project.modules.size(),
              project.ProcedureCount(), static_cast<long long>(project.SourceBytes()));
  return 0;
}
