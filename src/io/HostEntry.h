#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "io/Archive.h"

namespace veksg::io {

/// A host table as the writer and the reader see it. A read goes into a copy, which takes the
/// table's place only when the whole file has been read.
class HostTables::Entry {
public:
    explicit Entry(std::string name) : name(std::move(name)) {}
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    virtual ~Entry();

    virtual void collect(detail::Collect& collect) const = 0;
    virtual std::uint64_t write(detail::Out& out) const = 0;
    virtual void read(detail::In& in, std::uint64_t count) = 0;
    virtual std::uint64_t readSize() const = 0;
    virtual void commit() = 0;

    const std::string name;
};

namespace detail {
template <typename V>
class HostTable : public HostTables::Entry {
public:
    HostTable(std::string name, veksg::Container<int, V>& table)
        : Entry(std::move(name)), table(table) {}

    void collect(Collect& collect) const override { collect(table); }
    std::uint64_t write(Out& out) const override { return out.top(table); }
    void read(In& in, std::uint64_t count) override { in.top(copy, count); }
    std::uint64_t readSize() const override { return static_cast<std::uint64_t>(copy.size()); }
    void commit() override { table = std::move(copy); }

private:
    veksg::Container<int, V>& table;
    veksg::Container<int, V> copy;
};
} // namespace detail

} // namespace veksg::io
