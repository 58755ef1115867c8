#pragma once

#include <boost/locale/encoding_utf.hpp>
#include <concepts>
#include <sstream>
#include <string>
#include <vector>

/// UTF-8 as UTF-16 and back, without asking the host.
inline std::u16string wide(const std::string& text) {
  return boost::locale::conv::utf_to_utf<char16_t>(text);
}
inline std::string narrow(const std::u16string& text) { return boost::locale::conv::utf_to_utf<char>(text); }

/// UTF-16 as UTF-8 for messages and comparisons; what is not ASCII is shown by its code unit.
inline std::string shown(const std::u16string& text) {
  std::ostringstream out;
  for (const char16_t unit : text) {
    if (unit < 0x80)
      out << static_cast<char>(unit);
    else
      out << "<" << std::hex << static_cast<unsigned>(unit) << std::dec << ">";
  }
  return out.str();
}

/// Of a truth value only: pointers do not become one.
inline std::string shown(std::same_as<bool> auto value) { return value ? "true" : "false"; }

template <class Names>
std::string shownList(const Names& names) {
  std::string all;
  for (const auto& name : names) all += (all.empty() ? "" : " ") + shown(name);
  return all;
}

/// The names of members, in their order.
template <class Member>
std::string namesOf(const std::vector<Member>& members) {
  std::string all;
  for (const Member& member : members) all += (all.empty() ? "" : " ") + shown(member.name);
  return all;
}
