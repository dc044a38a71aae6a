// DispatchObject<I, Further...>: the base of every COM class of the server.
// It gives a dual interface I (declared in the type library) its IUnknown
// (counted by ReferenceCounted, shared with the `Further` interfaces), its
// IDispatch (through the ITypeInfo of I in the DLL's embedded type library,
// so late-bound callers reach exactly the vtable methods early-bound callers
// call), ISupportErrorInfo for I, and IProvideClassInfo2 with the coclass
// named like the class (so TypeName() gives "CReportSets", and event hosts
// find the default source interface). The derived class implements the
// methods of I, each body wrapped in Guard().
#ifndef FOLIOSCOPE_COM_DISPATCH_OBJECT_H_
#define FOLIOSCOPE_COM_DISPATCH_OBJECT_H_

#include <windows.h>

#include <ocidl.h>

#include "com/com_support.h"
#include "com/reference_counted.h"
#include "com/variant_references.h"

namespace folioscope::com {

// A private interface id through which the server recognises its own
// objects when a caller hands one back (for example a CFSCommunicator given
// to CFSDataLogger). Never registered; QueryInterface for it answers the
// object's ComObjectRoot.
// {6B1F3C52-3E0A-4B8E-9C0D-51A7E2F94C01}
inline constexpr IID kIidComObjectRoot = {
    0x6b1f3c52, 0x3e0a, 0x4b8e, {0x9c, 0x0d, 0x51, 0xa7, 0xe2, 0xf9, 0x4c, 0x01}};

class ComObjectRoot {
 public:
  virtual ~ComObjectRoot() = default;
};

// The server's own object behind `unknown` as a T, or nullptr when `unknown`
// is null, foreign, or another class. The pointer is borrowed: it stays
// valid as long as the caller's reference to `unknown`.
template <class T>
T* ImplementationOf(IUnknown* unknown) {
  if (unknown == nullptr) return nullptr;
  void* root = nullptr;
  if (FAILED(unknown->QueryInterface(kIidComObjectRoot, &root)) || root == nullptr) return nullptr;
  T* object = dynamic_cast<T*>(static_cast<ComObjectRoot*>(root));
  unknown->Release();  // QueryInterface's reference; the caller's keeps it alive.
  return object;
}

template <class I, class... Further>
class DispatchObject
    : public ReferenceCounted<I, ISupportErrorInfo, IProvideClassInfo2, Further...>,
      public ComObjectRoot {
 public:
  // `iid` is the IID of I (a widl IID_ constant, which outlives the object);
  // `class_name` names the class: in error sources ("VBFolioscope.<name>")
  // and as the coclass that IProvideClassInfo hands out. Objects of classes
  // without a coclass of that name do not offer IProvideClassInfo.
  DispatchObject(const IID& iid, const char* class_name) : iid_(iid), class_name_(class_name) {}

  // --- IUnknown ---
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch) ||
        IsEqualIID(riid, iid_)) {
      *object = static_cast<I*>(this);
    } else if (IsEqualIID(riid, IID_ISupportErrorInfo)) {
      *object = static_cast<ISupportErrorInfo*>(this);
    } else if ((IsEqualIID(riid, IID_IProvideClassInfo) ||
                IsEqualIID(riid, IID_IProvideClassInfo2)) &&
               HasCoclass()) {
      *object = static_cast<IProvideClassInfo2*>(this);
    } else if (IsEqualIID(riid, kIidComObjectRoot)) {
      *object = static_cast<ComObjectRoot*>(this);
    } else {
      *object = QueryFurtherInterface(riid);
    }
    if (*object == nullptr) return E_NOINTERFACE;
    this->AddRef();
    return S_OK;
  }

  // --- IDispatch ---
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    return TypeInfoOf(iid_, info);
  }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override {
    if (!IsEqualIID(riid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
    ITypeInfo* info = nullptr;
    HRESULT hr = TypeInfoOf(iid_, &info);
    if (FAILED(hr)) return hr;
    hr = DispGetIDsOfNames(info, names, count, ids);
    info->Release();
    return hr;
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* exception,
                                   UINT* argument_error) override {
    if (!IsEqualIID(riid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
    ITypeInfo* info = nullptr;
    HRESULT hr = TypeInfoOf(iid_, &info);
    if (FAILED(hr)) return hr;
    SetErrorInfo(0, nullptr);
    // Script variables reach typed by-reference parameters through
    // temporaries (see variant_references.h).
    hr = InvokeWithVariantReferences(
        info, id, flags, params, argument_error, [&](DISPPARAMS* adapted) {
          return info->Invoke(static_cast<I*>(this), id, flags, adapted, result, exception,
                              argument_error);
        });
    info->Release();
    if (hr == DISP_E_EXCEPTION) FillException(exception);
    return hr;
  }

  // --- ISupportErrorInfo ---
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID riid) override {
    return IsEqualIID(riid, iid_) ? S_OK : S_FALSE;
  }

  // --- IProvideClassInfo2 ---
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override {
    return CoclassInfoOf(class_name_, info);
  }

  HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* guid) override {
    if (guid == nullptr) return E_POINTER;
    *guid = GUID_NULL;
    if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
    return DefaultSourceOf(class_name_, guid);
  }

 protected:
  ~DispatchObject() override = default;

  // Further interfaces of the derived class (connection points, class
  // information): the pointer for `riid`, or nullptr. QueryInterface adds
  // the reference.
  virtual void* QueryFurtherInterface(REFIID) { return nullptr; }

  const char* class_name() const { return class_name_; }

  // Guard() with this class's name.
  template <class F>
  HRESULT Guarded(F&& body) {
    return Guard(class_name_, static_cast<F&&>(body));
  }

 private:
  bool HasCoclass() {
    if (has_coclass_ < 0) {
      ITypeInfo* info = nullptr;
      has_coclass_ = SUCCEEDED(CoclassInfoOf(class_name_, &info)) ? 1 : 0;
      if (info != nullptr) info->Release();
    }
    return has_coclass_ == 1;
  }

  // The type-info dispatcher leaves the description to the caller's error
  // object on some systems; copy it into EXCEPINFO so late-bound callers see
  // the component's text.
  static void FillException(EXCEPINFO* exception) {
    if (exception == nullptr || exception->bstrDescription != nullptr) return;
    IErrorInfo* error = nullptr;
    if (GetErrorInfo(0, &error) != S_OK || error == nullptr) return;
    if (exception->bstrSource == nullptr) error->GetSource(&exception->bstrSource);
    error->GetDescription(&exception->bstrDescription);
    error->Release();
  }

  const IID& iid_;
  const char* class_name_;
  int has_coclass_ = -1;  // unknown until first asked
};

}  // namespace folioscope::com

#endif  // FOLIOSCOPE_COM_DISPATCH_OBJECT_H_
