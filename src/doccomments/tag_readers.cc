#include "doccomments/tag_readers.h"

#include "doccomments/doc_findings.h"
#include "doccomments/tag_block.h"
#include "infra/error_handler.h"
#include "infra/vb_runtime.h"

namespace folioscope {

using doccomments::kRemarksTags;
using doccomments::kReturnsTags;
using doccomments::kSummaryTags;

// --- CSummary ---------------------------------------------------------------

CSummary::CSummary() : diagnostic_mode_(doccomments::DiagnosticModeNow()) {}

int32_t CSummary::GetSummary(SourceMember& MemberContent) {
  doccomments::NoteReaderStart(MemberContent, kSummaryTags);
  Trap("CSummary", "GetSummary", [&] {
    content_.clear();
    int32_t b = GetSummaryBegin(MemberContent);
    int32_t e = GetSummaryEnd(MemberContent);
    doccomments::NoteBlockScan(kSummaryTags, b, e);
    if (b >= 1 && e >= 1) GetSumaryContent(MemberContent, b, e);
    doccomments::NoteBlockText(kSummaryTags, b, content_);
    doccomments::ReportBlockScan(kSummaryTags, MemberContent.Name, b, e, diagnostic_mode_);
  });
  return 0;
}

int32_t CSummary::GetSummaryBegin(SourceMember& MemberContent) {
  return doccomments::FindTagLine(MemberContent.CodeLines, kSummaryTags.open);
}

int32_t CSummary::GetSummaryEnd(SourceMember& MemberContent) {
  return doccomments::FindTagLine(MemberContent.CodeLines, kSummaryTags.close);
}

void CSummary::GetSumaryContent(SourceMember& MemberContent, int32_t b, int32_t e) {
  doccomments::JoinBlockWithBlanks(MemberContent.CodeLines, b, e, kSummaryTags.close,
                                   &CSummary::GetFirstLine, &CSummary::GetEndLine,
                                   /*consume=*/false, content_);
}

std::string CSummary::GetFirstLine(const std::string& line) {
  return doccomments::TextBehindTag(line, kSummaryTags.open);
}

std::string CSummary::GetEndLine(const std::string& line) {
  return doccomments::TextBeforeTag(line, kSummaryTags.close);
}

// --- CRemarks ---------------------------------------------------------------

CRemarks::CRemarks() : diagnostic_mode_(doccomments::DiagnosticModeNow()) {}

int32_t CRemarks::GetRemarks(SourceMember& MemberContent) {
  doccomments::NoteReaderStart(MemberContent, kRemarksTags);
  Trap("CRemarks", "GetRemarks", [&] {
    content_.clear();
    int32_t b = GetRemarksBegin(MemberContent);
    int32_t e = GetRemarksEnd(MemberContent);
    doccomments::NoteBlockScan(kRemarksTags, b, e);
    if (b >= 1 && e >= 1) GetRemarksContent(MemberContent, b, e);
    doccomments::NoteBlockText(kRemarksTags, b, content_);
    doccomments::ReportBlockScan(kRemarksTags, MemberContent.Name, b, e, diagnostic_mode_);
  });
  return 0;
}

int32_t CRemarks::GetRemarksBegin(SourceMember& MemberContent) {
  return doccomments::FindTagLine(MemberContent.CodeLines, kRemarksTags.open);
}

int32_t CRemarks::GetRemarksEnd(SourceMember& MemberContent) {
  return doccomments::FindTagLine(MemberContent.CodeLines, kRemarksTags.close);
}

void CRemarks::GetRemarksContent(SourceMember& MemberContent, int32_t b, int32_t e) {
  doccomments::JoinBlockWithBlanks(MemberContent.CodeLines, b, e, kRemarksTags.close,
                                   &CRemarks::GetFirstLine, &CRemarks::GetEndLine,
                                   /*consume=*/false, content_);
}

std::string CRemarks::GetFirstLine(const std::string& line) {
  return doccomments::TextBehindTag(line, kRemarksTags.open);
}

std::string CRemarks::GetEndLine(const std::string& line) {
  return doccomments::TextBeforeTag(line, kRemarksTags.close);
}

// --- CReturns ---------------------------------------------------------------

CReturns::CReturns() : diagnostic_mode_(doccomments::DiagnosticModeNow()) {}

int32_t CReturns::GetReturns(SourceMember& MemberContent) {
  doccomments::NoteReaderStart(MemberContent, kReturnsTags);
  Trap("CReturns", "GetReturns", [&] {
    content_.clear();
    // The declarations section and members without a value have no returns.
    if (vb::LCase(MemberContent.Name) == "header") return;
    std::string kind = vb::LCase(vb::Trim(MemberContent.Kind));
    if (kind != "function" && kind != "property") return;
    int32_t b = GetReturnsBegin(MemberContent);
    int32_t e = GetReturnsEnd(MemberContent);
    doccomments::NoteBlockScan(kReturnsTags, b, e);
    if (b >= 1 && e >= 1) GetReturnsContent(MemberContent, b, e);
    doccomments::NoteBlockText(kReturnsTags, b, content_);
    doccomments::ReportBlockScan(kReturnsTags, MemberContent.Name, b, e, diagnostic_mode_);
  });
  return 0;
}

int32_t CReturns::GetReturnsBegin(SourceMember& MemberContent) {
  return doccomments::FindTagLine(MemberContent.CodeLines, kReturnsTags.open);
}

int32_t CReturns::GetReturnsEnd(SourceMember& MemberContent) {
  return doccomments::FindTagLine(MemberContent.CodeLines, kReturnsTags.close);
}

void CReturns::GetReturnsContent(SourceMember& MemberContent, int32_t b, int32_t e) {
  doccomments::JoinBlockWithBlanks(MemberContent.CodeLines, b, e, kReturnsTags.close,
                                   &CReturns::GetFirstLine, &CReturns::GetEndLine,
                                   /*consume=*/false, content_);
}

std::string CReturns::GetFirstLine(const std::string& line) {
  return doccomments::TextBehindTag(line, kReturnsTags.open);
}

std::string CReturns::GetEndLine(const std::string& line) {
  return doccomments::TextBeforeTag(line, kReturnsTags.close);
}

}  // namespace folioscope
