#pragma once

#include <vector>

#include "embedded/model/Element.h"

namespace embedded {

class Namespace final : public Element, public kcos::COSNamespace {
 public:
  using Elements = std::vector<kcos::COSInterfacePtr>;

  explicit Namespace(kcos::COSInternedName dottedName);

  kcos::COSNamespace* asNamespace() noexcept override { return this; }

  const char* getSimpleName() const override;
  const char* getDottedName() const override;
  kcos::COSIterator getFunctions() const override;
  kcos::COSIterator getClasses() const override;
  kcos::COSIterator getNamespaces() const override;

  void addFunction(kcos::COSInterface& function) { functions_.emplace_back(&function); }
  void addClass(kcos::COSInterface& oneClass) { classes_.emplace_back(&oneClass); }
  void addNamespace(kcos::COSInterface& inner) { namespaces_.emplace_back(&inner); }

 private:
  kcos::COSInternedName dottedName_;
  kcos::COSInternedName simpleName_;
  Elements functions_;
  Elements classes_;
  Elements namespaces_;
};

}  // namespace embedded
