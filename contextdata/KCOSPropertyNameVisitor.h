#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/Enumeration.h"
#include "host/Members.h"
#include "host/Text.h"

/// Lists the names of the public, visible properties that a walk meets.
class KCOSPropertyNameVisitor : public kcos::COSVisitor<kcos::COSInterface*> {
 public:
  enum Selection : std::uint32_t { Constant = 0, NonConstant = 1, All = 2 };

  /// Appends to `names`, and the data type of each listed property to `dataTypes` unless that is null. An unknown
  /// selection lists nothing.
  KCOSPropertyNameVisitor(std::vector<std::u16string>* names, std::vector<kcos::COSDataTypePtr>* dataTypes,
                          std::uint32_t selection);

  void visit(kcos::COSInterface* member) override;

 private:
  bool isSelected(const kcos::COSPropInfo& property) const;

  std::vector<std::u16string>* names_;
  std::vector<kcos::COSDataTypePtr>* dataTypes_;
  fl::i18n::codecvt_ascii_to_ustring converter_;
  std::uint32_t selection_;
};
