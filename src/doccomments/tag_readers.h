// The doc-comment tag readers: CSummary, CRemarks, CReturns read one block
// each ("<summary>", "<remarks>", "<returns>") from a member's '/// lines;
// the content property holds the block's joined text, empty when the member
// has no such block. Get...() always returns 0. Messages go to the progress
// channel; faults are trapped and reported to CErrorHandler.
//
// The scans read keys 0 .. Count-1 of the member's code-line dictionary; a
// read of the absent key 0 adds it (see vb::Dictionary), which widens later
// scans of the same dictionary by one line.
#ifndef FOLIOSCOPE_DOCCOMMENTS_TAG_READERS_H_
#define FOLIOSCOPE_DOCCOMMENTS_TAG_READERS_H_

#include <cstdint>
#include <string>

#include "model/source_model.h"

namespace folioscope {

class CSummary {
 public:
  CSummary();
  int32_t GetSummary(SourceMember& MemberContent);
  const std::string& SumaryContent() const { return content_; }

 private:
  int32_t GetSummaryBegin(SourceMember& MemberContent);
  int32_t GetSummaryEnd(SourceMember& MemberContent);
  void GetSumaryContent(SourceMember& MemberContent, int32_t b, int32_t e);
  static std::string GetFirstLine(const std::string& line);
  static std::string GetEndLine(const std::string& line);

  std::string content_;
  bool diagnostic_mode_;
};

class CRemarks {
 public:
  CRemarks();
  int32_t GetRemarks(SourceMember& MemberContent);
  const std::string& RemarksContent() const { return content_; }

 private:
  int32_t GetRemarksBegin(SourceMember& MemberContent);
  int32_t GetRemarksEnd(SourceMember& MemberContent);
  void GetRemarksContent(SourceMember& MemberContent, int32_t b, int32_t e);
  static std::string GetFirstLine(const std::string& line);
  static std::string GetEndLine(const std::string& line);

  std::string content_;
  bool diagnostic_mode_;
};

class CReturns {
 public:
  CReturns();
  int32_t GetReturns(SourceMember& MemberContent);
  const std::string& ReturnsContent() const { return content_; }

 private:
  int32_t GetReturnsBegin(SourceMember& MemberContent);
  int32_t GetReturnsEnd(SourceMember& MemberContent);
  void GetReturnsContent(SourceMember& MemberContent, int32_t b, int32_t e);
  static std::string GetFirstLine(const std::string& line);
  static std::string GetEndLine(const std::string& line);

  std::string content_;
  bool diagnostic_mode_;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_DOCCOMMENTS_TAG_READERS_H_
