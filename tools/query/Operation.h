#pragma once

// How an exported operation is answered under the name of its op: by its signature, which says how each argument is
// read, or by a handler of its own.
//
//   {"getConstructorName", {form(KCOSIntrospection::getConstructorName, "className")}}

#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "tools/query/Arguments.h"
#include "tools/query/Question.h"

namespace tools::query {

/// The key of an argument.
struct Parameter {
  Parameter(const char* name) : name(name) {}

  std::string name;
  bool mayBeNull = true;
  bool isLate = false;
};

/// A value, but not null.
Parameter existing(const char* name);
/// Read after the others. Of several bad arguments the one that is read first is named.
Parameter late(const char* name);

/// An argument as it is kept while the library is asked.
using Argument = std::variant<bool, unsigned long, std::u16string, std::string, std::vector<std::u16string>,
                              std::vector<std::int32_t>, boost::intrusive_ptr<kxArray_tag>,
                              boost::intrusive_ptr<const kxArray_tag>, KCOSContextData::ResolvedClassID,
                              kcos::COSInternedName, KCOSContextData::MethodInfo::GetContext, Record,
                              PropertyOptions, MethodOptions>;

/// Reads the argument for a parameter of type P.
template <class P>
Argument read(const Arguments& arguments, const Parameter& parameter) {
  using namespace KCOSContextData;
  const std::string& name = parameter.name;
  if constexpr (std::is_same_v<std::remove_reference_t<P>, bool>) {
    return arguments.flag(name);
  } else if constexpr (std::is_same_v<P, unsigned long>) {
    return static_cast<unsigned long>(arguments.count(name, std::numeric_limits<std::int32_t>::max()));
  } else if constexpr (std::is_same_v<P, const std::u16string&>) {
    return arguments.text(name);
  } else if constexpr (std::is_same_v<P, const std::string&>) {
    return arguments.narrowText(name);
  } else if constexpr (std::is_same_v<P, const std::vector<std::u16string>&>) {
    return arguments.texts(name);
  } else if constexpr (std::is_same_v<P, std::vector<std::u16string>&>) {
    return arguments.textsOrNone(name);
  } else if constexpr (std::is_same_v<P, const std::vector<std::int32_t>&>) {
    return arguments.numbers(name);
  } else if constexpr (std::is_same_v<P, const kxArray_tag*>) {
    return parameter.mayBeNull ? arguments.value(name) : arguments.existingValue(name);
  } else if constexpr (std::is_same_v<P, const boost::intrusive_ptr<const kxArray_tag>&>) {
    return boost::intrusive_ptr<const kxArray_tag>(arguments.existingValue(name));
  } else if constexpr (std::is_same_v<P, const ResolvedClassID&>) {
    return arguments.identifier(name);
  } else if constexpr (std::is_same_v<P, kcos::COSInternedName>) {
    return static_cast<const kcos::COSInternedName&>(arguments.identifier(name));
  } else if constexpr (std::is_same_v<P, const MethodInfo::GetContext&>) {
    return arguments.context(name);
  } else if constexpr (std::is_same_v<P, const ClassInfo&>) {
    return arguments.record(name);
  } else if constexpr (std::is_same_v<P, const ClassInfo*>) {
    return arguments.recordOrNone(name);
  } else if constexpr (std::is_same_v<P, const PropertyInfo::GetOptions&>) {
    return arguments.propertyOptions(name);
  } else {
    static_assert(std::is_same_v<P, const MethodInfo::GetOptions&>, "no argument is read as this type");
    return arguments.methodOptions(name);
  }
}

/// The kept argument as the library takes it.
template <class P>
decltype(auto) pass(Argument& argument) {
  using Plain = std::remove_cvref_t<P>;
  if constexpr (std::is_same_v<Plain, const kxArray_tag*>) {
    return std::get<boost::intrusive_ptr<kxArray_tag>>(argument).get();
  } else if constexpr (std::is_same_v<Plain, const KCOSContextData::ClassInfo*>) {
    return std::get<Record>(argument).get();
  } else if constexpr (std::is_same_v<Plain, KCOSContextData::ClassInfo>) {
    return *std::get<Record>(argument);
  } else if constexpr (std::is_same_v<Plain, KCOSContextData::PropertyInfo::GetOptions>) {
    return (std::get<PropertyOptions>(argument).options);
  } else if constexpr (std::is_same_v<Plain, KCOSContextData::MethodInfo::GetOptions>) {
    return (std::get<MethodOptions>(argument).options);
  } else {
    return (std::get<Plain>(argument));
  }
}

/// One way to ask an operation.
struct Form {
  std::vector<Parameter> parameters;
  std::vector<Argument (*)(const Arguments&, const Parameter&)> readers;
  /// Which parameters the operation appends to or sets; they are told.
  std::vector<bool> isOut;
  std::function<Result(std::vector<Argument>&)> call;
  /// Whether the arguments choose it; nothing when they always do.
  std::function<bool(const Arguments&)> isChosen = {};
};

template <class... Ps, std::size_t... at, class Call>
Form formOf(Call call, std::vector<Parameter> parameters, std::index_sequence<at...>) {
  return {std::move(parameters),
          {read<Ps>...},
          {(std::is_same_v<Ps, bool&> || std::is_same_v<Ps, std::vector<std::u16string>&>)...},
          [call]([[maybe_unused]] std::vector<Argument>& arguments) -> Result {
            if constexpr (std::is_void_v<decltype(call(pass<Ps>(arguments[at])...))>) {
              call(pass<Ps>(arguments[at])...);
              return nullptr;
            } else {
              return call(pass<Ps>(arguments[at])...);
            }
          }};
}

template <class R, class... Ps, class... Names>
Form formOfFunction(R (*function)(Ps...), Names... names) {
  static_assert(sizeof...(Ps) == sizeof...(Names), "every parameter has a name");
  return formOf<Ps...>(function, {Parameter(names)...}, std::index_sequence_for<Ps...>());
}

template <class Self, class R, class... Ps, class... Names>
Form formOfMember(R (Self::*member)(Ps...) const, Names... names) {
  static_assert(1 + sizeof...(Ps) == sizeof...(Names), "the object and every parameter have a name");
  return formOf<const Self&, Ps...>(std::mem_fn(member), {Parameter(names)...},
                                    std::index_sequence_for<Self, Ps...>());
}

/// The form that a function has whose parameters have these names. Of overloads the signature chooses:
/// form<bool(const std::u16string&)>(...).
template <class Signature, class... Names>
Form form(Signature* function, Names... names) {
  return formOfFunction(function, names...);
}

/// The same for a member function; the first name is the object's.
template <class Signature, class Self, class... Names>
Form form(Signature Self::*member, Names... names) {
  return formOfMember(member, names...);
}

/// Chosen when the argument is given.
Form given(const char* name, Form form);
/// Chosen when the argument is given as an object that stands for an identifier.
Form givenIdentifier(const char* name, Form form);
/// Chosen by "narrow": true.
Form narrowly(Form form);

/// One exported operation under the name of its op.
struct Operation {
  Operation(std::string name, void (*answer)(Question&)) : name(std::move(name)), answer(answer) {}
  /// Answered in the first form that is chosen.
  Operation(std::string name, std::vector<Form> forms);

  std::string name;
  std::function<void(Question&)> answer;
};

/// All of them, in the order of their headers.
const std::vector<Operation>& operations();

/// The operation of that name, or null.
const Operation* findOperation(const std::string& name);

// The list itself is in Operations.cpp.

}  // namespace tools::query
