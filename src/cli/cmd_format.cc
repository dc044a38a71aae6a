// folioscope format FILE [--from N] [--to M] [--fragment]
//
// Formats code lines of one module file with CCodeFormat and prints the HTML
// to stdout, bytes as built (Windows-1252). Without --fragment the output is
// a full HTML document, with it the form used for code examples. The lines
// are numbered as the source model numbers a module's code lines (the file
// header and Attribute lines are not code lines); --to 0 means "up to the
// line before the last", as for the formatter itself.
#include <cstdio>
#include <string>
#include <string_view>

#include "cli/host.h"
#include "format/code_format.h"
#include "infra/file_system.h"
#include "infra/vb_runtime.h"
#include "model/source_model.h"
#include "model/vb6_module_file.h"

namespace folioscope {
namespace {

struct FormatOptions {
  std::string file;
  int32_t from = 1;
  int32_t to = -1;  // -1: the last line
  bool fragment = false;
};

// The module's code lines, keyed 1..n, as the source model shows them.
void ReadModuleCodeLines(const std::string& path, vb::Dictionary& code_lines) {
  ModuleFile file = SplitModuleFile(ReadFileText(NativePath(path)));
  int32_t key = 0;
  for (const CodeLine& line : file.code_lines) code_lines.Add(++key, line.text);
}

void RunFormat(Host& host, const FormatOptions& options) {
  if (!host.Start()) return;
  SourceModule module;
  try {
    ReadModuleCodeLines(options.file, module.CodeLines);
  } catch (const vb::RuntimeError& e) {
    host.Fail(kExitUsage, options.file + ": " + e.description());
    return;
  }
  const int32_t count = module.CodeLines.Count();
  int32_t start = options.from;
  int32_t end = options.to < 0 ? count : options.to;
  if (start < 0 || start > count || end > count) {
    host.Fail(kExitUsage, "--from and --to must lie between 0 and " + vb::CStr(count) + ".");
    return;
  }
  CCodeFormat format;
  if (options.fragment) {
    SourceMember member;
    member.Name = module.Name;
    member.CodeLines = module.CodeLines;
    bool full_document = false;
    format.ExecuteMember(member, start, end, full_document);
  } else {
    format.ExecuteModule(module, start, end);
  }
  const std::string& html = format.FormatedCode();
  std::fwrite(html.data(), 1, html.size(), stdout);
  std::fflush(stdout);
}

void Setup(CLI::App& app, Host& host) {
  auto options = std::make_shared<FormatOptions>();
  CLI::App* cmd = app.add_subcommand("format", "Formatter HTML of a module file's code lines");
  cmd->add_option("FILE", options->file, "Module file (.bas, .cls, .frm, .ctl, ...)")->required();
  cmd->add_option("--from", options->from, "First code line (default 1)");
  cmd->add_option("--to", options->to, "Last code line (default: the last line)");
  cmd->add_flag("--fragment", options->fragment, "Member form instead of a full HTML document");
  cmd->callback([&host, options] { RunFormat(host, *options); });
}

CommandRegistration reg(&Setup);

}  // namespace
}  // namespace folioscope
