// Helpers for the report-set tests: the Res folder of a test's application
// folder (a TestFolder) and encrypted report-set files in it.
#ifndef FOLIOSCOPE_REPORTSETS_TEST_SUPPORT_H_
#define FOLIOSCOPE_REPORTSETS_TEST_SUPPORT_H_

#include <filesystem>
#include <string>

#include "infra/fs_communicator.h"
#include "infra/test_folder.h"
#include "reportsets/winapi_crypt.h"

namespace folioscope {

inline std::string Res(const TestFolder& app) { return (app.path() / "Res").string(); }

// Writes `bytes` to Res/<relative>, creating folders.
inline void WriteRes(const TestFolder& app, const std::string& relative, const std::string& bytes) {
  app.Write("Res/" + relative, bytes);
}
inline void WriteEncrypted(const TestFolder& app, const std::string& relative,
                           const std::string& plain) {
  WriteRes(app, relative, CWinAPICrypt().EncryptString(plain, kTemplatePassword));
}
inline void MakeResFolder(const TestFolder& app, const std::string& relative) {
  std::filesystem::create_directories(app.path() / "Res" / relative);
}

}  // namespace folioscope

#endif  // FOLIOSCOPE_REPORTSETS_TEST_SUPPORT_H_
