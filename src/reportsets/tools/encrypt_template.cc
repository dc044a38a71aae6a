// Build step: encrypts one plain report-set file (template or
// Description.dat) with the template password. Line ends become CR LF, as
// the files were written on Windows, and the final line end of the source
// file is dropped so the template ends where its text ends.
//
//   fs_encrypt_template IN OUT
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "reportsets/winapi_crypt.h"

namespace {

std::string WithCrLf(const std::string& text) {
  std::string out;
  out.reserve(text.size() + text.size() / 16);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) out += '\r';
    out += text[i];
  }
  if (out.size() >= 2 && out.compare(out.size() - 2, 2, "\r\n") == 0) out.resize(out.size() - 2);
  return out;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: fs_encrypt_template IN OUT\n");
    return 2;
  }
  std::ifstream in(argv[1], std::ios::binary);
  if (!in) {
    std::fprintf(stderr, "fs_encrypt_template: cannot read %s\n", argv[1]);
    return 1;
  }
  const std::string plain((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  folioscope::CWinAPICrypt crypt;
  const std::string cipher = crypt.EncryptString(WithCrLf(plain), folioscope::kTemplatePassword);
  std::ofstream out(argv[2], std::ios::binary | std::ios::trunc);
  out.write(cipher.data(), static_cast<std::streamsize>(cipher.size()));
  if (!out) {
    std::fprintf(stderr, "fs_encrypt_template: cannot write %s\n", argv[2]);
    return 1;
  }
  return 0;
}
