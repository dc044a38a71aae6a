// The formatter on arbitrary lines. The first input byte chooses the line
// range and the document form; the rest are the lines (CR LF, CR or LF end
// a line), formatted as a member's and as a module's code.
#include <string>

#include "format/code_format.h"
#include "fuzz_support.h"

namespace folioscope::fuzzing {
namespace {

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  size_t start = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\n') continue;
    size_t end = i;
    if (end > start && text[end - 1] == '\r') --end;
    lines.push_back(text.substr(start, end - start));
    start = i + 1;
  }
  if (start < text.size()) lines.push_back(text.substr(start));
  return lines;
}

}  // namespace
}  // namespace folioscope::fuzzing

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace folioscope;
  using namespace folioscope::fuzzing;
  FuzzEnvironment& environment = FuzzEnvironment::Get();
  const uint8_t choice = size > 0 ? data[0] : 0;
  const std::vector<std::string> lines = Lines(size > 0 ? AsText(data + 1, size - 1) : "");
  SourceMember member;
  SourceModule module;
  for (size_t i = 0; i < lines.size(); ++i) {
    member.CodeLines.Add(static_cast<int32_t>(i + 1), lines[i]);
    module.CodeLines.Add(static_cast<int32_t>(i + 1), lines[i]);
  }
  member.LineCount = static_cast<int32_t>(lines.size());

  environment.BeginInput();
  CCodeFormat format;
  // Start 0 or 1; end 0 (all lines) or a line near the end.
  int32_t start = choice & 1;
  int32_t end = (choice & 2) ? static_cast<int32_t>(lines.size()) - ((choice >> 4) & 3) : 0;
  if (end < 0) end = 0;
  bool full_document = (choice & 4) != 0;
  format.ExecuteMember(member, start, end, full_document);
  Touch(format.FormatedCode());
  int32_t module_start = 1;
  int32_t module_end = 0;
  format.ExecuteModule(module, module_start, module_end);
  Touch(format.FormatedCode());
  environment.EndInput();
  return 0;
}
