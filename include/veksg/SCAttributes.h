#pragma once

#include <memory>
#include <vector>

#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/Schema.h"
#include "veksg/Values.h"

namespace veksg {

/// The named string attributes of a model, with per-key index lists and flag bytes. Hosts
/// fill and read the tables directly.
class VEKSG_API SCAttributes : public Schema {
public:
    SCAttributes();
    SCAttributes(const SCAttributes&) = default;
    SCAttributes& operator=(const SCAttributes&) = default;
    /// Releases every attribute and clears the flags before the members go.
    ~SCAttributes() override;

    short type() const override;
    /// Gives every attribute a flag, new flags reading 1. The resizer is not consulted.
    void resize(std::shared_ptr<SchemaResizer> resizer) override;

    Container<int, std::shared_ptr<Value<std::shared_ptr<wchar_t>, 5>>> attributes;
    Container<int, std::vector<int>> attributeIndices;
    Container<int, unsigned char> flags;
    int userValue = 0;
};

} // namespace veksg
