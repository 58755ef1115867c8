#pragma once

// Visitors that list names of members only, without building records.

#include <cstdint>
#include <string>
#include <vector>

#include "contextdata/internal/NameTable.h"
#include "host/Classes.h"
#include "host/Enumeration.h"
#include "host/Text.h"

/// Lists the names of the public, visible methods that a walk meets, without constructors. The first method
/// of a name, constructors aside, decides for the name, whether it is listed or not.
class KCOSMethodNameVisitor : public kcos::COSVisitor<kcos::COSInterface*> {
 public:
  /// Any other selection is taken for NonStatic.
  enum Selection : std::uint32_t { Static = 0, NonStatic = 1, All = 2 };

  KCOSMethodNameVisitor(std::vector<std::u16string>* names, std::uint32_t selection);

  void visit(kcos::COSInterface* member) override;

 private:
  std::string_view converted(const std::string& name);

  std::vector<std::u16string>* names_;
  NameTable seen_;
  /// The class of the method that was visited last, and what its constructors are called.
  const kcos::COSClass* definingClass_ = nullptr;
  std::string_view constructorName_;
  /// The name that is visited: one text for all, because most of them are longer than a string holds in itself.
  std::string name_;
  std::string listed_;
  std::uint32_t selection_;
  fl::i18n::codecvt_ascii_to_ustring converter_;
};

/// Appends the names of a class's methods; nothing for null and for a class that fails its check. What the
/// walk throws propagates.
void appendMethodNames(kcos::COSClass* cls, std::vector<std::u16string>& names, std::uint32_t selection);

/// Lists the names of the public, visible properties that a walk meets.
class KCOSPropertyNameVisitor : public kcos::COSVisitor<kcos::COSInterface*> {
 public:
  enum Selection : std::uint32_t { Constant = 0, NonConstant = 1, All = 2 };

  /// Appends to `names`, and the data type of each listed property to `dataTypes` unless that is null. An
  /// unknown selection lists nothing.
  KCOSPropertyNameVisitor(std::vector<std::u16string>* names, std::vector<kcos::COSDataTypePtr>* dataTypes,
                          std::uint32_t selection);

  void visit(kcos::COSInterface* member) override;

 private:
  bool isSelected(const kcos::COSPropInfo& property) const;

  std::vector<std::u16string>* names_;
  std::vector<kcos::COSDataTypePtr>* dataTypes_;
  /// The name that is visited: one text for all, because most of them are longer than a string holds in itself.
  std::string name_;
  fl::i18n::codecvt_ascii_to_ustring converter_;
  std::uint32_t selection_;
};
