#pragma once

// Which class a typed name means.
//
// A class name arrives as text, perhaps short and relying on the imports of the code around it. The class
// system works with resolved, interned names. A ResolvedClassID is the bridge: each way of making one decides
// how the text is resolved, and every other query takes the result as it is.
//
//   ResolvedClassID(u"lab.control.tune", u"Pump")          resolved as code of that function would be
//   ResolvedClassID::fromKnownResolvedClassID("lab.Pump")  taken as it stands, whether or not it exists
//   ResolvedClassID::fromLegacyString("lab.Pump")          the class of that name, which must exist
//
// A name that does not resolve, an empty one and one that begins with "." give the null identifier, for which
// every query returns what it returns for an unknown class. There is no default constructor: fromKnownResolvedClassID("") makes a
// null identifier.
//
// None of these operations runs Korval code.

#include <contextdata/Export.h>

#include <boost/exception/exception.hpp>
#include <cstdint>
#include <memory>
#include <string>

#include "host/Exceptions.h"
#include "host/Names.h"

class kxArray_tag;
struct Kfh_KORVAL_fn;

namespace KCOSContextData {

class ClassInfo;

/// A class identifier: one interned, component-qualified class name. A plain value, one pointer wide.
class CONTEXTDATA_API ResolvedClassID {
 public:
  /// Where the debugger is stopped.
  struct DebuggerFocus {
    /// The function or file; empty when there is no focus.
    std::u16string name;
    /// Two numbers that the debugger reports with it; nothing here reads them.
    std::int32_t first = 0;
    std::int32_t second = 0;
  };

  /// Thrown for a name that is not that of an existing, valid class. It carries no text: callers know the
  /// type.
  class CONTEXTDATA_API BadClassNameException : public foundation::core::except::IInternalException,
                                                public boost::exception {
   public:
    explicit BadClassNameException(std::string className);
    ~BadClassNameException() noexcept override;

    std::unique_ptr<foundation::core::except::IException> clone() const override;
    [[noreturn]] void rethrow() const override;

    /// The name that was given, as narrow text.
    std::string className;
  };

  /// The class of an object. For a value that is no class-system object, and for null, the null identifier.
  /// Every exception of the host propagates.
  explicit ResolvedClassID(const kxArray_tag* object);

  /// The class that `className` means in the function or file named `context`. Where the host knows no such
  /// function the scope is, in this order, that of the debugger's focus, the executing function, the first
  /// active scope that is eligible, or none.
  ///
  /// The null identifier: for an empty name, one that begins with ".", and one that does not resolve. With
  /// component-aware resolution off, and when the host fails to resolve: the name as typed. Converts with the
  /// general conversion. The interrupt propagates, and so does what the conversion of the name throws, and
  /// what interning the typed name throws after a failure; every other exception is swallowed.
  ResolvedClassID(const std::u16string& context, const std::u16string& className);

  /// The class that `className` means in the scope of a function, which may be null; no other scope is looked
  /// for. Results and exceptions are those of the form above, except that what reading the component switch,
  /// or interning while it is off, throws propagates.
  ResolvedClassID(const Kfh_KORVAL_fn* scope, const std::u16string& className);

  /// The identifier of a name that is resolved already; null for an empty one. Whether there is such a class
  /// is not asked. The UTF-16 form uses the ASCII conversion. Every exception of the host propagates.
  static ResolvedClassID fromKnownResolvedClassID(const std::string& name);
  static ResolvedClassID fromKnownResolvedClassID(const std::u16string& name);

  /// The own identifier of the existing, valid class of that name, which can differ from the name given. No
  /// scope plays a part. Throws BadClassNameException when there is no such class (also for an empty name) or
  /// when it fails its check. The UTF-16 form uses the ASCII conversion. Every exception of the host
  /// propagates.
  static ResolvedClassID fromLegacyString(const std::string& name);
  static ResolvedClassID fromLegacyString(const std::u16string& name);

  /// Is the name package-qualified already, as resolved names are? The UTF-16 form uses the ASCII conversion.
  /// Every exception of the host propagates.
  static bool isAlreadyResolved(const std::string& name);
  static bool isAlreadyResolved(const std::u16string& name);

  /// The name itself; empty for the null identifier. What the conversion throws propagates.
  std::u16string getComponentQualifiedName() const;

  /// The name by which users know the class; empty for the null identifier. Every exception of the host
  /// propagates.
  std::u16string getNonComponentQualifiedName() const;

  /// Where the debugger is stopped now; an empty record when it is not stopped or cannot be reached. Every
  /// exception of the host propagates.
  static DebuggerFocus GetDebuggerFocus();

  /// The identifier as the class system takes it.
  operator const kcos::COSInternedName&() const noexcept { return id; }

 private:
  friend class ClassInfo;
  explicit ResolvedClassID(const kcos::COSInternedName& name) noexcept : id(name) {}

  kcos::COSInternedName id;
};

static_assert(sizeof(ResolvedClassID) == sizeof(void*));

}  // namespace KCOSContextData
