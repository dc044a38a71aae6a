#include "model/module_kinds.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "infra/vb_runtime.h"

namespace folioscope {
namespace {

// A .vbp key (any case, as the reader upper-cases it) and the kind text it
// lists; null for keys that list no module.
struct KeyCase {
  const char* key;
  const char* kind_text;
};

const KeyCase kKeys[] = {
    {"Form", "Form"},
    {"MODULE", "Module"},
    {"class", "Class"},
    {"UserControl", "UserControl"},
    {"PROPERTYPAGE", "PropertyPage"},
    {"Designer", "Designer"},
    {"userdocument", "UserDocument"},
    {"Name", nullptr},
    {"Reference", nullptr},
    {"Object", nullptr},
    {"ResFile32", nullptr},
    {"", nullptr},
};

TEST(ModuleKindsTest, ProjectKeysListTheirKindInAnyCase) {
  for (const KeyCase& c : kKeys) {
    const std::optional<ModuleKind> kind = ModuleKindOfProjectKey(vb::UCase(c.key));
    if (c.kind_text == nullptr) {
      EXPECT_FALSE(kind.has_value()) << c.key;
    } else {
      ASSERT_TRUE(kind.has_value()) << c.key;
      EXPECT_STREQ(ModuleKindText(*kind), c.kind_text);
    }
  }
}

TEST(ModuleKindsTest, KindTextsCompareExactly) {
  for (const ModuleKindName& name : kModuleKindNames) {
    EXPECT_EQ(ModuleKindOfText(name.text), name.kind) << name.text;
  }
  for (const char* text : {"class", "CLASS", "Class ", " Form", "Modul", ""}) {
    EXPECT_FALSE(ModuleKindOfText(text).has_value()) << text;
  }
}

}  // namespace
}  // namespace folioscope
