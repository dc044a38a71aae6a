#include "doccomments/code_reader.h"

#include "doccomments/doc_findings.h"
#include "doccomments/tag_block.h"
#include "format/code_format.h"
#include "infra/error_handler.h"
#include "infra/fs_communicator.h"
#include "infra/vb_runtime.h"

namespace folioscope {

namespace {

constexpr std::string_view kCodeOpen = "<code>";
constexpr std::string_view kCodeClose = "</code>";
constexpr const char* kLineBreak = "<br>";

// Windows-1252 texts: \xFC is u-umlaut; \337 (sharp s) and \366 (o-umlaut) are octal
// because a hex escape would swallow the letters that follow.
void ReportMissingTag(const char* which) {
  AddLog(std::string("F\xFCr eine vorhandene Codebeschreibung konnte kein ") + which +
             " Code-Tag gefunden " + "werden. Die Verarbeitung wird abgebrochen.",
         kIconFailure);
}

}  // namespace

CCode::CCode() : diagnostic_mode_(doccomments::DiagnosticModeNow()) {}

int32_t CCode::GetCode(SourceMember& MemberContent) {
  doccomments::NoteReaderStart(MemberContent, doccomments::kCodeTags);
  Trap("CCode", "GetCode", [&] {
    content_.clear();
    working_lines_.RemoveAll();
    CCodeFormat format;
    if (vb::LCase(MemberContent.Name) == "header") return;
    // Without a tag line both scans find nothing and the call ends there.
    if (!doccomments::CopyCodeLinesIfTagged(MemberContent.CodeLines, working_lines_, kCodeOpen,
                                            kCodeClose))
      return;
    const int32_t b = GetCodeBegin();
    const int32_t e = GetCodeEnd();
    doccomments::NoteBlockScan(doccomments::kCodeTags, b, e);
    if (b > 0 && e > 0 && doccomments::WarningsWanted()) NoteTagLineText(b, e);
    if (b > 0 && e == 0) return ReportMissingTag("schlie\337endes");
    if (b == 0 && e > 0) return ReportMissingTag("\366ffnendes");
    if (b == 0 && e == 0) return;
    // The example is the lines between the tag lines, as a fragment.
    int32_t start = vb::AddLong(b, 1);
    int32_t end = vb::SubLong(e, 1);
    bool full_document = false;
    format.ExecuteMember(MemberContent, start, end, full_document);
    if (pre_formatted_) {
      content_ = format.FormatedCode();
    } else {
      GetCodeContent(b, e);
    }
    if (diagnostic_mode_) {
      AddLog("***Ausgabe nur in der IDE***: Erfassung des Code-Tag f\xFCr Member " +
                 MemberContent.Name + " erfolgreich beendet.",
             kIconProgress);
    }
  });
  working_lines_.RemoveAll();
  return 0;
}

int32_t CCode::GetCodeBegin() { return doccomments::FindTagLine(working_lines_, kCodeOpen); }

int32_t CCode::GetCodeEnd() { return doccomments::FindTagLine(working_lines_, kCodeClose); }

// Tells the sink what the example leaves out: the text on the tag lines
// (the example is the lines between them), all of it when both tags share
// one line.
void CCode::NoteTagLineText(int32_t b, int32_t e) {
  using doccomments::DocRule;
  using doccomments::kCodeTags;
  if (b == e) {
    doccomments::NoteFinding({b, DocRule::kCodeOneLine, kCodeTags, ""});
    return;
  }
  const std::string after_open =
      doccomments::TextBehindTag(vb::Trim(working_lines_.Item(b)), kCodeTags.open);
  if (!after_open.empty())
    doccomments::NoteFinding({b, DocRule::kCodeOnTagLine, kCodeTags, after_open});
  const std::string before_close =
      doccomments::TextBeforeTag(vb::Trim(working_lines_.Item(e)), kCodeTags.close);
  if (!before_close.empty())
    doccomments::NoteFinding({e, DocRule::kCodeOnTagLine, kCodeTags, before_close});
}

// Joins the block b .. e of the working lines, emptying each line read. The
// inner lines go in exactly as they stand, prefix and indent included.
void CCode::GetCodeContent(int32_t b, int32_t e) {
  using doccomments::TakeLine;
  if (e == b) {
    content_ = GetCodeBeginText(vb::Trim(TakeLine(working_lines_, b, true)));
    content_ = vb::Trim(vb::Left(
        content_, static_cast<int64_t>(content_.size()) - static_cast<int64_t>(kCodeClose.size())));
    return;
  }
  if (e == vb::AddLong(b, 1)) {
    content_ = GetCodeBeginText(vb::Trim(TakeLine(working_lines_, b, true)));
    content_ += " ";
    content_ += GetCodeEndText(vb::Trim(TakeLine(working_lines_, e, true)));
    return;
  }
  content_ = GetCodeBeginText(vb::Trim(TakeLine(working_lines_, b, true)));
  content_ += kLineBreak;
  for (int64_t i = int64_t{b} + 1; i <= int64_t{e} - 1; ++i) {
    content_ += TakeLine(working_lines_, static_cast<int32_t>(i), true);
    content_ += kLineBreak;
  }
  content_ += GetCodeEndText(vb::Trim(TakeLine(working_lines_, e, true)));
  content_ += kLineBreak;
}

// Everything behind "<code>" up to and including the first ">" is cut off,
// so code written on the opening line itself is dropped.
std::string CCode::GetCodeBeginText(const std::string& line) {
  return doccomments::TextBehindTagEnd(line, kCodeOpen, &tag_inner_);
}

std::string CCode::GetCodeEndText(const std::string& line) {
  return doccomments::TextBeforeTag(line, kCodeClose);
}

}  // namespace folioscope
