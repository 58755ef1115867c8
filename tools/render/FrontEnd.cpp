#include "tools/render/FrontEnd.h"

#include <algorithm>
#include <boost/algorithm/string/join.hpp>
#include <vector>

#include "host/Members.h"
#include "tools/render/Text.h"

namespace tools {

std::string kindOf(const frontend::Candidate& candidate) {
  std::string kind = nameOf(candidate.kind);
  std::ranges::replace(kind, '-', ' ');
  return candidate.declaringClass.empty() ? kind : kind + " of " + printable(candidate.declaringClass);
}

std::string detailsOf(const frontend::Candidate& candidate) {
  std::vector<std::string> parts;
  const std::string type = printable(candidate.type);
  const std::string size = printable(candidate.size);
  if (!type.empty() || !size.empty())
    parts.push_back(size + (size.empty() || type.empty() ? "" : " ") + type);
  // Public goes without saying, but of what everybody may write and only some may read.
  if (candidate.access.value_or(kcos::PublicAccess) != kcos::PublicAccess) {
    const bool isForWriting = candidate.writeAccess == kcos::PublicAccess;
    const std::string word = accessWord(*candidate.access);
    parts.push_back(isForWriting ? "public to write, " + word + " to read" : word);
  }
  // Where the kind does not say so already.
  if (candidate.isConstant && candidate.kind != frontend::Kind::Constant) parts.push_back("constant");
  if (candidate.isHidden) parts.push_back("hidden");
  const bool isRead =
      candidate.kind == frontend::Kind::Property || candidate.kind == frontend::Kind::Constant;
  if (candidate.readRunsCode && isRead) parts.push_back("reading runs code");
  return boost::algorithm::join(parts, ", ");
}

std::string noticeOf(const frontend::Outcome& outcome) {
  if (outcome.status == frontend::Status::Complete) return {};
  const std::string status = nameOf(outcome.status);
  const std::string reason = printable(outcome.reason);
  // Some reasons only repeat the status.
  return reason.empty() || reason == status ? status : status + ": " + reason;
}

std::string textOf(const frontend::Completion& completion) {
  std::vector<std::vector<std::string>> rows;
  for (const frontend::Candidate& candidate : completion.candidates) {
    rows.push_back({printable(candidate.label), kindOf(candidate), detailsOf(candidate)});
  }
  return tableOf(rows);
}

std::string textOf(const frontend::Explanation& explanation) {
  std::vector<std::vector<std::string>> rows;
  for (const frontend::Reason& reason : explanation.reasons) {
    rows.push_back({nameOf(reason.rule), printable(reason.detail)});
  }
  return printable(explanation.name) + (explanation.isOffered ? " is offered\n" : " is not offered\n") +
         tableOf(rows);
}

}  // namespace tools
