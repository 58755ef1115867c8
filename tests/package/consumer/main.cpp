// A client of the installed package: an exported header, a host header and the embedded host, by their installed names.

#include <contextdata/KCOSIntrospection.h>
#include <contextdata/Version.h>

#include <cstdio>

#include "embedded/Host.h"
#include "host/Exceptions.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  try {
    KCOSIntrospection::isKCOSNamespace(u"lab");
    std::puts("an answer without an active host");
    return 1;
  } catch (const foundation::core::except::Exception& notActive) {
    std::printf("without a host: %s\n", notActive.messageId().c_str());
  }
  auto host = embedded::Host::load(argv[1]);
  embedded::Activation active(*host);
  const bool pump = KCOSIntrospection::isKCOSClass(u"lab.Pump");
  const bool nothing = KCOSIntrospection::isKCOSClass(u"lab.Nothing");
  std::printf("lab.Pump: %s, lab.Nothing: %s\n", pump ? "a class" : "no class",
              nothing ? "a class" : "no class");
  return pump && !nothing ? 0 : 1;
}
