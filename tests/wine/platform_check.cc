// Checks of the Windows platform against a real Windows (or Wine): the
// registry store behind CRegistry, RunAndWait, the application folder, the
// unattended dialogs and the Windows branches of the file helpers.
//
//   platform_check.exe        prints one line per failed check and a summary
//                             "N passed, N failed"; exit status = failures.
#include <windows.h>

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

int passed = 0;
int failed = 0;

void Check(bool ok, const std::string& what) {
  if (ok) {
    ++passed;
  } else {
    ++failed;
    std::printf("FAILED: %s\n", what.c_str());
  }
}

template <typename T>
void CheckEq(const T& actual, const T& expected, const std::string& what) {
  Check(actual == expected, what);
}

void CheckEq(const std::string& actual, const char* expected, const std::string& what) {
  Check(actual == expected, what + " (got \"" + actual + "\", want \"" + expected + "\")");
}

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

// The twelve registry operations on the real registry, under a key of its own.
void CheckRegistry() {
  CRegistry reg;
  const uint32_t hkcu = kHkeyCurrentUser;
  const std::string key =
      "Software\\Quillon\\PlatformCheck" + std::to_string(::GetCurrentProcessId());
  SettingsBackend& store = CurrentPlatform().Settings();

  Check(reg.CreateRegKey(hkcu, key + "\\Unter\\Tiefer"), "CreateRegKey creates parents");
  Check(!reg.CreateRegKey(0x12345678u, "Software"), "an unknown root fails");

  reg.SaveRegString(hkcu, key, "Titel",
                    "Gr\xFC\xDF"
                    "e \x80");
  CheckEq(reg.ReadRegString(hkcu, key, "Titel", "d"),
          "Gr\xFC\xDF"
          "e \x80",
          "Windows-1252 string round trip");
  auto raw = store.QueryValue(hkcu, key, "Titel");
  Check(raw && raw->type == kRegSz &&
            raw->data.substr(0, 7) ==
                "Gr\xFC\xDF"
                "e \x80" &&
            raw->data.find_first_not_of('\0', 7) == std::string::npos,
        "SaveRegString stores the text");
  store.SetValue(hkcu, key, "MitNul", RegValue{kRegSz, std::string("vor\0nach", 8)});
  CheckEq(reg.ReadRegString(hkcu, key, "MitNul", "d"), "vor", "a string is cut at its NUL");
  store.SetValue(hkcu, key, "Erweitert", RegValue{kRegExpandSz, std::string("%TEMP%\0", 7)});
  CheckEq(reg.ReadRegString(hkcu, key, "Erweitert", "d"), "d",
          "an expandable string reads as the default");
  CheckEq(reg.ReadRegString(hkcu, key + "\\Fehlt", "Titel", "d"), "d", "missing key: default");

  CheckEq(reg.ReadRegWord(hkcu, key + "\\Fehlt", "LNR", 5), 0, "ReadRegWord: missing key gives 0");
  CheckEq(reg.ReadRegWord(hkcu, key, "LNR", 5), 5, "ReadRegWord: missing value gives Default");
  reg.SaveRegWord(hkcu, key, "LNR", -1);
  CheckEq(reg.ReadRegWord(hkcu, key, "LNR", 5), -1, "word round trip");
  // The word query reads into four bytes: a longer value fails the query.
  CheckEq(reg.ReadRegWord(hkcu, key, "Titel", 5), 5, "a long string read as word: Default");
  reg.SaveRegString(hkcu, key, "Kurz", "ab");
  CheckEq(reg.ReadRegWord(hkcu, key, "Kurz", 5), 0, "a short string read as word gives 0");
  reg.DeleteRegValue(hkcu, key, "Kurz");
  store.SetValue(hkcu, key, "Bytes", RegValue{kRegBinary, std::string("\x01\x02", 2)});

  // Windows enumerates values in the order written, Wine by name: the
  // types are checked by name.
  CheckEq(reg.SubValueCount(hkcu, key), 5, "SubValueCount");
  std::map<std::string, std::string> types;
  for (int32_t i = 1; i <= 5; ++i)
    types[reg.SubValueName(hkcu, key, i)] = reg.SubValueType(hkcu, key, i);
  CheckEq(
      types,
      std::map<std::string, std::string>{
          {"Titel", "UNI"}, {"MitNul", "UNI"}, {"Erweitert", ""}, {"LNR", "WRD"}, {"Bytes", "BIN"}},
      "SubValueName and SubValueType of every value");
  CheckEq(reg.SubValueName(hkcu, key, 6), "", "SubValueName past the end");
  CheckEq(reg.SubValueName(hkcu, key, 0), "", "SubValueName 0");

  reg.CreateRegKey(hkcu, key + "\\Zweiter");
  CheckEq(reg.SubKeyCount(hkcu, key), 2, "SubKeyCount");
  CheckEq(reg.SubKeyName(hkcu, key, 1) + "," + reg.SubKeyName(hkcu, key, 2), "Unter,Zweiter",
          "SubKeyName");
  CheckEq(reg.SubKeyName(hkcu, key, 3), "", "SubKeyName past the end");
  CheckEq(reg.SubKeyCount(hkcu, key + "\\Fehlt"), 0, "SubKeyCount of a missing key");

  reg.DeleteRegValue(hkcu, key, "LNR");
  CheckEq(reg.SubValueCount(hkcu, key), 4, "DeleteRegValue");
  reg.DeleteRegKey(hkcu, key + "\\Unter");
  Check(store.KeyExists(hkcu, key + "\\Unter"), "a key with sub-keys is not deleted");
  reg.DeleteRegKey(hkcu, key + "\\Unter\\Tiefer");
  reg.DeleteRegKey(hkcu, key + "\\Unter");
  reg.DeleteRegKey(hkcu, key + "\\Zweiter");
  reg.DeleteRegKey(hkcu, key);
  Check(!store.KeyExists(hkcu, key), "the check's key is gone");
}

void CheckRunAndWait(const std::string& scratch) {
  Platform& p = CurrentPlatform();
  CheckEq(p.RunAndWait({"cmd.exe", "/c", "exit 7"}, "", false), 7, "exit code without pumping");
  CheckEq(p.RunAndWait({"cmd.exe", "/c", "exit 3"}, "", true), 3, "exit code while pumping");
  CheckEq(p.RunAndWait({"does-not-exist-4711.exe"}, "", false), -1, "a missing program gives -1");

  // The help compiler's batch file sits in the output folder, whose name
  // may hold blanks and &.
  const std::string batch = scratch + "\\compile.bat";
  WriteTextFile(batch, "echo erledigt> ergebnis.txt\r\nexit 0", false);
  CheckEq(p.RunAndWait({"cmd.exe", "/c", "\"" + batch + "\""}, scratch, true), 0,
          "the batch file ran");
  Check(Slurp(scratch + "\\ergebnis.txt").rfind("erledigt", 0) == 0,
        "the batch file ran in the working folder");
}

void CheckFolders() {
  Platform& p = CurrentPlatform();
  char exe[MAX_PATH];
  DWORD n = ::GetModuleFileNameA(nullptr, exe, sizeof exe);
  std::string exe_path(exe, n);
  std::string folder = exe_path.substr(0, exe_path.find_last_of('\\'));
  CheckEq(p.ApplicationFolder(), folder.c_str(), "ApplicationFolder is the module's folder");
  CheckEq(p.ApplicationFileName(), "platform_check", "ApplicationFileName");
  Check(!p.FallbackLogFolder().empty() && p.FallbackLogFolder().back() != '\\',
        "FallbackLogFolder without trailing separator");
  std::string now = p.NowText();
  Check(now.size() == 19 && now[2] == '.' && now[5] == '.' && now[10] == ' ' && now[13] == ':' &&
            now[16] == ':',
        "NowText has the form dd.mm.yyyy hh:nn:ss: " + now);
  Check(!p.NumberGroupSeparator().empty(), "NumberGroupSeparator");
}

void CheckFileHelpers(const std::string& scratch) {
  CFileSystem fs;
  std::ofstream(scratch + "\\leer.txt").close();
  std::ofstream(scratch + "\\voll.txt") << "x";
  Check(!fs.IsDateiVorhanden(scratch + "\\leer.txt"), "an empty file counts as absent");
  Check(fs.IsDateiVorhanden(scratch + "\\voll.txt"), "a file with content is there");
  Check(fs.IsDateiVorhanden(scratch + "\\v*.txt"), "wildcards are honoured");
  Check(!fs.IsDateiVorhanden(scratch), "a folder is no file");
  Check(fs.IsOrdnerVorhanden(scratch), "the folder is there");
  Check(!fs.IsOrdnerVorhanden(scratch + "\\"), "a trailing backslash matches nothing");

  const std::string target = scratch + "\\atomar.dat";
  Check(WriteFileAtomically(target, "alt"), "WriteFileAtomically creates");
  Check(WriteFileAtomically(target, "neu"), "WriteFileAtomically replaces an existing file");
  CheckEq(ReadFileText(target), "neu", "the replaced content");
  int raised = 0;
  try {
    ReadFileText(scratch + "\\fehlt.txt");
  } catch (const vb::RuntimeError& e) {
    raised = e.number();
  }
  CheckEq(raised, 53, "ReadFileText of a missing file raises 53");
  raised = 0;
  try {
    WriteTextFile(scratch + "\\fehlt\\seite.htm", "x", false);
  } catch (const vb::RuntimeError& e) {
    raised = e.number();
  }
  CheckEq(raised, 76, "WriteTextFile into a missing folder raises 76");
}

class NoActions : public ErrorDialogActions {
 public:
  void Print() override {}
  void SendMail() override {}
};

void CheckUnattendedDialogs(const std::string& scratch) {
  const std::string log = scratch + "\\dialoge.txt";
  // Set the way a host would, in the process environment block.
  ::SetEnvironmentVariableA("FOLIOSCOPE_DIALOG_LOG", log.c_str());
  Platform& p = CurrentPlatform();
  CheckEq(p.MessageBox("Datei fehlt.", kMbExclamation, "Quillon"), 1, "message box answers OK");
  NoActions actions;
  CheckEq(p.ShowErrorDialog("Bericht\r\nZeile 2", actions), static_cast<int32_t>(kChoiceIgnore),
          "error dialog answers Ignorieren");
  CheckEq(Slurp(log),
          "MessageBox 48 Quillon\r\nDatei fehlt.\r\n\r\nErrorDialog\r\nBericht\r\nZeile "
          "2\r\n\r\n",
          "the dialogs' log");
  ::SetEnvironmentVariableA("FOLIOSCOPE_DIALOG_LOG", nullptr);
}

}  // namespace

int main() {
  folioscope::WindowsPlatform platform;
  folioscope::ScopedPlatform installed(&platform);
  CheckRegistry();
  const std::string scratch = ScratchFolder();
  CheckRunAndWait(scratch);
  CheckFolders();
  CheckFileHelpers(scratch);
  CheckUnattendedDialogs(scratch);
  std::error_code ec;
  std::filesystem::remove_all(scratch, ec);
  std::printf("%d passed, %d failed\n", passed, failed);
  return failed;
}
