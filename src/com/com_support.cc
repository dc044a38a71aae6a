#include "com/com_support.h"

#include <atomic>

#include "infra/platform.h"
#include "infra/windows_platform.h"

namespace folioscope::com {

namespace {

constexpr UINT kCodePage = 1252;

std::atomic<long> g_objects{0};
std::atomic<long> g_locks{0};
HINSTANCE g_instance = nullptr;

}  // namespace

// --- Strings ---------------------------------------------------------------

std::string FromBstr(BSTR text) {
  if (text == nullptr) return {};
  const int wide_length = static_cast<int>(SysStringLen(text));
  if (wide_length == 0) return {};
  const int length =
      WideCharToMultiByte(kCodePage, 0, text, wide_length, nullptr, 0, nullptr, nullptr);
  std::string result(static_cast<size_t>(length), '\0');
  WideCharToMultiByte(kCodePage, 0, text, wide_length, result.data(), length, nullptr, nullptr);
  return result;
}

BSTR ToBstr(const std::string& text) {
  // A BSTR holds at most 2^31 - 1 bytes of UTF-16.
  if (text.size() > 0x3FFFFFFF) vb::Raise(vb::kOutOfMemory);
  const int length = static_cast<int>(text.size());
  const int wide_length =
      length == 0 ? 0 : MultiByteToWideChar(kCodePage, 0, text.data(), length, nullptr, 0);
  BSTR result = SysAllocStringLen(nullptr, static_cast<UINT>(wide_length));
  if (result == nullptr) vb::Raise(vb::kOutOfMemory);
  if (wide_length > 0) MultiByteToWideChar(kCodePage, 0, text.data(), length, result, wide_length);
  return result;
}

IndexArgument ReadIndexArgument(const VARIANT& index) {
  const VARIANT* v = &index;
  while (V_VT(v) == (VT_VARIANT | VT_BYREF) && V_VARIANTREF(v) != nullptr) v = V_VARIANTREF(v);
  IndexArgument result;
  switch (V_VT(v) & ~VT_BYREF) {
    case VT_BSTR:
      result.is_string = true;
      result.text = FromBstr(V_ISBYREF(v) ? *V_BSTRREF(v) : V_BSTR(v));
      return result;
    // What VB would look up as the text "", "Wahr" or a date: never a key
    // or a position of the catalogue.
    case VT_EMPTY:
    case VT_BOOL:
    case VT_DATE:
      vb::Raise(vb::kInvalidProcedureCall);
    default:
      break;
  }
  VARIANT number;
  VariantInit(&number);
  if (FAILED(VariantChangeType(&number, const_cast<VARIANT*>(v), 0, VT_R8))) vb::Raise(13);
  result.number = V_R8(&number);
  return result;
}

// --- Faults ------------------------------------------------------------------

HRESULT HresultOfError(int32_t number) {
  if (number < 0) return static_cast<HRESULT>(number);
  return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, static_cast<uint32_t>(number) & 0xFFFF);
}

HRESULT ReturnError(const char* class_name, const vb::RuntimeError& error) {
  ICreateErrorInfo* create = nullptr;
  if (SUCCEEDED(CreateErrorInfo(&create))) {
    BSTR source = nullptr;
    BSTR description = nullptr;
    try {
      source = ToBstr(std::string("VBFolioscope.") + class_name);
      description = ToBstr(error.description());
    } catch (...) {
    }
    create->SetGUID(GUID_NULL);
    create->SetSource(source);
    create->SetDescription(description);
    SysFreeString(source);
    SysFreeString(description);
    IErrorInfo* info = nullptr;
    if (SUCCEEDED(create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info)))) {
      SetErrorInfo(0, info);
      info->Release();
    }
    create->Release();
  }
  return HresultOfError(error.number());
}

// --- The module ----------------------------------------------------------------

HINSTANCE ModuleInstance() { return g_instance; }

void SetModuleInstance(HINSTANCE instance) { g_instance = instance; }

std::wstring ModulePath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD n = GetModuleFileNameW(g_instance, path.data(), static_cast<DWORD>(path.size()));
    if (n == 0) return {};
    if (n < path.size()) {
      path.resize(n);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

void ObjectCreated() { ++g_objects; }
void ObjectDestroyed() { --g_objects; }
void LockModule() { ++g_locks; }
void UnlockModule() { --g_locks; }
bool ModuleInUse() { return g_objects.load() != 0 || g_locks.load() != 0; }

namespace {

ITypeLib* OwnTypeLibrary() {
  static ITypeLib* library = nullptr;
  if (library == nullptr) {
    ITypeLib* loaded = nullptr;
    if (FAILED(LoadTypeLibEx(ModulePath().c_str(), REGKIND_NONE, &loaded))) return nullptr;
    // Two apartments may race here; the loser drops its copy.
    if (InterlockedCompareExchangePointer(reinterpret_cast<void**>(&library), loaded, nullptr) !=
        nullptr) {
      loaded->Release();
    }
  }
  return library;
}

}  // namespace

HRESULT TypeInfoOf(REFGUID guid, ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  ITypeLib* library = OwnTypeLibrary();
  if (library == nullptr) return TYPE_E_CANTLOADLIBRARY;
  return library->GetTypeInfoOfGuid(guid, info);
}

HRESULT CoclassInfoOf(const char* class_name, ITypeInfo** info) {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  ITypeLib* library = OwnTypeLibrary();
  if (library == nullptr) return TYPE_E_CANTLOADLIBRARY;
  const std::string wanted = class_name;
  const UINT count = library->GetTypeInfoCount();
  for (UINT i = 0; i < count; ++i) {
    TYPEKIND kind;
    if (FAILED(library->GetTypeInfoType(i, &kind)) || kind != TKIND_COCLASS) continue;
    BSTR name = nullptr;
    if (FAILED(library->GetDocumentation(static_cast<INT>(i), &name, nullptr, nullptr, nullptr))) {
      continue;
    }
    const bool match = FromBstr(name) == wanted;
    SysFreeString(name);
    if (match) return library->GetTypeInfo(i, info);
  }
  return TYPE_E_ELEMENTNOTFOUND;
}

HRESULT DefaultSourceOf(const char* class_name, GUID* guid) {
  ITypeInfo* coclass = nullptr;
  HRESULT hr = CoclassInfoOf(class_name, &coclass);
  if (FAILED(hr)) return E_INVALIDARG;
  TYPEATTR* attributes = nullptr;
  hr = E_INVALIDARG;
  if (SUCCEEDED(coclass->GetTypeAttr(&attributes))) {
    const int wanted = IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE;
    for (UINT i = 0; i < attributes->cImplTypes && FAILED(hr); ++i) {
      INT flags = 0;
      HREFTYPE reference = 0;
      ITypeInfo* source = nullptr;
      if (FAILED(coclass->GetImplTypeFlags(i, &flags)) || (flags & wanted) != wanted ||
          FAILED(coclass->GetRefTypeOfImplType(i, &reference)) ||
          FAILED(coclass->GetRefTypeInfo(reference, &source))) {
        continue;
      }
      TYPEATTR* source_attributes = nullptr;
      if (SUCCEEDED(source->GetTypeAttr(&source_attributes))) {
        *guid = source_attributes->guid;
        source->ReleaseTypeAttr(source_attributes);
        hr = S_OK;
      }
      source->Release();
    }
    coclass->ReleaseTypeAttr(attributes);
  }
  coclass->Release();
  return hr;
}

namespace {

// Keeps the DLL mapped until the process ends. Once the component has run,
// threads hold thread-local state of ours (the progress channel) whose
// clean-up code lives in this module; unloading it under them would leave
// that code unmapped. DllCanUnloadNow still answers truthfully; COM's
// FreeLibrary then simply leaves the module in place.
void PinModule() {
  HMODULE self = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<LPCWSTR>(&PinModule), &self);
}

}  // namespace

void EnsurePlatform() {
  static const bool pinned = (PinModule(), true);
  (void)pinned;
  // Lives as long as the process: component objects may outlive any one of
  // ours, and the platform is never swapped afterwards.
  static WindowsPlatform platform;
  static const bool installed = (SetCurrentPlatform(&platform), true);
  (void)installed;
}

}  // namespace folioscope::com
