// The caller's source model over COM.
//
// A caller hands the component its own project, module and member objects.
// Read() copies one such object late-bound (IDispatch, by the property names
// listed in docs/com.md) into the component's source model; model() is that
// copy, which the component reads and writes; WriteBack() carries into the
// caller's objects what the component changed there:
// - a parameter Description that differs from the one read is written with
//   a property put of `Description` on the caller's parameter object;
// - keys the component added to a code-line dictionary (the key-0 entry of
//   the tag readers' scans) are added to the caller's dictionary (Item put,
//   else Add), with their items, in the order they were added.
//
// Objects that come from our own project reader (CProjektReader) are
// recognised and used in place: model() is then their C++ model itself, the
// component's writes land there at once and WriteBack() has nothing to do.
//
// Read() raises vb::RuntimeError, with the property name in the text:
//   424 for Nothing (a null object, or Nothing where an object is required),
//   438 for a missing required property,
//   13 for a value of the wrong type;
// a fault raised by the caller's own property is passed on with its number
// and text. WriteBack() never raises; a caller object that refuses a write
// keeps its old value.
//
// The read is linear in the size of the model: one lookup and one Invoke
// per property, and a dictionary's lines in one Keys()/Items() call each.
// Not thread-safe; use on the caller's thread (single-threaded apartment).
#ifndef FOLIOSCOPE_COM_COM_MODEL_H_
#define FOLIOSCOPE_COM_COM_MODEL_H_

#include <windows.h>

#include <memory>

#include "model/source_model.h"

namespace folioscope::com {

namespace model_bridge {
class Binding;  // what WriteBack needs to reach the caller's objects
}

// One caller object read into the component's model: Caller<SourceProject>,
// Caller<SourceModule> or Caller<SourceMember>.
template <class Model>
class Caller {
 public:
  static std::unique_ptr<Caller> Read(IDispatch* object);
  ~Caller();
  Model& model() { return *model_; }
  void WriteBack();

 private:
  Caller();
  Model* model_ = nullptr;
  std::unique_ptr<Model> copy_;  // the model read late-bound; empty for our own objects
  std::unique_ptr<model_bridge::Binding> binding_;
};

using CallerProject = Caller<SourceProject>;
using CallerModule = Caller<SourceModule>;
using CallerMember = Caller<SourceMember>;

extern template class Caller<SourceProject>;
extern template class Caller<SourceModule>;
extern template class Caller<SourceMember>;

}  // namespace folioscope::com

#endif  // FOLIOSCOPE_COM_COM_MODEL_H_
