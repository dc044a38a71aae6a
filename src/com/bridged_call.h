// What the report, tag-reader and formatter classes share when they hand a
// caller's source-model object to the component: the object is read through
// the model bridge (com_model.h) and the component's changes are written back
// afterwards, both inside the component's own fault trap. A caller object
// that cannot be read (Nothing, a missing property, a wrong type) is thus one
// more fault of the procedure that was called: it goes to the error reporter
// under the class and procedure name, and the method returns its neutral
// result, exactly as a fault inside the component would.
//
// Also here: object creation for the class table and the small conversions of property and argument
// values that the classes' interface methods repeat.
#ifndef FOLIOSCOPE_COM_BRIDGED_CALL_H_
#define FOLIOSCOPE_COM_BRIDGED_CALL_H_

#include <oaidl.h>
#include <windows.h>

#include <memory>
#include <string>

#include "com/com_model.h"
#include "com/com_support.h"
#include "infra/error_handler.h"

namespace folioscope::com {

// Reads `object` into a Caller (CallerProject, CallerModule, CallerMember).
// Returns null after reporting the fault under `class_name` / `procedure`.
template <class Caller>
std::unique_ptr<Caller> ReadCaller(IDispatch* object, const char* class_name,
                                   const char* procedure) {
  std::unique_ptr<Caller> caller;
  Trap(class_name, procedure, [&] { caller = Caller::Read(object); });
  return caller;
}

// Writes the component's changes back into the caller's objects; a fault is
// reported like one of the procedure itself. A null `caller` is skipped.
template <class Caller>
void WriteBackCaller(Caller* caller, const char* class_name, const char* procedure) {
  if (caller == nullptr) return;
  Trap(class_name, procedure, [&] { caller->WriteBack(); });
}

// The getter of a string property: a new BSTR of `text` in `*value`.
inline HRESULT GetText(const char* class_name, const std::string& text, BSTR* value) {
  FOLIOSCOPE_COM_CHECK_OUT(value);
  *value = nullptr;
  return Guard(class_name, [&] { *value = ToBstr(text); });
}

// The setter of a string property: `*field` takes the Windows-1252 form.
inline HRESULT PutText(const char* class_name, BSTR value, std::string* field) {
  return Guard(class_name, [&] { *field = FromBstr(value); });
}

// The create function of a class table entry: a new `Com` object as its
// default interface `I`, or null when it cannot be made (no memory).
template <class Com, class I>
IUnknown* NewComObject() {
  try {
    return static_cast<I*>(new Com());
  } catch (...) {
    return nullptr;
  }
}

// A VB Boolean as the component's bool: any non-zero value is true.
inline bool FromVariantBool(VARIANT_BOOL value) { return value != VARIANT_FALSE; }

}  // namespace folioscope::com

#endif  // FOLIOSCOPE_COM_BRIDGED_CALL_H_
