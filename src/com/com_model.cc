// First cut: every object reads as an empty model; nothing is written back.
#include "com/com_model.h"

#include "infra/vb_runtime.h"

namespace folioscope::com {

namespace model_bridge {
class Binding {
 public:
  SourceProject project;
  SourceModule module;
  SourceMember member;
};
}  // namespace model_bridge

namespace {
void RequireObject(IDispatch* object) {
  if (object == nullptr) throw vb::RuntimeError(424, "Objekt erforderlich");
}
}  // namespace

CallerProject::CallerProject() : binding_(std::make_unique<model_bridge::Binding>()) {
  model_ = &binding_->project;
}
CallerProject::~CallerProject() = default;
std::unique_ptr<CallerProject> CallerProject::Read(IDispatch* project) {
  RequireObject(project);
  return std::unique_ptr<CallerProject>(new CallerProject());
}
void CallerProject::WriteBack() {}

CallerModule::CallerModule() : binding_(std::make_unique<model_bridge::Binding>()) {
  model_ = &binding_->module;
}
CallerModule::~CallerModule() = default;
std::unique_ptr<CallerModule> CallerModule::Read(IDispatch* module) {
  RequireObject(module);
  return std::unique_ptr<CallerModule>(new CallerModule());
}
void CallerModule::WriteBack() {}

CallerMember::CallerMember() : binding_(std::make_unique<model_bridge::Binding>()) {
  model_ = &binding_->member;
}
CallerMember::~CallerMember() = default;
std::unique_ptr<CallerMember> CallerMember::Read(IDispatch* member) {
  RequireObject(member);
  return std::unique_ptr<CallerMember>(new CallerMember());
}
void CallerMember::WriteBack() {}

}  // namespace folioscope::com
