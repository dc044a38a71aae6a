// The member page: kind, scope and name of one member, its syntax line, the
// doc-comment blocks and one table row per parameter. GetMemberContentSite
// builds it, WriteMemberContentSite writes it next to the module pages.
//
// The tag readers run in a fixed order (parameters, summary, example,
// remarks, returns): each scan may add key 0 to the member's code-line
// dictionary, so the order decides what later scans see.
#include <string>
#include <string_view>
#include <vector>

#include "chm/help_topics.h"
#include "doccomments/code_reader.h"
#include "doccomments/param_reader.h"
#include "doccomments/tag_readers.h"
#include "engine/folioscope.h"
#include "engine/object_required.h"
#include "infra/error_handler.h"
#include "infra/platform.h"
#include "infra/vb_runtime.h"
#include "model/module_kinds.h"
#include "pages/page_file_guard.h"
#include "pages/template_fill.h"

namespace folioscope {

namespace {

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
  const std::string name = p.Name + "&nbsp;";
  const std::string required =
      LanguageText(res, p.Optional ? "&&&FS_MemberInhaltMitte_ErforderlichNein&&&"
                                   : "&&&FS_MemberInhaltMitte_ErforderlichJa&&&");
  const std::string passing =
      LanguageText(res, p.Passing == "ByVal" ? "&&&FS_MemberInhaltMitte_UebergabeByVal&&&"
                                             : "&&&FS_MemberInhaltMitte_UebergabeByRef&&&");
  const std::string note = ParameterNote(res, p);
  std::string row = res.MemberInhaltMitte();
  ReplaceEachInOrder(row, {{"&&&FS_MemberInhaltMitte_ParameterName&&&", name},
                           {"&&&FS_MemberInhaltMitte_ParameterTyp&&&", p.Type},
                           {"&&&FS_MemberInhaltMitte_ParameterBeschreibung&&&", p.Description},
                           {"&&&FS_MemberInhaltMitte_Erforderlich&&&", required},
                           {"&&&FS_MemberInhaltMitte_Uebergabe&&&", passing},
                           {"&&&FS_MemberInhaltMitte_ParameterAnmerkung&&&", note}});
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
    const bool class_like =
        ModuleKindOfText(RequireProject(Projekt).Components.Item(ModulName).Kind) !=
        ModuleKind::kModule;
    std::string syntax = SyntaxOpening(res, member, class_like);

    std::string intern_description;
    if (ShowVBInternDescription > 0) intern_description = member.Description;
    std::string help_context;
    if (ShowHelpContextID > 0) {
      help_context = LanguageText(res, "&&&FS_MemberInhaltOben_HelpKontextID&&&") + " " +
                     vb::CStr(member.HelpContextId);
    }
    ReplaceEachInOrder(top, {{"&&&FS_MemberInhaltOben_InternDescription&&&", intern_description},
                             {"&&&FS_MemberInhaltOben_HelpKontextID&&&", help_context}});

    FillSpecificLanguage(top, res);
    FillSpecificLanguage(bottom, res);
    FillPlaceHolders(top, res, file_prefix);
    FillPlaceHolders(bottom, res, file_prefix);

    // The readers and language texts run in their fixed order first; the
    // member's own tokens then go into each template in one pass, in the
    // order a replace-all per token would take.
    std::string kind;
    if (!is_header) {
      kind =
          member.Kind == "OutEvent" ? LanguageText(res, "&&&Allgemein_OutEvent&&&") : member.Kind;
    }
    summary.GetSummary(member);
    code.SetGetAsPraeformated(true);
    code.GetCode(member);
    const std::string return_type = is_header_any_case ? "" : member.ReturnType;

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

    std::vector<TokenReplacement> top_tokens = {
        {"&&&FS_MemberInhaltOben_AnwendungsName&&&", ProjektName},
        {"&&&FS_MemberInhaltOben_KlassenName&&&", ModulName},
        {"&&&FS_MemberInhaltOben_Title&&&", member.Name},
        {"&&&FS_MemberInhaltOben_MemberTyp&&&", kind}};
    if (!is_header)
      top_tokens.push_back({"&&&FS_MemberInhaltOben_MemberGueltigkeit&&&", scope_word});
    top_tokens.push_back(
        {"&&&FS_MemberInhaltOben_MemberName&&&", is_header ? std::string_view() : member.Name});
    const std::string summary_text = summary.SumaryContent();
    const std::string code_text = code.CodeContent();
    top_tokens.insert(
        top_tokens.end(),
        {{"&&&FS_MemberInhaltOben_MemberSummary&&&", summary_text},
         {"&&&FS_MemberInhaltOben_ExampleCode&&&", code_text},
         {"&&&FS_MemberInhaltOben_MemberGueltigkeit&&&", scope_word},
         {"&&&FS_MemberInhaltOben_MemberRueckgabe&&&", return_type},
         {"&&&FS_MemberInhaltOben_Syntax&&&", is_header_any_case ? std::string_view() : syntax}});
    ReplaceEachInOrder(top, top_tokens);

    remarks.GetRemarks(member);
    returns.GetReturns(member);
    const std::string remarks_text = remarks.RemarksContent();
    const std::string returns_text = returns.ReturnsContent();
    ReplaceEachInOrder(bottom,
                       {{"&&&FS_MemberInhaltUnten_MemberRueckgabe&&&", return_type},
                        {"&&&FS_MemberInhaltUnten_MemberRemarks&&&", remarks_text},
                        {"&&&FS_MemberInhaltUnten_RueckgabeBeschreibung&&&", returns_text}});
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
