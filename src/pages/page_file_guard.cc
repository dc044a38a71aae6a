#include "pages/page_file_guard.h"

#include "infra/fs_communicator.h"
#include "infra/path_guard.h"
#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

// The module's source file as the project lists it, or "".
std::string SourceFileOf(const SourceProject* project, const std::string& module_name) {
  if (project == nullptr) return "";
  for (const auto& component : project->Components) {
    if (component->Name == module_name) return component->FilePath;
  }
  return "";
}

// " (Datei F, Zeile N)" with the parts that are known, or "".
std::string WhereText(const std::string& file, int32_t line) {
  std::string where;
  if (!file.empty()) where = "Datei " + PrintableName(file);
  if (line > 0) where += (where.empty() ? "" : ", ") + std::string("Zeile ") + vb::CStr(line);
  return where.empty() ? "" : " (" + where + ")";
}

}  // namespace

bool MayWritePage(const std::string& file_name, const SourceProject* project,
                  const std::string& module_name, const SourceMember* member) {
  if (IsSafeFileName(file_name)) return true;
  std::string page = "Die Seite ";
  if (member != nullptr) page += "des Members '" + PrintableName(member->Name) + "' ";
  page += (member != nullptr ? "im Modul '" : "des Moduls '") + PrintableName(module_name) + "'";
  const int32_t line = member != nullptr ? member->FirstLine : 0;
  AddLog(page + WhereText(SourceFileOf(project, module_name), line) + " wird nicht geschrieben: '" +
             PrintableName(file_name) + "' ist kein zul\xE4ssiger Dateiname.",
         kIconFailure);
  return false;
}

}  // namespace folioscope
