// The INI reader on an input file: part 1 holds the query (section, key,
// default and buffer size, a line each; "(null)" asks for a name list),
// part 2 is the file. The file is also read as Res/IndexComment.ini by the
// report-set catalogue, which walks it with the same reader.
//
// The buffer contract is checked: nothing is written past the count the
// call returns (plus one NUL, two for name lists), and the return value
// fits the size.
#include <cstdlib>
#include <string>

#include "fuzz_support.h"
#include "reportsets/profile_ini.h"
#include "reportsets/report_sets.h"

namespace folioscope::fuzzing {
namespace {

constexpr char kUntouched = '#';

std::vector<std::string> QueryLines(const std::string& text) {
  std::vector<std::string> lines;
  size_t start = 0;
  while (lines.size() < 4) {
    const size_t end = text.find('\n', start);
    lines.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
    if (end == std::string::npos) break;
    start = end + 1;
  }
  lines.resize(4);
  return lines;
}

void QueryOnce(const std::string* section, const std::string* key, const std::string& fallback,
               int32_t size, const std::string& file) {
  std::string buffer(static_cast<size_t>(size), kUntouched);
  const int32_t written = GetPrivateProfileStringA(section, key, fallback, buffer, size, file);
  Check(buffer.size() == static_cast<size_t>(size), "buffer keeps its size");
  if (size <= 0) {
    Check(written == 0, "nothing written to an empty buffer");
    return;
  }
  const bool list = section == nullptr || key == nullptr;
  Check(written >= 0 && written <= size - 1, "count fits the size");
  Check(buffer[static_cast<size_t>(written)] == '\0', "NUL after the text");
  const size_t used = static_cast<size_t>(written) + 1 + (list && size >= 2 ? 1 : 0);
  for (size_t i = used; i < buffer.size(); ++i) {
    Check(buffer[i] == kUntouched, "nothing written past the text");
  }
}

}  // namespace
}  // namespace folioscope::fuzzing

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace folioscope;
  using namespace folioscope::fuzzing;
  FuzzEnvironment& environment = FuzzEnvironment::Get();
  const std::vector<std::string> parts = SplitParts(AsText(data, size), 2);
  if (CouldLeaveFolder(parts[1])) return -1;
  const std::vector<std::string> query = QueryLines(parts[0]);
  const std::string* section = query[0] == "(null)" ? nullptr : &query[0];
  const std::string* key = query[1] == "(null)" ? nullptr : &query[1];
  const long wanted = std::strtol(query[3].c_str(), nullptr, 10) % 512;
  const int32_t buffer_size = static_cast<int32_t>(wanted < 0 ? wanted + 512 : wanted);

  const std::string file = environment.folder() + "/Res/IndexComment.ini";
  WriteFile(file, parts[1]);
  environment.BeginInput();
  QueryOnce(section, key, query[2], buffer_size, file);
  QueryOnce(section, key, query[2], 200, file);
  if (section != nullptr && key != nullptr) Touch(ReadIniKey(*section, *key, file));
  CReportSets sets;
  for (int32_t i = 0; i < sets.Count(); ++i) {
    CReportSet& set = sets.Item(i);
    Touch(set.Name());
    Touch(set.QuellPath());
    for (int32_t k = 0; k < set.Languages().Count(); ++k) Touch(set.Languages().Item(k).Name());
  }
  environment.EndInput();
  return 0;
}
