#include "format/code_format.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "infra/error_handler.h"
#include "infra/platform.h"
#include "infra/recording_platform.h"
#include "infra/test_folder.h"
#include "infra/vb_runtime.h"

namespace folioscope {
namespace {

namespace fs = std::filesystem;

const std::string kFragmentHeader =
    "<FONT COLOR=#000000><FONT style='font-family: Courier New;'><PRE>";
const std::string kFragmentFooter = "</PRE>";

std::string Kw(const std::string& word) { return "<FONT COLOR=#000066>" + word + "</FONT>"; }
std::string Comment(const std::string& text) {
  return "<FONT COLOR=#009900>" + text + "<BR></FONT>";
}
std::string FullHeader(const std::string& background, const std::string& color) {
  return "<html>\r\n<head>\r\n<title></title>\r\n</head>\r\n<BODY BGCOLOR='" + background +
         "' style='BORDER-BOTTOM: 0px; BORDER-LEFT: 0px; BORDER-RIGHT: 0px; BORDER-TOP: 0px; "
         "MARGIN : 0px; padding-left: 18px;'>\r\n<FONT COLOR=" +
         color + "><p style='font-family: Courier New;'><PRE>";
}
const std::string kEmptyCode = "<FONT COLOR=#000000>&#160;</FONT>";

std::unique_ptr<SourceMember> Member(const std::vector<std::string>& lines) {
  auto m = std::make_unique<SourceMember>();
  m->Name = "DoIt";
  for (size_t i = 0; i < lines.size(); ++i) m->CodeLines.Add(static_cast<int32_t>(i + 1), lines[i]);
  return m;
}

class CodeFormat : public ::testing::Test {
 protected:
  CodeFormat() : app_(root_.path() / "app"), platform_(app_.string()), scoped_(&platform_) {
    reports_before_ = CErrorHandler::Instance().ReportCount();
  }

  // The fragment body that `format` makes of one line.
  std::string ConvertLine(CCodeFormat& format, const std::string& line) {
    auto m = Member({line});
    int32_t start = 1, end = 1;
    bool full = false;
    format.ExecuteMember(*m, start, end, full);
    const std::string& html = format.FormatedCode();
    if (html.rfind(kFragmentHeader, 0) != 0 || html.size() < kFragmentHeader.size() + 6) {
      return "unexpected frame: " + html;
    }
    return html.substr(kFragmentHeader.size(),
                       html.size() - kFragmentHeader.size() - kFragmentFooter.size());
  }

  int64_t FaultsReported() const {
    return CErrorHandler::Instance().ReportCount() - reports_before_;
  }

  TestFolder root_;
  fs::path app_;
  RecordingPlatform platform_;
  ScopedPlatform scoped_;
  int64_t reports_before_ = 0;
};

TEST_F(CodeFormat, LineColouring) {
  struct Case {
    const char* what;
    std::string line;
    std::string html;
  };
  const Case cases[] = {
      {"empty line", "", kEmptyCode + "<BR>"},
      {"comment-only line", "' note", kEmptyCode + Comment(" ' note")},
      {"indented comment keeps its column", "  ' note", "   " + Comment("' note")},
      {"keywords between blanks", "Dim a As Long",
       " " + Kw("Dim") + " a " + Kw("As") + " " + Kw("Long") + "<BR>"},
      {"case-sensitive match", "dim x", " dim x<BR>"},
      {"odd list entry is a keyword", "Ucase", " " + Kw("Ucase") + "<BR>"},
      {"usual spelling is not in the list", "UCase", " UCase<BR>"},
      {"no blank around the keyword", "x=Not Dim(y)", " x=" + std::string("Not") + " Dim(y)<BR>"},
      {"identifier containing a keyword", "Dimension", " Dimension<BR>"},
      {"trailing blank moves to the front", "End ", "  " + Kw("End") + "<BR>"},
      {"apostrophe inside a string stays code", "s = \"it's\" ' real",
       " s =  \"it's\"" + Comment("' real")},
      {"quote in column 1 is not counted", "\"a'b\"", Comment("'b\"")},
      {"words inside strings are never coloured", "x = \"Dim As\" Dim",
       " x = \"Dim As\" " + Kw("Dim") + "<BR>"},
      {"unterminated string is dropped", "x = \"abc", " x =<BR>"},
      {"brackets escaped, ampersand kept", "s = a & \"<b>\"", " s = a & \"&#60;b&#62;\"<BR>"},
      {"comment escaped", "'<tag> & more", kEmptyCode + Comment(" '&#60;tag&#62; & more")},
      {"Rem is no comment", "Rem note", " " + Kw("Rem") + " note<BR>"},
      {"blank-only line", "  ", "   <BR>"},
  };
  CCodeFormat format;
  for (const Case& c : cases) EXPECT_EQ(ConvertLine(format, c.line), c.html) << c.what;
  EXPECT_EQ(FaultsReported(), 0);
}

TEST_F(CodeFormat, HeaderAndFooterFrameTheLines) {
  auto m = Member({"Dim a"});
  CCodeFormat format;
  int32_t start = 1, end = 1;
  bool full = false;
  format.ExecuteMember(*m, start, end, full);
  EXPECT_EQ(format.FormatedCode(), kFragmentHeader + " " + Kw("Dim") + " a<BR>" + kFragmentFooter);

  format.SourceColor = "red";
  format.BackgroundColor = "#EEEEEE";
  format.SourceFont = "Arial";  // never reaches the output
  full = true;
  format.ExecuteMember(*m, start, end, full);
  EXPECT_EQ(format.FormatedCode(),
            FullHeader("#EEEEEE", "red") + " " + Kw("Dim") + " a<BR></PRE></body>\r\n</html>");

  // An emptied property gets its default back at the next execution; a
  // module is always a full document.
  SourceModule module;
  module.CodeLines.Add(1, "x");
  format.SourceColor = "";
  format.BackgroundColor = "";
  format.SourceFont = "";
  format.ExecuteModule(module, start, end);
  EXPECT_EQ(format.SourceColor, "#000000");
  EXPECT_EQ(format.SourceFont, "Courier New");
  EXPECT_EQ(format.FormatedCode(),
            FullHeader("#FFFFFF", "#000000") + " x<BR></PRE></body>\r\n</html>");
}

TEST_F(CodeFormat, LineRangeAndEndlineZero) {
  auto m = Member({"a1", "b2", "c3"});
  CCodeFormat format;
  int32_t start = 1, end = 0;
  bool full = false;
  format.ExecuteMember(*m, start, end, full);
  EXPECT_EQ(end, 2);  // Count - 1, seen by the caller
  EXPECT_EQ(format.FormatedCode(), kFragmentHeader + " a1<BR> b2<BR>" + kFragmentFooter);

  // "Count" is the dictionary as it stands: a key 0 added by a scan counts.
  m->CodeLines.Item(0);
  end = 0;
  format.ExecuteMember(*m, start, end, full);
  EXPECT_EQ(end, 3);

  // A missing key is an empty line (and is added); a reversed range is empty.
  start = 3;
  end = 4;
  format.ExecuteMember(*m, start, end, full);
  EXPECT_EQ(format.FormatedCode(),
            kFragmentHeader + " c3<BR>" + kEmptyCode + "<BR>" + kFragmentFooter);
  EXPECT_TRUE(m->CodeLines.Exists(vb::DictKey::Long(4)));
  start = 3;
  end = 2;
  format.ExecuteMember(*m, start, end, full);
  EXPECT_EQ(format.FormatedCode(), kFragmentHeader + kFragmentFooter);
  EXPECT_EQ(FaultsReported(), 0);
}

TEST_F(CodeFormat, MissingKeywordFileIsRestoredByteExact) {
  ASSERT_FALSE(fs::exists(app_));
  CCodeFormat format;
  const std::string bytes = TestFolder::Read(app_ / "sfn.dat");
  std::vector<std::string> lines = vb::Split(bytes, "\r\n");
  ASSERT_EQ(lines.size(), 270u);  // 266 keywords, 2 empty, comment, after the final CR LF
  EXPECT_EQ(lines.front(), "Alias");
  EXPECT_EQ(lines[265], "Variant");
  EXPECT_EQ(lines[268], ";Letzte Aktualisierung am: 29.05.2001 16:47:33");
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "Input"), 2);
  EXPECT_EQ(std::count(lines.begin(), lines.end(), "Line"), 2);
  // No bare line feeds.
  EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'),
            std::count(bytes.begin(), bytes.end(), '\r'));
  // Entries with a blank can never match a word.
  EXPECT_EQ(ConvertLine(format, "On Error"), " " + Kw("On") + " " + Kw("Error") + "<BR>");
}

TEST_F(CodeFormat, EditedKeywordFileIsUsedAsItStands) {
  // CR LF, a lone LF and a lone CR end lines; the last line has no end.
  const std::string edited = "Foo\r\nx\nBar\rBaz";
  root_.Write("app/sfn.dat", edited);
  {
    CCodeFormat format;
    EXPECT_EQ(ConvertLine(format, "Foo x Bar Baz Dim"),
              " " + Kw("Foo") + " x " + Kw("Bar") + " " + Kw("Baz") + " Dim<BR>");
  }
  EXPECT_EQ(TestFolder::Read(app_ / "sfn.dat"), edited);

  // A later edit is seen by the next formatter.
  root_.Write("app/sfn.dat", "Dim\r\n");
  CCodeFormat format;
  EXPECT_EQ(ConvertLine(format, "Foo Dim"), " Foo " + Kw("Dim") + "<BR>");

  // An empty file counts as missing and is restored.
  root_.Write("app/sfn.dat", "");
  CCodeFormat restored;
  EXPECT_EQ(TestFolder::Read(app_ / "sfn.dat").substr(0, 12), "Alias\r\nAnd\r\n");
  EXPECT_EQ(ConvertLine(restored, "Foo Dim"), " Foo " + Kw("Dim") + "<BR>");
  EXPECT_EQ(FaultsReported(), 0);
}

TEST_F(CodeFormat, LongLinesStayLinear) {
  // Apostrophes inside a string: each one needs the quote count in front of
  // it, which must not be recounted from the start of the line.
  std::string line = "x = \"";
  for (int i = 0; i < 200000; ++i) line += "a' ";
  line += "\" ' end";
  CCodeFormat format;
  auto started = std::chrono::steady_clock::now();
  std::string html = ConvertLine(format, line);
  auto seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
  EXPECT_LT(seconds, 5.0);
  const std::string end = "a' \"" + Comment("' end");
  ASSERT_GT(html.size(), end.size());
  EXPECT_EQ(html.substr(html.size() - end.size()), end);
}

}  // namespace
}  // namespace folioscope
