#pragma once

// What a value, or the name of a class, says about itself.

#include <contextdata/Export.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <string>
#include <vector>

#include "host/Arrays.h"

/// A holder of a value that has just been handed out, adopting its one reference; empty for null. Throws
/// nothing.
CONTEXTDATA_API boost::intrusive_ptr<kxArray_tag> makeSharedPtr(kxArray_tag* value);

/// Property `name` of element `index` (from 0) of an object; empty when it cannot be read, for whatever
/// reason. Nothing propagates, not even the interrupt. May run Korval code (a get method).
CONTEXTDATA_API boost::intrusive_ptr<kxArray_tag> getSharedProperty(const kxArray_tag* object,
                                                                    const std::string& name,
                                                                    unsigned long index);

/// Is the value an object, of whatever object system? Every exception propagates. Runs no Korval code.
CONTEXTDATA_API bool isObjectOrIsOpaque(const kxArray_tag* value);

/// Appends what the object returns for "fieldnames" or for "methods"; nothing when the call fails, for whatever
/// reason, or when the answer is no cell of texts. Runs Korval code; what the call throws is swallowed, the
/// interrupt too. What reading the answer throws propagates.
CONTEXTDATA_API void getOpaqueObjectProperties(const kxArray_tag* value, std::vector<std::u16string>& names);
CONTEXTDATA_API void getOpaqueObjectMethods(const kxArray_tag* value, std::vector<std::u16string>& names);

/// Appends the text of every element of a cell and returns true, also for an empty cell. Appends nothing and
/// returns false for null, for any other value, and for a cell with an element that is absent or no text (a
/// missing string is none). What the host throws propagates, and then nothing is appended. Runs no Korval
/// code.
CONTEXTDATA_API bool getStringsFromKxarray(const kxArray_tag* value, std::vector<std::u16string>& strings);

/// The size of a value: its own dimensions, or what its class returns for "size" ("sizeAsDouble" for objects
/// of a class with the mixin "korval.mixin.internal.CustomSizeString"), without fractions. No answer, one
/// that is no double array or is empty, and a NaN before any extent that is no count give the value's own
/// dimensions.
///
/// Empty, which means unknown: for null, for a tall value, for an extent of -1 or less or of 2^64 or more,
/// and when the class's method, or reading its answer, throws (the interrupt included). What asking for the
/// kind of the value and for its dimensions throws propagates. Runs Korval code for objects of user-defined
/// classes only.
CONTEXTDATA_API std::vector<unsigned long> getSizeFromKxArray(const kxArray_tag* value);

/// Which of two classes takes precedence: 0xFFFFFFFF when the first does, 1 when the second does, 0 when
/// neither does. ASCII conversion. Every exception propagates. Runs no Korval code.
CONTEXTDATA_API unsigned int GetClassPrecedence(const std::u16string& classA, const std::u16string& classB);

/// Is a dotted name a member of a foreign class? Split at the last dot; false without one, when it
/// comes first, and when class or member is unknown. ASCII conversion. Every exception propagates. Runs no
/// Korval code.
CONTEXTDATA_API bool IsJavaFunction(const std::u16string& name);
