// The outputs of `folioscope coverage` for a measured project: the aligned
// text table, JSON, the self-contained HTML page and the SVG badge. Names in
// the model are Windows-1252 bytes; every output here is UTF-8.
//
// Shares are printed rounded down (one decimal in the table, JSON and page,
// whole percent on the badge), so a project with anything undocumented
// never shows 100.
#ifndef FOLIOSCOPE_CLI_COVERAGE_FORMATS_H_
#define FOLIOSCOPE_CLI_COVERAGE_FORMATS_H_

#include <nlohmann/json.hpp>
#include <string>

#include "cli/doc_coverage.h"

namespace folioscope {

// The share to one decimal, rounded down: "87.5", "100.0".
std::string ShareText(double share);

// One line per module in project order, then the total; columns aligned,
// counts as "documented/documentable". Ends with a line end.
std::string CoverageTable(const ProjectCoverage& coverage);

// {"project", "total": {...}, "modules": [{"name", "file", ..., "notes"}]};
// every count object has the same keys as the total.
nlohmann::ordered_json CoverageJson(const ProjectCoverage& coverage);

// A whole HTML page, style and script inline: one table row and bar per
// module, the worst share first; clicking a column heading sorts by it.
std::string CoveragePage(const ProjectCoverage& coverage);

// The badge's colour for a share: green from 90, then yellow-green,
// yellow, orange, red below 40.
const char* BadgeColour(double share);

// An SVG badge "docs | 87%" in the colour of the share.
std::string CoverageBadge(double share);

}  // namespace folioscope

#endif  // FOLIOSCOPE_CLI_COVERAGE_FORMATS_H_
