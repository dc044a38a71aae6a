// The member page: kind, scope and name of one member, its syntax line, the
// doc-comment blocks and one table row per parameter. GetMemberContentSite
// builds it, WriteMemberContentSite writes it next to the module pages.
//
// The tag readers run in a fixed order (parameters, summary, example,
// remarks, returns): each scan may add key 0 to the member's code-line
// dictionary, so the order decides what later scans see.
#include <string>

#include "chm/help_topics.h"
#include "doccomments/code_reader.h"
#include "doccomments/param_reader.h"
#include "doccomments/tag_readers.h"
#include "engine/folioscope.h"
#include "engine/object_required.h"
#include "infra/error_handler.h"
#include "infra/platform.h"
#include "infra/vb_runtime.h"
#include "pages/page_file_guard.h"
#include "pages/template_fill.h"

namespace folioscope {

namespace {

constexpr const char* kClass = "CFolioscope";

// The language key of the member's scope word. Scopes compare exactly, in
// the order of the scope codes; anything else is the declarations section.
const char* ScopeWordKey(const std::string& scope) {
  if (scope == kScopePrivate) return "&&&FS_MemberInhaltOben_MemberGueltigkeitPrivate&&&";
  if (scope == kScopeFriend) return "&&&FS_MemberInhaltOben_MemberGueltigkeitFriend&&&";
  if (scope == kScopePublic) return "&&&FS_MemberInhaltOben_MemberGueltigkeitPublic&&&";
  return "&&&FS_MemberInhaltOben_MemberGueltigkeitDeklaration&&&";
}

bool IsAssignmentForm(const std::string& form) { return form == "Set " || form == "Let "; }

// The opening of the syntax line: the name without its four-character
// property form, behind the object placeholder's text for members of
// class-like modules; for a member with parameters the opening of the
// argument list.
std::string SyntaxOpening(CRessource& res, const SourceMember& member, bool class_like) {
  std::string name = member.Name;
  if (!member.PropertyForm.empty()) {
    name = vb::Right(member.Name, static_cast<int64_t>(member.Name.size()) - 4);
  }
  std::string syntax;
  if (class_like) syntax = LanguageText(res, "&&&FS_MemberInhaltOben_SyntaxForObject&&&");
  syntax += name;
  if (member.Parameters.Count() > 0) syntax += IsAssignmentForm(member.PropertyForm) ? " = " : "(";
  return syntax;
}

// The note column: ParamArray, then the default value, else "none".
std::string ParameterNote(CRessource& res, const SourceParameter& p) {
  std::string note;
  if (p.ParamArray) note = LanguageText(res, "&&&FS_MemberInhaltMitte_AnmerkungParamArray&&&");
  if (p.HasDefault) {
    note += LanguageText(res, "&&&FS_MemberInhaltMitte_AnmerkungHasStandardValue&&&") + p.Default;
  }
  if (note.empty()) note = LanguageText(res, "&&&FS_MemberInhaltMitte_AnmerkungKeine&&&");
  return note;
}

// One parameter row: its own six values, then the language texts and the
// report-set values.
std::string ParameterRow(CRessource& res, const SourceParameter& p,
                         const std::string& file_prefix) {
  std::string row = res.MemberInhaltMitte();
  vb::ReplaceAll(row, "&&&FS_MemberInhaltMitte_ParameterName&&&", p.Name + "&nbsp;");
  vb::ReplaceAll(row, "&&&FS_MemberInhaltMitte_ParameterTyp&&&", p.Type);
  vb::ReplaceAll(row, "&&&FS_MemberInhaltMitte_ParameterBeschreibung&&&", p.Description);
  vb::ReplaceAll(row, "&&&FS_MemberInhaltMitte_Erforderlich&&&",
                 LanguageText(res, p.Optional ? "&&&FS_MemberInhaltMitte_ErforderlichNein&&&"
                                              : "&&&FS_MemberInhaltMitte_ErforderlichJa&&&"));
  vb::ReplaceAll(
      row, "&&&FS_MemberInhaltMitte_Uebergabe&&&",
      LanguageText(res, p.Passing == "ByVal" ? "&&&FS_MemberInhaltMitte_UebergabeByVal&&&"
                                             : "&&&FS_MemberInhaltMitte_UebergabeByRef&&&"));
  vb::ReplaceAll(row, "&&&FS_MemberInhaltMitte_ParameterAnmerkung&&&", ParameterNote(res, p));
  FillSpecificLanguage(row, res);
  FillPlaceHolders(row, res, file_prefix);
  return row;
}

}  // namespace

std::string CFolioscope::GetMemberContentSite(SourceMember& MemberContent,
                                              const std::string& ProjektName,
                                              const std::string& ModulName) {
  std::string result;
  Trap(kClass, "GetMemberContentSite", [&] {
    CheckOfReady();
    if (!ready_) return;
    CSummary summary;
    CRemarks remarks;
    CParam params;
    CReturns returns;
    CCode code;
    CurrentPlatform().PumpMessages();
    CRessource& res = RequireResources(resources_);
    SourceMember& member = MemberContent;
    const std::string file_prefix = ResourceFilePrefix(save_mode_, chm_mode_, report_set_path_);
    const bool is_header = member.Name == "Header";
    const bool is_header_any_case = vb::LCase(member.Name) == "header";

    std::string top = res.MemberInhaltOben();
    std::string bottom = res.MemberInhaltUnten();
    params.GetParam(member);

    const std::string scope_word = LanguageText(res, ScopeWordKey(member.Scope));
    const bool class_like = RequireProject(Projekt).Components.Item(ModulName).Kind != "Module";
    std::string syntax = SyntaxOpening(res, member, class_like);

    std::string intern_description;
    if (ShowVBInternDescription > 0) intern_description = member.Description;
    vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_InternDescription&&&", intern_description);
    std::string help_context;
    if (ShowHelpContextID > 0) {
      help_context = LanguageText(res, "&&&FS_MemberInhaltOben_HelpKontextID&&&") + " " +
                     vb::CStr(member.HelpContextId);
    }
    vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_HelpKontextID&&&", help_context);

    FillSpecificLanguage(top, res);
    FillSpecificLanguage(bottom, res);
    FillPlaceHolders(top, res, file_prefix);
    FillPlaceHolders(bottom, res, file_prefix);

    vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_AnwendungsName&&&", ProjektName);
    vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_KlassenName&&&", ModulName);
    vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_Title&&&", member.Name);
    if (is_header) {
      vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_MemberTyp&&&", "");
      vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_MemberName&&&", "");
    } else {
      const std::string kind =
          member.Kind == "OutEvent" ? LanguageText(res, "&&&Allgemein_OutEvent&&&") : member.Kind;
      vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_MemberTyp&&&", kind);
      vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_MemberGueltigkeit&&&", scope_word);
      vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_MemberName&&&", member.Name);
    }

    summary.GetSummary(member);
    vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_MemberSummary&&&", summary.SumaryContent());
    code.SetGetAsPraeformated(true);
    code.GetCode(member);
    vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_ExampleCode&&&", code.CodeContent());
    vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_MemberGueltigkeit&&&", scope_word);
    const std::string return_type = is_header_any_case ? "" : member.ReturnType;
    vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_MemberRueckgabe&&&", return_type);

    std::string rows;
    const int32_t count = member.Parameters.Count();
    for (int32_t i = 1; i <= count; ++i) {
      const SourceParameter& p = member.Parameters.Item(i);
      rows += ParameterRow(res, p, file_prefix);
      syntax += p.Optional ? "[" + p.Name + "]" : p.Name;
      if (i < count) syntax += ", ";
    }
    const std::string form = vb::Trim(member.PropertyForm);
    if (count > 0 && form != "Set" && form != "Let") syntax += ")";

    vb::ReplaceAll(top, "&&&FS_MemberInhaltOben_Syntax&&&", is_header_any_case ? "" : syntax);
    vb::ReplaceAll(bottom, "&&&FS_MemberInhaltUnten_MemberRueckgabe&&&", return_type);
    remarks.GetRemarks(member);
    returns.GetReturns(member);
    vb::ReplaceAll(bottom, "&&&FS_MemberInhaltUnten_MemberRemarks&&&", remarks.RemarksContent());
    vb::ReplaceAll(bottom, "&&&FS_MemberInhaltUnten_RueckgabeBeschreibung&&&",
                   returns.ReturnsContent());
    result = top + rows + bottom;
  });
  return result;
}

int32_t CFolioscope::WriteMemberContentSite(SourceMember& Member, const std::string& ModulName,
                                            bool Append) {
  Trap(kClass, "WriteMemberContentSite", [&] {
    CurrentPlatform().PumpMessages();
    const std::string file_name = MemberPageFileName(ModulName, Member.Name);
    if (!MayWritePage(file_name, Projekt, ModulName, &Member)) return;
    std::string page = GetMemberContentSite(Member, ProjektName, ModulName);
    if (chm_mode_) {
      chm_toc_text_ += FillTocItem(GetTOCItem(), Member.Name, file_name);
      chm_toc_text_ += "\r\n";
    }
    WritePageFile("WriteMemberContentSite", PlainPath + kPathSeparatorText + file_name,
                  std::move(page), Append);
  });
  return 0;
}

}  // namespace folioscope
