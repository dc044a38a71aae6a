// The registry hive parser on arbitrary file content. Whatever part of the
// file was read into the tree must round-trip: the serialised tree parses
// without error into a tree that serialises to the same bytes.
#include <string>

#include "fuzz_support.h"
#include "infra/registry_hive.h"
#include "infra/registry_tree.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace folioscope;
  using namespace folioscope::fuzzing;
  FuzzEnvironment& environment = FuzzEnvironment::Get();
  environment.BeginInput();
  RegistryTree tree;
  std::string error;
  const bool read = ParseHive(AsText(data, size), "fuzz.reg", &tree, &error);
  Check(read == error.empty(), "an error text exactly when parsing fails");
  Touch(error);

  const std::string first = SerializeHive(tree);
  RegistryTree again;
  std::string error_again;
  Check(ParseHive(first, "again.reg", &again, &error_again), "a serialised tree parses");
  Check(SerializeHive(again) == first, "a serialised tree round-trips");
  environment.EndInput();
  return 0;
}
