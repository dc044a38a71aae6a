// For tests: a fresh folder below the system's temporary folder, named
// after the process and the running test, removed with everything in it
// when the object goes. Files are written and read byte for byte.
#ifndef FOLIOSCOPE_INFRA_TEST_FOLDER_H_
#define FOLIOSCOPE_INFRA_TEST_FOLDER_H_

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace folioscope {

class TestFolder {
 public:
  TestFolder() {
    const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
    path_ = std::filesystem::temp_directory_path() /
            ("folioscope_" + std::to_string(::getpid()) + "_" +
             (test ? std::string(test->test_suite_name()) + "_" + test->name() : "global"));
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~TestFolder() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

  // Writes `bytes` to <folder>/<relative>, creating folders; returns the
  // file's path.
  std::string Write(const std::string& relative, const std::string& bytes) const {
    const std::filesystem::path file = path_ / relative;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << bytes;
    return file.string();
  }

  static std::string Read(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }

 private:
  std::filesystem::path path_;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_INFRA_TEST_FOLDER_H_
