#include "fuzz_support.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <system_error>

#include "infra/error_handler.h"
#include "infra/fs_communicator.h"
#include "infra/platform.h"

namespace folioscope::fuzzing {
namespace {

namespace fs = std::filesystem;

// Reads every message the component sends, as a real listener would.
class TouchingListener : public CFSCommunicatorEvents {
 public:
  void Message(std::string& Desc, int32_t& IconIndex) override {
    sink_ += Touch(Desc) + static_cast<size_t>(IconIndex);
  }
  void OnReportStart(int32_t& Count) override { sink_ += static_cast<size_t>(Count); }
  void OnReportWorks(int32_t& CurrentValue, std::string& Description, bool&) override {
    sink_ += Touch(Description) + static_cast<size_t>(CurrentValue);
  }

 private:
  size_t sink_ = 0;
};

// "Class.Procedure: error N" -> how often.
std::map<std::string, int64_t>& Census() {
  static auto* census = new std::map<std::string, int64_t>();
  return *census;
}

// The text with each run of blanks, tabs and line ends made one blank.
std::string OneLine(const std::string& text) {
  std::string line;
  for (char c : text) {
    const bool blank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
    if (blank && (line.empty() || line.back() == ' ')) continue;
    line += blank ? ' ' : c;
  }
  return line;
}

std::string& FolderToRemove() {
  static auto* folder = new std::string();
  return *folder;
}

void AtExit() {
  const auto& census = Census();
  int64_t total = 0;
  for (const auto& [what, count] : census) total += count;
  std::fprintf(stderr, "folioscope fuzz: %lld trapped fault(s), %zu kind(s)\n",
               static_cast<long long>(total), census.size());
  for (const auto& [what, count] : census) {
    std::fprintf(stderr, "  %8lld  %s\n", static_cast<long long>(count), what.c_str());
  }
  std::error_code error;
  if (!FolderToRemove().empty()) fs::remove_all(FolderToRemove(), error);
}

std::string NewScratchFolder() {
  const fs::path base =
      fs::temp_directory_path() / ("folioscope-fuzz-" + std::to_string(::getpid()));
  std::error_code error;
  fs::remove_all(base, error);
  fs::create_directories(base);
  return base.string();
}

}  // namespace

FuzzEnvironment& FuzzEnvironment::Get() {
  // Never destroyed: libFuzzer may still run inputs while exit handlers run.
  static FuzzEnvironment* environment = new FuzzEnvironment();
  return *environment;
}

FuzzEnvironment::FuzzEnvironment() : folder_(NewScratchFolder()), platform_(folder_) {
  platform_.fallback_log_folder = folder_;
  SetCurrentPlatform(&platform_);
  auto channel = std::make_shared<CFSCommunicator>();
  static auto* listener = new TouchingListener();
  channel->AddListener(listener);
  SetProgressChannel(channel);
  FolderToRemove() = folder_;
  std::atexit(&AtExit);
}

void FuzzEnvironment::BeginInput() { reports_before_ = CErrorHandler::Instance().ReportCount(); }

void FuzzEnvironment::EndInput() {
  CErrorHandler& handler = CErrorHandler::Instance();
  if (handler.ReportCount() != reports_before_) {
    static const bool abort_on_fault = [] {
      const char* value = std::getenv("FOLIOSCOPE_FUZZ_ABORT_ON_FAULT");
      return value != nullptr && std::string(value) == "1";
    }();
    if (abort_on_fault) {
      std::fprintf(stderr, "trapped fault:\n%s\n", handler.ReportText().c_str());
      std::abort();
    }
    ++Census()[OneLine(handler.Modul() + " " + handler.Member() + " " + handler.FehlerNummer())];
    std::error_code error;
    fs::remove(fs::path(folder_) / "ErrorLog.txt", error);
  }
  platform_.message_boxes.clear();
  platform_.error_dialogs.clear();
  platform_.opened_addresses.clear();
  platform_.printed_texts.clear();
  platform_.program_runs.clear();
}

std::string AsText(const uint8_t* data, size_t size) {
  return std::string(reinterpret_cast<const char*>(data), size);
}

std::vector<std::string> SplitParts(std::string_view text, size_t max_parts) {
  std::vector<std::string> parts;
  while (parts.size() + 1 < max_parts) {
    const size_t at = text.find(kPartSeparator);
    if (at == std::string_view::npos) break;
    parts.emplace_back(text.substr(0, at));
    text.remove_prefix(at + kPartSeparator.size());
  }
  parts.emplace_back(text);
  parts.resize(max_parts);
  return parts;
}

bool CouldLeaveFolder(std::string_view text) {
  if (text.find("..") != std::string_view::npos) return true;
  bool at_value_start = true;
  for (char c : text) {
    if (at_value_start && (c == ' ' || c == '\t' || c == '"')) continue;
    if (at_value_start && (c == '/' || c == '\\')) return true;
    at_value_start = c == '=' || c == ';' || c == '\n' || c == '\r';
  }
  return false;
}

void WriteFile(const std::string& path, std::string_view bytes) {
  std::error_code error;
  fs::create_directories(fs::path(path).parent_path(), error);
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

size_t Touch(std::string_view text) {
  size_t sum = 0;
  for (char c : text) sum = sum * 31 + static_cast<unsigned char>(c);
  return sum;
}

void Check(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "broken invariant: %s\n", what);
  std::abort();
}

}  // namespace folioscope::fuzzing
