// CCodeFormat: Visual Basic source lines to coloured HTML, driven by the
// keyword list sfn.dat in the application folder (restored from the built-in
// copy when missing; an edited file is used as it stands).
//
// The keyword list is read once per object, at creation. Parsed lists are
// shared process-wide while the file's identity, size and times stay the
// same, so making a formatter per code example costs no file parse.
// Colour and font properties left empty get their defaults at the next
// execution. Faults are reported to CErrorHandler under "CCodeFormat";
// FormatedCode then keeps the previous result.
#ifndef FOLIOSCOPE_FORMAT_CODE_FORMAT_H_
#define FOLIOSCOPE_FORMAT_CODE_FORMAT_H_

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "infra/dictionary.h"
#include "infra/file_system.h"

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
  struct KeywordTable;

  void ApplyDefaults();
  void Execute(vb::Dictionary& lines, int32_t& StartLine, int32_t& Endline, bool full_document);
  std::string ConvertToHTML(const std::string& line);
  // The code part of one line (comment cut off, brackets escaped) with its
  // keywords in KeywordColor; string literals stay as they are.
  std::string MarkKeywords(const std::string& line);
  static std::string EscapeBrackets(std::string_view text);
  bool IsKeyword(const std::string& word);
  int32_t GetCommentPos(const std::string& line);
  static int32_t ZeichenZaehlen(std::string_view text, int64_t first, int64_t last, char zeichen);
  std::string BuildHeader(bool full_document) const;
  static std::string BuildFooter(bool full_document);
  void LoadKeywords();
  void RestoreSourceFile();
  static std::string KeywordFilePath();

  std::string formated_code_;
  CFileSystem file_system_;
  std::shared_ptr<const KeywordTable> keywords_;  // shared while sfn.dat is unchanged
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_FORMAT_CODE_FORMAT_H_
