#pragma once

// Answers of the front end: in words for people, and as JSON.

#include <string>

#include "frontend/Explanation.h"
#include "tools/render/Json.h"

namespace tools {

/// "property of lab.Pump", "variable", ...
std::string kindOf(const frontend::Candidate& candidate);
/// "1x1 double, private, reading runs code"
std::string detailsOf(const frontend::Candidate& candidate);
/// What people are told of an outcome that is not complete; or nothing.
std::string noticeOf(const frontend::Outcome& outcome);

/// For people, whole lines.
std::string textOf(const frontend::Completion& completion);
std::string textOf(const frontend::Explanation& explanation);

// For programs: in Json.cpp.

Json jsonOf(const frontend::Explanation& explanation);
std::string jsonLineOf(const frontend::Completion& completion);
std::string jsonLineOf(const frontend::Explanation& explanation);

}  // namespace tools
