#include <contextdata/KCOSContextData/ClassInfo.h>
#include <contextdata/KCOSIntrospection.h>

#include <algorithm>
#include <iterator>
#include <typeinfo>
#include <utility>

#include "contextdata/internal/ClassRules.h"
#include "contextdata/internal/NameTable.h"
#include "host/Classes.h"
#include "host/Exceptions.h"
#include "host/Text.h"

namespace KCOSContextData {

namespace {

using Superclasses = std::vector<std::shared_ptr<ClassInfo>>;
using Properties = std::vector<PropertyInfo>;
using Methods = std::vector<MethodInfo>;
using NameSet = std::set<std::u16string>;

void appendWithAncestors(const ClassStructureInfo& structure, std::vector<std::u16string>& names) {
  if (structure.name.empty()) return;
  names.push_back(structure.name);
  // Not made unique: an ancestor is named once per way to it, as the tree has it.
  for (const auto& superclass : structure.superclasses) appendWithAncestors(superclass->structure, names);
}

/// The access levels with which the superclasses are asked: without the first private one. Only that one:
/// whoever lists the level twice means the superclasses' private members too.
void dropFirstPrivateLevel(std::vector<std::int32_t>& levels) {
  const auto first = std::ranges::find(levels, std::int32_t{kcos::PrivateAccess});
  if (first != levels.end()) levels.erase(first);
}

/// Reads a class's own properties into the record's visitor.
void collectProperties(const ClassInfo& record, const PropertyInfo::GetOptions& options) {
  // First, so that a class without properties of its own keeps none of the query before.
  record.propertyVisitor.clear(options);
  kcos::COSClass* cls = kcos::COSClass::getClass(record.classId);
  if (!isValid(cls) || cls->isEnumeration()) return;
  cls->visitProperties(record.propertyVisitor);
}

void collectMethods(const ClassInfo& record) {
  kcos::COSClass* cls = kcos::COSClass::getClass(record.classId);
  if (!isValid(cls) || cls->isEnumeration()) return;
  cls->visitMethods(record.methodVisitor);
}

/// Is the record's query the one of this library? Then a walk over its tree can go on in one list.
bool isPlain(const ClassInfo& record) { return typeid(record) == typeid(ClassInfo); }

/// The names that the classes below the one that is being read keep from being inherited.
class KeptNames {
 public:
  using Numbers = std::vector<std::uint32_t>;

  template <class Record>
  bool contain(const Record& record) {
    return !kept_.empty() && kept_[numberOf(record.name)] != 0;
  }

  /// Removes the records whose names are kept.
  template <class Record>
  void drop(std::vector<Record>& records) {
    if (!kept_.empty()) std::erase_if(records, [&](const Record& record) { return contain(record); });
  }

  /// The same, and adds the numbers of the other records' names.
  template <class Record>
  void drop(std::vector<Record>& records, Numbers& others) {
    others.reserve(others.size() + records.size());
    std::erase_if(records, [&](const Record& record) {
      const std::uint32_t number = numberOf(record.name);
      if (kept_[number] == 0) others.push_back(number);
      return kept_[number] != 0;
    });
  }

  template <class Record>
  void addNumbers(const std::vector<Record>& records, Numbers& numbers) {
    for (const Record& record : records) numbers.push_back(numberOf(record.name));
  }

  /// Keeps the names of a class for as long as its superclasses are read.
  class Scope {
   public:
    Scope(KeptNames& names, Numbers numbers) : names_(names), numbers_(std::move(numbers)) {
      // A name may be kept already, by a class below, which goes on to keep it afterwards.
      std::erase_if(numbers_,
                    [&](std::uint32_t number) { return std::exchange(names_.kept_[number], 1) != 0; });
    }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
    ~Scope() {
      for (const std::uint32_t number : numbers_) names_.kept_[number] = 0;
    }

   private:
    KeptNames& names_;
    Numbers numbers_;
  };

 private:
  std::uint32_t numberOf(const std::u16string& name) {
    const std::uint32_t number = table_.numberOf(name);
    if (number == kept_.size()) kept_.push_back(0);
    return number;
  }

  NameTable table_;
  /// By number.
  std::vector<char> kept_;
};

/// Room for that many more at least; where a list grows class by class, for more than that.
template <class Record>
void makeRoom(std::vector<Record>& all, std::size_t more) {
  if (all.capacity() - all.size() < more) all.reserve(std::max(2 * all.capacity(), all.size() + more));
}

/// One query for properties over a record and its tree: all records go into one list, so that the price of a class does not
/// grow with what it inherits.
class PropertyQuery {
 public:
  void add(const ClassInfo& record, const PropertyInfo::GetOptions& options) {
    try {
      collectProperties(record, options);
    } catch (const Tamsix::System::InterruptException&) {
      throw;
    } catch (...) {
      return;
    }
    Properties& own = record.propertyVisitor.properties;
    if (record.structure.superclasses.empty()) {
      kept_.drop(own);
    } else {
      KeptNames::Numbers names;
      kept_.drop(own, names);
      // Hidden own properties replace inherited ones too, although they are not listed themselves.
      kept_.addNumbers(record.propertyVisitor.hiddenProperties, names);
      const KeptNames::Scope scope(kept_, std::move(names));
      // After the own ones: when these cannot be read, the superclasses are not asked at all.
      addSuperclasses(record, options);
    }
    append(own);
    own.clear();  // moved from: no half-empty records are left where a visitor's lists can be seen
  }

  void addSuperclasses(const ClassInfo& record, const PropertyInfo::GetOptions& options) {
    PropertyInfo::GetOptions inheritedOptions = options;
    dropFirstPrivateLevel(inheritedOptions.accessLevels);
    for (const auto& superclass : record.structure.superclasses) addSuperclass(*superclass, inheritedOptions);
  }

  Properties take() { return std::move(all_); }

 private:
  /// A superclass that cannot answer adds nothing.
  void addSuperclass(const ClassInfo& superclass, const PropertyInfo::GetOptions& options) {
    const auto before = static_cast<std::ptrdiff_t>(all_.size());
    try {
      if (isPlain(superclass)) return add(superclass, options);
      Properties answer = superclass.getProperties(options);
      kept_.drop(answer);
      append(answer);
    } catch (const Tamsix::System::InterruptException&) {
      throw;
    } catch (...) {
      all_.erase(all_.begin() + before, all_.end());
    }
  }

  void append(Properties& more) {
    makeRoom(all_, more.size());
    std::ranges::move(more, std::back_inserter(all_));
  }

  KeptNames kept_;
  Properties all_;
};

/// Classes that derive from this one offer no methods after the dot.
constexpr const char16_t* noDotMethodsMixin =
    u"korval.mixin.internal.indexing.DisallowCompletionOfDotMethodNames";

/// The same for methods, with rules of their own.
class MethodQuery {
 public:
  void add(const ClassInfo& record, const MethodInfo::GetOptions& options) {
    // Before anything is decided: the visitor's lists can be seen, and are those of this query also when it is
    // refused.
    record.methodVisitor.clear(options);
    if (record.classId.isNull() || !isClassToCompleteMethodsFor(record.classId, options.context)) return;
    if (options.context == MethodInfo::GetContext::AfterDot && record.isA(noDotMethodsMixin)) return;
    try {
      collectMethods(record);
    } catch (const Tamsix::System::InterruptException&) {
      throw;
    } catch (...) {
      return;
    }
    {
      // Only hidden ones mask; a visible one stands beside those of its name.
      KeptNames::Numbers names;
      kept_.addNumbers(record.methodVisitor.hiddenMethods, names);
      const KeptNames::Scope scope(kept_, std::move(names));
      addSuperclasses(record, options);
    }
    // Unlike the properties, the methods stay in the visitor, whose lists can be seen after a query.
    append(record.methodVisitor.methods);
  }

  void addSuperclasses(const ClassInfo& record, const MethodInfo::GetOptions& options) {
    MethodInfo::GetOptions inheritedOptions = options;
    dropFirstPrivateLevel(inheritedOptions.access);
    for (const auto& superclass : record.structure.superclasses) {
      // No handler as for properties: what the query of a specialised superclass throws propagates.
      if (isPlain(*superclass))
        add(*superclass, inheritedOptions);
      else
        append(superclass->getMethods(inheritedOptions));
    }
  }

  Methods take() { return std::move(all_); }

 private:
  void append(const Methods& more) {
    makeRoom(all_, more.size());
    std::ranges::copy_if(more, std::back_inserter(all_),
                         [&](const MethodInfo& method) { return !kept_.contain(method); });
  }

  KeptNames kept_;
  Methods all_;
};

NameSet converted(const std::vector<std::string>& names) {
  static const fl::i18n::codecvt_ascii_to_ustring converter;
  NameSet all;
  for (const std::string& name : names) all.insert(fl::i18n::to_ustring(name, converter));
  return all;
}

AttributeSets ownAttributes(const kcos::COSClass& cls, bool argument) {
  AttributeSets own;
  own.attributeList1 = converted(cls.getAttributeNames1(argument));
  own.attributeList2 = converted(cls.getAttributeNames2(argument));
  own.attributeList3 = converted(cls.getAttributeNames3(argument));
  own.attributeList4 = converted(cls.getAttributeNames4(argument));
  return own;
}

void unite(AttributeSets& all, AttributeSets more) {
  all.attributeList1.merge(more.attributeList1);
  all.attributeList2.merge(more.attributeList2);
  all.attributeList3.merge(more.attributeList3);
  all.attributeList4.merge(more.attributeList4);
}

}  // namespace

std::vector<std::u16string> ClassStructureInfo::getSuperclasses() const {
  std::vector<std::u16string> names;
  appendWithAncestors(*this, names);
  return names;
}

Superclasses ClassInfo::readSuperclasses(const kcos::COSInternedName& classId) {
  Superclasses superclasses;
  const kcos::COSClass* cls = kcos::COSClass::getClass(classId);
  if (cls == nullptr) return superclasses;
  kcos::COSEnumeration<kcos::COSInternedName> names = cls->getSuperclasses();
  while (names.hasMoreElements()) {
    const kcos::COSClass* superclass = kcos::COSClass::getClass(names.nextElement());
    // A superclass that the class system does not know has nothing to hand down.
    if (superclass == nullptr) continue;
    // By its own identity: the class may be listed under a name that only stands for it.
    superclasses.push_back(std::make_shared<ClassInfo>(ResolvedClassID(superclass->getID())));
  }
  return superclasses;
}

/// All superclasses, or none when one of them cannot be read.
Superclasses ClassInfo::superclassesOrNone(const kcos::COSInternedName& classId) {
  try {
    return readSuperclasses(classId);
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    return {};
  }
}

// The visitors only keep the pointer to a record that is still being made; it is used by walks.
ClassInfo::ClassInfo(const ResolvedClassID& id) : classId(id), propertyVisitor(this), methodVisitor(this) {
  if (classId.isNull()) return;
  // Outside any handler: a record may lack its superclasses, but not its name.
  structure.name = fl::i18n::to_ustring(kcos::nameresolution::getUserVisibleClassName(classId));
  structure.superclasses = superclassesOrNone(classId);
}

ClassInfo::ClassInfo(const std::u16string& context, const std::u16string& className)
    : ClassInfo(ResolvedClassID(context, className)) {}

ClassInfo::ClassInfo(const kxArray_tag* value) : propertyVisitor(this), methodVisitor(this) {
  // Whether it is an object at all is asked first: of other values no class is looked up.
  if (value == nullptr || !omIsKCOS(value) || !KCOSIntrospection::isKCOSObject(value)) return;
  classId = ResolvedClassID(value);
  structure.name = fl::i18n::to_ustring(classId.text());
  structure.superclasses = superclassesOrNone(classId);
}

ClassInfo::~ClassInfo() = default;

// Loops, not algorithms: a tree may be ten thousand levels deep, and each level is a frame of the stack.
bool ClassInfo::isA(const std::u16string& className) const {
  if (className == structure.name) return true;
  for (const auto& superclass : structure.superclasses)
    if (superclass->isA(className)) return true;
  return false;
}

bool ClassInfo::isA(kcos::COSInternedName identity) const {
  if (identity == classId) return true;
  for (const auto& superclass : structure.superclasses)
    if (superclass->isA(identity)) return true;
  return false;
}

const std::vector<std::int32_t>& ClassInfo::getDefaultAccessibility() const {
  static const std::vector<std::int32_t> levels{kcos::PublicAccess};
  return levels;
}

std::vector<PropertyInfo> ClassInfo::getProperties(const PropertyInfo::GetOptions& options) const {
  PropertyQuery query;
  query.add(*this, options);
  return query.take();
}

std::vector<PropertyInfo> ClassInfo::getProperties(const std::vector<std::int32_t>& accessLevels,
                                                   const ClassInfo* accessingClass) const {
  PropertyInfo::GetOptions options;
  options.accessLevels = accessLevels;
  options.accessingClass = accessingClass;
  return getProperties(options);
}

std::vector<PropertyInfo> ClassInfo::getPropertiesOfSuperclasses(
    const PropertyInfo::GetOptions& options) const {
  PropertyQuery query;
  query.addSuperclasses(*this, options);
  return query.take();
}

std::vector<MethodInfo> ClassInfo::getMethods(const MethodInfo::GetOptions& options) const {
  MethodQuery query;
  query.add(*this, options);
  return query.take();
}

std::vector<MethodInfo> ClassInfo::getMethods(const std::vector<std::int32_t>& access,
                                              const MethodInfo::GetContext& context,
                                              const ClassInfo* accessingClass) const {
  MethodInfo::GetOptions options;
  options.access = access;
  options.context = context;
  options.accessingClass = accessingClass;
  return getMethods(options);
}

std::vector<MethodInfo> ClassInfo::getMethodsOfSuperclasses(const MethodInfo::GetOptions& options) const {
  MethodQuery query;
  query.addSuperclasses(*this, options);
  return query.take();
}

AttributeSets ClassInfo::getAttributes(bool argument) const {
  AttributeSets all;
  if (structure.name.empty()) return all;
  try {
    const kcos::COSClass* cls = kcos::COSClass::getClass(classId);
    // No check of the class here: attributes are listed of classes that fail it, too.
    if (cls != nullptr) all = ownAttributes(*cls, argument);
    // Virtual, so a specialised superclass may throw here; then the sets that were read are dropped as well.
    for (const auto& superclass : structure.superclasses) unite(all, superclass->getAttributes(argument));
    return all;
  } catch (const Tamsix::System::InterruptException&) {
    throw;
  } catch (...) {
    return {};
  }
}

}  // namespace KCOSContextData
