#include "infra/recording_platform.h"

namespace folioscope {

RecordingPlatform::RecordingPlatform(std::string folder) : application_folder(std::move(folder)) {}

int32_t RecordingPlatform::MessageBox(const std::string& text, int32_t style,
                                      const std::string& title) {
  message_boxes.push_back(MessageBoxCall{text, style, title});
  return 1;
}

int32_t RecordingPlatform::ShowErrorDialog(const std::string& report_text, ErrorDialogActions&) {
  error_dialogs.push_back(report_text);
  return error_dialog_answer;
}

bool RecordingPlatform::OpenAddress(const std::string& address) {
  opened_addresses.push_back(address);
  return true;
}

bool RecordingPlatform::PrintText(const std::string& text) {
  printed_texts.push_back(text);
  return true;
}

int32_t RecordingPlatform::RunAndWait(const std::vector<std::string>& argv,
                                      const std::string& working_folder, bool pump_messages) {
  program_runs.push_back(ProgramRun{argv, working_folder, pump_messages});
  return on_run ? on_run(program_runs.back()) : 0;
}

std::vector<std::string> RecordingPlatform::ShellCommand(const std::string& command_line,
                                                         bool hidden) {
  return {"/bin/sh", "-c", hidden ? command_line + " >/dev/null 2>&1" : command_line};
}

HelpCompiler RecordingPlatform::FindHelpCompiler() {
  ++help_compiler_lookups;
  return help_compiler;
}

std::vector<FolderEntry> RecordingPlatform::ListFolder(const std::string& folder) {
  listed_folders.push_back(folder);
  return folioscope::ListFolder(folder);
}

FileStamp RecordingPlatform::StampOfFile(const std::string& path) {
  stamped_files.push_back(path);
  return folioscope::StampOfFile(path);
}

}  // namespace folioscope
