// Tests of the source-model bridge (com_model.h) and of the project reader's
// script objects (model_objects.h). A Windows program: run it under Wine or
// Windows. The caller's objects are property bags (variant_test_support.h);
// the code-line dictionaries are real Scripting.Dictionary objects.
#include "com/com_model.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "com/com_support.h"
#include "com/late_bound.h"
#include "com/model_objects.h"
#include "com/variant_test_support.h"
#include "infra/vb_runtime.h"

namespace folioscope::com {
namespace {

using com_testing::ArrayOf;
using com_testing::Bag;
using com_testing::CallByName;
using com_testing::Long;
using com_testing::NewDictionary;
using com_testing::NewLines;
using com_testing::Object;
using com_testing::Text;

// --- The caller's objects -----------------------------------------------------

void AddEntry(IDispatch* d, VARIANT key, VARIANT item) {
  ASSERT_EQ(CallByName(d, L"Add", DISPATCH_METHOD, {key, item}, nullptr), S_OK);
}

int32_t CountOf(IDispatch* object) {
  Variant count;
  GetRequired(object, L"Count", "Count", count.get());
  return ToLong(*count, "Count");
}

IDispatch* NewParameter(const wchar_t* name) { return Bag::New()->Set(L"Name", Text(name)); }

Bag* NewMember(const wchar_t* name, std::vector<const wchar_t*> lines) {
  IDispatch* code_lines = NewLines(lines);
  EXPECT_NE(code_lines, nullptr) << "no Scripting.Dictionary";
  return Bag::New()->Set(L"Name", Text(name))->Set(L"CodeLines", Object(code_lines));
}

// Runs `read` and returns the run-time error it raised (number 0: none).
template <class F>
vb::RuntimeError ErrorOf(F&& read) {
  try {
    read();
  } catch (const vb::RuntimeError& e) {
    return e;
  }
  return vb::RuntimeError(0, "");
}

// --- Reading ---------------------------------------------------------------------

TEST(ComModelTest, ReadsAMemberWithItsDefaultsAndParameters) {
  Bag* by_value = Bag::New();
  by_value->Set(L"Name", Text(L"Betrag"))
      ->Set(L"Type", Text(L"Currency"))
      ->Set(L"Passing", Text(L"ByVal"))
      ->Set(L"Optional", Text(L"True"))
      ->Set(L"Default", Long(0));
  Bag* member = NewMember(L"Buchen", {L"'/// <summary>x</summary>", L"Sub Buchen()", L"End Sub"});
  member->Set(L"Kind", Text(L"Sub"))
      ->Set(L"HelpContextId", Text(L"42"))
      ->Set(L"Parameters", ArrayOf({by_value, NewParameter(L"Rest")}));
  Ref<IDispatch> owner(member);

  auto read = CallerMember::Read(member);
  SourceMember& m = read->model();
  EXPECT_EQ(m.Name, "Buchen");
  EXPECT_EQ(m.Kind, "Sub");
  EXPECT_EQ(m.Scope, "");
  EXPECT_EQ(m.HelpContextId, 42);
  EXPECT_EQ(m.LineCount, 3);  // defaults to the lines read
  ASSERT_EQ(m.CodeLines.Count(), 3);
  EXPECT_EQ(m.CodeLines.Item(2), "Sub Buchen()");
  ASSERT_EQ(m.Parameters.Count(), 2);
  const SourceParameter& first = m.Parameters.Item(1);
  EXPECT_EQ(first.Type, "Currency");
  EXPECT_EQ(first.Passing, "ByVal");
  EXPECT_TRUE(first.Optional);
  EXPECT_EQ(first.Default, "0");
  const SourceParameter& second = m.Parameters.Item(2);
  EXPECT_EQ(second.Type, "Variant");
  EXPECT_EQ(second.Passing, "ByRef");
  EXPECT_FALSE(second.Optional);
}

TEST(ComModelTest, ReadsEveryKindOfCollectionAndKeepsLineKeyTypes) {
  // Members as a Count/Item collection, components as a Scripting.Dictionary,
  // modules as an array; lines keyed 1, "zwei", 3.0.
  Ref<IDispatch> lines(NewDictionary());
  ASSERT_NE(lines.get(), nullptr) << "no Scripting.Dictionary";
  AddEntry(lines.get(), Long(1), Text(L"eins"));
  AddEntry(lines.get(), Text(L"zwei"), Text(L"zwei"));
  VARIANT three;
  V_VT(&three) = VT_R8;
  V_R8(&three) = 3.0;
  AddEntry(lines.get(), three, Text(L"drei"));

  Bag* members = Bag::New()->WithItems({Object(NewMember(L"Header", {L"Option Explicit"})),
                                        Object(NewMember(L"DoIt", {L"Sub DoIt()"}))});
  Bag* module = Bag::New();
  module->Set(L"Name", Text(L"modA"))
      ->Set(L"CodeLines", Object(lines.release()))
      ->Set(L"Members", Object(members));
  Ref<IDispatch> components(NewDictionary());
  AddEntry(components.get(), Text(L"modA"), Object(Bag::New()->Set(L"Name", Text(L"modA"))));
  Bag* project = Bag::New();
  project->Set(L"Components", Object(components.release()))->Set(L"Modules", ArrayOf({module}));
  Ref<IDispatch> owner(project);

  auto read = CallerProject::Read(project);
  SourceProject& p = read->model();
  ASSERT_EQ(p.Components.Count(), 1);
  EXPECT_EQ(p.Components.Item("MODA").Kind, "Module");  // default kind, keyed by name
  ASSERT_EQ(p.Modules.Count(), 1);
  SourceModule& m = p.Modules.Item("modA");
  ASSERT_EQ(m.Members.Count(), 2);
  EXPECT_EQ(m.Members.Item("doit").CodeLines.Item(1), "Sub DoIt()");
  ASSERT_EQ(m.CodeLines.Count(), 3);
  EXPECT_TRUE(m.CodeLines.KeyAt(0) == vb::DictKey::Long(1));
  EXPECT_TRUE(m.CodeLines.KeyAt(1) == vb::DictKey::String("zwei"));
  EXPECT_TRUE(m.CodeLines.KeyAt(2) == vb::DictKey::Long(3));
  EXPECT_EQ(m.CodeLines.ItemAt(2), "drei");
}

TEST(ComModelTest, ReadsTheTypedArraysOfACallersLineClass) {
  // Lines of a VB6 class of the caller's: Items() As String(), Keys() As Long().
  SAFEARRAY* texts = SafeArrayCreateVector(VT_BSTR, 0, 2);
  SAFEARRAY* numbers = SafeArrayCreateVector(VT_I4, 0, 2);
  LONG index[] = {0, 1};
  LONG keys[] = {10, 20};
  for (LONG i : index) {
    BSTR text = SysAllocString(i == 0 ? L"zehn" : L"zwanzig");
    SafeArrayPutElement(texts, &i, text);
    SysFreeString(text);
    SafeArrayPutElement(numbers, &i, &keys[i]);
  }
  VARIANT items;
  V_VT(&items) = VT_ARRAY | VT_BSTR;
  V_ARRAY(&items) = texts;
  VARIANT key_array;
  V_VT(&key_array) = VT_ARRAY | VT_I4;
  V_ARRAY(&key_array) = numbers;
  Ref<IDispatch> typed(NewMember(L"M", {})->Set(
      L"CodeLines", Object(Bag::New()->Set(L"Items", items)->Set(L"Keys", key_array))));
  auto typed_read = CallerMember::Read(typed.get());
  vb::Dictionary& typed_lines = typed_read->model().CodeLines;
  ASSERT_EQ(typed_lines.Count(), 2);
  EXPECT_EQ(typed_lines.Item(20), "zwanzig");
}

TEST(ComModelTest, ReadCostsOneInvokePerPropertyAndOneCallForAllLines) {
  // (Wine 8's Scripting.Dictionary refuses some keys above 272.)
  std::vector<const wchar_t*> many(250, L"x = x + 1");
  Bag* member = NewMember(L"Loop", many);
  Ref<IDispatch> owner(member);
  auto read = CallerMember::Read(member);
  EXPECT_EQ(read->model().CodeLines.Count(), 250);
  // Name and CodeLines; the optional properties are not there to invoke.
  EXPECT_EQ(member->invokes(), 2);
}

TEST(ComModelTest, FaultsNameThePlaceAndKeepTheCallersOwnErrors) {
  // Each case makes the caller's object (a member unless `module`).
  struct Case {
    const char* what;
    std::function<IDispatch*()> make;
    int32_t number;
    std::string place;
    bool module = false;
  };
  auto member_with = [](const wchar_t* name, VARIANT value) -> IDispatch* {
    return NewMember(L"M", {L"a"})->Set(name, value);
  };
  auto real = [](double value) {
    VARIANT v;
    V_VT(&v) = VT_R8;
    V_R8(&v) = value;
    return v;
  };
  const Case cases[] = {
      {"Nothing", [] { return nullptr; }, 424, "SourceMember"},
      {"no Name", [] { return Bag::New(); }, 438, "Name"},
      {"CodeLines Nothing", [&] { return member_with(L"CodeLines", Object(nullptr)); }, 424,
       "CodeLines"},
      {"text for a Long", [&] { return member_with(L"FirstLine", Text(L"zehn")); }, 13,
       "FirstLine"},
      {"object for a text", [&] { return member_with(L"Kind", Object(Bag::New())); }, 13, "Kind"},
      {"scalar for a collection", [&] { return member_with(L"Parameters", Long(3)); }, 13,
       "Parameters"},
      {"Long overflow", [&] { return member_with(L"LineCount", real(1e12)); }, 6, "LineCount"},
      {"nested missing CodeLines",
       [] {
         return Bag::New()
             ->Set(L"Name", Text(L"modA"))
             ->Set(L"CodeLines", Object(NewLines({})))
             ->Set(L"Members",
                   ArrayOf({NewMember(L"Header", {}), Bag::New()->Set(L"Name", Text(L"DoIt"))}));
       },
       438, "Members(2).CodeLines", true},
  };
  for (const Case& c : cases) {
    Ref<IDispatch> object(c.make());
    const vb::RuntimeError e = ErrorOf([&] {
      if (c.module) {
        CallerModule::Read(object.get());
      } else {
        CallerMember::Read(object.get());
      }
    });
    EXPECT_EQ(e.number(), c.number) << c.what;
    EXPECT_NE(e.description().find(c.place), std::string::npos)
        << c.what << ": " << e.description();
  }

  Ref<IDispatch> raising(NewMember(L"M", {})->Raising(L"Scope", 5, L"kaputt"));
  const vb::RuntimeError e = ErrorOf([&] { CallerMember::Read(raising.get()); });
  EXPECT_EQ(e.number(), 5);
  EXPECT_EQ(e.description(), "kaputt");
}

// --- Writing back ----------------------------------------------------------------

TEST(ComModelTest, WriteBackAddsTheComponentsKeysAndChangedDescriptions) {
  Bag* changed = static_cast<Bag*>(NewParameter(L"A"));
  changed->Set(L"Description", Text(L""));
  Bag* unchanged = static_cast<Bag*>(NewParameter(L"B"));
  unchanged->Set(L"Description", Text(L"bleibt"));
  changed->AddRef();
  unchanged->AddRef();
  Bag* member = NewMember(L"Rechne", {L"'/// x", L"Function Rechne(A, B)", L"End Function"});
  member->Set(L"Parameters", ArrayOf({changed, unchanged}));
  Ref<IDispatch> owner(member);

  auto read = CallerMember::Read(member);
  SourceMember& m = read->model();
  m.CodeLines.Item(0);  // a scan's read of key 0 adds it
  m.CodeLines.Item(4);  // ... and a read one past the end adds that
  m.Parameters.Item(1).Description = "Das A.";
  read->WriteBack();
  read->WriteBack();  // nothing new: nothing written twice

  Variant lines;
  GetRequired(member, L"CodeLines", "CodeLines", lines.get());
  IDispatch* d = V_DISPATCH(lines.get());
  EXPECT_EQ(CountOf(d), 5);
  Variant keys;
  GetRequired(d, L"Keys", "Keys", keys.get());
  VARIANT* key = nullptr;
  SafeArrayAccessData(V_ARRAY(keys.get()), reinterpret_cast<void**>(&key));
  EXPECT_EQ(V_VT(&key[3]), VT_I4);
  EXPECT_EQ(V_I4(&key[3]), 0);
  EXPECT_EQ(V_I4(&key[4]), 4);
  SafeArrayUnaccessData(V_ARRAY(keys.get()));

  EXPECT_EQ(changed->PutText(L"Description"), L"Das A.");
  EXPECT_EQ(changed->put_count(), 1);
  EXPECT_EQ(unchanged->put_count(), 0);
  changed->Release();
  unchanged->Release();
}

TEST(ComModelTest, WriteBackUsesAddWhenTheLinesHaveNoItemPut) {
  // A line list of the caller's own making: Count, Item(i), Add; no Items().
  Bag* list = Bag::New()->WithItems({Text(L"eins"), Text(L"zwei")})->RefusingPut(L"Item");
  list->WithAdd();
  Bag* member = Bag::New();
  member->Set(L"Name", Text(L"M"))->Set(L"CodeLines", Object(list));
  Ref<IDispatch> owner(member);
  auto read = CallerMember::Read(member);
  EXPECT_EQ(read->model().CodeLines.Item(2), "zwei");
  read->model().CodeLines.Item(0);
  read->WriteBack();
  EXPECT_EQ(list->added(), std::vector<std::wstring>{L"0="});

  // Without Item the list cannot be read at all.
  Bag* bare = Bag::New();
  bare->Set(L"Count", Long(1));
  Ref<IDispatch> other(NewMember(L"M", {})->Set(L"CodeLines", Object(bare)));
  const vb::RuntimeError e = ErrorOf([&] { CallerMember::Read(other.get()); });
  EXPECT_EQ(e.number(), 438);
  EXPECT_NE(e.description().find("CodeLines.Item"), std::string::npos) << e.description();
}

// --- Our own objects ---------------------------------------------------------------

std::shared_ptr<SourceProject> SmallProject() {
  auto project = std::make_shared<SourceProject>();
  project->Name = "Kontor";
  auto component = std::make_unique<SourceComponent>();
  component->Name = "CKonto";
  component->Kind = "Class";
  project->Components.Add(std::move(component), "CKonto");
  auto module = std::make_unique<SourceModule>();
  module->Name = "CKonto";
  auto member = std::make_unique<SourceMember>();
  member->Name = "Buchen";
  member->CodeLines.Add(1, "'/// <summary>Bucht.</summary>");
  member->CodeLines.Add(2, "Public Sub Buchen()");
  auto parameter = std::make_unique<SourceParameter>();
  parameter->Name = "Betrag";
  member->Parameters.Add(std::move(parameter));
  module->Members.Add(std::move(member), "Buchen");
  project->Modules.Add(std::move(module), "CKonto");
  return project;
}

TEST(ComModelTest, OwnObjectsAreUsedInPlace) {
  auto project = SmallProject();
  Ref<IDispatch> object(NewProjectObject(project));
  auto read = CallerProject::Read(object.get());
  EXPECT_EQ(&read->model(), project.get());

  // Modules("CKonto") forwards to the collection's default member.
  Variant module;
  ASSERT_EQ(CallByName(object.get(), L"Modules", DISPATCH_PROPERTYGET | DISPATCH_METHOD,
                       {Text(L"ckonto")}, module.get()),
            S_OK);
  Variant member;
  ASSERT_EQ(CallByName(V_DISPATCH(module.get()), L"Members", DISPATCH_PROPERTYGET, {Long(1)},
                       member.get()),
            S_OK);
  auto member_read = CallerMember::Read(V_DISPATCH(member.get()));
  SourceMember& node = project->Modules.Item(1).Members.Item(1);
  EXPECT_EQ(&member_read->model(), &node);
  // A project object is no member: read by name, it lacks CodeLines.
  EXPECT_EQ(ErrorOf([&] { CallerMember::Read(object.get()); }).number(), 438);
}

TEST(ComModelTest, OwnObjectsBehaveLikeAScriptsObjects) {
  auto project = SmallProject();
  Ref<IDispatch> object(NewProjectObject(project));
  Variant modules, module, members, member, lines, text, parameters, parameter;
  GetRequired(object.get(), L"Modules", "", modules.get());
  EXPECT_EQ(CountOf(V_DISPATCH(modules.get())), 1);
  ASSERT_EQ(
      CallByName(V_DISPATCH(modules.get()), L"Item", DISPATCH_PROPERTYGET, {Long(1)}, module.get()),
      S_OK);
  EXPECT_EQ(
      CallByName(V_DISPATCH(modules.get()), L"Item", DISPATCH_PROPERTYGET, {Long(2)}, text.get()),
      DISP_E_EXCEPTION);  // 9: out of range
  GetRequired(V_DISPATCH(module.get()), L"Members", "", members.get());
  ASSERT_EQ(CallByName(V_DISPATCH(members.get()), L"Item", DISPATCH_PROPERTYGET, {Text(L"BUCHEN")},
                       member.get()),
            S_OK);
  IDispatch* m = V_DISPATCH(member.get());
  GetRequired(m, L"CodeLines", "", lines.get());
  IDispatch* d = V_DISPATCH(lines.get());

  // Item get of an absent key adds it, as Scripting.Dictionary does.
  ASSERT_EQ(CallByName(d, L"Item", DISPATCH_PROPERTYGET, {Long(0)}, text.get()), S_OK);
  EXPECT_EQ(project->Modules.Item(1).Members.Item(1).CodeLines.Count(), 3);
  ASSERT_EQ(CallByName(d, L"Item", DISPATCH_PROPERTYPUT, {Long(0), Text(L"null")}, nullptr), S_OK);
  EXPECT_EQ(project->Modules.Item(1).Members.Item(1).CodeLines.Item(0), "null");
  VariantClear(text.get());
  ASSERT_EQ(CallByName(d, L"Exists", DISPATCH_METHOD, {Text(L"0")}, text.get()), S_OK);
  EXPECT_EQ(V_BOOL(text.get()), VARIANT_FALSE);  // a text key is another key

  // Texts are writable, object properties are not.
  ASSERT_EQ(CallByName(m, L"Scope", DISPATCH_PROPERTYPUT, {Text(L"Friend")}, nullptr), S_OK);
  EXPECT_EQ(project->Modules.Item(1).Members.Item(1).Scope, "Friend");
  EXPECT_EQ(CallByName(m, L"CodeLines", DISPATCH_PROPERTYPUT, {Long(1)}, nullptr),
            DISP_E_MEMBERNOTFOUND);
  GetRequired(m, L"Parameters", "", parameters.get());
  ASSERT_EQ(CallByName(V_DISPATCH(parameters.get()), L"Item", DISPATCH_PROPERTYGET, {Long(1)},
                       parameter.get()),
            S_OK);
  VARIANT flag;
  V_VT(&flag) = VT_BOOL;
  V_BOOL(&flag) = VARIANT_TRUE;
  ASSERT_EQ(
      CallByName(V_DISPATCH(parameter.get()), L"Optional", DISPATCH_PROPERTYPUT, {flag}, nullptr),
      S_OK);
  EXPECT_TRUE(project->Modules.Item(1).Members.Item(1).Parameters.Item(1).Optional);

  // The objects keep the model alive after the project object is gone.
  object = Ref<IDispatch>();
  project.reset();
  EXPECT_EQ(CountOf(d), 3);
}

}  // namespace
}  // namespace folioscope::com

int main(int argc, char** argv) {
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  testing::InitGoogleTest(&argc, argv);
  const int result = RUN_ALL_TESTS();
  CoUninitialize();
  return result;
}
