#pragma once

// The subcommands, and what each is told. How that is typed is known to main.cpp alone. Each returns the exit code.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "frontend/Request.h"

namespace tools {

/// Milliseconds after which whoever says nothing else gets an answer: a session of others may be made to take for ever.
inline constexpr std::size_t defaultPatience = 10'000;

/// A cursor in a line of code, whose code it is, and how far an answer may go.
struct CursorOptions {
  std::string snapshot;
  std::string text;
  /// Characters (Unicode code points) before the cursor; the end of the text when it is not given.
  std::optional<std::size_t> cursor;
  std::string function;
  std::string className;
  frontend::CodePolicy policy = frontend::CodePolicy::StoredValues;
  std::size_t limit = 200;
  /// 0: as long as it takes.
  std::size_t milliseconds = defaultPatience;
  bool hidden = false;
  bool json = false;
};

/// What can be typed at the cursor.
int runComplete(const CursorOptions& options);

/// Why the name is offered at the cursor, or is not.
int runExplain(const CursorOptions& options, const std::string& name);

struct DescribeOptions {
  std::string className;
  std::string snapshot;
  bool json = false;
  bool dot = false;
  /// Words for levels, or "all".
  std::vector<std::string> access{"public"};
  bool hidden = false;
  /// How long to look; 0: as long as it takes.
  std::size_t milliseconds = 10'000;
};

/// What a class is and offers.
int runDescribe(const DescribeOptions& options);

struct EvalOptions {
  std::string expression;
  /// A script instead of the expression.
  std::string file;
  std::string snapshot;
  bool json = false;
};

/// Runs code in the session.
int runEval(const EvalOptions& options);

struct PromptOptions {
  std::string snapshot;
  frontend::CodePolicy policy = frontend::CodePolicy::StoredValues;
  std::size_t limit = 200;
  std::size_t milliseconds = 300;
  std::string history;
  bool noHistory = false;
};

/// A session to work in, line by line.
int runPrompt(const PromptOptions& options);

struct QueryOptions {
  std::string snapshot;
  bool trace = false;
  bool noCode = false;
  /// For each request; 0: as long as it takes.
  std::size_t milliseconds = defaultPatience;
  /// Lists the operations instead.
  bool ops = false;
};

/// Operations of the library, one request per line.
int runQuery(const QueryOptions& options);

/// A language server on standard input and output.
int runServe(const std::string& snapshot);

// Complete and explain are in CompleteExplain.cpp, each of the others in the source of its name.

}  // namespace tools
