// Help topics: the pages of a help file that can be opened by a context
// number, and the lines that tie number, symbol and page together in the
// help project's header files.
//
// A topic is a member page listed by its module page (the scope switches
// decide which members are listed; "Header" has no scope and never is).
// Its symbol and its page name share one text, module & "_" & member with
// every blank made "_", so that the map symbol and the alias symbol name the
// same topic. Members whose context number is below 1 are not topics, nor
// are members whose page name is no safe file name (their pages are never
// written).
// Module pages are not topics either, even when the module has a context
// number: the alias line always names a page "P4_P5.htm", and a module page
// is named after the module alone, so no alias line could point at it.
#ifndef FOLIOSCOPE_CHM_HELP_TOPICS_H_
#define FOLIOSCOPE_CHM_HELP_TOPICS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "model/source_model.h"
#include "pages/page_names.h"

namespace folioscope {

struct HelpTopic {
  std::string module_part;  // module name, blanks made "_"
  std::string member_part;  // member name, blanks made "_"
  int32_t context = 0;      // 1 or more
};

// Topics in walk order: modules in project order, members in source order.
std::vector<HelpTopic> ProjectTopics(const SourceProject& project, const ListedScopes& scopes);
std::vector<HelpTopic> ModuleTopics(const SourceModule& module, const ListedScopes& scopes);
// The one member of a single-member save, listed or not; empty when its
// context number is below 1.
std::vector<HelpTopic> MemberTopic(const std::string& module_name, const SourceMember& member);

// "#define " P1 "_" P2 "  " number CR LF, with P1 = module part and
// P2 = member part.
std::string MapLine(const HelpTopic& topic);
// P1 P3 " = " P4 "_" P5 ".htm" CR LF, with P3 = "_" & member part,
// P4 = module part, P5 = member part.
std::string AliasLine(const HelpTopic& topic);

}  // namespace folioscope

#endif  // FOLIOSCOPE_CHM_HELP_TOPICS_H_
