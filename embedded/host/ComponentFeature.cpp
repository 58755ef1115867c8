#include "embedded/host/Session.h"
#include "host/Components.h"

bool Tamsix::KorvalComponents::ComponentFeature::IsOn() {
  embedded::enter<embedded::Operation::componentFeatureIsOn>();
  return embedded::session().componentsOn;
}
