#pragma once

#include "tests/workspace/Workspace.h"

namespace workspace {

/// A row of queries.txt.
struct Row {
  std::string text;
  std::string query;
  /// Empty: the row is about the answer itself.
  std::string hostOperation;
  std::vector<std::string> arguments;
  std::string answer;
};

std::vector<Row> rowsOfQueries();

/// The value that the row is about; null for a row about something else.
Value valueFor(const Row& row);

/// What the row asks for. Code runs where the query may run some; elsewhere it ends the process.
std::string answerTo(embedded::Host& host, const Row& row, const Value& value);

/// The names of all queries that rows can ask.
std::vector<std::string> queryNames();

}  // namespace workspace
