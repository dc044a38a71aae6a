#include "pages/module_page.h"

#include <optional>
#include <string>

#include "doccomments/tag_readers.h"
#include "infra/path_guard.h"
#include "infra/vb_runtime.h"
#include "model/module_kinds.h"
#include "pages/object_required.h"
#include "pages/page_names.h"
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

// "label value" for a switched-on fact, "" for a switched-off one.
std::string LabelledFact(CRessource& res, const char* key, bool on, const std::string& value) {
  if (!on) return "";
  return LanguageText(res, key) + " " + value;
}

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

// How often the member list shows a member of this scope.
int32_t ListingsFor(const std::string& scope, const ModuleSwitches& sw) {
  int32_t n = 0;
  if (scope == kScopePublic && sw.public_members == 1) ++n;
  if (scope == kScopeFriend && sw.friend_members == 1) ++n;
  if (scope == kScopePrivate && sw.private_members == 1) ++n;
  return n;
}

}  // namespace

ModuleSwitches ModuleSwitchesOf(const ReportSettings& settings) {
  return {settings.ShowModulePath,          settings.ShowModuleRelativePath,
          settings.ShowLOCForModuls,        settings.ShowHelpContextID,
          settings.ShowVBInternDescription, settings.ToolBarPublicValue,
          settings.ToolBarFriendValue,      settings.ToolBarPrivateValue};
}

std::string ModulePageHead(const ReportContext& context, SourceModule& module,
                           const ModuleSwitches& sw, std::string& foot) {
  return BuildHead(RequireResources(context.resources), RequireProject(context.project), module, sw,
                   context.file_prefix, foot, context.search_index);
}

std::vector<int32_t> ListedMemberIndexes(SourceModule& module, const ModuleSwitches& sw) {
  std::vector<int32_t> indexes;
  const int32_t count = module.Members.Count();
  for (int32_t i = 1; i <= count; i = vb::AddLong(i, 1)) {
    const int32_t listings = ListingsFor(module.Members.Item(i).Scope, sw);
    for (int32_t n = 0; n < listings; ++n) indexes.push_back(i);
  }
  return indexes;
}

std::string MemberLineText(const ReportContext& context, const std::string& module_name,
                           int32_t index, bool link) {
  CSummary summary;
  CRessource& res = RequireResources(context.resources);
  SourceMember& member =
      RequireProject(context.project).Modules.Item(module_name).Members.Item(index);
  std::string text = res.ModulInhaltMitte();
  // Member lines refer to member pages, never to report-set files: no
  // prefix here.
  FillPlaceHolders(text, res, "");
  if (!link) {
    vb::ReplaceAll(text, "&&&FS_ModulInhaltMitte_TargetFrameName&&&", "");
    vb::ReplaceAll(text, "&&&FS_ModulInhaltMitte_MemberDateiName_File&&&", member.Name);
  }
  vb::ReplaceAll(text, "&&&FS_ModulInhaltMitte_MemberName&&&", vb::Trim(member.Name));
  summary.GetSummary(member);
  vb::ReplaceAll(text, "&&&FS_ModulInhaltMitte_MemberSummary&&&", summary.SumaryContent());
  vb::ReplaceAll(text, "&&&FS_ModulInhaltMitte_Einfuegung&&&",
                 summary.SumaryContent().empty() ? "" : "<br><br>");
  if (link && context.search_index != nullptr &&
      IsSafeFileName(MemberPageFileName(module_name, member.Name))) {
    context.search_index->AddMember(member.Name, member.Kind, summary.SumaryContent());
  }
  return text;
}

std::string LinkedMemberLine(std::string line, const std::string& module_name,
                             const std::string& member_name, bool chm_mode) {
  vb::ReplaceAll(line, "&&&FS_ModulInhaltMitte_MemberDateiName_File&&&",
                 MemberPageFileName(module_name, member_name));
  vb::ReplaceAll(line, "&&&FS_ModulInhaltMitte_TargetFrameName&&&",
                 chm_mode ? "" : " TARGET = 'FrameRechts'");
  return line;
}

std::string ModulePageFoot(CRessource& res, SourceModule& module, std::string foot) {
  CRemarks remarks;
  remarks.GetRemarks(module.Members.Item(1));
  const char* heading_key = "&&&FS_ModulInhaltUnten_RemarksUeberschrift&&&";
  vb::ReplaceAll(foot, heading_key, LanguageText(res, heading_key));
  vb::ReplaceAll(foot, "&&&FS_ModulInhaltUnten_Remarks&&&", remarks.RemarksContent());
  return foot;
}

}  // namespace folioscope
