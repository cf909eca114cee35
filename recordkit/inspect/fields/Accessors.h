// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FIELDS_ACCESSORS_H
#define RECORDKIT_INSPECT_FIELDS_ACCESSORS_H

#include <functional>
#include <tuple>
#include <type_traits>

#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/fields/RecordClass.h>

namespace recordkit::inspect {

// What the tables are made of: functions that become pointers in constant rows.

inline Value toValue(bool value)
{
    return value;
}
/// Texts of records are Latin-1.
inline Value toValue(const std::string& value)
{
    return toUtf8(value);
}
template <typename Number> std::enable_if_t<std::is_integral_v<Number>, Value> toValue(Number value)
{
    return static_cast<long long>(value);
}

template <typename Class> Class& objectOf(const Record& record)
{
    return dynamic_cast<Class&>(record.object);
}

/// The class of an operation, and its first argument.
template <typename Pointer> struct Operation;
template <typename C, typename Result, typename... Arguments>
struct Operation<Result (C::*)(Arguments...)> {
    using Class = C;
    using First = std::tuple_element_t<0, std::tuple<Arguments..., void>>;
};
template <typename C, typename Result, typename... Arguments>
struct Operation<Result (C::*)(Arguments...) const> : Operation<Result (C::*)(Arguments...)> {
};

template <auto Get> auto& objectFor(const Record& record)
{
    return objectOf<typename Operation<decltype(Get)>::Class>(record);
}
template <auto Get> using FirstOf = typename Operation<decltype(Get)>::First;

/// Asks an operation without arguments.
template <auto Get> Value ask(const Record& record, const Spot&)
{
    return toValue(std::invoke(Get, objectFor<Get>(record)));
}

/// Asks for element I, or for the element of the list that the field is in.
template <auto Get, unsigned int I> Value askFor(const Record& record, const Spot&)
{
    return toValue(std::invoke(Get, objectFor<Get>(record), static_cast<FirstOf<Get>>(I)));
}
template <auto Get> Value askEach(const Record& record, const Spot& spot)
{
    return toValue(std::invoke(Get, objectFor<Get>(record), static_cast<FirstOf<Get>>(spot.index)));
}

// The field's own place in the image: a number, low byte first; one bit; hex digits; Latin-1 up to
// the first zero byte. No value if the image ends before the place does.
Value number(const Record& record, const Spot& spot);
Value flag(const Record& record, const Spot& spot);
Value hexDigits(const Record& record, const Spot& spot);
Value text(const Record& record, const Spot& spot);

/// The number of elements of a list that never changes.
template <unsigned int Count> unsigned int always(const Record&, unsigned int)
{
    return Count;
}

/// The number of elements that an operation of a class returns in a vector.
template <auto Get> unsigned int counted(const Record& record, unsigned int)
{
    std::remove_reference_t<FirstOf<Get>> elements;
    std::invoke(Get, objectFor<Get>(record), elements);
    return static_cast<unsigned int>(elements.size());
}

/// That number as a field.
template <auto Get> Value count(const Record& record, const Spot&)
{
    return toValue(counted<Get>(record, 0));
}

template <typename Class> std::unique_ptr<TAVLib::SerializableObject> make()
{
    return std::make_unique<Class>();
}

template <typename Class>
constexpr RecordClass describe(const char* name, ImageSizes sizes, const char* description,
                               FieldTable first, FieldTable second = {}, FieldTable third = {})
{
    return {name, sizes, description, make<Class>, {first, second, third}};
}

// Meanings that several classes share.
std::string asHex(const Value& value);
std::string asSensorType(const Value& value);
std::string asEventType(const Value& value);

}

#endif
