#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "embedded/model/ClassSystem.h"
#include "host/Dispatcher.h"

/// A class that takes part in the precedence of classes.
class KclassIdentifier {
 public:
  /// The classes over which it takes precedence.
  std::vector<const KclassIdentifier*> over;
};

namespace embedded {

/// Which class takes precedence over which: what a description says of a class, and nothing that follows from it.
class ObjectSystem final : public KobjectSystem {
 public:
  ObjectSystem(const Description& description, const ClassSystem& classes);

  const KclassIdentifier* getClassIdentifier(const std::string& className) const override;
  bool precedes(const KclassIdentifier* first, const KclassIdentifier* second) const override;

 private:
  /// A class has several names and one identifier.
  const std::string& key(const std::string& className) const;

  const ClassSystem& classes_;
  std::unordered_map<std::string, KclassIdentifier> identifiers_;
};

}  // namespace embedded
