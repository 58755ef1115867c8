#include "tests/support/State.h"

#include <gtest/gtest.h>

#include "host/Arrays.h"
#include "host/Dispatcher.h"
#include "host/Exceptions.h"
#include "host/Streams.h"
#include "tests/support/Text.h"

namespace {

using services::io::KLStream;

/// A mode that no query sets.
constexpr auto ownMode = static_cast<matrix::ErrorMode>(0x5A5AU);

/// Takes away the sinks that are left, and counts them.
int sinksLeftOn(KLStream& stream) {
  for (int count = 0;; ++count) {
    try {
      stream.pop();
    } catch (const foundation::core::except::Exception&) {
      return count;
    }
  }
}

}  // namespace

State::State(embedded::Host& host, const std::string& hostOperation)
    : host_(host),
      modeMayStay_(hostOperation.starts_with("matrix::") && hostOperation.ends_with("ErrorMode")),
      sinkMayStay_(hostOperation.ends_with("KLStream::pop")),
      mayPrint_(sinkMayStay_ || hostOperation.ends_with("KLStream::flush")) {
  matrix::setErrorMode(ownMode);
  host_.takeOutput();
  before_ = shown();
}

std::vector<std::string> State::shown() const {
  const embedded::ReferenceAudit audit = embedded::Host::references();
  std::vector<std::string> all{"references " + std::to_string(audit.added - audit.dropped),
                               "frames " + std::to_string(host_.frames().size())};
  const auto* folder = Kdispatcher::getDispatcher()->GetCurrentWorkingFolder();
  all.push_back("folder " + ::shown(folder->get().getLocation().text()));
  for (const std::string& name : host_.variableNames()) {
    std::ostringstream text;
    text << name << " " << host_.variable(name).get();
    all.push_back(text.str());
  }
  return all;
}

void State::expectUnchanged() const {
  EXPECT_EQ(before_, shown());
  const std::u16string printed = host_.takeOutput();
  EXPECT_TRUE(printed.empty() || mayPrint_) << ::shown(printed);
  for (KLStream* stream : {&KLStream::KLOut(), &KLStream::KLErr()}) {
    const int left = sinksLeftOn(*stream);
    EXPECT_TRUE(left == 0 || sinkMayStay_) << left << " sinks are left";
  }
  EXPECT_TRUE(matrix::getErrorMode() == ownMode || modeMayStay_) << "error mode";
  matrix::setErrorMode(ownMode);
}
