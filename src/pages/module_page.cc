// The module page: a head with the module's kind, name, optional file facts
// and summary, one line per listed member, and a foot with the remarks.
// GetModulContentSite builds it for a preview; WriteModulContentSite writes
// it during a save together with the pages of the members it lists.
//
// The module summary and remarks are the blocks of member 1, the
// declarations section.
#include <functional>
#include <string>

#include "chm/help_topics.h"
#include "doccomments/tag_readers.h"
#include "engine/folioscope.h"
#include "engine/object_required.h"
#include "infra/error_handler.h"
#include "infra/path_guard.h"
#include "infra/platform.h"
#include "infra/vb_runtime.h"
#include "model/module_kinds.h"
#include "pages/page_file_guard.h"
#include "pages/search_index.h"
#include "pages/template_fill.h"

namespace folioscope {

namespace {

// The language key naming a module kind; kinds compare exactly, and an
// unknown kind has no text.
const char* KindTextKey(const std::string& kind) {
  const std::optional<ModuleKind> known = ModuleKindOfText(kind);
  if (!known) return nullptr;
  switch (*known) {
    case ModuleKind::kModule:
      return "&&&FS_ModulInhaltOben_StdModul&&&";
    case ModuleKind::kClass:
      return "&&&FS_ModulInhaltOben_CModul&&&";
    case ModuleKind::kForm:
      return "&&&FS_ModulInhaltOben_Form&&&";
    case ModuleKind::kUserControl:
      return "&&&FS_ModulInhaltOben_UserControl&&&";
    case ModuleKind::kPropertyPage:
      return "&&&FS_ModulInhaltOben_PropertyPage&&&";
    case ModuleKind::kDesigner:
      return "&&&FS_ModulInhaltOben_Designer&&&";
    case ModuleKind::kUserDocument:
      break;  // no text of its own
  }
  return nullptr;
}

// The switches the module page reads. Some count as on at exactly 1,
// others at any positive value; each test below keeps its own rule.
struct ModuleSwitches {
  int32_t module_path;
  int32_t relative_path;
  int32_t lines;
  int32_t help_context;
  int32_t intern_description;
  int32_t public_members;
  int32_t friend_members;
  int32_t private_members;
};

// "label value" for a switched-on fact, "" for a switched-off one.
std::string LabelledFact(CRessource& res, const char* key, bool on, const std::string& value) {
  if (!on) return "";
  return LanguageText(res, key) + " " + value;
}

// The filled head; `foot` receives the foot template with the report-set
// values already in place. The module goes into `index` when there is one.
std::string BuildHead(CRessource& res, SourceProject& project, SourceModule& module,
                      const ModuleSwitches& sw, const std::string& file_prefix, std::string& foot,
                      SearchIndex* index) {
  CSummary summary;
  const SourceComponent& component = project.Components.Item(module.Name);
  const char* kind_key = KindTextKey(component.Kind);
  const std::string kind_text = kind_key != nullptr ? LanguageText(res, kind_key) : "";

  std::string head = res.ModulInhaltOben();
  foot = res.ModulInhaltUnten();
  FillPlaceHolders(head, res, file_prefix);
  FillPlaceHolders(foot, res, file_prefix);

  vb::ReplaceAll(head, "&&&FS_ModulInhaltOben_RelativePath&&&",
                 LabelledFact(res, "&&&FS_ModulInhaltOben_RelativePath&&&", sw.relative_path > 0,
                              component.RelativePath));
  vb::ReplaceAll(head, "&&&FS_ModulInhaltOben_InternDescription&&&",
                 sw.intern_description > 0 ? module.Description : "");
  vb::ReplaceAll(head, "&&&FS_ModulInhaltOben_HelpKontextID&&&",
                 LabelledFact(res, "&&&FS_ModulInhaltOben_HelpKontextID&&&", sw.help_context > 0,
                              vb::CStr(module.HelpContextId)));
  const std::string lines = LabelledFact(res, "&&&FS_ModulInhaltOben_ModuleLines&&&", sw.lines == 1,
                                         vb::CStr(module.CodeLines.Count()));
  const std::string file_path = LabelledFact(res, "&&&FS_ModulInhaltOben_ModuleFilePath&&&",
                                             sw.module_path == 1, component.FilePath);
  vb::ReplaceAll(head, "&&&FS_ModulInhaltOben_ModuleLines&&&", lines);
  vb::ReplaceAll(head, "&&&FS_ModulInhaltOben_ModuleFilePath&&&", file_path);

  vb::ReplaceAll(head, "&&&FS_ModulInhaltOben_AnwendungsName&&&", project.Name);
  vb::ReplaceAll(head, "&&&FS_ModulInhaltOben_KlassenName&&&", vb::Trim(module.Name));
  vb::ReplaceAll(head, "&&&FS_ModulInhaltOben_ModulBeschreibung&&&", vb::Trim(kind_text));
  vb::ReplaceAll(head, "&&&FS_ModuleInhaltOben_ModuleTitle&&&", vb::Trim(module.Name));
  FillSpecificLanguage(head, res);

  summary.GetSummary(module.Members.Item(1));
  vb::ReplaceAll(head, "&&&FS_ModulInhaltOben_ModuleSummary&&&", summary.SumaryContent());
  if (index != nullptr) index->AddModule(module.Name, component.Kind, summary.SumaryContent());
  return head;
}

// Whether the member list shows a member of this scope. The three tests are
// separate on purpose: the list keeps source order, filtered, not grouped.
int32_t ListingsFor(const std::string& scope, const ModuleSwitches& sw) {
  int32_t n = 0;
  if (scope == kScopePublic && sw.public_members == 1) ++n;
  if (scope == kScopeFriend && sw.friend_members == 1) ++n;
  if (scope == kScopePrivate && sw.private_members == 1) ++n;
  return n;
}

// Walks the members in collection order and calls `add_line` for each
// listed one.
void ForEachListedMember(SourceModule& module, const ModuleSwitches& sw,
                         const std::function<void(int32_t)>& add_line) {
  const int32_t count = module.Members.Count();
  for (int32_t i = 1; i <= count; i = vb::AddLong(i, 1)) {
    const int32_t listings = ListingsFor(module.Members.Item(i).Scope, sw);
    for (int32_t n = 0; n < listings; ++n) add_line(i);
  }
}

// The filled foot: the remarks of the declarations section under their
// heading, which is filled even when there are no remarks.
std::string FinishFoot(CRessource& res, SourceModule& module, std::string foot) {
  CRemarks remarks;
  remarks.GetRemarks(module.Members.Item(1));
  const char* heading_key = "&&&FS_ModulInhaltUnten_RemarksUeberschrift&&&";
  vb::ReplaceAll(foot, heading_key, LanguageText(res, heading_key));
  vb::ReplaceAll(foot, "&&&FS_ModulInhaltUnten_Remarks&&&", remarks.RemarksContent());
  return foot;
}

}  // namespace

std::string CFolioscope::GetModulContentSite(const std::string& ModulName) {
  std::string result;
  Trap(kClass, "GetModulContentSite", [&] {
    CheckOfReady();
    if (!ready_) return;
    SourceProject& project = RequireProject(Projekt);
    CRessource& res = RequireResources(resources_);
    SourceModule& module = project.Modules.Item(ModulName);
    const ModuleSwitches sw{ShowModulePath,     ShowModuleRelativePath,  ShowLOCForModuls,
                            ShowHelpContextID,  ShowVBInternDescription, ToolBarPublicValue,
                            ToolBarFriendValue, ToolBarPrivateValue};
    std::string foot;
    std::string page =
        BuildHead(res, project, module, sw,
                  ResourceFilePrefix(save_mode_, chm_mode_, report_set_path_), foot, nullptr);
    ForEachListedMember(module, sw,
                        [&](int32_t i) { page += GetMemberForModuleContent(i, ModulName, false); });
    result = page + FinishFoot(res, module, foot);
  });
  return result;
}

int32_t CFolioscope::WriteModulContentSite(SourceModule& Module, int32_t save_mode,
                                           int32_t Position) {
  Trap(kClass, "WriteModulContentSite", [&] {
    CurrentPlatform().PumpMessages();
    SourceProject& project = RequireProject(Projekt);
    CRessource& res = RequireResources(resources_);
    const std::string module_file = ModulePageFileName(Module.Name);
    if (!MayWritePage(module_file, Projekt, Module.Name, nullptr)) return;
    if (chm_mode_) {
      chm_file_list_ += module_file + "\r\n";
      std::string item = GetTOCItem();
      if (static_cast<SaveMode>(save_mode) != SaveMode::kWholeProject) {
        item = "<ul>" + item;
      } else if (Position != 1) {
        item = "</ul>" + item;
      }
      chm_toc_text_ += FillTocItem(item, Module.Name, module_file);
      chm_toc_text_ += "<ul>";
    }
    // Settings as they stand now: each member page re-runs the readiness
    // check, which re-reads them.
    const ModuleSwitches sw{ShowModulePath,     ShowModuleRelativePath,  ShowLOCForModuls,
                            ShowHelpContextID,  ShowVBInternDescription, ToolBarPublicValue,
                            ToolBarFriendValue, ToolBarPrivateValue};
    std::string foot;
    std::string page = BuildHead(res, project, Module, sw, "", foot, search_index_.get());
    ForEachListedMember(Module, sw, [&](int32_t i) {
      SourceMember& member = Module.Members.Item(i);
      std::string line = GetMemberForModuleContent(i, Module.Name, true);
      vb::ReplaceAll(line, "&&&FS_ModulInhaltMitte_MemberDateiName_File&&&",
                     MemberPageFileName(Module.Name, member.Name));
      vb::ReplaceAll(line, "&&&FS_ModulInhaltMitte_TargetFrameName&&&",
                     chm_mode_ ? "" : " TARGET = 'FrameRechts'");
      page += line;
      WriteMemberContentSite(member, Module.Name, false);
    });
    page += FinishFoot(res, Module, foot);
    WritePageFile("WriteModulContentSite", PlainPath + kPathSeparatorText + module_file,
                  std::move(page), false);
  });
  return 0;
}

std::string CFolioscope::GetMemberForModuleContent(int32_t MemberIndex,
                                                   const std::string& ModulName, bool Link) {
  std::string line;
  Trap(kClass, "GetMemberForModuleContent", [&] {
    CSummary summary;
    CRessource& res = RequireResources(resources_);
    SourceMember& member =
        RequireProject(Projekt).Modules.Item(ModulName).Members.Item(MemberIndex);
    std::string text = res.ModulInhaltMitte();
    // Member lines refer to member pages, never to report-set files: no
    // prefix here.
    FillPlaceHolders(text, res, "");
    if (!Link) {
      vb::ReplaceAll(text, "&&&FS_ModulInhaltMitte_TargetFrameName&&&", "");
      vb::ReplaceAll(text, "&&&FS_ModulInhaltMitte_MemberDateiName_File&&&", member.Name);
    }
    vb::ReplaceAll(text, "&&&FS_ModulInhaltMitte_MemberName&&&", vb::Trim(member.Name));
    summary.GetSummary(member);
    vb::ReplaceAll(text, "&&&FS_ModulInhaltMitte_MemberSummary&&&", summary.SumaryContent());
    vb::ReplaceAll(text, "&&&FS_ModulInhaltMitte_Einfuegung&&&",
                   summary.SumaryContent().empty() ? "" : "<br><br>");
    // A line with a link is one whose member page this save writes.
    if (Link && search_index_ != nullptr &&
        IsSafeFileName(MemberPageFileName(ModulName, member.Name))) {
      search_index_->AddMember(member.Name, member.Kind, summary.SumaryContent());
    }
    line = text;
  });
  return line;
}

}  // namespace folioscope
