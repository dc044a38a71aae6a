// Test support for the Windows test programs of the COM server: VARIANT
// builders, late-bound calls with their arguments in call order,
// Scripting.Dictionary objects, and Bag, the caller's own object as a script
// or VB class hands it over. Needs nothing but the OLE automation libraries.
#ifndef FOLIOSCOPE_COM_VARIANT_TEST_SUPPORT_H_
#define FOLIOSCOPE_COM_VARIANT_TEST_SUPPORT_H_

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <cwchar>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace folioscope::com_testing {

inline VARIANT Long(LONG n) {
  VARIANT v;
  VariantInit(&v);
  V_VT(&v) = VT_I4;
  V_I4(&v) = n;
  return v;
}

inline VARIANT Text(const wchar_t* text) {
  VARIANT v;
  VariantInit(&v);
  V_VT(&v) = VT_BSTR;
  V_BSTR(&v) = SysAllocString(text);
  return v;
}

// Takes over the reference of `object`.
inline VARIANT Object(IDispatch* object) {
  VARIANT v;
  VariantInit(&v);
  V_VT(&v) = VT_DISPATCH;
  V_DISPATCH(&v) = object;
  return v;
}

// A script's array of objects (takes over the references).
inline VARIANT ArrayOf(const std::vector<IDispatch*>& objects) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(objects.size()));
  VARIANT* data = nullptr;
  SafeArrayAccessData(array, reinterpret_cast<void**>(&data));
  for (size_t i = 0; i < objects.size(); ++i) data[i] = Object(objects[i]);
  SafeArrayUnaccessData(array);
  VARIANT v;
  VariantInit(&v);
  V_VT(&v) = VT_ARRAY | VT_VARIANT;
  V_ARRAY(&v) = array;
  return v;
}

// The text of `text`, which is freed.
inline std::wstring Take(BSTR text) {
  std::wstring s = text ? std::wstring(text, SysStringLen(text)) : std::wstring();
  SysFreeString(text);
  return s;
}

inline DISPID IdOf(IDispatch* object, const wchar_t* name) {
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR names[1] = {const_cast<LPOLESTR>(name)};
  object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  return id;
}

// Invokes `id` with `args` given in call order, and clears them. A property
// put passes its value as the named DISPID_PROPERTYPUT argument and asks
// for no result.
inline HRESULT Invoke(IDispatch* object, DISPID id, WORD flags, std::vector<VARIANT> args,
                      VARIANT* result, EXCEPINFO* exception) {
  std::vector<VARIANT> reversed(args.rbegin(), args.rend());
  DISPID named = DISPID_PROPERTYPUT;
  const bool put = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPPARAMS params = {reversed.data(), put ? &named : nullptr, static_cast<UINT>(reversed.size()),
                       put ? 1u : 0u};
  UINT bad_argument = 0;
  const HRESULT hr = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params,
                                    put ? nullptr : result, exception, &bad_argument);
  for (VARIANT& v : args) VariantClear(&v);
  return hr;
}

// The same by name; DISP_E_UNKNOWNNAME when `object` lacks it.
inline HRESULT CallByName(IDispatch* object, const wchar_t* name, WORD flags,
                          std::vector<VARIANT> args, VARIANT* result) {
  const DISPID id = IdOf(object, name);
  if (id == DISPID_UNKNOWN) {
    for (VARIANT& v : args) VariantClear(&v);
    return DISP_E_UNKNOWNNAME;
  }
  EXCEPINFO exception = {};
  const HRESULT hr = Invoke(object, id, flags, std::move(args), result, &exception);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  return hr;
}

// A new Scripting.Dictionary; nullptr when the system has none.
inline IDispatch* NewDictionary() {
  CLSID clsid;
  IDispatch* dictionary = nullptr;
  if (SUCCEEDED(CLSIDFromProgID(L"Scripting.Dictionary", &clsid))) {
    CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                     reinterpret_cast<void**>(&dictionary));
  }
  return dictionary;
}

// A Scripting.Dictionary of code lines keyed 1..n; nullptr as above.
inline IDispatch* NewLines(const std::vector<const wchar_t*>& lines) {
  IDispatch* dictionary = NewDictionary();
  LONG key = 1;
  for (const wchar_t* line : lines) {
    if (dictionary)
      CallByName(dictionary, L"Add", DISPATCH_METHOD, {Long(key++), Text(line)}, nullptr);
  }
  return dictionary;
}

// The caller's object with IDispatch, as a VB class with public fields:
// named values, read and written by name (names compare case-insensitively)
// and optionally a 1-based Item(i) over `items` (a collection the VB way).
// Counts the Invoke calls it answers and records property puts.
class Bag final : public IDispatch {
 public:
  static Bag* New() { return new Bag(); }
  Bag(const Bag&) = delete;
  Bag& operator=(const Bag&) = delete;

  // Sets property `name` (takes over `value`).
  Bag* Set(const wchar_t* name, VARIANT value) {
    VARIANT& slot = values_[Id(name)];
    VariantClear(&slot);
    slot = value;
    return this;
  }
  // The value of `name`; nullptr when the bag has no such property.
  const VARIANT* Find(const wchar_t* name) const {
    const DISPID id = Known(name);
    return id == DISPID_UNKNOWN ? nullptr : &values_.at(id);
  }
  // Item(i) answers items[i - 1]; Count answers their number (takes over
  // the values).
  Bag* WithItems(std::vector<VARIANT> items) {
    items_ = std::move(items);
    Set(L"Count", Long(static_cast<LONG>(items_.size())));
    Id(L"Item");
    return this;
  }
  // Puts into `name` fail, as with a read-only property.
  Bag* RefusingPut(const wchar_t* name) {
    refused_.push_back(Id(name));
    return this;
  }
  // A method Add(key, item), recorded as "key=item".
  Bag* WithAdd() {
    Id(L"Add");
    return this;
  }
  const std::vector<std::wstring>& added() const { return added_; }
  // Reading `name` raises VB error `number` with `text`.
  Bag* Raising(const wchar_t* name, int32_t number, const wchar_t* text) {
    raising_[Id(name)] = {number, text};
    return this;
  }

  int invokes() const { return invokes_; }
  // The text last put into `name`, "" when none.
  std::wstring PutText(const wchar_t* name) const {
    auto it = puts_.find(Known(name));
    return it == puts_.end() ? std::wstring() : it->second;
  }
  int put_count() const { return put_count_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(riid, IID_IUnknown) && !IsEqualIID(riid, IID_IDispatch)) {
      return E_NOINTERFACE;
    }
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override {
    *n = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override {
    HRESULT hr = S_OK;
    for (UINT i = 0; i < count; ++i) {
      ids[i] = Known(names[i]);
      if (ids[i] == DISPID_UNKNOWN) hr = DISP_E_UNKNOWNNAME;
    }
    return hr;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* info, UINT*) override {
    ++invokes_;
    if (id < 1 || static_cast<size_t>(id) > names_.size()) return DISP_E_MEMBERNOTFOUND;
    const std::wstring& name = names_[static_cast<size_t>(id - 1)];
    if (name == L"Add") {
      if (params->cArgs != 2) return DISP_E_BADPARAMCOUNT;
      added_.push_back(TextOf(params->rgvarg[1]) + L"=" + TextOf(params->rgvarg[0]));
      return S_OK;
    }
    if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
      for (DISPID refused : refused_) {
        if (refused == id) return DISP_E_MEMBERNOTFOUND;
      }
      if (params->cArgs < 1) return DISP_E_BADPARAMCOUNT;
      ++put_count_;
      puts_[id] = TextOf(params->rgvarg[0]);
      return VariantCopyInd(&values_[id], &params->rgvarg[0]);
    }
    if (auto raise = raising_.find(id); raise != raising_.end()) {
      if (info != nullptr) {
        *info = {};
        info->scode = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, raise->second.first);
        info->bstrDescription = SysAllocString(raise->second.second);
      }
      return DISP_E_EXCEPTION;
    }
    if (name == L"Item") {
      if (params->cArgs != 1) return DISP_E_BADPARAMCOUNT;
      const LONG i = V_I4(&params->rgvarg[0]);
      if (i < 1 || static_cast<size_t>(i) > items_.size()) return DISP_E_BADINDEX;
      return VariantCopy(result, &items_[static_cast<size_t>(i - 1)]);
    }
    if (params->cArgs != 0) return DISP_E_BADPARAMCOUNT;
    return result ? VariantCopy(result, &values_[id]) : S_OK;
  }

 private:
  Bag() = default;
  ~Bag() {
    for (auto& [id, v] : values_) VariantClear(&v);
    for (VARIANT& item : items_) VariantClear(&item);
  }
  // Objects are not asked for their default value: that would be a call
  // of their own.
  static std::wstring TextOf(VARIANT& value) {
    const VARTYPE type = V_VT(&value) & VT_TYPEMASK;
    if (type == VT_DISPATCH || type == VT_UNKNOWN) return std::wstring();
    VARIANT text;
    VariantInit(&text);
    std::wstring result;
    if (SUCCEEDED(VariantChangeType(&text, &value, 0, VT_BSTR))) {
      result = Take(V_BSTR(&text));
    } else {
      VariantClear(&text);
    }
    return result;
  }
  DISPID Known(const wchar_t* name) const {
    for (size_t i = 0; i < names_.size(); ++i) {
      if (_wcsicmp(names_[i].c_str(), name) == 0) return static_cast<DISPID>(i + 1);
    }
    return DISPID_UNKNOWN;
  }
  DISPID Id(const wchar_t* name) {
    const DISPID known = Known(name);
    if (known != DISPID_UNKNOWN) return known;
    names_.push_back(name);
    const DISPID id = static_cast<DISPID>(names_.size());
    VariantInit(&values_[id]);
    return id;
  }

  ULONG references_ = 1;
  std::vector<std::wstring> names_;
  std::map<DISPID, VARIANT> values_;
  std::vector<VARIANT> items_;
  std::vector<DISPID> refused_;
  std::vector<std::wstring> added_;
  std::map<DISPID, std::pair<int32_t, const wchar_t*>> raising_;
  std::map<DISPID, std::wstring> puts_;
  int invokes_ = 0;
  int put_count_ = 0;
};

// An object of the server, made by its class factory; nullptr on failure.
template <class I, class GetClassObject>
I* CreateFrom(GetClassObject get_class_object, REFCLSID clsid, REFIID iid) {
  IClassFactory* factory = nullptr;
  if (FAILED(get_class_object(clsid, IID_IClassFactory, reinterpret_cast<void**>(&factory)))) {
    return nullptr;
  }
  I* object = nullptr;
  factory->CreateInstance(nullptr, iid, reinterpret_cast<void**>(&object));
  factory->Release();
  return object;
}

}  // namespace folioscope::com_testing

#endif  // FOLIOSCOPE_COM_VARIANT_TEST_SUPPORT_H_
