#include "com/variant_references.h"

#include <oleauto.h>

#include <cstring>
#include <functional>
#include <vector>

namespace folioscope::com {
namespace {

// Pointee types a variable can be converted to and from without loss of
// ownership rules: numbers, Booleans, strings and interface pointers.
bool IsConvertiblePointee(VARTYPE type) {
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
    case VT_DATE:
    case VT_BOOL:
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return true;
    default:
      return false;
  }
}

// The pointee type of each positional parameter of method `id` that takes a
// typed reference (VT_EMPTY for every other parameter). False when `id` is
// not a method of `info` or the call is no method call.
bool TypedReferenceParameters(ITypeInfo* info, DISPID id, WORD flags,
                              std::vector<VARTYPE>* pointees) {
  if ((flags & DISPATCH_METHOD) == 0) return false;
  TYPEATTR* attributes = nullptr;
  if (FAILED(info->GetTypeAttr(&attributes))) return false;
  const WORD function_count = attributes->cFuncs;
  info->ReleaseTypeAttr(attributes);
  for (WORD i = 0; i < function_count; ++i) {
    FUNCDESC* function = nullptr;
    if (FAILED(info->GetFuncDesc(i, &function))) continue;
    const bool found = function->memid == id && function->invkind == INVOKE_FUNC;
    if (found) {
      for (SHORT p = 0; p < function->cParams; ++p) {
        const ELEMDESC& element = function->lprgelemdescParam[p];
        VARTYPE pointee = VT_EMPTY;
        const bool by_reference = element.tdesc.vt == VT_PTR && element.tdesc.lptdesc != nullptr;
        const bool result = (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0;
        if (by_reference && !result && IsConvertiblePointee(element.tdesc.lptdesc->vt)) {
          pointee = element.tdesc.lptdesc->vt;
        }
        pointees->push_back(pointee);
      }
    }
    info->ReleaseFuncDesc(function);
    if (found) return true;
  }
  return false;
}

bool SameValue(VARIANT& before, VARIANT& after) {
  if (V_VT(&before) != V_VT(&after)) return false;
  switch (V_VT(&before)) {
    case VT_BSTR: {
      const UINT length = SysStringByteLen(V_BSTR(&before));
      return length == SysStringByteLen(V_BSTR(&after)) &&
             (length == 0 || std::memcmp(V_BSTR(&before), V_BSTR(&after), length) == 0);
    }
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return V_UNKNOWN(&before) == V_UNKNOWN(&after);
    default:
      return VarCmp(&before, &after, LOCALE_INVARIANT, 0) == static_cast<HRESULT>(VARCMP_EQ);
  }
}

// One variable passed as a typed reference: its slot in rgvarg, the
// temporary the member sees, and the temporary's value before the call.
struct Temporary {
  UINT slot = 0;
  VARIANT value;
  VARIANT before;
};

// After a successful call: every temporary whose value the callee changed
// goes back into the caller's Variant variable.
void StoreChangedValues(std::vector<Temporary>& temporaries, DISPPARAMS* params) {
  for (Temporary& t : temporaries) {
    if (SameValue(t.before, t.value)) continue;
    VARIANT* variable = V_VARIANTREF(&params->rgvarg[t.slot]);
    VariantClear(variable);
    *variable = t.value;  // the variable takes over the value
    VariantInit(&t.value);
  }
}

}  // namespace

HRESULT InvokeWithVariantReferences(ITypeInfo* info, DISPID id, WORD flags, DISPPARAMS* params,
                                    UINT* argument_error,
                                    const std::function<HRESULT(DISPPARAMS*)>& invoke) {
  std::vector<VARTYPE> pointees;
  if (params == nullptr || params->cArgs == 0 || params->cNamedArgs != 0 ||
      params->rgvarg == nullptr || !TypedReferenceParameters(info, id, flags, &pointees)) {
    return invoke(params);
  }

  const UINT count = params->cArgs;
  std::vector<VARIANTARG> arguments(params->rgvarg, params->rgvarg + count);  // shallow
  std::vector<Temporary> temporaries;
  temporaries.reserve(count);  // the arguments point into it: no reallocation
  auto release_temporaries = [&] {
    for (Temporary& t : temporaries) {
      VariantClear(&t.value);
      VariantClear(&t.before);
    }
  };

  // rgvarg holds the arguments last to first.
  for (UINT position = 0; position < count && position < pointees.size(); ++position) {
    const UINT slot = count - 1 - position;
    VARIANTARG& argument = arguments[slot];
    const VARTYPE pointee = pointees[position];
    if (pointee == VT_EMPTY || V_VT(&argument) != (VT_BYREF | VT_VARIANT) ||
        V_VARIANTREF(&argument) == nullptr) {
      continue;
    }
    Temporary& t = temporaries.emplace_back();
    t.slot = slot;
    VariantInit(&t.value);
    VariantInit(&t.before);
    if (FAILED(VariantChangeType(&t.value, V_VARIANTREF(&argument), 0, pointee)) ||
        FAILED(VariantCopy(&t.before, &t.value))) {
      release_temporaries();
      if (argument_error != nullptr) *argument_error = slot;
      return DISP_E_TYPEMISMATCH;
    }
    V_VT(&argument) = VT_BYREF | pointee;
    // Every member of the value union starts at the same address.
    V_BYREF(&argument) = static_cast<void*>(&V_I4(&t.value));
  }
  if (temporaries.empty()) {
    return invoke(params);
  }

  DISPPARAMS adapted = *params;
  adapted.rgvarg = arguments.data();
  const HRESULT hr = invoke(&adapted);
  if (SUCCEEDED(hr)) StoreChangedValues(temporaries, params);
  release_temporaries();
  return hr;
}

}  // namespace folioscope::com
