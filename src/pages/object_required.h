// The references that a page or help-project writer cannot do without. A
// missing one is VB's run-time error 91, which the writer's trap reports like
// any other fault instead of dereferencing null.
#ifndef FOLIOSCOPE_PAGES_OBJECT_REQUIRED_H_
#define FOLIOSCOPE_PAGES_OBJECT_REQUIRED_H_

#include "infra/vb_runtime.h"
#include "model/source_model.h"
#include "reportsets/ressource.h"

namespace folioscope {

inline constexpr int32_t kObjectVariableNotSet = 91;

[[noreturn]] inline void RaiseObjectNotSet() {
  throw vb::RuntimeError(kObjectVariableNotSet,
                         "Objektvariable oder With-Blockvariable nicht festgelegt");
}

inline SourceProject& RequireProject(SourceProject* project) {
  if (project == nullptr) RaiseObjectNotSet();
  return *project;
}

inline CRessource& RequireResources(CRessource* resources) {
  if (resources == nullptr) RaiseObjectNotSet();
  return *resources;
}

}  // namespace folioscope

#endif  // FOLIOSCOPE_PAGES_OBJECT_REQUIRED_H_
