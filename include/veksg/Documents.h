#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/Geometry.h"
#include "veksg/Schema.h"

namespace veksg {

/// A named layer.
struct VEKSG_API Layer {
    std::wstring name;
};

/// One external file a document refers to.
struct VEKSG_API ExtFile {
    std::wstring path;
    /// What the number denotes is the host's choice.
    int id = 0;
};

// Declared before any member uses them, so that nothing instantiates them here first.
extern template class VEKSG_API Container<int, Layer>;
extern template class VEKSG_API Container<int, ExtFile>;

/// General information about a document and the path of its file.
class VEKSG_API SCInfo : public Schema {
public:
    SCInfo() : Schema(Schema::INFO) {}
    SCInfo(const SCInfo&) = default;
    SCInfo& operator=(const SCInfo&) = default;
    ~SCInfo() override;
    short type() const override;

    /// The path's characters; an empty string when unset, never null.
    const wchar_t* file() const { return filePath.c_str(); }
    /// Replaces the path with a copy of the zero-terminated argument; null empties it.
    void setFile(const wchar_t* path);

    int info0 = 0;
    int info1 = 0;
    int info2 = 0;
    int info3 = -1;
    int info4 = 0;
    int info5 = 0;
    int info6 = 0;
    float tolerance = 0.001f;
    int info8 = 0;
    int info9 = 0;
    std::wstring filePath;
};

/// One layer setting of a document.
class VEKSG_API SCLayer : public Schema {
public:
    SCLayer() : Schema(Schema::LAYER) {}
    SCLayer(const SCLayer&) = default;
    SCLayer& operator=(const SCLayer&) = default;
    ~SCLayer() override;
    short type() const override;

    int layer = 0;
};

/// The external files of a document. With `deleteFilesOnDestroy` set, destroying the
/// component (or any copy of it) deletes every listed file from disk.
class VEKSG_API SCExtFile : public Schema {
public:
    SCExtFile() : Schema(Schema::EXT_FILE) {}
    SCExtFile(const SCExtFile&) = default;
    SCExtFile& operator=(const SCExtFile&) = default;
    /// Deletes the listed files when asked to, in key order, ignoring every failure.
    ~SCExtFile() override;
    short type() const override;
    /// Empties `flags` only.
    void cleanup() override;

    Container<int, ExtFile> files;
    Container<int, int> fileIds;
    Container<int, std::vector<int>> fileIndices;
    Container<int, unsigned char> flags;
    bool deleteFilesOnDestroy = false;
    bool flagA = true;
    std::shared_ptr<void> sharedObject;
    bool flagB = false;
    std::vector<std::wstring> names;
};

/// A list of transforms and a set of keys they apply to.
class VEKSG_API SCAnimation : public Schema {
public:
    SCAnimation() : Schema(Schema::ANIMATION) {}
    SCAnimation(const SCAnimation&) = default;
    SCAnimation& operator=(const SCAnimation&) = default;
    ~SCAnimation() override;
    short type() const override;

    std::vector<Transform> transforms;
    std::set<int> keys;
};

} // namespace veksg
