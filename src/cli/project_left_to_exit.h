// ProjectLeftToExit: the source model of a large project takes a good part
// of a second to free (every line is its own string), and a command ends
// the process right after its report is written. A command guards its
// project with this object: when the guard goes out of scope, the project
// is handed to a holder that is never freed, and its memory goes back with
// the process. The holder keeps it reachable, so leak checkers report
// nothing.
#ifndef FOLIOSCOPE_CLI_PROJECT_LEFT_TO_EXIT_H_
#define FOLIOSCOPE_CLI_PROJECT_LEFT_TO_EXIT_H_

#include <memory>

#include "model/source_model.h"

namespace folioscope {

class ProjectLeftToExit {
 public:
  explicit ProjectLeftToExit(std::unique_ptr<SourceProject>& project) : project_(project) {}
  ~ProjectLeftToExit();

  ProjectLeftToExit(const ProjectLeftToExit&) = delete;
  ProjectLeftToExit& operator=(const ProjectLeftToExit&) = delete;

 private:
  std::unique_ptr<SourceProject>& project_;
};

}  // namespace folioscope

#endif  // FOLIOSCOPE_CLI_PROJECT_LEFT_TO_EXIT_H_
