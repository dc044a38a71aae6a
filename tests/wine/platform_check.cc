// Checks of the Windows platform against a real Windows (or Wine): the
// registry store behind CRegistry, RunAndWait, the application folder, the
// unattended dialogs and the Windows branches of the file helpers.
//
//   platform_check.exe        a GoogleTest program
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "infra/file_system.h"
#include "infra/platform.h"
#include "infra/registry.h"
#include "infra/settings_backend.h"
#include "infra/vb_runtime.h"
#include "infra/windows_platform.h"

namespace {

using namespace folioscope;

std::string Slurp(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// A fresh scratch folder below %TEMP%, with a blank and an & in its name.
std::string ScratchFolder() {
  std::string folder = CurrentPlatform().FallbackLogFolder() + "\\folioscope check & " +
                       std::to_string(::GetCurrentProcessId());
  std::error_code ec;
  std::filesystem::remove_all(folder, ec);
  std::filesystem::create_directories(folder, ec);
  return folder;
}

// A fresh folder for the checks that write files, made by main().
std::string scratch_folder;

// The twelve registry operations on the real registry, under a key of its own.
TEST(WindowsPlatform, RegistryStoreBehindCRegistry) {
  CRegistry reg;
  const uint32_t hkcu = kHkeyCurrentUser;
  const std::string key =
      "Software\\Quillon\\PlatformCheck" + std::to_string(::GetCurrentProcessId());
  SettingsBackend& store = CurrentPlatform().Settings();

  EXPECT_TRUE(reg.CreateRegKey(hkcu, key + "\\Unter\\Tiefer")) << "CreateRegKey creates parents";
  EXPECT_TRUE(!reg.CreateRegKey(0x12345678u, "Software")) << "an unknown root fails";

  reg.SaveRegString(hkcu, key, "Titel",
                    "Gr\xFC\xDF"
                    "e \x80");
  EXPECT_EQ(reg.ReadRegString(hkcu, key, "Titel", "d"),
            "Gr\xFC\xDF"
            "e \x80")
      << "Windows-1252 string round trip";
  auto raw = store.QueryValue(hkcu, key, "Titel");
  EXPECT_TRUE(raw && raw->type == kRegSz &&
              raw->data.substr(0, 7) ==
                  "Gr\xFC\xDF"
                  "e \x80" &&
              raw->data.find_first_not_of('\0', 7) == std::string::npos)
      << "SaveRegString stores the text";
  store.SetValue(hkcu, key, "MitNul", RegValue{kRegSz, std::string("vor\0nach", 8)});
  EXPECT_EQ(reg.ReadRegString(hkcu, key, "MitNul", "d"), "vor") << "a string is cut at its NUL";
  store.SetValue(hkcu, key, "Erweitert", RegValue{kRegExpandSz, std::string("%TEMP%\0", 7)});
  EXPECT_EQ(reg.ReadRegString(hkcu, key, "Erweitert", "d"), "d")
      << "an expandable string reads as the default";
  EXPECT_EQ(reg.ReadRegString(hkcu, key + "\\Fehlt", "Titel", "d"), "d") << "missing key: default";

  EXPECT_EQ(reg.ReadRegWord(hkcu, key + "\\Fehlt", "LNR", 5), 0)
      << "ReadRegWord: missing key gives 0";
  EXPECT_EQ(reg.ReadRegWord(hkcu, key, "LNR", 5), 5) << "ReadRegWord: missing value gives Default";
  reg.SaveRegWord(hkcu, key, "LNR", -1);
  EXPECT_EQ(reg.ReadRegWord(hkcu, key, "LNR", 5), -1) << "word round trip";
  // The word query reads into four bytes: a longer value fails the query.
  EXPECT_EQ(reg.ReadRegWord(hkcu, key, "Titel", 5), 5) << "a long string read as word: Default";
  reg.SaveRegString(hkcu, key, "Kurz", "ab");
  EXPECT_EQ(reg.ReadRegWord(hkcu, key, "Kurz", 5), 0) << "a short string read as word gives 0";
  reg.DeleteRegValue(hkcu, key, "Kurz");
  store.SetValue(hkcu, key, "Bytes", RegValue{kRegBinary, std::string("\x01\x02", 2)});

  // Windows enumerates values in the order written, Wine by name: the
  // types are checked by name.
  EXPECT_EQ(reg.SubValueCount(hkcu, key), 5) << "SubValueCount";
  std::map<std::string, std::string> types;
  for (int32_t i = 1; i <= 5; ++i)
    types[reg.SubValueName(hkcu, key, i)] = reg.SubValueType(hkcu, key, i);
  const std::map<std::string, std::string> expected_types = {
      {"Titel", "UNI"}, {"MitNul", "UNI"}, {"Erweitert", ""}, {"LNR", "WRD"}, {"Bytes", "BIN"}};
  EXPECT_EQ(types, expected_types) << "SubValueName and SubValueType of every value";
  EXPECT_EQ(reg.SubValueName(hkcu, key, 6), "") << "SubValueName past the end";
  EXPECT_EQ(reg.SubValueName(hkcu, key, 0), "") << "SubValueName 0";

  reg.CreateRegKey(hkcu, key + "\\Zweiter");
  EXPECT_EQ(reg.SubKeyCount(hkcu, key), 2) << "SubKeyCount";
  EXPECT_EQ(reg.SubKeyName(hkcu, key, 1) + "," + reg.SubKeyName(hkcu, key, 2), "Unter,Zweiter")
      << "SubKeyName";
  EXPECT_EQ(reg.SubKeyName(hkcu, key, 3), "") << "SubKeyName past the end";
  EXPECT_EQ(reg.SubKeyCount(hkcu, key + "\\Fehlt"), 0) << "SubKeyCount of a missing key";

  reg.DeleteRegValue(hkcu, key, "LNR");
  EXPECT_EQ(reg.SubValueCount(hkcu, key), 4) << "DeleteRegValue";
  reg.DeleteRegKey(hkcu, key + "\\Unter");
  EXPECT_TRUE(store.KeyExists(hkcu, key + "\\Unter")) << "a key with sub-keys is not deleted";
  reg.DeleteRegKey(hkcu, key + "\\Unter\\Tiefer");
  reg.DeleteRegKey(hkcu, key + "\\Unter");
  reg.DeleteRegKey(hkcu, key + "\\Zweiter");
  reg.DeleteRegKey(hkcu, key);
  EXPECT_TRUE(!store.KeyExists(hkcu, key)) << "the check's key is gone";
}

TEST(WindowsPlatform, RunAndWait) {
  const std::string& scratch = scratch_folder;
  Platform& p = CurrentPlatform();
  EXPECT_EQ(p.RunAndWait({"cmd.exe", "/c", "exit 7"}, "", false), 7) << "exit code without pumping";
  EXPECT_EQ(p.RunAndWait({"cmd.exe", "/c", "exit 3"}, "", true), 3) << "exit code while pumping";
  EXPECT_EQ(p.RunAndWait({"does-not-exist-4711.exe"}, "", false), -1)
      << "a missing program gives -1";

  // The help compiler's batch file sits in the output folder, whose name
  // may hold blanks and &.
  const std::string batch = scratch + "\\compile.bat";
  WriteTextFile(batch, "echo erledigt> ergebnis.txt\r\nexit 0", false);
  EXPECT_EQ(p.RunAndWait({"cmd.exe", "/c", "\"" + batch + "\""}, scratch, true), 0)
      << "the batch file ran";
  EXPECT_TRUE(Slurp(scratch + "\\ergebnis.txt").rfind("erledigt", 0) == 0)
      << "the batch file ran in the working folder";
}

TEST(WindowsPlatform, ApplicationFolderAndLocale) {
  Platform& p = CurrentPlatform();
  char exe[MAX_PATH];
  DWORD n = ::GetModuleFileNameA(nullptr, exe, sizeof exe);
  std::string exe_path(exe, n);
  std::string folder = exe_path.substr(0, exe_path.find_last_of('\\'));
  EXPECT_EQ(p.ApplicationFolder(), folder.c_str()) << "ApplicationFolder is the module's folder";
  EXPECT_EQ(p.ApplicationFileName(), "platform_check") << "ApplicationFileName";
  EXPECT_TRUE(!p.FallbackLogFolder().empty() && p.FallbackLogFolder().back() != '\\')
      << "FallbackLogFolder without trailing separator";
  std::string now = p.NowText();
  EXPECT_TRUE(now.size() == 19 && now[2] == '.' && now[5] == '.' && now[10] == ' ' &&
              now[13] == ':' && now[16] == ':')
      << "NowText has the form dd.mm.yyyy hh:nn:ss: " + now;
  EXPECT_TRUE(!p.NumberGroupSeparator().empty()) << "NumberGroupSeparator";
}

TEST(WindowsPlatform, FileHelpers) {
  const std::string& scratch = scratch_folder;
  CFileSystem fs;
  std::ofstream(scratch + "\\leer.txt").close();
  std::ofstream(scratch + "\\voll.txt") << "x";
  EXPECT_TRUE(!fs.IsDateiVorhanden(scratch + "\\leer.txt")) << "an empty file counts as absent";
  EXPECT_TRUE(fs.IsDateiVorhanden(scratch + "\\voll.txt")) << "a file with content is there";
  EXPECT_TRUE(fs.IsDateiVorhanden(scratch + "\\v*.txt")) << "wildcards are honoured";
  EXPECT_TRUE(!fs.IsDateiVorhanden(scratch)) << "a folder is no file";
  EXPECT_TRUE(fs.IsOrdnerVorhanden(scratch)) << "the folder is there";
  EXPECT_TRUE(!fs.IsOrdnerVorhanden(scratch + "\\")) << "a trailing backslash matches nothing";

  const std::string target = scratch + "\\atomar.dat";
  EXPECT_TRUE(WriteFileAtomically(target, "alt")) << "WriteFileAtomically creates";
  EXPECT_TRUE(WriteFileAtomically(target, "neu"))
      << "WriteFileAtomically replaces an existing file";
  EXPECT_EQ(ReadFileText(target), "neu") << "the replaced content";
  int raised = 0;
  try {
    ReadFileText(scratch + "\\fehlt.txt");
  } catch (const vb::RuntimeError& e) {
    raised = e.number();
  }
  EXPECT_EQ(raised, 53) << "ReadFileText of a missing file raises 53";
  raised = 0;
  try {
    WriteTextFile(scratch + "\\fehlt\\seite.htm", "x", false);
  } catch (const vb::RuntimeError& e) {
    raised = e.number();
  }
  EXPECT_EQ(raised, 76) << "WriteTextFile into a missing folder raises 76";
}

class NoActions : public ErrorDialogActions {
 public:
  void Print() override {}
  void SendMail() override {}
};

TEST(WindowsPlatform, UnattendedDialogs) {
  const std::string& scratch = scratch_folder;
  const std::string log = scratch + "\\dialoge.txt";
  // Set the way a host would, in the process environment block.
  ::SetEnvironmentVariableA("FOLIOSCOPE_DIALOG_LOG", log.c_str());
  Platform& p = CurrentPlatform();
  EXPECT_EQ(p.MessageBox("Datei fehlt.", kMbExclamation, "Quillon"), 1) << "message box answers OK";
  NoActions actions;
  EXPECT_EQ(p.ShowErrorDialog("Bericht\r\nZeile 2", actions), static_cast<int32_t>(kChoiceIgnore))
      << "error dialog answers Ignorieren";
  EXPECT_EQ(Slurp(log),
            "MessageBox 48 Quillon\r\nDatei fehlt.\r\n\r\nErrorDialog\r\nBericht\r\nZeile "
            "2\r\n\r\n")
      << "the dialogs' log";
  ::SetEnvironmentVariableA("FOLIOSCOPE_DIALOG_LOG", nullptr);
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  folioscope::WindowsPlatform platform;
  folioscope::ScopedPlatform installed(&platform);
  scratch_folder = ScratchFolder();
  const int status = RUN_ALL_TESTS();
  std::error_code ec;
  std::filesystem::remove_all(scratch_folder, ec);
  return status;
}
