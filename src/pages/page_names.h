// The file names of the report's pages and the member scopes that module
// pages list. Page names come from module and member names with every blank
// made "_"; the help project's topic symbols are the same texts, so a page
// and its topic always agree.
#ifndef FOLIOSCOPE_PAGES_PAGE_NAMES_H_
#define FOLIOSCOPE_PAGES_PAGE_NAMES_H_

#include <string>

namespace folioscope {

// The pages every whole-project save writes.
inline constexpr const char* kProjectPageFile = "Projekt.htm";
inline constexpr const char* kIndexPageFile = "_Index.htm";
inline constexpr const char* kLogoPageFile = "Logo.htm";
inline constexpr const char* kMenuPageFile = "Menu.htm";

// "module.htm" and "module_member.htm", blanks made "_".
std::string ModulePageFileName(const std::string& module_name);
std::string MemberPageFileName(const std::string& module_name, const std::string& member_name);

// Which member scopes the module pages list (each switch on when its setting
// is exactly 1).
struct ListedScopes {
  bool public_members = false;
  bool friend_members = false;
  bool private_members = false;
};

// True when a module page lists a member of this scope text.
bool IsListed(const std::string& scope, const ListedScopes& scopes);

}  // namespace folioscope

#endif  // FOLIOSCOPE_PAGES_PAGE_NAMES_H_
