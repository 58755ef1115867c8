// A program that brings the host: the embedded host's objects are part of this executable, which exports their
// symbols, and the library takes them from here.

#include <contextdata/KCOSIntrospection.h>
#include <dlfcn.h>

#include <cstdio>

#include "embedded/Host.h"

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "external_host: expected that %s\n", what);
  ++failures;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  expect(dlopen("libcontextdata-host.so.1", RTLD_NOLOAD | RTLD_NOW) == nullptr,
         "the host library is not loaded");
  expect(dlsym(RTLD_DEFAULT, "contextdata_host_abi_1") != nullptr, "the program exports its host");

  auto host = embedded::Host::load(argv[1]);
  embedded::Activation active(*host);
  const std::uint64_t before = host->callCount();
  expect(KCOSIntrospection::isKCOSClass(u"lab.Pump"), "lab.Pump is a class");
  expect(host->callCount() > before, "the library asked the program's host");
  expect(!KCOSIntrospection::isKCOSClass(u"lab.Nothing"), "lab.Nothing is no class");
  return failures == 0 ? 0 : 1;
}
