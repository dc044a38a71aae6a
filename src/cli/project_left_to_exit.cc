#include "cli/project_left_to_exit.h"

#include <vector>

namespace folioscope {

ProjectLeftToExit::~ProjectLeftToExit() {
  static auto* const left = new std::vector<std::unique_ptr<SourceProject>>();
  if (project_) left->push_back(std::move(project_));
}

}  // namespace folioscope
