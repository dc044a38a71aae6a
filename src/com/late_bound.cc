#include "com/late_bound.h"

#include <dispex.h>

#include <cmath>
#include <vector>

#include "com/com_support.h"
#include "infra/vb_runtime.h"

namespace folioscope::com {

namespace {

constexpr int32_t kWrongArgumentCount = 450;
constexpr int32_t kAutomationError = 440;

std::string RuntimeText(int32_t number) {
  switch (number) {
    case kTypeMismatch:
      return "Typen unvertr\xE4glich";
    case kObjectRequired:
      return "Objekt erforderlich";
    case kNoSuchMember:
      return "Objekt unterst\xFCtzt diese Eigenschaft oder Methode nicht";
    case kWrongArgumentCount:
      return "Falsche Anzahl an Argumenten oder ung\xFCltige Zuweisung zu einer Eigenschaft";
    case kAutomationError:
      return "Automatisierungsfehler";
    default:
      return vb::ErrorDescription(number);
  }
}

// The VB error number a caller's fault carries: the low word of a
// FACILITY_CONTROL code (VB's and VBScript's own errors), else wCode, else
// the HRESULT itself.
int32_t NumberOfFault(const EXCEPINFO& info) {
  const HRESULT code = info.scode;
  if (code != 0 && HRESULT_FACILITY(code) == FACILITY_CONTROL) return HRESULT_CODE(code);
  if (info.wCode != 0) return info.wCode;
  return code != 0 ? static_cast<int32_t>(code) : kAutomationError;
}

// Turns a failed Invoke into the run-time error a VB client would see.
[[noreturn]] void RaiseInvokeFailure(HRESULT hr, EXCEPINFO& info, const std::string& what) {
  if (hr == DISP_E_EXCEPTION) {
    if (info.pfnDeferredFillIn != nullptr) info.pfnDeferredFillIn(&info);
    const int32_t number = NumberOfFault(info);
    std::string text = FromBstr(info.bstrDescription);
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
    if (text.empty()) text = RuntimeText(number) + ": " + what;
    throw vb::RuntimeError(number, text);
  }
  if (hr == DISP_E_MEMBERNOTFOUND || hr == DISP_E_UNKNOWNNAME) RaiseAbout(kNoSuchMember, what);
  if (hr == DISP_E_BADPARAMCOUNT || hr == DISP_E_PARAMNOTOPTIONAL) {
    RaiseAbout(kWrongArgumentCount, what);
  }
  if (hr == DISP_E_TYPEMISMATCH) RaiseAbout(kTypeMismatch, what);
  throw vb::RuntimeError(static_cast<int32_t>(hr), RuntimeText(kAutomationError) + ": " + what);
}

// IID_IDispatchEx, which MinGW's uuid library lacks.
constexpr IID kIidDispatchEx = {
    0xa6ef9860, 0xc720, 0x11d0, {0x93, 0x37, 0x00, 0xa0, 0xc9, 0x0d, 0xca, 0xa9}};

bool IsObjectOrArray(VARTYPE type) {
  return type == VT_DISPATCH || type == VT_UNKNOWN || (type & VT_ARRAY) != 0;
}

bool IsNumber(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL:
      return true;
    default:
      return false;
  }
}

HRESULT Invoke(IDispatch* object, DISPID dispid, WORD flags, DISPPARAMS* params, VARIANT* result,
               EXCEPINFO* info) {
  UINT arg_error = 0;
  return object->Invoke(dispid, IID_NULL, LOCALE_USER_DEFAULT, flags, params, result, info,
                        &arg_error);
}

// Arguments in call order, reversed into the order DISPPARAMS wants.
std::vector<VARIANT> Reversed(const VARIANT* args, int arg_count, const VARIANT* last) {
  std::vector<VARIANT> reversed;
  if (last != nullptr) reversed.push_back(*last);
  for (int i = arg_count - 1; i >= 0; --i) reversed.push_back(args[i]);
  return reversed;
}

}  // namespace

void RaiseAbout(int32_t number, const std::string& what) {
  throw vb::RuntimeError(number, RuntimeText(number) + ": " + what);
}

DISPID FindName(IDispatch* object, const wchar_t* name) {
  DISPID dispid = DISPID_UNKNOWN;
  LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
  const HRESULT hr = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &dispid);
  if (SUCCEEDED(hr)) return dispid;
  if (hr == DISP_E_UNKNOWNNAME) return DISPID_UNKNOWN;
  // Some script engines answer names only through IDispatchEx (Wine's
  // VBScript classes, for one).
  IDispatchEx* ex = nullptr;
  if (FAILED(object->QueryInterface(kIidDispatchEx, reinterpret_cast<void**>(&ex)))) {
    return DISPID_UNKNOWN;
  }
  BSTR wide = SysAllocString(name);
  dispid = DISPID_UNKNOWN;
  if (wide == nullptr || FAILED(ex->GetDispID(wide, fdexNameCaseInsensitive, &dispid))) {
    dispid = DISPID_UNKNOWN;
  }
  SysFreeString(wide);
  ex->Release();
  return dispid;
}

void GetValue(IDispatch* object, DISPID dispid, const std::string& what, VARIANT* result) {
  GetValueWith(object, dispid, nullptr, 0, what, result);
}

void GetValueWith(IDispatch* object, DISPID dispid, const VARIANT* args, int arg_count,
                  const std::string& what, VARIANT* result) {
  std::vector<VARIANT> reversed = Reversed(args, arg_count, nullptr);
  DISPPARAMS params = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  EXCEPINFO info = {};
  VariantClear(result);
  const HRESULT hr =
      Invoke(object, dispid, DISPATCH_PROPERTYGET | DISPATCH_METHOD, &params, result, &info);
  if (FAILED(hr)) RaiseInvokeFailure(hr, info, what);
  if ((V_VT(result) & VT_BYREF) != 0) {
    VARIANT plain;
    VariantInit(&plain);
    if (FAILED(VariantCopyInd(&plain, result))) RaiseAbout(kTypeMismatch, what);
    *result = plain;  // a by-reference variant owns nothing
  }
}

bool GetOptional(IDispatch* object, const wchar_t* name, const std::string& what, VARIANT* result) {
  VariantClear(result);
  const DISPID dispid = FindName(object, name);
  if (dispid == DISPID_UNKNOWN) return false;
  GetValue(object, dispid, what, result);
  return true;
}

void GetRequired(IDispatch* object, const wchar_t* name, const std::string& what, VARIANT* result) {
  if (!GetOptional(object, name, what, result)) RaiseAbout(kNoSuchMember, what);
}

bool PutValue(IDispatch* object, const wchar_t* name, const VARIANT* args, int arg_count,
              const VARIANT& value) {
  const DISPID dispid = FindName(object, name);
  if (dispid == DISPID_UNKNOWN) return false;
  std::vector<VARIANT> reversed = Reversed(args, arg_count, &value);
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS params = {reversed.data(), &named, static_cast<UINT>(reversed.size()), 1};
  EXCEPINFO info = {};
  const HRESULT hr = Invoke(object, dispid, DISPATCH_PROPERTYPUT, &params, nullptr, &info);
  if (hr == DISP_E_EXCEPTION) {
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
  }
  return SUCCEEDED(hr);
}

bool CallMethod(IDispatch* object, const wchar_t* name, const VARIANT* args, int arg_count) {
  const DISPID dispid = FindName(object, name);
  if (dispid == DISPID_UNKNOWN) return false;
  std::vector<VARIANT> reversed = Reversed(args, arg_count, nullptr);
  DISPPARAMS params = {reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  EXCEPINFO info = {};
  Variant ignored;
  const HRESULT hr = Invoke(object, dispid, DISPATCH_METHOD, &params, ignored.get(), &info);
  if (hr == DISP_E_EXCEPTION) {
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
  }
  return SUCCEEDED(hr);
}

std::string ToText(const VARIANT& value, const std::string& what) {
  const VARTYPE type = V_VT(&value);
  if (type == VT_BSTR) return FromBstr(V_BSTR(&value));
  if (type == VT_EMPTY || type == VT_NULL) return {};
  if (IsObjectOrArray(type)) RaiseAbout(kTypeMismatch, what);
  Variant text;
  if (FAILED(VariantChangeType(text.get(), const_cast<VARIANT*>(&value), 0, VT_BSTR)))
    RaiseAbout(kTypeMismatch, what);
  return FromBstr(V_BSTR(text.get()));
}

int32_t ToLong(const VARIANT& value, const std::string& what) {
  const VARTYPE type = V_VT(&value);
  if (type == VT_I4) return V_I4(&value);
  if (type == VT_I2) return V_I2(&value);
  if (type == VT_EMPTY) return 0;
  if (IsObjectOrArray(type)) RaiseAbout(kTypeMismatch, what);
  Variant number;
  const HRESULT hr = VariantChangeType(number.get(), const_cast<VARIANT*>(&value), 0, VT_I4);
  if (hr == DISP_E_OVERFLOW)
    throw vb::RuntimeError(vb::kOverflow,
                           "\xDC"
                           "berlauf: " +
                               what);
  if (FAILED(hr)) RaiseAbout(kTypeMismatch, what);
  return V_I4(number.get());
}

bool ToBool(const VARIANT& value, const std::string& what) {
  const VARTYPE type = V_VT(&value);
  if (type == VT_BOOL) return V_BOOL(&value) != VARIANT_FALSE;
  if (type == VT_EMPTY) return false;
  if (IsObjectOrArray(type)) RaiseAbout(kTypeMismatch, what);
  Variant flag;
  if (FAILED(VariantChangeType(flag.get(), const_cast<VARIANT*>(&value), 0, VT_BOOL)))
    RaiseAbout(kTypeMismatch, what);
  return V_BOOL(flag.get()) != VARIANT_FALSE;
}

Ref<IDispatch> ToObject(const VARIANT& value, const std::string& what) {
  const VARTYPE type = V_VT(&value);
  if (type == VT_DISPATCH || type == VT_UNKNOWN) {
    IUnknown* unknown = type == VT_DISPATCH ? V_DISPATCH(&value) : V_UNKNOWN(&value);
    if (unknown == nullptr) RaiseAbout(kObjectRequired, what);
    IDispatch* object = nullptr;
    if (FAILED(unknown->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&object)))) {
      RaiseAbout(kTypeMismatch, what);
    }
    return Ref<IDispatch>(object);
  }
  if (type == VT_EMPTY || type == VT_NULL) RaiseAbout(kObjectRequired, what);
  RaiseAbout(kTypeMismatch, what);
}

vb::DictKey ToKey(const VARIANT& value, const std::string& what) {
  const VARTYPE type = V_VT(&value);
  if (type == VT_I4) return vb::DictKey::Long(V_I4(&value));
  if (type == VT_I2) return vb::DictKey::Long(V_I2(&value));
  if (IsNumber(type)) {
    Variant number;
    if (SUCCEEDED(VariantChangeType(number.get(), const_cast<VARIANT*>(&value), 0, VT_R8))) {
      const double d = V_R8(number.get());
      if (d == std::floor(d) && d >= -2147483648.0 && d <= 2147483647.0) {
        return vb::DictKey::Long(static_cast<int32_t>(d));
      }
    }
  }
  return vb::DictKey::String(ToText(value, what));
}

void FromKey(const vb::DictKey& key, VARIANT* out) {
  VariantInit(out);
  if (key.is_long()) {
    V_VT(out) = VT_I4;
    V_I4(out) = key.long_value();
  } else {
    V_BSTR(out) = ToBstr(key.string_value());
    V_VT(out) = VT_BSTR;
  }
}

}  // namespace folioscope::com
