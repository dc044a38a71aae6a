// CCode: reads the "<code>" example block of a member's '/// lines, either
// joined with "<br>" or, pre-formatted, as the formatter's coloured HTML.
#ifndef FOLIOSCOPE_DOCCOMMENTS_CODE_READER_H_
#define FOLIOSCOPE_DOCCOMMENTS_CODE_READER_H_

#include <cstdint>
#include <string>

#include "model/source_model.h"

namespace folioscope {

class CCode {
 public:
  CCode();
  void SetGetAsPraeformated(bool value) { pre_formatted_ = value; }
  int32_t GetCode(SourceMember& MemberContent);
  const std::string& CodeContent() const { return content_; }

 private:
  int32_t GetCodeBegin();
  int32_t GetCodeEnd();
  void GetCodeContent(int32_t b, int32_t e);
  std::string GetCodeBeginText(const std::string& line);
  static std::string GetCodeEndText(const std::string& line);
  void NoteTagLineText(int32_t b, int32_t e);

  vb::Dictionary working_lines_;  // one call's copy of the code lines
  std::string tag_inner_;         // the opening tag's remainder; kept, not used
  std::string content_;
  bool pre_formatted_ = false;
  bool diagnostic_mode_;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_DOCCOMMENTS_CODE_READER_H_
