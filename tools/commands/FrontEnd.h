#pragma once

// What the subcommands on top of the front end share: their options, and its answers as text and as JSON.

#include <CLI/CLI.hpp>
#include <cstddef>
#include <optional>
#include <string>

#include "frontend/Completion.h"
#include "tools/render/JsonText.h"

namespace tools {

/// A place in a session, and how to look at it.
struct FrontEndOptions {
  std::string snapshot;
  std::string text;
  /// Characters (Unicode code points) before the cursor; the end of the text when it is not given.
  std::optional<std::size_t> cursor;
  std::string function;
  std::string className;
  std::string policy = "stored-values";
  std::size_t limit = 200;
  std::size_t milliseconds = 0;
  bool hidden = false;
  bool json = false;
};

void addFrontEndOptions(CLI::App& command, FrontEndOptions& options);
/// One of them alone: --code.
void addPolicyOption(CLI::App& command, FrontEndOptions& options);

/// The text and the cursor as the front end takes them. Throws AnswerError for a text that is no UTF-8; `command` begins
/// its code.
struct Line {
  std::u16string text;
  std::size_t cursor = 0;
};
Line lineOf(const FrontEndOptions& options, const std::string& command);
frontend::Scope placeOf(const FrontEndOptions& options);
frontend::Options optionsOf(const FrontEndOptions& options);

Json jsonOf(const frontend::Outcome& outcome);
Json jsonOf(const frontend::Candidate& candidate);

/// "property of lab.Pump", "variable", ...
std::string kindOf(const frontend::Candidate& candidate);
/// "1x1 double, private, reading runs code"
std::string detailsOf(const frontend::Candidate& candidate);
std::string wordOfAccess(std::int32_t level);

/// What people are told of an outcome that is not complete; or nothing.
std::string noticeOf(const frontend::Outcome& outcome);

}  // namespace tools
