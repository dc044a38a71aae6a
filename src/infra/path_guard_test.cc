#include "infra/path_guard.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "infra/test_folder.h"

namespace folioscope {
namespace {

namespace fs = std::filesystem;

using namespace std::string_literals;

TEST(PathGuard, SafeFileNames) {
  const std::string good[] = {
      "Projekt.htm",
      "modKasse_Get_Saldo.htm",
      "folioscope.css",
      ".folioscope-report",
      "a..b.htm",
      "CONSOLE.htm",
      "COM10.htm",
      "Stra\xDF"
      "e.htm",
      "LPT.htm",
      "nul_.htm",
      "x",
      std::string(255, 'a'),
  };
  for (const std::string& name : good) EXPECT_TRUE(IsSafeFileName(name)) << name;

  const std::string bad[] = {
      "",           ".",           "..",       "...",
      "../x.htm",   "..\\x.htm",   "a/b.htm",  "a\\b.htm",
      "/etc",       "C:x.htm",     "C:",       "x.htm:stream",
      "a*.htm",     "a?.htm",      "a<b",      "a>b",
      "a|b",        "a\"b",        "x.htm.",   "x.htm ",
      "CON",        "con.htm",     "Con .htm", "NUL",
      "nul.tar.gz", "AUX.htm",     "PRN",      "COM1",
      "com9.htm",   "LPT1.htm",    "COM\xB9",  "LPT\xB2.htm",
      "CONIN$",     "conout$.txt", "a\tb.htm", "a\nb",
      "a\x1F",      "x\0y.htm"s,   "\0"s,      std::string(256, 'a'),
  };
  for (const std::string& name : bad) {
    EXPECT_FALSE(IsSafeFileName(name)) << PrintableName(name);
  }
}

TEST(PathGuard, SafeRelativePaths) {
  for (const char* path : {"Standard", "Standard\\Index.htm", "Standard/Index.htm", "a/b/c.css"}) {
    EXPECT_TRUE(IsSafeRelativePath(path)) << path;
  }
  for (const char* path :
       {"", "..", "Standard\\..\\..\\x", "../Standard", "/etc/passwd", "\\\\server\\share",
        "C:\\Windows", "C:Standard", "Standard\\", "Standard//Index.htm", "./Standard",
        "Standard\\CON", "Standard/aux.css", "Standard\\Index.htm."}) {
    EXPECT_FALSE(IsSafeRelativePath(path)) << path;
  }
}

class ResolveInsideTest : public ::testing::Test {
 protected:
  ResolveInsideTest() {
    folder_.Write("outside/secret.txt", "secret");
    folder_.Write("base/sub/in.txt", "in");
  }
  std::string Base() const { return (root_ / "base").string(); }
  TestFolder folder_;
  const fs::path root_ = folder_.path();
};

TEST_F(ResolveInsideTest, JoinsNamesBelowTheBase) {
  EXPECT_EQ(ResolveInside(Base(), "sub\\in.txt"), Base() + "/sub/in.txt");
  EXPECT_EQ(ResolveInside(Base(), "new.htm"), Base() + "/new.htm");  // need not exist
  EXPECT_EQ(ResolveInside(Base() + "/", "new.htm"), Base() + "/new.htm");
  EXPECT_EQ(ResolveInside(Base(), "missing/deeper/x.htm"), Base() + "/missing/deeper/x.htm");
  // A link that stays inside is fine.
  fs::create_directory_symlink(root_ / "base" / "sub", root_ / "base" / "alias");
  EXPECT_EQ(ResolveInside(Base(), "alias/in.txt"), Base() + "/alias/in.txt");
}

TEST_F(ResolveInsideTest, RefusesEveryWayOut) {
  for (const char* name : {"..\\outside\\secret.txt", "../outside", "sub/../../outside",
                           "/etc/passwd", "C:\\x", "", "CON"}) {
    EXPECT_FALSE(ResolveInside(Base(), name).has_value()) << name;
  }
  // Links below the base that lead out of it: to a folder, to a file, and
  // one that points nowhere yet (a write would create its target outside).
  fs::create_directory_symlink(root_ / "outside", root_ / "base" / "out_dir");
  fs::create_symlink(root_ / "outside" / "secret.txt", root_ / "base" / "sub" / "secret.txt");
  fs::create_symlink(root_ / "outside" / "planted.txt", root_ / "base" / "planted.txt");
  for (const char* name :
       {"out_dir/secret.txt", "out_dir/new.htm", "out_dir", "sub/secret.txt", "planted.txt"}) {
    EXPECT_FALSE(ResolveInside(Base(), name).has_value()) << name;
  }
  EXPECT_FALSE(fs::exists(root_ / "outside" / "planted.txt"));
}

}  // namespace
}  // namespace folioscope
