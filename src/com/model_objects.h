// Script objects over the component's own source model: the project that
// CProjektReader returns, and everything reachable from it (components,
// modules, members, parameters, their collections and code-line
// dictionaries).
//
// They are plain late-bound objects (IDispatch with names resolved from a
// table, no type information), with exactly the property names of the
// caller-side model in docs/com.md, so a script treats them like its own:
// - project, component, module, member and parameter properties are read
//   and written by name; object properties (Components, Modules, Members,
//   Parameters, CodeLines) are read only;
// - collections have Count, Item(index or key) as default member (1-based,
//   keys without regard to case) and For Each;
// - CodeLines behaves as a Scripting.Dictionary: Count, Item get (an absent
//   key is added), Item put, Add, Exists, Keys(), Items(), RemoveAll and For
//   Each over the keys; whole-number keys are Long keys.
// Every object keeps the whole model alive; children are made on each
// access, so two reads of one property are equal but not the same object.
//
// The source-model bridge (com_model.h) recognises these objects (through
// the server's private ComObjectRoot interface) and uses their C++ nodes in
// place.
#ifndef FOLIOSCOPE_COM_MODEL_OBJECTS_H_
#define FOLIOSCOPE_COM_MODEL_OBJECTS_H_

#include <windows.h>

#include <memory>

#include "model/source_model.h"

namespace folioscope::com {

// The C++ node behind one of our own script objects of that kind, or null
// for any other object. The node lives as long as the caller's reference.
SourceProject* OwnProjectOf(IDispatch* object);
SourceModule* OwnModuleOf(IDispatch* object);
SourceMember* OwnMemberOf(IDispatch* object);

// A new script object for `project` (one reference, owned by the caller).
IDispatch* NewProjectObject(std::shared_ptr<SourceProject> project);

}  // namespace folioscope::com

#endif  // FOLIOSCOPE_COM_MODEL_OBJECTS_H_
