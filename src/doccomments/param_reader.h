// CParam: reads every "<param name=...>" block of a member's '/// lines and
// writes its text into the Description of the parameter of that name.
#ifndef FOLIOSCOPE_DOCCOMMENTS_PARAM_READER_H_
#define FOLIOSCOPE_DOCCOMMENTS_PARAM_READER_H_

#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include "model/source_model.h"

namespace folioscope {

class CParam {
 public:
  CParam();
  int32_t GetParam(SourceMember& MemberContent);
  const std::string& ParamContent() const { return content_; }

 private:
  int32_t GetParamBegin();
  int32_t GetParamEnd();
  void GetParamContent(int32_t b, int32_t e);
  std::string GetParamBeginText(const std::string& line);
  static std::string GetParamEndText(const std::string& line);
  void StoreDescription(SourceMember& MemberContent);
  void NoteStore(bool unknown);

  vb::Dictionary working_lines_;  // one call's copy of the code lines
  // Where the next opening / closing tag scan may start: the lines below
  // the last block found hold no tag (they are only ever emptied), so the
  // scans of one call together read every line about once.
  int32_t begin_from_ = 0;
  int32_t end_from_ = 0;
  // The first parameter of each name, for members with many parameters.
  std::unordered_map<std::string, int32_t> first_parameter_;
  std::string content_;
  std::string parameter_name_;  // survives between blocks and calls
  // For a lint only (doc_findings.h): the opening line of the block being
  // read and the names written in this call.
  int32_t block_line_ = 0;
  std::unordered_set<std::string> noted_names_;
  bool diagnostic_mode_;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_DOCCOMMENTS_PARAM_READER_H_
