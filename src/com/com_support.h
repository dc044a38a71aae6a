// What every class of the VBFolioscope COM server shares: string and
// Boolean conversion at the COM boundary, the fault mapping from the
// component's run-time errors to HRESULT + IErrorInfo, the module's object
// and lock counts (DllCanUnloadNow), its instance handle, and the one-time
// installation of the Windows platform.
//
// Strings inside the component are Windows-1252 bytes; BSTRs are UTF-16.
// The conversion always uses code page 1252 (not the thread's ANSI page), so
// the bytes the component sees are the same as on the Linux host.
#ifndef FOLIOSCOPE_COM_COM_SUPPORT_H_
#define FOLIOSCOPE_COM_COM_SUPPORT_H_

#include <windows.h>

#include <cstdint>
#include <exception>
#include <new>
#include <string>
#include <type_traits>

#include "infra/vb_runtime.h"

namespace folioscope::com {

// --- Strings, Booleans, variants -------------------------------------------

// A BSTR as Windows-1252 bytes; a null BSTR is the empty string. Characters
// that code page 1252 cannot hold become '?'.
std::string FromBstr(BSTR text);
// A new BSTR holding `text` (Windows-1252); the caller owns it. Raises
// error 7 when no memory is left.
BSTR ToBstr(const std::string& text);

inline VARIANT_BOOL ToVariantBool(bool b) { return b ? VARIANT_TRUE : VARIANT_FALSE; }

// An Item(Index As Variant) argument as VB's collections read it, through
// VT_BYREF and nested variants: a string stays a string (the collection then
// decides whether it reads as a number); a numeric type gives `number`.
// Empty, Boolean and Date values raise error 5 (VB would look them up as
// texts no collection holds); anything else raises error 13.
struct IndexArgument {
  bool is_string = false;
  std::string text;
  double number = 0;
};
IndexArgument ReadIndexArgument(const VARIANT& index);

// --- Faults ---------------------------------------------------------------

// The HRESULT that carries VB run-time error `number` to a COM caller:
// MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, number) for run-time
// numbers, the number itself when it already is an HRESULT (the component's
// vbObjectError + n errors).
HRESULT HresultOfError(int32_t number);

// Sets the thread's IErrorInfo (source "VBFolioscope.<class_name>", the
// description as given) and returns HresultOfError(error.number()).
HRESULT ReturnError(const char* class_name, const vb::RuntimeError& error);

// Runs `body`, which returns void or an HRESULT, and returns S_OK (or the
// body's HRESULT). Anything that escapes becomes an HRESULT with IErrorInfo
// set: vb::RuntimeError as its number, std::bad_alloc as E_OUTOFMEMORY
// (error 7), any other exception as error 51. Nothing escapes into the
// caller's process.
template <class F>
HRESULT Guard(const char* class_name, F&& body) {
  try {
    if constexpr (std::is_same_v<std::invoke_result_t<F>, HRESULT>) {
      return body();
    } else {
      body();
      return S_OK;
    }
  } catch (const vb::RuntimeError& e) {
    return ReturnError(class_name, e);
  } catch (const std::bad_alloc&) {
    return ReturnError(class_name, vb::RuntimeError(vb::kOutOfMemory));
  } catch (const std::exception& e) {
    return ReturnError(class_name, vb::RuntimeError(51, e.what()));
  } catch (...) {
    return ReturnError(class_name, vb::RuntimeError(51));
  }
}

// A null [out] pointer answers E_POINTER before the body runs.
#define FOLIOSCOPE_COM_CHECK_OUT(p)       \
  do {                                    \
    if ((p) == nullptr) return E_POINTER; \
  } while (0)

// --- The module -------------------------------------------------------------

// The DLL's instance handle (set by DllMain) and the full path of the DLL.
HINSTANCE ModuleInstance();
void SetModuleInstance(HINSTANCE instance);
std::wstring ModulePath();

// Live objects and LockServer locks; DllCanUnloadNow answers S_OK only when
// both are zero.
void ObjectCreated();
void ObjectDestroyed();
void LockModule();
void UnlockModule();
bool ModuleInUse();

// The type library embedded in the DLL (resource 1), loaded once and kept.
// TypeInfoOf hands out a new reference to the type information of `guid`
// (an interface, dispinterface or coclass of the library).
HRESULT TypeInfoOf(REFGUID guid, ITypeInfo** info);

// The coclass named `class_name` (new reference), and the id of its
// [default, source] interface (E_INVALIDARG when it has none).
HRESULT CoclassInfoOf(const char* class_name, ITypeInfo** info);
HRESULT DefaultSourceOf(const char* class_name, GUID* guid);

// Makes sure the process has its Windows platform installed (idempotent);
// every object creation calls it before the object touches the component.
// From then on the DLL stays loaded until the process ends (see the .cc).
void EnsurePlatform();

}  // namespace folioscope::com

#endif  // FOLIOSCOPE_COM_COM_SUPPORT_H_
