#include "infra/registry_hive.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "infra/file_system.h"
#include "infra/hive_file_settings.h"
#include "infra/registry.h"
#include "infra/test_folder.h"

namespace folioscope {
namespace {

constexpr uint32_t kHkcu = kHkeyCurrentUser;

RegistryTree Parse(const std::string& text, std::string* error = nullptr) {
  RegistryTree tree;
  std::string err;
  EXPECT_TRUE(ParseHive(text, "t.reg", &tree, &err)) << err;
  if (error) *error = err;
  return tree;
}

TEST(RegistryHive, EveryValueTypeRoundTripsExactly) {
  const std::vector<std::pair<std::string, RegValue>> values = {
      {"Plain", {kRegSz, "Standard"}},
      {"Quotes", {kRegSz, "a \"b\" C:\\Res\\"}},
      {"Empty", {kRegSz, ""}},
      {"WithNul", {kRegSz, std::string("ab\0cd", 5)}},
      {"Terminated", {kRegSz, std::string("ab\0", 3)}},
      {"Umlaut",
       {kRegSz,
        "Pr\xFC"
        "fung \x80 \x81"}},
      {"Newline", {kRegSz, "a\r\nb"}},
      {"Expand", {kRegExpandSz, std::string("%TEMP%\0", 7)}},
      {"Multi", {kRegMultiSz, std::string("a\0b\0\0", 5)}},
      {"Word", {kRegDword, std::string("\x0a\0\0\x80", 4)}},
      {"ShortWord", {kRegDword, "\x01"}},
      {"Binary", {kRegBinary, std::string(200, '\xAB')}},
      {"EmptyBinary", {kRegBinary, ""}},
      {"Qword", {kRegQword, std::string("\1\2\3\4\5\6\7\x08", 8)}},
      {"None", {kRegNone, "xy"}},
      {"Odd", {0x1234, "z"}},
      {"", {kRegSz, "default"}},
  };
  RegistryTree tree;
  tree.CreateKey(kHkcu, "Software\\Quillon\\Config");
  tree.CreateKey(kHkcu, "Software\\Quillon\\Empty Key");
  for (const auto& [name, value] : values)
    tree.SetValue(kHkcu, "Software\\Quillon\\Config", name, value);

  std::string text = SerializeHive(tree);
  for (unsigned char c : text) ASSERT_LT(c, 0x80) << "ASCII names keep the file ASCII";
  EXPECT_EQ(0u, text.find("Windows Registry Editor Version 5.00\r\n\r\n"));
  EXPECT_NE(std::string::npos, text.find("\"Plain\"=\"Standard\"\r\n"));
  EXPECT_NE(std::string::npos, text.find("\"Quotes\"=\"a \\\"b\\\" C:\\\\Res\\\\\"\r\n"));
  EXPECT_NE(std::string::npos, text.find("\"Word\"=dword:8000000a\r\n"));
  EXPECT_NE(std::string::npos, text.find("@=\"default\""));
  EXPECT_NE(std::string::npos, text.find("\"Umlaut\"=hex(1):50,00,72,00,fc,00,"));

  RegistryTree back = Parse(text);
  EXPECT_TRUE(back.KeyExists(kHkcu, "Software\\Quillon\\Empty Key"));
  for (const auto& [name, value] : values) {
    auto got = back.QueryValue(kHkcu, "Software\\Quillon\\Config", name);
    ASSERT_TRUE(got) << name;
    EXPECT_EQ(value.type, got->type) << name;
    EXPECT_EQ(value.data, got->data) << name;
  }
  EXPECT_EQ(text, SerializeHive(back));
}

TEST(RegistryHive, NonAsciiNamesWriteUtf16WithByteOrderMark) {
  RegistryTree tree;
  tree.CreateKey(kHkcu,
                 "Software\\Gr\xFC\xDF"
                 "e");
  tree.SetValue(kHkcu,
                "Software\\Gr\xFC\xDF"
                "e",
                "\xC4nderung", RegValue{kRegSz, "x"});
  std::string bytes = SerializeHive(tree);
  ASSERT_EQ("\xFF\xFE", bytes.substr(0, 2));
  EXPECT_EQ(std::string("W\0i\0", 4), bytes.substr(2, 4));
  RegistryTree back;
  std::string err;
  ASSERT_TRUE(ParseHive(bytes, "u.reg", &back, &err)) << err;
  EXPECT_EQ("x", back.QueryValue(kHkcu,
                                 "Software\\Gr\xFC\xDF"
                                 "e",
                                 "\xC4nderung")
                     ->data);
}

std::string Utf16(const std::string& ascii_or_utf8_free) {
  std::string out = "\xFF\xFE";
  for (char c : ascii_or_utf8_free) {
    out += c;
    out += '\0';
  }
  return out;
}

TEST(RegistryHive, ReadsEditorExports) {
  // A UTF-16 export as the registry editor writes it, with a wrapped
  // REG_EXPAND_SZ, a comment and deletions.
  std::string text =
      "Windows Registry Editor Version 5.00\r\n\r\n"
      "[HKEY_CURRENT_USER\\Software\\Quillon\\Config]\r\n"
      "\"ShowHelpContextID\"=dword:00000002\r\n"
      "; a comment\r\n"
      "\"Path\"=hex(2):25,00,54,00,\\\r\n"
      "  45,00,00,00\r\n"
      "\"Gone\"=\"x\"\r\n"
      "\"Gone\"=-\r\n"
      "[HKEY_CURRENT_USER\\Software\\Quillon\\Old\\Deep]\r\n"
      "[-HKEY_CURRENT_USER\\Software\\Quillon\\Old]\r\n"
      "[HKCU\\Software\\Quillon\\Config\\CurrentReport]\r\n"
      "\"ReportLanguage\"  =  \"Deutsch\"\r\n";
  RegistryTree tree;
  std::string err;
  ASSERT_TRUE(ParseHive(Utf16(text), "e.reg", &tree, &err)) << err;
  CRegistry reg(&tree);
  EXPECT_EQ(2, reg.ReadRegWord(kHkcu, kConfigKey, "ShowHelpContextID", 0));
  EXPECT_EQ(std::string("%TE\0", 4), tree.QueryValue(kHkcu, kConfigKey, "Path")->data);
  EXPECT_FALSE(tree.QueryValue(kHkcu, kConfigKey, "Gone"));
  EXPECT_FALSE(tree.KeyExists(kHkcu, "Software\\Quillon\\Old"));
  EXPECT_EQ("Deutsch", reg.ReadRegString(kHkcu, kCurrentReportKey, "ReportLanguage", ""));

  // 8-bit files: Windows-1252 and UTF-8 both read as Windows-1252 text;
  // REGEDIT4 keeps string hex data 8-bit.
  RegistryTree eight = Parse(
      "REGEDIT4\n[HKEY_CURRENT_USER\\A]\n\"a\"=\"Pr\xFC"
      "f\"\n\"b\"=\"Pr\xC3\xBC"
      "f\"\n"
      "\"c\"=hex(2):41,42,00\n");
  EXPECT_EQ(
      "Pr\xFC"
      "f",
      eight.QueryValue(kHkcu, "A", "a")->data);
  EXPECT_EQ(
      "Pr\xFC"
      "f",
      eight.QueryValue(kHkcu, "A", "b")->data);
  EXPECT_EQ(std::string("AB\0", 3), eight.QueryValue(kHkcu, "A", "c")->data);
}

TEST(RegistryHive, MalformedLinesNameFileAndLine) {
  const std::pair<std::string, std::string> cases[] = {
      {"hello\n", "r.reg:1: not a registry file"},
      {"REGEDIT4\n\"a\"=\"b\"\n", "r.reg:2: value outside a key"},
      {"REGEDIT4\n[HKEY_NOWHERE\\A]\n", "r.reg:2: unknown root key"},
      {"REGEDIT4\n[HKCU\\A\n", "r.reg:2: key line without closing"},
      {"REGEDIT4\n[HKCU\\A]\n\n\"a\"=dword:xyz\n", "r.reg:4: malformed dword"},
      {"REGEDIT4\n[HKCU\\A]\n\"a\"=hex:01,\\\n 0g\n", "r.reg:3: malformed hex byte"},
      {"REGEDIT4\n[HKCU\\A]\n\"a\"=\"open\n", "r.reg:3: missing closing"},
      {"REGEDIT4\n[HKCU\\A]\n\"a\"=word:1\n", "r.reg:3: unknown value data"},
      {"REGEDIT4\n[HKCU\\A]\n\"a\"\"b\"\n", "r.reg:3: missing '='"},
      {"REGEDIT4\n[HKCU\\A]\n\"a\"=hex(zz):00\n", "r.reg:3: malformed hex(type)"},
  };
  for (const auto& [text, expected] : cases) {
    RegistryTree tree;
    std::string err;
    EXPECT_FALSE(ParseHive(text, "r.reg", &tree, &err)) << text;
    EXPECT_EQ(0u, err.find(expected)) << err;
  }
}

class HiveFileTest : public ::testing::Test {
 protected:
  static std::string Slurp(const std::string& p) { return TestFolder::Read(p); }
  TestFolder folder_;
  const std::filesystem::path dir_ = folder_.path();
  const std::string path_ = (dir_ / "sub" / "registry.reg").string();
};

TEST_F(HiveFileTest, WritesKeepOtherKeysAndCreateTheFolder) {
  HiveFileSettings hive(path_);
  CRegistry reg(&hive);
  EXPECT_EQ(0, reg.ReadRegWord(kHkcu, kConfigKey, "LNR", 7)) << "missing file: no key";
  reg.SaveRegString(kHkcu, kCurrentReportKey, "ReportPath", "Standard");
  reg.SaveRegWord(kHkcu, "Software\\Other", "Keep", 5);
  reg.SaveRegWord(kHkcu, kConfigKey, "LNR", 1);
  reg.DeleteRegValue(kHkcu, kConfigKey, "LNR");

  HiveFileSettings reread(path_);
  CRegistry reg2(&reread);
  EXPECT_EQ("Standard", reg2.ReadRegString(kHkcu, kCurrentReportKey, "ReportPath", ""));
  EXPECT_EQ(5, reg2.ReadRegWord(kHkcu, "Software\\Other", "Keep", 0));
  EXPECT_EQ(9, reg2.ReadRegWord(kHkcu, kConfigKey, "LNR", 9));
  for (const auto& entry : std::filesystem::directory_iterator(dir_ / "sub"))
    EXPECT_EQ("registry.reg", entry.path().filename()) << "no temporary file left";
}

TEST_F(HiveFileTest, CachesUntilTheFileChanges) {
  HiveFileSettings hive(path_);
  CRegistry reg(&hive);
  reg.SaveRegWord(kHkcu, kConfigKey, "ShowHelpContextID", 1);
  int parses = hive.parse_count();
  for (int i = 0; i < 20; ++i) reg.ReadRegWord(kHkcu, kConfigKey, "ShowHelpContextID", 0);
  EXPECT_EQ(parses, hive.parse_count()) << "a cached read parses nothing";

  // Another program changes the file: same size, the value must follow.
  std::string text = Slurp(path_);
  size_t at = text.find("dword:00000001");
  ASSERT_NE(std::string::npos, at);
  text.replace(at, 14, "dword:00000002");
  ASSERT_TRUE(WriteFileAtomically(path_, text));
  EXPECT_EQ(2, reg.ReadRegWord(kHkcu, kConfigKey, "ShowHelpContextID", 0));
  EXPECT_EQ(parses + 1, hive.parse_count());
}

TEST_F(HiveFileTest, AReadGroupLooksForOutsideChangesOnceAndTheNextReadLooksAgain) {
  HiveFileSettings hive(path_);
  HiveFileSettings other_program(path_);
  CRegistry reg(&hive);
  CRegistry other(&other_program);
  reg.SaveRegWord(kHkcu, kConfigKey, "LNR", 1);
  {
    CRegistry::ReadGroup group(reg);
    EXPECT_EQ(1, reg.ReadRegWord(kHkcu, kConfigKey, "LNR", 0));
    other.SaveRegWord(kHkcu, kConfigKey, "LNR", 2);
    {
      CRegistry::ReadGroup nested(reg);
      EXPECT_EQ(1, reg.ReadRegWord(kHkcu, kConfigKey, "LNR", 0)) << "one reading per group";
    }
    EXPECT_EQ(1, reg.ReadRegWord(kHkcu, kConfigKey, "LNR", 0)) << "the outer group still holds";
    reg.SaveRegWord(kHkcu, kConfigKey, "ShowModulePath", 3);
    EXPECT_EQ(3, reg.ReadRegWord(kHkcu, kConfigKey, "ShowModulePath", 0)) << "own writes show";
  }
  EXPECT_EQ(2, reg.ReadRegWord(kHkcu, kConfigKey, "LNR", 0))
      << "our write re-read the file, the other program's value is kept";
  other.SaveRegWord(kHkcu, kConfigKey, "LNR", 4);
  EXPECT_EQ(4, reg.ReadRegWord(kHkcu, kConfigKey, "LNR", 0)) << "outside a group every read looks";
  {
    CRegistry::ReadGroup group(reg);
    other.SaveRegWord(kHkcu, kConfigKey, "LNR", 5);
    EXPECT_EQ(5, reg.ReadRegWord(kHkcu, kConfigKey, "LNR", 0)) << "a new group looks again";
  }
}

TEST_F(HiveFileTest, UnreadableFileIsReportedAndNeverOverwritten) {
  folder_.Write("sub/registry.reg", "not a hive\n");
  HiveFileSettings hive(path_);
  EXPECT_FALSE(hive.Load());
  EXPECT_EQ(path_ + ":1: not a registry file (expected \"Windows Registry Editor Version 5.00\")",
            hive.LoadError());
  CRegistry(&hive).SaveRegWord(kHkcu, kConfigKey, "LNR", 1);
  EXPECT_EQ("not a hive\n", Slurp(path_));
}

}  // namespace
}  // namespace folioscope
