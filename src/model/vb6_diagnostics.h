// Messages of the VB6 reader: what it could not read, where. The host prints
// them; the reader never stops at the first one.
#ifndef FOLIOSCOPE_MODEL_VB6_DIAGNOSTICS_H_
#define FOLIOSCOPE_MODEL_VB6_DIAGNOSTICS_H_

#include <cstdint>
#include <string>
#include <vector>

namespace folioscope {

enum class DiagnosticSeverity { kWarning, kError };

struct ReaderDiagnostic {
  std::string file;  // the file the message is about, as the reader opened it
  int32_t line = 0;  // physical line in that file, 1-based; 0 when about the whole file
  DiagnosticSeverity severity = DiagnosticSeverity::kWarning;
  std::string text;  // Windows-1252

  // "file(line): warning: text" (or "file: error: text" without a line).
  std::string ToText() const;
};

using Diagnostics = std::vector<ReaderDiagnostic>;

}  // namespace folioscope

#endif  // FOLIOSCOPE_MODEL_VB6_DIAGNOSTICS_H_
