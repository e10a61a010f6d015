#pragma once

#include <stdexcept>

namespace testing_support {

// A value whose copy throws once a shared budget of copies is used up; -1 never throws.
struct ThrowingValue {
    static inline int copiesLeft = -1;
    static inline int alive = 0;

    int payload = 0;

    ThrowingValue() { ++alive; }
    explicit ThrowingValue(int p) : payload(p) { ++alive; }
    ThrowingValue(const ThrowingValue& other) : payload(other.payload) {
        spend();
        ++alive;
    }
    ThrowingValue& operator=(const ThrowingValue& other) {
        spend();
        payload = other.payload;
        return *this;
    }
    ~ThrowingValue() { --alive; }

private:
    static void spend() {
        if (copiesLeft == 0) throw std::runtime_error("copy refused");
        if (copiesLeft > 0) --copiesLeft;
    }
};

} // namespace testing_support
