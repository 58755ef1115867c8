#pragma once

// The operations of which the signature does not say enough: constructors, visitors, frames, and results in slots.

#include "tools/query/Operation.h"

namespace tools::query {

void handleIdentifier(Question& question);
void handleRecord(Question& question);

// The visitors are driven by hand: over the one member that a request names, in the visitor of a record.
void handlePropertyVisitor(Question& question);
void handleMethodVisitor(Question& question);
void handleVisit(Question& question);
void handleClear(Question& question);
void handleHasAccessingClass(Question& question);

void handleAdoption(Question& question);
void handleEvaluation(Question& question);

// Frames live for the length of a request, which tells how deep the stack is before, meanwhile and afterwards.
void handlePlainFrame(Question& question);
void handleFunctionFrame(Question& question);
void handleAccept(Question& question);

/// What the code that ran last failed with: no operation of the library tells it.
void handleCodeFailure(Question& question);

}  // namespace tools::query
