// The COM form of the progress channel.
//
// ComFSCommunicator (class CFSCommunicator) wraps one C++ CFSCommunicator
// and listens to it: every event the component raises on that channel goes
// synchronously to the connection-point sinks of __CFSCommunicator
// (IDispatch::Invoke with dispids 1, 2, 3 and by-reference arguments), in
// the order the sinks were advised. Sinks may be connected as
// __CFSCommunicator or as plain IDispatch. A sink's failure is ignored: the
// sender goes on.
//
// ComFSDataLogger (class CFSDataLogger) keeps the communicator assigned to
// FSCommunicator and registers its C++ channel as the calling thread's
// progress channel. Assigning Nothing clears the channel; assigning an
// object that is not one of our communicators raises error 13.
#ifndef FOLIOSCOPE_COM_COM_COMMUNICATOR_H_
#define FOLIOSCOPE_COM_COM_COMMUNICATOR_H_

#include <windows.h>

#include <ocidl.h>

#include <memory>
#include <utility>
#include <vector>

#include "VBFolioscope.h"
#include "com/dispatch_object.h"
#include "infra/fs_communicator.h"

namespace folioscope::com {

class ComFSCommunicator final : public DispatchObject<_CFSCommunicator, IConnectionPointContainer>,
                                private CFSCommunicatorEvents {
 public:
  ComFSCommunicator();

  // The wrapped channel (what CFSDataLogger registers).
  const std::shared_ptr<CFSCommunicator>& channel() const { return channel_; }

  // _CFSCommunicator
  HRESULT STDMETHODCALLTYPE AddLog(BSTR* Desc, LONG* IconIndex) override;

  // IConnectionPointContainer
  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID riid, IConnectionPoint** point) override;

  // The connection point of __CFSCommunicator; lives inside its container
  // and shares its reference count.
  class EventPoint final : public IConnectionPoint {
   public:
    explicit EventPoint(ComFSCommunicator* owner) : owner_(owner) {}
    ~EventPoint();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return owner_->AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return owner_->Release(); }

    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override;
    HRESULT STDMETHODCALLTYPE
    GetConnectionPointContainer(IConnectionPointContainer** container) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

    // Invokes `dispid` on every sink with `args` (reversed, as DISPPARAMS
    // wants them).
    void Fire(DISPID dispid, VARIANTARG* args, UINT count);

   private:
    ComFSCommunicator* owner_;
    std::vector<std::pair<DWORD, IDispatch*>> sinks_;
    DWORD next_cookie_ = 1;
  };

 private:
  ~ComFSCommunicator() override;
  void* QueryFurtherInterface(REFIID riid) override;

  // CFSCommunicatorEvents: what the component raises on the channel.
  void Message(std::string& Desc, int32_t& IconIndex) override;
  void OnReportStart(int32_t& Count) override;
  void OnReportWorks(int32_t& CurrentValue, std::string& Description, bool& StdPraefix) override;

  std::shared_ptr<CFSCommunicator> channel_;
  EventPoint point_;
};

class ComFSDataLogger final : public DispatchObject<_CFSDataLogger> {
 public:
  ComFSDataLogger();

  HRESULT STDMETHODCALLTYPE putref_FSCommunicator(_CFSCommunicator* value) override;

 private:
  ~ComFSDataLogger() override;

  CFSDataLogger logger_;
  _CFSCommunicator* communicator_ = nullptr;  // one reference held
};

}  // namespace folioscope::com

#endif  // FOLIOSCOPE_COM_COM_COMMUNICATOR_H_
