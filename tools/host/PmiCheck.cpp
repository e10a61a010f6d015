#include "PmiCheck.h"

#include <algorithm>
#include <string>

namespace vekhost {

namespace {
class PmiChecker {
public:
    explicit PmiChecker(const Document& document) : doc(document), pmi(*document.pmi) {}

    RecordFindings run() {
        const int annotations = pmi.pmis.size();
        const int views = pmi.views.size();
        const int nodes = doc.topo->nodes.size();
        for (int key = 0; key < annotations; ++key)
            if (!pmi.pmis.getValue(key))
                problem("SCPmi.pmis[" + std::to_string(key) + "] is empty");
        if (pmi.pmiBoxes.size() > annotations)
            problem("SCPmi.pmiBoxes holds " + std::to_string(pmi.pmiBoxes.size()) + " boxes for " +
                    std::to_string(annotations) + " annotations");
        keys("relation4", pmi.relation4, doc.topo->faces.size());
        keys("relation6", pmi.relation6, doc.topo->faces.size());
        keys("relation11", pmi.relation11, doc.topo->edges.size());
        keys("relation12", pmi.relation12, annotations);
        keys("relation5", pmi.relation5, pmi.pmiAttributes.size());
        keys("relation1", pmi.relation1, annotations);
        keys("relation13", pmi.relation13, views);
        keys("relation9", pmi.relation9, annotations);
        keys("relation8", pmi.relation8, nodes);
        keys("relation10", pmi.relation10, pmi.sections.size());
        keys("relation2", pmi.relation2, views);
        for (int key = 0; key < pmi.map2.size(); ++key) {
            const int node = pmi.map2.getValue(key);
            ++found.references;
            if (node == -1) continue;
            if (node < 0 || node >= nodes)
                problem(at("map2", key) + " names node " + std::to_string(node) +
                        ", which does not exist");
            else if (!lists(pmi.relation1, node, key))
                problem(at("map2", key) + " names node " + std::to_string(node) + " but " +
                        at("relation1", node) + " does not list it");
        }
        for (int node = 0; node < pmi.relation1.size(); ++node)
            for (const int key : pmi.relation1.getValue(node))
                if (key >= 0 && key < annotations &&
                    (key >= pmi.map2.size() || pmi.map2.getValue(key) != node))
                    problem(at("relation1", node) + " lists " + std::to_string(key) + " but " +
                            at("map2", key) + " names another node");
        mutual("relation13", pmi.relation13, "relation9", pmi.relation9);
        mutual("relation9", pmi.relation9, "relation13", pmi.relation13);
        mutual("relation2", pmi.relation2, "relation8", pmi.relation8);
        mutual("relation8", pmi.relation8, "relation2", pmi.relation2);
        return std::move(found);
    }

private:
    static std::string at(const char* table, int key) {
        return std::string("SCPmi.") + table + "[" + std::to_string(key) + "]";
    }

    static bool lists(const veksg::Hierarchy& relation, int owner, int child) {
        if (owner < 0 || owner >= relation.size()) return false;
        const auto& children = relation.getValue(owner);
        return std::find(children.begin(), children.end(), child) != children.end();
    }

    void problem(const std::string& text) { found.problems.push_back(text); }

    void keys(const char* table, const veksg::Hierarchy& relation, int count) {
        for (int owner = 0; owner < relation.size(); ++owner)
            for (const int key : relation.getValue(owner)) {
                ++found.references;
                if (key < 0 || key >= count)
                    problem(at(table, owner) + " lists " + std::to_string(key) + ", outside 0 to " +
                            std::to_string(count - 1));
            }
    }

    void mutual(const char* forwardTable, const veksg::Hierarchy& forward, const char* backTable,
                const veksg::Hierarchy& back) {
        for (int owner = 0; owner < forward.size(); ++owner)
            for (const int child : forward.getValue(owner))
                if (!lists(back, child, owner))
                    problem(at(forwardTable, owner) + " lists " + std::to_string(child) + " but " +
                            at(backTable, child) + " does not list " + std::to_string(owner));
    }

    const Document& doc;
    const veksg::SCPmi& pmi;
    RecordFindings found;
};
} // namespace

RecordFindings checkPmi(const Document& document) {
    return PmiChecker(document).run();
}

} // namespace vekhost
