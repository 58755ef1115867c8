#include "embedded/model/ClassTest.h"

#include "embedded/host/Session.h"

namespace embedded {

bool isOfClass(const ClassSystem& classes, const Value& value, std::string_view className) {
  if (value.className() == className) return true;
  if (const Opaque* opaque = value.opaque())
    return className == "opaque" || (opaque->java && className == "java");
  if (value.as<ForeignMember>()) return className == "java";
  if (value.as<std::vector<double>>()) return className == "numeric" || className == "float";
  const Object* object = value.object();
  const Class* own = object == nullptr ? nullptr : classes.find(object->classId);
  const Class* base = own == nullptr ? nullptr : classes.find(className);
  return base != nullptr && own->derivesFrom(*base);
}

}  // namespace embedded

bool kxIsA(const kxArray_tag* value, const char* className) {
  embedded::enter<embedded::Operation::isA>(value, className);
  return embedded::isOfClass(embedded::session().classes, embedded::valueOf(value), className);
}
