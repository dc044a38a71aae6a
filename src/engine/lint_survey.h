// The lint's look at what the readers never read: blocks behind the first
// one, a returns block where no value is returned, and documentation lines
// outside every block. It uses the readers' own line test and tag search
// and reads the members' lines without adding a key.
#ifndef FOLIOSCOPE_ENGINE_LINT_SURVEY_H_
#define FOLIOSCOPE_ENGINE_LINT_SURVEY_H_

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "chm/help_topics.h"
#include "model/source_model.h"

namespace folioscope {

// Line `key` (1 .. LineCount) of `member` as read, "" outside that range.
const std::string& MemberLine(const SourceMember& member, int32_t key);

// The key of the member's declaration: its first line that is neither
// blank nor a comment (1 when there is none).
int32_t DeclarationKey(const SourceMember& member);

using SurveyFinding = std::function<void(const SourceMember& member, int32_t key,
                                         std::string_view rule, std::string message)>;

// Surveys the declarations section and the members the module page lists.
// Lines of the declarations section that belong to an Event are the
// Event's.
void SurveyModule(const SourceModule& module, const ListedScopes& scopes, const SurveyFinding& add);

}  // namespace folioscope

#endif  // FOLIOSCOPE_ENGINE_LINT_SURVEY_H_
