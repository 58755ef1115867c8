#pragma once

#include "embedded/Host.h"

namespace embedded {

// What the audit counts, for all values of the process.
void countNewValue() noexcept;
void countDestroyedValue() noexcept;
void countAddedReference() noexcept;
void countDroppedReference() noexcept;

ReferenceAudit referenceAudit() noexcept;

}  // namespace embedded
