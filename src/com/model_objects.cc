#include "com/model_objects.h"

#include <cmath>
#include <cwchar>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "com/com_support.h"
#include "com/dispatch_object.h"
#include "com/late_bound.h"
#include "com/reference_counted.h"
#include "infra/vb_runtime.h"

namespace folioscope::com {

namespace {

// What every object holds so that the model outlives it.
using Root = std::shared_ptr<void>;

struct NameEntry {
  const wchar_t* name;
  DISPID id;
};

// The arguments of one Invoke, resolved from by-reference variants: the
// positional ones in call order, and the assigned value of a property put.
class Arguments {
 public:
  Arguments(DISPPARAMS* params, WORD flags) : raw_(params) {
    const UINT count = params != nullptr ? params->cArgs : 0;
    UINT first_positional = 0;
    if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0 && count > 0) {
      has_value_ = true;
      Copy(params->rgvarg[0], &value_);
      first_positional = 1;
    }
    for (UINT i = count; i > first_positional; --i) {
      positional_.emplace_back();
      VariantInit(&positional_.back());
      Copy(params->rgvarg[i - 1], &positional_.back());
    }
  }
  Arguments(const Arguments&) = delete;
  Arguments& operator=(const Arguments&) = delete;
  ~Arguments() {
    for (VARIANT& v : positional_) VariantClear(&v);
    VariantClear(&value_);
  }

  int count() const { return static_cast<int>(positional_.size()); }
  const VARIANT& operator[](int i) const { return positional_[static_cast<size_t>(i)]; }
  bool has_value() const { return has_value_; }
  const VARIANT& value() const { return value_; }
  // The arguments as the caller passed them.
  DISPPARAMS* raw() const { return raw_; }

 private:
  static void Copy(const VARIANT& from, VARIANT* to) {
    VariantInit(to);
    if (FAILED(VariantCopyInd(to, const_cast<VARIANT*>(&from)))) vb::Raise(kTypeMismatch);
  }

  DISPPARAMS* raw_;
  std::vector<VARIANT> positional_;
  bool has_value_ = false;
  VARIANT value_ = {};
};

void SetText(VARIANT* result, const std::string& text) {
  if (result == nullptr) return;
  V_BSTR(result) = ToBstr(text);
  V_VT(result) = VT_BSTR;
}

void SetLong(VARIANT* result, int32_t value) {
  if (result == nullptr) return;
  V_VT(result) = VT_I4;
  V_I4(result) = value;
}

void SetBool(VARIANT* result, bool value) {
  if (result == nullptr) return;
  V_VT(result) = VT_BOOL;
  V_BOOL(result) = ToVariantBool(value);
}

// Takes over `object`'s reference.
void SetObject(VARIANT* result, IDispatch* object) {
  if (result == nullptr) {
    object->Release();
    return;
  }
  V_VT(result) = VT_DISPATCH;
  V_DISPATCH(result) = object;
}

// --- The base: IUnknown and a name-table IDispatch ---------------------------

class ScriptObject : public ReferenceCounted<IDispatch>, public ComObjectRoot {
 public:
  explicit ScriptObject(Root root) : root_(std::move(root)) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch)) {
      *object = static_cast<IDispatch*>(this);
    } else if (IsEqualIID(riid, kIidComObjectRoot)) {
      *object = static_cast<ComObjectRoot*>(this);
    } else {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    if (info != nullptr) *info = nullptr;
    return DISP_E_BADINDEX;
  }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override {
    if (names == nullptr || ids == nullptr || count == 0) return E_POINTER;
    HRESULT hr = S_OK;
    ids[0] = DISPID_UNKNOWN;
    for (const NameEntry& entry : Names()) {
      if (_wcsicmp(entry.name, names[0]) == 0) ids[0] = entry.id;
    }
    if (ids[0] == DISPID_UNKNOWN) hr = DISP_E_UNKNOWNNAME;
    for (UINT i = 1; i < count; ++i) {  // no named arguments
      ids[i] = DISPID_UNKNOWN;
      hr = DISP_E_UNKNOWNNAME;
    }
    return hr;
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    if (result != nullptr) VariantInit(result);
    try {
      Arguments args(params, flags);
      return Call(id, flags, args, result);
    } catch (const vb::RuntimeError& e) {
      return Raised(e, exception);
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    } catch (const std::exception& e) {
      return Raised(vb::RuntimeError(51, e.what()), exception);
    }
  }

 protected:
  virtual std::span<const NameEntry> Names() const = 0;
  // Runs member `id`; DISP_E_MEMBERNOTFOUND for an id (or access) it lacks.
  virtual HRESULT Call(DISPID id, WORD flags, const Arguments& args, VARIANT* result) = 0;

  static bool IsGet(WORD flags) { return (flags & (DISPATCH_PROPERTYGET | DISPATCH_METHOD)) != 0; }
  static bool IsPut(WORD flags) { return (flags & DISPATCH_PROPERTYPUT) != 0; }

  // Raises a child's fault as this object's.
  [[noreturn]] static void PassOn(EXCEPINFO& info) {
    std::string text = FromBstr(info.bstrDescription);
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
    const HRESULT code = info.scode;
    throw vb::RuntimeError(HRESULT_FACILITY(code) == FACILITY_CONTROL ? HRESULT_CODE(code)
                                                                      : static_cast<int32_t>(code),
                           text);
  }

  const Root& root() const { return root_; }

 private:
  static HRESULT Raised(const vb::RuntimeError& e, EXCEPINFO* exception) {
    if (exception == nullptr) return HresultOfError(e.number());
    *exception = {};
    try {
      exception->bstrSource = ToBstr("VBFolioscope");
      exception->bstrDescription = ToBstr(e.description());
    } catch (...) {
    }
    exception->scode = HresultOfError(e.number());
    return DISP_E_EXCEPTION;
  }

  Root root_;
};

// --- For Each: an enumerator over a snapshot of values -------------------------

class VariantEnumerator final : public ReferenceCounted<IEnumVARIANT> {
 public:
  using Values = std::vector<VARIANT>;
  explicit VariantEnumerator(std::shared_ptr<const Values> values, ULONG position = 0)
      : values_(std::move(values)), position_(position) {}

  // Owns the variants of `values` from then on.
  static std::shared_ptr<const Values> Share(Values values) {
    return std::shared_ptr<const Values>(new Values(std::move(values)), [](const Values* v) {
      for (VARIANT item : *v) VariantClear(&item);
      delete v;
    });
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(riid, IID_IUnknown) && !IsEqualIID(riid, IID_IEnumVARIANT)) {
      return E_NOINTERFACE;
    }
    *object = static_cast<IEnumVARIANT*>(this);
    AddRef();
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE Next(ULONG wanted, VARIANT* out, ULONG* fetched) override {
    if (out == nullptr) return E_POINTER;
    ULONG n = 0;
    while (n < wanted && position_ < values_->size()) {
      VariantInit(&out[n]);
      const HRESULT hr = VariantCopy(&out[n], const_cast<VARIANT*>(&(*values_)[position_]));
      if (FAILED(hr)) return hr;
      ++n;
      ++position_;
    }
    if (fetched != nullptr) *fetched = n;
    return n == wanted ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const ULONG left = static_cast<ULONG>(values_->size()) - position_;
    position_ += count < left ? count : left;
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    position_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
    if (copy == nullptr) return E_POINTER;
    *copy = new (std::nothrow) VariantEnumerator(values_, position_);
    return *copy != nullptr ? S_OK : E_OUTOFMEMORY;
  }

 private:
  std::shared_ptr<const Values> values_;
  ULONG position_;
};

void SetEnumerator(VARIANT* result, VariantEnumerator::Values values) {
  auto* enumerator = new VariantEnumerator(VariantEnumerator::Share(std::move(values)));
  if (result == nullptr) {
    enumerator->Release();
    return;
  }
  V_VT(result) = VT_UNKNOWN;
  V_UNKNOWN(result) = enumerator;
}

// --- Nodes: project, component, module, member, parameter ---------------------

template <class T>
struct Field {
  const wchar_t* name;
  std::string T::*text = nullptr;
  int32_t T::*number = nullptr;
  bool T::*flag = nullptr;
  IDispatch* (*child)(const Root&, T&) = nullptr;
};

template <class T>
std::span<const Field<T>> FieldsOf();

template <class T>
class NodeObject : public ScriptObject {
 public:
  NodeObject(Root root, T* node) : ScriptObject(std::move(root)), node_(node) {}
  T* node() const { return node_; }

 protected:
  std::span<const NameEntry> Names() const override {
    static const std::vector<NameEntry> names = [] {
      std::vector<NameEntry> list;
      DISPID id = 1;
      for (const Field<T>& field : FieldsOf<T>()) list.push_back({field.name, id++});
      return list;
    }();
    return names;
  }

  HRESULT Call(DISPID id, WORD flags, const Arguments& args, VARIANT* result) override {
    const auto fields = FieldsOf<T>();
    if (id < 1 || static_cast<size_t>(id) > fields.size()) return DISP_E_MEMBERNOTFOUND;
    const Field<T>& field = fields[static_cast<size_t>(id - 1)];
    const std::string what(field.name, field.name + wcslen(field.name));
    if (IsPut(flags) && args.has_value()) {
      if (field.child != nullptr) return DISP_E_MEMBERNOTFOUND;  // read only
      if (field.text != nullptr) node_->*field.text = ToText(args.value(), what);
      if (field.number != nullptr) node_->*field.number = ToLong(args.value(), what);
      if (field.flag != nullptr) node_->*field.flag = ToBool(args.value(), what);
      return S_OK;
    }
    if (!IsGet(flags)) return DISP_E_MEMBERNOTFOUND;
    if (field.child != nullptr && args.count() != 0) {
      // Modules(1): the arguments go to the default member of the child.
      Ref<IDispatch> child(field.child(root(), *node_));
      EXCEPINFO info = {};
      UINT arg_error = 0;
      const HRESULT hr = child->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, flags,
                                       args.raw(), result, &info, &arg_error);
      if (hr == DISP_E_EXCEPTION) PassOn(info);
      return hr;
    }
    if (args.count() != 0) return DISP_E_BADPARAMCOUNT;
    if (field.text != nullptr) SetText(result, node_->*field.text);
    if (field.number != nullptr) SetLong(result, node_->*field.number);
    if (field.flag != nullptr) SetBool(result, node_->*field.flag);
    if (field.child != nullptr) SetObject(result, field.child(root(), *node_));
    return S_OK;
  }

 private:
  T* node_;
};

// --- Collections ------------------------------------------------------------

template <class T>
class CollectionObject : public ScriptObject {
 public:
  CollectionObject(Root root, vb::Collection<T>* items)
      : ScriptObject(std::move(root)), items_(items) {}

 protected:
  static constexpr DISPID kCount = 1;

  std::span<const NameEntry> Names() const override {
    static const NameEntry names[] = {
        {L"Item", DISPID_VALUE}, {L"Count", kCount}, {L"_NewEnum", DISPID_NEWENUM}};
    return names;
  }

  HRESULT Call(DISPID id, WORD flags, const Arguments& args, VARIANT* result) override {
    if (!IsGet(flags)) return DISP_E_MEMBERNOTFOUND;
    switch (id) {
      case DISPID_VALUE: {
        if (args.count() != 1) return DISP_E_BADPARAMCOUNT;
        SetObject(result, new NodeObject<T>(root(), &Item(args[0])));
        return S_OK;
      }
      case kCount:
        SetLong(result, items_->Count());
        return S_OK;
      case DISPID_NEWENUM: {
        VariantEnumerator::Values values;
        values.reserve(static_cast<size_t>(items_->Count()));
        for (const auto& item : *items_) {
          VARIANT v;
          V_VT(&v) = VT_DISPATCH;
          V_DISPATCH(&v) = new NodeObject<T>(root(), item.get());
          values.push_back(v);
        }
        SetEnumerator(result, std::move(values));
        return S_OK;
      }
      default:
        return DISP_E_MEMBERNOTFOUND;
    }
  }

 private:
  // Item(1-based position) or Item(key), VB Collection's errors 9 and 5.
  T& Item(const VARIANT& index) const {
    const IndexArgument argument = ReadIndexArgument(index);
    if (argument.is_string) return items_->Item(argument.text);
    const double position = std::nearbyint(argument.number);
    if (position < 1 || position > items_->Count()) vb::Raise(vb::kSubscriptOutOfRange);
    return items_->Item(static_cast<int32_t>(position));
  }

  vb::Collection<T>* items_;
};

// --- Code lines: a Scripting.Dictionary over vb::Dictionary ------------------

class DictionaryObject : public ScriptObject {
 public:
  DictionaryObject(Root root, vb::Dictionary* lines)
      : ScriptObject(std::move(root)), lines_(lines) {}

 protected:
  enum : DISPID { kCount = 1, kAdd, kExists, kKeys, kItems, kRemoveAll };

  std::span<const NameEntry> Names() const override {
    static const NameEntry names[] = {{L"Item", DISPID_VALUE},
                                      {L"Count", kCount},
                                      {L"Add", kAdd},
                                      {L"Exists", kExists},
                                      {L"Keys", kKeys},
                                      {L"Items", kItems},
                                      {L"RemoveAll", kRemoveAll},
                                      {L"_NewEnum", DISPID_NEWENUM}};
    return names;
  }

  HRESULT Call(DISPID id, WORD flags, const Arguments& args, VARIANT* result) override {
    if (id == DISPID_VALUE && IsPut(flags) && args.has_value()) {
      if (args.count() != 1) return DISP_E_BADPARAMCOUNT;
      lines_->SetItem(ToKey(args[0], "Item"), ToText(args.value(), "Item"));
      return S_OK;
    }
    if (!IsGet(flags)) return DISP_E_MEMBERNOTFOUND;
    const int expected = id == DISPID_VALUE || id == kExists ? 1 : id == kAdd ? 2 : 0;
    if (id != DISPID_NEWENUM && args.count() != expected) return DISP_E_BADPARAMCOUNT;
    switch (id) {
      case DISPID_VALUE:
        SetText(result, lines_->Item(ToKey(args[0], "Item")));
        return S_OK;
      case kCount:
        SetLong(result, lines_->Count());
        return S_OK;
      case kAdd:
        lines_->Add(ToKey(args[0], "Add"), ToText(args[1], "Add"));
        return S_OK;
      case kExists:
        SetBool(result, lines_->Exists(ToKey(args[0], "Exists")));
        return S_OK;
      case kKeys:
      case kItems:
        SetArray(result, id == kKeys);
        return S_OK;
      case kRemoveAll:
        lines_->RemoveAll();
        return S_OK;
      case DISPID_NEWENUM: {
        VariantEnumerator::Values keys(static_cast<size_t>(lines_->Count()));
        for (int32_t i = 0; i < lines_->Count(); ++i) FromKey(lines_->KeyAt(i), &keys[i]);
        SetEnumerator(result, std::move(keys));
        return S_OK;
      }
      default:
        return DISP_E_MEMBERNOTFOUND;
    }
  }

 private:
  // Keys() or Items(): a 0-based Variant array, as Scripting.Dictionary gives.
  void SetArray(VARIANT* result, bool keys) const {
    if (result == nullptr) return;
    SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(lines_->Count()));
    if (array == nullptr) vb::Raise(vb::kOutOfMemory);
    VARIANT* data = nullptr;
    SafeArrayAccessData(array, reinterpret_cast<void**>(&data));
    for (int32_t i = 0; i < lines_->Count(); ++i) {
      if (keys) {
        FromKey(lines_->KeyAt(i), &data[i]);
      } else {
        V_BSTR(&data[i]) = ToBstr(lines_->ItemAt(i));
        V_VT(&data[i]) = VT_BSTR;
      }
    }
    SafeArrayUnaccessData(array);
    V_VT(result) = VT_ARRAY | VT_VARIANT;
    V_ARRAY(result) = array;
  }

  vb::Dictionary* lines_;
};

// --- The field tables --------------------------------------------------------

template <class T>
IDispatch* NewCollection(const Root& root, vb::Collection<T>& items) {
  return new CollectionObject<T>(root, &items);
}

IDispatch* NewLines(const Root& root, vb::Dictionary& lines) {
  return new DictionaryObject(root, &lines);
}

template <>
std::span<const Field<SourceProject>> FieldsOf<SourceProject>() {
  using P = SourceProject;
  static const Field<P> fields[] = {
      {L"Name", &P::Name},
      {L"Version", &P::Version},
      {L"FilePath", &P::FilePath},
      {L"Components", nullptr, nullptr, nullptr,
       [](const Root& r, P& p) { return NewCollection(r, p.Components); }},
      {L"Modules", nullptr, nullptr, nullptr,
       [](const Root& r, P& p) { return NewCollection(r, p.Modules); }},
  };
  return fields;
}

template <>
std::span<const Field<SourceComponent>> FieldsOf<SourceComponent>() {
  using C = SourceComponent;
  static const Field<C> fields[] = {
      {L"Name", &C::Name},
      {L"Kind", &C::Kind},
      {L"RelativePath", &C::RelativePath},
      {L"FilePath", &C::FilePath},
  };
  return fields;
}

template <>
std::span<const Field<SourceModule>> FieldsOf<SourceModule>() {
  using M = SourceModule;
  static const Field<M> fields[] = {
      {L"Name", &M::Name},
      {L"CodeLines", nullptr, nullptr, nullptr,
       [](const Root& r, M& m) { return NewLines(r, m.CodeLines); }},
      {L"Members", nullptr, nullptr, nullptr,
       [](const Root& r, M& m) { return NewCollection(r, m.Members); }},
      {L"Description", &M::Description},
      {L"HelpContextId", nullptr, &M::HelpContextId},
  };
  return fields;
}

template <>
std::span<const Field<SourceMember>> FieldsOf<SourceMember>() {
  using M = SourceMember;
  static const Field<M> fields[] = {
      {L"Name", &M::Name},
      {L"PropertyForm", &M::PropertyForm},
      {L"Kind", &M::Kind},
      {L"Scope", &M::Scope},
      {L"ReturnType", &M::ReturnType},
      {L"Description", &M::Description},
      {L"HelpContextId", nullptr, &M::HelpContextId},
      {L"FirstLine", nullptr, &M::FirstLine},
      {L"LineCount", nullptr, &M::LineCount},
      {L"CodeLines", nullptr, nullptr, nullptr,
       [](const Root& r, M& m) { return NewLines(r, m.CodeLines); }},
      {L"Parameters", nullptr, nullptr, nullptr,
       [](const Root& r, M& m) { return NewCollection(r, m.Parameters); }},
  };
  return fields;
}

template <>
std::span<const Field<SourceParameter>> FieldsOf<SourceParameter>() {
  using P = SourceParameter;
  static const Field<P> fields[] = {
      {L"Name", &P::Name},
      {L"Type", &P::Type},
      {L"Passing", &P::Passing},
      {L"Optional", nullptr, nullptr, &P::Optional},
      {L"ParamArray", nullptr, nullptr, &P::ParamArray},
      {L"HasDefault", nullptr, nullptr, &P::HasDefault},
      {L"Default", &P::Default},
      {L"Description", &P::Description},
  };
  return fields;
}

template <class T>
T* OwnNodeOf(IDispatch* object) {
  NodeObject<T>* own = ImplementationOf<NodeObject<T>>(object);
  return own != nullptr ? own->node() : nullptr;
}

}  // namespace

SourceProject* OwnProjectOf(IDispatch* object) { return OwnNodeOf<SourceProject>(object); }
SourceModule* OwnModuleOf(IDispatch* object) { return OwnNodeOf<SourceModule>(object); }
SourceMember* OwnMemberOf(IDispatch* object) { return OwnNodeOf<SourceMember>(object); }

IDispatch* NewProjectObject(std::shared_ptr<SourceProject> project) {
  SourceProject* node = project.get();
  return new NodeObject<SourceProject>(Root(std::move(project)), node);
}

}  // namespace folioscope::com
