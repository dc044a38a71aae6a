// The kinds of module a VB6 project lists, with the kind text that the
// source model's component entries carry. A `.vbp` lists a module under its
// kind text as key ("Class=CKonto; CKonto.cls"), in any case.
//
// The pages tell kinds apart by their text, compared exactly: a component
// whose text is none of these (a caller's own model may hold anything) has
// no kind, and pages leave it out of every per-kind list and count.
#ifndef FOLIOSCOPE_MODEL_MODULE_KINDS_H_
#define FOLIOSCOPE_MODEL_MODULE_KINDS_H_

#include <optional>
#include <string>

namespace folioscope {

enum class ModuleKind {
  kForm,
  kModule,
  kClass,
  kUserControl,
  kPropertyPage,
  kDesigner,
  kUserDocument,
};

struct ModuleKindName {
  ModuleKind kind;
  const char* text;  // SourceComponent::Kind
};

// Every kind, in the order of ModuleKind.
inline constexpr ModuleKindName kModuleKindNames[] = {
    {ModuleKind::kForm, "Form"},
    {ModuleKind::kModule, "Module"},
    {ModuleKind::kClass, "Class"},
    {ModuleKind::kUserControl, "UserControl"},
    {ModuleKind::kPropertyPage, "PropertyPage"},
    {ModuleKind::kDesigner, "Designer"},
    {ModuleKind::kUserDocument, "UserDocument"},
};

// The kind text of `kind`.
const char* ModuleKindText(ModuleKind kind);

// The kind whose text is exactly `text`; nothing for any other text.
std::optional<ModuleKind> ModuleKindOfText(const std::string& text);

// The kind a `.vbp` line with key `upper_key` (in upper case) lists;
// nothing when the key lists no module.
std::optional<ModuleKind> ModuleKindOfProjectKey(const std::string& upper_key);

}  // namespace folioscope

#endif  // FOLIOSCOPE_MODEL_MODULE_KINDS_H_
