#include "host/Components.h"

#include "embedded/host/Session.h"

bool Tamsix::KorvalComponents::ComponentFeature::IsOn() {
  return embedded::asked<embedded::Operation::componentFeatureIsOn>().answer(
      [] { return embedded::session().componentsOn; });
}
