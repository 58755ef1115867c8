#pragma once

#include <string>

#include "embedded/language/Calls.h"

namespace embedded {

/// The class of a class-system object, or null (also when the session does not know it).
const Class* classOf(const Interpreter& interpreter, const Value& value);

/// May code of that routine (null: everybody) use a member of that class?
bool mayUse(const Interpreter& interpreter, const kcos::COSExtendedAccess& access, const Class& owner,
            const Routine* asking);

/// A new object with the values that its class declares.
ValuePtr newObject(const Class& oneClass);
ValuePtr newEnumerationMember(const Class& oneClass, const std::string& member);

/// One element of an array of objects, or the scalar itself.
ValuePtr elementOf(Interpreter& interpreter, const ValuePtr& value, std::size_t index);

/// Does reading the property of this scalar run a get method?
bool readingRunsCode(const Interpreter& interpreter, const Value& object, const std::string& name);
/// Fails as reading that property of an object of the value's class would; of values without a class nothing is known.
void requireReadable(Interpreter& interpreter, const Value& value, const std::string& name,
                     const Routine* asking);
/// Of a scalar object, opaque object or structure-based object.
ValuePtr readProperty(Interpreter& interpreter, const ValuePtr& object, const std::string& name,
                      const Routine* asking);
/// The same without a get method, and whoever may read it.
ValuePtr storedProperty(Interpreter& interpreter, const ValuePtr& object, const std::string& name);
ValuePtr withProperty(Interpreter& interpreter, const Value& value, const std::string& name, ValuePtr content,
                      const Routine* asking);

Values construct(Evaluator& caller, const Class& oneClass, Values arguments);

/// A constant property or an enumeration member; null when the class has none of that name.
ValuePtr classConstant(Interpreter& interpreter, const Class& oneClass, const std::string& name,
                       const Routine* asking);
bool hasStaticMethod(const Class& oneClass, const std::string& name);
Values callStatic(Evaluator& caller, const Class& oneClass, const std::string& name, Values arguments,
                  std::size_t nargout);

bool hasMethod(const Interpreter& interpreter, const Value& value, const std::string& name);

}  // namespace embedded
