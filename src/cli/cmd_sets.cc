// folioscope sets
//
// Lists the installed report sets of the application folder as the
// catalogue reads them: one line per set with its number (the one Item()
// takes), its folder below Res, its display name and its languages joined
// by ",", separated by tabs. A missing set folder shows the catalogue's own
// message and the set is left out.
#include <string>

#include "cli/host.h"
#include "infra/vb_runtime.h"
#include "reportsets/report_sets.h"

namespace folioscope {
namespace {

std::string LanguageList(const CLanguages& languages) {
  std::string list;
  for (int32_t k = 0; k < languages.Count(); ++k) {
    if (k > 0) list += ",";
    list += languages.Item(k).Name();
  }
  return list;
}

void RunSets(Host& host) {
  if (!host.Start()) return;
  CReportSets sets;
  for (int32_t i = 0; i < sets.Count(); ++i) {
    const CReportSet& set = sets.Item(i);
    Host::PrintLine(vb::CStr(i) + "\t" + set.QuellPath() + "\t" + set.Name() + "\t" +
                    LanguageList(set.Languages()));
  }
  host.exit_status = host.FinalStatus();
}

void Setup(CLI::App& app, Host& host) {
  CLI::App* cmd = app.add_subcommand("sets", "Installed report sets");
  cmd->callback([&host] { RunSets(host); });
}

CommandRegistration reg(&Setup);

}  // namespace
}  // namespace folioscope
