// The report object's references that a writer cannot do without. A missing
// one is VB's run-time error 91, which the writer's trap reports like any
// other fault instead of dereferencing null.
#ifndef FOLIOSCOPE_ENGINE_OBJECT_REQUIRED_H_
#define FOLIOSCOPE_ENGINE_OBJECT_REQUIRED_H_

#include <memory>

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

inline CRessource& RequireResources(const std::unique_ptr<CRessource>& resources) {
  if (!resources) RaiseObjectNotSet();
  return *resources;
}

}  // namespace folioscope

#endif  // FOLIOSCOPE_ENGINE_OBJECT_REQUIRED_H_
