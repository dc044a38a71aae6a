// folioscope inspect PROJECT.vbp
//
// Reads a VB6 project with the source-model reader and prints the model as
// JSON (UTF-8) on stdout. The reader's messages go to stderr, one line each,
// naming file and line. A project file that cannot be read ends with exit
// status 2.
#include <cstdio>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "cli/command_project.h"
#include "cli/host.h"
#include "infra/text_encoding.h"
#include "model/source_model.h"

namespace folioscope {
namespace {

using nlohmann::ordered_json;

ordered_json Text(const std::string& cp1252) { return Cp1252ToUtf8(cp1252); }

ordered_json ParameterJson(const SourceParameter& p) {
  return ordered_json{{"name", Text(p.Name)},       {"type", Text(p.Type)},
                      {"passing", p.Passing},       {"optional", p.Optional},
                      {"paramArray", p.ParamArray}, {"hasDefault", p.HasDefault},
                      {"default", Text(p.Default)}};
}

ordered_json MemberJson(const SourceMember& m) {
  ordered_json parameters = ordered_json::array();
  for (const auto& p : m.Parameters) parameters.push_back(ParameterJson(*p));
  return ordered_json{{"name", Text(m.Name)},
                      {"kind", m.Kind},
                      {"scope", m.Scope},
                      {"propertyForm", m.PropertyForm},
                      {"returnType", Text(m.ReturnType)},
                      {"description", Text(m.Description)},
                      {"helpContextId", m.HelpContextId},
                      {"firstLine", m.FirstLine},
                      {"lineCount", m.LineCount},
                      {"parameters", std::move(parameters)}};
}

ordered_json ProjectJson(const SourceProject& project) {
  ordered_json modules = ordered_json::array();
  for (int32_t i = 1; i <= project.Modules.Count(); ++i) {
    const SourceModule& module = project.Modules.Item(i);
    const SourceComponent& component = project.Components.Item(i);
    ordered_json members = ordered_json::array();
    for (const auto& m : module.Members) members.push_back(MemberJson(*m));
    modules.push_back(ordered_json{{"name", Text(module.Name)},
                                   {"kind", component.Kind},
                                   {"relativePath", Text(component.RelativePath)},
                                   {"filePath", Text(component.FilePath)},
                                   {"description", Text(module.Description)},
                                   {"helpContextId", module.HelpContextId},
                                   {"lineCount", module.CodeLines.Count()},
                                   {"members", std::move(members)}});
  }
  return ordered_json{{"name", Text(project.Name)},
                      {"version", Text(project.Version)},
                      {"modules", std::move(modules)}};
}

void RunInspect(Host& host, const std::string& project_path) {
  if (!host.Start()) return;
  std::unique_ptr<SourceProject> project = ReadCommandProject(host, project_path);
  if (!project) return;
  std::cout << ProjectJson(*project).dump(2) << '\n';
  std::cout.flush();
}

void Setup(CLI::App& app, Host& host) {
  auto project = std::make_shared<std::string>();
  CLI::App* cmd = app.add_subcommand("inspect", "The source model of a VB6 project as JSON");
  cmd->add_option("PROJECT", *project, "The project file (.vbp)")->required();
  cmd->callback([&host, project] { RunInspect(host, *project); });
}

CommandRegistration reg(&Setup);

}  // namespace
}  // namespace folioscope
