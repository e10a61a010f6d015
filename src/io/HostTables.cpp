#include "io/HostEntry.h"

namespace veksg::io {

HostTables::Entry::~Entry() = default;

HostTables::HostTables(std::string group) : group_(std::move(group)) {
}

HostTables::~HostTables() = default;

template <typename V>
void HostTables::add(const std::string& name, veksg::Container<int, V>& table) {
    entries_.push_back(std::make_unique<detail::HostTable<V>>(name, table));
}

// Every value type of the data model's keyed tables.
#define VEKSG_IO_HOST_TABLE(...)                                                                   \
    template void HostTables::add<__VA_ARGS__>(const std::string&,                                 \
                                               veksg::Container<int, __VA_ARGS__>&);
VEKSG_IO_HOST_TABLE(int)
VEKSG_IO_HOST_TABLE(char)
VEKSG_IO_HOST_TABLE(unsigned char)
VEKSG_IO_HOST_TABLE(float)
VEKSG_IO_HOST_TABLE(unsigned long)
VEKSG_IO_HOST_TABLE(std::wstring)
VEKSG_IO_HOST_TABLE(std::vector<int>)
VEKSG_IO_HOST_TABLE(std::set<int>)
VEKSG_IO_HOST_TABLE(vekmath::Tuple<float, 3>)
VEKSG_IO_HOST_TABLE(vekmath::Tuple<float, 16>)
VEKSG_IO_HOST_TABLE(veksg::PairT<vekmath::Tuple<float, 16>, int>)
VEKSG_IO_HOST_TABLE(veksg::PairT<veksg::EntityType, int>)
VEKSG_IO_HOST_TABLE(veksg::Layer)
VEKSG_IO_HOST_TABLE(veksg::ExtFile)
VEKSG_IO_HOST_TABLE(veksg::Hole)
VEKSG_IO_HOST_TABLE(veksg::Node)
VEKSG_IO_HOST_TABLE(veksg::Face)
VEKSG_IO_HOST_TABLE(veksg::Edge)
VEKSG_IO_HOST_TABLE(veksg::Vertex)
VEKSG_IO_HOST_TABLE(veksg::Surface)
VEKSG_IO_HOST_TABLE(veksg::Curve)
VEKSG_IO_HOST_TABLE(veksg::BBox)
VEKSG_IO_HOST_TABLE(veksg::OBBox)
VEKSG_IO_HOST_TABLE(veksg::Transform)
VEKSG_IO_HOST_TABLE(veksg::PrimitiveInfo)
VEKSG_IO_HOST_TABLE(veksg::MMaterial)
VEKSG_IO_HOST_TABLE(veksg::PLMaterial)
VEKSG_IO_HOST_TABLE(veksg::Font)
VEKSG_IO_HOST_TABLE(veksg::Text)
VEKSG_IO_HOST_TABLE(std::shared_ptr<veksg::Mesh>)
VEKSG_IO_HOST_TABLE(std::shared_ptr<veksg::Polyline>)
VEKSG_IO_HOST_TABLE(std::shared_ptr<veksg::Texture>)
VEKSG_IO_HOST_TABLE(std::shared_ptr<veksg::VertexInfo>)
VEKSG_IO_HOST_TABLE(std::shared_ptr<veksg::IndexInfo>)
VEKSG_IO_HOST_TABLE(std::shared_ptr<veksg::PMI>)
VEKSG_IO_HOST_TABLE(std::shared_ptr<veksg::Text3D>)
VEKSG_IO_HOST_TABLE(std::shared_ptr<veksg::Text3DLeader>)
VEKSG_IO_HOST_TABLE(std::shared_ptr<veksg::Measure>)
VEKSG_IO_HOST_TABLE(std::shared_ptr<veksg::View>)
VEKSG_IO_HOST_TABLE(std::shared_ptr<veksg::ViewSet>)
VEKSG_IO_HOST_TABLE(std::shared_ptr<veksg::Section>)
VEKSG_IO_HOST_TABLE(std::shared_ptr<veksg::StringValue>)
VEKSG_IO_HOST_TABLE(std::shared_ptr<void>)
#undef VEKSG_IO_HOST_TABLE

} // namespace veksg::io
