#pragma once

// Collects the methods that one class itself defines, under the options of one query.

#include <contextdata/Export.h>
#include <contextdata/KCOSContextData/MethodInfo.h>
#include <contextdata/KCOSContextData/PropertyVisitorMutable.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/Enumeration.h"
#include "host/Members.h"
#include "host/Names.h"

namespace KCOSContextData {

/// Part of a ClassInfo, which has the class system walk the class with it. Slot order: the destructor, then
/// the two visits. A visit appends one record or none; what the class system throws propagates. No Korval
/// code runs.
class CONTEXTDATA_API MethodVisitorMutable : public kcos::COSVisitor<kcos::COSInterface*> {
 public:
  explicit MethodVisitorMutable(const ClassInfo* owner);
  ~MethodVisitorMutable() override;

  /// Forgets the collected records, keeps the options.
  void clear();
  /// Forgets the collected records and takes new options.
  void clear(const MethodInfo::GetOptions& options);

  void visit(kcos::COSInterface* member) override;
  virtual void visit(kcos::COSInterfacePtr member, kcos::COSMethodInfo* method);

  /// Does the method grant access to the accessing class or to one that it derives from?
  bool hasAccessingClass(kcos::COSMethodInfo* method) const;

  const ClassInfo* owner;
  std::vector<std::int32_t> access;
  const ClassInfo* accessingClass;
  MethodInfo::GetContext context;
  bool includeConstructors;
  bool includeOperatorOverloads;
  bool includeHidden;
  /// In visiting order.
  std::vector<MethodInfo> methods;
  /// Filled only while hidden methods are not included like others. Hidden methods come here whatever they are
  /// called and wherever the query is for, as long as they are accessible.
  std::vector<MethodInfo> hiddenMethods;
  /// A visit makes no record; it sets `isAccepted` when it would make one, and `isHiddenAccepted` when that would be among
  /// the hidden ones. Neither is ever reset. For whoever needs the records of few methods only.
  bool onlyDecides = false;
  bool isAccepted = false;
  bool isHiddenAccepted = false;

 private:
  void collect(kcos::COSMethodInfo& method, const char* name);

  /// The owner's name within its namespace; each form is made when the first method of a walk needs it.
  struct OwnerName {
    std::string narrow;
    /// Whether its methods take part in the query's position.
    std::optional<bool> takesPart = {};
    std::optional<std::u16string> wide = {};
  };

  /// What one walk finds out once for all its methods.
  struct Walk {
    DefiningClasses met = {};
    std::optional<OwnerName> ownerName = {};
  };

  Walk walk_;
  /// The name of the method that is visited: one text for all, because many are longer than a string holds in itself.
  std::string name_;
};

}  // namespace KCOSContextData
