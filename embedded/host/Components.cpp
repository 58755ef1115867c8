#include "host/Components.h"

#include "embedded/host/Session.h"

bool Tamsix::KorvalComponents::ComponentFeature::IsOn() {
  embedded::enter<embedded::Operation::componentFeatureIsOn>();
  return embedded::session().componentsOn;
}
