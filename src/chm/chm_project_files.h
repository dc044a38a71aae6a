// The help project next to the written pages: the project file
// "Project.hhp", the header files "Map_Test.h" (topic numbers) and
// "alias_test.h" (topic names to page files), and the table of contents
// "Table of Contents.hhc". The texts are built here; the report object
// writes them through its page-file writer, so each file ends with CR LF.
//
// Topics of the header files are member pages: the symbol of a member is
// module & "_" & member (blanks made "_"), the same text as its page's file
// name without ".htm". Module pages are not topics: a module's help context
// id has no page of the "module_member.htm" form, and giving it one would
// invent a page name the report never writes.
#ifndef FOLIOSCOPE_CHM_CHM_PROJECT_FILES_H_
#define FOLIOSCOPE_CHM_CHM_PROJECT_FILES_H_

#include <string>
#include <vector>

#include "chm/help_topics.h"
#include "model/source_model.h"
#include "pages/report_context.h"

namespace folioscope {

inline constexpr const char* kChmProjectFile = "Project.hhp";
inline constexpr const char* kChmContentsFile = "Table of Contents.hhc";
inline constexpr const char* kChmMapFile = "Map_Test.h";
inline constexpr const char* kChmAliasFile = "alias_test.h";

// The contents item that is filled for each page of a help-file build
// ("&&&TOCCaption&&&", "&&&TOCFile&&&").
std::string TocItemTemplate();

// The table of contents around the items `toc_text` collected while the
// pages were written, with the lists they leave open closed for `mode`.
std::string ContentsFileText(const std::string& toc_text, SaveMode mode);

// The project file: the help file named after `project`, the default topic
// of `mode` (the project page, the module `module_name`'s page or its
// member `member_name`'s page; a name not in the project raises), the title
// (trimmed; "Hilfe" when empty) and the file list `file_list`.
std::string ProjectFileText(SourceProject& project, SaveMode mode, const std::string& module_name,
                            const std::string& member_name, const std::string& title,
                            const std::string& file_list);

// The topics of a save of `mode`: the listed members of the whole project
// or of module `module_name`, or its member `member_name` listed or not.
std::vector<HelpTopic> TopicsOfSave(SourceProject& project, SaveMode mode,
                                    const std::string& module_name, const std::string& member_name,
                                    const ListedScopes& scopes);

// The texts of the two header files: one MapLine, one AliasLine per topic.
std::string MapFileText(const std::vector<HelpTopic>& topics);
std::string AliasFileText(const std::vector<HelpTopic>& topics);

}  // namespace folioscope

#endif  // FOLIOSCOPE_CHM_CHM_PROJECT_FILES_H_
