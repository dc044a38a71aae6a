// write_floor: the time a plain program needs to write a given report.
//
//   write_floor REPORT_DIR SCRATCH_DIR [--repeat N]
//
// Reads every file below REPORT_DIR into memory first, then, N times
// (default 3), removes SCRATCH_DIR and re-creates the same folder tree with
// the same bytes using open/write/close and nothing else. Only the writing
// is timed; the best of the N runs is the floor, since the report run it is
// compared with also starts from an empty folder and a warm cache.
//
// Prints one line: files=F bytes=B floor_seconds=S floor_cpu_seconds=C (and
// each run on stderr). The CPU time (user + system) is the steadier figure on
// a busy machine.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct Entry {
  std::string relative;  // below the root
  bool folder = false;
  std::string bytes;
};

// Folders come before the files in them: recursive_directory_iterator visits
// a folder before its contents.
std::vector<Entry> ReadTree(const fs::path& root) {
  std::vector<Entry> entries;
  for (const fs::directory_entry& e : fs::recursive_directory_iterator(root)) {
    Entry entry;
    entry.relative = fs::relative(e.path(), root).string();
    if (e.is_directory()) {
      entry.folder = true;
    } else if (e.is_regular_file()) {
      std::ifstream in(e.path(), std::ios::binary);
      entry.bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    } else {
      continue;
    }
    entries.push_back(std::move(entry));
  }
  return entries;
}

// User plus system CPU time of this process so far.
double CpuSeconds() {
  rusage u{};
  ::getrusage(RUSAGE_SELF, &u);
  return static_cast<double>(u.ru_utime.tv_sec + u.ru_stime.tv_sec) +
         static_cast<double>(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

bool WriteAll(int fd, const std::string& bytes) {
  size_t done = 0;
  while (done < bytes.size()) {
    ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (n <= 0) return false;
    done += static_cast<size_t>(n);
  }
  return true;
}

// The timed part: one mkdir per folder, one open/write/close per file.
bool WriteTree(const std::string& root, const std::vector<Entry>& entries) {
  if (::mkdir(root.c_str(), 0755) != 0) return false;
  std::string path;
  for (const Entry& e : entries) {
    path.assign(root).append("/").append(e.relative);
    if (e.folder) {
      if (::mkdir(path.c_str(), 0755) != 0) return false;
      continue;
    }
    int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd < 0) return false;
    bool ok = WriteAll(fd, e.bytes);
    if (::close(fd) != 0 || !ok) return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 && !(argc == 5 && std::string(argv[3]) == "--repeat")) {
    std::fprintf(stderr, "usage: write_floor REPORT_DIR SCRATCH_DIR [--repeat N]\n");
    return 2;
  }
  const fs::path report = argv[1];
  const std::string scratch = argv[2];
  const int repeat = argc == 5 ? std::max(1, std::atoi(argv[4])) : 3;

  std::vector<Entry> entries = ReadTree(report);
  long long files = 0, bytes = 0;
  for (const Entry& e : entries) {
    if (e.folder) continue;
    ++files;
    bytes += static_cast<long long>(e.bytes.size());
  }

  double best = 1e300;
  double best_cpu = 1e300;
  for (int run = 0; run < repeat; ++run) {
    std::error_code ec;
    fs::remove_all(scratch, ec);
    auto start = std::chrono::steady_clock::now();
    double cpu_start = CpuSeconds();
    if (!WriteTree(scratch, entries)) {
      std::perror(("write_floor: " + scratch).c_str());
      return 1;
    }
    double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    double cpu = CpuSeconds() - cpu_start;
    std::fprintf(stderr, "write_floor run %d: %.4f s, cpu %.4f s\n", run + 1, seconds, cpu);
    best = std::min(best, seconds);
    best_cpu = std::min(best_cpu, cpu);
  }
  std::printf("files=%lld bytes=%lld floor_seconds=%.4f floor_cpu_seconds=%.4f\n", files, bytes,
              best, best_cpu);
  return 0;
}
