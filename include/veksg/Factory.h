#pragma once

#include <memory>

#include "veksg/Export.h"
#include "veksg/Schema.h"

namespace veksg {

/// Turns a `Schema::TYPE` code into a new, empty component.
class VEKSG_API IFactory {
public:
    IFactory() = default;
    IFactory(const IFactory&) = default;
    IFactory& operator=(const IFactory&) = default;
    virtual ~IFactory();

    /// A new component solely owned by the result, or an empty pointer for a code this
    /// factory does not make.
    virtual std::shared_ptr<Schema> create(const short& type) = 0;
};

/// The library's factory. Stateless: every `create` returns a distinct new object.
/// `SCFeatures`, `vek2d::SCScene2D`, `SCThicknessAnalysis` and `SCDraftAngleAnalysis` are
/// deliberately not made here; hosts construct them directly.
class VEKSG_API SCFactory : public IFactory {
public:
    ~SCFactory() override;
    std::shared_ptr<Schema> create(const short& type) override;
};

/// A new, independent factory; the library keeps no global instance.
VEKSG_API std::shared_ptr<IFactory> createFactory();

} // namespace veksg
