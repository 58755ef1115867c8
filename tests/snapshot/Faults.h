#pragma once

#include <boost/algorithm/string/replace.hpp>
#include <string>

#include "embedded/Host.h"

/// The part again and again with commas between, "#" being its number and "@" the next one.
inline std::string repeated(const std::string& part, std::size_t count) {
  std::string text;
  for (std::size_t number = 0; number < count; ++number) {
    const std::string made = boost::replace_all_copy(part, "#", std::to_string(number));
    text += (number > 0 ? "," : "") + boost::replace_all_copy(made, "@", std::to_string(number + 1));
  }
  return text;
}

/// Code and place ("code /place", or the code alone), and what else a fault says; all empty where there is none.
struct Fault {
  std::string shown, code, reason, file, what;
};

template <class Act>
Fault faultOf(Act act) {
  try {
    act();
  } catch (const embedded::SnapshotError& fault) {
    const std::string place = fault.pointer().empty() ? "" : " " + fault.pointer();
    return {fault.code() + place, fault.code(), fault.reason(), fault.file(), fault.what()};
  }
  return {};
}

inline Fault faultOfText(const std::string& text) {
  return faultOf([&] { embedded::readSnapshotText(text, "world.json"); });
}
