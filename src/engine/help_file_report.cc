// The help-file build: SaveCHMReportSystem writes the web report in its
// help-file form, the help project files and compile.bat, runs the help
// compiler, reports the outcome and clears the intermediate files away
// (chm/compile_run.h says which).
#include <string>
#include <vector>

#include "chm/chm_project_files.h"
#include "chm/compile_run.h"
#include "engine/folioscope.h"
#include "infra/error_handler.h"
#include "infra/fs_communicator.h"
#include "infra/path_guard.h"
#include "infra/platform.h"
#include "pages/object_required.h"

namespace folioscope {

namespace {

const char kMissingCompiler[] =
    "hhc.exe wurde nicht gefunden. Der CHM-Report kann nicht kompiliert werden.";

std::string InFolder(const std::string& folder, const std::string& name) {
  return folder + kPathSeparatorText + name;
}

}  // namespace

int32_t CFolioscope::SaveCHMReportSystem(int32_t SaveMode) {
  Trap(kClass, "SaveCHMReportSystem", [&] {
    CheckOfReady();
    if (!ready_) return;
    chm_mode_ = true;
    chm_file_list_ = "[FILES]\r\n";
    chm_toc_text_.clear();
    written_files_.clear();
    SaveReport(SaveMode);
    // Like the web report, no output folder or no project writes nothing.
    if (PlainPath.empty() || Projekt == nullptr) return;
    const auto mode = static_cast<folioscope::SaveMode>(SaveMode);
    CreateCHMProjektFile(mode);
    CreateCHMMapAndAlias(mode);
    CreateCHMTableOfContens(mode);
    const std::string folder = PlainPath;
    if (!HelpCompilerPresent()) {
      AddLog(InFolder(CurrentPlatform().ApplicationFolder(), kMissingCompiler), kIconFailure);
      return;
    }
    const std::string name = RequireProject(Projekt).Name;
    if (!IsSafeFileName(name + ".chm")) {
      AddLog(RefusedHelpFileMessage(name), kIconFailure);
      return;
    }
    ReportWorks(progress_total_, "Compilieren der CHM-Datei...", false);
    AddLog("CHM-Datei wird vorbereitet und kompiliert.", kIconProgress);
    RunHelpCompiler(folder);
    if (file_system_->IsDateiVorhanden(InFolder(folder, name + ".chm"))) {
      AddLog(name + " CHM-Kommentarreport wurde erfolgreich erstellt.", kIconProgress);
    } else {
      AddLog(name + " CHM-Kommentarreport konnte nicht erfolgreich kompiliert werden.",
             kIconFailure);
    }
    CurrentPlatform().PumpMessages();
    DeleteCompileFiles(folder);
  });
  // Help-file mode lasts for this run only: a later SaveReport writes a
  // plain web report.
  chm_mode_ = false;
  return 0;
}

int32_t CFolioscope::CreateCHMTableOfContens(SaveMode Mode) {
  Trap(kClass, "CreateCHMTableOfContens", [&] {
    WriteTextFile(InFolder(PlainPath, kChmContentsFile), ContentsFileText(chm_toc_text_, Mode),
                  false);
  });
  return 0;
}

int32_t CFolioscope::CreateCHMProjektFile(SaveMode Mode) {
  Trap(kClass, "CreateCHMProjektFile", [&] {
    const std::string text = ProjectFileText(RequireProject(Projekt), Mode, ModuleName, MemberName,
                                             settings_.CHMReportTitle, chm_file_list_);
    WriteTextFile(InFolder(PlainPath, kChmProjectFile), text, false);
  });
  return 0;
}

int32_t CFolioscope::CreateCHMMapAndAlias(SaveMode Mode) {
  Trap(kClass, "CreateCHMMapAndAlias", [&] {
    const std::vector<HelpTopic> topics = TopicsOfSave(RequireProject(Projekt), Mode, ModuleName,
                                                       MemberName, ListedScopesOf(settings_));
    WriteTextFile(InFolder(PlainPath, kChmMapFile), MapFileText(topics), false);
    WriteTextFile(InFolder(PlainPath, kChmAliasFile), AliasFileText(topics), false);
  });
  return 0;
}

void CFolioscope::RunHelpCompiler(const std::string& folder) {
  const std::string batch = InFolder(folder, "compile.bat");
  WriteTextFile(batch, CompileBatchText(folder), false);
  const HelpCompilerRun run = PlanHelpCompilerRun(folder, batch);
  if (!run.derived_name.empty()) {
    WriteTextFile(InFolder(folder, run.derived_name), run.derived_text, false);
  }
  RunAndWait(run.command_line, kWindowHidden, true);
  if (!run.derived_name.empty()) DeleteWrittenFiles(written_files_, folder, run.derived_name);
}

void CFolioscope::DeleteCompileFiles(const std::string& folder) {
  if (settings_.DelFilesAfterCHMCompiling == 1) {
    for (const char* pattern : kIntermediatePatterns) {
      DeleteWrittenFiles(written_files_, folder, pattern);
    }
  }
  DeleteWrittenFiles(written_files_, folder, "compile.bat");
  DeleteWrittenFiles(written_files_, folder, "hhc.exe");
}

int32_t CFolioscope::RunAndWait(const std::string& CommandLine, int32_t WindowStyle,
                                bool DoEventsWhileWaiting) {
  int32_t exit_code = 0;
  Trap(kClass, "RunAndWait", [&] {
    exit_code = CurrentPlatform().RunAndWait(ShellCommand(CommandLine, WindowStyle), PlainPath,
                                             DoEventsWhileWaiting);
  });
  return exit_code;
}

}  // namespace folioscope
