#include "doccomments/param_reader.h"

#include "doccomments/doc_findings.h"
#include "doccomments/tag_block.h"
#include "infra/error_handler.h"
#include "infra/fs_communicator.h"
#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

using doccomments::DocRule;
using doccomments::kParamTags;

constexpr std::string_view kParamOpen = "<param name";
constexpr std::string_view kParamClose = "</param>";

// Windows-1252 texts: \xFC is u-umlaut; \337 (sharp s) and \366 (o-umlaut) are octal
// because a hex escape would swallow the letters that follow.
void ReportMissingTag(const char* which) {
  AddLog(std::string("F\xFCr eine vorhandene Parameterbeschreibung konnte kein ") + which +
             " Param-Tag gefunden " + "werden. Die Verarbeitung wird abgebrochen.",
         kIconFailure);
}

// The name as the comment writes it: the tag remainder `="Value">` without
// "=", ">" and one quotation mark (or apostrophe) on each side.
std::string WrittenName(std::string_view tag_end) {
  if (!tag_end.empty() && tag_end.front() == '=') tag_end.remove_prefix(1);
  if (!tag_end.empty() && tag_end.back() == '>') tag_end.remove_suffix(1);
  auto is_quote = [](char c) { return c == '"' || c == '\''; };
  if (!tag_end.empty() && is_quote(tag_end.front())) tag_end.remove_prefix(1);
  if (!tag_end.empty() && is_quote(tag_end.back())) tag_end.remove_suffix(1);
  return std::string(tag_end);
}

}  // namespace

CParam::CParam() : diagnostic_mode_(doccomments::DiagnosticModeNow()) {}

int32_t CParam::GetParam(SourceMember& MemberContent) {
  doccomments::NoteReaderStart(MemberContent, kParamTags);
  Trap("CParam", "GetParam", [&] {
    working_lines_.RemoveAll();
    begin_from_ = 0;
    end_from_ = 0;
    first_parameter_.clear();
    noted_names_.clear();
    if (vb::LCase(MemberContent.Name) == "header") return;
    // Without a tag line the first pass finds nothing and the call ends.
    if (!doccomments::CopyCodeLinesIfTagged(MemberContent.CodeLines, working_lines_, kParamOpen,
                                            kParamClose)) {
      content_.clear();
      return;
    }
    for (;;) {
      content_.clear();
      int32_t b = GetParamBegin();
      int32_t e = GetParamEnd();
      doccomments::NoteBlockScan(kParamTags, b, e);
      block_line_ = b;
      if (b >= 1 && e >= 1) GetParamContent(b, e);
      doccomments::NoteBlockText(kParamTags, b, content_);
      if (b == 0 && e == 0) return;
      if (b > 0 && e == 0) return ReportMissingTag("schlie\337endes");
      if (b == 0 && e > 0) return ReportMissingTag("\366ffnendes");
      // A block whose opening tag never named a parameter is skipped; its
      // lines are already consumed.
      if (parameter_name_.empty()) continue;
      StoreDescription(MemberContent);
      if (diagnostic_mode_) {
        AddLog("***Ausgabe nur in der IDE***: Erfassung des Param-Tag f\xFCr Member " +
                   MemberContent.Name + " Parameter " + parameter_name_ + " erfolgreich beendet.",
               kIconProgress);
      }
    }
  });
  working_lines_.RemoveAll();
  return 0;
}

// Files the content under the first parameter of that exact name. Without
// one the write goes to position Count + 1, which the parameter list refuses
// with error 9 (reported by the caller's trap).
void CParam::StoreDescription(SourceMember& MemberContent) {
  constexpr int32_t kIndexFrom = 16;  // parameters; below that a walk is cheaper
  auto& params = MemberContent.Parameters;
  int32_t i = 1;
  if (params.Count() < kIndexFrom) {
    for (; i <= params.Count(); ++i) {
      if (params.Item(i).Name == parameter_name_) break;
    }
  } else {
    if (first_parameter_.empty()) {
      for (int32_t k = params.Count(); k >= 1; --k) first_parameter_[params.Item(k).Name] = k;
    }
    auto found = first_parameter_.find(parameter_name_);
    i = found == first_parameter_.end() ? params.Count() + 1 : found->second;
  }
  if (doccomments::FindingSink() != nullptr) NoteStore(i > params.Count());
  params.Item(i).Description = content_;
}

int32_t CParam::GetParamBegin() {
  const int32_t b = doccomments::FindTagLine(working_lines_, kParamOpen, begin_from_);
  if (b > 0) begin_from_ = b;
  return b;
}

int32_t CParam::GetParamEnd() {
  const int32_t e = doccomments::FindTagLine(working_lines_, kParamClose, end_from_);
  if (e > 0) end_from_ = e;
  return e;
}

void CParam::GetParamContent(int32_t b, int32_t e) {
  doccomments::JoinBlockWithBlanks(
      working_lines_, b, e, kParamClose,
      [this](const std::string& line) { return GetParamBeginText(line); }, &CParam::GetParamEndText,
      /*consume=*/true, content_);
}

std::string CParam::GetParamBeginText(const std::string& line) {
  if (!doccomments::WarningsWanted()) {
    return doccomments::TextBehindTagEnd(line, kParamOpen, &parameter_name_);
  }
  std::string tag_end;
  std::string text = doccomments::TextBehindTagEnd(line, kParamOpen, &parameter_name_, &tag_end);
  if (tag_end.empty()) {
    doccomments::NoteFinding({block_line_, DocRule::kParamTagUnended, kParamTags, parameter_name_});
  } else if (WrittenName(tag_end) != parameter_name_) {
    doccomments::NoteFinding({block_line_, DocRule::kUnquotedName, kParamTags, parameter_name_});
  }
  return text;
}

// Tells the sink about the write that follows: to no parameter (the write
// faults), or to one already written in this call.
void CParam::NoteStore(bool unknown) {
  if (unknown) {
    doccomments::NoteFinding(
        {block_line_, DocRule::kUnknownParameter, kParamTags, parameter_name_});
  } else if (!noted_names_.insert(parameter_name_).second) {
    doccomments::NoteFinding({block_line_, DocRule::kParameterTwice, kParamTags, parameter_name_});
  }
}

std::string CParam::GetParamEndText(const std::string& line) {
  return doccomments::TextBeforeTag(line, kParamClose);
}

}  // namespace folioscope
