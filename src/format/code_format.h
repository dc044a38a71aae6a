// CCodeFormat: Visual Basic source lines to coloured HTML, driven by the
// keyword list sfn.dat in the application folder (restored from the built-in
// copy when missing; an edited file is used as it stands).
#ifndef FOLIOSCOPE_FORMAT_CODE_FORMAT_H_
#define FOLIOSCOPE_FORMAT_CODE_FORMAT_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "model/source_model.h"

namespace folioscope {

class CCodeFormat {
 public:
  CCodeFormat();  // loads the keyword table

  const std::string& FormatedCode() const { return formated_code_; }
  std::string SourceFont, BackgroundColor, CommentColor, KeywordColor, SourceColor;

  // Formats lines StartLine..Endline of the member (Endline 0: Count - 1,
  // written back). Returns 0.
  int32_t ExecuteMember(SourceMember& MemberContent, int32_t& StartLine, int32_t& Endline,
                        bool& AsFullHTMLDocument);
  // The same for a module's lines, always as a full HTML document.
  int32_t ExecuteModule(SourceModule& ModuleContent, int32_t& StartLine, int32_t& Endline);

 private:
  std::string formated_code_;
  std::shared_ptr<const std::vector<std::string>> keywords_;  // shared while sfn.dat is unchanged
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_FORMAT_CODE_FORMAT_H_
