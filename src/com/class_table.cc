#include "com/class_table.h"

#include <new>

#include "com/com_support.h"
#include "com/reference_counted.h"

namespace folioscope::com {

namespace {

std::vector<const ComClassRegistration*>& Table() {
  // Built on first use, so registrations in other files' static
  // initialisers never meet an unconstructed vector.
  static std::vector<const ComClassRegistration*> table;
  return table;
}

// Creates the objects of one registered class. Every creation first makes
// sure the process has its platform, before the object touches the
// component.
class ClassFactory final : public ReferenceCounted<IClassFactory> {
 public:
  explicit ClassFactory(const ComClassRegistration& registration) : registration_(registration) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    if (object == nullptr) return E_POINTER;
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IClassFactory)) {
      *object = static_cast<IClassFactory*>(this);
      AddRef();
      return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
  }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    IUnknown* created = nullptr;
    try {
      EnsurePlatform();
      created = registration_.Create();
    } catch (...) {
      created = nullptr;
    }
    if (created == nullptr) return E_OUTOFMEMORY;
    const HRESULT hr = created->QueryInterface(riid, object);
    created->Release();
    return hr;
  }

  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    if (lock) {
      LockModule();
    } else {
      UnlockModule();
    }
    return S_OK;
  }

 private:
  const ComClassRegistration& registration_;
};

}  // namespace

ComClassRegistration::ComClassRegistration(const CLSID& clsid, const char* class_name,
                                           IUnknown* (*create)())
    : clsid_(clsid), class_name_(class_name), create_(create) {
  Table().push_back(this);
}

std::string ComClassRegistration::ProgId() const {
  return std::string("VBFolioscope.") + class_name_;
}

const std::vector<const ComClassRegistration*>& RegisteredComClasses() { return Table(); }

const ComClassRegistration* FindComClass(REFCLSID clsid) {
  for (const ComClassRegistration* r : Table()) {
    if (IsEqualCLSID(r->clsid(), clsid)) return r;
  }
  return nullptr;
}

IClassFactory* NewClassFactory(const ComClassRegistration& registration) {
  return new (std::nothrow) ClassFactory(registration);
}

}  // namespace folioscope::com
