#include "pages/member_page.h"

#include <string>
#include <string_view>
#include <vector>

#include "doccomments/code_reader.h"
#include "doccomments/param_reader.h"
#include "doccomments/tag_readers.h"
#include "infra/vb_runtime.h"
#include "model/module_kinds.h"
#include "pages/object_required.h"
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

// The top and bottom templates with what the switches show, the language
// texts and the report-set values; the member's own tokens come later.
void FillMemberFrames(CRessource& res, std::string& top, std::string& bottom,
                      const SourceMember& member, int32_t show_intern_description,
                      int32_t show_help_context_id, const std::string& file_prefix) {
  std::string intern_description;
  if (show_intern_description > 0) intern_description = member.Description;
  std::string help_context;
  if (show_help_context_id > 0) {
    help_context = LanguageText(res, "&&&FS_MemberInhaltOben_HelpKontextID&&&") + " " +
                   vb::CStr(member.HelpContextId);
  }
  ReplaceEachInOrder(top, {{"&&&FS_MemberInhaltOben_InternDescription&&&", intern_description},
                           {"&&&FS_MemberInhaltOben_HelpKontextID&&&", help_context}});
  FillSpecificLanguage(top, res);
  FillSpecificLanguage(bottom, res);
  FillPlaceHolders(top, res, file_prefix);
  FillPlaceHolders(bottom, res, file_prefix);
}

// The member kind the page shows: none for the declarations section, the
// language's word for an outgoing event, else the model's kind.
std::string MemberKindText(CRessource& res, const SourceMember& member, bool is_header) {
  if (is_header) return "";
  return member.Kind == "OutEvent" ? LanguageText(res, "&&&Allgemein_OutEvent&&&") : member.Kind;
}

// One row per parameter; each parameter's name also goes into `syntax`
// (optional ones in brackets), which is closed unless the member is a
// property assignment.
std::string ParameterRowsAndSyntax(CRessource& res, const SourceMember& member,
                                   const std::string& file_prefix, std::string& syntax) {
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
  return rows;
}

// The values of the top template's member tokens.
struct MemberTopValues {
  std::string_view project_name;
  std::string_view module_name;
  std::string_view kind;
  std::string_view scope_word;
  std::string_view summary;
  std::string_view code;
  std::string_view return_type;
  std::string_view syntax;
  bool is_header;           // named "Header" exactly
  bool is_header_any_case;  // named "Header" in any case
};

// The member's tokens go into the top template in one pass, in the order
// a replace-all per token would take; the scope word's token appears twice
// in that order, and the declarations section skips its first turn.
void FillMemberTop(std::string& top, const SourceMember& member, const MemberTopValues& v) {
  std::vector<TokenReplacement> tokens = {
      {"&&&FS_MemberInhaltOben_AnwendungsName&&&", v.project_name},
      {"&&&FS_MemberInhaltOben_KlassenName&&&", v.module_name},
      {"&&&FS_MemberInhaltOben_Title&&&", member.Name},
      {"&&&FS_MemberInhaltOben_MemberTyp&&&", v.kind}};
  if (!v.is_header) tokens.push_back({"&&&FS_MemberInhaltOben_MemberGueltigkeit&&&", v.scope_word});
  tokens.push_back(
      {"&&&FS_MemberInhaltOben_MemberName&&&", v.is_header ? std::string_view() : member.Name});
  tokens.insert(tokens.end(), {{"&&&FS_MemberInhaltOben_MemberSummary&&&", v.summary},
                               {"&&&FS_MemberInhaltOben_ExampleCode&&&", v.code},
                               {"&&&FS_MemberInhaltOben_MemberGueltigkeit&&&", v.scope_word},
                               {"&&&FS_MemberInhaltOben_MemberRueckgabe&&&", v.return_type},
                               {"&&&FS_MemberInhaltOben_Syntax&&&",
                                v.is_header_any_case ? std::string_view() : v.syntax}});
  ReplaceEachInOrder(top, tokens);
}

// The remarks and returns readers run last; their texts and the return
// type go into the bottom template.
void FillMemberBottom(std::string& bottom, SourceMember& member, std::string_view return_type,
                      CRemarks& remarks, CReturns& returns) {
  remarks.GetRemarks(member);
  returns.GetReturns(member);
  const std::string remarks_text = remarks.RemarksContent();
  const std::string returns_text = returns.ReturnsContent();
  ReplaceEachInOrder(bottom, {{"&&&FS_MemberInhaltUnten_MemberRueckgabe&&&", return_type},
                              {"&&&FS_MemberInhaltUnten_MemberRemarks&&&", remarks_text},
                              {"&&&FS_MemberInhaltUnten_RueckgabeBeschreibung&&&", returns_text}});
}

}  // namespace

// The readers and language texts run in a fixed order, which the steps
// below keep: a language text read for the first time joins the language
// dictionary and so the templates filled after it.
std::string MemberPageText(const ReportContext& context, SourceMember& member,
                           const std::string& project_name, const std::string& module_name) {
  CSummary summary;
  CRemarks remarks;
  CParam params;
  CReturns returns;
  CCode code;
  CRessource& res = RequireResources(context.resources);
  const ReportSettings& settings = context.settings;
  const bool is_header = member.Name == "Header";
  const bool is_header_any_case = vb::LCase(member.Name) == "header";

  std::string top = res.MemberInhaltOben();
  std::string bottom = res.MemberInhaltUnten();
  params.GetParam(member);
  const std::string scope_word = LanguageText(res, ScopeWordKey(member.Scope));
  const bool class_like =
      ModuleKindOfText(RequireProject(context.project).Components.Item(module_name).Kind) !=
      ModuleKind::kModule;
  std::string syntax = SyntaxOpening(res, member, class_like);
  FillMemberFrames(res, top, bottom, member, settings.ShowVBInternDescription,
                   settings.ShowHelpContextID, context.file_prefix);

  const std::string kind = MemberKindText(res, member, is_header);
  summary.GetSummary(member);
  code.SetGetAsPraeformated(true);
  code.GetCode(member);
  const std::string return_type = is_header_any_case ? "" : member.ReturnType;
  const std::string rows = ParameterRowsAndSyntax(res, member, context.file_prefix, syntax);
  const std::string summary_text = summary.SumaryContent();
  const std::string code_text = code.CodeContent();
  FillMemberTop(top, member,
                {project_name, module_name, kind, scope_word, summary_text, code_text, return_type,
                 syntax, is_header, is_header_any_case});
  FillMemberBottom(bottom, member, return_type, remarks, returns);
  return top + rows + bottom;
}

}  // namespace folioscope
