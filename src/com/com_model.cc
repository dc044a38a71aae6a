#include "com/com_model.h"

#include <string>
#include <utility>
#include <vector>

#include "com/com_support.h"
#include "com/late_bound.h"
#include "com/model_objects.h"
#include "infra/vb_runtime.h"

namespace folioscope::com {

namespace model_bridge {

// What WriteBack needs: the caller's objects behind the parts of the copy
// that the component may change, with what was read from them.
class Binding {
 public:
  // One of our own objects, kept alive while its model is in use; null
  // when the model is a copy read from the caller's objects.
  Ref<IDispatch> own;

  struct LinesLink {
    Ref<IDispatch> object;
    vb::Dictionary* lines;
    int32_t read_count;  // entries from here on were added by the component
  };
  struct ParameterLink {
    Ref<IDispatch> object;
    SourceParameter* parameter;
    std::string read_description;
  };
  std::vector<LinesLink> lines;
  std::vector<ParameterLink> parameters;

  void WriteBack();

 private:
  static void AddLine(IDispatch* object, const vb::DictKey& key, const std::string& item);
};

void Binding::WriteBack() {
  for (LinesLink& link : lines) {
    for (int32_t i = link.read_count; i < link.lines->Count(); ++i) {
      AddLine(link.object.get(), link.lines->KeyAt(i), link.lines->ItemAt(i));
    }
    link.read_count = link.lines->Count();
  }
  for (ParameterLink& link : parameters) {
    if (link.parameter->Description == link.read_description) continue;
    Variant text;
    V_BSTR(text.get()) = ToBstr(link.parameter->Description);
    V_VT(text.get()) = VT_BSTR;
    PutValue(link.object.get(), L"Description", nullptr, 0, *text);
    link.read_description = link.parameter->Description;
  }
}

// Item(key) = item, as Scripting.Dictionary takes it; Add(key, item) for a
// dictionary of the caller's own making that has no Item put.
void Binding::AddLine(IDispatch* object, const vb::DictKey& key, const std::string& item) {
  Variant args[2];
  FromKey(key, args[0].get());
  V_BSTR(args[1].get()) = ToBstr(item);
  V_VT(args[1].get()) = VT_BSTR;
  const VARIANT call[2] = {*args[0], *args[1]};
  if (!PutValue(object, L"Item", call, 1, call[1])) CallMethod(object, L"Add", call, 2);
}

}  // namespace model_bridge

namespace {

using model_bridge::Binding;

// "Modules(2).CodeLines": the place of a property in error texts.
std::string Place(const std::string& parent, const wchar_t* name) {
  std::string place = parent.empty() ? std::string() : parent + ".";
  for (const wchar_t* c = name; *c != 0; ++c) place += static_cast<char>(*c);
  return place;
}

std::string Element(const std::string& collection, size_t position) {
  return collection + "(" + std::to_string(position) + ")";
}

bool IsArray(const VARIANT& value) { return (V_VT(&value) & VT_ARRAY) != 0; }

// Reads the caller's objects property by property. Required properties raise
// 438 when missing; optional ones take the defaults of a fresh model.
class ModelReader {
 public:
  explicit ModelReader(Binding& binding) : binding_(binding) {}

  void ReadProject(IDispatch* object, SourceProject& project, const std::string& place) {
    project.Name = OptionalText(object, L"Name", place);
    project.Version = OptionalText(object, L"Version", place);
    project.FilePath = OptionalText(object, L"FilePath", place);
    ForEachElement(object, L"Components", place, true, [&](IDispatch* item, const std::string& at) {
      auto component = std::make_unique<SourceComponent>();
      ReadComponent(item, *component, at);
      AddKeyed(project.Components, std::move(component));
    });
    ForEachElement(object, L"Modules", place, true, [&](IDispatch* item, const std::string& at) {
      auto module = std::make_unique<SourceModule>();
      ReadModule(item, *module, at);
      AddKeyed(project.Modules, std::move(module));
    });
  }

  void ReadModule(IDispatch* object, SourceModule& module, const std::string& place) {
    module.Name = RequiredText(object, L"Name", place);
    ReadLines(object, module.CodeLines, place);
    ForEachElement(object, L"Members", place, true, [&](IDispatch* item, const std::string& at) {
      auto member = std::make_unique<SourceMember>();
      ReadMember(item, *member, at);
      AddKeyed(module.Members, std::move(member));
    });
    module.Description = OptionalText(object, L"Description", place);
    module.HelpContextId = OptionalLong(object, L"HelpContextId", place);
  }

  void ReadMember(IDispatch* object, SourceMember& member, const std::string& place) {
    member.Name = RequiredText(object, L"Name", place);
    member.PropertyForm = OptionalText(object, L"PropertyForm", place);
    member.Kind = OptionalText(object, L"Kind", place);
    member.Scope = OptionalText(object, L"Scope", place);
    member.ReturnType = OptionalText(object, L"ReturnType", place);
    member.Description = OptionalText(object, L"Description", place);
    member.HelpContextId = OptionalLong(object, L"HelpContextId", place);
    member.FirstLine = OptionalLong(object, L"FirstLine", place);
    ReadLines(object, member.CodeLines, place);
    member.LineCount = OptionalLong(object, L"LineCount", place, member.CodeLines.Count());
    ForEachElement(object, L"Parameters", place, false,
                   [&](IDispatch* item, const std::string& at) {
                     auto parameter = std::make_unique<SourceParameter>();
                     ReadParameter(item, *parameter, at);
                     member.Parameters.Add(std::move(parameter));
                   });
  }

 private:
  void ReadComponent(IDispatch* object, SourceComponent& component, const std::string& place) {
    component.Name = RequiredText(object, L"Name", place);
    component.Kind = OptionalText(object, L"Kind", place, "Module");
    component.RelativePath = OptionalText(object, L"RelativePath", place);
    component.FilePath = OptionalText(object, L"FilePath", place);
  }

  void ReadParameter(IDispatch* object, SourceParameter& parameter, const std::string& place) {
    parameter.Name = RequiredText(object, L"Name", place);
    parameter.Type = OptionalText(object, L"Type", place, "Variant");
    parameter.Passing = OptionalText(object, L"Passing", place, "ByRef");
    parameter.Optional = OptionalBool(object, L"Optional", place);
    parameter.ParamArray = OptionalBool(object, L"ParamArray", place);
    parameter.HasDefault = OptionalBool(object, L"HasDefault", place);
    parameter.Default = OptionalText(object, L"Default", place);
    parameter.Description = OptionalText(object, L"Description", place);
    binding_.parameters.push_back(
        {Ref<IDispatch>::Borrow(object), &parameter, parameter.Description});
  }

  // --- Code lines ---

  // The object's CodeLines, through Keys() and Items() in one call each when
  // it is a dictionary, else through Count and Item(1 .. Count).
  void ReadLines(IDispatch* owner, vb::Dictionary& lines, const std::string& place) {
    const std::string at = Place(place, L"CodeLines");
    Variant value;
    GetRequired(owner, L"CodeLines", at, value.get());
    Ref<IDispatch> object = ToObject(*value, at);
    Variant items;
    if (GetOptional(object.get(), L"Items", at, items.get()) && IsArray(*items)) {
      Variant keys;
      if (!GetOptional(object.get(), L"Keys", at, keys.get()) || !IsArray(*keys)) {
        VariantClear(keys.get());
      }
      CopyLines(*keys, *items, lines, at);
    } else {
      Variant count;
      GetRequired(object.get(), L"Count", Place(at, L"Count"), count.get());
      const int32_t n = ToLong(*count, Place(at, L"Count"));
      const DISPID item = RequiredName(object.get(), L"Item", at);
      for (int32_t i = 1; i <= n; ++i) {
        Variant index, text;
        V_VT(index.get()) = VT_I4;
        V_I4(index.get()) = i;
        GetValueWith(object.get(), item, index.get(), 1, at, text.get());
        lines.SetItem(i, ToText(*text, Element(at, static_cast<size_t>(i))));
      }
    }
    binding_.lines.push_back({std::move(object), &lines, lines.Count()});
  }

  // Keys and items side by side; with no keys array, keys 1 .. n.
  static void CopyLines(const VARIANT& keys, const VARIANT& items, vb::Dictionary& lines,
                        const std::string& at) {
    ArrayView item_view(items, at);
    ArrayView key_view(keys, at);
    const bool keyed = key_view.size() == item_view.size() && V_VT(&keys) != VT_EMPTY;
    for (size_t i = 0; i < item_view.size(); ++i) {
      const vb::DictKey key =
          keyed ? ToKey(key_view[i], at) : vb::DictKey::Long(static_cast<int32_t>(i + 1));
      lines.SetItem(key, ToText(item_view[i], Element(at, i + 1)));
    }
  }

  // --- Collections ---

  // A 1-dimensional array read in place: of variants, or typed as VB6
  // returns String(), Long(), Integer() and object arrays.
  class ArrayView {
   public:
    ArrayView(const VARIANT& value, const std::string& at) {
      if (!IsArray(value)) return;
      array_ = (V_VT(&value) & VT_BYREF) != 0 ? *V_ARRAYREF(&value) : V_ARRAY(&value);
      element_ = V_VT(&value) & VT_TYPEMASK;
      if (array_ == nullptr) return;
      const bool readable = element_ == VT_VARIANT || element_ == VT_DISPATCH ||
                            element_ == VT_BSTR || element_ == VT_I4 || element_ == VT_I2;
      if (SafeArrayGetDim(array_) != 1 || !readable) RaiseAbout(kTypeMismatch, at);
      LONG low = 0, high = -1;
      SafeArrayGetLBound(array_, 1, &low);
      SafeArrayGetUBound(array_, 1, &high);
      if (high < low || FAILED(SafeArrayAccessData(array_, &data_))) return;
      size_ = static_cast<size_t>(high - low + 1);
    }
    ArrayView(const ArrayView&) = delete;
    ArrayView& operator=(const ArrayView&) = delete;
    ~ArrayView() {
      if (data_ != nullptr) SafeArrayUnaccessData(array_);
    }
    size_t size() const { return size_; }
    // Element i (0-based from the lower bound) as a variant, borrowed: valid
    // until the next call.
    const VARIANT& operator[](size_t i) {
      V_VT(&element_value_) = element_;
      switch (element_) {
        case VT_VARIANT:
          return static_cast<const VARIANT*>(data_)[i];
        case VT_DISPATCH:
          V_DISPATCH(&element_value_) = static_cast<IDispatch* const*>(data_)[i];
          break;
        case VT_BSTR:
          V_BSTR(&element_value_) = static_cast<const BSTR*>(data_)[i];
          break;
        case VT_I4:
          V_I4(&element_value_) = static_cast<const LONG*>(data_)[i];
          break;
        default:
          V_I2(&element_value_) = static_cast<const SHORT*>(data_)[i];
          break;
      }
      return element_value_;  // not cleared: the array owns the value
    }

   private:
    SAFEARRAY* array_ = nullptr;
    VARTYPE element_ = VT_EMPTY;
    void* data_ = nullptr;
    size_t size_ = 0;
    VARIANT element_value_ = {};
  };

  // Calls `visit(element, place)` for each object of the collection property
  // `name`: an array, a dictionary (its Items()), any object with _NewEnum
  // (For Each), or one with Count and Item(1 .. Count). An optional
  // property that is missing, Empty or Nothing has no elements.
  template <class F>
  void ForEachElement(IDispatch* owner, const wchar_t* name, const std::string& place,
                      bool required, F&& visit) {
    const std::string at = Place(place, name);
    Variant value;
    if (required) {
      GetRequired(owner, name, at, value.get());
    } else if (!GetOptional(owner, name, at, value.get()) || IsNothing(*value)) {
      return;
    }
    if (IsArray(*value)) return VisitArray(*value, at, visit);
    Ref<IDispatch> collection = ToObject(*value, at);
    Variant items;
    if (GetOptional(collection.get(), L"Items", at, items.get()) && IsArray(*items)) {
      return VisitArray(*items, at, visit);
    }
    if (VisitEnumeration(collection.get(), at, visit)) return;
    Variant count;
    GetRequired(collection.get(), L"Count", Place(at, L"Count"), count.get());
    const int32_t n = ToLong(*count, Place(at, L"Count"));
    const DISPID item = RequiredName(collection.get(), L"Item", at);
    for (int32_t i = 1; i <= n; ++i) {
      const std::string element_at = Element(at, static_cast<size_t>(i));
      Variant index, element;
      V_VT(index.get()) = VT_I4;
      V_I4(index.get()) = i;
      GetValueWith(collection.get(), item, index.get(), 1, element_at, element.get());
      visit(ToObject(*element, element_at).get(), element_at);
    }
  }

  template <class F>
  static void VisitArray(const VARIANT& array, const std::string& at, F&& visit) {
    ArrayView view(array, at);
    for (size_t i = 0; i < view.size(); ++i) {
      const std::string element_at = Element(at, i + 1);
      visit(ToObject(view[i], element_at).get(), element_at);
    }
  }

  // For Each through _NewEnum; false when the collection has none.
  template <class F>
  static bool VisitEnumeration(IDispatch* collection, const std::string& at, F&& visit) {
    Variant enumerator;
    DISPPARAMS none = {nullptr, nullptr, 0, 0};
    EXCEPINFO info = {};
    UINT arg_error = 0;
    const HRESULT hr = collection->Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                                          DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none,
                                          enumerator.get(), &info, &arg_error);
    if (FAILED(hr)) {
      SysFreeString(info.bstrSource);
      SysFreeString(info.bstrDescription);
      SysFreeString(info.bstrHelpFile);
      return false;
    }
    const VARTYPE type = enumerator.type();
    IUnknown* unknown = type == VT_UNKNOWN    ? V_UNKNOWN(enumerator.get())
                        : type == VT_DISPATCH ? V_DISPATCH(enumerator.get())
                                              : nullptr;
    IEnumVARIANT* raw = nullptr;
    if (unknown == nullptr ||
        FAILED(unknown->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(&raw)))) {
      return false;
    }
    Ref<IEnumVARIANT> items(raw);
    for (size_t position = 1;; ++position) {
      Variant element;
      ULONG fetched = 0;
      if (items->Next(1, element.get(), &fetched) != S_OK || fetched != 1) break;
      const std::string element_at = Element(at, position);
      visit(ToObject(*element, element_at).get(), element_at);
    }
    return true;
  }

  static bool IsNothing(const VARIANT& value) {
    const VARTYPE type = V_VT(&value);
    return type == VT_EMPTY || type == VT_NULL || (type == VT_DISPATCH && !V_DISPATCH(&value)) ||
           (type == VT_UNKNOWN && !V_UNKNOWN(&value));
  }

  static DISPID RequiredName(IDispatch* object, const wchar_t* name, const std::string& at) {
    const DISPID dispid = FindName(object, name);
    if (dispid == DISPID_UNKNOWN) RaiseAbout(kNoSuchMember, Place(at, name));
    return dispid;
  }

  // Adds under the element's name, unkeyed when the name is taken already.
  template <class T>
  static void AddKeyed(vb::Collection<T>& collection, std::unique_ptr<T> element) {
    const std::string key = element->Name;
    collection.Add(std::move(element), key.empty() || collection.Exists(key) ? "" : key);
  }

  // --- Scalar properties ---

  static std::string RequiredText(IDispatch* object, const wchar_t* name,
                                  const std::string& place) {
    const std::string at = Place(place, name);
    Variant value;
    GetRequired(object, name, at, value.get());
    return ToText(*value, at);
  }

  static std::string OptionalText(IDispatch* object, const wchar_t* name, const std::string& place,
                                  const char* fallback = "") {
    const std::string at = Place(place, name);
    Variant value;
    if (!GetOptional(object, name, at, value.get())) return fallback;
    return ToText(*value, at);
  }

  static int32_t OptionalLong(IDispatch* object, const wchar_t* name, const std::string& place,
                              int32_t fallback = 0) {
    const std::string at = Place(place, name);
    Variant value;
    if (!GetOptional(object, name, at, value.get())) return fallback;
    return ToLong(*value, at);
  }

  static bool OptionalBool(IDispatch* object, const wchar_t* name, const std::string& place) {
    const std::string at = Place(place, name);
    Variant value;
    if (!GetOptional(object, name, at, value.get())) return false;
    return ToBool(*value, at);
  }

  Binding& binding_;
};

// What tells the three kinds of caller object apart: the name in a Nothing
// fault, how our own objects are recognised, and which read fills a copy.
template <class Model>
struct CallerKind;

template <>
struct CallerKind<SourceProject> {
  static constexpr const char* kName = "SourceProject";
  static SourceProject* Own(IDispatch* object) { return OwnProjectOf(object); }
  static void Read(ModelReader reader, IDispatch* object, SourceProject& model) {
    reader.ReadProject(object, model, "");
  }
};

template <>
struct CallerKind<SourceModule> {
  static constexpr const char* kName = "SourceModule";
  static SourceModule* Own(IDispatch* object) { return OwnModuleOf(object); }
  static void Read(ModelReader reader, IDispatch* object, SourceModule& model) {
    reader.ReadModule(object, model, "");
  }
};

template <>
struct CallerKind<SourceMember> {
  static constexpr const char* kName = "SourceMember";
  static SourceMember* Own(IDispatch* object) { return OwnMemberOf(object); }
  static void Read(ModelReader reader, IDispatch* object, SourceMember& model) {
    reader.ReadMember(object, model, "");
  }
};

}  // namespace

template <class Model>
Caller<Model>::Caller() : binding_(std::make_unique<Binding>()) {}

template <class Model>
Caller<Model>::~Caller() = default;

template <class Model>
std::unique_ptr<Caller<Model>> Caller<Model>::Read(IDispatch* object) {
  using Kind = CallerKind<Model>;
  if (object == nullptr) RaiseAbout(kObjectRequired, Kind::kName);
  std::unique_ptr<Caller> caller(new Caller());
  if (Model* own = Kind::Own(object)) {
    caller->binding_->own = Ref<IDispatch>::Borrow(object);
    caller->model_ = own;
    return caller;
  }
  caller->copy_ = std::make_unique<Model>();
  Kind::Read(ModelReader(*caller->binding_), object, *caller->copy_);
  caller->model_ = caller->copy_.get();
  return caller;
}

template <class Model>
void Caller<Model>::WriteBack() {
  try {
    binding_->WriteBack();
  } catch (...) {
  }
}

template class Caller<SourceProject>;
template class Caller<SourceModule>;
template class Caller<SourceMember>;

}  // namespace folioscope::com
