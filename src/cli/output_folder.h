// The output folder of the writing commands (report, chm) and the marker
// that makes it a report folder.
//
// A report run writes and replaces files by fixed names (Projekt.htm,
// Menu.htm, one page per module ...) and a help-file run deletes its
// intermediate files afterwards, so a run pointed at the wrong folder could
// destroy a user's files. Every folder the host writes a report into gets a
// marker file; a folder that exists, holds anything, and has no marker is
// refused unless the user passes --force.
#ifndef FOLIOSCOPE_CLI_OUTPUT_FOLDER_H_
#define FOLIOSCOPE_CLI_OUTPUT_FOLDER_H_

#include <string>

namespace folioscope {

class Host;

// The marker's name inside a report folder.
inline constexpr const char* kReportMarkerName = ".folioscope-report";

// What a folder is to a writing command.
struct OutputFolderState {
  enum Kind {
    kFree,        // missing or empty: the run may create or fill it
    kReport,      // holds the marker: an earlier run's report folder
    kForeign,     // holds entries but no marker
    kNotAFolder,  // the path names something that is not a folder
  };
  Kind kind = kFree;
  std::string first_foreign;  // kForeign: the first entry in name order
};

// Looks at `folder` (Windows-1252, as every path on this side of the
// command line). Never throws.
OutputFolderState InspectOutputFolder(const std::string& folder);

// Writes the marker into `folder` when the folder exists and lacks it.
// Returns false only when the folder exists and the marker could not be
// written.
bool MarkReportFolder(const std::string& folder);

// For the writing commands, before the run: true when the run may write into
// `folder` (free, a report folder, or foreign with `force`), and then marks
// an existing folder. Otherwise prints why on stderr, naming the folder and
// the first foreign entry, with the hint "--force", sets exit status 2 and
// returns false.
bool ClaimOutputFolder(Host& host, const std::string& folder, bool force);

}  // namespace folioscope

#endif  // FOLIOSCOPE_CLI_OUTPUT_FOLDER_H_
