// read_model: times the VB6 reader alone on a project, the first step of
// every report run.
//
//   read_model PROJECT.vbp
//
// Prints one line: modules=M members=N diagnostics=D read_seconds=S.
#include <chrono>
#include <cstdio>

#include "infra/posix_platform.h"
#include "infra/registry_tree.h"
#include "model/vb6_reader.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: read_model PROJECT.vbp\n");
    return 2;
  }
  // A file named in another case is looked up in the platform's listing.
  folioscope::RegistryTree settings;
  folioscope::PosixPlatform platform(&settings, ".");
  folioscope::SetCurrentPlatform(&platform);
  auto start = std::chrono::steady_clock::now();
  folioscope::ProjectReadResult read = folioscope::ReadProject(argv[1]);
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  if (!read.project) {
    std::fprintf(stderr, "read_model: cannot read %s\n", argv[1]);
    return 1;
  }
  long long members = 0;
  for (int32_t i = 1; i <= read.project->Modules.Count(); ++i) {
    members += read.project->Modules.Item(i).Members.Count();
  }
  std::printf("modules=%d members=%lld diagnostics=%zu read_seconds=%.4f\n",
              read.project->Modules.Count(), members, read.diagnostics.size(), seconds);
  return 0;
}
