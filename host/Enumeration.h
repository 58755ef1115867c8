#pragma once

// How the class system hands out sequences: forward, one pass, owned by whoever asked.

#include <memory>
#include <utility>

#include "host/Exceptions.h"
#include "host/Export.h"

namespace kcos {

class COSInterface;
class COSInterfacePtr;

/// What a host implements for one sequence. Both operations may throw. Nobody asks for its dynamic type, so
/// each side may have its own copy of what the compiler makes of the template.
template <class T>
class COSEnumerator {
 public:
  virtual ~COSEnumerator() = default;
  virtual bool hasMoreElements() = 0;
  /// Raises ENoElements when there is none.
  virtual T nextElement() = 0;
};

/// The handle of one sequence, perhaps of none at all. Made anew by each call that returns one; elements are
/// borrowed from the class system, the handle itself belongs to the caller.
template <class T>
class COSEnumeration {
 public:
  /// No sequence: empty, and without elements.
  COSEnumeration() = default;
  explicit COSEnumeration(std::unique_ptr<COSEnumerator<T>> enumerator)
      : enumerator_(std::move(enumerator)) {}

  /// Is there no sequence at all? (One without elements is not empty in this sense.)
  bool isEmpty() const noexcept { return enumerator_ == nullptr; }

  bool hasMoreElements() { return enumerator_ != nullptr && enumerator_->hasMoreElements(); }

  /// The next element; raises ENoElements when there is no sequence.
  T nextElement() {
    if (enumerator_ == nullptr) throw ENoElements();
    return enumerator_->nextElement();
  }

 private:
  std::unique_ptr<COSEnumerator<T>> enumerator_;
};

/// A pass over members, classes or namespaces.
using COSIterator = COSEnumeration<COSInterfacePtr>;

/// Called back by a member walk of the class system, once per member. Slot order: the destructor, then
/// `visit`.
template <class T>
class COSVisitor {
 public:
  virtual ~COSVisitor();
  virtual void visit(T element) = 0;
};

extern template class KORVAL_HOST_API COSVisitor<COSInterface*>;

}  // namespace kcos
