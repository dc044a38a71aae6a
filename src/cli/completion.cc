#include "cli/completion.h"

#include <algorithm>
#include <set>
#include <sstream>
#include <vector>

namespace folioscope {
namespace {

// One level of the command tree: its path ("", "/config", "/config/set")
// and the words that may follow there.
struct Level {
  std::string path;
  std::vector<std::string> words;
};

struct CommandTree {
  std::vector<Level> levels;
  std::set<std::string> value_options;  // options followed by a value
};

// "{project,module,member}" inside a type name such as
// "TEXT:{project,module,member}" gives the three choices.
std::vector<std::string> Choices(const std::string& type_name) {
  std::vector<std::string> choices;
  const size_t open = type_name.find('{');
  const size_t close = type_name.find('}', open);
  if (open == std::string::npos || close == std::string::npos) return choices;
  std::istringstream list(type_name.substr(open + 1, close - open - 1));
  std::string choice;
  while (std::getline(list, choice, ',')) {
    if (!choice.empty()) choices.push_back(choice);
  }
  return choices;
}

// The option names of one level; options that take a value are noted.
std::vector<std::string> OptionWords(const CLI::App& app, CommandTree* tree) {
  std::vector<std::string> words;
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_group().empty()) continue;
    if (option->nonpositional()) {
      std::vector<std::string> names;
      for (const std::string& s : option->get_snames()) names.push_back("-" + s);
      for (const std::string& l : option->get_lnames()) names.push_back("--" + l);
      for (const std::string& name : names) {
        words.push_back(name);
        if (option->get_items_expected_max() > 0) tree->value_options.insert(name);
      }
    } else {
      for (const std::string& choice : Choices(option->get_type_name())) words.push_back(choice);
    }
  }
  return words;
}

void Collect(const CLI::App& app, const std::string& path, std::vector<std::string> inherited,
             CommandTree* tree) {
  for (const std::string& word : OptionWords(app, tree)) {
    if (std::find(inherited.begin(), inherited.end(), word) == inherited.end()) {
      inherited.push_back(word);
    }
  }
  Level level{path, inherited};
  const auto all = [](const CLI::App*) { return true; };
  std::vector<const CLI::App*> subcommands;
  for (const CLI::App* sub : app.get_subcommands(all)) {
    if (sub->get_group().empty()) continue;
    level.words.push_back(sub->get_name());
    subcommands.push_back(sub);
  }
  tree->levels.push_back(level);
  for (const CLI::App* sub : subcommands)
    Collect(*sub, path + "/" + sub->get_name(), inherited, tree);
}

std::string Joined(const std::vector<std::string>& words, const char* separator) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : separator) + word;
  return text;
}

// The shell function: find the level from the words typed before the
// cursor, then offer that level's words (and file names).
std::string Script(const std::string& program, const CommandTree& tree) {
  std::vector<std::string> paths;
  for (const Level& level : tree.levels) {
    if (!level.path.empty()) paths.push_back(level.path);
  }
  const std::vector<std::string> value_options(tree.value_options.begin(),
                                               tree.value_options.end());
  std::ostringstream s;
  s << "# bash completion for " << program << "\n"
    << "_" << program << "() {\n"
    << "  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]}\n"
    << "  local path= word i words\n"
    << "  for ((i = 1; i < COMP_CWORD; i++)); do\n"
    << "    word=${COMP_WORDS[i]}\n"
    << "    case \"$path/$word\" in\n"
    << "      " << Joined(paths, "|") << ") path=$path/$word ;;\n"
    << "    esac\n"
    << "  done\n"
    << "  case \"$prev\" in\n"
    << "    " << Joined(value_options, "|") << ")\n"
    << "      COMPREPLY=($(compgen -f -- \"$cur\"))\n"
    << "      return ;;\n"
    << "  esac\n"
    << "  case \"$path\" in\n";
  for (const Level& level : tree.levels) {
    s << "    \"" << level.path << "\") words=\"" << Joined(level.words, " ") << "\" ;;\n";
  }
  s << "  esac\n"
    << "  COMPREPLY=($(compgen -W \"$words\" -- \"$cur\"))\n"
    << "  [[ $cur == -* ]] || COMPREPLY+=($(compgen -f -- \"$cur\"))\n"
    << "}\n"
    << "complete -o filenames -F _" << program << " " << program << "\n";
  return s.str();
}

}  // namespace

std::string BashCompletionScript(const CLI::App& app) {
  CommandTree tree;
  Collect(app, "", {}, &tree);
  return Script(app.get_name(), tree);
}

}  // namespace folioscope
