#include "MeshAnimation.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <iterator>
#include <string>
#include <unordered_map>
#include <utility>

#include "LoadError.h"

namespace vekhost {

Matrix fromAssimp(const aiMatrix4x4& a) {
    Matrix out;
    const ai_real rows[4][4] = {{a.a1, a.a2, a.a3, a.a4},
                                {a.b1, a.b2, a.b3, a.b4},
                                {a.c1, a.c2, a.c3, a.c4},
                                {a.d1, a.d2, a.d3, a.d4}};
    for (std::size_t col = 0; col < 4; ++col)
        for (std::size_t row = 0; row < 4; ++row)
            out.m[col * 4 + row] = rows[row][col];
    return out;
}

namespace {
// Assimp leaves the rate 0 where a file does not state it; 25 per second is its convention.
constexpr double defaultTicksPerSecond = 25.0;

template <typename Key>
std::vector<Key> sortedKeys(const Key* keys, unsigned count) {
    std::vector<Key> sorted(keys, keys + count);
    for (const Key& key : sorted)
        if (!std::isfinite(key.mTime)) throw LoadError("an animation key has no time");
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const Key& a, const Key& b) { return a.mTime < b.mTime; });
    return sorted;
}

// The keys around `time` and how far between them it lies; the end keys hold outside.
template <typename Key>
const Key* around(const std::vector<Key>& keys, double time, const Key*& next, double& share) {
    const auto after = std::upper_bound(keys.begin(), keys.end(), time,
                                        [](double t, const Key& key) { return t < key.mTime; });
    share = 0;
    next = nullptr;
    if (after == keys.begin()) return &keys.front();
    if (after == keys.end()) return &keys.back();
    const Key* before = &*std::prev(after);
    next = &*after;
    share = (time - before->mTime) / (next->mTime - before->mTime);
    return before;
}

// One channel: its keys in time order and the node's resting parts for what it leaves out.
class Channel {
public:
    Channel(const aiNodeAnim& source, const aiNode& node)
        : positions(sortedKeys(source.mPositionKeys, source.mNumPositionKeys)),
          rotations(sortedKeys(source.mRotationKeys, source.mNumRotationKeys)),
          scalings(sortedKeys(source.mScalingKeys, source.mNumScalingKeys)) {
        node.mTransformation.Decompose(restScaling, restRotation, restPosition);
    }

    aiMatrix4x4 at(double time) const {
        return aiMatrix4x4(vector(scalings, time, restScaling), rotation(time),
                           vector(positions, time, restPosition));
    }

    template <typename Visit>
    void eachTime(Visit visit) const {
        for (const auto& key : positions)
            visit(key.mTime);
        for (const auto& key : rotations)
            visit(key.mTime);
        for (const auto& key : scalings)
            visit(key.mTime);
    }

private:
    static aiVector3D vector(const std::vector<aiVectorKey>& keys, double time,
                             const aiVector3D& rest) {
        if (keys.empty()) return rest;
        const aiVectorKey* next = nullptr;
        double share = 0;
        const aiVectorKey* key = around(keys, time, next, share);
        if (!next) return key->mValue;
        return key->mValue + (next->mValue - key->mValue) * static_cast<ai_real>(share);
    }

    aiQuaternion rotation(double time) const {
        if (rotations.empty()) return restRotation;
        const aiQuatKey* next = nullptr;
        double share = 0;
        const aiQuatKey* key = around(rotations, time, next, share);
        if (!next) return key->mValue;
        aiQuaternion out;
        aiQuaternion::Interpolate(out, key->mValue, next->mValue, static_cast<ai_real>(share));
        return out.Normalize();
    }

    std::vector<aiVectorKey> positions;
    std::vector<aiQuatKey> rotations;
    std::vector<aiVectorKey> scalings;
    aiVector3D restScaling;
    aiQuaternion restRotation;
    aiVector3D restPosition;
};

const aiAnimation* firstNodeAnimation(const aiScene& scene) {
    for (unsigned a = 0; a < scene.mNumAnimations; ++a)
        if (scene.mAnimations[a] && scene.mAnimations[a]->mNumChannels > 0)
            return scene.mAnimations[a];
    return nullptr;
}

int milliseconds(double ticks, double ticksPerSecond) {
    const double ms = std::round(ticks * 1000.0 / ticksPerSecond);
    if (!(std::fabs(ms) <= double(INT_MAX)))
        throw LoadError("an animation key lies beyond the time this tool can hold");
    return static_cast<int>(ms);
}
} // namespace

AnimationData sampleAnimation(const aiScene& scene, const std::vector<SceneNode>& nodes,
                              const Matrix& root) {
    AnimationData out;
    const aiAnimation* animation = firstNodeAnimation(scene);
    if (!animation) return out;
    const double rate =
        animation->mTicksPerSecond > 0 ? animation->mTicksPerSecond : defaultTicksPerSecond;

    std::unordered_map<std::string, int> byName;
    for (std::size_t n = 0; n < nodes.size(); ++n)
        byName.emplace(nodes[n].node->mName.C_Str(), static_cast<int>(n));
    std::vector<const Channel*> channelOf(nodes.size(), nullptr);
    std::vector<Channel> channels;
    channels.reserve(animation->mNumChannels);
    for (unsigned c = 0; c < animation->mNumChannels; ++c) {
        const aiNodeAnim* source = animation->mChannels[c];
        if (!source) continue;
        const auto found = byName.find(source->mNodeName.C_Str());
        if (found == byName.end()) continue;
        const auto node = static_cast<std::size_t>(found->second);
        if (channelOf[node]) continue;
        channels.emplace_back(*source, *nodes[node].node);
        channelOf[node] = &channels.back();
    }
    if (channels.empty()) return out;

    std::vector<int> column(nodes.size(), -1);
    for (std::size_t n = 0; n < nodes.size(); ++n) {
        const int parent = nodes[n].parent;
        // Parents come before their children: a moving parent moves the whole subtree.
        if (channelOf[n] || (parent >= 0 && column[static_cast<std::size_t>(parent)] >= 0)) {
            column[n] = static_cast<int>(out.nodes.size());
            out.nodes.push_back(static_cast<int>(n));
        }
    }
    // Each key at the file's own time, named by its millisecond; keys closer than that are one.
    std::vector<std::pair<int, double>> times;
    for (const Channel& channel : channels)
        channel.eachTime(
            [&](double ticks) { times.emplace_back(milliseconds(ticks, rate), ticks); });
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end(),
                            [](const auto& a, const auto& b) { return a.first == b.first; }),
                times.end());
    if (times.size() > maxAnimationPlacements / out.nodes.size())
        throw LoadError("the animation needs " + std::to_string(times.size()) + " keys for " +
                        std::to_string(out.nodes.size()) + " nodes, more than the " +
                        std::to_string(maxAnimationPlacements) + " placements this tool keeps");

    out.placements.reserve(times.size() * out.nodes.size());
    for (const auto& [key, ticks] : times) {
        out.keys.push_back(key);
        const std::size_t first = out.placements.size();
        for (const int n : out.nodes) {
            const SceneNode& node = nodes[static_cast<std::size_t>(n)];
            const Matrix local = channelOf[static_cast<std::size_t>(n)]
                                     ? fromAssimp(channelOf[static_cast<std::size_t>(n)]->at(ticks))
                                     : fromAssimp(node.node->mTransformation);
            const int parentColumn =
                node.parent < 0 ? -1 : column[static_cast<std::size_t>(node.parent)];
            const Matrix& above =
                node.parent < 0    ? root
                : parentColumn < 0 ? nodes[static_cast<std::size_t>(node.parent)].world
                                   : out.placements[first + static_cast<std::size_t>(parentColumn)];
            out.placements.push_back(above * local);
        }
    }
    return out;
}

} // namespace vekhost
