// The one place that defines the exported template instantiations; headers declare them
// extern so that hosts use these copies.
#include "veksg/veksg.h"

#include "attributes/ValueImpl.h"

namespace veksg {

template class Container<int, int>;
template class Container<int, std::vector<int>>;
template class Container<int, std::set<int>>;
template class Container<int, vekmath::Tuple<float, 3>>;
template class Container<int, float>;
template class Container<int, vekmath::Tuple<float, 16>>;
template class Container<int, unsigned char>;
template class Container<int, char>;
template class Container<int, std::wstring>;
template class Container<int, unsigned long>;

template class Container<int, PairT<vekmath::Tuple<float, 16>, int>>;
template class Container<int, PairT<EntityType, int>>;

template class Container<int, std::shared_ptr<Mesh>>;
template class Container<int, std::shared_ptr<Polyline>>;
template class Container<int, Node>;
template class Container<int, Face>;
template class Container<int, Edge>;
template class Container<int, Curve>;
template class Container<int, Surface>;
template class Container<int, Vertex>;
template class Container<int, BBox>;
template class Container<int, OBBox>;
template class Container<int, Transform>;
template class Container<int, std::shared_ptr<VertexInfo>>;
template class Container<int, std::shared_ptr<IndexInfo>>;
template class Container<int, std::shared_ptr<PrimitiveInfo>>;
template class Container<int, PrimitiveInfo>;

template class Container<int, MMaterial>;
template class Container<int, PLMaterial>;
template class Container<int, std::shared_ptr<Texture>>;
template class Container<int, Font>;
template class Container<int, Text>;

template class Set<int>;
template struct PairT<vekmath::Tuple<float, 16>, int>;
template struct PairT<EntityType, int>;
template struct PairT<unsigned char, int>;

template class Container<int, Layer>;
template class Container<int, ExtFile>;
template class Container<int, Hole>;
template class Container<int, std::shared_ptr<PMI>>;
template class Container<int, std::shared_ptr<Text3D>>;
template class Container<int, std::shared_ptr<Text3DLeader>>;
template class Container<int, std::shared_ptr<View>>;
template class Container<int, std::shared_ptr<ViewSet>>;
template class Container<int, std::shared_ptr<Measure>>;
template class Container<int, std::shared_ptr<Section>>;
template class Value<bool, 0>;
template class Value<unsigned char, 1>;
template class Value<int, 2>;
template class Value<int, 3>;
template class Value<float, 4>;
template class Value<std::shared_ptr<wchar_t>, 5>;
template class Value<std::vector<unsigned short>, 6>;
template class Value<std::vector<wchar_t*>, 7>;
template class Value<unsigned long, 8>;
template class Container<int, std::shared_ptr<IValue>>;
template class Container<int, std::shared_ptr<Value<bool, 0>>>;
template class Container<int, std::shared_ptr<Value<unsigned char, 1>>>;
template class Container<int, std::shared_ptr<Value<std::shared_ptr<wchar_t>, 5>>>;
template class Container<int, std::shared_ptr<Value<unsigned long, 8>>>;

} // namespace veksg
