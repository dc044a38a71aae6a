// folioscope crypt encrypt|decrypt IN OUT [--password P]
//
// Encrypts or decrypts a whole report-set file with the template cipher,
// byte for byte (no line-end changes). The default password is the one of
// the shipped report-set files.
#include <memory>
#include <string>

#include "cli/host.h"
#include "infra/file_system.h"
#include "infra/vb_runtime.h"
#include "reportsets/winapi_crypt.h"

namespace folioscope {
namespace {

struct CryptOptions {
  std::string direction;
  std::string in;
  std::string out;
  std::string password = kTemplatePassword;
};

void RunCrypt(Host& host, const CryptOptions& options) {
  if (!host.Start()) return;
  std::string text;
  try {
    text = ReadFileText(options.in);
  } catch (const vb::RuntimeError& e) {
    host.Fail(kExitUsage, options.in + ": " + e.description());
    return;
  }
  CWinAPICrypt crypt;
  const std::string result = options.direction == "encrypt"
                                 ? crypt.EncryptString(text, options.password)
                                 : crypt.DecryptString(text, options.password);
  if (!WriteFileAtomically(options.out, result)) {
    host.Fail(kExitFailed, options.out + ": cannot be written.");
    return;
  }
  host.exit_status = kExitDone;
}

void Setup(CLI::App& app, Host& host) {
  auto options = std::make_shared<CryptOptions>();
  CLI::App* cmd = app.add_subcommand("crypt", "Encrypt or decrypt a report-set file");
  cmd->add_option("DIRECTION", options->direction, "encrypt or decrypt")
      ->required()
      ->check(CLI::IsMember({"encrypt", "decrypt"}));
  cmd->add_option("IN", options->in, "Input file")->required();
  cmd->add_option("OUT", options->out, "Output file")->required();
  cmd->add_option("--password", options->password, "Password (default: the template password)");
  cmd->callback([&host, options] { RunCrypt(host, *options); });
}

CommandRegistration reg(&Setup);

}  // namespace
}  // namespace folioscope
