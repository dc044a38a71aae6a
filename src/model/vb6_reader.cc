#include "model/vb6_reader.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <thread>
#include <vector>

#include "infra/file_system.h"
#include "infra/os_path.h"
#include "infra/platform.h"
#include "infra/vb_runtime.h"
#include "model/module_kinds.h"
#include "model/vb6_declaration.h"
#include "model/vb6_members.h"
#include "model/vb6_module_file.h"

namespace folioscope {
namespace {

// A module line of the .vbp.
struct ProjectEntry {
  std::string kind;           // component kind text
  std::string name;           // name written before ';', else empty
  std::string relative_path;  // as written
  int32_t line = 0;
};

struct ProjectFile {
  std::string name;
  std::string major = "0";
  std::string minor = "0";
  std::string revision = "0";
  std::vector<ProjectEntry> entries;
};

std::string Unquote(const std::string& value) {
  if (value.size() >= 2 && value.front() == '"' && value.back() == '"') {
    return value.substr(1, value.size() - 2);
  }
  return value;
}

std::string VersionPart(const std::string& value) {
  double number = 0;
  if (!vb::IsNumeric(value, &number) || number < 0 || number > 2147483647.0) return "0";
  return vb::CStr(static_cast<int64_t>(number));
}

ProjectFile ParseProjectFile(const std::string& bytes) {
  ProjectFile project;
  int32_t line_number = 0;
  for (const std::string& raw : PhysicalLines(bytes)) {
    ++line_number;
    const std::string line = vb::Trim(raw);
    if (!line.empty() && line.front() == '[') break;  // add-in sections follow
    const size_t equals = line.find('=');
    if (equals == std::string::npos) continue;
    const std::string key = vb::UCase(vb::Trim(line.substr(0, equals)));
    const std::string value = vb::Trim(line.substr(equals + 1));
    if (key == "NAME") {
      project.name = Unquote(value);
    } else if (key == "MAJORVER") {
      project.major = VersionPart(value);
    } else if (key == "MINORVER") {
      project.minor = VersionPart(value);
    } else if (key == "REVISIONVER") {
      project.revision = VersionPart(value);
    } else if (const std::optional<ModuleKind> kind = ModuleKindOfProjectKey(key)) {
      ProjectEntry entry{ModuleKindText(*kind), "", value, line_number};
      const size_t semicolon = value.find(';');
      if (semicolon != std::string::npos) {
        entry.name = vb::Trim(value.substr(0, semicolon));
        entry.relative_path = vb::Trim(value.substr(semicolon + 1));
      }
      project.entries.push_back(entry);
    }
  }
  return project;
}

// "sub\\Name.cls" -> "Name".
std::string FileStem(const std::string& relative_path) {
  std::string native = relative_path;
  vb::ReplaceAll(native, "\\", "/");
  return PathStem(native);
}

bool ReadBytes(const std::string& path, std::string* bytes) {
  if (!IsPlainFile(path)) return false;
  try {
    *bytes = ReadFileText(path);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

std::string FolderOf(const std::string& path) {
  const std::string parent = ParentFolder(path);
  return parent.empty() ? std::string(".") : parent;
}

}  // namespace

std::string ReaderDiagnostic::ToText() const {
  const char* level = severity == DiagnosticSeverity::kError ? "error" : "warning";
  const std::string where = line > 0 ? file + "(" + vb::CStr(line) + ")" : file;
  return where + ": " + level + ": " + text;
}

std::string ResolvePathCaseInsensitively(const std::string& folder, const std::string& path) {
  std::string native = path;
  vb::ReplaceAll(native, "\\", "/");
  std::string resolved = (!native.empty() && native.front() == '/') ? "/" : folder;
  for (const std::string& part : vb::Split(native, "/")) {
    if (part.empty() || part == ".") continue;
    std::string candidate = JoinPath(resolved, part);
    if (part != ".." && !PathExists(candidate)) {
      // LCase folds the Windows-1252 letters too, so an umlaut written in
      // the other case still matches, as on Windows.
      const std::string wanted = vb::LCase(part);
      for (const FolderEntry& entry : CurrentPlatform().ListFolder(resolved)) {
        if (vb::LCase(entry.name) == wanted) {
          candidate = JoinPath(resolved, entry.name);
          break;
        }
      }
    }
    resolved = candidate;
  }
  return resolved;
}

ModuleReadResult ReadModuleFile(const std::string& path, const std::string& kind,
                                const std::string& name) {
  (void)kind;  // every kind shares one layout: hidden header, then code
  ModuleReadResult result;
  std::string bytes;
  if (!ReadBytes(path, &bytes)) {
    result.diagnostics.push_back(
        {path, 0, DiagnosticSeverity::kError, "Datei kann nicht gelesen werden."});
    return result;
  }
  ModuleFile file = SplitModuleFile(bytes);
  std::string().swap(bytes);  // the lines hold the text from here on
  if (file.unclosed_begin_line > 0) {
    result.diagnostics.push_back({path, file.unclosed_begin_line, DiagnosticSeverity::kWarning,
                                  "Begin-Block ohne End, der Code danach wird nicht gelesen."});
  }
  result.vb_name = file.vb_name;
  auto module = std::make_unique<SourceModule>();
  module->Name = file.vb_name.empty() ? name : file.vb_name;
  if (module->Name.empty()) module->Name = FileStem(path);
  if (!IsValidIdentifier(module->Name)) {
    result.diagnostics.push_back(
        {path, 0, DiagnosticSeverity::kError, "Ung\xFCltiger Modulname: \"" + module->Name + "\""});
    return result;
  }
  module->Description = file.description;
  module->HelpContextId = file.help_context_id;
  BuildModuleCode(file, path, module.get(), &result.diagnostics);
  result.module = std::move(module);
  return result;
}

namespace {

// One module line of the .vbp on its way into the project.
struct ModuleToRead {
  const ProjectEntry* entry = nullptr;
  std::string full_path;
  std::string refusal;  // why the file is not read; empty when it is
  ModuleReadResult read;
  std::exception_ptr failure;  // what escaped the reader, passed on in order
};

// Reads every module that is not refused, on up to four threads: each
// module file is read on its own, and a large project spends a good part
// of a report run here.
void ReadModulesSideBySide(std::vector<ModuleToRead>& modules) {
  std::atomic<size_t> next{0};
  auto work = [&] {
    for (size_t k = next++; k < modules.size(); k = next++) {
      ModuleToRead& m = modules[k];
      if (!m.refusal.empty()) continue;
      try {
        const ProjectEntry& e = *m.entry;
        m.read = ReadModuleFile(m.full_path, e.kind,
                                e.name.empty() ? FileStem(e.relative_path) : e.name);
      } catch (...) {
        m.failure = std::current_exception();
      }
    }
  };
  const size_t cores = std::max(1u, std::thread::hardware_concurrency());
  const size_t helpers = std::min<size_t>({cores, 4, modules.size() / 2 + 1}) - 1;
  std::vector<std::thread> threads;
  for (size_t t = 0; t < helpers; ++t) {
    try {
      threads.emplace_back(work);
    } catch (const std::system_error&) {
      break;  // fewer threads, same result
    }
  }
  work();
  for (std::thread& t : threads) t.join();
}

// The module lines of the project file `path`, each with its file resolved
// in the project's folder, or with the reason it is not read: the file is
// missing, or it is the project file itself.
std::vector<ModuleToRead> CheckModuleEntries(const ProjectFile& file, const std::string& path) {
  const std::string folder = FolderOf(path);
  std::vector<ModuleToRead> modules(file.entries.size());
  for (size_t k = 0; k < file.entries.size(); ++k) {
    const ProjectEntry& entry = file.entries[k];
    ModuleToRead& m = modules[k];
    m.entry = &entry;
    m.full_path = ResolvePathCaseInsensitively(folder, entry.relative_path);
    if (!IsPlainFile(m.full_path)) {
      m.refusal =
          "Moduldatei nicht gefunden, \xFC"
          "bersprungen: " +
          entry.relative_path;
    } else if (IsSameFile(m.full_path, path)) {
      m.refusal =
          "Die Projektdatei ist als Modul eingetragen, \xFC"
          "bersprungen: " +
          entry.relative_path;
    }
  }
  return modules;
}

// Puts one module line's outcome into `project`: the refusal or the
// reader's diagnostics, then the module with its component entry unless its
// name is taken. A fault the reader raised is raised again here.
void AddModule(ModuleToRead& m, const std::string& path, SourceProject& project,
               Diagnostics& diagnostics) {
  const ProjectEntry& entry = *m.entry;
  if (!m.refusal.empty()) {
    diagnostics.push_back({path, entry.line, DiagnosticSeverity::kWarning, m.refusal});
    return;
  }
  if (m.failure) std::rethrow_exception(m.failure);
  ModuleReadResult& read = m.read;
  diagnostics.insert(diagnostics.end(), read.diagnostics.begin(), read.diagnostics.end());
  if (!read.module) return;
  const std::string module_name = read.module->Name;
  if (project.Modules.Exists(module_name)) {
    diagnostics.push_back(
        {path, entry.line, DiagnosticSeverity::kError, "Modul doppelt vorhanden: " + module_name});
    return;
  }
  auto component = std::make_unique<SourceComponent>();
  component->Name = module_name;
  component->Kind = entry.kind;
  component->RelativePath = entry.relative_path;
  component->FilePath = m.full_path;
  project.Components.Add(std::move(component), module_name);
  project.Modules.Add(std::move(read.module), module_name);
}

}  // namespace

ProjectReadResult ReadProject(const std::string& path) {
  ProjectReadResult result;
  std::string bytes;
  if (!ReadBytes(path, &bytes)) {
    result.diagnostics.push_back(
        {path, 0, DiagnosticSeverity::kError, "Projektdatei kann nicht gelesen werden."});
    return result;
  }
  const ProjectFile file = ParseProjectFile(bytes);
  auto project = std::make_unique<SourceProject>();
  project->Name = file.name;
  project->Version = file.major + "." + file.minor + "." + file.revision;
  project->FilePath = path;

  // First the entries are checked in order, then the module files are read
  // side by side, then everything is put together in the order of the
  // entries, so diagnostics and modules come out as a reading one by one
  // would give them.
  std::vector<ModuleToRead> modules = CheckModuleEntries(file, path);
  ReadModulesSideBySide(modules);
  for (ModuleToRead& m : modules) AddModule(m, path, *project, result.diagnostics);
  result.project = std::move(project);
  return result;
}

}  // namespace folioscope
