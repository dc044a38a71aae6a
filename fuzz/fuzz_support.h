// What every fuzz target shares: a scratch application folder of its own, a
// recording platform and a progress channel installed for the whole run, a
// census of the faults the component trapped, and helpers that cut one input
// into the several files or values a reader needs.
//
// A trapped fault is the component's own answer to bad input (it reaches
// CErrorHandler and the run goes on), so it is counted, not treated as a
// crash. The census is printed at exit; with FOLIOSCOPE_FUZZ_ABORT_ON_FAULT=1
// in the environment the first trapped fault aborts instead, so that libFuzzer
// saves the input that caused it.
#ifndef FOLIOSCOPE_FUZZ_FUZZ_SUPPORT_H_
#define FOLIOSCOPE_FUZZ_FUZZ_SUPPORT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "infra/recording_platform.h"

namespace folioscope::fuzzing {

// Separates the parts of an input; a line of its own in the seed files.
inline constexpr std::string_view kPartSeparator = "\n----8<----\n";

class FuzzEnvironment {
 public:
  // Created by the first call, with a new empty application folder; the
  // folder is removed when the process exits normally.
  static FuzzEnvironment& Get();

  RecordingPlatform& platform() { return platform_; }
  // The application folder (holds sfn.dat, Res/, ErrorLog.txt).
  const std::string& folder() const { return folder_; }

  // Brackets one input: EndInput() takes the faults reported since
  // BeginInput() into the census and forgets everything the platform
  // recorded, so a long run does not grow.
  void BeginInput();
  void EndInput();

 private:
  FuzzEnvironment();

  std::string folder_;
  RecordingPlatform platform_;
  int64_t reports_before_ = 0;
};

// The input as a Windows-1252 byte string.
std::string AsText(const uint8_t* data, size_t size);

// Cuts `text` at kPartSeparator into at most `max_parts` parts (the last one
// keeps any further separators). Missing parts are empty.
std::vector<std::string> SplitParts(std::string_view text, size_t max_parts);

// True when a path-like value could leave the folder it is resolved against:
// a ".." anywhere, or a line whose value (after '=' or ';') starts at a root.
// Fuzz targets skip such inputs: reading /proc or /dev files says nothing
// about the readers and can hang the run. Keeping reads inside the report
// folders is checked by the component's own tests.
bool CouldLeaveFolder(std::string_view text);

// Writes `bytes` to `path`, creating the folders above it.
void WriteFile(const std::string& path, std::string_view bytes);

// Reads every byte of `text` so that the sanitizers see a dangling or
// uninitialised string; returns a checksum nobody needs.
size_t Touch(std::string_view text);

// Stops the run with `what` when `condition` fails: a broken invariant is a
// finding like a crash.
void Check(bool condition, const char* what);

}  // namespace folioscope::fuzzing

#endif  // FOLIOSCOPE_FUZZ_FUZZ_SUPPORT_H_
