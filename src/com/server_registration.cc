#include "com/server_registration.h"

#include <oleauto.h>
#include <olectl.h>

#include <string>

#include "com/class_table.h"
#include "com/com_support.h"

// Exported by oleaut32 since Windows Vista; MinGW's headers leave them out.
extern "C" {
HRESULT WINAPI RegisterTypeLibForUser(ITypeLib* library, OLECHAR* path, OLECHAR* help_dir);
HRESULT WINAPI UnRegisterTypeLibForUser(REFGUID libid, WORD major, WORD minor, LCID lcid,
                                        SYSKIND syskind);
}

namespace folioscope::com {

namespace {

constexpr wchar_t kClassesKey[] = L"Software\\Classes";
constexpr wchar_t kVersion[] = L"1.0";
constexpr wchar_t kPerUserVariable[] = L"FOLIOSCOPE_REGISTER_PER_USER";

std::wstring Widen(const std::string& ascii) { return std::wstring(ascii.begin(), ascii.end()); }

std::wstring GuidText(REFGUID guid) {
  wchar_t text[40] = {};
  StringFromGUID2(guid, text, 40);
  return text;
}

// An open registry key, closed on destruction.
class Key {
 public:
  Key() = default;
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  HKEY* out() { return &key_; }
  HKEY get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

// Creates `path` below `root` and sets its default value (when `value` is
// not null) and one named value. Returns the Win32 error code.
LONG WriteKey(HKEY root, const std::wstring& path, const wchar_t* value,
              const wchar_t* name = nullptr, const wchar_t* named_value = nullptr) {
  Key key;
  LONG status = RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_WRITE,
                                nullptr, key.out(), nullptr);
  if (status != ERROR_SUCCESS) return status;
  auto set = [&](const wchar_t* n, const wchar_t* v) {
    const DWORD bytes = static_cast<DWORD>((wcslen(v) + 1) * sizeof(wchar_t));
    return RegSetValueExW(key.get(), n, 0, REG_SZ, reinterpret_cast<const BYTE*>(v), bytes);
  };
  if (value != nullptr) status = set(nullptr, value);
  if (status == ERROR_SUCCESS && name != nullptr) status = set(name, named_value);
  return status;
}

// The entries of one class below a Classes key.
LONG WriteClass(HKEY classes, const ComClassRegistration& c, const std::wstring& dll,
                const std::wstring& libid) {
  const std::wstring progid = Widen(c.ProgId());
  const std::wstring clsid_key = L"CLSID\\" + GuidText(c.clsid());
  LONG s = WriteKey(classes, clsid_key, progid.c_str());
  if (s == ERROR_SUCCESS) {
    s = WriteKey(classes, clsid_key + L"\\InprocServer32", dll.c_str(), L"ThreadingModel",
                 L"Apartment");
  }
  if (s == ERROR_SUCCESS) s = WriteKey(classes, clsid_key + L"\\ProgID", progid.c_str());
  if (s == ERROR_SUCCESS) s = WriteKey(classes, clsid_key + L"\\VERSION", kVersion);
  if (s == ERROR_SUCCESS) s = WriteKey(classes, clsid_key + L"\\TypeLib", libid.c_str());
  if (s == ERROR_SUCCESS) s = WriteKey(classes, clsid_key + L"\\Programmable", nullptr);
  if (s == ERROR_SUCCESS) s = WriteKey(classes, progid, progid.c_str());
  if (s == ERROR_SUCCESS) {
    s = WriteKey(classes, progid + L"\\CLSID", GuidText(c.clsid()).c_str());
  }
  return s;
}

void DeleteClass(HKEY classes, const ComClassRegistration& c) {
  RegDeleteTreeW(classes, (L"CLSID\\" + GuidText(c.clsid())).c_str());
  RegDeleteKeyW(classes, (L"CLSID\\" + GuidText(c.clsid())).c_str());
  RegDeleteTreeW(classes, Widen(c.ProgId()).c_str());
  RegDeleteKeyW(classes, Widen(c.ProgId()).c_str());
}

// Opens HKLM\Software\Classes or HKCU\Software\Classes for writing.
LONG OpenClasses(HKEY root, Key* key) {
  return RegCreateKeyExW(root, kClassesKey, 0, nullptr, REG_OPTION_NON_VOLATILE,
                         KEY_WRITE | KEY_READ, nullptr, key->out(), nullptr);
}

LONG WriteAllClasses(HKEY classes, const std::wstring& dll, const std::wstring& libid) {
  for (const ComClassRegistration* c : RegisteredComClasses()) {
    const LONG s = WriteClass(classes, *c, dll, libid);
    if (s != ERROR_SUCCESS) return s;
  }
  return ERROR_SUCCESS;
}

HRESULT LoadOwnTypeLibrary(const std::wstring& dll, ITypeLib** library) {
  return LoadTypeLibEx(dll.c_str(), REGKIND_NONE, library);
}

bool RegisterForUserOnly() {
  wchar_t value[8] = {};
  const DWORD n = GetEnvironmentVariableW(kPerUserVariable, value, 8);
  return n > 0 && n < 8 && std::wstring(value) == L"1";
}

SYSKIND OwnSysKind() { return sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32; }

}  // namespace

HRESULT RegisterServer() {
  const std::wstring dll = ModulePath();
  if (dll.empty()) return SELFREG_E_CLASS;
  ITypeLib* library = nullptr;
  HRESULT hr = LoadOwnTypeLibrary(dll, &library);
  if (FAILED(hr)) return SELFREG_E_TYPELIB;
  TLIBATTR* attributes = nullptr;
  hr = library->GetLibAttr(&attributes);
  if (FAILED(hr)) {
    library->Release();
    return SELFREG_E_TYPELIB;
  }
  const std::wstring libid = GuidText(attributes->guid);
  library->ReleaseTLibAttr(attributes);

  bool per_user = RegisterForUserOnly();
  LONG status = ERROR_ACCESS_DENIED;
  if (!per_user) {
    Key machine;
    status = OpenClasses(HKEY_LOCAL_MACHINE, &machine);
    if (status == ERROR_SUCCESS) status = WriteAllClasses(machine.get(), dll, libid);
  }
  if (status == ERROR_ACCESS_DENIED) {
    per_user = true;
    Key user;
    status = OpenClasses(HKEY_CURRENT_USER, &user);
    if (status == ERROR_SUCCESS) status = WriteAllClasses(user.get(), dll, libid);
  }
  if (status != ERROR_SUCCESS) {
    library->Release();
    return SELFREG_E_CLASS;
  }

  std::wstring path = dll;
  std::wstring folder = dll.substr(0, dll.find_last_of(L"\\/"));
  if (!per_user) {
    hr = RegisterTypeLib(library, path.data(), folder.data());
    if (hr == TYPE_E_REGISTRYACCESS || hr == E_ACCESSDENIED) per_user = true;
  }
  if (per_user) hr = RegisterTypeLibForUser(library, path.data(), folder.data());
  library->Release();
  return FAILED(hr) ? SELFREG_E_TYPELIB : S_OK;
}

HRESULT UnregisterServer() {
  for (HKEY root : {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER}) {
    Key classes;
    if (RegOpenKeyExW(root, kClassesKey, 0, KEY_WRITE | KEY_READ, classes.out()) != ERROR_SUCCESS) {
      continue;
    }
    for (const ComClassRegistration* c : RegisteredComClasses()) DeleteClass(classes.get(), *c);
  }
  ITypeLib* library = nullptr;
  if (SUCCEEDED(LoadOwnTypeLibrary(ModulePath(), &library))) {
    TLIBATTR* a = nullptr;
    if (SUCCEEDED(library->GetLibAttr(&a))) {
      UnRegisterTypeLib(a->guid, a->wMajorVerNum, a->wMinorVerNum, a->lcid, OwnSysKind());
      UnRegisterTypeLibForUser(a->guid, a->wMajorVerNum, a->wMinorVerNum, a->lcid, OwnSysKind());
      library->ReleaseTLibAttr(a);
    }
    library->Release();
  }
  return S_OK;
}

}  // namespace folioscope::com
