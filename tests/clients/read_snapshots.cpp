// Reads a snapshot from each line of the input and answers the code of the error, or an empty line: many small
// snapshots take one process.

#include <iostream>
#include <string>

#include "embedded/Host.h"

int main() {
  for (std::string line; std::getline(std::cin, line);) {
    try {
      const embedded::Host host(embedded::readSnapshotText(line, "input"));
      std::cout << '\n';
    } catch (const embedded::SnapshotError& error) {
      std::cout << error.code() << '\n';
    }
  }
}
