#pragma once

// The rules of what a class offers, over plain data: written as they are stated, and slow.

#include <set>
#include <string>
#include <vector>

#include "embedded/Description.h"

namespace oracle {

using Levels = std::vector<int>;

/// A query, and on whose behalf it is made: a class of the world, or -1 for nobody.
struct Question {
  Levels levels = {0};
  Levels kinds = {0, 1};
  int accessing = -1;
  int context = 3;
  bool constructors = false;
  bool operators = false;
  bool includeHidden = false;
};

/// Answers for the class at that place of the world; superclasses are written by their names. Each answer is "name" for a
/// property and "name@class", with "!" after a static one, for a method.
std::vector<std::string> properties(const embedded::Description& world, std::size_t at,
                                    const Question& question);
std::vector<std::string> methods(const embedded::Description& world, std::size_t at,
                                 const Question& question);

}  // namespace oracle
