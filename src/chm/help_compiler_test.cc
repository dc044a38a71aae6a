#include "chm/help_compiler.h"

#include <gtest/gtest.h>

#include <string>

#include "pages/page_test_support.h"

namespace folioscope {
namespace {

using report_testing::WriteBytes;

// Names in another case are looked up in the platform's folder listings.
class HelpCompilerTest : public report_testing::TempDirTest {
 protected:
  RecordingPlatform platform_;
  ScopedPlatform installed_{&platform_};
};

TEST_F(HelpCompilerTest, DerivedProjectInlinesHeadersAndListsAliasTargets) {
  WriteBytes(root_ / "alias_test.h", "A_B = A_B.htm\r\nA_C = A_C.htm\r\n\r\n");
  WriteBytes(root_ / "Map_Test.h", "#define A_B  7\r\n");
  const std::string hhp =
      "[Options]\r\nCompiled File = X.chm\r\n\r\n"
      "[FILES]\r\nstyle.css\r\na_c.HTM\r\n\r\n\r\n\r\n"
      "[Alias]\r\n#include alias_Test.h\r\n\r\n"
      "[MAP]\r\n#include Map_Test.h";
  EXPECT_EQ(ChmcmdProjectText(root_.string(), hhp),
            "[Options]\r\nCompiled File = X.chm\r\n\r\n"
            "[FILES]\r\nA_B.htm\r\nstyle.css\r\na_c.HTM\r\n\r\n\r\n\r\n"
            "[Alias]\r\nA_B = A_B.htm\r\nA_C = A_C.htm\r\n\r\n\r\n"
            "[MAP]\r\n#define A_B  7\r\n");
  EXPECT_FALSE(platform_.listed_folders.empty());
  // An include outside the two sections and a missing header file: the
  // first is kept, the second contributes nothing.
  EXPECT_EQ(
      ChmcmdProjectText(root_.string(), "[OPTIONS]\n#include x.h\n[ALIAS]\n#include none.h\n"),
      "[OPTIONS]\r\n#include x.h\r\n[ALIAS]\r\n");
}

TEST_F(HelpCompilerTest, DerivedProjectListsThePagesOfListedFrameSets) {
  WriteBytes(root_ / "_Index.htm",
             "<FRAMESET><FRAME name=\"Oben\" src=\"Logo.htm\" noresize>"
             "<frame SRC='Menu.htm'><FRAME src=Gone.htm></FRAMESET>");
  WriteBytes(root_ / "Logo.htm", "logo");
  WriteBytes(root_ / "Menu.htm", "menu");
  EXPECT_EQ(ChmcmdProjectText(root_.string(), "[FILES]\r\n_Index.htm\r\nMenu.htm"),
            "[FILES]\r\nLogo.htm\r\n_Index.htm\r\nMenu.htm\r\n");
}

// Pages named beyond ASCII are on disk in UTF-8; chmcmd gets those names,
// including the contents pages it would not find by itself. Everything else
// stays byte for byte.
TEST_F(HelpCompilerTest, DerivedProjectNamesUmlautPagesAsTheFileSystemHoldsThem) {
  WriteBytes(root_ / "toc.hhc",
             "<param name=\"Local\" value=\"Projekt.htm\">\r\n"
             "<param name=\"Local\" value=\"CB\374cher_Z\xE4hle.htm\">\r\n");
  WriteBytes(root_ / "alias_test.h", "IDH_Z = CB\374cher_Z\xE4hle.htm\r\n");
  for (const char* page : {"Projekt.htm", "CB\xC3\274cher.htm", "CB\xC3\274cher_Z\xC3\xA4hle.htm"})
    WriteBytes(root_ / page, "x");
  const std::string hhp =
      "[Options]\r\nCompiled File = B\374cherei.chm\r\nContents file=toc.hhc\r\n"
      "Default topic = CB\374cher.htm\r\nTitle=B\374cherei \x96 Hilfe\r\n\r\n"
      "[FILES]\r\nProjekt.htm\r\nCB\374cher.htm\r\n\r\n"
      "[Alias]\r\n#include alias_Test.h\r\n";
  EXPECT_EQ(ChmcmdProjectText(root_.string(), hhp),
            "[Options]\r\nCompiled File = B\xC3\274cherei.chm\r\nContents file=toc.hhc\r\n"
            "Default topic = CB\xC3\274cher.htm\r\nTitle=B\374cherei \x96 Hilfe\r\n\r\n"
            "[FILES]\r\nCB\xC3\274cher_Z\xC3\xA4hle.htm\r\nProjekt.htm\r\nCB\xC3\274cher.htm\r\n"
            "\r\n[Alias]\r\nIDH_Z = CB\xC3\274cher_Z\xC3\xA4hle.htm\r\n");
}

TEST_F(HelpCompilerTest, WildcardsMatchLikeTheWindowsFileFunctions) {
  struct Case {
    const char* name;
    const char* pattern;
    bool match;
  } cases[] = {
      {"Projekt.htm", "*.htm", true},
      {"PROJEKT.HTM", "*.htm", true},
      {"Map_Test.h", "*.h", true},
      {"Table of Contents.hhc", "*.h", false},
      {"Project.hhp", "*.h", false},
      {"x.html", "*.htm", false},
      {"compile.bat", "compile.bat", true},
      {"a.js", "?.js", true},
      {"ab.js", "?.js", false},
      {"Kasse.chm", "*.hhc", false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(WildcardMatch(c.name, c.pattern), c.match) << c.name << " ~ " << c.pattern;
  }
}

}  // namespace
}  // namespace folioscope
