// ReferenceCounted<Interfaces...>: IUnknown's AddRef and Release for a COM
// object that implements `Interfaces` (each derived from IUnknown). One count
// serves all of them, since one member function overrides AddRef and Release
// in every base.
//
// Objects start with one reference, owned by whoever called `new`, and
// delete themselves when the last one is released; every live object counts
// for DllCanUnloadNow. The derived class writes QueryInterface, adding the
// reference it hands out with AddRef(). Apartment-threaded: one object is
// used by one thread, but the count is atomic anyway.
#ifndef FOLIOSCOPE_COM_REFERENCE_COUNTED_H_
#define FOLIOSCOPE_COM_REFERENCE_COUNTED_H_

#include <windows.h>

#include <atomic>

#include "com/com_support.h"

namespace folioscope::com {

template <class... Interfaces>
class ReferenceCounted : public Interfaces... {
 public:
  ReferenceCounted(const ReferenceCounted&) = delete;
  ReferenceCounted& operator=(const ReferenceCounted&) = delete;

  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }

  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  ReferenceCounted() { ObjectCreated(); }
  virtual ~ReferenceCounted() { ObjectDestroyed(); }

 private:
  std::atomic<ULONG> references_{1};
};

}  // namespace folioscope::com

#endif  // FOLIOSCOPE_COM_REFERENCE_COUNTED_H_
