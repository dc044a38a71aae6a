#include "infra/platform.h"

#include <cstdio>
#include <cstdlib>

namespace folioscope {

namespace {
Platform* g_platform = nullptr;
}  // namespace

Platform& CurrentPlatform() {
  if (!g_platform) {
    std::fputs("folioscope: no platform installed\n", stderr);
    std::abort();
  }
  return *g_platform;
}

Platform* SetCurrentPlatform(Platform* platform) {
  Platform* previous = g_platform;
  g_platform = platform;
  return previous;
}

}  // namespace folioscope
