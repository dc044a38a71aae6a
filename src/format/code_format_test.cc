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
#include "infra/test_examples.h"
#include "infra/test_folder.h"
#include "infra/vb_runtime.h"

namespace folioscope {
namespace {

namespace fs = std::filesystem;

const std::string kFragmentHeader =
    "<FONT COLOR=#000000><FONT style='font-family: Courier New;'><PRE>";
const std::string kFragmentFooter = "</PRE>";
const std::string kDocumentFooter = "</PRE></body>\r\n</html>";

std::string DocumentHeader(const std::string& background, const std::string& color) {
  return "<html>\r\n<head>\r\n<title></title>\r\n</head>\r\n<BODY BGCOLOR='" + background +
         "' style='BORDER-BOTTOM: 0px; BORDER-LEFT: 0px; BORDER-RIGHT: 0px; BORDER-TOP: 0px; "
         "MARGIN : 0px; padding-left: 18px;'>\r\n<FONT COLOR=" +
         color + "><p style='font-family: Courier New;'><PRE>";
}

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
  ~CodeFormat() override { EXPECT_EQ(CErrorHandler::Instance().ReportCount(), reports_before_); }

  // The fragment `format` makes of lines start..end of `m`.
  static std::string Fragment(CCodeFormat& format, SourceMember& m, int32_t start, int32_t& end) {
    bool full = false;
    format.ExecuteMember(m, start, end, full);
    return format.FormatedCode();
  }
  // The fragment's body for one line.
  static std::string ConvertLine(CCodeFormat& format, const std::string& line) {
    auto m = Member({line});
    int32_t end = 1;
    return Fragment(format, *m, 1, end);
  }

  TestFolder root_;
  fs::path app_;
  RecordingPlatform platform_;
  ScopedPlatform scoped_;
  int64_t reports_before_ = 0;
};

// The examples run with the keyword list the formatter restores, which it
// writes byte for byte: 266 keywords, two empty lines and a comment.
TEST_F(CodeFormat, ExamplesWithTheRestoredKeywordList) {
  ASSERT_FALSE(fs::exists(app_));
  CCodeFormat format;
  const std::string bytes = TestFolder::Read(app_ / "sfn.dat");
  std::vector<std::string> lines = vb::Split(bytes, "\r\n");
  ASSERT_EQ(lines.size(), 270u);
  EXPECT_EQ(lines[265], "Variant");
  EXPECT_EQ(lines[268], ";Letzte Aktualisierung am: 29.05.2001 16:47:33");
  EXPECT_EQ(std::count(bytes.begin(), bytes.end(), '\n'),
            std::count(bytes.begin(), bytes.end(), '\r'));

  for (const Example& e : ReadExamples("code_format.txt")) {
    EXPECT_EQ(ConvertLine(format, e.Text("line")),
              kFragmentHeader + e.Text("html") + kFragmentFooter)
        << e.where << ": " << e.title;
  }
}

TEST_F(CodeFormat, DocumentFrameAndDefaultsComeBackWhenEmptied) {
  auto m = Member({"x"});
  CCodeFormat format;
  format.SourceColor = "red";
  format.BackgroundColor = "#EEEEEE";
  format.SourceFont = "Arial";  // never reaches the output
  int32_t start = 1, end = 1;
  bool full = true;
  format.ExecuteMember(*m, start, end, full);
  EXPECT_EQ(format.FormatedCode(), DocumentHeader("#EEEEEE", "red") + " x<BR>" + kDocumentFooter);

  // A module is always a full document.
  SourceModule module;
  module.CodeLines.Add(1, "x");
  format.SourceColor = "";
  format.BackgroundColor = "";
  format.SourceFont = "";
  format.ExecuteModule(module, start, end);
  EXPECT_EQ(format.SourceFont, "Courier New");
  EXPECT_EQ(format.FormatedCode(),
            DocumentHeader("#FFFFFF", "#000000") + " x<BR>" + kDocumentFooter);
}

TEST_F(CodeFormat, LineRangeAndEndlineZero) {
  auto m = Member({"a1", "b2", "c3"});
  CCodeFormat format;
  int32_t end = 0;
  EXPECT_EQ(Fragment(format, *m, 1, end), kFragmentHeader + " a1<BR> b2<BR>" + kFragmentFooter);
  EXPECT_EQ(end, 2);  // Count - 1, seen by the caller

  // "Count" is the dictionary as it stands: a key 0 added by a scan counts.
  m->CodeLines.Item(0);
  end = 0;
  Fragment(format, *m, 1, end);
  EXPECT_EQ(end, 3);

  // A missing key is an empty line (and is added); a reversed range is empty.
  end = 4;
  EXPECT_EQ(Fragment(format, *m, 3, end),
            kFragmentHeader + " c3<BR><FONT COLOR=#000000>&#160;</FONT><BR>" + kFragmentFooter);
  EXPECT_TRUE(m->CodeLines.Exists(vb::DictKey::Long(4)));
  end = 2;
  EXPECT_EQ(Fragment(format, *m, 3, end), kFragmentHeader + kFragmentFooter);
}

// The keyword file as a user left it: read at each formatter's start, an
// empty one counts as missing.
TEST_F(CodeFormat, AnEditedKeywordFileIsUsedAsItStands) {
  const std::string body = kFragmentHeader + " %<BR>" + kFragmentFooter;
  auto expect = [&](const std::string& line) { return vb::Replace(body, "%", line); };
  const std::string kw = "<FONT COLOR=#000066>";
  // CR LF, a lone LF and a lone CR end lines; the last line has no end.
  root_.Write("app/sfn.dat", "Foo\r\nx\nBar\rBaz");
  {
    CCodeFormat format;
    EXPECT_EQ(ConvertLine(format, "Foo x Bar Baz Dim"),
              expect(kw + "Foo</FONT> x " + kw + "Bar</FONT> " + kw + "Baz</FONT> Dim"));
  }
  EXPECT_EQ(TestFolder::Read(app_ / "sfn.dat"), "Foo\r\nx\nBar\rBaz");
  root_.Write("app/sfn.dat", "");
  CCodeFormat restored;
  EXPECT_EQ(ConvertLine(restored, "Foo Dim"), expect("Foo " + kw + "Dim</FONT>"));
}

// Apostrophes inside a string: each one needs the quote count in front of
// it, which must not be recounted from the start of the line.
TEST_F(CodeFormat, LongLinesStayLinear) {
  std::string line = "x = \"";
  for (int i = 0; i < 200000; ++i) line += "a' ";
  line += "\" ' end";
  CCodeFormat format;
  auto started = std::chrono::steady_clock::now();
  std::string html = ConvertLine(format, line);
  auto seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
  EXPECT_LT(seconds, 5.0);
  EXPECT_TRUE(html.ends_with("a' \"<FONT COLOR=#009900>' end<BR></FONT></PRE>"));
}

}  // namespace
}  // namespace folioscope
