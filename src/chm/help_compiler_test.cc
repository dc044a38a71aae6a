#include "chm/help_compiler.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "chm/chm_test_support.h"

namespace folioscope {
namespace {

using chm_testing::ReadBytes;
using chm_testing::WriteBytes;

class HelpCompilerTest : public ::testing::Test {
 protected:
  HelpCompilerTest()
      : dir_(std::filesystem::temp_directory_path() /
             ("fs_hhc_test_" + std::to_string(::getpid()) + "_" +
              ::testing::UnitTest::GetInstance()->current_test_info()->name())) {
    std::filesystem::remove_all(dir_);
    std::filesystem::create_directories(dir_);
  }
  ~HelpCompilerTest() override { std::filesystem::remove_all(dir_); }
  std::filesystem::path dir_;
};

TEST_F(HelpCompilerTest, DerivedProjectInlinesHeadersAndListsAliasTargets) {
  WriteBytes(dir_ / "alias_test.h", "A_B = A_B.htm\r\nA_C = A_C.htm\r\n\r\n");
  WriteBytes(dir_ / "Map_Test.h", "#define A_B  7\r\n");
  const std::string hhp =
      "[Options]\r\nCompiled File = X.chm\r\n\r\n"
      "[FILES]\r\nstyle.css\r\na_c.HTM\r\n\r\n\r\n\r\n"
      "[Alias]\r\n#include alias_Test.h\r\n\r\n"
      "[MAP]\r\n#include Map_Test.h";
  EXPECT_EQ(ChmcmdProjectText(dir_.string(), hhp),
            "[Options]\r\nCompiled File = X.chm\r\n\r\n"
            "[FILES]\r\nA_B.htm\r\nstyle.css\r\na_c.HTM\r\n\r\n\r\n\r\n"
            "[Alias]\r\nA_B = A_B.htm\r\nA_C = A_C.htm\r\n\r\n\r\n"
            "[MAP]\r\n#define A_B  7\r\n");
  // An include outside the two sections and a missing header file: the
  // first is kept, the second contributes nothing.
  EXPECT_EQ(ChmcmdProjectText(dir_.string(), "[OPTIONS]\n#include x.h\n[ALIAS]\n#include none.h\n"),
            "[OPTIONS]\r\n#include x.h\r\n[ALIAS]\r\n");
}

TEST_F(HelpCompilerTest, DerivedProjectListsThePagesOfListedFrameSets) {
  WriteBytes(dir_ / "_Index.htm",
             "<FRAMESET><FRAME name=\"Oben\" src=\"Logo.htm\" noresize>"
             "<frame SRC='Menu.htm'><FRAME src=Gone.htm></FRAMESET>");
  WriteBytes(dir_ / "Logo.htm", "logo");
  WriteBytes(dir_ / "Menu.htm", "menu");
  EXPECT_EQ(ChmcmdProjectText(dir_.string(), "[FILES]\r\n_Index.htm\r\nMenu.htm"),
            "[FILES]\r\nLogo.htm\r\n_Index.htm\r\nMenu.htm\r\n");
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
