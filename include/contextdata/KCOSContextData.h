#pragma once

// The namespace KCOSContextData: what completion asks about classes.
//
//   using KCOSContextData::ResolvedClassID;
//   std::vector<std::u16string> names;
//   bool flag = false;
//   KCOSContextData::getClassPropertyNames(ResolvedClassID(u"lab.control.tune", u"Pump"), names, flag);
//   // names: Flow, Mode, Unit, ... of the class that "Pump" means in lab.control.tune (of examples/lab.json)
//
// Rules that hold for all of it, except for the completion tables, which any thread may ask:
// - Queries are synchronous and run on the interpreter thread, the only one on which the host may be asked.
//   None of them locks anything.
// - Names are UTF-16 at this interface and narrow inside the class system. An operation says which of the
//   host's two conversions it uses where they matter.
// - An argument may live in the result of its operation, as names[0] in names does.
// - Failures are answers. Lists are appended to and never cleared. Which exceptions propagate is said per
//   operation; "the interrupt" is Tamsix::System::InterruptException or anything derived from it.
// - Class objects belong to the class system, results to the caller.

#include <contextdata/KCOSContextData/ArgumentBlockMetadata.h>
#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSContextData/CompletionTables.h>
#include <contextdata/KCOSContextData/MemberNames.h>
#include <contextdata/KCOSContextData/Namespaces.h>
#include <contextdata/KCOSContextData/ResolvedClassID.h>
