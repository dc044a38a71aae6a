#include "com/com_communicator.h"

#include <olectl.h>

#include <new>
#include <string>

#include "com/class_table.h"
#include "com/com_support.h"
#include "com/reference_counted.h"

namespace folioscope::com {

namespace {

constexpr DISPID kDispidMessage = 1;
constexpr DISPID kDispidOnReportStart = 2;
constexpr DISPID kDispidOnReportWorks = 3;

// Enumerates the one connection point of a CFSCommunicator.
class PointEnumerator final : public ReferenceCounted<IEnumConnectionPoints> {
 public:
  PointEnumerator(IConnectionPoint* point, ULONG position) : point_(point), position_(position) {
    point_->AddRef();
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    if (object == nullptr) return E_POINTER;
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IEnumConnectionPoints)) {
      *object = static_cast<IEnumConnectionPoints*>(this);
      AddRef();
      return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
  }

  HRESULT STDMETHODCALLTYPE Next(ULONG count, IConnectionPoint** points, ULONG* fetched) override {
    if (points == nullptr || (count != 1 && fetched == nullptr)) return E_POINTER;
    ULONG n = 0;
    if (count > 0 && position_ == 0) {
      points[0] = point_;
      point_->AddRef();
      n = 1;
      position_ = 1;
    }
    if (fetched != nullptr) *fetched = n;
    return n == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    if (count == 0) return S_OK;
    const bool had_one = position_ == 0;
    position_ = 1;
    return had_one && count == 1 ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    position_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumConnectionPoints** copy) override {
    if (copy == nullptr) return E_POINTER;
    *copy = new (std::nothrow) PointEnumerator(point_, position_);
    return *copy == nullptr ? E_OUTOFMEMORY : S_OK;
  }

 private:
  ~PointEnumerator() override { point_->Release(); }

  IConnectionPoint* point_;
  ULONG position_;
};

// A VT_BYREF argument slot.
VARIANTARG ByRef(VARTYPE type, void* value) {
  VARIANTARG v;
  VariantInit(&v);
  V_VT(&v) = static_cast<VARTYPE>(type | VT_BYREF);
  V_BYREF(&v) = value;
  return v;
}

// A BSTR copy of a component string that the sinks may replace by
// reference; Take() reads back what they left and frees it.
class ByRefText {
 public:
  explicit ByRefText(const std::string& text) : bstr_(ToBstr(text)) {}
  ByRefText(const ByRefText&) = delete;
  ByRefText& operator=(const ByRefText&) = delete;
  ~ByRefText() { SysFreeString(bstr_); }
  BSTR* address() { return &bstr_; }
  std::string Take() const { return FromBstr(bstr_); }

 private:
  BSTR bstr_;
};

// Keeps an object alive for a scope: an event handler may drop the last
// reference of the communicator that is raising the event.
class Hold {
 public:
  explicit Hold(IUnknown* object) : object_(object) { object_->AddRef(); }
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;
  ~Hold() { object_->Release(); }

 private:
  IUnknown* object_;
};

}  // namespace

// --- ComFSCommunicator ---------------------------------------------------------

ComFSCommunicator::ComFSCommunicator()
    : DispatchObject(IID__CFSCommunicator, "CFSCommunicator"),
      channel_(std::make_shared<CFSCommunicator>()),
      point_(this) {
  channel_->AddListener(this);
}

ComFSCommunicator::~ComFSCommunicator() {
  // The channel may stay registered for the thread after we are gone; it
  // then has no one to tell.
  channel_->RemoveListener(this);
}

void* ComFSCommunicator::QueryFurtherInterface(REFIID riid) {
  if (IsEqualIID(riid, IID_IConnectionPointContainer)) {
    return static_cast<IConnectionPointContainer*>(this);
  }
  return nullptr;
}

HRESULT ComFSCommunicator::AddLog(BSTR* Desc, LONG* IconIndex) {
  if (Desc == nullptr || IconIndex == nullptr) return E_POINTER;
  return Guarded([&] {
    // A handler may drop us; the channel must outlive its own AddLog.
    const std::shared_ptr<CFSCommunicator> channel = channel_;
    channel->AddLog(FromBstr(*Desc), static_cast<int32_t>(*IconIndex));
  });
}

HRESULT ComFSCommunicator::EnumConnectionPoints(IEnumConnectionPoints** points) {
  if (points == nullptr) return E_POINTER;
  *points = new (std::nothrow) PointEnumerator(&point_, 0);
  return *points == nullptr ? E_OUTOFMEMORY : S_OK;
}

HRESULT ComFSCommunicator::FindConnectionPoint(REFIID riid, IConnectionPoint** point) {
  if (point == nullptr) return E_POINTER;
  *point = nullptr;
  // VB's event sinks ask for the event interface; some hosts ask for
  // IDispatch itself.
  if (!IsEqualIID(riid, DIID___CFSCommunicator) && !IsEqualIID(riid, IID_IDispatch)) {
    return CONNECT_E_NOCONNECTION;
  }
  *point = &point_;
  point_.AddRef();
  return S_OK;
}

void ComFSCommunicator::Message(std::string& Desc, int32_t& IconIndex) {
  const Hold alive(static_cast<_CFSCommunicator*>(this));
  ByRefText desc(Desc);
  LONG icon = IconIndex;
  VARIANTARG args[2] = {ByRef(VT_I4, &icon), ByRef(VT_BSTR, desc.address())};
  point_.Fire(kDispidMessage, args, 2);
  Desc = desc.Take();
  IconIndex = icon;
}

void ComFSCommunicator::OnReportStart(int32_t& Count) {
  const Hold alive(static_cast<_CFSCommunicator*>(this));
  LONG count = Count;
  VARIANTARG args[1] = {ByRef(VT_I4, &count)};
  point_.Fire(kDispidOnReportStart, args, 1);
  Count = count;
}

void ComFSCommunicator::OnReportWorks(int32_t& CurrentValue, std::string& Description,
                                      bool& StdPraefix) {
  const Hold alive(static_cast<_CFSCommunicator*>(this));
  LONG current = CurrentValue;
  ByRefText description(Description);
  VARIANT_BOOL praefix = ToVariantBool(StdPraefix);
  VARIANTARG args[3] = {ByRef(VT_BOOL, &praefix), ByRef(VT_BSTR, description.address()),
                        ByRef(VT_I4, &current)};
  point_.Fire(kDispidOnReportWorks, args, 3);
  CurrentValue = current;
  Description = description.Take();
  StdPraefix = praefix != VARIANT_FALSE;
}

// --- The connection point ---------------------------------------------------------

ComFSCommunicator::EventPoint::~EventPoint() {
  for (auto& [cookie, sink] : sinks_) sink->Release();
}

HRESULT ComFSCommunicator::EventPoint::QueryInterface(REFIID riid, void** object) {
  if (object == nullptr) return E_POINTER;
  if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IConnectionPoint)) {
    *object = static_cast<IConnectionPoint*>(this);
    AddRef();
    return S_OK;
  }
  *object = nullptr;
  return E_NOINTERFACE;
}

HRESULT ComFSCommunicator::EventPoint::GetConnectionInterface(IID* iid) {
  if (iid == nullptr) return E_POINTER;
  *iid = DIID___CFSCommunicator;
  return S_OK;
}

HRESULT ComFSCommunicator::EventPoint::GetConnectionPointContainer(
    IConnectionPointContainer** container) {
  if (container == nullptr) return E_POINTER;
  *container = owner_;
  owner_->AddRef();
  return S_OK;
}

HRESULT ComFSCommunicator::EventPoint::Advise(IUnknown* sink, DWORD* cookie) {
  if (cookie == nullptr) return E_POINTER;
  *cookie = 0;
  if (sink == nullptr) return E_POINTER;
  IDispatch* events = nullptr;
  if (FAILED(sink->QueryInterface(DIID___CFSCommunicator, reinterpret_cast<void**>(&events))) &&
      FAILED(sink->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(&events)))) {
    return CONNECT_E_CANNOTCONNECT;
  }
  try {
    sinks_.emplace_back(next_cookie_, events);
  } catch (...) {
    events->Release();
    return E_OUTOFMEMORY;
  }
  *cookie = next_cookie_++;
  return S_OK;
}

HRESULT ComFSCommunicator::EventPoint::Unadvise(DWORD cookie) {
  for (auto it = sinks_.begin(); it != sinks_.end(); ++it) {
    if (it->first == cookie) {
      IDispatch* sink = it->second;
      sinks_.erase(it);
      sink->Release();
      return S_OK;
    }
  }
  return CONNECT_E_NOCONNECTION;
}

HRESULT ComFSCommunicator::EventPoint::EnumConnections(IEnumConnections** connections) {
  if (connections == nullptr) return E_POINTER;
  *connections = nullptr;
  return E_NOTIMPL;
}

void ComFSCommunicator::EventPoint::Fire(DISPID dispid, VARIANTARG* args, UINT count) {
  // A handler may unadvise (itself or others) while it runs: call a held
  // copy of the list.
  std::vector<IDispatch*> sinks;
  try {
    sinks.reserve(sinks_.size());
    for (auto& [cookie, sink] : sinks_) {
      sink->AddRef();
      sinks.push_back(sink);
    }
  } catch (...) {
    for (IDispatch* sink : sinks) sink->Release();
    return;
  }
  for (IDispatch* sink : sinks) {
    DISPPARAMS params = {args, nullptr, count, 0};
    VARIANT result;
    VariantInit(&result);
    sink->Invoke(dispid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, &result, nullptr,
                 nullptr);
    VariantClear(&result);
    sink->Release();
  }
}

// --- ComFSDataLogger ------------------------------------------------------------------

ComFSDataLogger::ComFSDataLogger() : DispatchObject(IID__CFSDataLogger, "CFSDataLogger") {}

ComFSDataLogger::~ComFSDataLogger() {
  if (communicator_ != nullptr) communicator_->Release();
}

HRESULT ComFSDataLogger::putref_FSCommunicator(_CFSCommunicator* value) {
  return Guarded([&] {
    std::shared_ptr<CFSCommunicator> channel;
    if (value != nullptr) {
      ComFSCommunicator* ours = ImplementationOf<ComFSCommunicator>(value);
      if (ours == nullptr) vb::Raise(13);  // not one of our communicators
      channel = ours->channel();
      value->AddRef();
    }
    if (communicator_ != nullptr) communicator_->Release();
    communicator_ = value;
    logger_.SetFSCommunicator(std::move(channel));
  });
}

namespace {

IUnknown* NewCommunicator() {
  return static_cast<_CFSCommunicator*>(new (std::nothrow) ComFSCommunicator());
}
IUnknown* NewDataLogger() {
  return static_cast<_CFSDataLogger*>(new (std::nothrow) ComFSDataLogger());
}

ComClassRegistration communicator_class(CLSID_CFSCommunicator, "CFSCommunicator", &NewCommunicator);
ComClassRegistration data_logger_class(CLSID_CFSDataLogger, "CFSDataLogger", &NewDataLogger);

}  // namespace

}  // namespace folioscope::com
