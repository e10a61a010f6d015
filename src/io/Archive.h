#pragma once

// The three walks over a value that every table goes through: `Out` encodes it, `In` decodes
// it with every count checked against the bytes left, `Collect` gathers the shared objects it
// refers to. `MinBytes` bounds from below how many bytes one element can take, which is what
// a count is checked against before anything is allocated.
#include <array>
#include <cstdint>
#include <cstring>
#include <deque>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "io/Buffer.h"
#include "io/Pools.h"
#include "io/Records.h"
#include "veksg/io/Snapshot.h"

namespace veksg::io::detail {

// ---- what kind of value a type is

template <typename V>
V containerValue(const veksg::Container<int, V>*);

template <typename T, typename = void>
struct ContainerTraits : std::false_type {};
template <typename T>
struct ContainerTraits<T, std::void_t<decltype(containerValue(static_cast<const T*>(nullptr)))>>
    : std::true_type {
    using Value = decltype(containerValue(static_cast<const T*>(nullptr)));
};

template <typename T>
struct SequenceTraits : ContainerTraits<T> {};
template <typename T, typename A>
struct SequenceTraits<std::vector<T, A>> : std::true_type {
    using Value = T;
};
template <typename T, typename A>
struct SequenceTraits<std::deque<T, A>> : std::true_type {
    using Value = T;
};
template <>
struct SequenceTraits<std::set<int>> : std::true_type {
    using Value = int;
};
template <>
struct SequenceTraits<veksg::Set<int>> : std::true_type {
    using Value = int;
};
/// Variable-length sequences: a count, then the elements.
template <typename T>
inline constexpr bool isSequence = SequenceTraits<T>::value;

template <typename T>
struct IsMap : std::false_type {};
template <typename K, typename V>
struct IsMap<std::map<K, V>> : std::true_type {};

template <typename T>
struct IsArray : std::false_type {};
template <typename T, std::size_t N>
struct IsArray<std::array<T, N>> : std::true_type {};

template <typename T>
struct IsSharedPtr : std::false_type {};
template <typename X>
struct IsSharedPtr<std::shared_ptr<X>> : std::true_type {
    using Pointee = X;
};

/// Whole tables of host objects: never written, their entries counted.
template <typename T>
struct IsHostTable : std::false_type {};
template <>
struct IsHostTable<std::map<int, std::shared_ptr<veksg::IStateExecutor>>> : std::true_type {};
template <>
struct IsHostTable<std::array<veksg::PairFunctorHelper, 4>> : std::true_type {};

/// False for values that cannot refer to a shared object, so that `Collect` skips them.
template <typename T>
constexpr bool mayHoldShared() {
    if constexpr (isBulk<T> || std::is_arithmetic_v<T> || std::is_same_v<T, std::wstring> ||
                  IsHostOwned<T>::value || IsHostTable<T>::value ||
                  std::is_same_v<T, std::vector<bool>>)
        return false;
    else if constexpr (isSequence<T>)
        return mayHoldShared<typename SequenceTraits<T>::Value>();
    else if constexpr (IsArray<T>::value)
        return mayHoldShared<typename T::value_type>();
    else
        return true;
}

/// Sequences whose elements lie in one array.
template <typename T>
inline constexpr bool isContiguous =
    ContainerTraits<T>::value || std::is_same_v<T, std::vector<typename SequenceTraits<T>::Value>>;

// ---- the smallest encoding of a value

class MinBytes;
template <typename T>
std::size_t minBytes();

/// Adds up the smallest encoding of a record's fields.
class MinBytes {
public:
    template <typename T>
    void operator()(const T&) {
        total += minBytes<T>();
    }
    template <typename P>
    void buffer(const P&, std::uint64_t) {
        total += 4;
    }
    template <typename T, typename G, typename S>
    void named(const T&, G, S) {
        total += 4;
    }
    std::size_t total = 0;
};

template <typename T>
std::size_t minBytes() {
    if constexpr (std::is_same_v<T, bool> || IsHostOwned<T>::value)
        return 1;
    else if constexpr (isBulk<T>)
        return sizeof(T);
    else if constexpr (std::is_arithmetic_v<T>)
        return 8;
    else if constexpr (std::is_same_v<T, std::wstring> || IsSharedPtr<T>::value || isSequence<T> ||
                       IsMap<T>::value || std::is_same_v<T, std::vector<bool>>)
        return 4;
    else if constexpr (IsArray<T>::value)
        return std::tuple_size<T>::value * minBytes<typename T::value_type>();
    else {
        static const std::size_t bytes = [] {
            MinBytes sum;
            T value{};
            Record<T>::fields(sum, value);
            return sum.total;
        }();
        return bytes;
    }
}

// ---- writing

class Out {
public:
    Out(Buffer& buffer, const PoolsOut& pools, WriteReport& report)
        : buf(buffer), pools(pools), report(report) {}

    /// A table's payload; returns its element count (1 for a value that is not a table).
    template <typename T>
    std::uint64_t top(const T& v) {
        if constexpr (IsHostTable<T>::value) {
            countHostTable(v);
            return 0;
        } else if constexpr (isSequence<T> || IsMap<T>::value) {
            elements(v);
            return static_cast<std::uint64_t>(v.size());
        } else {
            (*this)(v);
            return 1;
        }
    }

    template <typename T>
    void operator()(const T& v) {
        if constexpr (std::is_same_v<T, bool>) {
            u8(v ? 1 : 0);
        } else if constexpr (isBulk<T>) {
            buf.append(&v, sizeof v);
        } else if constexpr (std::is_arithmetic_v<T>) {
            u64(static_cast<std::uint64_t>(v));
        } else if constexpr (std::is_same_v<T, std::wstring>) {
            text(v.data(), v.size());
        } else if constexpr (IsHostOwned<T>::value) {
            u8(v ? 1 : 0);
            if (v) ++report.hostObjects;
        } else if constexpr (IsSharedPtr<T>::value) {
            const std::uint32_t ref = pools.ref(v);
            if (v && ref == 0) ++report.hostObjects;
            u32(ref);
        } else if constexpr (std::is_same_v<T, std::vector<bool>> || isSequence<T> ||
                             IsMap<T>::value) {
            length(v.size());
            elements(v);
        } else if constexpr (IsArray<T>::value) {
            for (const auto& element : v)
                (*this)(element);
        } else {
            Record<T>::fields(*this, v);
        }
    }

    template <typename P>
    void buffer(const P& p, std::uint64_t) {
        u32(pools.ref(p));
    }
    template <typename T, typename G, typename S>
    void named(const T& owner, G getter, S) {
        const wchar_t* chars = getter(owner);
        text(chars, std::char_traits<wchar_t>::length(chars));
    }

    /// UTF-16 code units, preceded by their number.
    void text(const wchar_t* chars, std::size_t n);
    void u8(std::uint8_t v) { buf.append(&v, 1); }
    void u32(std::uint32_t v) { buf.append(&v, 4); }
    void u64(std::uint64_t v) { buf.append(&v, 8); }
    /// A pool entry's bytes: the object's class tag where the pool mixes classes, then its
    /// fields.
    void entry(int kind, const void* object, std::uint64_t length);

private:
    void length(std::size_t n);

    template <typename T>
    void elements(const T& v) {
        if constexpr (std::is_same_v<T, std::vector<bool>>) {
            std::uint8_t byte = 0;
            for (std::size_t i = 0; i < v.size(); ++i) {
                if (v[i]) byte = static_cast<std::uint8_t>(byte | (1u << (i % 8)));
                if (i % 8 == 7 || i + 1 == v.size()) {
                    u8(byte);
                    byte = 0;
                }
            }
        } else if constexpr (IsMap<T>::value) {
            for (const auto& [key, value] : v) {
                (*this)(key);
                (*this)(value);
            }
        } else if constexpr (isBulk<typename SequenceTraits<T>::Value> && isContiguous<T>) {
            using Value = typename SequenceTraits<T>::Value;
            if (v.size() > 0)
                buf.append(&*v.begin(), static_cast<std::size_t>(v.size()) * sizeof(Value));
        } else {
            for (const auto& element : v)
                (*this)(element);
        }
    }

    template <typename T>
    void countHostTable(const T& v) {
        if constexpr (IsMap<T>::value) {
            for (const auto& entry : v)
                report.hostObjects += entry.second ? 1 : 0;
        } else {
            for (const auto& chain : v)
                report.hostObjects += chain.functors.size();
        }
    }

    Buffer& buf;
    const PoolsOut& pools;
    WriteReport& report;
};

// ---- gathering shared objects

class Collect {
public:
    explicit Collect(PoolsOut& pools) : pools(pools) {}

    template <typename T>
    void operator()(const T& v) {
        if constexpr (!mayHoldShared<T>() || IsHostOwned<T>::value) {
            static_cast<void>(v);
        } else if constexpr (IsSharedPtr<T>::value) {
            add(v);
        } else if constexpr (IsMap<T>::value) {
            for (const auto& entry : v)
                (*this)(entry.second);
        } else if constexpr (isSequence<T> || IsArray<T>::value) {
            for (const auto& element : v)
                (*this)(element);
        } else {
            Record<T>::fields(*this, v);
        }
    }
    template <typename P>
    void buffer(const P& p, std::uint64_t length) {
        if (!p) return;
        PoolsOut::Pool& pool = pools.pools[PoolOf<typename P::element_type[]>::kind];
        const void* key = p.get();
        const auto found = pool.index.find(key);
        if (found != pool.index.end()) {
            std::uint64_t& most = pool.lengths[found->second - 1];
            most = length > most ? length : most;
            return;
        }
        append(pool, key);
        pool.lengths.push_back(length);
    }
    template <typename T, typename G, typename S>
    void named(const T&, G, S) {}

private:
    template <typename X>
    void add(const std::shared_ptr<X>& p) {
        if (!p) return;
        using Pool = PoolOf<X>;
        PoolsOut::Pool& pool = pools.pools[Pool::kind];
        const void* key = PoolsOut::key(p);
        if (pool.index.count(key) > 0) return;
        // What an object refers to comes before it.
        if constexpr (Pool::kind == Pmis) {
            const auto& base = static_cast<const veksg::PMI&>(*p);
            if (withPmi(base, [&](const auto& c) { this->fieldsOf(c); }) < 0) return;
        } else if constexpr (Pool::kind == States) {
            const auto& base = static_cast<const veksg::IState&>(*p);
            if (withState(base, [&](const auto& c) { this->fieldsOf(c); }) < 0) return;
        } else if constexpr (HasRecord<X>::value) {
            fieldsOf(*p);
        } else if constexpr (std::is_same_v<X, veksg::StringValue>) {
            add(p->get());
        }
        append(pool, key);
    }
    template <typename C>
    void fieldsOf(const C& concrete) {
        Record<C>::fields(*this, concrete);
    }
    static void append(PoolsOut::Pool& pool, const void* key) {
        pool.objects.push_back(key);
        pool.index.emplace(key, static_cast<std::uint32_t>(pool.objects.size()));
    }

    PoolsOut& pools;
};

// ---- reading

/// Reads elements out of unaligned bytes, so that a vector is filled in one pass instead of
/// being cleared first and copied over.
template <typename T>
class BulkIterator {
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = T;
    using difference_type = std::ptrdiff_t;
    using pointer = const T*;
    using reference = T;

    explicit BulkIterator(const char* at) : at(at) {}
    T operator*() const {
        T value{};
        std::memcpy(static_cast<void*>(&value), at, sizeof(T));
        return value;
    }
    BulkIterator& operator++() {
        at += sizeof(T);
        return *this;
    }
    BulkIterator operator++(int) {
        BulkIterator before = *this;
        at += sizeof(T);
        return before;
    }
    bool operator==(const BulkIterator& other) const { return at == other.at; }
    bool operator!=(const BulkIterator& other) const { return at != other.at; }

private:
    const char* at;
};

/// Where a payload sits in the file, for messages.
struct Place {
    std::string where;
    std::uint64_t offset = 0;
};

class In {
public:
    In(const char* data, std::size_t size, PoolsIn& pools, const Place& place)
        : at(data), end(data + size), pools(pools), place(place) {}

    [[noreturn]] void fail(const std::string& cause) const {
        throw SnapshotError(place.where, place.offset, cause);
    }
    std::size_t remaining() const { return static_cast<std::size_t>(end - at); }

    /// A table's payload of `count` elements.
    template <typename T>
    void top(T& v, std::uint64_t count) {
        if constexpr (IsHostTable<T>::value) {
            if (count != 0) fail("a table of host objects holds entries");
        } else if constexpr (isSequence<T> || IsMap<T>::value) {
            elements(v, checked<T>(count));
        } else {
            if (count != 1) fail("a single value counted " + std::to_string(count) + " times");
            (*this)(v);
        }
    }

    template <typename T>
    void operator()(T& v) {
        if constexpr (std::is_same_v<T, bool>) {
            const std::uint8_t byte = u8();
            if (byte > 1) fail("a flag holds " + std::to_string(byte));
            v = byte != 0;
        } else if constexpr (isBulk<T>) {
            std::memcpy(static_cast<void*>(&v), take(sizeof v), sizeof v);
        } else if constexpr (std::is_arithmetic_v<T>) {
            const std::uint64_t wide = u64();
            if (wide > std::numeric_limits<T>::max()) fail("a number too large for its field");
            v = static_cast<T>(wide);
        } else if constexpr (std::is_same_v<T, std::wstring>) {
            text(v);
        } else if constexpr (IsHostOwned<T>::value) {
            if (u8() > 1) fail("a host object's mark is neither 0 nor 1");
            v.reset();
        } else if constexpr (IsSharedPtr<T>::value) {
            shared(v);
        } else if constexpr (std::is_same_v<T, std::vector<bool>> || isSequence<T> ||
                             IsMap<T>::value) {
            elements(v, checked<T>(u32()));
        } else if constexpr (IsArray<T>::value) {
            for (auto& element : v)
                (*this)(element);
        } else {
            Record<T>::fields(*this, v);
        }
    }

    template <typename P>
    void buffer(P& p, std::uint64_t length) {
        using Element = typename P::element_type;
        auto& pool = poolOfBuffers(static_cast<Element*>(nullptr));
        const std::uint32_t ref = u32();
        if (ref == 0) {
            p.reset();
            return;
        }
        if (ref > pool.size()) badRef(ref, pool.size(), PoolOf<Element[]>::kind);
        if (pool[ref - 1].second < length)
            fail("a buffer of " + std::to_string(pool[ref - 1].second) + " elements read as " +
                 std::to_string(length));
        p = pool[ref - 1].first;
    }
    template <typename T, typename G, typename S>
    void named(T& owner, G, S setter) {
        text(scratch);
        setter(owner, scratch);
    }

    void text(std::wstring& out);
    std::uint8_t u8() { return static_cast<std::uint8_t>(*take(1)); }
    std::uint32_t u32() {
        std::uint32_t v = 0;
        std::memcpy(&v, take(4), 4);
        return v;
    }
    std::uint64_t u64() {
        std::uint64_t v = 0;
        std::memcpy(&v, take(8), 8);
        return v;
    }
    const char* take(std::size_t n) {
        if (remaining() < n) fail("a value runs past the end of its table");
        const char* from = at;
        at += n;
        return from;
    }
    /// Reads the entries of a pool.
    void entries(int kind, std::uint64_t count);

private:
    auto& poolOfBuffers(float*) { return pools.floatBuffers; }
    auto& poolOfBuffers(std::uint32_t*) { return pools.indexBuffers; }

    [[noreturn]] void badRef(std::uint32_t ref, std::size_t size, int kind) const {
        fail("refers to shared object " + std::to_string(ref) + " of " + std::to_string(size) +
             " in " + poolName(kind));
    }

    // Every element takes at least `minBytes` bytes, so a count the payload cannot hold is
    // refused before anything is allocated for it.
    template <typename T>
    std::size_t checked(std::uint64_t count) {
        std::size_t least = 1;
        if constexpr (std::is_same_v<T, std::vector<bool>>) {
            if ((count + 7) / 8 > remaining())
                fail(std::to_string(count) + " bits cannot fit in the " +
                     std::to_string(remaining()) + " bytes left");
            return static_cast<std::size_t>(count);
        } else if constexpr (IsMap<T>::value) {
            least = minBytes<typename T::key_type>() + minBytes<typename T::mapped_type>();
        } else {
            least = minBytes<typename SequenceTraits<T>::Value>();
        }
        if (count > remaining() / least)
            fail(std::to_string(count) + " elements cannot fit in the " +
                 std::to_string(remaining()) + " bytes left");
        if constexpr (ContainerTraits<T>::value)
            if (count > static_cast<std::uint64_t>(std::numeric_limits<int>::max()))
                fail("more elements than a table has keys");
        return static_cast<std::size_t>(count);
    }

    template <typename X>
    void shared(std::shared_ptr<X>& p) {
        const std::uint32_t ref = u32();
        if (ref == 0) {
            p.reset();
            return;
        }
        if constexpr (std::is_same_v<X, wchar_t>) {
            if (ref > pools.wideStrings.size()) badRef(ref, pools.wideStrings.size(), WideStrings);
            p = pools.wideStrings[ref - 1];
        } else {
            using Stored = typename PoolOf<X>::Stored;
            auto& pool = pools.of(static_cast<Stored*>(nullptr));
            if (ref > pool.size()) badRef(ref, pool.size(), PoolOf<X>::kind);
            if constexpr (std::is_same_v<X, Stored>) {
                p = pool[ref - 1];
            } else {
                p = std::dynamic_pointer_cast<X>(pool[ref - 1]);
                if (!p)
                    fail("shared object " + std::to_string(ref) + " in " +
                         poolName(PoolOf<X>::kind) + " is of another class than its table's");
            }
        }
    }

    template <typename T>
    void elements(T& v, std::size_t n) {
        if constexpr (std::is_same_v<T, std::vector<bool>>) {
            const std::size_t bits = n;
            v.assign(bits, false);
            const char* bytes = take((bits + 7) / 8);
            for (std::size_t i = 0; i < bits; ++i)
                if ((static_cast<unsigned char>(bytes[i / 8]) >> (i % 8)) & 1u) v[i] = true;
        } else if constexpr (IsMap<T>::value) {
            v.clear();
            for (std::size_t i = 0; i < n; ++i) {
                typename T::key_type key{};
                (*this)(key);
                if (!v.empty() && !(std::prev(v.end())->first < key)) fail("map keys out of order");
                (*this)(v.emplace_hint(v.end(), key, typename T::mapped_type{})->second);
            }
        } else if constexpr (std::is_same_v<T, std::set<int>> ||
                             std::is_same_v<T, veksg::Set<int>>) {
            v.clear();
            int last = 0;
            for (std::size_t i = 0; i < n; ++i) {
                int key = 0;
                (*this)(key);
                if (i > 0 && !(last < key)) fail("set keys out of order");
                if constexpr (std::is_same_v<T, std::set<int>>)
                    v.insert(v.end(), key);
                else
                    v.insert(key);
                last = key;
            }
        } else if constexpr (std::is_same_v<T, std::vector<typename SequenceTraits<T>::Value>> &&
                             isBulk<typename SequenceTraits<T>::Value>) {
            using Value = typename SequenceTraits<T>::Value;
            const char* from = take(n * sizeof(Value));
            v.assign(BulkIterator<Value>(from), BulkIterator<Value>(from + n * sizeof(Value)));
        } else {
            using Value = typename SequenceTraits<T>::Value;
            v.clear();
            if (n == 0) return;
            if constexpr (ContainerTraits<T>::value)
                v.resizeToFitKey(static_cast<int>(n - 1), Value{});
            else
                v.resize(n);
            if constexpr (isBulk<Value> && isContiguous<T>) {
                std::memcpy(static_cast<void*>(&*v.begin()), take(n * sizeof(Value)),
                            n * sizeof(Value));
            } else {
                for (auto& element : v)
                    (*this)(element);
            }
        }
    }

    const char* at;
    const char* end;
    PoolsIn& pools;
    const Place& place;
    std::wstring scratch;
};

/// The UTF-16 units of a wide string; characters UTF-16 cannot carry become U+FFFD, counted.
void encodeUtf16(const wchar_t* chars, std::size_t n, Buffer& out, std::uint64_t& replaced);

} // namespace veksg::io::detail
