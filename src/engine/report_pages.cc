// The page writers of the report object and its three previews. The texts
// come from the page builders; here they are written, announced to the
// progress channel and entered in the help project, and each procedure
// traps its own faults.
#include <string>
#include <utility>

#include "chm/chm_project_files.h"
#include "engine/folioscope.h"
#include "infra/error_handler.h"
#include "infra/fs_communicator.h"
#include "infra/platform.h"
#include "infra/vb_runtime.h"
#include "pages/component_menu.h"
#include "pages/frame_pages.h"
#include "pages/member_page.h"
#include "pages/module_page.h"
#include "pages/object_required.h"
#include "pages/page_file_guard.h"
#include "pages/page_names.h"
#include "pages/project_page.h"
#include "pages/template_fill.h"

namespace folioscope {

std::string CFolioscope::GetProjektSite() {
  std::string result;
  Trap(kClass, "GetProjektSite", [&] {
    CheckOfReady();
    if (!ready_) return;
    SourceProject& project = RequireProject(Projekt);
    CRessource& res = RequireResources(resources_.get());
    ModuleCounts counts;
    for (int32_t i = 1; i <= project.Modules.Count(); ++i) CountModuleAt(counts, project, i);
    // The preview shows the lines only when the switch is exactly 1.
    result =
        ProjectPageText(res, project, counts, settings_.ShowLOCForProjects == 1, report_set_path_);
  });
  return result;
}

int32_t CFolioscope::WriteProjekt(int32_t SaveMode) {
  Trap(kClass, "WriteProjekt", [&] {
    CurrentPlatform().PumpMessages();
    SourceProject& project = RequireProject(Projekt);
    if (chm_mode_) {
      ListHelpFile(kProjectPageFile);
      chm_toc_text_ += FillTocItem(TocItemTemplate(), project.Name, kProjectPageFile);
      chm_toc_text_ += "<ul>";
    }
    const int32_t count = project.Modules.Count();
    // One step more than modules: the project page itself.
    progress_total_ = vb::AddLong(count, 1);
    ReportStart(progress_total_);
    ModuleCounts counts;
    for (int32_t i = 1; i <= count; ++i) {
      SourceModule& module = project.Modules.Item(i);
      ReportWorks(i, module.Name, true);
      CountModuleAt(counts, project, i);
      WriteModulContentSite(module, SaveMode, i);
    }
    // The written page always carries the lines sentence.
    CRessource& res = RequireResources(resources_.get());
    WriteTextFile(PlainPath + kPathSeparatorText + kProjectPageFile,
                  ProjectPageText(res, project, counts, true, ""), false);
  });
  return 0;
}

int32_t CFolioscope::WriteIndex() {
  Trap(kClass, "WriteIndex", [&] {
    CRessource& res = RequireResources(resources_.get());
    const std::string page = IndexPageText(res, RequireProject(Projekt));
    WriteTextFile(PlainPath + kPathSeparatorText + kIndexPageFile, page, false);
    if (chm_mode_) ListHelpFile(kIndexPageFile);
  });
  return 0;
}

int32_t CFolioscope::WriteLogo() {
  Trap(kClass, "WriteLogo", [&] {
    const std::string page =
        LogoPageText(RequireResources(resources_.get()), settings_.ReportStdTitle);
    // The logo page is not part of the help project's file list.
    WriteTextFile(PlainPath + kPathSeparatorText + kLogoPageFile, page, false);
  });
  return 0;
}

int32_t CFolioscope::WriteComponentMenu() {
  Trap(kClass, "WriteComponentMenu", [&] {
    CRessource& res = RequireResources(resources_.get());
    const std::string menu = ComponentMenuText(res, RequireProject(Projekt));
    WriteTextFile(PlainPath + kPathSeparatorText + kMenuPageFile, menu, false);
    if (chm_mode_) ListHelpFile(kMenuPageFile);
  });
  return 0;
}

std::string CFolioscope::GetModulContentSite(const std::string& ModulName) {
  std::string result;
  Trap(kClass, "GetModulContentSite", [&] {
    CheckOfReady();
    if (!ready_) return;
    SourceProject& project = RequireProject(Projekt);
    CRessource& res = RequireResources(resources_.get());
    SourceModule& module = project.Modules.Item(ModulName);
    const ModuleSwitches sw = ModuleSwitchesOf(settings_);
    ReportContext context = Context(PagePrefix());
    context.search_index = nullptr;  // a preview is no page of the save
    std::string foot;
    std::string page = ModulePageHead(context, module, sw, foot);
    for (int32_t i : ListedMemberIndexes(module, sw)) {
      page += GetMemberForModuleContent(i, ModulName, false);
    }
    result = page + ModulePageFoot(res, module, foot);
  });
  return result;
}

int32_t CFolioscope::WriteModulContentSite(SourceModule& Module, int32_t save_mode,
                                           int32_t Position) {
  Trap(kClass, "WriteModulContentSite", [&] {
    CurrentPlatform().PumpMessages();
    RequireProject(Projekt);
    CRessource& res = RequireResources(resources_.get());
    const std::string module_file = ModulePageFileName(Module.Name);
    if (!MayWritePage(module_file, Projekt, Module.Name, nullptr)) return;
    if (chm_mode_) ListModulePage(Module, module_file, save_mode, Position);
    // Settings as they stand now: each member page re-runs the readiness
    // check, which re-reads them when they may have changed.
    const ModuleSwitches sw = ModuleSwitchesOf(settings_);
    std::string foot;
    std::string page = ModulePageHead(Context(""), Module, sw, foot);
    for (int32_t i : ListedMemberIndexes(Module, sw)) {
      SourceMember& member = Module.Members.Item(i);
      page += LinkedMemberLine(GetMemberForModuleContent(i, Module.Name, true), Module.Name,
                               member.Name, chm_mode_);
      WriteMemberContentSite(member, Module.Name, false);
    }
    page += ModulePageFoot(res, Module, foot);
    WritePageFile("WriteModulContentSite", PlainPath + kPathSeparatorText + module_file,
                  std::move(page), false);
  });
  return 0;
}

// A module's contents entry opens the list of its members; a one-module
// save opens a list of its own first, and in a whole-project save every
// module after the first closes the list of the one before.
void CFolioscope::ListModulePage(const SourceModule& Module, const std::string& module_file,
                                 int32_t save_mode, int32_t Position) {
  ListHelpFile(module_file);
  std::string item = TocItemTemplate();
  if (static_cast<SaveMode>(save_mode) != SaveMode::kWholeProject) {
    item = "<ul>" + item;
  } else if (Position != 1) {
    item = "</ul>" + item;
  }
  chm_toc_text_ += FillTocItem(item, Module.Name, module_file);
  chm_toc_text_ += "<ul>";
}

std::string CFolioscope::GetMemberForModuleContent(int32_t MemberIndex,
                                                   const std::string& ModulName, bool Link) {
  std::string line;
  Trap(kClass, "GetMemberForModuleContent",
       [&] { line = MemberLineText(Context(""), ModulName, MemberIndex, Link); });
  return line;
}

std::string CFolioscope::GetMemberContentSite(SourceMember& MemberContent,
                                              const std::string& ProjektName,
                                              const std::string& ModulName) {
  return MemberContentSite(MemberContent, ProjektName, ModulName, false);
}

std::string CFolioscope::MemberContentSite(SourceMember& MemberContent,
                                           const std::string& ProjektName,
                                           const std::string& ModulName, bool page_of_save) {
  std::string result;
  Trap(kClass, "GetMemberContentSite", [&] {
    if (page_of_save) {
      CheckOfReadyForPage();
    } else {
      CheckOfReady();
    }
    if (!ready_) return;
    CurrentPlatform().PumpMessages();
    result = MemberPageText(Context(PagePrefix()), MemberContent, ProjektName, ModulName);
  });
  return result;
}

int32_t CFolioscope::WriteMemberContentSite(SourceMember& Member, const std::string& ModulName,
                                            bool Append) {
  Trap(kClass, "WriteMemberContentSite", [&] {
    CurrentPlatform().PumpMessages();
    const std::string file_name = MemberPageFileName(ModulName, Member.Name);
    if (!MayWritePage(file_name, Projekt, ModulName, &Member)) return;
    std::string page = MemberContentSite(Member, ProjektName, ModulName, true);
    if (chm_mode_) {
      chm_toc_text_ += FillTocItem(TocItemTemplate(), Member.Name, file_name);
      chm_toc_text_ += "\r\n";
    }
    WritePageFile("WriteMemberContentSite", PlainPath + kPathSeparatorText + file_name,
                  std::move(page), Append);
  });
  return 0;
}

}  // namespace folioscope
