// Checks of the COM server's own machinery, run under Windows or Wine:
//
//   com_server_test <path of VBFolioscope.dll> [--registration]
//
// The program copies the DLL into a fresh folder with a small Res tree,
// loads it there with LoadLibrary and creates objects through its
// DllGetClassObject (no registration needed). It checks the string and
// fault conversions, the dispatch ids callers bind to, late-bound calls and
// their errors, the report-set collections, events through connection
// points, the channel registration of CFSDataLogger and DllCanUnloadNow.
// With --registration it also registers and unregisters the copy (this
// writes to the registry of the prefix). A GoogleTest program: it names
// each failed check, and fails when one does.
#include <windows.h>

#include <ocidl.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "VBFolioscope.h"
#include "com/com_support.h"
#include "com/variant_test_support.h"

namespace {

using folioscope::com::FromBstr;
using folioscope::com::ToBstr;
using folioscope::com_testing::IdOf;
using folioscope::com_testing::Long;

// --- The DLL under test ------------------------------------------------------------

using GetClassObjectFn = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
using NoArgumentFn = HRESULT(STDAPICALLTYPE*)();

struct Server {
  HMODULE module = nullptr;
  GetClassObjectFn get_class_object = nullptr;
  NoArgumentFn can_unload_now = nullptr;
  NoArgumentFn register_server = nullptr;
  NoArgumentFn unregister_server = nullptr;

  template <class I>
  I* Create(REFCLSID clsid, REFIID iid) {
    return folioscope::com_testing::CreateFrom<I>(get_class_object, clsid, iid);
  }
};

// The loaded copy of the DLL, set up by main() before the tests run.
Server* the_server = nullptr;
std::wstring dll_copy;
bool with_registration = false;

void WriteFile(const std::wstring& path, const std::string& text) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  DWORD written = 0;
  ::WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  CloseHandle(file);
}

// A fresh application folder: the DLL, Res\IndexComment.ini with three
// sets of which the second has no folder, and the two set folders.
std::wstring MakeApplicationFolder(const std::wstring& dll) {
  wchar_t temp[MAX_PATH];
  GetTempPathW(MAX_PATH, temp);
  const std::wstring folder =
      std::wstring(temp) + L"com_server_test_" + std::to_wstring(GetCurrentProcessId());
  CreateDirectoryW(folder.c_str(), nullptr);
  CreateDirectoryW((folder + L"\\Res").c_str(), nullptr);
  CreateDirectoryW((folder + L"\\Res\\Eins").c_str(), nullptr);
  CreateDirectoryW((folder + L"\\Res\\Drei").c_str(), nullptr);
  WriteFile(folder + L"\\Res\\IndexComment.ini",
            "[Set1]\r\nName=Erstes\r\nPath=Eins\r\nLanguages=Deutsch \\ English\r\n"
            "[Set2]\r\nName=Fehlt\r\nPath=Fehlt\r\nLanguages=Deutsch\r\n"
            "[Set3]\r\nName=Drittes\r\nPath=Drei\r\nLanguages=Deutsch\r\n"
            "[Eins]\r\nFile1=Eins\\Index.htm\r\n");
  CopyFileW(dll.c_str(), (folder + L"\\VBFolioscope.dll").c_str(), FALSE);
  return folder;
}

// --- Late binding ---------------------------------------------------------------------

struct CallResult {
  HRESULT hr = S_OK;
  EXCEPINFO exception = {};
  VARIANT value;
  CallResult() { VariantInit(&value); }
  CallResult(const CallResult&) = delete;
  ~CallResult() {
    VariantClear(&value);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
  }
};

// Invokes `id` with `args` given in call order.
void Call(IDispatch* object, DISPID id, WORD flags, std::vector<VARIANT> args, CallResult* result) {
  result->hr = folioscope::com_testing::Invoke(object, id, flags, std::move(args), &result->value,
                                               &result->exception);
}

VARIANT Text(const std::string& s) {
  VARIANT v;
  VariantInit(&v);
  V_VT(&v) = VT_BSTR;
  V_BSTR(&v) = ToBstr(s);
  return v;
}

// The caller keeps its own reference to `object`.
VARIANT Object(IDispatch* object) {
  if (object != nullptr) object->AddRef();
  return folioscope::com_testing::Object(object);
}

// The Name of the object a call returned.
std::string NameOf(CallResult& r) {
  if (V_VT(&r.value) != VT_DISPATCH || V_DISPATCH(&r.value) == nullptr) return "<none>";
  CallResult name;
  Call(V_DISPATCH(&r.value), IdOf(V_DISPATCH(&r.value), L"Name"), DISPATCH_PROPERTYGET, {}, &name);
  return V_VT(&name.value) == VT_BSTR ? FromBstr(V_BSTR(&name.value)) : "<no name>";
}

// --- An event sink -----------------------------------------------------------------------

struct Event {
  DISPID id;
  std::vector<std::string> values;  // arguments in call order, as text
};

class Sink final : public IDispatch {
 public:
  std::vector<Event> events;
  // Released by the next event's handler (a handler dropping its source).
  IUnknown* release_on_event = nullptr;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch) ||
        IsEqualIID(riid, DIID___CFSCommunicator)) {
      *object = static_cast<IDispatch*>(this);
      AddRef();
      return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override { return --references_; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*,
                                   EXCEPINFO*, UINT*) override {
    Event e{id, {}};
    for (UINT i = params->cArgs; i-- > 0;) {
      const VARIANT& a = params->rgvarg[i];
      switch (V_VT(&a)) {
        case VT_BSTR | VT_BYREF:
          e.values.push_back(FromBstr(*V_BSTRREF(&a)));
          break;
        case VT_I4 | VT_BYREF:
          e.values.push_back(std::to_string(*V_I4REF(&a)));
          break;
        case VT_BOOL | VT_BYREF:
          e.values.push_back(*V_BOOLREF(&a) == VARIANT_TRUE ? "True" : "False");
          break;
        default:
          e.values.push_back("<not by reference>");
      }
    }
    events.push_back(e);
    if (release_on_event != nullptr) std::exchange(release_on_event, nullptr)->Release();
    return S_OK;
  }

 private:
  ULONG references_ = 1;
};

// Connects `sink` to `communicator` as `iid`; returns the cookie (0 on failure).
DWORD Connect(IUnknown* communicator, Sink* sink, REFIID iid) {
  IConnectionPointContainer* container = nullptr;
  if (FAILED(communicator->QueryInterface(IID_IConnectionPointContainer,
                                          reinterpret_cast<void**>(&container)))) {
    return 0;
  }
  IConnectionPoint* point = nullptr;
  DWORD cookie = 0;
  if (SUCCEEDED(container->FindConnectionPoint(iid, &point))) {
    point->Advise(sink, &cookie);
    point->Release();
  }
  container->Release();
  return cookie;
}

void Disconnect(IUnknown* communicator, DWORD cookie) {
  IConnectionPointContainer* container = nullptr;
  communicator->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container));
  IConnectionPoint* point = nullptr;
  container->FindConnectionPoint(DIID___CFSCommunicator, &point);
  point->Unadvise(cookie);
  point->Release();
  container->Release();
}

// --- The checks --------------------------------------------------------------------------

TEST(ComServer, StringAndFaultConversions) {
  // Every byte survives the trip through a BSTR, and the ones that differ
  // between code pages land on their Windows-1252 characters.
  std::string all;
  for (int b = 1; b < 256; ++b) all.push_back(static_cast<char>(b));
  all.push_back('\0');
  all += "end";
  BSTR wide = ToBstr(all);
  EXPECT_TRUE(FromBstr(wide) == all) << "all bytes round-trip";
  EXPECT_TRUE(wide[0xFC - 1] == 0x00FC && wide[0x80 - 1] == 0x20AC && wide[0x9F - 1] == 0x0178)
      << "u-umlaut, euro sign and Y-diaeresis";
  SysFreeString(wide);
  EXPECT_TRUE(FromBstr(nullptr).empty()) << "a null BSTR reads as empty";

  struct {
    int32_t number;
    HRESULT expected;
  } faults[] = {{5, static_cast<HRESULT>(0x800A0005)},
                {457, static_cast<HRESULT>(0x800A01C9)},
                {vb::kObjectError + 1, static_cast<HRESULT>(0x80040001)}};
  for (const auto& f : faults) {
    const HRESULT hr =
        folioscope::com::Guard("CTest", [&] { throw vb::RuntimeError(f.number, "Text \xE4"); });
    EXPECT_TRUE(hr == f.expected) << "fault number to HRESULT";
    IErrorInfo* info = nullptr;
    EXPECT_TRUE(GetErrorInfo(0, &info) == S_OK && info != nullptr) << "error info set";
    if (info != nullptr) {
      BSTR source = nullptr;
      BSTR description = nullptr;
      info->GetSource(&source);
      info->GetDescription(&description);
      EXPECT_TRUE(FromBstr(source) == "VBFolioscope.CTest") << "error source names the class";
      EXPECT_TRUE(FromBstr(description) == "Text \xE4") << "error description";
      SysFreeString(source);
      SysFreeString(description);
      info->Release();
    }
  }
  EXPECT_TRUE(folioscope::com::Guard("CTest", [] { throw std::bad_alloc(); }) ==
              static_cast<HRESULT>(0x800A0007))
      << "no memory is error 7";
  EXPECT_TRUE(folioscope::com::Guard("CTest", [] { return S_FALSE; }) == S_FALSE)
      << "a body's own HRESULT passes through";
}

TEST(ComServer, DispatchIdsCallersBindTo) {
  Server& server = *the_server;
  struct {
    const CLSID* clsid;
    const wchar_t* name;
    DISPID expected;
  } ids[] = {
      {&CLSID_CFSCommunicator, L"AddLog", 0x60030000},
      {&CLSID_CFSDataLogger, L"FSCommunicator", 0x68030000},
      {&CLSID_CReportSets, L"Item", DISPID_VALUE},
      {&CLSID_CReportSets, L"Count", 0x68030001},
      {&CLSID_CReportSet, L"Languages", 0x68030002},
      {&CLSID_CLanguages, L"Item", DISPID_VALUE},
  };
  for (const auto& entry : ids) {
    IDispatch* object = server.Create<IDispatch>(*entry.clsid, IID_IDispatch);
    EXPECT_TRUE(object != nullptr) << "class creatable";
    if (object == nullptr) continue;
    EXPECT_TRUE(IdOf(object, entry.name) == entry.expected) << "dispatch id";
    // The class information names the coclass (what TypeName shows).
    IProvideClassInfo* info = nullptr;
    ITypeInfo* coclass = nullptr;
    BSTR name = nullptr;
    if (SUCCEEDED(object->QueryInterface(IID_IProvideClassInfo, reinterpret_cast<void**>(&info))) &&
        SUCCEEDED(info->GetClassInfo(&coclass))) {
      coclass->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr);
      TYPEATTR* attributes = nullptr;
      coclass->GetTypeAttr(&attributes);
      EXPECT_TRUE(attributes != nullptr && IsEqualCLSID(attributes->guid, *entry.clsid))
          << "class information of the object's own class";
      if (attributes != nullptr) coclass->ReleaseTypeAttr(attributes);
      coclass->Release();
    }
    EXPECT_TRUE(name != nullptr && name[0] == L'C') << "a class name";
    SysFreeString(name);
    if (info != nullptr) info->Release();
    object->Release();
  }
}

TEST(ComServer, ReportSetCollections) {
  Server& server = *the_server;
  IDispatch* sets = server.Create<IDispatch>(CLSID_CReportSets, IID_IDispatch);
  EXPECT_TRUE(sets != nullptr) << "CReportSets creatable";
  if (sets == nullptr) return;
  CallResult count;
  Call(sets, IdOf(sets, L"Count"), DISPATCH_PROPERTYGET, {}, &count);
  EXPECT_TRUE(V_VT(&count.value) == VT_I4 && V_I4(&count.value) == 2)
      << "the set without folder is left out";

  // Numbers, numeric text and keys; the missing folder leaves no gap.
  const WORD get = DISPATCH_PROPERTYGET | DISPATCH_METHOD;
  struct {
    VARIANT index;
    const char* name;
  } lookups[] = {{Long(0), "Erstes"},     {Long(1), "Drittes"},      {Text("1"), "Drittes"},
                 {Text(" 0 "), "Erstes"}, {Text("Drei"), "Drittes"}, {Text("eins"), "Erstes"}};
  for (auto& l : lookups) {
    CallResult r;
    Call(sets, DISPID_VALUE, get, {l.index}, &r);
    EXPECT_TRUE(r.hr == S_OK && NameOf(r) == l.name) << l.name;
  }
  CallResult first;
  CallResult again;
  Call(sets, DISPID_VALUE, get, {Long(0)}, &first);
  Call(sets, DISPID_VALUE, get, {Text("Eins")}, &again);
  EXPECT_TRUE(V_VT(&first.value) == VT_DISPATCH &&
              V_DISPATCH(&first.value) == V_DISPATCH(&again.value))
      << "one object per set";

  for (VARIANT bad : {Long(2), Text("Fehlt"), Long(-1), Text("1.5")}) {
    CallResult r;
    Call(sets, DISPID_VALUE, get, {bad}, &r);
    EXPECT_TRUE(r.hr == DISP_E_EXCEPTION && r.exception.scode == static_cast<SCODE>(0x800A0005))
        << "a missing set is error 5 to the caller";
    EXPECT_TRUE(r.exception.bstrDescription != nullptr &&
                FromBstr(r.exception.bstrDescription).rfind("Ung\xFCltiger", 0) == 0)
        << "with the runtime's German text";
  }

  // The languages of the first set, blanks around the names dropped.
  if (V_VT(&first.value) == VT_DISPATCH) {
    IDispatch* set = V_DISPATCH(&first.value);
    CallResult languages;
    Call(set, IdOf(set, L"Languages"), DISPATCH_PROPERTYGET, {}, &languages);
    IDispatch* list = V_DISPATCH(&languages.value);
    CallResult english;
    Call(list, DISPID_VALUE, get, {Long(1)}, &english);
    EXPECT_TRUE(NameOf(english) == "English") << "second language";
    CallResult deutsch;
    Call(list, DISPID_VALUE, get, {Text("Deutsch")}, &deutsch);
    EXPECT_TRUE(NameOf(deutsch) == "Deutsch") << "language by name";
  }
  sets->Release();
}

TEST(ComServer, EventsThroughConnectionPoints) {
  Server& server = *the_server;
  IUnknown* communicator = server.Create<IUnknown>(CLSID_CFSCommunicator, IID_IUnknown);
  EXPECT_TRUE(communicator != nullptr) << "CFSCommunicator creatable";
  if (communicator == nullptr) return;

  IProvideClassInfo2* info = nullptr;
  communicator->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(&info));
  EXPECT_TRUE(info != nullptr) << "IProvideClassInfo2";
  if (info != nullptr) {
    GUID source = GUID_NULL;
    info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source);
    EXPECT_TRUE(IsEqualGUID(source, DIID___CFSCommunicator)) << "default source interface";
    info->Release();
  }

  Sink by_events;
  Sink by_dispatch;
  const DWORD first = Connect(communicator, &by_events, DIID___CFSCommunicator);
  const DWORD second = Connect(communicator, &by_dispatch, IID_IDispatch);
  EXPECT_TRUE(first != 0 && second != 0 && first != second) << "both sinks connected";

  IDispatch* dispatch = nullptr;
  communicator->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&dispatch));
  CallResult r;
  Call(dispatch, 0x60030000, DISPATCH_METHOD, {Text("Meldung \xFC"), Long(3)}, &r);
  EXPECT_TRUE(r.hr == S_OK) << "AddLog late-bound";
  EXPECT_TRUE(by_events.events.size() == 1 && by_dispatch.events.size() == 1) << "one Message each";
  if (!by_events.events.empty()) {
    const Event& e = by_events.events[0];
    EXPECT_TRUE(e.id == 1 && e.values == std::vector<std::string>({"Meldung \xFC", "3"}))
        << "Message(Desc, IconIndex) by reference";
  }

  // A disconnected sink hears nothing more.
  Disconnect(communicator, first);
  Call(dispatch, 0x60030000, DISPATCH_METHOD, {Text("zwei"), Long(1)}, &r);
  EXPECT_TRUE(by_events.events.size() == 1 && by_dispatch.events.size() == 2) << "Unadvise";
  Disconnect(communicator, second);

  // A handler that drops the last reference of the communicator raising
  // the event: the event completes, then the communicator ends.
  communicator->Release();
  by_dispatch.release_on_event = dispatch;
  Connect(dispatch, &by_dispatch, IID_IDispatch);
  const HRESULT alive_check = server.can_unload_now();
  Call(dispatch, 0x60030000, DISPATCH_METHOD, {Text("drei"), Long(1)}, &r);
  EXPECT_TRUE(alive_check == S_FALSE && r.hr == S_OK && by_dispatch.events.size() == 3)
      << "the last event of a dropped communicator";
  EXPECT_TRUE(server.can_unload_now() == S_OK) << "the communicator ended after its event";
}

// The component's own messages go to the communicator registered last, and
// to none after Nothing was assigned.
TEST(ComServer, ChannelRegistrationOfTheLogger) {
  Server& server = *the_server;
  IUnknown* a = server.Create<IUnknown>(CLSID_CFSCommunicator, IID_IUnknown);
  IUnknown* b = server.Create<IUnknown>(CLSID_CFSCommunicator, IID_IUnknown);
  IDispatch* logger = server.Create<IDispatch>(CLSID_CFSDataLogger, IID_IDispatch);
  EXPECT_TRUE(a != nullptr && b != nullptr && logger != nullptr) << "channel classes creatable";
  if (a == nullptr || b == nullptr || logger == nullptr) return;
  Sink sink_a;
  Sink sink_b;
  const DWORD cookie_a = Connect(a, &sink_a, DIID___CFSCommunicator);
  const DWORD cookie_b = Connect(b, &sink_b, DIID___CFSCommunicator);

  auto assign = [&](IUnknown* communicator) {
    IDispatch* d = nullptr;
    if (communicator != nullptr) {
      communicator->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&d));
    }
    CallResult r;
    Call(logger, 0x68030000, DISPATCH_PROPERTYPUTREF, {Object(d)}, &r);
    if (d != nullptr) d->Release();
    return r.hr;
  };
  // Loading a catalogue with a missing set folder sends one message.
  auto load_catalogue = [&] {
    IUnknown* sets = server.Create<IUnknown>(CLSID_CReportSets, IID_IUnknown);
    if (sets != nullptr) sets->Release();
  };

  EXPECT_TRUE(assign(a) == S_OK) << "register a";
  load_catalogue();
  EXPECT_TRUE(sink_a.events.size() == 1 && sink_b.events.empty()) << "a hears the loader";
  if (!sink_a.events.empty()) {
    const Event& e = sink_a.events[0];
    EXPECT_TRUE(e.id == 1 && e.values.size() == 2 &&
                e.values[0].rfind("Der Pfad zum Report-Set 'Fehlt' konnte nicht gefunden", 0) ==
                    0 &&
                e.values[1] == "3")
        << "the missing-folder message with icon 3";
  }
  EXPECT_TRUE(assign(b) == S_OK) << "register b";
  load_catalogue();
  EXPECT_TRUE(sink_a.events.size() == 1 && sink_b.events.size() == 1) << "only b hears it now";
  EXPECT_TRUE(assign(nullptr) == S_OK) << "Nothing";
  load_catalogue();
  EXPECT_TRUE(sink_a.events.size() == 1 && sink_b.events.size() == 1) << "no one hears it";

  IDispatch* not_a_communicator = server.Create<IDispatch>(CLSID_CLanguage, IID_IDispatch);
  CallResult wrong;
  Call(logger, 0x68030000, DISPATCH_PROPERTYPUTREF, {Object(not_a_communicator)}, &wrong);
  EXPECT_TRUE(FAILED(wrong.hr)) << "another class is refused";
  not_a_communicator->Release();

  Disconnect(a, cookie_a);
  Disconnect(b, cookie_b);
  logger->Release();
  a->Release();
  b->Release();
}

std::wstring ReadDefault(HKEY root, const std::wstring& path, const wchar_t* name = nullptr) {
  wchar_t value[MAX_PATH] = {};
  DWORD size = sizeof(value);
  if (RegGetValueW(root, path.c_str(), name, RRF_RT_REG_SZ, nullptr, value, &size) !=
      ERROR_SUCCESS) {
    return L"<missing>";
  }
  return value;
}

// Sets ReportPath of the report settings for a scope and puts the old
// value back (or removes it when there was none).
class ScopedReportPath {
 public:
  explicit ScopedReportPath(const wchar_t* value)
      : old_(ReadDefault(HKEY_CURRENT_USER, kKey, L"ReportPath")) {
    Set(value);
  }
  ScopedReportPath(const ScopedReportPath&) = delete;
  ScopedReportPath& operator=(const ScopedReportPath&) = delete;
  ~ScopedReportPath() {
    if (old_ == L"<missing>") {
      RegDeleteKeyValueW(HKEY_CURRENT_USER, kKey, L"ReportPath");
    } else {
      Set(old_.c_str());
    }
  }

 private:
  static constexpr const wchar_t* kKey = L"Software\\Quillon\\Config\\CurrentReport";
  static void Set(const wchar_t* value) {
    RegSetKeyValueW(HKEY_CURRENT_USER, kKey, L"ReportPath", REG_SZ, value,
                    static_cast<DWORD>((wcslen(value) + 1) * sizeof(wchar_t)));
  }
  std::wstring old_;
};

// With no report set chosen the templates stay unloaded (silently); the
// dictionaries are still Scripting.Dictionary objects, read as the same
// object each time until another is assigned, and DDMemberUnten can be set.
TEST(ComServer, RessourceLateBound) {
  Server& server = *the_server;
  const ScopedReportPath no_set(L"");
  IDispatch* ressource = server.Create<IDispatch>(CLSID_CRessource, IID_IDispatch);
  EXPECT_TRUE(ressource != nullptr) << "CRessource creatable";
  if (ressource == nullptr) return;
  CallResult ready;
  Call(ressource, IdOf(ressource, L"Ready"), DISPATCH_PROPERTYGET, {}, &ready);
  EXPECT_TRUE(V_VT(&ready.value) == VT_BOOL && V_BOOL(&ready.value) == VARIANT_FALSE)
      << "not ready without a chosen set";

  const DISPID place_holder = IdOf(ressource, L"PlaceHolder");
  CallResult first;
  CallResult second;
  Call(ressource, place_holder, DISPATCH_PROPERTYGET, {}, &first);
  Call(ressource, place_holder, DISPATCH_PROPERTYGET, {}, &second);
  EXPECT_TRUE(V_VT(&first.value) == VT_DISPATCH && V_DISPATCH(&first.value) != nullptr &&
              V_DISPATCH(&first.value) == V_DISPATCH(&second.value))
      << "one dictionary object";
  IDispatch* other = server.Create<IDispatch>(CLSID_CLanguage, IID_IDispatch);
  CallResult assigned;
  Call(ressource, place_holder, DISPATCH_PROPERTYPUTREF, {Object(other)}, &assigned);
  CallResult after;
  Call(ressource, place_holder, DISPATCH_PROPERTYGET, {}, &after);
  EXPECT_TRUE(assigned.hr == S_OK && V_VT(&after.value) == VT_DISPATCH &&
              V_DISPATCH(&after.value) == other)
      << "an assigned object replaces the dictionary";
  other->Release();

  const DISPID member_bottom = IdOf(ressource, L"DDMemberUnten");
  CallResult put;
  Call(ressource, member_bottom, DISPATCH_PROPERTYPUT, {Text("</table>\xE4")}, &put);
  CallResult get;
  Call(ressource, member_bottom, DISPATCH_PROPERTYGET, {}, &get);
  EXPECT_TRUE(put.hr == S_OK && V_VT(&get.value) == VT_BSTR &&
              FromBstr(V_BSTR(&get.value)) == "</table>\xE4")
      << "DDMemberUnten let and get";
  ressource->Release();
}

TEST(ComServer, DllCanUnloadNow) {
  Server& server = *the_server;
  EXPECT_TRUE(server.can_unload_now() == S_OK) << "nothing alive";
  IUnknown* object = server.Create<IUnknown>(CLSID_CLanguage, IID_IUnknown);
  EXPECT_TRUE(server.can_unload_now() == S_FALSE) << "a live object keeps the DLL";
  object->Release();
  EXPECT_TRUE(server.can_unload_now() == S_OK) << "released";
  IClassFactory* factory = nullptr;
  server.get_class_object(CLSID_CLanguage, IID_IClassFactory, reinterpret_cast<void**>(&factory));
  factory->LockServer(TRUE);
  factory->Release();
  EXPECT_TRUE(server.can_unload_now() == S_FALSE) << "a server lock keeps the DLL";
  server.get_class_object(CLSID_CLanguage, IID_IClassFactory, reinterpret_cast<void**>(&factory));
  factory->LockServer(FALSE);
  factory->Release();
  EXPECT_TRUE(server.can_unload_now() == S_OK) << "unlocked";
  IUnknown* unknown_class = nullptr;
  EXPECT_TRUE(server.get_class_object(IID_IDispatch, IID_IClassFactory,
                                      reinterpret_cast<void**>(&unknown_class)) ==
              CLASS_E_CLASSNOTAVAILABLE)
      << "a foreign class id";
}

// Registers machine-wide, then for the current user only; each time the
// class, its ProgID and the type library are found where they belong, and
// unregistering removes them again.
TEST(ComServer, RegistrationWritesAndRemovesTheKeys) {
  if (!with_registration) GTEST_SKIP() << "without --registration";
  Server& server = *the_server;
  const std::wstring& dll = dll_copy;
  const std::wstring clsid = L"CLSID\\{5D0CDB3D-011A-4A43-84D9-8D414A7B7A21}";
  const std::wstring progid = L"VBFolioscope.CFSCommunicator\\CLSID";
  struct {
    HKEY root;
    const wchar_t* classes;
    const wchar_t* per_user;
  } places[] = {{HKEY_LOCAL_MACHINE, L"Software\\Classes\\", L""},
                {HKEY_CURRENT_USER, L"Software\\Classes\\", L"1"}};
  for (const auto& place : places) {
    SetEnvironmentVariableW(L"FOLIOSCOPE_REGISTER_PER_USER", place.per_user);
    const std::wstring base = place.classes;
    EXPECT_TRUE(server.register_server() == S_OK) << "DllRegisterServer";
    EXPECT_TRUE(ReadDefault(place.root, base + clsid + L"\\InprocServer32") == dll)
        << "server path";
    EXPECT_TRUE(ReadDefault(place.root, base + clsid + L"\\InprocServer32", L"ThreadingModel") ==
                L"Apartment")
        << "apartment threaded";
    EXPECT_TRUE(ReadDefault(place.root, base + progid) == L"{5D0CDB3D-011A-4A43-84D9-8D414A7B7A21}")
        << "ProgID";
    // Windows merges the user's classes into HKEY_CLASSES_ROOT; Wine shows
    // only the machine's there.
    EXPECT_TRUE(place.root != HKEY_LOCAL_MACHINE ||
                ReadDefault(HKEY_CLASSES_ROOT, clsid + L"\\InprocServer32") == dll)
        << "seen through HKEY_CLASSES_ROOT";
    ITypeLib* library = nullptr;
    EXPECT_TRUE(SUCCEEDED(LoadRegTypeLib(LIBID_VBFolioscope, 1, 0, 0, &library))) << "type library";
    if (library != nullptr) library->Release();
    EXPECT_TRUE(server.unregister_server() == S_OK) << "DllUnregisterServer";
    EXPECT_TRUE(ReadDefault(place.root, base + clsid + L"\\InprocServer32") == L"<missing>")
        << "class removed";
    EXPECT_TRUE(ReadDefault(HKEY_CLASSES_ROOT, progid) == L"<missing>") << "ProgID removed";
  }
  SetEnvironmentVariableW(L"FOLIOSCOPE_REGISTER_PER_USER", nullptr);
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (argc < 2) {
    std::printf("usage: com_server_test <VBFolioscope.dll> [--registration]\n");
    return 2;
  }
  CoInitialize(nullptr);
  std::wstring dll(argv[1], argv[1] + std::char_traits<char>::length(argv[1]));
  wchar_t full[MAX_PATH];
  GetFullPathNameW(dll.c_str(), MAX_PATH, full, nullptr);
  dll_copy = MakeApplicationFolder(full) + L"\\VBFolioscope.dll";
  with_registration = argc > 2 && std::string(argv[2]) == "--registration";

  Server server;
  server.module = LoadLibraryW(dll_copy.c_str());
  if (server.module == nullptr) {
    std::printf("FAIL: cannot load %ls\n", dll_copy.c_str());
    return 1;
  }
  // Through void*: the entry points' real types differ from FARPROC's.
  auto entry = [&](const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(server.module, name));
  };
  server.get_class_object = reinterpret_cast<GetClassObjectFn>(entry("DllGetClassObject"));
  server.can_unload_now = reinterpret_cast<NoArgumentFn>(entry("DllCanUnloadNow"));
  server.register_server = reinterpret_cast<NoArgumentFn>(entry("DllRegisterServer"));
  server.unregister_server = reinterpret_cast<NoArgumentFn>(entry("DllUnregisterServer"));
  if (!server.get_class_object || !server.can_unload_now || !server.register_server ||
      !server.unregister_server) {
    std::printf("FAIL: the four entry points are not exported by name\n");
    return 1;
  }
  the_server = &server;
  return RUN_ALL_TESTS();
}
