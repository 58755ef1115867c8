#pragma once

// Values: the array API of the interpreter.
//
// A value is reference-counted. `boost::intrusive_ptr<kxArray_tag>` is its holder: copying adds a reference,
// dropping releases one. Where a result "has one reference for the caller", the caller adopts it in the line
// that receives it: `boost::intrusive_ptr<kxArray_tag>(result, false)`. Everything else is borrowed from its
// parent.
//
// Unless it says otherwise, an operation takes a value that is not null, runs no Korval code, and may throw.
// Indices count from 0, in linear (column-major) order.

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <cstddef>
#include <cstdint>
#include <string>

#include "host/Export.h"

/// A value. A host derives its own type from it; everybody else handles pointers.
class KORVAL_HOST_API kxArray_tag {
 public:
  kxArray_tag(const kxArray_tag&) = delete;
  kxArray_tag& operator=(const kxArray_tag&) = delete;

  /// Of a structure: how many fields it has; 0 or less for none.
  int get_number_of_struct_fields() const;
  /// Of a structure with fields: their names in order; a missing name is a null pointer. Borrowed.
  const char* const* get_struct_field_names() const;

 protected:
  kxArray_tag() = default;
  ~kxArray_tag() = default;
};

using kxArray = kxArray_tag;

// References. They need no active host, never throw, and no interrupt stops them.

KORVAL_HOST_API void kxAddReference(const kxArray_tag* value) noexcept;
/// Drops one reference; returns whether it was the last, in which case the caller destroys the value.
KORVAL_HOST_API bool kxDropReference(const kxArray_tag* value) noexcept;
/// Destroys a value without references. Runs no Korval code.
KORVAL_HOST_API void kxDestroyArray(const kxArray_tag* value) noexcept;

inline void intrusive_ptr_add_ref(const kxArray_tag* value) noexcept { kxAddReference(value); }
inline void intrusive_ptr_release(const kxArray_tag* value) noexcept {
  if (kxDropReference(value)) kxDestroyArray(value);
}

// What a value is.

/// The storage classes of values that clients tell apart, by the codes that kxGetClassID() returns.
namespace StorageCode {

enum : int {
  Cell = 1,
  Structure = 2,
  CharacterArray = 4,
  DoubleArray = 6,
  ObjectArray = 17,      ///< as conversions of possible values yield it
  StructureObject = 18,  ///< an object that is stored as a structure
  UserObject = 19,       ///< this and all codes above: objects of user-defined classes
};

/// Does a value of that code have fields?
constexpr bool isStructure(int code) noexcept { return code == Structure || code == StructureObject; }

/// Is the class of a value of that code asked for its size? Other values answer for their own.
constexpr bool isSizedByClass(int code) noexcept { return code >= StructureObject; }

}  // namespace StorageCode

/// The storage class of a value, one code per value. Built-in classes that nobody asks for have codes of the
/// host's choice below 18.
KORVAL_HOST_API int kxGetClassID(const kxArray_tag* value);
/// The number of the value's class in the dispatcher's class registry.
KORVAL_HOST_API int kxGetClassNumber(const kxArray_tag* value);
/// The class name as the array API reports it, in ASCII; may be empty.
KORVAL_HOST_API std::string kxGetClassName(const kxArray_tag* value);
/// Is the value of that class or of one that derives from it? Also asked for the kinds "tall" and "java".
KORVAL_HOST_API bool kxIsA(const kxArray_tag* value, const char* className);
KORVAL_HOST_API bool kxIsObject(const kxArray_tag* value);
/// Is the value an object of a foreign object system, which only Korval code can look into?
KORVAL_HOST_API bool kxIsOpaque(const kxArray_tag* value);
KORVAL_HOST_API bool kxIsScalar(const kxArray_tag* value);
KORVAL_HOST_API bool kxIsLogicalScalarTrue(const kxArray_tag* value);

// Dimensions: the value's own, whatever its class says about its size.

/// Opaque values may hold their dimensions lazily; then they are to be completed before they are read.
KORVAL_HOST_API bool kxHasLazyDimensions(const kxArray_tag* value);
KORVAL_HOST_API void kxCompleteDimensions(const kxArray_tag* value);
/// Does the value hold just two dimensions, in the compact form? Then the next two return them, and
/// kxGetDimensions() is not to be asked.
KORVAL_HOST_API bool kxHasCompactDimensions(const kxArray_tag* value);
KORVAL_HOST_API std::size_t kxGetRowCount(const kxArray_tag* value);
KORVAL_HOST_API std::size_t kxGetColumnCount(const kxArray_tag* value);
KORVAL_HOST_API std::size_t kxGetNumberOfDimensions(const kxArray_tag* value);
/// As many extents as kxGetNumberOfDimensions() says, borrowed.
KORVAL_HOST_API const std::size_t* kxGetDimensions(const kxArray_tag* value);
KORVAL_HOST_API std::size_t kxGetNumberOfElements(const kxArray_tag* value);
KORVAL_HOST_API bool kxIsEmpty(const kxArray_tag* value);

// Contents.

/// The elements of a double array, borrowed.
KORVAL_HOST_API const double* kxGetDoubles(const kxArray_tag* value);
/// The elements of a character array, borrowed; its element count is their number (they may hold U+0000).
KORVAL_HOST_API const char16_t* kxGetCharacters(const kxArray_tag* value);
/// An element of a cell, borrowed; null when it is absent.
KORVAL_HOST_API kxArray_tag* kxGetCell(const kxArray_tag* cell, std::size_t index);
/// A field of one element of a structure, borrowed from the structure; null when there is no such field.
KORVAL_HOST_API kxArray_tag* kxGetField(const kxArray_tag* structure, std::size_t index, const char* name);
/// A property of one element of an object, with one reference for the caller, perhaps null. May run Korval
/// code (a get method), and its errors propagate.
KORVAL_HOST_API kxArray_tag* kxGetPropertyShared(const kxArray_tag* object, std::size_t index,
                                                 const std::string& name);
/// A property of one element as its type information has it, without running a get method; with one reference
/// for the caller, perhaps null.
KORVAL_HOST_API kxArray_tag* kxGetTypeProperty(const kxArray_tag* object, std::size_t index,
                                               const std::string& name);
/// A member of the class that a class reference names, as a value with one reference for the caller; null
/// when there is none.
KORVAL_HOST_API kxArray_tag* kxFindTypeMember(const kxArray_tag* classReference, const std::string& name);

// New values, each with one reference for the caller.

/// A cell whose elements are absent.
KORVAL_HOST_API kxArray_tag* kxCreateCell(std::size_t numberOfDimensions, const std::size_t* dimensions);
/// Stores a value in a cell and takes over one reference of it, also when it throws; null makes the element
/// absent.
KORVAL_HOST_API void kxSetCell(kxArray_tag* cell, std::size_t index, kxArray_tag* value);
/// A string of an ASCII text.
KORVAL_HOST_API kxArray_tag* kxCreateString(const char* text);
/// A reference to the class of that name, or null when there is no such class.
KORVAL_HOST_API kxArray_tag* kxCreateClassArray(const std::string& className);

/// How many characters at the start of `text` (up to its NUL) form a valid name; 0 when none do. Needs no
/// host state.
KORVAL_HOST_API int kxIsValidKorvalNameCount(const char* text);

namespace matrix {

/// How the interpreter behaves at an error of Korval code: a pattern of 32 bits, the host's own, except that
/// all ones means that an error neither stops in the debugger nor is reported.
enum class ErrorMode : std::uint32_t { Silent = 0xFFFFFFFFU };

/// Used to restore the mode too, so no interrupt stops either.
KORVAL_HOST_API ErrorMode getErrorMode();
KORVAL_HOST_API void setErrorMode(ErrorMode mode);

/// A string value, with one reference for the caller.
KORVAL_HOST_API kxArray_tag* create(const std::u16string& text);
/// The text of a string scalar or of a row of characters; throws for other values.
KORVAL_HOST_API std::u16string get_ustring(const kxArray_tag* value);

}  // namespace matrix

namespace Tamsix::String {

/// Is the value a string (of any size)?
KORVAL_HOST_API bool isString(const kxArray_tag* value);
/// The text of a string scalar that is not missing.
KORVAL_HOST_API std::u16string getString(const kxArray_tag* value);
/// Is the value a row of characters (or an empty character array), or a string scalar that is not missing?
KORVAL_HOST_API bool isNonMissingScalarText(const kxArray_tag* value);
/// The text of such a value. Raises KORVAL::string::MissingNotSupported for a missing string and
/// KORVAL::string::MustBeStringScalarOrCharacterVector for anything else, null included.
KORVAL_HOST_API std::u16string getScalarText(const kxArray_tag* value);

}  // namespace Tamsix::String
