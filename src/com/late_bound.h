// Late-bound calls on a caller's object (IDispatch by name), and the value
// conversions the source-model bridge applies to what comes back.
//
// Every failure is raised as vb::RuntimeError, the way a VB client would see
// it: 424 "Objekt erforderlich" (Nothing where an object is needed), 438
// "Objekt unterstützt diese Eigenschaft oder Methode nicht" (no such name),
// 13 "Typen unverträglich" (a value that does not convert). `what` names the
// property in the error text. A fault raised inside the caller's property
// reaches our caller with the caller's number and text.
#ifndef FOLIOSCOPE_COM_LATE_BOUND_H_
#define FOLIOSCOPE_COM_LATE_BOUND_H_

#include <windows.h>

#include <cstdint>
#include <string>
#include <utility>

#include "infra/dictionary.h"

namespace folioscope::com {

inline constexpr int32_t kTypeMismatch = 13;
inline constexpr int32_t kObjectRequired = 424;
inline constexpr int32_t kNoSuchMember = 438;

// The runtime text of 13, 424 or 438 followed by ": " and `what`.
[[noreturn]] void RaiseAbout(int32_t number, const std::string& what);

// An owned reference to a COM interface (Release on destruction).
template <class T>
class Ref {
 public:
  Ref() = default;
  // Takes over a reference the caller already owns.
  explicit Ref(T* owned) : p_(owned) {}
  Ref(const Ref& o) : p_(o.p_) {
    if (p_) p_->AddRef();
  }
  Ref(Ref&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
  Ref& operator=(Ref o) noexcept {
    std::swap(p_, o.p_);
    return *this;
  }
  ~Ref() {
    if (p_) p_->Release();
  }
  // Adds a reference to a borrowed pointer.
  static Ref Borrow(T* p) {
    if (p) p->AddRef();
    return Ref(p);
  }
  T* get() const { return p_; }
  T* operator->() const { return p_; }
  explicit operator bool() const { return p_ != nullptr; }
  T* release() { return std::exchange(p_, nullptr); }

 private:
  T* p_ = nullptr;
};

// A VARIANT that clears itself.
class Variant {
 public:
  Variant() { VariantInit(&v_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { VariantClear(&v_); }
  VARIANT* get() { return &v_; }
  const VARIANT& operator*() const { return v_; }
  VARTYPE type() const { return V_VT(&v_); }

 private:
  VARIANT v_;
};

// The dispatch id of `name` on `object`, or DISPID_UNKNOWN when the object
// does not know the name.
DISPID FindName(IDispatch* object, const wchar_t* name);

// Property get (or method call without arguments) of `dispid` into `result`
// (VT_BYREF is resolved). Raises the caller's fault; `what` names the
// property in errors.
void GetValue(IDispatch* object, DISPID dispid, const std::string& what, VARIANT* result);
// The same with arguments, in call order (Item(i) of a collection).
void GetValueWith(IDispatch* object, DISPID dispid, const VARIANT* args, int arg_count,
                  const std::string& what, VARIANT* result);

// FindName + GetValue. Returns false, leaving `result` empty, when the object
// has no such name.
bool GetOptional(IDispatch* object, const wchar_t* name, const std::string& what, VARIANT* result);
// The same, raising 438 when the name is missing.
void GetRequired(IDispatch* object, const wchar_t* name, const std::string& what, VARIANT* result);

// Property put of `value` (arguments `args` before it, in call order) on
// `name`. Returns false when the object refuses it; never raises.
bool PutValue(IDispatch* object, const wchar_t* name, const VARIANT* args, int arg_count,
              const VARIANT& value);
// Method call `name(args...)`, result ignored. Returns false on failure;
// never raises.
bool CallMethod(IDispatch* object, const wchar_t* name, const VARIANT* args, int arg_count);

// --- Conversions (raise 13 / 424 with `what`) ---------------------------

// Empty and Null read as "", numbers and dates as VB's CStr gives them;
// objects and arrays raise 13.
std::string ToText(const VARIANT& value, const std::string& what);
// Empty reads as 0; out-of-range numbers raise 6.
int32_t ToLong(const VARIANT& value, const std::string& what);
// Empty reads as false; VB's CBool otherwise.
bool ToBool(const VARIANT& value, const std::string& what);
// The object of `value`: Nothing and Empty raise 424, non-objects 13.
Ref<IDispatch> ToObject(const VARIANT& value, const std::string& what);

// A dictionary key the way the component types them: whole numbers (of any
// numeric type) are Long keys, everything else is the key's text.
vb::DictKey ToKey(const VARIANT& value, const std::string& what);
// The VARIANT form of a key (VT_I4 or VT_BSTR); the caller clears it.
void FromKey(const vb::DictKey& key, VARIANT* out);

}  // namespace folioscope::com

#endif  // FOLIOSCOPE_COM_LATE_BOUND_H_
