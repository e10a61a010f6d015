#pragma once

#include <memory>
#include <vector>

#include "veksg/Container.h"
#include "veksg/Export.h"

namespace veksg {

/// One named datum: a wide-character key and a value of one of nine fixed kinds. Readers
/// switch on `type()` and cast to the matching `Value<T, N>`.
class VEKSG_API IValue {
public:
    /// Each code equals the second template argument of the one `Value` that carries it.
    enum ValueType {
        TYPE_BOOL = 0,
        TYPE_UCHAR = 1,
        /// Kinds 2 and 3 share the representation `int` and differ only by this code.
        TYPE_INT = 2,
        TYPE_INT2 = 3,
        TYPE_FLOAT = 4,
        TYPE_STRING = 5,
        TYPE_USHORT_ARRAY = 6,
        TYPE_STRING_ARRAY = 7,
        TYPE_ULONG = 8,
    };

    IValue() = default;
    IValue(const IValue&) = default;
    IValue& operator=(const IValue&) = default;
    virtual ~IValue();

    virtual ValueType type() const = 0;
    /// The value's own zero-terminated key; never null.
    virtual const wchar_t* key() const = 0;
};

/// A key and a value of representation `T`, reported as kind `N`. Only the nine
/// instantiations declared below exist; their members live in the library.
///
/// Kind 5 shares its string with every copy; kind 7 owns its vector but not the strings
/// its elements point to, which whoever fills it keeps alive while any copy exists.
/// There are no moves: a moved-from value is copied.
template <typename T, int N>
class Value : public IValue {
public:
    /// Stores a copy of `value`, then makes the object's own copy of `key` (not null).
    Value(const wchar_t* key, T value);
    /// Copies the value, then makes a new copy of the key.
    Value(const Value& other);
    /// Stores a new copy of the other's key, then its value. Leaks the previous key buffer
    /// by design (it is never released), on self-assignment too.
    Value& operator=(const Value& other); // NOLINT(bugprone-unhandled-self-assignment)
    /// Releases the key, then the value.
    ~Value() override;

    ValueType type() const override;
    const wchar_t* key() const override;

    /// Replaces the value; the key buffer stays the same.
    void set(const T& value) { value_ = value; }
    const T& get() const { return value_; }

private:
    wchar_t* key_;
    T value_;
};

using BoolValue = Value<bool, IValue::TYPE_BOOL>;
using UCharValue = Value<unsigned char, IValue::TYPE_UCHAR>;
using IntValue = Value<int, IValue::TYPE_INT>;
using Int2Value = Value<int, IValue::TYPE_INT2>;
using FloatValue = Value<float, IValue::TYPE_FLOAT>;
using StringValue = Value<std::shared_ptr<wchar_t>, IValue::TYPE_STRING>;
using UShortArrayValue = Value<std::vector<unsigned short>, IValue::TYPE_USHORT_ARRAY>;
using StringArrayValue = Value<std::vector<wchar_t*>, IValue::TYPE_STRING_ARRAY>;
using ULongValue = Value<unsigned long, IValue::TYPE_ULONG>;

extern template class VEKSG_API Value<bool, 0>;
extern template class VEKSG_API Value<unsigned char, 1>;
extern template class VEKSG_API Value<int, 2>;
extern template class VEKSG_API Value<int, 3>;
extern template class VEKSG_API Value<float, 4>;
extern template class VEKSG_API Value<std::shared_ptr<wchar_t>, 5>;
extern template class VEKSG_API Value<std::vector<unsigned short>, 6>;
extern template class VEKSG_API Value<std::vector<wchar_t*>, 7>;
extern template class VEKSG_API Value<unsigned long, 8>;

extern template class VEKSG_API Container<int, std::shared_ptr<IValue>>;
extern template class VEKSG_API Container<int, std::shared_ptr<Value<bool, 0>>>;
extern template class VEKSG_API Container<int, std::shared_ptr<Value<unsigned char, 1>>>;
extern template class VEKSG_API Container<int, std::shared_ptr<Value<std::shared_ptr<wchar_t>, 5>>>;
extern template class VEKSG_API Container<int, std::shared_ptr<Value<unsigned long, 8>>>;

} // namespace veksg
