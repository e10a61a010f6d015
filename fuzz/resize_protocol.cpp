// Differential fuzzing of the resize protocol: every resizable component is filled at random
// and resized with scripted resizer answers (negative, growing, shrinking, repeated, refusing,
// too large), then compared with a plain-vector model of the documented rules: which key
// spaces are asked and in which order, which tables grow to which size with which fill,
// which lists lose their repeated children, which bit sets follow the range exactly, what a
// failure leaves behind, and that the resizer is released on every path.
#include <algorithm>
#include <climits>
#include <cstdint>
#include <iterator>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "FuzzCheck.h"
#include "veksg/veksg.h"

namespace {

using namespace veksg;

// What a scripted resizer does when asked: answer a number, or refuse by throwing.
struct Answer {
    int value = -1;
    bool refuse = false;
};

struct Refused {};
struct TooLong {};

class ScriptedResizer : public SchemaResizer {
public:
    explicit ScriptedResizer(std::vector<Answer> script) : script(std::move(script)) {}

    int lastKeyOf(const short& keySpace) override {
        asked.push_back(keySpace);
        const Answer answer = next < script.size() ? script[next] : Answer{};
        ++next;
        if (answer.refuse) throw Refused{};
        return answer.value;
    }

    std::vector<Answer> script;
    std::size_t next = 0;
    std::vector<short> asked;
};

// Model values drawn from the input: small, with repeats, so that dedupe has work to do.
void draw(FuzzedDataProvider& in, int& v) {
    v = in.ConsumeIntegralInRange<int>(-3, 50);
}
void draw(FuzzedDataProvider& in, char& v) {
    v = static_cast<char>(in.ConsumeIntegralInRange<int>(0, 3));
}
void draw(FuzzedDataProvider& in, unsigned char& v) {
    v = in.ConsumeIntegralInRange<unsigned char>(0, 3);
}
void draw(FuzzedDataProvider& in, float& v) {
    v = static_cast<float>(in.ConsumeIntegralInRange<int>(-100, 100));
}
void draw(FuzzedDataProvider& in, std::vector<int>& v) {
    v.assign(in.ConsumeIntegralInRange<std::size_t>(0, 5), 0);
    for (int& child : v)
        child = in.ConsumeIntegralInRange<int>(0, 6);
}

// One library table and its model.
class Table {
public:
    virtual ~Table() = default;
    /// Appends one random value to the library's table and the model.
    virtual void append(FuzzedDataProvider& in) = 0;
    /// Model of growth: entries 0..last exist afterwards, new ones hold the fill.
    virtual void grow(int last) = 0;
    /// Model of dropping repeated children: each list sorted ascending, one of each kept.
    virtual void dedupe() {}
    virtual int count() const = 0;
    virtual void check() const = 0;
};

template <typename V>
class Mirror : public Table {
public:
    Mirror(Container<int, V>& lib, V fill) : lib(lib), fill(std::move(fill)) {}

    void append(FuzzedDataProvider& in) override {
        V v{};
        draw(in, v);
        lib.insert(v);
        model.push_back(v);
    }
    void grow(int last) override {
        while (static_cast<int>(model.size()) <= last)
            model.push_back(fill);
    }
    void dedupe() override {
        if constexpr (std::is_same_v<V, std::vector<int>>) {
            for (auto& list : model) {
                std::vector<int> kept;
                for (int child : list)
                    if (std::find(kept.begin(), kept.end(), child) == kept.end())
                        kept.push_back(child);
                std::sort(kept.begin(), kept.end());
                list = kept;
            }
        }
    }
    int count() const override { return static_cast<int>(model.size()); }
    void check() const override {
        FUZZ_CHECK(lib.size() == count());
        int key = 0;
        for (const V& v : lib)
            FUZZ_CHECK(v == model[static_cast<std::size_t>(key++)]);
    }

private:
    Container<int, V>& lib;
    V fill;
    std::vector<V> model;
};

// A primary table: the model keeps only how many records it holds.
template <typename V>
class Primary : public Table {
public:
    explicit Primary(Container<int, V>& lib) : lib(lib) {}
    void append(FuzzedDataProvider&) override {
        lib.insert(V());
        ++records;
    }
    // Primary tables are the host's to size: the model never grows one.
    void grow(int) override { FUZZ_CHECK(false); }
    int count() const override { return records; }
    void check() const override { FUZZ_CHECK(lib.size() == records); }

private:
    Container<int, V>& lib;
    int records = 0;
};

// A visibility bit set: set to exactly last + 1 bits, shrinking too.
class Bits : public Table {
public:
    Bits(std::vector<bool>& lib, bool start) : lib(lib), start(start) {}
    void append(FuzzedDataProvider& in) override {
        const bool bit = in.ConsumeBool();
        lib.push_back(bit);
        model.push_back(bit);
    }
    void grow(int last) override {
        while (static_cast<int>(model.size()) > last + 1)
            model.pop_back();
        while (static_cast<int>(model.size()) < last + 1)
            model.push_back(start);
    }
    int count() const override { return static_cast<int>(model.size()); }
    void check() const override { FUZZ_CHECK(lib == model); }

private:
    std::vector<bool>& lib;
    bool start;
    std::vector<bool> model;
};

// The model of one component: its tables by the library member they mirror, and the
// queries it expects.
class Model {
public:
    Model(const std::vector<Answer>& script, std::map<const void*, std::unique_ptr<Table>>& tables)
        : script(script), tables(tables) {}

    int ask(short keySpace) {
        asked.push_back(keySpace);
        const Answer answer = next < script.size() ? script[next] : Answer{};
        ++next;
        if (answer.refuse) throw Refused{};
        return answer.value;
    }
    template <typename T>
    int lastOf(const T& primary) const {
        return at(primary).count() - 1;
    }
    /// Grows every table named to hold key `last`; nothing for an answer at or below -1.
    template <typename... T>
    void grow(int last, const T&... lib) const {
        if (last <= -1) return;
        // key + 1 is past every count an int can express: the first table refuses to grow.
        if (last == INT_MAX) throw TooLong{};
        (at(lib).grow(last), ...);
    }
    /// Like `grow`, each list then dropping its repeated children.
    template <typename... T>
    void growDeduped(int last, const T&... lib) const {
        grow(last, lib...);
        if (last > -1) (at(lib).dedupe(), ...);
    }
    /// A bit set follows any answer above -1 exactly.
    bool follow(int last, const std::vector<bool>& lib) const {
        if (last <= -1) return false;
        at(lib).grow(last);
        return true;
    }

    std::vector<short> asked;

private:
    template <typename T>
    Table& at(const T& lib) const {
        const auto found = tables.find(&lib);
        FUZZ_CHECK(found != tables.end());
        return *found->second;
    }

    const std::vector<Answer>& script;
    std::size_t next = 0;
    std::map<const void*, std::unique_ptr<Table>>& tables;
};

// One component under test: the object, its mirrored tables and the documented rule.
class Case {
public:
    virtual ~Case() = default;
    virtual Schema& component() = 0;
    virtual void rule(Model& m) = 0;
    /// Whether the script may answer a key too large for any table to grow to.
    virtual bool mayAnswerTooLarge() const { return true; }
    /// Checks of what no table mirrors.
    virtual void extra() const {}

    std::map<const void*, std::unique_ptr<Table>> tables;
    std::vector<const void*> order; // registration order, for picking a table to fill

protected:
    template <typename V>
    void side(Container<int, V>& lib, V fill) {
        add(&lib, std::make_unique<Mirror<V>>(lib, std::move(fill)));
    }
    template <typename... V>
    void lists(Container<int, V>&... lib) {
        (side(lib, std::vector<int>()), ...);
    }
    template <typename... V>
    void links(Container<int, V>&... lib) {
        (side(lib, -1), ...);
    }
    template <typename... V>
    void primary(Container<int, V>&... lib) {
        (add(&lib, std::make_unique<Primary<V>>(lib)), ...);
    }
    void bits(std::vector<bool>& lib, bool start) { add(&lib, std::make_unique<Bits>(lib, start)); }

private:
    void add(const void* key, std::unique_ptr<Table> table) {
        order.push_back(key);
        tables[key] = std::move(table);
    }
};

class SceneCase : public Case {
public:
    SceneCase() {
        auto& s = scene;
        primary(s.meshes, s.meshMaterials, s.polylines, s.polylineMaterials, s.boxes, s.transforms,
                s.points, s.textures, s.fonts, s.texts);
        links(s.links6a, s.links7, s.links8, s.links6b, s.textLinksA, s.textLinksB);
        lists(s.hierarchy);
    }
    Schema& component() override { return scene; }
    void rule(Model& m) override {
        auto& s = scene;
        m.grow(m.ask(6), s.links6a, s.links6b);
        m.grow(m.ask(7), s.links7);
        m.grow(m.lastOf(s.fonts), s.hierarchy); // after the fonts, not the nodes
        m.grow(m.lastOf(s.texts), s.textLinksA, s.textLinksB);
        m.grow(m.ask(8), s.links8);
    }

private:
    SCScene scene;
};

class TopoCase : public Case {
public:
    TopoCase() {
        auto& t = topo;
        primary(t.nodes, t.faces, t.surfaces, t.edges, t.curves, t.vertices);
        lists(t.nodeLists1, t.nodeLists2, t.nodeLists3, t.nodeLists4, t.nodeLists5, t.nodeLists6,
              t.nodeLists7, t.nodeLists8, t.nodeLists9, t.nodeLists10, t.nodeLists11, t.faceLists1,
              t.faceLists2, t.faceLists3, t.faceLists4, t.edgeLists1, t.edgeLists2, t.edgeLists3,
              t.edgeLists4, t.lists15a, t.lists15b, t.lists13, t.lists14);
        links(t.nodeRefs1, t.nodeRefs2, t.nodeRefs3, t.nodeRefs4, t.faceRefs1, t.faceRefs2,
              t.edgeRefs1, t.refs15a, t.refs15b, t.refs13a, t.refs13b, t.refs14a, t.refs14b,
              t.refs14c);
        side(t.nodeFlags, char{1});
    }
    Schema& component() override { return topo; }
    void rule(Model& m) override {
        auto& t = topo;
        const int node = m.ask(10);
        m.grow(node, t.nodeRefs1, t.nodeRefs2, t.nodeRefs3, t.nodeRefs4, t.nodeLists1, t.nodeLists2,
               t.nodeFlags);
        m.growDeduped(node, t.nodeLists3, t.nodeLists4, t.nodeLists5, t.nodeLists6, t.nodeLists7,
                      t.nodeLists8, t.nodeLists9, t.nodeLists10, t.nodeLists11);
        const int face = m.ask(11);
        m.grow(face, t.faceLists1, t.faceRefs1, t.faceRefs2);
        m.growDeduped(face, t.faceLists2, t.faceLists3, t.faceLists4);
        const int edge = m.ask(12);
        m.grow(edge, t.edgeLists1, t.edgeRefs1);
        m.growDeduped(edge, t.edgeLists2, t.edgeLists3, t.edgeLists4);
        m.grow(m.ask(14), t.refs14a, t.refs14b, t.refs14c, t.lists14);
        m.grow(m.ask(13), t.refs13a, t.refs13b, t.lists13);
        const int other = m.ask(15);
        m.grow(other, t.refs15a, t.refs15b);
        m.growDeduped(other, t.lists15a, t.lists15b);
    }
    void extra() const override {
        FUZZ_CHECK(topo.namesByKey.empty() && topo.topoKey == -1 && topo.topoCount == 0);
    }

private:
    SCSceneTopo topo;
};

class ResCase : public Case {
public:
    ResCase() {
        auto& r = res;
        primary(r.meshMaterials, r.polylineMaterials, r.textures, r.boxes, r.orientedBoxes,
                r.transforms, r.transformsB, r.vertexInfos, r.indexInfos, r.primitivesA,
                r.primitivesB, r.primitivesC, r.fonts, r.texts);
        links(r.indexLinks, r.primALinks1, r.primALinks2, r.primALinks3, r.primBLinks1,
              r.primBLinks2, r.primCLinks1, r.primCLinks2, r.textLinksA, r.textLinksB);
        lists(r.vertexLists, r.indexLists1, r.indexLists2, r.indexLists3, r.fontLists);
    }
    Schema& component() override { return res; }
    void rule(Model& m) override {
        auto& r = res;
        m.grow(m.lastOf(r.vertexInfos), r.vertexLists);
        m.grow(m.lastOf(r.indexInfos), r.indexLinks, r.indexLists1, r.indexLists2, r.indexLists3);
        const int a = m.lastOf(r.primitivesA);
        m.grow(a, r.primALinks1, r.primALinks2, r.primALinks3);
        const int b = m.lastOf(r.primitivesB);
        if (b > -1) {
            m.grow(b, r.primBLinks2);
            m.grow(a, r.primBLinks1); // from table A, when B has entries
            m.grow(m.lastOf(r.primitivesC), r.primCLinks1, r.primCLinks2);
        }
        m.grow(m.lastOf(r.fonts), r.fontLists);
        m.grow(m.lastOf(r.texts), r.textLinksA, r.textLinksB);
    }

private:
    SCSceneRes res;
};

class RuntimeCase : public Case {
public:
    RuntimeCase() {
        auto& r = rt;
        for (std::size_t i = 0; i < r.visibility.sets.size(); ++i)
            bits(r.visibility.sets[i], i != 1 && i != 3);
        side(r.nodeValues, 0.0f);
        lists(r.meshes.lists, r.polylines.lists, r.vertices.lists, r.texts.lists, r.nodeLists);
        links(r.meshes.refs1, r.texts.refs6, r.transientMaterials.refs1);
    }
    Schema& component() override { return rt; }
    void rule(Model& m) override {
        auto& r = rt;
        auto& sets = r.visibility.sets;
        const int node = m.ask(10);
        m.follow(node, sets[0]);
        m.grow(node, r.nodeValues, r.meshes.lists, r.polylines.lists, r.vertices.lists,
               r.texts.lists);
        if (!m.follow(m.ask(11), sets[2])) m.follow(m.ask(6), sets[7]);
        m.follow(m.ask(12), sets[3]);
        m.follow(m.ask(14), sets[6]);
        m.follow(m.ask(13), sets[5]);
        m.follow(m.ask(15), sets[4]);
        m.follow(m.ask(16), sets[1]);
    }
    // A set of 2^31 bits is a real allocation, not a length error.
    bool mayAnswerTooLarge() const override { return false; }

private:
    SCSceneRT rt;
};

class PmiCase : public Case {
public:
    PmiCase() {
        auto& p = pmi;
        primary(p.pmis, p.views, p.viewSets, p.sections, p.pmiBoxes, p.pmiAttributes);
        lists(p.relation1, p.relation2, p.relation3, p.relation4, p.relation5, p.relation6,
              p.relation7, p.relation8, p.relation9, p.relation10, p.relation11, p.relation12,
              p.relation13, p.relation14);
        links(p.map1, p.map2, p.map3, p.map4, p.map5, p.map6);
    }
    Schema& component() override { return pmi; }
    void rule(Model& m) override {
        auto& p = pmi;
        m.grow(m.ask(10), p.relation1, p.relation2, p.relation3);
        const int annotation = m.ask(16);
        m.grow(annotation, p.map2, p.relation4, p.relation5, p.relation6, p.relation11,
               p.relation12, p.relation13);
        const int entity = m.ask(17);
        m.grow(entity, p.map4, p.map5, p.relation8, p.relation9, p.relation10);
    }

private:
    SCPmi pmi;
};

class AttributesCase : public Case {
public:
    AttributesCase() {
        primary(attributes.attributes);
        lists(attributes.attributeIndices);
        side(attributes.flags, static_cast<unsigned char>(1));
    }
    Schema& component() override { return attributes; }
    void rule(Model& m) override { m.grow(m.lastOf(attributes.attributes), attributes.flags); }

private:
    SCAttributes attributes;
};

class FeaturesCase : public Case {
public:
    FeaturesCase() {
        primary(features.holes);
        lists(features.nodeFeatures);
    }
    Schema& component() override { return features; }
    void rule(Model& m) override { m.grow(m.ask(10), features.nodeFeatures); }

private:
    SCFeatures features;
};

// The state store has no per-entity tables: nothing is asked, nothing changes.
class StatesCase : public Case {
public:
    Schema& component() override { return states; }
    void rule(Model&) override {}
    void extra() const override {
        FUZZ_CHECK(states.firstStates == first && states.secondStates == second &&
                   states.typeStates == types);
        FUZZ_CHECK(states.firstStates.use_count() == 2 && states.typeStates.use_count() == 2);
        FUZZ_CHECK(states.executors.empty() && states.secondSetting == 2);
    }

private:
    SCStates states;
    std::shared_ptr<StateContainer> first = states.firstStates;
    std::shared_ptr<StateContainer> second = states.secondStates;
    std::shared_ptr<StateTypeContainer> types = states.typeStates;
};

std::vector<Answer> script(FuzzedDataProvider& in, bool tooLarge) {
    std::vector<Answer> answers(in.ConsumeIntegralInRange<std::size_t>(0, 9));
    for (Answer& a : answers) {
        switch (in.ConsumeIntegralInRange<int>(0, 9)) {
        case 0:
            a.value = -1;
            break;
        case 1:
            a.value = in.PickValueInArray({-2, -40, INT_MIN});
            break;
        case 2:
            a.refuse = true;
            break;
        case 3:
            a.value = tooLarge ? INT_MAX : -1;
            break;
        default:
            a.value = in.ConsumeIntegralInRange<int>(0, 40);
            break;
        }
    }
    return answers;
}

enum class Outcome { done, refused, tooLong };

void resize(FuzzedDataProvider& in, Case& c) {
    const std::vector<Answer> answers = script(in, c.mayAnswerTooLarge());

    Model model(answers, c.tables);
    Outcome expected = Outcome::done;
    try {
        c.rule(model);
    } catch (const Refused&) {
        expected = Outcome::refused;
    } catch (const TooLong&) {
        expected = Outcome::tooLong;
    }

    Schema& component = c.component();
    const short code = component.type();
    auto resizer = std::make_shared<ScriptedResizer>(answers);
    Outcome got = Outcome::done;
    try {
        component.resize(resizer);
    } catch (const Refused&) {
        got = Outcome::refused;
    } catch (const std::length_error& e) {
        FUZZ_CHECK(std::string(e.what()) == "vector too long");
        got = Outcome::tooLong;
    }
    FUZZ_CHECK(got == expected);
    FUZZ_CHECK(resizer->asked == model.asked);
    FUZZ_CHECK(resizer.use_count() == 1); // released on every path
    FUZZ_CHECK(component.type() == code);
}

void run(FuzzedDataProvider& in, Case& c) {
    while (in.remaining_bytes() > 0) {
        if (in.ConsumeIntegralInRange<int>(0, 2) == 0) {
            resize(in, c);
        } else if (!c.order.empty()) {
            const auto pick = in.ConsumeIntegralInRange<std::size_t>(0, c.order.size() - 1);
            c.tables[c.order[pick]]->append(in);
        }
        for (const auto& entry : c.tables)
            entry.second->check();
        c.extra();
    }
}

template <typename C>
void runCase(FuzzedDataProvider& in) {
    C c;
    run(in, c);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    using Runner = void (*)(FuzzedDataProvider&);
    static const Runner runners[] = {
        runCase<SceneCase>, runCase<TopoCase>,       runCase<ResCase>,      runCase<RuntimeCase>,
        runCase<PmiCase>,   runCase<AttributesCase>, runCase<FeaturesCase>, runCase<StatesCase>,
    };
    runners[in.ConsumeIntegralInRange<std::size_t>(0, std::size(runners) - 1)](in);
    return 0;
}
