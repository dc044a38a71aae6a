// By-reference arguments for script callers.
//
// The members of our interfaces take VB's by-reference arguments as typed
// pointers ([in, out] LONG*, BSTR*, VARIANT_BOOL*, IDispatch**). Script
// engines (VBScript, JScript) and VB6 code that passes a Variant variable
// hand such an argument over as a reference to a VARIANT (VT_BYREF |
// VT_VARIANT). The type-info dispatcher does not convert that into a typed
// reference and answers DISP_E_TYPEMISMATCH, so a script could only pass
// literals or parenthesised copies.
//
// InvokeWithVariantReferences() closes that gap before the dispatcher sees
// the call: each such argument whose parameter is a typed by-reference one is
// replaced by a reference to a temporary of the parameter's type, converted
// from the variable's value (a value that does not convert is a type
// mismatch, reported for that argument). After the call, a temporary whose
// value the member changed is written back into the caller's variable, so
// the script sees the write as a VB caller would; unchanged variables keep
// their value and subtype. Every other argument passes through untouched.
#ifndef FOLIOSCOPE_COM_VARIANT_REFERENCES_H_
#define FOLIOSCOPE_COM_VARIANT_REFERENCES_H_

#include <oaidl.h>
#include <windows.h>

#include <functional>

namespace folioscope::com {

// Calls `invoke` (the dispatcher's Invoke of member `id`, described by
// `info`) with the arguments adapted as above and writes the changed
// temporaries back. A variable that does not convert answers
// DISP_E_TYPEMISMATCH with `*argument_error` set to its rgvarg index, and
// `invoke` is not called.
HRESULT InvokeWithVariantReferences(ITypeInfo* info, DISPID id, WORD flags, DISPPARAMS* params,
                                    UINT* argument_error,
                                    const std::function<HRESULT(DISPPARAMS*)>& invoke);

}  // namespace folioscope::com

#endif  // FOLIOSCOPE_COM_VARIANT_REFERENCES_H_
