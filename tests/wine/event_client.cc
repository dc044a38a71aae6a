// A Windows client of the VBFolioscope COM server that listens to the
// progress events the way an add-in does: it connects an IDispatch sink to
// the communicator's source interface (found through IProvideClassInfo2, so
// no generated header is needed), registers the communicator with
// CFSDataLogger and drives a report. Every call is late-bound by name, as a
// VB6 Object variable or a script would make it.
//
// Wine's cscript cannot connect script Subs to events (WScript.ConnectObject
// and the prefix form of WScript.CreateObject are stubs there), so the
// event checks live here rather than in a .vbs file.
//
// Usage: event_client <project.vbp> <output folder>
// Prints every event as a line and GoogleTest's report of the checks, then
// "event-client-done"; the exit status is 1 when a check failed.
#include <objbase.h>
#include <ocidl.h>
#include <oleauto.h>
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

// ---------------------------------------------------------------------------
// Late binding

std::wstring Describe(HRESULT hr) {
  wchar_t text[64];
  std::swprintf(text, 64, L"HRESULT 0x%08lX", static_cast<unsigned long>(hr));
  std::wstring result = text;
  IErrorInfo* info = nullptr;
  if (GetErrorInfo(0, &info) == S_OK && info != nullptr) {
    BSTR description = nullptr;
    if (SUCCEEDED(info->GetDescription(&description)) && description != nullptr) {
      result += L" (";
      result += description;
      result += L")";
      SysFreeString(description);
    }
    info->Release();
  }
  return result;
}

// An owned VARIANT.
struct Var {
  VARIANT v;
  Var() { VariantInit(&v); }
  explicit Var(const wchar_t* text) {
    VariantInit(&v);
    v.vt = VT_BSTR;
    v.bstrVal = SysAllocString(text);
  }
  explicit Var(long number) {
    VariantInit(&v);
    v.vt = VT_I4;
    v.lVal = number;
  }
  explicit Var(IDispatch* object) {
    VariantInit(&v);
    v.vt = VT_DISPATCH;
    v.pdispVal = object;
    if (object != nullptr) object->AddRef();
  }
  Var(const Var&) = delete;
  Var& operator=(const Var&) = delete;
  ~Var() { VariantClear(&v); }

  std::wstring Text() const {
    VARIANT copy;
    VariantInit(&copy);
    std::wstring result;
    if (SUCCEEDED(VariantChangeType(&copy, const_cast<VARIANT*>(&v), 0, VT_BSTR)) &&
        copy.bstrVal != nullptr) {
      result = copy.bstrVal;
    }
    VariantClear(&copy);
    return result;
  }
  long Number() const {
    VARIANT copy;
    VariantInit(&copy);
    long result = -999999;
    if (SUCCEEDED(VariantChangeType(&copy, const_cast<VARIANT*>(&v), 0, VT_I4))) result = copy.lVal;
    VariantClear(&copy);
    return result;
  }
  IDispatch* Object() const { return v.vt == VT_DISPATCH ? v.pdispVal : nullptr; }
};

// Invokes `name` on `object` with `args` (first argument first). Returns the
// HRESULT; a failure is printed with the error text.
HRESULT Invoke(IDispatch* object, const wchar_t* name, WORD flags, std::vector<VARIANT*> args,
               Var* result) {
  if (object == nullptr) {
    std::wprintf(L"no object for %ls\n", name);
    return E_POINTER;
  }
  DISPID id = 0;
  LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
  HRESULT hr = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(hr)) {
    std::wprintf(L"%ls: no such member (%ls)\n", name, Describe(hr).c_str());
    return hr;
  }
  std::vector<VARIANTARG> reversed;
  for (auto it = args.rbegin(); it != args.rend(); ++it) reversed.push_back(**it);
  DISPID put_id = DISPID_PROPERTYPUT;
  DISPPARAMS params = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
    params.rgdispidNamedArgs = &put_id;
    params.cNamedArgs = 1;
  }
  EXCEPINFO exception = {};
  hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params,
                      result != nullptr ? &result->v : nullptr, &exception, nullptr);
  if (FAILED(hr)) {
    std::wstring text = Describe(hr);
    if (exception.bstrDescription != nullptr)
      text += std::wstring(L" ") + exception.bstrDescription;
    std::wprintf(L"%ls failed: %ls\n", name, text.c_str());
  }
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  return hr;
}

// By-reference argument the way VB passes a variable.
VARIANT ByRef(Var& variable) {
  VARIANT ref;
  VariantInit(&ref);
  ref.vt = VT_BYREF | variable.v.vt;
  ref.byref = &variable.v.lVal;  // every member of the value union starts here
  return ref;
}

IDispatch* Create(const wchar_t* prog_id) {
  CLSID clsid;
  HRESULT hr = CLSIDFromProgID(prog_id, &clsid);
  IDispatch* object = nullptr;
  if (SUCCEEDED(hr)) {
    hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                          reinterpret_cast<void**>(&object));
  }
  EXPECT_TRUE(SUCCEEDED(hr)) << std::wstring(L"create ") + prog_id + L": " + Describe(hr);
  return SUCCEEDED(hr) ? object : nullptr;
}

// ---------------------------------------------------------------------------
// The sink

struct Event {
  DISPID id;
  std::wstring text;
  long number;
  bool flag;
};

std::wstring Name(DISPID id) {
  static const wchar_t* const kNames[] = {L"Message", L"OnReportStart", L"OnReportWorks"};
  return id >= 1 && id <= 3 ? kNames[id - 1] : L"event " + std::to_wstring(id);
}

class Sink : public IDispatch {
 public:
  Sink(const wchar_t* label, IID events) : label_(label), events_(events) {}
  std::vector<Event> events;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    if (out == nullptr) return E_POINTER;
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == events_) {
      *out = static_cast<IDispatch*>(this);
      AddRef();
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override { return --references_; }  // lives on the stack
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
    static const VARTYPE kSignatures[3][3] = {
        {VT_BSTR, VT_I4, VT_EMPTY}, {VT_I4, VT_EMPTY, VT_EMPTY}, {VT_I4, VT_BSTR, VT_BOOL}};
    Event event{id, L"", 0, false};
    if (id < 1 || id > 3) {
      EXPECT_TRUE(false) << L"unknown event id " + std::to_wstring(id);
      return S_OK;
    }
    const VARTYPE* signature = kSignatures[id - 1];
    UINT expected = 0;
    while (expected < 3 && signature[expected] != VT_EMPTY) ++expected;
    EXPECT_TRUE(params->cArgs == expected) << Name(id) + L": argument count";
    for (UINT i = 0; i < params->cArgs && i < expected; ++i) {
      const VARIANT& arg = params->rgvarg[params->cArgs - 1 - i];
      EXPECT_TRUE(arg.vt == (VT_BYREF | signature[i]))
          << Name(id) + L": argument " + std::to_wstring(i + 1) + L" is not passed by reference " +
                 L"with the declared type (vt " + std::to_wstring(arg.vt) + L")";
      if (!(arg.vt & VT_BYREF)) continue;
      switch (arg.vt & ~VT_BYREF) {
        case VT_BSTR:
          event.text = *arg.pbstrVal != nullptr ? *arg.pbstrVal : L"";
          break;
        case VT_I4:
          event.number = *arg.plVal;
          break;
        case VT_BOOL:
          event.flag = *arg.pboolVal == VARIANT_TRUE;
          EXPECT_TRUE(*arg.pboolVal == VARIANT_TRUE || *arg.pboolVal == VARIANT_FALSE)
              << Name(id) + L": Boolean is neither -1 nor 0";
          break;
      }
    }
    std::wprintf(L"%ls %ls: %ls | %ld | %ls\n", label_, Name(id).c_str(), event.text.c_str(),
                 event.number, event.flag ? L"True" : L"False");
    events.push_back(event);
    return S_OK;
  }

 private:
  const wchar_t* label_;
  IID events_;
  ULONG references_ = 1;
};

// The communicator's default source interface, as IProvideClassInfo2 names it.
IID SourceInterface(IDispatch* communicator) {
  IID events = IID_NULL;
  IProvideClassInfo2* class_info = nullptr;
  if (SUCCEEDED(communicator->QueryInterface(IID_IProvideClassInfo2,
                                             reinterpret_cast<void**>(&class_info)))) {
    class_info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events);
    class_info->Release();
  }
  EXPECT_TRUE(events != IID_NULL) << L"IProvideClassInfo2 names the default source interface";
  return events;
}

// Connects `sink` to the communicator's default source interface; returns
// the connection point (to disconnect later) and sets `cookie`.
IConnectionPoint* Connect(IDispatch* communicator, Sink& sink, DWORD* cookie) {
  IConnectionPointContainer* container = nullptr;
  HRESULT hr = communicator->QueryInterface(IID_IConnectionPointContainer,
                                            reinterpret_cast<void**>(&container));
  EXPECT_TRUE(SUCCEEDED(hr)) << L"communicator is a connection-point container";
  if (FAILED(hr)) return nullptr;
  IConnectionPoint* point = nullptr;
  hr = container->FindConnectionPoint(SourceInterface(communicator), &point);
  EXPECT_TRUE(SUCCEEDED(hr)) << L"connection point of the source interface: " + Describe(hr);
  container->Release();
  if (FAILED(hr)) return nullptr;
  hr = point->Advise(&sink, cookie);
  EXPECT_TRUE(SUCCEEDED(hr)) << L"Advise: " + Describe(hr);
  return point;
}

// ---------------------------------------------------------------------------
// The checks

// The report run announces modules + 1 steps, then one step per module in
// the project's order, named after the module, with the standard prefix.
void CheckReportEvents(const std::vector<Event>& events, const std::vector<std::wstring>& modules) {
  std::vector<Event> progress;
  for (const Event& e : events) {
    if (e.id != 1) progress.push_back(e);
  }
  EXPECT_TRUE(!progress.empty() && progress[0].id == 2) << L"the report begins with OnReportStart";
  if (progress.empty()) return;
  EXPECT_TRUE(progress[0].number == static_cast<long>(modules.size()) + 1)
      << L"OnReportStart(" + std::to_wstring(progress[0].number) + L") for " +
             std::to_wstring(modules.size()) + L" modules";
  EXPECT_TRUE(progress.size() == modules.size() + 1) << L"one OnReportWorks per module";
  for (size_t i = 1; i < progress.size() && i <= modules.size(); ++i) {
    const Event& e = progress[i];
    EXPECT_TRUE(e.id == 3 && e.number == static_cast<long>(i) && e.text == modules[i - 1] && e.flag)
        << L"OnReportWorks " + std::to_wstring(i) + L" names " + modules[i - 1];
  }
}

std::vector<std::wstring> ModuleNames(IDispatch* project) {
  std::vector<std::wstring> names;
  Var modules;
  if (FAILED(Invoke(project, L"Modules", DISPATCH_PROPERTYGET, {}, &modules))) return names;
  Var count;
  Invoke(modules.Object(), L"Count", DISPATCH_PROPERTYGET, {}, &count);
  for (long i = 1; i <= count.Number(); ++i) {
    Var index(i), module, name;
    Invoke(modules.Object(), L"Item", DISPATCH_METHOD | DISPATCH_PROPERTYGET, {&index.v}, &module);
    Invoke(module.Object(), L"Name", DISPATCH_PROPERTYGET, {}, &name);
    names.push_back(name.Text());
  }
  return names;
}

bool HasMessage(const std::vector<Event>& events, const std::wstring& start, long icon) {
  for (const Event& e : events) {
    if (e.id == 1 && e.text.rfind(start, 0) == 0 && e.number == icon) return true;
  }
  return false;
}

void RunReportWithSinks(const wchar_t* project_path, const wchar_t* output) {
  IDispatch* communicator = Create(L"VBFolioscope.CFSCommunicator");
  IDispatch* logger = Create(L"VBFolioscope.CFSDataLogger");
  IDispatch* reader = Create(L"VBFolioscope.CProjektReader");
  if (communicator == nullptr || logger == nullptr || reader == nullptr) return;

  const IID events = SourceInterface(communicator);
  Sink sink(L"first", events);
  DWORD cookie = 0;
  IConnectionPoint* point = Connect(communicator, sink, &cookie);
  if (point == nullptr) return;
  Var channel(communicator);
  EXPECT_TRUE(
      SUCCEEDED(Invoke(logger, L"FSCommunicator", DISPATCH_PROPERTYPUTREF, {&channel.v}, nullptr)))
      << L"CFSDataLogger.FSCommunicator takes the communicator";

  // AddLog from the caller comes back as Message with the same values.
  Var text(L"Eigene Zeile"), icon(7L);
  VARIANT text_ref = ByRef(text), icon_ref = ByRef(icon);
  Invoke(communicator, L"AddLog", DISPATCH_METHOD, {&text_ref, &icon_ref}, nullptr);
  EXPECT_TRUE(sink.events.size() == 1 && sink.events[0].id == 1 &&
              sink.events[0].text == L"Eigene Zeile" && sink.events[0].number == 7)
      << L"AddLog raises Message with its own text and icon";

  Var path(project_path), project;
  Invoke(reader, L"Open", DISPATCH_METHOD, {&path.v}, &project);
  EXPECT_TRUE(project.Object() != nullptr) << L"the reader returns a project object";
  if (project.Object() == nullptr) return;
  std::vector<std::wstring> modules = ModuleNames(project.Object());
  EXPECT_TRUE(!modules.empty()) << L"the project has modules";

  IDispatch* report = Create(L"VBFolioscope.CFolioscope");
  if (report == nullptr) return;
  // The folder name is appended to PlainPath as it stands.
  std::wstring plain_path = std::wstring(output) + L"\\";
  Var out(plain_path.c_str()), folder(L"events"), mode(0L), status;
  Invoke(report, L"Projekt", DISPATCH_PROPERTYPUTREF, {&project.v}, nullptr);
  Var project_name;
  Invoke(project.Object(), L"Name", DISPATCH_PROPERTYGET, {}, &project_name);
  Invoke(report, L"ProjektName", DISPATCH_PROPERTYPUT, {&project_name.v}, nullptr);
  Invoke(report, L"PlainPath", DISPATCH_PROPERTYPUT, {&out.v}, nullptr);
  Invoke(report, L"FolderName", DISPATCH_PROPERTYPUT, {&folder.v}, nullptr);
  sink.events.clear();
  VARIANT mode_ref = ByRef(mode);
  HRESULT hr = Invoke(report, L"SaveReport", DISPATCH_METHOD, {&mode_ref}, &status);
  EXPECT_TRUE(SUCCEEDED(hr) && status.Number() == 0) << L"SaveReport 0 returns 0";
  CheckReportEvents(sink.events, modules);

  // No hhc.exe beside the DLL: the help-file build says so with icon 3. A
  // second communicator registered now takes over the channel.
  Sink second(L"second", events);
  DWORD second_cookie = 0;
  IDispatch* communicator2 = Create(L"VBFolioscope.CFSCommunicator");
  IConnectionPoint* point2 =
      communicator2 ? Connect(communicator2, second, &second_cookie) : nullptr;
  Var channel2(communicator2);
  Invoke(logger, L"FSCommunicator", DISPATCH_PROPERTYPUTREF, {&channel2.v}, nullptr);
  sink.events.clear();
  Var chm_folder(L"chm"), chm_mode(0L), chm_status;
  Invoke(report, L"FolderName", DISPATCH_PROPERTYPUT, {&chm_folder.v}, nullptr);
  VARIANT chm_mode_ref = ByRef(chm_mode);
  Invoke(report, L"SaveCHMReportSystem", DISPATCH_METHOD, {&chm_mode_ref}, &chm_status);
  // The whole text, with its u-umlaut: the event carries Windows-1252 text
  // as UTF-16.
  EXPECT_TRUE(
      HasMessage(second.events,
                 L"Die Datei 'hhc.exe' konnte nicht im Anwendungsordner gefunden werden. "
                 L"Diese ist f\u00fcr die Erstellung von CHM-Dateien unbedingt erforderlich. "
                 L"Der Web-Report konnte nicht kompiliert werden.",
                 3))
      << L"the missing hhc.exe is reported through Message with icon 3";
  EXPECT_TRUE(sink.events.empty())
      << L"after the second registration the first communicator is silent";

  if (point2 != nullptr) {
    point2->Unadvise(second_cookie);
    point2->Release();
  }
  point->Unadvise(cookie);
  point->Release();
  report->Release();
  if (communicator2 != nullptr) communicator2->Release();
  reader->Release();
  logger->Release();
  communicator->Release();
}

// The project and output folder named on the command line.
const wchar_t* project_file = nullptr;
const wchar_t* output_folder = nullptr;

TEST(EventClient, ProgressEventsOfAReport) { RunReportWithSinks(project_file, output_folder); }

}  // namespace

int wmain(int argc, wchar_t** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (argc != 3) {
    std::fwprintf(stderr, L"usage: event_client <project.vbp> <output folder>\n");
    return 2;
  }
  project_file = argv[1];
  output_folder = argv[2];
  CoInitialize(nullptr);
  const int status = RUN_ALL_TESTS();
  CoUninitialize();
  std::wprintf(L"event-client-done\n");
  std::fflush(stdout);
  return status;
}
