// Loads a snapshot, runs statements in the session, and saves it. Statements that fail leave what they have done.
//   save_session FROM TO [STATEMENT...]

#include <cstdio>

#include "embedded/Host.h"
#include "host/Interpreter.h"
#include "host/Text.h"

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  try {
    const auto host = embedded::Host::load(argv[1]);
    const embedded::Activation active(*host);
    for (int at = 3; at < argc; ++at)
      inEvalExp(fl::i18n::to_ustring(argv[at]), 0, nullptr, false, Tamsix::orvo::EvalSource::Query);
    embedded::writeSnapshot(host->describe(), argv[2]);
    return 0;
  } catch (const embedded::SnapshotError& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
